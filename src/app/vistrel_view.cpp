#include "app/vistrel_view.h"

#include "app/child_frame.h"
#include "app/frame_fit.h"
#include "app/resource_ids.h"
#include "app/zoom_dialog.h"
#include "display/catalogue.h"
#include "display/tolerance.h"
#include "document/passed_text.h"
#include "document/vistrel_doc.h"
#include "framework/core/exception.h"
#include "framework/core/resource.h"
#include "framework/qt/wnd/dc.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>

namespace {

// Selects the entry at a place, or the first one where there is none.
void FillList(CComboBox& list, const std::vector<std::string>& names, u32 nSelected) {
    SendMessageA(&list, CB_RESETCONTENT, 0, 0);
    for (const std::string& name : names)
        SendMessageA(&list, CB_ADDSTRING, 0, reinterpret_cast<i64>(name.c_str()));
    SendMessageA(&list, CB_SETCURSEL, nSelected < names.size() ? nSelected : 0, 0);
}

}  // namespace

const MessageMap& CVistrelView::GetMessageMap() const {
    static constexpr MessageEntry entries[] = {
        OnCommand<&CVistrelView::OnFilePrint>(ID_FILE_PRINT),
        OnCommand<&CVistrelView::OnFilePrintDirect>(ID_FILE_PRINT_DIRECT),
        OnCommand<&CVistrelView::OnFilePrintPreview>(ID_FILE_PRINT_PREVIEW),
        OnCommand<&CVistrelView::OnZoom>(ID_ZOOM),
        OnUpdateCommandUi<&CVistrelView::OnUpdateZoom>(ID_ZOOM),
        OnUpdateCommandUi<&CVistrelView::OnUpdateInfoPane>(ID_INDICATOR_INFO),
        OnCommand<&CVistrelView::OnReadTolerantly>(ID_READ_TOLERANTLY),
        OnUpdateCommandUi<&CVistrelView::OnUpdateReadTolerantly>(ID_READ_TOLERANTLY),
    };
    static const MessageMap map = {&CView::GetMessageMap(), entries};
    return map;
}

const CVistrelDoc& CVistrelView::GetDoc() const {
    return dynamic_cast<CVistrelDoc&>(*GetDocument());
}

CChildFrame* CVistrelView::GetFrame() const {
    return &dynamic_cast<CChildFrame&>(*GetParent());
}

void CVistrelView::OnInitialUpdate() {
    CChildFrame* const frame = GetFrame();
    FillList(frame->m_wndLayerCombo, LayerNames(GetDoc()), 0);
    BuildChannelList(frame);
    NotePassedOver();
    CView::OnInitialUpdate();
    if (m_bValid) FitFrameToImage(1.0f);
}

// A selection whose picture cannot be made shows nothing, rather than the picture of the one before.
void CVistrelView::LeaveEmpty() {
    DeleteObject(m_hBitmap);
    m_hBitmap = nullptr;
    m_bValid = 0;
    Invalidate();
}

void CVistrelView::BuildChannelList(CChildFrame* pFrame, u32 nChannel) {
    try {
        FillList(pFrame->m_wndChannelCombo, ChooseLayer(GetDoc(), pFrame->GetSelection().nLayer), nChannel);
        m_selection = pFrame->GetSelection();
    } catch (...) {
        LeaveEmpty();
        throw;
    }
}

void CVistrelView::OnUpdate(CView* pSender, i64 lHint, CCmdTarget* pHint) {
    try {
        BuildBitmap(GetDoc(), m_selection);
    } catch (...) {
        LeaveEmpty();
        throw;
    }
    CView::OnUpdate(pSender, lHint, pHint);
}

void CVistrelView::OnLayerChanged(CChildFrame* pFrame) {
    const CWaitCursor wait;
    BuildChannelList(pFrame);
    OnUpdate(nullptr, 0, nullptr);
    if (m_bValid) FitFrameToImage(PictureScale());
}

// A mip-map level is shown at the size of the whole picture. From the 128th on the scale is infinite.
float CVistrelView::PictureScale() const {
    const bool isLevel = GetDoc().m_nDocType == DOC_IFF;
    return isLevel ? std::ldexp(1.0f, static_cast<int>(m_selection.nLayer)) : 1.0f;
}

void CVistrelView::NotePassedOver() {
    m_strPassedOver = PassedText(PassedOverIn(GetDoc()));
}

std::string CVistrelView::GetIdleMessage() const {
    if (m_strPassedOver.empty()) return {};
    return GetDoc().IsReadTolerantly() ? "Read tolerantly: " + m_strPassedOver
                                       : m_strPassedOver + ": right-click to read tolerantly";
}

u32 CVistrelView::GetContextMenu() const {
    return IDR_VIEW_MENU;
}

// Reads the file again under the other rules, for all windows of the document. Where that fails, which has
// been reported then, everything stays as it was.
void CVistrelView::OnReadTolerantly() {
    const auto document = std::make_shared<CVistrelDoc>();
    document->m_tolerance = GetDoc().IsReadTolerantly() ? Tolerance::Never : Tolerance::Always;
    const CWaitCursor wait;
    const std::string path = GetDoc().GetPathName();
    if (!document->OnOpenDocument(path)) return;
    document->SetPathName(path);
    // All are on the one document, and memory of the other is free, before the first picture is made.
    const std::vector<CView*> views = GetDocument()->GetViews();
    for (CView* const view : views) view->SetDocument(document);
    std::exception_ptr failure;
    for (CView* const view : views) {
        try {
            dynamic_cast<CVistrelView&>(*view).ShowOtherReading(view == this);
        } catch (...) {
            failure = std::current_exception();
        }
    }
    if (failure) std::rethrow_exception(failure);
}

// What only the tolerant rules read has no other reading.
void CVistrelView::OnUpdateReadTolerantly(CCmdUI* pUi) {
    const bool passesOver = !m_strPassedOver.empty();
    pUi->Enable(passesOver && !GetDoc().IsStrictlyRefused());
    pUi->SetCheck(passesOver && GetDoc().IsReadTolerantly());
}

// Layer and channel stay chosen where the document has them.
void CVistrelView::ShowOtherReading(bool bActive) {
    const Selection before = m_selection;
    const bool hadPicture = m_bValid != 0;
    const u32 width = m_nWidth;
    const u32 height = m_nHeight;
    LeaveEmpty();
    NotePassedOver();
    CChildFrame* const frame = GetFrame();
    FillList(frame->m_wndLayerCombo, LayerNames(GetDoc()), before.nLayer);
    const bool sameLayer = frame->GetSelection().nLayer == before.nLayer;
    BuildChannelList(frame, sameLayer ? before.nChannel : 0);
    OnUpdate(nullptr, 0, nullptr);
    const bool hasItsSize = hadPicture && m_nWidth == width && m_nHeight == height;
    if (!m_bValid || hasItsSize) return;
    if (bActive)
        FitFrameToImage(PictureScale());
    else if (!frame->IsZoomed() && !frame->IsIconic())
        SizeFrameToImage(PictureScale());
}

void CVistrelView::OnChannelChanged(CChildFrame* pFrame) {
    const CWaitCursor wait;
    m_selection = pFrame->GetSelection();
    OnUpdate(nullptr, 0, nullptr);
}

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

void CVistrelView::OnDraw(CDC* pDC) {
    if (!m_hBitmap) return;
    CDC memory;
    memory.CreateCompatibleDC(pDC);
    memory.SelectObject(m_hBitmap);
    const CRect client = GetClientRect();
    CSize destination = {client.Width(), client.Height()};
    pDC->DPtoLP(&destination);
    CSize source = {static_cast<int>(m_nWidth), static_cast<int>(m_nHeight)};
    memory.DPtoLP(&source);
    pDC->StretchBlt(0, 0, destination.cx, destination.cy, &memory, 0, 0, source.cx, source.cy, SRCCOPY);
}

// Whoever chooses to print sees what there is; a page that nobody looks at first would just come out empty.
bool CVistrelView::OnPreparePrinting(CPrintInfo* pInfo) {
    if (pInfo->m_bDirect && !m_hBitmap) throw CException("It has no picture that can be shown");
    return DoPreparePrinting(pInfo);
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

void CVistrelView::OnUpdateInfoPane(CCmdUI* pUi) {
    pUi->SetText(InfoText());
}
