// The buffer that a picture is packed into on its way to a bitmap: the picture's bottom row comes first, and
// what pads a row is left as it was allocated.
#pragma once

#include "base/checked_size.h"
#include "base/large_block.h"
#include "framework/core/gdi_bitmap.h"

#include <algorithm>
#include <utility>

class DibRows {
  public:
    // Throws CMemoryException.
    DibRows(u32 nWidth, u32 nHeight, u32 nBitCount)
        : m_nWidth(nWidth),
          m_nHeight(nHeight),
          m_nBitCount(nBitCount),
          m_nStride(DibStride(nWidth, nBitCount)),
          m_block(LargeBlock::Allocate(SizeProduct(nHeight, m_nStride))) {}

    // Where the picture's row y goes; 0 is the top.
    u8* Row(u32 y) const { return m_block.Data() + (m_nHeight - 1 - y) * m_nStride; }

    // Bytes from a row to the one below it.
    i64 Pitch() const { return -static_cast<i64>(m_nStride); }

    u32 Width() const { return m_nWidth; }
    u32 Height() const { return m_nHeight; }
    u32 BitCount() const { return m_nBitCount; }

    // The buffer, for the bitmap; there are no rows afterwards.
    LargeBlock TakeBits() { return std::move(m_block); }

  private:
    u32 m_nWidth;
    u32 m_nHeight;
    u32 m_nBitCount;
    u64 m_nStride;  // bytes
    LargeBlock m_block;
};

// Makes a picture nMost rows at a time, the top ones first. make(rows, top) fills rows and answers whether it
// could, deliver(std::move(rows), top) has them then. One without rows is delivered as well. False where make
// gave up.
template <typename Make, typename Deliver>
bool MakeInBands(u32 nWidth, u32 nHeight, u32 nBitCount, u32 nMost, const Make& make,
                 const Deliver& deliver) {
    u32 top = 0;
    do {
        DibRows rows(nWidth, std::min(nMost, nHeight - top), nBitCount);
        const u32 next = top + rows.Height();
        if (!make(rows, top)) return false;
        deliver(std::move(rows), top);
        top = next;
    } while (top < nHeight);
    return true;
}
