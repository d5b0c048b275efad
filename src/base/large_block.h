// Pixel buffers, planes, row tables and whatever else can have a mebibyte: every piece of memory whose size
// follows from a file comes from here, so that one limit holds for all of them.
//
// Fresh pages cost more than what is mostly done with them. So large blocks stand on huge pages where the
// system has them, and a few that were freed are kept for the next request.
#pragma once

#include "base/types.h"

#include <memory>
#include <optional>

struct KeepOrFree {
    void operator()(u8* pData) const;
    u64 nCapacity = 0;  // bytes that the block really has
};

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

    // The most bytes of freed blocks that are kept together; 0 where sanitizers look for what is freed too
    // early. Returns the limit before.
    static u64 SetKeptLimit(u64 nLimit);
    static u64 KeptSize();

    // Gives them back to the system.
    static void ReleaseKept();

    // For tests: every block is handed out filled with this byte, until nothing is given.
    static void SetFill(std::optional<u8> fill);

    explicit operator bool() const { return m_pData != nullptr; }
    u8* Data() const { return m_pData.get(); }
    u64 Size() const { return m_nSize; }

  private:
    std::unique_ptr<u8, KeepOrFree> m_pData;
    u64 m_nSize = 0;
};
