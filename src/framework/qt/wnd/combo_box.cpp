#include "framework/qt/wnd/combo_box.h"

#include "framework/core/guarded_call.h"
#include "framework/qt/kit/convert.h"
#include "framework/qt/wnd/dialog_bar.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QHelpEvent>
#include <QSignalBlocker>
#include <QStyleOption>
#include <QStylePainter>
#include <QToolTip>
#include <QWheelEvent>

#include <cstring>

namespace {

class ListWidget final : public QComboBox {
  public:
    explicit ListWidget(QWidget* pParent) : QComboBox(pParent) {
        setFocusPolicy(Qt::StrongFocus);
        // Entries of any length neither widen the list nor the window around it.
        setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        setMinimumContentsLength(1);
        view()->viewport()->installEventFilter(this);
    }

    // Of an entry in the list that is dropped down.
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override {
        if (pEvent->type() != QEvent::ToolTip) return QComboBox::eventFilter(pWatched, pEvent);
        const auto& help = *static_cast<QHelpEvent*>(pEvent);
        const QModelIndex entry = view()->indexAt(help.pos());
        ShowTip(help, entry.data().toString(), view()->visualRect(entry).width());
        return true;
    }

  protected:
    bool event(QEvent* pEvent) override {
        if (pEvent->type() != QEvent::ToolTip) return QComboBox::event(pEvent);
        ShowTip(*static_cast<QHelpEvent*>(pEvent), currentText(), GetTextWidth());
        return true;
    }

    void paintEvent(QPaintEvent*) override {
        QStyleOptionComboBox option;
        initStyleOption(&option);
        option.currentText = fontMetrics().elidedText(currentText(), Qt::ElideRight, GetTextWidth());
        QStylePainter painter(this);
        painter.drawComplexControl(QStyle::CC_ComboBox, option);
        painter.drawControl(QStyle::CE_ComboBoxLabel, option);
    }

    // The wheel scrolls what lies under the pointer; only a list with the focus takes it as a choice.
    void wheelEvent(QWheelEvent* pEvent) override {
        if (hasFocus())
            QComboBox::wheelEvent(pEvent);
        else
            pEvent->ignore();
    }

  private:
    // Between the list's edge and the text inside it, in pixels, on each side.
    static constexpr int TEXT_MARGIN = 2;

    int GetTextWidth() const {
        QStyleOptionComboBox option;
        initStyleOption(&option);
        const QRect field =
            style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
        return field.width() - 2 * TEXT_MARGIN;
    }

    // A name that has not enough room shows whole in a tip.
    void ShowTip(const QHelpEvent& help, const QString& text, int nRoom) {
        const bool isCut = fontMetrics().horizontalAdvance(text) > nRoom;
        QToolTip::showText(help.globalPos(), isCut ? ToPlainTip(text) : QString(), this);
    }
};

i64 CopyText(const QByteArray& text, i64 lParam) {
    std::memcpy(reinterpret_cast<char*>(lParam), text.constData(), static_cast<std::size_t>(text.size()) + 1);
    return text.size();
}

}  // namespace

QComboBox* AfxCreateComboBox(QWidget* pParent, CCmdTarget& target, u32 nID) {
    auto* const list = new ListWidget(pParent);
    QObject::connect(list, &QComboBox::currentIndexChanged, [&target, nID] {
        AfxGuardedCall([&] { target.OnCmdMsg(nID, CBN_SELCHANGE, nullptr); });
    });
    return list;
}

bool CComboBox::SubclassDlgItem(u32 nID, CDialogBar* pBar) {
    QWidget* const list = pBar->GetDlgItem(nID);
    if (!list) return false;
    Attach(list, pBar);
    return true;
}

i64 CComboBox::WindowProc(u32 nMessage, u64 wParam, i64 lParam) {
    auto* const list = static_cast<QComboBox*>(GetWidget());
    if (nMessage == WM_KEYDOWN) return CWnd::WindowProc(nMessage, wParam, lParam);
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
        case CB_GETCOUNT:
            return list->count();
        case CB_GETLBTEXTLEN:
            return list->itemText(position).toUtf8().size();
        case CB_GETLBTEXT:
            return CopyText(list->itemText(position).toUtf8(), lParam);
        default:
            return CWnd::WindowProc(nMessage, wParam, lParam);
    }
}
