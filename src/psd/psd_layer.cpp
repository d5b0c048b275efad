#include "psd/psd_layer.h"

#include "psd/field_reader.h"

#include <algorithm>
#include <cstring>

namespace {

// Lengths from here on do not occur in version 1.
constexpr u32 CHANNEL_LENGTH_LIMIT = 1 << 24;

constexpr u32 MASK_SIZE = 20;
constexpr u32 RANGES_SIZE = 8;  // one range of the source and one of the destination

}  // namespace

bool PsdLayerChannel::ReadChannelInfo(ByteStream& stream) {
    m_nId = ReadI16(stream);
    m_nLength = ReadU32(stream);
    return m_nLength < CHANNEL_LENGTH_LIMIT && stream.IsGood();
}

bool PsdLayerChannel::ReadBlendingRanges(ByteStream& stream) {
    stream.GetBytes(m_SourceRange.data(), 4);
    stream.GetBytes(m_DestRange.data(), 4);
    return stream.IsGood();
}

void PsdLayerChannel::SetDefaultBlendingRanges() {
    m_SourceRange = PSD_DEFAULT_RANGE;
    m_DestRange = PSD_DEFAULT_RANGE;
}

bool PsdLayer::ReadLayerRecord(ByteStream& stream) {
    m_nTop = ReadI32(stream);
    m_nLeft = ReadI32(stream);
    m_nBottom = ReadI32(stream);
    m_nRight = ReadI32(stream);
    const u32 channels = ReadU16(stream);
    if (!stream.IsGood()) return false;
    if (!ReadChannelInfos(stream, channels) || !ReadBlendSettings(stream)) return false;
    const u32 extraSize = ReadU32(stream);
    const u32 end = stream.GetPosition() + extraSize;
    if (!ReadMask(stream) || !ReadAllBlendingRanges(stream)) return false;
    const u32 nameLength = ReadU8(stream);
    m_pszName = ReadName(stream, nameLength);
    if (!m_pszName) return false;
    // The length byte, the name and the padding fill a multiple of four bytes.
    Skip(stream, 3 - nameLength % 4);
    const u32 position = stream.GetPosition();
    if (position > end) return false;
    Skip(stream, end - position);
    return stream.IsGood();
}

bool PsdLayer::ReadChannelInfos(ByteStream& stream, u32 count) {
    m_Channels.RemoveAll();
    for (u32 i = 0; i < count; ++i) {
        auto channel = MakePsdObject<PsdLayerChannel>();
        if (!channel || !channel->ReadChannelInfo(stream) || !m_Channels.Append(std::move(channel)))
            return false;
    }
    return stream.IsGood();
}

bool PsdLayer::ReadBlendSettings(ByteStream& stream) {
    if (!Matches(stream, "8BIM")) return false;
    u8 key[4] = {};
    stream.GetBytes(key, 4);
    std::memcpy(&m_BlendKey, key, 4);
    m_nOpacity = ReadU8(stream);
    m_nClipping = i32{static_cast<i8>(ReadU8(stream))};
    m_nFlags = ReadU8(stream);
    Skip(stream, 1);
    return stream.IsGood();
}

bool PsdLayer::ReadMask(ByteStream& stream) {
    const u32 size = ReadU32(stream);
    m_bHasMask = size == MASK_SIZE;
    if (m_bHasMask) {
        m_nMaskTop = ReadI32(stream);
        m_nMaskLeft = ReadI32(stream);
        m_nMaskBottom = ReadI32(stream);
        m_nMaskRight = ReadI32(stream);
        m_nMaskDefaultColour = ReadU8(stream);
        m_nMaskFlags = ReadU8(stream);
        Skip(stream, 2);
    }
    return (m_bHasMask || size == 0) && stream.IsGood();
}

bool PsdLayer::ReadAllBlendingRanges(ByteStream& stream) {
    u32 rest = ReadU32(stream);
    m_SourceRange = PSD_DEFAULT_RANGE;
    m_DestRange = PSD_DEFAULT_RANGE;
    if (rest >= RANGES_SIZE) {
        stream.GetBytes(m_SourceRange.data(), 4);
        stream.GetBytes(m_DestRange.data(), 4);
        rest -= RANGES_SIZE;
    }
    for (const auto& channel : m_Channels) {
        if (rest < RANGES_SIZE) {
            channel->SetDefaultBlendingRanges();
        } else {
            if (!channel->ReadBlendingRanges(stream)) return false;
            rest -= RANGES_SIZE;
        }
    }
    Skip(stream, rest);
    return stream.IsGood();
}

bool PsdGlobalMask::ReadGlobalMask(ByteStream& stream) {
    m_nColourSpace = ReadU16(stream);
    stream.GetBytes(m_Colour.data(), static_cast<u32>(m_Colour.size()));
    m_nOpacity = ReadU16(stream);
    m_nKind = ReadU8(stream);
    Skip(stream, 1);
    return stream.IsGood();
}

u64 PsdLayer::LeastImageDataSize() const {
    constexpr u32 LEAST_CHANNEL_SIZE = 3;  // its compression and one sample
    u64 size = 0;
    for (const auto& channel : m_Channels) size += std::max(channel->m_nLength, LEAST_CHANNEL_SIZE);
    return size;
}
