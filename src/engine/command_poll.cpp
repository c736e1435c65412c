#include "engine/command_poll.h"

#include "engine/result_code.h"

#include <chrono>
#include <cstring>
#include <thread>

namespace zorvane {

namespace {

constexpr auto PAUSE_POLL = std::chrono::milliseconds(100);

} // namespace

Command AnswerCommand(SolveJob& job, const TThreadContext& ctx, int n, TMove* moves, int count, int& index,
                      int8_t& result) {
    for (;;) {
        const uint8_t command = job.m_nCommand.load(std::memory_order_acquire);
        if (command == COMMAND_RUN) return Command::Go;
        const uint16_t target = job.m_wCommandThread.load(std::memory_order_relaxed);
        if (target != ALL_THREADS && target != ctx.m_shThreadId) return Command::Go;
        if (command >= COMMAND_STOP) {
            result = RESULT_NO_MATE;
            return Command::Return;
        }
        if (command == COMMAND_PAUSE) {
            const auto held = std::chrono::steady_clock::now();
            std::this_thread::sleep_for(PAUSE_POLL);
            if (ctx.m_shThreadId == 0)
                job.m_nPausedMicroseconds.fetch_add(
                    static_cast<uint64_t>(std::chrono::duration_cast<std::chrono::microseconds>(
                                              std::chrono::steady_clock::now() - held)
                                              .count()),
                    std::memory_order_relaxed);
            continue;
        }
        // A jump.
        const int depth = job.m_wCommandDepth;
        if (n < depth) {
            // The White step right below the target answers "mate", so that
            // the Black step there simply goes on with its next reply.
            result = (n & 1) && n + 1 == depth ? RESULT_MATE : RESULT_NO_MATE;
            return Command::Return;
        }
        job.LockCommand();
        if (job.m_nCommand.load(std::memory_order_relaxed) == COMMAND_JUMP) {
            if (index > 0) {
                if (job.m_nCommandMode == 1 && index < count) {
                    std::swap(moves[index], moves[index - 1]);
                } else if (job.m_nCommandMode == 2) {
                    const TMove interrupted = moves[index - 1];
                    std::memmove(moves + index - 1, moves + index,
                                 sizeof(TMove) * static_cast<size_t>(count - index));
                    moves[count - 1] = interrupted;
                }
                --index;
            }
            job.m_wCommandThread.store(job.m_wSavedCommandThread, std::memory_order_relaxed);
            job.m_nCommand.store(job.m_nSavedCommand, std::memory_order_release);
        }
        job.UnlockCommand();
        return Command::Jumped;
    }
}

} // namespace zorvane
