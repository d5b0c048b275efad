#include "framework/qt/wnd/mdi_child_wnd.h"

#include "framework/core/document.h"
#include "framework/core/guarded_call.h"
#include "framework/core/resource.h"
#include "framework/qt/kit/convert.h"
#include "framework/qt/kit/picture.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHelpEvent>
#include <QIcon>
#include <QLayout>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QStyle>
#include <QToolTip>

namespace {

class SubWindow final : public QMdiSubWindow {
  public:
    SubWindow(CMDIChildWnd& frame, CMDIClientWnd& area) : m_frame(frame), m_area(area) {}

    // A picture can be smaller than any caption; a minimised window is nothing but its caption.
    QSize minimumSizeHint() const override {
        return isMinimized() ? QMdiSubWindow::minimumSizeHint() : QSize(1, 1);
    }

    // What the toolkit gives each window of a cascade: they are to show more of themselves than their bars.
    QSize sizeHint() const override { return parentWidget()->size() * 3 / 4; }

  protected:
    // The toolkit takes the keyboard to the view whenever the window is maximised or restored.
    void changeEvent(QEvent* pEvent) override {
        const QPointer<QWidget> focus = QApplication::focusWidget();
        const bool isOfState = pEvent->type() == QEvent::WindowStateChange;
        const bool isInside = isOfState && focus && isAncestorOf(focus);
        ++m_nChanges;
        QMdiSubWindow::changeEvent(pEvent);
        --m_nChanges;
        // The toolkit changes the state once more within the change, before it gives the window its size.
        const bool isRestored = isOfState && m_nChanges == 0 && !isMaximized() && !isMinimized();
        if (isRestored) AfxGuardedCall([&] { m_frame.OnRestored(); });
        if (isInside && focus && focus->isVisible()) focus->setFocus(Qt::OtherFocusReason);
    }

    // The caption shows the name of the file; its tip shows where it is.
    bool event(QEvent* pEvent) override {
        if (pEvent->type() != QEvent::ToolTip) return QMdiSubWindow::event(pEvent);
        const auto* const help = static_cast<QHelpEvent*>(pEvent);
        if (widget()->isVisible() && help->pos().y() >= widget()->y()) return false;
        const QString path = ToDisplayText(m_frame.GetActiveView()->GetDocument()->GetPathName());
        QToolTip::showText(help->globalPos(), ToPlainTip(path), this);
        return true;
    }

    // Of what is inside the window. The pointer has not left the window then, but its caption.
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override {
        if (pWatched == widget() && pEvent->type() == QEvent::Enter) QToolTip::hideText();
        return QMdiSubWindow::eventFilter(pWatched, pEvent);
    }

    // The one that was active before it is the next one, whereas the keys that go through all windows keep to
    // the order in which these were opened.
    void closeEvent(QCloseEvent* pEvent) override {
        mdiArea()->setActivationOrder(QMdiArea::ActivationHistoryOrder);
        // It is to stand as this one does, which the toolkit forgets of a window that is gone.
        const auto windows = mdiArea()->subWindowList(QMdiArea::ActivationHistoryOrder);
        if (isMaximized() && windows.size() > 1 && !windows[windows.size() - 2]->isMinimized())
            mdiArea()->activatePreviousSubWindow();
        QMdiSubWindow::closeEvent(pEvent);
        if (pEvent->isAccepted()) AfxGuardedCall([&] { m_area.m_childClosed(m_frame); });
    }

  private:
    CMDIChildWnd& m_frame;
    CMDIClientWnd& m_area;
    int m_nChanges = 0;  // that are going on, one within the other
};

// A window that does not show yet is told of its new size only once it does.
void LayOut(QWidget& widget) {
    if (!widget.isVisible()) widget.layout()->invalidate();
    widget.layout()->activate();
}

// The main window's layout moves a view without any area out of sight and leaves it its old size.
bool IsLaidOut(const QRect& view) {
    return view.right() >= 0 && view.bottom() >= 0;
}

constexpr QSize PROBE(256, 256);

// What has to show of a caption at least, or of any part of a window, in heights of a caption.
constexpr int CAPTION_BEGINNING = 6;

// Of a frame that no picture gives a size.
constexpr QSize UNFITTED(400, 300);

}  // namespace

bool CMDIChildWnd::LoadFrame(CMDIClientWnd& area, u32 nIDResource, const CCreateContext& context) {
    m_pArea = &area;
    auto* const window = new SubWindow(*this, area);
    Attach(window, &area);
    SetDocTemplate(nIDResource, *context.pNewDocTemplate);
    m_pBarHost = new QMainWindow;
    m_pBarHost->setAnimated(false);
    m_pBarHost->setContextMenuPolicy(Qt::NoContextMenu);
    m_pBarHost->setWindowFlags(Qt::Widget);
    window->setWidget(m_pBarHost);
    window->layout()->setSizeConstraint(QLayout::SetNoConstraint);
    m_pBarHost->layout()->setSizeConstraint(QLayout::SetNoConstraint);
    area.GetArea()->addSubWindow(window);
    const int step =
        area.NextCascadeStep() * window->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, window);
    window->move(step, step);
    TakeUnfittedSize();
    return OnCreate(context) != -1;
}

void CMDIChildWnd::SetDocTemplate(u32 nIDResource, const CDocTemplate& kind) {
    m_pTemplate = &kind;
    m_pMenu = AfxFindMenu(nIDResource);
    const QIcon icon = AfxLoadIcon(nIDResource);
    GetSubWindow()->setWindowIcon(icon.isNull() ? QApplication::windowIcon() : icon);
}

const MessageMap& CMDIChildWnd::GetMessageMap() const {
    static constexpr MessageEntry entries[] = {
        OnCommand<&CMDIChildWnd::OnFileClose>(ID_FILE_CLOSE),
        OnCommand<&CMDIChildWnd::OnOtherPane>(ID_NEXT_PANE),
        OnCommand<&CMDIChildWnd::OnOtherPane>(ID_PREV_PANE),
    };
    static const MessageMap map = {&CFrameWnd::GetMessageMap(), entries};
    return map;
}

void CMDIChildWnd::OnFileClose() {
    SendMessageA(this, WM_CLOSE, 0, 0);
}

// There are two, the view and the bar with the lists, so the next one is also the one before.
void CMDIChildWnd::OnOtherPane() {
    const QWidget* const focus = QApplication::focusWidget();
    QWidget* pane = GetActiveView()->GetWidget();
    QWidget* const control = GetFirstControl();
    if (control && control->isVisible() && !control->parentWidget()->isAncestorOf(focus)) pane = control;
    pane->activateWindow();
    pane->window()->setAttribute(Qt::WA_KeyboardFocusChange);  // the focus shows
    pane->setFocus(Qt::TabFocusReason);
}

void CMDIChildWnd::ActivateFrame() {
    if (!GetSubWindow()->isVisible()) PlaceInArea();
    GetSubWindow()->show();
    if (IsIconic()) MDIRestore();
    m_pArea->GetArea()->setActiveSubWindow(GetSubWindow());
    ScrollIntoSight();
}

// One that would reach beyond the area shows more of itself in the corner.
void CMDIChildWnd::PlaceInArea() {
    const QRect place = GetSubWindow()->geometry();
    const CSize visible = m_pArea->GetVisibleSize();
    const bool reachesBeyond = place.right() >= visible.cx || place.bottom() >= visible.cy;
    if (reachesBeyond) GetSubWindow()->move(0, 0);
}

void CMDIChildWnd::TakeUnfittedSize() {
    GetSubWindow()->resize(UNFITTED);
}

void CMDIChildWnd::ScrollToCaption() {
    const QPoint place = GetSubWindow()->pos();
    const int height = m_pBarHost->y();
    // One that is wider than the area cannot be: its icon stands for it, and the main window's title has its
    // name.
    const bool hasRoom = GetSubWindow()->width() <= m_pArea->GetVisibleSize().cx;
    const int width = hasRoom ? GetSubWindow()->width() : CAPTION_BEGINNING * height;
    m_pArea->ScrollIntoView(QRect(place, QSize(width, height)));
}

// What shows any part of itself stays where it is: it may be the part that is looked at.
void CMDIChildWnd::ScrollIntoSight() {
    if (IsZoomed() || IsIconic()) return;
    const CSize visible = m_pArea->GetVisibleSize();
    const QRect place = GetSubWindow()->geometry();
    const QRect shown = place.intersected(QRect(0, 0, visible.cx, visible.cy));
    const int height = m_pBarHost->y();
    const QSize least = QSize(CAPTION_BEGINNING * height, height).boundedTo(place.size());
    if (shown.width() >= least.width() && shown.height() >= least.height()) return;
    m_pArea->ScrollIntoView(place);
}

bool CMDIChildWnd::IsZoomed() const {
    return GetSubWindow()->isMaximized();
}

bool CMDIChildWnd::IsIconic() const {
    return GetSubWindow()->isMinimized();
}

void CMDIChildWnd::MDIRestore() {
    GetSubWindow()->showNormal();
}

void CMDIChildWnd::MDIMaximize() {
    GetSubWindow()->showMaximized();
}

CSize CMDIChildWnd::GetViewSize() {
    QWidget* const window = GetWidget();
    const auto layOut = [&] {
        LayOut(*window);
        LayOut(*m_pBarHost);
        return GetActiveView()->GetWidget()->geometry();
    };
    QRect view = layOut();
    if (IsLaidOut(view)) return {view.width(), view.height()};

    // The window is made larger for a moment, so that the view is laid out; what it then has too much is
    // known.
    const QSize size = window->size();
    window->resize(size + PROBE);
    view = layOut();
    window->resize(size);
    layOut();
    return {view.width() - PROBE.width(), view.height() - PROBE.height()};
}

bool CMDIChildWnd::IsLargerThanArea() const {
    const CSize visible = m_pArea->GetVisibleSize();
    return GetSubWindow()->width() > visible.cx || GetSubWindow()->height() > visible.cy;
}

void CMDIChildWnd::ScrollArea(const CSize& distance) {
    m_pArea->ScrollBy(distance);
}

bool CMDIChildWnd::ShowsFloatingBars() const {
    return m_pArea->GetArea()->currentSubWindow() == GetSubWindow() && !IsIconic();
}

// The caption shows too, where there is room for both.
void CMDIChildWnd::ScrollToControl(const QWidget& control) {
    if (!GetSubWindow()->isAncestorOf(&control) || control.visibleRegion() == control.rect()) return;
    ScrollToCaption();
    const QPoint place = control.mapTo(m_pArea->GetArea()->viewport(), QPoint(0, 0));
    m_pArea->ScrollIntoView(QRect(place, control.size()));
}

QMdiSubWindow* CMDIChildWnd::GetSubWindow() const {
    return static_cast<QMdiSubWindow*>(GetWidget());
}

QMainWindow* CMDIChildWnd::GetBarHost() const {
    return m_pBarHost;
}

bool CMDIChildWnd::VisitTargets(const Visitor& visit) {
    return CFrameWnd::VisitTargets(visit) || m_pArea->m_visitAfterChild(visit);
}
