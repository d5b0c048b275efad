// Block-compressed pictures: blocks of 4 by 4 pixels, row after row, those at the right and bottom edge
// cropped.
#pragma once

#include "base/large_block.h"
#include "base/types.h"

class S3tcChunk;

// Rows of a band, the last of a picture aside.
constexpr u32 S3TC_BAND_ROWS = 4;

// A picture as bands of pixels, each a row of blocks, so that no more than one of them need be in memory.
class S3tcBands {
  public:
    // The chunk is borrowed.
    explicit S3tcBands(const S3tcChunk& chunk);

    // False when the code is not one of DXT1 to DXT5, a side is 0, or the data is not of exactly the size
    // that the picture takes.
    bool CanDecode() const { return m_pDecodeBlocks != nullptr; }

    u64 BandSize() const;  // bytes

    // The pixels of the rows from nTop on, a multiple of S3TC_BAND_ROWS, as those of the whole image. Returns
    // how many rows there are.
    u32 Decode(u32 nTop, u8* pOut) const;

    // The colours of the same rows as pixels of 24 bits (blue, green, red): the first row at pOut, each other
    // nPitch bytes after the one above.
    u32 PutColours(u32 nTop, u8* pOut, i64 nPitch) const;

  private:
    const u8* Blocks(u32 nTop) const;

    using DecodeBlocks = void (*)(u8* pOut, const u8* pBlocks, u32 nWidth, u32 nRows);

    const S3tcChunk& m_chunk;
    u32 m_nBlockSize = 0;   // bytes
    u32 m_nColoursAt = 0;   // of a block's bytes
    u64 m_nBlocksSize = 0;  // bytes of a row of blocks
    DecodeBlocks m_pDecodeBlocks = nullptr;
};

// The pixels, four bytes each (blue, green, red, alpha), top row first, without padding. Nothing when the
// code is not one of DXT1 to DXT5, a side is 0, or the data is not of exactly the size that the picture
// takes. Throws CMemoryException.
LargeBlock DecodeS3tcImage(const S3tcChunk& chunk);
