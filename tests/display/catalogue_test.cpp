#include "display/catalogue.h"

#include "iff/container.h"
#include "support/iff_builder.h"
#include "support/psd_builder.h"
#include "support/shown.h"
#include "support/table.h"

#include <gtest/gtest.h>

static Bytes OneColour(const IffRgb& colour, u32 nPlanes = 1) {
    const std::vector<IffRgb> map(1u << nPlanes, colour);
    return Form("ILBM", {Bmhd({2, 1, nPlanes}), Cmap(map), Body(Bytes(nPlanes))});
}

static Bytes Levels(u8 nCount) { return Form("MIPM", {Chunk("CONT", {nCount, 0})}); }

TEST(MipMaps, AreListedByCountAndFoundByPlace) {
    const Bytes blocks = S3tc({.width = 2, .height = 1, .data = {0xE0, 0x07, 0, 0, 0, 0, 0, 0}});
    Shown shown(List("ILBM",
        {OneColour(BLUE), Levels(4), List("ILBM", {OneColour(RED)}), List("X   ", {OneColour(BLACK)}),
            List({"\0\0\0\0", 4}, {Form("ILBM", {blocks})}), List("ILBM", {Form("ILBM", {Body({1}), blocks})})}));
    EXPECT_EQ(LayerNames(shown.document), (Names{"Image", "Mip Map 1", "Mip Map 2", "Mip Map 3", "Mip Map 4"}));
    for (const auto& [layer, text] : Table<u32, const char*>{{0, "2x1x2 bb"}, {1, "2x1x2 rr"}, {2, "2x1x0 gg"},
             {3, "2x1x0 gg"}, {4, "not valid"}}) {  // the last is counted but not there
        shown.Select(layer, 0);
        EXPECT_EQ(shown.Text(), text) << layer;
        EXPECT_FALSE(shown.image.m_pBody && shown.image.m_pS3tc) << layer;
    }
}

TEST(MipMaps, WithoutACountOrAParentThereIsNoLevel) {
    for (const auto& [file, layers] : Table<Bytes, u32>{
             {List("ILBM", {Levels(0)}), 1},
             {List("ILBM", {Form("ILBM", {Chunk("CONT", {2, 0})})}), 1},  // of another form
             {Cat("ILBM", {Prop("MIPM", {Chunk("CONT", {9, 0})}), Levels(1), Levels(2)}), 2},
             {Levels(1), 2},
         }) {
        const Shown shown(file, 1);
        EXPECT_EQ(LayerNames(shown.document).size(), layers);
        EXPECT_EQ(shown.Text(), "not valid");
    }
}

TEST(PictureChoice, TheDeepestBodyOfTheWholeFileBeforeAnyBlocks) {
    const Bytes blocks = Form("ILBM", {S3tc({.width = 1, .height = 1, .data = {0xFF, 0xFF, 0, 0, 0, 0, 0, 0}})});
    const Bytes header = Bmhd({2, 1, 4}), body = Body(Bytes(4)), blue = OneColour(BLUE);
    for (const auto& [file, text] : Table<Bytes, const char*>{
             {Cat("X   ", {blocks, blue, OneColour(RED, 3), OneColour(GREEN, 3), OneColour(BLACK, 2)}), "2x1x8 rr"},
             {List("ILBM", {Prop("ILBM", {header, Cmap({GREEN})}), Form("ILBM", {body})}), "2x1x1 gg"},
             {Cat("ILBM", {blocks, OneColour(RED, 0)}), "1x1x0 w"},  // no planes
             // The deepest is chosen first and then found to have no colour map: nothing else takes its place.
             {Cat("ILBM", {blocks, blue, Form("ILBM", {header, body})}), "not valid"},
         }) {
        const Shown shown(file);
        EXPECT_EQ(shown.Text(), text);
        EXPECT_FALSE(shown.image.m_pBody && !shown.image.m_bValid) << "none is chosen then";
    }
}

TEST(PsdNames, ColoursByModeThenTheOthersByNameOrNumber) {
    for (const auto& [mode, channels, mergedAlpha, alphas, names] : Table<u32, u32, bool, const char*, Names>{
             {PSD_BITMAP, 1, false, "", {"Composite", "Black"}},
             {PSD_GREYSCALE, 2, false, "", {"Composite", "Black", "Channel 1"}},
             {PSD_DUOTONE, 1, false, "\1x", {"Composite", "Black"}},
             {PSD_INDEXED, 1, false, "", {"Composite", "Index"}},
             {PSD_RGB, 5, true, "\3one\3two", {"Composite", "Red", "Green", "Blue", "*one", "two"}},
             {PSD_RGB, 5, true, "\3one", {"Composite", "Red", "Green", "Blue", "*one", "Channel 4"}},
             {PSD_RGB, 5, false, "\3one\3two\1x", {"Composite", "Red", "Green", "Blue", "one", "two"}},
             {PSD_RGB, 2, true, "\3one", {"Composite", "Red", "Green", "Blue"}},
             {PSD_CMYK, 5, false, "", {"Composite", "Cyan", "Magenta", "Yellow", "Black", "Channel 4"}},
             {PSD_MULTICHANNEL, 2, true, "\3one", {"Composite", "*one", "Channel 1"}},
             {PSD_LAB, 3, false, "", {"Composite", "Lightness", "a", "b"}},
         }) {
        PsdFields fields = {.channels = channels, .mode = mode, .colourData = Bytes(768)};
        fields.resources = {{.data = {1}}, {.id = 1006, .data = ByteBuilder().Text(alphas)}};
        fields.layers = {{}}, fields.layerCount = mergedAlpha ? -1 : 1;
        EXPECT_EQ(Shown(Psd(fields)).channels, names) << "mode " << mode;
    }
}

TEST(PsdNames, BesideLayersTheFileSaysWhichChannelIsTheTransparency) {
    for (const auto& [layerCount, alpha] : Table<i32, u32>{{0, 4}, {1, 0}, {-1, 4}}) {
        PsdFields fields = {.channels = 4, .mode = PSD_RGB, .layerCount = layerCount};
        if (layerCount != 0) fields.layers = {{}};
        EXPECT_EQ(AlphaChannel(Shown(Psd(fields)).document, 0), alpha) << layerCount;
    }
}

TEST(Catalogue, NothingOfAnIffPictureIsKeptForAPhotoshopDocument) {
    const Shown iff(Form("ILBM", {Bmhd({8, 1}), Cmap({RED}), Body({1, 2})}));
    const Shown psd(Psd({}));
    DisplayImage image;
    image.ChooseLayer(iff.document, 0);
    EXPECT_TRUE(image.m_pBody);
    image.ChooseLayer(psd.document, 0);
    EXPECT_FALSE(image.m_pBody);
}

TEST(PsdNames, LayersAndTheirChannels) {
    PsdFields fields;
    for (const char* name : {"Sky", "", "   ", " x"}) fields.layers.push_back({.name = name});
    for (const i32 id : {-1, 0, 1, 2, 3, -2, -3}) fields.layers[0].channels.push_back({id, RawData({1})});
    Shown shown(Psd(fields));
    EXPECT_EQ(LayerNames(shown.document), (Names{"Image", "Sky", "Layer 1", "Layer 2", " x"}));
    shown.Select(1, 0);
    EXPECT_EQ(shown.channels, (Names{"Composite", "0: Transparency", "1: Red", "2: Green", "3: Blue", "4: Unknown",
                                  "5: User Mask", "6: Unknown"}));
}

// What a search costs is counted, not timed.
TEST(PictureChoice, CostsNoMoreThanAFewLooksAtEachChunk) {
    constexpr u32 MANY = 20'000;
    const Bytes grab = Chunk("GRAB", Bytes(4)), body = Body({}), form = Form("ILBM", {body});
    Parts propsThenForms(MANY, Prop("ILBM", {grab})), fewProps(7, Prop("ILBM", Parts(8, grab)));
    propsThenForms.resize(2 * MANY, form);
    fewProps.push_back(Form("ILBM", Parts(MANY, body)));
    Bytes deep = form;
    for (int level = 0; level < 1000; ++level) deep = List("ILBM", {form, deep});
    for (const auto& [name, bytes, chunks] : Table<const char*, Bytes, u64>{
             {"props and forms", List("ILBM", propsThenForms), 4 * MANY},
             {"few small props", List("ILBM", fewProps), MANY},
             {"one large prop", List("ILBM", {Prop("ILBM", Parts(MANY, grab)), fewProps.back()}), 2 * MANY},
             {"a form in each list", deep, 3000},
             {"lists of one", List("ILBM", Parts(MANY, List("ILBM", {form}))), 3 * MANY},
         }) {
        const u64 before = IffContainer::s_nNodesVisited;
        const Shown shown(bytes);
        EXPECT_LE(IffContainer::s_nNodesVisited - before, 8 * chunks) << name;
    }
}
