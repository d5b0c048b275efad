// The layers of a Photoshop image with their channels and masks, and the global mask records.
#pragma once

#include "base/large_block.h"
#include "psd/psd_object.h"

#include <array>
#include <memory>

class PsdReading;

constexpr i32 PSD_CHANNEL_TRANSPARENCY = -1;
constexpr i32 PSD_CHANNEL_USER_MASK = -2;

// Between two edges. Unsigned, so that a rectangle turned inside out counts as too large.
constexpr u32 PsdDistance(i32 from, i32 to) {
    return static_cast<u32>(to) - static_cast<u32>(from);
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
    bool ReadChannelData(PsdReading& reading, u32 rows, u32 columns);

    i32 m_nId = 0;      // 0, 1, 2... the mode's colours in order, or one of PSD_CHANNEL_...
    u32 m_nLength = 0;  // bytes of image data in the file, its compression field included
    PsdBlendingRange m_SourceRange = PSD_DEFAULT_RANGE;
    PsdBlendingRange m_DestRange = PSD_DEFAULT_RANGE;

    // The row table of the plane, one byte a sample whatever the image's depth; null until it is decoded. Its
    // size is the layer's, or the mask's for PSD_CHANNEL_USER_MASK in a layer that has a mask.
    u8** m_ppPlane = nullptr;

  private:
    bool ReadImageData(PsdReading& reading, u32 rows, u32 columns);
    bool ReadRawData(PsdReading& reading, u32 rows, u32 columns, u32 end);
    bool ReadPackedData(PsdReading& reading, u32 rows, u32 columns, u32 end);
    void AllocatePlane(u32 rows, u32 columns);
    void FreePlane();

    u32 m_nLengthAt = 0;       // where m_nLength stands in the file
    LargeBlock m_rowPointers;  // behind m_ppPlane
    LargeBlock m_samples;
};

class PsdLayer : public PsdObject {
  public:
    // Reads everything but the channels' image data. False leaves the layer partly read, to be released.
    bool ReadLayerRecord(PsdReading& reading);

    // Reads the image data of every channel. A layer of no rows or no columns is refused, even one without
    // channels.
    bool ReadChannelImages(PsdReading& reading);

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
    PsdBlendingRange m_SourceRange = PSD_DEFAULT_RANGE;
    PsdBlendingRange m_DestRange = PSD_DEFAULT_RANGE;
    std::unique_ptr<char[]> m_pszName;  // bytes in no particular encoding; null before reading

  private:
    bool ReadChannelInfos(PsdReading& reading, u32 count);
    bool ReadBlendSettings(PsdReading& reading);
    bool ReadMask(PsdReading& reading);
    bool ReadAllBlendingRanges(PsdReading& reading);

    u32 m_nRectAt = 0;  // where the edges stand in the file, 4 bytes each, the top first
    u32 m_nMaskAt = 0;  // likewise, of the mask
};

class PsdGlobalMask : public PsdObject {
  public:
    bool ReadGlobalMask(PsdReading& reading);

    u32 m_nColourSpace = 0;
    std::array<u8, 8> m_Colour = {};  // four components of 16 bits, as in the file
    u32 m_nOpacity = 0;
    u32 m_nKind = 0;
};
