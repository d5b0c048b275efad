#include "tools/describe/describe.h"

#include "iff/container.h"
#include "support/iff_builder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

class Describe : public testing::Test {
  protected:
    Describe() {
        m_folder = std::filesystem::temp_directory_path() / "vistrel-describe-XXXXXX";
        if (!mkdtemp(m_folder.data())) ADD_FAILURE() << "no folder for the test";
    }
    ~Describe() override { std::filesystem::remove_all(m_folder); }

    // What the tool prints for a file of these bytes; what it says on standard error goes to m_strError.
    std::string Described(const Bytes& bytes, DescribeResult expected, const std::string& name = "file") {
        const std::string path = m_folder + "/" + name;
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        char* text = nullptr;
        size_t size = 0;
        std::FILE* const out = open_memstream(&text, &size);
        testing::internal::CaptureStderr();
        EXPECT_EQ(DescribeFile(path, out), expected);
        m_strError = testing::internal::GetCapturedStderr();
        std::fclose(out);
        const std::string printed(text, size);
        std::free(text);
        return printed;
    }

    // Why a file is refused, as told for the two readers.
    std::string Reason(const Bytes& bytes) {
        EXPECT_EQ(Described(bytes, DescribeResult::Refused),
                  R"({"accepted":"none","file":"file","iff":null,"layer_list":null,"psd":null})"
                  "\n");
        return m_strError.substr(m_strError.find("refused. ") + 9);
    }

    std::string m_folder;
    std::string m_strError;
};

TEST_F(Describe, AnIffDocument) {
    const Bytes file =
        Form("ILBM",
             {Bmhd({.width = 2, .height = 1}), Cmap({BLACK, {1, 2, 3}}), Chunk("TRAN", Bytes(8, 1)),
              Alph({.width = 2, .height = 1, .data = {0x40}}), Chunk("GRAB", {0, 1, 0, 2}),
              Chunk("\"\\\x7F\xE9", {'1', '2', '3', '4', '5', '6', '7', '8', '9'}), Chunk("BODY", {0x80})});
    EXPECT_EQ(
        Described(file, DescribeResult::Accepted, "n\xC3\xA9"),
        R"({"accepted":"iff","file":"n\u00c3\u00a9","iff":{"children":[)"
        R"({"children":[],"fields":[2,1,0,0,1,0,0,0,0,10,11,2,1],"id":"BMHD","type":null,"unknown":false},)"
        R"({"children":[],"fields":[2,"1b3ff8ac"],"id":"CMAP","type":null,"unknown":false},)"
        R"({"children":[],"fields":[1,257,257,1,1,1],"id":"TRAN","type":null,"unknown":false},)"
        R"({"children":[],"fields":[2,1,1,0,1,"a4deae1d"],"id":"ALPH","type":null,"unknown":false},)"
        R"({"children":[],"fields":[1,2],"id":"GRAB","type":null,"unknown":false},)"
        R"({"children":[],"fields":[9,"cbf43926"],"id":"\u0022\u005c\u007f\u00e9","type":null,"unknown":true},)"
        R"({"children":[],"fields":[1,"3fba6cad"],"id":"BODY","type":null,"unknown":false}],)"
        R"("fields":[],"id":"FORM","type":"ILBM","unknown":false},"layer_list":[{"channels":[)"
        R"({"name":"Composite","picture":{"bitmap":true,"colours":2,"crc":"12eb8e88","height":1,"info":"2x1x2","sum":[1,2,3],"valid":true,"width":2}},)"
        R"({"name":"Alpha","picture":{"bitmap":true,"colours":2,"crc":"de1cca43","height":1,"info":"2x1x2","sum":[1,1,1],"valid":true,"width":2}}],)"
        R"("name":"Image"}],"psd":null})"
        "\n");
    EXPECT_EQ(m_strError, "");
}

TEST_F(Describe, SizesAreUnknownWithoutABitmap) {
    const std::string printed = Described(Form("ILBM", {S3tc({.code = "WHAT", .width = 3, .data = {1, 2}})}),
                                          DescribeResult::Accepted);
    EXPECT_NE(printed.find(R"("fields":[16909060,"WHAT",1286,1800,2314,3,4,2,"b6cc4292"])"),
              std::string::npos)
        << printed;
    EXPECT_NE(
        printed.find(
            R"("picture":{"bitmap":false,"colours":null,"crc":null,"height":null,"info":"<invalid bitmap>","sum":null,"valid":true,"width":null})"),
        std::string::npos)
        << printed;
    EXPECT_NE(Described(Form("MIPM", {Chunk("CONT", {2, 3})}), DescribeResult::Accepted)
                  .find(R"("fields":[2,3],"id":"CONT")"),
              std::string::npos);
}

// A bitmap document of 9 by 1 pixels with one layer of 1 by 1 and one channel.
struct Psd {
    Bytes Build() const {
        const Bytes resource = ByteBuilder().Text("8BIM").U16(1006).U16(0).U32(2).U8(1).Text("m");
        const Bytes record = ByteBuilder()
                                 .U32(0)
                                 .U32(0)
                                 .U32(bottom)
                                 .U32(1)
                                 .U16(1)
                                 .U16(0)
                                 .U32(length)
                                 .Text(signature)
                                 .Text("norm")
                                 .U32(0xFF010200)
                                 .U32(32)
                                 .U32(maskSize)
                                 .Repeat(20, 7)
                                 .U32(0)
                                 .Text(std::string_view("\x02nm\0", 4));
        const Bytes layer =
            ByteBuilder().U16(1).Append(record).U16(channelCompression).U8(5).Repeat(padding, 0);
        return ByteBuilder()
            .Text("8BPS")
            .U16(version)
            .Repeat(6, 0)
            .U16(channels)
            .U32(1)
            .U32(9)
            .U16(1)
            .U16(mode)
            .U32(paletteSize)
            .U32(static_cast<u32>(resource.size()))
            .Append(resource)
            .U32(1)
            .U32(static_cast<u32>(layer.size()))
            .Append(layer)
            .U32(14)
            .U16(1)
            .Text("rrggbbaa")
            .U16(50)
            .U8(128)
            .U8(0)
            .U16(compression)
            .U8(0x80)
            .U8(0);
    }

    u32 version = 1, channels = 1, mode = 0, paletteSize = 0, bottom = 1, length = 3, maskSize = 20;
    const char* signature = "8BIM";
    u32 channelCompression = 0, padding = 1, compression = 0;
};

TEST_F(Describe, APhotoshopDocument) {
    EXPECT_EQ(
        Described(Psd().Build(), DescribeResult::Accepted),
        R"({"accepted":"psd","file":"file","iff":null,"layer_list":[{"channels":[)"
        R"({"name":"Composite","picture":{"bitmap":true,"colours":0,"crc":"65668e51","height":1,"info":"9x1x0","sum":[2040,2040,2040],"valid":true,"width":9}},)"
        R"({"name":"Black","picture":{"bitmap":true,"colours":0,"crc":"65668e51","height":1,"info":"9x1x0","sum":[2040,2040,2040],"valid":true,"width":9}}],"name":"Image"},)"
        R"({"channels":[{"name":"Composite","picture":{"bitmap":true,"colours":0,"crc":"f98a1bf9","height":1,"info":"1x1x0","sum":[5,0,0],"valid":true,"width":1}},)"
        R"({"name":"0: Red","picture":{"bitmap":true,"colours":0,"crc":"f4971b33","height":1,"info":"1x1x0","sum":[5,5,5],"valid":true,"width":1}}],"name":"nm"}],)"
        R"("psd":{"channels":1,"depth":1,"global_masks":[{"colour":"7272676762626161","colour_space":1,"kind":128,"opacity":50}],)"
        R"("height":1,"layers":[{"blend_key":"norm","channels":[{"dest_range":"0000ffff","id":0,"length":3,"source_range":"0000ffff"}],)"
        R"("clipping":1,"dest_range":"0000ffff","flags":2,"mask":{"colour":7,"flags":7,"rect":[117901063,117901063,117901063,117901063]},)"
        R"("name":"nm","opacity":255,"rect":[0,0,1,1],"source_range":"0000ffff"}],"merged_alpha":false,"mode":0,"palette":null,)"
        R"("resources":[{"crc":null,"id":1006,"name":"","names":["m"],"size":2}],"width":9}})"
        "\n");
}

TEST_F(Describe, WhyAPhotoshopDocumentIsRefused) {
    const auto with = [](auto change) {
        Psd psd;
        change(psd);
        return psd.Build();
    };
    struct Case {
        Bytes file;
        const char* reason;
    };
    for (const Case& c : {
             Case{with([](Psd& p) { p.version = 2; }), "byte 4, header: version 2; version 1 is read"},
             Case{with([](Psd& p) { p.channels = 25; }), "byte 12, header: 25 channels; 1 to 24 are read"},
             Case{with([](Psd& p) { p.mode = 5; }), "byte 24, header: colour mode 5"},
             Case{with([](Psd& p) { p.mode = 2; }),
                  "byte 30, colour mode data: 0 bytes of palette; 768 are read"},
             Case{with([](Psd& p) { p.signature = "8BIX"; }),
                  "byte 86, layer record 0: no 8BIM before the blend mode"},
             Case{with([](Psd& p) { p.maskSize = 36; }),
                  "byte 102, layer record 0: layer mask data of 36 bytes; 0 or 20 are read"},
             Case{with([](Psd& p) { p.length = 1 << 24; }),
                  "byte 82, channel 0 of layer record 0: 16777216 bytes of image data; less than 16777216 "
                  "are read"},
             Case{with([](Psd& p) { p.bottom = 0; }),
                  "byte 130, layer 0: 0 rows and 1 columns; 1 to 30000 of each are read"},
             Case{with([](Psd& p) { p.length = 4; }),
                  "byte 132, channel 0 of layer 0: 4 bytes of raw data; 3 are read"},
             Case{with([](Psd& p) { p.channelCompression = 2; }),
                  "byte 132, channel 0 of layer 0: compression 2 (ZIP); 0 or 1 is read"},
             Case{with([](Psd& p) { p.padding = 2; }),
                  "byte 133, layer information: it is padded by 2 bytes; 0 or 1 is read"},
             Case{with([](Psd& p) { p.compression = 1; }),
                  "byte 154, composite: compression 1 with 1 bits a sample; 0, or 1 with 8 bits, is read"},
             Case{with([](Psd& p) { p.compression = 0x3842; }),
                  "byte 154, composite: a tagged block stands before it"},
             Case{ByteBuilder().Text("8BPX"), "byte 3, header: it does not begin with 8BPS"},
             Case{Truncated(Psd().Build(), 1), "composite: the file ends"},
         })
        EXPECT_NE(Reason(c.file).find(c.reason), std::string::npos)
            << m_strError << "instead of " << c.reason;
}

TEST_F(Describe, WhyAnIffDocumentIsRefused) {
    struct Case {
        Bytes file;
        const char* reason;
    };
    for (const Case& c : {
             Case{Container("PROP", "ILBM", {}),
                  "byte 4, the outermost id: \"PROP\"; FORM, LIST or CAT is read"},
             Case{Form("ILBM", {Chunk("BMHD", Bytes(19))}),
                  "the body in \"FORM\"/\"BMHD\": 19 bytes are too few for it"},
             Case{Form("ILBM", {Chunk("BODY", Bytes(4), 6)}),
                  "byte 20, the body in \"FORM\"/\"BODY\": the file ends"},
             Case{Form("ILBM", {Chunk("GRAB", Bytes(8))}, 16),
                  "the last chunk in \"FORM\": it is larger than its container"},
             Case{Form("ILBM", {Chunk("BODY", Bytes(4), 0x80000000)}),
                  "the size in \"FORM\"/\"BODY\": 2147483648 bytes; less than 2147483648 are read"},
             Case{Truncated(Form("ILBM", {Chunk("BODY", Bytes(5))}), 1),
                  "the pad byte in \"FORM\"/\"BODY\": the file ends"},
             Case{Form("ILBM", {Bytes{'B', 'O'}}), "the id of a chunk in \"FORM\": its container ends"},
             Case{Nested(DEEPEST_CONTAINER + 1, "LIST"),
                  "a container: it is the 4097th one inside another; 4096 are read"},
             Case{{'F'}, "byte 0, the outermost id: the file ends"},
         })
        EXPECT_NE(Reason(c.file).find(c.reason), std::string::npos)
            << m_strError << "instead of " << c.reason;
}

TEST_F(Describe, AFileThatCannotBeOpenedPrintsNothing) {
    std::filesystem::create_directory(m_folder + "/folder");
    testing::internal::CaptureStderr();
    EXPECT_EQ(DescribeFile(m_folder + "/folder", stdout), DescribeResult::CannotBeOpened);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), m_folder + "/folder: It is a folder\n");
}

}  // namespace
