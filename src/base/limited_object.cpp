#include "base/limited_object.h"

#include "base/large_block.h"

#include <new>

namespace {

constexpr std::size_t HEAP_HEAD = 16;  // bytes that the heap takes for each of its pieces

}  // namespace

// Figures say nothing of an object that is one of millions, so that none go with the exception.
void* LimitedObject::operator new(std::size_t nSize) {
    if (!LargeBlock::Charge(nSize + HEAP_HEAD)) throw std::bad_alloc();
    try {
        return ::operator new(nSize);
    } catch (...) {
        LargeBlock::Discharge(nSize + HEAP_HEAD);
        throw;
    }
}

void LimitedObject::operator delete(void* pObject, std::size_t nSize) noexcept {
    ::operator delete(pObject);
    LargeBlock::Discharge(nSize + HEAP_HEAD);
}
