// The register lock: shared readers, one writer, re-entry for the writer, and
// writers before new readers.
#include "registers/register_lock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

namespace zorvane {
namespace {

using namespace std::chrono_literals;

// Waits (bounded) until `done()` holds; false when it never did.
template <class Done> bool eventually(Done done) {
    for (int i = 0; i < 20000; ++i) {
        if (done()) return true;
        std::this_thread::sleep_for(1ms);
    }
    return false;
}

TEST(RegisterLock, IsFiveZeroWordsWhenFree) {
    TRegisterLock lock;
    EXPECT_FALSE(lock.Held());
    EXPECT_EQ(lock.Depth(), 0u);
    EXPECT_EQ(lock.WaitingWriters(), 0u);
    EXPECT_EQ(lock.Readers(), 0u);
    EXPECT_EQ(lock.Owner(), 0u);
}

TEST(RegisterLock, ThreadIdsAreNonZeroAndDistinct) {
    const uint32_t mine = RegisterThreadId();
    uint32_t other = 0;
    std::thread([&] { other = RegisterThreadId(); }).join();
    EXPECT_NE(mine, 0u);
    EXPECT_NE(other, 0u);
    EXPECT_NE(mine, other);
    EXPECT_EQ(RegisterThreadId(), mine);
}

TEST(RegisterLock, TheWriterReentersAndReleasesLevelByLevel) {
    TRegisterLock lock;
    lock.LockWrite();
    EXPECT_TRUE(lock.Held());
    EXPECT_EQ(lock.Owner(), RegisterThreadId());
    EXPECT_EQ(lock.Depth(), 0u);
    lock.LockWrite();
    lock.LockWrite();
    EXPECT_EQ(lock.Depth(), 2u);
    lock.UnlockWrite();
    lock.UnlockWrite();
    EXPECT_TRUE(lock.Held());
    EXPECT_EQ(lock.Depth(), 0u);
    EXPECT_EQ(lock.Owner(), RegisterThreadId());
    lock.UnlockWrite();
    EXPECT_FALSE(lock.Held());
    EXPECT_EQ(lock.Owner(), 0u);
}

TEST(RegisterLock, TheWriterReadsUnderItsOwnLockWithoutBeingCounted) {
    TRegisterLock lock;
    {
        TRegisterWriteGuard write(lock);
        EXPECT_FALSE(lock.LockRead());
        EXPECT_EQ(lock.Readers(), 0u);
        lock.UnlockRead(false);
        TRegisterReadGuard read(lock);
        EXPECT_EQ(lock.Readers(), 0u);
    }
    EXPECT_FALSE(lock.Held());
    EXPECT_EQ(lock.Readers(), 0u);
}

TEST(RegisterLock, ReadersShareTheLock) {
    TRegisterLock lock;
    TRegisterReadGuard first(lock);
    std::atomic<bool> inside{false};
    std::thread other([&] {
        TRegisterReadGuard second(lock);
        inside = true;
        EXPECT_EQ(lock.Readers(), 2u);
    });
    other.join();
    EXPECT_TRUE(inside);
    EXPECT_EQ(lock.Readers(), 1u);
}

TEST(RegisterLock, AWriterWaitsForTheReadersInside) {
    TRegisterLock lock;
    lock.LockRead();
    std::atomic<bool> written{false};
    std::thread writer([&] {
        TRegisterWriteGuard guard(lock);
        written = true;
    });
    // The writer has the flag and waits for the reader count.
    ASSERT_TRUE(eventually([&] { return lock.Held() && lock.WaitingWriters() == 1; }));
    std::this_thread::sleep_for(20ms);
    EXPECT_FALSE(written);
    lock.UnlockRead(true);
    writer.join();
    EXPECT_TRUE(written);
    EXPECT_FALSE(lock.Held());
    EXPECT_EQ(lock.WaitingWriters(), 0u);
}

TEST(RegisterLock, AWaitingWriterGoesBeforeNewReaders) {
    TRegisterLock lock;
    lock.LockRead();
    std::atomic<int> step{0};
    int writerStep = -1, readerStep = -1;
    std::thread writer([&] {
        TRegisterWriteGuard guard(lock);
        writerStep = step.fetch_add(1);
    });
    ASSERT_TRUE(eventually([&] { return lock.WaitingWriters() == 1; }));
    // A reader that arrives now must not pass the writer, although another
    // reader is inside.
    std::thread reader([&] {
        TRegisterReadGuard guard(lock);
        readerStep = step.fetch_add(1);
    });
    std::this_thread::sleep_for(20ms);
    EXPECT_EQ(step.load(), 0);
    EXPECT_EQ(lock.Readers(), 1u);
    lock.UnlockRead(true);
    writer.join();
    reader.join();
    EXPECT_EQ(writerStep, 0);
    EXPECT_EQ(readerStep, 1);
    EXPECT_FALSE(lock.Held());
    EXPECT_EQ(lock.Readers(), 0u);
}

TEST(RegisterLock, AReaderWaitsForTheWriter) {
    TRegisterLock lock;
    lock.LockWrite();
    std::atomic<bool> read{false};
    std::thread reader([&] {
        TRegisterReadGuard guard(lock);
        read = true;
    });
    std::this_thread::sleep_for(20ms);
    EXPECT_FALSE(read);
    lock.UnlockWrite();
    reader.join();
    EXPECT_TRUE(read);
}

TEST(RegisterLock, TwoThreadsWritingAndReadingKeepTheDataWhole) {
    // Plain data under the lock: a reader must never see the two halves
    // differ, and no increment may be lost. Also run under ThreadSanitizer.
    TRegisterLock lock;
    long first = 0, second = 0;
    constexpr int kRounds = 20000;
    std::atomic<int> torn{0};
    auto work = [&] {
        for (int i = 0; i < kRounds; ++i) {
            {
                TRegisterWriteGuard guard(lock);
                ++first;
                {
                    TRegisterWriteGuard again(lock); // re-entry inside the loop
                    ++second;
                }
            }
            TRegisterReadGuard guard(lock);
            if (first != second) ++torn;
        }
    };
    std::thread a(work), b(work);
    a.join();
    b.join();
    EXPECT_EQ(first, 2 * kRounds);
    EXPECT_EQ(second, 2 * kRounds);
    EXPECT_EQ(torn.load(), 0);
    EXPECT_FALSE(lock.Held());
    EXPECT_EQ(lock.Readers(), 0u);
    EXPECT_EQ(lock.WaitingWriters(), 0u);
}

} // namespace
} // namespace zorvane
