#include "framework/core/resource.h"

#include <algorithm>

namespace {

const ResourceTables* g_pTables = nullptr;

template <typename Table>
auto FindById(const Table& table, u32 nId) -> decltype(table.data()) {
    const auto found = std::ranges::find_if(table, [nId](const auto& row) { return row.nId == nId; });
    return found == table.end() ? nullptr : &*found;
}

}  // namespace

void AfxSetResources(const ResourceTables* pTables) {
    g_pTables = pTables;
}

std::string AfxLoadString(u32 nId) {
    const StringResource* const row = g_pTables ? FindById(g_pTables->strings, nId) : nullptr;
    return row ? row->pszText : std::string();
}

std::string AfxLoadPrompt(u32 nId) {
    const std::string lines = AfxLoadString(nId);
    return lines.substr(0, lines.find('\n'));
}

std::string AfxLoadTip(u32 nId) {
    const std::string lines = AfxLoadString(nId);
    const std::size_t end = lines.find('\n');
    return end == std::string::npos ? std::string() : lines.substr(end + 1);
}

const DialogResource* AfxFindDialog(u32 nId) {
    return g_pTables ? FindById(g_pTables->dialogs, nId) : nullptr;
}

const MenuResource* AfxFindMenu(u32 nId) {
    return g_pTables ? FindById(g_pTables->menus, nId) : nullptr;
}

std::span<const AcceleratorTable> AfxGetAccelerators() {
    return g_pTables ? g_pTables->accelerators : std::span<const AcceleratorTable>();
}

VersionResource AfxGetVersion() {
    return g_pTables ? g_pTables->version : VersionResource{"", "", {}};
}

const ToolBarResource* AfxFindToolBar(u32 nId) {
    return g_pTables ? FindById(g_pTables->toolBars, nId) : nullptr;
}

const PictureResource* AfxFindPicture(u32 nId) {
    return g_pTables ? FindById(g_pTables->pictures, nId) : nullptr;
}
