// Child windows in their area: where they open, what of it is in view, how all of them are arranged, and what else
// reaches them.

#include "window_case.h"

#include <QCursor>
#include <QDropEvent>
#include <QIcon>
#include <QMimeData>

namespace {

QMdiSubWindow& Window(std::size_t nPlace) { return *FrameAt(nPlace).GetSubWindow(); }

// In an area that scrolls no longer, whatever windows stood in it before.
class AreaTest : public WindowTest {
  protected:
    AreaTest() { Empty(); }
    ~AreaTest() override { Empty(); }

  private:
    static void Empty() {
        Main().DestroyChildren();
        Area().horizontalScrollBar()->setRange(0, 0);
        Area().verticalScrollBar()->setRange(0, 0);
        Settle();
    }
};

// Whether the part of the caption that carries the icon and the beginning of the title is in view.
bool ShowsCaption(const QMdiSubWindow& window) {
    const QRect caption(window.pos(), QSize(std::min(window.width(), 100), window.widget()->y()));
    return Area().viewport()->rect().contains(caption);
}

}  // namespace

TEST_F(AreaTest, TheAreaScrollsBySmallStepsAndByWhatIsVisible) {
    Open(Picture(100, 100));
    Window(0).move(0, 0);
    Fit(32);
    for (const CRect& place : {CRect{0, 0, 1000, 700}, CRect{0, 0, 700, 500}}) {
        Main().MoveWindow(place);
        Settle();
        const QSize visible = Area().viewport()->size();
        for (const auto& [bar, page, whole] :
            Table<QScrollBar*, int, int>{{Area().horizontalScrollBar(), visible.width(), Window(0).width()},
                {Area().verticalScrollBar(), visible.height(), Window(0).height()}}) {
            EXPECT_EQ(bar->singleStep(), 20);
            EXPECT_EQ(bar->pageStep(), page);
            EXPECT_EQ(bar->maximum() + page, whole);
        }
    }
    TurnWheel(*Area().viewport(), {5, 5}, -NOTCH);
    EXPECT_EQ(Scrolled(), QPoint(0, 60));
}

// The other one keeps the area large when the first is small again.
TEST_F(AreaTest, AFitScrollsToTheCaptionAndLeavesTheFrameWhereItStands) {
    Open(Picture(100, 100));
    Fit(32);
    Open(Picture(90, 90), "small.iff");
    for (const auto& [place, scrolled] : Table<QPoint, QPoint>{{{10, 20}, {2000, 1500}}, {{1800, 1700}, {0, 0}},
             {{1800, 1700}, {1700, 1650}}, {{0, 0}, {0, 0}}, {{1900, 20}, {1500, 1500}}}) {
        ScrollTo(0, 0);
        Window(1).move(place);
        ScrollTo(scrolled.x(), scrolled.y());
        const bool isInView = ShowsCaption(Window(1));
        for (const float scale : {1.0f, 32.0f, 2.0f}) {
            Fit(scale);
            EXPECT_TRUE(ShowsCaption(Window(1))) << scale;
            EXPECT_EQ(Window(1).pos() + Scrolled(), place) << scale;
        }
        EXPECT_TRUE(!isInView || Scrolled() == scrolled) << "no further than it takes";
    }
}

TEST_F(AreaTest, AChildOpensOneCaptionBelowTheOneBeforeAndInTheCornerWhenItWouldReachBeyond) {
    for (const char* name : {"a.iff", "b.iff", "c.iff"}) Open(Picture(50, 50), name);
    // One of them can be the first of a new cascade.
    const QPoint first = Window(1).pos() - Window(0).pos(), second = Window(2).pos() - Window(1).pos();
    EXPECT_TRUE(first == second || first.x() < 0 || second.x() < 0);
    const QPoint step = first.x() > 0 ? first : second;
    EXPECT_EQ(step.x(), step.y());
    EXPECT_GE(step.y(), Window(0).widget()->y() - 6);

    const int height = Area().viewport()->height() - Window(0).height() + 50;
    Open(Picture(50, static_cast<u32>(height)), "exact.iff");
    EXPECT_EQ(Window(3).pos(), QPoint(0, 0)) << "nowhere else would all of it show";
    EXPECT_EQ(Window(3).height(), Area().viewport()->height());
    Open(Picture(2000, 20), "wide.iff");
    EXPECT_EQ(Window(4).pos(), QPoint(0, 0));
}

TEST_F(AreaTest, CascadedWindowsOverlapTiledOnesShareTheAreaAboveTheMinimised) {
    for (const char* name : {"a.iff", "b.iff", "c.iff", "d.iff"}) Open(Picture(40, 30), name);
    const auto arrange = [&](u32 nID) {
        Fit(32);
        ScrollTo(300, 200);
        Settle();
        Command(nID);
        EXPECT_EQ(Area().horizontalScrollBar()->maximum() + Area().verticalScrollBar()->maximum(), 0);
        Settle();
    };
    arrange(ID_WINDOW_CASCADE);
    EXPECT_EQ(Window(0).size(), Area().viewport()->size() * 3 / 4) << "without room for scroll bars";
    for (const std::size_t i : {1u, 2u, 3u}) {
        EXPECT_LT(Window(i - 1).x(), Window(i).x());
        EXPECT_LT(Window(i - 1).y(), Window(i).y());
    }
    Window(1).showMinimized();
    for (const bool hasIcon : {true, false}) {
        arrange(ID_WINDOW_TILE_HORZ);
        const QRect area = Area().viewport()->rect();
        QRegion covered;
        for (const auto& child : Main().GetChildren()) {
            const QRect place = child->GetSubWindow()->geometry();
            EXPECT_FALSE(covered.intersects(place)) << child->GetWindowText();
            EXPECT_TRUE(area.contains(place)) << child->GetWindowText();
            covered += place;
        }
        const QRect whole = hasIcon ? area.adjusted(0, 0, 0, -Window(1).height()) : area;
        EXPECT_TRUE(QRegion(whole).subtracted(covered).isEmpty()) << "no gap between them";
        Window(1).showNormal();
    }
}

TEST_F(AreaTest, ArrangedIconsComeIntoViewWhereverTheAreaIsScrolledTo) {
    for (const char* name : {"a.iff", "b.iff", "large.iff"}) Open(Picture(40, 30), name);
    Window(0).showMinimized();
    Window(1).showMinimized();
    Fit(32);
    Frame().ActivateFrame();
    Area().verticalScrollBar()->setValue(300);
    Window(1).move(-500, 2000);
    Command(ID_WINDOW_ARRANGE);
    EXPECT_EQ(Window(0).geometry().bottomRight() + QPoint(1, 0), Window(1).geometry().bottomLeft());
    for (const std::size_t i : {0u, 1u}) {
        const QRect place = Window(i).geometry();
        EXPECT_EQ(place.bottom(), Area().viewport()->rect().bottom());
        EXPECT_TRUE(Area().viewport()->rect().contains(place));
        EXPECT_EQ(Area().viewport()->childAt(place.topLeft() + QPoint(2, 2)), &Window(i))
            << "in front of the large one";
    }
    EXPECT_EQ(Main().MDIGetActive(), &Frame());
}

// In the window's own pixels; the one that is grabbed stays under the pointer.
TEST_F(AreaTest, AViewThatIsHeldAndDraggedScrollsTheArea) {
    Open(Picture(100, 100));
    Window(0).move(0, 0);
    QWidget& view = *View().GetWidget();
    const QPoint start = Area().mapToGlobal(QPoint(300, 300));
    const auto press = [&](Qt::MouseButton button) { MousePress(view, start, button); };
    const auto move = [&](int x, int y) {
        MouseMove(view, start + QPoint(x, y));
        return Scrolled();
    };
    const auto release = [&] { MouseRelease(view, start); };
    const auto cursor = [&] { return view.cursor().shape(); };

    press(Qt::LeftButton);
    EXPECT_EQ(move(-100, -50), QPoint(0, 0)) << "all of it shows";
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    release();

    Fit(32);
    ScrollTo(500, 400);
    const int threshold = QApplication::startDragDistance();
    press(Qt::RightButton);
    EXPECT_EQ(move(-100, -50), QPoint(500, 400)) << "the other button";
    press(Qt::LeftButton);
    EXPECT_EQ(move(threshold - 1, 0), QPoint(500, 400)) << "a click that trembles";
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    EXPECT_EQ(move(-threshold, 0), QPoint(500 + threshold, 400));
    EXPECT_EQ(cursor(), Qt::ClosedHandCursor);
    EXPECT_EQ(move(-100, 50), QPoint(600, 350));
    EXPECT_EQ(move(0, 900), QPoint(500, 0)) << "no further than the area goes";
    EXPECT_EQ(move(3, 2), QPoint(497, 398)) << "and it is where it was grabbed again";
    release();
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    EXPECT_EQ(move(-100, -50), QPoint(497, 398));

    press(Qt::LeftButton);
    move(-100, 0);
    Fit(16);
    const QPoint scrolled = Scrolled();
    EXPECT_EQ(move(-101, 0), scrolled) << "what was held is elsewhere now";
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    release();

    Fit(32);
    press(Qt::LeftButton);
    move(-100, 0);
    MouseMove(view, start, Qt::NoButton);
    EXPECT_EQ(cursor(), Qt::ArrowCursor) << "let go where nobody told of it";
    Area().verticalScrollBar()->setValue(0);
    Fit(1);
    Frame().MoveWindow({0, 0, 200, Area().viewport()->height() + 1});
    press(Qt::LeftButton);
    move(0, -50);
    EXPECT_EQ(cursor(), Qt::ClosedHandCursor) << "one side is enough";
    release();
}

TEST_F(AreaTest, TheWindowMenuListsNineWindowsAndADialogAllOfThem) {
    for (int i = 1; i <= 11; ++i) {
        Open(Picture(20, 20), std::to_string(i) + ".iff");
        Settle();
        EXPECT_EQ(MenuItem(ID_WINDOW_MORE) != nullptr, i > 9) << i;
    }
    EXPECT_FALSE(MenuItem(AFX_IDM_FIRST_MDICHILD + 8)->isChecked());
    QAction* const more = MenuItem(ID_WINDOW_MORE);
    ASSERT_TRUE(more);
    EXPECT_FALSE(more->statusTip().isEmpty());
    // The current one, the answer, and what is active then.
    for (const auto& [current, chosen, answer, active] :
        Table<const char*, const char*, int, const char*>{{"11.iff", "10.iff", IDCANCEL, "11.iff"},
            {"11.iff", "10.iff", IDOK, "10.iff"}, {"10.iff", "1.iff", IDOK, "1.iff"}}) {
        m_answers.m_nextDialog = [&, name = chosen, before = current, button = answer](ModalDialog& dialog) {
            EXPECT_EQ(dialog.GetItemText(0), before);
            dialog.SetItemText(0, name);
            return button;
        };
        more->trigger();
        EXPECT_EQ(Main().MDIGetActive()->GetWindowText(), active);
    }
    EXPECT_EQ(m_answers.m_dialogs, std::vector<u32>(3, ID_WINDOW_MORE));
}

TEST_F(AreaTest, TheMenuOfAChildOpensInsideTheMainWindow) {
    Open(Picture(100, 100));
    Fit(32);
    Main().MoveWindow({100, 100, 600, 500});
    for (const QPoint& scrolled : {QPoint(0, 0), QPoint(1500, 1500), QPoint(0, 2000)}) {
        ScrollTo(scrolled.x(), scrolled.y());
        PressKeys("Alt+-");
        QMenu& menu = *Window(0).systemMenu();
        EXPECT_TRUE(menu.isVisible());
        EXPECT_TRUE(Main().GetWidget()->geometry().contains(menu.geometry())) << scrolled.x();
        menu.close();
    }
}

TEST_F(AreaTest, ThePointerShowsTheWaitForEveryPictureThatIsMade) {
    int built = 0;
    int builtWaiting = 0;  // with the wait cursor up
    WatchedView::s_onUpdate = [&](CVistrelView&) {
        const QCursor* const cursor = QApplication::overrideCursor();
        ++built;
        if (cursor && cursor->shape() == Qt::WaitCursor) ++builtWaiting;
    };
    const std::string path = m_folder.Write(Picture(16, 16), "picture.iff");
    const auto select = [&](CComboBox& list) {
        AddEntry(list, "Another");
        Press(ListOf(list), Qt::Key_Down);
    };
    for (const auto& [what, make] :
        Table<const char*, std::function<void()>>{{"a file", [&] { EXPECT_TRUE(OpenWith<WatchedView>(path)); }},
            {"a window", [&] { Command(ID_WINDOW_NEW); }}, {"a channel", [&] { select(Frame().m_wndChannelCombo); }},
            {"a layer", [&] { select(Frame().m_wndLayerCombo); }}}) {
        built = 0;
        builtWaiting = 0;
        make();
        EXPECT_EQ(built, 1) << what;
        EXPECT_EQ(builtWaiting, 1) << what;
        EXPECT_FALSE(QApplication::overrideCursor()) << what;
    }
}

TEST_F(AreaTest, FilesDroppedOnTheMainWindowAreOpened) {
    QMimeData files;
    const std::string b = m_folder.Write(Picture(9, 9), "b.iff");
    m_folder.Write(Picture(8, 8), "a b.iff");
    files.setData(QStringLiteral("text/uri-list"),
        QByteArray::fromStdString("# two files\r\nfile://" + m_folder.Path("a%20b.iff") + "\r\nfile://" + b + "\r\n"));
    QWidget* const window = Main().GetWidget();
    // Whoever lets nothing but move his files would lose them.
    for (const auto& [actions, taken] :
        Table<Qt::DropActions, bool>{{Qt::MoveAction, false}, {Qt::CopyAction | Qt::MoveAction, true}}) {
        QDragEnterEvent enter(QPoint(50, 50), actions, &files, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QApplication::sendEvent(window, &enter);
        EXPECT_EQ(enter.isAccepted(), taken);
    }
    QDropEvent drop(QPointF(50, 50), Qt::CopyAction | Qt::MoveAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window, &drop);
    EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
    EXPECT_TRUE(WaitFor([] { return Titles() == Texts{"a b.iff", "b.iff"}; }));
}

TEST_F(AreaTest, EveryWindowHasItsIcon) {
    const auto pixels = [](const QIcon& icon) { return icon.pixmap(32, 32).toImage(); };
    const QImage main = pixels(Main().GetWidget()->windowIcon());
    EXPECT_FALSE(main.isNull());
    Open(Picture(8, 8), "a.iff");
    EXPECT_FALSE(pixels(Window(0).windowIcon()).isNull());
    EXPECT_NE(pixels(Window(0).windowIcon()), main) << "a document's";
}

TEST_F(AreaTest, AWindowThatBecomesActiveOutOfSightIsScrolledTo) {
    for (const char* const name : {"a.iff", "b.iff", "c.iff"}) Open(Picture(100, 100), name);
    for (const std::size_t i : {1u, 2u}) ViewOf(FrameAt(i)).FitFrameToImage(32);
    // Which one is active before, and where the small one stands then.
    for (const auto& [what, before, place, activate] : Table<const char*, std::size_t, QPoint, std::function<void()>>{
             {"next", 2, {-1500, -1500}, [&] { PressKeys("Ctrl+Tab"); }},
             {"previous", 1, {1200, 900}, [&] { PressKeys("Ctrl+Shift+Tab"); }},
             {"list", 2, {100, -600}, [] { MenuItem(AFX_IDM_FIRST_MDICHILD)->trigger(); }},
             {"opened again", 2, {1200, 100}, [&] { theApp.OpenDocumentFile(m_folder.Path("a.iff")); }},
             {"neighbour", 1, {-1500, 100}, [] { Command(ID_PREVIOUS_FILE); }},
             {"closed", 2, {1200, 900}, [] { Command(ID_FILE_CLOSE); }}}) {
        SCOPED_TRACE(what);
        FrameAt(0).ActivateFrame();
        ScrollTo(1500, 1500);
        Window(0).move(place);
        FrameAt(before).ActivateFrame();
        EXPECT_EQ(Scrolled(), QPoint(1500, 1500)) << "the middle of it is in sight";
        activate();
        Settle();
        EXPECT_EQ(Main().MDIGetActive(), &FrameAt(0));
        EXPECT_TRUE(Area().viewport()->rect().contains(Window(0).geometry()));
    }
}

TEST_F(AreaTest, NothingIsLeftToScrollOverWhereNoWindowIs) {
    Open(Picture(100, 100));
    Fit(32);
    Settle();
    ScrollTo(1000, 1000);
    Command(ID_FILE_CLOSE);
    EXPECT_TRUE(WaitFor([] { return OpenWindows() == 0; }));
    for (const QScrollBar* const bar : {Area().horizontalScrollBar(), Area().verticalScrollBar()}) {
        EXPECT_EQ(bar->minimum(), 0);
        EXPECT_EQ(bar->maximum(), 0);
    }
}
