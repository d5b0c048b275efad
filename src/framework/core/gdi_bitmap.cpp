#include "framework/core/gdi_bitmap.h"

#include "kernels/row_kernels.h"

#include <algorithm>
#include <cassert>
#include <memory>
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

bool IsDrawable(const BITMAPINFOHEADER& header) {
    return header.biWidth > 0 && header.biHeight > 0 && header.biPlanes == 1 &&
           header.biCompression == BI_RGB && (header.biBitCount == 8 || header.biBitCount == 24);
}

}  // namespace

const u8* GdiBitmap::Row(u32 y) const {
    return bits.Data() + (nHeight - 1 - y) * DibStride(nWidth, header.biBitCount);
}

void GdiBitmap::ReadPixels(u32 y, u32 nFirst, u32 nCount, u32* pOut) const {
    if (header.biBitCount == 8)
        TheRowKernels().IndexedPixels(pOut, Row(y) + nFirst, nCount, colours);
    else
        TheRowKernels().Pixels24(pOut, Row(y) + u64{nFirst} * 3, nCount);
}

void GdiBitmap::GatherPixels(u32 y, const u32* pColumns, u32 nCount, u32* pOut) const {
    if (header.biBitCount == 8)
        TheRowKernels().IndexedColumns(pOut, Row(y), pColumns, nCount, colours);
    else
        TheRowKernels().Columns24(pOut, Row(y), pColumns, nCount);
}

HBITMAP CreateDIBitmap(HDC, const BITMAPINFOHEADER* pHeader, [[maybe_unused]] u32 nFlags, LargeBlock bits,
                       const BITMAPINFO* pInfo, [[maybe_unused]] u32 nUsage) {
    assert(nFlags == CBM_INIT && nUsage == DIB_RGB_COLORS);
    if (!IsDrawable(*pHeader)) return nullptr;
    auto bitmap = std::make_unique<GdiBitmap>();
    bitmap->header = *pHeader;
    bitmap->nWidth = static_cast<u32>(pHeader->biWidth);
    bitmap->nHeight = static_cast<u32>(pHeader->biHeight);
    assert(bits.Size() >= bitmap->nHeight * DibStride(bitmap->nWidth, pHeader->biBitCount));
    bitmap->bits = std::move(bits);
    if (pHeader->biBitCount == 8) FillLookup(bitmap->colours, *pInfo);
    return bitmap.release();
}

void DeleteObject(HBITMAP hBitmap) {
    delete hBitmap;
}
