// A chunk of a file, the node that holds it in its container, and the chunk that keeps the raw bytes of
// anything no class claims.
#pragma once

#include "base/large_block.h"
#include "base/limited_object.h"
#include "iff/iff_archive.h"
#include "iff/iff_id.h"
#include "iff/iff_object.h"

class IffContainer;
class IffChunkNode;

class IffChunk : public IffObject, public LimitedObject {
  public:
    explicit IffChunk(IffId id) : m_Id(id) {}

    // Moves the chunk's fields in file order; the direction is tested only where loading and storing differ.
    virtual void Transfer(IffArchive& archive) = 0;

    // Raw bytes that no class claims; searches pass them over.
    virtual bool IsUnknown() const { return false; }

    // The chunk with that id that applies to this one: the nearest before it in its own container, else one
    // in a PROP of an enclosing LIST. Null when there is none. Not counted.
    IffChunk* FindProperty(IffId id) const;

    IffId m_Id;                         // as read from the file
    IffContainer* m_pParent = nullptr;  // not counted
    IffChunkNode* m_pNode = nullptr;    // in the parent's list; not counted
};

// One place in a container's list of children.
class IffChunkNode final : public IffObject, public LimitedObject {
  public:
    explicit IffChunkNode(IffChunk* pChunk) : m_pChunk(CountedPtr<IffChunk>::Share(pChunk)) {}

    IffChunkNode* m_pNext = nullptr;  // not counted
    IffChunkNode* m_pPrev = nullptr;  // not counted
    CountedPtr<IffChunk> m_pChunk;
    u32 m_nPlace = 0;  // grows from child to child
};

class IffUnknownChunk final : public IffChunk {
  public:
    using IffChunk::IffChunk;

    void Transfer(IffArchive& archive) override;
    bool IsUnknown() const override { return true; }

    LargeBlock m_pData;
    u32 m_nSize = 0;
};
