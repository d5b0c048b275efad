// Resources are tables: strings, dialog templates, menus, accelerators. The program hands its own over once,
// before anything is shown; they are static data and are only read.
#pragma once

#include "base/types.h"
#include "framework/core/geometry.h"

#include <span>
#include <string>

// Ids that the framework itself looks up or handles.
constexpr u32 ID_FILE_OPEN = 57601;
constexpr u32 ID_FILE_CLOSE = 57602;
constexpr u32 ID_FILE_MRU_FILE1 = 57616;  // the first of nine
constexpr u32 ID_FILE_MRU_FILE9 = 57624;
constexpr u32 ID_APP_EXIT = 57665;
constexpr u32 AFX_IDS_APP_TITLE = 57344;
constexpr u32 AFX_IDS_IDLEMESSAGE = 57345;
constexpr u32 AFX_IDS_SHELL_NAME = 61442;     // what the desktop knows the program by
constexpr u32 AFX_IDS_SHELL_COMMENT = 61443;  // what it is for
constexpr u32 AFX_IDS_SHELL_CLAIMED = 61444;  // a MIME type of others that it is registered for
constexpr u32 AFX_IDS_SHELL_OFFERED = 61445;  // and one that it only offers to open
constexpr u32 AFX_IDS_SHELL_OFFERED_NAME = 61446;
constexpr u32 AFX_IDS_USAGE = 61440;    // answer to --help
constexpr u32 AFX_IDS_VERSION = 61441;  // answer to --version

struct StringResource {
    u32 nId;
    const char* pszText;  // UTF-8
};

enum class ControlKind { Static, ComboBox };

// Positions and sizes are in dialog units: a quarter of the font's average width, an eighth of its height.
struct ControlResource {
    ControlKind kind;
    u32 nId;  // 0 where nobody asks for the control
    CRect rect;
    const char* pszText;  // an ampersand marks the mnemonic of the next control
};

struct DialogResource {
    u32 nId;
    CSize size;
    std::span<const ControlResource> controls;  // in tab order
};

struct MenuItemResource {
    u32 nId;              // of the command; 0 for a separator
    const char* pszText;  // an ampersand marks the mnemonic; what follows a tab names the accelerator
};

struct PopupResource {
    const char* pszText;
    std::span<const MenuItemResource> items;
};

struct MenuResource {
    u32 nId;
    std::span<const PopupResource> popups;
};

struct AcceleratorResource {
    u32 nId;              // of the command
    const char* pszKeys;  // as in "Ctrl+N"
};

struct VersionString {
    const char* pszName;
    const char* pszText;
};

// What the program says of itself to other programs; its user is shown AFX_IDS_VERSION.
struct VersionResource {
    const char* pszFileVersion;
    const char* pszProductVersion;
    std::span<const VersionString> strings;
};

struct ResourceTables {
    std::span<const StringResource> strings;
    std::span<const DialogResource> dialogs;
    std::span<const MenuResource> menus;
    std::span<const AcceleratorResource> accelerators;
    VersionResource version;
};

// Borrows the tables for the rest of the program.
void AfxSetResources(const ResourceTables* pTables);

// An id that no table holds gives an empty string, or null.
std::string AfxLoadString(u32 nId);
const DialogResource* AfxFindDialog(u32 nId);
const MenuResource* AfxFindMenu(u32 nId);
std::span<const AcceleratorResource> AfxGetAccelerators();
VersionResource AfxGetVersion();
