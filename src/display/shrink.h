// A bitmap made smaller, each pixel the mean of the area that it covers, to the fraction of a pixel.
#pragma once

#include "base/large_block.h"
#include "base/types.h"

struct GdiBitmap;

struct SideLengths {
    u32 nWidth = 0;   // pixels
    u32 nHeight = 0;  // rows
};

// The largest size of the same proportions whose sides are at most nMost, and at least 1. Never larger than
// what is given, whose sides are not 0.
SideLengths FitInto(const SideLengths& sides, u32 nMost);

// Red, green and blue bytes, the top row first, rows without padding. No side is larger than the bitmap's,
// none is 0. Throws CMemoryException.
LargeBlock Shrink(const GdiBitmap& bitmap, const SideLengths& sides);
