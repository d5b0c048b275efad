// What the message pane says of the pixel under the pointer, and what it costs.

#include "window_case.h"

#include <QPointer>

namespace {

class PointerTest : public WindowTest {
  protected:
    ~PointerTest() override { Leave(); }

    void PointAt(QWidget& view, const QPointF& place) {
        m_pPointed = &view;
        MouseMove(view, view.mapToGlobal(place), Qt::NoButton);
    }
    std::string TextAt(const QPointF& place) {
        Settle();  // windows that come to the screen send the pointer away
        PointAt(*View().GetWidget(), place);
        return MainPane();
    }
    void Leave() {
        QEvent leave(QEvent::Leave);
        if (m_pPointed) QApplication::sendEvent(m_pPointed, &leave);
        m_pPointed = nullptr;
    }

    QPointer<QWidget> m_pPointed;
};

// As the pane says it of a pixel of Picture.
std::string TextOf(u32 x, u32 y) {
    const std::string shade = std::to_string(ValueAt(x, y) * 8);
    return "x " + std::to_string(x) + ", y " + std::to_string(y) + ": " + shade + ", " + shade + ", " + shade;
}

}  // namespace

TEST_F(PointerTest, ThePaneNamesThePixelThatTheStretchShows) {
    Open(Picture(100, 51));
    for (const auto& [scale, place, x, y] : Table<float, QPoint, u32, u32>{{1, {0, 0}, 0, 0}, {1, {99, 50}, 99, 50},
             {1, {12, 40}, 12, 40}, {2, {25, 80}, 12, 40}, {2, {199, 101}, 99, 50}, {0.5f, {6, 20}, 12, 40},
             {0.5f, {49, 24}, 98, 48}, {1.5f, {149, 75}, 99, 50}, {1.5f, {2, 1}, 1, 0}}) {
        Fit(scale);
        EXPECT_EQ(TextAt(place), TextOf(x, y)) << scale;
        EXPECT_EQ(ShownPixel(place.x(), place.y()), ShownColour(x, y)) << scale;
    }
    Fit(1);
    EXPECT_EQ(TextAt({12.7, 40.5}), TextOf(12, 40)) << "within a pixel, as some pointers are";
    EXPECT_EQ(TextAt({99.9, 50.9}), TextOf(99, 50));
    Leave();
    EXPECT_EQ(MainPane(), "Ready");
}

TEST_F(PointerTest, OnlyATableHasIndices) {
    Open(Psd({.channels = 3, .columns = 2, .mode = PSD_RGB, .samples = Bytes{1, 255, 2, 128, 3, 0}}), "colours.psd");
    EXPECT_EQ(TextAt({1, 0}), "x 1, y 0: 255, 128, 0");
    Open(Psd({.columns = 2, .samples = Bytes{7, 9}}), "grey.psd");
    Bytes table(768);
    table[7] = 255;
    table[256 + 7] = 128;
    EXPECT_EQ(TextAt({1, 0}), "x 1, y 0: 9, 9, 9");
    Open(Psd({.columns = 2, .mode = PSD_INDEXED, .colourData = table, .samples = Bytes{9, 7}}), "table.psd");
    EXPECT_EQ(TextAt({1, 0}), "x 1, y 0: 255, 128, 0 (7)");
    EXPECT_EQ(TextAt({0, 0}), "x 0, y 0: 0, 0, 0 (9)");
    Open(NoPicture(), "no picture.iff");
    EXPECT_EQ(TextAt({1, 1}), "Ready");
}

TEST_F(PointerTest, PromptsComeBeforeIt) {
    Open(Picture(20, 20));
    EXPECT_EQ(TextAt({3, 4}), TextOf(3, 4));
    Main().SetMessageText("A prompt");
    EXPECT_EQ(TextAt({3, 5}), "A prompt");
    Main().SetMessageText({});
    EXPECT_EQ(MainPane(), TextOf(3, 5));
}

// The toolkit tells of no move while the pointer rests.
TEST_F(PointerTest, WhatMovesUnderARestingPointerIsRead) {
    Open(Picture(100, 100));
    EXPECT_EQ(TextAt({10, 10}), TextOf(10, 10));
    Fit(2);
    EXPECT_EQ(MainPane(), TextOf(5, 5));
    SubWindow().move(SubWindow().pos() - QPoint(4, 6));
    EXPECT_EQ(MainPane(), TextOf(7, 8));
    CVistrelView& below = View();
    QWidget& widget = *below.GetWidget();
    Open(Picture(50, 50), "above.iff");
    const QPoint place = View().GetWidget()->mapToGlobal(QPoint(2, 3));
    PointAt(widget, widget.mapFromGlobal(place));
    EXPECT_EQ(MainPane(), TextOf(2, 3)) << "of the window in front";
    const QPoint beside(150, 150);
    PointAt(widget, beside);
    EXPECT_EQ(MainPane(), TextOf(75, 75)) << "of one that is not active";
    Command(ID_FILE_CLOSE);
    Main().DestroyChildren();
    EXPECT_EQ(MainPane(), "Ready");
}

TEST_F(PointerTest, NothingIsDrawnAnewForIt) {
    Open(Picture(100, 100));
    Settle();
    const PaintCounter painted(*View().GetWidget());
    for (int x = 0; x < 50; ++x) EXPECT_EQ(TextAt(QPoint(x, 5)), TextOf(static_cast<u32>(x), 5));
    EXPECT_EQ(painted.m_nPaints, 0);
    View().Invalidate();
    Settle();
    EXPECT_EQ(painted.m_nPaints, 1);
}
