#pragma once
// TRegisterLock: the lock of one register map. Many readers share it, one
// writer holds it alone, and a writer that has taken the exclusive flag turns
// new readers away until it is through, so that stores are never starved by
// the much more frequent look-ups. The writer may take it again (re-entry),
// and may read under its own write lock.
//
// Five 32-bit words, all zero when free. Waiting is a spin of a bounded number
// of tries and then a yield per try: a look-up holds the lock for a few hundred
// nanoseconds, far less than a trip through the scheduler.
#include <atomic>
#include <cstdint>

namespace zorvane {

// A small number naming the calling thread, never 0, fixed for its life.
uint32_t RegisterThreadId();

class TRegisterLock {
  public:
    TRegisterLock() = default;
    TRegisterLock(const TRegisterLock&) = delete;
    TRegisterLock& operator=(const TRegisterLock&) = delete;

    void LockWrite();
    void UnlockWrite();
    // False when the caller holds the write lock and passed straight on: such a
    // read is not counted, and its release must not be either.
    bool LockRead();
    void UnlockRead(bool counted) {
        if (counted) m_nReaders.fetch_sub(1);
    }

    // For tests and diagnostics; a snapshot only.
    bool Held() const { return m_bExclusive.load() != 0; }
    uint32_t Depth() const { return m_nDepth.load(); }
    uint32_t WaitingWriters() const { return m_nWaitingWriters.load(); }
    uint32_t Readers() const { return m_nReaders.load(); }
    uint32_t Owner() const { return m_uOwner.load(); }

    // Tries of busy waiting before each further try yields the processor.
    static constexpr int kSpinTries = 64000;

  private:
    std::atomic<uint32_t> m_bExclusive{0};
    std::atomic<uint32_t> m_nDepth{0};
    std::atomic<uint32_t> m_nWaitingWriters{0};
    std::atomic<uint32_t> m_nReaders{0};
    std::atomic<uint32_t> m_uOwner{0};
};
static_assert(sizeof(TRegisterLock) == 20, "five 32-bit words");

class TRegisterWriteGuard {
  public:
    explicit TRegisterWriteGuard(TRegisterLock& lock) : m_lock(lock) { m_lock.LockWrite(); }
    ~TRegisterWriteGuard() { m_lock.UnlockWrite(); }
    TRegisterWriteGuard(const TRegisterWriteGuard&) = delete;
    TRegisterWriteGuard& operator=(const TRegisterWriteGuard&) = delete;

  private:
    TRegisterLock& m_lock;
};

class TRegisterReadGuard {
  public:
    explicit TRegisterReadGuard(TRegisterLock& lock) : m_lock(lock), m_bCounted(lock.LockRead()) {}
    ~TRegisterReadGuard() { m_lock.UnlockRead(m_bCounted); }
    TRegisterReadGuard(const TRegisterReadGuard&) = delete;
    TRegisterReadGuard& operator=(const TRegisterReadGuard&) = delete;

  private:
    TRegisterLock& m_lock;
    bool m_bCounted;
};

} // namespace zorvane
