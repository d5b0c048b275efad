#include "framework/qt/wnd/multi_doc_template.h"

#include "framework/core/document.h"
#include "framework/core/guarded_call.h"
#include "framework/core/resource.h"
#include "framework/qt/wnd/mdi_frame_wnd.h"

bool CMultiDocTemplate::MatchDocType(const std::string& strPathName) const {
    return MatchesFilterExt(GetDocString(AfxLoadString(m_nIDResource), DocStringField::FilterExt),
                            strPathName);
}

FileFilter CMultiDocTemplate::GetFilter() const {
    const std::string fields = AfxLoadString(m_nIDResource);
    return {GetDocString(fields, DocStringField::FilterName),
            FilterPatterns(GetDocString(fields, DocStringField::FilterExt))};
}

std::shared_ptr<CDocument> CMultiDocTemplate::ReadDocumentFile(
    const std::string& strPathName, const std::function<void(CDocument&)>& prepare) const {
    std::shared_ptr<CDocument> read;
    const auto open = [&] {
        const CWaitCursor wait;
        const std::shared_ptr<CDocument> document = CreateObjectAs<CDocument>(m_docClass);
        if (!document) return;
        prepare(*document);
        if (!document->OnOpenDocument(strPathName)) return;
        document->SetPathName(strPathName);
        read = document;
    };
    AfxGuardedCall(open, NotOpenedLead(strPathName));
    return read;
}

bool CMultiDocTemplate::ShowDocument(CMDIFrameWnd& mainFrame,
                                     const std::shared_ptr<CDocument>& document) const {
    bool shown = false;
    const auto show = [&] {
        const CWaitCursor wait;
        CMDIChildWnd* const child = CreateNewFrame(mainFrame, document);
        if (!child) return;
        shown = true;
        child->ActivateFrame();
    };
    AfxGuardedCall(show, NotOpenedLead(document->GetPathName()));
    return shown;
}

void CMultiDocTemplate::ReplaceDocument(CMDIFrameWnd& mainFrame, CMDIChildWnd& child,
                                        const std::shared_ptr<CDocument>& document) const {
    child.GetActiveView()->SetDocument(document);
    child.SetDocTemplate(m_nIDResource, *this);
    mainFrame.UpdateFrameCounts();
}

CMDIChildWnd* CMultiDocTemplate::CreateNewFrame(CMDIFrameWnd& mainFrame,
                                                const std::shared_ptr<CDocument>& document) const {
    auto frame = CreateObjectAs<CMDIChildWnd>(m_frameClass);
    if (!frame || !frame->LoadFrame(*mainFrame.GetMDIClient(), m_nIDResource, {&m_viewClass, document, this}))
        return nullptr;
    frame->GetActiveView()->OnInitialUpdate();
    CMDIChildWnd* const child = frame.get();
    mainFrame.AddChild(std::move(frame));
    return child;
}
