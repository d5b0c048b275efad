// The window of one picture. Besides the view it carries the information bar and the bar with the two lists
// through which the user chooses what the view shows; the view fills and reads them.
#pragma once

#include "display/display_image.h"
#include "framework/qt/wnd/combo_box.h"
#include "framework/qt/wnd/dialog_bar.h"
#include "framework/qt/wnd/mdi_child_wnd.h"
#include "framework/qt/wnd/status_bar.h"

class CVistrelView;

class CChildFrame : public CMDIChildWnd {
  public:
    // As the two lists stand now.
    Selection GetSelection();

    void OnRestored() override;

    CStatusBar m_wndInfoBar;
    CDialogBar m_wndLayerBar;
    CComboBox m_wndLayerCombo;
    CComboBox m_wndChannelCombo;

  protected:
    int OnCreate(const CCreateContext& context) override;
    const MessageMap& GetMessageMap() const override;

  private:
    CVistrelView& GetView() const;
    void OnSelChangeLayer();
    void OnSelChangeChannel();
    void OnToggleInfoBar();
    void OnUpdateToggleInfoBar(CCmdUI* pUi);
    void OnToggleLayerBar();
    void OnUpdateToggleLayerBar(CCmdUI* pUi);
    void OnUpdateDisabled(CCmdUI* pUi);
};
