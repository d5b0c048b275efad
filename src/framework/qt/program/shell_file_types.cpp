#include "framework/qt/program/shell_file_types.h"

#include "framework/core/ascii.h"
#include "framework/core/resource.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>
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

// Puts the text into a file of this folder, and has what the desktop gathers from all such files gathered
// anew.
void Register(const QString& folder, const QString& name, const QByteArray& text, const QString& gatherer,
              const QString& gathered) {
    const QString path = folder + u'/' + name;
    if (HasContent(path, text) || !QDir().mkpath(folder) || !ReplaceFile(path, text)) return;
    RunDetached(gatherer, gathered);
}

// The desktop looks at the time of the theme's folder to see whether there are new icons in it.
void RegisterIcon(const QString& data, const QString& name, const PictureResource& picture) {
    const QString theme = QStringLiteral("/icons/hicolor");
    const QString folder = theme + QStringLiteral("/scalable/apps");
    for (const QString& other : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation))
        if (other != data && QFile::exists(other + folder + u'/' + name)) return;
    Register(data + folder, name, picture.pszSvg, QStringLiteral("touch"), data + theme);
}

}  // namespace

std::string AfxMakeDesktopEntry(const std::string& strEntry, const std::string& strProgram) {
    std::string made;
    std::istringstream lines(strEntry);
    for (std::string line; std::getline(lines, line); made += line + "\n") {
        if (line.starts_with("TryExec="))
            line = "TryExec=" + EscapeValue(strProgram);
        else if (line.starts_with("Exec="))
            line.replace(0, line.find(' '), "Exec=" + EscapeValue(QuoteArgument(strProgram)));
    }
    return made;
}

// A path that is no UTF-8 cannot stand in either text: nothing is registered then.
void AfxRegisterShellFileTypes(u32 nIDIcon) {
    const QByteArray program = QFile::encodeName(QCoreApplication::applicationFilePath());
    if (!QUtf8StringView(program).isValidUtf8()) return;
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QString name = QString::fromStdString(AfxLoadString(AFX_IDS_SHELL_NAME));
    const QString mime = data + QStringLiteral("/mime");
    const QString entries = data + QStringLiteral("/applications");
    const std::string package = AfxLoadString(AFX_IDS_SHELL_PACKAGE);
    const std::string entry = AfxMakeDesktopEntry(AfxLoadString(AFX_IDS_SHELL_ENTRY), program.toStdString());
    if (const PictureResource* const icon = AfxFindPicture(nIDIcon))
        RegisterIcon(data, name + QStringLiteral(".svg"), *icon);
    Register(mime + QStringLiteral("/packages"), name + QStringLiteral(".xml"),
             QByteArray::fromStdString(package), QStringLiteral("update-mime-database"), mime);
    Register(entries, name + QStringLiteral(".desktop"), QByteArray::fromStdString(entry),
             QStringLiteral("update-desktop-database"), entries);
}
