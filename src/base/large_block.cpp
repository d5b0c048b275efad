#include "base/large_block.h"

#include "base/process_memory.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <new>
#include <sys/mman.h>
#include <utility>

namespace {

constexpr u64 MEBIBYTE = 1 << 20;
constexpr u64 CACHE_LINE = 64;
constexpr u64 PAGE = 4096;
constexpr u64 HUGE_PAGE = 2 * MEBIBYTE;
constexpr u64 LEAST_ON_HUGE_PAGES = 2 * MEBIBYTE;
constexpr u64 LEAST_OF_WHOLE_PAGES =
    4 * MEBIBYTE;                     // of smaller ones the last huge page would be mostly waste
constexpr u64 LEAST_KEPT = MEBIBYTE;  // smaller ones the heap keeps by itself

// Sanitizers look for what is freed too early, so that nothing may be kept from them.
#if defined(__SANITIZE_ADDRESS__)
#define VISTREL_KEEPS_NOTHING
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(memory_sanitizer)
#define VISTREL_KEEPS_NOTHING
#endif
#endif
#ifdef VISTREL_KEEPS_NOTHING
constexpr u64 KEPT_LIMIT = 0;
constexpr bool ROUNDS_UP = false;  // what is read beyond a block's size is to be seen
#else
constexpr u64 KEPT_LIMIT = 256 * MEBIBYTE;
constexpr bool ROUNDS_UP = true;
#endif
constexpr size_t MOST_KEPT = 4;  // blocks

// Freed blocks, the one that was freed last at the end. Freeing one must not have to ask for memory.
class KeptBlocks {
  public:
    static KeptBlocks& Get() {
        static KeptBlocks kept;
        return kept;
    }

    KeptBlocks() = default;
    KeptBlocks(const KeptBlocks&) = delete;
    KeptBlocks& operator=(const KeptBlocks&) = delete;
    ~KeptBlocks() { ReleaseAll(); }

    u64 SetLimit(u64 nLimit) {
        const u64 before = std::exchange(m_nLimit, nLimit);
        MakeRoom(0);
        return before;
    }
    u64 Size() const { return m_nSize; }

    void Put(u8* pData, u64 nCapacity) {
        if (nCapacity < LEAST_KEPT || nCapacity > m_nLimit) {
            std::free(pData);
            return;
        }
        if (m_nCount == m_blocks.size()) Drop(0);
        MakeRoom(nCapacity);
        m_blocks[m_nCount] = {pData, nCapacity};
        ++m_nCount;
        m_nSize += nCapacity;
    }

    // The smallest that holds so many bytes, and not much more; null without any.
    u8* Take(u64 nSize, u64& nCapacity) {
        size_t best = m_nCount;
        for (size_t i = 0; i < m_nCount; ++i) {
            const u64 capacity = m_blocks[i].nCapacity;
            const bool fits = capacity >= nSize && capacity / 2 <= nSize;
            if (fits && (best == m_nCount || capacity < m_blocks[best].nCapacity)) best = i;
        }
        if (best == m_nCount) return nullptr;
        nCapacity = m_blocks[best].nCapacity;
        u8* const data = m_blocks[best].pData;
        Forget(best);
        return data;
    }

    void ReleaseAll() {
        while (m_nCount > 0) Drop(0);
    }

  private:
    struct Block {
        u8* pData = nullptr;
        u64 nCapacity = 0;
    };

    void MakeRoom(u64 nCapacity) {
        while (m_nCount > 0 && m_nSize + nCapacity > m_nLimit) Drop(0);
    }

    void Drop(size_t nPlace) {
        std::free(m_blocks[nPlace].pData);
        Forget(nPlace);
    }

    void Forget(size_t nPlace) {
        m_nSize -= m_blocks[nPlace].nCapacity;
        std::move(m_blocks.begin() + nPlace + 1, m_blocks.begin() + m_nCount, m_blocks.begin() + nPlace);
        --m_nCount;
    }

    std::array<Block, MOST_KEPT> m_blocks;
    size_t m_nCount = 0;
    u64 m_nSize = 0;  // bytes of all together
    u64 m_nLimit = KEPT_LIMIT;
};

u64& TheLimit() {
    static u64 limit = MemoryOfProcess() / 2;
    return limit;
}

// Of all blocks and limited objects that are in use.
u64& TheUsedSize() {
    static u64 used = 0;
    return used;
}

std::optional<u8>& TheFill() {
    static std::optional<u8> fill;
    return fill;
}

// Where a block of no bytes points to.
u8 g_nothing;

// Null where the system has no more, or the capacity wraps. A capacity of 0 is not to be freed.
u8* TakeFresh(u64 nSize, u64& nCapacity) {
    nCapacity = nSize;
    if (nSize == 0) return &g_nothing;
    if (nSize < CACHE_LINE) return static_cast<u8*>(std::malloc(nSize));
    // One that is kept may serve a request of all its bytes.
    const bool whole = nSize > LEAST_OF_WHOLE_PAGES - CACHE_LINE;
    const u64 unit = whole ? HUGE_PAGE : CACHE_LINE;
    const u64 rounded = (nSize + unit - 1) & ~(unit - 1);
    if (rounded < nSize) return nullptr;
    if (ROUNDS_UP) nCapacity = rounded;
    const bool large = nSize >= LEAST_ON_HUGE_PAGES;
    void* place = nullptr;
    if (posix_memalign(&place, large ? HUGE_PAGE : CACHE_LINE, nCapacity) != 0) return nullptr;
    auto* const data = static_cast<u8*>(place);
    // A system without them says so, and gives plain pages.
    if (large) madvise(data, nCapacity & ~(PAGE - 1), MADV_HUGEPAGE);
    return data;
}

}  // namespace

void KeepOrFree::operator()(u8* pData) const {
    TheUsedSize() -= nSize;
    if (nCapacity > 0) KeptBlocks::Get().Put(pData, nCapacity);
}

MemoryShortage ShortageOf(const std::bad_alloc& exception) {
    const auto* const beyond = dynamic_cast<const BeyondLimit*>(&exception);
    return beyond ? beyond->m_shortage : MemoryShortage();
}

LargeBlock LargeBlock::Try(u64 nSize) {
    LargeBlock block;
    if (nSize > Left()) return block;
    KeptBlocks& kept = KeptBlocks::Get();
    if (nSize + kept.Size() > Left()) kept.ReleaseAll();
    u64 capacity = 0;
    u8* data = kept.Take(nSize, capacity);
    if (!data) data = TakeFresh(nSize, capacity);
    if (!data && kept.Size() > 0) {
        kept.ReleaseAll();
        data = TakeFresh(nSize, capacity);
    }
    if (!data) return block;
    if (TheFill()) std::memset(data, *TheFill(), nSize);
    block.m_pData = std::unique_ptr<u8, KeepOrFree>(data, KeepOrFree{capacity, nSize});
    TheUsedSize() += nSize;
    return block;
}

LargeBlock LargeBlock::Allocate(u64 nSize) {
    Require(nSize);
    LargeBlock block = Try(nSize);
    if (!block) throw std::bad_alloc();
    return block;
}

void LargeBlock::Require(u64 nTotal) {
    if (nTotal > Left()) throw BeyondLimit({nTotal, Left()});
}

u64 LargeBlock::Limit() {
    return TheLimit();
}

bool LargeBlock::Charge(u64 nSize) {
    if (nSize > Left()) return false;
    KeptBlocks& kept = KeptBlocks::Get();
    if (nSize + kept.Size() > Left()) kept.ReleaseAll();
    TheUsedSize() += nSize;
    return true;
}

void LargeBlock::Discharge(u64 nSize) {
    TheUsedSize() -= nSize;
}

u64 LargeBlock::SetLimit(u64 nLimit) {
    return std::exchange(TheLimit(), nLimit);
}

u64 LargeBlock::Left() {
    return TheLimit() - std::min(TheLimit(), TheUsedSize());
}

u64 LargeBlock::SetKeptLimit(u64 nLimit) {
    return KeptBlocks::Get().SetLimit(nLimit);
}

u64 LargeBlock::KeptSize() {
    return KeptBlocks::Get().Size();
}

void LargeBlock::ReleaseKept() {
    KeptBlocks::Get().ReleaseAll();
}

void LargeBlock::SetFill(std::optional<u8> fill) {
    TheFill() = fill;
}
