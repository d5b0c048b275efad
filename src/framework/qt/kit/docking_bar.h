// The dock widget of a bar: how it looks while it is docked and while it floats, and where it docks when it
// is dropped.
#pragma once

class QDockWidget;
class QMainWindow;

// Docked at the upper edge of the host, which owns it; what the bar shows is set as its widget.
QDockWidget* AfxCreateDockingBar(QMainWindow& host);

// From the edge to the place from which this took it to the edge, and back to the edge.
void AfxToggleFloating(QDockWidget& bar);
