// The tree of chunks by itself, and the searches through it.
#include "chunks/ilbm_chunks.h"
#include "chunks/register_chunks.h"
#include "fuzz/fuzz_input.h"
#include "support/loading.h"
#include "support/memory_limit.h"

#include <new>

namespace {

// Of every chunk the properties are looked for that a picture asks for.
bool LookForProperties(IffChunk* pChunk, void*) {
    pChunk->FindProperty(BmhdChunk::ID);
    pChunk->FindProperty(CmapChunk::ID);
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    RegisterChunks();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const u8* data, size_t size) {
    const FuzzInput input(data, size);
    const Plan plan = input.ToPlan();
    const MemoryLimit limit(plan.nMemory);
    IffFile iff;
    for (const bool faulty : {true, false}) {
        MemoryStream source(input.file);
        if (faulty) SetFaults(source.file, plan);
        try {
            if (!iff.Load(&source.stream, input.Rules())) continue;
            iff.HasForm(ID_ILBM);
            auto* const root = dynamic_cast<IffContainer*>(iff.GetRoot());
            if (root) root->ForEach(ID_NULL, ID_NULL, LookForProperties, nullptr);
        } catch (const std::bad_alloc&) {
        }
    }
    return 0;
}
