// Stretching a bitmap over a rectangle of any size, with its own arithmetic: a picture of 4096 pixels at
// scale 32 is 131072 wide.
#pragma once

#include "framework/core/gdi_bitmap.h"
#include "framework/core/geometry.h"

// Which pixels of a bitmap, from its top left corner on, are stretched over a destination of which size. The
// source lies within the bitmap; no side is 0.
struct StretchSizes {
    u32 nSourceWidth;
    u32 nSourceHeight;
    u32 nDestWidth;
    u32 nDestHeight;
};

// The source position that a destination position shows: nearest neighbour.
constexpr u32 StretchSource(u32 nPosition, u32 nSource, u32 nDest) {
    return static_cast<u32>(u64{nPosition} * nSource / nDest);
}

// Fills the pixels of one exposed part of the destination. exposed lies within the destination; its rows
// go to pOut, nPitch words apart.
void StretchExposed(const GdiBitmap& bitmap, const StretchSizes& sizes, const CRect& exposed, u32* pOut,
                    u64 nPitch);
