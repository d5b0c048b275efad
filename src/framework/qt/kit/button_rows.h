// The buttons of a tool bar that floats, in as many rows as its width makes them.
#pragma once

class QToolBar;
class QWidget;

// For the bar's actions as they are now.
QWidget* AfxCreateButtonRows(const QToolBar& bar);
