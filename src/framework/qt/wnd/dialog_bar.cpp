#include "framework/qt/wnd/dialog_bar.h"

#include "framework/core/resource.h"
#include "framework/qt/kit/dialog_template.h"
#include "framework/qt/kit/docking_bar.h"

#include <QDockWidget>
#include <QLabel>
#include <QMouseEvent>
#include <QShortcut>

namespace {

class DialogWidget final : public QWidget {
  public:
    DialogWidget(QDockWidget& bar, CBarFrame& frame, const DialogResource& resource)
        : QWidget(&bar), m_bar(bar) {
        m_sizeHint = AfxCreateControls(*this, resource, frame);
        setFixedHeight(m_sizeHint.height());
    }

    QSize sizeHint() const override { return m_sizeHint; }

  protected:
    // Anywhere between the controls, not on the grip alone, which is small.
    void mouseDoubleClickEvent(QMouseEvent*) override { AfxToggleFloating(m_bar); }

  private:
    QDockWidget& m_bar;
    QSize m_sizeHint;
};

// The keys of the labels work in the window that these stand in. While the bar floats that is the bar itself,
// and these stand for them in its frame.
void AddMnemonics(QDockWidget& bar) {
    for (const QLabel* const label : bar.findChildren<QLabel*>()) {
        auto* const key = new QShortcut(QKeySequence::mnemonic(label->text()), bar.parentWidget());
        key->setContext(Qt::WidgetWithChildrenShortcut);
        key->setEnabled(false);
        QObject::connect(&bar, &QDockWidget::topLevelChanged, key, &QShortcut::setEnabled);
        QObject::connect(key, &QShortcut::activated, label->buddy(), [control = label->buddy()] {
            if (!control->isVisible()) return;
            control->activateWindow();
            control->setFocus(Qt::ShortcutFocusReason);
        });
    }
}

QDockWidget* DockOf(const CWnd& bar) {
    return static_cast<QDockWidget*>(bar.GetWidget());
}

}  // namespace

bool CDialogBar::Create(CBarFrame* pFrame, u32 nIDTemplate, u32 nID) {
    const DialogResource* const resource = AfxFindDialog(nIDTemplate);
    if (!resource) return false;
    QDockWidget* const bar = AfxCreateDockingBar(*pFrame->GetBarHost());
    bar->setWidget(new DialogWidget(*bar, *pFrame, *resource));
    AttachBar(bar, pFrame, nID);
    AddMnemonics(*bar);
    return true;
}

void CDialogBar::EnableDocking(u32 nDockStyle) {
    Qt::DockWidgetAreas areas = Qt::NoDockWidgetArea;
    if (nDockStyle & CBRS_ALIGN_TOP) areas |= Qt::TopDockWidgetArea;
    if (nDockStyle & CBRS_ALIGN_BOTTOM) areas |= Qt::BottomDockWidgetArea;
    DockOf(*this)->setAllowedAreas(areas);
}

void CDialogBar::OnUpdateCmdUI(CBarFrame& frame) {
    QDockWidget* const bar = DockOf(*this);
    const bool away = bar->isFloating() && !frame.ShowsFloatingBars();
    if (away ? !bar->isVisible() : !m_bAway) return;
    m_bAway = away;
    bar->setVisible(!away);
}

bool CDialogBar::IsWindowVisible() const {
    return m_bAway || CControlBar::IsWindowVisible();
}

void CDialogBar::ShowWindow(bool bShow) {
    m_bAway = false;
    CControlBar::ShowWindow(bShow);
}
