#include "tools/describe/checksum.h"

#include "tools/common/pictures.h"

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
    std::vector<u8> row(u64{bitmap.nWidth} * 3);
    for (u32 y = 0; y < bitmap.nHeight; ++y) {
        CopyRgbRow(bitmap, y, row.data());
        for (u64 i = 0; i < row.size(); i += 3)
            for (u64 component = 0; component < 3; ++component) result.sums[component] += row[i + component];
        crc = crc32_z(crc, row.data(), row.size());
    }
    result.crc = Hex(crc);
    return result;
}
