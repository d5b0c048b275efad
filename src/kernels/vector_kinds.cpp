#include "kernels/vector_kinds.h"

#define HWY_WANT_AVX3_DL
#include <cstdio>
#include <cstdlib>
#include <hwy/detect_targets.h>
#include <hwy/targets.h>

// What Highway's headers call where they are misused, which only builds without optimisation look for.
namespace hwy {
void Abort(const char* pszFile, int nLine, const char* pszFormat, ...) {
    std::fprintf(stderr, "%s:%d: %s\n", pszFile, nLine, pszFormat);
    std::abort();
}
}  // namespace hwy

namespace {

#if HWY_ARCH_X86
// Clang has no names for these two. Processors that have what is asked for beside them have them.
#ifdef __clang__
bool HasF16c() {
    return true;
}
bool HasVaes() {
    return true;
}
#else
bool HasF16c() {
    return __builtin_cpu_supports("f16c") != 0;
}
bool HasVaes() {
    return __builtin_cpu_supports("vaes") != 0;
}
#endif
#endif

// All that the processor has, a bit each.
i64 Supported() {
#if HWY_ARCH_X86
    i64 kinds = 0;
    if (!__builtin_cpu_supports("ssse3")) return kinds;
    kinds |= HWY_SSSE3;
    if (!__builtin_cpu_supports("sse4.2") || !__builtin_cpu_supports("pclmul") ||
        !__builtin_cpu_supports("aes"))
        return kinds;
    kinds |= HWY_SSE4;
    if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("bmi") ||
        !__builtin_cpu_supports("bmi2") || !HasF16c() || !__builtin_cpu_supports("fma"))
        return kinds;
    kinds |= HWY_AVX2;
    if (!__builtin_cpu_supports("avx512f") || !__builtin_cpu_supports("avx512vl") ||
        !__builtin_cpu_supports("avx512dq") || !__builtin_cpu_supports("avx512bw") ||
        !__builtin_cpu_supports("avx512cd"))
        return kinds;
    kinds |= HWY_AVX3;
    if (!__builtin_cpu_supports("avx512vbmi") || !__builtin_cpu_supports("avx512vbmi2") ||
        !__builtin_cpu_supports("avx512vnni") || !__builtin_cpu_supports("avx512bitalg") ||
        !__builtin_cpu_supports("avx512vpopcntdq") || !__builtin_cpu_supports("vpclmulqdq") || !HasVaes())
        return kinds;
    return kinds | HWY_AVX3_DL;
#else
    // What the compiler may use everywhere.
    return HWY_STATIC_TARGET;
#endif
}

}  // namespace

// A better kind has a lower bit.
i64 BestVectors() {
    const i64 kinds = Supported();
    return kinds & -kinds;
}

bool FindVectors(const std::string& strName, i64& nKind) {
    for (i64 rest = Supported(); rest != 0; rest &= rest - 1) {
        const i64 kind = rest & -rest;
        if (strName != hwy::TargetName(kind)) continue;
        nKind = kind;
        return true;
    }
    return false;
}

void PutKernelsOf(RowKernels& kernels, i64 nKind, std::span<const VectorKind> kinds) {
    for (const VectorKind& kind : kinds) {
        if (nKind == 0 || kind.nKind < nKind || !kind.pPutKernels) continue;
        kind.pPutKernels(kernels);
        break;
    }
}
