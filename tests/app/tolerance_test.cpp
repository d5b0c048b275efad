// Files that break rules of their formats, from the question whether to open them to the menu that reads them
// otherwise.

#include "app/tolerance_setting.h"
#include "support/psd_builder.h"
#include "window_case.h"

#include <QCheckBox>
#include <QContextMenuEvent>
#include <QMdiSubWindow>
#include <QMessageBox>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <new>

namespace {

// Four bytes of padding follow its one layer where one is read.
Bytes Padded() { return Psd({.layers = {{.channels = {{.data = RawData({7})}}}}, .layerPad = Bytes(4)}); }

// Rows of eight pixels and a byte that pads each, and an alpha. The padding shows where rows are not taken for
// padded.
Bytes PaddedRows(u32 nHeight = 2) {
    Bytes rows;
    for (u32 y = 0; y < nHeight; ++y) rows.insert(rows.end(), {0xFF, 0});
    return Form("ILBM", {Bmhd({.width = 8, .height = nHeight}), GreyCmap(2, 255),
                            Alph({.width = 8, .height = nHeight, .data = Bytes(nHeight, 0xFF)}), Chunk("BODY", rows)});
}

class ToleranceTest : public WindowTest {
  protected:
    ~ToleranceTest() override { Keep("ask"); }

    static void Keep(const std::string& strTolerant) {
        theApp.WriteProfileString(READING_SECTION, TOLERANT_ENTRY, strTolerant);
    }
    static std::string Kept() { return theApp.GetProfileString(READING_SECTION, TOLERANT_ENTRY, ""); }

    u32 OpenWindows() { return static_cast<u32>(theApp.m_pMainWnd->GetChildren().size()); }

    // The item of the view's own menu, as the menu shows it; opened by the pointer or by its key.
    QAction* MenuItemOf(QContextMenuEvent::Reason reason) {
        QWidget& view = *View().GetWidget();
        QContextMenuEvent event(reason, QPoint(1, 1), view.mapToGlobal(QPoint(1, 1)));
        QApplication::sendEvent(&view, &event);
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu) return nullptr;
        const auto isIt = [](const QAction* pItem) { return pItem->data().toUInt() == ID_READ_TOLERANTLY; };
        const auto items = menu->actions();
        const auto found = std::ranges::find_if(items, isIt);
        return found == items.end() ? nullptr : *found;
    }

    // The item's state; the menu is closed again.
    std::string MenuState() {
        const QAction* const item = MenuItemOf(QContextMenuEvent::Keyboard);
        if (!item) return "no menu";
        const std::string state =
            std::string(item->isEnabled() ? "enabled" : "grey") + (item->isChecked() ? ", checked" : "");
        QApplication::activePopupWidget()->close();
        return state;
    }

    void ReadOtherwise() {
        QAction* const item = MenuItemOf(QContextMenuEvent::Mouse);
        ASSERT_TRUE(item);
        EXPECT_EQ(item->text(), "&Read Tolerantly\tShift+F5");
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_R);
        Settle();
    }

    std::string ShownRows() {
        std::string rows;
        for (const u32 pixel : PixelsOf(*View().GetWidget(), {0, 0, 1, ClientSize().cy}))
            rows += pixel == 0xFFFFFFFF ? '#' : '.';
        return rows;
    }
};

}  // namespace

TEST_F(ToleranceTest, FilesOpenedTogetherAreAskedAboutOnceAtTheEnd) {
    const std::string first = m_folder.Write(Padded(), "first.psd");
    const std::string sound = m_folder.Write(Psd({}), "sound.psd");
    const std::string second = m_folder.Write(Padded(), "second.psd");
    std::filesystem::create_directory(m_folder.Path("other"));
    const std::string namesake = m_folder.Write(Padded(), "other/first.psd");
    const std::string neither = m_folder.Write(Bytes(100), "neither.psd");
    for (const bool yes : {false, true}) {
        m_answers.m_questions.clear();
        m_answers.m_messages.clear();
        m_answers.m_nextAnswer = {yes ? IDYES : IDNO, false};
        const auto opened = theApp.OpenDocumentFiles({first, sound, neither, second, first, namesake});
        EXPECT_EQ(opened.size(), yes ? 4u : 1u);
        EXPECT_EQ(m_answers.m_messages.size(), 1u) << "of what neither set of rules reads";
        const std::string passed = "\": padded layer information\n";
        EXPECT_EQ(m_answers.m_questions,
            Texts{
                "These files break rules of their formats. They were read by passing over what stands after each.\n\"" +
                first + passed + "\"second.psd" + passed + "\"" + namesake + passed + "Open them anyway?\n"});
        EXPECT_EQ(OpenWindows(), yes ? 4u : 1u);
        EXPECT_EQ(theApp.m_pMainWnd->GetChildren()[0]->GetActiveView()->GetDocument()->GetTitle(), "sound.psd");
    }
    EXPECT_TRUE(theApp.OpenDocumentFile(first)) << "is open already, and nothing is asked";
    EXPECT_EQ(m_answers.m_questions.size(), 1u);
}

TEST_F(ToleranceTest, TheCheckBoxKeepsTheAnswer) {
    const std::string path = m_folder.Write(Padded(), "padded.psd");
    const std::string question = "\"" + path +
                                 "\" breaks rules of its format. It was read by passing over: padded layer " +
                                 "information.\nOpen it anyway?\n";
    for (const auto& [before, answer, after, asked, opened] : Table<std::string, YesNoAnswer, std::string, bool, bool>{
             {"ask", {IDYES, false}, "ask", true, true},
             {"anything", {IDNO, false}, "anything", true, false},
             {"ask", {IDYES, true}, "always", true, true},
             {"ask", {IDNO, true}, "never", true, false},
             {"always", {IDNO, true}, "always", false, true},
             {"never", {IDYES, true}, "never", false, false},
         }) {
        Keep(before);
        m_answers.m_questions.clear();
        m_answers.m_messages.clear();
        m_answers.m_nextAnswer = answer;
        EXPECT_EQ(theApp.OpenDocumentFile(path) != nullptr, opened) << before;
        EXPECT_EQ(m_answers.m_questions, asked ? Texts{question} : Texts{}) << before;
        EXPECT_EQ(m_answers.m_messages.size(), before == "never" ? 1u : 0u);
        for (const std::string& refusal : m_answers.m_messages)
            EXPECT_TRUE(refusal.ends_with("It could be read tolerantly (Reading/Tolerant, or --tolerant).")) << refusal;
        EXPECT_EQ(Kept(), after);
        theApp.m_pMainWnd->DestroyChildren();
    }
    EXPECT_FALSE(OpenFile(Psd({.version = 2, .mode = 6}), "neither.psd"));
    EXPECT_NE(m_answers.m_messages.back().find("header: version 2; version 1 is read."), std::string::npos)
        << "under never: " << m_answers.m_messages.back();
}

TEST_F(ToleranceTest, AnAnswerThatCannotBeKeptIsToldOnceAndCountsForTheRun) {
    const std::string path = m_folder.Write(Padded(), "padded.psd");
    const std::filesystem::path lock = std::string(getenv("XDG_CONFIG_HOME")) + "/Talvorine/Internal/.lock";
    Keep("ask");
    std::filesystem::remove(lock);
    std::filesystem::create_directory(lock);
    m_answers.m_nextAnswer = {IDNO, true};
    EXPECT_FALSE(theApp.OpenDocumentFile(path));
    EXPECT_EQ(
        m_answers.m_messages, Texts{"The settings could not be written. The answer counts until the program ends."});
    EXPECT_FALSE(theApp.OpenDocumentFile(path));
    EXPECT_EQ(m_answers.m_questions.size(), 1u);
    EXPECT_NE(m_answers.m_messages.back().find("could be read tolerantly"), std::string::npos);
    std::filesystem::remove(lock);
    Keep("always");
    EXPECT_TRUE(theApp.OpenDocumentFile(path)) << "what is kept later counts";
}

TEST_F(ToleranceTest, TheBoxHasItsButtonsAndItsCheckBox) {
    constexpr auto NO_BUTTON = QMessageBox::NoButton;  // the key that leaves a question
    for (const auto& [button, checks, answer, keeps] : Table<QMessageBox::StandardButton, bool, int, bool>{
             {QMessageBox::Yes, true, IDYES, true},
             {QMessageBox::No, false, IDNO, false},
             {NO_BUTTON, true, IDNO, false},
         }) {
        const auto press = [pressed = button, isChecked = checks] {
            auto& box = dynamic_cast<QMessageBox&>(*QApplication::activeModalWidget());
            EXPECT_EQ(box.text(), "One <b>\n\nTwo");
            EXPECT_EQ(box.checkBox()->text(), "Do not ask again");
            box.checkBox()->setChecked(isChecked);
            if (pressed == NO_BUTTON)
                QTest::keyClick(&box, Qt::Key_Escape);
            else
                box.button(pressed)->click();
        };
        QMetaObject::invokeMethod(qApp, press, Qt::QueuedConnection);
        const YesNoAnswer given = m_answers.m_pBefore->AskYesNo({{"One <b>", "Two"}, "Do not ask again"});
        EXPECT_EQ(given.nButton, answer);
        EXPECT_EQ(given.bChecked, keeps) << answer;
    }
}

TEST_F(ToleranceTest, TheMenuReadsAnIffFileUnderTheOtherRulesForAllItsWindows) {
    m_answers.m_nextAnswer.nButton = IDYES;
    ASSERT_TRUE(OpenFile(Psd({}), "sound.psd"));
    EXPECT_EQ(MenuState(), "grey");
    ASSERT_TRUE(OpenFile(Padded(), "padded.psd"));
    EXPECT_EQ(MenuState(), "grey, checked");
    Main().DestroyChildren();

    ASSERT_TRUE(OpenFile(PaddedRows()));
    Press(Frame().m_wndChannelCombo, Qt::Key_Down);
    theApp.m_pMainWnd->OnCmdMsg(ID_WINDOW_NEW, CN_COMMAND, nullptr);
    EXPECT_EQ(MainPane(), "padded plane rows: right-click to read tolerantly");
    EXPECT_EQ(ShownRows(), "#.") << "the second row is the first one's padding";
    EXPECT_EQ(MenuState(), "enabled");
    ReadOtherwise();
    EXPECT_EQ(MainPane(), "Read tolerantly: padded plane rows");
    EXPECT_EQ(ShownRows(), "##");
    EXPECT_EQ(MenuState(), "enabled, checked");
    auto& other = static_cast<CChildFrame&>(*theApp.m_pMainWnd->GetChildren().front());
    EXPECT_EQ(other.GetActiveView()->GetDocument(), View().GetDocument());
    EXPECT_EQ(other.GetSelection().nChannel, 1u) << "stays chosen";
    ReadOtherwise();
    EXPECT_EQ(ShownRows(), "#.");
    EXPECT_EQ(OpenWindows(), 2u);

    // What stands there now is no picture any more: everything stays as it was.
    m_folder.Write(Bytes(10), "picture.iff");
    ReadOtherwise();
    EXPECT_EQ(m_answers.m_messages.size(), 1u);
    EXPECT_EQ(ShownRows(), "#.");

    // Nor is the channel there any more in which the first window is, which stays minimised.
    other.GetSubWindow()->showMinimized();
    Frame().ActivateFrame();
    m_folder.Write(Form("ILBM", {Bmhd({.width = 8, .height = 3}), GreyCmap(2, 255), Chunk("BODY", Bytes(6, 0xFF))}),
        "picture.iff");
    ReadOtherwise();
    EXPECT_EQ(other.GetSelection().nChannel, 0u);
    EXPECT_EQ(ShownRows(), "###") << "and the frame fits the new picture";
    EXPECT_TRUE(other.IsIconic());
    EXPECT_EQ(theApp.m_pMainWnd->MDIGetActive(), &Frame());
}

namespace {

const CView* g_pRefused = nullptr;  // memory for its picture

struct RefusedView final : public CVistrelView {
    void OnUpdate(CView* pSender, i64 lHint, CCmdTarget* pHint) override {
        CVistrelView::OnUpdate(pSender, lHint, pHint);
        if (g_pRefused != this) return;
        m_bValid = 0;
        throw std::bad_alloc();
    }
};

}  // namespace

TEST_F(ToleranceTest, AWindowWithoutMemoryForItsPictureIsOnTheSameDocument) {
    CMultiDocTemplate documents(
        IDR_IFF_TYPE, RuntimeClassOf<CVistrelDoc>(), RuntimeClassOf<CChildFrame>(), RuntimeClassOf<RefusedView>());
    ASSERT_TRUE(OpenAs(documents, m_folder.Write(PaddedRows())));
    theApp.m_pMainWnd->OnCmdMsg(ID_WINDOW_NEW, CN_COMMAND, nullptr);
    auto& first = static_cast<CChildFrame&>(*theApp.m_pMainWnd->GetChildren().front());
    m_folder.Write(PaddedRows(3));
    g_pRefused = first.GetActiveView();
    ReadOtherwise();
    EXPECT_EQ(m_answers.m_messages, Texts{"There is not enough memory."});
    EXPECT_EQ(g_pRefused->GetDocument(), View().GetDocument());
    EXPECT_EQ(ShownRows(), "###");

    const CSize before = ClientSize();
    g_pRefused = nullptr;
    ReadOtherwise();
    EXPECT_EQ(first.GetActiveView()->GetClientRect().Height(), before.cy) << "its frame fits a picture once it has one";
}
