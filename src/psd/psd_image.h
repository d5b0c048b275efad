// A Photoshop document in memory: header, palette, image resources, layers, global mask records
// and the composite planes. It owns everything that it points to.
#pragma once

#include "base/large_block.h"
#include "psd/psd_layer.h"
#include "psd/psd_object.h"
#include "psd/psd_resource.h"
#include "reading/finding.h"
#include "reading/passed_over.h"
#include "reading/reading_rules.h"

class ByteStream;
class PsdReading;
class RowSource;
struct LengthField;

constexpr u32 PSD_BITMAP = 0;
constexpr u32 PSD_GREYSCALE = 1;
constexpr u32 PSD_INDEXED = 2;
constexpr u32 PSD_RGB = 3;
constexpr u32 PSD_CMYK = 4;
constexpr u32 PSD_MULTICHANNEL = 7;
constexpr u32 PSD_DUOTONE = 8;
constexpr u32 PSD_LAB = 9;

constexpr bool IsPsdMode(u32 nMode) {
    return nMode <= PSD_CMYK || (nMode >= PSD_MULTICHANNEL && nMode <= PSD_LAB);
}

// How many of a mode's channels are its colours; the others are alpha channels.
constexpr u32 PsdColourCount(u32 nMode) {
    switch (nMode) {
        case PSD_RGB:
        case PSD_LAB:
            return 3;
        case PSD_CMYK:
            return 4;
        case PSD_MULTICHANNEL:
            return 0;
        default:
            return 1;
    }
}

// Bits per sample.
constexpr bool IsPsdDepth(u32 nDepth) {
    return nDepth == 1 || nDepth == 8 || nDepth == 16;
}
constexpr u32 PSD_FLOAT_DEPTH = 32;  // where the rules let it; it becomes 8

constexpr i32 PSD_VERSION = 1;
constexpr i32 PSD_LARGE_VERSION = 2;  // likewise

constexpr u32 PSD_PALETTE_SIZE = 256;  // entries

class PsdImage {
  public:
    PsdImage() = default;
    PsdImage(const PsdImage&) = delete;
    PsdImage& operator=(const PsdImage&) = delete;
    ~PsdImage() = default;

    // Empties the image and reads a whole document from the stream's position on. When the document is
    // refused the answer is false, the stream stays where the failure was found, and the image keeps what was
    // read up to there until the next Clear. The stream is at most 4 GiB long, so a raw composite beyond that
    // is refused.
    bool LoadPsd(ByteStream* pStream, const ReadingRules& rules = STRICT);

    // The first rule that the last document was found to break.
    const Finding& GetFinding() const { return m_finding; }

    // What the rules passed over in it.
    const PassedOver& GetPassedOver() const { return m_passedOver; }

    // Frees everything but leaves the header's values and m_bMergedAlpha as they are.
    void Clear();

    // Makes planes, with undefined samples, for the header's values. False when memory cannot be had; there
    // are none then.
    bool AllocatePlanes();

    // Bytes that these take, with their tables.
    u64 PlanesSize() const;

    u32 m_nChannels = 0;  // of the composite
    u32 m_nHeight = 0;    // rows
    u32 m_nWidth = 0;     // columns
    u32 m_nDepth = 0;     // bits per sample: 1, 8 or 16
    u32 m_nMode = 0;      // PSD_BITMAP to PSD_LAB

    // Triplets of red, green and blue; null unless the mode is PSD_INDEXED.
    std::unique_ptr<u8[]> m_pPalette;

    PsdList<PsdResource> m_Resources;
    bool m_bMergedAlpha = false;  // the composite's first alpha channel is the merged layers' transparency
    PsdList<PsdLayer> m_Layers;
    PsdList<PsdGlobalMask> m_GlobalMasks;

    // A row table for each channel, null until planes are allocated. All samples stand in one block, channel
    // after channel and row after row. Depths of 1 (0 or 1) and 8 take a byte for each sample; rows of depth
    // 16 hold words in the machine's own order.
    u8*** m_pppPlanes = nullptr;

    // The row table of a channel of 16 bits a sample; null where there is none.
    const u16* const* GetWords(u32 nChannel) const;

  private:
    bool ReadDocument(PsdReading& reading);
    bool ReadHeader(PsdReading& reading);
    bool ReadVersion(PsdReading& reading);
    bool CheckHeader(PsdReading& reading, u32 nFieldsAt);
    bool ReadColourModeData(PsdReading& reading);
    bool ReadPalette(PsdReading& reading, const LengthField& length);
    bool ReadResources(PsdReading& reading);
    bool ReadLayersAndMasks(PsdReading& reading, LengthField& section);
    bool ReadLayerInformation(PsdReading& reading);
    bool ReadLayers(PsdReading& reading, const LengthField& section);
    bool ReadLayerRecords(PsdReading& reading, u32 nCount);
    bool DoWithoutLayers(PsdReading& reading);
    bool ReadGlobalMasks(PsdReading& reading);
    bool ReadWholeGlobalMasks(PsdReading& reading, const LengthField& section);
    bool ReadTaggedBlocks(PsdReading& reading, const LengthField& section);
    bool ReadComposite(PsdReading& reading, const LengthField& section);
    bool ReadCompositeData(PsdReading& reading, const LengthField& section);
    bool ReadRawComposite(PsdReading& reading);
    bool ReadPackedComposite(PsdReading& reading);
    u64 ReadPlanes(PsdReading& reading, RowSource& rows);
    bool HasMergedPicture() const;

    u64 RowCount() const { return u64{m_nChannels} * m_nHeight; }
    u64 SampleSize() const { return m_nDepth <= 8 ? 1 : 2; }  // bytes
    u8* Samples() const { return m_samples.Data(); }
    u16* Words() const { return reinterpret_cast<u16*>(m_samples.Data()); }
    void FreePlanes();

    LargeBlock m_planeTable;  // behind m_pppPlanes
    LargeBlock m_rowPointers;
    LargeBlock m_wordPointers;  // to the same rows, where a sample is a word
    LargeBlock m_samples;
    Finding m_finding;
    PassedOver m_passedOver;
};
