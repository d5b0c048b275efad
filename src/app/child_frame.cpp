#include "app/child_frame.h"

#include "app/resource_ids.h"
#include "app/vistrel_view.h"

const MessageMap& CChildFrame::GetMessageMap() const {
    static constexpr MessageEntry entries[] = {
        OnUpdateCommandUi<&CChildFrame::OnUpdateDisabled>(ID_FILE_SAVE),
        OnUpdateCommandUi<&CChildFrame::OnUpdateDisabled>(ID_FILE_SAVE_AS),
        OnControl<&CChildFrame::OnSelChangeLayer>(CBN_SELCHANGE, IDC_LAYER),
        OnControl<&CChildFrame::OnSelChangeChannel>(CBN_SELCHANGE, IDC_CHANNEL),
        OnCommand<&CChildFrame::OnToggleInfoBar>(ID_TOGGLE_INFO_BAR),
        OnUpdateCommandUi<&CChildFrame::OnUpdateToggleInfoBar>(ID_TOGGLE_INFO_BAR),
        OnCommand<&CChildFrame::OnToggleLayerBar>(ID_TOGGLE_LAYER_BAR),
        OnUpdateCommandUi<&CChildFrame::OnUpdateToggleLayerBar>(ID_TOGGLE_LAYER_BAR),
    };
    static const MessageMap map = {&CMDIChildWnd::GetMessageMap(), entries};
    return map;
}

int CChildFrame::OnCreate(const CCreateContext& context) {
    if (CMDIChildWnd::OnCreate(context) == -1) return -1;

    constexpr u32 indicators[] = {ID_SEPARATOR};
    if (!m_wndInfoBar.Create(this, IDW_INFO_BAR) || !m_wndInfoBar.SetIndicators(indicators)) return -1;
    m_wndInfoBar.SetWindowText("Info Bar");
    u32 id;
    u32 style;
    int width;
    m_wndInfoBar.GetPaneInfo(0, id, style, width);
    m_wndInfoBar.SetPaneInfo(0, ID_INDICATOR_INFO, style, width);

    if (!m_wndLayerBar.Create(this, IDD_LAYER_BAR, IDW_LAYER_BAR)) return -1;
    m_wndLayerBar.SetWindowText("Layers & Channels");
    m_wndLayerBar.EnableDocking(CBRS_ALIGN_TOP | CBRS_ALIGN_BOTTOM);
    m_wndLayerCombo.SubclassDlgItem(IDC_LAYER, &m_wndLayerBar);
    m_wndChannelCombo.SubclassDlgItem(IDC_CHANNEL, &m_wndLayerBar);
    return 0;
}

// Of a list that is never empty.
static u32 SelectedPosition(CComboBox& list) {
    return static_cast<u32>(SendMessageA(&list, CB_GETCURSEL, 0, 0));
}

Selection CChildFrame::GetSelection() {
    return {SelectedPosition(m_wndLayerCombo), SelectedPosition(m_wndChannelCombo)};
}

CVistrelView& CChildFrame::GetView() const {
    return dynamic_cast<CVistrelView&>(*GetActiveView());
}

void CChildFrame::OnRestored() {
    GetView().OnFrameRestored();
}

void CChildFrame::OnSelChangeLayer() {
    GetView().OnLayerChanged(this);
}

void CChildFrame::OnSelChangeChannel() {
    GetView().OnChannelChanged(this);
}

void CChildFrame::OnToggleInfoBar() {
    ShowControlBar(&m_wndInfoBar, !m_wndInfoBar.IsWindowVisible());
}

void CChildFrame::OnUpdateToggleInfoBar(CCmdUI* pUi) {
    pUi->SetCheck(m_wndInfoBar.IsWindowVisible());
}

void CChildFrame::OnToggleLayerBar() {
    ShowControlBar(&m_wndLayerBar, !m_wndLayerBar.IsWindowVisible());
}

void CChildFrame::OnUpdateToggleLayerBar(CCmdUI* pUi) {
    pUi->SetCheck(m_wndLayerBar.IsWindowVisible());
}

// Files are only read.
void CChildFrame::OnUpdateDisabled(CCmdUI* pUi) {
    pUi->Enable(false);
}
