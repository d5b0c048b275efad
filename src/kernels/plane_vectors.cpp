// Bit-planes turned into pixel values with vectors: as many plane bytes of eight planes as a vector holds are
// transposed at once, first the bytes, then the bits.

#include "kernels/plain_kernels.h"
#include "kernels/vector_kinds.h"

#include <algorithm>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/plane_vectors.cpp"
#include <hwy/cache_control.h>
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace plane_vectors::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

// A processor without vectors.
void PutKernels(RowKernels&) {}

#else

namespace hn = hwy::HWY_NAMESPACE;

constexpr u32 GROUP = 8;         // pixels in a byte of a plane row, and planes in a byte of a value
constexpr u32 MOST_PLANES = 32;  // that make a value
constexpr u32 BLOCK = 16;        // bytes of the vector's parts, which are interleaved each by itself
constexpr u32 LARGEST = 64;      // bytes of a vector that are made use of

// Exchanges the bits of the words that the mask and the shift say: one step of a transposition.
template <int SHIFT, class Vector>
HWY_INLINE Vector Exchange(Vector words, u64 nMask) {
    const hn::DFromV<Vector> d;
    const auto swap = hn::And(hn::Set(d, nMask), hn::Xor(words, hn::ShiftLeft<SHIFT>(words)));
    return hn::Xor(words, hn::Xor(swap, hn::ShiftRight<SHIFT>(swap)));
}

// Turns eight bytes of eight planes, the last plane's lowest, into eight bytes of eight pixels, the leftmost
// lowest: a transposition of 8 by 8 bits by swapping ever smaller blocks.
template <class Vector>
HWY_INLINE Vector PlanesToPixels(Vector words) {
    const hn::DFromV<Vector> d;
    const auto mixed = hn::Xor(hn::Xor(words, hn::ShiftLeft<36>(words)), hn::ShiftRight<36>(words));
    words = hn::Xor(words, hn::And(hn::Set(d, 0xF0F0F0F00F0F0F0F), mixed));
    words = Exchange<18>(words, 0xCCCC0000CCCC0000);
    return Exchange<9>(words, 0xAA00AA00AA00AA00);
}

// The values' bits of up to eight planes, in the order in which the vectors hold them: block b of vector v
// has the pixels from b * 128 + v * 16 on.
template <class D>
HWY_INLINE void GroupsToBytes(D bytes, u8* pOut, const u8* pColumn, u32 nPlanes, u32 nPlaneRowSize) {
    const hn::Repartition<u16, D> pairs;
    const hn::Repartition<u32, D> quads;
    const hn::Repartition<u64, D> words;
    hn::Vec<D> planes[GROUP];
    for (u32 p = 0; p < GROUP; ++p)
        planes[GROUP - 1 - p] =
            p < nPlanes ? hn::LoadU(bytes, pColumn + u64{p} * nPlaneRowSize) : hn::Zero(bytes);
    hn::Vec<decltype(pairs)> two[GROUP];
    for (u32 i = 0; i < GROUP / 2; ++i) {
        two[i] = hn::BitCast(pairs, hn::InterleaveLower(bytes, planes[2 * i], planes[2 * i + 1]));
        two[i + 4] = hn::BitCast(pairs, hn::InterleaveUpper(bytes, planes[2 * i], planes[2 * i + 1]));
    }
    const u64 size = hn::Lanes(bytes);
    for (u32 half = 0; half < GROUP; half += 4) {
        const auto low01 = hn::BitCast(quads, hn::InterleaveLower(pairs, two[half], two[half + 1]));
        const auto low23 = hn::BitCast(quads, hn::InterleaveLower(pairs, two[half + 2], two[half + 3]));
        const auto high01 = hn::BitCast(quads, hn::InterleaveUpper(pairs, two[half], two[half + 1]));
        const auto high23 = hn::BitCast(quads, hn::InterleaveUpper(pairs, two[half + 2], two[half + 3]));
        u8* const out = pOut + half * size;
        const auto put = [&](u32 nVector, hn::Vec<decltype(quads)> eight) {
            hn::StoreU(hn::BitCast(bytes, PlanesToPixels(hn::BitCast(words, eight))), bytes,
                       out + nVector * size);
        };
        put(0, hn::InterleaveLower(quads, low01, low23));
        put(1, hn::InterleaveUpper(quads, low01, low23));
        put(2, hn::InterleaveLower(quads, high01, high23));
        put(3, hn::InterleaveUpper(quads, high01, high23));
    }
}

// Puts the bits of a group of planes into 16 values, or adds them to those of the planes before.
HWY_INLINE void WidenBlock(u32* pValues, const u8* pBytes, u32 nFirstPlane) {
    const hn::CappedTag<u32, BLOCK> values;
    const hn::Rebind<u8, decltype(values)> bytes;
    for (u32 i = 0; i < BLOCK; i += static_cast<u32>(hn::Lanes(values))) {
        auto value = hn::PromoteTo(values, hn::LoadU(bytes, pBytes + i));
        if (nFirstPlane != 0)
            value = hn::Or(hn::ShiftLeftSame(value, static_cast<int>(nFirstPlane)),
                           hn::LoadU(values, pValues + i));
        hn::StoreU(value, values, pValues + i);
    }
}

// Returns how many pixels it has put, in whole vectors of plane bytes.
template <class D>
HWY_INLINE u32 PutValues(D bytes, u32* pValues, const u8* pPlanes, u32 nWidth, u32 nPlanes,
                         u32 nPlaneRowSize) {
    const u32 size = static_cast<u32>(hn::Lanes(bytes));
    const u32 step = size * GROUP;
    u32 x = 0;
    for (; nWidth - x >= step; x += step)
        for (u32 first = 0; first < nPlanes; first += GROUP) {
            HWY_ALIGN u8 groups[GROUP * LARGEST];
            GroupsToBytes(bytes, groups, pPlanes + u64{first} * nPlaneRowSize + x / GROUP,
                          std::min(nPlanes - first, GROUP), nPlaneRowSize);
            for (u32 block = 0; block < size / BLOCK; ++block)
                for (u32 vector = 0; vector < GROUP; ++vector)
                    WidenBlock(pValues + x + (block * GROUP + vector) * BLOCK,
                               groups + vector * size + block * BLOCK, first);
        }
    return x;
}

void PlanesToValues(u32* pValues, const u8* pPlanes, u32 nWidth, u32 nPlanes, u32 nPlaneRowSize) {
    const u32 planes = std::min(nPlanes, MOST_PLANES);
    const u64 rowSize = u64{nPlanes} * nPlaneRowSize;
    for (u64 at = 0; at < rowSize; at += 64) hwy::Prefetch(pPlanes + rowSize + at);
    u32 x = 0;
    if (planes > 0) {
        x = PutValues(hn::CappedTag<u8, LARGEST>(), pValues, pPlanes, nWidth, planes, nPlaneRowSize);
        x += PutValues(hn::FixedTag<u8, BLOCK>(), pValues + x, pPlanes + x / GROUP, nWidth - x, planes,
                       nPlaneRowSize);
    }
    PLAIN_ROW_KERNELS.PlanesToValues(pValues + x, pPlanes + x / GROUP, nWidth - x, nPlanes, nPlaneRowSize);
}

void PutKernels(RowKernels& kernels) {
    static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the first byte of a word is its lowest");
    kernels.PlanesToValues = PlanesToValues;
}

#endif

}  // namespace plane_vectors::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace plane_vectors {
static constexpr VectorKind ALL_KINDS[] = VISTREL_VECTOR_KINDS(PutKernels);
}

void UsePlaneVectors(RowKernels& kernels, i64 nKind) {
    PutKernelsOf(kernels, nKind, plane_vectors::ALL_KINDS);
}
#endif
