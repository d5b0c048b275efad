#include "framework/core/resource.h"

#include <algorithm>

namespace {

const ResourceTables* g_pTables = nullptr;

template <typename Table>
auto FindById(const Table& table, u32 nID) -> decltype(table.data()) {
    const auto found = std::ranges::find_if(table, [nID](const auto& row) { return row.nID == nID; });
    return found == table.end() ? nullptr : &*found;
}

}  // namespace

void AfxSetResources(const ResourceTables* pTables) {
    g_pTables = pTables;
}

std::string AfxLoadString(u32 nID) {
    const StringResource* const row = g_pTables ? FindById(g_pTables->strings, nID) : nullptr;
    return row ? row->pszText : std::string();
}

std::string AfxLoadPrompt(u32 nID) {
    const std::string lines = AfxLoadString(nID);
    return lines.substr(0, lines.find('\n'));
}

std::string AfxLoadTip(u32 nID) {
    const std::string lines = AfxLoadString(nID);
    const std::size_t end = lines.find('\n');
    return end == std::string::npos ? std::string() : lines.substr(end + 1);
}

const DialogResource* AfxFindDialog(u32 nID) {
    return g_pTables ? FindById(g_pTables->dialogs, nID) : nullptr;
}

const MenuResource* AfxFindMenu(u32 nID) {
    return g_pTables ? FindById(g_pTables->menus, nID) : nullptr;
}

std::span<const AcceleratorTable> AfxGetAccelerators() {
    return g_pTables ? g_pTables->accelerators : std::span<const AcceleratorTable>();
}

VersionResource AfxGetVersion() {
    return g_pTables ? g_pTables->version : VersionResource{"", "", {}};
}

const ToolBarResource* AfxFindToolBar(u32 nID) {
    return g_pTables ? FindById(g_pTables->toolBars, nID) : nullptr;
}

const PictureResource* AfxFindPicture(u32 nID) {
    return g_pTables ? FindById(g_pTables->pictures, nID) : nullptr;
}
