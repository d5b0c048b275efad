// The part of the view that sizes its frame.
#include "app/child_frame.h"
#include "app/frame_fit.h"
#include "app/scale_steps.h"
#include "app/vistrel_view.h"
#include "app/zoom_dialog.h"
#include "framework/core/stretch.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// Where what was stretched over one size has a point of it once it is stretched over another one: at the same
// part of the same pixel of the picture or, where none of that is left, as near as can be.
int KeptPlace(int nPlace, u32 nPixels, int nBefore, int nAfter) {
    if (nBefore <= 0 || nAfter <= 0) return nPlace;
    const double pixel = StretchSource(static_cast<u32>(nPlace), nPixels, static_cast<u32>(nBefore));
    const double inside = (nPlace + 0.5) * nPixels / nBefore - pixel;
    const double scale = static_cast<double>(nAfter) / nPixels;
    const double first = std::ceil(pixel * scale);
    const double last = std::max(first, std::ceil((pixel + 1) * scale) - 1);
    const double place = std::clamp(std::floor((pixel + inside) * scale), first, last);
    return static_cast<int>(std::min(place, nAfter - 1.0));
}

}  // namespace

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
    SetScale(fScale);
    m_bSizeWhenRestored = false;
}

void CVistrelView::SetScale(float fScale) {
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

bool CVistrelView::CanZoomBy(int nSteps) const {
    return m_hBitmap && ScaleAfterSteps(m_fScale, nSteps) != m_fScale;
}

void CVistrelView::OnZoomIn() {
    if (CanZoomBy(1)) FitFrameToImage(ScaleAfterSteps(m_fScale, 1));
}

void CVistrelView::OnUpdateZoomIn(CCmdUI* pUi) {
    pUi->Enable(CanZoomBy(1));
}

void CVistrelView::OnZoomOut() {
    if (CanZoomBy(-1)) FitFrameToImage(ScaleAfterSteps(m_fScale, -1));
}

void CVistrelView::OnUpdateZoomOut(CCmdUI* pUi) {
    pUi->Enable(CanZoomBy(-1));
}

void CVistrelView::OnActualSize() {
    if (m_hBitmap) FitFrameToImage(1.0f);
}

void CVistrelView::OnUpdateActualSize(CCmdUI* pUi) {
    pUi->Enable(m_hBitmap != nullptr);
}

// The picture's pixel under the pointer stays where it is; the area does not scroll to the caption, as it
// does for other changes of scale.
void CVistrelView::OnControlWheel(int nNotches, const CPoint& point) {
    CChildFrame* const frame = GetFrame();
    if (!CanZoomBy(nNotches) || frame->IsZoomed()) return;
    const CWaitCursor wait;
    const CSize size = {GetClientRect().Width(), GetClientRect().Height()};
    const CRect place = GetWindowRect();
    SizeFrameToImage(ScaleAfterSteps(m_fScale, nNotches));
    const CSize newSize = {GetClientRect().Width(), GetClientRect().Height()};
    // An area that has become smaller can have scrolled back.
    const CRect newPlace = GetWindowRect();
    const int x = newPlace.left + KeptPlace(point.x, m_nWidth, size.cx, newSize.cx);
    const int y = newPlace.top + KeptPlace(point.y, m_nHeight, size.cy, newSize.cy);
    frame->ScrollArea({x - (place.left + point.x), y - (place.top + point.y)});
}
