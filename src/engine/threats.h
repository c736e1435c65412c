#pragma once
// The threat of a key: what White would do if Black could pass. Shown behind
// "threat: " in the solution list.
#include "core/chessboard.h"

#include <string>
#include <vector>

namespace zorvane {

// `afterKey` is the position after White's key, Black to move, with its
// thread and problem set; `whiteMovesLeft` the moves White has after it. The
// White moves that mate at once after a Black pass, else those that force mate
// in two when two moves are left; empty when the key gives check or nothing
// threatens. Long notation, in the order of the move list.
std::vector<std::string> FindThreats(const TChessboard& afterKey, int whiteMovesLeft);

} // namespace zorvane
