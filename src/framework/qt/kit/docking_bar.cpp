#include "framework/qt/kit/docking_bar.h"

#include "framework/qt/kit/button_rows.h"
#include "framework/qt/kit/floating_frame.h"
#include "framework/qt/kit/window_place.h"

#include <QAction>
#include <QApplication>
#include <QBoxLayout>
#include <QContextMenuEvent>
#include <QMainWindow>
#include <QMenu>
#include <QMouseEvent>
#include <QRubberBand>
#include <QScreen>
#include <QStyle>
#include <QToolBar>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace {

// How far from its place at the edge a bar floats at first, so that it does not look docked still; pixels.
constexpr int FLOAT_STEP = 24;

// How near to an edge of the host a bar is dropped that is to dock there; pixels.
constexpr int DROP_REACH = 80;

// A bar that is narrower than so many grips has none: what stands on it needs the room.
constexpr int LEAST_GRIPS = 4;

// The toolkit's own tool bar floats as a window without caption or frame; so it stays docked or hidden, and
// what stands on it moves to a frame instead.
class DockingBar final : public QToolBar {
  public:
    explicit DockingBar(QMainWindow& host)
        : QToolBar(&host),
          m_host(host),
          m_pFrame(AfxCreateFloatingFrame(
              *this,
              {[this](const QPoint& at, const QPoint& from) { Drop(at, from); }, [this] { ToggleFloating(); },
               [this](const QPoint& at) { ShowMenu(at, QContextMenuEvent::Mouse); }})),
          m_pToggle(new QAction(this)) {
        connect(this, &QWidget::windowTitleChanged, this, &DockingBar::SetTitle);
        connect(m_pToggle, &QAction::triggered, this, &DockingBar::ToggleFloating);
        // The key that opens the menu of what has the keys reaches the main window where nothing takes it.
        if (host.isWindow()) host.installEventFilter(this);
    }

    void SetContent(QWidget* pContent) {
        m_pContent = pContent;
        m_pHolder = new QWidget(this);
        m_pHolder->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        m_pHolder->setMinimumWidth(1);
        auto* const layout = new QVBoxLayout(m_pHolder);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSizeConstraint(QLayout::SetNoConstraint);
        layout->addWidget(pContent);
        m_pHolder->setFixedHeight(pContent->sizeHint().height());
        addWidget(m_pHolder);
        setMinimumWidth(1);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        this->layout()->setContentsMargins(0, 0, 0, 0);
    }

    QWidget* GetFrame() const { return m_bFloating ? m_pFrame : nullptr; }
    QAction* GetToggle() const { return m_pToggle; }

    void Show(bool bShow) {
        if (bShow && m_bFloating && !IsOnScreen()) MoveOntoScreen(m_pFrame->pos());
        Shown().setVisible(bShow);
    }
    bool IsShown() const { return !Shown().isHidden(); }

    void ToggleFloating() {
        if (m_bFloating)
            Dock();
        else
            Float(m_floatingAt.value_or(mapToGlobal(QPoint(FLOAT_STEP, FLOAT_STEP))));
    }

  protected:
    // The toolkit's own dragging, which lets the bar float its own way, is kept from the mouse.
    bool event(QEvent* pEvent) override {
        switch (pEvent->type()) {
            case QEvent::MouseButtonPress:
            case QEvent::MouseButtonRelease:
            case QEvent::MouseButtonDblClick:
            case QEvent::MouseMove:
                return QWidget::event(pEvent);
            case QEvent::Hide:
            case QEvent::WindowBlocked:
            case QEvent::WindowDeactivate:
            case QEvent::UngrabMouse:
                EndDrag();
                return QToolBar::event(pEvent);
            default:
                return QToolBar::event(pEvent);
        }
    }

    void mousePressEvent(QMouseEvent* pEvent) override {
        if (pEvent->button() == Qt::LeftButton) m_held = pEvent->globalPosition().toPoint();
    }

    // An outline shows what would become of the bar.
    void mouseMoveEvent(QMouseEvent* pEvent) override {
        const QPoint at = pEvent->globalPosition().toPoint();
        if (!m_held || (!m_pOutline && (at - *m_held).manhattanLength() < QApplication::startDragDistance()))
            return;
        if (!m_pOutline) {
            QWidget* const within = AfxPlacesWindows() ? nullptr : m_host.window();
            m_pOutline = std::make_unique<QRubberBand>(QRubberBand::Rectangle, within);
            m_outlineSize = m_floatingSize ? *m_floatingSize : GetFirstFloatingSize();
        }
        QRect outline = OutlineAt(at, pEvent->modifiers());
        if (const QWidget* const within = m_pOutline->parentWidget())
            outline.moveTopLeft(within->mapFromGlobal(outline.topLeft()));
        m_pOutline->setGeometry(outline);
        m_pOutline->show();
    }

    void mouseReleaseEvent(QMouseEvent* pEvent) override {
        if (pEvent->button() != Qt::LeftButton) return;
        const bool dragged = m_pOutline != nullptr;
        EndDrag();
        if (!dragged) return;
        const QPoint at = pEvent->globalPosition().toPoint();
        const Qt::ToolBarArea area = AreaAt(at, pEvent->modifiers());
        if (area == Qt::NoToolBarArea)
            Float(at - GetFloatingCorner());
        else
            MoveTo(area);
    }

    void mouseDoubleClickEvent(QMouseEvent* pEvent) override {
        if (pEvent->button() == Qt::LeftButton) ToggleFloating();
    }

    void contextMenuEvent(QContextMenuEvent* pEvent) override {
        ShowMenu(pEvent->globalPos(), pEvent->reason());
    }

    void resizeEvent(QResizeEvent* pEvent) override {
        QToolBar::resizeEvent(pEvent);
        if (!m_pContent) return;
        const int grip = style()->pixelMetric(QStyle::PM_ToolBarHandleExtent, nullptr, this);
        setMovable(width() >= LEAST_GRIPS * grip);
    }

    // Of the host.
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override {
        if (pEvent->type() != QEvent::ContextMenu) return QToolBar::eventFilter(pWatched, pEvent);
        if (static_cast<QContextMenuEvent*>(pEvent)->reason() != QContextMenuEvent::Keyboard || !IsShown())
            return false;
        ShowMenu(Shown().mapToGlobal(Shown().rect().bottomLeft()), QContextMenuEvent::Keyboard);
        pEvent->accept();
        return true;
    }

  private:
    // However it ends.
    void EndDrag() {
        m_held.reset();
        m_pOutline.reset();
    }

    QWidget& Shown() { return m_bFloating ? *m_pFrame : *this; }
    const QWidget& Shown() const { return const_cast<DockingBar*>(this)->Shown(); }

    void SetTitle(const QString& title) {
        m_pFrame->setWindowTitle(title);
        NameToggle();
    }

    void NameToggle() {
        QString title = windowTitle();
        title.replace(QLatin1Char('&'), QLatin1String("&&"));
        m_pToggle->setText((m_bFloating ? tr("&Dock %1") : tr("&Float %1")).arg(title));
    }

    // The pointer says where; a key only near what, and the menu of a docked bar stays inside the main
    // window.
    void ShowMenu(const QPoint& at, QContextMenuEvent::Reason reason) {
        auto* const menu = new QMenu(&Shown());
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->addAction(m_pToggle);
        const bool isFree = reason != QContextMenuEvent::Keyboard || m_bFloating;
        const QWidget& window = *m_host.window();
        const QRect inside(window.mapToGlobal(QPoint(0, 0)), window.size());
        menu->popup(isFree ? at : MovedInto(inside, at, menu->sizeHint()));
    }

    static QPoint MovedInto(const QRect& room, const QPoint& at, const QSize& size) {
        return {std::max(std::min(at.x(), room.right() + 1 - size.width()), room.left()),
                std::max(std::min(at.y(), room.bottom() + 1 - size.height()), room.top())};
    }

    QSize GetFirstFloatingSize() const {
        if (m_pContent) return AfxFrameSizeFor(*m_pFrame, *m_pContent);
        const std::unique_ptr<QWidget> rows(AfxCreateButtonRows(*this));
        return AfxFrameSizeFor(*m_pFrame, *rows);
    }

    // Where the corner of the frame lies from a pointer that drags it.
    QPoint GetFloatingCorner() const { return AfxCaptionOf(*m_pFrame); }

    // The bar can be scrolled out of sight, and a screen be gone on which it floated before.
    void MoveOntoScreen(const QPoint& at) {
        const QScreen* const wanted = QGuiApplication::screenAt(at + GetFloatingCorner());
        const QScreen& screen = wanted ? *wanted : *m_host.screen();
        m_pFrame->move(MovedInto(screen.availableGeometry(), at, m_pFrame->size()));
    }
    bool IsOnScreen() const {
        return std::ranges::any_of(QGuiApplication::screens(), [&](const QScreen* pScreen) {
            return pScreen->availableGeometry().intersects(m_pFrame->geometry());
        });
    }

    // What stands on the bar and has the keys; they stay with it wherever the bar goes.
    QWidget* OwnFocus() const {
        QWidget* const focus = QApplication::focusWidget();
        return m_pContent && m_pContent->isAncestorOf(focus) ? focus : nullptr;
    }
    static void GiveBack(QWidget* pFocus) {
        if (!pFocus) return;
        pFocus->activateWindow();
        pFocus->setFocus(Qt::OtherFocusReason);
    }

    void Float(const QPoint& at) {
        QWidget* const focus = OwnFocus();
        if (m_pContent)
            AfxFillFrame(*m_pFrame, m_pContent, true);
        else
            AfxFillFrame(*m_pFrame, m_pRows = AfxCreateButtonRows(*this), false);
        if (m_floatingSize) m_pFrame->resize(*m_floatingSize);
        hide();
        SetFloating(true);
        MoveOntoScreen(at);
        m_pFrame->show();
        GiveBack(focus);
    }

    void Dock() {
        QWidget* const focus = OwnFocus();
        m_floatingAt = m_pFrame->pos();
        m_floatingSize = m_pFrame->size();
        m_pFrame->hide();
        if (m_pContent) {
            m_pHolder->layout()->addWidget(m_pContent);
            m_pContent->show();
        } else {
            // One of its buttons may be in the middle of an event.
            m_pRows->hide();
            m_pRows->deleteLater();
        }
        SetFloating(false);
        show();
        GiveBack(focus);
    }

    void SetFloating(bool bFloating) {
        m_bFloating = bFloating;
        NameToggle();
        emit topLevelChanged(bFloating);
    }

    void MoveTo(Qt::ToolBarArea area) {
        if (m_host.toolBarArea(this) != area) m_host.addToolBar(area, this);
    }

    // The bar floats again where it did before it was dragged here.
    void Drop(const QPoint& at, const QPoint& from) {
        const Qt::ToolBarArea area = AreaAt(at, Qt::NoModifier);
        if (area == Qt::NoToolBarArea) return;
        m_pFrame->move(from);
        MoveTo(area);
        Dock();
    }

    // Where a bar would dock that is dropped here; the nearest edge of those that are allowed. The control
    // key keeps it from docking.
    Qt::ToolBarArea AreaAt(const QPoint& onScreen, Qt::KeyboardModifiers keys) const {
        if (keys & Qt::ControlModifier) return Qt::NoToolBarArea;
        // A frame can be larger than what shows of it.
        for (const QWidget* part = &m_host; part; part = part->parentWidget())
            if (!part->rect().contains(part->mapFromGlobal(onScreen))) return Qt::NoToolBarArea;
        const QPoint at = m_host.mapFromGlobal(onScreen);
        const std::pair<Qt::ToolBarArea, int> distances[] = {
            {Qt::TopToolBarArea, at.y()},
            {Qt::BottomToolBarArea, m_host.height() - 1 - at.y()},
            {Qt::LeftToolBarArea, at.x()},
            {Qt::RightToolBarArea, m_host.width() - 1 - at.x()},
        };
        Qt::ToolBarArea nearest = Qt::NoToolBarArea;
        int reach = DROP_REACH;
        for (const auto& [area, distance] : distances) {
            if (distance >= reach || !isAreaAllowed(area)) continue;
            nearest = area;
            reach = distance;
        }
        return nearest;
    }

    QRect OutlineAt(const QPoint& at, Qt::KeyboardModifiers keys) const {
        const int depth = std::min(width(), height());
        QRect edge(m_host.mapToGlobal(QPoint(0, 0)), m_host.size());
        switch (AreaAt(at, keys)) {
            case Qt::TopToolBarArea:
                edge.setHeight(depth);
                return edge;
            case Qt::BottomToolBarArea:
                edge.setTop(edge.bottom() + 1 - depth);
                return edge;
            case Qt::LeftToolBarArea:
                edge.setWidth(depth);
                return edge;
            case Qt::RightToolBarArea:
                edge.setLeft(edge.right() + 1 - depth);
                return edge;
            default:
                return {at - GetFloatingCorner(), m_outlineSize};
        }
    }

    QMainWindow& m_host;
    QWidget* m_pFrame;  // filled while the bar floats
    QAction* m_pToggle;
    QWidget* m_pContent = nullptr;  // null for a bar of buttons
    QWidget* m_pHolder = nullptr;   // of the content while the bar is docked
    QWidget* m_pRows = nullptr;     // a floating bar's buttons
    std::unique_ptr<QRubberBand> m_pOutline;
    QSize m_outlineSize;  // where nothing is near to dock at
    bool m_bFloating = false;
    std::optional<QPoint> m_held;         // where the mouse took hold of the docked bar, on the screen
    std::optional<QPoint> m_floatingAt;   // where the bar floated last
    std::optional<QSize> m_floatingSize;  // how large
};

DockingBar& ToBar(QToolBar& bar) {
    return static_cast<DockingBar&>(bar);
}

const DockingBar& ToBar(const QToolBar& bar) {
    return static_cast<const DockingBar&>(bar);
}

}  // namespace

QToolBar* AfxCreateDockingBar(QMainWindow& host) {
    auto* const bar = new DockingBar(host);
    host.addToolBar(Qt::TopToolBarArea, bar);
    return bar;
}

void AfxSetBarContent(QToolBar& bar, QWidget* pContent) {
    ToBar(bar).SetContent(pContent);
}

QWidget* AfxFloatingFrameOf(const QToolBar& bar) {
    return ToBar(bar).GetFrame();
}

void AfxShowBar(QToolBar& bar, bool bShow) {
    ToBar(bar).Show(bShow);
}

bool AfxIsBarShown(const QToolBar& bar) {
    return ToBar(bar).IsShown();
}

QAction* AfxFloatActionOf(const QToolBar& bar) {
    return ToBar(bar).GetToggle();
}
