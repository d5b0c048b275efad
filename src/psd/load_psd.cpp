#include "base/checked_size.h"
#include "base/wrapping.h"
#include "psd/compression.h"
#include "psd/pack_bits.h"
#include "psd/psd_image.h"
#include "psd/psd_reading.h"
#include "psd/row_source.h"
#include "psd/sample_rows.h"
#include "psd/tagged_blocks.h"

#include <cstdlib>
#include <new>

namespace {

constexpr u32 PALETTE_BYTES = 3 * PSD_PALETTE_SIZE;
constexpr u32 RECT_SIZE = 16;          // bytes of a layer's edges, which its count of channels follows
constexpr u32 LEAST_CHANNEL_SIZE = 3;  // bytes of image data: its compression and one sample
constexpr u32 MOST_PADDING = 1;        // bytes that may follow the last layer's last channel
constexpr u32 COUNT_SIZE = 2;          // bytes of the count of layers

// Whether the parts of a section have ended with it.
bool EndsWith(PsdReading& reading, const LengthField& section) {
    const u32 position = reading.Stream().GetPosition();
    if (position == section.End()) return reading.IsGood();
    return reading.Refuse(Rule::PsdSectionLength, section.nAt, static_cast<i64>(section.nLength),
                          WrappingDifference(position, section.Start()));
}

// What reads like a compression where "8BIM" or "8B64" begins a block.
constexpr i32 TAGGED_BLOCK = '8' << 8 | 'B';

// How a row of the composite's plane is made.
PutRow PutOf(u32 nDepth, bool bColour) {
    switch (nDepth) {
        case 1:
            return PutBits;
        case 16:
            return PutWords;
        case PSD_FLOAT_DEPTH:
            return bColour ? PutLinearLight : PutFloats;
        default:
            return PutBytes;
    }
}

constexpr u32 PSD_RESOURCE_VERSION_INFO = 1057;
constexpr u32 MERGED_PICTURE_AT = 4;  // byte of that resource; 0 where the composite is not one

}  // namespace

bool PsdImage::ReadVersion(PsdReading& reading) {
    const u32 versionAt = reading.Stream().GetPosition();
    const i32 version = ReadI16(reading.Stream());
    const bool large = reading.Rules().bVersion2;
    if (version == PSD_VERSION) return true;
    if (version != PSD_LARGE_VERSION || !reading.Allows(large, Passed::Version2))
        return reading.Refuse(Rule::PsdVersion, versionAt, version, large ? PSD_LARGE_VERSION : PSD_VERSION);
    reading.SetVersion(PSD_LARGE_VERSION);
    return true;
}

bool PsdImage::ReadHeader(PsdReading& reading) {
    ByteStream& stream = reading.Stream();
    if (!reading.ReadSignature("8BPS", Rule::PsdSignature)) return false;
    reading.Enter(Place::Header);
    if (!ReadVersion(reading)) return false;
    Skip(stream, 6);
    const u32 fieldsAt = stream.GetPosition();
    m_nChannels = static_cast<u32>(ReadI16(stream));
    m_nHeight = ReadU32(stream);
    m_nWidth = ReadU32(stream);
    m_nDepth = static_cast<u32>(ReadI16(stream));
    m_nMode = static_cast<u32>(ReadI16(stream));
    if (!reading.IsGood()) return false;
    if (!CheckHeader(reading, fieldsAt)) return false;
    reading.SetDepth(m_nDepth);
    if (m_nDepth == PSD_FLOAT_DEPTH) m_nDepth = 8;
    return true;
}

bool PsdImage::CheckHeader(PsdReading& reading, u32 nFieldsAt) {
    const ReadingRules& rules = reading.Rules();
    // Compared unsigned, so that negative fields count as too large.
    if (m_nChannels == 0 || m_nChannels > rules.nMostChannels)
        return reading.Refuse(Rule::PsdChannelCount, nFieldsAt, static_cast<i32>(m_nChannels),
                              rules.nMostChannels);
    if (m_nChannels > STRICT.nMostChannels) reading.PassOver(Passed::MoreChannels);
    const u32 longest = reading.LongestSide();
    if (m_nHeight == 0 || m_nHeight > longest)
        return reading.Refuse(Rule::PsdRows, nFieldsAt + 2, m_nHeight, longest);
    if (m_nWidth == 0 || m_nWidth > longest)
        return reading.Refuse(Rule::PsdColumns, nFieldsAt + 6, m_nWidth, longest);
    const bool floats = m_nDepth == PSD_FLOAT_DEPTH && reading.Allows(rules.bFloats, Passed::Floats);
    if (!floats && !IsPsdDepth(m_nDepth))
        return reading.Refuse(Rule::PsdDepth, nFieldsAt + 10, static_cast<i32>(m_nDepth),
                              rules.bFloats ? PSD_FLOAT_DEPTH : 0);
    if (!IsPsdMode(m_nMode))
        return reading.Refuse(Rule::PsdColourMode, nFieldsAt + 12, static_cast<i32>(m_nMode));
    return true;
}

bool PsdImage::ReadColourModeData(PsdReading& reading) {
    reading.Enter(Place::ColourModeData);
    const LengthField length = reading.ReadLength();
    if (m_nMode == PSD_INDEXED) return ReadPalette(reading, length);
    return reading.SkipWithin(length.nLength) && reading.IsGood();
}

bool PsdImage::ReadPalette(PsdReading& reading, const LengthField& length) {
    ByteStream& stream = reading.Stream();
    if (length.nLength != PALETTE_BYTES)
        return reading.Refuse(Rule::PsdPaletteLength, length.nAt, static_cast<i64>(length.nLength),
                              PALETTE_BYTES);
    if (!reading.Require(length.nLength)) return false;
    m_pPalette = std::make_unique<u8[]>(PALETTE_BYTES);
    // All reds stand first in the file, then all greens, then all blues.
    for (u32 component = 0; component < 3; ++component)
        for (u32 entry = 0; entry < PSD_PALETTE_SIZE; ++entry)
            stream.GetByte(m_pPalette[entry * 3 + component]);
    return reading.IsGood();
}

bool PsdImage::ReadResources(PsdReading& reading) {
    ByteStream& stream = reading.Stream();
    const ReadingRules& rules = reading.Rules();
    reading.Enter(Place::Resources);
    const LengthField section = reading.ReadLength();
    if (!reading.IsGood()) return false;
    if (section.nLength == 0) return true;
    PsdPart part(reading, section);
    if (!part.Fits()) return reading.RefuseShort();
    do {
        reading.EnterNth(Place::Resource, m_Resources.GetCount());
        auto resource = MakePsdObject<PsdResource>();
        if (!resource->ReadResourceBlock(reading)) {
            if (!reading.DoesWithout(rules.bResources, Passed::Resources)) return false;
            part.Leave();
            break;
        }
        m_Resources.Append(std::move(resource));
    } while (stream.GetPosition() < section.End());
    reading.Enter(Place::Resources);
    return EndsWith(reading, section);
}

bool PsdImage::ReadLayersAndMasks(PsdReading& reading, LengthField& section) {
    m_bMergedAlpha = false;
    reading.Enter(Place::LayersAndMasks);
    section = reading.ReadLargeLength();
    if (!reading.IsGood()) return false;
    if (section.nLength == 0) return true;
    PsdPart part(reading, section);
    if (!part.Fits()) return reading.RefuseShort();
    if (!ReadLayerInformation(reading) || !ReadGlobalMasks(reading) || !ReadTaggedBlocks(reading, section))
        return false;
    // Where parts are not bounded, the composite stands where the last one ends.
    part.Leave();
    return reading.IsGood();
}

bool PsdImage::ReadLayerInformation(PsdReading& reading) {
    reading.Enter(Place::Layers);
    if (!reading.MayRead(reading.LargeLengthSize())) return DoWithoutLayers(reading);
    const LengthField length = reading.ReadLargeLength();
    if (!reading.IsGood()) return false;
    if (length.nLength == 0) return true;
    PsdPart part(reading, length);
    const bool read = (part.Fits() || reading.RefuseShort()) && ReadLayers(reading, length);
    if (!read && !DoWithoutLayers(reading)) return false;
    part.Leave();
    return reading.IsGood();
}

bool PsdImage::ReadLayers(PsdReading& reading, const LengthField& section) {
    ByteStream& stream = reading.Stream();
    const ReadingRules& rules = reading.Rules();
    if (!reading.MayRead(COUNT_SIZE)) return false;
    const i32 count = ReadI16(stream);
    m_bMergedAlpha = count < 0;
    if (count != 0 && reading.Depth() > 8 && reading.Allows(rules.bDeepLayers, Passed::DeepLayers))
        reading.SetLayerDepth(reading.Depth());
    if (!ReadLayerRecords(reading, static_cast<u32>(std::abs(count)))) return false;
    for (u32 i = 0; i < m_Layers.GetCount(); ++i) {
        reading.EnterNth(Place::Layer, i);
        if (!m_Layers.GetAt(i)->ReadChannelImages(reading)) return false;
    }
    reading.Enter(Place::Layers);
    const u32 position = stream.GetPosition();
    const u32 padding = WrappingDifference(section.End(), position);
    if (padding > MOST_PADDING && position < section.End()) {
        if (reading.Allows(rules.bPadding, Passed::Padding)) return true;
        return reading.Refuse(Rule::PsdLayersPadded, section.nAt, padding, MOST_PADDING);
    }
    if (padding > MOST_PADDING) return EndsWith(reading, section);
    Skip(stream, padding);
    return reading.IsGood();
}

bool PsdImage::DoWithoutLayers(PsdReading& reading) {
    if (!reading.DoesWithout(reading.Rules().bBrokenParts, Passed::BrokenLayers)) return false;
    m_Layers.RemoveAll();
    return true;
}

bool PsdImage::ReadLayerRecords(PsdReading& reading, u32 nCount) {
    // Lengths that lead backwards can lay many records over the same bytes, but the channels' image data,
    // read after them from front to back, cannot overlap: what it takes at the least bounds the channels
    // made. Where parts are bounded, no two records overlap.
    ByteStream& stream = reading.Stream();
    const bool bounded = reading.Rules().bBoundedParts;
    u64 channels = 0;
    for (u32 i = 0; i < nCount; ++i) {
        reading.EnterNth(Place::LayerRecord, i);
        const u32 recordAt = stream.GetPosition();
        auto layer = MakePsdObject<PsdLayer>();
        if (!layer->ReadLayerRecord(reading)) return false;
        channels += layer->m_Channels.GetCount();
        const u64 least = channels * LEAST_CHANNEL_SIZE;
        const u32 held = stream.GetDataLength();
        if (!bounded && least > held) {
            reading.Refuse(Rule::PsdChannelsBeyondData, recordAt + RECT_SIZE, static_cast<i64>(least), held);
            return reading.RefuseShort();
        }
        m_Layers.Append(std::move(layer));
    }
    return reading.IsGood();
}

bool PsdImage::ReadGlobalMasks(PsdReading& reading) {
    ByteStream& stream = reading.Stream();
    const ReadingRules& rules = reading.Rules();
    reading.Enter(Place::GlobalMasks);
    if (rules.bBoundedParts && !reading.Holds(sizeof(u32)) &&
        reading.Allows(rules.bGlobalMask, Passed::GlobalMask))
        return true;
    const LengthField section = reading.ReadLength();
    if (!reading.IsGood()) return false;
    if (section.nLength == 0) return true;
    if (rules.bGlobalMask) return ReadWholeGlobalMasks(reading, section);
    do {
        auto mask = MakePsdObject<PsdGlobalMask>();
        if (!mask->ReadGlobalMask(reading)) return false;
        m_GlobalMasks.Append(std::move(mask));
    } while (stream.GetPosition() < section.End());
    return EndsWith(reading, section);
}

// As many records as fit; the rest is skipped.
bool PsdImage::ReadWholeGlobalMasks(PsdReading& reading, const LengthField& section) {
    PsdPart part(reading, section);
    if (!part.Fits() || section.nLength % PSD_GLOBAL_MASK_SIZE != 0) reading.PassOver(Passed::GlobalMask);
    while (reading.Holds(PSD_GLOBAL_MASK_SIZE)) {
        auto mask = MakePsdObject<PsdGlobalMask>();
        if (!mask->ReadGlobalMask(reading)) return false;
        m_GlobalMasks.Append(std::move(mask));
    }
    part.Leave();
    return reading.IsGood();
}

// Blocks are known by their tags alone, so whatever stands here may be called that. Layers of more than 8
// bits stand in one of them, and then nowhere else.
bool PsdImage::ReadTaggedBlocks(PsdReading& reading, const LengthField& section) {
    const ReadingRules& rules = reading.Rules();
    if (!rules.bTaggedBlocks || reading.Stream().GetPosition() == section.End()) return true;
    reading.PassOver(Passed::TaggedBlocks);
    const bool hadLayers = m_Layers.GetCount() > 0 || m_passedOver.CountOf(Passed::BrokenLayers) > 0;
    if (hadLayers || !rules.bDeepLayers) return true;
    const auto length = FindTaggedBlock(reading, {"Lr16", "Lr32"});
    if (!length) return true;
    reading.Enter(Place::Layers);
    const PsdPart part(reading, *length);
    const bool read = (part.Fits() || reading.RefuseShort()) && ReadLayers(reading, *length);
    return read || DoWithoutLayers(reading);
}

bool PsdImage::ReadComposite(PsdReading& reading, const LengthField& section) {
    reading.Enter(Place::Composite);
    if (ReadCompositeData(reading, section)) return true;
    if (m_Layers.GetCount() == 0) return false;
    if (!reading.DoesWithout(reading.Rules().bBrokenParts, Passed::BrokenComposite)) return false;
    FreePlanes();
    return true;
}

bool PsdImage::ReadCompositeData(PsdReading& reading, const LengthField& section) {
    ByteStream& stream = reading.Stream();
    const ReadingRules& rules = reading.Rules();
    const u32 compressionAt = stream.GetPosition();
    const PsdPart part(reading, compressionAt, stream.GetDataLength());
    if (!reading.MayRead(PSD_COMPRESSION_SIZE)) return false;
    const i32 compression = ReadI16(stream);
    if (!reading.IsGood()) return false;
    if (compression == PSD_RAW) return ReadRawComposite(reading);
    if (compression == PSD_PACK_BITS &&
        (reading.Depth() == 8 || reading.Allows(rules.bPackedDepths, Passed::PackedDepths)))
        return ReadPackedComposite(reading);
    if (compression == PSD_ZIP || compression == PSD_ZIP_PREDICTED)
        return reading.Refuse(Rule::PsdZip, compressionAt, compression);
    if (rules.bPackedDepths) return reading.Refuse(Rule::PsdChannelCompression, compressionAt, compression);
    if (compression == TAGGED_BLOCK && compressionAt < section.End())
        return reading.Refuse(Rule::PsdTaggedBlocks, compressionAt);
    return reading.Refuse(Rule::PsdCompositeCompression, compressionAt, compression, m_nDepth);
}

bool PsdImage::ReadRawComposite(PsdReading& reading) {
    ByteStream& stream = reading.Stream();
    const u64 rowSize = SampleRowSize(reading.Depth(), m_nWidth);
    const u64 size = SizeProduct(RowCount(), rowSize);
    if (!reading.Require(size)) return false;
    if (!AllocatePlanes()) return reading.RefuseForMemory({PlanesSize(), LargeBlock::Left()});
    if (reading.Depth() == 8) {
        ReadInto(stream, Samples(), static_cast<u32>(size));
    } else if (reading.Depth() == 16) {
        ReadWords(stream, Words(), RowCount() * m_nWidth);
    } else {
        RawRows rows(stream, rowSize);
        ReadPlanes(reading, rows);
    }
    return reading.IsGood();
}

bool PsdImage::ReadPackedComposite(PsdReading& reading) {
    PackedCounts counts;
    if (!counts.Read(reading, RowCount())) return false;
    const u64 rowSize = SampleRowSize(reading.Depth(), m_nWidth);
    if (!CanExpandTo(reading, counts, rowSize)) return false;
    if (!AllocatePlanes()) return reading.RefuseForMemory({PlanesSize(), LargeBlock::Left()});
    PackedRows rows(reading, rowSize, counts);
    const u64 read = ReadPlanes(reading, rows);
    if (read == counts.RowCount()) return reading.IsGood();
    reading.EnterChannel(Place::CompositeRow, static_cast<u32>(read / m_nHeight));
    reading.EnterRow(Place::CompositeRow, static_cast<u32>(read % m_nHeight));
    return reading.Refuse(Rule::PsdPackedRow, counts.RowPosition(read), counts.At(read));
}

// Returns how many rows came out right; the first that did not ends it.
u64 PsdImage::ReadPlanes(PsdReading& reading, RowSource& rows) {
    const RowShape shape = {m_nHeight, m_nWidth, SampleRowSize(reading.Depth(), m_nWidth)};
    const u64 stride = m_nWidth * SampleSize();
    for (u32 channel = 0; channel < m_nChannels; ++channel) {
        const PutRow put = PutOf(reading.Depth(), channel < PsdColourCount(m_nMode));
        const u64 before = u64{channel} * m_nHeight;
        const u64 read = ReadRows(rows, put, shape, Samples() + before * stride, stride);
        if (read < m_nHeight) return before + read;
    }
    return RowCount();
}

bool PsdImage::HasMergedPicture() const {
    for (const auto& resource : m_Resources) {
        const auto* const data = dynamic_cast<const PsdRawResourceData*>(resource->m_pData.get());
        if (resource->m_nId == PSD_RESOURCE_VERSION_INFO && data && data->m_nSize > MERGED_PICTURE_AT)
            return data->m_pBytes.Data()[MERGED_PICTURE_AT] != 0;
    }
    return true;
}

bool PsdImage::ReadDocument(PsdReading& reading) {
    LengthField layersAndMasks;
    return ReadHeader(reading) && ReadColourModeData(reading) && ReadResources(reading) &&
           ReadLayersAndMasks(reading, layersAndMasks) && ReadComposite(reading, layersAndMasks);
}

bool PsdImage::LoadPsd(ByteStream* pStream, const ReadingRules& rules) {
    Clear();
    m_finding = Finding();
    m_passedOver = PassedOver();
    PsdReading reading(*pStream, rules, m_finding, m_passedOver);
    try {
        if (!ReadDocument(reading)) return false;
        if (!HasMergedPicture()) m_passedOver.Add(Passed::NoMergedPicture);
        return true;
    } catch (const std::bad_alloc& exception) {
        return reading.RefuseForMemory(ShortageOf(exception));
    }
}
