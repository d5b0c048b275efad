#include "tools/describe/describe.h"

#include "iff/container.h"
#include "support/iff_builder.h"
#include "support/psd_builder.h"
#include "support/table.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace {

struct Printed {
    // What the tool prints for a file of these bytes, and says on standard error.
    explicit Printed(
        const Bytes& bytes, DescribeResult expected = DescribeResult::Accepted, const std::string& name = "file") {
        const TempFolder folder;
        testing::internal::CaptureStderr();
        testing::internal::CaptureStdout();
        EXPECT_EQ(DescribeFile(folder.Write(bytes, name), stdout), expected);
        out = testing::internal::GetCapturedStdout();
        error = testing::internal::GetCapturedStderr();
    }

    std::string out, error;
};

void ExpectReason(const Bytes& bytes, const std::string& reason) {
    const Printed printed(bytes, DescribeResult::Refused);
    EXPECT_EQ(printed.out, "{\"accepted\":\"none\",\"file\":\"file\",\"iff\":null,\"layer_list\":null,\"psd\":null}\n");
    EXPECT_NE(printed.error.find(reason), std::string::npos) << printed.error << "instead of " << reason;
}

TEST(Describe, AnIffDocument) {
    const Printed printed(
        Form("ILBM", {Bmhd({.width = 2, .height = 1}), Cmap({BLACK, {1, 2, 3}}), Chunk("TRAN", Bytes(8, 1)),
                         Alph({.width = 2, .height = 1, .data = {0x40}}), Chunk("GRAB", {0, 1, 0xFF, 2}),
                         Chunk("\"\\\x7F\xE9", ByteBuilder().Text("123456789")), Chunk("BODY", {0x80})}),
        DescribeResult::Accepted, "n\xC3\xA9");
    EXPECT_EQ(printed.out,
        R"({"accepted":"iff","file":"n\u00c3\u00a9","iff":{"children":[)"
        R"({"children":[],"fields":[2,1,0,0,1,0,0,0,0,10,11,2,1],"id":"BMHD","type":null,"unknown":false},)"
        R"({"children":[],"fields":[2,"1b3ff8ac"],"id":"CMAP","type":null,"unknown":false},)"
        R"({"children":[],"fields":[1,257,257,1,1,1],"id":"TRAN","type":null,"unknown":false},)"
        R"({"children":[],"fields":[2,1,1,0,1,"a4deae1d"],"id":"ALPH","type":null,"unknown":false},)"
        R"({"children":[],"fields":[1,65282],"id":"GRAB","type":null,"unknown":false},)"
        R"({"children":[],"fields":[9,"cbf43926"],"id":"\u0022\u005c\u007f\u00e9","type":null,"unknown":true},)"
        R"({"children":[],"fields":[1,"3fba6cad"],"id":"BODY","type":null,"unknown":false}],)"
        R"("fields":[],"id":"FORM","type":"ILBM","unknown":false},"layer_list":[{"channels":[)"
        R"({"name":"Composite","picture":{"bitmap":true,"colours":2,"crc":"12eb8e88","height":1,"info":"2x1x2","sum":[1,2,3],"valid":true,"width":2}},)"
        R"({"name":"Alpha","picture":{"bitmap":true,"colours":2,"crc":"de1cca43","height":1,"info":"2x1x2","sum":[1,1,1],"valid":true,"width":2}}],)"
        R"("name":"Image"}],"psd":null})"
        "\n");
    EXPECT_EQ(printed.error, "");
}

TEST(Describe, PartsOfOtherDocuments) {
    ByteBuilder header;
    header.U16(0xFFFE, 3, 5, 7).U8(8, 9, 10, 11).U16(13).U8(14, 15).U16(17, 19);
    const Bytes unknown = S3tc({.code = "WHAT", .width = 3, .data = {1, 2}});
    for (const auto& [bytes, part] : Table<Bytes, std::string>{
             {Form("ILBM", {Chunk("BMHD", header)}), R"("fields":[65534,3,5,7,8,9,10,11,13,14,15,17,19])"},
             {Form("ILBM", {Chunk("TRAN", {1, 0, 2, 0, 3, 4, 5, 6, 99})}), R"("fields":[1,2,3,4,5,6])"},
             {Form("MIPM", {Chunk("CONT", {2, 3, 4})}), R"("fields":[2,3],"id":"CONT")"},
             {Form("ILBM", {unknown}), R"("fields":[16909060,"WHAT",1286,1800,2314,3,4,2,"b6cc4292"])"},
             // Of an IFF document the size is unknown without a bitmap.
             {Form("ILBM", {unknown}), R"({"bitmap":false,"colours":null,"crc":null,"height":null,)"},
             {Psd({.mode = PSD_LAB}), R"({"bitmap":false,"colours":0,"crc":null,"height":1,)"},
         })
        EXPECT_NE(Printed(bytes).out.find(part), std::string::npos) << part << " is missing in " << Printed(bytes).out;
}

// A bitmap of 9 by 1 pixels with one layer of 2 by 1 and one channel.
PsdFields Bitmap() {
    PsdLayerFields layer = {.top = 5, .left = -1, .bottom = 6, .right = 1, .channels = {{.data = RawData({5, 6})}}};
    layer.clipping = 1, layer.flags = 2, layer.name = "nm";
    layer.mask = ByteBuilder().U32(1, 2, 3, 4).U8(5, 6, 0, 0);
    layer.ranges = ByteBuilder().Text("srcedestSRC0DST0");
    PsdFields fields = {.columns = 9, .depth = 1, .mode = PSD_BITMAP, .layers = {layer}, .layerPad = {0}};
    fields.resources = {{.id = 1006, .data = {1, 'm'}}};
    fields.globalMasks = ByteBuilder().U16(1).Text("rrggbbaa").U16(50).U8(128, 0);
    fields.samples = Bytes{0x80, 0};
    return fields;
}

TEST(Describe, APhotoshopDocument) {
    EXPECT_EQ(Printed(Psd(Bitmap())).out,
        R"({"accepted":"psd","file":"file","iff":null,"layer_list":[{"channels":[)"
        R"({"name":"Composite","picture":{"bitmap":true,"colours":0,"crc":"65668e51","height":1,"info":"9x1x0","sum":[2040,2040,2040],"valid":true,"width":9}},)"
        R"({"name":"Black","picture":{"bitmap":true,"colours":0,"crc":"65668e51","height":1,"info":"9x1x0","sum":[2040,2040,2040],"valid":true,"width":9}}],"name":"Image"},)"
        R"({"channels":[{"name":"Composite","picture":{"bitmap":true,"colours":0,"crc":"e5824ca2","height":1,"info":"2x1x0","sum":[11,0,0],"valid":true,"width":2}},)"
        R"({"name":"0: Red","picture":{"bitmap":true,"colours":0,"crc":"a5853153","height":1,"info":"2x1x0","sum":[11,11,11],"valid":true,"width":2}}],"name":"nm"}],)"
        R"("psd":{"channels":1,"depth":1,"global_masks":[{"colour":"7272676762626161","colour_space":1,"kind":128,"opacity":50}],)"
        R"("height":1,"layers":[{"blend_key":"norm","channels":[{"dest_range":"44535430","id":0,"length":4,"source_range":"53524330"}],)"
        R"("clipping":1,"dest_range":"64657374","flags":2,"mask":{"colour":5,"flags":6,"rect":[1,2,3,4]},)"
        R"("name":"nm","opacity":255,"rect":[5,-1,6,1],"source_range":"73726365"}],"merged_alpha":false,"mode":0,"palette":null,)"
        R"("resources":[{"crc":null,"id":1006,"name":"","names":["m"],"size":2}],"width":9}})"
        "\n");
}

TEST(Describe, WhyAPhotoshopDocumentIsRefused) {
    for (const auto& [change, reason] : Table<void (*)(PsdFields*, PsdLayerFields*), const char*>{
             {[](auto f, auto) { f->signature = "8BPX"; }, "byte 3, header: it does not begin with 8BPS"},
             {[](auto f, auto) { f->channels = 25; }, "byte 12, header: 25 channels; 1 to 24 are read"},
             {[](auto f, auto) { f->mode = 2; }, "byte 30, colour mode data: 0 bytes of palette; 768 are read"},
             {[](auto, auto l) { l->channels[0].excess = (1 << 24) - 4; },
                 "byte 82, channel 0 of layer record 0: 16777216 bytes of image data; less than 16777216 are read"},
             {[](auto, auto l) { l->bottom = 5; },
                 "byte 146, layer 0: 0 rows and 2 columns; 1 to 30000 of each are read"},
             {[](auto, auto l) { l->channels[0].excess = 1; },
                 "byte 148, channel 0 of layer 0: 5 bytes of raw data; 4 are read"},
             {[](auto f, auto) { f->layerPad = Bytes(2); },
                 "byte 150, layer information: it is padded by 2 bytes; 0 or 1 is read"},
             {[](auto f, auto) { f->compression = 0x3842; }, "byte 171, composite: a tagged block stands before it"},
             {[](auto f, auto) { f->samples = Bytes(1); }, "byte 171, composite: the file ends"},
         }) {
        PsdFields fields = Bitmap();
        change(&fields, &fields.layers[0]);
        ExpectReason(Psd(fields), reason);
    }
}

TEST(Describe, WhyAnIffDocumentIsRefused) {
    for (const auto& [file, reason] : Table<Bytes, const char*>{
             {Container("PROP", "ILBM", {}), "byte 4, the outermost id: \"PROP\"; FORM, LIST or CAT is read"},
             {Form("ILBM", {Bmhd({}), Chunk("BMHD", Bytes(19))}),
                 "the body in \"FORM\"/\"BMHD\": 19 bytes are too few for it"},
             {Form("ILBM", {Chunk("BODY", Bytes(4), 6)}), "byte 20, the body in \"FORM\"/\"BODY\": the file ends"},
             {Form("ILBM", {Chunk("GRAB", Bytes(8))}, 16),
                 "the last chunk in \"FORM\": it is larger than its container"},
             {Form("ILBM", {Chunk("BODY", Bytes(4), 0x80000000)}),
                 "the size in \"FORM\"/\"BODY\": 2147483648 bytes; less than 2147483648 are read"},
             {Nested(DEEPEST_CONTAINER + 1, "LIST"), "a container: it is the 4097th one inside another; 4096 are read"},
             {{'F'}, "byte 0, the outermost id: the file ends"},
         })
        ExpectReason(file, reason);
}

TEST(Describe, AFileThatCannotBeOpenedPrintsNothing) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(DescribeFile("/", stdout), DescribeResult::CannotBeOpened);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "/: It is a folder\n");
}

}  // namespace
