#include "framework/qt/program/win_app.h"

#include "framework/core/answers.h"
#include "framework/core/document.h"
#include "framework/core/guarded_call.h"
#include "framework/core/path_name.h"
#include "framework/core/resource.h"
#include "framework/qt/kit/box_answers.h"
#include "framework/qt/kit/ini_profile.h"
#include "framework/qt/kit/report_later.h"
#include "framework/qt/program/shell_file_types.h"
#include "framework/qt/program/toolkit.h"
#include "framework/qt/wnd/printing.h"

#include <QApplication>
#include <QWidget>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iterator>
#include <system_error>

namespace {

constexpr int SIGNAL_STATUS = 128;

// What a command line that only asks is answered with; its status. Nothing for one that opens the program.
std::optional<int> Answer(const CCommandLineInfo& info, const char* pszProgram) {
    switch (info.m_nShellCommand) {
        case CCommandLineInfo::ShowHelp:
            std::printf("%s\n", AfxLoadString(AFX_IDS_USAGE).c_str());
            return EXIT_SUCCESS;
        case CCommandLineInfo::ShowVersion:
            std::printf("%s\n", AfxLoadString(AFX_IDS_VERSION).c_str());
            return EXIT_SUCCESS;
        case CCommandLineInfo::BadSwitch:
            std::fprintf(stderr, "%s: the switch %s is unknown, or lacks a word; --help lists all\n",
                         pszProgram, info.m_strBadSwitch.c_str());
            return 2;
        case CCommandLineInfo::SurplusWord:
            std::fprintf(stderr,
                         "%s: the switch %s does not go with all of the other words; --help lists all\n",
                         pszProgram, info.m_strBadSwitch.c_str());
            return EXIT_FAILURE;
        default:
            return std::nullopt;
    }
}

}  // namespace

int AfxWinMain(CWinApp& app, int argc, char** argv) {
    if (const std::optional<int> status = app.Start(argc, argv)) return *status;
    bool started = false;
    AfxGuardedCall([&] { started = app.InitInstance(); });
    const int status = started ? app.Run() : app.GetExitStatus();
    app.ExitInstance();
    return status;
}

CWinApp::CWinApp() = default;
CWinApp::~CWinApp() = default;

std::optional<int> CWinApp::Start(int argc, char** argv) {
    m_commandLine.ParseCommandLine(argc, argv);
    if (const std::optional<int> status = Answer(m_commandLine, argv[0])) return status;
    bool handedOver = false;
    if (m_commandLine.m_nShellCommand == CCommandLineInfo::FileDDE)
        AfxCallWithoutDisplay(argv, [&] { handedOver = HandOver(); });
    if (handedOver) return EXIT_SUCCESS;
    // A page needs no screen, and what there is to say of it no box.
    const bool onScreen = !m_commandLine.IsPrint();
    const ToolkitHooks hooks = {.onIdle = [this] { OnIdle(); },
                                .onSessionEnd = [this] { End(); },
                                .onSignal = [this](int nSignal) { EndBySignal(nSignal); }};
    if (!AfxStartToolkit(argv, onScreen, hooks)) return EXIT_FAILURE;
    if (onScreen) InstallAnswers(&AfxGetBoxAnswers());
    return std::nullopt;
}

bool CWinApp::InitInstance() {
    return true;
}

const MessageMap& CWinApp::GetMessageMap() const {
    static constexpr MessageEntry entries[] = {
        OnCommand<&CWinApp::OnFileOpen>(ID_FILE_OPEN),
        OnCommand<&CWinApp::OnFilePrintSetup>(ID_FILE_PRINT_SETUP),
        OnCommand<&CWinApp::OnAppExit>(ID_APP_EXIT),
        OnCommandRange<&CWinApp::OnOpenRecentFile>(ID_FILE_MRU_FILE1, ID_FILE_MRU_FILE9),
        OnUpdateCommandUiRange<&CWinApp::OnUpdateRecentFile>(ID_FILE_MRU_FILE1, ID_FILE_MRU_FILE9),
    };
    static const MessageMap map = {&CCmdTarget::GetMessageMap(), entries};
    return map;
}

void CWinApp::OnFileOpen() {
    std::vector<FileFilter> filters;
    for (const auto& kind : m_templates) filters.push_back(kind->GetFilter());
    filters.push_back({"All Files (*)", {"*"}});
    const CRecentFileList& recent = m_recentFiles.GetList();
    const std::string last = recent.GetSize() > 0 ? recent[0] : "";
    OpenDocumentFiles(CurrentAnswers().OpenFiles(filters, FolderOf(last)));
}

void CWinApp::OnFilePrintSetup() {
    AfxSetUpPrinter();
}

void CWinApp::OnAppExit() {
    SendMessageA(m_pMainWnd.get(), WM_CLOSE, 0, 0);
}

void CWinApp::EndBySignal(int nSignal) {
    if (m_bEnding || !m_pMainWnd) return;
    m_nEndStatus = SIGNAL_STATUS + nSignal;
    OnAppExit();
}

void CWinApp::End() {
    m_bEnding = true;
    InstallAnswers(nullptr);
    m_nExitStatus = m_nEndStatus;
    QCoreApplication::exit(m_nExitStatus);
    // The desktop's own dialogs have loops that the toolkit does not end, and return once they are closed.
    if (QWidget* const dialog = QApplication::activeModalWidget()) dialog->close();
}

int CWinApp::Run() {
    return QApplication::exec();
}

void CWinApp::ExitInstance() {
    m_requests.Close();
    m_recentFiles.Write();
    m_pMainWnd.reset();
    m_templates.clear();
    AfxReleasePrinter();
    InstallAnswers(nullptr);
    AfxStopToolkit();
}

void CWinApp::AddDocTemplate(std::unique_ptr<CMultiDocTemplate> docTemplate) {
    m_templates.push_back(std::move(docTemplate));
}

void CWinApp::SetMainWnd(std::unique_ptr<CMDIFrameWnd> mainWnd) {
    m_pMainWnd = std::move(mainWnd);
    m_pMainWnd->m_pLastTarget = this;
    m_pMainWnd->m_onDrop = [this](const std::vector<std::string>& uris) { OpenLater(uris); };
    m_pMainWnd->m_onClosed = [this] { End(); };
}

void CWinApp::EnableShellOpen() {
    if (!m_commandLine.IsPrint())
        m_requests.Listen([this](const StartupToken& token) { BringToFront(token); });
}

void CWinApp::RegisterShellFileTypes(u32 nIDIcon) const {
    AfxRegisterShellFileTypes(nIDIcon);
}

// A file that cannot be printed keeps none of the others from it.
bool CWinApp::Print(const CCommandLineInfo& info) {
    if (info.m_nShellCommand == CCommandLineInfo::FilePrintTo && !AfxSelectPrinter(info.m_strPrinterName)) {
        AfxMessageBox("There is no printer \"" + info.m_strPrinterName + "\".");
        return false;
    }
    bool all = true;
    for (const std::string& path : info.m_fileNames) {
        bool printed = false;
        const auto print = [&] {
            const CDocument* const document = OpenDocumentFile(path);
            printed = document && document->GetViews()[0]->Print(true);
        };
        AfxGuardedCall(print, "\"" + path + "\" was not printed. ");
        m_pMainWnd->DestroyChildren();
        all = all && printed;
    }
    return all;
}

// What switches of its own say is for this run alone, and would be lost on another copy.
bool CWinApp::HandOver() {
    return !m_commandLine.HasOwnSwitches() && m_requests.HandOver(m_commandLine.m_fileNames);
}

bool CWinApp::ProcessShellCommand(const CCommandLineInfo& info) {
    if (info.IsPrint()) {
        if (Print(info)) m_nExitStatus = EXIT_SUCCESS;
        return false;
    }
    const bool isDde = info.m_nShellCommand == CCommandLineInfo::FileDDE;
    // One that was started at the same time may have been quicker.
    if (isDde && HandOver()) {
        m_nExitStatus = EXIT_SUCCESS;
        return false;
    }
    const bool opened = !OpenDocumentFiles(info.m_fileNames).empty() || (isDde && info.m_fileNames.empty());
    return !m_bEnding && (opened || !m_requests.IsEmpty());
}

void CWinApp::SetRegistryKey(const std::string& strRegistryKey) {
    m_pProfile = std::make_unique<IniProfile>(strRegistryKey, AfxLoadString(AFX_IDS_APP_TITLE));
}

std::string CWinApp::GetProfileString(const std::string& strSection, const std::string& strEntry,
                                      const std::string& strDefault) const {
    const auto notKept = m_notKept.find({strSection, strEntry});
    if (notKept != m_notKept.end()) return notKept->second;
    const ProfileSection section = m_pProfile->ReadSection(strSection);
    const auto entry = section.find(strEntry);
    return entry == section.end() ? strDefault : entry->second;
}

bool CWinApp::WriteProfileString(const std::string& strSection, const std::string& strEntry,
                                 const std::string& strValue) {
    const bool kept =
        m_pProfile->ChangeSection(strSection, [&](ProfileSection& section) { section[strEntry] = strValue; });
    if (kept)
        m_notKept.erase({strSection, strEntry});
    else
        m_notKept[{strSection, strEntry}] = strValue;
    return kept;
}

const CMultiDocTemplate& CWinApp::TemplateFor(const std::string& strPath) const {
    const CMultiDocTemplate* chosen = m_templates.front().get();
    for (const auto& candidate : m_templates)
        if (candidate->MatchDocType(strPath)) chosen = candidate.get();
    return *chosen;
}

bool CWinApp::HasTemplateFor(const std::string& strPath) const {
    return std::ranges::any_of(m_templates, [&](const auto& kind) { return kind->MatchDocType(strPath); });
}

std::vector<CDocument*> CWinApp::Show(const std::vector<ReadDocument>& documents) {
    std::vector<CDocument*> shown;
    for (const ReadDocument& one : documents) {
        if (m_bEnding || !one.pTemplate->ShowDocument(*m_pMainWnd, one.pDocument)) continue;
        shown.push_back(one.pDocument.get());
        m_recentFiles.Add(one.pDocument->GetPathName());
    }
    return shown;
}

std::vector<CDocument*> CWinApp::OpenDocumentFiles(const std::vector<std::string>& paths) {
    std::vector<CDocument*> opened;
    std::vector<ReadDocument> waiting;  // for consent
    const std::function<void(CDocument&)> prepare = PrepareDocuments();
    for (const std::string& name : paths) {
        if (m_bEnding) break;
        const std::string path = GetFullPath(name);
        if (CMDIChildWnd* const child = FindOpen(path)) {
            child->ActivateFrame();
            opened.push_back(child->GetActiveView()->GetDocument());
            m_recentFiles.Add(path);
            continue;
        }
        const auto waits = [&](const ReadDocument& one) {
            return IsSameFile(one.pDocument->GetPathName(), path);
        };
        if (std::ranges::any_of(waiting, waits)) continue;
        const CMultiDocTemplate& kind = TemplateFor(path);
        const ReadDocument read = {kind.ReadDocumentFile(path, prepare), &kind};
        if (!read.pDocument) continue;
        if (read.pDocument->NeedsConsent())
            waiting.push_back(read);
        else
            std::ranges::copy(Show({read}), std::back_inserter(opened));
    }
    std::vector<std::shared_ptr<CDocument>> documents;
    for (const ReadDocument& one : waiting) documents.push_back(one.pDocument);
    if (!m_bEnding && !documents.empty() && AskForConsent(documents))
        std::ranges::copy(Show(waiting), std::back_inserter(opened));
    return opened;
}

CDocument* CWinApp::OpenDocumentFile(const std::string& strPathName) {
    const std::vector<CDocument*> opened = OpenDocumentFiles({strPathName});
    return opened.empty() ? nullptr : opened.front();
}

CMDIChildWnd* CWinApp::FindOpen(const std::string& strPathName) const {
    for (const auto& child : m_pMainWnd->GetChildren())
        if (IsSameFile(child->GetActiveView()->GetDocument()->GetPathName(), strPathName)) return child.get();
    return nullptr;
}

void CWinApp::OnUpdateRecentFile(CCmdUI* pUi) {
    m_recentFiles.UpdateItem(pUi->m_nID - ID_FILE_MRU_FILE1, *pUi);
}

// A file that cannot be opened now may be put right, so that only one that is gone leaves the list. It has
// been reported by then.
void CWinApp::OnOpenRecentFile(u32 nID) {
    const u32 index = nID - ID_FILE_MRU_FILE1;
    if (index >= m_recentFiles.GetList().GetSize()) return;
    const std::string path = m_recentFiles.GetList()[index];
    if (OpenDocumentFile(path)) return;
    std::error_code failed;
    if (std::filesystem::status(path, failed).type() == std::filesystem::file_type::not_found)
        m_recentFiles.Remove(path);
}

// The disk takes its time, so the picture comes first: at the start that is when its window has come to the
// screen, and later whenever nothing is left to be drawn.
void CWinApp::WriteRecentFilesWhenSeen() {
    m_bSeen = m_bSeen || m_pMainWnd->IsExposed();
    if (m_bSeen && m_recentFiles.IsChanged()) m_recentFiles.Write();
}

bool CWinApp::CanOpenRequests() const {
    return m_pMainWnd && !m_bEnding && m_requests.CanOpen();
}

void CWinApp::BringToFront(const StartupToken& token) {
    if (m_pMainWnd && !m_bEnding) m_pMainWnd->BringToFront(token);
}

void CWinApp::OpenRequests() {
    if (CanOpenRequests())
        m_requests.Open([this](const StartupToken& token) { BringToFront(token); },
                        [this](const std::vector<std::string>& paths) { OpenDocumentFiles(paths); });
}

void CWinApp::OnIdle() {
    if (!m_pMainWnd) return;
    if (CanOpenRequests())
        QMetaObject::invokeMethod(
            qApp, [this] { AfxGuardedCall([&] { OpenRequests(); }); }, Qt::QueuedConnection);
    if (m_bInIdle) return;
    m_bInIdle = true;
    try {
        WriteRecentFilesWhenSeen();
        m_pMainWnd->OnIdle();
        m_bIdleFailed = false;
    } catch (...) {
        if (!m_bIdleFailed) AfxReportLater(std::current_exception());
        m_bIdleFailed = true;
    }
    m_bInIdle = false;
}
