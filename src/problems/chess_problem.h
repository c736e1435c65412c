#pragma once
// TChessProblem: the record of one problem. This holds its solve-wide state,
// the part that every search thread reaches through TChessboard::m_pProblem:
// the node counter, the command word that stops, pauses or redirects threads,
// and the settings of the running solve.
#include <atomic>
#include <cstdint>
#include <thread>

namespace zorvane {

struct TThreadContext;

enum EngineCommand : uint8_t {
    COMMAND_RUN = 0,
    COMMAND_PAUSE = 1,
    COMMAND_JUMP = 2,
    COMMAND_STOP = 3,
};
constexpr uint16_t ALL_THREADS = 0xFFFF;

struct TChessProblem {
    // Counted at every White step with fewer than 4 plies left.
    std::atomic<uint64_t> m_nNodes{0};

    // The command word: written under the spin byte, read without it at every move.
    std::atomic<uint8_t> m_bCommandLock{0};
    std::atomic<uint8_t> m_nCommand{COMMAND_RUN};
    std::atomic<uint16_t> m_wCommandThread{ALL_THREADS};
    uint8_t m_nSavedCommand = COMMAND_RUN;
    uint16_t m_wSavedCommandThread = ALL_THREADS;
    // Target of a jump: the ply to go back to, and what to do with its moves
    // (1 swap the current move with the one before it, 2 send the one before it to the end).
    uint16_t m_wCommandDepth = 0;
    uint8_t m_nCommandMode = 0;

    uint8_t m_bSafeMode = 0;
    // Repetitions count only for positions first reached with at most this many plies left.
    uint16_t m_shRepetitionLimit = 0;
    uint8_t m_nMultithreadingLevels = 0;
    uint8_t m_nSchedulerLevels = 0;
    bool m_bSchedulerAll = false;

    // Called from the search at its regular visits to the outside world.
    void (*m_pfnProgress)(TChessProblem& problem, const TThreadContext& thread, void* user) = nullptr;
    void* m_pProgressUser = nullptr;

    void LockCommand() {
        while (m_bCommandLock.exchange(1, std::memory_order_acquire)) std::this_thread::yield();
    }
    void UnlockCommand() { m_bCommandLock.store(0, std::memory_order_release); }

    // Sets the command word for one thread or ALL_THREADS.
    void SetCommand(uint8_t command, uint16_t thread = ALL_THREADS) {
        LockCommand();
        m_wCommandThread.store(thread, std::memory_order_relaxed);
        m_nCommand.store(command, std::memory_order_release);
        UnlockCommand();
    }
    // Whether the command word tells thread `thread` to stop.
    bool StopMeant(uint16_t thread) const {
        if (m_nCommand.load(std::memory_order_acquire) < COMMAND_STOP) return false;
        const uint16_t target = m_wCommandThread.load(std::memory_order_relaxed);
        return target == ALL_THREADS || target == thread;
    }
    // A jump back to `depth` plies left; afterwards the word becomes the saved pair.
    void SetJump(uint16_t thread, uint16_t depth, uint8_t mode, uint8_t thenCommand, uint16_t thenThread) {
        LockCommand();
        m_wCommandDepth = depth;
        m_nCommandMode = mode;
        m_nSavedCommand = thenCommand;
        m_wSavedCommandThread = thenThread;
        m_wCommandThread.store(thread, std::memory_order_relaxed);
        m_nCommand.store(COMMAND_JUMP, std::memory_order_release);
        UnlockCommand();
    }
};

} // namespace zorvane
