// The controls of a dialog template, made as widgets and laid out from its dialog units.
#pragma once

#include "base/types.h"

class CCmdTarget;
class QSize;
class QWidget;
struct DialogResource;

// Makes the controls inside the widget, in tab order; the size that they take. What the user does with them
// reaches the target: a list's new selection as its notification, a button as its command.
QSize AfxCreateControls(QWidget& parent, const DialogResource& resource, CCmdTarget& target);

// Null when the widget has no control of this id.
QWidget* AfxFindControl(const QWidget& parent, u32 nID);
