// The checksums that pictures and data are told by.
#pragma once

#include "base/types.h"
#include "framework/core/gdi_bitmap.h"

#include <array>
#include <string>

// CRC-32 as in zlib and PNG, as 8 lower-case hexadecimal digits.
std::string Crc(const void* pData, u64 nSize);

struct PictureSums {
    std::string crc;          // of width x height x 3 bytes red, green, blue, top row first
    std::array<u64, 3> sums;  // of all red, green and blue bytes
};

PictureSums SumsOf(const GdiBitmap& bitmap);
