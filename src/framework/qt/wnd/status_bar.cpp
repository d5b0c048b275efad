#include "framework/qt/wnd/status_bar.h"

#include "framework/core/resource.h"
#include "framework/qt/kit/convert.h"
#include "framework/qt/kit/cut_text_tip.h"

#include <QHelpEvent>
#include <QLabel>
#include <QMainWindow>
#include <QPainter>
#include <QStatusBar>
#include <QStyle>

namespace {

void ShowText(QLabel* pLabel, const QString& text) {
    if (text != pLabel->text()) pLabel->setText(text);
}

// A text without room ends in dots, and shows whole in a tip.
class StretchingPane final : public QLabel {
  public:
    using QLabel::QLabel;

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        drawFrame(&painter);
        const QRect room = contentsRect();
        const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, room.width());
        const Qt::Alignment place = QStyle::visualAlignment(layoutDirection(), alignment());
        style()->drawItemText(&painter, room, place, palette(), isEnabled(), shown, foregroundRole());
    }

    bool event(QEvent* pEvent) override {
        if (pEvent->type() != QEvent::ToolTip) return QLabel::event(pEvent);
        const QPoint at = static_cast<QHelpEvent*>(pEvent)->globalPos();
        AfxShowTipOfCutText(*this, at, text(), contentsRect().width());
        return true;
    }
};

class PaneCmdUI final : public CCmdUI {
  public:
    PaneCmdUI(u32 nID, QLabel* pLabel) : CCmdUI(nID), m_pLabel(pLabel) {}

    // An indicator has its own name for a text.
    void Enable(bool bOn) override {
        ShowText(m_pLabel, bOn ? ToDisplayText(AfxLoadString(m_nID)) : QString());
    }
    void SetCheck(int) override {}
    void SetText(const std::string& strText) override { ShowText(m_pLabel, ToDisplayText(strText)); }

  private:
    QLabel* m_pLabel;
};

}  // namespace

bool CStatusBar::Create(CBarFrame* pFrame, u32 nID) {
    auto* const bar = new QStatusBar;
    bar->setSizeGripEnabled(false);
    pFrame->GetBarHost()->setStatusBar(bar);
    AttachBar(bar, pFrame, nID);
    return true;
}

bool CStatusBar::SetIndicators(std::span<const u32> ids) {
    auto* const bar = static_cast<QStatusBar*>(GetWidget());
    for (const u32 id : ids) {
        const bool first = m_panes.empty() && id == ID_SEPARATOR;
        const QString text = ToDisplayText(AfxLoadString(id));
        QLabel* const label = first ? new StretchingPane(text, bar) : new QLabel(text, bar);
        label->setTextFormat(Qt::PlainText);
        // A long text does not widen the window.
        if (first) label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        m_panes.push_back({id, first ? SBPS_STRETCH | SBPS_NOBORDERS : 0, label->sizeHint().width(), label});
        bar->addWidget(label, first ? 1 : 0);
        ApplyWidth(m_panes.back());
    }
    return true;
}

void CStatusBar::ApplyWidth(const Pane& pane) {
    pane.pLabel->setFrameShape(pane.nStyle & SBPS_NOBORDERS ? QFrame::NoFrame : QFrame::Panel);
    pane.pLabel->setFrameShadow(QFrame::Sunken);
    pane.pLabel->setMinimumWidth(pane.cxWidth + 2 * pane.pLabel->frameWidth());
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

void CStatusBar::SetPaneText(int nIndex, const std::string& strText) {
    ShowText(m_panes[static_cast<std::size_t>(nIndex)].pLabel, ToDisplayText(strText));
}

void CStatusBar::OnUpdateCmdUI(CBarFrame& frame) {
    for (const Pane& pane : m_panes) {
        PaneCmdUI ui(pane.nID, pane.pLabel);
        ui.DoUpdate(frame, false);
    }
}
