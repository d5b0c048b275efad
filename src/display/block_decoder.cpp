#include "display/block_decoder.h"

#include "base/checked_size.h"
#include "chunks/extension_chunks.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr u32 SIDE = 4;         // of a block, in pixels
constexpr u32 COLOUR_SIZE = 8;  // bytes of a colour block, and of the alpha block before it
constexpr u32 OPAQUE = 0xFF000000;
constexpr u32 COLOUR_BITS = 0x00FFFFFF;

using Palette = std::array<u32, 4>;
using Block = std::array<u32, SIDE * SIDE>;  // 0xAARRGGBB, row by row

// Little-endian, as the blocks are.
template <typename Integer>
Integer Load(const u8* pBytes) {
    static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__);
    Integer value;
    std::memcpy(&value, pBytes, sizeof(value));
    return value;
}

struct Rgb {
    u32 red, green, blue;

    u32 Pixel() const { return OPAQUE | red << 16 | green << 8 | blue; }
};

// Red, green and blue of 5, 6 and 5 bits, widened by repeating their upper bits.
Rgb Widened(u32 nColour) {
    const u32 red = nColour >> 11, green = nColour >> 5 & 63, blue = nColour & 31;
    return {red << 3 | red >> 2, green << 2 | green >> 4, blue << 3 | blue >> 2};
}

u32 Third(const Rgb& near, const Rgb& far) {
    const auto mix = [](u32 a, u32 b) { return (2 * a + b) / 3; };
    return Rgb{mix(near.red, far.red), mix(near.green, far.green), mix(near.blue, far.blue)}.Pixel();
}

u32 Half(const Rgb& a, const Rgb& b) {
    return Rgb{(a.red + b.red) / 2, (a.green + b.green) / 2, (a.blue + b.blue) / 2}.Pixel();
}

// Two end points, and 2 bits for each pixel, the first in the lowest. Where transparency is meant, the order
// of the end points says whether the fourth colour is none.
template <bool MayBeTransparent>
Block DecodeColours(const u8* pBytes) {
    const u32 first = Load<u16>(pBytes), second = Load<u16>(pBytes + 2);
    const Rgb a = Widened(first), b = Widened(second);
    const bool transparent = MayBeTransparent && first <= second;
    const Palette palette = {a.Pixel(), b.Pixel(), transparent ? Half(a, b) : Third(a, b),
                             transparent ? 0 : Third(b, a)};
    u32 indices = Load<u32>(pBytes + 4);
    Block block;
    for (u32& pixel : block) {
        pixel = palette[indices & 3];
        indices >>= 2;
    }
    return block;
}

void SetAlpha(u32& nPixel, u32 nAlpha) {
    nPixel = (nPixel & COLOUR_BITS) | nAlpha << 24;
}

// 4 bits for each pixel, the first in the lowest.
void ApplyExplicitAlpha(Block& block, const u8* pBytes) {
    u64 nibbles = Load<u64>(pBytes);
    for (u32& pixel : block) {
        SetAlpha(pixel, static_cast<u32>(nibbles & 15) * 17);
        nibbles >>= 4;
    }
}

// Two end points, and 3 bits for each pixel, the first in the lowest.
void ApplyInterpolatedAlpha(Block& block, const u8* pBytes) {
    const u32 first = pBytes[0], second = pBytes[1];
    std::array<u32, 8> palette = {first, second};
    const u32 steps = first > second ? 7 : 5;
    for (u32 i = 1; i < steps; ++i) palette[i + 1] = ((steps - i) * first + i * second) / steps;
    if (steps == 5) palette[7] = 255;  // and the one before stays 0
    u64 indices = Load<u64>(pBytes) >> 16;
    for (u32& pixel : block) {
        SetAlpha(pixel, palette[indices & 7]);
        indices >>= 3;
    }
}

struct OneBitAlpha {
    static constexpr u32 BLOCK_SIZE = COLOUR_SIZE;
    static Block Decode(const u8* pBytes) { return DecodeColours<true>(pBytes); }
};

struct ExplicitAlpha {
    static constexpr u32 BLOCK_SIZE = 2 * COLOUR_SIZE;
    static Block Decode(const u8* pBytes) {
        Block block = DecodeColours<false>(pBytes + COLOUR_SIZE);
        ApplyExplicitAlpha(block, pBytes);
        return block;
    }
};

struct InterpolatedAlpha {
    static constexpr u32 BLOCK_SIZE = 2 * COLOUR_SIZE;
    static Block Decode(const u8* pBytes) {
        Block block = DecodeColours<false>(pBytes + COLOUR_SIZE);
        ApplyInterpolatedAlpha(block, pBytes);
        return block;
    }
};

// A row of blocks.
template <typename Format>
void DecodeBlockRow(u8* pOut, const u8* pBlocks, u32 nWidth, u32 nRows) {
    for (u64 left = 0; left < nWidth; left += SIDE, pBlocks += Format::BLOCK_SIZE) {
        const Block block = Format::Decode(pBlocks);
        const u64 rowSize = std::min<u64>(SIDE, nWidth - left) * sizeof(u32);
        u8* out = pOut + left * sizeof(u32);
        for (u64 y = 0; y < nRows; ++y, out += u64{nWidth} * sizeof(u32))
            std::memcpy(out, &block[y * SIDE], rowSize);
    }
}

}  // namespace

S3tcBands::S3tcBands(const S3tcChunk& chunk) : m_chunk(chunk) {
    static_assert(S3TC_BAND_ROWS == SIDE);
    const IffId code = chunk.m_Code;
    u64 blockSize = OneBitAlpha::BLOCK_SIZE;
    DecodeBlocks decode = nullptr;
    if (code == IffId("DXT1")) decode = DecodeBlockRow<OneBitAlpha>;
    // The second and the fourth hold colour multiplied by alpha, which is shown as it is stored.
    if (code == IffId("DXT2") || code == IffId("DXT3")) decode = DecodeBlockRow<ExplicitAlpha>;
    if (code == IffId("DXT4") || code == IffId("DXT5")) decode = DecodeBlockRow<InterpolatedAlpha>;
    if (code != IffId("DXT1")) blockSize = ExplicitAlpha::BLOCK_SIZE;
    const u64 across = (u64{chunk.m_nWidth} + SIDE - 1) / SIDE;
    const u64 down = (u64{chunk.m_nHeight} + SIDE - 1) / SIDE;
    m_nBlocksSize = across * blockSize;
    if (m_nBlocksSize * down == 0 || m_nBlocksSize * down != chunk.m_nDataSize) return;
    m_pDecodeBlocks = decode;
}

u64 S3tcBands::BandSize() const {
    return SizeProduct(m_chunk.m_nWidth, SIDE, sizeof(u32));
}

u32 S3tcBands::Decode(u32 nTop, u8* pOut) const {
    const u32 rows = std::min<u32>(SIDE, m_chunk.m_nHeight - nTop);
    m_pDecodeBlocks(pOut, m_chunk.m_pData.Data() + nTop / SIDE * m_nBlocksSize, m_chunk.m_nWidth, rows);
    return rows;
}

LargeBlock DecodeS3tcImage(const S3tcChunk& chunk) {
    const S3tcBands bands(chunk);
    if (!bands.CanDecode()) return {};
    const u64 rowSize = u64{chunk.m_nWidth} * sizeof(u32);
    LargeBlock pixels = LargeBlock::Allocate(SizeProduct(rowSize, chunk.m_nHeight));
    for (u32 top = 0; top < chunk.m_nHeight; top += SIDE) bands.Decode(top, pixels.Data() + top * rowSize);
    return pixels;
}
