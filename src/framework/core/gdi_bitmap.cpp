#include "framework/core/gdi_bitmap.h"

#include "base/checked_size.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace {

constexpr u32 OPAQUE = 0xFF000000;

constexpr u32 Pixel(u32 nRed, u32 nGreen, u32 nBlue) {
    return OPAQUE | nRed << 16 | nGreen << 8 | nBlue;
}

void FillLookup(u32* pLookup, const BITMAPINFO& info) {
    const u32 filled = std::min<u32>(info.bmiHeader.biClrUsed, 256);
    for (u32 i = 0; i < 256; ++i) {
        const RGBQUAD& colour = info.bmiColors[i];
        if (i < filled)
            pLookup[i] = Pixel(colour.rgbRed, colour.rgbGreen, colour.rgbBlue);
        else
            pLookup[i] = filled == 0 ? Pixel(i, i, i) : OPAQUE;
    }
}

void ExpandIndexRow(u32* pOut, const u8* pRow, u32 nWidth, const u32* pLookup) {
    for (u32 x = 0; x < nWidth; ++x) pOut[x] = pLookup[pRow[x]];
}

void ExpandBgrRow(u32* pOut, const u8* pRow, u32 nWidth) {
    for (u32 x = 0; x < nWidth; ++x, pRow += 3) pOut[x] = Pixel(pRow[2], pRow[1], pRow[0]);
}

bool IsDrawable(const BITMAPINFOHEADER& header) {
    return header.biWidth > 0 && header.biHeight > 0 && header.biPlanes == 1 &&
           header.biCompression == BI_RGB && (header.biBitCount == 8 || header.biBitCount == 24);
}

}  // namespace

const u32* GdiBitmap::Row(u32 nRow) const {
    return reinterpret_cast<const u32*>(block.Data()) + u64{nRow} * nWidth;
}

HBITMAP CreateDIBitmap(HDC, const BITMAPINFOHEADER* pHeader, [[maybe_unused]] u32 nFlags, const void* pBits,
                       const BITMAPINFO* pInfo, [[maybe_unused]] u32 nUsage) {
    assert(nFlags == CBM_INIT && nUsage == DIB_RGB_COLORS);
    if (!IsDrawable(*pHeader)) return nullptr;
    const u32 width = static_cast<u32>(pHeader->biWidth);
    const u32 height = static_cast<u32>(pHeader->biHeight);
    LargeBlock block = LargeBlock::Try(SizeProduct(width, height, sizeof(u32)));
    if (!block) return nullptr;

    const u64 stride = (u64{width} * pHeader->biBitCount / 8 + 3) & ~u64{3};
    const u8* row = static_cast<const u8*>(pBits) + stride * height;
    u32* out = reinterpret_cast<u32*>(block.Data());
    u32 lookup[256];
    if (pHeader->biBitCount == 8) FillLookup(lookup, *pInfo);
    for (u32 y = 0; y < height; ++y, out += width) {
        row -= stride;
        if (pHeader->biBitCount == 8)
            ExpandIndexRow(out, row, width, lookup);
        else
            ExpandBgrRow(out, row, width);
    }
    return new GdiBitmap{*pHeader, width, height, std::move(block)};
}

void DeleteObject(HBITMAP hBitmap) {
    delete hBitmap;
}
