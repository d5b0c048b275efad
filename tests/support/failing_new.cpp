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

#if defined(__has_feature)
#define KNOWS_OF_MEMORY __has_feature(memory_sanitizer)
#else
#define KNOWS_OF_MEMORY 0
#endif

// The memory sanitizer's own have to stay: no request fails then, and nothing is filled.
#if !KNOWS_OF_MEMORY

// Every form of it, since those of the sanitizers would not come here, and do not know what comes from here.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    const bool fails = g_requests.fault.nAt != Fault::NEVER && g_requests.Strikes();
    void* const block = fails ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (block && g_fill) std::memset(block, *g_fill, size);
    return block;
}

void* operator new(std::size_t size) {
    void* const block = operator new(size, std::nothrow);
    if (!block) throw std::bad_alloc();
    return block;
}

void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return operator new(size, std::nothrow); }

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { std::free(block); }

#endif
