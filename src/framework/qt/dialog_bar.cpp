#include "framework/qt/dialog_bar.h"

#include "framework/core/resource.h"
#include "framework/qt/dialog_template.h"
#include "framework/qt/frame_wnd.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>

namespace {

// Pixels; the room that a toolbar gives its handle.
constexpr int GRIP_WIDTH = 9;

// How far from its place at the edge a bar floats, so that it does not look docked still; pixels.
constexpr int FLOAT_STEP = 24;

void ToggleFloating(QDockWidget& bar) {
    bar.setFloating(!bar.isFloating());
    if (bar.isFloating()) bar.move(bar.pos() + QPoint(FLOAT_STEP, FLOAT_STEP));
}

// What stands for the caption while the bar is docked. The dock widget drags by whatever does.
class Grip final : public QWidget {
  public:
    explicit Grip(QDockWidget& bar) : QWidget(&bar), m_bar(bar) {}

    QSize sizeHint() const override { return {GRIP_WIDTH, GRIP_WIDTH}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        QStyleOption option;
        option.initFrom(this);
        option.state |= QStyle::State_Horizontal;
        style()->drawPrimitive(QStyle::PE_IndicatorToolBarHandle, &option, &painter, this);
    }
    void mouseDoubleClickEvent(QMouseEvent*) override { ToggleFloating(m_bar); }

  private:
    QDockWidget& m_bar;
};

class DialogWidget final : public QWidget {
  public:
    DialogWidget(QDockWidget& bar, CFrameWnd& frame, const DialogResource& resource)
        : QWidget(&bar), m_bar(bar) {
        m_sizeHint = AfxCreateControls(*this, resource, frame);
        setFixedHeight(m_sizeHint.height());
    }

    QSize sizeHint() const override { return m_sizeHint; }

  protected:
    // The bar is to be taken hold of anywhere between its controls, not by the grip alone.
    void mouseDoubleClickEvent(QMouseEvent*) override { ToggleFloating(m_bar); }

  private:
    QDockWidget& m_bar;
    QSize m_sizeHint;
};

// The toolkit draws a caption for a floating bar only where none of the program's own stands.
void DressBar(QDockWidget& bar, bool bFloating) {
    QDockWidget::DockWidgetFeatures features =
        QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable | QDockWidget::DockWidgetClosable;
    if (!bFloating) features |= QDockWidget::DockWidgetVerticalTitleBar;
    bar.setFeatures(features);
    QWidget* const before = bar.titleBarWidget();
    bar.setTitleBarWidget(bFloating ? nullptr : new Grip(bar));
    // Nothing around a floating bar is narrower than its controls.
    if (QWidget* const controls = bar.widget())
        controls->setMinimumWidth(bFloating ? controls->sizeHint().width() : 0);
    // It may be what the pointer that drags the bar away went down on.
    if (before) before->deleteLater();
}

QDockWidget* DockOf(const CWnd& bar) {
    return static_cast<QDockWidget*>(bar.GetWidget());
}

}  // namespace

bool CDialogBar::Create(CFrameWnd* pFrame, u32 nIDTemplate, u32 nID) {
    const DialogResource* const resource = AfxFindDialog(nIDTemplate);
    if (!resource) return false;
    auto* const bar = new QDockWidget;
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
    DressBar(*bar, false);
    QObject::connect(bar, &QDockWidget::topLevelChanged, bar,
                     [bar](bool bFloating) { DressBar(*bar, bFloating); });
    bar->setWidget(new DialogWidget(*bar, *pFrame, *resource));
    pFrame->GetBarHost()->addDockWidget(Qt::TopDockWidgetArea, bar);
    AttachBar(bar, pFrame, nID);
    return true;
}

void CDialogBar::EnableDocking(u32 nDockStyle) {
    Qt::DockWidgetAreas areas = Qt::NoDockWidgetArea;
    if (nDockStyle & CBRS_ALIGN_TOP) areas |= Qt::TopDockWidgetArea;
    if (nDockStyle & CBRS_ALIGN_BOTTOM) areas |= Qt::BottomDockWidgetArea;
    DockOf(*this)->setAllowedAreas(areas);
}

QWidget* CDialogBar::GetDlgItem(u32 nID) const {
    return AfxFindControl(*GetWidget(), nID);
}

void CDialogBar::OnUpdateCmdUI(CFrameWnd& frame) {
    QDockWidget* const bar = DockOf(*this);
    const bool away = bar->isFloating() && !frame.ShowsFloatingBars();
    if (away ? !bar->isVisible() : !m_bAway) return;
    m_bAway = away;
    bar->setVisible(!away);
}
