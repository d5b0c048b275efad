// The main window and the child windows inside it.
#pragma once

#include "framework/qt/frame_wnd.h"

class CMDIFrameWnd;
class QMdiArea;
class QMdiSubWindow;

// The area of the main window that the child windows stand in. It scrolls when one of them reaches beyond it.
class CMDIClientWnd : public CWnd {
  public:
    void Create(CMDIFrameWnd& frame);
    QMdiArea* GetArea() const;

  protected:
    QWidget* GetClientWidget() const override;
};

class CMDIChildWnd : public CFrameWnd {
  public:
    // Made inside the main window, hidden. False when OnCreate refuses.
    bool Create(CMDIFrameWnd& mainFrame, const CCreateContext& context);

    // Shows it in front of the others.
    void ActivateFrame();

    bool IsZoomed() const;  // fills the whole area
    bool IsIconic() const;  // shows its caption only
    void MDIRestore();      // back to its own size

    // The size that the frame leaves to its view: its own less what borders and bars take. Negative where
    // these alone do not find room.
    CSize GetViewSize();

    QMdiSubWindow* GetSubWindow() const;
    QMainWindow* GetBarHost() const override;
    CMDIFrameWnd& GetMDIFrame() const { return *m_pMainFrame; }

    // Behind the view, its document and the child frame come the main frame and the application.
    bool OnCmdMsg(u32 nID, u32 nCode, CCmdUI* pUi) override;
    bool HasHandler(u32 nID, u32 nCode) const override;

  private:
    CMDIFrameWnd* m_pMainFrame = nullptr;
    QMainWindow* m_pBarHost = nullptr;  // the sub-window's
};

class CMDIFrameWnd : public CFrameWnd {
  public:
    ~CMDIFrameWnd() override;

    // Makes the window, hidden. Its title is the string of this id. False when OnCreate refuses.
    bool LoadFrame(u32 nIDResource);

    CMDIClientWnd* GetMDIClient() { return &m_wndMDIClient; }
    CMDIChildWnd* MDIGetActive() const;  // null without any

    // Children in the order in which they were opened.
    const std::vector<std::unique_ptr<CMDIChildWnd>>& GetChildren() const { return m_children; }
    void AddChild(std::unique_ptr<CMDIChildWnd> pChild) { m_children.push_back(std::move(pChild)); }

    // How many captions below the area's corner the next child opens.
    int NextCascadeStep();

    // The child goes as soon as the event is over that closed it.
    void DestroyChildLater(CMDIChildWnd* pChild);
    void DestroyChildren() { m_children.clear(); }

    // Brings the title and all bars up to date.
    void OnIdle();

    QMainWindow* GetBarHost() const override;

    // The active child comes first, with all that stands behind it.
    bool OnCmdMsg(u32 nID, u32 nCode, CCmdUI* pUi) override;
    bool HasHandler(u32 nID, u32 nCode) const override;

  protected:
    int OnCreate(const CCreateContext& context) override;

  private:
    friend class CMDIChildWnd;
    bool RouteBehindChild(u32 nID, u32 nCode, CCmdUI* pUi);
    bool HasHandlerBehindChild(u32 nID, u32 nCode) const;
    void UpdateFrameTitle();

    std::string m_strTitle;
    CMDIClientWnd m_wndMDIClient;
    std::vector<std::unique_ptr<CMDIChildWnd>> m_children;
    int m_nCascadeStep = 0;
};
