// Every command of the menus, the toolbar and the accelerators, as the program runs.

#include "app/resources/resources.h"
#include "framework/qt/control_bars.h"
#include "framework/qt/menu_bar.h"
#include "window_case.h"

#include <QAccessible>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <QToolBar>

#include <cstring>
#include <set>

namespace {

// Commands that are enabled without a document, and those that a picture on show adds.
const std::set<u32> ALWAYS = {ID_FILE_OPEN, ID_FILE_PRINT_SETUP, ID_APP_EXIT,
                              ID_APP_ABOUT, ID_VIEW_TOOLBAR,     ID_VIEW_STATUS_BAR};
const std::set<u32> WITH_PICTURE = {
    ID_FILE_CLOSE,       ID_FILE_PRINT, ID_FILE_PRINT_PREVIEW, ID_TOGGLE_INFO_BAR,
    ID_TOGGLE_LAYER_BAR, ID_WINDOW_NEW, ID_WINDOW_CASCADE,     ID_WINDOW_TILE_HORZ,
    ID_WINDOW_ARRANGE,   ID_ZOOM,       ID_NEXT_PANE,          ID_PREV_PANE};

QMainWindow& Window() {
    return *theApp.m_pMainWnd->GetBarHost();
}

void ExpectState(u32 nID, bool bEnabled, bool bPicture) {
    EXPECT_EQ(bEnabled, ALWAYS.contains(nID) || (bPicture && WITH_PICTURE.contains(nID)))
        << nID << (bPicture ? " with" : " without") << " a picture";
    EXPECT_FALSE(AfxLoadPrompt(nID).empty()) << nID;
}

// Items in the order in which they are read, with the mnemonics of one menu at a time.
void ExpectMenus(bool bPicture) {
    const auto expectMnemonics = [](const QList<QAction*>& items) {
        std::set<QKeySequence> taken;
        for (const QAction* const item : items) {
            const QKeySequence key = QKeySequence::mnemonic(item->text());
            if (!item->isSeparator() && !key.isEmpty()) {
                EXPECT_TRUE(taken.insert(key).second) << item->text().toStdString();
            }
        }
    };
    expectMnemonics(Window().menuBar()->actions());
    for (const QAction* const title : Window().menuBar()->actions()) {
        emit title->menu()->aboutToShow();
        expectMnemonics(title->menu()->actions());
        for (const QAction* const item : title->menu()->actions()) {
            const u32 id = item->data().toUInt();
            if (item->isSeparator() || !item->isVisible() || id >= AFX_IDM_FIRST_MDICHILD) continue;
            EXPECT_FALSE(item->statusTip().isEmpty()) << id;
            // How many recent files there are is up to the tests before this one.
            if (id < ID_FILE_MRU_FILE1 || id > ID_FILE_MRU_FILE9)
                ExpectState(id, item->isEnabled(), bPicture);
        }
    }
}

}  // namespace

TEST_F(WindowTest, EveryCommandIsHandledOrGreyAndSaysWhatItDoes) {
    for (const bool picture : {false, true}) {
        ASSERT_TRUE(!picture || OpenFile(Picture(16, 16)));
        theApp.PumpMessages();
        ExpectMenus(picture);
        const auto* const bar = Window().findChild<QToolBar*>();
        for (const QAction* const button : bar->actions()) {
            if (button->isSeparator()) continue;
            ExpectState(button->data().toUInt(), button->isEnabled(), picture);
            EXPECT_FALSE(button->toolTip().isEmpty() || button->icon().isNull()) << button->data().toUInt();
        }
        for (const AcceleratorResource& key : AfxGetAccelerators())
            ExpectState(key.nId, AfxIsCommandEnabled(*theApp.m_pMainWnd, key.nId), picture);
    }
}

// What a menu shows behind a text is the key that works.
TEST_F(WindowTest, TheKeyBesideAnItemIsItsAccelerator) {
    std::set<QString> shown;
    for (const MenuResource& menu : g_resources.menus)
        for (const PopupResource& popup : menu.popups)
            for (const MenuItemResource& item : popup.items)
                if (const char* const tab = std::strchr(item.pszText, '\t'))
                    shown.insert(QString::number(item.nId) + tab);
    EXPECT_EQ(shown.size(), 8u);
    for (const AcceleratorResource& key : AfxGetAccelerators()) {
        shown.erase(QString::number(key.nId) + u'\t' + key.pszKeys);
        EXPECT_FALSE(QKeySequence(QString::fromLatin1(key.pszKeys)).isEmpty()) << key.pszKeys;
    }
    EXPECT_TRUE(shown.empty()) << shown.begin()->toStdString();
}

TEST_F(WindowTest, TheMainFramesBarsHideAloneAndTheStatusBarSaysWhatIsPointedAt) {
    CMDIFrameWnd& main = *theApp.m_pMainWnd;
    ASSERT_TRUE(OpenFile(Picture(16, 16)));
    main.ShowWindow(true);
    for (const u32 id : {ID_VIEW_TOOLBAR, ID_VIEW_STATUS_BAR}) {
        EXPECT_EQ((theApp.PumpMessages(), main.GetMenuState(id)), MF_CHECKED);
        main.OnCmdMsg(id, CN_COMMAND, nullptr);
        EXPECT_EQ(main.GetMenuState(id), 0u);
        EXPECT_TRUE(Frame().m_wndInfoBar.IsWindowVisible());
        main.OnCmdMsg(id, CN_COMMAND, nullptr);
        EXPECT_EQ(main.GetMenuState(id), MF_CHECKED);
    }
    const auto& bar = static_cast<CStatusBar&>(*main.GetControlBar(ID_VIEW_STATUS_BAR));
    EXPECT_EQ(bar.GetPaneText(0), "Ready");
    for (QAction* const title : Window().menuBar()->actions())
        if (QAction* const first = title->menu()->actions().first(); first->data().toUInt() == ID_EDIT_UNDO)
            first->showStatusText(&Window());
    EXPECT_EQ(bar.GetPaneText(0), "Undo the last change");
    main.SetMessageText({});
    EXPECT_EQ(bar.GetPaneText(0), "Ready");
    EXPECT_EQ(bar.GetPaneText(1), "");
}

TEST_F(WindowTest, ListsBarsAndViewsHaveNamesForWhatReadsTheScreen) {
    ASSERT_TRUE(OpenFile(Picture(16, 16)));
    CMDIFrameWnd& main = *theApp.m_pMainWnd;
    const auto name = [](const QAccessibleInterface* pShown) {
        return pShown->text(QAccessible::Name).toStdString();
    };
    const auto shown = [](const CWnd& window) {
        return QAccessible::queryAccessibleInterface(window.GetWidget());
    };
    EXPECT_EQ(name(shown(View())), "picture.iff");
    EXPECT_EQ(name(shown(Frame().m_wndInfoBar)), "Info Bar");
    EXPECT_EQ(name(shown(*main.GetControlBar(ID_VIEW_TOOLBAR))), "Toolbar");
    EXPECT_EQ(name(shown(*main.GetControlBar(ID_VIEW_STATUS_BAR))), "Status Bar");
    // The toolkit takes the ampersand for the mark of a mnemonic, and calls a list what is chosen in it.
    EXPECT_EQ(name(shown(Frame().m_wndLayerBar)), "Layers  Channels");
    for (const auto& [list, label] :
         {std::pair{&Frame().m_wndLayerCombo, "Layer:"}, {&Frame().m_wndChannelCombo, "Channel:"}}) {
        const auto labels = shown(*list)->relations(QAccessible::Label);
        EXPECT_EQ(labels.empty() ? "none" : name(labels[0].first), label);
    }
}
