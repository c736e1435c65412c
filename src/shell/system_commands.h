#pragma once
// SystemCommands: process priority and processor affinity, the thread count,
// and the Help menu.
#include <QObject>

#include <cstdint>

namespace zorvane {

class WindowServices;

class SystemCommands : public QObject {
    Q_OBJECT
  public:
    explicit SystemCommands(WindowServices& window, QObject* parent = nullptr);

    // 165, 185, 187, 198, 200 to 204 and the processor items; false for other ids.
    bool dispatch(int id);
    // The affinity mask as last set or seen here.
    uint64_t knownAffinityMask() const { return m_knownMask; }

  private:
    void setPriority(int id);
    void toggleProcessor(int cpu);
    void askThreads();
    void about();
    // Opens a file of the data directory with the system's viewer.
    void openDataFile(const char* name);

    WindowServices& m_window;
    uint64_t m_knownMask;
};

} // namespace zorvane
