#include "app/vistrel_view.h"

#include "app/child_frame.h"
#include "app/choice_list.h"
#include "app/pixel_text.h"
#include "app/resource_ids.h"
#include "display/catalogue.h"
#include "display/passed_over_in.h"
#include "document/passed_text.h"
#include "document/vistrel_doc.h"
#include "framework/core/exception.h"
#include "framework/core/resource.h"
#include "framework/core/stretch.h"
#include "framework/qt/wnd/dc.h"

#include <cmath>

const MessageMap& CVistrelView::GetMessageMap() const {
    static constexpr MessageEntry entries[] = {
        OnCommand<&CVistrelView::OnFilePrint>(ID_FILE_PRINT),
        OnCommand<&CVistrelView::OnFilePrintDirect>(ID_FILE_PRINT_DIRECT),
        OnCommand<&CVistrelView::OnFilePrintPreview>(ID_FILE_PRINT_PREVIEW),
        OnCommand<&CVistrelView::OnZoom>(ID_ZOOM),
        OnUpdateCommandUi<&CVistrelView::OnUpdateZoom>(ID_ZOOM),
        OnCommand<&CVistrelView::OnZoomIn>(ID_ZOOM_IN),
        OnUpdateCommandUi<&CVistrelView::OnUpdateZoomIn>(ID_ZOOM_IN),
        OnCommand<&CVistrelView::OnZoomOut>(ID_ZOOM_OUT),
        OnUpdateCommandUi<&CVistrelView::OnUpdateZoomOut>(ID_ZOOM_OUT),
        OnCommand<&CVistrelView::OnActualSize>(ID_ACTUAL_SIZE),
        OnUpdateCommandUi<&CVistrelView::OnUpdateActualSize>(ID_ACTUAL_SIZE),
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
    FillLayerList(LayerNames(GetDoc()), 0);
    BuildChannelList(GetFrame());
    NotePassedOver();
    WatchFile();
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

void CVistrelView::FillLayerList(const std::vector<std::string>& names, u32 nSelected) {
    m_layerNames = names;
    FillList(GetFrame()->m_wndLayerCombo, names, nSelected);
}

void CVistrelView::BuildChannelList(CChildFrame* pFrame, const ListEntry& channel) {
    try {
        m_channelNames = ChooseLayer(GetDoc(), pFrame->GetSelection().nLayer);
        const u32 selected = FindAgain(channel, m_channelNames).value_or(0);
        FillList(pFrame->m_wndChannelCombo, m_channelNames, selected);
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
    auto& document = dynamic_cast<CVistrelDoc&>(*GetDocument());
    document.KeepPassedOver(PassedOverIn(document));
    m_strPassedOver = PassedText(*document.GetKeptPassedOver());
}

std::string CVistrelView::GetIdleMessage() const {
    if (HasFileChanged()) return GetDoc().GetTitle() + " has changed; F5 reads it again";
    if (m_strPassedOver.empty()) return m_strFolderPlace;
    const std::string passedOver = GetDoc().IsReadTolerantly()
                                       ? "Read tolerantly: " + m_strPassedOver
                                       : m_strPassedOver + ": right-click to read tolerantly";
    return m_strFolderPlace.empty() ? passedOver : m_strFolderPlace + "; " + passedOver;
}

// As OnDraw stretches the picture.
std::string CVistrelView::GetPointerMessage(const CPoint& point) const {
    const CRect client = GetClientRect();
    const bool isInside =
        point.x >= 0 && point.x < client.Width() && point.y >= 0 && point.y < client.Height();
    if (!m_hBitmap || !isInside) return {};
    const u32 x = StretchSource(static_cast<u32>(point.x), m_nWidth, static_cast<u32>(client.Width()));
    const u32 y = StretchSource(static_cast<u32>(point.y), m_nHeight, static_cast<u32>(client.Height()));
    if (x >= m_hBitmap->nWidth || y >= m_hBitmap->nHeight) return {};
    return PixelText(*m_hBitmap, x, y, m_nColours != 0);
}

u32 CVistrelView::GetContextMenu() const {
    return IDR_VIEW;
}

void CVistrelView::OnChannelChanged(CChildFrame* pFrame) {
    const CWaitCursor wait;
    m_selection = pFrame->GetSelection();
    OnUpdate(nullptr, 0, nullptr);
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

void CVistrelView::OnUpdateInfoPane(CCmdUI* pUi) {
    pUi->SetText(InfoText());
}
