// Sums and differences modulo 2^32, for positions in a stream, which lengths of a file lead full circle, and
// for distances whose sign is looked at later. Everywhere else a wrap is a fault.
#pragma once

#include "base/types.h"

// Marks a function in which unsigned integers wrap on purpose, for the sanitizer that looks for the others.
#ifdef __clang__
#define VISTREL_WRAPS __attribute__((no_sanitize("unsigned-integer-overflow")))
#else
#define VISTREL_WRAPS
#endif

VISTREL_WRAPS constexpr u32 WrappingSum(u32 a, u32 b) {
    return a + b;
}

VISTREL_WRAPS constexpr u32 WrappingDifference(u32 a, u32 b) {
    return a - b;
}
