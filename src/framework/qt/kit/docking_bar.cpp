#include "framework/qt/kit/docking_bar.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QDockWidget>
#include <QMainWindow>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>
#include <QToolButton>

#include <algorithm>
#include <optional>
#include <utility>

namespace {

// Pixels; the room that a toolbar gives its handle.
constexpr int GRIP_WIDTH = 9;

// Pixels to both sides of the caption's text.
constexpr int CAPTION_MARGIN = 4;

// How far from its place at the edge a bar floats at first, so that it does not look docked still; pixels.
constexpr int FLOAT_STEP = 24;

// How near to the frame's upper or lower edge a bar is dropped that is to dock there; pixels.
constexpr int DROP_REACH = 80;

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

    void ToggleFloating() {
        if (m_bar.isFloating()) {
            m_floatingAt = m_bar.pos();
            m_bar.setFloating(false);
        } else {
            m_bar.setFloating(true);
            m_bar.move(m_floatingAt.value_or(m_bar.pos() + QPoint(FLOAT_STEP, FLOAT_STEP)));
        }
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
    void mouseDoubleClickEvent(QMouseEvent*) override { ToggleFloating(); }

  private:
    QDockWidget& m_bar;
    QToolButton m_close;
    std::optional<QPoint> m_floatingAt;
};

Caption& CaptionOf(const QDockWidget& bar) {
    return *static_cast<Caption*>(bar.titleBarWidget());
}

// The toolkit takes whatever is dropped near the left or the right edge for a bar to dock at that one, and
// leaves it floating where that edge is not allowed. It is meant for the upper or the lower edge.
class DockedBar final : public QDockWidget {
  public:
    using QDockWidget::QDockWidget;

  protected:
    bool event(QEvent* pEvent) override {
        const bool handled = QDockWidget::event(pEvent);
        if (pEvent->type() != QEvent::MouseButtonPress && pEvent->type() != QEvent::MouseButtonRelease)
            return handled;
        const auto& mouse = *static_cast<QMouseEvent*>(pEvent);
        if (mouse.button() != Qt::LeftButton) return handled;
        const QPoint at = mouse.globalPosition().toPoint();
        if (pEvent->type() == QEvent::MouseButtonPress) {
            m_held.reset();
            if (titleBarWidget()->geometry().contains(mouse.position().toPoint())) m_held = at;
        } else if (const auto held = std::exchange(m_held, std::nullopt)) {
            // The control key keeps a bar from docking.
            const bool isDragged = (at - *held).manhattanLength() > QApplication::startDragDistance();
            if (isDragged && isFloating() && !(mouse.modifiers() & Qt::ControlModifier)) Drop(at);
        }
        return handled;
    }

  private:
    void Drop(const QPoint& onScreen) {
        auto& host = *static_cast<QMainWindow*>(parentWidget());
        // A frame can be larger than what shows of it.
        for (const QWidget* part = &host; part; part = part->parentWidget())
            if (!part->rect().contains(part->mapFromGlobal(onScreen))) return;
        const int y = host.mapFromGlobal(onScreen).y();
        const int reach = std::min(DROP_REACH, host.height() / 2);
        const Qt::DockWidgetArea area = y < reach                    ? Qt::TopDockWidgetArea
                                        : y >= host.height() - reach ? Qt::BottomDockWidgetArea
                                                                     : Qt::NoDockWidgetArea;
        if (area == Qt::NoDockWidgetArea || !isAreaAllowed(area)) return;
        host.addDockWidget(area, this);
        setFloating(false);
    }

    std::optional<QPoint> m_held;  // where the caption was taken hold of, on the screen
};

void DressBar(QDockWidget& bar, bool bFloating) {
    QDockWidget::DockWidgetFeatures features =
        QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable | QDockWidget::DockWidgetClosable;
    if (!bFloating) features |= QDockWidget::DockWidgetVerticalTitleBar;
    bar.setFeatures(features);
    CaptionOf(bar).SetFloating(bFloating);
    // A docked bar is as wide as its frame, a floating one as its controls.
    if (QWidget* const controls = bar.widget()) {
        const int width = controls->sizeHint().width();
        controls->setMinimumWidth(bFloating ? width : 0);
        if (bFloating) bar.resize(width, bar.height());
    }
}

// The toolkit's own name of a dock widget is its title, from which it takes every ampersand for the mark of a
// mnemonic.
QAccessibleInterface* MakeAccessible(const QString& className, QObject* pObject) {
    if (className != QStringLiteral("QDockWidget")) return nullptr;
    return new QAccessibleWidget(static_cast<QWidget*>(pObject), QAccessible::Grouping);
}

}  // namespace

QDockWidget* AfxCreateDockingBar(QMainWindow& host) {
    QAccessible::installFactory(&MakeAccessible);  // does nothing the second time
    auto* const bar = new DockedBar(&host);
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
    bar->setTitleBarWidget(new Caption(*bar));
    DressBar(*bar, false);
    QObject::connect(bar, &QDockWidget::topLevelChanged, bar,
                     [bar](bool bFloating) { DressBar(*bar, bFloating); });
    host.addDockWidget(Qt::TopDockWidgetArea, bar);
    return bar;
}

void AfxToggleFloating(QDockWidget& bar) {
    CaptionOf(bar).ToggleFloating();
}
