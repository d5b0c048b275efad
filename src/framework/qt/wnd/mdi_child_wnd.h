// A window inside the main window: one look at one document.
#pragma once

#include "framework/qt/wnd/frame_wnd.h"
#include "framework/qt/wnd/mdi_client_wnd.h"

struct MenuResource;
class QMdiSubWindow;

class CMDIChildWnd : public CFrameWnd {
  public:
    // Made in the area, hidden; the main window shows the menu of this id while the child is the active one.
    // False when OnCreate refuses.
    bool LoadFrame(CMDIClientWnd& area, u32 nIDResource, const CCreateContext& context);

    // Its icon and its menu become those of this id, and further windows are of this kind.
    void SetDocTemplate(u32 nIDResource, const CDocTemplate& kind);

    // Shows it in front of the others and in sight; a minimised one is restored.
    void ActivateFrame();

    bool IsZoomed() const;  // fills the whole area
    bool IsIconic() const;  // shows its caption only
    void MDIRestore();      // back to its own size
    void MDIMaximize();

    // It has its own size again, after it filled the area or showed its caption only.
    virtual void OnRestored() {}

    // The size of one that no picture gives any.
    void TakeUnfittedSize();

    // Scrolls the area until the caption is in view, or its beginning.
    void ScrollToCaption();

    // Scrolls the area to one that is hardly in view. One that is maximised or minimised stays as it stands.
    void ScrollIntoSight();

    CSize GetViewSize() override;
    bool IsLargerThanArea() const override;
    void ScrollArea(const CSize& distance) override;

    // Only over the active child, and not when that shows its caption only.
    bool ShowsFloatingBars() const override;

    void ScrollToControl(const QWidget& control) override;

    QMdiSubWindow* GetSubWindow() const;
    QMainWindow* GetBarHost() const override;
    const MenuResource* GetMenuResource() const { return m_pMenu; }
    const CDocTemplate& GetDocTemplate() const { return *m_pTemplate; }

    // After the view, its document and the child frame come those that the area names.
    bool VisitTargets(const Visitor& visit) override;

  protected:
    const MessageMap& GetMessageMap() const override;

  private:
    void PlaceInArea();
    void OnFileClose();
    void OnOtherPane();

    CMDIClientWnd* m_pArea = nullptr;
    const CDocTemplate* m_pTemplate = nullptr;
    const MenuResource* m_pMenu = nullptr;
    QMainWindow* m_pBarHost = nullptr;  // the sub-window's
};
