// The toolkit's start and end.
#pragma once

#include <functional>

// Makes the call with as much of the toolkit as needs no display.
void AfxCallWithoutDisplay(char** argv, const std::function<void()>& call);

struct ToolkitHooks {
    std::function<void()> onIdle;        // nothing is left to be done
    std::function<void()> onSessionEnd;  // the session ends, and every window has been closed
    std::function<void(int)> onSignal;   // of this number, which asks the program to end
};

// Where the program is to draw on no screen, its windows are only made in memory. False without a display,
// which is told on standard error.
bool AfxStartToolkit(char** argv, bool bOnScreen, const ToolkitHooks& hooks);
void AfxStopToolkit();
