#include "display/display_image.h"
#include "display/frame_fit.h"
#include "support/byte_builder.h"
#include "support/pixels.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// A plane given row by row, as a row table.
template <typename Sample>
class Plane {
  public:
    Plane(std::vector<std::vector<Sample>> rows) : m_rows(std::move(rows)) {
        for (const auto& row : m_rows) m_table.push_back(row.data());
    }
    const Sample* const* Rows() const { return m_table.data(); }

  private:
    std::vector<std::vector<Sample>> m_rows;
    std::vector<const Sample*> m_table;
};

class Conversion : public testing::Test {
  protected:
    template <typename Sample>
    Plane<Sample> Sized(std::vector<std::vector<Sample>> rows) {
        m_image.m_nWidth = static_cast<u32>(rows[0].size());
        m_image.m_nHeight = static_cast<u32>(rows.size());
        return Plane<Sample>(std::move(rows));
    }
    Plane<u8> Bytes8(std::vector<std::vector<u8>> rows) { return Sized(std::move(rows)); }
    Plane<u16> Words(std::vector<std::vector<u16>> rows) { return Sized(std::move(rows)); }

    // The colours of the bitmap just made, which is then let go.
    std::string Colours() {
        const std::string text = BitmapColours(m_image.m_hBitmap);
        DeleteObject(m_image.m_hBitmap);
        m_image.m_hBitmap = nullptr;
        return text;
    }

    DisplayImage m_image;
};

const Bytes TRIPLETS = {1, 2, 3, 0x44, 0x55, 0x66, 7, 8, 9};

TEST_F(Conversion, SinglePlanes) {
    const auto grey = Bytes8({{0, 128, 255}, {1, 2, 3}});
    m_image.ConvertGrey8(grey.Rows());
    EXPECT_EQ(Colours(), "000000 808080 ffffff 010101 020202 030303");
    const auto bits = Bytes8({{0, 1}});
    m_image.ConvertGrey1(bits.Rows());
    EXPECT_EQ(Colours(), "000000 ffffff");
    const auto words = Words({{0x12FF, 0xFF00, 0x00FF}});
    m_image.ConvertGrey16(words.Rows());
    EXPECT_EQ(Colours(), "121212 ffffff 000000");
    const auto index = Bytes8({{2, 0, 1}});
    m_image.ConvertIndexed8(index.Rows(), TRIPLETS.data(), 3);
    EXPECT_EQ(Colours(), "070809 010203 445566");
    m_image.ConvertIndexed8(index.Rows(), nullptr, 0);
    EXPECT_EQ(Colours(), "020202 000000 010101") << "without a palette indices are greys";
    m_image.ConvertIndexed1(index.Rows(), TRIPLETS.data(), 2);
    EXPECT_EQ(Colours(), "000000 010203 445566") << "index 2 is behind the palette";
    const auto wide = Words({{0x0102, 0x0200}});
    m_image.ConvertIndexed16(wide.Rows(), TRIPLETS.data(), 3);
    EXPECT_EQ(Colours(), "070809 010203");
}

TEST_F(Conversion, ColourPlanesThatMayBeAbsent) {
    const auto a = Bytes8({{1, 255}}), b = Bytes8({{2, 128}}), c = Bytes8({{3, 0}});
    m_image.ConvertRgb8(a.Rows(), b.Rows(), c.Rows());
    EXPECT_EQ(Colours(), "010203 ff8000");
    m_image.ConvertRgb1(nullptr, b.Rows(), nullptr);
    EXPECT_EQ(Colours(), "000200 008000");
    const auto r = Words({{0x01FF, 0xFFFF}}), g = Words({{0x02FF, 0}}), bl = Words({{0x03FF, 0x8000}});
    m_image.ConvertRgb16(r.Rows(), g.Rows(), bl.Rows());
    EXPECT_EQ(Colours(), "010203 ff0080");
    m_image.ConvertRgb16(nullptr, nullptr, bl.Rows());
    EXPECT_EQ(Colours(), "000003 000080");
}

TEST_F(Conversion, InkIsScaledByBlack) {
    const auto full = Bytes8({{255, 255, 254, 128}}), half = Bytes8({{128, 255, 255, 128}});
    m_image.ConvertCmyk8(half.Rows(), full.Rows(), nullptr, full.Rows());
    EXPECT_EQ(Colours(),
              "80ffff ffffff fefdfe 4040"
              "80");
    m_image.ConvertCmyk8(half.Rows(), nullptr, full.Rows(), nullptr);
    EXPECT_EQ(Colours(), "80ffff ffffff fffffe 80ff80") << "no black plane leaves the components as they are";
    m_image.ConvertCmyk1(nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(Colours(), "ffffff ffffff ffffff ffffff");
    const auto cyan = Words({{65535, 32768, 32767}}), black = Words({{65535, 65535, 65535}});
    m_image.ConvertCmyk16(cyan.Rows(), nullptr, nullptr, black.Rows());
    EXPECT_EQ(Colours(), "ffffff 80ffff 7fffff");
    m_image.ConvertCmyk16(cyan.Rows(), cyan.Rows(), cyan.Rows(), nullptr);
    EXPECT_EQ(Colours(), "ffffff 808080 7f7f7f");
}

TEST_F(Conversion, AbsentSinglePlanesAreNotRead) {
    m_image.m_nWidth = m_image.m_nHeight = 5;
    m_image.ConvertGrey8(nullptr);
    m_image.ConvertGrey1(nullptr);
    m_image.ConvertGrey16(nullptr);
    m_image.ConvertIndexed8(nullptr, TRIPLETS.data(), 3);
    m_image.ConvertIndexed1(nullptr, TRIPLETS.data(), 3);
    m_image.ConvertIndexed16(nullptr, TRIPLETS.data(), 3);
    EXPECT_FALSE(m_image.m_hBitmap);
}

TEST_F(Conversion, EveryWidthKeepsItsRowsApart) {
    for (u32 width = 1; width <= 9; ++width) {
        std::vector<std::vector<u8>> rows(3, std::vector<u8>(width));
        std::string expected;
        for (u32 y = 0; y < 3; ++y) {
            for (u32 x = 0; x < width; ++x) {
                rows[y][x] = static_cast<u8>(16 * y + x);
                expected += (expected.empty() ? "" : " ") + ColourText((16 * y + x) * 0x010101);
            }
        }
        const auto plane = Bytes8(rows);
        m_image.ConvertGrey8(plane.Rows());
        EXPECT_EQ(Colours(), expected) << "8 bits, width " << width;
        m_image.ConvertRgb8(plane.Rows(), plane.Rows(), plane.Rows());
        EXPECT_EQ(Colours(), expected) << "24 bits, width " << width;
    }
}

TEST_F(Conversion, TheHeaderIsCompleted) {
    const auto plane = Bytes8({{0, 1, 0}, {1, 0, 1}});
    m_image.ConvertIndexed8(plane.Rows(), TRIPLETS.data(), 3);
    const BITMAPINFOHEADER indexed = m_image.m_hBitmap->header;
    Colours();
    m_image.ConvertRgb8(plane.Rows(), nullptr, nullptr);
    const BITMAPINFOHEADER rgb = m_image.m_hBitmap->header;
    for (const auto& [header, bits, colours] : {std::tuple(indexed, 8u, 3u), std::tuple(rgb, 24u, 0u)}) {
        EXPECT_EQ(header.biSize, 40u);
        EXPECT_EQ(header.biWidth, 3);
        EXPECT_EQ(header.biHeight, 2);
        EXPECT_EQ(header.biBitCount, bits);
        EXPECT_EQ(header.biXPelsPerMeter, 1024);
        EXPECT_EQ(header.biYPelsPerMeter, 1024);
        EXPECT_EQ(header.biClrUsed, colours);
        EXPECT_EQ(header.biClrImportant, colours);
    }
}

TEST_F(Conversion, NoRowsGiveNoBitmap) {
    m_image.m_nWidth = 4;
    const u8* const none[1] = {};
    m_image.ConvertGrey8(none);
    m_image.ConvertRgb8(none, none, none);
    EXPECT_FALSE(m_image.m_hBitmap);
}

TEST(FrameFit, TruncatesAndNeverLeavesTheRangeOfAWindow) {
    EXPECT_EQ(FittedClientSize(100, 50, 1.0f), (CSize{100, 50}));
    EXPECT_EQ(FittedClientSize(100, 50, 0.03125f), (CSize{3, 1}));
    EXPECT_EQ(FittedClientSize(100, 50, 32.0f), (CSize{3200, 1600}));
    EXPECT_EQ(FittedClientSize(33, 0, 1.5f), (CSize{49, 0}));
    const CSize clamped = FittedClientSize(0xFFFFFFFF, 30000, 3.0e38f);
    EXPECT_GT(clamped.cx, 1 << 20);
    EXPECT_EQ(clamped.cx, clamped.cy);
}

}  // namespace
