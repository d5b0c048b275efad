// The buffer that a picture is packed into on its way to a bitmap: the picture's bottom row comes first, and
// what pads a row is left as it was allocated.
#pragma once

#include "base/checked_size.h"
#include "base/large_block.h"
#include "framework/core/gdi_bitmap.h"

#include <utility>

class DibRows {
  public:
    // Throws CMemoryException.
    DibRows(u32 nWidth, u32 nHeight, u32 nBitCount)
        : m_nHeight(nHeight),
          m_nStride(DibStride(nWidth, nBitCount)),
          m_block(LargeBlock::Allocate(SizeProduct(nHeight, m_nStride))) {}

    // Where the picture's row y goes; 0 is the top.
    u8* Row(u32 y) const { return m_block.Data() + (m_nHeight - 1 - y) * m_nStride; }

    // Bytes from a row to the one below it.
    i64 Pitch() const { return -static_cast<i64>(m_nStride); }

    // The buffer, for the bitmap; there are no rows afterwards.
    LargeBlock TakeBits() { return std::move(m_block); }

  private:
    u32 m_nHeight;
    u64 m_nStride;  // bytes
    LargeBlock m_block;
};
