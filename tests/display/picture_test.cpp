#include "display/catalogue.h"
#include "support/iff_builder.h"
#include "support/memory_limit.h"
#include "support/shown.h"
#include "support/table.h"

#include <gtest/gtest.h>

const Bytes FOUR = Cmap({BLACK, RED, GREEN, BLUE});

static Bytes Picture(const BmhdFields& header, const Bytes& body, const Bytes& map = FOUR) {
    return Form("ILBM", {Bmhd(header), map, Body(body)});
}

TEST(Ilbm, IsShownThroughItsColourMap) {
    const Bytes planes = PlanesOf({0, 1, 2, 3, 3, 2, 1, 0, 1, 1, 1, 2, 2, 2, 2, 3, 0, 3, 0, 2}, 10, 2);
    const Shown raw(Picture({10, 2, 2, 1, 0}, planes)), packed(Picture({10, 2, 2, 1, 1}, ByteRun(planes, 2)));
    EXPECT_EQ(raw.Text(), "10x2x4 krgbbgrkrr/rggggbkbkg");
    EXPECT_EQ(packed.Text(), raw.Text());
    EXPECT_EQ(LayerNames(raw.document), Names{"Image"});
    EXPECT_EQ(raw.channels, Names{"Composite"});
    const Shown few(Picture({.width = 1, .height = 1, .planes = 5}, Bytes(5), GreyCmap(20)));
    EXPECT_EQ(few.Text(), "1x1x20 k") << "colours are counted from the map";
}

TEST(Ilbm, ShowsNothingWhereNoPictureCanBeMade) {
    const Bytes two = {0xFF, 0xFF};
    for (const auto& [name, file, text] : Table<const char*, Bytes, const char*>{
             {"control", Picture({2, 2}, two), "2x2x4 rr/rr"},
             {"no header", Form("ILBM", {FOUR, Body(two)}), "not valid"},
             {"no body", Form("ILBM", {Bmhd({8, 2}), FOUR}), "not valid"},
             {"no planes", Picture({8, 2, 0}, two), "not valid"},
             {"data ends early", Picture({8, 3}, two), "not valid"},
             {"packed data ends early", Picture({8, 2, 1, 0, 1}, {0, 9, 0}), "not valid"},
             {"a value beyond the map", Picture({8, 2}, two, Cmap({BLACK})), "not valid"},
             {"width 0", Picture({0, 2}, two), "no bitmap"},
             {"height 0", Picture({8, 0}, two), "no bitmap"},
             {"65535 x 65535 of 1 KB", Picture({65535, 65535, 1, 0, 1}, Bytes(1000)), "not valid"},
         }) {
        const MemoryLimit limit(2000);  // what cannot be filled must ask for no memory
        const Shown shown(file);
        EXPECT_EQ(shown.Text(), text) << name;
        EXPECT_EQ(shown.image.InfoText() == "<invalid bitmap>", !shown.image.m_hBitmap) << name;
        EXPECT_FALSE(shown.image.m_pBody && shown.image.m_pBody->DecodeRow()) << name << ": decoding has ended";
    }
}

TEST(Alpha, IsShownAsGreyAtItsOwnWidth) {
    for (const auto& [name, alph, text] : Table<const char*, AlphFields, const char*>{
             {"as wide as the picture, packed", {3, 9, 8, 1, ByteRun(PlanesOf({0, 1, 255, 4, 3, 2}, 3, 8), 1)},
                 "3x2x2 k<010101>w/<040404><030303><020202>"},
             {"wider", {4, 0, 8, 0, PlanesOf({1, 2, 3, 4, 5, 6, 7, 8}, 4, 8)},
                 "3x2x2 <010101><020202><030303>/<050505><060606><070707>"},
             {"narrower", {2, 0, 8, 0, PlanesOf({1, 2, 3, 4}, 2, 8)}, "3x2x2 <010101><020202>k/<030303><040404>k"},
             {"only the low byte counts", {3, 0, 9, 0, PlanesOf({0x1FF, 0x100, 1, 0, 0, 0}, 3, 9)},
                 "3x2x2 wk<010101>/kkk"},
             {"a row is missing", {3, 0, 8, 0, PlanesOf({0, 1, 2}, 3, 8)}, "not valid"},
             {"empty, yet there", {3, 0, 8}, "not valid"},
         }) {
        Shown shown(Form("ILBM", {Bmhd({3, 2}), Cmap({BLACK, RED}), Alph(alph), Body({0xA0, 0x40})}));
        EXPECT_EQ(shown.channels, (Names{"Composite", "Alpha"})) << name;
        EXPECT_EQ(shown.Text(), "3x2x2 rkr/krk") << name;
        shown.Select(0, 1);
        EXPECT_EQ(shown.Text(), text) << name;
    }
    const Shown without(Form("ILBM", {Bmhd({8, 1}), FOUR, Body({1}), Alph({})}), 0, 1);
    EXPECT_EQ(without.channels, Names{"Composite"}) << "an alpha picture after the body is none";
    EXPECT_EQ(without.Text(), "not valid");
}

TEST(S3tc, IsShownWithOrWithoutItsAlpha) {
    // Red and blue over blue and red.
    const Bytes colours = {0, 0xF8, 0x1F, 0, 4, 1, 0, 0},
                alphas = ByteBuilder().U8(0x71, 0, 0x42).Repeat(5, 0).Append(colours);
    for (const auto& [code, data, channels, composite, alpha] :
        Table<const char*, Bytes, u32, const char*, const char*>{
            {"DXT1", colours, 1, "2x2x0 rb/br", "2x2x0 ww/ww"},
            {"DXT3", alphas, 2, "2x2x0 rb/br", "2x2x0 <111111><777777>/<222222><444444>"},
            {"WHAT", alphas, 2, "no bitmap", "no bitmap"},
        }) {
        Shown shown(Form("ILBM", {S3tc({.code = code, .width = 2, .height = 2, .data = data})}));
        EXPECT_EQ(shown.channels.size(), channels);
        EXPECT_EQ(shown.Text(), composite);
        shown.Select(0, 1);
        EXPECT_EQ(shown.Text(), alpha);
        EXPECT_EQ(shown.image.m_nWidth, 2u) << "the size is the chunk's, whatever its code";
    }
}
