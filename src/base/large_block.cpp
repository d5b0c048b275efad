#include "base/large_block.h"

#include <new>
#include <unistd.h>
#include <utility>

namespace {

constexpr u64 CACHE_LINE = 64;

u64& TheLimit() {
    static u64 limit =
        static_cast<u64>(sysconf(_SC_PHYS_PAGES)) * static_cast<u64>(sysconf(_SC_PAGESIZE)) / 2;
    return limit;
}

}  // namespace

LargeBlock LargeBlock::Try(u64 nSize) {
    LargeBlock block;
    const u64 rounded = (nSize + CACHE_LINE) & ~(CACHE_LINE - 1);  // never 0, unless it wraps
    if (nSize > Limit() || rounded < nSize) return block;
    block.m_pData.reset(static_cast<u8*>(std::aligned_alloc(CACHE_LINE, rounded)));
    if (block.m_pData) block.m_nSize = nSize;
    return block;
}

LargeBlock LargeBlock::Allocate(u64 nSize) {
    LargeBlock block = Try(nSize);
    if (!block) throw std::bad_alloc();
    return block;
}

u64 LargeBlock::Limit() {
    return TheLimit();
}

u64 LargeBlock::SetLimit(u64 nLimit) {
    return std::exchange(TheLimit(), nLimit);
}
