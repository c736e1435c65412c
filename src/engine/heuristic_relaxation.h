#pragma once
// Relaxation of the special heuristics between passes: after a pass under a
// set of heuristics, a weaker set may be tried (passes 1b, 1c...) before the
// pass without any.
#include "core/chessboard.h"

#include <cstdint>

namespace zorvane {

// The next, weaker set for the root's `m_uHeuristics`, or 0 when the pass
// without heuristics comes next. No special heuristic is defined in this build
// yet, so there is no weaker set to offer.
inline uint32_t TryRelaxSpecialHeuristics(const TChessboard& /*root*/) {
    return 0;
}

} // namespace zorvane
