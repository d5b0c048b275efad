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

ShellFileType CMultiDocTemplate::GetShellFileType() const {
    const std::string fields = AfxLoadString(m_nIDResource);
    return {GetDocString(fields, DocStringField::FilterExt),
            GetDocString(fields, DocStringField::RegFileTypeId),
            GetDocString(fields, DocStringField::RegFileTypeName)};
}

CDocument* CMultiDocTemplate::OpenDocumentFile(CMDIFrameWnd& mainFrame, const std::string& strPathName) {
    CDocument* opened = nullptr;
    const auto open = [&] {
        const CWaitCursor wait;
        // Until all is done the document belongs here, and goes behind the frame.
        std::unique_ptr<CDocument> document(static_cast<CDocument*>(m_docClass.pfnCreateObject()));
        document->m_bAutoDelete = false;
        if (!document->OnOpenDocument(strPathName)) return;
        document->SetPathName(strPathName);

        CMDIChildWnd* const child = CreateNewFrame(mainFrame, *document);
        if (!child) return;
        document->m_bAutoDelete = true;
        opened = document.release();
        child->ActivateFrame();
    };
    AfxGuardedCall(open, "\"" + strPathName + "\" was not opened. ");
    return opened;
}

CMDIChildWnd* CMultiDocTemplate::CreateNewFrame(CMDIFrameWnd& mainFrame, CDocument& document) const {
    std::unique_ptr<CMDIChildWnd> frame(static_cast<CMDIChildWnd*>(m_frameClass.pfnCreateObject()));
    if (!frame->LoadFrame(*mainFrame.GetMDIClient(), m_nIDResource, {&m_viewClass, &document, this}))
        return nullptr;
    frame->GetActiveView()->OnInitialUpdate();
    CMDIChildWnd* const child = frame.get();
    mainFrame.AddChild(std::move(frame));
    return child;
}
