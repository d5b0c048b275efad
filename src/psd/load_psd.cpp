#include "base/checked_size.h"
#include "psd/channel_data.h"
#include "psd/field_reader.h"
#include "psd/psd_image.h"
#include "psd/psd_reading.h"

#include <cstdlib>
#include <new>

namespace {

constexpr u32 PALETTE_BYTES = 3 * PSD_PALETTE_SIZE;
constexpr u32 RECT_SIZE = 16;          // bytes of a layer's edges, which its count of channels follows
constexpr u32 LEAST_CHANNEL_SIZE = 3;  // bytes of image data: its compression and one sample

// Whether the parts of a section have ended with it.
bool EndsWith(PsdReading& reading, const LengthField& section) {
    const u32 position = reading.Stream().GetPosition();
    if (position == section.End()) return reading.IsGood();
    return reading.Refuse(Rule::PsdSectionLength, section.nAt, section.nLength, position - section.Start());
}

// What reads like a compression where "8BIM" or "8B64" begins a block.
constexpr i32 TAGGED_BLOCK = '8' << 8 | 'B';

}  // namespace

bool PsdImage::ReadHeader(PsdReading& reading) {
    ByteStream& stream = reading.Stream();
    if (!reading.ReadSignature("8BPS", Rule::PsdSignature)) return false;
    reading.Enter(Place::Header);
    const u32 versionAt = stream.GetPosition();
    const i32 version = ReadI16(stream);
    if (version != PSD_VERSION) return reading.Refuse(Rule::PsdVersion, versionAt, version, PSD_VERSION);
    Skip(stream, 6);
    const u32 fieldsAt = stream.GetPosition();
    const i32 channels = ReadI16(stream);
    m_nChannels = static_cast<u32>(channels);
    m_nHeight = ReadU32(stream);
    m_nWidth = ReadU32(stream);
    const i32 depth = ReadI16(stream);
    m_nDepth = static_cast<u32>(depth);
    const i32 mode = ReadI16(stream);
    m_nMode = static_cast<u32>(mode);
    if (!reading.IsGood()) return false;
    // Compared unsigned, so that negative fields count as too large.
    const u32 most = reading.Rules().nMostChannels;
    if (m_nChannels == 0 || m_nChannels > most)
        return reading.Refuse(Rule::PsdChannelCount, fieldsAt, channels, most);
    const u32 longest = reading.Rules().nLongestSide;
    if (m_nHeight == 0 || m_nHeight > longest)
        return reading.Refuse(Rule::PsdRows, fieldsAt + 2, m_nHeight, longest);
    if (m_nWidth == 0 || m_nWidth > longest)
        return reading.Refuse(Rule::PsdColumns, fieldsAt + 6, m_nWidth, longest);
    if (!IsPsdDepth(m_nDepth)) return reading.Refuse(Rule::PsdDepth, fieldsAt + 10, depth);
    if (!IsPsdMode(m_nMode)) return reading.Refuse(Rule::PsdColourMode, fieldsAt + 12, mode);
    return true;
}

bool PsdImage::ReadColourModeData(PsdReading& reading) {
    reading.Enter(Place::ColourModeData);
    const LengthField length = ReadLength(reading.Stream());
    if (m_nMode == PSD_INDEXED) return ReadPalette(reading, length);
    return reading.SkipWithin(length.nLength) && reading.IsGood();
}

bool PsdImage::ReadPalette(PsdReading& reading, const LengthField& length) {
    ByteStream& stream = reading.Stream();
    if (length.nLength != PALETTE_BYTES)
        return reading.Refuse(Rule::PsdPaletteLength, length.nAt, length.nLength, PALETTE_BYTES);
    if (!Holds(stream, length.nLength)) return reading.RefuseShort();
    m_pPalette = std::make_unique<u8[]>(PALETTE_BYTES);
    // All reds stand first in the file, then all greens, then all blues.
    for (u32 component = 0; component < 3; ++component)
        for (u32 entry = 0; entry < PSD_PALETTE_SIZE; ++entry)
            stream.GetByte(m_pPalette[entry * 3 + component]);
    return reading.IsGood();
}

bool PsdImage::ReadResources(PsdReading& reading) {
    ByteStream& stream = reading.Stream();
    reading.Enter(Place::Resources);
    const LengthField section = ReadLength(stream);
    if (!reading.IsGood()) return false;
    if (section.nLength == 0) return true;
    do {
        reading.EnterNth(Place::Resource, m_Resources.GetCount());
        auto resource = MakePsdObject<PsdResource>();
        if (!resource->ReadResourceBlock(reading)) return false;
        m_Resources.Append(std::move(resource));
    } while (stream.GetPosition() < section.End());
    reading.Enter(Place::Resources);
    return EndsWith(reading, section);
}

// The section's length bounds nothing: the composite stands where its last part ends.
bool PsdImage::ReadLayersAndMasks(PsdReading& reading, LengthField& section) {
    m_bMergedAlpha = false;
    reading.Enter(Place::LayersAndMasks);
    section = ReadLength(reading.Stream());
    if (!reading.IsGood()) return false;
    if (section.nLength == 0) return true;
    return ReadLayers(reading) && ReadGlobalMasks(reading);
}

bool PsdImage::ReadLayers(PsdReading& reading) {
    ByteStream& stream = reading.Stream();
    reading.Enter(Place::Layers);
    const LengthField section = ReadLength(stream);
    if (!reading.IsGood()) return false;
    if (section.nLength == 0) return true;
    const i32 count = ReadI16(stream);
    m_bMergedAlpha = count < 0;
    if (!ReadLayerRecords(reading, static_cast<u32>(std::abs(count)))) return false;
    for (u32 i = 0; i < m_Layers.GetCount(); ++i) {
        reading.EnterNth(Place::Layer, i);
        if (!m_Layers.GetAt(i)->ReadChannelImages(reading)) return false;
    }
    reading.Enter(Place::Layers);
    const u32 position = stream.GetPosition();
    const u32 padding = section.End() - position;
    const u32 most = reading.Rules().nMostLayerPadding;
    if (padding > most && position < section.End())
        return reading.Refuse(Rule::PsdLayersPadded, section.nAt, padding, most);
    if (padding > most) return EndsWith(reading, section);
    Skip(stream, padding);
    return reading.IsGood();
}

bool PsdImage::ReadLayerRecords(PsdReading& reading, u32 count) {
    // Lengths that lead backwards can lay many records over the same bytes, but the channels' image data,
    // read after them from front to back, cannot overlap: what it takes at the least bounds the channels
    // made.
    ByteStream& stream = reading.Stream();
    u64 channels = 0;
    for (u32 i = 0; i < count; ++i) {
        reading.EnterNth(Place::LayerRecord, i);
        const u32 recordAt = stream.GetPosition();
        auto layer = MakePsdObject<PsdLayer>();
        if (!layer->ReadLayerRecord(reading)) return false;
        channels += layer->m_Channels.GetCount();
        const u64 least = channels * LEAST_CHANNEL_SIZE;
        const u32 held = stream.GetDataLength();
        if (least > held) {
            reading.Refuse(Rule::PsdChannelsBeyondData, recordAt + RECT_SIZE, static_cast<i64>(least), held);
            return reading.RefuseShort();
        }
        m_Layers.Append(std::move(layer));
    }
    return reading.IsGood();
}

bool PsdImage::ReadGlobalMasks(PsdReading& reading) {
    ByteStream& stream = reading.Stream();
    reading.Enter(Place::GlobalMasks);
    const LengthField section = ReadLength(stream);
    if (!reading.IsGood()) return false;
    if (section.nLength == 0) return true;
    do {
        auto mask = MakePsdObject<PsdGlobalMask>();
        if (!mask->ReadGlobalMask(reading)) return false;
        m_GlobalMasks.Append(std::move(mask));
    } while (stream.GetPosition() < section.End());
    return EndsWith(reading, section);
}

bool PsdImage::ReadComposite(PsdReading& reading, const LengthField& section) {
    ByteStream& stream = reading.Stream();
    reading.Enter(Place::Composite);
    const u32 compressionAt = stream.GetPosition();
    const i32 compression = ReadI16(stream);
    if (!reading.IsGood()) return false;
    if (compression == PSD_RAW) return ReadRawComposite(reading);
    if (compression == PSD_PACK_BITS && m_nDepth == 8) return ReadPackedComposite(reading);
    if (compression == PSD_ZIP || compression == PSD_ZIP_PREDICTED)
        return reading.Refuse(Rule::PsdZip, compressionAt, compression);
    if (compression == TAGGED_BLOCK && compressionAt < section.End())
        return reading.Refuse(Rule::PsdTaggedBlocks, compressionAt);
    return reading.Refuse(Rule::PsdCompositeCompression, compressionAt, compression, m_nDepth);
}

bool PsdImage::ReadRawComposite(PsdReading& reading) {
    ByteStream& stream = reading.Stream();
    const u64 rowSize = m_nDepth == 1 ? BitRowSize(m_nWidth) : m_nWidth * SampleSize();
    const u64 size = SizeProduct(RowCount(), rowSize);
    if (!Holds(stream, size)) return reading.RefuseShort();
    if (!AllocatePlanes()) return reading.RefuseForMemory();
    if (m_nDepth == 1)
        ReadBitRows(stream, Samples(), RowCount(), m_nWidth);
    else if (m_nDepth == 16)
        ReadWords(stream, Words(), RowCount() * m_nWidth);
    else
        ReadInto(stream, Samples(), static_cast<u32>(size));
    return reading.IsGood();
}

bool PsdImage::ReadPackedComposite(PsdReading& reading) {
    PackedCounts counts;
    if (!counts.Read(reading, RowCount())) return false;
    if (!CanExpandTo(reading, counts, m_nWidth)) return false;
    if (!AllocatePlanes()) return reading.RefuseForMemory();
    const u64 read = ReadPackedRows(reading.Stream(), Samples(), m_nWidth, counts);
    if (read == counts.RowCount()) return reading.IsGood();
    reading.EnterChannel(Place::CompositeRow, static_cast<u32>(read / m_nHeight));
    reading.EnterRow(Place::CompositeRow, static_cast<u32>(read % m_nHeight));
    return reading.RefusePacked(Rule::PsdPackedRow, counts.RowPosition(read), counts.At(read));
}

bool PsdImage::ReadDocument(PsdReading& reading) {
    LengthField layersAndMasks;
    return ReadHeader(reading) && ReadColourModeData(reading) && ReadResources(reading) &&
           ReadLayersAndMasks(reading, layersAndMasks) && ReadComposite(reading, layersAndMasks);
}

bool PsdImage::LoadPsd(ByteStream* stream, const ReadingRules& rules) {
    Clear();
    m_finding = Finding();
    PsdReading reading(*stream, rules, m_finding);
    try {
        return ReadDocument(reading);
    } catch (const std::bad_alloc&) {
        return reading.RefuseForMemory();
    }
}
