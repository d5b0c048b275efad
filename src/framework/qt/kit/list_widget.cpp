#include "framework/qt/kit/list_widget.h"

#include "framework/core/cmd_target.h"
#include "framework/qt/kit/cut_text_tip.h"
#include "framework/qt/kit/report_later.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QProxyStyle>
#include <QStyleOption>
#include <QStylePainter>
#include <QStyledItemDelegate>
#include <QWheelEvent>

#include <algorithm>

namespace {

// Drops a list down below itself, with a scroll bar, where the style would lay it over the whole screen.
class ListStyle final : public QProxyStyle {
  public:
    int styleHint(StyleHint hint, const QStyleOption* pOption, const QWidget* pWidget,
                  QStyleHintReturn* pData) const override {
        if (hint == SH_ComboBox_Popup) return 0;
        return QProxyStyle::styleHint(hint, pOption, pWidget, pData);
    }
};

// Entries of a list that is dropped down are no wider than it, so that long names are cut as in the list
// itself.
class EntryDelegate final : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        return {1, QStyledItemDelegate::sizeHint(option, index).height()};
    }
};

class ListWidget final : public QComboBox {
  public:
    ListWidget(QWidget* pParent, int nDropHeight) : QComboBox(pParent), m_nDropHeight(nDropHeight) {
        auto* const dropping = new ListStyle;
        dropping->setParent(this);
        setStyle(dropping);
        setFocusPolicy(Qt::StrongFocus);
        // Entries of any length neither widen the list nor the window around it.
        setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        setMinimumContentsLength(1);
        // The number at the end of a name tells it from its neighbours.
        view()->setItemDelegate(new EntryDelegate(this));
        view()->setTextElideMode(Qt::ElideMiddle);
        view()->installEventFilter(this);
        view()->viewport()->installEventFilter(this);
    }

    void showPopup() override {
        const int row = std::max(view()->sizeHintForRow(0), 1);
        setMaxVisibleItems(std::max(m_nDropHeight / row, 1));
        QComboBox::showPopup();
    }

    // Of the list that is dropped down, and of an entry in it.
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override {
        if (pWatched == view()) return FilterKey(*pEvent) || QComboBox::eventFilter(pWatched, pEvent);
        if (pEvent->type() != QEvent::ToolTip) return QComboBox::eventFilter(pWatched, pEvent);
        const auto& help = *static_cast<QHelpEvent*>(pEvent);
        const QModelIndex entry = view()->indexAt(help.pos());
        AfxShowTipOfCutText(*this, help.globalPos(), entry.data().toString(),
                            view()->visualRect(entry).width());
        return true;
    }

  protected:
    bool event(QEvent* pEvent) override {
        if (pEvent->type() != QEvent::ToolTip) return QComboBox::event(pEvent);
        AfxShowTipOfCutText(*this, static_cast<QHelpEvent*>(pEvent)->globalPos(), currentText(),
                            GetTextWidth());
        return true;
    }

    void paintEvent(QPaintEvent*) override {
        QStyleOptionComboBox option;
        initStyleOption(&option);
        option.currentText = fontMetrics().elidedText(currentText(), Qt::ElideMiddle, GetTextWidth());
        QStylePainter painter(this);
        painter.drawComplexControl(QStyle::CC_ComboBox, option);
        painter.drawControl(QStyle::CE_ComboBoxLabel, option);
    }

    // A list that is only chosen from has no menu of its own; that of the bar around it comes up.
    void contextMenuEvent(QContextMenuEvent* pEvent) override { pEvent->ignore(); }

    // The wheel scrolls what lies under the pointer; only a list with the focus takes it as a choice.
    void wheelEvent(QWheelEvent* pEvent) override {
        if (hasFocus())
            QComboBox::wheelEvent(pEvent);
        else
            pEvent->ignore();
    }

  private:
    // By itself the list would close when asked for shortcuts, and the key that follows close the panel that
    // the list stands on.
    bool FilterKey(QEvent& event) {
        const bool isKey = event.type() == QEvent::KeyPress || event.type() == QEvent::ShortcutOverride;
        if (!isKey || !static_cast<QKeyEvent&>(event).matches(QKeySequence::Cancel)) return false;
        if (event.type() == QEvent::KeyPress) hidePopup();
        event.accept();
        return true;
    }

    // Between the list's edge and the text inside it, in pixels, on each side.
    static constexpr int TEXT_MARGIN = 2;

    int GetTextWidth() const {
        QStyleOptionComboBox option;
        initStyleOption(&option);
        const QRect field =
            style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
        return field.width() - 2 * TEXT_MARGIN;
    }

    int m_nDropHeight;  // pixels, of the list dropped down
};

}  // namespace

QComboBox* AfxCreateListWidget(QWidget* pParent, CCmdTarget& target, u32 nID, int nDropHeight) {
    auto* const list = new ListWidget(pParent, nDropHeight);
    QObject::connect(list, &QComboBox::currentIndexChanged, [&target, nID] {
        // No box may be opened from inside the list, which can be gone before the box is.
        try {
            target.OnCmdMsg(nID, CBN_SELCHANGE, nullptr);
        } catch (...) {
            AfxReportLater(std::current_exception());
        }
    });
    return list;
}
