// As long as it lives, no block above so many bytes can be had.
#pragma once

#include "base/large_block.h"

struct MemoryLimit {
    explicit MemoryLimit(u64 nLimit) : m_nBefore(LargeBlock::SetLimit(nLimit)) {}
    MemoryLimit(const MemoryLimit&) = delete;
    ~MemoryLimit() { LargeBlock::SetLimit(m_nBefore); }

    const u64 m_nBefore;
};
