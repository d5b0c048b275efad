// A whole document: loaded, listed, shown, and loaded again into the same object when nothing fails any more.
#include "chunks/register_chunks.h"
#include "fuzz/fuzz_input.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    RegisterChunks();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const u8* data, size_t size) {
    const FuzzInput input(data, size);
    const Plan plan = input.ToPlan();
    Trial trial;
    if (!trial.Run(input.file, plan).bStruck) return 0;
    trial.Run(input.file, {.tolerance = plan.tolerance, .nMemory = plan.nMemory, .selections = {{}}});
    return 0;
}
