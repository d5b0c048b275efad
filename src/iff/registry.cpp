#include "iff/registry.h"

IffChunkRegistry& IffChunkRegistry::TheRegistry() {
    static IffChunkRegistry registry;
    return registry;
}

u32 IffChunkRegistry::BucketOf(IffId id) {
    const u32 v = id.m_nValue;
    u32 x = (v >> 7) ^ v;
    x = (x >> 6) ^ v;
    x = (x >> 5) ^ v;
    x = (x >> 4) ^ v;
    return x & (BUCKETS - 1);
}

void IffChunkRegistry::Register(IffId formType, IffId id, IffChunkCreator creator) {
    TheRegistry().m_buckets[BucketOf(id)].push_front({formType, id, creator});
}

IffChunk* IffChunkRegistry::Create(IffId formType, IffId id, const ReadingRules& rules) {
    if (id.IsNull()) return new IffUnknownChunk(id);
    for (const Entry& entry : TheRegistry().m_buckets[BucketOf(id)])
        if ((rules.bChunky || entry.formType != ID_PBM) && entry.formType.Matches(formType) &&
            entry.id.Matches(id))
            return entry.creator();
    return new IffUnknownChunk(id);
}
