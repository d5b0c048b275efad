// How the program ends with many windows open. usage:
//   ending_test close|box|zoom|preview|quit|open|ask|list|menu
// Ends it by its main frame: also while a message, a dialog or the preview of a page is up and a file waits to be
// opened, and the way in which a session does at its end, once with a bar afloat; once while a question is up, whose
// box is ticked; and while a message is up that a key in a list, or in a picture's own menu, has led to.

#include "app/child_frame.h"
#include "app/resource_ids.h"
#include "app/tolerance_setting.h"
#include "app/vistrel_app.h"
#include "app/vistrel_view.h"
#include "base/large_block.h"
#include "framework/core/answers.h"
#include "framework/core/resource.h"
#include "support/private_home.h"
#include "support/psd_builder.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMdiSubWindow>
#include <QMenu>

#include <algorithm>
#include <fstream>
#include <functional>
#include <string>

namespace {

constexpr std::size_t WINDOWS = 50;

class App final : public CVistrelApp {
  public:
    bool InitInstance() override { return Later(m_start), CVistrelApp::InitInstance(); }
    bool Command(u32 nID) { return m_pMainWnd->OnCmdMsg(nID, CN_COMMAND, nullptr); }
    void Later(const std::function<void()>& call) { QMetaObject::invokeMethod(qApp, call, Qt::QueuedConnection); }

    std::function<void()> m_start;  // once the program runs
};

void Press(QWidget& widget, Qt::Key key) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(&widget, &press);
}

App theApp;
TempFolder g_folder;

// There is no memory for the picture that the key chooses.
void ChooseByKey(CMDIChildWnd& child) {
    LargeBlock::SetLimit(0);
    Press(*dynamic_cast<CChildFrame&>(child).m_wndChannelCombo.GetWidget(), Qt::Key_Down);
}

// What stands where the file was is none.
void ReloadByMenu(CMDIChildWnd& child) {
    const CView& view = *child.GetActiveView();
    std::ofstream(view.GetDocument()->GetPathName()) << "noise";
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, view.GetWidget()->mapToGlobal(QPoint()));
    QApplication::sendEvent(view.GetWidget(), &event);
    auto& menu = dynamic_cast<QMenu&>(*QApplication::activePopupWidget());
    const auto isReload = [](const QAction* pAction) { return pAction->data().toUInt() == ID_RELOAD; };
    const auto items = menu.actions();
    menu.setActiveAction(*std::ranges::find_if(items, isReload));
    Press(menu, Qt::Key_Return);
}

// Every second window is another one on the document before it.
int EndWithWindows(const std::string& strHow, char** argv) {
    const Bytes picture = Psd({});
    bool asWanted = false;
    const auto end = [&] {
        if (strHow == "ask") QApplication::activeModalWidget()->findChild<QCheckBox*>()->setChecked(true);
        const bool asks = QApplication::activeModalWidget() != nullptr;
        asWanted = theApp.m_pMainWnd->GetChildren().size() == WINDOWS && asks == (strHow != "close");
        // Under a dialog this one waits, and is not opened any more.
        if (asks) theApp.OpenLater({"file://" + g_folder.Write(picture, "waiting")});
        QApplication::processEvents();
        QEvent quit(QEvent::Quit);
        if (strHow == "quit" || strHow == "open")
            QCoreApplication::sendEvent(qApp, &quit);
        else
            theApp.Command(ID_APP_EXIT);
        // Whoever goes through a list of files goes on with it.
        asWanted = asWanted && !theApp.OpenDocumentFile(g_folder.Write(picture, "late"));
        asWanted = asWanted && theApp.m_pMainWnd->GetChildren().empty();
    };
    theApp.m_start = [&] {
        for (std::size_t i = 0; i < WINDOWS; i += 2) {
            theApp.OpenDocumentFile(g_folder.Write(picture, std::to_string(i)));
            theApp.Command(ID_WINDOW_NEW);
        }
        // A message that a control leads to comes up once that is left.
        theApp.Later([&] { theApp.Later(end); });
        if (strHow == "list") ChooseByKey(*theApp.m_pMainWnd->MDIGetActive());
        if (strHow == "menu") ReloadByMenu(*theApp.m_pMainWnd->MDIGetActive());
        if (strHow == "box") AfxMessageBox("A message");
        // The view is in the middle of its command when it goes.
        if (strHow == "zoom" || strHow == "quit") theApp.Command(ID_ZOOM);
        if (strHow == "preview") theApp.Command(ID_FILE_PRINT_PREVIEW);
        if (strHow == "open") {
            theApp.m_pMainWnd->MDIGetActive()->GetSubWindow()->systemMenu()->actions().last()->trigger();
            for (QWidget* const window : QApplication::topLevelWidgets())
                if (window->isVisible() && window->windowType() == Qt::Tool) QApplication::setActiveWindow(window);
            theApp.Command(ID_FILE_OPEN);
        }
        if (strHow == "ask") {
            const Bytes padded = Psd({.layers = {{.channels = {{.data = RawData({7})}}}}, .layerPad = Bytes(4)});
            asWanted = !theApp.OpenDocumentFile(g_folder.Write(padded, "padded")) && asWanted;
            asWanted = asWanted && theApp.GetProfileString(READING_SECTION, TOLERANT_ENTRY, "").empty();
        }
    };
    const int status = AfxWinMain(theApp, 1, argv);
    return asWanted ? status : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
    const PrivateHome home;
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    char* words[] = {argv[0], nullptr};
    return argc == 2 ? EndWithWindows(argv[1], words) : 2;
}
