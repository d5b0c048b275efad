// What the program's windows draw by themselves, on a dark palette.

#include "window_case.h"

#include <QPalette>
#include <QToolButton>

namespace {

constexpr int READABLE = 128;  // lightness against a dark window, of 256

int LightestIn(const QImage& image) {
    int lightest = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) lightest = std::max(lightest, image.pixelColor(x, y).lightness());
    return lightest;
}

int LightestIn(QWidget& widget, const QRect& rect) { return LightestIn(widget.grab(rect).toImage()); }

class PaletteTest : public WindowTest {
  protected:
    PaletteTest() : m_before(QApplication::palette()) { Use(QPalette(QColor(32, 32, 32))); }
    ~PaletteTest() override { Use(m_before); }

  private:
    void Use(const QPalette& palette) {
        QApplication::setPalette(palette);
        Main().GetWidget()->setPalette(palette);  // a window that is not shown would follow later
    }

    QPalette m_before;
};

TEST_F(PaletteTest, WhatAChildWindowIsManagedByIsReadable) {
    Open(Picture(150, 100), "back.iff");
    Open(Picture(150, 100), "front.iff");
    const auto children = Main().GetBarHost()->findChildren<QMdiSubWindow*>();
    const auto back = std::ranges::find(children, QStringLiteral("back.iff"), &QWidget::windowTitle);
    ASSERT_NE(back, children.end());
    const QRect caption(0, 0, (*back)->width(), (*back)->style()->pixelMetric(QStyle::PM_TitleBarHeight));
    EXPECT_GT(LightestIn(**back, caption.adjusted(caption.width() - 50, 4, -8, -4)), READABLE);

    for (const QAction* const item : (*back)->systemMenu()->actions()) {
        if (item->icon().isNull()) continue;
        EXPECT_GT(LightestIn(item->icon().pixmap(16).toImage()), READABLE) << item->text().toStdString();
    }

    auto* const more = (*back)->findChild<QToolButton*>(QStringLiteral("qt_toolbar_ext_button"));
    ASSERT_TRUE(more);
    more->resize(12, 24);
    EXPECT_GT(LightestIn(*more, more->rect()), READABLE);
}

}  // namespace
