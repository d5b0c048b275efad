#include "framework/qt/wnd/control_bar.h"

#include <QWidget>

#include <algorithm>

void CBarFrame::ShowControlBar(CControlBar* pBar, bool bShow) {
    pBar->ShowWindow(bShow);
}

CControlBar* CBarFrame::GetControlBar(u32 nID) const {
    const auto found = std::ranges::find(m_bars, nID, &CControlBar::GetDlgCtrlID);
    return found == m_bars.end() ? nullptr : *found;
}

QWidget* CBarFrame::GetFirstControl() const {
    for (const CControlBar* const bar : m_bars)
        if (QWidget* const control = bar->GetFirstControl()) return control;
    return nullptr;
}

void CBarFrame::UpdateControlBars() {
    for (CControlBar* const bar : m_bars) bar->OnUpdateCmdUI(*this);
}

CControlBar::~CControlBar() {
    if (m_pFrame) m_pFrame->RemoveControlBar(*this);
}

bool CControlBar::IsWindowVisible() const {
    return GetWidget() && !GetWidget()->isHidden();
}

void CControlBar::AttachBar(QWidget* pWidget, CBarFrame* pFrame, u32 nID) {
    m_nID = nID;
    m_pFrame = pFrame;
    pWidget->setObjectName(QString::number(nID));
    Attach(pWidget, pFrame);
    pFrame->AddControlBar(*this);
}
