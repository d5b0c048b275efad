#include "framework/core/replace_file.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace {

constexpr mode_t NEW_FILE_MODE = 0600;

bool WriteAll(int nDescriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t count = write(nDescriptor, content.data(), content.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        content.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

// Some disks tell only here that they were full or have failed. Others have nothing to be told.
bool Sync(int nDescriptor) {
    return fsync(nDescriptor) == 0 || errno == EINVAL || errno == EROFS;
}

}  // namespace

bool ReplaceFile(const std::string& strPath, std::string_view content) {
    std::error_code failed;
    std::filesystem::path target = std::filesystem::canonical(strPath, failed);
    if (failed && failed != std::errc::no_such_file_or_directory) return false;
    if (failed) target = strPath;
    const std::string beside = target.parent_path() / ("." + target.filename().string() + ".new");

    constexpr int FLAGS = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    const int descriptor = open(beside.c_str(), FLAGS, NEW_FILE_MODE);
    if (descriptor < 0) return false;
    struct stat before = {};
    const mode_t mode = stat(target.c_str(), &before) == 0 ? before.st_mode & 07777 : NEW_FILE_MODE;
    bool done = fchmod(descriptor, mode) == 0 && WriteAll(descriptor, content) && Sync(descriptor);
    done = close(descriptor) == 0 && done;
    done = done && std::rename(beside.c_str(), target.c_str()) == 0;
    if (!done) unlink(beside.c_str());
    return done;
}
