#pragma once
// The temporary register behind the search's hooks: the problem's register is
// asked and filled with proven results, for positions it may hold.
#include "engine/register_eligibility.h"
#include "engine/result_code.h"
#include "engine/search_config.h"
#include "core/thread_context.h"
#include "engine/solve_job.h"
#include "registers/aggregated_register.h"

namespace zorvane {

// The register pays only where a proof is dear: in solves of at least this
// many plies (a #6 and up), at nodes with at least this many plies left.
constexpr int REGISTER_MIN_TOTAL_PLIES = 10;
constexpr int REGISTER_MIN_PLIES_LEFT = 3;
inline bool RegisterDepth(const TChessboard& position, int pliesLeft) {
    return position.m_shPliesTotal >= REGISTER_MIN_TOTAL_PLIES && pliesLeft >= REGISTER_MIN_PLIES_LEFT;
}

} // namespace zorvane

namespace zorvane::search_hooks {

namespace register_detail {
// One-colour play and its separated-bishop form are the modes the register can hold.
inline bool playStateAllows(const TChessboard& b) {
    const int mode = b.m_bPlayState & PLAY_ONE_COLOUR_MODE;
    return mode == 0 || mode == 3;
}
} // namespace register_detail

template <class Config> int8_t ProbeTemporaryRegister(const TChessboard& position) {
    if (!register_detail::playStateAllows(position) || !RegisterEligible(position))
        return RESULT_REFUTED_EARLY;
    TProblemRegister& reg = *position.m_pThread->m_pJob->m_pRegister;
    const TChessboardRegisterItem item = TChessboardRegisterItem::FromBoard(position);
    if constexpr (Config::kHeuristics) {
        // Under bets, what was found under the same set counts as well: -1 is
        // "no mate under these heuristics".
        if (position.m_uHeuristics) {
            const int8_t answer = reg.LookupWithDoubtful(position.m_shPliesLeft, item, position.m_uHeuristics,
                                                         position.m_uHeuristicParams);
            return answer == 1    ? int8_t{RESULT_MATE}
                   : answer == 0  ? int8_t{RESULT_NO_MATE}
                   : answer == -1 ? int8_t{RESULT_DOUBTFUL}
                                  : int8_t{RESULT_REFUTED_EARLY};
        }
    }
    const uint8_t answer = reg.Lookup(position.m_shPliesLeft, item);
    return answer == 1   ? int8_t{RESULT_MATE}
           : answer == 0 ? int8_t{RESULT_NO_MATE}
                         : int8_t{RESULT_REFUTED_EARLY};
}

template <class Config> void StoreTemporaryRegister(const TChessboard& position, int8_t result) {
    if (!register_detail::playStateAllows(position) || !RegisterEligible(position)) return;
    TProblemRegister& reg = *position.m_pThread->m_pJob->m_pRegister;
    const TChessboardRegisterItem item = TChessboardRegisterItem::FromBoard(position);
    if (result == RESULT_MATE || result == RESULT_NO_MATE) {
        reg.Store(position.m_shPliesLeft, item, result == RESULT_MATE);
        return;
    }
    // A doubt is kept under the set that cut the line, and only there: no mate
    // under these bets, which a later visit under the same set takes as it is.
    if constexpr (Config::kHeuristics) {
        if (result == RESULT_DOUBTFUL && position.m_uHeuristics)
            reg.StoreDoubtful(position.m_shPliesLeft, item, position.m_uHeuristics,
                              position.m_uHeuristicParams, true);
    }
}

} // namespace zorvane::search_hooks
