// Several child windows: their commands, their titles and the list of them.

#include "window_case.h"

TEST_F(WindowTest, AChildThatMovesAwayUncoversAStripAndNoMore) {
    for (const char* name : {"below.iff", "above.iff"}) Open(Picture(200, 150), name);
    QWidget& picture = *ViewOf(FrameAt(0)).GetWidget();
    QWidget& above = SubWindow();
    constexpr int CORNERS = 20;  // what a frame's round corners leave to be seen
    above.move(FrameAt(0).GetSubWindow()->pos() + QPoint(80, 80));
    Settle();
    for (const QPoint& step : {QPoint(20, 0), QPoint(0, 20), QPoint(20, 20)}) {
        const int seen = AreaOf(picture.visibleRegion());
        PaintCounter painted(picture);
        above.move(above.pos() + step);
        Settle();
        const int uncovered = AreaOf(picture.visibleRegion()) - seen;
        EXPECT_GE(painted.m_nPixels, uncovered);
        EXPECT_LE(painted.m_nPixels, uncovered + CORNERS);
    }
}

TEST_F(WindowTest, ASecondWindowOnADocumentIsListedAndClosesAlone) {
    const CDocument& document = Open(Picture(64, 24));
    Fit(3);
    Command(ID_WINDOW_NEW);
    EXPECT_EQ(Titles(), Texts({"picture.iff:1", "picture.iff:2"}));
    EXPECT_EQ(View().GetDocument(), &document);
    EXPECT_EQ(ClientSize(), (CSize{64, 24}));
    EXPECT_EQ(ViewOf(FrameAt(0)).m_fScale, 3);
    Settle();
    EXPECT_FALSE(MenuItem(AFX_IDM_FIRST_MDICHILD)->isChecked());
    EXPECT_TRUE(MenuItem(AFX_IDM_FIRST_MDICHILD + 1)->isChecked());
    EXPECT_FALSE(MenuItem(AFX_IDM_FIRST_MDICHILD + 2));

    FrameAt(0).OnCmdMsg(ID_FILE_CLOSE, CN_COMMAND, nullptr);
    EXPECT_TRUE(WaitFor([] { return Titles() == Texts{"picture.iff"}; }));
    EXPECT_EQ(document.GetViews().size(), 1u);
}

TEST_F(WindowTest, AFloatingBarComesAndGoesWithItsWindowAndIsBroughtBackByItsCommand) {
    Open(Picture(60, 40));
    CChildFrame& frame = Frame();
    QAction* const toggle = frame.GetSubWindow()->systemMenu()->actions().last();
    toggle->trigger();
    const QList<QWidget*> windows = QApplication::topLevelWidgets();
    const auto found = std::ranges::find(windows, QStringLiteral("Layers & Channels"), &QWidget::windowTitle);
    ASSERT_NE(found, windows.end());
    QWidget* const bar = *found;
    const auto showsWhen = [&](bool bShows) { return WaitFor([&] { return bar->isVisible() == bShows; }); };
    EXPECT_TRUE(showsWhen(true));
    Open(Picture(8, 8), "other.iff");
    EXPECT_TRUE(showsWhen(false));
    frame.ActivateFrame();
    EXPECT_TRUE(showsWhen(true));
    frame.GetSubWindow()->showMinimized();
    EXPECT_TRUE(showsWhen(false));
    EXPECT_TRUE(MenuItem(ID_TOGGLE_LAYER_BAR)->isChecked()) << "it is only away";
    frame.ActivateFrame();
    EXPECT_TRUE(showsWhen(true));

    bar->close();
    Settle();
    EXPECT_FALSE(MenuItem(ID_TOGGLE_LAYER_BAR)->isChecked());
    Command(ID_TOGGLE_LAYER_BAR);
    EXPECT_TRUE(bar->isVisible());
    toggle->trigger();
    EXPECT_TRUE(showsWhen(false));
    EXPECT_TRUE(frame.m_wndLayerBar.GetWidget()->isVisible());
}
