#include "framework/qt/kit/ini_profile.h"

#include "framework/core/replace_file.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cstdio>
#include <filesystem>

namespace {

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
    if (!QDir().mkpath(folder)) return false;
    const FileLock lock(m_strFolder + "/.lock");
    if (!lock.IsHeld()) return false;
    const QTemporaryDir beside(folder + QStringLiteral("/.new-XXXXXX"));
    const QString copy = beside.filePath(QStringLiteral("settings.ini"));
    std::error_code failed;
    if (!beside.isValid()) return false;
    if (std::filesystem::exists(m_strPath, failed) &&
        !std::filesystem::copy_file(m_strPath, QFile::encodeName(copy).toStdString(), failed))
        return false;

    QSettings settings(copy, QSettings::IniFormat);
    const QString section = QString::fromStdString(strSection);
    ProfileSection entries = Read(settings, section);
    change(entries);
    Write(settings, section, entries);
    // The copy has reached the disk when this returns, so no loss of power leaves an empty file behind.
    settings.sync();
    return settings.status() != QSettings::AccessError &&
           std::rename(QFile::encodeName(copy).constData(), m_strPath.c_str()) == 0;
}
