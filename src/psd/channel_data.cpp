#include "psd/channel_data.h"

#include "base/checked_size.h"
#include "psd/field_reader.h"
#include "psd/psd_image.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace {

constexpr u32 LONGEST_RUN = 129;

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

// The samples of each byte of a bit row, its most significant bit first.
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

bool DecodePackBitsRow(u8* row, ByteStream& stream, u32 width, u32 packed) {
    u32 out = 0;
    u32 used = 0;
    do {
        const u32 start = stream.m_nReadPos;
        out += DecodeFromBuffer(row + out, stream, width - out);
        used += stream.m_nReadPos - start;
        // The fast path never ends a row: it leaves the room of a piece.
        const u32 count = DecodePacket(row + out, stream, width - out, used);
        if (count == 0) return false;
        out += count;
    } while (out < width);
    return used == packed;
}

bool PackedCounts::Read(ByteStream& stream, u64 rows) {
    const u64 size = SizeProduct(rows, 2);
    if (!CanDeliver(stream, size)) return false;
    m_fields = LargeBlock::Try(size);
    if (!m_fields) return false;
    ReadInto(stream, m_fields.Data(), static_cast<u32>(size));
    if (!stream.IsGood()) return false;
    m_nRows = rows;
    m_nSum = 0;
    for (u64 row = 0; row < rows; ++row) m_nSum += At(row);
    return true;
}

u32 PackedCounts::At(u64 row) const {
    const u8* const field = m_fields.Data() + row * 2;
    return static_cast<u32>(field[0] << 8 | field[1]);
}

bool CanExpandTo(ByteStream& stream, const PackedCounts& counts, u32 width) {
    // Two bytes make at most the longest run.
    return CanDeliver(stream, counts.Sum()) &&
           SizeProduct(counts.RowCount(), width, 2) <= SizeProduct(counts.Sum(), LONGEST_RUN);
}

bool ReadPackedRows(ByteStream& stream, u8* samples, u32 width, const PackedCounts& counts) {
    for (u64 row = 0; row < counts.RowCount(); ++row)
        if (!DecodePackBitsRow(samples + row * width, stream, width, counts.At(row))) return false;
    return stream.IsGood();
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
    std::array<u8, BitRowSize(PSD_LONGEST_SIDE)> packed;
    for (u64 row = 0; row < rows && stream.IsGood(); ++row) {
        ReadInto(stream, packed.data(), static_cast<u32>(BitRowSize(width)));
        if (stream.IsGood()) UnpackBits(samples + row * width, packed.data(), width);
    }
    return stream.IsGood();
}

bool PsdLayerChannel::AllocatePlane(u32 rows, u32 columns) {
    m_rowPointers = LargeBlock::Try(SizeProduct(rows, sizeof(u8*)));
    m_samples = LargeBlock::Try(SizeProduct(rows, columns));
    if (!m_rowPointers || !m_samples) return false;
    m_ppPlane = reinterpret_cast<u8**>(m_rowPointers.Data());
    for (u64 row = 0; row < rows; ++row) m_ppPlane[row] = m_samples.Data() + row * columns;
    return true;
}

bool PsdLayerChannel::ReadChannelData(ByteStream& stream, u32 rows, u32 columns) {
    m_ppPlane = nullptr;
    m_rowPointers = LargeBlock();
    m_samples = LargeBlock();
    const i32 compression = ReadI16(stream);
    if (!stream.IsGood()) return false;
    if (compression == PSD_RAW) {
        const u64 size = SizeProduct(rows, columns);
        if (m_nLength != size + 2 || !CanDeliver(stream, size) || !AllocatePlane(rows, columns)) return false;
        ReadInto(stream, m_samples.Data(), static_cast<u32>(size));
        return stream.IsGood();
    }
    if (compression != PSD_PACK_BITS) return false;
    PackedCounts counts;
    if (!counts.Read(stream, rows) || m_nLength != 2 + 2 * counts.RowCount() + counts.Sum()) return false;
    return CanExpandTo(stream, counts, columns) && AllocatePlane(rows, columns) &&
           ReadPackedRows(stream, m_samples.Data(), columns, counts);
}

bool PsdLayer::ReadChannelImages(ByteStream& stream) {
    const u32 rows = PsdDistance(m_nTop, m_nBottom);
    const u32 columns = PsdDistance(m_nLeft, m_nRight);
    if (!IsPsdSide(rows) || !IsPsdSide(columns)) return false;
    const u32 maskRows = PsdDistance(m_nMaskTop, m_nMaskBottom);
    const u32 maskColumns = PsdDistance(m_nMaskLeft, m_nMaskRight);
    for (const auto& channel : m_Channels) {
        const bool isMask = channel->m_nId == PSD_CHANNEL_USER_MASK && m_bHasMask;
        if (isMask && (!IsPsdSide(maskRows) || !IsPsdSide(maskColumns))) return false;
        if (!channel->ReadChannelData(stream, isMask ? maskRows : rows, isMask ? maskColumns : columns))
            return false;
    }
    return stream.IsGood();
}
