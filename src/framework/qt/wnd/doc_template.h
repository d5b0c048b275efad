// What frames know of a kind of document.
#pragma once

#include <memory>

class CDocument;
class CMDIChildWnd;
class CMDIFrameWnd;

class CDocTemplate {
  public:
    virtual ~CDocTemplate() = default;

    // A child window for another look at the document, not shown yet. Null when the window cannot be made.
    virtual CMDIChildWnd* CreateNewFrame(CMDIFrameWnd& mainFrame,
                                         const std::shared_ptr<CDocument>& document) const = 0;
};
