#include "kernels/plain_kernels.h"

#include <cstring>

namespace {

constexpr u32 TOGETHER = 8;  // pixels, which three words hold
constexpr u32 PIXEL_SIZE = 3;

void PutWord(u8* pOut, u64 nWord) {
    std::memcpy(pOut, &nWord, sizeof(nWord));
}

}  // namespace

// Compiled for any processor: compilers make gathers of this where they have them, which take twice the time.
void LookUpColours(u8* pOut, const u32* pValues, u32 nWidth, const u32* pColours) {
    static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the first byte of a word is its lowest");
    u32 x = 0;
    for (; nWidth - x >= TOGETHER; x += TOGETHER, pValues += TOGETHER, pOut += TOGETHER * PIXEL_SIZE) {
        const u64 third = pColours[pValues[2]];
        const u64 sixth = pColours[pValues[5]];
        PutWord(pOut, pColours[pValues[0]] | u64{pColours[pValues[1]]} << 24 | third << 48);
        PutWord(pOut + 8,
                third >> 16 | u64{pColours[pValues[3]]} << 8 | u64{pColours[pValues[4]]} << 32 | sixth << 56);
        PutWord(pOut + 16, sixth >> 8 | u64{pColours[pValues[6]]} << 16 | u64{pColours[pValues[7]]} << 40);
    }
    for (; x < nWidth; ++x, ++pValues, pOut += PIXEL_SIZE) std::memcpy(pOut, &pColours[*pValues], PIXEL_SIZE);
}
