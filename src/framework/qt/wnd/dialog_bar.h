// A bar that holds the controls of a dialog template. Docked it has a grip for a caption, by which it can be
// dragged away; a double click lets it float, or puts it back.
#pragma once

#include "framework/qt/wnd/control_bar.h"

class CDialogBar : public CControlBar {
  public:
    // Docked at the frame's top edge. False when there is no such template.
    bool Create(CBarFrame* pFrame, u32 nIDTemplate, u32 nID);

    // nDockStyle: the edges of the frame at which the user may dock it, CBRS_ALIGN_ bits.
    void EnableDocking(u32 nDockStyle);

    // Also while it is away with its frame.
    bool IsWindowVisible() const override;
    void ShowWindow(bool bShow) override;

    // While it floats it comes and goes with its frame.
    void OnUpdateCmdUI(CBarFrame& frame) override;

  private:
    bool m_bAway = false;  // hidden with its frame, not by the user
};
