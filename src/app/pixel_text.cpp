#include "app/pixel_text.h"

std::string PixelText(const GdiBitmap& bitmap, u32 x, u32 y, bool bWithIndex) {
    u32 pixel;
    bitmap.ReadPixels(y, x, 1, &pixel);
    const auto component = [&](int nShift) { return std::to_string(pixel >> nShift & 0xFF); };
    std::string text = "x " + std::to_string(x) + ", y " + std::to_string(y) + ": " + component(16) + ", " +
                       component(8) + ", " + component(0);
    if (bWithIndex && bitmap.header.biBitCount == 8) text += " (" + std::to_string(bitmap.Row(y)[x]) + ")";
    return text;
}
