// The main window, with the toolbar and the status bar.
#pragma once

#include "framework/qt/wnd/mdi_frame_wnd.h"
#include "framework/qt/wnd/status_bar.h"
#include "framework/qt/wnd/tool_bar.h"

class CMainFrame : public CMDIFrameWnd {
  protected:
    int OnCreate(const CCreateContext& context) override;
    const MessageMap& GetMessageMap() const override;

  private:
    void OnUpdateDisabled(CCmdUI* pUi);

    CStatusBar m_wndStatusBar;
    CToolBar m_wndToolBar;
};
