// The main window and the child windows inside it.
#pragma once

#include "framework/qt/wnd/frame_wnd.h"

class CMDIFrameWnd;
struct MenuResource;
class QMdiArea;
class QMdiSubWindow;
class QMenu;

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
    // Made inside the main window, hidden; the main window shows the menu of this id while the child is the
    // active one. False when OnCreate refuses.
    bool LoadFrame(CMDIFrameWnd& mainFrame, u32 nIDResource, const CCreateContext& context);

    // Shows it in front of the others; a minimised one is restored.
    void ActivateFrame();

    bool IsZoomed() const;  // fills the whole area
    bool IsIconic() const;  // shows its caption only
    void MDIMaximize();
    void MDIRestore();  // back to its own size

    // The size that the frame leaves to its view: its own less what borders and bars take. Negative where
    // these alone do not find room.
    CSize GetViewSize();

    // Only over the active child, and not when that shows its caption only.
    bool ShowsFloatingBars() const override;

    QMdiSubWindow* GetSubWindow() const;
    QMainWindow* GetBarHost() const override;
    CMDIFrameWnd& GetMDIFrame() const { return *m_pMainFrame; }
    const MenuResource* GetMenuResource() const { return m_pMenu; }
    const CMultiDocTemplate& GetDocTemplate() const { return *m_pTemplate; }

    // Behind the view, its document and the child frame come the main frame and the application.
    bool OnCmdMsg(u32 nID, u32 nCode, CCmdUI* pUi) override;
    bool HasHandler(u32 nID, u32 nCode) const override;

  protected:
    const MessageMap& GetMessageMap() const override;

  private:
    void OnFileClose();
    void OnOtherPane();

    CMDIFrameWnd* m_pMainFrame = nullptr;
    const CMultiDocTemplate* m_pTemplate = nullptr;
    const MenuResource* m_pMenu = nullptr;
    QMainWindow* m_pBarHost = nullptr;  // the sub-window's
};

class CMDIFrameWnd : public CFrameWnd {
  public:
    ~CMDIFrameWnd() override;

    // Makes the window, hidden. Its title is the string of this id, its menu the one that is shown without
    // any child. False when OnCreate refuses.
    bool LoadFrame(u32 nIDResource);

    CMDIClientWnd* GetMDIClient() { return &m_wndMDIClient; }
    CMDIChildWnd* MDIGetActive() const;  // null without any

    // Children in the order in which they were opened.
    const std::vector<std::unique_ptr<CMDIChildWnd>>& GetChildren() const { return m_children; }
    void AddChild(std::unique_ptr<CMDIChildWnd> pChild);

    // How many captions below the area's corner the next child opens.
    int NextCascadeStep();

    // The child goes as soon as the event is over that closed it.
    void DestroyChildLater(CMDIChildWnd* pChild);
    void DestroyChildren() { m_children.clear(); }

    // What the menu item of a command shows; MF_ bits.
    u32 GetMenuState(u32 nID) const;

    // Whether anything of it is on the screen.
    bool IsExposed() const;

    // In front of other programs, and no longer minimised.
    void BringToFront();

    // Brings the title, the menu and all bars up to date.
    void OnIdle();

    QMainWindow* GetBarHost() const override;

    // The active child comes first, with all that stands behind it.
    bool OnCmdMsg(u32 nID, u32 nCode, CCmdUI* pUi) override;
    bool HasHandler(u32 nID, u32 nCode) const override;

  protected:
    int OnCreate(const CCreateContext& context) override;
    const MessageMap& GetMessageMap() const override;

  private:
    friend class CMDIChildWnd;
    void AddWindowKeys();
    void OnWindowNew();
    void OnWindowArrange();
    void OnWindowCascade();
    void OnWindowTile();
    void AddWindowList(QMenu& menu);
    void FillWindowList(QMenu& menu);
    void UpdateFrameCounts();
    bool RouteBehindChild(u32 nID, u32 nCode, CCmdUI* pUi);
    bool HasHandlerBehindChild(u32 nID, u32 nCode) const;
    void UpdateFrameTitle();
    void UpdateMenu();

    std::string m_strTitle;
    const MenuResource* m_pMenu = nullptr;       // without any child
    const MenuResource* m_pShownMenu = nullptr;  // or one with the same items
    CMDIClientWnd m_wndMDIClient;
    std::vector<std::unique_ptr<CMDIChildWnd>> m_children;
    int m_nCascadeStep = 0;
};
