// Zooming by keys and by the wheel.

#include "app/scale_steps.h"
#include "window_case.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollBar>
#include <QShortcut>
#include <QWheelEvent>

#include <algorithm>
#include <limits>

namespace {

class ZoomTest : public WindowTest {
  protected:
    static QPoint Scrolled() {
        const QMdiArea& area = *Main().GetMDIClient()->GetArea();
        return {area.horizontalScrollBar()->value(), area.verticalScrollBar()->value()};
    }

    static void Press(const char* pszKeys) {
        const auto keys = Main().GetWidget()->findChildren<QShortcut*>();
        const auto key = std::ranges::find(keys, QKeySequence(QString::fromLatin1(pszKeys)), &QShortcut::key);
        ASSERT_NE(key, keys.end()) << pszKeys;
        emit(*key)->activated();
        Settle();
    }

    // In eighths of a degree, 120 of which are a notch.
    void Turn(int nTurn, const QPoint& place, Qt::KeyboardModifiers keys = Qt::ControlModifier) {
        QWidget& view = *View().GetWidget();
        QWheelEvent wheel(
            place, view.mapToGlobal(place), {}, QPoint(0, nTurn), Qt::NoButton, keys, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&view, &wheel);
    }
};

}  // namespace

TEST(ScaleSteps, GoToTheNextPowerOfTwoWithinTheLimits) {
    constexpr float LARGEST = std::numeric_limits<float>::max();
    for (const auto& [scale, up, down] :
        Table<float, float, float>{{1, 2, 0.5f}, {1.5f, 2, 1}, {2.25f, 4, 2}, {16, 32, 8}, {16.5f, 32, 16},
            {31, 32, 16}, {32, 32, 16}, {33, 33, 32}, {64, 64, 32}, {100, 100, 32}, {LARGEST, LARGEST, 32},
            {0.0625f, 0.125f, 0.03125f}, {0.04f, 0.0625f, 0.03125f}, {0.03125f, 0.0625f, 0.03125f}, {0.75f, 1, 0.5f}}) {
        EXPECT_EQ(ScaleAfterSteps(scale, 1), up) << scale;
        EXPECT_EQ(ScaleAfterSteps(scale, -1), down) << scale;
    }
    EXPECT_EQ(ScaleAfterSteps(3, 2), 8);
    EXPECT_EQ(ScaleAfterSteps(3, -9), 0.03125f);
}

TEST_F(ZoomTest, KeysGoNoFurtherThanTheLimit) {
    Press("Ctrl++");
    Press("Ctrl+0");  // without a document
    ASSERT_TRUE(OpenFile(Picture(100, 50)));
    View().FitFrameToImage(64);
    Press("Ctrl++");
    EXPECT_EQ(ClientSize(), (CSize{6400, 3200}));
    Press("Ctrl+-");
    EXPECT_EQ(ClientSize(), (CSize{3200, 1600}));

    Frame().GetSubWindow()->showMaximized();
    Settle();
    Press("Ctrl++");
    EXPECT_TRUE(Frame().IsZoomed()) << "nothing happens at the limit";
    Press("Ctrl+-");
    EXPECT_FALSE(Frame().IsZoomed());
    EXPECT_EQ(ClientSize(), (CSize{1600, 800}));
}

TEST_F(ZoomTest, WithoutABitmapNothingIsFitted) {
    ASSERT_TRUE(OpenFile(Form("ILBM", {Bmhd({.width = 8, .height = 8})})));
    Settle();
    EXPECT_GT(ClientSize().cx, 8);
    const CRect place = Frame().GetWindowRect();
    for (const char* keys : {"Ctrl++", "Ctrl+-", "Ctrl+0"}) {
        Press(keys);
        EXPECT_EQ(Frame().GetWindowRect(), place) << keys;
    }
    Turn(120, {1, 1});
    EXPECT_EQ(Frame().GetWindowRect(), place);
}

TEST_F(ZoomTest, TheWheelCollectsPartsOfANotchAndTheAreaHasItWithoutTheKey) {
    ASSERT_TRUE(OpenFile(Picture(100, 50)));
    for (const auto& [turn, keys, scale] :
        Table<int, Qt::KeyboardModifiers, float>{{60, Qt::ControlModifier, 1}, {59, Qt::ControlModifier, 1},
            {1, Qt::ControlModifier, 2}, {119, Qt::ControlModifier, 2}, {-1, Qt::ControlModifier, 2},
            {119, Qt::ControlModifier, 2}, {120, Qt::NoModifier, 2}, {119, Qt::ControlModifier, 2},
            {-240, Qt::ControlModifier, 0.5f}, {10 * 120, Qt::ControlModifier, 32}, {120, Qt::ControlModifier, 32}}) {
        Turn(turn, {3, 3}, keys);
        EXPECT_EQ(View().m_fScale, scale) << turn;
    }
    View().FitFrameToImage(2);
    Frame().GetSubWindow()->showMaximized();
    Settle();
    Turn(120, {3, 3});
    EXPECT_EQ(View().m_fScale, 2);
    EXPECT_TRUE(Frame().IsZoomed());
}

// The other one keeps the area so large that it could scroll anywhere.
TEST_F(ZoomTest, ThePixelUnderThePointerStaysThere) {
    ASSERT_TRUE(OpenFile(Picture(100, 100), "large.iff"));
    View().FitFrameToImage(64);
    ASSERT_TRUE(OpenFile(Picture(101, 99), "picture.iff"));
    QWidget& view = *View().GetWidget();
    QMdiArea& area = *Main().GetMDIClient()->GetArea();
    Frame().GetSubWindow()->move(1500, 1500);
    const auto shown = [&](const QPoint& place) {
        return QPoint(place.x() * 101 / view.width(), place.y() * 99 / view.height());
    };
    for (const float first : {1.0f, 0.5f, 3.0f})
        for (const QPoint& part : {QPoint(0, 0), QPoint(50, 50), QPoint(99, 99), QPoint(33, 71)}) {
            View().FitFrameToImage(first);
            area.horizontalScrollBar()->setValue(1000);
            area.verticalScrollBar()->setValue(1200);
            const QPoint start(view.width() * part.x() / 100, view.height() * part.y() / 100);
            const QPoint pointer = view.mapToGlobal(start);
            const QPoint pixel = shown(start);
            for (const int notches : {1, 1, 2, -1, -3}) {
                Turn(120 * notches, view.mapFromGlobal(pointer));
                EXPECT_EQ(ClientSize(), (CSize{view.width(), view.height()}));
                const QPoint now = shown(view.mapFromGlobal(pointer)) - pixel;
                const int pixelsBeside = View().m_fScale < 1 ? 2 : 0;
                EXPECT_LE(now.manhattanLength(), pixelsBeside) << View().m_fScale << " from " << first;
            }
        }
}

// Where the area ends the picture moves instead.
TEST_F(ZoomTest, TheAreaScrollsToThePointerNoFurtherThanItGoes) {
    ASSERT_TRUE(OpenFile(Picture(100, 100)));
    Frame().GetSubWindow()->move(0, 0);
    Turn(120, {50, 50});
    EXPECT_EQ(Scrolled(), QPoint(0, 0)) << "all of it has room";
    Turn(4 * 120, {100, 101});
    EXPECT_EQ(Scrolled(), QPoint(50 * 32 + 8 - 100, 50 * 32 + 24 - 101))
        << "a quarter and three quarters into the pixel";
    QScrollBar& across = *Main().GetMDIClient()->GetArea()->horizontalScrollBar();
    const int before = across.maximum();
    across.setValue(before);
    Turn(-120, {2300, 1600});
    EXPECT_LT(across.maximum(), before);
    EXPECT_EQ(across.value(), across.maximum());
}
