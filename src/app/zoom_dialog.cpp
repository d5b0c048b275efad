#include "app/zoom_dialog.h"

#include "app/resource_ids.h"
#include "app/scale_steps.h"

CZoomDlg::CZoomDlg() : CDialog(IDD_ZOOM) {}

void CZoomDlg::DoDataExchange(CDataExchange* pDX) {
    CDialog::DoDataExchange(pDX);
    DDX_Text(pDX, IDC_SCALE, m_fScale);
    DDV_MinMaxFloat(pDX, m_fScale, SMALLEST_SCALE, LARGEST_SCALE);
}
