#include "framework/qt/wnd/docking_control_bar.h"

#include "framework/qt/kit/docking_bar.h"

#include <QToolBar>

bool CDockingControlBar::Create(CBarFrame* pFrame, u32 nID) {
    AttachBar(AfxCreateDockingBar(*pFrame->GetBarHost()), pFrame, nID);
    return true;
}

QToolBar& CDockingControlBar::GetBar() const {
    return *static_cast<QToolBar*>(GetWidget());
}

void CDockingControlBar::EnableDocking(u32 nDockStyle) {
    Qt::ToolBarAreas areas = Qt::NoToolBarArea;
    if (nDockStyle & CBRS_ALIGN_LEFT) areas |= Qt::LeftToolBarArea;
    if (nDockStyle & CBRS_ALIGN_TOP) areas |= Qt::TopToolBarArea;
    if (nDockStyle & CBRS_ALIGN_RIGHT) areas |= Qt::RightToolBarArea;
    if (nDockStyle & CBRS_ALIGN_BOTTOM) areas |= Qt::BottomToolBarArea;
    GetBar().setAllowedAreas(areas);
}

void CDockingControlBar::OnUpdateCmdUI(CBarFrame& frame) {
    const bool away = AfxFloatingFrameOf(GetBar()) && !frame.ShowsFloatingBars();
    if (away ? !AfxIsBarShown(GetBar()) : !m_bAway) return;
    m_bAway = away;
    AfxShowBar(GetBar(), !away);
}

bool CDockingControlBar::IsWindowVisible() const {
    return m_bAway || (GetWidget() && AfxIsBarShown(GetBar()));
}

void CDockingControlBar::ShowWindow(bool bShow) {
    m_bAway = false;
    AfxShowBar(GetBar(), bShow);
}
