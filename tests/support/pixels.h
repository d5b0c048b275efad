// Small pictures as text, so that a failing comparison can be seen.
#pragma once

#include "base/types.h"
#include "framework/core/gdi_bitmap.h"

#include <cstdio>
#include <map>
#include <string>

// As 0xFFRRGGBB.
inline u32 PixelOf(const GdiBitmap& bitmap, u32 x, u32 y) {
    u32 pixel = 0;
    bitmap.ReadPixels(y, x, 1, &pixel);
    return pixel;
}

// A letter for each pixel that is black (k), white, red, green or blue, "<rrggbb>" for any other; rows are
// separated by '/'. No bitmap gives no text.
inline std::string BitmapText(HBITMAP hBitmap) {
    static const std::map<u32, char> LETTERS = {
        {0xFF000000, 'k'}, {0xFFFFFFFF, 'w'}, {0xFFFF0000, 'r'}, {0xFF00FF00, 'g'}, {0xFF0000FF, 'b'}};
    std::string text;
    for (u32 i = 0; hBitmap && i < hBitmap->nWidth * hBitmap->nHeight; ++i) {
        if (i > 0 && i % hBitmap->nWidth == 0) text += '/';
        const u32 pixel = PixelOf(*hBitmap, i % hBitmap->nWidth, i / hBitmap->nWidth);
        char colour[10];
        std::snprintf(colour, sizeof(colour), "<%06x>", pixel & 0xFFFFFF);
        const auto letter = LETTERS.find(pixel);
        text += letter == LETTERS.end() ? colour : std::string(1, letter->second);
    }
    return text;
}
