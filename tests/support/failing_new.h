// As long as it lives, a request to operator new fails: the one after nSucceeding others, and every later one
// too unless bOnce. One at a time.
#pragma once

#include "base/types.h"

struct FailingNew {
    FailingNew(u64 nSucceeding, bool bOnce);
    FailingNew(const FailingNew&) = delete;
    ~FailingNew();

    static bool HasFailed();
};

// As long as it lives, all memory that is had, large blocks too, comes filled with this byte.
struct FilledMemory {
    explicit FilledMemory(u8 nFill);
    FilledMemory(const FilledMemory&) = delete;
    ~FilledMemory();
};
