// The main window, with the toolbar and the status bar.
#pragma once

#include "framework/qt/mdi.h"
#include "framework/qt/tool_bar.h"

class CMainFrame : public CMDIFrameWnd {
  protected:
    int OnCreate(const CCreateContext& context) override;
    const MessageMap& GetMessageMap() const override;

  private:
    void OnUpdateDisabled(CCmdUI* pUi);

    CStatusBar m_wndStatusBar;
    CToolBar m_wndToolBar;
};
