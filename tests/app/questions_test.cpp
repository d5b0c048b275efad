// What the toolkit's and the program's own questions show, and what they take for an answer.

#include "framework/qt/wnd/dialog.h"
#include "window_case.h"

#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QTreeView>

TEST_F(WindowTest, TheOpenDialogShowsItsColumnsWhole) {
    m_folder.Write(Bytes(123456), "a.psd");
    int shown = 0;  // columns
    const auto look = [&] {
        auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        ASSERT_TRUE(dialog);
        QTreeView& list = *dialog->findChild<QTreeView*>();
        EXPECT_TRUE(WaitFor([&] { return list.model()->rowCount(list.rootIndex()) == 1; }));
        for (; shown < 4; ++shown)
            EXPECT_GE(list.columnWidth(shown), static_cast<QAbstractItemView&>(list).sizeHintForColumn(shown));
        EXPECT_GT(list.columnWidth(0), 35 * list.fontMetrics().averageCharWidth());
        dialog->reject();
    };
    Later(look);
    m_answers.m_pBefore->OpenFiles({{"Pictures", {"*.PSD"}}}, m_folder.m_strPath);
    EXPECT_EQ(shown, 4);
}

TEST_F(WindowTest, AMessageIsPlainTextThatBreaksInALongName) {
    const std::string line(60, 'n');
    std::string shown;
    const auto look = [&] {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_TRUE(box);
        shown = box->text().toStdString();
        EXPECT_EQ(box->textFormat(), Qt::PlainText);
        box->reject();
    };
    Later(look);
    m_answers.m_pBefore->Message("a\xFC " + line + "n", "", 0);
    EXPECT_EQ(shown, "a\u00fc " + line + "\u200Bn");
}

TEST_F(WindowTest, ZoomTakesNumbersBetweenItsBoundsAndStaysOpenForAnythingElse) {
    Open(Picture(100, 50));
    const Texts refusal = {"Please enter a number between 0.03125 and 32."};
    for (const auto& [shown, entry, size, messages] :
        Table<std::string, std::string, CSize, Texts>{{"1", "0.03125", {3, 1}, {}}, {"0.03125", "32", {3200, 1600}, {}},
            {"32", "0.03", {3200, 1600}, refusal}, {"32", "33", {3200, 1600}, refusal},
            {"32", "abc", {3200, 1600}, {"Please enter a number."}}, {"32", " 1.5 ", {150, 75}, {}}}) {
        m_answers.m_nextDialog = [&, before = shown, text = entry, isRefused = !messages.empty()](ModalDialog& dialog) {
            EXPECT_EQ(dialog.GetItemText(IDC_SCALE), before);
            const auto& edit = *static_cast<CDialog&>(dialog).GetWidget()->findChild<QLineEdit*>();
            EXPECT_EQ(edit.selectedText().toStdString(), before);
            EXPECT_EQ(edit.cursorPosition(), 0) << "a long text shows its beginning";
            dialog.SetItemText(IDC_SCALE, text);
            EXPECT_EQ(dialog.Press(IDOK), !isRefused) << text;
            return isRefused ? IDCANCEL : IDOK;
        };
        EXPECT_TRUE(Command(ID_ZOOM));
        EXPECT_EQ(ClientSize(), size) << entry;
        EXPECT_EQ(Told(), messages) << entry;
    }
}

TEST_F(WindowTest, ZoomSpeaksOfNumbersWithTheUsersOwnSign) {
    Open(Picture(100, 50));
    Fit(0.5f);
    QLocale::setDefault(QLocale::German);
    m_answers.m_nextDialog = [](ModalDialog& dialog) {
        EXPECT_EQ(dialog.GetItemText(IDC_SCALE), "0,5");
        dialog.SetItemText(IDC_SCALE, "33");
        EXPECT_FALSE(dialog.Press(IDOK));
        dialog.SetItemText(IDC_SCALE, "1,5");
        EXPECT_TRUE(dialog.Press(IDOK));
        return IDOK;
    };
    EXPECT_TRUE(Command(ID_ZOOM));
    EXPECT_EQ(ClientSize(), (CSize{150, 75}));
    EXPECT_EQ(Told(), Texts{"Please enter a number between 0,03125 and 32."});
    QLocale::setDefault(QLocale::c());
}
