// The kinds of vectors that kernels are compiled for, by Highway's numbers of its targets; 0 is none of them.
//
// Highway's own library would choose among them too, but measures the clock for milliseconds whenever it is
// loaded.
#pragma once

#include "base/types.h"

#include <span>
#include <string>

struct RowKernels;

// Vectors whose size the compiler does not know can be kept in no array or structure, as kernels do.
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128)

// The best that the processor has.
i64 BestVectors();

// Nothing where the processor or the build lacks the one of that name.
bool FindVectors(const std::string& strName, i64& nKind);

// What puts the kernels of one kind into the table; null where the build has none of it.
struct VectorKind {
    i64 nKind;
    void (*pPutKernels)(RowKernels& kernels);
};

// All of them, in the namespace around those that a source is compiled for again and again.
#define VISTREL_VECTOR_KINDS(FUNCTION)                                                      \
    {                                                                                       \
        {HWY_AVX3_DL, HWY_CHOOSE_AVX3_DL(FUNCTION)}, {HWY_AVX3, HWY_CHOOSE_AVX3(FUNCTION)}, \
            {HWY_AVX2, HWY_CHOOSE_AVX2(FUNCTION)}, {HWY_SSE4, HWY_CHOOSE_SSE4(FUNCTION)},   \
            {HWY_SSSE3, HWY_CHOOSE_SSSE3(FUNCTION)}, {                                      \
            HWY_NEON, HWY_CHOOSE_NEON(FUNCTION)                                             \
        }                                                                                   \
    }

// Puts those of that kind, or of the best worse one that the source is compiled for; none for 0. kinds begins
// with the best.
void PutKernelsOf(RowKernels& kernels, i64 nKind, std::span<const VectorKind> kinds);
