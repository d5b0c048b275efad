// Zooming by keys and by the wheel.

#include "app/scale_steps.h"
#include "window_case.h"

#include <limits>

namespace {

class ZoomTest : public WindowTest {
  protected:
    static void Turn(int nTurn, const QPoint& place, Qt::KeyboardModifiers keys = Qt::ControlModifier) {
        TurnWheel(*View().GetWidget(), place, nTurn, keys);
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
    PressKeys("Ctrl++");
    PressKeys("Ctrl+0");  // without a document
    Open(Picture(100, 50));
    Fit(64);
    PressKeys("Ctrl++");
    EXPECT_EQ(ClientSize(), (CSize{6400, 3200}));
    PressKeys("Ctrl+-");
    EXPECT_EQ(ClientSize(), (CSize{3200, 1600}));

    SubWindow().showMaximized();
    Settle();
    PressKeys("Ctrl++");
    EXPECT_TRUE(Frame().IsZoomed()) << "nothing happens at the limit";
    PressKeys("Ctrl+-");
    EXPECT_FALSE(Frame().IsZoomed());
    EXPECT_EQ(ClientSize(), (CSize{1600, 800}));
}

TEST_F(ZoomTest, WithoutABitmapNothingIsFitted) {
    Open(NoPicture());
    Settle();
    EXPECT_GT(ClientSize().cx, 8);
    const CRect place = Frame().GetWindowRect();
    for (const char* keys : {"Ctrl++", "Ctrl+-", "Ctrl+0"}) {
        PressKeys(keys);
        EXPECT_EQ(Frame().GetWindowRect(), place) << keys;
    }
    Turn(NOTCH, {1, 1});
    EXPECT_EQ(Frame().GetWindowRect(), place);
}

TEST_F(ZoomTest, TheWheelCollectsPartsOfANotchAndTheAreaHasItWithoutTheKey) {
    Open(Picture(100, 50));
    for (const auto& [turn, keys, scale] :
        Table<int, Qt::KeyboardModifiers, float>{{60, Qt::ControlModifier, 1}, {59, Qt::ControlModifier, 1},
            {1, Qt::ControlModifier, 2}, {119, Qt::ControlModifier, 2}, {-1, Qt::ControlModifier, 2},
            {119, Qt::ControlModifier, 2}, {120, Qt::NoModifier, 2}, {119, Qt::ControlModifier, 2},
            {-240, Qt::ControlModifier, 0.5f}, {10 * 120, Qt::ControlModifier, 32}, {120, Qt::ControlModifier, 32}}) {
        Turn(turn, {3, 3}, keys);
        EXPECT_EQ(View().m_fScale, scale) << turn;
    }
    Fit(2);
    SubWindow().showMaximized();
    Settle();
    Turn(NOTCH, {3, 3});
    EXPECT_EQ(View().m_fScale, 2);
    EXPECT_TRUE(Frame().IsZoomed());
}

// The other one keeps the area so large that it could scroll anywhere.
TEST_F(ZoomTest, ThePixelUnderThePointerStaysThere) {
    Open(Picture(100, 100), "large.iff");
    Fit(64);
    Open(Picture(101, 99), "picture.iff");
    QWidget& view = *View().GetWidget();
    SubWindow().move(1500, 1500);
    const auto shown = [&](const QPoint& place) {
        return QPoint(place.x() * 101 / view.width(), place.y() * 99 / view.height());
    };
    for (const float first : {1.0f, 0.5f, 3.0f})
        for (const QPoint& part : {QPoint(0, 0), QPoint(50, 50), QPoint(99, 99), QPoint(33, 71)}) {
            Fit(first);
            ScrollTo(1000, 1200);
            const QPoint start(view.width() * part.x() / 100, view.height() * part.y() / 100);
            const QPoint pointer = view.mapToGlobal(start);
            const QPoint pixel = shown(start);
            for (const int notches : {1, 1, 2, -1, -3}) {
                Turn(NOTCH * notches, view.mapFromGlobal(pointer));
                EXPECT_EQ(ClientSize(), (CSize{view.width(), view.height()}));
                const QPoint now = shown(view.mapFromGlobal(pointer)) - pixel;
                const int pixelsBeside = View().m_fScale < 1 ? 2 : 0;
                EXPECT_LE(now.manhattanLength(), pixelsBeside) << View().m_fScale << " from " << first;
            }
        }
}

// Where the area ends the picture moves instead.
TEST_F(ZoomTest, TheAreaScrollsToThePointerNoFurtherThanItGoes) {
    Open(Picture(100, 100));
    SubWindow().move(0, 0);
    Turn(NOTCH, {50, 50});
    EXPECT_EQ(Scrolled(), QPoint(0, 0)) << "all of it has room";
    Turn(4 * NOTCH, {100, 101});
    EXPECT_EQ(Scrolled(), QPoint(50 * 32 + 8 - 100, 50 * 32 + 24 - 101))
        << "a quarter and three quarters into the pixel";
    QScrollBar& across = *Area().horizontalScrollBar();
    const int before = across.maximum();
    across.setValue(before);
    Turn(-NOTCH, {2300, 1600});
    EXPECT_LT(across.maximum(), before);
    EXPECT_EQ(across.value(), across.maximum());
}

// On many keyboards plus takes the shift key, and the same key without it is this one.
TEST_F(ZoomTest, TheEqualsKeyZoomsInAsPlusDoes) {
    Open(Picture(10, 10));
    QApplication::setActiveWindow(Main().GetBarHost());
    for (const auto& [key, scale] : Table<Qt::Key, float>{{Qt::Key_Equal, 2}, {Qt::Key_Plus, 4}, {Qt::Key_Minus, 2}}) {
        QTest::keyClick(View().GetWidget(), key, Qt::ControlModifier);
        EXPECT_EQ(View().m_fScale, scale) << key;
    }
}
