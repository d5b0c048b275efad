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

TextRows BitmapText(HBITMAP hBitmap) {
    TextRows rows;
    for (u32 y = 0; hBitmap && y < hBitmap->nHeight; ++y) {
        std::string row;
        for (u32 x = 0; x < hBitmap->nWidth; ++x) {
            switch (hBitmap->Row(y)[x]) {
                case 0xFF000000:
                    row += 'k';
                    break;
                case 0xFFFFFFFF:
                    row += 'w';
                    break;
                case 0xFFFF0000:
                    row += 'r';
                    break;
                case 0xFF00FF00:
                    row += 'g';
                    break;
                case 0xFF0000FF:
                    row += 'b';
                    break;
                default:
                    row += '?';
            }
        }
        rows.push_back(row);
    }
    return rows;
}

std::string BitmapColours(HBITMAP hBitmap) {
    std::string text;
    for (u32 y = 0; hBitmap && y < hBitmap->nHeight; ++y)
        for (u32 x = 0; x < hBitmap->nWidth; ++x)
            text += (text.empty() ? "" : " ") + ColourText(hBitmap->Row(y)[x]);
    return text;
}
