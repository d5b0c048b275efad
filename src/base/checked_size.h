// Sizes made of numbers from a file: products that cannot wrap.
#pragma once

#include "base/types.h"

#include <limits>

constexpr u64 IMPOSSIBLE_SIZE = std::numeric_limits<u64>::max();

// The product in bytes; IMPOSSIBLE_SIZE, which no allocation can meet, where it does not fit.
constexpr u64 SizeProduct(u64 count, u64 size) {
    u64 product = 0;
    return __builtin_mul_overflow(count, size, &product) ? IMPOSSIBLE_SIZE : product;
}

template <typename... Rest>
constexpr u64 SizeProduct(u64 count, u64 size, Rest... rest) {
    return SizeProduct(SizeProduct(count, size), rest...);
}
