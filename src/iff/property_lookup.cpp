#include "iff/container.h"

namespace {

// The last chunk of that id in the nearest PROP of that type before a container in its LIST.
IffChunk* FindInProps(const IffContainer& list, const IffChunkNode* before, IffId type, IffId id) {
    for (const IffChunkNode* node = list.FindPrev(before, ID_PROP); node;
         node = list.FindPrev(node, ID_PROP)) {
        const auto* const prop = dynamic_cast<const IffContainer*>(node->m_pChunk.Get());
        if (!prop || !prop->m_Type.Matches(type)) continue;
        if (const IffChunkNode* const found = prop->FindLast(id)) return found->m_pChunk.Get();
    }
    return nullptr;
}

}  // namespace

IffChunk* IffContainer::FindPropertyFrom(const IffChunkNode* node, IffId id) const {
    if (const IffChunkNode* const own = FindPrev(node, id)) return own->m_pChunk.Get();
    // Only LISTs hand properties down; the type asked for stays that of the asking form all the way out.
    const IffContainer* inner = this;
    while (const IffContainer* const outer = inner->m_pParent) {
        if (!outer->m_Id.Matches(ID_LIST)) return nullptr;
        if (inner->m_pNode)
            if (IffChunk* const found = FindInProps(*outer, inner->m_pNode, m_Type, id)) return found;
        inner = outer;
    }
    return nullptr;
}
