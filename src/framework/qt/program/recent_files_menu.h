// The recent files as the program keeps and shows them: in its settings, and in a menu.
#pragma once

#include "framework/qt/program/recent_files.h"

class CCmdUI;

class CRecentFilesMenu {
  public:
    // Reads the list, which takes that many, from the settings, which are borrowed.
    void Load(Profile& profile, u32 nMaxMRU);

    const CRecentFileList& GetList() const { return m_list; }

    void Add(const std::string& strPath);
    void Remove(const std::string& strPath);

    // Writes what has changed. What cannot be written now is with the next change, or at the end.
    void Write();
    bool IsChanged() const { return m_bChanged; }

    // Without any recent file the first item says what would stand there.
    void UpdateItem(u32 nIndex, CCmdUI& ui) const;

  private:
    Profile* m_pProfile = nullptr;
    CRecentFileList m_list{0};
    bool m_bChanged = false;  // since it was last written, or could not be
};
