#include "register_lock.h"

#include <thread>

namespace zorvane {

namespace {

// Waits while `busy()` holds: kSpinTries tries at full speed, then a yield per try.
template <class Busy> void waitWhile(Busy busy) {
    for (int tries = 0; busy(); ++tries)
        if (tries >= TRegisterLock::kSpinTries) std::this_thread::yield();
}

} // namespace

uint32_t RegisterThreadId() {
    static std::atomic<uint32_t> s_nNext{1};
    thread_local const uint32_t id = s_nNext.fetch_add(1, std::memory_order_relaxed);
    return id;
}

void TRegisterLock::LockWrite() {
    const uint32_t me = RegisterThreadId();
    for (int tries = 0;; ++tries) {
        if (m_bExclusive.load(std::memory_order_relaxed) == 0 && m_bExclusive.exchange(1) == 0) {
            m_uOwner.store(me);
            break;
        }
        // Only this thread can have written its own id, so the test needs no lock.
        if (m_uOwner.load() == me) {
            m_nDepth.fetch_add(1);
            return;
        }
        if (tries >= kSpinTries) std::this_thread::yield();
    }
    // The flag is ours; readers that came in before it must leave first, and the
    // waiting count keeps new ones out meanwhile.
    m_nWaitingWriters.fetch_add(1);
    waitWhile([this] { return m_nReaders.load() != 0; });
    m_nWaitingWriters.fetch_sub(1);
}

void TRegisterLock::UnlockWrite() {
    if (m_nDepth.load() > 0) {
        m_nDepth.fetch_sub(1);
        return;
    }
    m_uOwner.store(0);
    m_bExclusive.exchange(0);
}

bool TRegisterLock::LockRead() {
    if (m_uOwner.load() == RegisterThreadId()) return false;
    for (;;) {
        waitWhile([this] { return m_nWaitingWriters.load() != 0; });
        waitWhile([this] { return m_bExclusive.load() != 0; });
        m_nReaders.fetch_add(1);
        // A writer may have taken the flag between the test and the count; it is
        // now waiting for this count to drop, so give way to it.
        if (m_bExclusive.load() == 0) return true;
        m_nReaders.fetch_sub(1);
    }
}

} // namespace zorvane
