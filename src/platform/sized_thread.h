#pragma once
// A thread with a stack of a chosen size. The search recurses one ply at a
// time with its move lists on the stack, so a long stipulation needs more
// than a platform's default; std::thread cannot say how much.
#include <cstddef>
#include <functional>

namespace zorvane {

class SizedThread {
  public:
    SizedThread() = default;
    ~SizedThread(); // joins a thread still running
    SizedThread(const SizedThread&) = delete;
    SizedThread& operator=(const SizedThread&) = delete;

    // Runs `body` on a new thread with at least `stackBytes` of stack. Throws
    // std::system_error when the system refuses the thread; std::logic_error
    // when a thread of this object has not been joined yet.
    void Start(std::size_t stackBytes, std::function<void()> body);
    void Join();
    bool Joinable() const { return m_started; }

  private:
    struct Handle;
    Handle* m_handle = nullptr;
    bool m_started = false;
    std::function<void()> m_body;
};

} // namespace zorvane
