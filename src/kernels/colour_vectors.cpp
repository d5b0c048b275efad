// Colours packed into pixels of 24 bits with vectors of any length: compiled once for each kind of processor,
// of which the best that is there is chosen. What does not fill a vector is left to
// the plain kernels, so nothing outside the rows is read or written.

#include "kernels/plain_kernels.h"
#include "kernels/vector_kinds.h"

#include <algorithm>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/colour_vectors.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace colour_vectors::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

// A processor without vectors.
void PutKernels(RowKernels&) {}

#else

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<u8>;
using HalfBytes = hn::Half<Bytes>;
using Words = hn::Repartition<u16, Bytes>;
using HalfWords = hn::Half<Words>;
using SignedWords = hn::RebindToSigned<Words>;
using DoubleWords = hn::Repartition<u32, Bytes>;
using SignedDoubleWords = hn::RebindToSigned<DoubleWords>;

// Components of a pixel, and so bytes from one to the next.
constexpr u32 COMPONENTS = 3;

// The low or the high byte of as many words as a vector has bytes.
template <bool HIGH>
HWY_INLINE hn::Vec<Bytes> LoadHalves(const u16* pSamples) {
    hn::Vec<Bytes> low;
    hn::Vec<Bytes> high;
    hn::LoadInterleaved2(Bytes(), reinterpret_cast<const u8*>(pSamples), low, high);
    return HIGH ? high : low;
}

// Returns how many samples it has put, in whole vectors.
template <bool HIGH>
u32 PutHalves(u8* pOut, const u16* pSamples, u32 nWidth) {
    const Bytes bytes;
    const u32 step = static_cast<u32>(hn::Lanes(bytes));
    u32 x = 0;
    for (; x + step <= nWidth; x += step) hn::StoreU(LoadHalves<HIGH>(pSamples + x), bytes, pOut + x);
    return x;
}

void HighBytes(u8* pOut, const u16* pSamples, u32 nWidth) {
    const u32 x = PutHalves<true>(pOut, pSamples, nWidth);
    PLAIN_ROW_KERNELS.HighBytes(pOut + x, pSamples + x, nWidth - x);
}

void LowBytes(u8* pOut, const u16* pSamples, u32 nWidth) {
    const u32 x = PutHalves<false>(pOut, pSamples, nWidth);
    PLAIN_ROW_KERNELS.LowBytes(pOut + x, pSamples + x, nWidth - x);
}

void Rgb8(u8* pOut, const u8* pRed, const u8* pGreen, const u8* pBlue, u32 nWidth) {
    const Bytes bytes;
    const u32 step = static_cast<u32>(hn::Lanes(bytes));
    u32 x = 0;
    for (; x + step <= nWidth; x += step)
        hn::StoreInterleaved3(hn::LoadU(bytes, pBlue + x), hn::LoadU(bytes, pGreen + x),
                              hn::LoadU(bytes, pRed + x), bytes, pOut + u64{x} * COMPONENTS);
    PLAIN_ROW_KERNELS.Rgb8(pOut + u64{x} * COMPONENTS, pRed + x, pGreen + x, pBlue + x, nWidth - x);
}

void Rgb16(u8* pOut, const u16* pRed, const u16* pGreen, const u16* pBlue, u32 nWidth) {
    const Bytes bytes;
    const u32 step = static_cast<u32>(hn::Lanes(bytes));
    u32 x = 0;
    for (; x + step <= nWidth; x += step)
        hn::StoreInterleaved3(LoadHalves<true>(pBlue + x), LoadHalves<true>(pGreen + x),
                              LoadHalves<true>(pRed + x), bytes, pOut + u64{x} * COMPONENTS);
    PLAIN_ROW_KERNELS.Rgb16(pOut + u64{x} * COMPONENTS, pRed + x, pGreen + x, pBlue + x, nWidth - x);
}

// floor(x / 255) is (x + 1 + floor(x / 256)) / 256 for every product of two bytes.
HWY_INLINE hn::Vec<HalfBytes> Inked8(hn::Vec<HalfBytes> component, hn::Vec<HalfBytes> black) {
    const Words words;
    const auto product = hn::Mul(hn::PromoteTo(words, component), hn::PromoteTo(words, black));
    const auto sum = hn::Add(hn::Add(product, hn::Set(words, 1)), hn::ShiftRight<8>(product));
    return hn::DemoteTo(HalfBytes(), hn::BitCast(SignedWords(), hn::ShiftRight<8>(sum)));
}

HWY_INLINE hn::Vec<Bytes> Inked8(const u8* pComponent, const u8* pBlack) {
    const Bytes bytes;
    const HalfBytes half;
    const auto component = hn::LoadU(bytes, pComponent);
    const auto black = hn::LoadU(bytes, pBlack);
    return hn::Combine(bytes, Inked8(hn::UpperHalf(half, component), hn::UpperHalf(half, black)),
                       Inked8(hn::LowerHalf(half, component), hn::LowerHalf(half, black)));
}

void Cmyk8(u8* pOut, const u8* pCyan, const u8* pMagenta, const u8* pYellow, const u8* pBlack, u32 nWidth) {
    const Bytes bytes;
    const u32 step = static_cast<u32>(hn::Lanes(bytes));
    u32 x = 0;
    for (; x + step <= nWidth; x += step)
        hn::StoreInterleaved3(Inked8(pYellow + x, pBlack + x), Inked8(pMagenta + x, pBlack + x),
                              Inked8(pCyan + x, pBlack + x), bytes, pOut + u64{x} * COMPONENTS);
    PLAIN_ROW_KERNELS.Cmyk8(pOut + u64{x} * COMPONENTS, pCyan + x, pMagenta + x, pYellow + x, pBlack + x,
                            nWidth - x);
}

// Likewise by 65535, once the lowest byte is gone.
HWY_INLINE hn::Vec<HalfWords> Inked16(hn::Vec<HalfWords> component, hn::Vec<HalfWords> black) {
    const DoubleWords words;
    const auto product = hn::Mul(hn::PromoteTo(words, component), hn::PromoteTo(words, black));
    const auto upper = hn::ShiftRight<8>(product);
    const auto sum = hn::Add(hn::Add(upper, hn::Set(words, 1)), hn::ShiftRight<16>(upper));
    return hn::DemoteTo(HalfWords(), hn::BitCast(SignedDoubleWords(), hn::ShiftRight<16>(sum)));
}

HWY_INLINE hn::Vec<HalfBytes> Inked16(const u16* pComponent, const u16* pBlack) {
    const Words words;
    const HalfWords half;
    const auto component = hn::LoadU(words, pComponent);
    const auto black = hn::LoadU(words, pBlack);
    const auto inked = hn::Combine(words, Inked16(hn::UpperHalf(half, component), hn::UpperHalf(half, black)),
                                   Inked16(hn::LowerHalf(half, component), hn::LowerHalf(half, black)));
    return hn::DemoteTo(HalfBytes(), hn::BitCast(SignedWords(), inked));
}

void Cmyk16(u8* pOut, const u16* pCyan, const u16* pMagenta, const u16* pYellow, const u16* pBlack,
            u32 nWidth) {
    const HalfBytes half;
    const u32 step = static_cast<u32>(hn::Lanes(half));
    u32 x = 0;
    for (; x + step <= nWidth; x += step)
        hn::StoreInterleaved3(Inked16(pYellow + x, pBlack + x), Inked16(pMagenta + x, pBlack + x),
                              Inked16(pCyan + x, pBlack + x), half, pOut + u64{x} * COMPONENTS);
    PLAIN_ROW_KERNELS.Cmyk16(pOut + u64{x} * COMPONENTS, pCyan + x, pMagenta + x, pYellow + x, pBlack + x,
                             nWidth - x);
}

// The four bytes of each of as many pixels as a vector has bytes.
struct Quads {
    explicit HWY_INLINE Quads(const u8* pPixels) {
        hn::LoadInterleaved4(Bytes(), pPixels, first, second, third, fourth);
    }

    hn::Vec<Bytes> first;
    hn::Vec<Bytes> second;
    hn::Vec<Bytes> third;
    hn::Vec<Bytes> fourth;
};

void GreyValues(u8* pOut, const u32* pValues, u32 nWidth) {
    const Bytes bytes;
    const u32 step = static_cast<u32>(hn::Lanes(bytes));
    u32 x = 0;
    for (; x + step <= nWidth; x += step) {
        const Quads value(reinterpret_cast<const u8*>(pValues + x));
        hn::StoreInterleaved3(value.first, value.first, value.first, bytes, pOut + u64{x} * COMPONENTS);
    }
    PLAIN_ROW_KERNELS.GreyValues(pOut + u64{x} * COMPONENTS, pValues + x, nWidth - x);
}

// Returns how many pixels it has put, in whole vectors.
template <bool ALPHA>
u32 PutBgra(u8* pOut, const u8* pPixels, u32 nWidth) {
    const Bytes bytes;
    const u32 step = static_cast<u32>(hn::Lanes(bytes));
    u32 x = 0;
    for (; x + step <= nWidth; x += step) {
        const Quads pixel(pPixels + u64{x} * 4);
        u8* const out = pOut + u64{x} * COMPONENTS;
        if constexpr (ALPHA)
            hn::StoreInterleaved3(pixel.fourth, pixel.fourth, pixel.fourth, bytes, out);
        else
            hn::StoreInterleaved3(pixel.first, pixel.second, pixel.third, bytes, out);
    }
    return x;
}

void Bgra(u8* pOut, const u8* pPixels, u32 nWidth) {
    const u32 x = PutBgra<false>(pOut, pPixels, nWidth);
    PLAIN_ROW_KERNELS.Bgra(pOut + u64{x} * COMPONENTS, pPixels + u64{x} * 4, nWidth - x);
}

void BgraAlpha(u8* pOut, const u8* pPixels, u32 nWidth) {
    const u32 x = PutBgra<true>(pOut, pPixels, nWidth);
    PLAIN_ROW_KERNELS.BgraAlpha(pOut + u64{x} * COMPONENTS, pPixels + u64{x} * 4, nWidth - x);
}

void PutKernels(RowKernels& kernels) {
    static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the first byte of a word is its lowest");
    kernels.HighBytes = HighBytes;
    kernels.LowBytes = LowBytes;
    kernels.Rgb8 = Rgb8;
    kernels.Rgb16 = Rgb16;
    kernels.Cmyk8 = Cmyk8;
    kernels.Cmyk16 = Cmyk16;
    kernels.GreyValues = GreyValues;
    kernels.Bgra = Bgra;
    kernels.BgraAlpha = BgraAlpha;
}

#endif

}  // namespace colour_vectors::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace colour_vectors {
static constexpr VectorKind ALL_KINDS[] = VISTREL_VECTOR_KINDS(PutKernels);
}

void UseColourVectors(RowKernels& kernels, i64 nKind) {
    PutKernelsOf(kernels, nKind, colour_vectors::ALL_KINDS);
}
#endif
