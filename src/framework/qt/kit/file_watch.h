// Watches a file that was read for being written again, or for another one's taking its name, as programs do
// that save to a new file first. It tells once the file has been at rest for a while.
#pragma once

#include "framework/core/file_stamp.h"

#include <functional>
#include <memory>
#include <set>
#include <string>

class QObject;
class QTimer;
class SharedWatcher;

class FileWatch {
  public:
    // The stamp is that of the file as it was read. onChanged is called whenever the file is another one than
    // that or than what was told last, from the event loop and under no dialog or menu; it may destroy the
    // watch. A file whose path is not UTF-8 is not watched.
    FileWatch(const std::string& strPath, const FileStamp& stamp, std::function<void()> onChanged);
    ~FileWatch();

    // Whether the file is known to be another one than was read.
    bool HasChanged() const { return m_bChanged; }

    // True once for each change.
    bool TakeNews();

  private:
    void Begin();
    void Look();
    void OnRest();

    const std::string m_strPath;
    FileStamp m_told;
    std::optional<FileStamp> m_latest;  // as it was looked at last; nothing while there is no file
    std::function<void()> m_onChanged;
    std::shared_ptr<SharedWatcher> m_pWatcher;
    std::set<std::string> m_folders;      // that it watches
    std::unique_ptr<QObject> m_pContext;  // nothing is told of any more once it is gone
    QTimer* m_pTimer;                     // owned
    bool m_bChanged = false;
    bool m_bNews = false;
};
