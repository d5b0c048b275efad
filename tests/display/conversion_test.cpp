#include "display/display_image.h"
#include "display/frame_fit.h"
#include "support/byte_builder.h"
#include "support/pixels.h"
#include "support/table.h"

#include <gtest/gtest.h>

namespace {

// A plane given row by row, as a row table.
template <typename Sample>
class Plane {
  public:
    Plane(std::vector<std::vector<Sample>> rows) : m_rows(std::move(rows)) {
        for (const auto& row : m_rows) m_table.push_back(row.data());
    }
    operator const Sample* const*() const { return m_table.data(); }

  private:
    std::vector<std::vector<Sample>> m_rows;
    std::vector<const Sample*> m_table;
};
using Bytes8 = Plane<u8>;
using Words = Plane<u16>;

// The colours of what a conversion makes of planes of that size.
template <typename Convert>
std::string Converted(u32 width, u32 height, Convert convert) {
    DisplayImage image;
    image.m_nWidth = width, image.m_nHeight = height;
    convert(image);
    return BitmapColours(image.m_hBitmap);
}

const Bytes TRIPLETS = {1, 2, 3, 0x44, 0x55, 0x66, 7, 8, 9};

TEST(Conversion, IndicesGoThroughThePaletteThatIsThere) {
    const Bytes8 index({{2, 0, 1}});
    const auto converted = [](auto convert) { return Converted(3, 1, convert); };
    EXPECT_EQ(converted([&](auto& i) { i.ConvertIndexed8(index, TRIPLETS.data(), 3); }), "070809 010203 445566");
    EXPECT_EQ(converted([&](auto& i) { i.ConvertIndexed8(index, nullptr, 0); }), "020202 000000 010101");
    EXPECT_EQ(converted([&](auto& i) { i.ConvertIndexed1(index, TRIPLETS.data(), 2); }), "000000 010203 445566");
}

TEST(Conversion, ColourPlanesMayBeAbsent) {
    const Bytes8 green({{2, 128}});
    const Words red({{0x01FF, 0xFFFF}}), blue({{0x03FF, 0x8000}});
    const auto converted = [](auto convert) { return Converted(2, 1, convert); };
    EXPECT_EQ(converted([&](auto& i) { i.ConvertRgb1(nullptr, green, nullptr); }), "000200 008000");
    EXPECT_EQ(converted([&](auto& i) { i.ConvertRgb16(red, nullptr, blue); }), "010003 ff0080");
}

TEST(Conversion, InkIsScaledByBlack) {
    const Bytes8 full({{255, 255, 254, 128}}), half({{128, 255, 255, 128}});
    const Words cyan({{65535, 32768, 32767}}), black({{65535, 65535, 65535}});
    const auto four = [](auto convert) { return Converted(4, 1, convert); };
    const auto three = [](auto convert) { return Converted(3, 1, convert); };
    EXPECT_EQ(four([&](auto& i) { i.ConvertCmyk8(half, full, nullptr, full); }), "80ffff ffffff fefdfe 404080");
    EXPECT_EQ(four([&](auto& i) { i.ConvertCmyk8(half, nullptr, full, nullptr); }), "80ffff ffffff fffffe 80ff80");
    EXPECT_EQ(three([](auto& i) { i.ConvertCmyk1(nullptr, nullptr, nullptr, nullptr); }), "ffffff ffffff ffffff");
    EXPECT_EQ(three([&](auto& i) { i.ConvertCmyk16(cyan, nullptr, nullptr, black); }), "ffffff 80ffff 7fffff");
    EXPECT_EQ(three([&](auto& i) { i.ConvertCmyk16(cyan, cyan, cyan, nullptr); }), "ffffff 808080 7f7f7f");
}

TEST(Conversion, WithoutAPlaneOrRowsThereIsNoBitmap) {
    const auto single = [](auto& i) {
        i.ConvertGrey8(nullptr), i.ConvertGrey1(nullptr), i.ConvertGrey16(nullptr);
        i.ConvertIndexed8(nullptr, TRIPLETS.data(), 3), i.ConvertIndexed1(nullptr, TRIPLETS.data(), 3);
        i.ConvertIndexed16(nullptr, TRIPLETS.data(), 3);
    };
    EXPECT_EQ(Converted(5, 5, single), "");
    EXPECT_EQ(
        Converted(4, 0, [](auto& i) { i.ConvertGrey8(Bytes8({})), i.ConvertRgb8(nullptr, nullptr, nullptr); }), "");
}

TEST(Conversion, EveryWidthKeepsItsRowsApart) {
    for (u32 width = 1; width <= 9; ++width) {
        std::vector<std::vector<u8>> rows(3, std::vector<u8>(width));
        std::string expected;
        for (u32 i = 0; i < 3 * width; ++i) {
            const u32 grey = 16 * (i / width) + i % width;
            rows[i / width][i % width] = static_cast<u8>(grey);
            expected += (expected.empty() ? "" : " ") + ColourText(grey * 0x010101);
        }
        const Bytes8 plane(rows);
        EXPECT_EQ(Converted(width, 3, [&](auto& i) { i.ConvertGrey8(plane); }), expected) << width;
        EXPECT_EQ(Converted(width, 3, [&](auto& i) { i.ConvertRgb8(plane, plane, plane); }), expected) << width;
    }
}

TEST(Conversion, TheHeaderIsCompleted) {
    const Bytes8 plane({{0, 1, 0}, {1, 0, 1}});
    for (const auto& [bits, colours] : Table<u16, u32>{{8, 3}, {24, 0}}) {
        DisplayImage image;
        image.m_nWidth = 3, image.m_nHeight = 2;
        bits == 8 ? image.ConvertIndexed8(plane, TRIPLETS.data(), 3) : image.ConvertRgb8(plane, nullptr, nullptr);
        const BITMAPINFOHEADER expected = {40, 3, 2, 1, bits, BI_RGB, 0, 1024, 1024, colours, colours};
        EXPECT_EQ(std::memcmp(&image.m_hBitmap->header, &expected, sizeof(expected)), 0) << bits;
    }
}

TEST(FrameFit, TruncatesAndNeverLeavesTheRangeOfAWindow) {
    EXPECT_EQ(FittedClientSize(100, 50, 0.03125f), (CSize{3, 1}));
    EXPECT_EQ(FittedClientSize(100, 50, 32.0f), (CSize{3200, 1600}));
    EXPECT_EQ(FittedClientSize(33, 0, 1.5f), (CSize{49, 0}));
    const CSize clamped = FittedClientSize(0xFFFFFFFF, 30000, 3.0e38f);
    EXPECT_GT(clamped.cx, 1 << 20);
    EXPECT_EQ(clamped.cx, clamped.cy);
}

}  // namespace
