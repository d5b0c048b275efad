#include "tools/describe/checksum.h"

#include <cstdio>
#include <vector>
#include <zlib.h>

namespace {

std::string Hex(uLong nCrc) {
    char text[9];
    std::snprintf(text, sizeof(text), "%08lx", nCrc);
    return text;
}

}  // namespace

std::string Crc(const void* pData, u64 nSize) {
    return Hex(crc32_z(0, static_cast<const Bytef*>(pData), nSize));
}

PictureSums SumsOf(const GdiBitmap& bitmap) {
    PictureSums result = {};
    uLong crc = 0;
    std::vector<u32> pixels(bitmap.nWidth);
    std::vector<u8> row(u64{bitmap.nWidth} * 3);
    for (u32 y = 0; y < bitmap.nHeight; ++y) {
        bitmap.ReadPixels(y, 0, bitmap.nWidth, pixels.data());
        u8* out = row.data();
        for (u32 x = 0; x < bitmap.nWidth; ++x) {
            for (u32 component = 0; component < 3; ++component) {
                const u8 value = static_cast<u8>(pixels[x] >> (16 - 8 * component));
                result.sums[component] += value;
                *out++ = value;
            }
        }
        crc = crc32_z(crc, row.data(), row.size());
    }
    result.crc = Hex(crc);
    return result;
}
