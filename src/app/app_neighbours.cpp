// The part of the application that goes through a folder.
#include "app/neighbours.h"
#include "app/vistrel_app.h"
#include "app/vistrel_view.h"
#include "framework/core/path_name.h"

#include <algorithm>

namespace {

std::string PathOf(const CVistrelView& view) {
    return view.GetDoc().GetPathName();
}

std::vector<std::string> Beside(const Neighbours& neighbours, bool bAfter) {
    return bAfter ? neighbours.After() : neighbours.Before();
}

}  // namespace

Neighbours CVistrelApp::NeighboursOf(const CVistrelView& view) const {
    return Neighbours(PathOf(view), [this](const std::string& strName) { return HasTemplateFor(strName); });
}

// A link to the file that is shown is no other file.
bool CVistrelApp::CanGo(bool bAfter) const {
    const CVistrelView* const view = GetActiveView();
    if (!view) return false;
    const auto isOther = [&](const std::string& strPath) { return !IsSameFile(strPath, PathOf(*view)); };
    return std::ranges::any_of(Beside(NeighboursOf(*view), bAfter), isOther);
}

// Nobody is asked or told anything on the way: what does not open is passed over.
void CVistrelApp::Go(bool bAfter) {
    CVistrelView* const view = GetActiveView();
    if (!view) return;
    const CWaitCursor wait;
    const std::string own = PathOf(*view);
    const Neighbours neighbours = NeighboursOf(*view);
    for (const std::string& path : Beside(neighbours, bAfter)) {
        if (IsSameFile(path, own)) continue;
        const std::string place = neighbours.PlaceText(path);
        if (CMDIChildWnd* const child = FindOpen(path)) {
            child->ActivateFrame();
            dynamic_cast<CVistrelView&>(*child->GetActiveView()).SetFolderPlace(place);
            return;
        }
        const auto document = std::make_shared<CVistrelDoc>();
        document->m_tolerance = GetTolerance();
        if (document->ReadFile(path)) continue;
        document->SetPathName(path);
        view->SetFolderPlace(place);
        TemplateFor(path).ReplaceDocument(*m_pMainWnd, *m_pMainWnd->MDIGetActive(), document);
        view->ShowFromTheStart();
        return;
    }
}

void CVistrelApp::OnNextFile() {
    Go(true);
}

void CVistrelApp::OnUpdateNextFile(CCmdUI* pUi) {
    pUi->Enable(CanGo(true));
}

void CVistrelApp::OnPreviousFile() {
    Go(false);
}

void CVistrelApp::OnUpdatePreviousFile(CCmdUI* pUi) {
    pUi->Enable(CanGo(false));
}
