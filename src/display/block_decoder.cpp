#include "display/block_decoder.h"

#include "base/checked_size.h"
#include "chunks/extension_chunks.h"
#include "kernels/colour_block.h"
#include "kernels/row_kernels.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

using colour_block::Block;
using colour_block::Load;

constexpr u32 SIDE = colour_block::SIDE;
constexpr u32 COLOUR_SIZE = colour_block::SIZE;  // that of the alpha block before it, too
constexpr u32 COLOUR_BITS = 0x00FFFFFF;

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
    static Block Decode(const u8* pBytes) { return colour_block::Decode(pBytes, true); }
};

struct ExplicitAlpha {
    static constexpr u32 BLOCK_SIZE = 2 * COLOUR_SIZE;
    static Block Decode(const u8* pBytes) {
        Block block = colour_block::Decode(pBytes + COLOUR_SIZE, false);
        ApplyExplicitAlpha(block, pBytes);
        return block;
    }
};

struct InterpolatedAlpha {
    static constexpr u32 BLOCK_SIZE = 2 * COLOUR_SIZE;
    static Block Decode(const u8* pBytes) {
        Block block = colour_block::Decode(pBytes + COLOUR_SIZE, false);
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
    m_nBlockSize = code == IffId("DXT1") ? OneBitAlpha::BLOCK_SIZE : ExplicitAlpha::BLOCK_SIZE;
    m_nColoursAt = m_nBlockSize - COLOUR_SIZE;
    DecodeBlocks decode = nullptr;
    if (code == IffId("DXT1")) decode = DecodeBlockRow<OneBitAlpha>;
    // The second and the fourth hold colour multiplied by alpha, which is shown as it is stored.
    if (code == IffId("DXT2") || code == IffId("DXT3")) decode = DecodeBlockRow<ExplicitAlpha>;
    if (code == IffId("DXT4") || code == IffId("DXT5")) decode = DecodeBlockRow<InterpolatedAlpha>;
    const u64 across = (u64{chunk.m_nWidth} + SIDE - 1) / SIDE;
    const u64 down = (u64{chunk.m_nHeight} + SIDE - 1) / SIDE;
    m_nBlocksSize = across * m_nBlockSize;
    if (m_nBlocksSize * down == 0 || m_nBlocksSize * down != chunk.m_nDataSize) return;
    m_pDecodeBlocks = decode;
}

u64 S3tcBands::BandSize() const {
    return SizeProduct(m_chunk.m_nWidth, SIDE, sizeof(u32));
}

const u8* S3tcBands::Blocks(u32 nTop) const {
    return m_chunk.m_pData.Data() + nTop / SIDE * m_nBlocksSize;
}

u32 S3tcBands::Decode(u32 nTop, u8* pOut) const {
    const u32 rows = std::min<u32>(SIDE, m_chunk.m_nHeight - nTop);
    m_pDecodeBlocks(pOut, Blocks(nTop), m_chunk.m_nWidth, rows);
    return rows;
}

u32 S3tcBands::PutColours(u32 nTop, u8* pOut, i64 nPitch) const {
    const RowKernels& kernels = TheRowKernels();
    const u32 rows = std::min<u32>(SIDE, m_chunk.m_nHeight - nTop);
    const bool mayBeTransparent = m_nColoursAt == 0;
    const u8* colours = Blocks(nTop) + m_nColoursAt;
    const u32 whole = rows == SIDE ? m_chunk.m_nWidth / SIDE : 0;
    kernels.ColourBlocks(pOut, nPitch, colours, m_nBlockSize, whole, mayBeTransparent);
    colours += u64{whole} * m_nBlockSize;
    for (u64 left = u64{whole} * SIDE; left < m_chunk.m_nWidth; left += SIDE, colours += m_nBlockSize) {
        const Block block = colour_block::Decode(colours, mayBeTransparent);
        const u32 columns = static_cast<u32>(std::min<u64>(SIDE, m_chunk.m_nWidth - left));
        for (u32 y = 0; y < rows; ++y)
            kernels.Bgra(pOut + i64{y} * nPitch + left * 3, reinterpret_cast<const u8*>(&block[y * SIDE]),
                         columns);
    }
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
