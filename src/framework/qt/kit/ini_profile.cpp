#include "framework/qt/kit/ini_profile.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
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

// Puts what the one file holds into the other at once.
bool Replace(const QString& path, const QString& by) {
    QFile source(by);
    QSaveFile file(path);
    if (!source.open(QIODevice::ReadOnly) || !file.open(QIODevice::WriteOnly)) return false;
    file.write(source.readAll());
    return file.commit();
}

ProfileSection Read(QSettings& settings, const QString& section) {
    ProfileSection entries;
    settings.beginGroup(section);
    for (const QString& name : settings.childKeys())
        entries[name.toStdString()] = settings.value(name).toString().toStdString();
    settings.endGroup();
    return entries;
}

void Write(QSettings& settings, const QString& section, const ProfileSection& entries) {
    settings.remove(section);
    settings.beginGroup(section);
    for (const auto& [name, text] : entries)
        settings.setValue(QString::fromStdString(name), QString::fromStdString(text));
    settings.endGroup();
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
    QSettings settings(QFile::decodeName(m_strPath.c_str()), QSettings::IniFormat);
    return Read(settings, QString::fromStdString(strSection));
}

// The toolkit's own lock outlives a program that is killed, and its settings of one file are shared within
// the program and may be old. So it works on a copy in a folder that nobody else knows.
bool IniProfile::ChangeSection(const std::string& strSection,
                               const std::function<void(ProfileSection&)>& change) {
    const QString folder = QFile::decodeName(m_strFolder.c_str());
    const QString path = QFile::decodeName(m_strPath.c_str());
    if (!QDir().mkpath(folder)) return false;
    const FileLock lock(m_strFolder + "/.lock");
    if (!lock.IsHeld()) return false;
    const QTemporaryDir beside(folder + QStringLiteral("/.new-XXXXXX"));
    const QString copy = beside.filePath(QStringLiteral("settings.ini"));
    if (!beside.isValid() || (QFile::exists(path) && !QFile::copy(path, copy))) return false;

    QSettings settings(copy, QSettings::IniFormat);
    const QString section = QString::fromStdString(strSection);
    ProfileSection entries = Read(settings, section);
    change(entries);
    Write(settings, section, entries);
    settings.sync();
    return settings.status() != QSettings::AccessError && Replace(path, copy);
}
