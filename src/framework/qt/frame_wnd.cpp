#include "framework/qt/frame_wnd.h"

#include "framework/qt/control_bars.h"
#include "framework/qt/view.h"

#include <QMainWindow>

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

void CFrameWnd::UpdateControlBars() {
    for (CControlBar* bar : m_bars) bar->OnUpdateCmdUI(*this);
}

bool CFrameWnd::OnCmdMsg(u32 nID, u32 nCode, CCmdUI* pUi) {
    return (m_pView && m_pView->OnCmdMsg(nID, nCode, pUi)) || CWnd::OnCmdMsg(nID, nCode, pUi);
}

bool CFrameWnd::HasHandler(u32 nID, u32 nCode) const {
    return (m_pView && m_pView->HasHandler(nID, nCode)) || CWnd::HasHandler(nID, nCode);
}
