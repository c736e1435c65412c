#pragma once
// Repetitions along the line: one test for White's moves in the White step and
// for Black's replies in the ordering of Black's list, so both prune alike.
#include "core/castling.h"
#include "core/chessboard.h"
#include "core/thread_context.h"
#include "engine/solve_job.h"

#include <cstring>

namespace zorvane {

// Safe mode prunes a repetition only this deep.
constexpr int SAFE_MODE_REPETITION_PLIES = 14;
// In a forced-mate search, up to this many plies left a repetition is pruned
// only when the position stood twice before.
constexpr int FORCED_MATE_SINGLE_REPETITION_PLIES = 15;

// A ply that can be taken back: no pawn move, no capture, no promotion.
inline bool ReversiblePly(const TChessboard& position) {
    const TMove move = position.m_LastMove;
    if (move.from == move.to) return true;
    if (move.promotion & KIND_MASK || move.enPassant) return false;
    if ((position.m_aSquares[move.to] & KIND_MASK_MARKED) == KIND_PAWN) return false;
    return position.m_pParent->m_aSquares[move.to] == 0;
}

inline bool SamePosition(const TChessboard& a, const TChessboard& b) {
    return std::memcmp(a.m_aSquares, b.m_aSquares, 64) == 0 && LiveCastlingRooks(a) == LiveCastlingRooks(b);
}

// The plies left of the position four plies back if `child` repeats it, else 0.
inline int RepetitionOf(const TChessboard& child, int limit) {
    const TChessboard* back = &child;
    for (int i = 0; i < 4; ++i) {
        if (!back->m_pParent || !ReversiblePly(*back)) return 0;
        back = back->m_pParent;
    }
    if (back->m_shPliesLeft == 0 || back->m_shPliesLeft > limit) return 0;
    if ((back->m_shPliesLeft ^ child.m_shPliesLeft) & 1) return 0;
    return SamePosition(*back, child) ? back->m_shPliesLeft : 0;
}

// Whether the same position stands once more, further back along reversible plies.
inline bool RepeatedTwice(const TChessboard& child) {
    const TChessboard* back = &child;
    for (int plies = 1; back->m_pParent && ReversiblePly(*back); ++plies) {
        back = back->m_pParent;
        if (plies > 4 && (plies & 1) == 0 && SamePosition(*back, child)) return true;
    }
    return false;
}

// Whether a move from a node with `n` plies left into a repeated `child` is
// settled as a repetition without a search: in quick mode always, in safe mode
// only deep down, and in a forced-mate search only for a second repetition.
inline bool RepetitionSettles(const SolveJob& job, const TThreadContext& ctx, int n,
                              const TChessboard& child) {
    if (!job.m_bSafeMode) return true;
    return n >= SAFE_MODE_REPETITION_PLIES &&
           (!ctx.m_bForcedMate || n > FORCED_MATE_SINGLE_REPETITION_PLIES || RepeatedTwice(child));
}

} // namespace zorvane
