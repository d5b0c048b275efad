#include "app/neighbours.h"

#include "framework/core/path_name.h"
#include "framework/qt/kit/natural_order.h"

#include <algorithm>
#include <filesystem>

namespace {

// Those that can be read at all, links to files among them.
std::vector<std::string> ListFiles(const std::string& strFolder,
                                   const std::function<bool(const std::string&)>& isListed) {
    std::vector<std::string> names;
    std::error_code failed;
    std::filesystem::directory_iterator entry(strFolder, failed);
    for (; !failed && entry != std::filesystem::directory_iterator(); entry.increment(failed)) {
        const std::string name = entry->path().filename().native();
        std::error_code unknown;
        if (isListed(name) && entry->is_regular_file(unknown)) names.push_back(name);
    }
    return names;
}

}  // namespace

Neighbours::Neighbours(const std::string& strPath, const std::function<bool(const std::string&)>& isListed)
    : m_strFolder(FolderOf(strPath)), m_names(ListFiles(m_strFolder, isListed)) {
    const std::string own = FileNameOf(strPath);
    m_bOwnListed = std::ranges::find(m_names, own) != m_names.end();
    if (!m_bOwnListed) m_names.push_back(own);
    SortNaturally(m_names);
    m_nOwn = static_cast<std::size_t>(std::ranges::find(m_names, own) - m_names.begin());
}

std::vector<std::string> Neighbours::After() const {
    std::vector<std::string> paths;
    for (std::size_t i = m_nOwn + 1; i < m_names.size(); ++i) paths.push_back(m_strFolder + m_names[i]);
    return paths;
}

std::vector<std::string> Neighbours::Before() const {
    std::vector<std::string> paths;
    for (std::size_t i = m_nOwn; i > 0; --i) paths.push_back(m_strFolder + m_names[i - 1]);
    return paths;
}

std::string Neighbours::PlaceText(const std::string& strPath) const {
    const auto found = std::ranges::find(m_names, FileNameOf(strPath));
    std::size_t place = static_cast<std::size_t>(found - m_names.begin());
    std::size_t count = m_names.size();
    if (!m_bOwnListed) {
        --count;
        if (m_nOwn < place) --place;
    }
    return std::to_string(place + 1) + " of " + std::to_string(count);
}
