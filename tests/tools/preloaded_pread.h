// Exports, by all the names that a program may know pread by, what is preloaded in its place.
#pragma once

#include <sys/types.h>

// Defined by the library.
ssize_t ReadInstead(int nDescriptor, void* pOut, size_t nCount, off_t nPosition);

extern "C" {

ssize_t pread(int nDescriptor, void* pOut, size_t nCount, off_t nPosition) {
    return ReadInstead(nDescriptor, pOut, nCount, nPosition);
}

ssize_t pread64(int nDescriptor, void* pOut, size_t nCount, off_t nPosition) {
    return ReadInstead(nDescriptor, pOut, nCount, nPosition);
}

ssize_t __pread_chk(int nDescriptor, void* pOut, size_t nCount, off_t nPosition, size_t) {
    return ReadInstead(nDescriptor, pOut, nCount, nPosition);
}

ssize_t __pread64_chk(int nDescriptor, void* pOut, size_t nCount, off_t nPosition, size_t) {
    return ReadInstead(nDescriptor, pOut, nCount, nPosition);
}
}
