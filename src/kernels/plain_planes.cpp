#include "kernels/plain_kernels.h"

#include <algorithm>

namespace {

constexpr u32 MOST_PLANES = 32;
constexpr u32 GROUP = 8;  // pixels in a byte of a plane row, and planes in a byte of a value

// Turns eight bytes of eight planes into eight bytes of eight pixels. Byte p of the input is plane p's, its
// leftmost pixel in bit 7; byte x of the output is pixel x's, plane p in its bit p.
u64 PlanesToPixels(u64 nPlanes) {
    // A transposition of 8 by 8 bits about the diagonal, by swapping ever larger blocks, gives pixel x in
    // byte 7 - x; the byte order is turned round at the end.
    u64 swap = (nPlanes ^ (nPlanes >> 7)) & 0x00AA00AA00AA00AA;
    nPlanes ^= swap ^ (swap << 7);
    swap = (nPlanes ^ (nPlanes >> 14)) & 0x0000CCCC0000CCCC;
    nPlanes ^= swap ^ (swap << 14);
    swap = (nPlanes ^ (nPlanes >> 28)) & 0x00000000F0F0F0F0;
    nPlanes ^= swap ^ (swap << 28);
    return __builtin_bswap64(nPlanes);
}

// The bytes of up to eight planes for one group of pixels, the first plane's lowest.
u64 GatherPlanes(const u8* pColumn, u32 nPlaneRowSize, u32 nPlanes) {
    u64 bytes = 0;
    for (u32 p = 0; p < nPlanes; ++p) bytes |= u64{pColumn[u64{p} * nPlaneRowSize]} << (8 * p);
    return bytes;
}

}  // namespace

void PlainPlanesToValues(u32* pValues, const u8* pPlanes, u32 nWidth, u32 nPlanes, u32 nPlaneRowSize) {
    const u32 planes = std::min(nPlanes, MOST_PLANES);
    for (u32 x = 0; x < nWidth; x += GROUP) {
        u32 values[GROUP] = {};
        for (u32 first = 0; first < planes; first += GROUP) {
            const u8* const column = pPlanes + u64{first} * nPlaneRowSize + x / GROUP;
            u64 pixels = PlanesToPixels(GatherPlanes(column, nPlaneRowSize, std::min(planes - first, GROUP)));
            for (u32 i = 0; i < GROUP; ++i, pixels >>= 8)
                values[i] |= static_cast<u32>(pixels & 0xFF) << first;
        }
        std::copy_n(values, std::min(nWidth - x, GROUP), pValues + x);
    }
}
