// What both sets of rules show of IFF files that other programs wrote in their own way, and of the layers of Photoshop
// documents.
#include "display/passed_over_in.h"
#include "document/passed_text.h"
#include "framework/core/exception.h"
#include "support/iff_builder.h"
#include "support/loading.h"
#include "support/memory_limit.h"
#include "support/psd_builder.h"
#include "support/shown.h"
#include "support/table.h"

#include <gtest/gtest.h>

namespace {

std::string Text(const Bytes& file, Tolerance tolerance, u32 nLayer = 0, u32 nChannel = 0) {
    try {
        const Shown shown(file, nLayer, nChannel, tolerance);
        const std::string passed = PassedText(PassedOverIn(shown.document));
        return (tolerance == Tolerance::None ? "" : passed + ": ") + shown.Text();
    } catch (const CArchiveException&) {
        return "refused";
    }
}

// A file, and what each set of rules shows of it.
struct Row {
    const char* pszName;
    Bytes file;
    std::string strTolerant;
    std::string strStrict = "not valid";
};

void ExpectPictures(const std::vector<Row>& rows) {
    for (const auto& [name, file, tolerant, strict] : rows) {
        EXPECT_EQ(Text(file, Tolerance::None), strict) << name;
        EXPECT_EQ(Text(file, Tolerance::Always), tolerant) << name;
    }
}

const Bytes MAP = Cmap({BLACK, RED, GREEN, BLUE});

Bytes Camg(u32 mode, u32 size = 4) { return Chunk("CAMG", Truncated(ByteBuilder().U32(mode), 4 - size)); }

Bytes Ilbm(const BmhdFields& header, const Bytes& body, const Bytes& map = MAP, const Bytes& mode = {}) {
    return Form("ILBM", {Bmhd(header), map, mode, Body(body)});
}

// A form whose size counts so many bytes less, which the file lacks as well.
Bytes Cut(const Bytes& file, u32 count, u32 sizeCount) {
    Bytes cut = Truncated(file, count);
    cut[7] = static_cast<u8>(cut[7] - sizeCount);
    return cut;
}

const Bytes PLANES_24 = PlanesOf({0x0000FF, 0x80FF00}, 2, 24);

Bytes Pbm(const BmhdFields& header, const Bytes& body) { return Form("PBM ", {Bmhd(header), MAP, Body(body)}); }

TEST(TolerantPicture, PlaneRows) {
    const Bytes two = {0xFF, 0x0F, 0xF0, 0}, masked = {0xF0, 0x55, 0x0F, 0x55};
    const std::string plain = "8x2x4 rrrrrrrr/kkkkrrrr", padded = "padded plane rows: 8x2x4 rrrrrrrr/rrrrkkkk";
    ExpectPictures({
        {"padded", Ilbm({8, 2}, two), padded, plain},
        {"a byte less", Ilbm({8, 2}, Truncated(two, 1)), ": " + plain, plain},
        {"packed", Ilbm({8, 2, 1, 0, 1}, {1, 0xFF, 0, 1, 0xF0, 0}), padded, "8x2x4 rrrrrrrr/kkkkkkkr"},
        {"across rows", Ilbm({8, 2, 1, 0, 1}, {3, 0xFF, 0x0F, 0xF0, 0}), "padded plane rows: 8x2x4 rrrrrrrr/kkkkkkkk",
            "8x2x4 rrrrrrrr/rrrrkkkk"},
        {"by a run", Ilbm({8, 1, 2, 0, 1}, {0xFD, 0xFF}), "padded plane rows: 8x1x4 bbbbbbbb", "8x1x4 bbbbbbbb"},
        {"not padded", Ilbm({8, 2, 1, 0, 1}, {0, 0xFF, 0, 0x0F}), ": " + plain, plain},
        {"of even length", Ilbm({9, 1}, Bytes(99)), ": 9x1x4 kkkkkkkkk", "9x1x4 kkkkkkkkk"},
        {"a mask", Ilbm({4, 2, 1, 1}, masked), "mask plane: 4x2x4 rrrr/kkkk", "4x2x4 rrrr/krkr"},
        {"a byte less", Ilbm({4, 2, 1, 1}, Truncated(masked, 1)), ": 4x2x4 rrrr/krkr", "4x2x4 rrrr/krkr"},
        {"masking 2", Ilbm({4, 2, 1, 2}, {0xF0, 0x55, 0xA0, 0x55}), "padded plane rows: 4x2x4 rrrr/rkrk",
            "4x2x4 rrrr/krkr"},
        {"padded with a mask", Ilbm({4, 2, 1, 1}, {0xF0, 0, 0x55, 0, 0x50, 0, 0x55, 0}),
            "padded plane rows; mask plane: 4x2x4 rrrr/krkr", "4x2x4 rrrr/kkkk"},
        {"a byte less", Ilbm({4, 2, 1, 1}, {0xF0, 0, 0x55, 0, 0x50, 0, 0x55}), "mask plane: 4x2x4 rrrr/krkr",
            "4x2x4 rrrr/kkkk"},
    });
}

TEST(TolerantPicture, OneByteAPixel) {
    const Bytes rows = {1, 2, 3, 1, 0, 1, 2, 1};
    const std::string shown = "one byte a pixel: 3x2x4 rgb/krg", none = "one byte a pixel: not valid";
    ExpectPictures({
        {"rows of even length", Pbm({3, 2, 8}, rows), shown},
        {"packed", Pbm({3, 2, 8, 0, 1}, {3, 1, 2, 3, 1, 2, 0, 1, 2, 0, 1}), shown},
        {"a byte less", Pbm({3, 2, 8}, Truncated(rows, 1)), none},
        {"7 planes", Pbm({3, 2, 7}, rows), ": not valid"},
        {"9 planes", Pbm({3, 2, 9}, Bytes(99)), ": not valid"},
        {"no map", Form("PBM ", {Bmhd({3, 2, 8}), Body(rows)}), ": not valid"},
        {"a header that only the strict rules take for unknown bytes",
            Cat("ILBM", {Form("PBM ", {Chunk("BMHD", Bytes(3))}), Ilbm({4, 1}, {0xA0})}), ": 4x1x4 rkrk", "4x1x4 rkrk"},
        {"beside planes", Cat("ILBM", {Pbm({3, 2, 8}, rows), Ilbm({4, 1}, {0xA0})}), ": 4x1x4 rkrk", "4x1x4 rkrk"},
    });
}

TEST(TolerantPicture, AnimationsShowTheirFirst) {
    const Bytes empty = Ilbm({4, 1, 0}, {0xF0}), first = Ilbm({4, 1}, {0xA0}), second = Ilbm({4, 1, 2}, {0xA0, 0xA0});
    const Bytes unmapped = Form("ILBM", {Bmhd({4, 1, 8}), Body(Bytes(8))});
    const std::string nested = "first picture of an animation: 4x1x4 rkrk";
    ExpectPictures({
        {"forms in a form", Form("ANIM", {empty, first, second}), nested},
        {"deeper", Cat("ANIM", {Form("ANIM", {List("ANIM", {first})})}), nested},
        {"one byte a pixel", Form("ANIM", {Pbm({2, 1, 8}, {1, 2}), first}),
            "first picture of an animation; one byte a pixel: 2x1x4 rg"},
        {"without a map", Form("ANIM", {unmapped, first}), "first picture of an animation: not valid"},
        {"where one is found", Cat("ILBM", {unmapped, Form("ANIM", {first})}), ": not valid"},
    });
}

TEST(TolerantPicture, Colours) {
    const Bytes ham = PlanesOf({0x1F, 0x2F, 0x3F, 0x01, 0x25, 0x35, 0x10, 0x03}, 4, 6);
    const Bytes ham8 = PlanesOf({0x7F, 0xBF, 0xFF, 0x61}, 4, 8), bright = PlanesOf({1, 33, 3, 35}, 4, 6);
    const BmhdFields six = {4, 1, 6};
    const Bytes few = Cmap({BLACK, RED, GREEN});
    const auto half = [&](u32 entries, u32 planes = 6, u32 mode = 0x80) {
        return Ilbm({4, 1, planes}, PlanesOf({1, 33, 31, 32}, 4, planes), GreyCmap(entries, 7), Camg(mode));
    };
    const std::string shades = "<070707><e7e7e7><d9d9d9><e0e0e0>";
    const std::string held = "hold and modify: 4x2x0 b<ff00ff>wr/<550000><555500><555500>b";
    ExpectPictures({
        {"24 planes", Ilbm({2, 1, 24}, PLANES_24, {}), "true colour planes: 2x1x0 r<00ff80>"},
        {"a map beside them", Ilbm({2, 1, 24}, Bytes(24)), "true colour planes: 2x1x0 kk", "2x1x4 kk"},
        {"32", Ilbm({2, 1, 32}, PlanesOf({0xFF0000FF, 0xFF}, 2, 32), {}), "true colour planes: 2x1x0 rr"},
        {"23", Ilbm({2, 1, 23}, PLANES_24, {}), ": not valid"},
        {"25", Ilbm({2, 1, 25}, Bytes(25), {}), ": not valid"},
        {"hold and modify", Ilbm({4, 2, 6}, ham, MAP, Camg(0x800)), held},
        {"the mode behind", Form("ILBM", {Bmhd({4, 2, 6}), MAP, Body(ham), Camg(0xFFFFF8FF | 0x800)}), held},
        {"the second mode", Ilbm({4, 2, 6}, ham, ByteBuilder().Append(Camg(0, 3)).Append(Camg(0x800)), MAP), held},
        {"of 3 bytes", Ilbm({4, 2, 6}, ham, MAP, Camg(0x80000, 3)), ": not valid"},
        {"another mode", Ilbm({4, 2, 6}, ham, MAP, Camg(0xFFFFF77F)), ": not valid"},
        {"another's mode", List("ILBM", {Prop("ILBM", {MAP, Camg(0x800)}), Form("ILBM", {Bmhd({4, 2, 6}), Body(ham)})}),
            ": not valid"},
        {"5 planes", Ilbm({4, 1, 5}, PlanesOf({1, 0x15, 0x12, 2}, 4, 5), MAP, Camg(0x800)),
            "hold and modify: 4x1x0 r<ff0055><ff0022>g"},
        {"7", Ilbm({4, 1, 7}, PlanesOf({1, 0x61, 0x7F, 2}, 4, 7), MAP, Camg(0x800)),
            "hold and modify: 4x1x0 r<ff0086><ff00ff>g"},
        {"8", Ilbm({4, 1, 8}, ham8, MAP, Camg(0x800)), "hold and modify: 4x1x0 b<ff00ff>w<ffff86>"},
        {"4", Ilbm({4, 1, 4}, PlanesOf({3, 2, 1, 0}, 4, 4), MAP, Camg(0x800)), ": 4x1x4 bgrk", "4x1x4 bgrk"},
        {"9", Ilbm({4, 1, 9}, PlanesOf({3, 2, 1, 0}, 4, 9), MAP, Camg(0x800)), ": 4x1x4 bgrk", "4x1x4 bgrk"},
        {"an entry too many", Ilbm(six, PlanesOf({3, 4, 0, 0}, 4, 6), MAP, Camg(0x800)), "hold and modify: not valid"},
        {"no entry", Ilbm(six, PlanesOf({0x1F, 0x1F, 0x1F, 0x1F}, 4, 6), Cmap({}), Camg(0x800)),
            "hold and modify: not valid"},
        {"half-brite", half(32), "extra half-brite: 4x1x64 <070707><030303><d9d9d9>k"},
        {"33 entries", half(33), ": not valid"},
        {"34", half(34), ": 4x1x34 " + shades, "4x1x34 " + shades},
        {"another mode", half(32, 6, 0xFFFFF77F), ": not valid"},
        {"7 planes", half(32, 7), ": not valid"},
        {"a few entries", Ilbm(six, bright, MAP, Camg(0x80)), "extra half-brite: 4x1x64 r<7f0000>b<00007f>"},
        {"fewer", Ilbm(six, PlanesOf({1, 3, 0, 0}, 4, 6), few, Camg(0x80)), "extra half-brite: not valid"},
        {"likewise", Ilbm(six, PlanesOf({1, 35, 0, 0}, 4, 6), few, Camg(0x80)), "extra half-brite: not valid"},
    });
}

TEST(TolerantPicture, PadBytes) {
    const Bytes odd = Ilbm({8, 3}, {0xFF, 0, 0xFF}), even = Ilbm({16, 1}, {0xFF, 0});
    const std::string shown = "8x3x4 rrrrrrrr/kkkkkkkk/rrrrrrrr", missing = "missing pad byte: " + shown;
    ByteBuilder padded = {Cut(odd, 1, 1)}, list = {Cut(odd, 1, 1)};
    padded.U8(0);
    ExpectPictures({
        {"control", odd, ": " + shown, shown},
        {"of the last chunk", Cut(odd, 1, 1), missing, "refused"},
        {"it counts, but is not there", Cut(odd, 1, 0), missing, "refused"},
        {"nor is the byte before", Cut(odd, 2, 0), "refused", "refused"},
        {"at a container's end", Cat("ILBM", {padded, even}), missing, "refused"},
        {"in the middle", Cat("ILBM", {list, even}), "refused", "refused"},
        {"the last container's", Cat("ILBM", {even, list}), "missing pad byte: 16x1x4 rrrrrrrrkkkkkkkk", "refused"},
    });
}

TEST(TolerantPicture, LayersHaveTheColoursOfTheirDocument) {
    const auto document = [](u32 mode, const std::vector<i32>& ids, u32 pad) {
        PsdFields fields = {.channels = 4, .mode = mode, .layerPad = Bytes(pad)};
        if (mode == PSD_INDEXED) fields.colourData = Bytes(768);
        if (mode == PSD_BITMAP) fields.depth = 1;
        PsdLayerFields layer;
        for (const i32 id : ids) layer.channels.push_back({.id = id, .data = RawData({u8(0x11 * (id + 4))})});
        fields.layers = {layer};
        return Psd(fields);
    };
    for (const auto& [mode, ids, strict, tolerant, names] :
        Table<u32, std::vector<i32>, const char*, const char*, Names>{
            {PSD_BITMAP, {0}, "<440000>", "<444444>", {"0: Black"}},
            {PSD_GREYSCALE, {0, 1, -3}, "<445500>", "<444444>", {"0: Black", "1: Unknown", "2: Real User Mask"}},
            {PSD_DUOTONE, {1, -2}, "<005500>", "k", {"0: Unknown", "1: User Mask"}},
            {PSD_INDEXED, {0, -1}, "<440000>", "<440000>", {"0: Index", "1: Transparency"}},
            {PSD_RGB, {2, 0, 3}, "<440066>", "<440066>", {"0: Blue", "1: Red", "2: Unknown"}},
            {PSD_CMYK, {0, 1, 2, 3}, "<445566>", "<1f272f>", {"0: Cyan", "1: Magenta", "2: Yellow", "3: Black"}},
            {PSD_CMYK, {3, 1}, "<005500>", "<772777>", {"0: Black", "1: Magenta"}},
            {PSD_LAB, {0, 1, 2}, "<445566>", "<445566>", {"0: Lightness", "1: a", "2: b"}},
            {PSD_MULTICHANNEL, {0, 1}, "<445500>", "<445500>", {"0: Red", "1: Green"}},
        }) {
        EXPECT_EQ(Shown(document(mode, ids, 1), 1).Text(), std::string("1x1x0 ") + strict) << mode;
        Shown shown(document(mode, ids, 2), 1, 0, Tolerance::Always);
        EXPECT_EQ(shown.Text(), std::string("1x1x0 ") + tolerant) << mode;
        EXPECT_EQ(Names(shown.channels.begin() + 1, shown.channels.end()), names) << mode;
    }
    const Names strict = Shown(document(PSD_CMYK, {0, 3, -3}, 1), 1).channels;
    EXPECT_EQ(strict, (Names{"Composite", "0: Red", "1: Unknown", "2: Unknown"}));
}

TEST(TolerantPicture, PartsThatAreMissingShowNothing) {
    PsdFields fields = {.rows = 2, .columns = 3, .depth = 16, .samples = Bytes{1}};
    fields.layers = {{.bottom = 4, .right = 5, .channels = {{.data = {0, 9}}}, .name = "x"}, {.right = 0}};
    fields.layers[1].channels = {{.data = {}}};
    Shown shown(Psd(fields), 0, 0, Tolerance::Always);
    for (const auto& [layer, channel, text, width, height] : Table<u32, u32, const char*, u32, u32>{
             {0, 0, "not valid", 3, 2},
             {0, 1, "not valid", 3, 2},
             {1, 0, "5x4x0 kkkkk/kkkkk/kkkkk/kkkkk", 5, 4},
             {1, 1, "not valid", 5, 4},
             {2, 0, "not valid", 0, 0},
             {2, 1, "not valid", 0, 0},
         }) {
        shown.Select(layer, channel);
        EXPECT_EQ(shown.Text(), text) << layer << channel;
        EXPECT_EQ(shown.image.m_nWidth, width) << layer << channel;
        EXPECT_EQ(shown.image.m_nHeight, height) << layer << channel;
    }
}

TEST(TolerantPicture, IsShownWhereTheSettingSaysSo) {
    const Bytes padded = Psd({.layers = {{}}, .layerPad = Bytes(2)}), chunky = Pbm({2, 1, 8}, {1, 2});
    const std::string refused = "refused", padding = "padded layer information: 1x1x0 k";
    for (const auto& [tolerance, ofPsd, ofIff] : Table<Tolerance, std::string, std::string>{
             {Tolerance::Never, refused, "one byte a pixel: not valid"},
             {Tolerance::Ask, padding, "one byte a pixel: not valid"},
             {Tolerance::Always, padding, "one byte a pixel: 2x1x4 rg"},
         }) {
        EXPECT_EQ(Text(padded, tolerance), ofPsd);
        EXPECT_EQ(Text(chunky, tolerance), ofIff);
        EXPECT_EQ(Text(Psd({}), tolerance), ": 1x1x0 k");
        EXPECT_EQ(Text(Psd({.version = 3}), tolerance), refused);
    }
}

TEST(TolerantPicture, NothingIsLeftOfTheFileBefore) {
    CVistrelDoc document;
    for (const auto& [file, tolerance, passed] : Table<Bytes, Tolerance, const char*>{
             {Pbm({2, 1, 8}, {1, 2}), Tolerance::Ask, "one byte a pixel"},
             {Ilbm({8, 1}, {1}), Tolerance::Always, ""},
             {Cut(Ilbm({8, 1}, {1}), 1, 1), Tolerance::Ask, "missing pad byte"},
             {Ilbm({8, 1}, {1}), Tolerance::Ask, ""},
             {Psd({.layers = {{}}, .layerPad = Bytes(2)}), Tolerance::Ask, "padded layer information"},
             {Psd({.resources = {{.id = 1057, .data = Bytes(5)}}}), Tolerance::Ask, ""},
         }) {
        MemoryStream source(file);
        document.m_tolerance = tolerance;
        document.Serialize(source.archive);
        EXPECT_EQ(PassedText(PassedOverIn(document)), passed);
        EXPECT_EQ(&document.GetIff(TOLERANT) == &document.m_Iff, passed != std::string("one byte a pixel"));
        const bool refused = passed == std::string("missing pad byte") || document.m_nDocType == DOC_PSD;
        EXPECT_EQ(document.NeedsConsent(), refused && *passed != 0) << passed;
    }
}

// The tree that only the tolerant rules show is left out before the file is; where nothing else is shown, there is
// never more than one.
TEST(TolerantPicture, ASecondTreeThatFindsNoRoomKeepsNoFileFromOpening) {
    const Bytes file = Cat("ILBM", {Pbm({2, 1, 8}, {1, 2}), Form("ILBM", {Chunk("ANNO", Bytes(20'000))})});
    for (const auto& [tolerance, trees, text] : Table<Tolerance, double, std::string>{
             {Tolerance::Ask, 2.5, "one byte a pixel: not valid"}, {Tolerance::Ask, 1.5, ": not valid"},
             {Tolerance::Never, 1.5, ": not valid"}, {Tolerance::Always, 1.5, "one byte a pixel: 2x1x4 rg"}}) {
        const MemoryLimit limit(static_cast<u64>(trees * 20'000));
        EXPECT_EQ(Text(file, tolerance), text) << trees;
    }
    const MemoryLimit limit(20'000);
    EXPECT_THROW(Shown(file, 0, 0, Tolerance::Always), CMemoryException);
}

}  // namespace
