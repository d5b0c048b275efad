#include "framework/qt/program/shell_file_types.h"

#include "framework/core/replace_file.h"
#include "framework/core/resource.h"
#include "framework/core/shell_registration.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

namespace {

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
void Register(const QString& folder, const QString& name, const std::string& text, const QString& gatherer,
              const QString& gathered) {
    const std::string path = QFile::encodeName(folder + u'/' + name).toStdString();
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

// Both texts are UTF-8, which a path need not be.
void AfxRegisterShellFileTypes(const ShellRegistration& registration, u32 nIDIcon) {
    const QByteArray program = QFile::encodeName(QCoreApplication::applicationFilePath());
    if (!QUtf8StringView(program).isValidUtf8()) return;
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QString name = QString::fromStdString(registration.strId);
    const QString mime = data + QStringLiteral("/mime");
    const QString entries = data + QStringLiteral("/applications");
    if (const PictureResource* const icon = AfxFindPicture(nIDIcon))
        RegisterIcon(data, name + QStringLiteral(".svg"), *icon);
    Register(mime + QStringLiteral("/packages"), name + QStringLiteral(".xml"),
             registration.MakeMimePackage(), QStringLiteral("update-mime-database"), mime);
    Register(entries, name + QStringLiteral(".desktop"), registration.MakeDesktopEntry(program.toStdString()),
             QStringLiteral("update-desktop-database"), entries);
}
