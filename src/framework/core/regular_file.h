// A file on disk, opened for reading. A window of it is kept in memory: moving the position and asking for
// the length make no system call, and small reads make one for each window. The file is never mapped, so one
// that shrinks or fails while it is open gives a short count or an exception, never a signal.
#pragma once

#include "framework/core/file.h"
#include "framework/core/file_stamp.h"

#include <functional>
#include <memory>
#include <string>

class CRegularFile final : public CFile {
  public:
    // Bytes in a window.
    static constexpr u32 WINDOW_SIZE = 128 * 1024;

    // Readers take the last few bytes of what they have read once more, so a window begins as many bytes
    // before the position.
    static constexpr u32 LOOK_BACK = 4096;

    // The most that a window filled at the position is sure to hold from there on. A read that wants more
    // goes straight into the caller's memory. Whoever adds a threshold here adds it to the test of whole
    // reads.
    static constexpr u32 MOST_BY_WINDOW = WINDOW_SIZE - LOOK_BACK;

    // strPath: the bytes of the path, in no particular encoding. Throws CFileException with the system's
    // reason when it cannot be opened, and at once, without blocking, when it names a folder, a pipe, a
    // socket or a device.
    explicit CRegularFile(const std::string& strPath);
    ~CRegularFile() override;

    // As it was when the file was opened.
    const FileStamp& GetStamp() const { return m_stamp; }

    u64 GetLength() const override { return m_stamp.nSize; }
    u64 Seek(i64 nOffset, SeekFrom from) override;
    u32 Read(void* pData, u32 nCount) override;

    // Borrowed. All that is read comes from there by pread.
    int GetDescriptor() const { return m_nDescriptor; }

    // Called before each read that goes to the system, where there is one. Tests change the file there, as
    // another program could at any time.
    inline static std::function<void()> s_beforeRead;

  private:
    u32 ReadAt(u64 nPosition, void* pData, u32 nCount) const;
    u32 CopyFromWindow(void* pData, u32 nCount);
    void FillWindow();

    int m_nDescriptor = -1;
    FileStamp m_stamp;    // as it was when the file was opened
    u64 m_nPosition = 0;  // where the next byte is read
    std::unique_ptr<u8[]> m_pWindow;
    u64 m_nWindowStart = 0;  // file position of the window's first byte
    u32 m_nWindowSize = 0;   // bytes in the window
};
