// The part of the main window that deals with all child windows at once: the commands of the Window menu, the
// list of windows at its end, and the numbers in their titles.

#include "framework/core/document.h"
#include "framework/core/guarded_call.h"
#include "framework/core/resource.h"
#include "framework/qt/kit/convert.h"
#include "framework/qt/wnd/doc_template.h"
#include "framework/qt/wnd/mdi_frame_wnd.h"
#include "framework/qt/wnd/window_list.h"

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QShortcut>

#include <algorithm>

// Pixels of a window's name in the list of windows; what is longer is cut in the middle.
constexpr int LONGEST_NAME = 400;

// Windows that the Window menu lists by themselves.
constexpr std::size_t LISTED_WINDOWS = 9;

namespace {

// The toolkit opens it at the child's corner, even where that is scrolled out of the main window.
void ShowSystemMenu(QMdiSubWindow& child) {
    child.showSystemMenu();
    if (child.isMaximized()) return;
    QMenu& menu = *child.systemMenu();
    const QWidget& main = *child.window();
    const QPoint first = child.parentWidget()->mapTo(&main, QPoint(0, 0));
    const QPoint last = main.rect().bottomRight() - menu.rect().bottomRight();
    const QPoint place = main.mapFromGlobal(menu.pos());
    const int x = std::min(std::max(place.x(), first.x()), last.x());
    const int y = std::min(std::max(place.y(), first.y()), last.y());
    menu.move(main.mapToGlobal(QPoint(std::max(x, 0), std::max(y, 0))));
}

}  // namespace

const MessageMap& CMDIFrameWnd::GetMessageMap() const {
    static constexpr MessageEntry entries[] = {
        OnCommand<&CMDIFrameWnd::OnViewToolBar>(ID_VIEW_TOOLBAR),
        OnUpdateCommandUi<&CMDIFrameWnd::OnUpdateControlBarMenu>(ID_VIEW_TOOLBAR),
        OnCommand<&CMDIFrameWnd::OnViewStatusBar>(ID_VIEW_STATUS_BAR),
        OnUpdateCommandUi<&CMDIFrameWnd::OnUpdateControlBarMenu>(ID_VIEW_STATUS_BAR),
        OnUpdateCommandUi<&CMDIFrameWnd::OnUpdateKeyIndicator>(ID_INDICATOR_CAPS),
        OnUpdateCommandUi<&CMDIFrameWnd::OnUpdateKeyIndicator>(ID_INDICATOR_NUM),
        OnUpdateCommandUi<&CMDIFrameWnd::OnUpdateKeyIndicator>(ID_INDICATOR_SCRL),
        OnCommand<&CMDIFrameWnd::OnWindowNew>(ID_WINDOW_NEW),
        OnCommand<&CMDIFrameWnd::OnWindowArrange>(ID_WINDOW_ARRANGE),
        OnCommand<&CMDIFrameWnd::OnWindowCascade>(ID_WINDOW_CASCADE),
        OnCommand<&CMDIFrameWnd::OnWindowTile>(ID_WINDOW_TILE_HORZ),
    };
    static const MessageMap map = {&CFrameWnd::GetMessageMap(), entries};
    return map;
}

// What child windows understand on every desktop. The toolkit knows some of it on some.
void CMDIFrameWnd::AddWindowKeys() {
    QMdiArea* const area = m_wndMDIClient.GetArea();
    const auto add = [this](const char* pszKeys, const auto& call) {
        auto* const key = new QShortcut(QKeySequence(QString::fromLatin1(pszKeys)), GetWidget());
        QObject::connect(key, &QShortcut::activated, call);
        QObject::connect(key, &QShortcut::activatedAmbiguously, call);
    };
    const auto next = [this, area] {
        area->activateNextSubWindow();
        ScrollToActive();
    };
    const auto previous = [this, area] {
        area->activatePreviousSubWindow();
        ScrollToActive();
    };
    add("Ctrl+Tab", next);
    add("Ctrl+F6", next);
    add("Ctrl+Shift+Tab", previous);
    add("Ctrl+Shift+F6", previous);
    add("Ctrl+F4", [this] {
        if (MDIGetActive()) AfxGuardedCall([&] { OnCmdMsg(ID_FILE_CLOSE, CN_COMMAND, nullptr); });
    });
    // The menu that moves, sizes, minimises and maximises a child.
    add("Alt+-", [this] {
        if (const CMDIChildWnd* const child = MDIGetActive()) ShowSystemMenu(*child->GetSubWindow());
    });
}

// The toolkit makes it the active one wherever the area is scrolled to.
void CMDIFrameWnd::ScrollToActive() {
    if (CMDIChildWnd* const child = MDIGetActive()) child->ScrollIntoSight();
}

void CMDIFrameWnd::OnWindowNew() {
    const CWaitCursor wait;
    const CMDIChildWnd& active = *MDIGetActive();
    const std::shared_ptr<CDocument>& document = active.GetActiveView()->ShareDocument();
    if (CMDIChildWnd* const child = active.GetDocTemplate().CreateNewFrame(*this, document))
        child->ActivateFrame();
}

void CMDIFrameWnd::OnWindowCascade() {
    m_wndMDIClient.ArrangeWindows(&QMdiArea::cascadeSubWindows);
}

void CMDIFrameWnd::OnWindowTile() {
    m_wndMDIClient.ArrangeWindows(&QMdiArea::tileSubWindows);
    OnWindowArrange();
    LeaveIconsFree();
}

// The toolkit gives the windows the whole area.
void CMDIFrameWnd::LeaveIconsFree() {
    const int whole = m_wndMDIClient.GetClientRect().bottom;
    int free = whole;
    for (const auto& child : m_children)
        if (child->IsIconic()) free = std::min(free, child->GetSubWindow()->y());
    if (free == whole) return;
    for (const auto& child : m_children) {
        if (child->IsIconic()) continue;
        QRect place = child->GetSubWindow()->geometry();
        const int end = (place.y() + place.height()) * free / whole;
        place.setTop(place.y() * free / whole);
        place.setHeight(end - place.y());
        child->GetSubWindow()->setGeometry(place);
    }
}

// The toolkit arranges them only when it minimises one: in rows from the bottom left corner up.
void CMDIFrameWnd::OnWindowArrange() {
    const CRect area = m_wndMDIClient.GetClientRect();
    const CMDIChildWnd* const active = MDIGetActive();
    QPoint place(0, area.bottom);
    for (const auto& child : m_children) {
        if (!child->IsIconic()) continue;
        QMdiSubWindow* const window = child->GetSubWindow();
        if (place.x() > 0 && place.x() + window->width() > area.right)
            place = QPoint(0, place.y() - window->height());
        window->move(place.x(), place.y() - window->height());
        // A child that fills the area hides them all; in front of it they would hide its lower end.
        if (!active || !active->IsZoomed()) window->raise();
        place.rx() += window->width();
    }
}

void CMDIFrameWnd::AddWindowList(QMenu& menu) {
    menu.addSeparator();
    QObject::connect(&menu, &QMenu::aboutToShow, &menu,
                     [this, &menu] { AfxGuardedCall([&] { FillWindowList(menu); }); });
}

void CMDIFrameWnd::FillWindowList(QMenu& menu) {
    for (QAction* const action : menu.actions())
        if (action->data().toUInt() >= AFX_IDM_FIRST_MDICHILD) delete action;
    const CMDIChildWnd* const active = MDIGetActive();
    for (std::size_t i = 0; i < std::min(m_children.size(), LISTED_WINDOWS); ++i) {
        QString text = QString::fromStdString(m_children[i]->GetWindowText());
        text = menu.fontMetrics().elidedText(text, Qt::ElideMiddle, LONGEST_NAME);
        text.replace(u'&', QStringLiteral("&&"));
        QAction* const action = menu.addAction(QStringLiteral("&%1 %2").arg(i + 1).arg(text));
        action->setData(AFX_IDM_FIRST_MDICHILD + static_cast<u32>(i));
        action->setStatusTip(ToDisplayText(AfxLoadPrompt(AFX_IDM_FIRST_MDICHILD)));
        action->setCheckable(true);
        action->setChecked(m_children[i].get() == active);
        QObject::connect(action, &QAction::triggered, &menu, [this, i] {
            if (i < m_children.size()) AfxGuardedCall([&] { m_children[i]->ActivateFrame(); });
        });
    }
    if (m_children.size() <= LISTED_WINDOWS) return;
    QAction* const more = menu.addAction(QStringLiteral("&More Windows..."));
    more->setData(ID_WINDOW_MORE);
    more->setStatusTip(ToDisplayText(AfxLoadPrompt(ID_WINDOW_MORE)));
    QObject::connect(more, &QAction::triggered, &menu, [this] { AfxGuardedCall([&] { ChooseWindow(); }); });
}

void CMDIFrameWnd::ChooseWindow() {
    const CMDIChildWnd* const active = MDIGetActive();
    std::vector<std::string> titles;
    int current = 0;
    for (const auto& child : m_children) {
        if (child.get() == active) current = static_cast<int>(titles.size());
        titles.push_back(child->GetWindowText());
    }
    // Requests from outside can open others meanwhile; they come last.
    if (const auto choice = AfxChooseWindow(titles, current))
        m_children[static_cast<std::size_t>(*choice)]->ActivateFrame();
}

void CMDIFrameWnd::AddChild(std::unique_ptr<CMDIChildWnd> child) {
    m_children.push_back(std::move(child));
    UpdateFrameCounts();
}

// Windows that show the same document are numbered.
void CMDIFrameWnd::UpdateFrameCounts() {
    for (const auto& child : m_children) {
        CView* const view = child->GetActiveView();
        const CDocument& document = *view->GetDocument();
        const std::vector<CView*>& views = document.GetViews();
        std::string title = document.GetTitle();
        if (views.size() > 1)
            title += ":" + std::to_string(std::ranges::find(views, view) - views.begin() + 1);
        child->SetWindowText(title);
        view->SetWindowText(title);
    }
}
