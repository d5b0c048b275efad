// Rows of samples out of the file, one after the other, however they are compressed there.
#pragma once

#include "base/large_block.h"
#include "psd/sample_rows.h"

class ByteStream;
class PackedCounts;
class PsdReading;

class RowSource {
  public:
    RowSource() = default;
    RowSource(const RowSource&) = delete;
    RowSource& operator=(const RowSource&) = delete;
    virtual ~RowSource() = default;

    // Reads the next row, of the size that the source was made for. False, with the row partly filled, where
    // it is not as it should be or the stream is in no good state.
    virtual bool Next(u8* pRow) = 0;
};

// As they stand in the file.
class RawRows final : public RowSource {
  public:
    RawRows(ByteStream& stream, u64 nRowSize) : m_stream(stream), m_nRowSize(nRowSize) {}
    bool Next(u8* pRow) override;

  private:
    ByteStream& m_stream;
    u64 m_nRowSize;  // bytes
};

// PackBits rows. Strictly each takes exactly its packed bytes and makes exactly its width. Loosely each is
// its packed bytes: the header 0x80 stands for nothing, a packet ends with the row, and what is left of the
// packed bytes is skipped; rows that make use of that are noted.
class PackedRows final : public RowSource {
  public:
    // The counts are borrowed; the rows are those of the first of them on.
    PackedRows(PsdReading& reading, u64 nRowSize, const PackedCounts& counts);
    bool Next(u8* pRow) override;

  private:
    bool ReadRowsAhead();

    PsdReading& m_reading;
    u32 m_nRowSize;
    const PackedCounts& m_counts;
    u64 m_nRow = 0;
    bool m_bLoose;
    LargeBlock m_packed;  // whole rows that were read together
    u64 m_nHeld = 0;      // bytes of them
    u64 m_nUsed = 0;      // of these
};

struct RowShape {
    u64 nRows;
    u32 nWidth;    // samples
    u64 nRowSize;  // bytes in the file
};

// Puts rows into a plane whose rows are nStride bytes apart, and returns how many came out right; the first
// that did not ends it.
u64 ReadRows(RowSource& rows, PutRow put, const RowShape& shape, u8* pPlane, u64 nStride);

// Words of 16 bits, in whole pieces rather than in rows. Leaves at the first piece that cannot be had, and
// answers whether the stream is in good state.
bool ReadWords(ByteStream& stream, u16* pSamples, u64 nCount);
