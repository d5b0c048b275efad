#include "framework/core/disk_write.h"

#include "base/types.h"

#include <cerrno>
#include <unistd.h>

bool WriteAll(int nDescriptor, const void* pData, std::size_t nSize) {
    const auto* next = static_cast<const u8*>(pData);
    while (nSize > 0) {
        const ssize_t count = write(nDescriptor, next, nSize);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        next += count;
        nSize -= static_cast<std::size_t>(count);
    }
    return true;
}

bool SyncToDisk(int nDescriptor) {
    return fsync(nDescriptor) == 0 || errno == EINVAL || errno == EROFS;
}
