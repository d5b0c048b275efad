// Asks for the scale at which the picture is shown.
#pragma once

#include "framework/qt/wnd/dialog.h"

class CZoomDlg : public CDialog {
  public:
    CZoomDlg();

    float m_fScale = 0;  // from 1/32 to 32, once the user has said OK

  protected:
    void DoDataExchange(CDataExchange* pDX) override;
};
