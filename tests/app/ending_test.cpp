// How the program ends with many windows open. usage:
//   ending_test close|box|zoom|preview|quit|open|ask|list|menu
// Ends it by its main frame: also while a message, a dialog or the preview of a page is up and a file waits to be
// opened, and the way in which a session does at its end, once with a bar afloat; once while a question is up, whose
// box is ticked; and while a message is up that a key in a list, or in a picture's own menu, has led to.

#include "app/tolerance_setting.h"
#include "base/large_block.h"
#include "window_case.h"

#include <QCheckBox>

CVistrelApp theApp;

namespace {

constexpr std::size_t WINDOWS = 50;

TempFolder g_folder;

CMDIChildWnd& ActiveWindow() { return *Main().MDIGetActive(); }

// There is no memory for the picture that the key chooses.
void ChooseByKey() {
    LargeBlock::SetLimit(0);
    Press(ListOf(dynamic_cast<CChildFrame&>(ActiveWindow()).m_wndChannelCombo), Qt::Key_Down);
}

// What stands where the file was is none.
void ReloadByMenu() {
    const CView& view = *ActiveWindow().GetActiveView();
    std::ofstream(view.GetDocument()->GetPathName()) << "noise";
    QMenu& menu = OpenMenuOf(view, QContextMenuEvent::Keyboard);
    menu.setActiveAction(ItemOf(menu, ID_RELOAD));
    Press(menu, Qt::Key_Return);
}

// Every second window is another one on the document before it.
int EndWithWindows(const std::string& strHow, char** argv) {
    const Bytes picture = Psd({});
    bool asWanted = false;
    const auto end = [&] {
        if (strHow == "ask") QApplication::activeModalWidget()->findChild<QCheckBox*>()->setChecked(true);
        const bool asks = QApplication::activeModalWidget() != nullptr;
        asWanted = OpenWindows() == WINDOWS && asks == (strHow != "close");
        // Under a dialog this one waits, and is not opened any more.
        if (asks) theApp.OpenLater({"file://" + g_folder.Write(picture, "waiting")});
        QApplication::processEvents();
        QEvent quit(QEvent::Quit);
        if (strHow == "quit" || strHow == "open")
            QCoreApplication::sendEvent(qApp, &quit);
        else
            Command(ID_APP_EXIT);
        // Whoever goes through a list of files goes on with it.
        asWanted = asWanted && !theApp.OpenDocumentFile(g_folder.Write(picture, "late"));
        asWanted = asWanted && OpenWindows() == 0;
    };
    const auto start = [&] {
        for (std::size_t i = 0; i < WINDOWS; i += 2) {
            theApp.OpenDocumentFile(g_folder.Write(picture, std::to_string(i)));
            Command(ID_WINDOW_NEW);
        }
        // A message that a control leads to comes up once that is left.
        Later([&] { Later(end); });
        if (strHow == "list") ChooseByKey();
        if (strHow == "menu") ReloadByMenu();
        if (strHow == "box") AfxMessageBox("A message");
        // The view is in the middle of its command when it goes.
        if (strHow == "zoom" || strHow == "quit") Command(ID_ZOOM);
        if (strHow == "preview") Command(ID_FILE_PRINT_PREVIEW);
        if (strHow == "open") {
            ActiveWindow().GetSubWindow()->systemMenu()->actions().last()->trigger();
            for (QWidget* const window : QApplication::topLevelWidgets())
                if (window->isVisible() && window->windowType() == Qt::Tool) QApplication::setActiveWindow(window);
            Command(ID_FILE_OPEN);
        }
        if (strHow == "ask") {
            asWanted = !theApp.OpenDocumentFile(g_folder.Write(PaddedPsd(), "padded")) && asWanted;
            asWanted = asWanted && theApp.GetProfileString(READING_SECTION, TOLERANT_ENTRY, "").empty();
        }
    };
    if (const auto status = theApp.Start(1, argv)) return *status;
    if (!theApp.InitInstance()) return EXIT_FAILURE;
    Later(start);
    const int status = theApp.Run();
    theApp.ExitInstance();
    return asWanted ? status : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
    const PrivateHome home;
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    char* words[] = {argv[0], nullptr};
    return argc == 2 ? EndWithWindows(argv[1], words) : 2;
}
