#include "framework/qt/kit/floating_frame.h"

#include "framework/qt/kit/window_place.h"

#include <QApplication>
#include <QBoxLayout>
#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>
#include <QToolButton>
#include <QWindow>

#include <algorithm>
#include <optional>
#include <utility>

namespace {

// Pixels around everything; the sides of it can be dragged.
constexpr int BORDER = 4;

// Pixels above and below the caption's text, and before it.
constexpr int CAPTION_MARGIN = 3;

// Pixels; leaves a frame its button and enough of its caption to take hold of.
constexpr int LEAST_WIDTH = 60;

enum class Grip { None, Caption, Left, Right };

class FloatingFrame final : public QWidget {
  public:
    FloatingFrame(QWidget& owner, FloatingFrameEvents events)
        : QWidget(&owner, Qt::Tool | Qt::FramelessWindowHint),
          m_events(std::move(events)),
          m_close(this),
          m_layout(this) {
        m_layout.setContentsMargins(BORDER, BORDER + CaptionHeight(), BORDER, BORDER);
        m_layout.setSizeConstraint(QLayout::SetNoConstraint);
        m_close.setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
        m_close.setAutoRaise(true);
        m_close.setFocusPolicy(Qt::NoFocus);
        m_close.setAccessibleName(tr("Close"));
        m_close.setCursor(Qt::ArrowCursor);
        connect(&m_close, &QToolButton::clicked, this, &QWidget::close);
        setMouseTracking(true);
        // It comes and goes with its owner's window, which keeps the keys.
        setAttribute(Qt::WA_ShowWithoutActivating);
    }

    void Fill(QWidget* pContent, bool bTakesKeys) {
        setWindowFlag(Qt::WindowDoesNotAcceptFocus, !bTakesKeys);
        m_pContent = pContent;
        m_layout.addWidget(pContent);
        pContent->show();
        resize(SizeFor(*pContent));
    }

    QSize SizeFor(const QWidget& content) const {
        return SizeAround(content, content.sizeHint().width() + 2 * BORDER);
    }

    QPoint CaptionMiddle() const { return {width() / 2, BORDER + CaptionHeight() / 2}; }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        QStyleOptionFrame frame;
        frame.initFrom(this);
        frame.lineWidth = 1;
        style()->drawPrimitive(QStyle::PE_FrameWindow, &frame, &painter, this);
        // The button's cross is meant for the window's own colour.
        const QRect caption = CaptionPlace().adjusted(0, 0, -m_close.width(), 0);
        painter.fillRect(caption, palette().highlight());
        painter.setPen(palette().highlightedText().color());
        const QRect text = caption.adjusted(CAPTION_MARGIN, 0, -CAPTION_MARGIN, 0);
        painter.drawText(text, Qt::AlignVCenter,
                         fontMetrics().elidedText(windowTitle(), Qt::ElideRight, text.width()));
    }

    void showEvent(QShowEvent* pEvent) override {
        if (pEvent->spontaneous()) return;
        m_shownAt = pos();
        windowHandle()->installEventFilter(this);
    }

    // Of the window behind it. A window manager that takes hold of a window puts it into the screen's corner
    // for a moment, and the toolkit may go on believing that it is there. Once it is seen it is in its place.
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override {
        if (pEvent->type() == QEvent::Expose && m_shownAt && windowHandle()->isExposed())
            move(*std::exchange(m_shownAt, std::nullopt));
        return QWidget::eventFilter(pWatched, pEvent);
    }

    void resizeEvent(QResizeEvent*) override {
        const QRect caption = CaptionPlace();
        m_close.setGeometry(caption.right() + 1 - caption.height(), caption.top(), caption.height(),
                            caption.height());
    }

    void mousePressEvent(QMouseEvent* pEvent) override {
        if (pEvent->button() != Qt::LeftButton) return;
        m_grip = GripAt(pEvent->position().toPoint());
        m_heldAt = pEvent->globalPosition().toPoint();
        m_heldPlace = geometry();
        m_isDragged = false;
    }

    void mouseMoveEvent(QMouseEvent* pEvent) override {
        // The button can be let go where nobody tells of it, as under a dialog.
        if (!(pEvent->buttons() & Qt::LeftButton)) m_grip = Grip::None;
        const QPoint moved = pEvent->globalPosition().toPoint() - m_heldAt;
        m_isDragged = m_isDragged || moved.manhattanLength() >= QApplication::startDragDistance();
        switch (m_grip) {
            case Grip::None:
                ShowGrip(GripAt(pEvent->position().toPoint()));
                return;
            case Grip::Caption:
                if (m_isDragged) DragBy(moved);
                return;
            case Grip::Left:
                FitTo(m_heldPlace.adjusted(
                    std::min(moved.x(), m_heldPlace.width() - LeastWidthAround(*m_pContent)), 0, 0, 0));
                return;
            case Grip::Right:
                FitTo(m_heldPlace.adjusted(0, 0, moved.x(), 0));
                return;
        }
    }

    void mouseReleaseEvent(QMouseEvent* pEvent) override {
        if (pEvent->button() != Qt::LeftButton) return;
        const Grip grip = std::exchange(m_grip, Grip::None);
        // The control key keeps a bar from docking.
        if (grip == Grip::Caption && m_isDragged && !(pEvent->modifiers() & Qt::ControlModifier))
            m_events.dropped(pEvent->globalPosition().toPoint(), m_heldPlace.topLeft());
    }

    void mouseDoubleClickEvent(QMouseEvent* pEvent) override {
        m_grip = Grip::None;
        if (pEvent->button() == Qt::LeftButton) m_events.doubleClicked();
    }

    void contextMenuEvent(QContextMenuEvent* pEvent) override { m_events.menuWanted(pEvent->globalPos()); }

    // What a button is for shows in the owner's window.
    bool event(QEvent* pEvent) override {
        if (pEvent->type() == QEvent::StatusTip)
            return QApplication::sendEvent(parentWidget()->window(), pEvent);
        return QWidget::event(pEvent);
    }

  private:
    int CaptionHeight() const { return fontMetrics().height() + 2 * CAPTION_MARGIN; }
    QRect CaptionPlace() const { return {BORDER, BORDER, width() - 2 * BORDER, CaptionHeight()}; }
    static int LeastWidthAround(const QWidget& content) {
        return std::max(content.minimumSizeHint().width() + 2 * BORDER, LEAST_WIDTH);
    }

    QSize SizeAround(const QWidget& content, int nWidth) const {
        const int width = std::max(nWidth, LeastWidthAround(content));
        const int inside = width - 2 * BORDER;
        const int height =
            content.hasHeightForWidth() ? content.heightForWidth(inside) : content.sizeHint().height();
        return {width, height + CaptionHeight() + 2 * BORDER};
    }

    void FitTo(const QRect& place) {
        setGeometry(QRect(place.topLeft(), SizeAround(*m_pContent, place.width())));
    }

    // A desktop that moves windows by itself tells neither when that ends nor where: the frame is not
    // dropped.
    void DragBy(const QPoint& moved) {
        if (AfxPlacesWindows()) {
            move(m_heldPlace.topLeft() + moved);
            return;
        }
        m_grip = Grip::None;
        windowHandle()->startSystemMove();
    }

    // Without a place of its own a window grows to the right only.
    Grip GripAt(const QPoint& at) const {
        if (at.x() < BORDER && AfxPlacesWindows()) return Grip::Left;
        if (at.x() >= width() - BORDER) return Grip::Right;
        return at.y() < BORDER + CaptionHeight() ? Grip::Caption : Grip::None;
    }

    void ShowGrip(Grip grip) {
        setCursor(grip == Grip::Left || grip == Grip::Right ? Qt::SizeHorCursor : Qt::ArrowCursor);
    }

    FloatingFrameEvents m_events;
    QToolButton m_close;
    QVBoxLayout m_layout;
    QWidget* m_pContent = nullptr;

    std::optional<QPoint> m_shownAt;  // its corner, until the window is seen there

    Grip m_grip = Grip::None;  // what the mouse holds
    QPoint m_heldAt;           // where it took hold, on the screen
    QRect m_heldPlace;         // where the frame was then
    bool m_isDragged = false;  // far enough to be meant
};

}  // namespace

QWidget* AfxCreateFloatingFrame(QWidget& owner, FloatingFrameEvents events) {
    return new FloatingFrame(owner, std::move(events));
}

void AfxFillFrame(QWidget& frame, QWidget* pContent, bool bTakesKeys) {
    static_cast<FloatingFrame&>(frame).Fill(pContent, bTakesKeys);
}

QSize AfxFrameSizeFor(const QWidget& frame, const QWidget& content) {
    return static_cast<const FloatingFrame&>(frame).SizeFor(content);
}

QPoint AfxCaptionOf(const QWidget& frame) {
    return static_cast<const FloatingFrame&>(frame).CaptionMiddle();
}
