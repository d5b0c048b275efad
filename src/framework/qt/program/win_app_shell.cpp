// The application and what lies around it: the settings that it keeps, the recent files, and the desktop.

#include "framework/core/answers.h"
#include "framework/core/document.h"
#include "framework/core/path_name.h"
#include "framework/core/replace_file.h"
#include "framework/core/resource.h"
#include "framework/qt/kit/ini_profile.h"
#include "framework/qt/kit/shell_open.h"
#include "framework/qt/program/win_app.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QScopedValueRollback>
#include <QStandardPaths>

// Settings and recent files

void CWinApp::SetRegistryKey(const std::string& strRegistryKey) {
    m_pProfile = std::make_unique<IniProfile>(strRegistryKey, AfxLoadString(AFX_IDS_APP_TITLE));
}

void CWinApp::LoadStdProfileSettings(u32 nMaxMRU) {
    m_recentFiles = CRecentFileList(nMaxMRU);
    m_recentFiles.ReadList(*m_pProfile);
}

void CWinApp::AddToRecentFileList(const std::string& strPathName) {
    m_recentFiles.Add(strPathName);
    m_bRecentFilesChanged = true;
}

// What cannot be written now is with the next change, or at the end.
void CWinApp::WriteRecentFileList() {
    m_bRecentFilesChanged = false;
    if (m_pProfile) m_recentFiles.WriteList(*m_pProfile);
}

// The disk takes its time, so the picture comes first: at the start that is when its window has come to the
// screen, and later whenever nothing is left to be drawn.
void CWinApp::WriteRecentFilesWhenSeen() {
    m_bSeen = m_bSeen || m_pMainWnd->IsExposed();
    if (m_bSeen && m_bRecentFilesChanged) WriteRecentFileList();
}

bool CWinApp::OnCmdMsg(u32 nID, u32 nCode, CCmdUI* pUi) {
    if (!HasHandler(nID, nCode) || nID < ID_FILE_MRU_FILE1 || nID > ID_FILE_MRU_FILE9)
        return CCmdTarget::OnCmdMsg(nID, nCode, pUi);
    if (pUi)
        OnUpdateRecentFile(nID - ID_FILE_MRU_FILE1, *pUi);
    else
        OnOpenRecentFile(nID - ID_FILE_MRU_FILE1);
    return true;
}

bool CWinApp::HasHandler(u32 nID, u32 nCode) const {
    if (nID < ID_FILE_MRU_FILE1 || nID > ID_FILE_MRU_FILE9) return CCmdTarget::HasHandler(nID, nCode);
    return nCode == CN_UPDATE_COMMAND_UI ||
           (nCode == CN_COMMAND && nID - ID_FILE_MRU_FILE1 < m_recentFiles.GetSize());
}

// Without any recent file the first item says what would stand there.
void CWinApp::OnUpdateRecentFile(u32 nIndex, CCmdUI& ui) const {
    const bool there = nIndex < m_recentFiles.GetSize();
    ui.SetText(there ? m_recentFiles.GetDisplayName(nIndex) : nIndex == 0 ? "Recent File" : "");
    ui.SetPrompt(there ? m_recentFiles[nIndex] : AfxLoadPrompt(ID_FILE_MRU_FILE1));
    ui.Enable(there);
}

// A file that has gone since has been reported by then.
void CWinApp::OnOpenRecentFile(u32 nIndex) {
    const std::string path = m_recentFiles[nIndex];
    if (OpenDocumentFile(path)) return;
    m_recentFiles.Remove(path);
    m_bRecentFilesChanged = true;
}

// Registration with the desktop

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

ShellRegistration CWinApp::GetShellRegistration() const {
    ShellRegistration registration = {AfxLoadString(AFX_IDS_SHELL_NAME),
                                      AfxLoadString(AFX_IDS_APP_TITLE),
                                      AfxLoadString(AFX_IDS_SHELL_COMMENT),
                                      AfxLoadString(AFX_IDS_SHELL_CLAIMED),
                                      AfxLoadString(AFX_IDS_SHELL_OFFERED),
                                      AfxLoadString(AFX_IDS_SHELL_OFFERED_NAME),
                                      {}};
    for (const auto& kind : m_templates) {
        const ShellFileType type = kind->GetShellFileType();
        if (!type.strTypeId.empty()) registration.types.push_back(type);
    }
    return registration;
}

// Both texts are UTF-8, which a path need not be.
void CWinApp::RegisterShellFileTypes(u32 nIDIcon) const {
    const QByteArray program = QFile::encodeName(QCoreApplication::applicationFilePath());
    if (!QUtf8StringView(program).isValidUtf8()) return;
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const ShellRegistration registration = GetShellRegistration();
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

// Requests of the desktop

// A copy that prints and ends is none to open files in.
void CWinApp::EnableShellOpen() {
    CCommandLineInfo info;
    ParseCommandLine(info);
    if (info.IsPrint()) return;
    m_pShellOpen = std::make_unique<ShellOpen>(
        AfxLoadString(AFX_IDS_SHELL_NAME), [this](const std::vector<std::string>& uris) { OpenLater(uris); });
}

bool CWinApp::HandOver(const std::vector<std::string>& paths) const {
    std::vector<std::string> uris;
    for (const std::string& path : paths) uris.push_back(ToFileUri(GetFullPath(path)));
    return m_pShellOpen && m_pShellOpen->HandOver(uris);
}

void CWinApp::OpenLater(const std::vector<std::string>& uris) {
    m_requests.push_back(uris);
}

// A menu stays open on the list of recent files that it shows.
bool CWinApp::CanOpenRequests() const {
    return m_pMainWnd && !m_bEnding && !m_requests.empty() && !m_bInRequest &&
           !QApplication::activeModalWidget() && !QApplication::activePopupWidget();
}

void CWinApp::OpenRequests() {
    while (CanOpenRequests()) {
        const std::vector<std::string> uris = m_requests.front();
        m_requests.pop_front();
        m_pMainWnd->BringToFront();
        const QScopedValueRollback<bool> inRequest(m_bInRequest, true);
        for (const std::string& uri : uris) {
            if (const std::optional<std::string> path = FromFileUri(uri))
                OpenDocumentFile(*path);
            else
                AfxMessageBox("\"" + uri + "\" was not opened. It is no file on this computer.");
        }
    }
}
