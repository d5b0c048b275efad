// Preloaded, makes the system deliver fewer bytes of a file than were asked for: 1 to 100 of them.

#include <algorithm>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

ssize_t ReadSome(int nDescriptor, void* pOut, size_t nCount, off_t nPosition) {
    static size_t most = 0;
    most = most % 100 + 1;
    return syscall(SYS_pread64, nDescriptor, pOut, std::min(nCount, most), nPosition);
}

}  // namespace

// By all the names that a program may know it by.
extern "C" {

ssize_t pread(int nDescriptor, void* pOut, size_t nCount, off_t nPosition) {
    return ReadSome(nDescriptor, pOut, nCount, nPosition);
}

ssize_t pread64(int nDescriptor, void* pOut, size_t nCount, off_t nPosition) {
    return ReadSome(nDescriptor, pOut, nCount, nPosition);
}

ssize_t __pread_chk(int nDescriptor, void* pOut, size_t nCount, off_t nPosition, size_t) {
    return ReadSome(nDescriptor, pOut, nCount, nPosition);
}

ssize_t __pread64_chk(int nDescriptor, void* pOut, size_t nCount, off_t nPosition, size_t) {
    return ReadSome(nDescriptor, pOut, nCount, nPosition);
}
}
