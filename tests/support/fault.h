// Faults put in on purpose: at which call, whether those after it fail as well, and what they do instead.
#pragma once

#include "base/types.h"

#include <limits>

struct Fault {
    static constexpr u64 NEVER = std::numeric_limits<u64>::max();
    enum class Way : u8 { Throw, Half, Nothing };

    u64 nAt = NEVER;  // calls that succeed
    bool bOnce = false;
    Way way = Way::Throw;
};

// One kind of call, counted, and the fault that waits among them.
struct FaultyCall {
    // Counts a call. Whether the fault strikes it.
    bool Strikes() {
        const bool strikes = fault.bOnce ? nCalls == fault.nAt : nCalls >= fault.nAt;
        ++nCalls;
        bStruck = bStruck || strikes;
        return strikes;
    }

    Fault fault = {};
    u64 nCalls = 0;
    bool bStruck = false;
};
