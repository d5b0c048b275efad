// What the running program says and where its controls stand, written down whole and compared with golden.txt.
// With VISTREL_WRITE_GOLDEN=yes in the environment the file is written anew: read what changed in it.

#include "framework/qt/wnd/dialog.h"
#include "window_case.h"

#include <QLabel>
#include <QMenuBar>
#include <QShortcut>
#include <QToolBar>

#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>

namespace {

std::ostream& operator<<(std::ostream& out, const QString& text) {
    return out
           << QString(text).replace(u'\n', QStringLiteral("\\n")).replace(u'\t', QStringLiteral("\\t")).toStdString();
}

std::string State(const QAction& item) {
    return std::string(item.isEnabled() ? "" : " | grey") + (item.isChecked() ? " | checked" : "");
}

// Recent files and open windows differ from run to run.
bool IsTheSameInEveryRun(const QAction& item) {
    const u32 id = item.data().toUInt();
    return id < AFX_IDM_FIRST_MDICHILD && (id < ID_FILE_MRU_FILE1 || id > ID_FILE_MRU_FILE9);
}

void PutMenus(std::ostream& out) {
    for (const QAction* const title : Main().GetBarHost()->menuBar()->actions()) {
        out << "  " << title->text() << '\n';
        emit title->menu()->aboutToShow();
        for (const QAction* const item : title->menu()->actions())
            if (item->isSeparator())
                out << "    -\n";
            else if (IsTheSameInEveryRun(*item))
                out << "    " << item->data().toUInt() << ' ' << item->text() << " | " << item->statusTip()
                    << State(*item) << '\n';
    }
}

void PutToolBar(std::ostream& out) {
    const QToolBar& bar = *Main().GetBarHost()->findChild<QToolBar*>();
    out << "tool bar " << bar.iconSize().width() << " x " << bar.iconSize().height() << '\n';
    for (const QAction* const button : bar.actions())
        if (button->isSeparator())
            out << "  -\n";
        else
            out << "  " << button->data().toUInt() << ' ' << button->toolTip() << " | " << button->statusTip()
                << (button->icon().isNull() ? " | no icon" : " | icon") << State(*button) << '\n';
}

bool IsOfTheView(const QKeySequence& keys) {
    for (const AcceleratorTable& table : AfxGetAccelerators())
        for (const AcceleratorResource& key : table.keys)
            if (table.nID == IDR_VIEW && QKeySequence(QString::fromLatin1(key.pszKeys)) == keys) return true;
    return false;
}

void PutKeys(std::ostream& out, bool bOfTheView) {
    std::multiset<QString> keys;
    for (const QShortcut* const key : Main().GetWidget()->findChildren<QShortcut*>(Qt::FindDirectChildrenOnly))
        if (IsOfTheView(key->key()) == bOfTheView) keys.insert(key->key().toString());
    for (const QString& key : keys) out << "  " << key << '\n';
}

void PutPanes(std::ostream& out, const CWnd& bar) {
    for (const QLabel* const pane : bar.GetWidget()->findChildren<QLabel*>())
        out << (pane->frameShape() == QFrame::NoFrame ? "  stretched\n" : "  framed\n");
}

// Places across, in dialog units; up and down the font has a say. A bar is as wide as its frame, and its labels
// begin where the font lets them.
void PutControls(std::ostream& out, const QWidget& parent, bool bIsBar) {
    const QString alphabet = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    const int unit = (parent.fontMetrics().horizontalAdvance(alphabet) / 26 + 1) / 2;
    const auto across = [&](int nPixels) { return (nPixels * 4 + unit / 2) / unit; };
    if (!bIsBar) out << parent.windowTitle() << ", " << across(parent.width()) << " wide\n";
    for (const QWidget* const control : parent.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        if (control->isHidden()) continue;
        const bool isLabel = qobject_cast<const QLabel*>(control) != nullptr;
        out << "  " << (isLabel ? QStringLiteral("label") : control->objectName());
        out << " \"" << control->property("text").toString() << '"';
        if (!isLabel || !bIsBar) out << " at " << across(control->x());
        if (!isLabel) out << ", " << across(control->width()) << " wide";
        out << '\n';
    }
}

}  // namespace

TEST_F(WindowTest, EveryTextAndEveryPlaceIsAsItIsWrittenDown) {
    ASSERT_TRUE(WaitForTitle(""));
    std::ostringstream out;
    out << Main().GetWidget()->windowTitle() << "\n  " << qApp->applicationVersion() << '\n';
    for (const QByteArray& name : qApp->dynamicPropertyNames())
        out << "  " << name.toStdString() << ": " << qApp->property(name).toString() << '\n';
    out << "menus without a document\n";
    PutMenus(out);
    PutToolBar(out);
    out << "keys\n";
    PutKeys(out, false);
    out << "panes of the main window\n";
    PutPanes(out, *Main().GetControlBar(ID_VIEW_STATUS_BAR));
    Command(ID_FILE_OPEN);
    out << "open\n";
    for (const FileFilter& filter : m_answers.m_filters) {
        out << "  " << filter.strName << ':';
        for (const std::string& pattern : filter.patterns) out << ' ' << pattern;
        out << '\n';
    }
    Open(Picture(600, 100));
    Settle();
    out << "menus with a document\n";
    PutMenus(out);
    PutToolBar(out);
    out << "panes of a document\n";
    PutPanes(out, Frame().m_wndInfoBar);
    out << "layer bar\n";
    PutControls(out, *Layers().parentWidget(), true);
    m_answers.m_nextDialog = [&](ModalDialog& dialog) {
        PutControls(out, *dynamic_cast<CDialog&>(dialog).GetWidget(), false);
        return IDCANCEL;
    };
    Command(ID_APP_ABOUT);
    Command(ID_ZOOM);

    out << "keys of the view\n";
    PutKeys(out, true);
    out << "menu of the view\n";
    for (const MenuItemResource& item : AfxFindMenu(IDR_VIEW)->popups[0].items)
        if (item.nID == 0)
            out << "  -\n";
        else
            out << "  " << item.nID << ' ' << QString::fromUtf8(item.pszText) << " | " << AfxLoadPrompt(item.nID)
                << '\n';

    const char* const wish = std::getenv("VISTREL_WRITE_GOLDEN");
    if (wish && *wish) std::ofstream(VISTREL_GOLDEN) << out.str();
    std::ostringstream expected;
    expected << std::ifstream(VISTREL_GOLDEN).rdbuf();
    EXPECT_EQ(out.str(), expected.str());
}
