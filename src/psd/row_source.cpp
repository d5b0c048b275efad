#include "psd/row_source.h"

#include "psd/pack_bits.h"
#include "psd/psd_reading.h"

#include <algorithm>
#include <bit>

bool RawRows::Next(u8* pRow) {
    ReadInto(m_stream, pRow, static_cast<u32>(m_nRowSize));
    return m_stream.IsGood();
}

PackedRows::PackedRows(PsdReading& reading, u64 nRowSize, const PackedCounts& counts)
    : m_reading(reading),
      m_nRowSize(static_cast<u32>(nRowSize)),
      m_counts(counts),
      m_bLoose(reading.Rules().bLooseRows) {
    if (m_bLoose) m_packed = LargeBlock::Allocate(counts.Largest());
}

bool PackedRows::Next(u8* pRow) {
    const u32 packed = m_counts.At(m_nRow);
    ++m_nRow;
    if (m_bLoose) return NextLoose(pRow, packed);
    return DecodePackBitsRow(pRow, m_reading.Stream(), m_nRowSize, packed);
}

bool PackedRows::NextLoose(u8* pRow, u32 nPacked) {
    ReadInto(m_reading.Stream(), m_packed.Data(), nPacked);
    if (!m_reading.Stream().IsGood()) return false;
    const LooseRow row = UnpackLooseRow(pRow, m_nRowSize, m_packed.Data(), nPacked);
    if (row == LooseRow::Loose) m_reading.PassOver(Passed::LooseRows);
    return row != LooseRow::Short;
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
