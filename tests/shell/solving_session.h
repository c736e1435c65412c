#pragma once
// A window with its solving runs attached, as the program wires them, and a
// solve that runs until it is stopped.
#include "shell/solve_controller.h"
#include "window_session.h"

#include <memory>

namespace zorvane {

inline const QString LONG_SEARCH = QStringLiteral(ZORVANE_SOURCE_DIR "/tests/data/long_search.cp");

struct SolvingSession : Session {
    std::unique_ptr<SolveController> solving;
    void attach() {
        solving = std::make_unique<SolveController>(*window, window->board());
        solving->attachTo(*window);
    }
    ~SolvingSession() { solving.reset(); }
};

// Opens the opening position as a #9, whose proof takes minutes.
inline void startLong(SolvingSession& s) {
    QFile::copy(LONG_SEARCH, s.path(QStringLiteral("long.cp")));
    QFile(s.path(QStringLiteral("long.cp"))).setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    start(s, s.path(QStringLiteral("long.cp")));
    s.attach();
}

} // namespace zorvane
