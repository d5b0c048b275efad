#include "framework/qt/kit/ini_profile.h"

#include "base/types.h"
#include "framework/core/exception.h"
#include "framework/core/ini_text.h"
#include "framework/core/regular_file.h"
#include "framework/core/replace_file.h"

#include <QFile>
#include <QStandardPaths>

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/file.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace {

// A lock is held for as long as it takes to write a small file. Whoever holds it longer has been stopped, and
// a window does not wait for that.
constexpr int LOCK_TRIES = 200;
constexpr std::chrono::milliseconds LOCK_PAUSE(10);

// A lock between programs, by way of a file that is made for it and stays. The system gives it back whatever
// way its owner ends.
class FileLock {
  public:
    // Waits for a while if another program has it.
    explicit FileLock(const std::string& strPath)
        : m_nDescriptor(open(strPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
        if (m_nDescriptor < 0) return;
        for (int i = 0; i < LOCK_TRIES && !m_bHeld; ++i) {
            if (i > 0) std::this_thread::sleep_for(LOCK_PAUSE);
            m_bHeld = flock(m_nDescriptor, LOCK_EX | LOCK_NB) == 0;
            // Not every file system has locks, and some have another word for one that is held.
            const bool isOthers = errno == EWOULDBLOCK || errno == EACCES || errno == EINTR;
            if (!m_bHeld && !isOthers) return;
        }
    }
    ~FileLock() {
        if (m_nDescriptor >= 0) close(m_nDescriptor);
    }
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    bool IsHeld() const { return m_bHeld; }

  private:
    int m_nDescriptor;
    bool m_bHeld = false;
};

// More than settings come to. What is larger is none of ours, and stays.
constexpr u64 MAX_SIZE = 4 * 1024 * 1024;

// Nothing where there is a file that cannot be read.
std::optional<IniSections> ReadFile(const std::string& strPath) {
    try {
        CRegularFile file(strPath);
        if (file.GetLength() > MAX_SIZE) return std::nullopt;
        std::string text(static_cast<std::size_t>(file.GetLength()), '\0');
        text.resize(file.Read(text.data(), static_cast<u32>(text.size())));
        return ParseIni(text);
    } catch (const CFileException& exception) {
        if (exception.m_nError == ENOENT) return IniSections();
        return std::nullopt;
    }
}

}  // namespace

IniProfile::IniProfile(const std::string& strCompany, const std::string& strApplication) {
    QString company = QString::fromStdString(strCompany);
    company.replace(u'\\', u'/');
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u'/' + company;
    m_strFolder = QFile::encodeName(folder).toStdString();
    m_strPath = m_strFolder + "/" + strApplication + ".ini";
}

ProfileSection IniProfile::ReadSection(const std::string& strSection) const {
    const std::optional<IniSections> sections = ReadFile(m_strPath);
    if (!sections) return {};
    const auto section = sections->find(strSection);
    return section == sections->end() ? ProfileSection() : section->second;
}

// Not by the toolkit's settings: they take a file that cannot be read for an empty one, and report as written
// what found no room on the disk. Their lock outlives a program that is killed.
bool IniProfile::ChangeSection(const std::string& strSection,
                               const std::function<void(ProfileSection&)>& change) {
    std::error_code failed;
    std::filesystem::create_directories(m_strFolder, failed);
    if (failed) return false;
    const FileLock lock(m_strFolder + "/.lock");
    if (!lock.IsHeld()) return false;
    std::optional<IniSections> sections = ReadFile(m_strPath);
    if (!sections) return false;
    change((*sections)[strSection]);
    return ReplaceFile(m_strPath, FormatIni(*sections));
}
