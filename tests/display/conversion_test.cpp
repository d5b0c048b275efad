#include "display/display_image.h"
#include "display/frame_fit.h"
#include "support/pixels.h"

#include <gtest/gtest.h>

#include <cmath>

// The colours of what a conversion makes of a row of three pixels.
template <typename Convert>
static std::string Converted(Convert convert) {
    DisplayImage image;
    image.m_nWidth = 3, image.m_nHeight = 1;
    convert(image);
    return BitmapText(image.m_hBitmap);
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
