#pragma once
// Mate at once, the last ply of every proof and the bulk of all nodes.
#include "core/chessboard.h"
#include "core/move.h"

namespace zorvane {

// Plays White's `move` on `child`, a fresh copy of `position`: does it mate at once?
bool MatesAtOnce(const TChessboard& position, TChessboard& child, TMove& move);
// White to move: is there a mate at once? The first one in the base order of
// the moves, man by man from a1, goes to `mateMove`. The position needs
// m_pThread for its scratch board.
bool FindMateInOne(TChessboard& position, TMove* mateMove = nullptr);
// Every mate at once, in the same order, into `out` (room for MAX_MOVES); the count.
int AllMatesInOne(TChessboard& position, TMove* out);

} // namespace zorvane
