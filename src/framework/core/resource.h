// Resources are tables: strings, dialog templates, menus, accelerators, toolbars, pictures. The program hands
// its own over once, before anything is shown; they are static data and are only read.
#pragma once

#include "base/types.h"
#include "framework/core/geometry.h"

#include <span>
#include <string>

// Ids that the framework itself looks up or handles.
constexpr u32 ID_FILE_OPEN = 57601;
constexpr u32 ID_FILE_CLOSE = 57602;
constexpr u32 ID_FILE_PRINT_SETUP = 57606;
constexpr u32 ID_FILE_PRINT = 57607;
constexpr u32 ID_FILE_PRINT_DIRECT = 57608;  // without asking
constexpr u32 ID_FILE_PRINT_PREVIEW = 57609;
constexpr u32 ID_FILE_MRU_FILE1 = 57616;  // the first of nine
constexpr u32 ID_FILE_MRU_FILE9 = 57624;
constexpr u32 ID_WINDOW_NEW = 57648;
constexpr u32 ID_WINDOW_ARRANGE = 57649;
constexpr u32 ID_WINDOW_CASCADE = 57650;
constexpr u32 ID_WINDOW_TILE_HORZ = 57651;
constexpr u32 ID_APP_EXIT = 57665;
constexpr u32 ID_NEXT_PANE = 57680;
constexpr u32 ID_PREV_PANE = 57681;
constexpr u32 ID_INDICATOR_CAPS = 59137;
constexpr u32 ID_INDICATOR_NUM = 59138;
constexpr u32 ID_INDICATOR_SCRL = 59139;
constexpr u32 ID_VIEW_TOOLBAR = 59392;  // the id of the bar too that it shows and hides
constexpr u32 ID_VIEW_STATUS_BAR = 59393;
constexpr u32 AFX_IDM_FIRST_MDICHILD = 65280;  // of the list of child windows, nine at most
constexpr u32 ID_WINDOW_MORE = 65289;          // after those nine: a dialog that lists all of them
constexpr u32 AFX_IDS_APP_TITLE = 57344;
constexpr u32 AFX_IDS_IDLEMESSAGE = 57345;
constexpr u32 AFX_IDS_SHELL_NAME = 61442;     // what the desktop knows the program by
constexpr u32 AFX_IDS_SHELL_PACKAGE = 61443;  // what it is told of the kinds of files, as a MIME package
constexpr u32 AFX_IDS_SHELL_ENTRY = 61444;    // how it starts the program, as a desktop entry
constexpr u32 AFX_IDP_NO_PRINTER = 61456;
constexpr u32 AFX_IDP_PARSE_REAL = 61714;        // a number was expected
constexpr u32 AFX_IDP_PARSE_REAL_RANGE = 61717;  // one between %1 and %2 was expected
constexpr u32 AFX_IDS_USAGE = 61440;             // answer to --help
constexpr u32 AFX_IDS_VERSION = 61441;           // answer to --version

struct StringResource {
    u32 nID;
    const char* pszText;  // UTF-8
};

enum class ControlKind { Static, PlainText, Icon, ComboBox, Edit, Button, DefaultButton };

// Positions and sizes are in dialog units: a quarter of the font's average width, an eighth of its height.
struct ControlResource {
    ControlKind kind;
    u32 nID;  // 0 where nobody asks for the control; of the picture for an icon
    CRect rect;
    const char* pszText;  // an ampersand marks the mnemonic, a static's that of the next control
};

struct DialogResource {
    u32 nID;
    const char* pszCaption;
    CSize size;
    std::span<const ControlResource> controls;  // in tab order
};

struct MenuItemResource {
    u32 nID;              // of the command; 0 for a separator
    const char* pszText;  // an ampersand marks the mnemonic; what follows a tab names the accelerator
};

struct PopupResource {
    const char* pszText;
    std::span<const MenuItemResource> items;
};

struct MenuResource {
    u32 nID;
    std::span<const PopupResource> popups;
};

struct AcceleratorResource {
    u32 nID;              // of the command
    const char* pszKeys;  // as in "Ctrl+N"
};

// Keys that act together; a window takes all tables.
struct AcceleratorTable {
    u32 nID;
    std::span<const AcceleratorResource> keys;
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

struct ToolBarResource {
    u32 nID;
    CSize size;                  // of a button's picture, logical pixels
    std::span<const u32> items;  // commands; 0 for a separator
};

struct PictureResource {
    u32 nID;             // of a frame's icon, or of the command on whose button it stands
    const char* pszSvg;  // currentColor stands for the colour of texts around it
};

struct ResourceTables {
    std::span<const StringResource> strings;
    std::span<const DialogResource> dialogs;
    std::span<const MenuResource> menus;
    std::span<const AcceleratorTable> accelerators;
    std::span<const ToolBarResource> toolBars;
    std::span<const PictureResource> pictures;
    VersionResource version;
};

// Borrows the tables for the rest of the program.
void AfxSetResources(const ResourceTables* pTables);

// An id that no table holds gives an empty string, or null.
std::string AfxLoadString(u32 nID);

// The two lines of a command's string: what the status bar says of it, and the tip of its button.
std::string AfxLoadPrompt(u32 nID);
std::string AfxLoadTip(u32 nID);
const DialogResource* AfxFindDialog(u32 nID);
const MenuResource* AfxFindMenu(u32 nID);
std::span<const AcceleratorTable> AfxGetAccelerators();
VersionResource AfxGetVersion();
const ToolBarResource* AfxFindToolBar(u32 nID);
const PictureResource* AfxFindPicture(u32 nID);
