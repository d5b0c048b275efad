#include "framework/core/gdi_bitmap.h"

#include "framework/core/stretch.h"
#include "support/byte_builder.h"
#include "support/pixels.h"
#include "support/table.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

struct Free {
    void operator()(HBITMAP bitmap) const { DeleteObject(bitmap); }
};
using Bitmap = std::unique_ptr<GdiBitmap, Free>;

Bitmap Make(i32 width, i32 height, u16 bitCount, u32 colours, const Bytes& bits) {
    BITMAPINFO info = {};
    info.bmiHeader = {40, width, height, 1, bitCount, BI_RGB, 0, 0, 0, colours, colours};
    info.bmiColors[0] = {0, 0, 255, 0};
    info.bmiColors[1] = {0, 255, 0, 0};
    return Bitmap(CreateDIBitmap(nullptr, &info.bmiHeader, CBM_INIT, bits.data(), &info, DIB_RGB_COLORS));
}

TEST(GdiBitmap, RowsComeBottomUpAndPadded) {
    const Bytes bits = {0, 1, 1, 0, 1, 0, 0, 0};  // three of each four bytes count
    EXPECT_EQ(BitmapText(Make(3, 2, 8, 2, bits).get()), (TextRows{"grr", "rgg"}));
    const Bytes blueThenRed = {255, 0, 0, 0, 0, 255, 0, 0};
    EXPECT_EQ(BitmapText(Make(2, 1, 24, 0, blueThenRed).get()), (TextRows{"br"}));
}

TEST(GdiBitmap, IndicesBehindTheColourTable) {
    const Bytes bits = {1, 2, 255, 0};
    EXPECT_EQ(BitmapText(Make(4, 1, 8, 2, bits).get()), (TextRows{"gkkr"}));
    EXPECT_EQ(BitmapColours(Make(4, 1, 8, 0, bits).get()), "010101 020202 ffffff 000000");
}

TEST(GdiBitmap, RefusesWhatCannotBeDrawn) {
    const Bytes bits(64);
    EXPECT_TRUE(Make(1, 1, 24, 0, bits));
    EXPECT_FALSE(Make(0, 1, 24, 0, bits));
    EXPECT_FALSE(Make(1, 0, 24, 0, bits));
    EXPECT_FALSE(Make(1, -1, 24, 0, bits));
    EXPECT_FALSE(Make(1, 1, 16, 0, bits));
    EXPECT_FALSE(Make(0x7FFFFFFF, 0x7FFFFFFF, 24, 0, bits)) << "memory that no machine has";
}

// A row in which the pixel of column x has the value x.
Bitmap Ramp(u32 width, u32 height) {
    LargeBlock block = LargeBlock::Try(u64{width} * height * 4);
    u32* out = reinterpret_cast<u32*>(block.Data());
    for (u32 y = 0; y < height; ++y)
        for (u32 x = 0; x < width; ++x) *out++ = y << 16 | x;
    return Bitmap(new GdiBitmap{{}, width, height, std::move(block)});
}

TEST(Stretch, EveryPixelShowsItsNearestSource) {
    for (const auto& [source, dest, from, to] :
        Table<u32, u32, int, int>{{4096, 131072, 0, 100}, {4096, 131072, 65500, 65600}, {4096, 131072, 130972, 131072},
            {30000, 960000, 959900, 960000}, {100, 3, 0, 3}, {7, 7, 2, 6}, {5, 13, 0, 13}, {1, 1000, 998, 1000}}) {
        const Bitmap across = Ramp(source, 1);
        const Bitmap down = Ramp(1, source);
        const u32 count = static_cast<u32>(to - from);
        std::vector<u32> columns(count), rows(count);
        StretchExposed(*across, {source, 1, dest, 1}, {from, 0, to, 1}, columns.data(), count);
        StretchExposed(*down, {1, source, 1, dest}, {0, from, 1, to}, rows.data(), 1);
        for (u32 i = 0; i < count; ++i) {
            const u64 expected = (u64{static_cast<u32>(from)} + i) * source / dest;
            ASSERT_EQ(columns[i], expected) << source << " over " << dest << " at " << from << " + " << i;
            ASSERT_EQ(rows[i] >> 16, expected) << source << " over " << dest << " at " << from << " + " << i;
        }
    }
}

TEST(Stretch, WritesTheExposedPartAlone) {
    const Bitmap bitmap = Ramp(4, 4);
    std::vector<u32> out(4 * 3, 77);
    StretchExposed(*bitmap, {4, 4, 8, 8}, {2, 5, 5, 7}, out.data(), 4);
    EXPECT_EQ(out, (std::vector<u32>{0x20001, 0x20001, 0x20002, 77, 0x30001, 0x30001, 0x30002, 77, 77, 77, 77, 77}));
}

}  // namespace
