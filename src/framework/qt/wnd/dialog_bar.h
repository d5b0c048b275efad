// A bar that holds the controls of a dialog template.
#pragma once

#include "framework/qt/wnd/docking_control_bar.h"

class CDialogBar : public CDockingControlBar {
  public:
    // Docked at the frame's top edge. False when there is no such template.
    bool Create(CBarFrame* pFrame, u32 nIDTemplate, u32 nID);

    QWidget* GetFirstControl() const override { return m_pFirstControl; }

  private:
    QWidget* m_pFirstControl = nullptr;  // borrowed from the toolkit, for as long as the bar is there
};
