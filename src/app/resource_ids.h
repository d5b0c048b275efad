// Ids of commands, windows and resources.
#pragma once

#include "base/types.h"

// Standard commands that the framework leaves to the program, which keeps most of them grey.
constexpr u32 ID_FILE_NEW = 57600;
constexpr u32 ID_FILE_SAVE = 57603;
constexpr u32 ID_FILE_SAVE_AS = 57604;
constexpr u32 ID_EDIT_COPY = 57634;
constexpr u32 ID_EDIT_CUT = 57635;
constexpr u32 ID_EDIT_PASTE = 57637;
constexpr u32 ID_EDIT_UNDO = 57643;
constexpr u32 ID_APP_ABOUT = 57664;

// The program's own commands.
constexpr u32 ID_ZOOM = 32771;
constexpr u32 ID_TOGGLE_INFO_BAR = 32772;
constexpr u32 ID_TOGGLE_LAYER_BAR = 32773;
constexpr u32 ID_READ_TOLERANTLY = 32774;
constexpr u32 ID_ZOOM_IN = 32775;
constexpr u32 ID_ZOOM_OUT = 32776;
constexpr u32 ID_ACTUAL_SIZE = 32777;
constexpr u32 ID_RELOAD = 32778;
constexpr u32 ID_NEXT_FILE = 32780;
constexpr u32 ID_PREVIOUS_FILE = 32781;
constexpr u32 ID_FILE_CHANGED = 32779;  // told, never chosen: a file is another one than was read

// Panes, bars and controls.
constexpr u32 ID_INDICATOR_INFO = 101;
constexpr u32 IDW_LAYER_BAR = 102;
constexpr u32 IDW_INFO_BAR = 103;
constexpr u32 IDC_SCALE = 1000;
constexpr u32 IDC_LAYER = 1001;
constexpr u32 IDC_CHANNEL = 1002;

// Dialogs.
constexpr u32 IDD_ABOUT = 100;
constexpr u32 IDD_ZOOM = 130;
constexpr u32 IDD_LAYER_BAR = 132;

// The main frame, and the kinds of documents.
constexpr u32 IDR_MAINFRAME = 128;
constexpr u32 IDR_ALL_TYPES = 129;
constexpr u32 IDR_TFF_TYPE = 130;
constexpr u32 IDR_IFF_TYPE = 131;
constexpr u32 IDR_TMG_TYPE = 132;
constexpr u32 IDR_PSD_TYPE = 133;

// The view's own menu and keys.
constexpr u32 IDR_VIEW = 134;
