#include "app/main_frame.h"

#include "app/resource_ids.h"
#include "framework/core/resource.h"

const MessageMap& CMainFrame::GetMessageMap() const {
    static constexpr MessageEntry entries[] = {
        OnUpdateCommandUi<&CMainFrame::OnUpdateDisabled>(ID_FILE_NEW),
    };
    static const MessageMap map = {&CMDIFrameWnd::GetMessageMap(), entries};
    return map;
}

int CMainFrame::OnCreate(const CCreateContext& context) {
    if (CMDIFrameWnd::OnCreate(context) == -1) return -1;

    if (!m_wndToolBar.Create(this, ID_VIEW_TOOLBAR) || !m_wndToolBar.LoadToolBar(IDR_MAINFRAME)) return -1;
    m_wndToolBar.SetWindowText("Toolbar");
    constexpr u32 indicators[] = {ID_SEPARATOR, ID_INDICATOR_CAPS, ID_INDICATOR_NUM, ID_INDICATOR_SCRL};
    if (!m_wndStatusBar.Create(this, ID_VIEW_STATUS_BAR) || !m_wndStatusBar.SetIndicators(indicators))
        return -1;
    m_wndStatusBar.SetWindowText("Status Bar");
    m_wndToolBar.EnableDocking(CBRS_ALIGN_ANY);
    return 0;
}

// Files are only read.
void CMainFrame::OnUpdateDisabled(CCmdUI* pUi) {
    pUi->Enable(false);
}
