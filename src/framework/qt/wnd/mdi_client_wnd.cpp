#include "framework/qt/wnd/mdi_client_wnd.h"

#include <QLayout>
#include <QMainWindow>
#include <QMdiArea>
#include <QScrollBar>

#include <algorithm>

namespace {

// Captions that stand one below the other before the next child begins at the top again.
constexpr int CASCADE_STEPS = 10;

// Pixels of one step of a scroll bar; the wheel takes several at a time.
constexpr int SCROLL_STEP = 20;

// The toolkit's steps are shares of all that there is to scroll over: beside a large child the first one
// leaves everything behind that was visible.
class AreaScrollBar final : public QScrollBar {
  public:
    explicit AreaScrollBar(const QMdiArea& area) : m_area(area) {}

  protected:
    void sliderChange(SliderChange change) override {
        QScrollBar::sliderChange(change);
        if (change != SliderRangeChange && change != SliderStepsChange) return;
        const QSize visible = m_area.viewport()->size();
        setSingleStep(SCROLL_STEP);
        setPageStep(orientation() == Qt::Horizontal ? visible.width() : visible.height());
    }

  private:
    const QMdiArea& m_area;
};

void SetScrollBars(QMdiArea& area, Qt::ScrollBarPolicy policy) {
    area.setHorizontalScrollBarPolicy(policy);
    area.setVerticalScrollBarPolicy(policy);
}

// How far to scroll so that what lies from one place to another is visible, or its beginning where there is
// more of it than can be.
int ScrollDistance(int nFirst, int nEnd, int nVisible) {
    return nFirst < 0 ? nFirst : std::clamp(nEnd - nVisible, 0, nFirst);
}

}  // namespace

void CMDIClientWnd::Create(QMainWindow& host, CWnd& frame) {
    auto* const area = new QMdiArea;
    area->setHorizontalScrollBar(new AreaScrollBar(*area));
    area->setVerticalScrollBar(new AreaScrollBar(*area));
    SetScrollBars(*area, Qt::ScrollBarAsNeeded);
    host.setCentralWidget(area);
    Attach(area, &frame);
}

QMdiArea* CMDIClientWnd::GetArea() const {
    return static_cast<QMdiArea*>(GetWidget());
}

QWidget* CMDIClientWnd::GetClientWidget() const {
    return GetArea()->viewport();
}

int CMDIClientWnd::NextCascadeStep() {
    return m_nCascadeStep++ % CASCADE_STEPS;
}

CSize CMDIClientWnd::GetVisibleSize() const {
    const QMdiArea& area = *GetArea();
    // Until the main window shows it is not laid out, and the inside of its area still less.
    if (!area.isVisible()) area.window()->layout()->activate();
    const QSize size = area.isVisible() ? area.viewport()->size() : area.maximumViewportSize();
    return {size.width(), size.height()};
}

// The toolkit would leave out what the scroll bars cover, though these go, and move tiled windows afterwards
// by what was scrolled.
void CMDIClientWnd::ArrangeWindows(void (QMdiArea::*arrange)()) {
    QMdiArea& area = *GetArea();
    area.horizontalScrollBar()->setValue(0);
    area.verticalScrollBar()->setValue(0);
    SetScrollBars(area, Qt::ScrollBarAlwaysOff);
    (area.*arrange)();
    SetScrollBars(area, Qt::ScrollBarAsNeeded);
}

// The toolkit keeps what the last one left to scroll over.
void CMDIClientWnd::LeaveNothingToScroll() {
    GetArea()->horizontalScrollBar()->setRange(0, 0);
    GetArea()->verticalScrollBar()->setRange(0, 0);
}

void CMDIClientWnd::ScrollIntoView(const QRect& rect) {
    const CSize visible = GetVisibleSize();
    ScrollBy({ScrollDistance(rect.x(), rect.x() + rect.width(), visible.cx),
              ScrollDistance(rect.y(), rect.y() + rect.height(), visible.cy)});
}

void CMDIClientWnd::ScrollBy(const CSize& distance) {
    QScrollBar* const across = GetArea()->horizontalScrollBar();
    QScrollBar* const down = GetArea()->verticalScrollBar();
    across->setValue(across->value() + distance.cx);
    down->setValue(down->value() + distance.cy);
}
