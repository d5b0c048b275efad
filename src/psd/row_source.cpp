#include "psd/row_source.h"

#include "psd/pack_bits.h"
#include "psd/psd_reading.h"

#include <algorithm>
#include <bit>

namespace {

constexpr u64 READ_AHEAD = 256 * 1024;  // bytes of packed rows

}  // namespace

bool RawRows::Next(u8* pRow) {
    ReadInto(m_stream, pRow, static_cast<u32>(m_nRowSize));
    return m_stream.IsGood();
}

PackedRows::PackedRows(PsdReading& reading, u64 nRowSize, const PackedCounts& counts)
    : m_reading(reading),
      m_nRowSize(static_cast<u32>(nRowSize)),
      m_counts(counts),
      m_bLoose(reading.Rules().bLooseRows) {
    // A packet makes at least half of the bytes that it takes. More than that is never read strictly.
    const u64 longest = m_bLoose ? counts.Largest() : std::min<u64>(counts.Largest(), 2 * nRowSize);
    m_packed = LargeBlock::Allocate(std::max(longest, std::min(counts.Sum(), READ_AHEAD)));
}

bool PackedRows::Next(u8* pRow) {
    if (m_nUsed == m_nHeld && !ReadRowsAhead()) return false;
    const u8* const packed = m_packed.Data() + m_nUsed;
    const u32 count = m_counts.At(m_nRow);
    const u64 held = m_nHeld - m_nUsed;
    ++m_nRow;
    m_nUsed += count;
    if (!m_bLoose) return UnpackRow(pRow, m_nRowSize, packed, held) == count;
    const LooseRow row = UnpackLooseRow(pRow, m_nRowSize, packed, count);
    if (row == LooseRow::Loose) m_reading.PassOver(Passed::LooseRows);
    return row != LooseRow::Short;
}

// As many rows from the next one on as there is room for.
bool PackedRows::ReadRowsAhead() {
    m_nUsed = 0;
    m_nHeld = 0;
    for (u64 row = m_nRow; row < m_counts.RowCount(); ++row) {
        const u32 count = m_counts.At(row);
        if (m_nHeld + count > m_packed.Size()) break;
        m_nHeld += count;
    }
    if (m_nHeld == 0 && m_counts.At(m_nRow) > 0) return false;
    ReadInto(m_reading.Stream(), m_packed.Data(), static_cast<u32>(m_nHeld));
    return m_reading.Stream().IsGood();
}

u64 ReadRows(RowSource& rows, PutRow put, const RowShape& shape, u8* pPlane, u64 nStride) {
    const bool inPlace = shape.nRowSize == nStride;
    const LargeBlock buffer = inPlace ? LargeBlock() : LargeBlock::Allocate(shape.nRowSize);
    for (u64 row = 0; row < shape.nRows; ++row) {
        u8* const out = pPlane + row * nStride;
        u8* const read = inPlace ? out : buffer.Data();
        if (!rows.Next(read)) return row;
        put(out, read, shape.nWidth);
    }
    return shape.nRows;
}

bool ReadWords(ByteStream& stream, u16* pSamples, u64 nCount) {
    // Swapped while they are still in the cache.
    constexpr u64 WORDS_AT_ONCE = 128 * 1024;
    stream.Sync();
    for (u64 done = 0; done < nCount; done += WORDS_AT_ONCE) {
        const u64 words = std::min(nCount - done, WORDS_AT_ONCE);
        stream.ReadBlock(pSamples + done, static_cast<u32>(words * 2));
        if (!stream.IsGood()) return false;
        if constexpr (std::endian::native == std::endian::little)
            for (u64 i = done; i < done + words; ++i) pSamples[i] = __builtin_bswap16(pSamples[i]);
    }
    return stream.IsGood();
}
