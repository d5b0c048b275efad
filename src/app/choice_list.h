// The lists that a layer and a channel are chosen from.
#pragma once

#include "framework/qt/wnd/combo_box.h"

#include <optional>
#include <string>
#include <vector>

// Selects the entry at a place, or the first one where there is none.
void FillList(CComboBox& list, const std::vector<std::string>& names, u32 nSelected);

// An entry of a list that is filled anew.
struct ListEntry {
    u32 nPlace = 0;
    std::optional<std::string> name;  // where it was the only one of that name
};

ListEntry EntryAt(const std::vector<std::string>& names, u32 nPlace);

// Where the entry stands among other names: by its own where that is the only one of its kind there too, else
// by its place. Nothing where there is none such.
std::optional<u32> FindAgain(const ListEntry& entry, const std::vector<std::string>& names);
