// The interface through which every chunk moves its contents, in either direction. An archive also stands for
// one chunk's extent in the file: it counts the bytes left and leaves the stream at the chunk's end when it
// is let go. Failure sticks and is tested once, at the end of a load.
#pragma once

#include "base/types.h"
#include "iff/iff_id.h"
#include "iff/iff_object.h"
#include "reading/finding.h"
#include "reading/passed_over.h"
#include "reading/reading_rules.h"

class ByteStream;

// A colour register, as its three bytes stand in the file.
struct IffRgb {
    u8 red = 0;
    u8 green = 0;
    u8 blue = 0;

    bool operator==(const IffRgb&) const = default;
};

class IffArchive : public IffObject {
  public:
    bool IsLoading() const { return m_bLoading; }
    bool HasFailed() const { return m_bFailed; }

    // Bytes left in the chunk; negative once a transfer has overrun it.
    virtual i32 GetRemaining() = 0;

    // A child archive over the next nSize bytes, whose one reference the caller owns. A size of 2^31 or more
    // gives a child that has failed.
    virtual IffArchive* OpenChunk(u32 nSize) = 0;

    // Takes over the child's failure and releases it, which moves the stream to the child's end.
    virtual void CloseChunk(IffArchive* pChild) = 0;

    // Binds the archive to a stream positioned at the start of the data. Fails on a stream in bad state.
    virtual void Attach(ByteStream* pStream) = 0;

    // Positions the stream at the archive's end and lets go of it.
    virtual void Detach() = 0;

    // Integers are big-endian. Each transfer counts its size off the bytes left, and reads nothing when that
    // overruns the chunk. A value whose transfer failed is undefined.
    virtual void Transfer(IffId& value) = 0;
    virtual void Transfer(u64& nValue) = 0;
    virtual void Transfer(i64& nValue) = 0;
    virtual void Transfer(u32& nValue) = 0;
    virtual void Transfer(i32& nValue) = 0;
    virtual void Transfer(u16& nValue) = 0;
    virtual void Transfer(i16& nValue) = 0;
    virtual void Transfer(u8& nValue) = 0;
    virtual void Transfer(i8& nValue) = 0;
    virtual void Transfer(IffRgb& value) = 0;
    virtual void TransferBytes(void* pData, u32 nCount) = 0;

    void SetFailed() { m_bFailed = true; }

    // Both fail the archive and note why, unless something else was noted before. The rule is broken by the
    // size of the chunk, or by the last nBytes that were transferred.
    virtual void RefuseChunk(Rule rule, i64 nFound, i64 nRead) = 0;
    virtual void RefuseField(u32 nBytes, Rule rule, i64 nFound, i64 nRead) = 0;

    // Before memory for nCount bytes of the chunk is had: fails the archive where chunk or source no longer
    // hold as many. Whether the archive has not failed.
    virtual bool Require(i64 nCount) = 0;

    // After a chunk of odd size: whether its pad byte is missing, and the rules let it.
    virtual bool MayLackPadByte() = 0;

    // Says what is transferred from here on, for a finding.
    void Enter(Place place) { m_place = place; }

    // The first rule that was found broken in the whole file.
    const Finding& GetFinding() const { return m_noted; }
    bool HasFinding() const { return m_noted.rule != Rule::None; }

    // The chunk is, or holds, the one in which the rule was broken.
    void NoteEnclosing(IffId id) { m_noted.path.push_back(id.m_nValue); }

    const ReadingRules& GetRules() const { return m_rules; }

    // How many chunks of the file this archive's chunk lies in, itself included.
    u32 GetDepth() const { return m_nDepth; }

  protected:
    // All are borrowed; all archives of a file share them.
    IffArchive(bool bLoading, u32 nDepth, Finding& noted, PassedOver& passedOver, const ReadingRules& rules)
        : m_bLoading(bLoading), m_noted(noted), m_passedOver(passedOver), m_nDepth(nDepth), m_rules(rules) {}

    bool m_bLoading;
    bool m_bFailed = false;
    Finding& m_noted;
    PassedOver& m_passedOver;
    Place m_place = Place::ChunkBody;

  private:
    const u32 m_nDepth;
    const ReadingRules& m_rules;
};
