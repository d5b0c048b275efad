// A bar of buttons, one for each command of a toolbar resource. A button is enabled while its command is.
#pragma once

#include "framework/qt/wnd/control_bar.h"

class CToolBar : public CControlBar {
  public:
    // At the frame's top edge, without buttons.
    bool Create(CBarFrame* pFrame, u32 nID);

    // False when there is no such resource.
    bool LoadToolBar(u32 nIDResource);

    // nDockStyle: the edges of the frame at which the user may dock it, CBRS_ALIGN_ bits.
    void EnableDocking(u32 nDockStyle);

    void OnUpdateCmdUI(CBarFrame& frame) override;
};
