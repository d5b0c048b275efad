#include "document/vistrel_doc.h"
#include "framework/core/exception.h"
#include "support/iff_builder.h"
#include "support/memory_limit.h"
#include "support/psd_builder.h"
#include "support/table.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>

namespace {

// Rules that some refusal of these tests was for.
std::set<Rule>& Seen() {
    static std::set<Rule> seen;
    return seen;
}

const std::string OPENS = "it opens";

// What the user is told of bytes that are refused.
std::string ReasonFor(
    const Bytes& bytes, const std::function<void(MemoryStream&)>& spoil = [](auto&) {}) {
    MemoryStream source(bytes);
    spoil(source);
    CVistrelDoc document;
    try {
        document.Serialize(source.archive);
        return OPENS;
    } catch (const CArchiveException&) {
    }
    Seen().insert(document.m_Psd.GetFinding().rule);
    Seen().insert(document.m_Iff.GetFinding().rule);
    return document.GetRefusalReason();
}

void ExpectPsd(const PsdFields& loads, const PsdFields& refused, const std::string& strReason) {
    EXPECT_EQ(ReasonFor(Psd(loads)), OPENS) << "beside: " << strReason;
    EXPECT_EQ(ReasonFor(Psd(refused)), "The Photoshop reader stopped at " + strReason);
}

PsdFields Layer(const PsdLayerFields& layer) { return {.layers = {layer}}; }

PsdFields Channel(const Bytes& data, i32 nExcess = 0, i32 nBottom = 1, i32 nRight = 1) {
    return Layer({.bottom = nBottom, .right = nRight, .channels = {{.data = data, .excess = nExcess}}});
}

// Records that lie over one another, each with many channels: every one leads back to its own start.
PsdFields Overlaid() {
    PsdLayerFields layer = {
        .channels = std::vector<PsdChannelFields>(60, {.data = RawData({1})}), .ranges = Bytes(8 + 60 * 8)};
    const i32 size = static_cast<i32>(LayerRecord(layer).size());
    layer.rangesExcess = -(size - 4 + 6);  // to the length of the layers, whose zeroes make an empty name
    layer.extraExcess = -size;
    return {.layers = {layer}, .layerCount = 32767};
}

void RefusePhotoshopHeadersAndSections() {
    for (const auto& [loads, refused, reason] : Table<PsdFields, PsdFields, const char*>{
             {{.version = 1}, {.version = 2}, "byte 4, header: version 2; version 1 is read"},
             {{.channels = 24}, {.channels = 25}, "byte 12, header: 25 channels; 1 to 24 are read"},
             {{.channels = 1}, {.channels = 0}, "byte 12, header: 0 channels; 1 to 24 are read"},
             {{.channels = 1}, {.channels = 0xFFFF}, "byte 12, header: -1 channels; 1 to 24 are read"},
             {{.rows = 30000}, {.rows = 30001}, "byte 14, header: 30001 rows; 1 to 30000 are read"},
             {{.rows = 1}, {.rows = 0}, "byte 14, header: 0 rows; 1 to 30000 are read"},
             {{.columns = 30000}, {.columns = 30001}, "byte 18, header: 30001 columns; 1 to 30000 are read"},
             {{.columns = 1}, {.columns = 0}, "byte 18, header: 0 columns; 1 to 30000 are read"},
             {{.depth = 16}, {.depth = 32}, "byte 22, header: 32 bits a sample; 1, 8 or 16 are read"},
             {{.mode = 4}, {.mode = 5}, "byte 24, header: colour mode 5; 0 to 4 and 7 to 9 are read"},
             {{.mode = 7}, {.mode = 6}, "byte 24, header: colour mode 6; 0 to 4 and 7 to 9 are read"},
             {{.mode = 9}, {.mode = 10}, "byte 24, header: colour mode 10; 0 to 4 and 7 to 9 are read"},
             {{.mode = 2, .colourData = Bytes(768)}, {.mode = 2, .colourData = Bytes(767)},
                 "byte 26, colour mode data: 767 bytes of palette; 768 are read"},
             {{.colourData = Bytes(769)}, {.mode = 2, .colourData = Bytes(769)},
                 "byte 26, colour mode data: 769 bytes of palette; 768 are read"},
             {{.colourData = Bytes(2)}, {.colourData = Bytes(2), .colourExcess = 100},
                 "byte 43, colour mode data: the file ends"},
             {{.resources = {{}, {}}}, {.resources = {{}, {.signature = "8BIN"}}},
                 "byte 46, resource 1: no 8BIM at its start"},
             {{.resources = {{.data = Bytes(16777215)}}}, {.resources = {{.data = Bytes(16777216)}}},
                 "byte 42, resource 0: 16777216 bytes; less than 16777216 are read"},
             {{.resources = {{.id = 1006, .data = {1, 'a', 1, 'b'}}}},
                 {.resources = {{.id = 1006, .data = {1, 'a', 1}}}},
                 "byte 42, resource 0: its names do not end with its 3 bytes"},
             {{.resources = {{}}}, {.resources = {{}}, .resourcesExcess = -1},
                 "byte 30, image resources: it has 11 bytes, its parts take 12"},
             {{.resources = {{}}}, {.resources = {{}}, .resourcesExcess = 1},
                 "byte 46, resource 1: no 8BIM at its start"},
             {{.layers = {{}}, .layerPad = {9}}, {.layers = {{}}, .layerPad = {0, 0}},
                 "byte 38, layer information: it is padded by 2 bytes; 0 to 1 are read"},
             {{.layers = {{}}}, {.layers = {{}}, .layersExcess = -1},
                 "byte 38, layer information: it has 47 bytes, its parts take 48"},
             // The next field's first byte is taken for padding.
             {{.layers = {{}}}, {.layers = {{}}, .layersExcess = 1}, "byte 97, composite: the file ends"},
             {{.globalMasks = Bytes(28), .samples = Bytes(20)}, {.globalMasks = Bytes(16), .samples = Bytes(20)},
                 "byte 42, global layer mask: it has 16 bytes, its parts take 28"},
         })
        ExpectPsd(loads, refused, reason);
}

void RefuseLayers() {
    const auto masked = [](i32 nBottom, i32 nRight, const Bytes& samples) {
        return Layer(
            {.channels = {{.id = -2, .data = RawData(samples)}}, .mask = ByteBuilder().U32(4, 9, nBottom, nRight, 0)});
    };
    const Bytes packed = PackedData({{0xFF, 7}, {0xFF, 7}, {0xFF, 7}}), longest = PackedData({{0x80, 7}, {0x80, 7}});
    for (const auto& [loads, refused, reason] : Table<PsdFields, PsdFields, const char*>{
             {Layer({}), Layer({.signature = "8BIN"}), "byte 62, layer record 0: no 8BIM before the blend mode"},
             {Layer({.mask = Bytes(20)}), Layer({.mask = Bytes(19)}),
                 "byte 78, layer record 0: layer mask data of 19 bytes; 0 or 20 are read"},
             {Layer({.mask = Bytes(20)}), Layer({.mask = Bytes(36)}),
                 "byte 78, layer record 0: layer mask data of 36 bytes; 0 or 20 are read"},
             {Layer({.name = "abcd"}), Layer({.name = "abcd", .extraExcess = -1}),
                 "byte 74, layer record 0: 15 bytes of extra data; its fields take 16"},
             {Layer({.name = "abc"}), Layer({.name = "abc", .extraExcess = -1}),
                 "byte 74, layer record 0: 11 bytes of extra data; its fields take 12"},
             {Layer({}), Overlaid(),
                 "byte 60, layer record 6: the channels up to it take 1260 bytes of image data or more; the file has "
                 "1125"},
             {Layer({.top = 9, .bottom = 10}), Layer({.top = 10, .bottom = 10}),
                 "byte 44, layer 0: 0 rows; 1 to 30000 are read"},
             {Layer({.top = 0x7FFFFFFF, .bottom = -0x7FFFFFFE}), Layer({.top = 1, .bottom = 0}),
                 "byte 44, layer 0: -1 rows; 1 to 30000 are read"},
             {Layer({.top = -30000, .bottom = 0}), Layer({.top = -30000, .bottom = 1}),
                 "byte 44, layer 0: 30001 rows; 1 to 30000 are read"},
             {Layer({.right = 30000}), Layer({.right = 30001}), "byte 48, layer 0: 30001 columns; 1 to 30000 are read"},
             {Layer({.right = 1}), Layer({.right = 0}), "byte 48, layer 0: 0 columns; 1 to 30000 are read"},
             {masked(5, 11, {1, 2}), masked(4, 11, {}), "byte 88, the mask of layer 0: 0 rows; 1 to 30000 are read"},
             {masked(5, 11, {1, 2}), masked(5, 9, {}), "byte 92, the mask of layer 0: 0 columns; 1 to 30000 are read"},
             {masked(5, 30009, Bytes(30000)), masked(5, 30010, Bytes(30001)),
                 "byte 92, the mask of layer 0: 30001 columns; 1 to 30000 are read"},
             {Channel({0, 0, 1}), Channel({0, 0, 1}, (1 << 24) - 3),
                 "byte 64, channel 0 of layer record 0: 16777216 bytes of image data; less than 16777216 are read"},
             {Channel({0, 0, 1}), Channel({0, 0, 1}, (1 << 24) - 4),
                 "byte 64, channel 0 of layer 0: 16777215 bytes of raw data; 3 are read"},
             {Channel({0, 0, 1}), Channel({0, 0, 1}, -1),
                 "byte 64, channel 0 of layer 0: 2 bytes of raw data; 3 are read"},
             {Channel({0, 0, 1}), Channel({0, 3, 1}),
                 "byte 96, channel 0 of layer 0: compression 3 (ZIP); 0 or 1 is read"},
             {Channel({0, 0, 1}), Channel({0xFF, 0xFF, 1}),
                 "byte 96, channel 0 of layer 0: compression -1; 0 or 1 is read"},
             {Channel(packed, 0, 3, 2), Channel(packed, 1, 3, 2),
                 "byte 64, channel 0 of layer 0: 15 bytes of PackBits data; its row lengths make 14"},
             {Channel(packed, 0, 3, 2), Channel(packed, -1, 3, 2),
                 "byte 64, channel 0 of layer 0: 13 bytes of PackBits data; its row lengths make 14"},
             {Channel(longest, 0, 2, 129), Channel(longest, 0, 2, 130),
                 "byte 98, channel 0 of layer 0: its PackBits rows have 4 bytes; they take 5 or more"},
             {Channel(packed, 0, 3, 2), Channel({0, 1, 0, 2, 0, 3, 0, 1, 0xFF, 7, 0xFF, 7, 0xFF, 7}, 0, 3, 2),
                 "byte 106, row 1 of channel 0 of layer 0: it does not unpack to its width from 3 bytes"},
         })
        ExpectPsd(loads, refused, reason);
}

void RefuseComposites() {
    const auto composite = [](u32 nColumns, u32 nDepth, u32 nCompression, Bytes samples) -> PsdFields {
        return {.rows = 2, .columns = nColumns, .depth = nDepth, .compression = nCompression, .samples = samples};
    };
    const PsdFields raw = composite(2, 8, 0, {1, 2, 3, 4}), words = composite(1, 16, 0, {1, 2, 3, 4});
    const PsdFields bits = composite(9, 1, 0, {1, 2, 3, 4}),
                    packed = composite(3, 8, 1, {0, 2, 0, 2, 0xFE, 1, 0xFE, 2});
    PsdFields two = packed, moved = packed;
    two.channels = moved.channels = 2;
    two.samples = {0, 2, 0, 2, 0, 2, 0, 2, 0xFE, 1, 0xFE, 2, 0xFE, 3, 0xFE, 4};
    moved.samples = {0, 2, 0, 2, 0, 3, 0, 1, 0xFE, 1, 0xFE, 2, 0xFE, 3, 0xFE, 4};
    for (const auto& [loads, refused, reason] : Table<PsdFields, PsdFields, const char*>{
             {raw, composite(2, 8, 0, {1, 2, 3}), "byte 43, composite: the file ends"},
             {words, composite(1, 16, 0, {1, 2, 3}), "byte 43, composite: the file ends"},
             {bits, composite(9, 1, 0, {1, 2, 3}), "byte 43, composite: the file ends"},
             {packed, composite(3, 8, 1, {0, 2, 0, 2, 0xFE, 1, 0xFE}), "byte 47, composite: the file ends"},
             {packed, composite(3, 8, 1, {0, 0, 0, 0}),
                 "byte 40, composite: its PackBits rows have 0 bytes; they take 1 or more"},
             {two, moved, "byte 52, row 0 of channel 1 of the composite: it does not unpack to its width from 3 bytes"},
             {packed, composite(3, 8, 1, {0, 2, 0, 2, 0xFE, 1, 2, 7}),
                 "byte 46, row 1 of channel 0 of the composite: it does not unpack to its width from 2 bytes"},
             {raw, composite(2, 8, 2, {1, 2, 3, 4}), "byte 38, composite: compression 2 (ZIP); 0 or 1 is read"},
             {raw, composite(2, 8, 4, {1, 2, 3, 4}),
                 "byte 38, composite: compression 4 with 8 bits a sample; 0, or 1 with 8 bits, is read"},
             {words, composite(1, 16, 1, {0, 2, 0, 2, 0, 7, 0, 7}),
                 "byte 38, composite: compression 1 with 16 bits a sample; 0, or 1 with 8 bits, is read"},
             {bits, composite(2, 1, 1, {0, 2, 0, 2, 0xFF, 7, 0xFF, 7}),
                 "byte 38, composite: compression 1 with 1 bits a sample; 0, or 1 with 8 bits, is read"},
             {{.layers = {{}}}, {.layers = {{}}, .tagged = TaggedBlock("abcd", {})},
                 "byte 94, composite: tagged blocks stand before it"},
         })
        ExpectPsd(loads, refused, reason);
}

void RefuseIffFiles() {
    const u32 deepest = STRICT.nDeepestContainer;
    const Bytes body = Form("ILBM", {Body(Bytes(5))}), wrapping = Chunk("GRAB", Bytes(4), 0x7FFFFFFE);
    for (const auto& [loads, refused, reason] : Table<Bytes, Bytes, const char*>{
             {Nested(deepest, "LIST"), Nested(deepest + 1, "LIST"),
                 R"(byte 49152, the container in "LIST"/"LIST"/"LIST"/.../"LIST"/"LIST"/"LIST": )"
                 "4097 containers one inside another; 4096 are read"},
             {body, Form("ILBM", {Body(Bytes(4), 0x80000000)}),
                 R"(byte 16, the size in "FORM"/"BODY": 2147483648 bytes; at most 2147483647 are read)"},
             {body, Form("ILBM", {Chunk("CRNG", Bytes(6), 8)}),
                 R"(byte 16, the size in "FORM"/"CRNG": 8 bytes; its container has 6 left)"},
             {List("ILBM", {body}), List("ILBM", {Form("ILBM", {Bmhd({}), Body(Bytes(4))}, 46)}),
                 R"(byte 16, the size in "LIST"/"FORM": 46 bytes; its container has 44 left)"},
             {body, Form("ILBM", {wrapping, wrapping}, 0x7FFFFFFE),
                 R"(byte 16, the size in "FORM"/"GRAB": 2147483646 bytes; its container has 2147483634 left)"},
             {Form("ILBM", {Chunk("BMHD", Bytes(24))}), Form("ILBM", {Chunk("BMHD", Bytes(19))}),
                 R"(byte 16, the body in "FORM"/"BMHD": 19 bytes are too few for it)"},
             {Chunk("FORM", {'I', 'L', 'B', 'M'}), Chunk("FORM", {'I', 'L', 'B'}),
                 R"(byte 4, the type in "FORM": 3 bytes are too few for it)"},
             {body, Form("ILBM", {Body(Bytes(5))}, 17),
                 R"(byte 4, the pad byte in "FORM"/"BODY": its container of 17 bytes ends)"},
             {body, Form("ILBM", {Bytes{'B', 'O', 'D'}, Bytes{0}}, 7),
                 R"(byte 4, the id of a chunk in "FORM": its container of 7 bytes ends)"},
             {body, Form("ILBM", {Bytes{'B', 'O', 'D', 'Y', 0, 0}}),
                 R"(byte 4, the size in "FORM"/"BODY": its container of 10 bytes ends)"},
             {Form("ILBM", {S3tc({.data = Bytes(8), .claimedSize = 3})}),
                 Form("ILBM", {S3tc({.data = Bytes(8), .claimedSize = 9})}),
                 R"(byte 38, the body in "FORM"/"S3TC": 9 bytes of blocks; the chunk has 8 left)"},
             {body, Truncated(body, 1), R"(byte 25, the pad byte in "FORM"/"BODY": the file ends)"},
             {body, Truncated(body, 2), R"(byte 24, the body in "FORM"/"BODY": the file ends)"},
         }) {
        EXPECT_EQ(ReasonFor(loads), OPENS) << "beside: " << reason;
        EXPECT_EQ(ReasonFor(refused), std::string("The IFF reader stopped at ") + reason);
    }
    // Neither reader's.
    for (const Bytes& bytes : {Bytes{}, Bytes{'8'}, Bytes{'F', 'O'}, Bytes(3000, 'x'), Container("PROP", "ILBM", {})})
        EXPECT_EQ(ReasonFor(bytes), "") << bytes.size();
}

void RefuseWhatTheSourceOrTheMachineLacks() {
    const Bytes body = Form("ILBM", {Body(Bytes(3000))}), text(5000, 'x'), psd = Psd({.rows = 1000});
    const auto failsAt = [](u64 nRead) { return [=](MemoryStream& s) { s.file.m_reads.fault.nAt = nRead; }; };
    const auto claims = [](u64 nLength) { return [=](MemoryStream& s) { s.file.m_nClaimedLength = nLength; }; };
    const std::string failed = "The file cannot be read: Input/output error";
    EXPECT_EQ(ReasonFor(psd, failsAt(1)), failed);
    EXPECT_EQ(ReasonFor(body, failsAt(1)), failed) << "inside the body";
    EXPECT_EQ(ReasonFor(text, failsAt(0)), failed);
    for (const Bytes& bytes : {psd, body, text})
        EXPECT_EQ(ReasonFor(bytes, claims(1ull << 32)), "The file is too large; at most 4294967295 bytes are read");
    EXPECT_EQ(ReasonFor(body, claims(0x7FFFFFFF)), OPENS);
    EXPECT_EQ(ReasonFor(body, claims(0x80000000)),
        "The IFF reader stopped at byte 0, the outermost id: the file has 2147483648 bytes; at most 2147483647 are "
        "read");
    const Bytes channel = Psd(Channel(RawData(Bytes(9000)), 0, 1, 9000));
    const std::string lacking = "there is not enough memory for it. It takes 8.8 KiB; ";
    const MemoryLimit limit(7999);
    EXPECT_EQ(ReasonFor(psd),
        "The Photoshop reader stopped at byte 40, composite: " + lacking + "7.8 KiB is left of the limit");
    EXPECT_TRUE(
        ReasonFor(channel).starts_with("The Photoshop reader stopped at byte 98, channel 0 of layer 0: " + lacking));
}

TEST(Refusal, EveryRuleHasItsPositionAndItsReason) {
    RefusePhotoshopHeadersAndSections();
    RefuseLayers();
    RefuseComposites();
    RefuseIffFiles();
    RefuseWhatTheSourceOrTheMachineLacks();
    for (u32 rule = 1; rule < static_cast<u32>(Rule::Count); ++rule)
        EXPECT_TRUE(Seen().contains(static_cast<Rule>(rule))) << "rule " << rule;
}

}  // namespace
