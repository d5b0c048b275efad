// A bar that is docked at an edge of a window or floats in a frame of its own. Docked it is dragged by its
// grip, or wherever nothing stands on it; a double click there lets it float, or docks it where it was.
#pragma once

class QAction;
class QMainWindow;
class QToolBar;
class QWidget;

// Docked at the upper edge of the host, which owns it. Its actions are its buttons.
QToolBar* AfxCreateDockingBar(QMainWindow& host);

// Stands on the bar in place of buttons, and is owned by it.
void AfxSetBarContent(QToolBar& bar, QWidget* pContent);

// Null while the bar is docked.
QWidget* AfxFloatingFrameOf(const QToolBar& bar);

// Shows or hides the bar where it is, docked or floating.
void AfxShowBar(QToolBar& bar, bool bShow);
bool AfxIsBarShown(const QToolBar& bar);

// Lets the bar float where it floated last, or docks it where it was docked last; its text says which. Owned
// by the bar.
QAction* AfxFloatActionOf(const QToolBar& bar);
