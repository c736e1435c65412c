#pragma once
// Attack tests. The piece counts guard each kind of test, so that the thin
// positions of problems skip most rays.
#include "chessboard.h"
#include "knight_table.h"
#include "rays.h"

namespace zorvane {

namespace attack_detail {

template <int Step> inline bool sliderOnRay(const uint8_t* squares, int sq, uint8_t mask) {
    const int hit = FirstManOnRay<Step>(squares, sq);
    return hit >= 0 && (squares[hit] & mask) == mask;
}

// Whether the White slider on `from` (NO_SQUARE for an empty slot) reaches `sq`,
// moving along diagonals and lines as told.
inline bool listedSliderReaches(const uint8_t* squares, int from, int sq, bool diagonal, bool line) {
    if (from == NO_SQUARE) return false;
    const int step = LineStep(sq, from);
    if (step == 0 || !(IsDiagonalStep(step) ? diagonal : line)) return false;
    return FirstManOnLine(squares, sq, step) == from;
}

} // namespace attack_detail

// Whether Black attacks the square (col, row).
inline bool IsAttackedByBlack(const TChessboard& b, int col, int row) {
    using namespace attack_detail;
    const uint8_t* s = b.m_aSquares;
    const int sq = squareOf(col, row);
    if (absInt(b.m_cBlackKingCol - col) <= 1 && absInt(b.m_cBlackKingRow - row) <= 1) return true;
    if (row < 6 && b.m_nBlackPawns) {
        if (col > 0 && s[sq + 7] == BP) return true;
        if (col < 7 && s[sq + 9] == BP) return true;
    }
    if (b.m_nBlackKnights && KnightOnJump(s, sq, BN)) return true;
    if (b.m_nBlackBishops + b.m_nBlackQueens) {
        if (sliderOnRay<9>(s, sq, BLACK_DIAGONAL) || sliderOnRay<7>(s, sq, BLACK_DIAGONAL) ||
            sliderOnRay<-7>(s, sq, BLACK_DIAGONAL) || sliderOnRay<-9>(s, sq, BLACK_DIAGONAL))
            return true;
    }
    if (b.m_nBlackRooks + b.m_nBlackQueens) {
        if (sliderOnRay<8>(s, sq, BLACK_LINE) || sliderOnRay<-8>(s, sq, BLACK_LINE) ||
            sliderOnRay<1>(s, sq, BLACK_LINE) || sliderOnRay<-1>(s, sq, BLACK_LINE))
            return true;
    }
    return false;
}

// Whether White attacks the square (col, row).
inline bool IsAttackedByWhite(const TChessboard& b, int col, int row) {
    using namespace attack_detail;
    const uint8_t* s = b.m_aSquares;
    const int sq = squareOf(col, row);
    if (absInt(b.m_cWhiteKingCol - col) <= 1 && absInt(b.m_cWhiteKingRow - row) <= 1) return true;
    if (row > 1 && b.m_nWhitePawns) {
        if (col > 0 && s[sq - 9] == WP) return true;
        if (col < 7 && s[sq - 7] == WP) return true;
    }
    if (b.m_nWhiteKnights && KnightOnJump(s, sq, WN)) return true;
    // With the lists of White's men at hand only the lines to the sliders are walked.
    if (b.m_bWhiteListsValid)
        return listedSliderReaches(s, b.m_cWhiteQueen, sq, true, true) ||
               listedSliderReaches(s, b.m_aWhiteRooks[0], sq, false, true) ||
               listedSliderReaches(s, b.m_aWhiteRooks[1], sq, false, true) ||
               listedSliderReaches(s, b.m_aWhiteBishops[0], sq, true, false) ||
               listedSliderReaches(s, b.m_aWhiteBishops[1], sq, true, false);
    if (b.m_nWhiteBishops + b.m_nWhiteQueens) {
        if (sliderOnRay<9>(s, sq, WHITE_DIAGONAL) || sliderOnRay<7>(s, sq, WHITE_DIAGONAL) ||
            sliderOnRay<-7>(s, sq, WHITE_DIAGONAL) || sliderOnRay<-9>(s, sq, WHITE_DIAGONAL))
            return true;
    }
    if (b.m_nWhiteRooks + b.m_nWhiteQueens) {
        if (sliderOnRay<8>(s, sq, WHITE_LINE) || sliderOnRay<-8>(s, sq, WHITE_LINE) ||
            sliderOnRay<1>(s, sq, WHITE_LINE) || sliderOnRay<-1>(s, sq, WHITE_LINE))
            return true;
    }
    return false;
}

// A list of (col, row) pairs of attackers.
struct TSquareList {
    uint8_t cols[24];
    uint8_t rows[24];
    int count = 0;
};

// Attackers of a square: NO_SQUARE for none, the attacker's square for one,
// DOUBLE_CHECK for two or more. `list` (optional) receives them all.
int WhiteAttackers(const TChessboard& b, int col, int row, TSquareList* list = nullptr);
int BlackAttackers(const TChessboard& b, int col, int row, TSquareList* list = nullptr);

// Men other than the king that can move onto the empty square (col, row):
// pawn steps (the double step too), knights and sliders. Used for interpositions.
void WhiteMenReaching(const TChessboard& b, int col, int row, TSquareList& list);
void BlackMenReaching(const TChessboard& b, int col, int row, TSquareList& list);

// Whether the man on `manSquare` attacks `target`, with the way checked for
// emptiness; pawns only diagonally.
bool ManAttacksSquare(const TChessboard& b, int target, int manSquare);

} // namespace zorvane
