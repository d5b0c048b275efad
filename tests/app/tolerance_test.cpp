// Files that break rules of their formats, from the question whether to open them to the menu that reads them
// otherwise.

#include "app/tolerance_setting.h"
#include "support/memory_limit.h"
#include "window_case.h"

#include <QCheckBox>
#include <QMessageBox>

#include <new>

namespace {

class ToleranceTest : public WindowTest {
  protected:
    ~ToleranceTest() override { Keep("ask"); }

    static void Keep(const std::string& strTolerant) {
        theApp.WriteProfileString(READING_SECTION, TOLERANT_ENTRY, strTolerant);
    }
    static std::string Kept() { return theApp.GetProfileString(READING_SECTION, TOLERANT_ENTRY, ""); }

    // Of the item in the view's own menu.
    static std::string MenuState() {
        QMenu& menu = OpenMenuOf(View(), QContextMenuEvent::Keyboard);
        const QAction& item = *ItemOf(menu, ID_READ_TOLERANTLY);
        const std::string state =
            std::string(item.isEnabled() ? "enabled" : "grey") + (item.isChecked() ? ", checked" : "");
        menu.close();
        return state;
    }

    static void ReadOtherwise() {
        QMenu& menu = OpenMenuOf(View(), QContextMenuEvent::Mouse);
        EXPECT_EQ(ItemOf(menu, ID_READ_TOLERANTLY)->text(), "&Read Tolerantly\tShift+F5");
        Press(menu, Qt::Key_R);
        Settle();
    }

    static std::string ShownRows() {
        std::string rows;
        for (const u32 pixel : ShownPixels({0, 0, 1, ClientSize().cy})) rows += pixel == 0xFFFFFFFF ? '#' : '.';
        return rows;
    }
};

}  // namespace

TEST_F(ToleranceTest, FilesOpenedTogetherAreAskedAboutOnceAtTheEnd) {
    const std::string first = m_folder.Write(PaddedPsd(), "first.psd");
    const std::string sound = m_folder.Write(Psd({}), "sound.psd");
    const std::string second = m_folder.Write(PaddedPsd(), "second.psd");
    fs::create_directory(m_folder.Path("other"));
    const std::string namesake = m_folder.Write(PaddedPsd(), "other/first.psd");
    const std::string neither = m_folder.Write(Bytes(100), "neither.psd");
    for (const bool yes : {false, true}) {
        m_answers.m_nextAnswer = {yes ? IDYES : IDNO, false};
        const auto opened = theApp.OpenDocumentFiles({first, sound, neither, second, first, namesake});
        EXPECT_EQ(opened.size(), yes ? 4u : 1u);
        EXPECT_EQ(Told().size(), 1u) << "of what neither set of rules reads";
        const std::string passed = "\": padded layer information\n";
        EXPECT_EQ(Asked(),
            Texts{
                "These files break rules of their formats. They were read by passing over what stands after each.\n\"" +
                first + passed + "\"second.psd" + passed + "\"" + namesake + passed + "Open them anyway?\n"});
        EXPECT_EQ(OpenWindows(), yes ? 4u : 1u);
        EXPECT_EQ(Titles()[0], "sound.psd");
    }
    EXPECT_TRUE(theApp.OpenDocumentFile(first)) << "is open already, and nothing is asked";
}

TEST_F(ToleranceTest, TheCheckBoxKeepsTheAnswer) {
    const std::string path = m_folder.Write(PaddedPsd(), "padded.psd");
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
        m_answers.m_nextAnswer = answer;
        EXPECT_EQ(theApp.OpenDocumentFile(path) != nullptr, opened) << before;
        EXPECT_EQ(Asked(), asked ? Texts{question} : Texts{}) << before;
        if (before == "never") {
            EXPECT_TRUE(Has(ToldOnce(), "It could be read tolerantly (Reading/Tolerant, or --tolerant)."));
        }
        EXPECT_EQ(Kept(), after);
        Main().DestroyChildren();
    }
    EXPECT_FALSE(theApp.OpenDocumentFile(m_folder.Write(Psd({.version = 2, .mode = 6}), "neither.psd")));
    EXPECT_TRUE(Has(ToldOnce(), "header: version 2; version 1 is read.")) << "under never";
}

TEST_F(ToleranceTest, AnAnswerThatCannotBeKeptIsToldOnceAndCountsForTheRun) {
    const std::string path = m_folder.Write(PaddedPsd(), "padded.psd");
    const fs::path lock = std::string(getenv("XDG_CONFIG_HOME")) + "/Talvorine/Internal/.lock";
    Keep("ask");
    fs::remove(lock);
    fs::create_directory(lock);
    m_answers.m_nextAnswer = {IDNO, true};
    EXPECT_FALSE(theApp.OpenDocumentFile(path));
    EXPECT_EQ(Told(), Texts{"The settings could not be written. The answer counts until the program ends."});
    EXPECT_EQ(Asked().size(), 1u);
    EXPECT_FALSE(theApp.OpenDocumentFile(path));
    EXPECT_TRUE(Has(ToldOnce(), "could be read tolerantly"));
    fs::remove(lock);
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
        Later([pressed = button, isChecked = checks] {
            auto& box = dynamic_cast<QMessageBox&>(*QApplication::activeModalWidget());
            EXPECT_EQ(box.text(), "One <b>\n\nTwo");
            EXPECT_EQ(box.checkBox()->text(), "Do not ask again");
            box.checkBox()->setChecked(isChecked);
            if (pressed == NO_BUTTON)
                Press(box, Qt::Key_Escape);
            else
                box.button(pressed)->click();
        });
        const YesNoAnswer given = m_answers.m_pBefore->AskYesNo({{"One <b>", "Two"}, "Do not ask again"});
        EXPECT_EQ(given.nButton, answer);
        EXPECT_EQ(given.bChecked, keeps) << answer;
    }
}

TEST_F(ToleranceTest, TheMenuReadsAnIffFileUnderTheOtherRulesForAllItsWindows) {
    m_answers.m_nextAnswer.nButton = IDYES;
    Open(Psd({}), "sound.psd");
    EXPECT_EQ(MenuState(), "grey");
    Open(PaddedPsd(), "padded.psd");
    EXPECT_EQ(Asked().size(), 1u);
    EXPECT_EQ(MenuState(), "grey, checked");
    Main().DestroyChildren();

    Open(PaddedRows());
    Press(Channels(), Qt::Key_Down);
    Command(ID_WINDOW_NEW);
    EXPECT_EQ(MainPane(), "padded plane rows: right-click to read tolerantly");
    EXPECT_EQ(ShownRows(), "#.") << "the second row is the first one's padding";
    EXPECT_EQ(MenuState(), "enabled");
    ReadOtherwise();
    EXPECT_EQ(MainPane(), "Read tolerantly: padded plane rows");
    EXPECT_EQ(ShownRows(), "##");
    EXPECT_EQ(MenuState(), "enabled, checked");
    CChildFrame& other = FrameAt(0);
    EXPECT_EQ(other.GetActiveView()->GetDocument(), View().GetDocument());
    EXPECT_EQ(other.GetSelection().nChannel, 1u) << "stays chosen";
    ReadOtherwise();
    EXPECT_EQ(ShownRows(), "#.");
    EXPECT_EQ(OpenWindows(), 2u);

    // What stands there now is no picture any more: everything stays as it was.
    m_folder.Write(Bytes(10), "picture.iff");
    ReadOtherwise();
    EXPECT_EQ(Told().size(), 1u);
    EXPECT_EQ(ShownRows(), "#.");

    // Nor is the channel there any more in which the first window is, which stays minimised.
    other.GetSubWindow()->showMinimized();
    Frame().ActivateFrame();
    m_folder.Write(
        Form("ILBM", {Bmhd({.width = 8, .height = 3}), GreyCmap(2, 255), Body(Bytes(6, 0xFF))}), "picture.iff");
    ReadOtherwise();
    EXPECT_EQ(other.GetSelection().nChannel, 0u);
    EXPECT_EQ(ShownRows(), "###") << "and the frame fits the new picture";
    EXPECT_TRUE(other.IsIconic());
    EXPECT_EQ(Main().MDIGetActive(), &Frame());
}

TEST_F(ToleranceTest, AWindowWithoutMemoryForItsPictureIsOnTheSameDocument) {
    ASSERT_TRUE(OpenWith<WatchedView>(m_folder.Write(PaddedRows())));
    Command(ID_WINDOW_NEW);
    const CView& first = *FrameAt(0).GetActiveView();
    bool hasMemory = false;
    WatchedView::s_onUpdate = [&](CVistrelView& view) {
        if (hasMemory || &view != &first) return;
        view.m_bValid = 0;
        throw std::bad_alloc();
    };
    m_folder.Write(PaddedRows(3));
    ReadOtherwise();
    EXPECT_EQ(Told(), Texts{"There is not enough memory."});
    EXPECT_EQ(first.GetDocument(), View().GetDocument());
    EXPECT_EQ(ShownRows(), "###");

    const CSize before = ClientSize();
    hasMemory = true;
    ReadOtherwise();
    EXPECT_EQ(first.GetClientRect().Height(), before.cy) << "its frame fits a picture once it has one";
}

// Planes of 125 KB, and 1 MB that only the tolerant rules read; the picture takes 4 MB.
TEST_F(ToleranceTest, WhatCouldBeReadTolerantlyTakesNoMemoryFromThePicture) {
    const Bytes chunky = Form("PBM ", {Bmhd({1000, 1000, 8}), GreyCmap(2), Body(Bytes(1'000'000))});
    const Bytes planes = Form("ILBM", {Bmhd({1000, 1000}), GreyCmap(2), Body(Bytes(125'000))});
    {
        const MemoryLimit limit(LargeBlock::Limit() - LargeBlock::Left() + 4'600'000);
        Open(Cat("ILBM", {planes, chunky}));
        EXPECT_TRUE(View().m_bValid);
    }
    Open(chunky, "chunky.iff");
    Command(ID_WINDOW_NEW);
    EXPECT_EQ(MainPane(), "one byte a pixel: right-click to read tolerantly") << "known to a second window, too";
}
