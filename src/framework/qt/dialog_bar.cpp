#include "framework/qt/dialog_bar.h"

#include "framework/core/resource.h"
#include "framework/qt/dialog_template.h"
#include "framework/qt/frame_wnd.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>
#include <QToolButton>

namespace {

// Pixels; the room that a toolbar gives its handle.
constexpr int GRIP_WIDTH = 9;

// Pixels to both sides of the caption's text.
constexpr int CAPTION_MARGIN = 4;

// How far from its place at the edge a bar floats, so that it does not look docked still; pixels.
constexpr int FLOAT_STEP = 24;

void ToggleFloating(QDockWidget& bar) {
    bar.setFloating(!bar.isFloating());
    if (bar.isFloating()) bar.move(bar.pos() + QPoint(FLOAT_STEP, FLOAT_STEP));
}

// What stands for the caption: a grip while the bar is docked, its title and a button to close it while it
// floats. It is one and the same, because the toolkit makes a floating bar's window anew for another one.
// What it does not take for itself the dock widget does: dragging.
class Caption final : public QWidget {
  public:
    explicit Caption(QDockWidget& bar) : QWidget(&bar), m_bar(bar), m_close(this) {
        m_close.setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
        m_close.setAutoRaise(true);
        m_close.setFocusPolicy(Qt::NoFocus);
        m_close.setAccessibleName(QDockWidget::tr("Close"));
        m_close.hide();
        connect(&m_close, &QToolButton::clicked, &bar, &QDockWidget::close);
    }

    void SetFloating(bool bFloating) {
        m_close.setVisible(bFloating);
        updateGeometry();
        update();
    }

    QSize sizeHint() const override {
        if (m_close.isHidden()) return {GRIP_WIDTH, GRIP_WIDTH};
        const int height = m_close.sizeHint().height();
        return {fontMetrics().horizontalAdvance(m_bar.windowTitle()) + 2 * CAPTION_MARGIN + height, height};
    }
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        if (m_close.isHidden()) {
            QStyleOption option;
            option.initFrom(this);
            option.state |= QStyle::State_Horizontal;
            style()->drawPrimitive(QStyle::PE_IndicatorToolBarHandle, &option, &painter, this);
        } else {
            painter.drawText(rect().adjusted(CAPTION_MARGIN, 0, -m_close.width(), 0), Qt::AlignVCenter,
                             m_bar.windowTitle());
        }
    }
    void resizeEvent(QResizeEvent*) override {
        m_close.setGeometry(width() - height(), 0, height(), height());
    }
    void mouseDoubleClickEvent(QMouseEvent*) override { ToggleFloating(m_bar); }

  private:
    QDockWidget& m_bar;
    QToolButton m_close;
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

void DressBar(QDockWidget& bar, bool bFloating) {
    QDockWidget::DockWidgetFeatures features =
        QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable | QDockWidget::DockWidgetClosable;
    if (!bFloating) features |= QDockWidget::DockWidgetVerticalTitleBar;
    bar.setFeatures(features);
    static_cast<Caption*>(bar.titleBarWidget())->SetFloating(bFloating);
    // Nothing around a floating bar is narrower than its controls.
    if (QWidget* const controls = bar.widget())
        controls->setMinimumWidth(bFloating ? controls->sizeHint().width() : 0);
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
    bar->setTitleBarWidget(new Caption(*bar));
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

bool CDialogBar::IsWindowVisible() const {
    return m_bAway || CControlBar::IsWindowVisible();
}

void CDialogBar::ShowWindow(bool bShow) {
    m_bAway = false;
    CControlBar::ShowWindow(bShow);
}
