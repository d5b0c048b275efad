// The dialogs, answered in the user's place.

#include "framework/qt/wnd/dialog.h"

#include "framework/qt/wnd/printing.h"
#include "window_case.h"

#include <QLineEdit>

TEST_F(WindowTest, ZoomTakesNumbersBetweenItsBoundsAndStaysOpenForAnythingElse) {
    ASSERT_TRUE(OpenFile(Picture(100, 50)));
    std::string shown = "1";
    for (const auto& [entry, size] : Table<std::string, CSize>{{"0.03125", {3, 1}}, {"32", {3200, 1600}}, {"0.03", {}},
             {"33", {}}, {"1e50", {}}, {"abc", {}}, {" 1.5 ", {150, 75}}}) {
        m_answers.m_messages.clear();
        const CSize before = ClientSize();
        const bool refused = size == CSize{};
        m_answers.m_nextDialog = [&, text = entry](ModalDialog& dialog) {
            EXPECT_EQ(dialog.GetItemText(IDC_SCALE), shown);
            const auto& edit = *static_cast<CDialog&>(dialog).GetWidget()->findChild<QLineEdit*>();
            EXPECT_EQ(edit.selectedText().toStdString(), shown);
            EXPECT_EQ(edit.cursorPosition(), 0) << "a long text shows its beginning";
            dialog.SetItemText(IDC_SCALE, text);
            EXPECT_EQ(dialog.Press(IDOK), !refused) << text;
            if (!refused) return IDOK;
            EXPECT_TRUE(dialog.Press(IDCANCEL));
            return IDCANCEL;
        };
        EXPECT_TRUE(Frame().OnCmdMsg(ID_ZOOM, CN_COMMAND, nullptr));
        EXPECT_EQ(ClientSize(), refused ? before : size) << entry;
        EXPECT_EQ(m_answers.m_messages.size(), refused ? 1u : 0u) << entry;
        if (!refused) shown = entry == " 1.5 " ? "1.5" : entry;
    }
    EXPECT_EQ(m_answers.m_dialogs, std::vector<u32>(7, IDD_ZOOM));
}

TEST_F(WindowTest, PrintingAsksAndMakesNothingWhenItIsCancelled) {
    ASSERT_TRUE(OpenFile(Picture(16, 16)));
    const std::string file = m_folder.Path("page.pdf");
    for (const int answer : {IDCANCEL, IDOK}) {
        m_answers.m_nextDialog = [&file, answer](ModalDialog& dialog) {
            dialog.SetItemText(AFX_IDC_PRINT_FILE, file);
            return answer;
        };
        EXPECT_TRUE(Frame().OnCmdMsg(ID_FILE_PRINT, CN_COMMAND, nullptr));
        EXPECT_EQ(std::filesystem::exists(file), answer == IDOK);
    }
    for (const u32 id : {ID_FILE_PRINT_PREVIEW, ID_FILE_PRINT_SETUP})
        EXPECT_TRUE(Frame().OnCmdMsg(id, CN_COMMAND, nullptr));
    EXPECT_EQ(m_answers.m_dialogs,
        std::vector<u32>({ID_FILE_PRINT, ID_FILE_PRINT, ID_FILE_PRINT_PREVIEW, ID_FILE_PRINT_SETUP}));
    EXPECT_TRUE(m_answers.m_messages.empty());
}
