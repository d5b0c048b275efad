#include "support/failing_new.h"

#include "base/large_block.h"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <optional>

static constexpr u64 NEVER = std::numeric_limits<u64>::max();
static u64 g_nRequests = 0, g_nFailAt = NEVER;
static bool g_bOnce = false;
static std::optional<u8> g_fill;

FailingNew::FailingNew(u64 nSucceeding, bool bOnce) {
    g_nRequests = 0;
    g_bOnce = bOnce;
    g_nFailAt = nSucceeding;
}

FailingNew::~FailingNew() { g_nFailAt = NEVER; }

FilledMemory::FilledMemory(u8 nFill) {
    g_fill = nFill;
    LargeBlock::SetFill(nFill);
}

FilledMemory::~FilledMemory() {
    g_fill.reset();
    LargeBlock::SetFill(std::nullopt);
}

bool FailingNew::HasFailed() { return g_nRequests > g_nFailAt; }

void* operator new(std::size_t size) {
    const u64 request = g_nFailAt == NEVER ? 0 : g_nRequests++;
    const bool fails = g_bOnce ? request == g_nFailAt : request >= g_nFailAt;
    void* const block = fails && g_nFailAt != NEVER ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (!block) throw std::bad_alloc();
    if (g_fill) std::memset(block, *g_fill, size);
    return block;
}

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
