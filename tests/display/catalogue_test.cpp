#include "display/catalogue.h"

#include "chunks/ilbm_chunks.h"
#include "iff/container.h"
#include "support/iff_builder.h"
#include "support/memory_file.h"
#include "support/psd_filler.h"
#include "support/shown.h"

#include <gtest/gtest.h>

namespace {

using Names = std::vector<std::string>;

Bytes OneColour(const IffRgb& colour, u32 planes = 1) {
    const std::vector<IffRgb> map(1u << planes, colour);
    return Form("ILBM",
                {Bmhd({.width = 8, .height = 1, .planes = planes}), Cmap(map), Chunk("BODY", Bytes(planes))});
}

Bytes Levels(u8 count) {
    return Chunk("CONT", {count, 0});
}

TEST(MipMaps, AreListedByCountAndFoundByPlace) {
    const Bytes blocks = S3tc({.width = 4, .height = 4, .data = {0xE0, 0x07, 0, 0, 0, 0, 0, 0}});
    Shown shown(
        List("ILBM", {OneColour(BLUE), Form("MIPM", {Levels(4)}), List("ILBM", {OneColour(RED)}),
                      List("X   ", {OneColour(BLACK)}), List({"\0\0\0\0", 4}, {Form("ILBM", {blocks})}),
                      List("ILBM", {Form("ILBM", {Chunk("BODY", {1}), blocks})})}));
    EXPECT_EQ(LayerNames(shown.document),
              (Names{"Image", "Mip Map 1", "Mip Map 2", "Mip Map 3", "Mip Map 4"}));
    const TextRows fourByFour(4, "gggg"), none;
    const std::vector<TextRows> expected = {
        {"bbbbbbbb"}, {"rrrrrrrr"}, fourByFour, fourByFour, none,  // the last is counted but not there
    };
    for (u32 layer = 0; layer < expected.size(); ++layer) {
        shown.Select(layer, 0);
        EXPECT_EQ(shown.Rows(), expected[layer]) << layer;
        EXPECT_EQ(shown.image.m_bValid != 0, layer < 4) << layer;
        EXPECT_EQ(shown.image.m_pBody && shown.image.m_pS3tc, false) << layer;
    }
}

TEST(MipMaps, WithoutACountOrAParentThereIsNoLevel) {
    const auto names = [](const Bytes& file) { return LayerNames(Shown(file).document); };
    EXPECT_EQ(names(List("ILBM", {Form("MIPM", {Levels(0)})})), Names{"Image"});
    EXPECT_EQ(names(List("ILBM", {Form("ILBM", {Levels(2)})})), Names{"Image"}) << "a CONT of another form";
    EXPECT_EQ(names(List("ILBM", {Prop("MIPM", {Levels(1)})})), (Names{"Image", "Mip Map 1"}));
    EXPECT_EQ(names(Cat("ILBM", {Form("MIPM", {Levels(1)}), Form("MIPM", {Levels(2)})})),
              (Names{"Image", "Mip Map 1"}));
    Shown lonely(Form("MIPM", {Levels(1)}));
    lonely.Select(1, 0);
    EXPECT_EQ(lonely.channels, Names{"Composite"});
    EXPECT_EQ(lonely.image.m_bValid, 0u);
}

TEST(PictureChoice, BlocksCountOnlyWhereNoBodyQualifies) {
    const Bytes blocks =
        Form("ILBM", {S3tc({.width = 1, .height = 1, .data = {0xFF, 0xFF, 0, 0, 0, 0, 0, 0}})});
    EXPECT_EQ(Shown(Cat("ILBM", {blocks, OneColour(RED)})).Rows(), TextRows{"rrrrrrrr"});
    EXPECT_EQ(Shown(Cat("ILBM", {blocks, OneColour(RED, 0)})).Rows(), TextRows{"w"}) << "no planes";
    // A body without a colour map was chosen all the same.
    EXPECT_EQ(
        Shown(Cat("ILBM", {blocks, Form("ILBM", {Bmhd({.width = 8, .height = 1}), Chunk("BODY", {1})})}))
            .Rows(),
        TextRows{});
}

TEST(PsdNames, ColoursByModeThenTheOthersByNameOrNumber) {
    struct Case {
        u32 mode, channels;
        bool mergedAlpha;
        Names alphas;
        Names expected;
    };
    for (const Case& c : {
             Case{PSD_BITMAP, 1, false, {}, {"Black"}},
             Case{PSD_GREYSCALE, 2, false, {}, {"Black", "Channel 1"}},
             Case{PSD_DUOTONE, 1, false, {"x"}, {"Black"}},
             Case{PSD_INDEXED, 1, false, {}, {"Index"}},
             Case{PSD_RGB, 5, true, {"one", "two"}, {"Red", "Green", "Blue", "*one", "two"}},
             Case{PSD_RGB, 5, true, {"one"}, {"Red", "Green", "Blue", "*one", "Channel 4"}},
             Case{PSD_RGB, 5, true, {}, {"Red", "Green", "Blue", "Channel 3", "Channel 4"}},
             Case{PSD_RGB, 5, false, {"one", "two", "three"}, {"Red", "Green", "Blue", "one", "two"}},
             Case{PSD_RGB, 2, true, {"one"}, {"Red", "Green", "Blue"}},
             Case{PSD_CMYK, 5, false, {}, {"Cyan", "Magenta", "Yellow", "Black", "Channel 4"}},
             Case{PSD_MULTICHANNEL, 2, true, {"one"}, {"*one", "Channel 1"}},
             Case{PSD_LAB, 3, false, {}, {"Lightness", "a", "b"}},
         }) {
        PsdImage psd;
        psd.m_nMode = c.mode;
        psd.m_nChannels = c.channels;
        psd.m_bMergedAlpha = c.mergedAlpha;
        if (!c.alphas.empty()) AddAlphaNames(psd, c.alphas);
        Names expected = {"Composite"};
        expected.insert(expected.end(), c.expected.begin(), c.expected.end());
        EXPECT_EQ(ChannelNames(psd), expected) << "mode " << c.mode;
    }
}

TEST(PsdNames, LayersAndTheirChannels) {
    Shown shown;
    shown.document.m_nDocType = DOC_PSD;
    for (const char* name : {"Sky", "", "   ", " x"}) AddLayer(shown.document.m_Psd, name);
    EXPECT_EQ(LayerNames(shown.document), (Names{"Image", "Sky", "Layer 1", "Layer 2", " x"}));
    PsdLayer& layer = *shown.document.m_Psd.m_Layers.GetAt(0);
    for (const i32 id : {-1, 0, 1, 2, 3, -2, -3}) AddChannel(layer, id);
    EXPECT_EQ(ChannelNames(layer), (Names{"Composite", "0: Transparency", "1: Red", "2: Green", "3: Blue",
                                          "4: Unknown", "5: User Mask", "6: Unknown"}));
}

// What a search costs is counted, not timed.
TEST(PictureChoice, CostsNoMoreThanAFewLooksAtEachChunk) {
    constexpr u32 MANY = 20'000;
    const Bytes body = Chunk("BODY", {}), grab = Chunk("GRAB", Bytes(4));
    const auto times = [](u32 count, const Bytes& chunk) { return std::vector<Bytes>(count, chunk); };
    std::vector<Bytes> propsThenForms = times(MANY, Prop("ILBM", {grab}));
    propsThenForms.insert(propsThenForms.begin(),
                          Prop("ILBM", {Bmhd({.width = 8, .height = 1}), Cmap({RED, RED})}));
    for (const Bytes& form : times(MANY, Form("ILBM", {body}))) propsThenForms.push_back(form);
    std::vector<Bytes> largeProp = {Prop("ILBM", times(MANY, grab)), Form("ILBM", times(MANY, body))};
    Bytes deep = List("ILBM", times(MANY, Form("ILBM", {body})));
    for (int level = 0; level < 1000; ++level) deep = List("ILBM", {deep});
    std::vector<Bytes> small = times(MANY, List("ILBM", {Form("ILBM", {body})}));

    for (const auto& [name, bytes, chunks] :
         {std::tuple("one form", Form("ILBM", times(MANY, body)), MANY),
          std::tuple("props and forms", List("ILBM", propsThenForms), 4 * MANY),
          std::tuple("one large prop", List("ILBM", largeProp), 2 * MANY), std::tuple("deep", deep, 2 * MANY),
          std::tuple("lists of one", List("ILBM", small), 3 * MANY)}) {
        Shown shown;
        MemoryFile file(bytes);
        CArchive archive(&file, CArchive::load);
        shown.document.Serialize(archive);
        const u64 before = IffContainer::s_nNodesVisited;
        shown.Select(0, 0);
        EXPECT_LE(IffContainer::s_nNodesVisited - before, u64{8} * chunks) << name;
    }
}

}  // namespace
