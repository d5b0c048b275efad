// The view's half that sizes its frame.
#include "app/child_frame.h"
#include "app/frame_fit.h"
#include "app/vistrel_view.h"
#include "app/zoom_dialog.h"

#include <algorithm>
#include <limits>

void CVistrelView::FitFrameToImage(float fScale) {
    const CWaitCursor wait;
    CChildFrame* const frame = GetFrame();
    if (frame->IsZoomed() || frame->IsIconic()) frame->MDIRestore();
    SizeFrameToImage(fScale);
    frame->ScrollToCaption();
}

void CVistrelView::SizeFrameToImage(float fScale) {
    CChildFrame* const frame = GetFrame();
    CRect place = frame->GetWindowRect();
    const CRect client = GetClientRect();
    const int dx = place.Width() - client.Width();
    const int dy = place.Height() - client.Height();
    frame->GetParent()->ScreenToClient(&place);
    const CSize size = FittedClientSize(m_nWidth, m_nHeight, fScale);
    frame->MoveWindow({place.left, place.top, place.left + size.cx + dx, place.top + size.cy + dy});
    m_fScale = std::min(fScale, std::numeric_limits<float>::max());
}

void CVistrelView::OnZoom() {
    CZoomDlg dialog;
    dialog.m_fScale = m_fScale;
    if (dialog.DoModal() == IDOK) FitFrameToImage(dialog.m_fScale);
}

// The framework enables what has a handler.
void CVistrelView::OnUpdateZoom(CCmdUI* pUi) {
    if (m_hBitmap)
        pUi->m_bContinueRouting = true;
    else
        pUi->Enable(false);
}
