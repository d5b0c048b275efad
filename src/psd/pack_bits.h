// PackBits rows of a Photoshop document and the table in front of them.
#pragma once

#include "base/large_block.h"
#include "base/types.h"

#include <optional>

class PsdReading;

// Decodes one row of nWidth bytes, at least 1, out of nHeld packed bytes, which may go on after it. Returns
// how many it took, or nothing where the packets do not end with the row; it is partly filled then.
std::optional<u64> UnpackRow(u8* pRow, u32 nWidth, const u8* pPacked, u64 nHeld);

enum class LooseRow { Exact, Loose, Short };

// Decodes one row of nWidth bytes out of its nPacked bytes. The header 0x80 stands for nothing, a packet ends
// with the row, and what is left of the packed bytes is skipped: whether the row was one that a strict writer
// makes, made use of that, or does not reach its width.
LooseRow UnpackLooseRow(u8* pRow, u32 nWidth, const u8* pPacked, u32 nPacked);

// The table in front of PackBits rows that holds the packed bytes of each.
class PackedCounts {
  public:
    // False when the data ends before the table does.
    bool Read(PsdReading& reading, u64 nRows);

    u64 RowCount() const { return m_nRows; }
    u32 At(u64 nRow) const;
    u64 Sum() const { return m_nSum; }
    u32 Largest() const { return m_nLargest; }

    // Where the table and where a row's first packed byte stand in the file.
    u32 Position() const { return m_nAt; }
    u32 RowPosition(u64 nRow) const;

  private:
    LargeBlock m_fields;   // as in the file
    u32 m_nFieldSize = 2;  // bytes
    u32 m_nAt = 0;
    u64 m_nRows = 0;
    u64 m_nSum = 0;
    u32 m_nLargest = 0;
};

// Whether the data still holds the rows that the table announces, and they can expand to rows of that many
// bytes: asked before the block for them is made.
bool CanExpandTo(PsdReading& reading, const PackedCounts& counts, u64 nRowSize);
