#pragma once
// The endgame tables behind the search's hook: a White node whose men have a
// table is answered from it, without a search below it.
#include "core/castling.h"
#include "core/thread_context.h"
#include "engine/search_config.h"
#include "engine/solve_job.h"
#include "global_register/expected_mate.h"
#include "global_register/table_set.h"

namespace zorvane::search_hooks {

template <class Config> int ProbeGlobalRegister(const TChessboard& position) {
    // A table's positions have no castling rights and no en passant capture:
    // where either is still possible the search decides.
    if (WhiteCastlingRight(position, KING_SIDE) || WhiteCastlingRight(position, QUEEN_SIDE) ||
        BlackCastlingRight(position, KING_SIDE) || BlackCastlingRight(position, QUEEN_SIDE))
        return -2;
    if (position.m_pParent && DoubleStepBesideWhitePawn(position)) return -2;
    const int moves = position.m_pThread->m_pJob->m_pTables->Probe(position);
    if (moves < 0) return -2;
    return moves == 0 ? 0 : 2 * moves - 1;
}

} // namespace zorvane::search_hooks
