#include "display/catalogue.h"
#include "framework/core/exception.h"
#include "support/iff_builder.h"
#include "support/memory_limit.h"
#include "support/psd_builder.h"
#include "support/shown.h"
#include "support/table.h"

#include <gtest/gtest.h>

namespace {

using Names = std::vector<std::string>;

const Bytes FOUR = Cmap({BLACK, RED, GREEN, BLUE});

Bytes Picture(const BmhdFields& header, const Bytes& body, const Bytes& map = FOUR) {
    return Form("ILBM", {Bmhd(header), map, Chunk("BODY", body)});
}

TEST(Ilbm, IsShownThroughItsColourMap) {
    const Bytes planes = PlanesOf({0, 1, 2, 3, 3, 2, 1, 0, 1, 1, 1, 2, 2, 2, 2, 3, 0, 3, 0, 2}, 10, 2);
    for (const u32 packed : {0u, 1u}) {
        const Shown shown(Picture({.width = 10, .height = 2, .planes = 2, .masking = 1, .compression = packed},
            packed ? ByteRun(planes, 2) : planes));
        EXPECT_EQ(shown.Rows(), (TextRows{"krgbbgrkrr", "rggggbkbkg"}));
        EXPECT_EQ(shown.image.m_bValid, 1u);
        EXPECT_EQ(LayerNames(shown.document), Names{"Image"});
        EXPECT_EQ(shown.channels, Names{"Composite"});
    }
    const Bytes few = Picture({.width = 8, .height = 1, .planes = 5}, Bytes(5), GreyCmap(20));
    EXPECT_EQ(Shown(few).image.InfoText(), "8x1x20") << "colours are counted from the map";
}

TEST(Ilbm, ShowsNothingWhereNoPictureCanBeMade) {
    const Bytes two = {0xFF, 0xFF}, header = Bmhd({.width = 8, .height = 2});
    for (const auto& [name, file, valid, bitmap] : Table<const char*, Bytes, bool, bool>{
             {"control", Picture({8, 2}, two), true, true},
             {"no header", Form("ILBM", {FOUR, Chunk("BODY", two)}), false, false},
             {"no body", Form("ILBM", {header, FOUR}), false, false},
             {"no planes", Picture({8, 2, 0}, two), false, false},
             {"data ends early", Picture({8, 3}, two), false, false},
             {"packed data ends early", Picture({8, 2, 1, 0, 1}, {0, 9, 0}), false, false},
             {"a value behind the map", Picture({8, 2}, two, Cmap({BLACK})), false, false},
             {"an empty map", Picture({8, 2}, two, Cmap({})), false, false},
             {"width 0", Picture({0, 2}, two), true, false},
             {"height 0", Picture({8, 0}, two), true, false},
             {"65535 x 65535 of 1 KB", Picture({65535, 65535, 1, 0, 1}, Bytes(1000)), false, false},
         }) {
        const MemoryLimit limit(2000);  // what cannot be filled must ask for no memory
        const Shown shown(file);
        EXPECT_EQ(shown.image.m_bValid != 0, valid) << name;
        EXPECT_EQ(shown.image.m_hBitmap != nullptr, bitmap) << name;
        EXPECT_EQ(shown.image.InfoText() == "<invalid bitmap>", !bitmap) << name;
        EXPECT_FALSE(shown.image.m_pBody && shown.image.m_pBody->DecodeRow()) << name << ": decoding has ended";
    }
}

TEST(Alpha, IsShownAsGreyAtItsOwnWidth) {
    for (const auto& [name, alph, valid, colours] : Table<const char*, AlphFields, bool, const char*>{
             {"as wide as the picture, packed", {4, 9, 8, 1, ByteRun(PlanesOf({0, 1, 128, 255, 4, 3, 2, 1}, 4, 8), 1)},
                 true, "000000 010101 808080 ffffff 040404 030303 020202 010101"},
             {"wider", {5, 0, 8, 0, PlanesOf({1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, 5, 8)}, true,
                 "010101 020202 030303 040404 060606 070707 080808 090909"},
             {"narrower", {2, 0, 8, 0, PlanesOf({1, 2, 3, 4}, 2, 8)}, true,
                 "010101 020202 000000 000000 030303 040404 000000 000000"},
             {"only the low byte counts", {4, 0, 9, 0, PlanesOf({0x1FF, 0x100, 1, 0, 0, 0, 0, 0}, 4, 9)}, true,
                 "ffffff 000000 010101 000000 000000 000000 000000 000000"},
             {"a row is missing", {4, 0, 8, 0, PlanesOf({0, 1, 2, 3}, 4, 8)}, false, ""},
             {"empty, yet there", {4, 0, 8}, false, ""},
         }) {
        const Bytes header = Bmhd({.width = 4, .height = 2});
        Shown shown(Form("ILBM", {header, Cmap({BLACK, RED}), Alph(alph), Chunk("BODY", {0xA0, 0x50})}));
        EXPECT_EQ(shown.channels, (Names{"Composite", "Alpha"})) << name;
        EXPECT_EQ(shown.Rows(), (TextRows{"rkrk", "krkr"})) << name;
        shown.Select(0, 1);
        EXPECT_EQ(shown.image.m_bValid != 0, valid) << name;
        EXPECT_EQ(shown.Colours(), colours) << name;
        EXPECT_EQ(shown.image.m_nColours, 2u) << name;
    }
    Shown without(Form("ILBM", {Bmhd({.width = 8, .height = 1}), FOUR, Chunk("BODY", {1}), Alph({})}));
    EXPECT_EQ(without.channels, Names{"Composite"}) << "an alpha picture behind the body is none";
    without.Select(0, 1);
    EXPECT_EQ(without.image.m_bValid, 0u);
}

TEST(S3tc, IsShownWithOrWithoutItsAlpha) {
    const Bytes colours = {0, 0xF8, 0x1F, 0, 0xE4, 0, 0, 0};
    const Shown dxt1(Form("ILBM", {S3tc({.width = 2, .height = 1, .data = colours})}));
    EXPECT_EQ(dxt1.channels, Names{"Composite"});
    EXPECT_EQ(dxt1.Rows(), TextRows{"rb"});
    const Bytes alphas = ByteBuilder().U8(0x71).Repeat(7, 0).Append(colours);
    Shown dxt3(Form("ILBM", {S3tc({.code = "DXT3", .width = 2, .height = 1, .data = alphas})}));
    EXPECT_EQ(dxt3.channels, (Names{"Composite", "Alpha"}));
    EXPECT_EQ(dxt3.Rows(), TextRows{"rb"});
    dxt3.Select(0, 1);
    EXPECT_EQ(dxt3.Colours(), "111111 777777");
    const Shown unknown(Form("ILBM", {S3tc({.code = "WHAT", .width = 30, .height = 20, .data = {1}})}));
    EXPECT_EQ(unknown.channels, (Names{"Composite", "Alpha"}));
    EXPECT_FALSE(unknown.image.m_hBitmap);
    EXPECT_EQ(unknown.image.m_bValid, 1u);
    EXPECT_EQ(unknown.image.m_nWidth * 100 + unknown.image.m_nHeight, 3020u) << "the size is the chunk's all the same";
}

TEST(DisplayImage, WithoutMemoryNoPictureIsLeft) {
    const PsdLayerFields layer = {.bottom = 40, .right = 40, .channels = {{.data = RawData(Bytes(1600))}}};
    for (const auto& [nLayer, file] : Table<u32, Bytes>{
             {0, Picture({.width = 40, .height = 40}, Bytes(200))},
             {0, Form("ILBM", {S3tc({.width = 40, .height = 40, .data = Bytes(800)})})},
             {1, Psd({.layers = {layer}})},
         }) {
        Shown shown(file);
        shown.Select(nLayer, 0);
        ASSERT_EQ(shown.image.m_bValid, 1u);
        const MemoryLimit limit(1000);
        EXPECT_THROW(shown.image.BuildBitmap(shown.document, nLayer, 0), CMemoryException);
        EXPECT_FALSE(shown.image.m_hBitmap);
        EXPECT_EQ(shown.image.m_bValid, 0u);
        EXPECT_FALSE(shown.image.m_pBody && shown.image.m_pBody->DecodeRow()) << "decoding has ended";
    }
}

}  // namespace
