// A process that is about to read a file that nobody has looked at gives up what it does not need for that.
#pragma once

#include "base/types.h"

constexpr u64 MOST_ADDRESSES = u64{2} << 30;  // bytes of address space
constexpr u64 MOST_SECONDS = 10;              // of the processor's time
constexpr u64 MOST_OUTPUT = u64{64} << 20;    // bytes, more than the largest thumbnail has

// Of the processor's time, what a process that is locked in may take: less than MOST_SECONDS where its user
// allows less.
u64 SecondsOfLockedIn();

// From now on the process may read nInput by pread, write to nOutput and to standard error, to files up to
// MOST_OUTPUT, have memory up to MOST_ADDRESSES that is no code, close what is open and end; whatever else it
// asks of the system ends it, as does what takes more than SecondsOfLockedIn, or a file that grows beyond.
// What this program finds out from the system once is found out before. False where the system cannot lock it
// in; nothing may be read then.
bool LockIn(int nInput, int nOutput);
