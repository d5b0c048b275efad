// The four grouping chunks, which hold other chunks in file order, and the reading of one chunk.
#pragma once

#include "iff/iff_chunk.h"

#include <memory>
#include <vector>

class ChildIndex;

// Given each chunk of an enumeration; false ends it.
using IffChunkCallback = bool (*)(IffChunk* pChunk, void* pContext);

class IffContainer : public IffChunk {
  public:
    explicit IffContainer(IffId id);
    ~IffContainer() override;

    void Transfer(IffArchive& archive) override;

    // Offers the callback, in file order, every known chunk of that id that stands directly in a FORM or PROP
    // of that type; a LIST or CAT hands the question on to its children. A null type or id matches any. False
    // when the callback ended it.
    virtual bool ForEach(IffId formType, IffId id, IffChunkCallback callback, void* pContext);

    // Reads the next child; one that is not allowed here is stored as raw bytes. The reference is the
    // caller's.
    virtual IffChunk* ReadChild(IffArchive& archive);
    virtual bool IsChildAllowed(IffId) const { return true; }

    void AddChild(IffChunk* pChunk);
    void RemoveChild(IffChunkNode* pNode);
    void RemoveAll();

    // Children with that id, unknown ones passed over; null where there is none. A null id matches any.
    IffChunkNode* FindFirst(IffId id) const;
    IffChunkNode* FindLast(IffId id) const;
    IffChunkNode* FindNext(const IffChunkNode* pNode, IffId id) const;
    IffChunkNode* FindPrev(const IffChunkNode* pNode, IffId id) const;

    // The property lookup for the child held by pNode: IffChunk::FindProperty. Asked again and again of a
    // tree that stays as it is, its cost does not grow with the number of chunks.
    IffChunk* FindPropertyFrom(const IffChunkNode* pNode, IffId id) const;

    // The chunk that FindLast finds, or null; by the index where there is one.
    IffChunk* FindLastKnown(IffId id) const;

    IffId m_Type;                      // the four characters that open the body
    IffChunkNode* m_pFirst = nullptr;  // nodes are owned, one reference each
    IffChunkNode* m_pLast = nullptr;

    // Nodes that searches have looked at since the program began: what a search costs, whatever the machine.
    static u64 s_nNodesVisited;

  protected:
    // What LIST and CAT do for ForEach.
    bool ForEachInChildren(IffId formType, IffId id, IffChunkCallback callback, void* pContext);

  private:
    // The answer to an earlier lookup; null where nothing is handed down.
    struct Inherited {
        IffId type;
        IffId id;
        IffChunk* pChunk;
    };

    const ChildIndex* GetIndex() const;
    IffChunk* FindInProps(const IffChunkNode* pNode, IffId type, IffId id) const;
    IffChunk* FindInherited(IffId type, IffId id) const;
    const Inherited* FindRemembered(IffId type, IffId id) const;
    void Remember(IffId type, IffId id, IffChunk* pChunk) const;

    // Trees are built once and then only read, so one count of changes to any of them tells what is still
    // true.
    static u64 s_nChanges;

    u32 m_nChildren = 0;
    u32 m_nNextPlace = 0;  // of the next child added; places are not used again
    mutable std::unique_ptr<ChildIndex> m_pIndex;
    mutable std::vector<Inherited> m_remembered;
    mutable u64 m_nIndexedAt = 0;     // count of changes
    mutable u64 m_nRememberedAt = 0;  // likewise
};

class IffForm final : public IffContainer {
  public:
    static constexpr IffId ID = ID_FORM;
    IffForm() : IffContainer(ID) {}
    bool IsChildAllowed(IffId id) const override;
};

class IffList final : public IffContainer {
  public:
    static constexpr IffId ID = ID_LIST;
    IffList() : IffContainer(ID) {}
    bool ForEach(IffId formType, IffId id, IffChunkCallback callback, void* pContext) override {
        return ForEachInChildren(formType, id, callback, pContext);
    }
    bool IsChildAllowed(IffId id) const override;
};

class IffCat final : public IffContainer {
  public:
    static constexpr IffId ID = ID_CAT;
    IffCat() : IffContainer(ID) {}
    bool ForEach(IffId formType, IffId id, IffChunkCallback callback, void* pContext) override {
        return ForEachInChildren(formType, id, callback, pContext);
    }
    bool IsChildAllowed(IffId id) const override;
};

class IffProp final : public IffContainer {
  public:
    static constexpr IffId ID = ID_PROP;
    IffProp() : IffContainer(ID) {}
    bool IsChildAllowed(IffId id) const override;
};

// Reads one chunk: id (unless it is given), big-endian size, body, and a pad byte after an odd body.
// formType is the type of the enclosing container. Without bUseRegistry the chunk is stored as raw bytes. The
// reference is the caller's, also when the archive has failed on the way.
IffChunk* ReadChunk(IffId formType, IffArchive& archive, IffId id, bool bUseRegistry);

// The counterpart, for an archive that stores.
void WriteChunk(IffChunk* pChunk, IffArchive& archive);

// Registers the four containers for forms of any type.
void RegisterContainers();
