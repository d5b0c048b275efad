// Pixel buffers, planes, row tables and whatever else can have a mebibyte: every piece of memory whose size
// follows from a file comes from here, so that one limit holds for all of them together, and for objects
// whose number follows from a file (base/limited_object.h).
//
// Fresh pages cost more than what is mostly done with them. So large blocks stand on huge pages where the
// system has them, and a few that were freed are kept for the next request.
#pragma once

#include "base/types.h"

#include <memory>
#include <new>
#include <optional>

struct KeepOrFree {
    void operator()(u8* pData) const;
    u64 nCapacity = 0;  // bytes that the block really has
    u64 nSize = 0;      // that were asked for
};

// Bytes that were wanted, and those that were left of the limit. The system had no more where the first fit
// into the second.
struct MemoryShortage {
    bool IsOfLimit() const { return nWanted > nLeft; }

    u64 nWanted = 0;
    u64 nLeft = 0;
};

// What is thrown where the limit has no room.
class BeyondLimit : public std::bad_alloc {
  public:
    explicit BeyondLimit(const MemoryShortage& shortage) : m_shortage(shortage) {}
    const char* what() const noexcept override { return "beyond the limit on memory"; }

    MemoryShortage m_shortage;
};

MemoryShortage ShortageOf(const std::bad_alloc& exception);

class LargeBlock {
  public:
    // Holds nothing.
    LargeBlock() = default;

    // A block of nSize bytes with undefined contents, aligned for any scalar type, and for any vector from 64
    // bytes on. It holds nothing when the limit has no room for it or the memory cannot be had; a size of 0
    // gives a block.
    static LargeBlock Try(u64 nSize);

    // The same, but throws BeyondLimit or std::bad_alloc where the block cannot be had.
    static LargeBlock Allocate(u64 nSize);

    // Throws BeyondLimit where the limit has no room for so many bytes: asked before the first of several
    // blocks that are of use together only.
    static void Require(u64 nTotal);

    // The most bytes that all blocks may have together: half of what the process may have, unless set
    // otherwise.
    static u64 Limit();

    // Counts memory that is had elsewhere as if it were blocks, until Discharge is called for it. False, and
    // nothing is counted, where the limit has no room for it.
    static bool Charge(u64 nSize);
    static void Discharge(u64 nSize);

    // Returns the limit before.
    static u64 SetLimit(u64 nLimit);

    // Bytes that the limit has room for.
    static u64 Left();

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
    u64 Size() const { return m_pData ? m_pData.get_deleter().nSize : 0; }

  private:
    std::unique_ptr<u8, KeepOrFree> m_pData;
};
