// Files that several programs write: under a lock, and never seen half written.
#pragma once

#include <string>

// A lock between programs, by way of a file that is made for it and stays. The system gives it back whatever
// way its owner ends.
class FileLock {
  public:
    // Waits for a while if another program has it.
    explicit FileLock(const std::string& strPath);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    bool IsHeld() const { return m_bHeld; }

  private:
    int m_nDescriptor;
    bool m_bHeld = false;
};

// Writes the content beside the file and puts it in its place. False when that failed; the file is as it was
// then.
bool ReplaceFile(const std::string& strPath, const std::string& strContent);

// Whether the file has exactly this content.
bool HasContent(const std::string& strPath, const std::string& strContent);
