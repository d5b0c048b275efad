// The Photoshop reader by itself, twice into the same object.
#include "fuzz/fuzz_input.h"
#include "psd/psd_image.h"
#include "support/loading.h"
#include "support/memory_limit.h"

extern "C" int LLVMFuzzerTestOneInput(const u8* data, size_t size) {
    const FuzzInput input(data, size);
    const Plan plan = input.ToPlan();
    const MemoryLimit limit(plan.nMemory);
    PsdImage image;
    for (const bool faulty : {true, false}) {
        MemoryStream source(input.file);
        if (faulty) SetFaults(source.file, plan);
        image.LoadPsd(&source.stream, input.Rules());
    }
    return 0;
}
