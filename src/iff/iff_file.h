// A whole IFF file: the outermost chunk and, through it, the tree. What follows the outermost chunk in the
// file is passed over. Sizes are signed 32 bits at heart: a file of 2 GiB or more is refused.
#pragma once

#include "iff/iff_chunk.h"
#include "reading/finding.h"
#include "reading/passed_over.h"

class ByteStream;

class IffFile : public IffObject {
  public:
    // Reads a file from the stream's position on, in place of what was held before. After a refusal a part of
    // the tree may be there.
    bool Load(ByteStream* pStream, const ReadingRules& rules = STRICT);

    // The first rule that the last file was found to break.
    const Finding& GetFinding() const { return m_finding; }

    // What the rules passed over in it.
    const PassedOver& GetPassedOver() const { return m_passedOver; }

    // Whether a form of that type is anywhere in the tree.
    bool HasForm(IffId type) const;

    virtual void Transfer(IffArchive& archive);

    // Not counted; null before a load.
    IffChunk* GetRoot() const { return m_pRoot.Get(); }

  private:
    IffId m_RootId;
    CountedPtr<IffChunk> m_pRoot;
    Finding m_finding;
    PassedOver m_passedOver;
};
