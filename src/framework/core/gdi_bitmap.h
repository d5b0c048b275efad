// Bitmaps: the device-independent description that a picture is handed over in, and the device bitmap made
// from it, which is plain pixels in memory, ready for the screen.
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

// A device bitmap: top row first, one word for each pixel, 0xFFRRGGBB, no padding.
struct GdiBitmap {
    BITMAPINFOHEADER header;  // as it was handed over
    u32 nWidth;
    u32 nHeight;
    LargeBlock block;

    const u32* Row(u32 nRow) const;
};

using HBITMAP = GdiBitmap*;
struct GdiDevice;
using HDC = GdiDevice*;  // no bitmap here depends on a device, so none is ever needed

// Copies the pixels into a new device bitmap, which the caller frees with DeleteObject. Null when the picture
// is empty, its description is none that is drawn here (8 bits with a colour table or 24 bits, bottom-up), or
// the memory cannot be had.
//
// pHeader describes the bitmap, pInfo the bits: rows of biBitCount bits a pixel, each padded to four bytes.
// An index at or after the filled entries of the colour table shows black; without any it is a shade of
// grey.
HBITMAP CreateDIBitmap(HDC hdc, const BITMAPINFOHEADER* pHeader, u32 nFlags, const void* pBits,
                       const BITMAPINFO* pInfo, u32 nUsage);

// Null is passed over.
void DeleteObject(HBITMAP hBitmap);
