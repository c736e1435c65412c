#include "engine/threats.h"

#include "core/make_move.h"
#include "core/movegen.h"
#include "core/thread_context.h"
#include "engine/find_mate.h"

namespace zorvane {

namespace {

// The White moves of `position` that mate within its plies left.
std::vector<std::string> matingMoves(TChessboard& position) {
    std::vector<std::string> found;
    TMove moves[MAX_MOVES];
    const int count = GenerateWhiteMovesOrEvasions(position, moves);
    TChessboard& child = position.m_pThread->m_aBoards[position.m_shPliesLeft];
    for (int i = 0; i < count; ++i) {
        CopyToChild(child, position);
        TMove move = moves[i];
        // With no plies left the Black step is the test of mate itself.
        if (MakeWhiteMove(child, move) && FindMateBlackStep(child) == RESULT_MATE) {
            const bool capture = position.m_aSquares[move.to] != 0 || move.enPassant;
            found.push_back(FormatMove(move, position.m_aSquares[move.from], capture));
        }
    }
    return found;
}

} // namespace

std::vector<std::string> FindThreats(const TChessboard& afterKey, int whiteMovesLeft) {
    if (afterKey.m_cBlackChecker >= 0 || whiteMovesLeft < 1) return {};
    // Black passes: the same men, White to move, no en passant to inherit.
    TChessboard& passed = afterKey.m_pThread->m_aBoards[afterKey.m_shPliesLeft];
    CopyToChild(passed, afterKey);
    passed.m_LastMove = TMove{};
    passed.m_bPass = 2;
    for (int moves = 1; moves <= std::min(whiteMovesLeft, 2); ++moves) {
        passed.m_shPliesLeft = passed.m_shPliesTotal = static_cast<uint16_t>(2 * moves - 1);
        std::vector<std::string> threats = matingMoves(passed);
        if (!threats.empty()) return threats;
    }
    return {};
}

} // namespace zorvane
