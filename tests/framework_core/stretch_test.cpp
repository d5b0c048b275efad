#include "framework/core/stretch.h"

#include "framework/core/gdi_bitmap.h"
#include "support/table.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <vector>

using Bitmap = std::unique_ptr<GdiBitmap, decltype(&DeleteObject)>;

// A bitmap of 8 bits, in shades of grey, or of 24. Of the latter a pixel's colour is y << 16 | x, of the former
// the lowest byte of that.
static Bitmap Ramp(u32 width, u32 height, u16 bitCount = 24) {
    const u64 stride = DibStride(width, bitCount);
    LargeBlock block = LargeBlock::Allocate(stride * height);
    for (u32 y = 0; y < height; ++y) {
        u8* out = block.Data() + (height - 1 - y) * stride;
        for (u32 x = 0; x < width; ++x) {
            const u32 value = y << 16 | x;
            std::memcpy(out, &value, bitCount / 8u);
            out += bitCount / 8;
        }
    }
    BITMAPINFO info = {};
    info.bmiHeader.biWidth = static_cast<i32>(width);
    info.bmiHeader.biHeight = static_cast<i32>(height);
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = bitCount;
    return Bitmap(
        CreateDIBitmap(nullptr, &info.bmiHeader, CBM_INIT, std::move(block), &info, DIB_RGB_COLORS), &DeleteObject);
}

TEST(Stretch, EveryPixelShowsItsNearestSource) {
    for (const auto& [source, dest, from, to] :
        Table<u32, u32, int, int>{{4096, 131072, 65500, 65600}, {4096, 131072, 130972, 131072},
            {30000, 960000, 959900, 960000}, {100, 3, 0, 3}, {7, 7, 2, 6}, {5, 13, 0, 13}, {1, 1000, 998, 1000}}) {
        const u32 count = static_cast<u32>(to - from);
        std::vector<u32> columns(count), rows(count);
        StretchExposed(*Ramp(source, 1), {source, 1, dest, 1}, {from, 0, to, 1}, columns.data(), count);
        StretchExposed(*Ramp(1, source), {1, source, 1, dest}, {0, from, 1, to}, rows.data(), 1);
        for (u32 i = 0; i < count; ++i) {
            const u64 expected = (u64{static_cast<u32>(from)} + i) * source / dest;
            ASSERT_EQ(columns[i], 0xFF000000 | expected) << source << " over " << dest << " at " << from << " + " << i;
            ASSERT_EQ(rows[i], 0xFF000000 | (expected & 0xFF) << 16)
                << source << " over " << dest << " at " << from << " + " << i;
        }
    }
}

TEST(Stretch, WritesTheExposedPartAlone) {
    std::vector<u32> out(4 * 3, 77);
    StretchExposed(*Ramp(4, 4), {4, 4, 8, 8}, {2, 5, 5, 7}, out.data(), 4);
    EXPECT_EQ(out, (std::vector<u32>{0xFF020001, 0xFF020001, 0xFF020002, 77, 0xFF030001, 0xFF030001, 0xFF030002, 77, 77,
                       77, 77, 77}));
}
