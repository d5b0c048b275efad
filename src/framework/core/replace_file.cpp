#include "framework/core/replace_file.h"

#include "framework/core/disk_write.h"

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace {

constexpr mode_t NEW_FILE_MODE = 0600;

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
    bool done = fchmod(descriptor, mode) == 0 && WriteAll(descriptor, content.data(), content.size()) &&
                SyncToDisk(descriptor);
    done = close(descriptor) == 0 && done;
    done = done && std::rename(beside.c_str(), target.c_str()) == 0;
    if (!done) unlink(beside.c_str());
    return done;
}
