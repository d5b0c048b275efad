#include "base/checked_size.h"
#include "psd/channel_data.h"
#include "psd/field_reader.h"
#include "psd/psd_image.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr u32 MOST_CHANNELS = 24;
constexpr u32 PALETTE_BYTES = 3 * PSD_PALETTE_SIZE;

}  // namespace

bool PsdImage::ReadHeader(ByteStream& stream) {
    if (!Matches(stream, "8BPS")) return false;
    if (ReadU16(stream) != 1) return false;
    Skip(stream, 6);
    m_nChannels = static_cast<u32>(ReadI16(stream));
    m_nHeight = ReadU32(stream);
    m_nWidth = ReadU32(stream);
    m_nDepth = static_cast<u32>(ReadI16(stream));
    m_nMode = static_cast<u32>(ReadI16(stream));
    if (!stream.IsGood()) return false;
    // Compared unsigned, so that negative fields count as too large.
    if (m_nChannels == 0 || m_nChannels > MOST_CHANNELS) return false;
    if (!IsPsdSide(m_nHeight)) return false;
    if (!IsPsdSide(m_nWidth)) return false;
    if (m_nDepth != 1 && m_nDepth != 8 && m_nDepth != 16) return false;
    return m_nMode <= PSD_CMYK || (m_nMode >= PSD_MULTICHANNEL && m_nMode <= PSD_LAB);
}

bool PsdImage::ReadColourModeData(ByteStream& stream) {
    const u32 length = ReadU32(stream);
    if (m_nMode != PSD_INDEXED) {
        Skip(stream, length);
        return stream.IsGood();
    }
    if (length != PALETTE_BYTES || !CanDeliver(stream, length)) return false;
    m_pPalette.reset(new (std::nothrow) u8[PALETTE_BYTES]());
    if (!m_pPalette) return false;
    // All reds stand first in the file, then all greens, then all blues.
    for (u32 component = 0; component < 3; ++component)
        for (u32 entry = 0; entry < PSD_PALETTE_SIZE; ++entry)
            stream.GetByte(m_pPalette[entry * 3 + component]);
    return stream.IsGood();
}

bool PsdImage::ReadResources(ByteStream& stream) {
    const u32 length = ReadU32(stream);
    if (length == 0) return stream.IsGood();
    const u32 end = stream.GetPosition() + length;
    do {
        auto resource = MakePsdObject<PsdResource>();
        if (!resource || !resource->ReadResourceBlock(stream) || !m_Resources.Append(std::move(resource)))
            return false;
    } while (stream.GetPosition() < end);
    return stream.GetPosition() == end && stream.IsGood();
}

// The section's length bounds nothing: the composite stands where its last part ends.
bool PsdImage::ReadLayersAndMasks(ByteStream& stream) {
    m_bMergedAlpha = false;
    const u32 length = ReadU32(stream);
    if (length == 0) return stream.IsGood();
    return ReadLayers(stream) && ReadGlobalMasks(stream);
}

bool PsdImage::ReadLayers(ByteStream& stream) {
    const u32 length = ReadU32(stream);
    if (length == 0) return stream.IsGood();
    const u32 end = stream.GetPosition() + length;
    const i32 count = ReadI16(stream);
    m_bMergedAlpha = count < 0;
    if (!ReadLayerRecords(stream, static_cast<u32>(std::abs(count)))) return false;
    for (const auto& layer : m_Layers)
        if (!layer->ReadChannelImages(stream)) return false;
    // A pad byte may follow.
    const u32 position = stream.GetPosition();
    if (position + 1 == end) Skip(stream, 1);
    return (position == end || position + 1 == end) && stream.IsGood();
}

bool PsdImage::ReadLayerRecords(ByteStream& stream, u32 count) {
    // Lengths that lead backwards can lay many records over the same bytes, but the channels' image data,
    // read after them from front to back, cannot overlap: more of it than there is data bounds the channels
    // made.
    u64 announced = 0;
    for (u32 i = 0; i < count; ++i) {
        auto layer = MakePsdObject<PsdLayer>();
        if (!layer || !layer->ReadLayerRecord(stream)) return false;
        announced += layer->LeastImageDataSize();
        // Left in the state that reading them would have left.
        if (announced > DataLength(stream)) stream.m_nStatus |= BS_END;
        if (!stream.IsGood() || !m_Layers.Append(std::move(layer))) return false;
    }
    return stream.IsGood();
}

bool PsdImage::ReadGlobalMasks(ByteStream& stream) {
    const u32 length = ReadU32(stream);
    if (length == 0 || !stream.IsGood()) return stream.IsGood();
    const u32 end = stream.GetPosition() + length;
    do {
        auto mask = MakePsdObject<PsdGlobalMask>();
        if (!mask || !mask->ReadGlobalMask(stream) || !m_GlobalMasks.Append(std::move(mask))) return false;
    } while (stream.GetPosition() < end);
    return stream.GetPosition() == end;
}

bool PsdImage::ReadComposite(ByteStream& stream) {
    const i32 compression = ReadI16(stream);
    if (!stream.IsGood()) return false;
    if (compression == PSD_RAW) return ReadRawComposite(stream);
    return compression == PSD_PACK_BITS && m_nDepth == 8 && ReadPackedComposite(stream);
}

bool PsdImage::ReadRawComposite(ByteStream& stream) {
    const u64 rowSize = m_nDepth == 1 ? BitRowSize(m_nWidth) : m_nWidth * SampleSize();
    const u64 size = SizeProduct(RowCount(), rowSize);
    if (!CanDeliver(stream, size) || !AllocatePlanes()) return false;
    if (m_nDepth == 1) return ReadBitRows(stream, Samples(), RowCount(), m_nWidth);
    if (m_nDepth == 16) return ReadWords(stream, reinterpret_cast<u16*>(Samples()), RowCount() * m_nWidth);
    ReadInto(stream, Samples(), static_cast<u32>(size));
    return stream.IsGood();
}

bool PsdImage::ReadPackedComposite(ByteStream& stream) {
    PackedCounts counts;
    return counts.Read(stream, RowCount()) && CanExpandTo(stream, counts, m_nWidth) && AllocatePlanes() &&
           ReadPackedRows(stream, Samples(), m_nWidth, counts);
}

bool PsdImage::LoadPsd(ByteStream* stream) {
    Clear();
    return ReadHeader(*stream) && ReadColourModeData(*stream) && ReadResources(*stream) &&
           ReadLayersAndMasks(*stream) && ReadComposite(*stream);
}
