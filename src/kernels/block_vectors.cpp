// Colour blocks decoded with vectors: the colours of eight blocks at once, then each row of a block by one
// shuffle of its four colours.

#include "kernels/colour_block.h"
#include "kernels/plain_kernels.h"
#include "kernels/vector_kinds.h"

#include <array>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/block_vectors.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#ifndef VISTREL_BLOCK_VECTORS_ONCE
#define VISTREL_BLOCK_VECTORS_ONCE

namespace block_vectors {

// A row of a block: four pixels of three bytes, and what a vector holds beyond them.
constexpr u32 ROW_SIZE = 12;
constexpr u32 VECTOR_SIZE = 16;

using RowPattern = std::array<u8, VECTOR_SIZE>;

// For each byte of indices the places of the row's bytes among those of four colours.
constexpr std::array<RowPattern, 256> MakeRowPatterns() {
    std::array<RowPattern, 256> patterns = {};
    for (u32 indices = 0; indices < 256; ++indices)
        for (u32 i = 0; i < ROW_SIZE; ++i)
            patterns[indices][i] = static_cast<u8>((indices >> i / 3 * 2 & 3) * 4 + i % 3);
    return patterns;
}

alignas(64) inline constexpr std::array<RowPattern, 256> ROW_PATTERNS = MakeRowPatterns();

}  // namespace block_vectors

#endif

HWY_BEFORE_NAMESPACE();
namespace block_vectors::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

// A processor without vectors.
void PutKernels(RowKernels&) {}

#else

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::FixedTag<u8, 16>;
using Words = hn::FixedTag<u16, 8>;  // one for each of the blocks that are decoded together
using DoubleWords = hn::FixedTag<u32, 4>;
using Word = hn::Vec<Words>;

constexpr u32 TOGETHER = 8;  // blocks
constexpr u32 COLOURS = 4;

// One colour of each of the blocks.
struct Components {
    Word red;
    Word green;
    Word blue;
};

HWY_INLINE Components Widened(Word colours) {
    const Words words;
    const Word red = hn::ShiftRight<11>(colours);
    const Word green = hn::And(hn::ShiftRight<5>(colours), hn::Set(words, 63));
    const Word blue = hn::And(colours, hn::Set(words, 31));
    return {hn::Or(hn::ShiftLeft<3>(red), hn::ShiftRight<2>(red)),
            hn::Or(hn::ShiftLeft<2>(green), hn::ShiftRight<4>(green)),
            hn::Or(hn::ShiftLeft<3>(blue), hn::ShiftRight<2>(blue))};
}

// floor((2 near + far) / 3), by a multiplication that is exact for sums of three bytes.
HWY_INLINE Word Third(Word near, Word far) {
    const Words words;
    const Word sum = hn::Add(hn::Add(near, near), far);
    return hn::ShiftRight<1>(hn::MulHigh(sum, hn::Set(words, 0xAAAB)));
}

HWY_INLINE Word Half(Word a, Word b) {
    return hn::ShiftRight<1>(hn::Add(a, b));
}

// One colour as a word for each block.
struct Pixels {
    hn::Vec<DoubleWords> first;   // of blocks 0 to 3
    hn::Vec<DoubleWords> second;  // of blocks 4 to 7
};

HWY_INLINE Pixels Joined(Word red, Word green, Word blue) {
    const Words words;
    const DoubleWords doubleWords;
    const Word low = hn::Or(blue, hn::ShiftLeft<8>(green));
    return {hn::BitCast(doubleWords, hn::InterleaveLower(words, low, red)),
            hn::BitCast(doubleWords, hn::InterleaveUpper(words, low, red))};
}

// The four colours of each of eight blocks, blue in the lowest byte.
HWY_INLINE void PutColours(u32* pColours, const u8* pBlocks, u32 nBlockSize, bool bMayBeTransparent) {
    const Words words;
    const DoubleWords doubleWords;
    HWY_ALIGN u16 firsts[TOGETHER];
    HWY_ALIGN u16 seconds[TOGETHER];
    for (u32 i = 0; i < TOGETHER; ++i) {
        firsts[i] = colour_block::Load<u16>(pBlocks + u64{i} * nBlockSize);
        seconds[i] = colour_block::Load<u16>(pBlocks + u64{i} * nBlockSize + 2);
    }
    const Word first = hn::Load(words, firsts);
    const Word second = hn::Load(words, seconds);
    const Components a = Widened(first);
    const Components b = Widened(second);
    // All bits where the fourth colour is one.
    const auto opaque = hn::VecFromMask(words, hn::Gt(first, second));
    const Word thirds = bMayBeTransparent ? opaque : hn::Set(words, 0xFFFF);
    const auto third = [&](Word near, Word far) {
        return hn::Or(hn::And(thirds, Third(near, far)), hn::AndNot(thirds, Half(near, far)));
    };
    const auto fourth = [&](Word near, Word far) { return hn::And(thirds, Third(far, near)); };
    const Pixels colours[COLOURS] = {
        Joined(a.red, a.green, a.blue), Joined(b.red, b.green, b.blue),
        Joined(third(a.red, b.red), third(a.green, b.green), third(a.blue, b.blue)),
        Joined(fourth(a.red, b.red), fourth(a.green, b.green), fourth(a.blue, b.blue))};
    hn::StoreInterleaved4(colours[0].first, colours[1].first, colours[2].first, colours[3].first, doubleWords,
                          pColours);
    hn::StoreInterleaved4(colours[0].second, colours[1].second, colours[2].second, colours[3].second,
                          doubleWords, pColours + TOGETHER / 2 * COLOURS);
}

// A row is stored as a whole vector, of which the next block overwrites what is beyond it. The last blocks
// are left to the plain kernel.
void ColourBlocks(u8* pOut, i64 nPitch, const u8* pBlocks, u32 nBlockSize, u32 nBlocks,
                  bool bMayBeTransparent) {
    const Bytes bytes;
    u32 done = 0;
    for (; nBlocks - done > TOGETHER; done += TOGETHER) {
        HWY_ALIGN u32 colours[TOGETHER * COLOURS];
        PutColours(colours, pBlocks, nBlockSize, bMayBeTransparent);
        for (u32 i = 0; i < TOGETHER; ++i, pBlocks += nBlockSize, pOut += ROW_SIZE) {
            const auto palette = hn::Load(bytes, reinterpret_cast<const u8*>(colours + i * COLOURS));
            const u8* const indices = pBlocks + colour_block::SIZE - colour_block::SIDE;
            for (u32 y = 0; y < colour_block::SIDE; ++y) {
                const auto pattern = hn::Load(bytes, ROW_PATTERNS[indices[y]].data());
                hn::StoreU(hn::TableLookupBytes(palette, pattern), bytes, pOut + i64{y} * nPitch);
            }
        }
    }
    PLAIN_ROW_KERNELS.ColourBlocks(pOut, nPitch, pBlocks, nBlockSize, nBlocks - done, bMayBeTransparent);
}

void PutKernels(RowKernels& kernels) {
    static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the first byte of a word is its lowest");
    kernels.ColourBlocks = ColourBlocks;
}

#endif

}  // namespace block_vectors::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace block_vectors {
static constexpr VectorKind ALL_KINDS[] = VISTREL_VECTOR_KINDS(PutKernels);
}

void UseBlockVectors(RowKernels& kernels, i64 nKind) {
    PutKernelsOf(kernels, nKind, block_vectors::ALL_KINDS);
}
#endif
