#include "framework/qt/program/win_app.h"

#include "framework/core/answers.h"
#include "framework/core/document.h"
#include "framework/core/guarded_call.h"
#include "framework/core/path_name.h"
#include "framework/core/resource.h"
#include "framework/qt/kit/box_answers.h"
#include "framework/qt/kit/key_locks.h"
#include "framework/qt/kit/shell_open.h"
#include "framework/qt/wnd/printing.h"
#include "framework/qt/wnd/view.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QKeyEvent>

#include <cassert>
#include <cstdio>
#include <cstdlib>

// Toolkit

namespace {

CWinApp* g_pApp = nullptr;

class ToolkitApplication final : public QApplication {
  public:
    using QApplication::QApplication;

    // Every entry into the program has its own border; this one is for those of the toolkit itself.
    bool notify(QObject* pReceiver, QEvent* pEvent) override {
        bool handled = false;
        if (pEvent->type() == QEvent::KeyPress && pEvent->spontaneous())
            AfxTrackLocks(*static_cast<QKeyEvent*>(pEvent));
        try {
            handled = QApplication::notify(pReceiver, pEvent);
        } catch (...) {
            AfxReportLater(std::current_exception());
        }
        return handled;
    }

  protected:
    // The session ends, and every window has been closed.
    bool event(QEvent* pEvent) override {
        const bool handled = QApplication::event(pEvent);
        if (pEvent->type() == QEvent::Quit && pEvent->isAccepted()) g_pApp->End();
        return handled;
    }
};

std::unique_ptr<ToolkitApplication> g_pToolkit;
const char* g_pszProgram = "";  // as it was called

bool IsSet(const char* pszVariable) {
    const char* const value = std::getenv(pszVariable);
    return value && *value;
}

int SayNoDisplay() {
    std::fprintf(stderr, "%s: there is no display to show windows on\n", g_pszProgram);
    return EXIT_FAILURE;
}

// The version block, as properties of the toolkit's application object.
void TellVersion(QObject& application) {
    const VersionResource version = AfxGetVersion();
    QCoreApplication::setApplicationVersion(QString::fromUtf8(version.pszFileVersion));
    application.setProperty("FileVersion", QString::fromUtf8(version.pszFileVersion));
    application.setProperty("ProductVersion", QString::fromUtf8(version.pszProductVersion));
    for (const VersionString& text : version.strings)
        application.setProperty(text.pszName, QString::fromUtf8(text.pszText));
}

// While the toolkit starts, what it has to say is how it looks for a display; without one it would abort.
void OnStartMessage(QtMsgType type, const QMessageLogContext&, const QString&) {
    if (type == QtFatalMsg) std::_Exit(SayNoDisplay());
}

// Where the display goes away the toolkit ends the program in the middle of an event, and nothing that still
// stands can be taken down without it.
void OnExit() {
    if (g_pToolkit) std::_Exit(EXIT_FAILURE);
}

}  // namespace

CWinApp* AfxGetApp() {
    return g_pApp;
}

void AfxReportLater(std::exception_ptr pException) {
    QMetaObject::invokeMethod(
        g_pToolkit.get(), [pException] { AfxGuardedCall([&] { std::rethrow_exception(pException); }); },
        Qt::QueuedConnection);
}

std::optional<int> AfxWinInit(int argc, char** argv) {
    g_pszProgram = argv[0];
    g_pApp->m_nArgc = argc;
    g_pApp->m_pArgv = argv;
    CCommandLineInfo info;
    g_pApp->ParseCommandLine(info);
    switch (info.m_nShellCommand) {
        case CCommandLineInfo::ShowHelp:
            std::printf("%s\n", AfxLoadString(AFX_IDS_USAGE).c_str());
            return EXIT_SUCCESS;
        case CCommandLineInfo::ShowVersion:
            std::printf("%s\n", AfxLoadString(AFX_IDS_VERSION).c_str());
            return EXIT_SUCCESS;
        case CCommandLineInfo::BadSwitch:
            std::fprintf(stderr, "%s: the switch %s is unknown, or lacks a word; --help lists all\n",
                         g_pszProgram, info.m_strBadSwitch.c_str());
            return 2;
        case CCommandLineInfo::SurplusWord:
            std::fprintf(stderr,
                         "%s: the switch %s does not go with all of the other words; --help lists all\n",
                         g_pszProgram, info.m_strBadSwitch.c_str());
            return EXIT_FAILURE;
        default:
            break;
    }
    // A page needs no screen, and what there is to say of it no box.
    if (info.IsPrint())
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    else if (!IsSet("DISPLAY") && !IsSet("WAYLAND_DISPLAY") && !IsSet("QT_QPA_PLATFORM"))
        return SayNoDisplay();

    // The words of the command line are this program's; the toolkit gets none of them.
    static int toolkitArgc = 1;
    QGuiApplication::setDesktopFileName(QString::fromStdString(AfxLoadString(AFX_IDS_SHELL_NAME)));
    const QtMessageHandler before = qInstallMessageHandler(OnStartMessage);
    g_pToolkit = std::make_unique<ToolkitApplication>(toolkitArgc, argv);
    qInstallMessageHandler(before);
    std::atexit(OnExit);
    TellVersion(*g_pToolkit);
    QApplication::setQuitOnLastWindowClosed(false);
    if (!info.IsPrint()) InstallAnswers(&AfxGetBoxAnswers());
    AfxAskForLocks();
    QObject::connect(g_pToolkit.get(), &QGuiApplication::applicationStateChanged, &AfxAskForLocks);
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                     g_pToolkit.get(), [] { g_pApp->OnIdle(); });
    return std::nullopt;
}

void AfxWinTerm() {
    g_pApp->ExitInstance();
    AfxReleasePrinter();
    InstallAnswers(nullptr);
    g_pToolkit.reset();
}

int AfxWinMain(int argc, char** argv) {
    if (const std::optional<int> status = AfxWinInit(argc, argv)) return *status;
    bool started = false;
    AfxGuardedCall([&] { started = g_pApp->InitInstance(); });
    const int status = started ? g_pApp->Run() : g_pApp->m_nExitStatus;
    AfxWinTerm();
    return status;
}

// Application

CWinApp::CWinApp() {
    assert(!g_pApp);
    g_pApp = this;
}

CWinApp::~CWinApp() {
    g_pApp = nullptr;
}

bool CWinApp::InitInstance() {
    return true;
}

const MessageMap& CWinApp::GetMessageMap() const {
    static constexpr MessageEntry entries[] = {
        OnCommand<&CWinApp::OnFileOpen>(ID_FILE_OPEN),
        OnCommand<&CWinApp::OnFilePrintSetup>(ID_FILE_PRINT_SETUP),
        OnCommand<&CWinApp::OnAppExit>(ID_APP_EXIT),
    };
    static const MessageMap map = {&CCmdTarget::GetMessageMap(), entries};
    return map;
}

void CWinApp::OnFileOpen() {
    std::vector<FileFilter> filters;
    for (const auto& kind : m_templates) filters.push_back(kind->GetFilter());
    filters.push_back({"All Files (*)", {"*"}});
    const std::string last = m_recentFiles.GetSize() > 0 ? m_recentFiles[0] : "";
    for (const std::string& path : CurrentAnswers().OpenFiles(filters, last.substr(0, last.rfind('/') + 1)))
        OpenDocumentFile(path);
}

void CWinApp::OnFilePrintSetup() {
    AfxSetUpPrinter();
}

void CWinApp::OnAppExit() {
    SendMessageA(m_pMainWnd.get(), WM_CLOSE, 0, 0);
}

void CWinApp::End() {
    m_bEnding = true;
    InstallAnswers(nullptr);
    m_nExitStatus = EXIT_SUCCESS;
    QCoreApplication::exit(m_nExitStatus);
}

int CWinApp::Run() {
    return QApplication::exec();
}

void CWinApp::ExitInstance() {
    m_pShellOpen.reset();
    WriteRecentFileList();
    m_pMainWnd.reset();
    m_templates.clear();
}

void CWinApp::AddDocTemplate(std::unique_ptr<CMultiDocTemplate> pTemplate) {
    m_templates.push_back(std::move(pTemplate));
}

void CWinApp::ParseCommandLine(CCommandLineInfo& info) const {
    info.ParseCommandLine(m_nArgc, m_pArgv);
}

// A file that cannot be printed keeps none of the others from it.
bool CWinApp::Print(const CCommandLineInfo& info) {
    if (info.m_nShellCommand == CCommandLineInfo::FilePrintTo && !AfxSelectPrinter(info.m_strPrinterName)) {
        AfxMessageBox("There is no printer \"" + info.m_strPrinterName + "\".");
        return false;
    }
    bool all = true;
    for (const std::string& path : info.m_strFileNames) {
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

bool CWinApp::ProcessShellCommand(const CCommandLineInfo& info) {
    if (info.IsPrint()) {
        if (Print(info)) m_nExitStatus = EXIT_SUCCESS;
        return false;
    }
    const bool isDde = info.m_nShellCommand == CCommandLineInfo::FileDDE;
    if (isDde && HandOver(info.m_strFileNames)) {
        m_nExitStatus = EXIT_SUCCESS;
        return false;
    }
    bool opened = isDde && info.m_strFileNames.empty();
    for (const std::string& path : info.m_strFileNames) opened |= OpenDocumentFile(path) != nullptr;
    return !m_bEnding && (opened || !m_requests.empty());
}

CDocument* CWinApp::OpenDocumentFile(const std::string& strPathName) {
    if (m_bEnding) return nullptr;
    const std::string path = GetFullPath(strPathName);
    CDocument* document = nullptr;
    if (CMDIChildWnd* const child = FindOpen(path)) {
        child->ActivateFrame();
        document = child->GetActiveView()->GetDocument();
    } else {
        CMultiDocTemplate* chosen = m_templates.front().get();
        for (const auto& candidate : m_templates)
            if (candidate->MatchDocType(path)) chosen = candidate.get();
        document = chosen->OpenDocumentFile(*m_pMainWnd, path);
    }
    if (document) AddToRecentFileList(path);
    return document;
}

CMDIChildWnd* CWinApp::FindOpen(const std::string& strPathName) const {
    for (const auto& child : m_pMainWnd->GetChildren())
        if (IsSameFile(child->GetActiveView()->GetDocument()->GetPathName(), strPathName)) return child.get();
    return nullptr;
}

void CWinApp::OnIdle() {
    if (!m_pMainWnd) return;
    if (CanOpenRequests())
        QMetaObject::invokeMethod(
            g_pToolkit.get(), [this] { AfxGuardedCall([&] { OpenRequests(); }); }, Qt::QueuedConnection);
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

void CWinApp::PumpMessages() {
    QApplication::processEvents();
    OnIdle();
}
