#pragma once
// RunningSolves: the numbers of the problems whose solve runs now, under a
// lock of their own. The solve driver adds a number when a run starts and
// takes it out when the run ends; the window reads the set for the menus, the
// icon animation and the question on quitting. Plain C++.
#include <cstdint>
#include <functional>
#include <mutex>
#include <set>

namespace zorvane {

class RunningSolves {
  public:
    // Called after every change, on the thread that made it.
    std::function<void()> onChanged;

    void add(int32_t id);
    void remove(int32_t id);
    bool contains(int32_t id) const;
    int count() const;
    std::set<int32_t> snapshot() const;

    // A paused run stays in the set; the window offers Resume for it.
    void setPaused(int32_t id, bool paused);
    bool isPaused(int32_t id) const;

  private:
    void changed();

    mutable std::mutex m_lock;
    std::set<int32_t> m_running;
    std::set<int32_t> m_paused;
};

} // namespace zorvane
