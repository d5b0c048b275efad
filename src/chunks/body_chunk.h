// The pixel data of a picture: interleaved bit-planes, raw or ByteRun1, kept as they stand in the file and
// decoded one row at a time.
//
// Rows follow from the top down. A row is one plane row for each plane, plane 0 first, of ceil(width / 8)
// bytes; it is not padded to an even length. A plane row holds one bit for each pixel, the leftmost in bit 7
// of its first byte, and plane p gives bit p of the pixel's value.
#pragma once

#include "base/large_block.h"
#include "iff/iff_chunk.h"
#include "reading/passed_over.h"

#include <memory>

class BmhdChunk;

// How a row stands in the unpacked data.
struct RowLayout {
    u32 nPlanes = 0;        // that make the values
    u32 nPlaneRows = 0;     // with those that are left out, the last ones
    u32 nPlaneRowSize = 0;  // bytes
    bool bChunky = false;   // one plane row with a byte for each pixel

    u64 Size() const { return u64{nPlaneRows} * nPlaneRowSize; }
};

class BodyChunk : public IffChunk {
  public:
    static constexpr IffId ID = IffId("BODY");
    BodyChunk() : BodyChunk(ID) {}
    void Transfer(IffArchive& archive) override;

    // Takes width, compression and plane count from the header in scope. False, and nothing changes, when
    // there is none.
    virtual bool ReadHeader();

    // How the rows of a body stand under the rules, which notes what they pass over.
    virtual RowLayout LayoutUnder(const ReadingRules& rules, PassedOver& passedOver) const;

    // Stands before the first row. False when there is no data or no header; no row can be decoded then.
    bool BeginRows(const ReadingRules& rules = STRICT);

    // The values of the next row, one for each pixel, in a buffer that the next call overwrites. Null when
    // the data ends before the row is complete. Of more than 32 planes the first 32 count; the others are
    // consumed.
    const u32* DecodeRow();

    // Frees what decoding needed.
    void EndRows();

    // Between BeginRows and EndRows: whether the data can fill that many rows at all, however it is packed.
    bool CanFillRows(u32 nRows) const;

    u32 m_nWidth = 0;  // pixels of a row
    u32 m_nCompression = 0;
    u32 m_nPlanes = 0;
    u32 m_nDataSize = 0;  // bytes
    LargeBlock m_pData;
    const u8* m_pCursor = nullptr;  // next unread byte of the data; null while no rows are decoded
    u32 m_nRemaining = 0;           // bytes from the cursor to the end of the data

  protected:
    explicit BodyChunk(IffId id) : IffChunk(id) {}

    // Rows as they stand strictly.
    RowLayout PlainLayout(u32 nWidth, u32 nPlanes) const;

  private:
    u64 UnpackedSize(const BmhdChunk& header) const;
    const u8* NextPlaneRows();

    // What decoding needs. A tree can hold very many bodies, of which few are ever decoded.
    struct Rows {
        RowLayout layout;
        std::unique_ptr<u32[]> pValues;   // of one row, one for each pixel
        std::unique_ptr<u8[]> pUnpacked;  // the plane rows of one row
    };
    std::unique_ptr<Rows> m_pRows;
};
