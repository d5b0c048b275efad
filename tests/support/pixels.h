// Small pictures as rows of text, so that a failing comparison can be seen.
#pragma once

#include "base/types.h"
#include "framework/core/gdi_bitmap.h"

#include <string>
#include <vector>

using TextRows = std::vector<std::string>;

// Values below 36 as digits and letters, others as '#'.
std::string ValueText(const u32* pValues, u32 nWidth);

// A pixel as "rrggbb".
std::string ColourText(u32 pixel);

// One letter for each pixel: k black, w white, r, g, b; '?' for any other colour. No bitmap gives no rows.
TextRows BitmapText(HBITMAP hBitmap);

// Every pixel as "rrggbb", rows one behind the other, separated by spaces.
std::string BitmapColours(HBITMAP hBitmap);
