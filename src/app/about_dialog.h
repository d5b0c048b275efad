// The box that tells the program's name and version.
#pragma once

#include "framework/qt/wnd/dialog.h"

class CAboutDlg : public CDialog {
  public:
    CAboutDlg();
};
