// Pixels of 24 bits made pixels of 32 bits, and bytes added up, with vectors.

#include "kernels/plain_kernels.h"
#include "kernels/vector_kinds.h"

#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/pixel_vectors.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace pixel_vectors::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

// A processor without vectors.
void PutKernels(RowKernels&) {}

#else

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::FixedTag<u8, 16>;
using Words = hn::FixedTag<u32, 4>;

constexpr u32 TOGETHER = 4;    // pixels
constexpr u32 PIXEL_SIZE = 3;  // bytes
constexpr u32 OPAQUE = 0xFF000000;

// The last byte of each word is made opaque, whatever is put there.
alignas(16) constexpr u8 PLACES[] = {0, 1, 2, 2, 3, 4, 5, 5, 6, 7, 8, 8, 9, 10, 11, 11};

void Pixels24(u32* pOut, const u8* pPixels, u32 nWidth) {
    const Bytes bytes;
    const Words words;
    const auto places = hn::Load(bytes, PLACES);
    const auto opaque = hn::Set(words, OPAQUE);
    u32 x = 0;
    // A vector holds more than the pixels that are taken from it.
    for (; nWidth - x > TOGETHER + 1; x += TOGETHER) {
        const auto pixels = hn::LoadU(bytes, pPixels + u64{x} * PIXEL_SIZE);
        const auto placed = hn::BitCast(words, hn::TableLookupBytes(pixels, places));
        hn::StoreU(hn::Or(placed, opaque), words, pOut + x);
    }
    PLAIN_ROW_KERNELS.Pixels24(pOut + x, pPixels + u64{x} * PIXEL_SIZE, nWidth - x);
}

// A pixel is the upper bytes of the word that begins before it, which the first column has not.
void Columns24(u32* pOut, const u8* pPixels, const u32* pColumns, u32 nWidth) {
    for (u32 x = 0; x < nWidth; ++x) {
        if (pColumns[x] == 0) {
            PLAIN_ROW_KERNELS.Columns24(pOut + x, pPixels, pColumns + x, 1);
            continue;
        }
        u32 word;
        std::memcpy(&word, pPixels + u64{pColumns[x]} * PIXEL_SIZE - 1, sizeof(word));
        pOut[x] = word >> 8 | OPAQUE;
    }
}

void AddBytes(u16* pSums, const u8* pBytes, u32 nWidth) {
    const hn::ScalableTag<u16> sums;
    const hn::Rebind<u8, decltype(sums)> bytes;
    const u32 together = static_cast<u32>(hn::Lanes(sums));
    u32 x = 0;
    for (; nWidth - x >= together; x += together) {
        const auto added = hn::PromoteTo(sums, hn::LoadU(bytes, pBytes + x));
        hn::StoreU(hn::Add(hn::LoadU(sums, pSums + x), added), sums, pSums + x);
    }
    PLAIN_ROW_KERNELS.AddBytes(pSums + x, pBytes + x, nWidth - x);
}

void PutKernels(RowKernels& kernels) {
    static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the first byte of a word is its lowest");
    kernels.Pixels24 = Pixels24;
    kernels.Columns24 = Columns24;
    kernels.AddBytes = AddBytes;
}

#endif

}  // namespace pixel_vectors::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace pixel_vectors {
static constexpr VectorKind ALL_KINDS[] = VISTREL_VECTOR_KINDS(PutKernels);
}

void UsePixelVectors(RowKernels& kernels, i64 nKind) {
    PutKernelsOf(kernels, nKind, pixel_vectors::ALL_KINDS);
}
#endif
