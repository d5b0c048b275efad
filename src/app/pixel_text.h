// What the main window says of the pixel under the pointer.
#pragma once

#include "framework/core/gdi_bitmap.h"

#include <string>

// The place of a pixel, counted from the top left, and its red, green and blue; where bWithIndex is set, the
// index too that stands for them in a bitmap of 8 bits a pixel.
std::string PixelText(const GdiBitmap& bitmap, u32 x, u32 y, bool bWithIndex);
