// The main window, and what it does with all of the child windows inside it.
#pragma once

#include "framework/qt/wnd/mdi_child_wnd.h"

#include <functional>

struct MenuResource;
struct StartupToken;
class QMenu;

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
    void AddChild(std::unique_ptr<CMDIChildWnd> child);
    void DestroyChildren();

    // Titles all children by their documents.
    void UpdateFrameCounts();

    // Whether anything of it is on the screen.
    bool IsExposed() const;

    // In front of other programs, and no longer minimised.
    void BringToFront(const StartupToken& token);

    // Brings the title, the menu and all bars up to date.
    void OnIdle();

    QMainWindow* GetBarHost() const override;

    // The active child comes first, with all that stands after it; the last target of all comes last.
    bool VisitTargets(const Visitor& visit) override;

    CCmdTarget* m_pLastTarget = nullptr;                            // borrowed
    std::function<void(const std::vector<std::string>&)> m_onDrop;  // of URIs
    std::function<void()> m_onClosed;

  protected:
    int OnCreate(const CCreateContext& context) override;
    std::string GetIdleMessage() const override;
    const MessageMap& GetMessageMap() const override;

  private:
    void AddWindowKeys();
    void ScrollToActive();
    void OnWindowNew();
    void OnWindowArrange();
    void OnWindowCascade();
    void OnWindowTile();
    void LeaveIconsFree();
    void AddWindowList(QMenu& menu);
    void FillWindowList(QMenu& menu);
    void ChooseWindow();
    bool VisitAfterChild(const Visitor& visit);
    void DestroyChildLater(CMDIChildWnd& child);
    void UpdateFrameTitle();
    void UpdateMenu();

    std::string m_strTitle;
    const MenuResource* m_pMenu = nullptr;       // without any child
    const MenuResource* m_pShownMenu = nullptr;  // or one with the same items
    CMDIClientWnd m_wndMDIClient;
    std::vector<std::unique_ptr<CMDIChildWnd>> m_children;
};
