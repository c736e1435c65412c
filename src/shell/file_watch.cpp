#include "shell/file_watch.h"

#include <QString>
#include <QStringList>

namespace zorvane {

FileWatch::FileWatch(QObject* parent) : QObject(parent) {
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &FileWatch::onChange);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &FileWatch::onChange);
}

void FileWatch::watch(const std::filesystem::path& file) {
    if (!m_watcher.files().isEmpty()) m_watcher.removePaths(m_watcher.files());
    if (!m_watcher.directories().isEmpty()) m_watcher.removePaths(m_watcher.directories());
    m_file = file;
    m_signalled = false;
    if (file.empty()) return;
    m_watcher.addPath(QString::fromStdWString(file.wstring()));
    m_watcher.addPath(QString::fromStdWString(file.parent_path().wstring()));
}

void FileWatch::onChange() {
    m_signalled = true;
    // A file replaced by a rename drops out of the watch; take the new one in.
    const QString file = QString::fromStdWString(m_file.wstring());
    if (!m_file.empty() && !m_watcher.files().contains(file)) m_watcher.addPath(file);
}

std::optional<std::filesystem::file_time_type> FileWatch::takeChange(std::filesystem::file_time_type known) {
    m_signalled = false;
    std::error_code error;
    const auto time = std::filesystem::last_write_time(m_file, error);
    if (error || time == known) return std::nullopt;
    return time;
}

} // namespace zorvane
