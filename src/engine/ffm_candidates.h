#pragma once
// White's candidate moves in a forcing-moves run (FindForcedMate): the moves
// that keep Black busy at a level's strength. Each rule of the list only adds
// moves, in a fixed order, so that a higher level never tries fewer moves
// than a lower one. The list is built by making every White move once and
// asking the child what the move does; the threat tests let Black pass and
// search the mate of the level's length.
#include "core/chessboard.h"
#include "core/move.h"

#include <cstdint>

namespace zorvane {

// m_nDoubtfulReason after a forcing-moves node had nothing to try.
constexpr uint32_t FFM_DOUBTFUL_REASON = 512;

// The rule of the list that took a move, in the order the rules are applied.
enum class FfmRule : uint8_t {
    Check = 1,         // checks
    NearKing,          // with the black king short of room: moves that take more of it
    Evasion,           // White in check: every legal move
    Threat,            // a threat of mate of the level's length (or a capture beside the king)
    AtLoneQueen,       // at a lone black queen: her capture or an attack on her
    RookMove,          // the white rooks' moves
    AfterQueenCapture, // the moves of the man that has just taken the black queen
    Box,               // a stronger White leaves the black king no free square (one after a capture)
    ProposedKingStep,  // the proposed move: the white king coming to two squares of the black one
    QueenMove,         // with two white queens or more: their moves
    SeventhRankPawn,   // White's pawns on the seventh rank
};

// White's moves of the threat test's length at `level`: 0 for checks only.
int FfmThreatMoves(uint8_t level);

// Whether `afterWhiteMove` (Black to move, not in check) threatens mate: with
// Black passing, White mates within `moves` moves. With `byChecks`, a mate
// within one move more by checks alone counts too: the wider forms of a level.
// The search runs in the thread's board slots below the position's plies
// left, so these must exceed the threat's plies (2 * moves + 1 with byChecks).
bool ThreatensMate(const TChessboard& afterWhiteMove, int moves, bool byChecks);

struct FfmList {
    int count = 0;
    // Every legal move is in the list: a failure at this node proves no mate.
    bool complete = false;
    // The threat test was shortened to the plies left: the level's own depth ended here.
    bool depthCut = false;
};

// The candidates of `position` (White to move, at least 3 plies left) at
// `level`, in the order of the rules, the proposed move first when it is among
// them. `rules`, when given, receives the rule that took each listed move.
// Without it the list holds the same moves, but a move that a later rule
// takes without a search is not given the threat test, and is grouped under
// that rule.
FfmList BuildFfmCandidates(TChessboard& position, uint8_t level, bool addCaptures, const TMove& proposed,
                           TMove* out, FfmRule* rules = nullptr);

} // namespace zorvane
