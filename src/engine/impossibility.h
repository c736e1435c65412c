#pragma once
// The impossibility tail of the heuristics' tests: cheap tests of material and
// distance that prove White cannot mate within the plies left. Unlike a
// heuristic's bet, a test that fires is a proof, so the search may call the
// node "no mate" in every pass.
//
// Most tests count the black men that a mate needs beside the black king: the
// squares around him that White's men cannot cover must hold his own men. How
// many White covers depends on where the king stands and on whether the White
// king is two squares from him (the only distance from which a king covers
// anything there); the tables below give the counts, found by trying every
// placement of the men (a test recounts them).
#include "core/chessboard.h"

#include <cstdint>

namespace zorvane {

// What each code proves. "Too few blockers": Black has fewer men than a mate
// needs beside his king, wherever the king can still be mated in time (by his
// band and his steps to a corner) and with or without the White king in reach.
enum ImpossibilityCodes : int {
    IMPOSSIBLE_LONE_ROOK = -2,            // a lone rook: too few blockers
    IMPOSSIBLE_LONE_MINOR = -3,           // a lone bishop or knight: too few blockers
    IMPOSSIBLE_MINOR_BLOCKERS_FAR = -4,   // a lone minor: too few black men can come beside the king in time
    IMPOSSIBLE_MINOR_FLIGHTS = -5,        // a lone minor, one move left: more flights than a check takes
    IMPOSSIBLE_MINORS_BAND = -6,          // at most two minors and slow pawns: the king cannot reach the edge
    IMPOSSIBLE_TWO_KNIGHTS = -9,          // two knights: too few blockers
    IMPOSSIBLE_BISHOP_KNIGHT = -10,       // bishop and knight: too few blockers
    IMPOSSIBLE_TWO_BISHOPS = -11,         // two bishops: too few blockers
    IMPOSSIBLE_MINORS_AGAINST_ROOK = -12, // two minors against a lone black rook: too few blockers
    IMPOSSIBLE_LONE_QUEEN = -13,          // a lone queen: too few blockers
};

// The squares beside the black king that hold no black man and that White
// does not attack once the king is taken off the board.
int CountFreeKingSquares(const TChessboard& position);

// White to move with m_shPliesLeft plies left (White has (plies + 1) / 2
// moves): the code of the first test that proves no mate within them, or 0.
int ImpossibilityCode(const TChessboard& position);

// m_nDoubtfulReason keeps a code as its 32-bit pattern: -2 is 0xFFFFFFFE. The
// move log tells such a reason by its range.
constexpr uint32_t ImpossibilityReason(int code) {
    return static_cast<uint32_t>(code);
}
constexpr uint32_t FIRST_IMPOSSIBILITY_REASON = 0xFFFFFFE0u;
constexpr bool IsImpossibilityReason(uint32_t reason) {
    return reason >= FIRST_IMPOSSIBILITY_REASON && reason != 0xFFFFFFFFu;
}
static_assert(ImpossibilityReason(IMPOSSIBLE_LONE_ROOK) == 0xFFFFFFFEu);
static_assert(IsImpossibilityReason(ImpossibilityReason(IMPOSSIBLE_LONE_QUEEN)));

// Where the black king stands when mated: the neighbours he has there are 3, 5 or 8.
enum MatePlace : uint8_t { MATE_IN_CORNER, MATE_ON_EDGE, MATE_INSIDE, MATE_PLACES };

// The fewest black men that stand beside a mated black king, for one kind of
// White material (a king and the men named, nothing else), by the king's place
// and by whether the White king is two squares from him.
struct BlockersNeeded {
    uint8_t withKing[MATE_PLACES];
    uint8_t withoutKing[MATE_PLACES];
};

constexpr BlockersNeeded NEEDED_LONE_ROOK{{0, 0, 3}, {2, 3, 6}};
constexpr BlockersNeeded NEEDED_LONE_QUEEN{{0, 0, 2}, {1, 2, 4}};
constexpr BlockersNeeded NEEDED_LONE_BISHOP{{1, 2, 4}, {2, 4, 6}};
constexpr BlockersNeeded NEEDED_LONE_KNIGHT{{1, 2, 4}, {3, 4, 7}};
constexpr BlockersNeeded NEEDED_TWO_BISHOPS{{0, 0, 2}, {1, 2, 4}};
constexpr BlockersNeeded NEEDED_BISHOP_KNIGHT{{0, 0, 2}, {1, 2, 4}};
constexpr BlockersNeeded NEEDED_TWO_KNIGHTS{{0, 0, 2}, {1, 2, 5}};

// At most this many squares beside the black king are attacked by a White king
// (from two squares off) and by each minor or pawn.
constexpr int WHITE_KING_COVER = 3;
constexpr int MINOR_OR_PAWN_COVER = 2;

// One White move that gives check takes at most this many flights from the
// black king: a knight covers one of his squares, a bishop two (before and
// behind him on its diagonal). A king step that uncovers a bishop's check
// takes no more than two either. A test counts them over every placement.
constexpr int FLIGHTS_TAKEN_BY_KNIGHT_CHECK = 1;
constexpr int FLIGHTS_TAKEN_BY_BISHOP_CHECK = 2;

} // namespace zorvane
