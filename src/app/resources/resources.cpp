#include "app/resources/resources.h"

#include "app/resource_ids.h"

namespace {

constexpr StringResource STRINGS[] = {
    {IDR_MAINFRAME, "Talvorine Graphics File Viewer"},
    {IDR_ALL_TYPES,
     "\n\n\nAll Recognized File Types (*.TMG, *.TFF, *.IFF, *.PSD)\n.TMG;*.TFF;*.IFF;*.PSD\n\n"},
    {IDR_IFF_TYPE,
     "\n\n\nInterchange Graphics Files (*.IFF)\n.IFF\nVistrel.StdGraphic\nInterchange Graphics File"},
    {IDR_TFF_TYPE, "\n\n\nTalvorine Graphics Files (*.TFF)\n.TFF\nVistrel.Graphic\nTalvorine Graphics File"},
    {IDR_TMG_TYPE, "\n\n\nTalvorine Graphics Files (*.TMG)\n.TMG\nVistrel.Graphic2\nTalvorine Graphics File"},
    {IDR_PSD_TYPE, "\n\n\nPhotoshop Files (*.PSD)\n.PSD\n\n"},
    {AFX_IDS_APP_TITLE, "Talvorine Graphics File Viewer"},
    {AFX_IDS_SHELL_NAME, "com.talvorine.Vistrel"},
    {AFX_IDS_SHELL_COMMENT, "Look at pictures, their layers and their channels"},
    {AFX_IDS_SHELL_CLAIMED, "image/x-ilbm"},
    {AFX_IDS_SHELL_OFFERED, "image/vnd.adobe.photoshop"},
    {AFX_IDS_SHELL_OFFERED_NAME, "Photoshop image"},
    {AFX_IDS_USAGE,
     "usage: vistrel [-dde] [FILE...]\n"
     "Shows still pictures, each in a window of its own.\n"
     "\n"
     "  -dde        opens the files in the program that runs already, if any\n"
     "  --          every word behind it names a file\n"
     "  --help      prints this and ends\n"
     "  --version   prints the program's version and ends"},
    {AFX_IDS_VERSION, "Talvorine Graphics File Viewer 1.12"},
};

constexpr ControlResource LAYER_BAR_CONTROLS[] = {
    {ControlKind::Static, 0, {3, 6, 22, 14}, "&Layer:"},
    {ControlKind::ComboBox, IDC_LAYER, {23, 3, 78, 69}, ""},
    {ControlKind::Static, 0, {80, 6, 108, 14}, "&Channel:"},
    {ControlKind::ComboBox, IDC_CHANNEL, {109, 3, 177, 69}, ""},
};

constexpr DialogResource DIALOGS[] = {
    {IDD_LAYER_BAR, {180, 19}, LAYER_BAR_CONTROLS},
};

constexpr MenuItemResource SEPARATOR = {0, ""};

constexpr MenuItemResource MAIN_FILE_ITEMS[] = {
    {ID_FILE_NEW, "&New\tCtrl+N"},
    {ID_FILE_OPEN, "&Open...\tCtrl+O"},
    SEPARATOR,
    {ID_FILE_PRINT_SETUP, "P&rint Setup..."},
    SEPARATOR,
    {ID_FILE_MRU_FILE1, "Recent File"},
    SEPARATOR,
    {ID_APP_EXIT, "E&xit"},
};

constexpr MenuItemResource MAIN_VIEW_ITEMS[] = {
    {ID_VIEW_TOOLBAR, "&Toolbar"},
    {ID_VIEW_STATUS_BAR, "&Status Bar"},
};

constexpr MenuItemResource HELP_ITEMS[] = {
    {ID_APP_ABOUT, "&About Vistrel..."},
};

constexpr PopupResource MAIN_POPUPS[] = {
    {"&File", MAIN_FILE_ITEMS},
    {"&View", MAIN_VIEW_ITEMS},
    {"&Help", HELP_ITEMS},
};

constexpr MenuItemResource FILE_ITEMS[] = {
    {ID_FILE_NEW, "&New\tCtrl+N"},
    {ID_FILE_OPEN, "&Open...\tCtrl+O"},
    {ID_FILE_CLOSE, "&Close"},
    {ID_FILE_SAVE, "&Save\tCtrl+S"},
    {ID_FILE_SAVE_AS, "Save &As..."},
    SEPARATOR,
    {ID_FILE_PRINT, "&Print...\tCtrl+P"},
    {ID_FILE_PRINT_PREVIEW, "Print Pre&view"},
    {ID_FILE_PRINT_SETUP, "P&rint Setup..."},
    SEPARATOR,
    {ID_FILE_MRU_FILE1, "Recent File"},
    SEPARATOR,
    {ID_APP_EXIT, "E&xit"},
};

constexpr MenuItemResource EDIT_ITEMS[] = {
    {ID_EDIT_UNDO, "&Undo\tCtrl+Z"},   SEPARATOR,
    {ID_EDIT_CUT, "Cu&t\tCtrl+X"},     {ID_EDIT_COPY, "&Copy\tCtrl+C"},
    {ID_EDIT_PASTE, "&Paste\tCtrl+V"},
};

constexpr MenuItemResource VIEW_ITEMS[] = {
    {ID_VIEW_TOOLBAR, "&Toolbar"},
    {ID_VIEW_STATUS_BAR, "&Status Bar"},
    {ID_TOGGLE_INFO_BAR, "&Info Bar"},
    {ID_TOGGLE_LAYER_BAR, "&Layer && Channel Bar"},
};

constexpr MenuItemResource WINDOW_ITEMS[] = {
    {ID_WINDOW_NEW, "&New Window"},        {ID_WINDOW_CASCADE, "&Cascade"}, {ID_WINDOW_TILE_HORZ, "&Tile"},
    {ID_WINDOW_ARRANGE, "&Arrange Icons"}, {ID_ZOOM, "&Zoom..."},
};

constexpr PopupResource DOCUMENT_POPUPS[] = {
    {"&File", FILE_ITEMS},     {"&Edit", EDIT_ITEMS}, {"&View", VIEW_ITEMS},
    {"&Window", WINDOW_ITEMS}, {"&Help", HELP_ITEMS},
};

constexpr MenuResource MENUS[] = {
    {IDR_MAINFRAME, MAIN_POPUPS},    {IDR_ALL_TYPES, DOCUMENT_POPUPS}, {IDR_TFF_TYPE, DOCUMENT_POPUPS},
    {IDR_IFF_TYPE, DOCUMENT_POPUPS}, {IDR_TMG_TYPE, DOCUMENT_POPUPS},  {IDR_PSD_TYPE, DOCUMENT_POPUPS},
};

constexpr AcceleratorResource ACCELERATORS[] = {
    {ID_FILE_NEW, "Ctrl+N"},       {ID_FILE_OPEN, "Ctrl+O"},      {ID_FILE_SAVE, "Ctrl+S"},
    {ID_FILE_PRINT, "Ctrl+P"},     {ID_EDIT_UNDO, "Ctrl+Z"},      {ID_EDIT_CUT, "Ctrl+X"},
    {ID_EDIT_COPY, "Ctrl+C"},      {ID_EDIT_PASTE, "Ctrl+V"},     {ID_EDIT_UNDO, "Alt+Backspace"},
    {ID_EDIT_CUT, "Shift+Delete"}, {ID_EDIT_COPY, "Ctrl+Insert"}, {ID_EDIT_PASTE, "Shift+Insert"},
    {ID_NEXT_PANE, "F6"},          {ID_PREV_PANE, "Shift+F6"},
};

constexpr VersionString VERSION_STRINGS[] = {
    {"FileDescription", "Vistrel MFC Application"},
    {"InternalName", "Vistrel"},
    {"OriginalFilename", "Vistrel.EXE"},
    {"ProductName", "Vistrel Application"},
};

constexpr VersionResource VERSION = {"1.0.0.1", "1.0.0.1", VERSION_STRINGS};

}  // namespace

constexpr ResourceTables g_resources = {STRINGS, DIALOGS, MENUS, ACCELERATORS, VERSION};
