#include "display/display_image.h"
#include "display/frame_fit.h"
#include "support/pixels.h"

#include <gtest/gtest.h>

#include <cmath>

const u8 TRIPLETS[] = {1, 2, 3, 0x44, 0x55, 0x66, 7, 8, 9};

// The colours of what a conversion makes of a row of three pixels.
template <typename Convert>
static std::string Converted(Convert convert) {
    DisplayImage image;
    image.m_nWidth = 3, image.m_nHeight = 1;
    convert(image);
    return BitmapText(image.m_hBitmap);
}

TEST(Conversion, IndicesGoThroughThePaletteThatIsThere) {
    const u8 index[] = {2, 0, 1};
    const u8* const rows[] = {index};
    EXPECT_EQ(Converted([&](auto& i) { i.ConvertIndexed8(rows, TRIPLETS, 3); }), "<070809><010203><445566>");
    EXPECT_EQ(Converted([&](auto& i) { i.ConvertIndexed8(rows, nullptr, 0); }), "<020202>k<010101>");
    EXPECT_EQ(Converted([&](auto& i) { i.ConvertIndexed1(rows, TRIPLETS, 2); }), "k<010203><445566>");
}

TEST(Conversion, AbsentPlanesAreNotRead) {
    const u16 ink[] = {65535, 32768, 0};
    const u16* const rows[] = {ink};
    EXPECT_EQ(Converted([](auto& i) { i.ConvertGrey8(nullptr); }), "");
    EXPECT_EQ(Converted([](auto& i) { i.ConvertGrey16(nullptr); }), "");
    EXPECT_EQ(Converted([](auto& i) { i.ConvertIndexed8(nullptr, TRIPLETS, 3); }), "");
    EXPECT_EQ(Converted([](auto& i) { i.ConvertIndexed16(nullptr, TRIPLETS, 3); }), "");
    EXPECT_EQ(Converted([](auto& i) { i.ConvertRgb8(nullptr, nullptr, nullptr); }), "kkk");
    EXPECT_EQ(Converted([&](auto& i) { i.ConvertRgb16(rows, nullptr, nullptr); }), "r<800000>k");
    EXPECT_EQ(Converted([](auto& i) { i.ConvertCmyk8(nullptr, nullptr, nullptr, nullptr); }), "www");
    EXPECT_EQ(Converted([&](auto& i) { i.ConvertCmyk16(nullptr, rows, nullptr, nullptr); }), "w<ff80ff><ff00ff>");
}

TEST(Conversion, InkIsScaledByBlack) {
    const u8 bytes[] = {128, 255, 254}, *const rows8[] = {bytes};
    const u16 words[] = {65535, 32768, 32767}, *const rows16[] = {words};
    EXPECT_EQ(Converted([&](auto& i) { i.ConvertCmyk8(rows8, rows8, nullptr, rows8); }), "<404080>w<fdfdfe>");
    EXPECT_EQ(Converted([&](auto& i) { i.ConvertCmyk16(rows16, nullptr, rows16, rows16); }), "w<408040><3f7f3f>");
}

TEST(FrameFit, TruncatesAndNeverLeavesTheRangeOfAWindow) {
    EXPECT_EQ(FittedClientSize(100, 50, 0.03125f), (CSize{3, 1}));
    EXPECT_EQ(FittedClientSize(33, 0, 1.5f), (CSize{49, 0}));
    const CSize clamped = FittedClientSize(0xFFFFFFFF, 30000, 3.0e38f);
    EXPECT_GT(clamped.cx, 1 << 20);
    EXPECT_EQ(clamped.cx, clamped.cy);
    EXPECT_EQ(FittedClientSize(0, 5, INFINITY), (CSize{0, clamped.cy})) << "a level from the 128th on";
}
