// Small pictures as rows of text, so that a failing comparison can be seen.
#pragma once

#include "base/types.h"
#include "framework/core/gdi_bitmap.h"

#include <cstdio>
#include <map>
#include <string>
#include <vector>

using TextRows = std::vector<std::string>;

// One letter for each pixel: k black, w white, r, g, b; '?' for any other colour. No bitmap gives no rows.
inline TextRows BitmapText(HBITMAP hBitmap) {
    static const std::map<u32, char> LETTERS = {
        {0xFF000000, 'k'}, {0xFFFFFFFF, 'w'}, {0xFFFF0000, 'r'}, {0xFF00FF00, 'g'}, {0xFF0000FF, 'b'}};
    TextRows rows(hBitmap ? hBitmap->nHeight : 0);
    for (u32 y = 0; y < rows.size(); ++y) {
        for (u32 x = 0; x < hBitmap->nWidth; ++x) {
            const auto letter = LETTERS.find(hBitmap->Row(y)[x]);
            rows[y] += letter == LETTERS.end() ? '?' : letter->second;
        }
    }
    return rows;
}

// Every pixel as "rrggbb", rows one behind the other, separated by spaces.
inline std::string BitmapColours(HBITMAP hBitmap) {
    std::string text;
    for (u32 i = 0; hBitmap && i < hBitmap->nWidth * hBitmap->nHeight; ++i) {
        char colour[8];
        std::snprintf(
            colour, sizeof(colour), " %06x", hBitmap->Row(i / hBitmap->nWidth)[i % hBitmap->nWidth] & 0xFFFFFF);
        text += colour + (i == 0);
    }
    return text;
}
