// Going through the files of a folder in one window.

#include "app/neighbours.h"

#include "framework/qt/kit/natural_order.h"
#include "framework/qt/wnd/menu_bar.h"
#include "window_case.h"

namespace {

class NeighboursTest : public WindowTest {
  protected:
    NeighboursTest() { Keep("ask"); }
    ~NeighboursTest() override { Keep("ask"); }

    static void Keep(const std::string& strTolerant) { theApp.WriteProfileString("Reading", "Tolerant", strTolerant); }
    void OpenWritten(const std::string& strName) {
        ASSERT_TRUE(theApp.OpenDocumentFile(m_folder.Path(strName))) << strName;
    }
    // The title of the active window then.
    static std::string Go(u32 nID) {
        Command(nID);
        Settle();
        return Main().MDIGetActive()->GetWindowText();
    }
    static std::string Next() { return Go(ID_NEXT_FILE); }
    static std::string Previous() { return Go(ID_PREVIOUS_FILE); }
    // Which of the two can do something.
    static std::string Ways() {
        return std::string(AfxIsCommandEnabled(Main(), ID_PREVIOUS_FILE) ? "<" : "") +
               (AfxIsCommandEnabled(Main(), ID_NEXT_FILE) ? ">" : "");
    }
};

}  // namespace

TEST(NaturalOrder, CountsNumbersByTheirValue) {
    Texts names = {"b10.psd", "B2.psd", "b1.psd", "a.psd", "b02.psd", "b2.psd", "\xC3\xA4.psd", "\xE4.psd", "c.psd"};
    SortNaturally(names);
    EXPECT_EQ(names,
        Texts({"a.psd", "\xC3\xA4.psd", "\xE4.psd", "b1.psd", "b02.psd", "b2.psd", "B2.psd", "b10.psd", "c.psd"}));
}

TEST(Neighbours, HaveAPlaceForOneThatDoesNotCount) {
    const TempFolder folder;
    for (const char* name : {"1.iff", "2.iff", "10.iff", "20.txt"}) folder.Write({}, name);
    fs::create_directory(folder.Path("3.iff"));
    fs::create_symlink("nothing", folder.Path("4.iff"));
    const auto isListed = [](const std::string& strName) { return strName.ends_with(".iff"); };
    const auto paths = [&](const Texts& names) {
        Texts all;
        for (const std::string& name : names) all.push_back(folder.Path(name));
        return all;
    };
    for (const auto& [own, before, after] :
        Table<std::string, Texts, Texts>{{"1.iff", {}, {"2.iff", "10.iff"}}, {"2.iff", {"1.iff"}, {"10.iff"}},
            {"10.iff", {"2.iff", "1.iff"}, {}}, {"5.lbm", {"2.iff", "1.iff"}, {"10.iff"}},
            {"20.txt", {"10.iff", "2.iff", "1.iff"}, {}}, {"0", {}, {"1.iff", "2.iff", "10.iff"}}}) {
        const Neighbours neighbours(folder.Path(own), isListed);
        EXPECT_EQ(neighbours.Before(), paths(before)) << own;
        EXPECT_EQ(neighbours.After(), paths(after)) << own;
        EXPECT_EQ(neighbours.PlaceText(folder.Path("10.iff")), "3 of 3") << own;
    }
    EXPECT_TRUE(Neighbours("/nowhere/at/all.iff", isListed).After().empty());
}

TEST_F(NeighboursTest, TakeThePlaceOfTheDocumentAndDoNotWrap) {
    EXPECT_EQ(Ways(), "");
    m_folder.Write(Picture(30, 20), "2.iff");
    m_folder.Write(Bytes(10), "3.TMG");
    m_folder.Write(Psd({.rows = 7, .columns = 9}), "10.PSD");
    m_folder.Write(Picture(30, 20), "9.txt");
    m_folder.Write(Picture(50, 40), "11.tff");
    OpenWritten("2.iff");
    Fit(2);
    SubWindow().move(33, 44);
    const QString recent = MenuItem(ID_FILE_MRU_FILE1)->text();
    EXPECT_EQ(MainPane(), "Ready");
    EXPECT_EQ(Ways(), ">");
    EXPECT_EQ(Next(), "10.PSD") << "past the one that no reader takes";
    EXPECT_EQ(MainPane(), "3 of 4");
    EXPECT_EQ(Ways(), "<>");
    EXPECT_EQ(SubWindow().pos(), QPoint(33, 44));
    EXPECT_EQ(ClientSize(), (CSize{9, 7}));
    EXPECT_EQ(View().m_fScale, 1);
    EXPECT_EQ(View().GetWindowText(), "10.PSD");
    EXPECT_EQ(Next(), "11.tff");
    EXPECT_EQ(Next(), "11.tff");
    EXPECT_EQ(MainPane(), "4 of 4");
    EXPECT_EQ(Ways(), "<");
    EXPECT_EQ(Previous(), "10.PSD");
    EXPECT_EQ(Previous(), "2.iff");
    EXPECT_EQ(ClientSize(), (CSize{30, 20}));
    EXPECT_EQ(Previous(), "2.iff");
    EXPECT_EQ(MainPane(), "1 of 4");
    EXPECT_EQ(OpenWindows(), 1u);
    EXPECT_EQ(MenuItem(ID_FILE_MRU_FILE1)->text(), recent);

    // None of the rest opens.
    fs::remove(m_folder.Path("10.PSD"));
    fs::remove(m_folder.Path("11.tff"));
    EXPECT_EQ(Next(), "2.iff");
}

TEST_F(NeighboursTest, OneThatIsOpenIsActivatedAndOtherWindowsStay) {
    for (const char* name : {"a.iff", "b.iff", "c.iff", "d.iff"}) m_folder.Write(Picture(30, 20), name);
    fs::create_symlink("a.iff", m_folder.Path("aa.iff"));
    OpenWritten("b.iff");
    OpenWritten("a.iff");
    Command(ID_WINDOW_NEW);
    EXPECT_EQ(Next(), "b.iff") << "another name of the file is no other file";
    EXPECT_EQ(OpenWindows(), 3u);
    EXPECT_EQ(MainPane(), "3 of 5");
    FrameAt(2).ActivateFrame();
    fs::remove(m_folder.Path("b.iff"));
    EXPECT_EQ(Next(), "c.iff");
    EXPECT_EQ(Titles()[1], "a.iff") << "no longer numbered";
    Command(ID_WINDOW_NEW);
    EXPECT_EQ(Main().MDIGetActive()->GetWindowText(), "c.iff:2");
}

TEST_F(NeighboursTest, AMaximisedWindowStaysSoAndAMinimisedOneIsRestored) {
    m_folder.Write(Picture(30, 20), "a.iff");
    m_folder.Write(Picture(50, 40), "b.iff");
    OpenWritten("a.iff");
    SubWindow().showMaximized();
    Settle();
    const CSize whole = ClientSize();
    EXPECT_EQ(Next(), "b.iff");
    EXPECT_TRUE(WaitForTitle(" - [b.iff]"));
    EXPECT_EQ(ClientSize(), whole);
    Frame().MDIRestore();
    EXPECT_EQ(ClientSize(), (CSize{50, 40}));
    SubWindow().showMinimized();
    Settle();
    EXPECT_EQ(Previous(), "a.iff");
    EXPECT_EQ(ClientSize(), (CSize{30, 20}));
}

TEST_F(NeighboursTest, AreReadWithoutAskingUnderTheRulesThatAreSetAndThePaneSaysWhatWasPassedOver) {
    m_folder.Write(Picture(30, 20), "a.iff");
    m_folder.Write(PaddedRows(), "b.iff");
    m_folder.Write(PaddedPsd(), "c.psd");
    m_folder.Write(Picture(30, 20), "d.iff");
    const std::string padded = "3 of 4; Read tolerantly: padded layer information";
    for (const auto& [kept, pane, next, paneOfNext] : Table<std::string, std::string, std::string, std::string>{
             {"ask", "2 of 4; padded plane rows: right-click to read tolerantly", "c.psd", padded},
             {"always", "2 of 4; Read tolerantly: padded plane rows", "c.psd", padded},
             {"never", "2 of 4; padded plane rows: right-click to read tolerantly", "d.iff", "4 of 4"},
         }) {
        Keep(kept);
        OpenWritten("a.iff");
        EXPECT_EQ(Next(), "b.iff");
        EXPECT_EQ(MainPane(), pane) << kept;
        EXPECT_EQ(Next(), next) << kept;
        EXPECT_EQ(MainPane(), paneOfNext) << kept;
        Main().DestroyChildren();
    }
}

TEST_F(NeighboursTest, OneWithoutAPictureHasTheSizeThatItOpensWith) {
    m_folder.Write(Picture(8, 8), "a.iff");
    m_folder.Write(NoPicture(), "b.iff");
    OpenWritten("b.iff");
    const QSize size = SubWindow().size();
    Main().DestroyChildren();
    for (const bool isMaximised : {false, true}) {
        OpenWritten("a.iff");
        QMdiSubWindow& window = SubWindow();
        window.move(-50, -50);
        if (isMaximised) window.showMaximized();
        Settle();
        EXPECT_EQ(Next(), "b.iff");
        EXPECT_EQ(Frame().IsZoomed(), isMaximised);
        Frame().MDIRestore();
        EXPECT_EQ(window.size(), size) << isMaximised;
        EXPECT_TRUE(isMaximised || window.pos() == QPoint(0, 0)) << "in sight";
        Main().DestroyChildren();
    }
}
