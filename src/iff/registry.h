// Which class stands for a chunk: creators, found by the type of the enclosing form and the chunk's id.
// Filled once, before the first load, and only read afterwards.
#pragma once

#include "iff/iff_chunk.h"
#include "reading/reading_rules.h"

#include <array>
#include <forward_list>

// Makes a chunk in its empty state, with the registered id; its first reference is the caller's.
using IffChunkCreator = IffChunk* (*)();

class IffChunkRegistry {
  public:
    // formType: the type of the form in which such chunks stand, null for any; those of ID_PBM are known to
    // rules that read it. A later registration stands in front of an earlier one of the same key.
    static void Register(IffId formType, IffId id, IffChunkCreator creator);

    // A new chunk for an id met inside a container of a type (null: outermost, matches every registration).
    // An IffUnknownChunk when no registration matches, or the id is null.
    static IffChunk* Create(IffId formType, IffId id, const ReadingRules& rules);

  private:
    struct Entry {
        IffId formType;
        IffId id;
        IffChunkCreator creator;
    };

    static constexpr u32 BUCKETS = 64;

    static IffChunkRegistry& TheRegistry();
    static u32 BucketOf(IffId id);

    std::array<std::forward_list<Entry>, BUCKETS> m_buckets;
};

template <typename Chunk>
void RegisterChunk(IffId formType) {
    IffChunkRegistry::Register(formType, Chunk::ID, []() -> IffChunk* { return new Chunk; });
}
