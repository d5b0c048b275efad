// The part of the application that reads documents again.
#include "app/resource_ids.h"
#include "app/tolerance_setting.h"
#include "app/vistrel_app.h"
#include "app/vistrel_view.h"

#include <algorithm>

namespace {

// A picture stays under the rules that it is shown under, as long as the file can be read under them.
Tolerance ToleranceOfReload(const CVistrelDoc& shown, Tolerance kept) {
    if (shown.IsReadTolerantly()) return Tolerance::Always;
    return kept == Tolerance::Always ? Tolerance::Ask : kept;
}

}  // namespace

void CVistrelApp::Reload(CVistrelView& view) {
    const CVistrelDoc& shown = view.GetDoc();
    const auto document = std::make_shared<CVistrelDoc>();
    const Tolerance kept = GetTolerance();
    document->m_tolerance = ToleranceOfReload(shown, kept);
    const std::weak_ptr<CDocument> before = view.ShareDocument();
    {
        const CWaitCursor wait;
        if (!document->OnOpenDocument(shown.GetPathName())) return;
        document->SetPathName(shown.GetPathName());
    }
    // What the user has agreed to once is not asked again.
    const bool breaksRulesNow = document->IsStrictlyRefused() && !shown.IsStrictlyRefused();
    if (breaksRulesNow && kept == Tolerance::Never) {
        // Nobody is asked; what refuses it says why.
        document->m_tolerance = kept;
        document->OnOpenDocument(shown.GetPathName());
        return;
    }
    if (breaksRulesNow && kept == Tolerance::Ask && !AskForConsent({document})) return;
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
    if (GetProfileString(READING_SECTION, RELOAD_ENTRY, "") != ALWAYS) return;
    const auto hasNews = [](const std::unique_ptr<CMDIChildWnd>& child) {
        return dynamic_cast<CVistrelView&>(*child->GetActiveView()).TakeFileNews();
    };
    const auto& children = m_pMainWnd->GetChildren();
    for (auto it = std::ranges::find_if(children, hasNews); it != children.end();
         it = std::ranges::find_if(children, hasNews))
        Reload(dynamic_cast<CVistrelView&>(*(*it)->GetActiveView()));
}
