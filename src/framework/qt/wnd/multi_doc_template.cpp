#include "framework/qt/wnd/multi_doc_template.h"

#include "framework/core/document.h"
#include "framework/core/guarded_call.h"
#include "framework/core/resource.h"
#include "framework/qt/wnd/mdi_frame_wnd.h"

#include <memory>

bool CMultiDocTemplate::MatchDocType(const std::string& strPathName) const {
    return MatchesFilterExt(GetDocString(AfxLoadString(m_nIDResource), DocStringField::FilterExt),
                            strPathName);
}

FileFilter CMultiDocTemplate::GetFilter() const {
    const std::string fields = AfxLoadString(m_nIDResource);
    return {GetDocString(fields, DocStringField::FilterName),
            FilterPatterns(GetDocString(fields, DocStringField::FilterExt))};
}

CDocument* CMultiDocTemplate::OpenDocumentFile(CMDIFrameWnd& mainFrame, const std::string& strPathName) {
    CDocument* opened = nullptr;
    const auto open = [&] {
        const CWaitCursor wait;
        const std::shared_ptr<CDocument> document = CreateObjectAs<CDocument>(m_docClass);
        if (!document || !document->OnOpenDocument(strPathName)) return;
        document->SetPathName(strPathName);
        CMDIChildWnd* const child = CreateNewFrame(mainFrame, document);
        if (!child) return;
        opened = document.get();
        child->ActivateFrame();
    };
    AfxGuardedCall(open, "\"" + strPathName + "\" was not opened. ");
    return opened;
}

CMDIChildWnd* CMultiDocTemplate::CreateNewFrame(CMDIFrameWnd& mainFrame,
                                                const std::shared_ptr<CDocument>& pDocument) const {
    auto frame = CreateObjectAs<CMDIChildWnd>(m_frameClass);
    if (!frame ||
        !frame->LoadFrame(*mainFrame.GetMDIClient(), m_nIDResource, {&m_viewClass, pDocument, this}))
        return nullptr;
    frame->GetActiveView()->OnInitialUpdate();
    CMDIChildWnd* const child = frame.get();
    mainFrame.AddChild(std::move(frame));
    return child;
}
