// The application and what lies around it: the settings that it keeps, the recent files, and the desktop.

#include "framework/core/answers.h"
#include "framework/core/document.h"
#include "framework/core/path_name.h"
#include "framework/core/resource.h"
#include "framework/qt/ini_profile.h"
#include "framework/qt/shell_open.h"
#include "framework/qt/win_app.h"

#include <QApplication>
#include <QScopedValueRollback>

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
    WriteRecentFileList();
}

// What cannot be written now is with the next change, or at the end.
void CWinApp::WriteRecentFileList() {
    if (m_pProfile) m_recentFiles.WriteList(*m_pProfile);
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
    ui.SetPrompt(there ? m_recentFiles[nIndex] : "");
    ui.Enable(there);
}

// A file that has gone since has been reported by then.
void CWinApp::OnOpenRecentFile(u32 nIndex) {
    const std::string path = m_recentFiles[nIndex];
    if (OpenDocumentFile(path)) return;
    m_recentFiles.Remove(path);
    WriteRecentFileList();
}

// Requests of the desktop

void CWinApp::EnableShellOpen(const std::string& strName) {
    m_pShellOpen = std::make_unique<ShellOpen>(
        strName, [this](const std::vector<std::string>& uris) { OpenLater(uris); });
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
    return m_pMainWnd && !m_requests.empty() && !m_bInRequest && !QApplication::activeModalWidget() &&
           !QApplication::activePopupWidget();
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
