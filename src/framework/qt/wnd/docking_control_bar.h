// A bar that the user can dock at the edges of its frame or let float.
#pragma once

#include "framework/qt/wnd/control_bar.h"

class QToolBar;

class CDockingControlBar : public CControlBar {
  public:
    // At the frame's top edge, with nothing on it.
    bool Create(CBarFrame* pFrame, u32 nID);

    // nDockStyle: the edges of the frame at which the user may dock it, CBRS_ALIGN_ bits.
    void EnableDocking(u32 nDockStyle);

    // Also while it is away with its frame.
    bool IsWindowVisible() const override;
    void ShowWindow(bool bShow) override;

    // While it floats it comes and goes with its frame.
    void OnUpdateCmdUI(CBarFrame& frame) override;

  protected:
    QToolBar& GetBar() const;

  private:
    bool m_bAway = false;  // hidden with its frame, not by the user
};
