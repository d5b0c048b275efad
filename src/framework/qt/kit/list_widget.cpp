#include "framework/qt/kit/list_widget.h"

#include "framework/core/cmd_target.h"
#include "framework/core/guarded_call.h"
#include "framework/qt/kit/convert.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QHelpEvent>
#include <QStyleOption>
#include <QStylePainter>
#include <QToolTip>
#include <QWheelEvent>

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

}  // namespace

QComboBox* AfxCreateListWidget(QWidget* pParent, CCmdTarget& target, u32 nID) {
    auto* const list = new ListWidget(pParent);
    QObject::connect(list, &QComboBox::currentIndexChanged, [&target, nID] {
        AfxGuardedCall([&] { target.OnCmdMsg(nID, CBN_SELCHANGE, nullptr); });
    });
    return list;
}
