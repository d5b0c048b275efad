// By what a file is told from what stood under its name before.
#pragma once

#include "base/types.h"

#include <optional>
#include <string>

struct stat;

struct FileStamp {
    u64 nDevice = 0;
    u64 nInode = 0;
    u64 nSize = 0;         // bytes
    i64 nSeconds = 0;      // of the last write, since 1970
    i64 nNanoseconds = 0;  // and these

    bool operator==(const FileStamp&) const = default;
};

FileStamp ToFileStamp(const struct stat& status);

// Nothing where there is no such file, or it cannot be asked.
std::optional<FileStamp> GetFileStamp(const std::string& strPath);
