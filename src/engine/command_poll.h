#pragma once
// The command word as the search reads it at every move: stop, pause, or a
// jump that rearranges the list of a ply.
#include "core/move.h"
#include "core/thread_context.h"
#include "engine/solve_job.h"

namespace zorvane {

// What a step does after reading the command word.
enum class Command { Go, Return, Jumped };

// Read without the lock. Stop gives Return with `result` 0; a pause holds the
// thread here (the first thread counts the time held, which the clock of the
// solve leaves out); a jump unwinds to its ply, where the list of `count`
// moves is rearranged so that the step goes on with another move at `index`.
// The word says anything but "run": the slow path of PollCommand.
Command AnswerCommand(SolveJob& job, const TThreadContext& ctx, int n, TMove* moves, int count, int& index,
                      int8_t& result);

// A running search pays one load here and calls nothing.
inline Command PollCommand(SolveJob& job, const TThreadContext& ctx, int n, TMove* moves, int count,
                           int& index, int8_t& result) {
    if (job.m_nCommand.load(std::memory_order_acquire) == COMMAND_RUN) return Command::Go;
    return AnswerCommand(job, ctx, n, moves, count, index, result);
}

// The command word before the move at `index` of a step, obeyed: true when
// the step must return `result`. A jump rearranges the list and moves `index`
// to the move that comes next; the word is then read again there.
inline bool CommandEndsStep(SolveJob& job, const TThreadContext& ctx, int n, TMove* moves, int count,
                            int& index, int8_t& result) {
    for (;;) {
        switch (PollCommand(job, ctx, n, moves, count, index, result)) {
        case Command::Go:
            return false;
        case Command::Return:
            return true;
        case Command::Jumped:
            break;
        }
    }
}

} // namespace zorvane
