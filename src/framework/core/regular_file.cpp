#include "framework/core/regular_file.h"

#include "framework/core/exception.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const char* KindName(mode_t nMode) {
    if (S_ISDIR(nMode)) return "It is a folder";
    if (S_ISFIFO(nMode)) return "It is a pipe";
    if (S_ISSOCK(nMode)) return "It is a socket";
    return "It is a device";
}

void RefuseUnlessRegular(const struct stat& status) {
    if (!S_ISREG(status.st_mode)) throw CFileException(KindName(status.st_mode));
}

// The answer of a system call, which is made again where a signal interrupted it.
template <typename Call>
auto Uninterrupted(const Call& call) {
    auto answer = call();
    while (answer < 0 && errno == EINTR) answer = call();
    return answer;
}

constexpr const char* READING = "It cannot be read";

}  // namespace

CRegularFile::CRegularFile(const std::string& strPath) {
    // Looked at before it is opened, because opening a device can already have an effect, and once more
    // after that, because another file can have taken the name in between.
    struct stat status = {};
    if (Uninterrupted([&] { return stat(strPath.c_str(), &status); }) != 0) throw CFileException(errno);
    RefuseUnlessRegular(status);
    constexpr int FLAGS = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    m_nDescriptor = Uninterrupted([&] { return open(strPath.c_str(), FLAGS); });
    if (m_nDescriptor < 0) throw CFileException(errno);
    try {
        if (Uninterrupted([&] { return fstat(m_nDescriptor, &status); }) != 0) throw CFileException(errno);
        RefuseUnlessRegular(status);
        m_stamp = ToFileStamp(status);
        m_pWindow = std::make_unique_for_overwrite<u8[]>(std::min<u64>(m_stamp.nSize, WINDOW_SIZE));
    } catch (...) {
        close(m_nDescriptor);
        throw;
    }
}

CRegularFile::~CRegularFile() {
    close(m_nDescriptor);
}

u64 CRegularFile::Seek(i64 nOffset, SeekFrom from) {
    const u64 origin = from == begin ? 0 : from == current ? m_nPosition : m_stamp.nSize;
    const u64 target = origin + static_cast<u64>(nOffset);
    const bool wrapped = nOffset < 0 ? target > origin : target < origin;
    if (wrapped || target > static_cast<u64>(std::numeric_limits<i64>::max()))
        throw CFileException("It has no such position");
    m_nPosition = target;
    return m_nPosition;
}

u32 CRegularFile::Read(void* pData, u32 nCount) {
    u8* const out = static_cast<u8*>(pData);
    u32 done = CopyFromWindow(out, nCount);
    if (nCount - done > MOST_BY_WINDOW) {
        const u32 got = ReadAt(m_nPosition, out + done, nCount - done);
        m_nPosition += got;
        done += got;
    } else if (done < nCount) {
        FillWindow();
        done += CopyFromWindow(out + done, nCount - done);
    }
    return done;
}

u32 CRegularFile::CopyFromWindow(void* pData, u32 nCount) {
    if (m_nPosition < m_nWindowStart || m_nPosition - m_nWindowStart >= m_nWindowSize) return 0;
    const u32 offset = static_cast<u32>(m_nPosition - m_nWindowStart);
    const u32 count = std::min(nCount, m_nWindowSize - offset);
    std::memcpy(pData, m_pWindow.get() + offset, count);
    m_nPosition += count;
    return count;
}

void CRegularFile::FillWindow() {
    m_nWindowSize = 0;
    m_nWindowStart = m_nPosition - std::min<u64>(m_nPosition, LOOK_BACK);
    m_nWindowSize =
        ReadAt(m_nWindowStart, m_pWindow.get(), static_cast<u32>(std::min<u64>(m_stamp.nSize, WINDOW_SIZE)));
}

// Fewer bytes than asked for mean that the file ends there.
u32 CRegularFile::ReadAt(u64 nPosition, void* pData, u32 nCount) const {
    if (nPosition >= m_stamp.nSize) return 0;
    const u32 wanted = static_cast<u32>(std::min<u64>(nCount, m_stamp.nSize - nPosition));
    u32 done = 0;
    while (done < wanted) {
        if (s_beforeRead) s_beforeRead();
        const ssize_t got = Uninterrupted([&] {
            return pread(m_nDescriptor, static_cast<u8*>(pData) + done, wanted - done,
                         static_cast<off_t>(nPosition + done));
        });
        if (got < 0) throw CFileException(READING, errno);
        if (got == 0) break;
        done += static_cast<u32>(got);
    }
    return done;
}
