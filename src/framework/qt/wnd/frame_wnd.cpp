#include "framework/qt/wnd/frame_wnd.h"

#include "framework/core/resource.h"
#include "framework/qt/kit/key_locks.h"
#include "framework/qt/wnd/status_bar.h"

#include <QMainWindow>

int CFrameWnd::OnCreate(const CCreateContext& context) {
    if (!context.pNewViewClass) return 0;
    m_pView = CreateObjectAs<CView>(*context.pNewViewClass);
    if (!m_pView) return -1;
    m_pView->Create(*this, *this, context.pCurrentDoc);
    GetBarHost()->setCentralWidget(m_pView->GetWidget());
    return 0;
}

void CFrameWnd::SetMessageText(const std::string& strText) {
    m_bIdleMessage = strText.empty();
    if (auto* const bar = dynamic_cast<CStatusBar*>(GetControlBar(ID_VIEW_STATUS_BAR)))
        bar->SetPaneText(0, m_bIdleMessage ? GetIdleMessage() : strText);
}

void CFrameWnd::UpdateIdleMessage() {
    if (m_bIdleMessage) SetMessageText({});
}

std::string CFrameWnd::GetIdleMessage() const {
    return AfxLoadString(AFX_IDS_IDLEMESSAGE);
}

CSize CFrameWnd::GetViewSize() {
    const QWidget* const view = GetBarHost()->centralWidget();
    return {view->width(), view->height()};
}

void CFrameWnd::OnViewToolBar() {
    CControlBar* const bar = GetControlBar(ID_VIEW_TOOLBAR);
    ShowControlBar(bar, !bar->IsWindowVisible());
}

void CFrameWnd::OnViewStatusBar() {
    CControlBar* const bar = GetControlBar(ID_VIEW_STATUS_BAR);
    ShowControlBar(bar, !bar->IsWindowVisible());
}

void CFrameWnd::OnUpdateControlBarMenu(CCmdUI* pUi) {
    pUi->SetCheck(GetControlBar(pUi->m_nID)->IsWindowVisible());
}

void CFrameWnd::OnUpdateKeyIndicator(CCmdUI* pUi) {
    pUi->Enable(AfxIsLockOn(pUi->m_nID));
}

bool CFrameWnd::VisitTargets(const Visitor& visit) {
    return (m_pView && m_pView->VisitTargets(visit)) || CBarFrame::VisitTargets(visit);
}
