// Every command of the menus, the toolbar and the accelerators, as the program runs.

#include "app/resources/resources.h"
#include "framework/qt/wnd/status_bar.h"
#include "window_case.h"

#include <QAccessible>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

#include <cstring>
#include <set>

namespace {

// Commands that are enabled without a document, and those that a picture on show adds.
const std::set<u32> ALWAYS = {
    ID_FILE_OPEN, ID_FILE_PRINT_SETUP, ID_APP_EXIT, ID_APP_ABOUT, ID_VIEW_TOOLBAR, ID_VIEW_STATUS_BAR};
const std::set<u32> WITH_PICTURE = {ID_FILE_CLOSE, ID_FILE_PRINT, ID_FILE_PRINT_PREVIEW, ID_TOGGLE_INFO_BAR,
    ID_TOGGLE_LAYER_BAR, ID_WINDOW_NEW, ID_WINDOW_CASCADE, ID_WINDOW_TILE_HORZ, ID_WINDOW_ARRANGE, ID_ZOOM,
    ID_NEXT_PANE, ID_PREV_PANE};

QMainWindow& Window() { return *theApp.m_pMainWnd->GetBarHost(); }

void ExpectItems(const QList<QAction*>& items, bool bPicture) {
    std::set<QKeySequence> mnemonics;
    for (const QAction* const item : items) {
        const u32 id = item->data().toUInt();
        const QKeySequence mnemonic = QKeySequence::mnemonic(item->text());
        EXPECT_TRUE(mnemonic.isEmpty() || mnemonics.insert(mnemonic).second) << item->text().toStdString();
        if (item->isSeparator() || item->menu() || !item->isVisible() || id >= AFX_IDM_FIRST_MDICHILD) continue;
        EXPECT_FALSE(item->statusTip().isEmpty() || item->text().isEmpty()) << id;
        // How many recent files there are is up to the tests before this one.
        if (id >= ID_FILE_MRU_FILE1 && id <= ID_FILE_MRU_FILE9) continue;
        EXPECT_EQ(item->isEnabled(), ALWAYS.contains(id) || (bPicture && WITH_PICTURE.contains(id)))
            << id << (bPicture ? " with" : " without") << " a picture";
    }
}

}  // namespace

TEST_F(WindowTest, EveryCommandIsHandledOrGreyAndSaysWhatItDoes) {
    for (const bool picture : {false, true}) {
        ASSERT_TRUE(!picture || OpenFile(Picture(16, 16)));
        Settle();
        ExpectItems(Window().menuBar()->actions(), picture);
        for (const QAction* const title : Window().menuBar()->actions()) {
            emit title->menu()->aboutToShow();
            ExpectItems(title->menu()->actions(), picture);
        }
        const QList<QAction*> buttons = Window().findChild<QToolBar*>()->actions();
        ExpectItems(buttons, picture);
        for (const QAction* const button : buttons)
            EXPECT_TRUE(button->isSeparator() || !(button->toolTip().isEmpty() || button->icon().isNull()));
    }
}

// What a menu shows after a text is the key that works.
TEST_F(WindowTest, TheKeyBesideAnItemIsItsAccelerator) {
    std::set<std::string> keys;
    for (const AcceleratorResource& key : AfxGetAccelerators()) {
        keys.insert(std::to_string(key.nId) + '\t' + key.pszKeys);
        EXPECT_FALSE(QKeySequence(QString::fromLatin1(key.pszKeys)).isEmpty()) << key.pszKeys;
    }
    for (const MenuResource& menu : g_resources.menus)
        for (const PopupResource& popup : menu.popups)
            for (const MenuItemResource& item : popup.items)
                if (const char* const tab = std::strchr(item.pszText, '\t')) {
                    EXPECT_TRUE(keys.contains(std::to_string(item.nId) + tab)) << item.pszText;
                }
}

TEST_F(WindowTest, BarsComeAndGoAloneAndTheStatusBarSaysWhatIsPointedAt) {
    CMDIFrameWnd& main = *theApp.m_pMainWnd;
    ASSERT_TRUE(OpenFile(Picture(16, 16)));
    Settle();
    const std::set<u32> bars = {ID_VIEW_TOOLBAR, ID_VIEW_STATUS_BAR, ID_TOGGLE_INFO_BAR, ID_TOGGLE_LAYER_BAR};
    for (const u32 id : bars)
        for (const bool shows : {false, true}) {
            main.OnCmdMsg(id, CN_COMMAND, nullptr);
            for (const u32 other : bars) EXPECT_EQ(MenuItem(other)->isChecked(), shows || other != id);
        }
    const CWnd& bar = *main.GetControlBar(ID_VIEW_STATUS_BAR);
    EXPECT_EQ(PaneText(bar), "Ready");
    Window().findChild<QToolBar*>()->actions()[0]->showStatusText(&Window());
    EXPECT_EQ(PaneText(bar), "Create a new document");
    main.SetMessageText({});
    EXPECT_EQ(PaneText(bar), "Ready");
}

TEST_F(WindowTest, ListsBarsAndViewsHaveNamesForWhatReadsTheScreen) {
    ASSERT_TRUE(OpenFile(Picture(16, 16)));
    const auto shown = [](const CWnd& window) { return QAccessible::queryAccessibleInterface(window.GetWidget()); };
    EXPECT_EQ(shown(View())->text(QAccessible::Name).toStdString(), "picture.iff");
    EXPECT_EQ(shown(Frame().m_wndInfoBar)->text(QAccessible::Name).toStdString(), "Info Bar");
    EXPECT_EQ(shown(Frame().m_wndLayerBar)->text(QAccessible::Name).toStdString(), "Layers & Channels");
    // The toolkit calls a list what is chosen in it.
    for (const CWnd* const list : {&Frame().m_wndLayerCombo, &Frame().m_wndChannelCombo})
        EXPECT_EQ(shown(*list)->relations(QAccessible::Label).size(), 1);
}
