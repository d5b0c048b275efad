#include "framework/qt/kit/cut_text_tip.h"

#include "framework/qt/kit/convert.h"

#include <QToolTip>
#include <QWidget>

void AfxShowTipOfCutText(QWidget& widget, const QPoint& onScreen, const QString& text, int nRoom) {
    const bool isCut = widget.fontMetrics().horizontalAdvance(text) > nRoom;
    QToolTip::showText(onScreen, isCut ? ToPlainTip(text) : QString(), &widget);
}
