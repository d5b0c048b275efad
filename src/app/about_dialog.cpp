#include "app/about_dialog.h"

#include "app/resource_ids.h"

CAboutDlg::CAboutDlg() : CDialog(IDD_ABOUT) {}
