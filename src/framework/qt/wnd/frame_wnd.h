// A window that frames a view and carries bars.
#pragma once

#include "framework/core/runtime_class.h"
#include "framework/qt/wnd/wnd.h"

#include <memory>

class CControlBar;
class CDocument;
class CMultiDocTemplate;
class CView;
class QMainWindow;

// What a frame is made for; all null for one that frames no view of its own.
struct CCreateContext {
    const CRuntimeClass* pNewViewClass = nullptr;
    CDocument* pCurrentDoc = nullptr;
    const CMultiDocTemplate* pNewDocTemplate = nullptr;
};

class CFrameWnd : public CWnd {
  public:
    CFrameWnd();
    ~CFrameWnd() override;

    CView* GetActiveView() const { return m_pView.get(); }

    void ShowControlBar(CControlBar* pBar, bool bShow);

    // Bars are borrowed; they are the frame's own members.
    void AddControlBar(CControlBar& bar) { m_bars.push_back(&bar); }
    void RemoveControlBar(CControlBar& bar) { std::erase(m_bars, &bar); }
    CControlBar* GetControlBar(u32 nID) const;  // null when the frame has none of this id

    // Shows the text in the first pane of the status bar; the idle message for an empty one.
    void SetMessageText(const std::string& strText);

    // Brings what the bars show up to date.
    void UpdateControlBars();

    // Whether bars of this frame that float are to show.
    virtual bool ShowsFloatingBars() const { return true; }

    // The widget that the bars and the view are arranged in.
    virtual QMainWindow* GetBarHost() const = 0;

    // The view comes first, and behind it its document; then the frame itself.
    bool OnCmdMsg(u32 nID, u32 nCode, CCmdUI* pUi) override;
    bool HasHandler(u32 nID, u32 nCode) const override;

  protected:
    // Makes what stands inside the frame; -1 when the frame cannot be.
    virtual int OnCreate(const CCreateContext& context);

    // For the message maps of frames that have the standard bars.
    void OnViewToolBar();
    void OnViewStatusBar();
    void OnUpdateControlBarMenu(CCmdUI* pUi);
    void OnUpdateKeyIndicator(CCmdUI* pUi);

  private:
    std::unique_ptr<CView> m_pView;
    std::vector<CControlBar*> m_bars;
};
