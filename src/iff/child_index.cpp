#include "iff/child_index.h"

#include <algorithm>

namespace {

template <typename Entries, typename Place>
auto LastBeforePlace(const Entries& entries, u32 nPlace, Place place) -> decltype(entries.data()) {
    const auto after = std::ranges::lower_bound(entries, nPlace, {}, place);
    return after == entries.begin() ? nullptr : &*std::prev(after);
}

template <typename Map, typename Key>
auto EntriesOf(const Map& map, Key key) -> const typename Map::mapped_type* {
    const auto found = map.find(key);
    return found == map.end() ? nullptr : &found->second;
}

}  // namespace

ChildIndex::ChildIndex(const IffContainer& container) {
    for (IffChunkNode* node = container.m_pFirst; node; node = node->m_pNext) {
        ++IffContainer::s_nNodesVisited;
        if (node->m_pChunk->IsUnknown()) continue;
        m_children[node->m_pChunk->m_Id.m_nValue].push_back(node);
        if (node->m_pChunk->m_Id != ID_PROP) continue;
        if (const auto* const prop = dynamic_cast<const IffContainer*>(node->m_pChunk.Get()))
            AddProp(*prop, node->m_nPlace);
    }
}

void ChildIndex::AddProp(const IffContainer& prop, u32 nPlace) {
    // Of several chunks with one id the last counts, so a later one takes the place of an earlier one.
    const auto put = [nPlace](Properties& properties, IffChunk* pChunk) {
        if (!properties.empty() && properties.back().nPlace == nPlace)
            properties.back().pChunk = pChunk;
        else
            properties.push_back({nPlace, pChunk});
    };
    for (const IffChunkNode* node = prop.m_pFirst; node; node = node->m_pNext) {
        ++IffContainer::s_nNodesVisited;
        IffChunk* const chunk = node->m_pChunk.Get();
        if (chunk->IsUnknown()) continue;
        put(m_properties[Key(prop.m_Type, chunk->m_Id)], chunk);
        put(m_propertiesOfAnyType[chunk->m_Id.m_nValue], chunk);
    }
}

IffChunkNode* ChildIndex::LastBefore(IffId id, u32 nPlace) const {
    const auto* const nodes = EntriesOf(m_children, id.m_nValue);
    if (!nodes) return nullptr;
    auto* const found =
        LastBeforePlace(*nodes, nPlace, [](const IffChunkNode* pNode) { return pNode->m_nPlace; });
    return found ? *found : nullptr;
}

IffChunk* ChildIndex::PropertyBefore(IffId type, IffId id, u32 nPlace) const {
    const auto before = [nPlace](const Properties* pProperties) {
        return pProperties ? LastBeforePlace(*pProperties, nPlace, &Property::nPlace) : nullptr;
    };
    const Property* found = nullptr;
    if (type.IsNull()) {
        found = before(EntriesOf(m_propertiesOfAnyType, id.m_nValue));
    } else {
        found = before(EntriesOf(m_properties, Key(type, id)));
        const Property* const ofNullType = before(EntriesOf(m_properties, Key(ID_NULL, id)));
        if (ofNullType && (!found || found->nPlace < ofNullType->nPlace)) found = ofNullType;
    }
    return found ? found->pChunk : nullptr;
}
