#include "framework/qt/kit/file_watch.h"

#include "framework/core/guarded_call.h"

#include <QApplication>
#include <QFile>
#include <QFileSystemWatcher>
#include <QTimer>

#include <filesystem>
#include <map>
#include <utility>

namespace {

constexpr int REST = 300;  // milliseconds without a change

}  // namespace

// One for all, since the system gives its user few of them. Two files can share a folder.
class SharedWatcher {
  public:
    // It goes with the last file that is watched.
    static std::shared_ptr<SharedWatcher> Get() {
        static std::weak_ptr<SharedWatcher> one;
        std::shared_ptr<SharedWatcher> shared = one.lock();
        if (!shared) {
            shared = std::make_shared<SharedWatcher>();
            one = shared;
        }
        return shared;
    }

    void Add(const QString& path) {
        ++m_counts[path];
        Renew(path);
    }

    void Remove(const QString& path) {
        if (--m_counts[path] > 0) return;
        m_counts.erase(path);
        m_watcher.removePath(path);
    }

    // A file whose name another one took is watched no longer.
    void Renew(const QString& path) {
        if (QFile::exists(path)) m_watcher.addPath(path);
    }

    QFileSystemWatcher m_watcher;

  private:
    std::map<QString, int> m_counts;
};

namespace {

QString ToName(const std::string& strPath) {
    return QString::fromStdString(strPath);
}

// The folder of an absolute path and, where a link leads to the file, that of the file.
std::set<std::string> FoldersOf(const std::string& strPath) {
    const std::filesystem::path path(strPath);
    std::set<std::string> folders = {path.parent_path()};
    std::error_code failed;
    const std::filesystem::path file = std::filesystem::canonical(path, failed);
    if (!failed) folders.insert(file.parent_path());
    return folders;
}

}  // namespace

FileWatch::FileWatch(const std::string& strPath, const FileStamp& stamp, std::function<void()> onChanged)
    : m_strPath(strPath),
      m_told(stamp),
      m_latest(stamp),
      m_onChanged(std::move(onChanged)),
      m_pContext(std::make_unique<QObject>()),
      m_pTimer(new QTimer(qApp)) {
    if (!QUtf8StringView(strPath).isValidUtf8()) return;
    m_pTimer->setSingleShot(true);
    m_pTimer->setInterval(REST);
    QObject::connect(m_pTimer, &QTimer::timeout, m_pContext.get(),
                     [this] { AfxGuardedCall([&] { OnRest(); }); });
    // The picture comes first. What happens until then is found by looking.
    m_pTimer->start();
}

FileWatch::~FileWatch() {
    if (m_pWatcher) {
        // The timer outlives this one while a dialog is up, and others may share the folder.
        m_pWatcher->m_watcher.disconnect(m_pTimer);
        m_pWatcher->Remove(ToName(m_strPath));
        for (const std::string& folder : m_folders) m_pWatcher->Remove(ToName(folder));
    }
    // It can be what has led here, and is not deleted before that is over.
    m_pTimer->stop();
    m_pTimer->deleteLater();
}

bool FileWatch::TakeNews() {
    return std::exchange(m_bNews, false);
}

void FileWatch::Begin() {
    m_pWatcher = SharedWatcher::Get();
    m_pWatcher->Add(ToName(m_strPath));
    m_folders = FoldersOf(m_strPath);
    for (const std::string& folder : m_folders) m_pWatcher->Add(ToName(folder));
    const auto look = [this] { Look(); };
    QObject::connect(&m_pWatcher->m_watcher, &QFileSystemWatcher::fileChanged, m_pContext.get(),
                     [look, name = ToName(m_strPath)](const QString& path) {
                         if (path == name) look();
                     });
    QObject::connect(&m_pWatcher->m_watcher, &QFileSystemWatcher::directoryChanged, m_pContext.get(),
                     [look, folders = m_folders](const QString& path) {
                         if (folders.contains(path.toStdString())) look();
                     });
}

// What happens to other files of the folder does not keep this one from its rest.
void FileWatch::Look() {
    const std::optional<FileStamp> now = GetFileStamp(m_strPath);
    if (now == m_latest) return;
    m_latest = now;
    m_pTimer->start();
}

void FileWatch::OnRest() {
    if (m_pWatcher)
        m_pWatcher->Renew(ToName(m_strPath));
    else
        Begin();
    const std::optional<FileStamp> before = m_latest;
    Look();
    if (m_latest != before || !m_latest || *m_latest == m_told) return;
    if (QApplication::activeModalWidget() || QApplication::activePopupWidget()) return m_pTimer->start();
    m_told = *m_latest;
    m_bChanged = true;
    m_bNews = true;
    const std::function<void()> call = m_onChanged;
    call();
}
