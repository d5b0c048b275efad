#include "framework/qt/program/toolkit.h"

#include "framework/core/resource.h"
#include "framework/qt/kit/key_locks.h"
#include "framework/qt/kit/program_style.h"
#include "framework/qt/kit/report_later.h"
#include "framework/qt/program/end_signals.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QKeyEvent>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>

namespace {

class ToolkitApplication final : public QApplication {
  public:
    ToolkitApplication(int& argc, char** argv, const ToolkitHooks& hooks)
        : QApplication(argc, argv), m_hooks(hooks) {}

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
    bool event(QEvent* pEvent) override {
        const bool handled = QApplication::event(pEvent);
        if (pEvent->type() == QEvent::Quit && pEvent->isAccepted()) m_hooks.onSessionEnd();
        return handled;
    }

  private:
    const ToolkitHooks m_hooks;
};

std::unique_ptr<ToolkitApplication> g_pToolkit;
std::unique_ptr<CEndSignals> g_pEndSignals;  // while there is a loop to tell of them

// The words of the command line are the program's; the toolkit gets none of them.
int g_nToolkitArgc = 1;

const char* g_pszProgram = "";  // as it was called

bool IsSet(const char* pszVariable) {
    const char* const value = std::getenv(pszVariable);
    return value && *value;
}

void SayNoDisplay() {
    std::fprintf(stderr, "%s: there is no display to show windows on\n", g_pszProgram);
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

// The toolkit's own dialogs and buttons speak the user's language, where its words are installed. The
// program's texts are in one language, so windows keep the order in which that is read.
void SpeakUsersLanguage(QObject& application) {
    auto* const words = new QTranslator(&application);
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (words->load(QLocale::system(), QStringLiteral("qtbase"), QStringLiteral("_"), folder))
        QCoreApplication::installTranslator(words);
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

// While the toolkit starts, what it has to say is how it looks for a display; without one it would abort.
void OnStartMessage(QtMsgType type, const QMessageLogContext&, const QString&) {
    if (type != QtFatalMsg) return;
    SayNoDisplay();
    std::_Exit(EXIT_FAILURE);
}

// Where the display goes away the toolkit ends the program in the middle of an event, and nothing that still
// stands can be taken down without it.
void OnExit() {
    if (g_pToolkit) std::_Exit(EXIT_FAILURE);
}

}  // namespace

void AfxCallWithoutDisplay(char** argv, const std::function<void()>& call) {
    g_pszProgram = argv[0];
    const QtMessageHandler before = qInstallMessageHandler(OnStartMessage);
    {
        const QCoreApplication core(g_nToolkitArgc, argv);
        call();
    }
    qInstallMessageHandler(before);
}

bool AfxStartToolkit(char** argv, bool bOnScreen, const ToolkitHooks& hooks) {
    g_pszProgram = argv[0];
    if (!bOnScreen) {
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    } else if (!IsSet("DISPLAY") && !IsSet("WAYLAND_DISPLAY") && !IsSet("QT_QPA_PLATFORM")) {
        SayNoDisplay();
        return false;
    }
    QGuiApplication::setDesktopFileName(QString::fromStdString(AfxLoadString(AFX_IDS_SHELL_NAME)));
    const QtMessageHandler before = qInstallMessageHandler(OnStartMessage);
    g_pToolkit = std::make_unique<ToolkitApplication>(g_nToolkitArgc, argv, hooks);
    qInstallMessageHandler(before);
    std::atexit(OnExit);
    QApplication::setStyle(AfxMakeStyle());
    TellVersion(*g_pToolkit);
    SpeakUsersLanguage(*g_pToolkit);
    QApplication::setQuitOnLastWindowClosed(false);
    AfxAskForLocks();
    QObject::connect(g_pToolkit.get(), &QGuiApplication::applicationStateChanged, &AfxAskForLocks);
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                     g_pToolkit.get(), hooks.onIdle);
    // A page is printed without any loop, and what would take it down is the signal itself.
    if (bOnScreen) g_pEndSignals = std::make_unique<CEndSignals>(hooks.onSignal);
    return true;
}

void AfxStopToolkit() {
    g_pEndSignals.reset();
    g_pToolkit.reset();
}
