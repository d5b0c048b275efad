#include "psd/pack_bits.h"

#include "base/checked_size.h"
#include "kernels/packets.h"
#include "kernels/row_kernels.h"
#include "psd/psd_reading.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr u32 LONGEST_RUN = 129;
constexpr u32 NOTHING = 0x80;  // the header that some writers pad rows with

}  // namespace

std::optional<u64> UnpackRow(u8* pRow, u32 nWidth, const u8* pPacked, u64 nHeld) {
    PacketRow row = {pPacked, pPacked + nHeld, pRow, pRow + nWidth};
    TheRowKernels().UnpackPackBits(row);
    if (row.pOut != row.pOutEnd) return std::nullopt;
    return static_cast<u64>(row.pIn - pPacked);
}

LooseRow UnpackLooseRow(u8* pRow, u32 nWidth, const u8* pPacked, u32 nPacked) {
    const u8* in = pPacked;
    const u8* const inEnd = pPacked + nPacked;
    u8* out = pRow;
    u8* const outEnd = pRow + nWidth;
    bool exact = true;
    while (in != inEnd && out != outEnd) {
        const u32 header = *in++;
        const bool isRun = header > NOTHING;
        const i64 count = isRun ? 257 - i64{header} : 1 + i64{header};
        const i64 held = isRun && in != inEnd ? count : inEnd - in;
        const i64 put = header == NOTHING ? 0 : std::min({count, held, i64{outEnd - out}});
        exact = exact && put == count;
        if (isRun && put > 0) {
            std::memset(out, *in, static_cast<size_t>(put));
            ++in;
        } else {
            std::memcpy(out, in, static_cast<size_t>(put));
            in += put;
        }
        out += put;
    }
    if (out != outEnd) return LooseRow::Short;
    return exact && in == inEnd ? LooseRow::Exact : LooseRow::Loose;
}

bool PackedCounts::Read(PsdReading& reading, u64 nRows) {
    ByteStream& stream = reading.Stream();
    m_nFieldSize = reading.IsVersion2() ? 4 : 2;
    const u64 size = SizeProduct(nRows, m_nFieldSize);
    if (!reading.Require(size)) return false;
    m_nAt = stream.GetPosition();
    m_fields = LargeBlock::Allocate(size);
    ReadInto(stream, m_fields.Data(), static_cast<u32>(size));
    if (!reading.IsGood()) return false;
    m_nRows = nRows;
    m_nSum = 0;
    m_nLargest = 0;
    for (u64 row = 0; row < nRows; ++row) {
        const u32 count = At(row);
        m_nSum += count;
        m_nLargest = std::max(m_nLargest, count);
    }
    return true;
}

u32 PackedCounts::At(u64 nRow) const {
    const u8* const field = m_fields.Data() + nRow * m_nFieldSize;
    u32 count = 0;
    for (u32 i = 0; i < m_nFieldSize; ++i) count = count << 8 | field[i];
    return count;
}

u32 PackedCounts::RowPosition(u64 nRow) const {
    u64 position = m_nAt + m_nRows * m_nFieldSize;
    for (u64 before = 0; before < nRow; ++before) position += At(before);
    return static_cast<u32>(position);
}

bool CanExpandTo(PsdReading& reading, const PackedCounts& counts, u64 nRowSize) {
    if (!reading.Require(counts.Sum())) return false;
    // Two bytes make at most the longest run.
    const u64 least = (SizeProduct(counts.RowCount(), nRowSize, 2) + LONGEST_RUN - 1) / LONGEST_RUN;
    if (counts.Sum() >= least) return true;
    return reading.Refuse(Rule::PsdTooFewPackedBytes, counts.Position(), static_cast<i64>(counts.Sum()),
                          static_cast<i64>(least));
}
