#include "app/choice_list.h"

#include <algorithm>

void FillList(CComboBox& list, const std::vector<std::string>& names, u32 nSelected) {
    SendMessageA(&list, CB_RESETCONTENT, 0, 0);
    for (const std::string& name : names)
        SendMessageA(&list, CB_ADDSTRING, 0, reinterpret_cast<i64>(name.c_str()));
    SendMessageA(&list, CB_SETCURSEL, nSelected < names.size() ? nSelected : 0, 0);
}

ListEntry EntryAt(const std::vector<std::string>& names, u32 nPlace) {
    ListEntry entry = {nPlace, std::nullopt};
    if (nPlace < names.size() && std::ranges::count(names, names[nPlace]) == 1) entry.name = names[nPlace];
    return entry;
}

std::optional<u32> FindAgain(const ListEntry& entry, const std::vector<std::string>& names) {
    const auto namesakes = entry.name ? std::ranges::count(names, *entry.name) : 2;
    if (namesakes == 0) return std::nullopt;
    if (namesakes == 1) return static_cast<u32>(std::ranges::find(names, *entry.name) - names.begin());
    return entry.nPlace < names.size() ? std::optional(entry.nPlace) : std::nullopt;
}
