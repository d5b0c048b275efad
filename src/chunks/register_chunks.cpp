#include "chunks/register_chunks.h"

#include "chunks/body_chunk.h"
#include "chunks/ilbm_chunks.h"
#include "iff/container.h"
#include "iff/registry.h"

void RegisterChunks() {
    RegisterContainers();
    RegisterChunk<BmhdChunk>(ID_ILBM);
    RegisterChunk<CmapChunk>(ID_ILBM);
    RegisterChunk<BodyChunk>(ID_ILBM);
    RegisterChunk<GrabChunk>(ID_ILBM);
}
