#include "framework/qt/wnd/frame_wnd.h"

#include "framework/core/resource.h"
#include "framework/qt/kit/key_locks.h"
#include "framework/qt/wnd/control_bars.h"
#include "framework/qt/wnd/view.h"

#include <QMainWindow>

#include <algorithm>

CFrameWnd::CFrameWnd() = default;
CFrameWnd::~CFrameWnd() = default;

int CFrameWnd::OnCreate(const CCreateContext& context) {
    if (!context.pNewViewClass) return 0;
    m_pView.reset(static_cast<CView*>(context.pNewViewClass->pfnCreateObject()));
    m_pView->Create(*this, *context.pCurrentDoc);
    GetBarHost()->setCentralWidget(m_pView->GetWidget());
    return 0;
}

void CFrameWnd::ShowControlBar(CControlBar* pBar, bool bShow) {
    pBar->ShowWindow(bShow);
}

CControlBar* CFrameWnd::GetControlBar(u32 nID) const {
    const auto found = std::ranges::find(m_bars, nID, &CControlBar::GetDlgCtrlID);
    return found == m_bars.end() ? nullptr : *found;
}

void CFrameWnd::SetMessageText(const std::string& strText) {
    if (auto* const bar = static_cast<CStatusBar*>(GetControlBar(ID_VIEW_STATUS_BAR)))
        bar->SetPaneText(0, strText.empty() ? AfxLoadString(AFX_IDS_IDLEMESSAGE) : strText);
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

void CFrameWnd::UpdateControlBars() {
    for (CControlBar* bar : m_bars) bar->OnUpdateCmdUI(*this);
}

bool CFrameWnd::OnCmdMsg(u32 nID, u32 nCode, CCmdUI* pUi) {
    return (m_pView && m_pView->OnCmdMsg(nID, nCode, pUi)) || CWnd::OnCmdMsg(nID, nCode, pUi);
}

bool CFrameWnd::HasHandler(u32 nID, u32 nCode) const {
    return (m_pView && m_pView->HasHandler(nID, nCode)) || CWnd::HasHandler(nID, nCode);
}
