// How much memory the process may have.
#pragma once

#include "base/types.h"

#include <array>

// Bytes: the least of the machine's memory, of what the process's control groups allow, and of its limit on
// addresses.
u64 MemoryOfProcess();

// "3.2 GiB", or in the unit that leaves something in front of the point. Takes no memory.
using SizeText = std::array<char, 32>;
SizeText ToSizeText(u64 nBytes);

// "It takes 3.2 GiB; 2.0 GiB is left of the limit", in bytes where the two would read the same. Takes no
// memory.
using ShortageText = std::array<char, 96>;
ShortageText ToShortageText(u64 nWanted, u64 nLeft);
