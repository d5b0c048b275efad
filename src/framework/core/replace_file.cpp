#include "framework/core/replace_file.h"

#include "base/types.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

// A lock is held for as long as it takes to write a small file. Whoever holds it longer has been stopped, and
// a window does not wait for that.
constexpr int LOCK_TRIES = 200;
constexpr std::chrono::milliseconds LOCK_PAUSE(10);

bool WriteAll(int nDescriptor, const std::string& content) {
    std::size_t done = 0;
    while (done < content.size()) {
        const ssize_t count = write(nDescriptor, content.data() + done, content.size() - done);
        if (count > 0)
            done += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            return false;
    }
    return fsync(nDescriptor) == 0;
}

}  // namespace

FileLock::FileLock(const std::string& strPath)
    : m_nDescriptor(open(strPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
    if (m_nDescriptor < 0) return;
    for (int i = 0; i < LOCK_TRIES && !m_bHeld; ++i) {
        if (i > 0) std::this_thread::sleep_for(LOCK_PAUSE);
        m_bHeld = flock(m_nDescriptor, LOCK_EX | LOCK_NB) == 0;
    }
}

FileLock::~FileLock() {
    if (m_nDescriptor >= 0) close(m_nDescriptor);
}

bool ReplaceFile(const std::string& strPath, const std::string& strContent) {
    std::string beside = strPath + ".XXXXXX";
    const int descriptor = mkostemp(beside.data(), O_CLOEXEC);
    if (descriptor < 0) return false;
    bool done = fchmod(descriptor, 0644) == 0 && WriteAll(descriptor, strContent);
    done = close(descriptor) == 0 && done;
    done = done && std::rename(beside.c_str(), strPath.c_str()) == 0;
    if (!done) unlink(beside.c_str());
    return done;
}

bool HasContent(const std::string& strPath, const std::string& strContent) {
    std::ifstream file(strPath, std::ios::binary);
    return file && std::string(std::istreambuf_iterator<char>(file), {}) == strContent;
}
