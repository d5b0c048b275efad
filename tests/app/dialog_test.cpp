// The dialogs, answered in the user's place.

#include "framework/qt/menu_bar.h"
#include "framework/qt/printing.h"
#include "window_case.h"

TEST_F(WindowTest, ZoomTakesNumbersBetweenItsBoundsAndStaysOpenForAnythingElse) {
    struct Entry {
        const char* pszText;
        CSize size;  // none where it is refused
    };
    ASSERT_TRUE(OpenFile(Picture(100, 50)));
    std::string shown = "1";
    for (const Entry& entry : {Entry{"0.03125", {3, 1}}, Entry{"32", {3200, 1600}}, Entry{"0.03", {}}, Entry{"33", {}},
             Entry{"abc", {}}, Entry{" 1.5 ", {150, 75}}}) {
        m_answers.m_messages.clear();
        const CSize before = ClientSize();
        const bool refused = entry.size == CSize{};
        m_answers.m_nextDialog = [&](ModalDialog& dialog) {
            EXPECT_EQ(dialog.GetItemText(IDC_SCALE), shown);
            dialog.SetItemText(IDC_SCALE, entry.pszText);
            EXPECT_EQ(dialog.Press(IDOK), !refused) << entry.pszText;
            if (!refused) return IDOK;
            EXPECT_TRUE(dialog.Press(IDCANCEL));
            return IDCANCEL;
        };
        EXPECT_TRUE(Frame().OnCmdMsg(ID_ZOOM, CN_COMMAND, nullptr));
        EXPECT_EQ(ClientSize(), refused ? before : entry.size) << entry.pszText;
        EXPECT_EQ(m_answers.m_messages.size(), refused ? 1u : 0u) << entry.pszText;
        if (!refused) shown = entry.pszText == std::string(" 1.5 ") ? "1.5" : entry.pszText;
    }
    EXPECT_EQ(m_answers.m_dialogs, std::vector<u32>(6, IDD_ZOOM));
}

TEST_F(WindowTest, PrintingAsksAndMakesNothingWhenItIsCancelled) {
    ASSERT_TRUE(OpenFile(Picture(16, 16)));
    const std::filesystem::path file = m_folder / "page.pdf";
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
