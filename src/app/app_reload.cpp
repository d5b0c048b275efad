// The application's half that reads documents again.
#include "app/resource_ids.h"
#include "app/vistrel_app.h"
#include "app/vistrel_view.h"

#include <algorithm>

namespace {

constexpr const char* RELOAD_SECTION = "Reading";
constexpr const char* RELOAD_ENTRY = "Reload";  // by itself where it says so
constexpr const char* RELOAD_ALWAYS = "always";

}  // namespace

void CVistrelApp::Reload(CVistrelView& view) {
    const CVistrelDoc& shown = view.GetDoc();
    const auto document = std::make_shared<CVistrelDoc>();
    document->m_tolerance = shown.IsReadTolerantly() ? Tolerance::Always : shown.m_tolerance;
    const std::weak_ptr<CDocument> before = view.ShareDocument();
    {
        const CWaitCursor wait;
        if (!document->OnOpenDocument(shown.GetPathName())) return;
        document->SetPathName(shown.GetPathName());
    }
    if (document->NeedsConsent() && !AskForConsent({document})) return;
    // Windows can be closed while a question is up, and the document goes with the last one.
    if (before.expired() || shown.GetViews().empty()) return;
    const CWaitCursor wait;
    dynamic_cast<CVistrelView&>(*shown.GetViews().front()).Reload(document);
}

void CVistrelApp::OnReload() {
    if (CVistrelView* const view = GetActiveView()) Reload(*view);
}

void CVistrelApp::OnUpdateReload(CCmdUI* pUi) {
    pUi->Enable(GetActiveView() != nullptr);
}

// Each window is looked for anew, since a message that is up lets others close.
void CVistrelApp::OnFileChanged() {
    if (GetProfileString(RELOAD_SECTION, RELOAD_ENTRY, "") != RELOAD_ALWAYS) return;
    const auto hasNews = [](const std::unique_ptr<CMDIChildWnd>& child) {
        return dynamic_cast<CVistrelView&>(*child->GetActiveView()).TakeFileNews();
    };
    const auto& children = m_pMainWnd->GetChildren();
    for (auto it = std::ranges::find_if(children, hasNews); it != children.end();
         it = std::ranges::find_if(children, hasNews))
        Reload(dynamic_cast<CVistrelView&>(*(*it)->GetActiveView()));
}
