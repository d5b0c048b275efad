// Sizes made of numbers from a file: products and sums that cannot wrap.
#pragma once

#include "base/types.h"

#include <limits>

constexpr u64 IMPOSSIBLE_SIZE = std::numeric_limits<u64>::max();

// The product in bytes; IMPOSSIBLE_SIZE, which no allocation can meet, where it does not fit.
constexpr u64 SizeProduct(u64 nCount, u64 nSize) {
    u64 product = 0;
    return __builtin_mul_overflow(nCount, nSize, &product) ? IMPOSSIBLE_SIZE : product;
}

template <typename... Rest>
constexpr u64 SizeProduct(u64 nCount, u64 nSize, Rest... rest) {
    return SizeProduct(SizeProduct(nCount, nSize), rest...);
}

// Likewise of a sum.
constexpr u64 SizeSum(u64 nSize, u64 nOther) {
    u64 sum = 0;
    return __builtin_add_overflow(nSize, nOther, &sum) ? IMPOSSIBLE_SIZE : sum;
}

template <typename... Rest>
constexpr u64 SizeSum(u64 nSize, u64 nOther, Rest... rest) {
    return SizeSum(SizeSum(nSize, nOther), rest...);
}
