// What an archive reads from. Files on disk, files in memory and files that fail on purpose all stand behind
// this one interface.
#pragma once

#include "base/types.h"

class CFile {
  public:
    enum SeekFrom { begin = 0, current = 1, end = 2 };

    CFile() = default;
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;
    virtual ~CFile() = default;

    // Bytes in the file. May throw CFileException, as may all that follow.
    virtual u64 GetLength() const = 0;

    // Moves the position by nOffset bytes from the place named and returns the new one. A position before the
    // first byte throws and moves nothing; one after the last byte is allowed, and nothing can be read
    // there.
    virtual u64 Seek(i64 nOffset, SeekFrom from) = 0;

    // Delivers up to nCount bytes from the position on and moves it past them. Fewer come at the file's
    // end.
    virtual u32 Read(void* pData, u32 nCount) = 0;

    // Writes all nCount bytes or throws. A file that can only be read, as every file on disk, always throws.
    virtual void Write(const void* pData, u32 nCount);
};
