#include "framework/core/stretch.h"

#include <cstring>
#include <vector>

void StretchExposed(const GdiBitmap& bitmap, const StretchSizes& sizes, const CRect& exposed, u32* pOut,
                    u64 nPitch) {
    const u32 width = static_cast<u32>(exposed.Width());
    std::vector<u32> columns(width);
    for (u32 x = 0; x < width; ++x)
        columns[x] = StretchSource(static_cast<u32>(exposed.left) + x, sizes.nSourceWidth, sizes.nDestWidth);

    const bool contiguous = sizes.nSourceWidth == sizes.nDestWidth;
    u64 shown = ~u64{0};  // the source row in the row above
    for (int y = exposed.top; y < exposed.bottom; ++y, pOut += nPitch) {
        const u32 sourceY = StretchSource(static_cast<u32>(y), sizes.nSourceHeight, sizes.nDestHeight);
        if (sourceY == shown)
            std::memcpy(pOut, pOut - nPitch, u64{width} * sizeof(u32));
        else if (contiguous)
            bitmap.ReadPixels(sourceY, static_cast<u32>(exposed.left), width, pOut);
        else
            bitmap.GatherPixels(sourceY, columns.data(), width, pOut);
        shown = sourceY;
    }
}
