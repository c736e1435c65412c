#pragma once
// The threat of a White move: what White would do if Black could pass. Shown
// behind "threat: " in the solution list, and at the head of each variation
// of the solution tree.
#include "core/chessboard.h"
#include "core/move.h"

#include <string>
#include <vector>

namespace zorvane {

// White's shortest mate after a Black pass: its length in White moves and
// every move that forces it, in the order of the move list. No moves: no
// threat within the moves asked for.
struct Threat {
    int moves = 0;
    std::vector<TMove> list;
};

// `afterWhite` is a position with Black to move, its thread and problem set,
// lying in the slot of the board stack above the one of its children;
// `maxMoves` the longest threat asked for. A position with Black in check
// has no threat: Black cannot pass.
Threat FindThreat(const TChessboard& afterWhite, int maxMoves);

// The threat of a key as the solution list shows it: mates at once, else
// mates in two when two moves are left, each in long notation.
std::vector<std::string> FindThreats(const TChessboard& afterKey, int whiteMovesLeft);

} // namespace zorvane
