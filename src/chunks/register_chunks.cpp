#include "chunks/register_chunks.h"

#include "chunks/alph_chunk.h"
#include "chunks/body_chunk.h"
#include "chunks/extension_chunks.h"
#include "chunks/ilbm_chunks.h"
#include "iff/container.h"
#include "iff/registry.h"

void RegisterChunks() {
    RegisterContainers();
    RegisterChunk<BmhdChunk>(ID_ILBM);
    RegisterChunk<CmapChunk>(ID_ILBM);
    RegisterChunk<BodyChunk>(ID_ILBM);
    RegisterChunk<GrabChunk>(ID_ILBM);
    RegisterChunk<TranChunk>(ID_ILBM);
    RegisterChunk<AlphChunk>(ID_ILBM);
    RegisterChunk<ContChunk>(ID_MIPM);
    RegisterChunk<S3tcChunk>(ID_ILBM);
    RegisterChunk<BmhdChunk>(ID_PBM);
    RegisterChunk<CmapChunk>(ID_PBM);
    RegisterChunk<BodyChunk>(ID_PBM);
}
