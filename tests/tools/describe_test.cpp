#include "tools/describe/describe.h"

#include "support/failing_new.h"
#include "support/has.h"
#include "support/iff_builder.h"
#include "support/memory_limit.h"
#include "support/psd_builder.h"
#include "support/table.h"
#include "support/temp_folder.h"
#include "tools/common/messages.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

struct Printed {
    std::string out;
    std::string error;  // what is said on standard error
};

template <typename Call>
Printed WhatPrints(const Call& call) {
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    call();
    return {testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
}

// What the tool prints for a file of these bytes.
Printed Described(const Bytes& bytes, DescribeResult expected = DescribeResult::Accepted,
    Tolerance tolerance = Tolerance::None, const std::string& name = "file") {
    const TempFolder folder;
    const std::string path = folder.Write(bytes, name);
    return WhatPrints([&] { EXPECT_EQ(DescribeFile(path, stdout, tolerance), expected); });
}

// The entry of a channel whose picture is there and valid, one row high.
std::string ChannelJson(const std::string& strName, u32 nWidth, u32 nColours, const char* pszCrc, const char* pszSums) {
    const std::string width = std::to_string(nWidth), colours = std::to_string(nColours);
    return R"({"name":")" + strName + R"(","picture":{"bitmap":true,"colours":)" + colours + R"(,"crc":")" + pszCrc +
           R"(","height":1,"info":")" + width + "x1x" + colours + R"(","sum":[)" + pszSums +
           R"(],"valid":true,"width":)" + width + "}}";
}

TEST(Describe, AnIffDocument) {
    const Printed printed =
        Described(Form("ILBM", {Bmhd({.width = 2, .height = 1}), Cmap({BLACK, {1, 2, 3}}), Chunk("TRAN", Bytes(8, 1)),
                                   Alph({.width = 2, .height = 1, .data = {0x40}}), Chunk("GRAB", {0, 1, 0xFF, 2}),
                                   Chunk("\"\\\x7F\xE9", ByteBuilder().Text("123456789")), Body({0x80})}),
            DescribeResult::Accepted, Tolerance::None, "n\xC3\xA9");
    EXPECT_EQ(printed.out,
        R"({"accepted":"iff","file":"n\u00c3\u00a9","iff":{"children":[)"
        R"({"children":[],"fields":[2,1,0,0,1,0,0,0,0,10,11,2,1],"id":"BMHD","type":null,"unknown":false},)"
        R"({"children":[],"fields":[2,"1b3ff8ac"],"id":"CMAP","type":null,"unknown":false},)"
        R"({"children":[],"fields":[1,257,257,1,1,1],"id":"TRAN","type":null,"unknown":false},)"
        R"({"children":[],"fields":[2,1,1,0,1,"a4deae1d"],"id":"ALPH","type":null,"unknown":false},)"
        R"({"children":[],"fields":[1,65282],"id":"GRAB","type":null,"unknown":false},)"
        R"({"children":[],"fields":[9,"cbf43926"],"id":"\u0022\u005c\u007f\u00e9","type":null,"unknown":true},)"
        R"({"children":[],"fields":[1,"3fba6cad"],"id":"BODY","type":null,"unknown":false}],)"
        R"("fields":[],"id":"FORM","type":"ILBM","unknown":false},"layer_list":[{"channels":[)" +
            ChannelJson("Composite", 2, 2, "12eb8e88", "1,2,3") + "," +
            ChannelJson("Alpha", 2, 2, "de1cca43", "1,1,1") +
            R"(],"name":"Image"}],"psd":null})"
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
        EXPECT_TRUE(Has(Described(bytes).out, part)) << part;
}

// A bitmap of 9 by 1 pixels with one layer of 2 by 1 and one channel.
PsdFields Bitmap() {
    PsdLayerFields layer = {.top = 5, .left = -1, .bottom = 6, .right = 1, .channels = {{.data = RawData({5, 6})}}};
    layer.opacity = 254;
    layer.clipping = 0xFF;
    layer.flags = 0xF0;
    layer.name = "nm";
    layer.mask = ByteBuilder().U32(1, 2, 3, 4).U8(0xFE, 0xFD, 0, 0);
    layer.ranges = ByteBuilder().Text("srcedestSRC0DST0");
    PsdFields fields = {.columns = 9, .depth = 1, .mode = PSD_BITMAP, .layers = {layer}, .layerPad = {0}};
    fields.resources = {{.id = 1006, .data = {1, 'm'}}};
    fields.globalMasks = ByteBuilder().U16(0xFFFE).Text("rrggbbaa").U16(0x1234).U8(128, 0);
    fields.samples = Bytes{0x80, 0};
    return fields;
}

TEST(Describe, APhotoshopDocument) {
    EXPECT_EQ(Described(Psd(Bitmap())).out,
        R"({"accepted":"psd","file":"file","iff":null,"layer_list":[{"channels":[)" +
            ChannelJson("Composite", 9, 0, "65668e51", "2040,2040,2040") + "," +
            ChannelJson("Black", 9, 0, "65668e51", "2040,2040,2040") + R"(],"name":"Image"},{"channels":[)" +
            ChannelJson("Composite", 2, 0, "e5824ca2", "11,0,0") + "," +
            ChannelJson("0: Red", 2, 0, "a5853153", "11,11,11") +
            R"(],"name":"nm"}],)"
            R"("psd":{"channels":1,"depth":1,"global_masks":[{"colour":"7272676762626161","colour_space":65534,"kind":128,"opacity":4660}],)"
            R"("height":1,"layers":[{"blend_key":"norm","channels":[{"dest_range":"44535430","id":0,"length":4,"source_range":"53524330"}],)"
            R"("clipping":-1,"dest_range":"64657374","flags":240,"mask":{"colour":254,"flags":253,"rect":[1,2,3,4]},)"
            R"("name":"nm","opacity":254,"rect":[5,-1,6,1],"source_range":"73726365"}],"merged_alpha":false,"mode":0,"palette":null,)"
            R"("resources":[{"crc":null,"id":1006,"name":"","names":["m"],"size":2}],"width":9}})"
            "\n");
}

constexpr const char* NOTHING = R"({"accepted":"none","file":"file","iff":null,"layer_list":null,"psd":null})"
                                "\n";

TEST(Describe, WhyAFileIsRefused) {
    for (const auto& [bytes, photoshop, iff] : Table<Bytes, std::string, std::string>{
             {Psd({.version = 2}), "stopped at byte 4, header: version 2; version 1 is read",
                 R"(stopped at byte 0, the outermost id: "8BPS"; FORM, LIST or CAT is read)"},
             {{'8', 'B'}, "stopped at byte 2, header: the file ends",
                 "not asked, since the first had come to no good end"},
         }) {
        const Printed printed = Described(bytes, DescribeResult::Refused);
        EXPECT_EQ(printed.out, NOTHING);
        const std::string reasons = ": refused. Photoshop reader: " + photoshop + "; IFF reader: " + iff + "\n";
        EXPECT_TRUE(printed.error.ends_with(reasons)) << printed.error << "instead of " << reasons;
    }
}

TEST(Describe, WhatWasPassedOver) {
    PsdFields broken = Bitmap();
    broken.layers.insert(broken.layers.end(), 2, {.right = 0});
    broken.tagged = {1};
    const Bytes chunky =
        Form("PBM ", {Bmhd({.width = 2, .height = 1, .planes = 8}), Cmap({BLACK, WHITE}), Body({0, 0})});
    for (const auto& [bytes, strict, passed] : Table<Bytes, DescribeResult, std::string>{
             {Psd(broken), DescribeResult::Refused, "[\"empty layers (2)\",\"tagged blocks\"],\"psd\":{"},
             {Psd(Bitmap()), DescribeResult::Accepted, R"([],"psd":{)"},
             {chunky, DescribeResult::Accepted, R"(["one byte a pixel"],"psd":null})"},
         }) {
        EXPECT_FALSE(Has(Described(bytes, strict).out, "passed_over")) << passed;
        const std::string out = Described(bytes, DescribeResult::Accepted, Tolerance::Always).out;
        EXPECT_TRUE(Has(out, R"(],"passed_over":)" + passed));
    }
    // The tree that is printed is the picture's.
    EXPECT_TRUE(Has(Described(chunky).out, R"("id":"BODY","type":null,"unknown":true)"));
    const std::string out = Described(chunky, DescribeResult::Accepted, Tolerance::Always).out;
    EXPECT_TRUE(Has(out, R"("id":"BODY","type":null,"unknown":false)"));

    const Printed refused = Described(Psd({.version = 3}), DescribeResult::Refused, Tolerance::Always);
    EXPECT_TRUE(Has(refused.out, R"("layer_list":null,"passed_over":[],"psd":null})"));
    EXPECT_TRUE(Has(refused.error, "version 3; 1 and 2 are read")) << "by the tolerant rules";
}

TEST(Describe, AFileThatCannotBeOpenedPrintsNothing) {
    const Printed printed = WhatPrints([] { EXPECT_EQ(DescribeFile("/", stdout), DescribeResult::CannotBeOpened); });
    EXPECT_EQ(printed.out, "");
    EXPECT_EQ(printed.error, "/: It is a folder\n");
    EXPECT_EQ(PlainText("a\n\x1B[1m\x7F\xC2\x9B\xC3\x9B \x9B"), "a??[1m???\xC3\x9B ?");
}

// Whether the brackets outside strings are in pairs and the line ends with them.
bool IsFinished(const std::string& strLine) {
    std::string open;
    bool quoted = false;
    for (const char c : strLine) {
        if (c == '"') quoted = !quoted;
        if (!quoted && (c == '{' || c == '[')) open += c == '{' ? '}' : ']';
        if (quoted || (c != '}' && c != ']')) continue;
        if (open.empty() || open.back() != c) return false;
        open.pop_back();
    }
    return open.empty() && !quoted && strLine.ends_with("}\n") && !Has(strLine, ":,");
}

TEST(Describe, TheLineIsFinishedWhateverMemoryLacks) {
    const TempFolder folder;
    PsdFields fields = Bitmap();
    fields.layers.push_back({.name = "a name that is too long to be kept in place"});
    for (const Bytes& bytes : {Form("ILBM", {Bmhd({.width = 2, .height = 1}), Body(Bytes(2000))}), Psd(fields)}) {
        const std::string path = folder.Write(bytes);
        bool failed = true;
        u32 partly = 0;
        for (u64 succeeding = 0; failed; ++succeeding) {
            DescribeResult result = {};
            const auto describe = [&] {
                const FailingNew failing(succeeding, false);
                result = DescribeFile(path, stdout);
                failed = FailingNew::HasFailed();
            };
            const auto [text, error] = WhatPrints(describe);
            EXPECT_EQ(error.empty(), !failed);
            if (result == DescribeResult::CannotBeOpened) continue;
            EXPECT_TRUE(IsFinished(text)) << text << succeeding;
            partly += result == DescribeResult::NotWhole && !Has(text, "\"none\"");
            ASSERT_LT(succeeding, 1000u);
        }
        EXPECT_GT(partly, 0u);
    }
    const MemoryLimit limit(1000);
    const Printed printed = Described(Form("ILBM", {Body(Bytes(2000))}), DescribeResult::NotWhole);
    EXPECT_EQ(printed.out, NOTHING);
    EXPECT_TRUE(Has(printed.error, ": There is not enough memory. It takes 2.0 KiB; "));
}

TEST(Describe, NoMorePicturesAreBuiltThanPixelsAllow) {
    const TempFolder folder;
    const std::string path = folder.Write(Psd({.channels = 2, .rows = 4, .columns = 5}));
    const std::string nothing = R"({"bitmap":null,"colours":null,"crc":null,"height":null,"info":null,"sum":null,)"
                                R"("valid":null,"width":null})";
    for (const auto& [most, built] : Table<u64, u32>{{0, 1}, {19, 1}, {20, 2}, {39, 2}, {40, 3}}) {
        const auto [out, error] = WhatPrints([&, limit = most] {
            EXPECT_EQ(DescribeFile(path, stdout, Tolerance::None, limit), DescribeResult::Accepted);
        });
        u32 pictures = 0;
        for (size_t at = 0; (at = out.find("\"bitmap\":true", at)) != std::string::npos; ++at) ++pictures;
        EXPECT_EQ(pictures, built) << most;
        EXPECT_EQ(bool{Has(out, nothing)}, most < 40) << most;
        EXPECT_EQ(std::count(error.begin(), error.end(), '\n'), most < 40 ? 1 : 0) << error;
    }
    // A bitmap that memory refuses counts as well.
    const MemoryLimit limit(40 + 8 * 8 + 2 * 8 + 31);  // planes and their tables, and not quite the bitmap
    const Printed printed = WhatPrints([&] { DescribeFile(path, stdout, Tolerance::None, 19); });
    EXPECT_TRUE(Has(printed.error, "passed 19 pixels"));
}

}  // namespace
