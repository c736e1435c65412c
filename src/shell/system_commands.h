#pragma once
// SystemCommands: process priority and processor affinity, the thread count,
// and the Help menu.
#include "shell/command_id.h"

#include <QObject>

#include <cstdint>
#include <filesystem>

namespace zorvane {

class WindowServices;

// The README.md that the Help menu opens: beside the program, then in the
// share folder of an installed program (`<prefix>/share/zorvane`), then in the
// source tree the program was built from. The first of them when none exists.
std::filesystem::path FindReadme(const std::filesystem::path& programDirectory);

class SystemCommands : public QObject {
    Q_OBJECT
  public:
    explicit SystemCommands(WindowServices& window, QObject* parent = nullptr);

    // Threads, About, the readme and the manual, the priority and processor
    // items; false for other commands. The readme and the manual both open the
    // README.md shipped with the program: it is the manual.
    bool dispatch(CommandId id);
    // The affinity mask as last set or seen here.
    uint64_t knownAffinityMask() const { return m_knownMask; }

  private:
    void setPriority(CommandId id);
    void toggleProcessor(int cpu);
    void askThreads();
    void about();
    // Opens the README.md of the program with the system's viewer.
    void openReadme();

    WindowServices& m_window;
    uint64_t m_knownMask;
};

} // namespace zorvane
