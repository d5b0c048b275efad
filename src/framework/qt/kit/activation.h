// How a window comes to the front for a user who acted in another program: desktops keep windows back that
// want to come by themselves.
#pragma once

#include <string>

class QWidget;

// What a desktop gives to the program that its user starts, as X11 and as Wayland have it: it shows that the
// user wants the window. Empty where nobody gave any.
struct StartupToken {
    std::string strStartupId;
    std::string strActivationToken;
};

// What this program was given. The toolkit takes it away once it has started.
StartupToken AfxGetStartupToken();

// Activates the window, and has the desktop know whom it comes for.
void AfxActivate(QWidget& window, const StartupToken& token);
