#include "framework/qt/wnd/dialog_bar.h"

#include "framework/core/resource.h"
#include "framework/qt/kit/control_strip.h"
#include "framework/qt/kit/docking_bar.h"

#include <QLabel>
#include <QMdiSubWindow>
#include <QMenu>
#include <QShortcut>
#include <QToolBar>

namespace {

// The keys of the labels work in the window that these stand in. While the bar floats that is a frame of its
// own, and these stand for them in the bar's window.
void AddMnemonics(QToolBar& bar) {
    for (const QLabel* const label : bar.findChildren<QLabel*>()) {
        auto* const key = new QShortcut(QKeySequence::mnemonic(label->text()), bar.parentWidget());
        key->setContext(Qt::WidgetWithChildrenShortcut);
        key->setEnabled(false);
        QObject::connect(&bar, &QToolBar::topLevelChanged, key, &QShortcut::setEnabled);
        QObject::connect(key, &QShortcut::activated, label->buddy(), [control = label->buddy()] {
            if (!control->isVisible()) return;
            control->activateWindow();
            control->setFocus(Qt::ShortcutFocusReason);
        });
    }
}

QWidget* FirstControlOf(const QWidget& strip) {
    for (QWidget* const widget : strip.findChildren<QWidget*>())
        if (widget->focusPolicy() & Qt::TabFocus) return widget;
    return nullptr;
}

// Reached with the keys, where a bar is not.
void AddToSystemMenu(const QToolBar& bar, const CBarFrame& frame) {
    const auto* const window = qobject_cast<QMdiSubWindow*>(frame.GetWidget());
    if (!window) return;
    window->systemMenu()->addSeparator();
    window->systemMenu()->addAction(AfxFloatActionOf(bar));
}

}  // namespace

bool CDialogBar::Create(CBarFrame* pFrame, u32 nIDTemplate, u32 nID) {
    const DialogResource* const resource = AfxFindDialog(nIDTemplate);
    if (!resource || !CDockingControlBar::Create(pFrame, nID)) return false;
    const auto scrollTo = [pFrame](const QWidget& control) { pFrame->ScrollToControl(control); };
    QWidget* const strip = AfxCreateControlStrip(*resource, *pFrame, scrollTo);
    AfxSetBarContent(GetBar(), strip);
    m_pFirstControl = FirstControlOf(*strip);
    AddMnemonics(GetBar());
    AddToSystemMenu(GetBar(), *pFrame);
    return true;
}
