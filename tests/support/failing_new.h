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
