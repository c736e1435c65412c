#include "engine/impossibility.h"

#include "core/make_move.h"

namespace zorvane {

namespace {

constexpr int NEIGHBOURS_INSIDE = 8;
constexpr int WHITE_KING_HOME = 4;
constexpr int BLACK_KING_HOME = 60;

// King moves from `square` to the nearest corner.
int cornerSteps(int square) {
    const int c = colOf(square), r = rowOf(square);
    const int toCol = c < 4 ? c : 7 - c, toRow = r < 4 ? r : 7 - r;
    return toCol > toRow ? toCol : toRow;
}

// Castling takes a king two squares in one move. Rights are not looked up:
// the king at home with a rook of his in a corner of that row is enough to
// allow a step more, which only weakens the tests.
bool mayCastle(const TChessboard& b, uint8_t king, uint8_t rook) {
    const int home = king == WK ? WHITE_KING_HOME : BLACK_KING_HOME;
    const uint8_t* s = b.m_aSquares;
    return s[home] == king && (s[home - 4] == rook || s[home + 3] == rook);
}

// What the plies left allow.
struct Reach {
    int whiteMoves;     // the mate comes with the last of them at the latest
    int blackMoves;     // Black's replies before it
    int blackKingSteps; // how far the black king may get, castling counted
};

Reach reachOf(const TChessboard& b) {
    Reach reach;
    reach.whiteMoves = (b.m_shPliesLeft + 1) / 2;
    reach.blackMoves = reach.whiteMoves - 1;
    reach.blackKingSteps = reach.blackMoves + (mayCastle(b, BK, BR) ? 1 : 0);
    return reach;
}

bool whiteHas(const TChessboard& b, int queens, int rooks, int bishops, int knights) {
    return b.m_nWhitePawns == 0 && b.m_nWhiteQueens == queens && b.m_nWhiteRooks == rooks &&
           b.m_nWhiteBishops == bishops && b.m_nWhiteKnights == knights;
}

// The fewest black men that must stand beside the black king when White
// mates with the material of `needed`. The king can be mated only where he
// can still get to: the edge when his band is within his moves, a corner when
// it is within his steps. A king changes his band by at most one a move, so
// the band needs no castling. The White king helps only from two squares off,
// and the kings close in by at most the sum of their steps.
int fewestBlockers(const TChessboard& b, const Reach& reach, const BlockersNeeded& needed,
                   int whiteKingSteps) {
    const int apart = distance(b.whiteKing(), b.blackKing());
    const bool kingHelps = apart - 2 <= whiteKingSteps + reach.blackKingSteps;
    const uint8_t* counts = kingHelps ? needed.withKing : needed.withoutKing;
    // The counts grow from the corner inwards, so the nearest place reached decides.
    if (cornerSteps(b.blackKing()) <= reach.blackKingSteps) return counts[MATE_IN_CORNER];
    if (b.edgeLevel() <= reach.blackMoves) return counts[MATE_ON_EDGE];
    return counts[MATE_INSIDE];
}

// The White king's steps before the mate: all White's moves when the last may
// be his (a step that uncovers a slider's check, or castling), else one fewer;
// castling adds a square.
int whiteKingSteps(const TChessboard& b, const Reach& reach) {
    const bool sliders = b.m_nWhiteQueens + b.m_nWhiteRooks + b.m_nWhiteBishops > 0;
    const bool castles = mayCastle(b, WK, WR);
    return reach.whiteMoves - (sliders || castles ? 0 : 1) + (castles ? 1 : 0);
}

// A black man that never moves and ends beside the mated king stands within
// one square of the king's last square, so within the king's steps plus one
// of his square now; every other blocker needs a move of his own.
int blockersInTime(const TChessboard& b, const Reach& reach) {
    const int king = b.blackKing(), radius = reach.blackKingSteps + 1;
    int near = 0;
    for (int square = 0; square < 64; ++square)
        if (isBlack(b.m_aSquares[square]) && square != king && distance(square, king) <= radius) ++near;
    return near + reach.blackMoves;
}

// Moves a White pawn needs to promote: one a row, the double step from the second row.
int promotionMoves(int square) {
    const int row = rowOf(square);
    return 7 - row - (row == 1 ? 1 : 0);
}

bool pawnPromotesInTime(const TChessboard& b, const Reach& reach) {
    if (b.m_nWhitePawns == 0) return false;
    for (int square = 8; square < 56; ++square)
        if (b.m_aSquares[square] == WP && promotionMoves(square) <= reach.whiteMoves) return true;
    return false;
}

// A lone minor (a White king and one bishop or knight, nothing else).
int loneMinorCode(const TChessboard& b, const Reach& reach) {
    const bool bishop = b.m_nWhiteBishops == 1;
    const BlockersNeeded& needed = bishop ? NEEDED_LONE_BISHOP : NEEDED_LONE_KNIGHT;
    const int blockers = fewestBlockers(b, reach, needed, whiteKingSteps(b, reach));
    // 1. Black has fewer men than the blocks the mate needs.
    if (b.blackMenBesideKing() < blockers) return IMPOSSIBLE_LONE_MINOR;
    // 2. Fewer of them can be beside the king in time.
    if (blockersInTime(b, reach) < blockers) return IMPOSSIBLE_MINOR_BLOCKERS_FAR;
    // 3. One move left, which must check: the squares that its man leaves
    // stay as they were, so the flights it takes are those its check covers
    // (or, for a king step that uncovers the bishop, those it newly covers).
    if (b.m_shPliesLeft == 1) {
        const int taken = bishop ? FLIGHTS_TAKEN_BY_BISHOP_CHECK : FLIGHTS_TAKEN_BY_KNIGHT_CHECK;
        if (CountFreeKingSquares(b) > taken) return IMPOSSIBLE_MINOR_FLIGHTS;
    }
    return 0;
}

// Two minors and nothing else. A lone black rook has a code of its own.
int twoMinorsCode(const TChessboard& b, const Reach& reach) {
    const int bishops = b.m_nWhiteBishops;
    const BlockersNeeded& needed = bishops == 2   ? NEEDED_TWO_BISHOPS
                                   : bishops == 1 ? NEEDED_BISHOP_KNIGHT
                                                  : NEEDED_TWO_KNIGHTS;
    const int men = b.blackMenBesideKing();
    if (men >= fewestBlockers(b, reach, needed, whiteKingSteps(b, reach))) return 0;
    if (men == 1 && b.m_nBlackRooks == 1) return IMPOSSIBLE_MINORS_AGAINST_ROOK;
    return bishops == 2   ? IMPOSSIBLE_TWO_BISHOPS
           : bishops == 1 ? IMPOSSIBLE_BISHOP_KNIGHT
                          : IMPOSSIBLE_TWO_KNIGHTS;
}

// At most two minors, and pawns that cannot promote in time: inside the board
// the king has eight squares, and a White king covers at most three of them,
// a minor or a pawn two, each black man fills one. When that cannot make
// eight, the mate is on the edge, and the king cannot get there.
int bandCode(const TChessboard& b, const Reach& reach) {
    if (b.m_nWhiteQueens + b.m_nWhiteRooks > 0) return 0;
    const int men = b.m_nWhiteBishops + b.m_nWhiteKnights;
    if (men > 2 || b.edgeLevel() <= reach.blackMoves || pawnPromotesInTime(b, reach)) return 0;
    const int covered =
        WHITE_KING_COVER + MINOR_OR_PAWN_COVER * (men + b.m_nWhitePawns) + b.blackMenBesideKing();
    return covered < NEIGHBOURS_INSIDE ? IMPOSSIBLE_MINORS_BAND : 0;
}

} // namespace

int CountFreeKingSquares(const TChessboard& position) {
    return CountBlackKingFlights(position);
}

int ImpossibilityCode(const TChessboard& position) {
    const TChessboard& b = position;
    if (!b.whiteToMove()) return 0;
    const Reach reach = reachOf(b);
    const int men = b.blackMenBesideKing();
    // Each test below but the last knows the White material exactly.
    if (whiteHas(b, 0, 1, 0, 0))
        return men < fewestBlockers(b, reach, NEEDED_LONE_ROOK, whiteKingSteps(b, reach))
                   ? IMPOSSIBLE_LONE_ROOK
                   : 0;
    if (whiteHas(b, 1, 0, 0, 0))
        return men < fewestBlockers(b, reach, NEEDED_LONE_QUEEN, whiteKingSteps(b, reach))
                   ? IMPOSSIBLE_LONE_QUEEN
                   : 0;
    if (b.m_nWhitePawns == 0 && b.m_nWhiteQueens + b.m_nWhiteRooks == 0) {
        const int minors = b.m_nWhiteBishops + b.m_nWhiteKnights;
        if (minors == 1) {
            if (const int code = loneMinorCode(b, reach)) return code;
        } else if (minors == 2) {
            if (const int code = twoMinorsCode(b, reach)) return code;
        }
    }
    return bandCode(b, reach);
}

} // namespace zorvane
