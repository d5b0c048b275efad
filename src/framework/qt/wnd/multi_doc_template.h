// A kind of document that the program opens: which classes of document, frame and view belong together, and
// the document string of one resource id.
#pragma once

#include "base/types.h"
#include "framework/core/answers.h"
#include "framework/core/doc_string.h"
#include "framework/core/runtime_class.h"
#include "framework/qt/wnd/doc_template.h"

#include <functional>
#include <memory>
#include <string>

class CMultiDocTemplate : public CDocTemplate {
  public:
    // The frame's class derives from CMDIChildWnd.
    CMultiDocTemplate(u32 nIDResource, CRuntimeClass docClass, CRuntimeClass frameClass,
                      CRuntimeClass viewClass)
        : m_nIDResource(nIDResource),
          m_docClass(docClass),
          m_frameClass(frameClass),
          m_viewClass(viewClass) {}

    // Whether the path ends with the extension that this template is there for.
    bool MatchDocType(const std::string& strPathName) const;

    // What the Open dialog offers for this kind.
    FileFilter GetFilter() const;

    // Reads the file into a document of this kind, which prepare is shown before. Null when that failed: it
    // has been reported then.
    std::shared_ptr<CDocument> ReadDocumentFile(const std::string& strPathName,
                                                const std::function<void(CDocument&)>& prepare) const;

    // Shows a document in a child window of its own. False when that failed, and no window is left: an
    // exception has been reported then, a frame that could not be made has not.
    bool ShowDocument(CMDIFrameWnd& mainFrame, const std::shared_ptr<CDocument>& document) const;

    // Puts a document in the place of the one that a child shows, which becomes one of this kind. What the
    // view shows of it is left to the caller.
    void ReplaceDocument(CMDIFrameWnd& mainFrame, CMDIChildWnd& child,
                         const std::shared_ptr<CDocument>& document) const;

    CMDIChildWnd* CreateNewFrame(CMDIFrameWnd& mainFrame,
                                 const std::shared_ptr<CDocument>& document) const override;

  private:
    u32 m_nIDResource;
    CRuntimeClass m_docClass;
    CRuntimeClass m_frameClass;
    CRuntimeClass m_viewClass;
};
