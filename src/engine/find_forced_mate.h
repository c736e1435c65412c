#pragma once
// The entry of a forcing-moves run (FindForcedMate) for one root move: the
// pass's set is split into the run's two sets by m_nFfmWithOthers, the queen
// and bishop against an edge king bet on the surrounded king instead, and the
// run's answer is read so that a failure never counts as a refutation.
#include "core/chessboard.h"

#include <cstdint>

namespace zorvane {

// The root has this many plies or more for the pass to run forcing moves.
constexpr int FFM_MIN_ROOT_PLIES = 4;

// Whether a pass from `root` with `plies` left runs forcing moves below its root moves.
bool RunsForcedMate(const TChessboard& root, int plies);

// `afterRootMove`: Black to move after a White first move, in a pass whose set
// holds SH_FINDFORCEDMATE. RESULT_MATE when the forcing moves prove the mate,
// RESULT_DOUBTFUL otherwise, RESULT_REPETITION as the steps give it. The
// position's set and the thread's run state are as before on return.
int8_t FindForcedMate(TChessboard& afterRootMove);

} // namespace zorvane
