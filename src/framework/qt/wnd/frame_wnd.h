// A window that frames a view and carries bars.
#pragma once

#include "framework/core/runtime_class.h"
#include "framework/qt/wnd/control_bar.h"
#include "framework/qt/wnd/view.h"
#include "framework/qt/wnd/view_place.h"

#include <memory>

class CDocTemplate;
class CDocument;

// What a frame is made for; all null for one that frames no view of its own.
struct CCreateContext {
    const CRuntimeClass* pNewViewClass = nullptr;
    std::shared_ptr<CDocument> pCurrentDoc;
    const CDocTemplate* pNewDocTemplate = nullptr;
};

class CFrameWnd : public CBarFrame, public CViewPlace {
  public:
    CView* GetActiveView() const { return m_pView.get(); }

    // Shows the text in the first pane of the status bar; the idle message for an empty one, until there is
    // another text.
    void SetMessageText(const std::string& strText);

    // Brings the idle message up to date, where it is shown.
    void UpdateIdleMessage();

    CSize GetViewSize() override;

    // The view comes first, and after it its document; then the frame itself.
    bool VisitTargets(const Visitor& visit) override;

  protected:
    virtual std::string GetIdleMessage() const;

    // Makes what stands inside the frame; -1 when the frame cannot be.
    virtual int OnCreate(const CCreateContext& context);

    // For the message maps of frames that have the standard bars.
    void OnViewToolBar();
    void OnViewStatusBar();
    void OnUpdateControlBarMenu(CCmdUI* pUi);
    void OnUpdateKeyIndicator(CCmdUI* pUi);

  private:
    std::unique_ptr<CView> m_pView;
    bool m_bIdleMessage = false;
};
