// The tip of a text that has not enough room.
#pragma once

class QPoint;
class QString;
class QWidget;

// Shows the text whole where it is wider than its room in the widget, in pixels; else hides what tip there
// is.
void AfxShowTipOfCutText(QWidget& widget, const QPoint& onScreen, const QString& text, int nRoom);
