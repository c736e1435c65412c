#include "shell/running_solves.h"

namespace zorvane {

void RunningSolves::add(int32_t id) {
    {
        std::lock_guard<std::mutex> lock(m_lock);
        m_running.insert(id);
    }
    changed();
}

void RunningSolves::remove(int32_t id) {
    {
        std::lock_guard<std::mutex> lock(m_lock);
        m_running.erase(id);
        m_paused.erase(id);
    }
    changed();
}

bool RunningSolves::contains(int32_t id) const {
    std::lock_guard<std::mutex> lock(m_lock);
    return m_running.count(id) != 0;
}

int RunningSolves::count() const {
    std::lock_guard<std::mutex> lock(m_lock);
    return static_cast<int>(m_running.size());
}

std::set<int32_t> RunningSolves::snapshot() const {
    std::lock_guard<std::mutex> lock(m_lock);
    return m_running;
}

void RunningSolves::setPaused(int32_t id, bool paused) {
    {
        std::lock_guard<std::mutex> lock(m_lock);
        if (!m_running.count(id)) return;
        if (paused)
            m_paused.insert(id);
        else
            m_paused.erase(id);
    }
    changed();
}

bool RunningSolves::isPaused(int32_t id) const {
    std::lock_guard<std::mutex> lock(m_lock);
    return m_paused.count(id) != 0;
}

void RunningSolves::changed() {
    if (onChanged) onChanged();
}

} // namespace zorvane
