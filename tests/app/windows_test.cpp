// Several child windows: their commands, their titles and the list of them.

#include "framework/core/document.h"
#include "window_case.h"

#include <QApplication>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPaintEvent>

#include <algorithm>

namespace {

Texts Titles() {
    Texts titles;
    for (const auto& child : Main().GetChildren()) titles.push_back(child->GetWindowText());
    return titles;
}

int AreaOf(const QRegion& region) {
    int area = 0;
    for (const QRect& rect : region) area += rect.width() * rect.height();
    return area;
}

// Counts the pixels that a widget is asked to paint.
class PaintCounter final : public QObject {
  public:
    explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }

    int m_nPixels = 0;

  protected:
    bool eventFilter(QObject*, QEvent* pEvent) override {
        if (pEvent->type() == QEvent::Paint) m_nPixels += AreaOf(static_cast<QPaintEvent*>(pEvent)->region());
        return false;
    }
};

}  // namespace

TEST_F(WindowTest, AChildThatMovesAwayUncoversAStripAndNoMore) {
    for (const char* name : {"below.iff", "above.iff"}) ASSERT_TRUE(OpenFile(Picture(200, 150), name));
    CChildFrame& below = static_cast<CChildFrame&>(*theApp.m_pMainWnd->GetChildren()[0]);
    QWidget& picture = *below.GetActiveView()->GetWidget();
    QWidget& above = *Frame().GetSubWindow();
    constexpr int CORNERS = 20;  // what a frame's round corners leave to be seen
    above.move(below.GetSubWindow()->pos() + QPoint(80, 80));
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
    CDocument* const document = OpenFile(Picture(64, 24));
    View().FitFrameToImage(3.0f);
    Command(ID_WINDOW_NEW);
    EXPECT_EQ(Titles(), Texts({"picture.iff:1", "picture.iff:2"}));
    EXPECT_EQ(View().GetDocument(), document);
    EXPECT_EQ(ClientSize(), (CSize{64, 24}));
    EXPECT_EQ(static_cast<CVistrelView&>(*Main().GetChildren()[0]->GetActiveView()).m_fScale, 3.0f);
    Settle();
    EXPECT_FALSE(MenuItem(AFX_IDM_FIRST_MDICHILD)->isChecked());
    EXPECT_TRUE(MenuItem(AFX_IDM_FIRST_MDICHILD + 1)->isChecked());
    EXPECT_FALSE(MenuItem(AFX_IDM_FIRST_MDICHILD + 2));

    Main().GetChildren()[0]->OnCmdMsg(ID_FILE_CLOSE, CN_COMMAND, nullptr);
    EXPECT_TRUE(WaitFor([] { return Titles() == Texts{"picture.iff"}; }));
    EXPECT_EQ(document->GetViews().size(), 1u);
}

TEST_F(WindowTest, AFloatingBarComesAndGoesWithItsWindowAndIsBroughtBackByItsCommand) {
    ASSERT_TRUE(OpenFile(Picture(60, 40)));
    CChildFrame& frame = Frame();
    QAction* const toggle = frame.GetSubWindow()->systemMenu()->actions().last();
    toggle->trigger();
    const QList<QWidget*> windows = QApplication::topLevelWidgets();
    const auto found = std::ranges::find(windows, QStringLiteral("Layers & Channels"), &QWidget::windowTitle);
    ASSERT_NE(found, windows.end());
    QWidget* const bar = *found;
    const auto showsWhen = [&](bool bShows) { return WaitFor([&] { return bar->isVisible() == bShows; }); };
    EXPECT_TRUE(showsWhen(true));
    ASSERT_TRUE(OpenFile(Picture(8, 8), "other.iff"));
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
