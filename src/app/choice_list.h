// The lists that a layer and a channel are chosen from.
#pragma once

#include "framework/qt/wnd/combo_box.h"

#include <string>
#include <vector>

// Selects the entry at a place, or the first one where there is none.
void FillList(CComboBox& list, const std::vector<std::string>& names, u32 nSelected);
