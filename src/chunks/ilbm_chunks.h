// The small chunks of a picture in a FORM of type ILBM: bitmap header, colour map, hot spot.
#pragma once

#include "base/large_block.h"
#include "iff/iff_chunk.h"

inline constexpr IffId ID_ILBM("ILBM");

// Bitmap header, 20 bytes, fields in file order.
class BmhdChunk final : public IffChunk {
  public:
    static constexpr IffId ID = IffId("BMHD");
    static constexpr u8 HAS_MASK = 1;  // the value of m_nMasking
    BmhdChunk() : IffChunk(ID) {}
    void Transfer(IffArchive& archive) override;

    u16 m_nWidth = 0;   // pixels
    u16 m_nHeight = 0;  // rows
    u16 m_nX = 0;
    u16 m_nY = 0;
    u8 m_nPlanes = 0;       // bit-planes of a row
    u8 m_nMasking = 0;      // strictly no mask plane is ever read from the body, whatever this says
    u8 m_nCompression = 0;  // 0: raw rows; any other value: ByteRun1
    u8 m_nPad = 0;
    u16 m_nTransparentColour = 0;
    u8 m_nXAspect = 0;
    u8 m_nYAspect = 0;
    u16 m_nPageWidth = 0;
    u16 m_nPageHeight = 0;
};

// Colour map: entries of red, green and blue, as many as fit the chunk; a remainder of it is passed over.
class CmapChunk final : public IffChunk {
  public:
    static constexpr IffId ID = IffId("CMAP");
    CmapChunk() : IffChunk(ID) {}
    void Transfer(IffArchive& archive) override;

    const IffRgb* Entries() const { return reinterpret_cast<const IffRgb*>(m_pEntries.Data()); }

    u32 m_nEntries = 0;
    LargeBlock m_pEntries;  // three bytes for each entry
};

// Hot spot, 4 bytes.
class GrabChunk final : public IffChunk {
  public:
    static constexpr IffId ID = IffId("GRAB");
    GrabChunk() : IffChunk(ID) {}
    void Transfer(IffArchive& archive) override;

    u16 m_nX = 0;
    u16 m_nY = 0;
};
