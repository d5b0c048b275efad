// Bytes to the disk, by calls that are each asked how they went. errno says what went wrong.
#pragma once

#include <cstddef>

// False when the file did not take everything.
bool WriteAll(int nDescriptor, const void* pData, std::size_t nSize);

// Has the disk take what was written. Some tell only here that they were full or have failed; others have
// nothing to be told.
bool SyncToDisk(int nDescriptor);
