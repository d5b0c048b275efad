// Pictures written in the PNG format.
#pragma once

#include "base/types.h"
#include "framework/core/gdi_bitmap.h"

#include <functional>
#include <string>
#include <vector>

class ByteSink;

enum class PngPixels : u8 { Rgb, Bgr, Rgba, Indices };  // bytes; indices are one each

struct PngText {
    const char* pszKey;
    std::string value;  // Latin-1
};

struct PngPicture {
    u32 nWidth = 0;
    u32 nHeight = 0;
    PngPixels pixels = PngPixels::Rgb;
    std::vector<u32> table = {};  // of indices, 1 to 256 entries of 0xFFRRGGBB
    std::vector<PngText> texts = {};
    int nLevel = 0;                            // of compression, 0 to 9
    std::function<const u8*(u32 y)> row = {};  // called once for each, the top one first
};

// False when it could not be written; errno says why. Exceptions of row pass through. The sink is not
// flushed.
bool WritePng(ByteSink& sink, const PngPicture& picture);
