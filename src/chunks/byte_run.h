// ByteRun1: a control byte n from 0 to 127 is followed by n + 1 bytes that stand for themselves, one from 129
// to 255 by a byte that stands for 257 - n copies of itself; 128 stands for nothing.
#pragma once

#include "base/types.h"

struct ByteRunSource {
    const u8* pCursor;
    u32 nRemaining;  // bytes from the cursor on
};

// Unpacks the nSize bytes of one row and moves the source past what it consumed. A run may go on from one
// plane row to the next, but ends with the row: of an unfinished one, the bytes not used (for a repeat, the
// repeated byte) are left to the next row, whose first control byte they become. False, with the source at
// its end, when it ends before the row is complete.
bool UnpackByteRun(u8* pOut, u32 nSize, ByteRunSource& source);

// How many bytes all of nSize packed bytes stand for, rows or not.
u64 ByteRunLength(const u8* pPacked, u32 nSize);

// The least number of packed bytes that nSize bytes of a row can come from: two for each full run of 128, and
// a run that the row's end cuts off costs its control byte alone.
constexpr u64 LeastByteRunSize(u64 nSize) {
    return nSize / 128 * 2 + (nSize % 128 != 0 ? 1 : 0);
}
