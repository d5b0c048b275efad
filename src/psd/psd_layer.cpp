#include "psd/psd_layer.h"

#include "psd/field_reader.h"
#include "psd/psd_reading.h"

#include <cstring>

namespace {

constexpr u32 MASK_SIZE = 20;   // of mask data, where there is any
constexpr u32 RANGES_SIZE = 8;  // one range of the source and one of the destination

}  // namespace

bool PsdLayerChannel::ReadChannelInfo(PsdReading& reading) {
    m_nId = ReadI16(reading.Stream());
    const LengthField length = ReadLength(reading.Stream());
    m_nLength = length.nLength;
    m_nLengthAt = length.nAt;
    const u32 limit = reading.Rules().nPieceLimit;
    if (m_nLength >= limit) return reading.Refuse(Rule::PsdChannelLength, m_nLengthAt, m_nLength, limit);
    return reading.IsGood();
}

bool PsdLayerChannel::ReadBlendingRanges(PsdReading& reading) {
    reading.Stream().GetBytes(m_SourceRange.data(), 4);
    reading.Stream().GetBytes(m_DestRange.data(), 4);
    return reading.IsGood();
}

void PsdLayerChannel::SetDefaultBlendingRanges() {
    m_SourceRange = PSD_DEFAULT_RANGE;
    m_DestRange = PSD_DEFAULT_RANGE;
}

bool PsdLayer::ReadLayerRecord(PsdReading& reading) {
    ByteStream& stream = reading.Stream();
    m_nRectAt = stream.GetPosition();
    m_nTop = ReadI32(stream);
    m_nLeft = ReadI32(stream);
    m_nBottom = ReadI32(stream);
    m_nRight = ReadI32(stream);
    const u32 channels = ReadU16(stream);
    if (!reading.IsGood()) return false;
    if (!ReadChannelInfos(reading, channels)) return false;
    reading.Enter(Place::LayerRecord);
    if (!ReadBlendSettings(reading)) return false;
    const LengthField extra = ReadLength(stream);
    if (!ReadMask(reading)) return false;
    if (!ReadAllBlendingRanges(reading)) return false;
    const u32 nameLength = ReadU8(stream);
    m_pszName = ReadName(stream, nameLength);
    // The length byte, the name and the padding fill a multiple of four bytes.
    Skip(stream, 3 - nameLength % 4);
    const u32 position = stream.GetPosition();
    if (position > extra.End())
        return reading.Refuse(Rule::PsdExtraLength, extra.nAt, static_cast<i32>(extra.nLength),
                              static_cast<i32>(position - extra.Start()));
    return reading.SkipWithin(extra.End() - position) && reading.IsGood();
}

bool PsdLayer::ReadChannelInfos(PsdReading& reading, u32 count) {
    m_Channels.RemoveAll();
    for (u32 i = 0; i < count; ++i) {
        reading.EnterChannel(Place::ChannelInfo, i);
        auto channel = MakePsdObject<PsdLayerChannel>();
        if (!channel->ReadChannelInfo(reading)) return false;
        m_Channels.Append(std::move(channel));
    }
    return true;
}

bool PsdLayer::ReadBlendSettings(PsdReading& reading) {
    ByteStream& stream = reading.Stream();
    if (!reading.ReadSignature("8BIM", Rule::PsdBlendSignature)) return false;
    u8 key[4] = {};
    stream.GetBytes(key, 4);
    std::memcpy(&m_BlendKey, key, 4);
    m_nOpacity = ReadU8(stream);
    m_nClipping = i32{static_cast<i8>(ReadU8(stream))};
    m_nFlags = ReadU8(stream);
    Skip(stream, 1);
    return reading.IsGood();
}

bool PsdLayer::ReadMask(PsdReading& reading) {
    ByteStream& stream = reading.Stream();
    const LengthField size = ReadLength(stream);
    m_bHasMask = false;
    if (size.nLength == 0) return reading.IsGood();
    if (size.nLength != MASK_SIZE)
        return reading.Refuse(Rule::PsdMaskSize, size.nAt, size.nLength, MASK_SIZE);
    m_bHasMask = true;
    m_nMaskAt = size.Start();
    m_nMaskTop = ReadI32(stream);
    m_nMaskLeft = ReadI32(stream);
    m_nMaskBottom = ReadI32(stream);
    m_nMaskRight = ReadI32(stream);
    m_nMaskDefaultColour = ReadU8(stream);
    m_nMaskFlags = ReadU8(stream);
    Skip(stream, 2);
    return reading.IsGood();
}

bool PsdLayer::ReadAllBlendingRanges(PsdReading& reading) {
    ByteStream& stream = reading.Stream();
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
            if (!channel->ReadBlendingRanges(reading)) return false;
            rest -= RANGES_SIZE;
        }
    }
    return reading.SkipWithin(rest) && reading.IsGood();
}

bool PsdGlobalMask::ReadGlobalMask(PsdReading& reading) {
    ByteStream& stream = reading.Stream();
    m_nColourSpace = ReadU16(stream);
    stream.GetBytes(m_Colour.data(), static_cast<u32>(m_Colour.size()));
    m_nOpacity = ReadU16(stream);
    m_nKind = ReadU8(stream);
    Skip(stream, 1);
    return reading.IsGood();
}
