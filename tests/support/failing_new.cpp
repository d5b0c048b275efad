#include "support/failing_new.h"

#include <cstdlib>
#include <limits>
#include <new>

static constexpr u64 NEVER = std::numeric_limits<u64>::max();
static u64 g_nRequests = 0, g_nFailAt = NEVER;
static bool g_bOnce = false;

FailingNew::FailingNew(u64 nSucceeding, bool bOnce) {
    g_nRequests = 0;
    g_bOnce = bOnce;
    g_nFailAt = nSucceeding;
}

FailingNew::~FailingNew() { g_nFailAt = NEVER; }

bool FailingNew::HasFailed() { return g_nRequests > g_nFailAt; }

void* operator new(std::size_t size) {
    const u64 request = g_nFailAt == NEVER ? 0 : g_nRequests++;
    const bool fails = g_bOnce ? request == g_nFailAt : request >= g_nFailAt;
    void* const block = fails && g_nFailAt != NEVER ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (!block) throw std::bad_alloc();
    return block;
}

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
