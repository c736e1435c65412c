#include "attacks.h"

namespace zorvane {

namespace {

void addSquare(TSquareList* list, int sq) {
    if (list && list->count < 24) {
        list->cols[list->count] = static_cast<uint8_t>(sq & 7);
        list->rows[list->count] = static_cast<uint8_t>(sq >> 3);
        ++list->count;
    }
}

// Folds one more attacker into the running answer: none, a square, or two or more.
int addAttacker(int found, int sq, TSquareList* list) {
    addSquare(list, sq);
    return found == NO_SQUARE ? sq : DOUBLE_CHECK;
}

template <int Step> int sliderAttacker(const uint8_t* s, int sq, uint8_t mask, int found, TSquareList* list) {
    const int hit = FirstManOnRay<Step>(s, sq);
    if (hit >= 0 && (s[hit] & mask) == mask) return addAttacker(found, hit, list);
    return found;
}

template <uint8_t Knight> int knightAttackers(const uint8_t* s, int sq, int found, TSquareList* list) {
    const int8_t* jumps = KnightJumps(sq);
    const int n = KnightJumpCount(sq);
    for (int i = 0; i < n; ++i)
        if (s[sq + jumps[i]] == Knight) found = addAttacker(found, sq + jumps[i], list);
    return found;
}

template <uint8_t Diagonal, uint8_t Line>
int sliderAttackers(const uint8_t* s, int sq, int found, TSquareList* list) {
    found = sliderAttacker<9>(s, sq, Diagonal, found, list);
    found = sliderAttacker<7>(s, sq, Diagonal, found, list);
    found = sliderAttacker<-7>(s, sq, Diagonal, found, list);
    found = sliderAttacker<-9>(s, sq, Diagonal, found, list);
    found = sliderAttacker<8>(s, sq, Line, found, list);
    found = sliderAttacker<-8>(s, sq, Line, found, list);
    found = sliderAttacker<1>(s, sq, Line, found, list);
    found = sliderAttacker<-1>(s, sq, Line, found, list);
    return found;
}

// Sliders of one colour that reach `sq` along a ray through empty squares.
template <int Step> void sliderReaching(const uint8_t* s, int sq, uint8_t mask, TSquareList& list) {
    const int hit = FirstManOnRay<Step>(s, sq);
    if (hit >= 0 && (s[hit] & mask) == mask) addSquare(&list, hit);
}

template <uint8_t Diagonal, uint8_t Line> void slidersReaching(const uint8_t* s, int sq, TSquareList& list) {
    sliderReaching<9>(s, sq, Diagonal, list);
    sliderReaching<7>(s, sq, Diagonal, list);
    sliderReaching<-7>(s, sq, Diagonal, list);
    sliderReaching<-9>(s, sq, Diagonal, list);
    sliderReaching<8>(s, sq, Line, list);
    sliderReaching<-8>(s, sq, Line, list);
    sliderReaching<1>(s, sq, Line, list);
    sliderReaching<-1>(s, sq, Line, list);
}

} // namespace

int WhiteAttackers(const TChessboard& b, int col, int row, TSquareList* list) {
    const uint8_t* s = b.m_aSquares;
    const int sq = squareOf(col, row);
    int found = NO_SQUARE;
    if (absInt(b.m_cWhiteKingCol - col) <= 1 && absInt(b.m_cWhiteKingRow - row) <= 1 && b.whiteKing() != sq)
        found = addAttacker(found, b.whiteKing(), list);
    if (row > 1) {
        if (col > 0 && s[sq - 9] == WP) found = addAttacker(found, sq - 9, list);
        if (col < 7 && s[sq - 7] == WP) found = addAttacker(found, sq - 7, list);
    }
    if (b.m_nWhiteKnights) found = knightAttackers<WN>(s, sq, found, list);
    if (b.m_nWhiteBishops + b.m_nWhiteQueens + b.m_nWhiteRooks)
        found = sliderAttackers<WHITE_DIAGONAL, WHITE_LINE>(s, sq, found, list);
    return found;
}

int BlackAttackers(const TChessboard& b, int col, int row, TSquareList* list) {
    const uint8_t* s = b.m_aSquares;
    const int sq = squareOf(col, row);
    int found = NO_SQUARE;
    if (absInt(b.m_cBlackKingCol - col) <= 1 && absInt(b.m_cBlackKingRow - row) <= 1 && b.blackKing() != sq)
        found = addAttacker(found, b.blackKing(), list);
    if (row < 6) {
        if (col > 0 && s[sq + 7] == BP) found = addAttacker(found, sq + 7, list);
        if (col < 7 && s[sq + 9] == BP) found = addAttacker(found, sq + 9, list);
    }
    if (b.m_nBlackKnights) found = knightAttackers<BN>(s, sq, found, list);
    if (b.m_nBlackBishops + b.m_nBlackQueens + b.m_nBlackRooks)
        found = sliderAttackers<BLACK_DIAGONAL, BLACK_LINE>(s, sq, found, list);
    return found;
}

void WhiteMenReaching(const TChessboard& b, int col, int row, TSquareList& list) {
    const uint8_t* s = b.m_aSquares;
    const int sq = squareOf(col, row);
    if (row >= 1 && s[sq - 8] == WP)
        addSquare(&list, sq - 8);
    else if (row == 3 && s[sq - 8] == 0 && s[sq - 16] == WP)
        addSquare(&list, sq - 16);
    if (b.m_nWhiteKnights) {
        const int8_t* jumps = KnightJumps(sq);
        for (int i = 0, n = KnightJumpCount(sq); i < n; ++i)
            if (s[sq + jumps[i]] == WN) addSquare(&list, sq + jumps[i]);
    }
    slidersReaching<WHITE_DIAGONAL, WHITE_LINE>(s, sq, list);
}

void BlackMenReaching(const TChessboard& b, int col, int row, TSquareList& list) {
    const uint8_t* s = b.m_aSquares;
    const int sq = squareOf(col, row);
    if (row <= 6 && s[sq + 8] == BP)
        addSquare(&list, sq + 8);
    else if (row == 4 && s[sq + 8] == 0 && s[sq + 16] == BP)
        addSquare(&list, sq + 16);
    if (b.m_nBlackKnights) {
        const int8_t* jumps = KnightJumps(sq);
        for (int i = 0, n = KnightJumpCount(sq); i < n; ++i)
            if (s[sq + jumps[i]] == BN) addSquare(&list, sq + jumps[i]);
    }
    slidersReaching<BLACK_DIAGONAL, BLACK_LINE>(s, sq, list);
}

bool ManAttacksSquare(const TChessboard& b, int target, int manSquare) {
    const uint8_t man = b.m_aSquares[manSquare];
    const int dc = colOf(target) - colOf(manSquare), dr = rowOf(target) - rowOf(manSquare);
    switch (man & KIND_MASK) {
    case KIND_KING:
        return target != manSquare && absInt(dc) <= 1 && absInt(dr) <= 1;
    case KIND_PAWN:
        return absInt(dc) == 1 && dr == (isWhite(man) ? 1 : -1);
    case KIND_KNIGHT:
        return absInt(dc * dr) == 2;
    case KIND_BISHOP:
    case KIND_ROOK:
    case KIND_QUEEN: {
        const int step = LineStep(manSquare, target);
        if (step == 0) return false;
        const bool diagonal = IsDiagonalStep(step);
        if (diagonal && !(man & KIND_BISHOP)) return false;
        if (!diagonal && !(man & KIND_ROOK)) return false;
        for (int sq = manSquare + step; sq != target; sq += step)
            if (b.m_aSquares[sq]) return false;
        return true;
    }
    default:
        return false;
    }
}

} // namespace zorvane
