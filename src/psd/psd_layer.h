// The layers of a Photoshop image with their channels and masks, and the global mask records.
#pragma once

#include "base/large_block.h"
#include "base/wrapping.h"
#include "psd/psd_object.h"
#include "reading/finding.h"

#include <array>
#include <memory>

class PsdReading;
class RowSource;
struct LengthField;

constexpr i32 PSD_CHANNEL_TRANSPARENCY = -1;
constexpr i32 PSD_CHANNEL_USER_MASK = -2;
constexpr i32 PSD_CHANNEL_REAL_USER_MASK = -3;  // beside the one that goes with a vector mask

// Between two edges. Unsigned, so that a rectangle turned inside out counts as too large.
constexpr u32 PsdDistance(i32 nFrom, i32 nTo) {
    return WrappingDifference(static_cast<u32>(nTo), static_cast<u32>(nFrom));
}

// Of a layer or a mask.
struct PsdSize {
    u32 nRows = 0;
    u32 nColumns = 0;

    // Without rows or columns, or turned inside out.
    constexpr bool IsEmpty() const { return IsNoSide(nRows) || IsNoSide(nColumns); }

  private:
    static constexpr bool IsNoSide(u32 nSide) { return static_cast<i32>(nSide) <= 0; }
};

constexpr PsdSize SizeBetween(i32 nTop, i32 nLeft, i32 nBottom, i32 nRight) {
    return {PsdDistance(nTop, nBottom), PsdDistance(nLeft, nRight)};
}

using PsdBlendingRange = std::array<u8, 4>;  // as in the file

constexpr PsdBlendingRange PSD_DEFAULT_RANGE = {0, 0, 255, 255};

class PsdLayerChannel : public PsdObject {
  public:
    // Reads m_nId and m_nLength; false for a length that this reader does not take.
    bool ReadChannelInfo(PsdReading& reading);

    bool ReadBlendingRanges(PsdReading& reading);
    void SetDefaultBlendingRanges();

    // Reads the channel's image data into a plane of that size. A plane that an earlier call left is freed
    // first; one that a refused call leaves is partly filled. There is none where memory cannot be had.
    bool ReadChannelData(PsdReading& reading, u32 nRows, u32 nColumns);

    void FreePlane();

    i32 m_nId = 0;      // 0, 1, 2... the mode's colours in order, or one of PSD_CHANNEL_...
    u32 m_nLength = 0;  // bytes of image data in the file, its compression field included
    PsdBlendingRange m_SourceRange = PSD_DEFAULT_RANGE;
    PsdBlendingRange m_DestRange = PSD_DEFAULT_RANGE;

    // The row table of the plane, one byte a sample whatever the image's depth; null until it is decoded. Its
    // size is what the layer's SizeOf says.
    u8** m_ppPlane = nullptr;

  private:
    bool ReadImageData(PsdReading& reading, u32 nRows, u32 nColumns);
    bool ReadRawData(PsdReading& reading, u32 nRows, u32 nColumns, u32 nEnd);
    bool ReadPackedData(PsdReading& reading, u32 nRows, u32 nColumns, u32 nEnd);
    bool ReadZipData(PsdReading& reading, u32 nRows, u32 nColumns, u32 nEnd, bool bPredicted);
    bool HasLength(PsdReading& reading, Rule rule, u32 nHeld, u64 nSize);
    u64 ReadPlane(PsdReading& reading, RowSource& rows, u32 nRows, u32 nColumns);
    void AllocatePlane(u32 nRows, u32 nColumns);

    u32 m_nLengthAt = 0;       // where m_nLength stands in the file
    LargeBlock m_rowPointers;  // behind m_ppPlane
    LargeBlock m_samples;
};

class PsdLayer : public PsdObject {
  public:
    // Reads everything but the channels' image data. False leaves the layer partly read, to be released.
    bool ReadLayerRecord(PsdReading& reading);

    // Reads the image data of every channel. Strictly a layer of no rows or no columns is refused, even one
    // without channels.
    bool ReadChannelImages(PsdReading& reading);

    PsdSize Size() const;

    // Of a channel of this layer: the layer's, or that of the mask that it is.
    PsdSize SizeOf(const PsdLayerChannel& channel) const;

    i32 m_nTop = 0;  // edges in rows and columns of the image; they may lie outside it
    i32 m_nLeft = 0;
    i32 m_nBottom = 0;  // exclusive, as is m_nRight
    i32 m_nRight = 0;
    PsdList<PsdLayerChannel> m_Channels;
    u32 m_BlendKey = 0;  // four characters, held in file order
    u32 m_nOpacity = 0;  // 0 to 255
    i32 m_nClipping = 0;
    u32 m_nFlags = 0;
    bool m_bHasMask = false;  // the fields of the mask mean nothing without it
    i32 m_nMaskTop = 0;
    i32 m_nMaskLeft = 0;
    i32 m_nMaskBottom = 0;
    i32 m_nMaskRight = 0;
    u32 m_nMaskDefaultColour = 0;
    u32 m_nMaskFlags = 0;
    bool m_bHasRealMask = false;         // never where it is read strictly
    std::array<i32, 4> m_RealMask = {};  // top, left, bottom, right
    PsdBlendingRange m_SourceRange = PSD_DEFAULT_RANGE;
    PsdBlendingRange m_DestRange = PSD_DEFAULT_RANGE;
    std::unique_ptr<char[]> m_pszName;  // bytes in no particular encoding; null before reading

  private:
    bool ReadChannelInfos(PsdReading& reading, u32 nCount);
    bool ReadBlendSettings(PsdReading& reading);
    bool ReadMask(PsdReading& reading);
    void ReadRealMask(PsdReading& reading, u64 nMaskSize);
    bool ReadAllBlendingRanges(PsdReading& reading);
    bool ReadExtraData(PsdReading& reading, const LengthField& length);
    void ReadUnicodeName(PsdReading& reading);
    bool IsMask(const PsdLayerChannel& channel) const;
    bool ReadChannel(PsdReading& reading, PsdLayerChannel& channel);
    bool CheckSides(PsdReading& reading, const PsdSize& size, u32 nRectAt);

    u32 m_nRectAt = 0;  // where the edges stand in the file, 4 bytes each, the top first
    u32 m_nMaskAt = 0;  // likewise, of the mask
};

constexpr u32 PSD_GLOBAL_MASK_SIZE = 14;  // bytes

class PsdGlobalMask : public PsdObject {
  public:
    bool ReadGlobalMask(PsdReading& reading);

    u32 m_nColourSpace = 0;
    std::array<u8, 8> m_Colour = {};  // four components of 16 bits, as in the file
    u32 m_nOpacity = 0;
    u32 m_nKind = 0;
};
