#include "framework/qt/program/shell_file_types.h"

#include "framework/core/ascii.h"
#include "framework/core/resource.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>
#include <cassert>
#include <sstream>
#include <string_view>

namespace {

bool IsPlain(char c) {
    return IsAsciiAlphanumeric(c) || std::string_view("/._-").find(c) != std::string_view::npos;
}

// In quotes, and with a backslash before what means something there all the same.
std::string QuoteArgument(const std::string& strWord) {
    if (std::ranges::all_of(strWord, IsPlain)) return strWord;
    std::string quoted = "\"";
    for (const char c : strWord) {
        if (std::string_view("\"`$\\").find(c) != std::string_view::npos) quoted += '\\';
        quoted += c;
        if (c == '%') quoted += c;
    }
    return quoted + "\"";
}

// Values of a desktop entry take one line and are escaped once more, whatever is in them.
std::string EscapeValue(const std::string& strValue) {
    std::string escaped;
    for (const char c : strValue) {
        if (c == '\n')
            escaped += "\\n";
        else
            escaped.append(c == '\\' ? 2 : 1, c);
    }
    return escaped;
}

bool HasContent(const QString& path, const QByteArray& content) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.readAll() == content;
}

bool ReplaceFile(const QString& path, const QByteArray& content) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return false;
    file.write(content);
    return file.commit();
}

// Runs beside the program, which has no use for its answer.
void RunDetached(const QString& program, const QString& folder) {
    QProcess process;
    process.setProgram(program);
    process.setArguments({folder});
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.startDetached();
}

// One of the files by which the desktop knows a program, and the command that gathers what all of them say.
struct ShellFile {
    QString folder;
    QString name;
    QByteArray text;
    QString gatherer;
    QString gathered;  // the folder that it is called with

    QString GetPath() const { return folder + u'/' + name; }
};

void Write(const ShellFile& file) {
    const QString path = file.GetPath();
    if (HasContent(path, file.text) || !QDir().mkpath(file.folder) || !ReplaceFile(path, file.text)) return;
    RunDetached(file.gatherer, file.gathered);
}

void Remove(const ShellFile& file) {
    if (QFile::remove(file.GetPath())) RunDetached(file.gatherer, file.gathered);
}

// The user's own folder can be named among those of all users, too, and by another path.
bool IsInstalledForAll(const QString& userFolder, const QString& entry) {
    const QString user = QFileInfo(userFolder).canonicalFilePath();
    const QStringList folders = QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
    return std::ranges::any_of(folders, [&](const QString& folder) {
        return QFile::exists(folder + u'/' + entry) && QFileInfo(folder).canonicalFilePath() != user;
    });
}

// An installation into the user's own folder; no entry that is written here says so.
bool IsInstalledForUser(const QString& path) {
    QFile entry(path);
    return entry.open(QIODevice::ReadOnly) && entry.readAll().contains("\nDBusActivatable=true\n");
}

}  // namespace

std::string AfxMakeDesktopEntry(const std::string& strEntry, const std::string& strProgram) {
    static constexpr std::string_view USER = "#user";
    std::string made;
    std::istringstream lines(strEntry);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(USER)) {
            std::string installed;
            std::getline(lines, installed);
            line.erase(0, USER.size() + 1);
        }
        if (line.empty() || line.starts_with('#')) continue;
        if (line.starts_with("TryExec="))
            line = "TryExec=" + EscapeValue(strProgram);
        else if (line.starts_with("Exec="))
            line.replace(0, line.find(' '), "Exec=" + EscapeValue(QuoteArgument(strProgram)));
        made += line + "\n";
    }
    return made;
}

void AfxRegisterShellFileTypes(u32 nIDIcon) {
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QString name = QString::fromStdString(AfxLoadString(AFX_IDS_SHELL_NAME));
    const QString mime = data + QStringLiteral("/mime");
    const QString entries = data + QStringLiteral("/applications");
    const QString icons = data + QStringLiteral("/icons/hicolor");
    const QByteArray program = QFile::encodeName(QCoreApplication::applicationFilePath());
    const PictureResource* const icon = AfxFindPicture(nIDIcon);
    assert(icon);
    // The desktop looks at the time of the theme's folder to see whether there are new icons in it.
    const ShellFile files[] = {
        {icons + QStringLiteral("/scalable/apps"), name + QStringLiteral(".svg"), icon->pszSvg,
         QStringLiteral("touch"), icons},
        {mime + QStringLiteral("/packages"), name + QStringLiteral(".xml"),
         QByteArray::fromStdString(AfxLoadString(AFX_IDS_SHELL_PACKAGE)),
         QStringLiteral("update-mime-database"), mime},
        {entries, name + QStringLiteral(".desktop"),
         QByteArray::fromStdString(
             AfxMakeDesktopEntry(AfxLoadString(AFX_IDS_SHELL_ENTRY), program.toStdString())),
         QStringLiteral("update-desktop-database"), entries},
    };
    const QString entry = QStringLiteral("applications/") + name + QStringLiteral(".desktop");
    if (IsInstalledForUser(data + u'/' + entry)) return;
    if (IsInstalledForAll(data, entry)) {
        std::ranges::for_each(files, Remove);
    } else if (QUtf8StringView(program).isValidUtf8()) {
        // A path that is no UTF-8 cannot stand in an entry.
        std::ranges::for_each(files, Write);
    }
}
