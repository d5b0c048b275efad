#include "framework/qt/wnd/menu_bar.h"

#include "framework/core/cmd_target.h"
#include "framework/core/guarded_call.h"
#include "framework/qt/kit/convert.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QProxyStyle>
#include <QShortcut>
#include <QStatusTipEvent>
#include <QStyleOption>

namespace {

class ActionCmdUI final : public CCmdUI {
  public:
    explicit ActionCmdUI(QAction& action) : CCmdUI(action.data().toUInt()), m_action(action) {}

    void Enable(bool bOn) override { m_action.setEnabled(bOn); }
    void SetCheck(int nCheck) override {
        m_action.setCheckable(true);
        m_action.setChecked(nCheck != 0);
    }
    void SetText(const std::string& strText) override {
        m_action.setText(ToDisplayText(strText));
        m_action.setVisible(!strText.empty());
    }
    void SetPrompt(const std::string& strText) override { m_action.setStatusTip(ToDisplayText(strText)); }

  private:
    QAction& m_action;
};

// Of a command that no item stands for.
class EnabledCmdUI final : public CCmdUI {
  public:
    using CCmdUI::CCmdUI;

    void Enable(bool bOn) override { m_bEnabled = bOn; }
    void SetCheck(int) override {}
    void SetText(const std::string&) override {}

    bool m_bEnabled = true;
};

void UpdateMenu(QMenu& menu, CCmdTarget& target) {
    for (QAction* const action : menu.actions()) {
        if (action->isSeparator()) continue;
        action->setEnabled(true);
        ActionCmdUI ui(*action);
        ui.DoUpdate(target, true);
    }
}

void AddItem(QMenu& menu, u32 nID, const QString& text, CCmdTarget& target) {
    QAction* const action = menu.addAction(text);
    action->setData(nID);
    action->setStatusTip(ToDisplayText(AfxLoadPrompt(nID)));
    QObject::connect(action, &QAction::triggered, &menu,
                     [&target, nID] { AfxGuardedCall([&] { target.OnCmdMsg(nID, CN_COMMAND, nullptr); }); });
}

// A grey item can be gone over like any other, so that it says what it would do.
class MenuStyle final : public QProxyStyle {
  public:
    int styleHint(StyleHint hint, const QStyleOption* pOption, const QWidget* pWidget,
                  QStyleHintReturn* pReturn) const override {
        if (hint == SH_Menu_AllowActiveAndDisabled) return 1;
        return QProxyStyle::styleHint(hint, pOption, pWidget, pReturn);
    }

    // The one that is gone over has a frame then; the styles mark no others than those that can be chosen.
    void drawControl(ControlElement element, const QStyleOption* pOption, QPainter* pPainter,
                     const QWidget* pWidget) const override {
        QProxyStyle::drawControl(element, pOption, pPainter, pWidget);
        const bool isCurrent = pOption->state & State_Selected && !(pOption->state & State_Enabled);
        if (element != CE_MenuItem || !isCurrent) return;
        QStyleOptionFocusRect frame;
        frame.QStyleOption::operator=(*pOption);
        frame.state |= State_KeyboardFocusChange | State_HasFocus;
        proxy()->drawPrimitive(PE_FrameFocusRect, &frame, pPainter, pWidget);
    }

    // One for all menus; it goes with the application object.
    static QStyle* Get() {
        static QPointer<MenuStyle> style;
        if (!style) {
            style = new MenuStyle;
            style->setParent(qApp);
        }
        return style;
    }
};

void FillMenu(QMenu& menu, const PopupResource& popup, CCmdTarget& target) {
    for (const MenuItemResource& item : popup.items) {
        if (item.nID == 0) {
            menu.addSeparator();
            continue;
        }
        // The tab after a text divides it from the name of its accelerator, as the toolkit has it too.
        AddItem(menu, item.nID, QString::fromUtf8(item.pszText), target);
        // One item of the table stands for all recent files; the others show once they have a text.
        if (item.nID != ID_FILE_MRU_FILE1) continue;
        for (u32 id = item.nID + 1; id <= ID_FILE_MRU_FILE9; ++id) AddItem(menu, id, {}, target);
    }
    QObject::connect(&menu, &QMenu::aboutToShow, &menu,
                     [&menu, &target] { AfxGuardedCall([&] { UpdateMenu(menu, target); }); });
    menu.setStyle(MenuStyle::Get());
}

void AddAccelerator(QWidget& window, CCmdTarget& target, const AcceleratorResource& accelerator) {
    auto* const shortcut = new QShortcut(QKeySequence(QString::fromLatin1(accelerator.pszKeys)), &window);
    QObject::connect(shortcut, &QShortcut::activated, &window, [&target, nID = accelerator.nID] {
        AfxGuardedCall([&] {
            if (AfxIsCommandEnabled(target, nID)) target.OnCmdMsg(nID, CN_COMMAND, nullptr);
        });
    });
}

}  // namespace

void AfxFillMenuBar(QMenuBar& bar, const MenuResource& menu, CCmdTarget& target) {
    // The old menus may be on the stack of the event that leads here.
    for (QAction* const action : bar.actions()) action->menu()->deleteLater();
    bar.clear();
    for (const PopupResource& popup : menu.popups)
        FillMenu(*bar.addMenu(QString::fromUtf8(popup.pszText)), popup, target);
}

void AfxTrackPopupMenu(const QWidget& owner, const MenuResource& menu, const QPoint& place,
                       CCmdTarget& target) {
    // It goes no later than what it was opened for. Only the menus of a bar say by themselves what their
    // items do.
    QWidget* const window = owner.window();
    auto* const popup = new QMenu(window);
    popup->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(popup, &QMenu::hovered, window,
                     [window](QAction* pAction) { pAction->showStatusText(window); });
    QObject::connect(popup, &QMenu::aboutToHide, window, [window] {
        QStatusTipEvent nothing{QString()};
        QApplication::sendEvent(window, &nothing);
    });
    // Its own item can be what has led there. The window, of which a part is gone already, hears no more of
    // it.
    QObject::connect(&owner, &QObject::destroyed, popup, [popup, window] {
        popup->disconnect(window);
        popup->hide();
        popup->deleteLater();
    });
    for (const PopupResource& items : menu.popups) FillMenu(*popup, items, target);
    popup->popup(place);
}

QMenu* AfxFindPopup(const QMenuBar& bar, u32 nID) {
    for (const QAction* const title : bar.actions())
        for (const QAction* const action : title->menu()->actions())
            if (action->data().toUInt() == nID) return title->menu();
    return nullptr;
}

void AfxAddAccelerators(QWidget& window, CCmdTarget& target) {
    for (const AcceleratorTable& table : AfxGetAccelerators())
        for (const AcceleratorResource& accelerator : table.keys) AddAccelerator(window, target, accelerator);
}

bool AfxIsCommandEnabled(CCmdTarget& target, u32 nID) {
    EnabledCmdUI ui(nID);
    ui.DoUpdate(target, true);
    return ui.m_bEnabled;
}
