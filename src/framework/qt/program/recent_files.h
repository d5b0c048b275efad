// The files that were opened last, the latest first. Several running copies of the program keep one list: a
// change is made to what the others have left there, never to what was read a while ago.
#pragma once

#include "base/types.h"
#include "framework/core/profile.h"

#include <string>
#include <vector>

class CRecentFileList {
  public:
    // nMaxSize: at most 9, since each entry's mnemonic is one digit.
    explicit CRecentFileList(u32 nMaxSize) : m_nMaxSize(nMaxSize) {}

    u32 GetSize() const { return static_cast<u32>(m_paths.size()); }

    // Absolute paths, as bytes.
    const std::string& operator[](u32 nIndex) const { return m_paths[nIndex]; }

    // Puts the path first, wherever it stood; the last one makes room.
    void Add(const std::string& strPath);
    void Remove(const std::string& strPath);

    void ReadList(const Profile& profile);

    // Carries out on the list that is kept whatever was added and removed here since the last time that it
    // could be written, and takes over the result. False when it cannot be written: nothing is forgotten.
    bool WriteList(Profile& profile);

  private:
    struct Change {
        std::string strPath;
        bool bAdd;
    };

    void Note(const Change& change);
    void Apply(const Change& change);
    void Load(const ProfileSection& section);
    void Store(ProfileSection& section) const;

    u32 m_nMaxSize;
    std::vector<std::string> m_paths;
    std::vector<Change> m_unwritten;
};
