#pragma once
// Whether a position may be stored in or asked of the temporary register. The
// register's key is the 64 squares alone, so positions whose future depends on
// more than the squares stay out: an en passant capture that is possible now,
// or castling rights that differ between positions with the same men.
#include "core/castling.h"
#include "core/chessboard.h"

namespace zorvane {

namespace register_detail {

// With the king at home and rooks in the corners, every corner rook must keep
// its right; a position where some rights are gone could otherwise meet an
// entry made where they were alive.
inline bool castlingStateFixed(const TChessboard& b, int kingSquare, uint8_t king, uint8_t rook, bool white) {
    const uint8_t* s = b.m_aSquares;
    if (s[kingSquare] != king) return true;
    const int corners = (s[kingSquare - 4] == rook) + (s[kingSquare + 3] == rook);
    if (corners == 0) return true;
    const int rights = white ? WhiteCastlingRight(b, QUEEN_SIDE) + WhiteCastlingRight(b, KING_SIDE)
                             : BlackCastlingRight(b, QUEEN_SIDE) + BlackCastlingRight(b, KING_SIDE);
    return rights == corners;
}

} // namespace register_detail

inline bool RegisterEligible(const TChessboard& b) {
    // (a) An en passant capture is possible: the last move was a double step
    // and an enemy pawn stands beside it.
    if (b.m_pParent) {
        const TMove last = b.m_LastMove;
        const uint8_t mover = b.m_aSquares[last.to];
        if ((mover & KIND_MASK) == KIND_PAWN && absInt(rowOf(last.to) - rowOf(last.from)) == 2) {
            const uint8_t enemyPawn = isWhite(mover) ? BP : WP;
            const int col = colOf(last.to);
            if ((col > 0 && b.m_aSquares[last.to - 1] == enemyPawn) ||
                (col < 7 && b.m_aSquares[last.to + 1] == enemyPawn))
                return false;
        }
    }
    // (b) Castling rights must follow from the squares.
    return register_detail::castlingStateFixed(b, 4, WK, WR, true) &&
           register_detail::castlingStateFixed(b, 60, BK, BR, false);
}

} // namespace zorvane
