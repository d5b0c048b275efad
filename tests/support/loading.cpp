#include "support/loading.h"

#include <stdexcept>

LoadedIff::LoadedIff(Bytes bytes) {
    MemoryStream source(std::move(bytes));
    bLoaded = iff.Load(&source.stream);
}

IffChunk& ChildAt(const IffContainer& container, u32 place) {
    const IffChunkNode* node = container.m_pFirst;
    for (; node && place > 0; --place) node = node->m_pNext;
    if (!node) throw std::out_of_range("no such child");
    return *node->m_pChunk;
}
