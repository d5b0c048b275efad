// The layers of a Photoshop image with their channels and masks, and the global mask records.
#pragma once

#include "base/large_block.h"
#include "psd/psd_object.h"

#include <array>
#include <memory>

class ByteStream;

constexpr i32 PSD_CHANNEL_TRANSPARENCY = -1;
constexpr i32 PSD_CHANNEL_USER_MASK = -2;

constexpr u32 PSD_LONGEST_SIDE = 30000;  // rows or columns of an image, a layer or a mask

constexpr bool IsPsdSide(u32 length) {
    return length >= 1 && length <= PSD_LONGEST_SIDE;
}

// Between two edges. Unsigned, so that a rectangle turned inside out counts as too large.
constexpr u32 PsdDistance(i32 from, i32 to) {
    return static_cast<u32>(to) - static_cast<u32>(from);
}

using PsdBlendingRange = std::array<u8, 4>;  // as in the file

constexpr PsdBlendingRange PSD_DEFAULT_RANGE = {0, 0, 255, 255};

class PsdLayerChannel : public PsdObject {
  public:
    // Reads m_nId and m_nLength; false for a length that no version 1 document has.
    bool ReadChannelInfo(ByteStream& stream);

    bool ReadBlendingRanges(ByteStream& stream);
    void SetDefaultBlendingRanges();

    // Reads the channel's image data into a plane of that size. A plane that an earlier call left is freed
    // first; one that a refused call leaves is partly filled.
    bool ReadChannelData(ByteStream& stream, u32 rows, u32 columns);

    i32 m_nId = 0;      // 0, 1, 2... the mode's colours in order, or one of PSD_CHANNEL_...
    u32 m_nLength = 0;  // bytes of image data in the file, its compression field included
    PsdBlendingRange m_SourceRange = PSD_DEFAULT_RANGE;
    PsdBlendingRange m_DestRange = PSD_DEFAULT_RANGE;

    // The row table of the plane, one byte a sample whatever the image's depth; null until it is decoded. Its
    // size is the layer's, or the mask's for PSD_CHANNEL_USER_MASK in a layer that has a mask.
    u8** m_ppPlane = nullptr;

  private:
    bool AllocatePlane(u32 rows, u32 columns);

    LargeBlock m_rowPointers;  // behind m_ppPlane
    LargeBlock m_samples;
};

class PsdLayer : public PsdObject {
  public:
    // Reads everything but the channels' image data. False leaves the layer partly read, to be released.
    bool ReadLayerRecord(ByteStream& stream);

    // Reads the image data of every channel. A layer of no rows or no columns is refused, even one without
    // channels.
    bool ReadChannelImages(ByteStream& stream);

    // Bytes that the image data of its channels takes at the least.
    u64 LeastImageDataSize() const;

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
    bool ReadChannelInfos(ByteStream& stream, u32 count);
    bool ReadBlendSettings(ByteStream& stream);
    bool ReadMask(ByteStream& stream);
    bool ReadAllBlendingRanges(ByteStream& stream);
};

class PsdGlobalMask : public PsdObject {
  public:
    bool ReadGlobalMask(ByteStream& stream);

    u32 m_nColourSpace = 0;
    std::array<u8, 8> m_Colour = {};  // four components of 16 bits, as in the file
    u32 m_nOpacity = 0;
    u32 m_nKind = 0;
};
