#include "engine/mate_search.h"

#include "core/chess_exception.h"
#include "core/fen.h"

#include <stdexcept>

namespace zorvane {

namespace {

std::string EnPassantMisfitText(int square) {
    std::string name = "?";
    if (square >= 0 && square < 64) {
        name = "a1";
        name[0] = static_cast<char>('a' + colOf(square));
        name[1] = static_cast<char>('1' + rowOf(square));
    }
    return "The en passant square " + name +
           " does not fit the position: with White to move it lies on the sixth row, behind a black pawn "
           "that has just made a double step.";
}

} // namespace

MateProof::MateProof(bool safeMode, bool useRegister, bool ordering) {
    m_problem.m_bSafeMode = safeMode ? 1 : 0;
    m_problem.m_bMoveOrdering = ordering;
    m_options.allSolutions = true;
    m_options.useRegister = useRegister;
}

MateProof::~MateProof() = default;

MateKeys MateProof::FindKeys(const TChessboard& root, int moves, const StartConditions& start) {
    if (moves < 1 || moves > MAX_STIPULATION_MOVES)
        throw std::invalid_argument("the number of moves must lie between 1 and 255");
    m_problem.startPosition = root;
    m_problem.startPosition.m_pParent = nullptr;
    m_problem.startPosition.m_LastMove = TMove{};
    if (start.enPassantSquare >= 0 &&
        !SetUpDoubleStepHistory(m_problem.startPosition, m_beforeDoubleStep, start.enPassantSquare))
        throw ChessException(EnPassantMisfitText(start.enPassantSquare));
    m_problem.m_bDeniedCastling = start.deniedCastling;
    m_problem.plies = m_problem.stipulationPlies = static_cast<uint16_t>(2 * moves - 1);
    const SolveResult solved = m_driver.SolveProblem(m_problem, m_options);
    return {solved.moves,     solved.texts, solved.keyPositions, solved.rootMoves,
            solved.nodes,     solved.milliseconds, solved.stopped};
}

} // namespace zorvane
