#include "engine/solve_job.h"

namespace zorvane {

bool SafeModeFor(const TChessProblem& problem, bool quickModeOption) {
    return !quickModeOption || (problem.flags & SafeMode);
}

} // namespace zorvane
