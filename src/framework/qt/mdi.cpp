#include "framework/qt/mdi.h"

#include "framework/core/document.h"
#include "framework/core/guarded_call.h"
#include "framework/core/resource.h"
#include "framework/qt/convert.h"
#include "framework/qt/menu_bar.h"
#include "framework/qt/picture.h"
#include "framework/qt/view.h"
#include "framework/qt/win_app.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDockWidget>
#include <QHelpEvent>
#include <QIcon>
#include <QLayout>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPointer>
#include <QScreen>
#include <QStatusTipEvent>
#include <QStyle>
#include <QToolTip>

#include <algorithm>

// Child windows

namespace {

class SubWindow final : public QMdiSubWindow {
  public:
    explicit SubWindow(CMDIChildWnd& frame) : m_frame(frame) {}

    // A picture can be smaller than any caption.
    QSize minimumSizeHint() const override { return {1, 1}; }

  protected:
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

    void closeEvent(QCloseEvent* pEvent) override {
        QMdiSubWindow::closeEvent(pEvent);
        if (pEvent->isAccepted()) AfxGuardedCall([&] { m_frame.GetMDIFrame().DestroyChildLater(&m_frame); });
    }

  private:
    CMDIChildWnd& m_frame;
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

// Of a frame that no picture gives a size.
constexpr QSize UNFITTED(400, 300);

}  // namespace

bool CMDIChildWnd::LoadFrame(CMDIFrameWnd& mainFrame, u32 nIDResource, const CCreateContext& context) {
    m_pMainFrame = &mainFrame;
    m_pTemplate = context.pNewDocTemplate;
    m_pMenu = AfxFindMenu(nIDResource);
    auto* const window = new SubWindow(*this);
    Attach(window, mainFrame.GetMDIClient());
    const QIcon icon = AfxLoadIcon(nIDResource);
    window->setWindowIcon(icon.isNull() ? mainFrame.GetWidget()->windowIcon() : icon);
    m_pBarHost = new QMainWindow;
    m_pBarHost->setAnimated(false);
    m_pBarHost->setContextMenuPolicy(Qt::NoContextMenu);
    m_pBarHost->setWindowFlags(Qt::Widget);
    window->setWidget(m_pBarHost);
    window->layout()->setSizeConstraint(QLayout::SetNoConstraint);
    m_pBarHost->layout()->setSizeConstraint(QLayout::SetNoConstraint);
    mainFrame.GetMDIClient()->GetArea()->addSubWindow(window);
    const int step = mainFrame.NextCascadeStep() *
                     window->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, window);
    window->setGeometry(QRect(QPoint(step, step), UNFITTED));
    return OnCreate(context) != -1;
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
    for (const QDockWidget* const bar : m_pBarHost->findChildren<QDockWidget*>())
        if (bar->isVisible() && !bar->isAncestorOf(focus)) pane = bar->findChild<QComboBox*>();
    pane->activateWindow();
    pane->setFocus(Qt::TabFocusReason);
}

void CMDIChildWnd::ActivateFrame() {
    GetSubWindow()->show();
    if (IsIconic()) MDIRestore();
    m_pMainFrame->GetMDIClient()->GetArea()->setActiveSubWindow(GetSubWindow());
}

bool CMDIChildWnd::IsZoomed() const {
    return GetSubWindow()->isMaximized();
}

bool CMDIChildWnd::IsIconic() const {
    return GetSubWindow()->isMinimized();
}

void CMDIChildWnd::MDIMaximize() {
    GetSubWindow()->showMaximized();
}

void CMDIChildWnd::MDIRestore() {
    GetSubWindow()->showNormal();
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

    // Seen at a size that shows it, the view tells how much of it is left at this one.
    const QSize size = window->size();
    window->resize(size + PROBE);
    view = layOut();
    window->resize(size);
    layOut();
    return {view.width() - PROBE.width(), view.height() - PROBE.height()};
}

bool CMDIChildWnd::ShowsFloatingBars() const {
    return m_pMainFrame->MDIGetActive() == this && !IsIconic();
}

QMdiSubWindow* CMDIChildWnd::GetSubWindow() const {
    return static_cast<QMdiSubWindow*>(GetWidget());
}

QMainWindow* CMDIChildWnd::GetBarHost() const {
    return m_pBarHost;
}

bool CMDIChildWnd::OnCmdMsg(u32 nID, u32 nCode, CCmdUI* pUi) {
    return CFrameWnd::OnCmdMsg(nID, nCode, pUi) || m_pMainFrame->RouteBehindChild(nID, nCode, pUi);
}

bool CMDIChildWnd::HasHandler(u32 nID, u32 nCode) const {
    return CFrameWnd::HasHandler(nID, nCode) || m_pMainFrame->HasHandlerBehindChild(nID, nCode);
}

// Main window

namespace {

class MainWindow final : public QMainWindow {
  public:
    explicit MainWindow(CMDIFrameWnd& frame) : m_frame(frame) {
        setAnimated(false);
        // It would offer the bars by their names.
        setContextMenuPolicy(Qt::NoContextMenu);
    }

  protected:
    // Whatever the pointer or the keyboard goes over says what it does, and nothing once they leave it.
    bool event(QEvent* pEvent) override {
        if (pEvent->type() != QEvent::StatusTip) return QMainWindow::event(pEvent);
        m_frame.SetMessageText(static_cast<QStatusTipEvent*>(pEvent)->tip().toStdString());
        return true;
    }

    void closeEvent(QCloseEvent*) override {
        AfxGuardedCall([&] { m_frame.DestroyChildren(); });
        QCoreApplication::exit(0);
    }

  private:
    CMDIFrameWnd& m_frame;
};

}  // namespace

// Captions that stand one below the other before the next child begins at the top again.
constexpr int CASCADE_STEPS = 10;

void CMDIClientWnd::Create(CMDIFrameWnd& frame) {
    auto* const area = new QMdiArea;
    // When a child closes, the one that was active before is the next one.
    area->setActivationOrder(QMdiArea::ActivationHistoryOrder);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    area->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    frame.GetBarHost()->setCentralWidget(area);
    Attach(area, &frame);
}

QMdiArea* CMDIClientWnd::GetArea() const {
    return static_cast<QMdiArea*>(GetWidget());
}

QWidget* CMDIClientWnd::GetClientWidget() const {
    return GetArea()->viewport();
}

CMDIFrameWnd::~CMDIFrameWnd() {
    m_children.clear();
}

bool CMDIFrameWnd::LoadFrame(u32 nIDResource) {
    auto* const window = new MainWindow(*this);
    Attach(window, nullptr);
    m_strTitle = AfxLoadString(nIDResource);
    SetWindowText(m_strTitle);
    const QSize screen = window->screen()->availableGeometry().size();
    window->resize(screen.width() * 3 / 4, screen.height() * 3 / 4);
    m_pMenu = AfxFindMenu(nIDResource);
    window->setWindowIcon(AfxLoadIcon(nIDResource));
    AfxAddAccelerators(*window, *this);
    AddCloseKey();
    if (OnCreate({}) == -1) return false;
    SetMessageText({});
    UpdateMenu();
    return true;
}

int CMDIFrameWnd::OnCreate(const CCreateContext&) {
    m_wndMDIClient.Create(*this);
    return 0;
}

int CMDIFrameWnd::NextCascadeStep() {
    return m_nCascadeStep++ % CASCADE_STEPS;
}

CMDIChildWnd* CMDIFrameWnd::MDIGetActive() const {
    const QWidget* const window = m_wndMDIClient.GetArea()->currentSubWindow();
    const auto found =
        std::ranges::find_if(m_children, [&](const auto& child) { return child->GetWidget() == window; });
    return window && found != m_children.end() ? found->get() : nullptr;
}

void CMDIFrameWnd::DestroyChildLater(CMDIChildWnd* pChild) {
    const QPointer<QWidget> window = pChild->GetWidget();
    QMetaObject::invokeMethod(
        m_wndMDIClient.GetArea(),
        [this, pChild, window] {
            if (!window) return;
            std::erase_if(m_children, [&](const auto& child) { return child.get() == pChild; });
            UpdateFrameCounts();
        },
        Qt::QueuedConnection);
}

void CMDIFrameWnd::OnIdle() {
    UpdateFrameTitle();
    UpdateMenu();
    UpdateControlBars();
    for (const auto& child : m_children) child->UpdateControlBars();
}

// A child that fills the area has no caption of its own; the toolkit would append its name to any title.
void CMDIFrameWnd::UpdateFrameTitle() {
    QString title = ToDisplayText(m_strTitle);
    if (const CMDIChildWnd* const child = MDIGetActive()) {
        const QString name = child->GetSubWindow()->windowTitle();
        title += child->IsZoomed() ? QStringLiteral(" - [%1]").arg(name) : QStringLiteral(" - %1").arg(name);
    }
    if (GetWidget()->windowTitle() != title) GetWidget()->setWindowTitle(title);
}

// The kinds of documents share one list of popups; only another list is worth new menus.
void CMDIFrameWnd::UpdateMenu() {
    const CMDIChildWnd* const child = MDIGetActive();
    const MenuResource* const wanted = child ? child->GetMenuResource() : m_pMenu;
    if (!wanted || (m_pShownMenu && m_pShownMenu->popups.data() == wanted->popups.data())) return;
    m_pShownMenu = wanted;
    AfxFillMenuBar(*GetBarHost()->menuBar(), *wanted, *this);
    if (QMenu* const menu = AfxFindPopup(*GetBarHost()->menuBar(), ID_WINDOW_ARRANGE)) AddWindowList(*menu);
}

u32 CMDIFrameWnd::GetMenuState(u32 nID) const {
    return AfxGetMenuState(*GetBarHost()->menuBar(), nID);
}

QMainWindow* CMDIFrameWnd::GetBarHost() const {
    return static_cast<QMainWindow*>(GetWidget());
}

bool CMDIFrameWnd::OnCmdMsg(u32 nID, u32 nCode, CCmdUI* pUi) {
    CMDIChildWnd* const child = MDIGetActive();
    return child ? child->OnCmdMsg(nID, nCode, pUi) : RouteBehindChild(nID, nCode, pUi);
}

bool CMDIFrameWnd::HasHandler(u32 nID, u32 nCode) const {
    const CMDIChildWnd* const child = MDIGetActive();
    return child ? child->HasHandler(nID, nCode) : HasHandlerBehindChild(nID, nCode);
}

bool CMDIFrameWnd::RouteBehindChild(u32 nID, u32 nCode, CCmdUI* pUi) {
    return CFrameWnd::OnCmdMsg(nID, nCode, pUi) || AfxGetApp()->OnCmdMsg(nID, nCode, pUi);
}

bool CMDIFrameWnd::HasHandlerBehindChild(u32 nID, u32 nCode) const {
    return CFrameWnd::HasHandler(nID, nCode) || AfxGetApp()->HasHandler(nID, nCode);
}
