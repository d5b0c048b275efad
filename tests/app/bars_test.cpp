// The bar with the two lists.
#include "window_case.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QHelpEvent>
#include <QImage>
#include <QMainWindow>
#include <QScrollBar>
#include <QTextDocumentFragment>
#include <QToolTip>
#include <QWheelEvent>

namespace {

class BarsTest : public WindowTest {
  protected:
    BarsTest() { EXPECT_TRUE(OpenFile(Picture(800, 400))); }

    static QComboBox& Shown(const CComboBox& list) { return *static_cast<QComboBox*>(list.GetWidget()); }
    QComboBox& Layers() { return Shown(Frame().m_wndLayerCombo); }
    QComboBox& Channels() { return Shown(Frame().m_wndChannelCombo); }

    void AddLayer(const std::string& strName) {
        SendMessageA(&Frame().m_wndLayerCombo, CB_ADDSTRING, 0, reinterpret_cast<i64>(strName.c_str()));
    }

    void ChooseLayer(u64 position) { SendMessageA(&Frame().m_wndLayerCombo, CB_SETCURSEL, position, 0); }
};

// Empty when none shows.
std::string TipOf(QWidget& widget, const QPoint& at) {
    QToolTip::hideText();
    EXPECT_TRUE(WaitFor([] { return !QToolTip::isVisible(); }));
    QHelpEvent help(QEvent::ToolTip, at, widget.mapToGlobal(at));
    QApplication::sendEvent(&widget, &help);
    if (!QToolTip::isVisible()) return {};
    return QTextDocumentFragment::fromHtml(QToolTip::text()).toPlainText().toStdString();
}

// False when the list leaves it to what lies below.
bool Wheel(QWidget& widget) {
    QWheelEvent turn({5, 5}, widget.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
        Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &turn);
    return turn.isAccepted();
}

}  // namespace

TEST_F(BarsTest, TheListsStandAtTheirTemplatesPlacesAndWidths) {
    // All in units of the template.
    const double unit = Layers().width() / 55.0;
    EXPECT_NEAR(unit, Layers().fontMetrics().averageCharWidth() / 4.0, 0.5);
    for (const auto& [list, left, width] : Table<QComboBox*, int, int>{{&Layers(), 23, 55}, {&Channels(), 109, 68}}) {
        EXPECT_NEAR(list->x(), left * unit, 2) << left;
        EXPECT_NEAR(list->width(), width * unit, 2) << left;
    }
}

TEST_F(BarsTest, AListDropsDownToItsTemplatesHeightWithAScrollBar) {
    for (int i = 1; i < 200; ++i) AddLayer("Mip Map " + std::to_string(i));
    Layers().showPopup();
    const QAbstractItemView& list = *Layers().view();
    EXPECT_LE(list.height(), Layers().fontMetrics().height() * 66 / 8);
    EXPECT_GT(list.height(), Layers().fontMetrics().height() * 50 / 8);
    EXPECT_TRUE(list.verticalScrollBar()->isVisible());
    Layers().hidePopup();
}

TEST_F(BarsTest, ACutEntryKeepsBothEndsAndShowsWholeInATip) {
    const std::string name(40, 'n');
    AddLayer(name + "1");
    AddLayer(name + "2");
    std::vector<QImage> pictures;
    for (const u64 position : {1, 2}) {
        ChooseLayer(position);
        pictures.push_back(Layers().grab().toImage());
        EXPECT_EQ(TipOf(Layers(), {5, 5}), name + std::to_string(position));
    }
    EXPECT_NE(pictures[0], pictures[1]);
    ChooseLayer(0);
    EXPECT_EQ(TipOf(Layers(), {5, 5}), "") << "there is room for it";

    Layers().showPopup();
    QAbstractItemView& list = *Layers().view();
    const auto entry = [&](int row) { return list.visualRect(list.model()->index(row, 0)); };
    EXPECT_NE(list.viewport()->grab(entry(1)).toImage(), list.viewport()->grab(entry(2)).toImage());
    EXPECT_EQ(TipOf(*list.viewport(), entry(2).center()), name + "2");
    EXPECT_EQ(TipOf(*list.viewport(), entry(0).center()), "");
    Layers().hidePopup();
}

TEST_F(BarsTest, TheWheelChoosesInAListThatHasTheFocusAndScrollsWhatLiesBelowAnother) {
    AddLayer("second");
    QApplication::setActiveWindow(theApp.m_pMainWnd->GetBarHost());
    View().GetWidget()->setFocus();
    ASSERT_TRUE(WaitFor([&] { return View().GetWidget()->hasFocus(); }));
    EXPECT_FALSE(Wheel(Layers()));
    EXPECT_EQ(Layers().currentIndex(), 0);

    Layers().setFocus();
    ASSERT_TRUE(WaitFor([&] { return Layers().hasFocus(); }));
    EXPECT_TRUE(Wheel(Layers()));
    EXPECT_EQ(Layers().currentIndex(), 1);
}
