#pragma once
// The small moves of the best defence's routines: Black's legal moves, the
// child of a black move, a proven mate within some plies, and the stop test.
// Shared by the task and its steps; not for other callers.
#include "core/chessboard.h"
#include "core/make_move.h"
#include "core/move.h"
#include "core/movegen.h"
#include "core/thread_context.h"
#include "engine/find_mate.h"
#include "engine/solve_job.h"
#include "problems/notation.h"

#include <string>

namespace zorvane::defence_detail {

inline SolveJob& jobOf(const TChessboard& position) {
    return *position.m_pThread->m_pJob;
}

inline bool stopMeant(const TChessboard& position) {
    return jobOf(position).StopMeant(position.m_pThread->m_shThreadId);
}

// Where the children of `position` are built.
inline TChessboard& childSlot(const TChessboard& position) {
    return position.m_pThread->m_aBoards[position.m_shPliesLeft];
}

inline std::string moveText(const TChessboard& position, const TMove& move) {
    return MoveTextOn(position, move);
}

inline int makeBlack(const TChessboard& position, const TMove& move, TChessboard& child) {
    CopyToChild(child, position);
    TMove made = move;
    return MakeBlackMove(child, made, false);
}

// The legal black moves of `position`, as the maker noted them.
inline int legalBlackMoves(TChessboard& position, TMove* out) {
    TMove moves[MAX_MOVES];
    const int count = GenerateBlackMovesOrEvasions(position, moves);
    TChessboard& child = childSlot(position);
    int legal = 0;
    for (int i = 0; i < count; ++i) {
        CopyToChild(child, position);
        if (MakeBlackMove(child, moves[i], false) != BLACK_MOVE_ILLEGAL) out[legal++] = moves[i];
    }
    return legal;
}

// White to move: a mate within `plies`, proven by the search that bets on nothing.
inline bool mateWithin(const TChessboard& position, int plies) {
    if (plies < 1) return false;
    TChessboard probe = position;
    probe.m_shPliesLeft = static_cast<uint16_t>(plies);
    probe.m_uHeuristics = 0;
    probe.m_uHeuristicParams = 0;
    probe.m_bPass = 2;
    if (plies == 1) return FindMateInOne(probe);
    return FindMate(probe, true) == RESULT_MATE;
}

} // namespace zorvane::defence_detail
