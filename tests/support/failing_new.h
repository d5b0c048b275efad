// What becomes of requests to operator new while one of these lives.
#pragma once

#include "support/fault.h"

// Requests fail as the fault says, whose way is always to throw. One at a time.
struct FailingNew {
    explicit FailingNew(const Fault& fault);
    FailingNew(u64 nSucceeding, bool bOnce) : FailingNew(Fault{nSucceeding, bOnce}) {}
    FailingNew(const FailingNew&) = delete;
    ~FailingNew();

    static bool HasFailed();
    static u64 Requests();  // since the last one was made
};

// All memory that is had, large blocks too, comes filled with this byte.
struct FilledMemory {
    explicit FilledMemory(u8 nFill);
    FilledMemory(const FilledMemory&) = delete;
    ~FilledMemory();
};
