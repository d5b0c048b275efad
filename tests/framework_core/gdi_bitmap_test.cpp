#include "framework/core/gdi_bitmap.h"

#include "framework/core/stretch.h"
#include "support/byte_builder.h"
#include "support/pixels.h"

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
    const Bytes bits = ByteBuilder().U32(0x00010100).U32(0x01000000);  // three of each four bytes count
    EXPECT_EQ(BitmapText(Make(3, 2, 8, 2, bits).get()), (TextRows{"grr", "rgg"}));
    const Bytes blueThenRed = ByteBuilder().U8(255).U16(0).U16(0).U8(255).U16(0);
    EXPECT_EQ(BitmapText(Make(2, 1, 24, 0, blueThenRed).get()), (TextRows{"br"}));
}

TEST(GdiBitmap, IndicesBehindTheColourTable) {
    const Bytes bits = ByteBuilder().U8(1).U8(2).U8(255).U8(0);
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
    struct Case {
        u32 source, dest;
        int from, to;
    };
    for (const Case c :
         {Case{4096, 131072, 0, 100}, Case{4096, 131072, 32700, 32900}, Case{4096, 131072, 65500, 65600},
          Case{4096, 131072, 130972, 131072}, Case{30000, 960000, 959900, 960000}, Case{100, 3, 0, 3},
          Case{7, 7, 2, 6}, Case{5, 13, 0, 13}, Case{1, 1000, 998, 1000}}) {
        const Bitmap across = Ramp(c.source, 1);
        const Bitmap down = Ramp(1, c.source);
        const u32 count = static_cast<u32>(c.to - c.from);
        std::vector<u32> columns(count), rows(count);
        StretchExposed(*across, {c.source, 1, c.dest, 1}, {c.from, 0, c.to, 1}, columns.data(), count);
        StretchExposed(*down, {1, c.source, 1, c.dest}, {0, c.from, 1, c.to}, rows.data(), 1);
        for (u32 i = 0; i < count; ++i) {
            const u32 expected = static_cast<u32>((u64{static_cast<u32>(c.from)} + i) * c.source / c.dest);
            ASSERT_EQ(columns[i], expected)
                << c.source << " over " << c.dest << " at " << c.from << " + " << i;
            ASSERT_EQ(rows[i] >> 16, expected)
                << c.source << " over " << c.dest << " at " << c.from << " + " << i;
        }
    }
}

TEST(Stretch, WritesTheExposedPartAlone) {
    const Bitmap bitmap = Ramp(4, 4);
    std::vector<u32> out(4 * 3, 77);
    StretchExposed(*bitmap, {4, 4, 8, 8}, {2, 5, 5, 7}, out.data(), 4);
    EXPECT_EQ(out, (std::vector<u32>{0x20001, 0x20001, 0x20002, 77, 0x30001, 0x30001, 0x30002, 77, 77, 77, 77,
                                     77}));
}

}  // namespace
