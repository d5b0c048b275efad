#include "support/pixels.h"

#include <cstdio>

std::string ValueText(const u32* pValues, u32 nWidth) {
    static constexpr char DIGITS[] = "0123456789abcdefghijklmnopqrstuvwxyz";
    std::string text;
    for (u32 x = 0; x < nWidth; ++x) text += pValues[x] < 36 ? DIGITS[pValues[x]] : '#';
    return text;
}

std::string ColourText(u32 pixel) {
    char text[8];
    std::snprintf(text, sizeof(text), "%06x", pixel & 0xFFFFFF);
    return text;
}

static char Letter(u32 pixel) {
    switch (pixel) {
        case 0xFF000000: return 'k';
        case 0xFFFFFFFF: return 'w';
        case 0xFFFF0000: return 'r';
        case 0xFF00FF00: return 'g';
        case 0xFF0000FF: return 'b';
        default: return '?';
    }
}

TextRows BitmapText(HBITMAP hBitmap) {
    TextRows rows(hBitmap ? hBitmap->nHeight : 0);
    for (u32 y = 0; y < rows.size(); ++y)
        for (u32 x = 0; x < hBitmap->nWidth; ++x) rows[y] += Letter(hBitmap->Row(y)[x]);
    return rows;
}

std::string BitmapColours(HBITMAP hBitmap) {
    std::string text;
    for (u32 y = 0; hBitmap && y < hBitmap->nHeight; ++y)
        for (u32 x = 0; x < hBitmap->nWidth; ++x) text += (text.empty() ? "" : " ") + ColourText(hBitmap->Row(y)[x]);
    return text;
}
