#include "kernels/plain_kernels.h"

namespace {

u32 Pixel(const u8* pBgr) {
    return 0xFF000000 | u32{pBgr[2]} << 16 | u32{pBgr[1]} << 8 | pBgr[0];
}

}  // namespace

void PlainIndexedPixels(u32* pOut, const u8* pIndices, u32 nWidth, const u32* pColours) {
    for (u32 x = 0; x < nWidth; ++x) pOut[x] = pColours[pIndices[x]];
}

void PlainPixels24(u32* pOut, const u8* pPixels, u32 nWidth) {
    for (u32 x = 0; x < nWidth; ++x, pPixels += 3) pOut[x] = Pixel(pPixels);
}

void PlainIndexedColumns(u32* pOut, const u8* pIndices, const u32* pColumns, u32 nWidth,
                         const u32* pColours) {
    for (u32 x = 0; x < nWidth; ++x) pOut[x] = pColours[pIndices[pColumns[x]]];
}

void PlainColumns24(u32* pOut, const u8* pPixels, const u32* pColumns, u32 nWidth) {
    for (u32 x = 0; x < nWidth; ++x) pOut[x] = Pixel(pPixels + u64{pColumns[x]} * 3);
}

void PlainAddBytes(u16* pSums, const u8* pBytes, u32 nWidth) {
    for (u32 x = 0; x < nWidth; ++x) pSums[x] = static_cast<u16>(pSums[x] + pBytes[x]);
}
