#include "engine/solve_job.h"

#include "core/thread_context.h"

#include <algorithm>

namespace zorvane {

bool SafeModeFor(const TChessProblem& problem, bool quickModeOption) {
    return !quickModeOption || (problem.flags & SafeMode);
}

void SolveJob::NoteLine(const TThreadContext& ctx, int top, int below) {
    if (ctx.m_shThreadId != 0) return;
    std::unique_lock<std::mutex> guard(m_lineLock, std::try_to_lock);
    if (!guard.owns_lock()) return;
    // The child of the node with p plies left sits in slot p: its last move is
    // the move being analysed there.
    const int length = std::clamp(top - below, 0, SHOWN_LINE_DEPTH);
    for (int i = 0; i < length; ++i) {
        const int p = top - i;
        m_line.steps[i] = {ctx.m_aBoards[p].m_LastMove, ctx.m_aMoveIndex[p], ctx.m_aMoveCount[p]};
    }
    m_line.length = length;
}

} // namespace zorvane
