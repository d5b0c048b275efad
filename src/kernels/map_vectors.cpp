// The colours of pixel values, of a map of up to 256 entries as a rule. Only the widest vectors can look
// bytes up in so large a table; for the others it is done word by word.

#include "kernels/plain_kernels.h"
#include "kernels/vector_kinds.h"

#include <algorithm>
#include <array>
#include <cstring>

#define HWY_WANT_AVX3_DL  // not among the kinds that are compiled by themselves
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/map_vectors.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#ifndef VISTREL_MAP_VECTORS_ONCE
#define VISTREL_MAP_VECTORS_ONCE

namespace map_vectors {

constexpr u32 COMPONENTS = 3;  // of a pixel: blue, green, red
constexpr u32 VECTOR_SIZE = 64;

using Places = std::array<u8, VECTOR_SIZE>;

// Where the bytes of one of the three vectors of 64 pixels come from: the pixel's place, in the second half
// of two vectors for green.
constexpr Places PlacesOf(u32 nVector) {
    Places places = {};
    for (u32 i = 0; i < VECTOR_SIZE; ++i) {
        const u32 byte = nVector * VECTOR_SIZE + i;
        places[i] = static_cast<u8>(byte / COMPONENTS + (byte % COMPONENTS == 1 ? VECTOR_SIZE : 0));
    }
    return places;
}

// A bit for each of its bytes that is red.
constexpr u64 RedOf(u32 nVector) {
    u64 red = 0;
    for (u32 i = 0; i < VECTOR_SIZE; ++i)
        if ((nVector * VECTOR_SIZE + i) % COMPONENTS == 2) red |= u64{1} << i;
    return red;
}

alignas(64) inline constexpr std::array<Places, COMPONENTS> PLACES = {PlacesOf(0), PlacesOf(1), PlacesOf(2)};
inline constexpr std::array<u64, COMPONENTS> RED = {RedOf(0), RedOf(1), RedOf(2)};

}  // namespace map_vectors

#endif

HWY_BEFORE_NAMESPACE();
namespace map_vectors::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

// A processor without vectors.
void PutKernels(RowKernels&) {}

#else

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<u8>;
using DoubleWords = hn::Repartition<u32, Bytes>;

HWY_INLINE u32 Largest(const u32* pValues, u32 nWidth) {
    const DoubleWords words;
    const u32 step = static_cast<u32>(hn::Lanes(words));
    auto largest = hn::Zero(words);
    u32 x = 0;
    for (; x + step <= nWidth; x += step) largest = hn::Max(largest, hn::LoadU(words, pValues + x));
    u32 result = hn::GetLane(hn::MaxOfLanes(words, largest));
    for (; x < nWidth; ++x) result = std::max(result, pValues[x]);
    return result;
}

#if HWY_TARGET == HWY_AVX3_DL

constexpr u32 MOST_COLOURS = 256;
constexpr u32 PARTS = MOST_COLOURS / VECTOR_SIZE;
constexpr u32 QUARTER = VECTOR_SIZE / 4;  // words in a vector

using Vector = hn::Vec<Bytes>;

// One component of all colours.
struct Component {
    Vector parts[PARTS];

    HWY_INLINE Vector operator[](Vector values) const {
        const auto look = [&](u32 nPart) {
            return Vector{_mm512_permutex2var_epi8(parts[nPart].raw, values.raw, parts[nPart + 1].raw)};
        };
        return hn::IfThenElse(hn::MaskFromVec(values), look(2), look(0));
    }
};

// The low bytes of 64 values. The largest value is kept.
HWY_INLINE Vector LowBytesOf(const u32* pValues, hn::Vec<DoubleWords>& largest) {
    const hn::Half<Bytes> half;
    const auto low = [&](u32 nQuarter) {
        const auto words = hn::LoadU(DoubleWords(), pValues + nQuarter * QUARTER);
        largest = hn::Max(largest, words);
        return hn::Vec<hn::Half<hn::Half<Bytes>>>{_mm512_cvtepi32_epi8(words.raw)};
    };
    return hn::Combine(Bytes(), hn::Combine(half, low(3), low(2)), hn::Combine(half, low(1), low(0)));
}

HWY_INLINE void StorePixels(u8* pOut, Vector blue, Vector green, Vector red) {
    const Bytes bytes;
    for (u32 i = 0; i < COMPONENTS; ++i) {
        const auto places = hn::Load(bytes, PLACES[i].data()).raw;
        const auto two = _mm512_permutex2var_epi8(blue.raw, places, green.raw);
        const Vector all{_mm512_mask_permutexvar_epi8(two, RED[i], places, red.raw)};
        hn::StoreU(all, bytes, pOut + i * VECTOR_SIZE);
    }
}

// Puts as many pixels as fill whole vectors, and returns how many. Of their values the largest is kept.
u32 PutMapped(u8* pOut, const u32* pValues, u32 nWidth, const u32* pColours, u32 nColours, u32& nLargest) {
    if (nWidth < MOST_COLOURS || nColours > MOST_COLOURS) return 0;
    HWY_ALIGN u32 colours[MOST_COLOURS] = {};
    std::memcpy(colours, pColours, nColours * sizeof(u32));
    Component blue;
    Component green;
    Component red;
    Vector unused;
    for (u32 part = 0; part < PARTS; ++part)
        hn::LoadInterleaved4(Bytes(), reinterpret_cast<const u8*>(colours + part * VECTOR_SIZE),
                             blue.parts[part], green.parts[part], red.parts[part], unused);
    auto largest = hn::Zero(DoubleWords());
    u32 x = 0;
    for (; nWidth - x >= VECTOR_SIZE; x += VECTOR_SIZE) {
        const Vector values = LowBytesOf(pValues + x, largest);
        StorePixels(pOut + u64{x} * COMPONENTS, blue[values], green[values], red[values]);
    }
    nLargest = hn::GetLane(hn::MaxOfLanes(DoubleWords(), largest));
    return x;
}

#else

u32 PutMapped(u8*, const u32*, u32, const u32*, u32, u32&) {
    return 0;
}

#endif

// Values are tested a row at once.
bool ColourMap(u8* pOut, const u32* pValues, u32 nWidth, const u32* pColours, u32 nColours) {
    if (nWidth == 0) return true;
    u32 largest = 0;
    const u32 x = PutMapped(pOut, pValues, nWidth, pColours, nColours, largest);
    const u32 left = nWidth - x;
    if (std::max(largest, Largest(pValues + x, left)) >= nColours) return false;
    LookUpColours(pOut + u64{x} * COMPONENTS, pValues + x, left, pColours);
    return true;
}

void PutKernels(RowKernels& kernels) {
    static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the first byte of a word is its lowest");
    kernels.ColourMap = ColourMap;
}

#endif

}  // namespace map_vectors::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace map_vectors {
static constexpr VectorKind ALL_KINDS[] = VISTREL_VECTOR_KINDS(PutKernels);
}

void UseMapVectors(RowKernels& kernels, i64 nKind) {
    PutKernelsOf(kernels, nKind, map_vectors::ALL_KINDS);
}
#endif
