// Bitmaps: the device-independent description that a picture is handed over in, and the device bitmap made
// from it, which keeps the pixels as they were handed over. Whoever draws converts what is exposed.
#pragma once

#include "base/large_block.h"
#include "base/types.h"

struct RGBQUAD {
    u8 rgbBlue;
    u8 rgbGreen;
    u8 rgbRed;
    u8 rgbReserved;
};

struct BITMAPINFOHEADER {
    u32 biSize;  // 40
    i32 biWidth;
    i32 biHeight;  // positive: the bottom row comes first
    u16 biPlanes;  // 1
    u16 biBitCount;
    u32 biCompression;
    u32 biSizeImage;
    i32 biXPelsPerMeter;
    i32 biYPelsPerMeter;
    u32 biClrUsed;  // filled entries of the colour table
    u32 biClrImportant;
};

struct BITMAPINFO {
    BITMAPINFOHEADER bmiHeader;
    RGBQUAD bmiColors[256];
};

constexpr u32 BI_RGB = 0;
constexpr u32 CBM_INIT = 4;
constexpr u32 DIB_RGB_COLORS = 0;

// Bytes of a row of 8 or 24 bits a pixel, which is padded to four bytes.
constexpr u64 DibStride(u64 nWidth, u32 nBitCount) {
    return (nWidth * nBitCount / 8 + 3) & ~u64{3};
}

// A device bitmap. Its pixels are read as words of 0xFFRRGGBB.
struct GdiBitmap {
    BITMAPINFOHEADER header;  // as it was handed over
    u32 nWidth = 0;
    u32 nHeight = 0;
    LargeBlock bits;        // rows of header.biBitCount bits a pixel, the bottom one first
    u32 colours[256] = {};  // of the indices that 8 bits a pixel are

    // 0 is the top row.
    const u8* Row(u32 y) const;

    // nCount pixels of a row from the column nFirst on.
    void ReadPixels(u32 y, u32 nFirst, u32 nCount, u32* pOut) const;

    // Those of any columns.
    void GatherPixels(u32 y, const u32* pColumns, u32 nCount, u32* pOut) const;
};

using HBITMAP = GdiBitmap*;
struct GdiDevice;
using HDC = GdiDevice*;  // no bitmap here depends on a device, so none is ever needed

// Makes a device bitmap of the bits, which it takes over; the caller frees it with DeleteObject. Null when
// the picture is empty, or its description is none that is drawn here (8 bits with a colour table or 24 bits,
// bottom-up).
//
// pHeader describes the bitmap, pInfo the bits: rows of biBitCount bits a pixel, each padded to four bytes.
// An index at or after the filled entries of the colour table shows black; without any it is a shade of
// grey.
HBITMAP CreateDIBitmap(HDC hdc, const BITMAPINFOHEADER* pHeader, u32 nFlags, LargeBlock bits,
                       const BITMAPINFO* pInfo, u32 nUsage);

// Null is passed over.
void DeleteObject(HBITMAP hBitmap);
