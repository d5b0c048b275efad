// Where a container with many children keeps them by id, so that a property lookup does not walk past all of
// them for each that asks.
#pragma once

#include "iff/container.h"

#include <unordered_map>
#include <vector>

class ChildIndex {
  public:
    explicit ChildIndex(const IffContainer& container);

    // The nearest known child of that id before a place among the children; null when there is none.
    IffChunkNode* LastBefore(IffId id, u32 nPlace) const;

    // What the nearest PROP of a matching type before that place has of that id; null when none has it.
    IffChunk* PropertyBefore(IffId type, IffId id, u32 nPlace) const;

  private:
    struct Property {
        u32 nPlace;  // of the PROP
        IffChunk* pChunk;
    };
    using Properties = std::vector<Property>;  // in file order

    static u64 Key(IffId type, IffId id) { return u64{type.m_nValue} << 32 | id.m_nValue; }
    void AddProp(const IffContainer& prop, u32 nPlace);

    std::unordered_map<u32, std::vector<IffChunkNode*>> m_children;  // by id, in file order
    // By type and id. Under the null type stand those of PROPs of the null type, which match any.
    std::unordered_map<u64, Properties> m_properties;
    // By id alone, for an asker of the null type, which any PROP matches.
    std::unordered_map<u32, Properties> m_propertiesOfAnyType;
};
