// The commands of the menus and bars, and what tells a user of them.

#include "app/resources/resources.h"
#include "window_case.h"

#include <QAccessible>
#include <QToolBar>

#include <cstring>
#include <set>

// What a menu shows after a text is the key that works.
TEST(Commands, AMenusItemsDifferInTheirMnemonicsAndNameTheirAccelerators) {
    std::set<std::string> keys;
    std::set<QKeySequence> different;
    for (const AcceleratorTable& table : AfxGetAccelerators())
        for (const AcceleratorResource& key : table.keys) {
            keys.insert(std::to_string(key.nID) + '\t' + key.pszKeys);
            const QKeySequence sequence(QString::fromLatin1(key.pszKeys));
            EXPECT_FALSE(sequence.isEmpty()) << key.pszKeys;
            EXPECT_TRUE(different.insert(sequence).second) << key.pszKeys;
        }
    for (const MenuResource& menu : g_resources.menus)
        for (const PopupResource& popup : menu.popups) {
            std::set<QKeySequence> mnemonics;
            for (const MenuItemResource& item : popup.items) {
                const char* const tab = std::strchr(item.pszText, '\t');
                EXPECT_TRUE(!tab || keys.contains(std::to_string(item.nID) + tab)) << item.pszText;
                const QKeySequence mnemonic = QKeySequence::mnemonic(QString::fromUtf8(item.pszText));
                EXPECT_TRUE(mnemonic.isEmpty() || mnemonics.insert(mnemonic).second) << item.pszText;
            }
        }
}

TEST_F(WindowTest, BarsComeAndGoAloneAndTheStatusBarSaysWhatIsPointedAt) {
    Open(Picture(16, 16));
    Settle();
    const std::set<u32> bars = {ID_VIEW_TOOLBAR, ID_VIEW_STATUS_BAR, ID_TOGGLE_INFO_BAR, ID_TOGGLE_LAYER_BAR};
    for (const u32 id : bars)
        for (const bool shows : {false, true}) {
            Command(id);
            for (const u32 other : bars) EXPECT_EQ(MenuItem(other)->isChecked(), shows || other != id);
        }
    const CWnd& bar = *Main().GetControlBar(ID_VIEW_STATUS_BAR);
    EXPECT_EQ(PaneText(bar), "Ready");
    QMainWindow& window = *Main().GetBarHost();
    window.findChild<QToolBar*>()->actions()[0]->showStatusText(&window);
    EXPECT_EQ(PaneText(bar), "Create a new document");
    Main().SetMessageText({});
    EXPECT_EQ(PaneText(bar), "Ready");
}

TEST_F(WindowTest, ListsBarsAndViewsHaveNamesForWhatReadsTheScreen) {
    Open(Picture(16, 16));
    const auto shown = [](const CWnd& window) { return QAccessible::queryAccessibleInterface(window.GetWidget()); };
    EXPECT_EQ(shown(View())->text(QAccessible::Name).toStdString(), "picture.iff");
    EXPECT_EQ(shown(Frame().m_wndInfoBar)->text(QAccessible::Name).toStdString(), "Info Bar");
    EXPECT_EQ(shown(Frame().m_wndLayerBar)->text(QAccessible::Name).toStdString(), "Layers & Channels");
    // The toolkit calls a list what is chosen in it.
    for (const CWnd* const list : {&Frame().m_wndLayerCombo, &Frame().m_wndChannelCombo})
        EXPECT_EQ(shown(*list)->relations(QAccessible::Label).size(), 1);
}
