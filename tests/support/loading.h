// Files in memory, read the way the document reads them.
#pragma once

#include "iff/archive_byte_stream.h"
#include "iff/container.h"
#include "iff/iff_file.h"
#include "support/memory_file.h"

#include <stdexcept>

// A stream over bytes in memory, with everything under it.
struct MemoryStream {
    explicit MemoryStream(Bytes bytes) : file(std::move(bytes)) {}
    ~MemoryStream() { stream.Close(); }

    MemoryFile file;
    CountingArchive archive{&file, CArchive::load};
    ArchiveByteStream stream{&archive, 1024};  // as large a buffer as the document's
};

// What the IFF reader made of some bytes.
struct LoadedIff {
    explicit LoadedIff(Bytes bytes) {
        MemoryStream source(std::move(bytes));
        bLoaded = iff.Load(&source.stream);
    }

    // The outermost container, which must be there.
    IffContainer& Root() const { return dynamic_cast<IffContainer&>(*iff.GetRoot()); }

    bool bLoaded = false;
    IffFile iff;
};

inline bool Loads(Bytes bytes) { return LoadedIff(std::move(bytes)).bLoaded; }

// The child at a place, which must be there.
template <typename Class>
Class& ChildAs(const IffContainer& container, u32 nPlace) {
    const IffChunkNode* node = container.m_pFirst;
    for (; node && nPlace > 0; --nPlace) node = node->m_pNext;
    if (!node) throw std::out_of_range("no such child");
    return dynamic_cast<Class&>(*node->m_pChunk);
}
