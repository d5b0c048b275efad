#include "framework/qt/kit/control_strip.h"

#include "framework/qt/kit/dialog_template.h"

#include <QEvent>
#include <QFocusEvent>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QMainWindow>
#include <QScreen>
#include <QStyleOptionComboBox>
#include <QToolButton>

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

namespace {

// What a list shows at least of an entry.
constexpr int LEAST_LETTERS = 6;

// Pixels that the mouse can still hit; in less there is no button.
constexpr int LEAST_BUTTON = 12;

// A control with its label, and where the template has them.
struct Field {
    QLabel* label;
    QWidget* control;
    QRect labelPlace;
    QRect place;
    int leastWidth;

    int Slack() const { return std::max(place.width() - leastWidth, 0); }
};

int LeastWidthOf(const QWidget& control) {
    QStyleOptionComboBox option;
    option.initFrom(&control);
    const QFontMetrics metrics = control.fontMetrics();
    const QSize text(metrics.horizontalAdvance(QString(LEAST_LETTERS, QLatin1Char('n'))), metrics.height());
    return control.style()->sizeFromContents(QStyle::CT_ComboBox, &option, text, &control).width();
}

bool IsByKey(Qt::FocusReason reason) {
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason;
}

class ControlStrip final : public QWidget {
  public:
    ControlStrip(const DialogResource& resource, CCmdTarget& target,
                 std::function<void(const QWidget&)> scrollTo)
        : m_scrollTo(std::move(scrollTo)),
          m_pControls(new QWidget(this)),
          m_pMore(new QToolButton(this)),
          m_pPanel(new QFrame(this, Qt::Popup)) {
        m_size = AfxCreateControls(*m_pControls, resource, target);
        for (auto* const label : m_pControls->findChildren<QLabel*>()) AddField(*label, *label->buddy());
        setFixedHeight(m_size.height());

        m_pMore->setIcon(style()->standardIcon(QStyle::SP_ToolBarHorizontalExtensionButton));
        m_pMore->setAutoRaise(true);
        m_pMore->setFocusPolicy(Qt::NoFocus);
        m_pMore->setAccessibleName(tr("More"));
        connect(m_pMore, &QToolButton::clicked, this, [this] { Open(*m_fields.front().control); });

        m_pPanel->setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
        m_pPanel->installEventFilter(this);
    }
    ~ControlStrip() override { m_pPanel->removeEventFilter(this); }

    QSize sizeHint() const override { return m_size; }
    QSize minimumSizeHint() const override { return {LEAST_BUTTON, m_size.height()}; }

  protected:
    void resizeEvent(QResizeEvent*) override { Arrange(); }

    // Of the panel, and of the controls.
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override {
        if (pWatched == m_pPanel)
            FilterPanel(*pEvent);
        else
            FilterControl(static_cast<QWidget&>(*pWatched), *pEvent);
        return QWidget::eventFilter(pWatched, pEvent);
    }

  private:
    void AddField(QLabel& label, QWidget& control) {
        m_fields.push_back({&label, &control, label.geometry(), control.geometry(), LeastWidthOf(control)});
        control.installEventFilter(this);
    }

    // A control that loses its room keeps the keys, since what is chosen in it can be what takes the room;
    // the next key brings it back into sight.
    void FilterControl(QWidget& control, const QEvent& event) {
        const bool isGivenKeys =
            event.type() == QEvent::FocusIn && IsByKey(static_cast<const QFocusEvent&>(event).reason());
        const bool isUnseenKey = event.type() == QEvent::KeyPress && !HasRoom(control) &&
                                 IsForControl(static_cast<const QKeyEvent&>(event));
        if (isGivenKeys || isUnseenKey) RevealLater(control);
    }

    bool HasRoom(const QWidget& control) const {
        const auto isIt = [&](const Field& field) { return field.control == &control; };
        return std::ranges::any_of(std::span(m_fields).first(m_shown), isIt);
    }

    // A window that is hidden gives the keys to what is next to them in it, as if by a key, before another
    // one takes them.
    void RevealLater(QWidget& control) {
        const auto reveal = [this, pControl = &control] {
            if (pControl->hasFocus() && pControl->isVisible()) Reveal(*pControl);
        };
        QMetaObject::invokeMethod(this, reveal, Qt::QueuedConnection);
    }

    void Reveal(QWidget& control) {
        const bool hasRoom = HasRoom(control);
        m_scrollTo(hasRoom ? control : *this);
        if (!hasRoom) Open(control);
    }

    void FilterPanel(const QEvent& event) {
        if (event.type() == QEvent::Hide) TakeBack();
        if (IsForTheWindow(event)) m_pPanel->close();
    }

    // The panel would keep the keys of the window from it. One with Ctrl or Alt is carried out once the panel
    // has closed; a function key only leads back to the view.
    bool IsForTheWindow(const QEvent& event) const {
        if (event.type() == QEvent::ShortcutOverride)
            return IsShortcutOfWindow(static_cast<const QKeyEvent&>(event));
        if (event.type() != QEvent::KeyPress) return false;
        const int key = static_cast<const QKeyEvent&>(event).key();
        return key >= Qt::Key_F1 && key <= Qt::Key_F35;
    }

    static bool IsHeld(const QKeyEvent& key) {
        return key.key() >= Qt::Key_Shift && key.key() <= Qt::Key_ScrollLock;
    }
    static bool IsShortcut(const QKeyEvent& key) {
        return key.modifiers() & (Qt::ControlModifier | Qt::AltModifier);
    }
    static bool IsForControl(const QKeyEvent& key) { return !IsHeld(key) && !IsShortcut(key); }

    bool IsShortcutOfWindow(const QKeyEvent& key) const {
        const bool isArrow = key.key() >= Qt::Key_Left && key.key() <= Qt::Key_Down;
        const auto isOwn = [&](const Field& field) {
            return QKeySequence::mnemonic(field.label->text()) == QKeySequence(key.keyCombination());
        };
        return IsShortcut(key) && !IsHeld(key) && !isArrow && std::ranges::none_of(m_fields, isOwn);
    }

    bool IsOpen() const { return m_pControls->parentWidget() == m_pPanel; }

    // Fields from the first on, with what stands around them, at the template's places.
    int WidthOf(std::size_t nCount) const {
        if (nCount == 0) return 0;
        const int margin = m_size.width() - (m_fields.back().place.right() + 1);
        return m_fields[nCount - 1].place.right() + 1 + margin;
    }
    int SlackOf(std::size_t nCount) const {
        int slack = 0;
        for (std::size_t i = 0; i < nCount; ++i) slack += m_fields[i].Slack();
        return slack;
    }
    int LeastWidthOfAll() const { return WidthOf(m_fields.size()) - SlackOf(m_fields.size()); }

    int ButtonWidth() const {
        return std::max(style()->pixelMetric(QStyle::PM_ToolBarExtensionExtent, nullptr, m_pMore),
                        m_pMore->iconSize().width());
    }

    void Arrange() {
        const bool isWide = width() >= LeastWidthOfAll();
        const int button = isWide ? 0 : std::min(ButtonWidth(), width());
        m_pMore->setVisible(!isWide && button >= LEAST_BUTTON);
        m_pMore->setGeometry(width() - button, 0, button, height());
        if (IsOpen()) return;
        const int room = width() - button;
        m_shown = m_fields.size();
        while (m_shown > 0 && room < WidthOf(m_shown) - SlackOf(m_shown)) --m_shown;
        m_pControls->setGeometry(0, 0, std::max(room, 1), height());
        Place(room);
    }

    // What is not shown stands below the bar, out of sight: it keeps its keys, which open the panel.
    void Place(int nRoom) {
        int slack = SlackOf(m_shown);
        int cut = std::clamp(WidthOf(m_shown) - nRoom, 0, slack);
        int left = 0;
        for (std::size_t i = 0; i < m_fields.size(); ++i) {
            const Field& field = m_fields[i];
            if (i >= m_shown) {
                field.label->setGeometry(field.labelPlace.translated(-field.labelPlace.left(), height()));
                field.control->setGeometry(field.place.translated(-field.place.left(), height()));
                continue;
            }
            const int own = slack > 0 ? cut * field.Slack() / slack : 0;
            field.label->setGeometry(field.labelPlace.translated(-left, 0));
            field.control->setGeometry(field.place.translated(-left, 0).adjusted(0, 0, -own, 0));
            left += own;
            cut -= own;
            slack -= field.Slack();
        }
    }

    // Each below the one before, where they have no room beside each other.
    void Stack(int nRoom) {
        int indent = 0;
        for (const Field& field : m_fields)
            indent = std::max(indent, field.place.left() - field.labelPlace.left());
        const int margin = m_fields.front().labelPlace.left();
        const int left = margin + indent;
        int right = left;
        int top = 0;
        for (const Field& field : m_fields) {
            const int width = std::clamp(nRoom - margin - left, 1, field.place.width());
            field.label->setGeometry(field.labelPlace.translated(margin - field.labelPlace.left(), top));
            field.control->setGeometry(left, top + field.place.top(), width, field.place.height());
            right = std::max(right, left + width);
            top += m_size.height();
        }
        m_pControls->resize(right + margin, top);
    }

    // Beside the bar, so that it covers nothing of what the lists are about; no wider than the main window
    // and never off the screen.
    void Open(QWidget& first) {
        const QWidget* outermost = this;
        while (outermost->parentWidget()) outermost = outermost->parentWidget();
        const int frame = m_pPanel->frameWidth();
        const int inside = std::min(m_size.width(), outermost->width() - 2 * frame);
        m_pControls->setParent(m_pPanel);
        m_shown = m_fields.size();
        m_pControls->setGeometry(frame, frame, inside, m_size.height());
        if (inside < LeastWidthOfAll())
            Stack(inside);
        else
            Place(inside);
        m_pControls->show();
        m_pPanel->resize(m_pControls->size() + QSize(2 * frame, 2 * frame));
        const QRect screen = this->screen()->availableGeometry();
        const QPoint beside = mapToGlobal(QPoint(width(), -frame));
        m_pPanel->move(std::max(std::min(beside.x(), screen.right() + 1 - m_pPanel->width()), screen.left()),
                       std::min(beside.y(), screen.bottom() + 1 - m_pPanel->height()));
        m_pPanel->show();
        first.setFocus(Qt::PopupFocusReason);
    }

    // The keys go back to what the frame shows.
    void TakeBack() {
        m_pControls->setParent(this);
        m_pControls->show();
        m_pMore->raise();
        Arrange();
        for (QWidget* part = parentWidget(); part; part = part->parentWidget())
            if (const auto* const host = qobject_cast<QMainWindow*>(part)) {
                host->centralWidget()->setFocus(Qt::PopupFocusReason);
                return;
            }
    }

    std::function<void(const QWidget&)> m_scrollTo;
    QWidget* m_pControls;  // holds the controls; in the panel while that is open
    QToolButton* m_pMore;
    QFrame* m_pPanel;
    QSize m_size;  // the template's
    std::vector<Field> m_fields;
    std::size_t m_shown = 0;  // so many fields, from the first on, have room
};

}  // namespace

QWidget* AfxCreateControlStrip(const DialogResource& resource, CCmdTarget& target,
                               std::function<void(const QWidget&)> scrollTo) {
    return new ControlStrip(resource, target, std::move(scrollTo));
}
