#include "display/catalogue.h"
#include "support/iff_builder.h"
#include "support/shown.h"

#include <gtest/gtest.h>

namespace {

const std::vector<IffRgb> FOUR = {BLACK, RED, GREEN, BLUE};

Bytes Picture(const BmhdFields& header, const Bytes& body, const Bytes& map = Cmap(FOUR)) {
    return Form("ILBM", {Bmhd(header), map, Chunk("BODY", body)});
}

TEST(Ilbm, IsShownThroughItsColourMap) {
    const std::vector<u32> values = {0, 1, 2, 3, 3, 2, 1, 0, 1, 1, 1, 1, 2,
                                     2, 2, 2, 3, 0, 3, 0, 3, 0, 3, 0, 3, 2};
    const Bytes planes = PlanesOf(values, 13, 2);
    for (const u32 compression : {0u, 1u}) {
        const Shown shown(
            Picture({.width = 13, .height = 2, .planes = 2, .masking = 1, .compression = compression},
                    compression ? ByteRun(planes, 2) : planes));
        EXPECT_EQ(shown.Rows(), (TextRows{"krgbbgrkrrrrg", "gggbkbkbkbkbg"}));
        EXPECT_EQ(shown.image.m_bValid, 1u);
        EXPECT_EQ(shown.image.InfoText(), "13x2x4");
        EXPECT_EQ(LayerNames(shown.document), std::vector<std::string>{"Image"});
        EXPECT_EQ(shown.channels, std::vector<std::string>{"Composite"});
    }
}

TEST(Ilbm, ShowsNothingWhereNoPictureCanBeMade) {
    const Bytes two = {0xFF, 0xFF};
    const auto without = [&](const Bytes& first) { return Form("ILBM", {first, Chunk("BODY", two)}); };
    struct Case {
        const char* name;
        Bytes file;
        bool valid;
        bool bitmap;
    };
    for (const Case& c : {
             Case{"control", Picture({.width = 8, .height = 2}, two), true, true},
             Case{"no colour map", without(Bmhd({.width = 8, .height = 2})), false, false},
             Case{"no header", without(Cmap(FOUR)), false, false},
             Case{"no body", Form("ILBM", {Bmhd({.width = 8, .height = 2}), Cmap(FOUR)}), false, false},
             Case{"no planes", Picture({.width = 8, .height = 2, .planes = 0}, two), false, false},
             Case{"data ends early", Picture({.width = 8, .height = 3}, two), false, false},
             Case{"packed data ends early", Picture({.width = 8, .height = 2, .compression = 1}, {0, 9, 0}),
                  false, false},
             Case{"a value behind the map", Picture({.width = 8, .height = 2}, two, Cmap({BLACK})), false,
                  false},
             Case{"an empty map", Picture({.width = 8, .height = 2}, two, Cmap({})), false, false},
             Case{"width 0", Picture({.width = 0, .height = 2}, two), true, false},
             Case{"height 0", Picture({.width = 8, .height = 0}, two), true, false},
             Case{"65535 x 65535 of 1 KB",
                  Picture({.width = 65535, .height = 65535, .compression = 1}, Bytes(1000)), false, false},
         }) {
        const Shown shown(c.file);
        EXPECT_EQ(shown.image.m_bValid != 0, c.valid) << c.name;
        EXPECT_EQ(shown.image.m_hBitmap != nullptr, c.bitmap) << c.name;
        EXPECT_EQ(shown.image.InfoText() == "<invalid bitmap>", !c.bitmap) << c.name;
    }
}

TEST(Ilbm, ThirtyTwoColoursAreCountedFromTheMap) {
    EXPECT_EQ(
        Shown(Picture({.width = 8, .height = 1, .planes = 5}, Bytes(5, 0xFF), GreyCmap(32))).image.InfoText(),
        "8x1x32");
}

TEST(PictureChoice, TheDeepestBodyOfTheWholeFile) {
    const auto picture = [](u32 planes, const IffRgb& last) {
        std::vector<IffRgb> map(1u << planes, BLACK);
        map.back() = last;
        return Picture({.width = 8, .height = 1, .planes = planes}, Bytes(planes, 0xFF), Cmap(map));
    };
    const std::string reds(8, 'r'), greens(8, 'g');
    EXPECT_EQ(
        Shown(Cat("X   ", {picture(1, BLUE), picture(3, RED), picture(3, GREEN), picture(2, BLUE)})).Rows(),
        TextRows{reds});
    EXPECT_EQ(Shown(List("ILBM", {Prop("ILBM", {Bmhd({.width = 8, .height = 1}), Cmap({BLACK, GREEN})}),
                                  Form("ILBM", {Chunk("BODY", {0xFF})})}))
                  .Rows(),
              TextRows{greens});
    // The deepest is chosen first and then found to have no colour map: nothing else takes its place.
    const Bytes mapless =
        Form("ILBM", {Bmhd({.width = 8, .height = 1, .planes = 4}), Chunk("BODY", Bytes(4))});
    EXPECT_EQ(Shown(Cat("ILBM", {picture(1, RED), mapless})).Rows(), TextRows{});
}

TEST(Alpha, IsShownAsGreyAtItsOwnWidth) {
    const auto picture = [](const AlphFields& alph) {
        return Form("ILBM", {Bmhd({.width = 4, .height = 2}), Cmap({BLACK, RED}), Alph(alph),
                             Chunk("BODY", {0xA0, 0x50})});
    };
    struct Case {
        const char* name;
        AlphFields alph;
        bool valid;
        const char* colours;
    };
    for (const Case& c : {
             Case{
                 "as wide as the picture",
                 {.width = 4, .height = 9, .planes = 8, .data = PlanesOf({0, 1, 128, 255, 4, 3, 2, 1}, 4, 8)},
                 true,
                 "000000 010101 808080 ffffff 040404 030303 020202 010101"},
             Case{"wider",
                  {.width = 6, .planes = 8, .data = PlanesOf({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}, 6, 8)},
                  true,
                  "010101 020202 030303 040404 070707 080808 090909 0a0a0a"},
             Case{"narrower",
                  {.width = 2, .planes = 8, .data = PlanesOf({1, 2, 3, 4}, 2, 8)},
                  true,
                  "010101 020202 000000 000000 030303 040404 000000 000000"},
             Case{"only the low byte counts",
                  {.width = 4, .planes = 9, .data = PlanesOf({0x1FF, 0x100, 1, 0, 0, 0, 0, 0}, 4, 9)},
                  true,
                  "ffffff 000000 010101 000000 000000 000000 000000 000000"},
             Case{"a row is missing",
                  {.width = 4, .planes = 8, .data = PlanesOf({0, 1, 2, 3}, 4, 8)},
                  false,
                  ""},
             Case{"empty, yet there", {.width = 4, .planes = 8}, false, ""},
         }) {
        Shown shown(picture(c.alph));
        EXPECT_EQ(shown.channels, (std::vector<std::string>{"Composite", "Alpha"})) << c.name;
        EXPECT_EQ(shown.Rows(), (TextRows{"rkrk", "krkr"})) << c.name;
        shown.Select(0, 1);
        EXPECT_EQ(shown.image.m_bValid != 0, c.valid) << c.name;
        EXPECT_EQ(shown.Colours(), c.colours) << c.name;
        EXPECT_EQ(shown.image.m_nColours, 2u) << c.name;
    }
    Shown without(Form("ILBM", {Bmhd({.width = 8, .height = 1}), Cmap(FOUR), Chunk("BODY", {1}), Alph({})}));
    EXPECT_EQ(without.channels, std::vector<std::string>{"Composite"})
        << "an alpha picture behind the body is none";
    without.Select(0, 1);
    EXPECT_EQ(without.image.m_bValid, 0u);
}

TEST(S3tc, IsShownWithOrWithoutItsAlpha) {
    const Bytes colours = {0, 0xF8, 0x1F, 0, 0xE4, 0, 0, 0};
    Shown dxt1(Form("ILBM", {S3tc({.width = 2, .height = 1, .data = colours})}));
    EXPECT_EQ(dxt1.channels, std::vector<std::string>{"Composite"});
    EXPECT_EQ(dxt1.Rows(), TextRows{"rb"});
    EXPECT_EQ(dxt1.image.InfoText(), "2x1x0");
    Shown dxt3(Form("ILBM", {S3tc({.code = "DXT3",
                                   .width = 2,
                                   .height = 1,
                                   .data = ByteBuilder().U8(0x71).Repeat(7, 0).Append(colours)})}));
    EXPECT_EQ(dxt3.channels, (std::vector<std::string>{"Composite", "Alpha"}));
    EXPECT_EQ(dxt3.Rows(), TextRows{"rb"});
    dxt3.Select(0, 1);
    EXPECT_EQ(dxt3.Colours(), "111111 777777");
}

TEST(S3tc, OneThatDoesNotDecodeStillGivesItsSize) {
    const Shown shown(Form("ILBM", {S3tc({.code = "WHAT", .width = 30, .height = 20, .data = {1}})}));
    EXPECT_EQ(shown.channels, (std::vector<std::string>{"Composite", "Alpha"}));
    EXPECT_FALSE(shown.image.m_hBitmap);
    EXPECT_EQ(shown.image.m_bValid, 1u);
    EXPECT_EQ((std::vector<u32>{shown.image.m_nWidth, shown.image.m_nHeight}), (std::vector<u32>{30, 20}));
}

TEST(DisplayImage, EveryBuildReplacesTheOneBefore) {
    Shown shown(Picture({.width = 8, .height = 1}, {0xFF}));
    CVistrelDoc nothing;
    EXPECT_TRUE(shown.image.m_pBody);
    shown.image.BuildBitmap(nothing, 0, 0);
    EXPECT_FALSE(shown.image.m_hBitmap);
    EXPECT_EQ(shown.image.m_bValid, 0u);
    shown.image.BuildBitmap(shown.document, 0, 0);
    EXPECT_EQ(shown.Rows(), TextRows{std::string(8, 'r')});
    EXPECT_EQ(shown.image.m_pBody->m_nRefs, 2) << "the tree's and the picture's own";
}

}  // namespace
