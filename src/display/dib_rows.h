// The buffer that a picture is packed into on its way to a bitmap: the picture's bottom row comes first, and
// what pads a row is left as it was allocated.
#pragma once

#include "base/checked_size.h"
#include "base/large_block.h"

// Bytes of a row, rounded up to a multiple of 4.
constexpr u64 Stride8(u64 nWidth) {
    return (nWidth + 3) & ~u64{3};
}
constexpr u64 Stride24(u64 nWidth) {
    return ((nWidth + 1) * 3) & ~u64{3};
}

class DibRows {
  public:
    // Throws CMemoryException.
    DibRows(u32 nHeight, u64 nStride)
        : m_nHeight(nHeight),
          m_nStride(nStride),
          m_block(LargeBlock::Allocate(SizeProduct(nHeight, nStride))) {}

    // Where the picture's row nRow goes; 0 is the top.
    u8* Row(u32 nRow) const { return m_block.Data() + (m_nHeight - 1 - nRow) * m_nStride; }
    const void* Bits() const { return m_block.Data(); }

  private:
    u32 m_nHeight;
    u64 m_nStride;  // bytes
    LargeBlock m_block;
};
