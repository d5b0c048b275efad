// A drop-down list. It is spoken to in messages; its entries keep the order in which they were added, and a
// new selection of the user's is told to the frame as CBN_SELCHANGE.
#pragma once

#include "framework/qt/wnd/wnd.h"

constexpr u32 CB_ADDSTRING = 0x143;  // lParam: the entry's text, bytes of unknown encoding; its position
constexpr u32 CB_GETCURSEL = 0x147;  // -1 without a selection
constexpr u32 CB_RESETCONTENT = 0x14B;
constexpr u32 CB_SETCURSEL = 0x14E;  // wParam: position

class CComboBox : public CWnd {
  public:
    // Stands for a list in the window from now on. False when that has none with this id.
    bool SubclassDlgItem(u32 nID, CWnd* pParent);

    i64 WindowProc(u32 nMessage, u64 wParam, i64 lParam) override;
};
