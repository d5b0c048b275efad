// A drop-down list as a widget.
#pragma once

#include "base/types.h"

class CCmdTarget;
class QComboBox;
class QWidget;

// What the user selects in it reaches the target as a notification of this id. Dropped down it is no higher
// than nDropHeight, in pixels.
QComboBox* AfxCreateListWidget(QWidget* pParent, CCmdTarget& target, u32 nID, int nDropHeight);
