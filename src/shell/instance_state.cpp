#include "shell/instance_state.h"

#include <atomic>

namespace zorvane {

namespace {
std::atomic<bool> g_isSecondInstance{false};
}

void SetSecondInstance(bool second) {
    g_isSecondInstance.store(second);
}
bool IsSecondInstance() {
    return g_isSecondInstance.load();
}
bool MayWriteLichessFiles() {
    return !g_isSecondInstance.load();
}

} // namespace zorvane
