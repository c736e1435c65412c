#pragma once
// What White cannot do in the plies left: the measures of the black king's
// room on which the heuristics' tests and the impossibility proofs stand.
#include "core/chessboard.h"

namespace zorvane {

// The squares beside the black king that are on the board, hold no black man
// and are not attacked by White, counted with the king taken off the board (a
// square behind him on a White line counts as attacked).
int CountFreeKingSquares(const TChessboard& position);

} // namespace zorvane
