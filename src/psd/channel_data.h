// How samples stand in a Photoshop document: PackBits rows, big-endian words and rows of bits. Everything is
// decoded into blocks that the caller has made, row after row without gaps.
#pragma once

#include "base/large_block.h"
#include "base/types.h"

#include <optional>

class ByteStream;
class PsdReading;

// How the samples of a plane or of the composite stand in the file.
constexpr i32 PSD_RAW = 0;
constexpr i32 PSD_PACK_BITS = 1;
constexpr i32 PSD_ZIP = 2;  // this and the next are not read
constexpr i32 PSD_ZIP_PREDICTED = 3;

// Decodes one row of width bytes, at least 1, and returns the packed bytes that it took. Nothing where the
// packets do not end with the row, or the data ends; the row is partly filled then.
std::optional<u32> UnpackRow(u8* row, ByteStream& stream, u32 width);

// The same for a row that takes exactly packed bytes.
bool DecodePackBitsRow(u8* row, ByteStream& stream, u32 width, u32 packed);

// The table in front of PackBits rows that holds the packed bytes of each.
class PackedCounts {
  public:
    // False when the data ends before the table does.
    bool Read(PsdReading& reading, u64 rows);

    u64 RowCount() const { return m_nRows; }
    u32 At(u64 row) const;
    u64 Sum() const { return m_nSum; }

    // Where the table and where a row's first packed byte stand in the file.
    u32 Position() const { return m_nAt; }
    u32 RowPosition(u64 row) const;

  private:
    LargeBlock m_fields;  // as in the file, two bytes each
    u32 m_nAt = 0;
    u64 m_nRows = 0;
    u64 m_nSum = 0;
};

// Whether the data still holds the rows that the table announces, and they can expand to rows of that width:
// asked before the block for them is made.
bool CanExpandTo(PsdReading& reading, const PackedCounts& counts, u32 width);

// Reads the rows after their table and returns how many came out right; the first that did not ends it.
u64 ReadPackedRows(ByteStream& stream, u8* samples, u32 width, const PackedCounts& counts);

// These leave at the first block or row that cannot be had, and answer whether the stream is in good state.
bool ReadWords(ByteStream& stream, u16* samples, u64 count);

// A set bit, black in the file, becomes 0 and a clear one 1; every row starts with a fresh byte.
bool ReadBitRows(ByteStream& stream, u8* samples, u64 rows, u32 width);
constexpr u64 BitRowSize(u32 width) {
    return (u64{width} + 7) / 8;
}
