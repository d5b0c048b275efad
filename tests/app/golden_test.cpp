// What the running program says and where its controls stand, written down whole and compared with golden.txt.
// With VISTREL_WRITE_GOLDEN=yes in the environment the file is written anew: read what changed in it.

#include "framework/qt/wnd/dialog.h"
#include "window_case.h"

#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QShortcut>
#include <QToolBar>

#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>

namespace {

class Dump {
  public:
    std::string Text() const { return m_out.str(); }

    void Line(int nDepth, const QString& text) {
        const QString line = QString(text).replace(u'\n', QStringLiteral("\\n")).replace(u'\t', QStringLiteral("\\t"));
        m_out << std::string(2 * static_cast<u32>(nDepth), ' ') << line.toStdString() << '\n';
    }

    void Menus(const char* pszWhen) {
        Line(0, QStringLiteral("menus %1").arg(QString::fromLatin1(pszWhen)));
        for (const QAction* const title : theApp.m_pMainWnd->GetBarHost()->menuBar()->actions()) {
            Line(1, title->text());
            emit title->menu()->aboutToShow();
            for (const QAction* const item : title->menu()->actions()) Item(*item);
        }
    }

    // Recent files and open windows differ from run to run.
    void Item(const QAction& item) {
        const u32 id = item.data().toUInt();
        if (id >= AFX_IDM_FIRST_MDICHILD || (id >= ID_FILE_MRU_FILE1 && id <= ID_FILE_MRU_FILE9)) return;
        if (item.isSeparator())
            Line(2, QStringLiteral("-"));
        else
            Line(2, QStringLiteral("%1 %2 | %3%4").arg(id).arg(item.text(), item.statusTip(), State(item)));
    }

    static QString State(const QAction& item) {
        return QString::fromLatin1(item.isEnabled() ? "" : " | grey") + (item.isChecked() ? " | checked" : "");
    }

    void ToolBar() {
        const auto* const bar = theApp.m_pMainWnd->GetBarHost()->findChild<QToolBar*>();
        Line(0, QStringLiteral("tool bar %1 x %2").arg(bar->iconSize().width()).arg(bar->iconSize().height()));
        for (const QAction* const button : bar->actions())
            if (button->isSeparator())
                Line(1, QStringLiteral("-"));
            else
                Line(1, QStringLiteral("%1 %2 | %3 | %4%5")
                            .arg(button->data().toUInt())
                            .arg(button->toolTip(), button->statusTip(),
                                button->icon().isNull() ? QStringLiteral("no icon") : QStringLiteral("icon"),
                                State(*button)));
    }

    void Keys() {
        Line(0, QStringLiteral("keys"));
        std::multiset<QString> keys;
        for (const QShortcut* const key :
            theApp.m_pMainWnd->GetWidget()->findChildren<QShortcut*>(Qt::FindDirectChildrenOnly))
            keys.insert(key->key().toString());
        for (const QString& key : keys) Line(1, key);
    }

    void Panes(const char* pszName, const CWnd& bar) {
        Line(0, QStringLiteral("panes of %1").arg(QString::fromLatin1(pszName)));
        for (const QLabel* const pane : bar.GetWidget()->findChildren<QLabel*>())
            Line(1, pane->frameShape() == QFrame::NoFrame ? QStringLiteral("stretched") : QStringLiteral("framed"));
    }

    // Places across, in dialog units; up and down the font has a say. A bar is as wide as its frame, and its labels
    // begin where the font lets them.
    void Controls(const QString& name, const QWidget& parent, bool bIsBar) {
        const QString alphabet = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
        const int unit = (parent.fontMetrics().horizontalAdvance(alphabet) / 26 + 1) / 2;
        const auto across = [&](int nPixels) { return (nPixels * 4 + unit / 2) / unit; };
        Line(0, bIsBar ? name : QStringLiteral("%1, %2 wide").arg(name).arg(across(parent.width())));
        for (const QWidget* const control : parent.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
            if (control->isHidden()) continue;
            const bool isLabel = qobject_cast<const QLabel*>(control) != nullptr;
            QString line = isLabel ? QStringLiteral("label") : control->objectName();
            line += QStringLiteral(" \"%1\"").arg(control->property("text").toString());
            if (!isLabel || !bIsBar) line += QStringLiteral(" at %1").arg(across(control->x()));
            if (!isLabel) line += QStringLiteral(", %1 wide").arg(across(control->width()));
            Line(1, line);
        }
    }

  private:
    std::ostringstream m_out;
};

std::string ReadFile(const std::string& strPath) {
    std::ifstream file(strPath);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

TEST_F(WindowTest, EveryTextAndEveryPlaceIsAsItIsWrittenDown) {
    ASSERT_TRUE(WaitForTitle(""));
    Dump dump;
    dump.Line(0, theApp.m_pMainWnd->GetWidget()->windowTitle());
    dump.Line(1, qApp->applicationVersion());
    for (const QByteArray& name : qApp->dynamicPropertyNames())
        dump.Line(1, QStringLiteral("%1: %2").arg(QString::fromLatin1(name), qApp->property(name).toString()));
    dump.Menus("without a document");
    dump.ToolBar();
    dump.Keys();
    dump.Panes("the main window", *theApp.m_pMainWnd->GetControlBar(ID_VIEW_STATUS_BAR));
    m_answers.m_nextFiles = {};
    theApp.m_pMainWnd->OnCmdMsg(ID_FILE_OPEN, CN_COMMAND, nullptr);
    dump.Line(0, QStringLiteral("open"));
    for (const FileFilter& filter : m_answers.m_filters) {
        QString patterns;
        for (const std::string& pattern : filter.strPatterns) patterns += u' ' + QString::fromStdString(pattern);
        dump.Line(1, QString::fromStdString(filter.strName) + u':' + patterns);
    }
    ASSERT_TRUE(OpenFile(Picture(600, 100)));
    Settle();
    dump.Menus("with a document");
    dump.ToolBar();
    dump.Panes("a document", Frame().m_wndInfoBar);
    dump.Controls(QStringLiteral("layer bar"), *ListOf(Frame().m_wndLayerCombo).parentWidget(), true);
    m_answers.m_nextDialog = [&](ModalDialog& dialog) {
        const QWidget& window = *dynamic_cast<CDialog&>(dialog).GetWidget();
        dump.Controls(window.windowTitle(), window, false);
        return IDCANCEL;
    };
    for (const u32 id : {ID_APP_ABOUT, ID_ZOOM}) Frame().OnCmdMsg(id, CN_COMMAND, nullptr);

    const char* const wish = std::getenv("VISTREL_WRITE_GOLDEN");
    if (wish && *wish) std::ofstream(VISTREL_GOLDEN) << dump.Text();
    EXPECT_EQ(dump.Text(), ReadFile(VISTREL_GOLDEN));
}
