// A bar of buttons, one for each command of a toolbar resource. A button is enabled while its command is.
#pragma once

#include "framework/qt/wnd/docking_control_bar.h"

class CToolBar : public CDockingControlBar {
  public:
    // False when there is no such resource.
    bool LoadToolBar(u32 nIDResource);

    void OnUpdateCmdUI(CBarFrame& frame) override;
};
