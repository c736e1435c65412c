#include "engine/find_forced_mate.h"

#include "core/thread_context.h"
#include "engine/find_mate.h"
#include "engine/heuristic_bits.h"
#include "engine/heuristics_catalogue.h"

namespace zorvane {

namespace {

// Queen and bishop drive an edge king better by surrounding him than by
// keeping him on the edge: the edge bet gives way for the run.
bool queenAndBishopOnEdge(const TChessboard& b, const TThreadContext& ctx) {
    return !ctx.m_bFfmCustom && (b.m_uHeuristics & SH_KEEPKINGONTHEEDGE) && ctx.m_bKingMoveStrict &&
           b.whiteFigures() == 2 && b.m_nWhiteQueens == 1 && b.m_nWhiteBishops == 1;
}

} // namespace

bool RunsForcedMate(const TChessboard& root, int plies) {
    return (root.m_uHeuristics & SH_FINDFORCEDMATE) && plies >= FFM_MIN_ROOT_PLIES;
}

int8_t FindForcedMate(TChessboard& afterRootMove) {
    TThreadContext& ctx = *afterRootMove.m_pThread;
    const uint32_t word = afterRootMove.m_uHeuristics;
    const uint32_t params = afterRootMove.m_uHeuristicParams;

    uint32_t full = word;
    if (queenAndBishopOnEdge(afterRootMove, ctx))
        full = (full & ~SH_KEEPKINGONTHEEDGE) | SH_ASSERTBLACKKINGSURROUNDED;
    afterRootMove.m_uHeuristics = full;
    ctx.m_uFfmFullWord = full;
    ctx.m_uFfmFullParams = HeuristicFingerprintOf(afterRootMove, ctx);
    // "No": the run alone all through; "Partially": alone for the first half
    // of the line, then with the others.
    // A custom sequence of levels always bets with the others.
    ctx.m_shFfmOthersFromPlies = 0;
    const bool withOthers = ctx.m_nFfmWithOthers == FFM_WITH_OTHERS || ctx.m_bFfmCustom;
    if (!withOthers) {
        afterRootMove.m_uHeuristics = SH_FINDFORCEDMATE;
        afterRootMove.m_uHeuristicParams = HeuristicFingerprintOf(afterRootMove, ctx);
        if (ctx.m_nFfmWithOthers == FFM_PARTIALLY_WITH_OTHERS)
            ctx.m_shFfmOthersFromPlies = static_cast<uint16_t>(afterRootMove.m_shPliesTotal / 2);
    } else {
        afterRootMove.m_uHeuristicParams = ctx.m_uFfmFullParams;
    }
    ctx.m_uFfmAloneWord = afterRootMove.m_uHeuristics;

    ctx.m_bForcedMate = true;
    int8_t result = FindMateBlackStep(afterRootMove);
    ctx.m_bForcedMate = false;

    afterRootMove.m_uHeuristics = word;
    afterRootMove.m_uHeuristicParams = params;
    // What the forcing moves did not prove stays open for the next pass (the
    // Black step has read the end of a level's depth as a doubt already).
    if (result == RESULT_NO_MATE || result == RESULT_REFUTED_EARLY) result = RESULT_DOUBTFUL;
    return result;
}

} // namespace zorvane
