#include "framework/qt/wnd/combo_box.h"

#include "framework/qt/kit/convert.h"
#include "framework/qt/kit/dialog_template.h"

#include <QComboBox>
#include <QSignalBlocker>

bool CComboBox::SubclassDlgItem(u32 nID, CWnd* pParent) {
    auto* const list = qobject_cast<QComboBox*>(AfxFindControl(*pParent->GetWidget(), nID));
    if (!list) return false;
    Attach(list, pParent);
    return true;
}

i64 CComboBox::WindowProc(u32 nMessage, u64 wParam, i64 lParam) {
    auto* const list = static_cast<QComboBox*>(GetWidget());
    // Only a choice of the user's is a notification.
    const QSignalBlocker blocker(list);
    const int position = static_cast<int>(wParam);
    switch (nMessage) {
        case CB_RESETCONTENT:
            list->clear();
            return 0;
        case CB_ADDSTRING:
            list->addItem(ToDisplayText(reinterpret_cast<const char*>(lParam)));
            return list->count() - 1;
        case CB_SETCURSEL:
            list->setCurrentIndex(position);
            list->update();
            return list->currentIndex();
        case CB_GETCURSEL:
            return list->currentIndex();
        default:
            return CWnd::WindowProc(nMessage, wParam, lParam);
    }
}
