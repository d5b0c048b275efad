#include "framework/core/stretch.h"

#include <cstring>
#include <vector>

void StretchExposed(const GdiBitmap& bitmap, const StretchSizes& sizes, const CRect& exposed, u32* pOut,
                    u64 nPitch) {
    const u32 width = static_cast<u32>(exposed.Width());
    std::vector<u32> columns(width);
    for (u32 x = 0; x < width; ++x)
        columns[x] =
            static_cast<u32>(u64{static_cast<u32>(exposed.left) + x} * sizes.nSourceWidth / sizes.nDestWidth);

    const bool contiguous = sizes.nSourceWidth == sizes.nDestWidth;
    const u32* shown = nullptr;  // the source row in the row above
    for (int y = exposed.top; y < exposed.bottom; ++y, pOut += nPitch) {
        const u64 sourceY = u64{static_cast<u32>(y)} * sizes.nSourceHeight / sizes.nDestHeight;
        const u32* const row = bitmap.Row(static_cast<u32>(sourceY));
        if (row == shown)
            std::memcpy(pOut, pOut - nPitch, u64{width} * sizeof(u32));
        else if (contiguous)
            std::memcpy(pOut, row + exposed.left, u64{width} * sizeof(u32));
        else
            for (u32 x = 0; x < width; ++x) pOut[x] = row[columns[x]];
        shown = row;
    }
}
