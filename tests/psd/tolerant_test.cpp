// Documents that break rules: what the tolerant rules make of them, and of the same fault taken one step further.
#include "support/memory_limit.h"
#include "support/psd_builder.h"
#include "support/table.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>

namespace {

// Name, document, and what the tolerant rules make of it.
using Rows = Table<const char*, PsdFields, std::string>;

void ExpectOutcomes(const Rows& rows) {
    for (const auto& [name, fields, outcome] : rows) EXPECT_EQ(Outcome(Psd(fields)), outcome) << name;
}

// A document of one layer.
PsdFields Layer(const PsdLayerFields& layer) { return {.layers = {layer}}; }

PsdFields Channel(const Bytes& data, i32 bottom = 1, i32 right = 1) {
    return Layer({.bottom = bottom, .right = right, .channels = {{.data = data}}});
}

PsdFields Deep(u32 depth, const Bytes& data, i32 bottom = 1, i32 right = 1, i32 id = 0) {
    PsdFields fields = Layer({.bottom = bottom, .right = right, .channels = {{.id = id, .data = data}}});
    fields.depth = depth;
    return fields;
}

// Deep layers in blocks after the global masks, of which there are none.
PsdFields Tagged(const Bytes& blocks, u32 depth = 16) { return {.depth = depth, .tagged = blocks}; }

Bytes LayerOf(const Bytes& data) { return LayerInfo(Channel(data)); }

Bytes Floats(const std::vector<float>& values) {
    ByteBuilder bytes;
    for (const float value : values) bytes.U32(std::bit_cast<u32>(value));
    return bytes;
}

Bytes Joined(const Bytes& first, const Bytes& second) { return ByteBuilder().Append(first).Append(second); }

// Four edges, colour and flags: as much of a mask as counts.
Bytes Mask(i32 top, i32 left, i32 bottom, i32 right) { return ByteBuilder().U32(top, left, bottom, right).U16(0); }

const Bytes SEVEN = RawData({7}), TWO = RawData({1, 2});
const std::string NOT_DECODED = "channels that cannot be decoded |", NOT_READ = "layers that cannot be read |";
const std::string UNDECODED = NOT_DECODED + " (0:-) = 0";
constexpr i64 UPPER = i64{1} << 32;

TEST(Tolerant, Headers) {
    PsdFields large = Channel(PackedData({{0xFF, 7}, {1, 8, 9}}, true), 2, 2);
    large.version = 2;
    large.rows = 2;
    large.compression = 1;
    large.samples = ByteBuilder().U32(2, 2).U32(0x00050006);
    PsdFields sectionUpper = large, layersUpper = large, channelUpper = large, side = Layer({.right = 300000});
    sectionUpper.sectionExcess = layersUpper.layersExcess = channelUpper.layers[0].channels[0].excess = UPPER;
    side.version = 2;
    PsdFields longer = side;
    longer.layers[0].right = 300001;
    ExpectOutcomes({
        {"version 2", large, "version 2 | (0:7,7/8,9) = 5/6"},
        {"its section has 4 GiB more", sectionUpper, "refused: the file ends"},
        {"its layers have", layersUpper,
            "version 2; global mask of another length; layers that cannot be read | = 5/6"},
        {"its channel has", channelUpper,
            "version 2; 16 MiB and more in one piece; channels that cannot be decoded | (0:-) = 5/6"},
        {"version 3", {.version = 3}, "refused: version 3; 1 and 2 are read"},
        {"the most rows", {.version = 2, .rows = 300000}, "version 2 | = 300000 samples"},
        {"one more", {.version = 2, .rows = 300001}, "refused: 300001 rows; 1 to 300000 are read"},
        {"likewise of a layer", side, "version 2 | () = 0"},
        {"one more", longer, "version 2; layers that cannot be read | = 0"},
        {"of version 1", {.rows = 30001}, "refused: 30001 rows; 1 to 30000 are read"},
        {"as many as strictly", {.channels = 24}, " | = 24 planes"},
        {"more channels", {.channels = 25}, "more than 24 channels | = 25 planes"},
        {"the most", {.channels = 57}, "more than 24 channels | = 57 planes"},
        {"one more", {.channels = 58}, "refused: 58 channels; 1 to 57 are read"},
        {"33 bits", {.depth = 33}, "refused: 33 bits a sample; 1, 8, 16 or 32 are read"},
        {"data that passes the file", {.colourData = {1}, .colourExcess = 99}, "refused: the file ends"},
    });
}

TEST(Tolerant, Resources) {
    const PsdResourceFields good = {.id = 1}, foreign = {.signature = " ~IM", .id = 2};
    const auto flagged = [](const Bytes& data) -> PsdFields { return {.resources = {{.id = 1057, .data = data}}}; };
    ExpectOutcomes({
        {"any signature", {.resources = {foreign, good}}, "foreign resources | r2 r1 = 0"},
        {"0x1F", {.resources = {good, {.signature = "8BI\x1F"}, foreign}}, "foreign resources | r1 = 0"},
        {"0x7F",
            {.resources = {good,
                 {.signature = "\x7F"
                               "BIM"},
                 foreign}},
            "foreign resources | r1 = 0"},
        {"passes the end", {.resources = {good, {.data = {1, 2}, .excess = 2}}}, "foreign resources | r1 = 0"},
        {"a foreign one does", {.resources = {good, {.signature = "ZZZZ", .excess = 9}}}, "foreign resources | r1 = 0"},
        {"its names do", {.resources = {{.id = 1006, .data = {2, 'a'}}, good}}, "foreign resources | = 0"},
        {"its section does", {.resources = {good}, .resourcesExcess = 99}, "refused: the file ends"},
        {"16 MiB", {.resources = {{.data = Bytes(1 << 24)}}}, "16 MiB and more in one piece | r1000 = 0"},
        {"claimed", {.resources = {{.excess = 1 << 24}}}, "foreign resources; 16 MiB and more in one piece | = 0"},
        {"no merged picture", flagged({0, 0, 0, 1, 0}), "no merged picture | r1057 = 0"},
        {"there is one", flagged({0, 0, 0, 0, 1}), " | r1057 = 0"},
        {"nothing is said", flagged({0, 0, 0, 1}), " | r1057 = 0"},
    });
    // The length of a name passes the end, and a pad byte does.
    const Bytes name = ByteBuilder().Text("8BIM").U16(3).U8(255).Repeat(6, 'n');
    for (const Bytes& block : {name, Bytes(ByteBuilder().Text("8BIM").U16(3, 0).Block({1}))}) {
        ByteBuilder file;
        file.Append(Truncated(Psd({}), 11)).Block(block).U32(0).U16(0).U8(9);
        EXPECT_EQ(Outcome(file), "foreign resources | = 9");
    }
}

TEST(Tolerant, LayersAndTheirMasks) {
    const auto sized = [](i32 top, i32 left, i32 bottom, i32 right, const Bytes& mask = {}) -> PsdFields {
        return Layer({.top = top,
            .left = left,
            .bottom = bottom,
            .right = right,
            .channels = {{.data = RawData({1, 2, 3})}},
            .mask = mask,
            .name = "a"});
    };
    const auto masked = [](i32 id, const Bytes& mask, const Bytes& data) {
        return Layer({.channels = {{.id = id, .data = data}, {.data = SEVEN}}, .mask = mask});
    };
    constexpr i32 LEAST = std::numeric_limits<i32>::min(), MOST = std::numeric_limits<i32>::max();
    const std::string empty = "empty layers | a(0:-) = 0", other = "mask data of another length |";
    const std::string noMask = "empty masks | (-2:- 0:7) = 0";
    const Bytes mask = Mask(5, 5, 6, 7), full = Joined(mask, {9, 9});
    PsdFields user = sized(0, 0, 0, 0, Joined(Mask(0, 0, 1, 2), {0, 0}));
    user.layers[0].channels.push_back({.id = -2, .data = TWO});
    PsdFields unmasked = user;
    unmasked.layers[0].mask = Bytes(20);
    unmasked.layers.push_back({.right = 0});
    unmasked.layers.push_back({.channels = {{.data = SEVEN}}});
    ExpectOutcomes({
        {"no rows", sized(3, 0, 3, 1), empty},
        {"no columns", sized(0, 3, 1, 3), empty},
        {"inside out", sized(0, 1, 1, 0), empty},
        {"2^31 rows", sized(0, 0, LEAST, 1), empty},
        {"2^32 - 1 columns", sized(0, LEAST, 1, MOST), empty},
        {"2^31 - 1 rows", sized(0, 0, MOST, 1), NOT_READ + " = 0"},
        {"too many columns", sized(0, 0, 1, 30001), NOT_READ + " = 0"},
        {"a mask has its own size", user, "empty layers | a(0:- -2:1,2) = 0"},
        {"an empty one does not count", unmasked, "empty layers (2) | a(0:- -2:-) () (0:7) = 0"},
        {"empty mask", masked(-2, Bytes(20), TWO), noMask},
        {"inside out", masked(-2, Joined(Mask(0, 3, 1, 2), {0, 0}), TWO), noMask},
        {"too many rows", masked(-2, Joined(Mask(0, 0, 30001, 1), {0, 0}), TWO), NOT_DECODED + " (-2:- 0:7) = 0"},
        {"20 are the real mask's too", masked(-3, full, TWO), " | (-3:1,2 0:7) = 0"},
        {"18 bytes", masked(-2, mask, TWO), other + " (-2:1,2 0:7) = 0"},
        {"17 are no mask", masked(-2, Truncated(mask, 1), {0, 0, 5}), other + " (-2:5 0:7) = 0"},
        {"35 have one rectangle", masked(-3, Joined(full, Bytes(15)), TWO), other + " (-3:1,2 0:7) = 0"},
        {"36 have two", masked(-3, Joined(full, Truncated(Mask(0, 0, 3, 1), 2)), RawData({1, 2, 3})),
            other + " (-3:1/2/3 0:7) = 0"},
        {"the second is empty", masked(-3, Joined(full, Bytes(16)), TWO),
            "empty masks; mask data of another length | (-3:- 0:7) = 0"},
        {"the first is as ever", masked(-2, Joined(full, Bytes(17)), TWO), other + " (-2:1,2 0:7) = 0"},
    });
}

TEST(Tolerant, PartsThatPassTheirEnds) {
    const auto spoilt = [](auto spoil) {
        PsdFields fields = {.layers = {{.channels = {{.data = SEVEN}, {.id = 1, .data = RawData({8})}}, .name = "a"}}};
        fields.globalMasks = Bytes(14, 3);
        spoil(fields, fields.layers[0]);
        return fields;
    };
    const auto pad = [&](u32 size) { return spoilt([&](auto& f, auto&) { f.layerPad = Bytes(size, 0xAA); }); };
    const auto masks = [&](u64 size, i64 excess = 0) {
        return spoilt([&](auto& f, auto&) { f.globalMasks = Bytes(size, 3), f.globalMasksExcess = excess; });
    };
    const std::string all = " a(0:7 1:8) m3 = 0", noLayers = NOT_READ + " m3 = 0",
                      OTHER = "global mask of another length";
    ExpectOutcomes({
        {"one byte of padding", pad(1), " |" + all},
        {"two", pad(2), "padded layer information |" + all},
        {"the last channel loses one", spoilt([](auto& f, auto&) { f.layersExcess = -1; }),
            OTHER + "; channels that cannot be decoded | a(0:7 1:-) m3 = 0"},
        {"a channel that cannot be", spoilt([](auto&, auto& l) { l.channels[0].data[1] = 4; }),
            NOT_DECODED + " a(0:- 1:8) m3 = 0"},
        {"of no bytes", spoilt([](auto&, auto& l) { l.channels[0].data.clear(); }), NOT_DECODED + " a(0:- 1:8) m3 = 0"},
        {"passes the layers", spoilt([](auto&, auto& l) { l.channels[0].excess = 4; }),
            "channels that cannot be decoded (2) | a(0:- 1:-) m3 = 0"},
        {"a record that passes them", spoilt([](auto&, auto& l) { l.extraExcess = 7; }), noLayers},
        {"its blend mode", spoilt([](auto&, auto& l) { l.signature = "8BIN"; }), noLayers},
        {"its ranges", spoilt([](auto&, auto& l) { l.rangesExcess = 5; }), noLayers},
        {"its mask", spoilt([](auto&, auto& l) { l.mask = Bytes(20), l.extraExcess = -10; }), noLayers},
        {"its name", spoilt([](auto&, auto& l) { l.name = std::string(9, 'n'), l.extraExcess = -3; }), noLayers},
        {"one layer too many", spoilt([](auto& f, auto&) { f.layerCount = 2; }), noLayers},
        {"the layers pass", spoilt([](auto& f, auto&) { f.layersExcess = 19; }),
            OTHER + "; layers that cannot be read | = 0"},
        {"the section passes", spoilt([](auto& f, auto&) { f.sectionExcess = 4; }), "refused: the file ends"},
        {"no room for layers", {.sectionExcess = 3, .samples = Bytes{5, 0, 0, 6}},
            OTHER + "; tagged blocks; layers that cannot be read | = 6"},
        {"no record fits", masks(13), OTHER + " | a(0:7 1:8) = 0"},
        {"one and a rest", masks(15), OTHER + " | a(0:7 1:8) m3 = 0"},
        {"two", masks(28), " | a(0:7 1:8) m3 m3 = 0"},
        {"that pass the section", masks(28, 14), OTHER + " | a(0:7 1:8) m3 m3 = 0"},
        {"none is there", {.hasGlobalMasks = false}, OTHER + " | = 0"},
        {"half a length is", {.tagged = {0, 0, 0}, .hasGlobalMasks = false}, OTHER + "; tagged blocks | = 0"},
        {"a block", {.tagged = TaggedBlock("abcd", {1})}, "tagged blocks | = 0"},
        {"whatever stands there", {.tagged = {9}}, "tagged blocks | = 0"},
    });
    // Whatever leads beyond the file.
    ExpectOutcomes({
        {"a record", {.layerCount = 1}, NOT_READ + " = 0"},
        {"half a record", {.layerCount = 1, .layerPad = ByteBuilder().Repeat(18, 0).Text("8BIM")}, NOT_READ + " = 0"},
        {"ranges", Layer({.channels = {{.data = SEVEN}}, .rangesExcess = 1 << 20}), NOT_READ + " = 0"},
    });
    EXPECT_EQ(Outcome(Truncated(Psd(Channel(SEVEN)), 2)), "composite that cannot be read | (0:7) = -");
    Bytes named = Psd(Layer({}));
    named[86] = 255;
    EXPECT_EQ(Outcome(named), NOT_READ + " = 0");
}

TEST(Tolerant, CompressedSamples) {
    const auto shorter = [](const Bytes& data, u64 count) { return Channel(Truncated(data, count), 2, 2); };
    const auto composite = [](u32 depth, u32 columns, const Bytes& data, u32 compression = 1) -> PsdFields {
        return {.columns = columns, .depth = depth, .compression = compression, .samples = data};
    };
    const auto kept = [](const PsdFields& layers, PsdFields fields) {
        fields.layers = layers.layers;
        return fields;
    };
    const std::string zip = "ZIP channels |", loose = "loose PackBits rows |",
                      depths = "PackBits of 1, 16 or 32 bits |";
    const std::string deep = "layers of more than 8 bits |", floats = "32 bits a sample; " + deep;
    const Bytes zipped = ZipData({1, 2, 3, 4});
    ExpectOutcomes({
        {"zipped", shorter(zipped, 0), zip + " (0:1,2/3,4) = 0"},
        {"more of it", Channel(ZipData({7, 8, 9}, 2, 9)), zip + " (0:7) = 0"},
        {"no checksum", shorter(zipped, 4), zip + " (0:1,2/3,4) = 0"},
        {"a sample less", shorter(zipped, 5), "ZIP channels; " + UNDECODED},
        {"too few of them", Channel(ZipData({1, 2, 3}), 2, 2), "ZIP channels; " + UNDECODED},
        {"no zip", Channel(Joined({0, 2}, Bytes(20))), "ZIP channels; " + UNDECODED},
        {"row by row", Channel(ZipData({250, 10, 3, 255}, 3), 2, 2), zip + " (0:250,4/3,2) = 0"},
        {"compression 4", Channel({0, 4, 7}), UNDECODED},
        {"raw samples left over", Channel(RawData({7, 8})), loose + " (0:7) = 0"},
        {"one too few", Channel(SEVEN, 1, 2), UNDECODED},
        {"packed ones left over", Channel(Joined(PackedData({{0, 7}}), {9})), loose + " (0:7) = 0"},
        {"one too few", Channel(Truncated(PackedData({{1, 7, 8}}), 1), 1, 2), UNDECODED},
        {"half a table", Channel({0, 1, 0}), UNDECODED},
        {"0x80, and packets cut", Channel(PackedData({{0x80, 0, 1, 0xF0, 2}, {5, 3, 4, 5}}), 2, 2),
            loose + " (0:1,2/3,4) = 0"},
        {"the rest of a row", Channel(PackedData({{0, 7, 9}, {0, 8}}), 2), loose + " (0:7/8) = 0"},
        {"a row one byte short", Channel(PackedData({{0, 7}, {2, 8, 9, 9}}), 2, 2), UNDECODED},
        {"16 bits", Deep(16, RawData({1, 255, 2, 0, 3, 128, 4, 0}), 2, 2), deep + " (0:1,2/3,4) = 0"},
        {"half of them", Deep(16, TWO, 1, 2), "layers of more than 8 bits; " + UNDECODED},
        {"packed", Deep(16, PackedData({{3, 1, 9, 2, 9}, {0xFD, 3}}), 2, 2), deep + " (0:1,2/3,3) = 0"},
        {"zipped", Deep(16, ZipData({1, 0, 255, 255, 3, 4, 255, 0}, 3), 2, 2),
            "ZIP channels; " + deep + " (0:1,0/3,2) = 0"},
        {"floats", Deep(32, RawData(Floats({0.5, 2})), 1, 2), floats + " (0:188,255) = 0"},
        {"transparency", Deep(32, PackedData({Joined({3}, Floats({0.5}))}), 1, 1, -1), floats + " (-1:128) = 0"},
        {"zipped", Deep(32, ZipData(Floats({0.25})), 1, 1, -1),
            "32 bits a sample; ZIP channels; " + deep + " (-1:64) = 0"},
        // Upper bytes first, each what it adds to the one before: 1/2, 1/4 and 1, 1/2.
        {"row by row",
            Deep(32, ZipData({0x3F, 0xFF, 0xC2, 0x80, 0x80, 0, 0, 0, 0x3F, 0, 0x41, 0x80, 0, 0, 0, 0}, 3), 2, 2, -1),
            "32 bits a sample; ZIP channels; " + deep + " (-1:128,64/255,128) = 0"},
        {"1 bit", composite(1, 9, {0, 3, 1, 0x55, 0x80}), depths + " = 1,0,1,0,1,0,1,0,0"},
        {"16 bits", composite(16, 2, {0, 2, 0xFD, 1}), depths + " = 257,257"},
        {"32 bits", composite(32, 1, Joined({0, 5, 3}, Floats({1}))), "32 bits a sample; " + depths + " = 255"},
        {"a byte short", composite(16, 2, {0, 2, 0xFE, 1}), "refused: it does not unpack to its width from 2 bytes"},
        {"loose", composite(8, 2, {0, 4, 0x80, 0xFE, 1, 9}), loose + " = 1,1"},
        {"zipped", composite(8, 1, {0, 2}, 2), "refused: compression 2 (ZIP); 0 or 1 is read"},
        {"with a layer", kept(Channel(SEVEN), composite(8, 1, {0, 2}, 2)), "composite that cannot be read | (0:7) = -"},
        {"compression 4", composite(8, 1, {}, 4), "refused: compression 4; 0 or 1 is read"},
        {"too short", composite(8, 2, {1}, 0), "refused: the file ends"},
        {"with a layer", kept(Channel(SEVEN), composite(8, 2, {1}, 0)), "composite that cannot be read | (0:7) = -"},
    });
    // 16 MiB of samples in one channel.
    const PsdFields piece = Channel(RawData(Bytes(4096 * 4096)), 4096, 4096);
    EXPECT_EQ(Outcome(Psd(piece), STRICT), "refused: 16777218 bytes of image data; less than 16777216 are read");
    EXPECT_EQ(Outcome(Psd(piece)), "16 MiB and more in one piece | (0:16777216 samples) = 0");
}

TEST(Tolerant, LayersInTaggedBlocks) {
    const Bytes words = LayerOf(RawData({5, 9})), block = TaggedBlock("Lr16", words);
    const std::string found = "layers of more than 8 bits; tagged blocks | (0:5) = 0", none = "tagged blocks | = 0";
    PsdFields twice = Deep(16, RawData({6, 9})), broken = Tagged(block);
    twice.tagged = block;
    broken.layerCount = 1;
    ExpectOutcomes({
        {"Lr16", Tagged(block), found},
        {"Lr32", Tagged(TaggedBlock("Lr32", LayerOf(RawData(Floats({1})))), 32),
            "32 bits a sample; layers of more than 8 bits; tagged blocks | (0:255) = 0"},
        {"another", Tagged(TaggedBlock("Lr08", words)), none},
        {"8B64", Tagged(TaggedBlock("Lr16", words, 0, false, "8B64")), found},
        {"another", Tagged(TaggedBlock("Lr16", words, 0, false, "8B65")), none},
        {"3 bytes between", Tagged(Joined(TaggedBlock("abcd", {1, 0, 0, 0}, -3), block)), found},
        {"4", Tagged(Joined(TaggedBlock("abcd", {1, 0, 0, 0, 0}, -4), block)), none},
        {"one passes the end", Tagged(Joined(TaggedBlock("abcd", {}, 99), block)), none},
        {"the layers do", Tagged(TaggedBlock("Lr16", words, 1)), "tagged blocks; " + NOT_READ + " = 0"},
        {"layers before cannot be read", broken, "layers of more than 8 bits; tagged blocks; " + NOT_READ + " = 0"},
        {"there are none", {.depth = 16, .layerCount = 0, .layerPad = {0, 0}}, "padded layer information | = 0"},
        {"there are layers before", twice, "layers of more than 8 bits; tagged blocks | (0:6) = 0"},
    });
    for (const char* const key :
        {"LMsk", "Lr16", "Lr32", "Layr", "Mt16", "Mt32", "Mtrn", "Alph", "FMsk", "lnk2", "FEid", "FXid", "PxSD"}) {
        PsdFields large = {.version = 2, .layers = {{.channels = {{.data = RawData({5, 9})}}}}};
        const Bytes layers = LayerInfo(large);
        const bool isLayers = key == std::string("Lr16") || key == std::string("Lr32");
        const auto outcome = [&](i64 excess, bool long8) {
            PsdFields fields = {.version = 2, .depth = 16};
            fields.tagged = Joined(TaggedBlock("abcd", {}, 0, true, "8B64"), TaggedBlock("abcd", {}));
            const Bytes before = TaggedBlock(key, isLayers ? layers : Bytes(4), excess, long8);
            fields.tagged = Joined(fields.tagged, Joined(before, TaggedBlock("Lr16", layers, 0, true)));
            return Outcome(Psd(fields));
        };
        EXPECT_EQ(outcome(0, true), "version 2; " + found) << key;
        const std::string after = isLayers ? "version 2; tagged blocks; " + NOT_READ + " = 0" : "version 2; " + none;
        EXPECT_EQ(outcome(UPPER, true), after) << key;
    }
}

TEST(Tolerant, UnicodeNames) {
    const auto named = [](std::vector<u32> units, i64 excess = 0, const Bytes& before = {}) {
        ByteBuilder text;
        text.U32(units.size() + static_cast<u64>(excess));
        for (const u32 unit : units) text.U16(unit);
        PsdFields fields = Layer({.name = "old", .extra = Joined(before, TaggedBlock("luni", text))});
        fields.layerPad = Bytes(2);
        const std::string outcome = Outcome(Psd(fields)), start = "padded layer information | ", end = "() = 0";
        return outcome.substr(start.size(), outcome.size() - start.size() - end.size());
    };
    for (const auto& [name, text] : Table<std::string, std::string>{
             {named({0x7F, 0x80, 0x7FF, 0x800, 0xFFFF}), "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"},
             {named({0xD800, 0xDC00, 0xDBFF, 0xDFFF}), "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
             {named({0xD83D, 'a', 0xDE00, 0xD800}),
                 "\xEF\xBF\xBD"
                 "a\xEF\xBF\xBD\xEF\xBF\xBD"},
             {named({0xD7FF, 0xD800, 0xD800, 0xDC01, 0xE000}), "\xED\x9F\xBF\xEF\xBF\xBD\xF0\x90\x80\x81\xEE\x80\x80"},
             {named({'a', 0, 'b'}), "a"},
             {named({0, 'b'}), "old"},
             {named({}), "old"},
             {named({'a'}, 1), "old"},
             {named({'a'}, i64{1} << 31), "old"},
             {named({'a', 'b'}, -1), "a"},
             {named({'a'}, 0, TaggedBlock("lsct", {1, 2, 3})), "a"},
             {named({'a'}, 0, TaggedBlock("lsct", {}, 99)), "old"},
         })
        EXPECT_EQ(name, text);
    // A count that passes the block is not that of the bytes behind it.
    PsdFields next = Layer({.name = "old"});
    next.layers[0].extra = Joined(TaggedBlock("luni", {0, 0, 0, 1}), TaggedBlock("abcd", {}));
    next.layerPad = Bytes(2);
    EXPECT_EQ(Outcome(Psd(next)), "padded layer information | old() = 0");
    EXPECT_EQ(Outcome(Psd(Layer(next.layers[0])), STRICT), " | old() = 0");
}

TEST(Tolerant, FloatsBecomeTheNearestShade) {
    constexpr float NONE = std::numeric_limits<float>::quiet_NaN(), MOST = std::numeric_limits<float>::infinity();
    std::vector<float> values = {0, -0.0f, -1, 1, 1.0f - 0x1p-24f, 1.5, NONE, -NONE, MOST, -MOST, 1e-45f, 0x1p-133f};
    Bytes light = {0, 0, 0, 255, 255, 255, 0, 0, 255, 0, 0, 0}, plain = light;
    for (u32 shade = 0; shade < 255; ++shade) {
        // From where on the next shade is nearer, or a little before.
        const double border = (shade + 0.5) / 255;
        const double linear = border <= 0.04045 ? border / 12.92 : std::pow((border + 0.055) / 1.055, 2.4);
        for (const u32 next : {0u, 1u}) {
            values.push_back(static_cast<float>(linear * (next ? 1.0001 : 0.9999)));
            light.push_back(static_cast<u8>(shade + next));
            plain.push_back(static_cast<u8>(255.0 * values.back() + 0.5));
        }
    }
    const u32 columns = static_cast<u32>(values.size());
    const Bytes row = Floats(values);
    for (const auto& [mode, colours] : Table<u32, u32>{{PSD_GREYSCALE, 1}, {PSD_RGB, 3}, {PSD_MULTICHANNEL, 0}}) {
        PsdFields fields = {.channels = 4, .columns = columns, .depth = 32, .mode = mode};
        fields.samples = Joined(Joined(row, row), Joined(row, row));
        const i32 right = static_cast<i32>(columns);
        for (const i32 id : {0, 4, -1})
            fields.layers.push_back({.right = right, .channels = {{.id = id, .data = RawData(row)}}});
        MemoryStream source(Psd(fields));
        PsdImage image;
        ASSERT_TRUE(image.LoadPsd(&source.stream, TOLERANT));
        EXPECT_EQ(image.m_nDepth, 8u);
        for (u32 channel = 0; channel < 4; ++channel)
            EXPECT_EQ(Bytes(image.m_pppPlanes[channel][0], image.m_pppPlanes[channel][0] + columns),
                channel < colours ? light : plain);
        for (u32 i = 0; i < 3; ++i) {
            const u8* const samples = image.m_Layers.GetAt(i)->m_Channels.GetAt(0)->m_ppPlane[0];
            EXPECT_EQ(Bytes(samples, samples + columns), i < 2 ? light : plain) << i;
        }
    }
}

TEST(Tolerant, APlaneIsMadeWhereItsDataCanFillIt) {
    const auto ruleOf = [](const PsdFields& fields, u64 most) {
        const Bytes bytes = Psd(fields);
        const MemoryLimit limit(most);
        return Outcome(bytes);
    };
    const Bytes zipped = Joined({0, 2}, Bytes(25)), packed = PackedData(std::vector<Bytes>(100, {0x81, 7}));
    const std::string memory = "refused: there is not enough memory for it. It takes ";
    const std::string none = "ZIP channels; " + UNDECODED;
    EXPECT_TRUE(ruleOf(Channel(zipped, 25, 1032), 20000).starts_with(memory + "25.2 KiB; 19."));
    EXPECT_EQ(ruleOf(Channel(zipped, 25, 1033), 20000), none);
    // What breaks at its end was made all the same, and what comes after it has so much less of the limit.
    const auto afterBroken = [&](const Bytes& data, u64 most) {
        PsdFields fields = Channel(data, 100, 1000);
        fields.layers[0].channels.push_back({.id = 1, .data = ZipData(Bytes(100'000))});
        return ruleOf(fields, most);
    };
    const Bytes endless = Truncated(ZipData(Bytes(100'000)), 5), atOnce = Joined({0, 2}, Bytes(100));
    EXPECT_TRUE(afterBroken(endless, 202'000).starts_with("ZIP channels (2); " + NOT_DECODED));
    EXPECT_TRUE(afterBroken(endless, 200'000).starts_with(memory + "195.3 KiB; 194."));
    EXPECT_TRUE(afterBroken(atOnce, 103'000).starts_with("ZIP channels (2); " + NOT_DECODED));
    EXPECT_TRUE(ruleOf(Channel(packed, 100, 129), 6000).starts_with(memory + "12.6 KiB; 4."));
    EXPECT_EQ(ruleOf(Channel(packed, 100, 130), 6000), UNDECODED);
    EXPECT_EQ(ruleOf({.rows = 1000, .columns = 30000, .depth = 32, .samples = Bytes(30000)}, 30000),
        "refused: the file ends");
}

}  // namespace
