#pragma once
// The entry of a forcing-moves run (FindForcedMate) for one root move: the
// pass's set is split into the run's two sets by m_nFfmWithOthers, the queen
// and bishop against an edge king bet on the surrounded king instead, and the
// run's answer is read so that a failure never counts as a refutation.
#include "core/chessboard.h"
#include "engine/result_code.h"

#include <cstdint>

namespace zorvane {

// The root has this many plies or more for the pass to run forcing moves.
constexpr int FFM_MIN_ROOT_PLIES = 4;

struct ForcedMateOutcome {
    int8_t result = RESULT_DOUBTFUL;
    bool budgetSpent = false; // the run gave up at its budget of nodes
};

// `afterRootMove`: Black to move after a White first move, in a pass whose set
// holds SH_FINDFORCEDMATE. RESULT_MATE when the forcing moves prove the mate,
// RESULT_DOUBTFUL otherwise, RESULT_REPETITION as the steps give it. The run
// gives up as doubtful once the solve has counted `nodeBudget` nodes more.
// The position's set and the thread's run state are as before on return.
ForcedMateOutcome FindForcedMate(TChessboard& afterRootMove, uint64_t nodeBudget = UINT64_MAX);

// Forgets what runs of the thread's last forcing set left doubtful in the
// register, so that a run with a larger budget searches those positions again.
void ForgetForcedMateDoubts(const TThreadContext& ctx);

} // namespace zorvane
