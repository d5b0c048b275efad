// Bars, and the frames that carry them: a bar lives and dies with its frame.
#pragma once

#include "framework/qt/wnd/wnd.h"

constexpr u32 CBRS_ALIGN_LEFT = 0x1000;
constexpr u32 CBRS_ALIGN_TOP = 0x2000;
constexpr u32 CBRS_ALIGN_RIGHT = 0x4000;
constexpr u32 CBRS_ALIGN_BOTTOM = 0x8000;
constexpr u32 CBRS_ALIGN_ANY = 0xF000;

class CControlBar;
class QMainWindow;

// What a bar knows of its frame.
class CBarFrame : public CWnd {
  public:
    void ShowControlBar(CControlBar* pBar, bool bShow);

    // Bars are borrowed; they are the frame's own members.
    void AddControlBar(CControlBar& bar) { m_bars.push_back(&bar); }
    void RemoveControlBar(CControlBar& bar) { std::erase(m_bars, &bar); }
    CControlBar* GetControlBar(u32 nID) const;  // null when the frame has none of this id

    // Brings what the bars show up to date.
    void UpdateControlBars();

    // The first control that takes the keys on a bar of the frame; null without any.
    QWidget* GetFirstControl() const;

    // Whether bars of this frame that float are to show.
    virtual bool ShowsFloatingBars() const { return true; }

    // Scrolls the frame, as far as anything around it scrolls, until this part of a docked bar is in view.
    virtual void ScrollToControl(const QWidget& /*control*/) {}

    // The widget that the bars and what lies between them are arranged in.
    virtual QMainWindow* GetBarHost() const = 0;

  private:
    std::vector<CControlBar*> m_bars;
};

class CControlBar : public CWnd {
  public:
    ~CControlBar() override;

    // Whether the user has it on, though the window around it may be minimised.
    bool IsWindowVisible() const override;

    // Asks the frame for the state of everything on the bar that shows one.
    virtual void OnUpdateCmdUI(CBarFrame&) {}

    u32 GetDlgCtrlID() const { return m_nID; }

    // That takes the keys; null on a bar of none.
    virtual QWidget* GetFirstControl() const { return nullptr; }

  protected:
    // Null before the bar is made.
    CBarFrame* GetFrame() const { return m_pFrame; }

    // Makes the widget the bar of this id in the frame.
    void AttachBar(QWidget* pWidget, CBarFrame* pFrame, u32 nID);

  private:
    CBarFrame* m_pFrame = nullptr;  // that it stands in
    u32 m_nID = 0;
};
