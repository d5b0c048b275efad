// Chunks beyond the standard ones: a transparency record, the level count of a mip-map chain, and a
// block-compressed picture.
#pragma once

#include "base/large_block.h"
#include "iff/iff_chunk.h"

inline constexpr IffId ID_MIPM("MIPM");

// 8 bytes in a FORM of type ILBM, kept and not interpreted.
class TranChunk final : public IffChunk {
  public:
    static constexpr IffId ID = IffId("TRAN");
    TranChunk() : IffChunk(ID) {}
    void Transfer(IffArchive& archive) override;

    u8 m_nByte = 0;
    u16 m_nFirst = 0;
    u16 m_nSecond = 0;
    IffRgb m_Colour;
};

// 2 bytes in a FORM of type MIPM. The levels are the LISTs of type ILBM beside that FORM, in file order.
class ContChunk final : public IffChunk {
  public:
    static constexpr IffId ID = IffId("CONT");
    ContChunk() : IffChunk(ID) {}
    void Transfer(IffArchive& archive) override;

    u8 m_nLevels = 0;
    u8 m_nByte = 0;  // not interpreted
};

// A block-compressed picture in a FORM of type ILBM: a header of 22 bytes, then as many bytes of blocks as it
// says. Fields that only have a number are kept and not interpreted.
class S3tcChunk final : public IffChunk {
  public:
    static constexpr IffId ID = IffId("S3TC");
    S3tcChunk() : IffChunk(ID) {}
    void Transfer(IffArchive& archive) override;

    u32 m_nValue = 0;
    IffId m_Code;  // how the blocks are compressed, "DXT1" for instance
    u16 m_nFirst = 0;
    u16 m_nSecond = 0;
    u16 m_nThird = 0;
    u16 m_nWidth = 0;     // pixels
    u16 m_nHeight = 0;    // rows
    u32 m_nDataSize = 0;  // bytes, of which the chunk may hold more
    LargeBlock m_pData;   // none where the size is 0
};
