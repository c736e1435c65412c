#include "problems/chess_problem.h"

namespace zorvane {

namespace {
constexpr uint16_t NEW_POSITION_PLIES = 5;
}

TChessProblem::TChessProblem() {
    startPosition.m_shPliesLeft = startPosition.m_shPliesTotal = NEW_POSITION_PLIES;
    startPosition.m_pProblem = this;
}

TChessProblem::TChessProblem(const ProblemDefaults& defaults) : TChessProblem() {
    useMainVariantAsSortIndications = defaults.useMainVariantAsSortIndications ? 1 : 0;
}

TChessProblem::~TChessProblem() = default;

int TChessProblem::stipulationMoves() const {
    switch (type) {
    case PROBLEM_DIRECT_MATE:
        return (plies + 1) / 2;
    case PROBLEM_SELFMATE:
        return plies / 2;
    default:
        return 0;
    }
}

void SetStipulation(TChessProblem& problem, int moves) {
    switch (problem.type) {
    case PROBLEM_DIRECT_MATE:
        problem.plies = static_cast<uint16_t>(2 * moves - 1);
        break;
    case PROBLEM_SELFMATE:
        problem.plies = static_cast<uint16_t>(2 * moves + 1);
        break;
    default:
        problem.plies = POSITION_PLIES;
        break;
    }
    problem.stipulationPlies = problem.plies;
}

void SetProblemType(TChessProblem& problem, uint16_t type) {
    const int moves = problem.stipulationMoves();
    problem.type = type;
    SetStipulation(problem, moves);
}

} // namespace zorvane
