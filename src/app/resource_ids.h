// The program's own ids.
#pragma once

#include "base/types.h"

// Commands.
constexpr u32 ID_ZOOM = 32771;
constexpr u32 ID_TOGGLE_INFO_BAR = 32772;
constexpr u32 ID_TOGGLE_LAYER_BAR = 32773;

// Panes, bars and controls.
constexpr u32 ID_INDICATOR_INFO = 101;
constexpr u32 IDW_LAYER_BAR = 102;
constexpr u32 IDW_INFO_BAR = 103;
constexpr u32 IDC_LAYER = 1001;
constexpr u32 IDC_CHANNEL = 1002;

// Dialogs.
constexpr u32 IDD_LAYER_BAR = 132;

// The main frame, and the kinds of documents.
constexpr u32 IDR_MAINFRAME = 128;
constexpr u32 IDR_ALL_TYPES = 129;
constexpr u32 IDR_TFF_TYPE = 130;
constexpr u32 IDR_IFF_TYPE = 131;
constexpr u32 IDR_TMG_TYPE = 132;
constexpr u32 IDR_PSD_TYPE = 133;
