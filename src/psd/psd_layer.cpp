#include "psd/psd_layer.h"

#include "psd/psd_reading.h"
#include "psd/tagged_blocks.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

// Bytes of mask data: as much as a mask takes, with its padding, and with the rectangle of the real mask.
constexpr u32 LEAST_MASK_SIZE = 18;
constexpr u32 MASK_SIZE = 20;
constexpr u32 REAL_MASK_SIZE = 36;

constexpr u32 RANGES_SIZE = 8;  // one range of the source and one of the destination
constexpr u32 INFO_SIZE = 2;    // bytes of a channel's id, which its length follows
constexpr u32 FRONT_SIZE = 18;  // bytes of the edges and the count of channels
constexpr u32 BLEND_SIZE = 12;  // bytes from the blend mode's signature to the extra data's length

}  // namespace

bool PsdLayerChannel::ReadChannelInfo(PsdReading& reading) {
    if (!reading.MayRead(INFO_SIZE + reading.LargeLengthSize())) return false;
    m_nId = ReadI16(reading.Stream());
    const LengthField length = reading.ReadLargeLength();
    // No data is as long as a length that does not fit.
    m_nLength = static_cast<u32>(std::min<u64>(length.nLength, std::numeric_limits<u32>::max()));
    m_nLengthAt = length.nAt;
    if (m_nLength >= PSD_PIECE_LIMIT && !reading.Allows(reading.Rules().bLongPieces, Passed::LongPieces))
        return reading.Refuse(Rule::PsdChannelLength, m_nLengthAt, m_nLength, PSD_PIECE_LIMIT);
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
    if (!reading.MayRead(FRONT_SIZE)) return false;
    m_nRectAt = stream.GetPosition();
    m_nTop = ReadI32(stream);
    m_nLeft = ReadI32(stream);
    m_nBottom = ReadI32(stream);
    m_nRight = ReadI32(stream);
    const u32 channels = ReadU16(stream);
    if (!reading.IsGood()) return false;
    if (!ReadChannelInfos(reading, channels)) return false;
    reading.Enter(Place::LayerRecord);
    if (!reading.MayRead(BLEND_SIZE + sizeof(u32))) return false;
    if (!ReadBlendSettings(reading)) return false;
    const LengthField extra = reading.ReadLength();
    PsdPart part(reading, extra);
    if (!part.Fits()) return reading.RefuseShort();
    if (!ReadExtraData(reading, extra)) return false;
    part.Leave();
    return reading.IsGood();
}

bool PsdLayer::ReadExtraData(PsdReading& reading, const LengthField& length) {
    ByteStream& stream = reading.Stream();
    if (!ReadMask(reading)) return false;
    if (!ReadAllBlendingRanges(reading)) return false;
    const u32 nameLength = ReadU8(stream);
    if (!reading.MayRead(nameLength)) return false;
    m_pszName = ReadName(stream, nameLength);
    // The length byte, the name and the padding fill a multiple of four bytes.
    Skip(stream, 3 - nameLength % 4);
    if (reading.Rules().bUnicodeNames) ReadUnicodeName(reading);
    if (reading.Rules().bBoundedParts) return reading.IsGood();
    const u32 position = stream.GetPosition();
    if (position > length.End())
        return reading.Refuse(Rule::PsdExtraLength, length.nAt, static_cast<i32>(length.nLength),
                              static_cast<i32>(position - length.Start()));
    return reading.SkipWithin(length.End() - position) && reading.IsGood();
}

void PsdLayer::ReadUnicodeName(PsdReading& reading) {
    const auto length = FindTaggedBlock(reading, {"luni"});
    if (!length) return;
    const PsdPart block(reading, *length);
    const std::string name = ReadUtf16(reading);
    if (name.empty()) return;
    m_pszName = std::make_unique_for_overwrite<char[]>(name.size() + 1);
    std::memcpy(m_pszName.get(), name.c_str(), name.size() + 1);
}

bool PsdLayer::ReadChannelInfos(PsdReading& reading, u32 nCount) {
    m_Channels.RemoveAll();
    for (u32 i = 0; i < nCount; ++i) {
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
    const ReadingRules& rules = reading.Rules();
    if (!reading.MayRead(sizeof(u32))) return false;
    const LengthField size = reading.ReadLength();
    m_bHasMask = false;
    m_bHasRealMask = false;
    if (size.nLength == 0) return reading.IsGood();
    if (size.nLength != MASK_SIZE && !reading.Allows(rules.bMaskData, Passed::MaskData))
        return reading.Refuse(Rule::PsdMaskSize, size.nAt, static_cast<i64>(size.nLength), MASK_SIZE);
    PsdPart part(reading, size);
    if (!part.Fits()) return reading.RefuseShort();
    if (size.nLength >= LEAST_MASK_SIZE) {
        m_bHasMask = true;
        m_nMaskAt = size.Start();
        m_nMaskTop = ReadI32(stream);
        m_nMaskLeft = ReadI32(stream);
        m_nMaskBottom = ReadI32(stream);
        m_nMaskRight = ReadI32(stream);
        m_nMaskDefaultColour = ReadU8(stream);
        m_nMaskFlags = ReadU8(stream);
        if (rules.bMaskData) ReadRealMask(reading, size.nLength);
        if (!rules.bBoundedParts) Skip(stream, MASK_SIZE - LEAST_MASK_SIZE);
    }
    part.Leave();
    return reading.IsGood();
}

// The rectangle of the real mask, where the data has one of its own.
void PsdLayer::ReadRealMask(PsdReading& reading, u64 nMaskSize) {
    m_bHasRealMask = true;
    m_RealMask = {m_nMaskTop, m_nMaskLeft, m_nMaskBottom, m_nMaskRight};
    if (nMaskSize < REAL_MASK_SIZE) return;
    Skip(reading.Stream(), MASK_SIZE - LEAST_MASK_SIZE);
    for (i32& edge : m_RealMask) edge = ReadI32(reading.Stream());
}

bool PsdLayer::ReadAllBlendingRanges(PsdReading& reading) {
    ByteStream& stream = reading.Stream();
    if (!reading.MayRead(sizeof(u32))) return false;
    const LengthField length = reading.ReadLength();
    if (!reading.MayRead(length.nLength + sizeof(u8))) return false;
    u32 rest = static_cast<u32>(length.nLength);
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
