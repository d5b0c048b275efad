// What the toolkit's and the program's own questions show, as they are put to a person.

#include "framework/core/resource.h"
#include "window_case.h"

#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLocale>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTreeView>

namespace {

// Lets someone look at the dialog that the question puts up, and takes it down.
void LookAt(const std::function<void(QDialog&)>& look, const std::function<void()>& ask) {
    bool looked = false;
    const auto answer = [&] {
        auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog) return;
        look(*dialog);
        looked = true;
        dialog->reject();
    };
    QMetaObject::invokeMethod(qApp, answer, Qt::QueuedConnection);
    ask();
    EXPECT_TRUE(looked);
}

}  // namespace

TEST_F(WindowTest, TheOpenDialogShowsItsColumnsWhole) {
    m_folder.Write(Bytes(123456), "a.psd");
    const auto look = [](QDialog& dialog) {
        auto* const list = dialog.findChild<QTreeView*>();
        ASSERT_TRUE(list);
        EXPECT_TRUE(WaitFor([&] { return list->model()->rowCount(list->rootIndex()) == 1; }));
        for (int column = 0; column < 4; ++column)
            EXPECT_GE(list->columnWidth(column), static_cast<QAbstractItemView*>(list)->sizeHintForColumn(column))
                << column;
        EXPECT_GT(list->columnWidth(0), 35 * list->fontMetrics().averageCharWidth());
    };
    LookAt(look, [&] { m_answers.m_pBefore->OpenFiles({{"Pictures", {"*.PSD"}}}, m_folder.m_strPath); });
}

TEST_F(WindowTest, ZoomSpeaksOfNumbersWithTheUsersOwnSign) {
    ASSERT_TRUE(OpenFile(Picture(100, 50)));
    View().FitFrameToImage(0.5f);
    for (const auto& [language, shown, bounds] : Table<QLocale::Language, std::string, std::string>{
             {QLocale::German, "0,5", "0,03125 and 32"}, {QLocale::English, "0.5", "0.03125 and 32"}}) {
        QLocale::setDefault(language);
        m_answers.m_nextDialog = [text = shown](ModalDialog& dialog) {
            EXPECT_EQ(dialog.GetItemText(IDC_SCALE), text);
            dialog.SetItemText(IDC_SCALE, "33");
            EXPECT_FALSE(dialog.Press(IDOK));
            return IDCANCEL;
        };
        EXPECT_TRUE(Frame().OnCmdMsg(ID_ZOOM, CN_COMMAND, nullptr));
        EXPECT_EQ(m_answers.m_messages.back(), "Please enter a number between " + bounds + ".");
    }
    QLocale::setDefault(QLocale::c());
}

TEST_F(WindowTest, TheVersionIsToldInTheBoxOnTheTerminalAndToOtherPrograms) {
    Texts labels;
    m_answers.m_nextDialog = [&](ModalDialog&) {
        for (const QWidget* const window : QApplication::topLevelWidgets())
            if (window->windowTitle() == QStringLiteral("About Vistrel"))
                for (const QLabel* const label : window->findChildren<QLabel*>())
                    labels.push_back(label->text().toStdString());
        return IDCANCEL;
    };
    EXPECT_TRUE(theApp.m_pMainWnd->OnCmdMsg(ID_APP_ABOUT, CN_COMMAND, nullptr));
    EXPECT_EQ(labels, Texts({"", "Talvorine Graphics File Viewer", "Version 1.12"}));
    EXPECT_EQ(AfxLoadString(AFX_IDS_VERSION), "Talvorine Graphics File Viewer 1.12");
    EXPECT_EQ(qApp->applicationVersion(), QStringLiteral("1.0.0.1"));
    for (const auto& [name, text] : Table<const char*, const char*>{{"FileVersion", "1.0.0.1"},
             {"ProductVersion", "1.0.0.1"}, {"FileDescription", "Vistrel MFC Application"}, {"InternalName", "Vistrel"},
             {"OriginalFilename", "Vistrel.EXE"}, {"ProductName", "Vistrel Application"}})
        EXPECT_EQ(qApp->property(name).toString().toStdString(), text) << name;
}

TEST_F(WindowTest, ALongRecentPathLosesItsMiddleInTheMenu) {
    const std::string folder(80, 'f');
    std::filesystem::create_directory(m_folder.Path(folder));
    for (const auto& [name, begin, end] : Table<std::string, const char*, const char*>{
             {"fish & chips.iff", "&1 /", "/fish && chips.iff"}, {folder + "/b\xFC.iff", "&1 /", "ff/b\u00fc.iff"}}) {
        ASSERT_TRUE(OpenFile(Picture(8, 8), name));
        const QAction* item = nullptr;
        for (const QAction* const title : theApp.m_pMainWnd->GetBarHost()->menuBar()->actions()) {
            emit title->menu()->aboutToShow();
            for (const QAction* const action : title->menu()->actions())
                if (action->data().toUInt() == ID_FILE_MRU_FILE1) item = action;
        }
        ASSERT_TRUE(item);
        const std::string text = item->text().toStdString();
        EXPECT_TRUE(text.starts_with(begin) && text.ends_with(end)) << text;
        EXPECT_LT(text.size(), 90u) << text;
        EXPECT_EQ(item->statusTip().toStdString().size() > 80, text.find("\u2026") != std::string::npos) << text;
    }
}
