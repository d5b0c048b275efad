// A drop-down list as a widget.
#pragma once

#include "base/types.h"

class CCmdTarget;
class QComboBox;
class QWidget;

// What the user selects in it reaches the target as a notification of this id.
QComboBox* AfxCreateListWidget(QWidget* pParent, CCmdTarget& target, u32 nID);
