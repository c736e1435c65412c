#pragma once
// Check found after a move, from the moved man and the squares it vacated,
// never by scanning the board; and the matching legality test of the line
// through a vacated square.
#include "chessboard.h"
#include "rays.h"

namespace zorvane {

template <bool White> struct CheckSide {
    // Sliders of the side that moved, and of the side whose king may be exposed.
    static constexpr uint8_t ownDiagonal = White ? WHITE_DIAGONAL : BLACK_DIAGONAL;
    static constexpr uint8_t ownLine = White ? WHITE_LINE : BLACK_LINE;
    static constexpr uint8_t enemyDiagonal = White ? BLACK_DIAGONAL : WHITE_DIAGONAL;
    static constexpr uint8_t enemyLine = White ? BLACK_LINE : WHITE_LINE;
};

template <bool White> inline int ownDiagonalSliders(const TChessboard& b) {
    return White ? b.m_nWhiteBishops + b.m_nWhiteQueens : b.m_nBlackBishops + b.m_nBlackQueens;
}
template <bool White> inline int ownLineSliders(const TChessboard& b) {
    return White ? b.m_nWhiteRooks + b.m_nWhiteQueens : b.m_nBlackRooks + b.m_nBlackQueens;
}

// Whether emptying `vacated` lets an enemy slider reach the mover's own king.
template <bool White> inline bool ExposesOwnKing(const TChessboard& b, int king, int vacated) {
    const int step = LineStep(king, vacated);
    if (step == 0) return false;
    const bool diagonal = IsDiagonalStep(step);
    if (diagonal ? ownDiagonalSliders<!White>(b) == 0 : ownLineSliders<!White>(b) == 0) return false;
    const int hit = FirstManOnLine(b.m_aSquares, king, step);
    const uint8_t mask = diagonal ? CheckSide<White>::enemyDiagonal : CheckSide<White>::enemyLine;
    return hit >= 0 && (b.m_aSquares[hit] & mask) == mask;
}

inline int AddChecker(int checker, int square) {
    return checker < 0 ? square : DOUBLE_CHECK;
}

// Whether the man of `kind` standing on `square` gives check to the king on `king`.
template <bool White> inline bool GivesDirectCheck(const uint8_t* s, int kind, int square, int king) {
    const int dc = colOf(king) - colOf(square), dr = rowOf(king) - rowOf(square);
    switch (kind) {
    case KIND_KNIGHT:
        return absInt(dc * dr) == 2;
    case KIND_PAWN:
        return absInt(dc) == 1 && dr == (White ? 1 : -1);
    case KIND_BISHOP:
    case KIND_ROOK:
    case KIND_QUEEN: {
        const int step = LineStep(king, square);
        if (step == 0) return false;
        if (!(kind & (IsDiagonalStep(step) ? KIND_BISHOP : KIND_ROOK))) return false;
        return FirstManOnLine(s, king, step) == square;
    }
    default:
        return false;
    }
}

// A slider of the moving side uncovered on the line from the enemy king through `vacated`.
template <bool White> inline int DiscoveredChecker(const TChessboard& b, int king, int vacated, int mover) {
    const int step = LineStep(king, vacated);
    if (step == 0) return -1;
    const bool diagonal = IsDiagonalStep(step);
    if (diagonal ? ownDiagonalSliders<White>(b) == 0 : ownLineSliders<White>(b) == 0) return -1;
    const int hit = FirstManOnLine(b.m_aSquares, king, step);
    if (hit < 0 || hit == mover) return -1;
    const uint8_t mask = diagonal ? CheckSide<White>::ownDiagonal : CheckSide<White>::ownLine;
    return (b.m_aSquares[hit] & mask) == mask ? hit : -1;
}

// The checker field of the enemy king after a move of side White from `from` to
// `to`; `captureSquare` is the square of a pawn taken en passant or -1, `rookSquare`
// the castled rook's new square or -1.
template <bool White>
inline int8_t FindCheck(const TChessboard& b, int from, int to, int captureSquare, int rookSquare) {
    const uint8_t* s = b.m_aSquares;
    const int king = White ? b.blackKing() : b.whiteKing();
    int checker = -1;
    if (rookSquare >= 0) {
        if (GivesDirectCheck<White>(s, KIND_ROOK, rookSquare, king)) checker = rookSquare;
    } else if (GivesDirectCheck<White>(s, s[to] & KIND_MASK, to, king)) {
        checker = to;
    }
    const int discovered = DiscoveredChecker<White>(b, king, from, to);
    if (discovered >= 0 && discovered != checker) checker = AddChecker(checker, discovered);
    if (captureSquare >= 0) {
        const int second = DiscoveredChecker<White>(b, king, captureSquare, to);
        if (second >= 0 && second != checker && second != discovered) checker = AddChecker(checker, second);
    }
    return static_cast<int8_t>(checker < 0 ? NO_CHECK : checker);
}

} // namespace zorvane
