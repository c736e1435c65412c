#pragma once
// The special heuristics' tests during a search: each bet of the set in force
// is held against the position a move has just reached. A broken bet makes
// the line doubtful (given up in this pass, proven nothing); the impossibility
// tail at the end proves that no mate is left and holds in every pass.
#include "core/chessboard.h"
#include "core/thread_context.h"

#include <cstdint>

namespace zorvane {

// Answers of the test after a black reply.
enum HeuristicAnswer : int {
    HEURISTIC_PASSED = 0,
    HEURISTIC_DOUBTFUL = 1,
    HEURISTIC_IMPOSSIBLE = 2,
};

// After Black's reply (`position`, White to move, its parent the position
// before the reply): the tests of the set in force, cheapest first, then the
// impossibility tail. The reason of a doubt goes to ctx.m_nDoubtfulReason.
int IsMateDoubtfulAfterBlackMove(TChessboard& position, TThreadContext& ctx);

// The impossibility tail alone, for the passes without bets.
int ImpossibilityAfterBlackMove(TChessboard& position, TThreadContext& ctx);

// After a White candidate move (`child`, Black to move): the bets that only
// White's own move can break. True makes the candidate doubtful.
bool IsWhiteMoveDoubtful(const TChessboard& child, TThreadContext& ctx);

} // namespace zorvane
