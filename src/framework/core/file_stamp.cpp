#include "framework/core/file_stamp.h"

#include <sys/stat.h>

FileStamp ToFileStamp(const struct stat& status) {
    return {.nDevice = status.st_dev,
            .nInode = status.st_ino,
            .nSize = static_cast<u64>(status.st_size),
            .nSeconds = status.st_mtim.tv_sec,
            .nNanoseconds = status.st_mtim.tv_nsec};
}

std::optional<FileStamp> GetFileStamp(const std::string& strPath) {
    struct stat status = {};
    if (stat(strPath.c_str(), &status) != 0) return std::nullopt;
    return ToFileStamp(status);
}
