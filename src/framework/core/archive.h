// The framework's serialisation archive: a direction and a file. It keeps nothing of the file to itself;
// reading ahead is the file's business.
#pragma once

#include "base/types.h"

#include <string>

class CFile;

class CArchive {
  public:
    enum Mode { store = 0, load = 1 };

    // The file is borrowed and outlives the archive; without one (null) nothing is read or written.
    CArchive(CFile* pFile, Mode mode) : m_pFile(pFile), m_bLoading(mode == load) {}
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;
    virtual ~CArchive() = default;

    bool IsLoading() const { return m_bLoading; }
    CFile* GetFile() const { return m_pFile; }

    // The bytes delivered, fewer than nCount at the file's end. Exceptions of the file pass through.
    virtual u32 Read(void* pData, u32 nCount);
    virtual void Write(const void* pData, u32 nCount);

    // Afterwards the file's position is the archive's.
    virtual void Flush() {}

    std::string m_strFileName;  // path of the document

  private:
    CFile* m_pFile;
    bool m_bLoading;
};
