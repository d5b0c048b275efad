// Where windows of their own may stand on the screen.
#pragma once

// False where the desktop places all windows, moves them by itself and says nothing of where they are, as
// under Wayland.
bool AfxPlacesWindows();
