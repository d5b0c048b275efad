#include "app/choice_list.h"

void FillList(CComboBox& list, const std::vector<std::string>& names, u32 nSelected) {
    SendMessageA(&list, CB_RESETCONTENT, 0, 0);
    for (const std::string& name : names)
        SendMessageA(&list, CB_ADDSTRING, 0, reinterpret_cast<i64>(name.c_str()));
    SendMessageA(&list, CB_SETCURSEL, nSelected < names.size() ? nSelected : 0, 0);
}
