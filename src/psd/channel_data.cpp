#include "psd/channel_data.h"

#include "base/checked_size.h"
#include "psd/field_reader.h"
#include "psd/psd_image.h"
#include "psd/psd_reading.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <new>

namespace {

constexpr u32 LONGEST_RUN = 129;
constexpr u32 COUNT_SIZE = 2;  // bytes of a row's packed count
constexpr u32 EDGE_SIZE = 4;   // bytes of a rectangle's edge

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
Piece FirstPiece(const u8* packet, bool isRun) {
    Piece piece;
    std::memcpy(&piece, packet + 1, PIECE);
    const u64 fill = packet[1] * 0x0101010101010101u;
    const u64 mask = u64{0} - u64{isRun};
    piece.m_nFirst ^= (piece.m_nFirst ^ fill) & mask;
    piece.m_nSecond ^= (piece.m_nSecond ^ fill) & mask;
    return piece;
}

// Decodes packets as long as the rest of the buffer and of the row holds them and a piece more. Returns the
// bytes written.
u32 DecodeFromBuffer(u8* row, ByteStream& stream, u32 width) {
    if (!stream.m_pReadBuffer) return 0;
    const u8* in = stream.m_pReadBuffer + stream.m_nReadPos;
    const u8* const inEnd = stream.m_pReadBuffer + stream.m_nLimit;
    u8* out = row;
    u8* const outEnd = row + width;
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
    return static_cast<u32>(out - row);
}

// Decodes one packet of at most room bytes, whatever the buffer holds of it. Returns the bytes written; 0
// when the packet is longer than that or the data ends.
u32 DecodePacket(u8* out, ByteStream& stream, u32 room, u32& used) {
    const i8 header = static_cast<i8>(ReadU8(stream));
    const u32 count = static_cast<u32>(header < 0 ? 1 - header : 1 + header);
    if (count > room || !stream.IsGood()) return 0;
    if (header < 0) {
        std::memset(out, static_cast<i32>(ReadU8(stream)), count);
        used += 2;
    } else {
        stream.GetBytes(out, count);
        used += 1 + count;
    }
    return stream.IsGood() ? count : 0;
}

// The samples of each byte of a bit row, its most significant bit first. A set bit is black: it becomes 0,
// which a palette of two shades shows as black, and a clear one 1, white.
constexpr auto UNPACKED = [] {
    std::array<std::array<u8, 8>, 256> table = {};
    for (u32 byte = 0; byte < 256; ++byte)
        for (u32 bit = 0; bit < 8; ++bit) table[byte][bit] = (byte << bit & 0x80) ? 0 : 1;
    return table;
}();

void UnpackBits(u8* row, const u8* packed, u32 width) {
    for (u32 i = 0; i < width / 8; ++i) std::memcpy(row + i * 8, UNPACKED[packed[i]].data(), 8);
    const u32 rest = width % 8;
    if (rest > 0) std::memcpy(row + (width - rest), UNPACKED[packed[width / 8]].data(), rest);
}

}  // namespace

std::optional<u32> UnpackRow(u8* row, ByteStream& stream, u32 width) {
    u32 out = 0;
    u32 used = 0;
    do {
        const u32 start = stream.m_nReadPos;
        out += DecodeFromBuffer(row + out, stream, width - out);
        used += stream.m_nReadPos - start;
        // The fast path never ends a row: it leaves the room of a piece.
        const u32 count = DecodePacket(row + out, stream, width - out, used);
        if (count == 0) return std::nullopt;
        out += count;
    } while (out < width);
    return used;
}

bool DecodePackBitsRow(u8* row, ByteStream& stream, u32 width, u32 packed) {
    return UnpackRow(row, stream, width) == packed;
}

bool PackedCounts::Read(PsdReading& reading, u64 rows) {
    ByteStream& stream = reading.Stream();
    const u64 size = SizeProduct(rows, COUNT_SIZE);
    if (!Holds(stream, size)) return reading.RefuseShort();
    m_nAt = stream.GetPosition();
    m_fields = LargeBlock::Allocate(size);
    ReadInto(stream, m_fields.Data(), static_cast<u32>(size));
    if (!reading.IsGood()) return false;
    m_nRows = rows;
    m_nSum = 0;
    for (u64 row = 0; row < rows; ++row) m_nSum += At(row);
    return true;
}

u32 PackedCounts::At(u64 row) const {
    const u8* const field = m_fields.Data() + row * COUNT_SIZE;
    return static_cast<u32>(field[0] << 8 | field[1]);
}

u32 PackedCounts::RowPosition(u64 row) const {
    u64 position = m_nAt + m_nRows * COUNT_SIZE;
    for (u64 before = 0; before < row; ++before) position += At(before);
    return static_cast<u32>(position);
}

bool CanExpandTo(PsdReading& reading, const PackedCounts& counts, u32 width) {
    if (!Holds(reading.Stream(), counts.Sum())) return reading.RefuseShort();
    // Two bytes make at most the longest run.
    const u64 least = (SizeProduct(counts.RowCount(), width, 2) + LONGEST_RUN - 1) / LONGEST_RUN;
    if (counts.Sum() >= least) return true;
    return reading.Refuse(Rule::PsdTooFewPackedBytes, counts.Position(), static_cast<i64>(counts.Sum()),
                          static_cast<i64>(least));
}

u64 ReadPackedRows(ByteStream& stream, u8* samples, u32 width, const PackedCounts& counts) {
    for (u64 row = 0; row < counts.RowCount(); ++row)
        if (!DecodePackBitsRow(samples + row * width, stream, width, counts.At(row))) return row;
    return counts.RowCount();
}

bool ReadWords(ByteStream& stream, u16* samples, u64 count) {
    // Swapped while they are still in the cache.
    constexpr u64 WORDS_AT_ONCE = 128 * 1024;
    stream.Sync();
    for (u64 done = 0; done < count; done += WORDS_AT_ONCE) {
        const u64 words = std::min(count - done, WORDS_AT_ONCE);
        stream.ReadBlock(samples + done, static_cast<u32>(words * 2));
        if (!stream.IsGood()) return false;
        if constexpr (std::endian::native == std::endian::little)
            for (u64 i = done; i < done + words; ++i) samples[i] = __builtin_bswap16(samples[i]);
    }
    return stream.IsGood();
}

bool ReadBitRows(ByteStream& stream, u8* samples, u64 rows, u32 width) {
    const u32 rowSize = static_cast<u32>(BitRowSize(width));
    const LargeBlock packed = LargeBlock::Allocate(rowSize);
    for (u64 row = 0; row < rows && stream.IsGood(); ++row) {
        ReadInto(stream, packed.Data(), rowSize);
        if (stream.IsGood()) UnpackBits(samples + row * width, packed.Data(), width);
    }
    return stream.IsGood();
}

void PsdLayerChannel::AllocatePlane(u32 rows, u32 columns) {
    m_rowPointers = LargeBlock::Allocate(SizeProduct(rows, sizeof(u8*)));
    m_samples = LargeBlock::Allocate(SizeProduct(rows, columns));
    m_ppPlane = reinterpret_cast<u8**>(m_rowPointers.Data());
    for (u64 row = 0; row < rows; ++row) m_ppPlane[row] = m_samples.Data() + row * columns;
}

void PsdLayerChannel::FreePlane() {
    m_ppPlane = nullptr;
    m_rowPointers = LargeBlock();
    m_samples = LargeBlock();
}

bool PsdLayerChannel::ReadChannelData(PsdReading& reading, u32 rows, u32 columns) {
    try {
        return ReadImageData(reading, rows, columns);
    } catch (const std::bad_alloc&) {
        FreePlane();
        return reading.RefuseForMemory();
    }
}

bool PsdLayerChannel::ReadImageData(PsdReading& reading, u32 rows, u32 columns) {
    FreePlane();
    ByteStream& stream = reading.Stream();
    const u32 start = stream.GetPosition();
    const u32 end = start + m_nLength;
    const i32 compression = ReadI16(stream);
    if (!reading.IsGood()) return false;
    switch (compression) {
        case PSD_RAW:
            return ReadRawData(reading, rows, columns, end);
        case PSD_PACK_BITS:
            return ReadPackedData(reading, rows, columns, end);
        case PSD_ZIP:
        case PSD_ZIP_PREDICTED:
            return reading.Refuse(Rule::PsdZip, start, compression);
        default:
            return reading.Refuse(Rule::PsdChannelCompression, start, compression);
    }
}

bool PsdLayerChannel::ReadRawData(PsdReading& reading, u32 rows, u32 columns, u32 end) {
    ByteStream& stream = reading.Stream();
    const u64 size = SizeProduct(rows, columns);
    const u32 held = end - stream.GetPosition();
    if (held != size)
        return reading.Refuse(Rule::PsdRawLength, m_nLengthAt, m_nLength,
                              static_cast<i64>(m_nLength - held + size));
    if (!Holds(stream, size)) return reading.RefuseShort();
    AllocatePlane(rows, columns);
    ReadInto(stream, m_samples.Data(), static_cast<u32>(size));
    return reading.IsGood();
}

bool PsdLayerChannel::ReadPackedData(PsdReading& reading, u32 rows, u32 columns, u32 end) {
    ByteStream& stream = reading.Stream();
    PackedCounts counts;
    if (!counts.Read(reading, rows)) return false;
    const u32 held = end - stream.GetPosition();
    if (held != counts.Sum())
        return reading.Refuse(Rule::PsdPackedLength, m_nLengthAt, m_nLength,
                              static_cast<i64>(m_nLength - held + counts.Sum()));
    if (!CanExpandTo(reading, counts, columns)) return false;
    AllocatePlane(rows, columns);
    const u64 read = ReadPackedRows(stream, m_samples.Data(), columns, counts);
    if (read == counts.RowCount()) return reading.IsGood();
    reading.EnterRow(Place::ChannelRow, static_cast<u32>(read));
    return reading.RefusePacked(Rule::PsdPackedRow, counts.RowPosition(read), counts.At(read));
}

bool PsdLayer::ReadChannelImages(PsdReading& reading) {
    const u32 longest = reading.Rules().nLongestSide;
    const auto isSide = [&](u32 length, Rule rule, u32 nPosition) {
        const i32 distance = static_cast<i32>(length);  // negative for a rectangle turned inside out
        return (length >= 1 && length <= longest) || reading.Refuse(rule, nPosition, distance, longest);
    };
    const u32 rows = PsdDistance(m_nTop, m_nBottom);
    const u32 columns = PsdDistance(m_nLeft, m_nRight);
    reading.Enter(Place::Layer);
    if (!isSide(rows, Rule::PsdRows, m_nRectAt)) return false;
    if (!isSide(columns, Rule::PsdColumns, m_nRectAt + EDGE_SIZE)) return false;
    const u32 maskRows = PsdDistance(m_nMaskTop, m_nMaskBottom);
    const u32 maskColumns = PsdDistance(m_nMaskLeft, m_nMaskRight);
    for (u32 i = 0; i < m_Channels.GetCount(); ++i) {
        PsdLayerChannel& channel = *m_Channels.GetAt(i);
        const bool isMask = channel.m_nId == PSD_CHANNEL_USER_MASK && m_bHasMask;
        if (isMask) {
            reading.Enter(Place::LayerMask);
            if (!isSide(maskRows, Rule::PsdRows, m_nMaskAt)) return false;
            if (!isSide(maskColumns, Rule::PsdColumns, m_nMaskAt + EDGE_SIZE)) return false;
        }
        reading.EnterChannel(Place::Channel, i);
        if (!channel.ReadChannelData(reading, isMask ? maskRows : rows, isMask ? maskColumns : columns))
            return false;
    }
    return reading.IsGood();
}
