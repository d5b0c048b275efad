#include "framework/qt/wnd/mdi_frame_wnd.h"

#include "framework/core/guarded_call.h"
#include "framework/core/resource.h"
#include "framework/qt/kit/activation.h"
#include "framework/qt/kit/convert.h"
#include "framework/qt/kit/picture.h"
#include "framework/qt/wnd/menu_bar.h"

#include <QApplication>
#include <QCloseEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMimeData>
#include <QPointer>
#include <QScreen>
#include <QStatusTipEvent>
#include <QWindow>

#include <algorithm>

namespace {

const QString URI_LIST = QStringLiteral("text/uri-list");

class MainWindow final : public QMainWindow {
  public:
    explicit MainWindow(CMDIFrameWnd& frame) : m_frame(frame) {
        setAnimated(false);
        setAcceptDrops(true);
        // The toolkit's own menu would offer the bars by their names.
        setContextMenuPolicy(Qt::NoContextMenu);
    }

  protected:
    void dragEnterEvent(QDragEnterEvent* pEvent) override {
        const bool isOffered = pEvent->possibleActions() & Qt::CopyAction;
        if (isOffered && pEvent->mimeData()->hasFormat(URI_LIST)) AcceptCopy(*pEvent);
    }

    // The bytes as they come, for a path need not be UTF-8. Lines that begin with a number sign are comments.
    void dropEvent(QDropEvent* pEvent) override {
        std::vector<std::string> uris;
        for (const QByteArray& line : pEvent->mimeData()->data(URI_LIST).split('\n')) {
            const QByteArray uri = line.trimmed();
            if (!uri.isEmpty() && uri[0] != '#') uris.push_back(uri.toStdString());
        }
        AcceptCopy(*pEvent);
        if (m_frame.m_onDrop) AfxGuardedCall([&] { m_frame.m_onDrop(uris); });
    }

    // Whatever the pointer or the keyboard goes over says what it does, and nothing once they leave it.
    bool event(QEvent* pEvent) override {
        if (pEvent->type() == QEvent::WindowActivate && focusWidget() == menuBar()) TakeKeysFromMenuBar();
        if (pEvent->type() != QEvent::StatusTip) return QMainWindow::event(pEvent);
        m_frame.SetMessageText(static_cast<QStatusTipEvent*>(pEvent)->tip().toStdString());
        return true;
    }

    void closeEvent(QCloseEvent*) override {
        AfxGuardedCall([&] { m_frame.DestroyChildren(); });
        if (m_frame.m_onClosed) m_frame.m_onClosed();
    }

  private:
    // A menu closed by the Escape key leaves the keys to the menu bar, up to the next Escape. Where the keys
    // were in the frame of a floating bar that one goes to the frame, and the menu bar would wait for ever.
    void TakeKeysFromMenuBar() {
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(menuBar(), &escape);
        const CMDIChildWnd* const child = m_frame.MDIGetActive();
        QWidget* const keeper = child ? child->GetActiveView()->GetWidget() : centralWidget();
        keeper->setFocus(Qt::MenuBarFocusReason);
    }

    // A source that is told of a move deletes its files.
    static void AcceptCopy(QDropEvent& event) {
        event.setDropAction(Qt::CopyAction);
        event.accept();
    }

    CMDIFrameWnd& m_frame;
};

}  // namespace

CMDIFrameWnd::~CMDIFrameWnd() {
    m_children.clear();
    AfxSetMainWnd(nullptr);
}

bool CMDIFrameWnd::LoadFrame(u32 nIDResource) {
    auto* const window = new MainWindow(*this);
    Attach(window, nullptr);
    AfxSetMainWnd(this);
    m_strTitle = AfxLoadString(nIDResource);
    SetWindowText(m_strTitle);
    const QSize screen = window->screen()->availableGeometry().size();
    window->resize(screen.width() * 3 / 4, screen.height() * 3 / 4);
    m_pMenu = AfxFindMenu(nIDResource);
    QApplication::setWindowIcon(AfxLoadIcon(nIDResource));
    AfxAddAccelerators(*window, *this);
    if (OnCreate({}) == -1) return false;
    AddWindowKeys();
    SetMessageText({});
    UpdateMenu();
    return true;
}

int CMDIFrameWnd::OnCreate(const CCreateContext&) {
    m_wndMDIClient.Create(*GetBarHost(), *this);
    m_wndMDIClient.m_visitAfterChild = [this](const Visitor& visit) { return VisitAfterChild(visit); };
    m_wndMDIClient.m_childClosed = [this](CMDIChildWnd& child) { DestroyChildLater(child); };
    return 0;
}

std::string CMDIFrameWnd::GetIdleMessage() const {
    const std::string pointed = AfxGetPointerMessage();
    if (!pointed.empty()) return pointed;
    const CMDIChildWnd* const child = MDIGetActive();
    const std::string message = child ? child->GetActiveView()->GetIdleMessage() : "";
    return message.empty() ? CFrameWnd::GetIdleMessage() : message;
}

CMDIChildWnd* CMDIFrameWnd::MDIGetActive() const {
    const QWidget* const window = m_wndMDIClient.GetArea()->currentSubWindow();
    const auto found =
        std::ranges::find_if(m_children, [&](const auto& child) { return child->GetWidget() == window; });
    return window && found != m_children.end() ? found->get() : nullptr;
}

// It goes as soon as the event is over that closed it.
void CMDIFrameWnd::DestroyChildLater(CMDIChildWnd& child) {
    const QPointer<QWidget> window = child.GetWidget();
    QMetaObject::invokeMethod(
        m_wndMDIClient.GetArea(),
        [this, pChild = &child, window] {
            m_wndMDIClient.GetArea()->setActivationOrder(QMdiArea::CreationOrder);
            if (!window) return;
            std::erase_if(m_children, [&](const auto& one) { return one.get() == pChild; });
            if (m_children.empty()) m_wndMDIClient.LeaveNothingToScroll();
            UpdateFrameCounts();
            ScrollToActive();
        },
        Qt::QueuedConnection);
}

void CMDIFrameWnd::DestroyChildren() {
    m_children.clear();
    m_wndMDIClient.LeaveNothingToScroll();
}

bool CMDIFrameWnd::IsExposed() const {
    const QWindow* const window = GetWidget()->windowHandle();
    return window && window->isExposed();
}

void CMDIFrameWnd::BringToFront(const StartupToken& token) {
    GetWidget()->setWindowState(GetWidget()->windowState() & ~Qt::WindowMinimized);
    GetWidget()->raise();
    AfxActivate(*GetWidget(), token);
}

void CMDIFrameWnd::OnIdle() {
    UpdateFrameTitle();
    UpdateMenu();
    UpdateIdleMessage();
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

QMainWindow* CMDIFrameWnd::GetBarHost() const {
    return static_cast<QMainWindow*>(GetWidget());
}

bool CMDIFrameWnd::VisitTargets(const Visitor& visit) {
    CMDIChildWnd* const child = MDIGetActive();
    return child ? child->VisitTargets(visit) : VisitAfterChild(visit);
}

bool CMDIFrameWnd::VisitAfterChild(const Visitor& visit) {
    return CFrameWnd::VisitTargets(visit) || (m_pLastTarget && m_pLastTarget->VisitTargets(visit));
}
