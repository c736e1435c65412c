#pragma once
// The slow answer to "is there a mate at once?": every White move played in
// the base order, the first that mates kept. The fast routine must agree.
#include "core/make_move.h"
#include "core/movegen.h"
#include "engine/mate_in_one.h"

namespace zorvane {

inline bool FirstMateByPlayingAll(const TChessboard& b, TMove& mate) {
    MoveBuffer moves;
    const int count = GenerateWhiteMovesOrEvasions(b, moves);
    TChessboard child;
    for (int i = 0; i < count; ++i)
        if (MatesAtOnce(b, child, moves[i])) {
            mate = moves[i];
            return true;
        }
    return false;
}

} // namespace zorvane
