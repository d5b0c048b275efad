#include "app/zoom_dialog.h"

#include "app/resource_ids.h"

CZoomDlg::CZoomDlg() : CDialog(IDD_ZOOM) {}

void CZoomDlg::DoDataExchange(CDataExchange* pDX) {
    CDialog::DoDataExchange(pDX);
    DDX_Text(pDX, IDC_SCALE, m_fScale);
    DDV_MinMaxFloat(pDX, m_fScale, 0.03125f, 32.0f);
}
