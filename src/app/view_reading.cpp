// The view's half that goes over from one reading of its file to another.
#include "app/child_frame.h"
#include "app/choice_list.h"
#include "app/vistrel_view.h"
#include "display/catalogue.h"
#include "document/vistrel_doc.h"

#include <exception>

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
