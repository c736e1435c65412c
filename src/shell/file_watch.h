#pragma once
// FileWatch: notices that something touched the open file. It only raises a
// flag; the window looks at the flag between its own work (never inside a
// box or a load) and decides by the file's last-write time whether the file
// really changed.
#include <QFileSystemWatcher>
#include <QObject>

#include <filesystem>
#include <optional>

namespace zorvane {

class FileWatch : public QObject {
    Q_OBJECT
  public:
    explicit FileWatch(QObject* parent = nullptr);

    // Watches the file and its folder (a save by rename replaces the file); an empty path stops.
    void watch(const std::filesystem::path& file);
    bool signalled() const { return m_signalled; }
    // The file's last-write time when it differs from `known`; clears the flag either way.
    std::optional<std::filesystem::file_time_type> takeChange(std::filesystem::file_time_type known);

  private:
    void onChange();

    QFileSystemWatcher m_watcher;
    std::filesystem::path m_file;
    bool m_signalled = false;
};

} // namespace zorvane
