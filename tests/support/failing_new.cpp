#include "support/failing_new.h"

#include "base/large_block.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>

// Read by every thread, and written only while requests are to fail.
static FaultyCall g_requests;
static std::optional<u8> g_fill;

FailingNew::FailingNew(const Fault& fault) { g_requests = {.fault = fault}; }

FailingNew::~FailingNew() { g_requests.fault = {}; }

bool FailingNew::HasFailed() { return g_requests.bStruck; }

u64 FailingNew::Requests() { return g_requests.nCalls; }

FilledMemory::FilledMemory(u8 nFill) {
    g_fill = nFill;
    LargeBlock::SetFill(nFill);
}

FilledMemory::~FilledMemory() {
    g_fill.reset();
    LargeBlock::SetFill(std::nullopt);
}

void* operator new(std::size_t size) {
    const bool fails = g_requests.fault.nAt != Fault::NEVER && g_requests.Strikes();
    void* const block = fails ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (!block) throw std::bad_alloc();
    if (g_fill) std::memset(block, *g_fill, size);
    return block;
}

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }

// The sanitizers' own would not come here.
void* operator new[](std::size_t size) { return operator new(size); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
