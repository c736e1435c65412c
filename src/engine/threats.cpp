#include "engine/threats.h"

#include "core/make_move.h"
#include "core/movegen.h"
#include "core/thread_context.h"
#include "engine/find_mate.h"
#include "engine/mate_in_one.h"
#include "problems/notation.h"

#include <algorithm>

namespace zorvane {

namespace {

// The White moves of `position` that mate within its plies left.
std::vector<TMove> matingMoves(TChessboard& position) {
    std::vector<TMove> found;
    TMove moves[MAX_MOVES];
    // The mates at once are found by the checks alone.
    if (position.m_shPliesLeft == 1) return {moves, moves + AllMatesInOne(position, moves)};
    const int count = GenerateWhiteMovesOrEvasions(position, moves);
    TChessboard& child = position.m_pThread->m_aBoards[position.m_shPliesLeft];
    for (int i = 0; i < count; ++i) {
        CopyToChild(child, position);
        TMove move = moves[i];
        // With no plies left the Black step is the test of mate itself.
        if (MakeWhiteMove(child, move) && FindMateBlackStep(child) == RESULT_MATE) found.push_back(move);
    }
    return found;
}

} // namespace

Threat FindThreat(const TChessboard& afterWhite, int maxMoves) {
    if (afterWhite.m_cBlackChecker >= 0) return {};
    // Black passes: the same men, White to move, no en passant to inherit.
    TChessboard& passed = afterWhite.m_pThread->m_aBoards[afterWhite.m_shPliesLeft];
    CopyToChild(passed, afterWhite);
    passed.m_LastMove = TMove{};
    passed.m_bPass = 2;
    for (int moves = 1; moves <= maxMoves; ++moves) {
        passed.m_shPliesLeft = passed.m_shPliesTotal = static_cast<uint16_t>(2 * moves - 1);
        std::vector<TMove> list = matingMoves(passed);
        if (!list.empty()) return {moves, std::move(list)};
    }
    return {};
}

std::vector<std::string> FindThreats(const TChessboard& afterKey, int whiteMovesLeft) {
    const Threat threat = FindThreat(afterKey, std::min(whiteMovesLeft, 2));
    std::vector<std::string> texts;
    for (const TMove& move : threat.list) texts.push_back(MoveTextOn(afterKey, move));
    return texts;
}

} // namespace zorvane
