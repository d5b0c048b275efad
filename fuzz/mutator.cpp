// Mutations that get past the framing: the fuzzer's own, after which most files have their sizes put right.
#include "fuzz/fuzz_input.h"
#include "fuzz/repair.h"

#include <algorithm>

extern "C" size_t LLVMFuzzerMutate(u8* pData, size_t nSize, size_t nMost);

extern "C" size_t LLVMFuzzerCustomMutator(u8* pData, size_t nSize, size_t nMost, unsigned nSeed) {
    const size_t size = LLVMFuzzerMutate(pData, nSize, nMost);
    if (nSeed % 4 == 0 || size < FuzzInput::CONTROLS) return size;
    Bytes file(pData, pData + (size - FuzzInput::CONTROLS));
    RepairSizes(file);
    std::copy(file.begin(), file.end(), pData);
    return size;
}
