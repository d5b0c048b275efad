#include "framework/qt/kit/button_rows.h"

#include <QAction>
#include <QToolBar>
#include <QToolButton>

#include <algorithm>
#include <vector>

namespace {

// Pixels that stand for a separator.
constexpr int GAP = 8;

class ButtonRows final : public QWidget {
  public:
    explicit ButtonRows(const QToolBar& bar) {
        for (QAction* const action : bar.actions()) m_items.push_back(MakeItem(bar, *action));
        QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
        policy.setHeightForWidth(true);
        setSizePolicy(policy);
    }

    QSize sizeHint() const override {
        int width = 0;
        for (const QToolButton* const item : m_items) width += item ? item->sizeHint().width() : GAP;
        return {width, heightForWidth(width)};
    }

    QSize minimumSizeHint() const override {
        QSize size;
        for (const QToolButton* const item : m_items)
            if (item) size = size.expandedTo(item->sizeHint());
        return size;
    }

    int heightForWidth(int nWidth) const override {
        int bottom = 0;
        Flow(nWidth,
             [&](QToolButton&, const QRect& place) { bottom = std::max(bottom, place.bottom() + 1); });
        return bottom;
    }

  protected:
    void resizeEvent(QResizeEvent*) override {
        Flow(width(), [](QToolButton& button, const QRect& place) { button.setGeometry(place); });
    }

  private:
    QToolButton* MakeItem(const QToolBar& bar, QAction& action) {
        if (action.isSeparator()) return nullptr;
        auto* const button = new QToolButton(this);
        button->setDefaultAction(&action);
        button->setIconSize(bar.iconSize());
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::NoFocus);
        return button;
    }

    template <typename Place>
    void Flow(int nWidth, Place place) const {
        const QSize size = minimumSizeHint();
        QPoint at(0, 0);
        for (QToolButton* const item : m_items) {
            if (!item) {
                at.rx() += at.x() > 0 ? GAP : 0;
                continue;
            }
            if (at.x() > 0 && at.x() + size.width() > nWidth) at = QPoint(0, at.y() + size.height());
            place(*item, QRect(at, size));
            at.rx() += size.width();
        }
    }

    std::vector<QToolButton*> m_items;  // null for a separator
};

}  // namespace

QWidget* AfxCreateButtonRows(const QToolBar& bar) {
    return new ButtonRows(bar);
}
