// Bars of a frame: they live and die with it.
#pragma once

#include "framework/qt/wnd/wnd.h"

#include <span>

class CFrameWnd;
class QLabel;

constexpr u32 CBRS_ALIGN_LEFT = 0x1000;
constexpr u32 CBRS_ALIGN_TOP = 0x2000;
constexpr u32 CBRS_ALIGN_RIGHT = 0x4000;
constexpr u32 CBRS_ALIGN_BOTTOM = 0x8000;
constexpr u32 CBRS_ALIGN_ANY = 0xF000;

class CControlBar : public CWnd {
  public:
    ~CControlBar() override;

    // Whether the user has it on, though the window around it may be minimised.
    bool IsWindowVisible() const override;

    // Asks the frame for the state of everything on the bar that shows one.
    virtual void OnUpdateCmdUI(CFrameWnd& frame);

    u32 GetDlgCtrlID() const { return m_nID; }

  protected:
    // Makes the widget the bar of this id in the frame.
    void AttachBar(QWidget* pWidget, CFrameWnd* pFrame, u32 nID);

  private:
    u32 m_nID = 0;
};

constexpr u32 ID_SEPARATOR = 0;
constexpr u32 SBPS_NOBORDERS = 0x100;
constexpr u32 SBPS_STRETCH = 0x8000000;

class CStatusBar : public CControlBar {
  public:
    // At the frame's bottom edge, without panes.
    bool Create(CFrameWnd* pFrame, u32 nID);

    // One pane for each id. A separator that comes first stretches over the bar, without borders.
    bool SetIndicators(std::span<const u32> ids);

    void GetPaneInfo(int nIndex, u32& nID, u32& nStyle, int& cxWidth) const;
    void SetPaneInfo(int nIndex, u32 nID, u32 nStyle, int cxWidth);
    void SetPaneText(int nIndex, const std::string& strText);
    std::string GetPaneText(int nIndex) const;  // UTF-8, as it shows

    void OnUpdateCmdUI(CFrameWnd& frame) override;

  private:
    struct Pane {
        u32 nID;
        u32 nStyle;
        int cxWidth;     // pixels, at least; 0 where the pane stretches
        QLabel* pLabel;  // the bar widget's; empty while the pane is disabled
    };

    void ApplyWidth(const Pane& pane);

    std::vector<Pane> m_panes;
};
