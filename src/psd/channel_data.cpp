#include "base/checked_size.h"
#include "base/wrapping.h"
#include "psd/compression.h"
#include "psd/pack_bits.h"
#include "psd/psd_layer.h"
#include "psd/psd_reading.h"
#include "psd/row_source.h"
#include "psd/sample_rows.h"
#include "psd/zip_rows.h"

#include <algorithm>
#include <new>

namespace {

constexpr u32 EDGE_SIZE = 4;  // bytes of a rectangle's edge

// The mode's colours are light; masks and transparency are not.
PutRow PutOf(u32 nDepth, i32 nId) {
    switch (nDepth) {
        case 16:
            return PutHighBytes;
        case 32:
            return nId >= 0 ? PutLinearLight : PutFloats;
        default:
            return PutBytes;
    }
}

}  // namespace

void PsdLayerChannel::AllocatePlane(u32 nRows, u32 nColumns) {
    m_rowPointers = LargeBlock::Allocate(SizeProduct(nRows, sizeof(u8*)));
    m_samples = LargeBlock::Allocate(SizeProduct(nRows, nColumns));
    m_ppPlane = reinterpret_cast<u8**>(m_rowPointers.Data());
    for (u64 row = 0; row < nRows; ++row) m_ppPlane[row] = m_samples.Data() + row * nColumns;
}

void PsdLayerChannel::FreePlane() {
    m_ppPlane = nullptr;
    m_rowPointers = LargeBlock();
    m_samples = LargeBlock();
}

bool PsdLayerChannel::ReadChannelData(PsdReading& reading, u32 nRows, u32 nColumns) {
    try {
        return ReadImageData(reading, nRows, nColumns);
    } catch (const std::bad_alloc& exception) {
        FreePlane();
        return reading.RefuseForMemory(ShortageOf(exception));
    }
}

bool PsdLayerChannel::ReadImageData(PsdReading& reading, u32 nRows, u32 nColumns) {
    FreePlane();
    ByteStream& stream = reading.Stream();
    const u32 start = stream.GetPosition();
    const u32 end = start + m_nLength;
    if (!reading.MayRead(PSD_COMPRESSION_SIZE)) return false;
    const i32 compression = ReadI16(stream);
    if (!reading.IsGood()) return false;
    switch (compression) {
        case PSD_RAW:
            return ReadRawData(reading, nRows, nColumns, end);
        case PSD_PACK_BITS:
            return ReadPackedData(reading, nRows, nColumns, end);
        case PSD_ZIP:
        case PSD_ZIP_PREDICTED:
            if (reading.Allows(reading.Rules().bZip, Passed::Zip))
                return ReadZipData(reading, nRows, nColumns, end, compression == PSD_ZIP_PREDICTED);
            return reading.Refuse(Rule::PsdZip, start, compression);
        default:
            return reading.Refuse(Rule::PsdChannelCompression, start, compression);
    }
}

// Whether the data, of which nHeld bytes are left, is as long as its rows take.
bool PsdLayerChannel::HasLength(PsdReading& reading, Rule rule, u32 nHeld, u64 nSize) {
    if (nHeld == nSize) return true;
    if (nHeld > nSize && reading.Allows(reading.Rules().bLooseRows, Passed::LooseRows)) return true;
    const u32 taken = WrappingDifference(m_nLength, nHeld);
    return reading.Refuse(rule, m_nLengthAt, m_nLength, static_cast<i64>(taken + nSize));
}

bool PsdLayerChannel::ReadRawData(PsdReading& reading, u32 nRows, u32 nColumns, u32 nEnd) {
    ByteStream& stream = reading.Stream();
    const u64 rowSize = SampleRowSize(reading.LayerDepth(), nColumns);
    const u64 size = SizeProduct(nRows, rowSize);
    const u32 held = WrappingDifference(nEnd, stream.GetPosition());
    if (!HasLength(reading, Rule::PsdRawLength, held, size)) return false;
    if (!reading.Require(size)) return false;
    AllocatePlane(nRows, nColumns);
    if (rowSize == nColumns) {
        ReadInto(stream, m_samples.Data(), static_cast<u32>(size));
        return reading.IsGood();
    }
    RawRows rows(stream, rowSize);
    ReadPlane(reading, rows, nRows, nColumns);
    return reading.IsGood();
}

bool PsdLayerChannel::ReadPackedData(PsdReading& reading, u32 nRows, u32 nColumns, u32 nEnd) {
    ByteStream& stream = reading.Stream();
    PackedCounts counts;
    if (!counts.Read(reading, nRows)) return false;
    const u32 held = WrappingDifference(nEnd, stream.GetPosition());
    if (!HasLength(reading, Rule::PsdPackedLength, held, counts.Sum())) return false;
    const u64 rowSize = SampleRowSize(reading.LayerDepth(), nColumns);
    if (!CanExpandTo(reading, counts, rowSize)) return false;
    AllocatePlane(nRows, nColumns);
    PackedRows rows(reading, rowSize, counts);
    const u64 read = ReadPlane(reading, rows, nRows, nColumns);
    if (read == nRows) return reading.IsGood();
    reading.EnterRow(Place::ChannelRow, static_cast<u32>(read));
    return reading.Refuse(Rule::PsdPackedRow, counts.RowPosition(read), counts.At(read));
}

bool PsdLayerChannel::ReadZipData(PsdReading& reading, u32 nRows, u32 nColumns, u32 nEnd, bool bPredicted) {
    ByteStream& stream = reading.Stream();
    const u32 depth = reading.LayerDepth();
    const u32 start = stream.GetPosition();
    const u32 held = nEnd - start;
    const u64 size = SizeProduct(nRows, SampleRowSize(depth, nColumns));
    if (size > u64{held} * ZIP_EXPANSION) return reading.Refuse(Rule::PsdZip, start);
    LargeBlock::Require(reading.InVain() + SizeProduct(nRows, nColumns));
    AllocatePlane(nRows, nColumns);
    ZipRows rows(stream, held, depth, nColumns, bPredicted);
    const u64 read = ReadPlane(reading, rows, nRows, nColumns);
    if (read == nRows) return true;
    reading.AddInVain(SizeProduct(read + 1, nColumns));
    return reading.Refuse(Rule::PsdZip, start);
}

u64 PsdLayerChannel::ReadPlane(PsdReading& reading, RowSource& rows, u32 nRows, u32 nColumns) {
    const u32 depth = reading.LayerDepth();
    return ReadRows(rows, PutOf(depth, m_nId), {nRows, nColumns, SampleRowSize(depth, nColumns)},
                    m_samples.Data(), nColumns);
}

// Reads a channel of that size, or skips it where the size is that of nothing.
bool PsdLayer::ReadChannel(PsdReading& reading, PsdLayerChannel& channel) {
    const ReadingRules& rules = reading.Rules();
    const PsdSize size = SizeOf(channel);
    const bool isMask = IsMask(channel);
    if (size.IsEmpty() && (isMask ? rules.bEmptyMasks : rules.bEmptyLayers)) {
        if (isMask && !Size().IsEmpty()) reading.PassOver(Passed::EmptyMasks);
        return true;
    }
    if (isMask) {
        reading.Enter(Place::LayerMask);
        if (!CheckSides(reading, size, m_nMaskAt)) return false;
        reading.Enter(Place::Channel);
    }
    return channel.ReadChannelData(reading, size.nRows, size.nColumns);
}

bool PsdLayer::CheckSides(PsdReading& reading, const PsdSize& size, u32 nRectAt) {
    const u32 longest = reading.LongestSide();
    const auto isSide = [&](u32 nLength, Rule rule, u32 nPosition) {
        const i32 distance = static_cast<i32>(nLength);  // negative for a rectangle turned inside out
        return (nLength >= 1 && nLength <= longest) || reading.Refuse(rule, nPosition, distance, longest);
    };
    return isSide(size.nRows, Rule::PsdRows, nRectAt) &&
           isSide(size.nColumns, Rule::PsdColumns, nRectAt + EDGE_SIZE);
}

bool PsdLayer::ReadChannelImages(PsdReading& reading) {
    const ReadingRules& rules = reading.Rules();
    reading.Enter(Place::Layer);
    const bool passedOver = Size().IsEmpty() && reading.Allows(rules.bEmptyLayers, Passed::EmptyLayers);
    if (!passedOver && !CheckSides(reading, Size(), m_nRectAt)) return false;
    for (u32 i = 0; i < m_Channels.GetCount(); ++i) {
        PsdLayerChannel& channel = *m_Channels.GetAt(i);
        reading.EnterChannel(Place::Channel, i);
        PsdPart part(reading, reading.Stream().GetPosition(), channel.m_nLength);
        const bool read = (part.Fits() || reading.RefuseShort()) && ReadChannel(reading, channel);
        if (!read) {
            if (!reading.DoesWithout(rules.bBrokenParts, Passed::BrokenChannels)) return false;
            channel.FreePlane();
        }
        part.Leave();
    }
    return reading.IsGood();
}

PsdSize PsdLayer::SizeOf(const PsdLayerChannel& channel) const {
    if (channel.m_nId == PSD_CHANNEL_USER_MASK && m_bHasMask)
        return SizeBetween(m_nMaskTop, m_nMaskLeft, m_nMaskBottom, m_nMaskRight);
    if (channel.m_nId == PSD_CHANNEL_REAL_USER_MASK && m_bHasRealMask) {
        const auto [top, left, bottom, right] = m_RealMask;
        return SizeBetween(top, left, bottom, right);
    }
    return Size();
}

PsdSize PsdLayer::Size() const {
    return SizeBetween(m_nTop, m_nLeft, m_nBottom, m_nRight);
}

bool PsdLayer::IsMask(const PsdLayerChannel& channel) const {
    return (channel.m_nId == PSD_CHANNEL_USER_MASK && m_bHasMask) ||
           (channel.m_nId == PSD_CHANNEL_REAL_USER_MASK && m_bHasRealMask);
}
