// The bar along the lower edge of a frame, divided into panes.
#pragma once

#include "framework/qt/wnd/control_bar.h"

#include <span>

class QLabel;

constexpr u32 ID_SEPARATOR = 0;
constexpr u32 SBPS_NOBORDERS = 0x100;
constexpr u32 SBPS_STRETCH = 0x8000000;

class CStatusBar : public CControlBar {
  public:
    // At the frame's bottom edge, without panes.
    bool Create(CBarFrame* pFrame, u32 nID);

    // One pane for each id. A separator that comes first stretches over the bar, without borders.
    bool SetIndicators(std::span<const u32> ids);

    void GetPaneInfo(int nIndex, u32& nID, u32& nStyle, int& cxWidth) const;
    void SetPaneInfo(int nIndex, u32 nID, u32 nStyle, int cxWidth);
    void SetPaneText(int nIndex, const std::string& strText);

    void OnUpdateCmdUI(CBarFrame& frame) override;

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
