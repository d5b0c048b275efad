// What thousands of opened and closed documents leave behind, compared with as many empty child windows of a
// bare program. usage: growth_bench COUNT
// Ends with status 1 when the documents leave over a mebibyte more.

#include "app/resource_ids.h"
#include "app/vistrel_app.h"
#include "framework/core/resource.h"
#include "framework/qt/wnd/view.h"
#include "support/iff_builder.h"
#include "support/private_home.h"

#include <QApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <unistd.h>

namespace {

constexpr int WARM_UP = 100;        // windows after which every cache is full
constexpr i64 ALLOWANCE = 1 << 20;  // bytes by which documents may grow more than empty windows

void Later(const std::function<void()>& call) {
    QMetaObject::invokeMethod(qApp, call, Qt::QueuedConnection);
}

class App final : public CVistrelApp {
  public:
    bool InitInstance() override { return Later(m_start), CVistrelApp::InitInstance(); }

    std::function<void()> m_start;  // once the program runs
};

App theApp;
TempFolder g_folder;

i64 ResidentBytes() {
    i64 all = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

// Opens a window, closes it once it has been drawn, and opens the next one once it is gone: all from the
// program's own loop, for nothing else deletes what was put off.
struct Cycle final : public QObject {
    void Next() {
        if (m_nDone == WARM_UP) m_nGrowth = -ResidentBytes();
        if (m_nDone++ == WARM_UP + m_nCount) return m_nGrowth += ResidentBytes(), m_end();
        QWidget* const shown = m_open();
        shown->installEventFilter(this);
        connect(shown, &QObject::destroyed, this, [this] { Later([this] { Next(); }); });
    }

    bool eventFilter(QObject* pShown, QEvent* pEvent) override {
        if (pEvent->type() != QEvent::Paint) return false;
        pShown->removeEventFilter(this);
        Later(m_close);
        return false;
    }

    int m_nCount = 0;
    std::function<QWidget*()> m_open;  // returns what is to be drawn
    std::function<void()> m_close, m_end;
    int m_nDone = 0;
    i64 m_nGrowth = 0;  // bytes
};

// Large enough for 500 that are lost to be seen.
Bytes Picture() {
    return Form("ILBM", {Bmhd({.width = 128, .height = 96, .planes = 8}), GreyCmap(256, 1),
                         Body(PlanesOf(std::vector<u32>(128 * 96, 85), 128, 8))});
}

int CompareGrowth(int nCount, char** argv) {
    Cycle documents, bare;
    documents.m_nCount = bare.m_nCount = nCount;
    documents.m_open = [path = g_folder.Write(Picture())] {
        theApp.OpenDocumentFile(path);
        return theApp.m_pMainWnd->MDIGetActive()->GetActiveView()->GetWidget();
    };
    documents.m_close = [] { theApp.m_pMainWnd->OnCmdMsg(ID_FILE_CLOSE, CN_COMMAND, nullptr); };
    std::unique_ptr<QMainWindow> window;
    QMdiArea* area = nullptr;
    documents.m_end = [&] {
        window = std::make_unique<QMainWindow>();
        window->setCentralWidget(area = new QMdiArea);
        window->resize(600, 600);
        window->show();
        bare.Next();
    };
    bare.m_open = [&] {
        QMdiSubWindow* const child = area->addSubWindow(new QWidget);
        child->setAttribute(Qt::WA_DeleteOnClose);
        // Of each window without one the toolkit keeps two kilobytes.
        child->setWindowIcon(theApp.m_pMainWnd->GetWidget()->windowIcon());
        child->resize(400, 300);
        child->show();
        return child->widget();
    };
    bare.m_close = [&] { area->currentSubWindow()->close(); };
    bare.m_end = [&] { window.reset(), QCoreApplication::exit(0); };
    theApp.m_start = [&] { documents.Next(); };
    const int status = AfxWinMain(theApp, 1, argv);
    const i64 grown = documents.m_nGrowth, bareGrown = bare.m_nGrowth;
    std::printf("%d documents: %lld bytes, empty windows: %lld bytes\n", nCount,
                static_cast<long long>(grown), static_cast<long long>(bareGrown));
    if (documents.m_nDone != bare.m_nDone || bare.m_nDone <= nCount) return EXIT_FAILURE;
    return grown > std::max<i64>(bareGrown, 0) + ALLOWANCE ? EXIT_FAILURE : status;
}

}  // namespace

int main(int argc, char** argv) {
    const PrivateHome home;
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    char* words[] = {argv[0], nullptr};
    return argc == 2 ? CompareGrowth(std::stoi(argv[1]), words) : 2;
}
