// Pictures written in the PNG format.
#pragma once

#include "base/types.h"
#include "framework/core/gdi_bitmap.h"

#include <functional>
#include <string>
#include <vector>

class ByteSink;

enum class PngPixels : u8 { Rgb, Bgr, Rgba, Indices };  // bytes; indices are one each

// Small: what takes several times as long to write as to make. Quick: files that are larger by a third, and
// soon read by another program.
enum class PngEffort : u8 { Small, Quick };

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
    PngEffort effort = PngEffort::Small;
    std::function<const u8*(u32 y)> row = {};  // called once for each, the top one first
};

// False when it could not be written; errno says why. Exceptions of row pass through. The sink is not
// flushed.
bool WritePng(ByteSink& sink, const PngPicture& picture);
