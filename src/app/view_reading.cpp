// The part of the view that goes over from one reading of its file to another.
#include "app/child_frame.h"
#include "app/choice_list.h"
#include "app/resource_ids.h"
#include "app/vistrel_view.h"
#include "display/catalogue.h"
#include "document/vistrel_doc.h"
#include "framework/qt/kit/file_watch.h"

#include <exception>
#include <utility>

// All windows of the document have one watch.
void CVistrelView::WatchFile() {
    m_pWatch.reset();
    for (const CView* const view : GetDocument()->GetViews()) {
        const auto& other = dynamic_cast<const CVistrelView&>(*view);
        if (other.m_pWatch) m_pWatch = other.m_pWatch;
    }
    if (m_pWatch) return;
    const auto tell = [] {
        if (CWnd* const main = AfxGetMainWnd()) main->OnCmdMsg(ID_FILE_CHANGED, CN_COMMAND, nullptr);
    };
    m_pWatch = std::make_shared<FileWatch>(GetDoc().GetPathName(), GetDoc().GetStamp(), tell);
}

bool CVistrelView::HasFileChanged() const {
    return m_pWatch && m_pWatch->HasChanged();
}

bool CVistrelView::TakeFileNews() {
    return m_pWatch && m_pWatch->TakeNews();
}

// Reads the file again under the other rules.
void CVistrelView::OnReadTolerantly() {
    const auto document = std::make_shared<CVistrelDoc>();
    document->m_tolerance = GetDoc().IsReadTolerantly() ? Tolerance::Never : Tolerance::Always;
    const CWaitCursor wait;
    if (!document->OnOpenDocument(GetDoc().GetPathName())) return;
    document->SetPathName(GetDoc().GetPathName());
    ReplaceDocument(document, [this](CVistrelView& view) { view.ShowOtherReading(&view == this); });
}

// What only the tolerant rules read has no other reading.
void CVistrelView::OnUpdateReadTolerantly(CCmdUI* pUi) {
    const bool passesOver = !m_strPassedOver.empty();
    pUi->Enable(passesOver && !GetDoc().IsStrictlyRefused());
    pUi->SetCheck(passesOver && GetDoc().IsReadTolerantly());
}

void CVistrelView::ReplaceDocument(const std::shared_ptr<CVistrelDoc>& document,
                                   const std::function<void(CVistrelView&)>& show) {
    // All are on the one document, and memory of the other is free, before the first picture is made.
    const std::vector<CView*> views = GetDocument()->GetViews();
    for (CView* const view : views) {
        view->SetDocument(document);
        auto& shown = dynamic_cast<CVistrelView&>(*view);
        shown.m_pWatch.reset();
        shown.LetGo();
    }
    std::exception_ptr failure;
    for (CView* const view : views) {
        try {
            show(dynamic_cast<CVistrelView&>(*view));
        } catch (...) {
            failure = std::current_exception();
        }
    }
    if (failure) std::rethrow_exception(failure);
}

bool CVistrelView::ShowOtherDocument(const ListEntry& layer, const ListEntry& channel) {
    const bool hadPicture = m_bValid != 0;
    const u32 width = m_nWidth;
    const u32 height = m_nHeight;
    LeaveEmpty();
    WatchFile();
    NotePassedOver();
    const std::vector<std::string> names = LayerNames(GetDoc());
    const std::optional<u32> place = FindAgain(layer, names);
    FillLayerList(names, place.value_or(0));
    BuildChannelList(GetFrame(), place ? channel : ListEntry());
    OnUpdate(nullptr, 0, nullptr);
    const bool hasItsSize = hadPicture && m_nWidth == width && m_nHeight == height;
    return m_bValid && !hasItsSize;
}

// Layer and channel stay chosen by their places. Only the frame of the active view may be restored, or the
// area scrolled to it: the others stay as they stand.
void CVistrelView::ShowOtherReading(bool bActive) {
    if (!ShowOtherDocument({m_selection.nLayer, {}}, {m_selection.nChannel, {}})) return;
    if (bActive)
        FitFrameToImage(PictureScale());
    else
        SizeFreeFrame(PictureScale());
}

void CVistrelView::Reload(const std::shared_ptr<CVistrelDoc>& document) {
    ReplaceDocument(document, [](CVistrelView& view) { view.ShowReload(); });
}

void CVistrelView::ShowReload() {
    const ListEntry layer = EntryAt(m_layerNames, m_selection.nLayer);
    const ListEntry channel = EntryAt(m_channelNames, m_selection.nChannel);
    if (!ShowOtherDocument(layer, channel)) return;
    const bool isSameLayer = FindAgain(layer, m_layerNames).has_value();
    SizeFreeFrame(isSameLayer ? m_fScale : PictureScale());
}

void CVistrelView::ShowFromTheStart() {
    ShowOtherDocument({}, {});
    if (!m_bValid)
        SizeWithoutPicture();
    else if (GetFrame()->IsZoomed())
        SizeFreeFrame(1.0f);
    else
        FitFrameToImage(1.0f);
}

void CVistrelView::SizeFreeFrame(float fScale) {
    if (!GetFrame()->IsZoomed() && !GetFrame()->IsIconic()) return SizeFrameToImage(fScale);
    SetScale(fScale);
    m_bSizeWhenRestored = true;
}

void CVistrelView::SizeWithoutPicture() {
    CChildFrame* const frame = GetFrame();
    m_bSizeWhenRestored = frame->IsZoomed() || frame->IsIconic();
    if (m_bSizeWhenRestored) return;
    frame->TakeUnfittedSize();
    frame->ScrollToCaption();
}

void CVistrelView::OnFrameRestored() {
    if (!std::exchange(m_bSizeWhenRestored, false)) return;
    if (m_bValid)
        SizeFrameToImage(m_fScale);
    else
        GetFrame()->TakeUnfittedSize();
}
