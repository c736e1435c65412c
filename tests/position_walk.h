#pragma once
// Visits every position of a game tree down to a depth, each a fresh child of
// its parent (so castling and en passant see the line), for tests that compare
// two ways of answering the same question on many positions.
#include "core/make_move.h"
#include "core/movegen.h"

namespace zorvane {

template <class Visit> void ForEachPosition(const TChessboard& b, int depth, Visit&& visit) {
    visit(b);
    if (depth == 0) return;
    MoveBuffer moves;
    const bool white = b.whiteToMove();
    const int count = white ? GenerateWhiteMovesOrEvasions(b, moves) : GenerateBlackMovesOrEvasions(b, moves);
    TChessboard child;
    for (int i = 0; i < count; ++i) {
        CopyToChild(child, b);
        const bool made = white ? MakeWhiteMove(child, moves[i]) : MakeBlackMove(child, moves[i], false) != 0;
        if (made) ForEachPosition(child, depth - 1, visit);
    }
}

} // namespace zorvane
