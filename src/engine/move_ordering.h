#pragma once
// Ordering of White's and Black's move lists. A list is scored by chess-problem
// rules into the fourth byte of each TMove (free while the list is ordered:
// the maker writes it anew), then sorted by that byte. Ordering decides only
// how fast a proof comes, never what is proved.
#include "core/chessboard.h"
#include "core/move.h"

#include <cstdint>
#include <vector>

namespace zorvane {

// First-sort keys of White's moves, compared unsigned, lower first.
constexpr uint8_t WHITE_KEY_INDICATED = 0;
constexpr uint8_t WHITE_KEY_MAX_RANK = 244;
constexpr uint8_t WHITE_KEY_SENT_BACK = 253;
constexpr uint8_t WHITE_KEY_HOPELESS = 254;
constexpr uint8_t WHITE_KEY_REMOVED = 255;
// At the root a refused move is only put back: every root move is looked at.
constexpr uint8_t WHITE_KEY_ROOT_REMOVED = 127;
// Black's keys, compared signed, lower first.
constexpr int8_t BLACK_KEY_FIRST = -128;
constexpr int8_t BLACK_KEY_ILLEGAL = 127;
// Mark on `promotion` of a move that an indication asks for.
constexpr uint8_t MOVE_MARK_INDICATED = 128;
// Mark on `promotion` of a black reply after which a band bet waits (the defer step).
constexpr uint8_t MOVE_MARK_DEFERS_BAND_CHECK = 64;
// Plies left from which a White node's position is held against the bets.
constexpr int HEURISTIC_TESTS_MIN_PLIES = 3;
// Mark on `from` and `to` of an expected sort move met in its turn.
constexpr uint8_t EXPECTED_MOVE_MET = 0x40;

// Results of SortBlackMoves that settle the node instead of a count.
enum BlackSortResult : int {
    BLACK_SORT_NO_REPLY = 0,
    BLACK_SORT_DOUBTFUL = -1,
    BLACK_SORT_NO_MATE = -2,
    BLACK_SORT_REPETITION = -3,
};

struct WhiteSortOutcome {
    bool mateFound = false; // a move of the list mates at once
    TMove mate;
    int indicated = 0; // moves marked for an indication with fewer than two moves done
};

// Orders White's list of `position` and returns the new count: refused moves
// form the tail and are counted off (at the root they get 127 and stay). The
// sort indications of the problem and its stored key come first.
int SortWhiteMoves(const TChessboard& position, TMove* moves, int count, bool root,
                   WhiteSortOutcome& outcome);

// Orders Black's replies of `position`: each is played with its legality test,
// illegal ones form the tail and are counted off. A reply that beats White at
// once stands alone and 1 is returned. Returns the count, or 0 when no reply is
// legal. `strongReply` is the reply that refuted at this depth last time.
// With `Bets` (a solve under heuristics) every reply is first held against the
// set in force and the impossibility tail, before any is searched: one
// doubtful reply makes the node doubtful (BLACK_SORT_DOUBTFUL), one after
// which White cannot mate refutes it (BLACK_SORT_NO_MATE), and a reply whose
// band check is deferred gets MOVE_MARK_DEFERS_BAND_CHECK.
template <bool Bets = false>
int SortBlackMoves(const TChessboard& position, TMove* moves, int count, const TMove& strongReply);

// Cuts a list under `SH_SKIPWORSTWHITEMOVES`: above 24 moves to 4/5, never below 25.
int SkipWorstWhiteMoves(int count);

// Marks the next unmet entry of `expected` when `first` is the move that the
// ordering put at the front.
void MarkExpectedSortMove(std::vector<TMove>& expected, const TMove& first);

} // namespace zorvane
