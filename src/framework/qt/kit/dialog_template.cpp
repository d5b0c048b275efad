#include "framework/qt/kit/dialog_template.h"

#include "framework/core/cmd_target.h"
#include "framework/core/guarded_call.h"
#include "framework/core/resource.h"
#include "framework/qt/kit/convert.h"
#include "framework/qt/kit/list_widget.h"
#include "framework/qt/kit/picture.h"

#include <QComboBox>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <algorithm>

namespace {

// Dialog units follow the font: four make its average width, eight its height.
class DialogUnits {
  public:
    explicit DialogUnits(const QFontMetrics& metrics) : m_nHeight(metrics.height()) {
        const QString alphabet = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
        m_nWidth = (metrics.horizontalAdvance(alphabet) / 26 + 1) / 2;
    }

    int X(int nUnits) const { return (nUnits * m_nWidth + 2) / 4; }
    int Y(int nUnits) const { return (nUnits * m_nHeight + 4) / 8; }
    QRect Map(const CRect& rect) const {
        return QRect(QPoint(X(rect.left), Y(rect.top)), QPoint(X(rect.right) - 1, Y(rect.bottom) - 1));
    }

  private:
    int m_nWidth;
    int m_nHeight;
};

// Between a label that begins before its place and its control, where there is room; pixels.
constexpr int LABEL_GAP = 2;

bool InOneRow(const QRect& one, const QRect& other) {
    return one.bottom() >= other.top() && one.top() <= other.bottom();
}

class ControlMaker {
  public:
    ControlMaker(QWidget& parent, const DialogResource& resource, CCmdTarget& target)
        : m_parent(parent),
          m_target(target),
          m_units(parent.fontMetrics()),
          m_size(m_units.X(resource.size.cx), m_units.Y(resource.size.cy)) {}

    void Make(const ControlResource& control) {
        const QRect place = m_units.Map(control.rect);
        switch (control.kind) {
            case ControlKind::Static:
            case ControlKind::PlainText:
                m_pLabel = MakeLabel(control, place);
                return;
            case ControlKind::Icon:
                MakeIcon(control, place);
                return;
            case ControlKind::ComboBox:
                Finish(AfxCreateListWidget(&m_parent, m_target, control.nID, place.height()), control.nID,
                       ListPlace(place));
                return;
            case ControlKind::Edit:
                Finish(new QLineEdit(&m_parent), control.nID, place);
                return;
            case ControlKind::Button:
            case ControlKind::DefaultButton:
                MakeButton(control, place);
                return;
        }
    }

    QSize GetSize() const { return m_size; }

  private:
    QLabel* MakeLabel(const ControlResource& control, const QRect& place) const {
        const QString text = ToDisplayText(control.pszText);
        auto* const label = new QLabel(&m_parent);
        label->setTextFormat(Qt::PlainText);
        label->setText(text);
        // Its own measure still counts the mark of a mnemonic as a letter, for want of a control behind it.
        const int flags = control.kind == ControlKind::Static ? Qt::TextShowMnemonic : 0;
        const int width = label->fontMetrics().size(flags, text).width();
        label->setGeometry(place.x(), place.y(), std::max(width, place.width()), place.height());
        return label;
    }

    void MakeIcon(const ControlResource& control, const QRect& place) const {
        auto* const picture = new QLabel(&m_parent);
        const int side = std::min(place.width(), place.height());
        picture->setPixmap(AfxLoadIcon(control.nID).pixmap(QSize(side, side), m_parent.devicePixelRatioF()));
        picture->setGeometry(place.x(), place.y(), side, side);
    }

    void MakeButton(const ControlResource& control, const QRect& place) {
        auto* const button = new QPushButton(ToDisplayText(control.pszText), &m_parent);
        button->setDefault(control.kind == ControlKind::DefaultButton);
        QObject::connect(button, &QPushButton::clicked, [&target = m_target, nID = control.nID] {
            AfxGuardedCall([&] { target.OnCmdMsg(nID, CN_COMMAND, nullptr); });
        });
        Finish(button, control.nID, place);
    }

    // The template gives the height of the list dropped down.
    QRect ListPlace(const QRect& place) const {
        return {place.left(), place.top(), place.width(), m_size.height() - 2 * place.top()};
    }

    // A text is the label of the control after it, which its mnemonic goes to. Where the font needs more room
    // than the template's, the control grows about its middle.
    void Finish(QWidget* pControl, u32 nID, QRect place) {
        pControl->setObjectName(QString::number(nID));
        const int height = std::max(pControl->sizeHint().height(), place.height());
        place = QRect(place.left(), place.center().y() - (height - 1) / 2, place.width(), height);
        if (m_pLabel) {
            m_pLabel->setBuddy(pControl);
            if (InOneRow(m_pLabel->geometry(), place)) place.setLeft(PutLabelBefore(place));
            m_pLabel = nullptr;
        }
        pControl->setGeometry(place);
        m_last = place;
    }

    // A label that is wider than its place begins before it, so that the control keeps its own, and only
    // where another control stands there takes from it. Where the control can begin.
    int PutLabelBefore(const QRect& control) const {
        const QRect label = m_pLabel->geometry();
        const int free = InOneRow(m_last, control) ? m_last.right() + 1 : 0;
        const int left = std::max(std::min(label.x(), control.left() - label.width() - LABEL_GAP), free);
        m_pLabel->setGeometry(left, control.y(), label.width(), control.height());
        return std::max(control.left(), left + label.width());
    }

    QWidget& m_parent;
    CCmdTarget& m_target;
    DialogUnits m_units;
    QSize m_size;
    QRect m_last;                // where the control made last stands
    QLabel* m_pLabel = nullptr;  // the text that the next control may belong to
};

}  // namespace

QSize AfxCreateControls(QWidget& parent, const DialogResource& resource, CCmdTarget& target) {
    ControlMaker maker(parent, resource, target);
    for (const ControlResource& control : resource.controls) maker.Make(control);
    return maker.GetSize();
}

QWidget* AfxFindControl(const QWidget& parent, u32 nID) {
    return parent.findChild<QWidget*>(QString::number(nID));
}
