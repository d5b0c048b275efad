#include "psd/pack_bits.h"

#include "base/checked_size.h"
#include "psd/psd_reading.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr u32 LONGEST_RUN = 129;
constexpr u32 NOTHING = 0x80;  // the header that some writers pad rows with

// The fast path moves whole pieces: it reads and writes up to one piece beyond a packet's end. What it writes
// there, the next packet of the row overwrites.
constexpr i32 PIECE = 16;

struct Piece {
    u64 m_nFirst;
    u64 m_nSecond;
};
static_assert(sizeof(Piece) == PIECE);

// The first piece of a packet, run or literal, chosen without a branch: which of the two comes next is as
// good as random in a photograph.
Piece FirstPiece(const u8* pPacket, bool bIsRun) {
    Piece piece;
    std::memcpy(&piece, pPacket + 1, PIECE);
    const u64 fill = pPacket[1] * 0x0101010101010101u;
    const u64 mask = u64{0} - u64{bIsRun};
    piece.m_nFirst ^= (piece.m_nFirst ^ fill) & mask;
    piece.m_nSecond ^= (piece.m_nSecond ^ fill) & mask;
    return piece;
}

// Decodes packets as long as the rest of the buffer and of the row holds them and a piece more. Returns the
// bytes written.
u32 DecodeFromBuffer(u8* pRow, ByteStream& stream, u32 nWidth) {
    if (!stream.m_pReadBuffer) return 0;
    const u8* in = stream.m_pReadBuffer + stream.m_nReadPos;
    const u8* const inEnd = stream.m_pReadBuffer + stream.m_nLimit;
    u8* out = pRow;
    u8* const outEnd = pRow + nWidth;
    while (in < inEnd) {
        const i8 header = static_cast<i8>(in[0]);
        const bool isRun = header < 0;
        const i32 count = isRun ? 1 - header : 1 + header;
        const i32 size = isRun ? 2 : 1 + count;
        if (size + PIECE > inEnd - in || count + PIECE > outEnd - out) break;
        Piece piece = FirstPiece(in, isRun);
        std::memcpy(out, &piece, PIECE);
        for (i32 done = PIECE; done < count; done += PIECE) {
            if (!isRun) std::memcpy(&piece, in + 1 + done, PIECE);
            std::memcpy(out + done, &piece, PIECE);
        }
        in += size;
        out += count;
    }
    stream.m_nReadPos = static_cast<u32>(in - stream.m_pReadBuffer);
    return static_cast<u32>(out - pRow);
}

// Decodes one packet of at most nRoom bytes, whatever the buffer holds of it. Returns the bytes written; 0
// when the packet is longer than that or the data ends.
u32 DecodePacket(u8* pOut, ByteStream& stream, u32 nRoom, u32& nUsed) {
    const i8 header = static_cast<i8>(ReadU8(stream));
    const u32 count = static_cast<u32>(header < 0 ? 1 - header : 1 + header);
    if (count > nRoom || !stream.IsGood()) return 0;
    if (header < 0) {
        std::memset(pOut, static_cast<i32>(ReadU8(stream)), count);
        nUsed += 2;
    } else {
        stream.GetBytes(pOut, count);
        nUsed += 1 + count;
    }
    return stream.IsGood() ? count : 0;
}

}  // namespace

std::optional<u32> UnpackRow(u8* pRow, ByteStream& stream, u32 nWidth) {
    u32 out = 0;
    u32 used = 0;
    do {
        const u32 start = stream.m_nReadPos;
        out += DecodeFromBuffer(pRow + out, stream, nWidth - out);
        used += stream.m_nReadPos - start;
        // The fast path never ends a row: it leaves the room of a piece.
        const u32 count = DecodePacket(pRow + out, stream, nWidth - out, used);
        if (count == 0) return std::nullopt;
        out += count;
    } while (out < nWidth);
    return used;
}

bool DecodePackBitsRow(u8* pRow, ByteStream& stream, u32 nWidth, u32 nPacked) {
    return UnpackRow(pRow, stream, nWidth) == nPacked;
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
