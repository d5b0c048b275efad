#include "framework/qt/program/recent_files.h"

#include "framework/qt/kit/file_uri.h"

#include <algorithm>

namespace {

constexpr const char* SECTION = "Recent File List";

std::string EntryName(u32 nIndex) {
    return "File" + std::to_string(nIndex + 1);
}

}  // namespace

void CRecentFileList::Apply(const Change& change) {
    std::erase(m_paths, change.strPath);
    if (change.bAdd) m_paths.insert(m_paths.begin(), change.strPath);
    if (m_paths.size() > m_nMaxSize) m_paths.resize(m_nMaxSize);
}

// Of several changes of one path only the last one counts.
void CRecentFileList::Note(const Change& change) {
    std::erase_if(m_unwritten, [&](const Change& before) { return before.strPath == change.strPath; });
    m_unwritten.push_back(change);
    Apply(change);
}

void CRecentFileList::Add(const std::string& strPath) {
    Note({strPath, true});
}

void CRecentFileList::Remove(const std::string& strPath) {
    Note({strPath, false});
}

void CRecentFileList::ReadList(const Profile& profile) {
    Load(profile.ReadSection(SECTION));
}

bool CRecentFileList::WriteList(Profile& profile) {
    if (m_unwritten.empty()) return true;
    const bool written = profile.ChangeSection(SECTION, [this](ProfileSection& section) {
        Load(section);
        for (const Change& change : m_unwritten) Apply(change);
        Store(section);
    });
    if (written) m_unwritten.clear();
    return written;
}

// Entries that are no paths, or stand there twice, are passed over.
void CRecentFileList::Load(const ProfileSection& section) {
    m_paths.clear();
    for (u32 i = 0; i < m_nMaxSize; ++i) {
        const auto entry = section.find(EntryName(i));
        if (entry == section.end()) continue;
        const std::optional<std::string> path = FromFileUri(entry->second);
        if (path && std::ranges::find(m_paths, *path) == m_paths.end()) m_paths.push_back(*path);
    }
}

void CRecentFileList::Store(ProfileSection& section) const {
    section.clear();
    for (u32 i = 0; i < GetSize(); ++i) section[EntryName(i)] = ToFileUri(m_paths[i]);
}
