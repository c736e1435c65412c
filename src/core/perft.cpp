#include "perft.h"

#include "make_move.h"
#include "movegen.h"

namespace zorvane {

namespace {

uint64_t perftNode(const TChessboard& b, int depth) {
    MoveBuffer moves;
    const bool white = b.whiteToMove();
    const int n = white ? GenerateWhiteMovesOrEvasions(b, moves) : GenerateBlackMovesOrEvasions(b, moves);
    uint64_t leaves = 0;
    TChessboard child;
    for (int i = 0; i < n; ++i) {
        CopyToChild(child, b);
        const bool made = white ? MakeWhiteMove(child, moves[i]) : MakeBlackMove(child, moves[i], false) != 0;
        if (!made) continue;
        leaves += depth == 1 ? 1 : perftNode(child, depth - 1);
    }
    return leaves;
}

} // namespace

uint64_t Perft(const TChessboard& root, int depth) {
    return depth <= 0 ? 1 : perftNode(root, depth);
}

} // namespace zorvane
