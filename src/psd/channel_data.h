// How samples stand in a Photoshop document: PackBits rows, big-endian words and rows of bits. Everything is
// decoded into blocks that the caller has made, row after row without gaps.
#pragma once

#include "base/large_block.h"
#include "base/types.h"

class ByteStream;

// How the samples of a plane or of the composite stand in the file.
constexpr i32 PSD_RAW = 0;
constexpr i32 PSD_PACK_BITS = 1;

// Decodes one row of width bytes, at least 1, from exactly packed bytes of the stream. False when the packets
// do not end with the row or did not take that many bytes, or the data ends; the row is partly filled then.
bool DecodePackBitsRow(u8* row, ByteStream& stream, u32 width, u32 packed);

// The table in front of PackBits rows that holds the packed bytes of each.
class PackedCounts {
  public:
    // False when the data or the memory cannot hold the table.
    bool Read(ByteStream& stream, u64 rows);

    u64 RowCount() const { return m_nRows; }
    u32 At(u64 row) const;
    u64 Sum() const { return m_nSum; }

  private:
    LargeBlock m_fields;  // as in the file, two bytes each
    u64 m_nRows = 0;
    u64 m_nSum = 0;
};

// Whether the data still holds the rows that the table announces, and they can expand to rows of that width:
// asked before the block for them is made.
bool CanExpandTo(ByteStream& stream, const PackedCounts& counts, u32 width);

// These leave at the first row or block that cannot be had.
bool ReadPackedRows(ByteStream& stream, u8* samples, u32 width, const PackedCounts& counts);
bool ReadWords(ByteStream& stream, u16* samples, u64 count);

// A set bit, black in the file, becomes 0 and a clear one 1; every row starts with a fresh byte.
bool ReadBitRows(ByteStream& stream, u8* samples, u64 rows, u32 width);
constexpr u64 BitRowSize(u32 width) {
    return (u64{width} + 7) / 8;
}
