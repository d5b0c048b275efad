#include "iff/child_index.h"
#include "iff/container.h"

// A file can hold a million chunks that ask and a million that do not answer. Large containers therefore keep
// an index, and they and every LIST remember what is handed down to their children from further out.

namespace {

// Up to here walking is cheaper than an index.
constexpr u32 SMALL = 8;

// Of a LIST with few children: the last chunk of that id in the nearest PROP of that type before the node.
IffChunk* FindInFewProps(const IffContainer& list, const IffChunkNode* pNode, IffId type, IffId id) {
    while ((pNode = list.FindPrev(pNode, ID_PROP))) {
        const auto* const prop = dynamic_cast<const IffContainer*>(pNode->m_pChunk.Get());
        if (!prop || !prop->m_Type.Matches(type)) continue;
        if (IffChunk* const found = prop->FindLastKnown(id)) return found;
    }
    return nullptr;
}

}  // namespace

u64 IffContainer::s_nChanges = 0;

const ChildIndex* IffContainer::GetIndex() const {
    if (m_nChildren <= SMALL) return nullptr;
    if (!m_pIndex || m_nIndexedAt != s_nChanges) {
        m_pIndex = std::make_unique<ChildIndex>(*this);
        m_nIndexedAt = s_nChanges;
    }
    return m_pIndex.get();
}

IffChunk* IffContainer::FindLastKnown(IffId id) const {
    const ChildIndex* const index = id.IsNull() ? nullptr : GetIndex();
    const IffChunkNode* const node = index ? index->LastBefore(id, m_nNextPlace) : FindLast(id);
    return node ? node->m_pChunk.Get() : nullptr;
}

// What the PROPs before a child of this LIST have for it.
IffChunk* IffContainer::FindInProps(const IffChunkNode* pNode, IffId type, IffId id) const {
    const ChildIndex* const index = id.IsNull() ? nullptr : GetIndex();
    return index ? index->PropertyBefore(type, id, pNode->m_nPlace) : FindInFewProps(*this, pNode, type, id);
}

// What LISTs around this container hand down to it; the type asked for stays that of the asking form all the
// way out. LISTs on the way remember the answer.
IffChunk* IffContainer::FindInherited(IffId type, IffId id) const {
    IffChunk* found = nullptr;
    const IffContainer* inner = this;
    for (; !found; inner = inner->m_pParent) {
        const IffContainer* const outer = inner->m_pParent;
        if (!outer || !outer->m_Id.Matches(ID_LIST)) break;
        if (const Inherited* const known = inner->FindRemembered(type, id)) {
            found = known->pChunk;
            break;
        }
        if (inner->m_pNode) found = outer->FindInProps(inner->m_pNode, type, id);
    }
    for (const IffContainer* passed = this; passed && passed != inner; passed = passed->m_pParent)
        if (passed->m_Id == ID_LIST || passed->m_nChildren > SMALL) passed->Remember(type, id, found);
    return found;
}

const IffContainer::Inherited* IffContainer::FindRemembered(IffId type, IffId id) const {
    if (m_nRememberedAt != s_nChanges) return nullptr;
    for (const Inherited& one : m_remembered)
        if (one.type == type && one.id == id) return &one;
    return nullptr;
}

void IffContainer::Remember(IffId type, IffId id, IffChunk* pChunk) const {
    if (m_nRememberedAt != s_nChanges) m_remembered.clear();
    m_nRememberedAt = s_nChanges;
    m_remembered.push_back({type, id, pChunk});
}

IffChunk* IffContainer::FindPropertyFrom(const IffChunkNode* pNode, IffId id) const {
    const ChildIndex* const index = id.IsNull() ? nullptr : GetIndex();
    const IffChunkNode* const own = index ? index->LastBefore(id, pNode->m_nPlace) : FindPrev(pNode, id);
    return own ? own->m_pChunk.Get() : FindInherited(m_Type, id);
}
