#include "tools/export/whole_file.h"

#include "base/types.h"
#include "framework/core/disk_write.h"
#include "framework/core/exception.h"
#include "framework/core/path_name.h"
#include "tools/export/byte_sink.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace {

constexpr size_t COPIED_SIZE = 4096;  // bytes at a time
constexpr mode_t MODE = 0666;         // less what the user keeps from others

// Of what has no name yet.
std::string DescriptorPath(int nDescriptor) {
    return "/proc/self/fd/" + std::to_string(nDescriptor);
}

// Calls make(path) with names beside strPath until one is free, and returns that.
template <typename Make>
std::string WithFreeName(const std::string& strPath, const Make& make) {
    const std::string lead = FolderOf(strPath) + ".vistrel-export-" + std::to_string(getpid());
    for (unsigned number = 0;; ++number) {
        std::string path = lead + "-" + std::to_string(number);
        if (make(path)) return path;
        if (errno != EEXIST) throw CFileException("It cannot be written", errno);
    }
}

// Devices, pipes and sockets are what others have use for, and so are links to them and the system's own
// names for what is open. A folder is not replaced in any case.
bool IsSpecial(const std::string& strPath) {
    std::error_code noLink;
    const std::string target = std::filesystem::read_symlink(strPath, noLink).string();
    if (!noLink && target.starts_with("/proc/")) return true;
    struct stat status = {};
    if (stat(strPath.c_str(), &status) != 0) return false;
    return !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

// Without anybody losing a file that has the name. Not every file system can do it the first way.
bool RenameToFree(const char* pszFrom, const char* pszTo) {
    if (renameat2(AT_FDCWD, pszFrom, AT_FDCWD, pszTo, RENAME_NOREPLACE) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    return link(pszFrom, pszTo) == 0 && unlink(pszFrom) == 0;
}

}  // namespace

WholeFile::WholeFile(const std::string& strPath) : m_strPath(strPath) {
    // A nameless file goes by itself when the program is killed. Not every file system has them.
    const std::string folder = FolderOf(strPath);
    const char* const pszFolder = folder.empty() ? "." : folder.c_str();
    m_nDescriptor = open(pszFolder, O_TMPFILE | O_RDWR | O_CLOEXEC, MODE);
    if (m_nDescriptor >= 0 && access(DescriptorPath(m_nDescriptor).c_str(), F_OK) == 0) return;
    if (m_nDescriptor >= 0) close(m_nDescriptor);
    OpenBeside();
}

WholeFile::~WholeFile() {
    close(m_nDescriptor);
    if (!m_strBeside.empty()) unlink(m_strBeside.c_str());
}

void WholeFile::OpenBeside() {
    m_strBeside = WithFreeName(m_strPath, [this](const std::string& strName) {
        m_nDescriptor = open(strName.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, MODE);
        return m_nDescriptor >= 0;
    });
}

void WholeFile::LinkBeside() {
    const std::string nameless = DescriptorPath(m_nDescriptor);
    m_strBeside = WithFreeName(m_strPath, [&](const std::string& strName) {
        return linkat(AT_FDCWD, nameless.c_str(), AT_FDCWD, strName.c_str(), AT_SYMLINK_FOLLOW) == 0;
    });
}

bool WholeFile::CopyInto(int nTarget) const {
    ByteSink sink(nTarget);
    std::array<u8, COPIED_SIZE> bytes;
    off_t at = 0;
    ssize_t count = 0;
    while ((count = pread(m_nDescriptor, bytes.data(), bytes.size(), at)) > 0) {
        if (!sink.Write(bytes.data(), static_cast<size_t>(count))) return false;
        at += count;
    }
    return count == 0 && sink.Flush();
}

bool WholeFile::FillEmpty() {
    const int target = open(m_strPath.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (target < 0) return false;
    struct stat status = {};
    const bool empty = fstat(target, &status) == 0 && S_ISREG(status.st_mode) && status.st_size == 0;
    const bool copied = empty && CopyInto(target) && SyncToDisk(target);
    const int error = errno;
    if (empty && !copied && ftruncate(target, 0) != 0) unlink(m_strPath.c_str());
    close(target);
    if (empty && !copied) throw CFileException("It cannot be written", error);
    return copied;
}

void WholeFile::Put(bool bReplace) {
    if (bReplace && IsSpecial(m_strPath)) throw CFileException("It is no file that could be replaced");
    if (!SyncToDisk(m_nDescriptor)) throw CFileException("It cannot be written", errno);
    if (m_strBeside.empty()) LinkBeside();
    const bool put = bReplace ? std::rename(m_strBeside.c_str(), m_strPath.c_str()) == 0
                              : RenameToFree(m_strBeside.c_str(), m_strPath.c_str());
    if (!put) throw CFileException("It cannot be written", errno);
    m_strBeside.clear();
}
