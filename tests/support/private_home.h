// For as long as it lives, the program under test keeps its settings and registrations in a folder that goes
// with it, and meets no session bus.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

class PrivateHome {
  public:
    PrivateHome() {
        std::string name = std::filesystem::temp_directory_path() / "vistrel-test-home-XXXXXX";
        m_folder = mkdtemp(name.data());
        setenv("XDG_CONFIG_HOME", (m_folder / "config").c_str(), 1);
        setenv("XDG_DATA_HOME", (m_folder / "data").c_str(), 1);
        setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
    }
    // What the program starts beside itself can still be writing there.
    ~PrivateHome() {
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }
    PrivateHome(const PrivateHome&) = delete;
    PrivateHome& operator=(const PrivateHome&) = delete;

    std::filesystem::path m_folder;
};
