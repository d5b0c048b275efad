// What a dialog stands in front of.
#pragma once

class QWidget;

// The dialog that is up already, or else the main window; null without both. Never a floating bar, which goes
// with its child window while the dialog may still be up.
QWidget* AfxGetDialogOwner();
