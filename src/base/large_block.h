// Pixel buffers, planes and row tables: every piece of memory whose size follows from a file comes from
// here, so that one limit holds for all of them.
#pragma once

#include "base/types.h"

#include <cstdlib>
#include <memory>

class LargeBlock {
  public:
    // Holds nothing.
    LargeBlock() = default;

    // A block of nSize bytes with undefined contents, aligned for any scalar or vector type; one that holds
    // nothing when nSize is above Limit() or the memory cannot be had. A size of 0 gives a block.
    static LargeBlock Try(u64 nSize);

    // The same, but throws std::bad_alloc where the block cannot be had.
    static LargeBlock Allocate(u64 nSize);

    // The most bytes that a single block may have: half of the machine's physical memory, unless set
    // otherwise.
    static u64 Limit();

    // Returns the limit before.
    static u64 SetLimit(u64 nLimit);

    explicit operator bool() const { return m_pData != nullptr; }
    u8* Data() const { return m_pData.get(); }
    u64 Size() const { return m_nSize; }

  private:
    struct Free {
        void operator()(u8* pData) const { std::free(pData); }
    };

    std::unique_ptr<u8, Free> m_pData;
    u64 m_nSize = 0;
};
