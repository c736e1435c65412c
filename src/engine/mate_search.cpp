#include "engine/mate_search.h"

#include <stdexcept>

namespace zorvane {

MateProof::MateProof(bool safeMode, bool useRegister, bool ordering, bool heuristics) {
    m_options.allSolutions = true;
    m_options.quickMode = !safeMode;
    m_options.useRegister = useRegister;
    m_options.moveOrdering = ordering;
    m_options.heuristics = heuristics;
}

MateKeys MateProof::FindKeys(const TChessboard& root, int moves) {
    return solve(root, moves, true);
}

MateKeys MateProof::FindFirstKey(const TChessboard& root, int moves) {
    return solve(root, moves, false);
}

MateKeys MateProof::solve(const TChessboard& root, int moves, bool allSolutions) {
    if (moves < 1 || moves > MAX_STIPULATION_MOVES)
        throw std::invalid_argument("the number of moves must lie between 1 and 255");
    m_problem.startPosition = root;
    m_problem.startPosition.m_pParent = nullptr;
    m_problem.plies = m_problem.stipulationPlies = static_cast<uint16_t>(2 * moves - 1);
    SolveRequest request;
    request.options = m_options;
    request.options.allSolutions = allSolutions;
    Solver solver;
    const SolveResult solved = solver.Solve(m_problem, request);
    return {solved.moves,        solved.texts,   solved.keyPositions, solved.rootMoves,       solved.nodes,
            solved.milliseconds, solved.stopped, solved.tree,         solved.treeMilliseconds};
}

} // namespace zorvane
