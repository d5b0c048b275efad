// An alpha picture: a header of its own, then pixel data laid out as in a BODY, which it is decoded as.
#pragma once

#include "chunks/body_chunk.h"

class AlphChunk final : public BodyChunk {
  public:
    static constexpr IffId ID = IffId("ALPH");
    AlphChunk() : BodyChunk(ID) {}
    void Transfer(IffArchive& archive) override;

    // From the chunk's own fields; no bitmap header has a say.
    bool ReadHeader() override;

    // The same under any rules.
    RowLayout LayoutUnder(const ReadingRules& rules, PassedOver& passedOver) const override;

    u16 m_nAlphaWidth = 0;
    u16 m_nAlphaHeight = 0;  // rows are counted by the picture's header, not by this
    u8 m_nAlphaPlanes = 0;
    u8 m_nAlphaCompression = 0;  // 0: raw rows; any other value: ByteRun1
};
