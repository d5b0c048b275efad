#include "framework/qt/mdi.h"

#include "framework/core/document.h"
#include "framework/core/guarded_call.h"
#include "framework/core/resource.h"
#include "framework/qt/convert.h"
#include "framework/qt/menu_bar.h"
#include "framework/qt/view.h"
#include "framework/qt/win_app.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLayout>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMimeData>
#include <QPointer>
#include <QScreen>
#include <QStyle>
#include <QWindow>

#include <algorithm>

// Child windows

namespace {

class SubWindow final : public QMdiSubWindow {
  public:
    explicit SubWindow(CMDIChildWnd& frame) : m_frame(frame) {}

    // A picture can be smaller than any caption.
    QSize minimumSizeHint() const override { return {1, 1}; }

  protected:
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
    m_pMenu = AfxFindMenu(nIDResource);
    auto* const window = new SubWindow(*this);
    Attach(window, mainFrame.GetMDIClient());
    m_pBarHost = new QMainWindow;
    m_pBarHost->setAnimated(false);
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
    };
    static const MessageMap map = {&CFrameWnd::GetMessageMap(), entries};
    return map;
}

void CMDIChildWnd::OnFileClose() {
    SendMessageA(this, WM_CLOSE, 0, 0);
}

void CMDIChildWnd::ActivateFrame() {
    GetSubWindow()->show();
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

const QString URI_LIST = QStringLiteral("text/uri-list");

class MainWindow final : public QMainWindow {
  public:
    explicit MainWindow(CMDIFrameWnd& frame) : m_frame(frame) {
        setAnimated(false);
        setAcceptDrops(true);
    }

  protected:
    void dragEnterEvent(QDragEnterEvent* pEvent) override {
        if (pEvent->mimeData()->hasFormat(URI_LIST)) pEvent->acceptProposedAction();
    }

    // The bytes as they come, for a path need not be UTF-8. Lines that begin with a number sign are comments.
    void dropEvent(QDropEvent* pEvent) override {
        std::vector<std::string> uris;
        for (const QByteArray& line : pEvent->mimeData()->data(URI_LIST).split('\n')) {
            const QByteArray uri = line.trimmed();
            if (!uri.isEmpty() && uri[0] != '#') uris.push_back(uri.toStdString());
        }
        pEvent->acceptProposedAction();
        AfxGuardedCall([&] { AfxGetApp()->OpenLater(uris); });
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
    AfxAddAccelerators(*window, *this);
    if (OnCreate({}) == -1) return false;
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
            if (window) std::erase_if(m_children, [&](const auto& child) { return child.get() == pChild; });
        },
        Qt::QueuedConnection);
}

bool CMDIFrameWnd::IsExposed() const {
    const QWindow* const window = GetWidget()->windowHandle();
    return window && window->isExposed();
}

void CMDIFrameWnd::BringToFront() {
    GetWidget()->setWindowState(GetWidget()->windowState() & ~Qt::WindowMinimized);
    GetWidget()->raise();
    GetWidget()->activateWindow();
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
