// The base of all windows: one widget of the toolkit, owned, behind one object of the program.
#pragma once

#include "base/types.h"
#include "framework/core/cmd_target.h"
#include "framework/core/geometry.h"

#include <string>
#include <vector>

class CWnd;
class QWidget;

using HWND = CWnd*;

// The window is to close, as if the user had closed it.
constexpr u32 WM_CLOSE = 0x10;

class CWnd : public CCmdTarget {
  public:
    // Takes the widget along, and with it those inside it; other windows that stand for these stay behind
    // without one.
    ~CWnd() override;

    CWnd* GetParent() const { return m_pParent; }

    // On the screen, the window's own borders included.
    CRect GetWindowRect() const;

    // The inside, from (0, 0) on.
    virtual CRect GetClientRect() const;

    void ScreenToClient(CRect* pRect) const;

    // The rectangle is in client coordinates of the parent and takes in the window's own borders.
    void MoveWindow(const CRect& rect);

    // False too where a window around it does not show.
    virtual bool IsWindowVisible() const;

    virtual void ShowWindow(bool bShow);

    // The window's caption. One that shows none is still called so by what reads the screen aloud.
    void SetWindowText(const std::string& strText);
    std::string GetWindowText() const;  // UTF-8

    // The client area is drawn anew when the program comes to rest.
    void Invalidate();

    // Answers a message sent to the window; 0 for one that it does not know.
    virtual i64 WindowProc(u32 nMessage, u64 wParam, i64 lParam);

    // Null before the window is made and once the toolkit has destroyed it.
    QWidget* GetWidget() const { return m_pWidget; }

  protected:
    void Attach(QWidget* pWidget, CWnd* pParent);

    // The widget whose inside is the client area.
    virtual QWidget* GetClientWidget() const { return m_pWidget; }

  private:
    QWidget* m_pWidget = nullptr;  // owned
    CWnd* m_pParent = nullptr;
};

// What dialogs belong to and the program ends with: the one window that is given here, null before and after
// it.
CWnd* AfxGetMainWnd();
void AfxSetMainWnd(CWnd* pWnd);

// The pointer shows that the program is busy, as long as this lives.
class CWaitCursor {
  public:
    CWaitCursor();
    ~CWaitCursor();
    CWaitCursor(const CWaitCursor&) = delete;
    CWaitCursor& operator=(const CWaitCursor&) = delete;
};

i64 SendMessageA(HWND hWnd, u32 nMessage, u64 wParam, i64 lParam);
