// For as long as it lives, the program under test keeps its settings and registrations in a folder that goes
// with it, and meets no session bus.
#pragma once

#include "support/temp_folder.h"

struct PrivateHome {
    PrivateHome() {
        setenv("XDG_CONFIG_HOME", m_folder.Path("config").c_str(), 1);
        setenv("XDG_DATA_HOME", m_folder.Path("data").c_str(), 1);
        setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
    }

    TempFolder m_folder;
};
