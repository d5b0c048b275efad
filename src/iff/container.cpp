#include "iff/container.h"

#include "iff/child_index.h"
#include "iff/registry.h"

#include <initializer_list>

namespace {

constexpr u32 HEADER_SIZE = 12;  // bytes of a container's id, size and type

bool MatchesOneOf(IffId id, std::initializer_list<IffId> ids) {
    for (const IffId one : ids)
        if (id.Matches(one)) return true;
    return false;
}

bool AnswersTo(const IffChunkNode* pNode, IffId id) {
    ++IffContainer::s_nNodesVisited;
    return pNode->m_pChunk->m_Id.Matches(id) && !pNode->m_pChunk->IsUnknown();
}

IffChunkNode* SearchForward(IffChunkNode* pNode, IffId id) {
    while (pNode && !AnswersTo(pNode, id)) pNode = pNode->m_pNext;
    return pNode;
}

IffChunkNode* SearchBackward(IffChunkNode* pNode, IffId id) {
    while (pNode && !AnswersTo(pNode, id)) pNode = pNode->m_pPrev;
    return pNode;
}

}  // namespace

IffChunk* ReadChunk(IffId formType, IffArchive& archive, IffId id, bool bUseRegistry) {
    const bool foundBefore = archive.HasFinding();
    if (id.IsNull()) archive.Transfer(id);
    const bool idIsKnown = !archive.HasFailed();
    auto chunk = CountedPtr<IffChunk>::Adopt(
        bUseRegistry ? IffChunkRegistry::Create(formType, id, archive.GetRules()) : new IffUnknownChunk(id));
    archive.Enter(Place::ChunkSize);
    u32 size = 0;
    archive.Transfer(size);
    if (!archive.HasFailed()) {
        auto body = CountedPtr<IffArchive>::Adopt(archive.OpenChunk(size));
        if (!body->HasFailed()) chunk->Transfer(*body);
        archive.CloseChunk(body.Release());
        archive.Enter(Place::PadByte);
        u8 pad = 0;
        if (size % 2 != 0 && !archive.MayLackPadByte()) archive.Transfer(pad);
    }
    if (idIsKnown && !foundBefore && archive.HasFinding()) archive.NoteEnclosing(id);
    return chunk.Release();
}

void WriteChunk(IffChunk* pChunk, IffArchive& archive) {
    IffArchive* const body = archive.OpenChunk(0);
    pChunk->Transfer(*body);
    u32 size = static_cast<u32>(body->GetRemaining());
    archive.Transfer(pChunk->m_Id);
    archive.Transfer(size);
    archive.CloseChunk(body);
    u8 pad = 0;
    if (size % 2 != 0) archive.Transfer(pad);
}

void RegisterContainers() {
    RegisterChunk<IffForm>(ID_NULL);
    RegisterChunk<IffList>(ID_NULL);
    RegisterChunk<IffCat>(ID_NULL);
    RegisterChunk<IffProp>(ID_NULL);
}

u64 IffContainer::s_nNodesVisited = 0;

IffContainer::IffContainer(IffId id) : IffChunk(id) {}

IffContainer::~IffContainer() {
    RemoveAll();
}

void IffContainer::Transfer(IffArchive& archive) {
    archive.Enter(Place::ContainerType);
    archive.Transfer(m_Type);
    if (!archive.IsLoading()) {
        for (const IffChunkNode* node = m_pFirst; node; node = node->m_pNext)
            WriteChunk(node->m_pChunk.Get(), archive);
        return;
    }
    RemoveAll();
    // Loading, searching and freeing recurse once for each level, so the stack bounds how deep a file may go.
    const u32 deepest = archive.GetRules().nDeepestContainer;
    if (archive.GetDepth() > deepest) {
        archive.Enter(Place::Container);
        archive.RefuseField(HEADER_SIZE, Rule::IffNesting, archive.GetDepth(), deepest);
    }
    while (archive.GetRemaining() > 0 && !archive.HasFailed()) {
        const auto child = CountedPtr<IffChunk>::Adopt(ReadChild(archive));
        AddChild(child.Get());
    }
    if (archive.GetRemaining() < 0) archive.SetFailed();
}

IffChunk* IffContainer::ReadChild(IffArchive& archive) {
    archive.Enter(Place::ChunkId);
    IffId id;
    archive.Transfer(id);
    return ReadChunk(m_Type, archive, id, IsChildAllowed(id));
}

bool IffForm::IsChildAllowed(IffId id) const {
    return !id.Matches(ID_PROP);
}

bool IffList::IsChildAllowed(IffId id) const {
    return MatchesOneOf(id, {ID_FORM, ID_LIST, ID_CAT, ID_PROP});
}

bool IffCat::IsChildAllowed(IffId id) const {
    return MatchesOneOf(id, {ID_FORM, ID_LIST, ID_CAT});
}

bool IffProp::IsChildAllowed(IffId id) const {
    return !MatchesOneOf(id, {ID_FORM, ID_LIST, ID_CAT, ID_PROP});
}

void IffContainer::AddChild(IffChunk* pChunk) {
    auto* const node = new IffChunkNode(pChunk);
    ++s_nChanges;
    ++m_nChildren;
    node->m_nPlace = m_nNextPlace++;
    pChunk->m_pParent = this;
    pChunk->m_pNode = node;
    node->m_pPrev = m_pLast;
    (m_pLast ? m_pLast->m_pNext : m_pFirst) = node;
    m_pLast = node;
}

void IffContainer::RemoveChild(IffChunkNode* pNode) {
    ++s_nChanges;
    --m_nChildren;
    (pNode->m_pPrev ? pNode->m_pPrev->m_pNext : m_pFirst) = pNode->m_pNext;
    (pNode->m_pNext ? pNode->m_pNext->m_pPrev : m_pLast) = pNode->m_pPrev;
    pNode->m_pChunk->m_pParent = nullptr;
    pNode->m_pChunk->m_pNode = nullptr;
    pNode->m_pChunk.Reset();
    pNode->Release();
}

void IffContainer::RemoveAll() {
    while (m_pFirst) RemoveChild(m_pFirst);
}

IffChunkNode* IffContainer::FindFirst(IffId id) const {
    return SearchForward(m_pFirst, id);
}

IffChunkNode* IffContainer::FindLast(IffId id) const {
    return SearchBackward(m_pLast, id);
}

IffChunkNode* IffContainer::FindNext(const IffChunkNode* pNode, IffId id) const {
    return SearchForward(pNode->m_pNext, id);
}

IffChunkNode* IffContainer::FindPrev(const IffChunkNode* pNode, IffId id) const {
    return SearchBackward(pNode->m_pPrev, id);
}

bool IffContainer::ForEach(IffId formType, IffId id, IffChunkCallback callback, void* pContext) {
    if (!m_Type.Matches(formType)) return true;
    for (IffChunkNode* node = FindFirst(id); node; node = FindNext(node, id))
        if (!callback(node->m_pChunk.Get(), pContext)) return false;
    return true;
}

bool IffContainer::ForEachInChildren(IffId formType, IffId id, IffChunkCallback callback, void* pContext) {
    for (IffChunkNode* node = m_pFirst; node; node = node->m_pNext) {
        ++s_nNodesVisited;
        // Mostly containers and raw bytes stand here, but a null id lets a picture chunk slip in.
        auto* const container = dynamic_cast<IffContainer*>(node->m_pChunk.Get());
        if (container && container->m_Type.Matches(formType) &&
            !container->ForEach(formType, id, callback, pContext))
            return false;
    }
    return true;
}
