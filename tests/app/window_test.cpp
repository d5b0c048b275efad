// The windows as the program opens them, without a screen: through selections, commands and what they show.

#include "document/vistrel_doc.h"
#include "framework/core/exception.h"
#include "support/private_home.h"
#include "window_case.h"

#include <QMdiArea>
#include <QMdiSubWindow>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <new>

CVistrelApp theApp;

// Each size follows another one, down to none at all and up beyond every screen.
TEST_F(WindowTest, TheClientAreaTakesExactlyThePicturesSizeTimesTheScale) {
    ASSERT_TRUE(OpenFile(Picture(100, 50)));
    for (const auto& [width, height, scale, size] : Table<u32, u32, float, CSize>{{100, 50, 1.0f, {100, 50}},
             {100, 50, 0.03125f, {3, 1}}, {100, 50, 1.0f, {100, 50}}, {100, 50, 32.0f, {3200, 1600}},
             {33, 2, 1.5f, {49, 3}}, {20, 10, 0.03125f, {0, 0}}, {40, 10, 0.03125f, {1, 0}}, {100, 50, 1.0f, {100, 50}},
             {4096, 30, 32.0f, {131072, 960}}, {0, 0, INFINITY, {0, 0}}, {7, 5, 1.0f, {7, 5}}}) {
        View().m_nWidth = width;
        View().m_nHeight = height;
        View().FitFrameToImage(scale);
        EXPECT_EQ(ClientSize(), size) << width << " x " << height << " at " << scale;
        EXPECT_EQ(View().m_fScale, std::min(scale, 3.40282347e38f));
        Settle();
        EXPECT_EQ(ClientSize(), size) << "after " << scale << " had been shown";
    }
}

TEST_F(WindowTest, ALevelBeyondEveryWindowLeavesTheNextFitExact) {
    ASSERT_TRUE(OpenFile(Picture(100, 50)));
    const QSize bars = Frame().GetSubWindow()->size() - QSize(100, 50);
    for (const bool isMaximised : {false, true}) {
        View().FitFrameToImage(INFINITY);
        EXPECT_EQ(ClientSize(), (CSize{16777215 - bars.width(), 16777215 - bars.height()}));
        if (isMaximised) Frame().GetSubWindow()->showMaximized();
        Settle();
        View().FitFrameToImage(1.0f);
        EXPECT_EQ(ClientSize(), (CSize{100, 50})) << isMaximised;
    }
}

TEST_F(WindowTest, AFitCountsTheBarsThatShow) {
    ASSERT_TRUE(OpenFile(Picture(100, 50)));
    for (int i = 0; i < 2; ++i) {
        const CRect before = Frame().GetWindowRect();
        Command(ID_TOGGLE_INFO_BAR);
        Command(ID_TOGGLE_LAYER_BAR);
        EXPECT_EQ(Frame().GetWindowRect(), before) << "the view takes the room";
        View().FitFrameToImage(1.0f);
        EXPECT_EQ(ClientSize(), (CSize{100, 50}));
    }
}

TEST_F(WindowTest, AMaximisedChildKeepsItsOwnSizeAndTheNextOpensAsItStands) {
    ASSERT_TRUE(OpenFile(Picture(11, 5)));
    Frame().GetSubWindow()->showMaximized();
    EXPECT_TRUE(WaitFor([&] { return ClientSize().cx > 500; }));
    EXPECT_TRUE(WaitForTitle(" - [picture.iff]"));
    Frame().GetSubWindow()->showNormal();
    EXPECT_TRUE(WaitForTitle(" - picture.iff"));
    EXPECT_EQ(ClientSize(), (CSize{11, 5}));

    Frame().GetSubWindow()->showMaximized();
    Settle();
    ASSERT_TRUE(OpenFile(Picture(20, 10), "next.iff"));
    Settle();
    EXPECT_TRUE(Frame().IsZoomed()) << "the next one opens as the active one stands";
    ASSERT_TRUE(OpenFile(Picture(9, 9), "third.iff"));
    Command(ID_FILE_CLOSE);
    EXPECT_TRUE(WaitFor([] { return Main().GetChildren().size() == 2; }));
    EXPECT_TRUE(WaitForTitle(" - [next.iff]")) << "so does the one before it when it closes";
    Frame().GetSubWindow()->showNormal();
    EXPECT_EQ(ClientSize(), (CSize{20, 10}));
}

// What the main window shows of a view that is moved to the left, further than the toolkit's own drawing can
// tell.
TEST_F(WindowTest, EveryPixelIsStretchedOverItsPlaceWhereverTheViewIsScrolledTo) {
    ASSERT_TRUE(OpenFile(Picture(4096, 3)));
    CMDIClientWnd& area = *Main().GetMDIClient();
    for (const u32 scale : {1u, 2u, 32u}) {
        View().FitFrameToImage(static_cast<float>(scale));
        for (const int left : {0, -33, -3800, -40000, -130000}) {
            if (left + 264 + static_cast<int>(4096 * scale) < 0) continue;
            CRect place = Frame().GetWindowRect();
            area.ScreenToClient(&place);
            Frame().MoveWindow({left, 0, left + place.Width(), place.Height()});
            // The view's corner in the area.
            CRect corner = {}, origin = {};
            View().ScreenToClient(&corner);
            area.ScreenToClient(&origin);
            const int x = origin.left - corner.left, y = origin.top - corner.top;
            const std::vector<u32> pixels = PixelsOf(*area.GetArea()->viewport(), {200, y, 264, y + 3});
            for (u32 i = 0; i < 3 * 64; ++i)
                ASSERT_EQ(pixels[i], ShownColour((200 + i % 64 - static_cast<u32>(x)) / scale, i / 64 / scale))
                    << "frame at " << left << ", column " << i % 64 << " at scale " << scale;
        }
    }
}

// The keyboard steps through the closed list; the last level is counted but not there.
TEST_F(WindowTest, AMipMapLevelIsFittedToTheSizeOfTheWholePicture) {
    const auto level = [](u32 nWidth, u32 nHeight) { return List("ILBM", {Picture(nWidth, nHeight)}); };
    ASSERT_TRUE(
        OpenFile(List("ILBM", {Picture(64, 24), Form("MIPM", {Chunk("CONT", {3, 0})}), level(32, 12), level(16, 6)})));
    CComboBox& layers = Frame().m_wndLayerCombo;
    CComboBox& channels = Frame().m_wndChannelCombo;
    ASSERT_EQ(Entries(layers), Texts({"Image", "Mip Map 1", "Mip Map 2", "Mip Map 3"}));
    for (const char* pane : {"32x12x32", "16x6x32"}) {
        SendMessageA(&channels, CB_ADDSTRING, 0, reinterpret_cast<i64>("of the layer before"));
        Press(layers, Qt::Key_Down);
        EXPECT_EQ(Entries(channels), Texts({"Composite"}));
        EXPECT_EQ(ClientSize(), (CSize{64, 24})) << pane;
        EXPECT_TRUE(WaitForPane(pane)) << pane;
    }
    EXPECT_EQ(View().m_fScale, 4.0f);

    const std::vector<u32> before = PixelsOf(*View().GetWidget(), {0, 0, 64, 24});
    Press(layers, Qt::Key_Down);
    EXPECT_EQ(ClientSize(), (CSize{64, 24}));
    EXPECT_EQ(View().m_fScale, 4.0f);
    EXPECT_TRUE(WaitForPane("<invalid bitmap>"));
    EXPECT_FALSE(MenuItem(ID_ZOOM)->isEnabled());
    EXPECT_EQ(PixelsOf(*View().GetWidget(), {0, 0, 64, 24}), std::vector<u32>(64 * 24, 0xFFFFFFFF));
    Press(layers, Qt::Key_Up);
    EXPECT_EQ(PixelsOf(*View().GetWidget(), {0, 0, 64, 24}), before);
}

TEST_F(WindowTest, NamesAreBytesOfUnknownEncoding) {
    ASSERT_TRUE(OpenFile(Picture(8, 8)));
    CComboBox& list = Frame().m_wndLayerCombo;
    SendMessageA(&list, CB_RESETCONTENT, 0, 0);
    for (const auto& [bytes, shown] :
        Table<const char*, const char*>{{"plain", "plain"}, {"gr\xC3\xBCn", "gr\xC3\xBCn"}, {"gr\xFCn", "gr\xC3\xBCn"},
            {"5 \x80", "5 \xE2\x82\xAC"}, {"a\tb\nc\x7F", "a b c "}, {"\x81\xFC", " \xC3\xBC"}, {"<b>&x", "<b>&x"}}) {
        SendMessageA(&list, CB_ADDSTRING, 0, reinterpret_cast<i64>(bytes));
        EXPECT_EQ(Entries(list).back(), shown);
    }
    const std::string longest(251, 'n');
    for (const auto& [bytes, shown] : Table<std::string, std::string>{{"<b>&amp;%41.iff", "<b>&amp;%41.iff"},
             {"a\nb.iff", "a b.iff"}, {"\xFF\xFE.iff", "\u00ff\u00fe.iff"}, {longest + ".iff", longest + ".iff"}}) {
        const CDocument* const document = OpenFile(Picture(8, 8), bytes);
        ASSERT_TRUE(document) << shown;
        EXPECT_EQ(document->GetPathName(), m_folder.Path(bytes));
        EXPECT_EQ(Frame().GetSubWindow()->windowTitle().toStdString(), shown);
    }
}

TEST_F(WindowTest, OpenTakesSeveralFilesAndActivatesWhatIsOpen) {
    m_answers.m_nextFiles = {
        m_folder.Write(Picture(8, 8), "a.iff"), m_folder.Write({}, "a<b>.iff"), m_folder.Write(Picture(9, 9), "b.iff")};
    EXPECT_TRUE(Command(ID_FILE_OPEN));
    ASSERT_EQ(m_answers.m_messages.size(), 1u);
    EXPECT_NE(m_answers.m_messages[0].find("a<b>.iff"), std::string::npos);
    ASSERT_EQ(Main().GetChildren().size(), 2u);

    // The same ones again, one of them by way of a link.
    std::filesystem::create_symlink(m_folder.Path("a.iff"), m_folder.Path("link.iff"));
    m_answers.m_nextFiles = {m_folder.Path("link.iff"), m_folder.Path("./b.iff")};
    EXPECT_TRUE(Command(ID_FILE_OPEN));
    EXPECT_EQ(m_answers.m_strFolder, m_folder.Path(""));
    ASSERT_EQ(Main().GetChildren().size(), 2u);
    ASSERT_EQ(Main().MDIGetActive(), Main().GetChildren()[1].get());
}

TEST_F(WindowTest, ARecentFileSaysWhyItDoesNotOpenAndLeavesTheListOnlyWhenItIsGone) {
    const std::string gone = m_folder.Write(Picture(8, 8), "gone.iff");
    ASSERT_TRUE(theApp.OpenDocumentFile(gone));
    ASSERT_TRUE(OpenFile(Picture(8, 8), "second.iff"));
    Main().DestroyChildren();
    m_folder.Write({}, "gone.iff");
    for (const bool isGone : {false, true}) {
        QAction* const item = MenuItem(ID_FILE_MRU_FILE1 + 1);
        EXPECT_EQ(item->statusTip().toStdString(), gone);
        m_answers.m_messages.clear();
        if (isGone) std::filesystem::remove(gone);
        item->trigger();
        ASSERT_EQ(m_answers.m_messages.size(), 1u);
        EXPECT_NE(m_answers.m_messages[0].find("/gone.iff\" was not opened."), std::string::npos);
    }
    const QAction* const next = MenuItem(ID_FILE_MRU_FILE1 + 1);
    EXPECT_TRUE(!next || next->statusTip().toStdString() != gone);
    MenuItem(ID_FILE_MRU_FILE1)->trigger();
    EXPECT_EQ(Main().GetChildren().size(), 1u);
}

TEST_F(WindowTest, ALongRecentPathLosesItsMiddleInTheMenu) {
    const std::string folder(80, 'f');
    std::filesystem::create_directory(m_folder.Path(folder));
    for (const auto& [name, middle, end] :
        Table<std::string, std::string, std::string>{{"fish & chips.iff", "/vistrel-test-", "/fish && chips.iff"},
            {folder + "/b\xFC.iff", "\u2026", "ff/b\u00fc.iff"}}) {
        ASSERT_TRUE(OpenFile(Picture(8, 8), name));
        const std::string text = MenuItem(ID_FILE_MRU_FILE1)->text().toStdString();
        EXPECT_TRUE(text.starts_with("&1 /") && text.ends_with(end)) << text;
        EXPECT_NE(text.find(middle), std::string::npos) << text;
        EXPECT_LT(text.size(), 90u) << text;
    }
}

namespace {

std::string g_failing;  // an operation of the view

void FailIn(const char* pszOperation) {
    if (g_failing == pszOperation) throw CException("The view failed");
}

struct TroubledView final : public CVistrelView {
    void OnUpdate(CView* pSender, i64 lHint, CCmdTarget* pHint) override {
        CVistrelView::OnUpdate(pSender, lHint, pHint);
        if (g_failing == "opening") throw std::bad_alloc();
        FailIn("choosing");
    }
    void OnDraw(CDC* pDC) override {
        FailIn("drawing");
        CVistrelView::OnDraw(pDC);
    }
    void OnUpdateInfo(CCmdUI* pUi) {
        FailIn("updating");
        pUi->SetText(InfoText());
    }
    const MessageMap& GetMessageMap() const override {
        static constexpr MessageEntry entries[] = {OnUpdateCommandUi<&TroubledView::OnUpdateInfo>(ID_INDICATOR_INFO)};
        static const MessageMap map = {&CVistrelView::GetMessageMap(), entries};
        return map;
    }
};

}  // namespace

TEST_F(WindowTest, WhatFailsIsReportedOnceAndTheProgramRunsOn) {
    CMultiDocTemplate documents(
        IDR_IFF_TYPE, RuntimeClassOf<CVistrelDoc>(), RuntimeClassOf<CChildFrame>(), RuntimeClassOf<TroubledView>());
    const std::string path = m_folder.Write(Picture(16, 16), "picture.iff");
    g_failing = "opening";
    EXPECT_FALSE(OpenAs(documents, path));
    EXPECT_EQ(m_answers.m_messages, Texts{"\"" + path + "\" was not opened. There is not enough memory."});
    EXPECT_TRUE(Main().GetChildren().empty()) << "the document is closed";

    g_failing = "";
    ASSERT_TRUE(OpenAs(documents, path));
    CComboBox& list = Frame().m_wndChannelCombo;
    SendMessageA(&list, CB_ADDSTRING, 0, reinterpret_cast<i64>("Another"));
    for (const char* operation : {"choosing", "updating", "drawing"}) {
        m_answers.m_messages.clear();
        g_failing = operation;
        Press(list, Qt::Key_Down);
        for (int i = 0; i < 3; ++i) {
            Settle();
            PixelsOf(*View().GetWidget(), {0, 0, 4, 4});
        }
        EXPECT_TRUE(WaitFor([&] { return !m_answers.m_messages.empty(); }));
        g_failing = "";
        Press(list, Qt::Key_Up);
        EXPECT_TRUE(WaitForPane("16x16x32"));
        EXPECT_EQ(PixelsOf(*View().GetWidget(), {0, 0, 1, 1})[0], ShownColour(0, 0));
        EXPECT_EQ(m_answers.m_messages, Texts{"The view failed."}) << operation;
    }
}

int main(int argc, char** argv) {
    const PrivateHome home;
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    testing::InitGoogleTest(&argc, argv);
    char* words[] = {argv[0], nullptr};
    if (const auto status = theApp.Start(1, words)) return *status;
    if (!theApp.InitInstance()) return EXIT_FAILURE;
    const int status = RUN_ALL_TESTS();
    theApp.ExitInstance();
    return status;
}
