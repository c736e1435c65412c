#pragma once
// The whole solution of a direct mate, as problemists read it: each key with
// its threat and Black's defences down to the mate, the tries with their
// refutations, and the set play. It is built after the keys are proven, by
// the search without bets, on the solve's own thread, so that a stop ends it
// like the solve; the command line and the window show the same tree.
#include "core/chessboard.h"
#include "core/move.h"

#include <vector>

namespace zorvane {

struct TreeOptions {
    bool build = false;
    // White moves shown in full: all of Black's replies to each, with all of
    // White's continuations that mate in time. Below them one line runs to the
    // mate: Black's longest defence and White's shortest mate. 0: the whole
    // tree of a #2 or #3, two moves of a longer problem.
    int depth = 0;
    // A first move that only this many Black moves or fewer refute is a try.
    int maxRefutations = 1;
};

// The White moves shown in full for a problem of `moves` moves under `depth`.
int FullTreeDepth(int moves, int depth);

// A move as the tree shows it: what moved, and what the move did.
struct TreeMove {
    TMove move;
    uint8_t figure = 0; // the man on the from-square before the move
    bool capture = false;
    bool check = false;
    bool mate = false;
};

struct BlackDefence;

struct WhitePlay {
    TreeMove move;
    int mateIn = 0;         // White's moves to the mate, this one counted
    bool shortMate = false; // fewer than the moves White had left
    // After a Black pass: White's shortest mate. Computed where Black's
    // replies are all shown; none there and no check means zugzwang.
    std::vector<TreeMove> threat;
    int threatMoves = 0;
    bool zugzwang = false;
    // Black's replies; empty after a mate. A try keeps only its refutations.
    std::vector<BlackDefence> defences;
};

struct BlackDefence {
    TreeMove move;
    bool refutes = false;      // no mate in the moves left
    bool allowsThreat = false; // a threat move still mates in time
    // White's continuations that mate in time, shortest first; two or more
    // make a dual. Where one line runs to the mate, only the shortest.
    std::vector<WhitePlay> replies;
};

struct SolutionTree {
    int moves = 0;                // the stipulation
    int fullDepth = 0;            // White moves shown in full
    std::vector<WhitePlay> keys;  // in the order of the solve
    std::vector<WhitePlay> tries; // each with its refutations as defences
    // Black's moves in the start position that White answers with a mate in
    // the moves left (problems of two and three moves).
    std::vector<BlackDefence> setPlay;
    bool stopped = false; // what stands was computed; the rest was not
};

// `root`: the problem's start position with White to move, its thread and
// solve set, on which the keys of a direct mate in `moves` were proven. The
// search runs without bets whatever the solve used.
SolutionTree BuildSolutionTree(const TChessboard& root, int moves, const std::vector<TMove>& keys,
                               const TreeOptions& options);

} // namespace zorvane
