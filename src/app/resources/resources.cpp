#include "app/resources/resources.h"

#include "app/resource_ids.h"
#include "framework/core/answers.h"

namespace {

// Of a command: its prompt, and after the line break its tip.
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
    {AFX_IDS_SHELL_PACKAGE, SHELL_PACKAGE},
    {AFX_IDS_SHELL_ENTRY, SHELL_ENTRY},
    {AFX_IDS_IDLEMESSAGE, "Ready"},
    {ID_ZOOM, "Resize the window for a specific scale factor\nZoom"},
    {ID_TOGGLE_INFO_BAR, "Show or hide the information bar\nToggle Info Bar"},
    {ID_TOGGLE_LAYER_BAR, "Shows or hides the Layer and Channel bar\nToggle Layer & Channel Bar"},
    {ID_ZOOM_IN, "Show the picture at the next larger scale\nZoom In"},
    {ID_ZOOM_OUT, "Show the picture at the next smaller scale\nZoom Out"},
    {ID_ACTUAL_SIZE, "Show each pixel of the picture as one of the screen\nActual Size"},
    {ID_RELOAD, "Read the file again\nReload"},
    {ID_NEXT_FILE, "Show the next file of the folder in this window\nNext"},
    {ID_PREVIOUS_FILE, "Show the previous file of the folder in this window\nPrevious"},
    {ID_READ_TOLERANTLY,
     "Read the file again and pass over what breaks the rules of its format\nRead Tolerantly"},
    {ID_FILE_NEW, "Create a new document\nNew"},
    {ID_FILE_OPEN, "Open existing files\nOpen"},
    {ID_FILE_CLOSE, "Close the active window\nClose"},
    {ID_FILE_SAVE, "Save the active document\nSave"},
    {ID_FILE_SAVE_AS, "Save the active document under another name\nSave As"},
    {ID_FILE_PRINT_SETUP, "Choose the paper and its margins\nPrint Setup"},
    {ID_FILE_PRINT, "Print the picture in the active window\nPrint"},
    {ID_FILE_PRINT_PREVIEW, "Show the page as it would be printed\nPrint Preview"},
    {ID_FILE_MRU_FILE1, "Open this file again\nRecent File"},
    {ID_APP_EXIT, "Close all windows and end the program\nExit"},
    {ID_EDIT_UNDO, "Undo the last change\nUndo"},
    {ID_EDIT_CUT, "Move the selection to the clipboard\nCut"},
    {ID_EDIT_COPY, "Copy the selection to the clipboard\nCopy"},
    {ID_EDIT_PASTE, "Insert what the clipboard holds\nPaste"},
    {ID_VIEW_TOOLBAR, "Show or hide the toolbar\nToolbar"},
    {ID_VIEW_STATUS_BAR, "Show or hide the status bar\nStatus Bar"},
    {ID_WINDOW_NEW, "Open another window on the active document\nNew Window"},
    {ID_WINDOW_CASCADE, "Arrange the windows so that they overlap\nCascade"},
    {ID_WINDOW_TILE_HORZ, "Arrange the windows so that none overlaps another\nTile"},
    {ID_WINDOW_ARRANGE, "Line up the minimised windows at the bottom\nArrange Icons"},
    {AFX_IDM_FIRST_MDICHILD, "Activate this window"},
    {ID_WINDOW_MORE, "Choose among all windows\nWindows"},
    {ID_NEXT_PANE, "Move the keyboard to the next pane\nNext Pane"},
    {ID_PREV_PANE, "Move the keyboard to the previous pane\nPrevious Pane"},
    {ID_APP_ABOUT, "Show the program's name and version\nAbout"},
    {ID_INDICATOR_CAPS, "CAP"},
    {ID_INDICATOR_NUM, "NUM"},
    {ID_INDICATOR_SCRL, "SCRL"},
    {AFX_IDP_NO_PRINTER, "There is no printer to print on."},
    {AFX_IDP_PARSE_REAL, "Please enter a number."},
    {AFX_IDP_PARSE_REAL_RANGE, "Please enter a number between %1 and %2."},
    {AFX_IDS_USAGE,
     "usage: vistrel [--tolerant] [-dde] [FILE...]\n"
     "       vistrel [--tolerant] -p FILE...\n"
     "       vistrel [--tolerant] -pt FILE PRINTER\n"
     "Shows still pictures, each in a window of its own.\n"
     "\n"
     "  -p FILE...          prints the files on the default printer and ends\n"
     "  -pt FILE PRINTER    prints the file on this one; NAME.pdf for PRINTER makes that file\n"
     "  -dde                opens the files in the program that runs already, or that the\n"
     "                      session bus starts, if any;\n"
     "                      with --tolerant always in one of its own\n"
     "  --tolerant          reads files that break rules of their formats without asking\n"
     "  --                  every word after it names a file\n"
     "  --help              prints this and ends\n"
     "  --version           prints the program's version and ends"},
    {AFX_IDS_VERSION, "Talvorine Graphics File Viewer " VISTREL_VERSION},
};

constexpr ControlResource LAYER_BAR_CONTROLS[] = {
    {ControlKind::Static, 0, {3, 6, 22, 14}, "&Layer:"},
    {ControlKind::ComboBox, IDC_LAYER, {23, 3, 78, 69}, ""},
    {ControlKind::Static, 0, {80, 6, 108, 14}, "&Channel:"},
    {ControlKind::ComboBox, IDC_CHANNEL, {109, 3, 177, 69}, ""},
};

constexpr ControlResource ABOUT_CONTROLS[] = {
    {ControlKind::Icon, IDR_MAINFRAME, {11, 17, 31, 37}, ""},
    {ControlKind::PlainText, 0, {39, 7, 169, 15}, "Talvorine Graphics File Viewer"},
    {ControlKind::Static, 0, {39, 23, 169, 31}, "Version " VISTREL_VERSION},
    {ControlKind::DefaultButton, IDOK, {178, 7, 210, 21}, "OK"},
};

constexpr ControlResource ZOOM_CONTROLS[] = {
    {ControlKind::Static, 0, {7, 7, 69, 15}, "Enter &Scale Factor:"},
    {ControlKind::Edit, IDC_SCALE, {7, 19, 47, 33}, ""},
    {ControlKind::DefaultButton, IDOK, {105, 7, 155, 21}, "OK"},
    {ControlKind::Button, IDCANCEL, {105, 24, 155, 38}, "Cancel"},
};

constexpr DialogResource DIALOGS[] = {
    {IDD_ABOUT, "About Vistrel", {217, 55}, ABOUT_CONTROLS},
    {IDD_ZOOM, "Zoom", {162, 46}, ZOOM_CONTROLS},
    {IDD_LAYER_BAR, "", {180, 19}, LAYER_BAR_CONTROLS},
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

constexpr MenuItemResource VIEW_MENU_ITEMS[] = {
    {ID_ZOOM_IN, "Zoom &In\tCtrl++"},
    {ID_ZOOM_OUT, "Zoom &Out\tCtrl+-"},
    {ID_ACTUAL_SIZE, "&Actual Size\tCtrl+0"},
    SEPARATOR,
    {ID_RELOAD, "Re&load\tF5"},
    {ID_NEXT_FILE, "&Next\tCtrl+Page Down"},
    {ID_PREVIOUS_FILE, "&Previous\tCtrl+Page Up"},
    SEPARATOR,
    {ID_READ_TOLERANTLY, "&Read Tolerantly\tShift+F5"},
};

constexpr PopupResource VIEW_MENU[] = {
    {"", VIEW_MENU_ITEMS},
};

constexpr PopupResource DOCUMENT_POPUPS[] = {
    {"&File", FILE_ITEMS},     {"&Edit", EDIT_ITEMS}, {"&View", VIEW_ITEMS},
    {"&Window", WINDOW_ITEMS}, {"&Help", HELP_ITEMS},
};

constexpr MenuResource MENUS[] = {
    {IDR_MAINFRAME, MAIN_POPUPS},    {IDR_ALL_TYPES, DOCUMENT_POPUPS}, {IDR_TFF_TYPE, DOCUMENT_POPUPS},
    {IDR_IFF_TYPE, DOCUMENT_POPUPS}, {IDR_TMG_TYPE, DOCUMENT_POPUPS},  {IDR_PSD_TYPE, DOCUMENT_POPUPS},
    {IDR_VIEW, VIEW_MENU},
};

constexpr AcceleratorResource MAIN_KEYS[] = {
    {ID_FILE_NEW, "Ctrl+N"},       {ID_FILE_OPEN, "Ctrl+O"},      {ID_FILE_SAVE, "Ctrl+S"},
    {ID_FILE_PRINT, "Ctrl+P"},     {ID_EDIT_UNDO, "Ctrl+Z"},      {ID_EDIT_CUT, "Ctrl+X"},
    {ID_EDIT_COPY, "Ctrl+C"},      {ID_EDIT_PASTE, "Ctrl+V"},     {ID_EDIT_UNDO, "Alt+Backspace"},
    {ID_EDIT_CUT, "Shift+Delete"}, {ID_EDIT_COPY, "Ctrl+Insert"}, {ID_EDIT_PASTE, "Shift+Insert"},
    {ID_NEXT_PANE, "F6"},          {ID_PREV_PANE, "Shift+F6"},
};

constexpr AcceleratorResource VIEW_KEYS[] = {
    {ID_ZOOM_IN, "Ctrl++"},
    {ID_ZOOM_IN, "Ctrl+="},
    {ID_ZOOM_OUT, "Ctrl+-"},
    {ID_ACTUAL_SIZE, "Ctrl+0"},
    {ID_RELOAD, "F5"},
    {ID_NEXT_FILE, "Ctrl+Page Down"},
    {ID_PREVIOUS_FILE, "Ctrl+Page Up"},
    {ID_READ_TOLERANTLY, "Shift+F5"},
};

constexpr AcceleratorTable ACCELERATORS[] = {
    {IDR_MAINFRAME, MAIN_KEYS},
    {IDR_VIEW, VIEW_KEYS},
};

constexpr u32 TOOLBAR_ITEMS[] = {
    ID_FILE_NEW, ID_FILE_OPEN,  ID_FILE_SAVE, 0, ID_EDIT_CUT, ID_EDIT_COPY, ID_EDIT_PASTE,
    0,           ID_FILE_PRINT, ID_APP_ABOUT,
};

constexpr ToolBarResource TOOLBARS[] = {
    {IDR_MAINFRAME, {16, 15}, TOOLBAR_ITEMS},
};

constexpr VersionString VERSION_STRINGS[] = {
    {"FileDescription", "Vistrel MFC Application"},
    {"InternalName", "Vistrel"},
    {"OriginalFilename", "Vistrel.EXE"},
    {"ProductName", "Vistrel Application"},
};

// The properties have kept this number through all releases; the release is VISTREL_VERSION.
constexpr VersionResource VERSION = {"1.0.0.1", "1.0.0.1", VERSION_STRINGS};

}  // namespace

constexpr ResourceTables g_resources = {STRINGS, DIALOGS, MENUS, ACCELERATORS, TOOLBARS, PICTURES, VERSION};
