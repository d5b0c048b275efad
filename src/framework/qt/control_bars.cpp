#include "framework/qt/control_bars.h"

#include "framework/core/resource.h"
#include "framework/qt/convert.h"
#include "framework/qt/dialog_template.h"
#include "framework/qt/frame_wnd.h"

#include <QDockWidget>
#include <QLabel>
#include <QMainWindow>
#include <QStatusBar>

void CControlBar::OnUpdateCmdUI(CFrameWnd&) {}

namespace {

QString ObjectName(u32 nID) {
    return QString::number(nID);
}

class PaneCmdUI final : public CCmdUI {
  public:
    PaneCmdUI(u32 nID, QLabel* pLabel) : CCmdUI(nID), m_pLabel(pLabel) {}

    void Enable(bool bOn) override { m_pLabel->setEnabled(bOn); }
    void SetCheck(int) override {}
    void SetText(const std::string& strText) override {
        const QString text = ToDisplayText(strText);
        if (text != m_pLabel->text()) m_pLabel->setText(text);
    }

  private:
    QLabel* m_pLabel;
};

}  // namespace

bool CStatusBar::Create(CFrameWnd* pFrame, u32 nID) {
    auto* const bar = new QStatusBar;
    bar->setObjectName(ObjectName(nID));
    bar->setSizeGripEnabled(false);
    pFrame->GetBarHost()->setStatusBar(bar);
    Attach(bar, pFrame);
    pFrame->AddControlBar(*this);
    return true;
}

bool CStatusBar::SetIndicators(std::span<const u32> ids) {
    auto* const bar = static_cast<QStatusBar*>(GetWidget());
    for (const u32 id : ids) {
        const bool first = m_panes.empty() && id == ID_SEPARATOR;
        auto* const label = new QLabel(ToDisplayText(AfxLoadString(id)), bar);
        label->setTextFormat(Qt::PlainText);
        m_panes.push_back({id, first ? SBPS_STRETCH | SBPS_NOBORDERS : 0, 0, label});
        bar->addWidget(label, first ? 1 : 0);
        ApplyWidth(m_panes.back());
    }
    return true;
}

void CStatusBar::ApplyWidth(const Pane& pane) {
    pane.pLabel->setMinimumWidth(pane.cxWidth);
    pane.pLabel->setFrameShape(pane.nStyle & SBPS_NOBORDERS ? QFrame::NoFrame : QFrame::Panel);
    pane.pLabel->setFrameShadow(QFrame::Sunken);
}

void CStatusBar::GetPaneInfo(int nIndex, u32& nID, u32& nStyle, int& cxWidth) const {
    const Pane& pane = m_panes[static_cast<std::size_t>(nIndex)];
    nID = pane.nID;
    nStyle = pane.nStyle;
    cxWidth = pane.cxWidth;
}

void CStatusBar::SetPaneInfo(int nIndex, u32 nID, u32 nStyle, int cxWidth) {
    Pane& pane = m_panes[static_cast<std::size_t>(nIndex)];
    pane = {nID, nStyle, cxWidth, pane.pLabel};
    ApplyWidth(pane);
}

std::string CStatusBar::GetPaneText(int nIndex) const {
    return m_panes[static_cast<std::size_t>(nIndex)].pLabel->text().toStdString();
}

void CStatusBar::OnUpdateCmdUI(CFrameWnd& frame) {
    for (const Pane& pane : m_panes) {
        PaneCmdUI ui(pane.nID, pane.pLabel);
        ui.DoUpdate(frame, false);
    }
}

namespace {

class DialogWidget final : public QWidget {
  public:
    DialogWidget(QWidget* pParent, CFrameWnd& frame, const DialogResource& resource) : QWidget(pParent) {
        m_sizeHint = AfxCreateControls(*this, resource, frame);
        setFixedHeight(m_sizeHint.height());
    }

    QSize sizeHint() const override { return m_sizeHint; }

  private:
    QSize m_sizeHint;
};

}  // namespace

bool CDialogBar::Create(CFrameWnd* pFrame, u32 nIDTemplate, u32 nID) {
    const DialogResource* const resource = AfxFindDialog(nIDTemplate);
    if (!resource) return false;
    auto* const bar = new QDockWidget;
    bar->setObjectName(ObjectName(nID));
    bar->setFeatures(QDockWidget::NoDockWidgetFeatures);
    bar->setTitleBarWidget(new QWidget(bar));
    bar->setWidget(new DialogWidget(bar, *pFrame, *resource));
    pFrame->GetBarHost()->addDockWidget(Qt::TopDockWidgetArea, bar);
    Attach(bar, pFrame);
    pFrame->AddControlBar(*this);
    return true;
}

void CDialogBar::EnableDocking(u32 nDockStyle) {
    Qt::DockWidgetAreas areas = Qt::NoDockWidgetArea;
    if (nDockStyle & CBRS_ALIGN_TOP) areas |= Qt::TopDockWidgetArea;
    if (nDockStyle & CBRS_ALIGN_BOTTOM) areas |= Qt::BottomDockWidgetArea;
    static_cast<QDockWidget*>(GetWidget())->setAllowedAreas(areas);
}

QWidget* CDialogBar::GetDlgItem(u32 nID) const {
    return AfxFindControl(*GetWidget(), nID);
}
