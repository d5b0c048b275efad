// The windows as the program opens them, without a screen: through selections, commands and what they show.

#include "framework/core/exception.h"
#include "window_case.h"

#include <cmath>
#include <new>

CVistrelApp theApp;

// Each size follows another one, down to none at all and up beyond every screen.
TEST_F(WindowTest, TheClientAreaTakesExactlyThePicturesSizeTimesTheScale) {
    Open(Picture(100, 50));
    for (const auto& [width, height, scale, size] :
        Table<u32, u32, float, CSize>{{100, 50, 1, {100, 50}}, {100, 50, 0.03125f, {3, 1}}, {100, 50, 1, {100, 50}},
            {100, 50, 32, {3200, 1600}}, {33, 2, 1.5f, {49, 3}}, {20, 10, 0.03125f, {0, 0}}, {40, 10, 0.03125f, {1, 0}},
            {100, 50, 1, {100, 50}}, {4096, 30, 32, {131072, 960}}, {0, 0, INFINITY, {0, 0}}, {7, 5, 1, {7, 5}}}) {
        View().m_nWidth = width;
        View().m_nHeight = height;
        Fit(scale);
        EXPECT_EQ(ClientSize(), size) << width << " x " << height << " at " << scale;
        EXPECT_EQ(View().m_fScale, std::min(scale, 3.40282347e38f));
        Settle();
        EXPECT_EQ(ClientSize(), size) << "after " << scale << " had been shown";
    }
}

TEST_F(WindowTest, ALevelBeyondEveryWindowLeavesTheNextFitExact) {
    Open(Picture(100, 50));
    const QSize bars = SubWindow().size() - QSize(100, 50);
    for (const bool isMaximised : {false, true}) {
        Fit(INFINITY);
        EXPECT_EQ(ClientSize(), (CSize{16777215 - bars.width(), 16777215 - bars.height()}));
        if (isMaximised) SubWindow().showMaximized();
        Settle();
        Fit(1);
        EXPECT_EQ(ClientSize(), (CSize{100, 50})) << isMaximised;
    }
}

TEST_F(WindowTest, AFitCountsTheBarsThatShow) {
    Open(Picture(100, 50));
    for (int i = 0; i < 2; ++i) {
        const CRect before = Frame().GetWindowRect();
        Command(ID_TOGGLE_INFO_BAR);
        Command(ID_TOGGLE_LAYER_BAR);
        EXPECT_EQ(Frame().GetWindowRect(), before) << "the view takes the room";
        Fit(1);
        EXPECT_EQ(ClientSize(), (CSize{100, 50}));
    }
}

TEST_F(WindowTest, AMaximisedChildKeepsItsOwnSizeAndTheNextOpensAsItStands) {
    Open(Picture(11, 5));
    SubWindow().showMaximized();
    EXPECT_TRUE(WaitFor([&] { return ClientSize().cx > 500; }));
    EXPECT_TRUE(WaitForTitle(" - [picture.iff]"));
    SubWindow().showNormal();
    EXPECT_TRUE(WaitForTitle(" - picture.iff"));
    EXPECT_EQ(ClientSize(), (CSize{11, 5}));

    SubWindow().showMaximized();
    Settle();
    Open(Picture(20, 10), "next.iff");
    Settle();
    EXPECT_TRUE(Frame().IsZoomed()) << "the next one opens as the active one stands";
    Open(Picture(9, 9), "third.iff");
    Command(ID_FILE_CLOSE);
    EXPECT_TRUE(WaitForTitle(" - [next.iff]")) << "so does the one before it when it closes";
    SubWindow().showNormal();
    EXPECT_EQ(ClientSize(), (CSize{20, 10}));
}

// What the main window shows of a view that is moved to the left, further than the toolkit's own drawing can
// tell.
TEST_F(WindowTest, EveryPixelIsStretchedOverItsPlaceWhereverTheViewIsScrolledTo) {
    Open(Picture(4096, 3));
    CMDIClientWnd& area = *Main().GetMDIClient();
    for (const u32 scale : {1u, 2u, 32u}) {
        Fit(static_cast<float>(scale));
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
            const std::vector<u32> pixels = PixelsOf(*Area().viewport(), {200, y, 264, y + 3});
            for (u32 i = 0; i < 3 * 64; ++i)
                ASSERT_EQ(pixels[i], ShownColour((200 + i % 64 - static_cast<u32>(x)) / scale, i / 64 / scale))
                    << "frame at " << left << ", column " << i % 64 << " at scale " << scale;
        }
    }
}

// The keyboard steps through the closed list; the last level is counted but not there.
TEST_F(WindowTest, AMipMapLevelIsFittedToTheSizeOfTheWholePicture) {
    Open(MipMaps());
    ASSERT_EQ(Entries(Layers()), Texts({"Image", "Mip Map 1", "Mip Map 2", "Mip Map 3"}));
    for (const char* pane : {"32x12x32", "16x6x32"}) {
        AddEntry(Frame().m_wndChannelCombo, "of the layer before");
        Press(Layers(), Qt::Key_Down);
        EXPECT_EQ(Entries(Channels()), Texts({"Composite"}));
        EXPECT_EQ(ClientSize(), (CSize{64, 24})) << pane;
        EXPECT_TRUE(WaitForPane(pane)) << pane;
    }
    EXPECT_EQ(View().m_fScale, 4);

    const std::vector<u32> before = ShownPixels({0, 0, 64, 24});
    Press(Layers(), Qt::Key_Down);
    EXPECT_EQ(ClientSize(), (CSize{64, 24}));
    EXPECT_EQ(View().m_fScale, 4);
    EXPECT_TRUE(WaitForPane("<invalid bitmap>"));
    EXPECT_FALSE(MenuItem(ID_ZOOM)->isEnabled());
    EXPECT_EQ(ShownPixels({0, 0, 64, 24}), std::vector<u32>(64 * 24, 0xFFFFFFFF));
    Press(Layers(), Qt::Key_Up);
    EXPECT_EQ(ShownPixels({0, 0, 64, 24}), before);
}

TEST_F(WindowTest, NamesAreBytesOfUnknownEncoding) {
    Open(Picture(8, 8));
    CComboBox& list = Frame().m_wndLayerCombo;
    SendMessageA(&list, CB_RESETCONTENT, 0, 0);
    for (const auto& [bytes, shown] :
        Table<const char*, const char*>{{"plain", "plain"}, {"gr\xC3\xBCn", "gr\xC3\xBCn"}, {"gr\xFCn", "gr\xC3\xBCn"},
            {"5 \x80", "5 \xE2\x82\xAC"}, {"a\tb\nc\x7F", "a b c "}, {"\x81\xFC", " \xC3\xBC"}, {"<b>&x", "<b>&x"}}) {
        AddEntry(list, bytes);
        EXPECT_EQ(Entries(Layers()).back(), shown);
    }
    const std::string longest(251, 'n');
    for (const auto& [bytes, shown] : Table<std::string, std::string>{{"<b>&amp;%41.iff", "<b>&amp;%41.iff"},
             {"a\nb.iff", "a b.iff"}, {"\xFF\xFE.iff", "\u00ff\u00fe.iff"}, {longest + ".iff", longest + ".iff"}}) {
        EXPECT_EQ(Open(Picture(8, 8), bytes).GetPathName(), m_folder.Path(bytes));
        EXPECT_EQ(SubWindow().windowTitle().toStdString(), shown);
    }
}

TEST_F(WindowTest, OpenTakesSeveralFilesAndActivatesWhatIsOpen) {
    m_answers.m_nextFiles = {
        m_folder.Write(Picture(8, 8), "a.iff"), m_folder.Write({}, "a<b>.iff"), m_folder.Write(Picture(9, 9), "b.iff")};
    EXPECT_TRUE(Command(ID_FILE_OPEN));
    EXPECT_TRUE(Has(ToldOnce(), "a<b>.iff"));
    ASSERT_EQ(Titles(), Texts({"a.iff", "b.iff"}));

    // The same ones again, one of them by way of a link.
    fs::create_symlink(m_folder.Path("a.iff"), m_folder.Path("link.iff"));
    m_answers.m_nextFiles = {m_folder.Path("link.iff"), m_folder.Path("./b.iff")};
    EXPECT_TRUE(Command(ID_FILE_OPEN));
    EXPECT_EQ(m_answers.m_strFolder, m_folder.Path(""));
    EXPECT_EQ(OpenWindows(), 2u);
    EXPECT_EQ(Main().MDIGetActive(), &FrameAt(1));
}

TEST_F(WindowTest, ARecentFileSaysWhyItDoesNotOpenAndLeavesTheListOnlyWhenItIsGone) {
    const std::string gone = Open(Picture(8, 8), "gone.iff").GetPathName();
    Open(Picture(8, 8), "second.iff");
    Main().DestroyChildren();
    m_folder.Write({}, "gone.iff");
    for (const bool isGone : {false, true}) {
        QAction* const item = MenuItem(ID_FILE_MRU_FILE1 + 1);
        EXPECT_EQ(item->statusTip().toStdString(), gone);
        if (isGone) fs::remove(gone);
        item->trigger();
        EXPECT_TRUE(Has(ToldOnce(), "/gone.iff\" was not opened."));
    }
    const QAction* const next = MenuItem(ID_FILE_MRU_FILE1 + 1);
    EXPECT_TRUE(!next || next->statusTip().toStdString() != gone);
    MenuItem(ID_FILE_MRU_FILE1)->trigger();
    EXPECT_EQ(OpenWindows(), 1u);
}

TEST_F(WindowTest, ALongRecentPathLosesItsMiddleInTheMenu) {
    const std::string folder(80, 'f');
    fs::create_directory(m_folder.Path(folder));
    for (const auto& [name, middle, end] :
        Table<std::string, std::string, std::string>{{"fish & chips.iff", "/vistrel-test-", "/fish && chips.iff"},
            {folder + "/b\xFC.iff", "\u2026", "ff/b\u00fc.iff"}}) {
        Open(Picture(8, 8), name);
        const std::string text = MenuItem(ID_FILE_MRU_FILE1)->text().toStdString();
        EXPECT_TRUE(text.starts_with("&1 /") && text.ends_with(end)) << text;
        EXPECT_TRUE(Has(text, middle));
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
    const std::string path = m_folder.Write(Picture(16, 16), "picture.iff");
    g_failing = "opening";
    EXPECT_FALSE(OpenWith<TroubledView>(path));
    EXPECT_EQ(Told(), Texts{"\"" + path + "\" was not opened. There is not enough memory."});
    EXPECT_EQ(OpenWindows(), 0u) << "the document is closed";

    g_failing = "";
    ASSERT_TRUE(OpenWith<TroubledView>(path));
    AddEntry(Frame().m_wndChannelCombo, "Another");
    for (const char* operation : {"choosing", "updating", "drawing"}) {
        g_failing = operation;
        Press(Channels(), Qt::Key_Down);
        for (int i = 0; i < 3; ++i) {
            Settle();
            ShownPixel(0, 0);
        }
        EXPECT_TRUE(WaitUntilTold());
        g_failing = "";
        Press(Channels(), Qt::Key_Up);
        EXPECT_TRUE(WaitForPane("16x16x32"));
        EXPECT_EQ(ShownPixel(0, 0), ShownColour(0, 0));
        EXPECT_EQ(Told(), Texts{"The view failed."}) << operation;
    }
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    return RunWindowTests(argv);
}
