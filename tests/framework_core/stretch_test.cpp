#include "framework/core/stretch.h"

#include "framework/core/gdi_bitmap.h"
#include "support/memory_limit.h"
#include "support/table.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

using Bitmap = std::unique_ptr<GdiBitmap, decltype(&DeleteObject)>;

TEST(LargeBlock, ASizeThatCannotBeRoundedUpGivesNone) {
    const MemoryLimit none(~u64{0});
    EXPECT_TRUE(LargeBlock::Try(0));
    EXPECT_FALSE(LargeBlock::Try(~u64{0}));
}

// In row y and column x, a pixel has the value y << 16 | x.
static Bitmap Ramp(u32 nWidth, u32 nHeight) {
    LargeBlock block = LargeBlock::Try(u64{nWidth} * nHeight * 4);
    u32* out = reinterpret_cast<u32*>(block.Data());
    for (u32 y = 0; y < nHeight; ++y)
        for (u32 x = 0; x < nWidth; ++x) *out++ = y << 16 | x;
    return Bitmap(new GdiBitmap{{}, nWidth, nHeight, std::move(block)}, &DeleteObject);
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
            ASSERT_EQ(columns[i], expected) << source << " over " << dest << " at " << from << " + " << i;
            ASSERT_EQ(rows[i] >> 16, expected) << source << " over " << dest << " at " << from << " + " << i;
        }
    }
}

TEST(Stretch, WritesTheExposedPartAlone) {
    std::vector<u32> out(4 * 3, 77);
    StretchExposed(*Ramp(4, 4), {4, 4, 8, 8}, {2, 5, 5, 7}, out.data(), 4);
    EXPECT_EQ(out, (std::vector<u32>{0x20001, 0x20001, 0x20002, 77, 0x30001, 0x30001, 0x30002, 77, 77, 77, 77, 77}));
}
