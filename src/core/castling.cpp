#include "castling.h"

#include "attacks.h"
#include "thread_context.h"

namespace zorvane {

namespace {

// Walks the chain of parents: false as soon as a move ended on the king's or
// the rook's square; at the top, the men must have stood there too.
bool rightAlive(const TChessboard& b, int kingSquare, int rookSquare, uint8_t king, uint8_t rook,
                uint8_t bit) {
    if (b.m_aSquares[kingSquare] != king || b.m_aSquares[rookSquare] != rook) return false;
    if (b.m_pThread && (b.m_pThread->m_bDeniedCastling & bit)) return false;
    const TChessboard* p = &b;
    while (p->m_pParent) {
        if (p->m_LastMove.to == kingSquare || p->m_LastMove.to == rookSquare) return false;
        p = p->m_pParent;
    }
    return p->m_aSquares[kingSquare] == king && p->m_aSquares[rookSquare] == rook;
}

} // namespace

bool WhiteCastlingRight(const TChessboard& b, CastlingSide side) {
    return rightAlive(b, 4, side == KING_SIDE ? 7 : 0, WK, WR,
                      side == KING_SIDE ? WHITE_SHORT_CASTLING : WHITE_LONG_CASTLING);
}

bool BlackCastlingRight(const TChessboard& b, CastlingSide side) {
    return rightAlive(b, 60, side == KING_SIDE ? 63 : 56, BK, BR,
                      side == KING_SIDE ? BLACK_SHORT_CASTLING : BLACK_LONG_CASTLING);
}

bool WhiteCanCastle(const TChessboard& b, CastlingSide side) {
    const uint8_t* s = b.m_aSquares;
    if (s[4] != WK || b.m_cWhiteChecker >= 0) return false;
    if (side == KING_SIDE) {
        if (s[5] || s[6] || s[7] != WR) return false;
        if (!WhiteCastlingRight(b, side)) return false;
        return !IsAttackedByBlack(b, 5, 0) && !IsAttackedByBlack(b, 6, 0);
    }
    if (s[1] || s[2] || s[3] || s[0] != WR) return false;
    if (!WhiteCastlingRight(b, side)) return false;
    return !IsAttackedByBlack(b, 3, 0) && !IsAttackedByBlack(b, 2, 0);
}

bool BlackCanCastle(const TChessboard& b, CastlingSide side) {
    const uint8_t* s = b.m_aSquares;
    if (s[60] != BK || b.m_cBlackChecker >= 0) return false;
    if (side == KING_SIDE) {
        if (s[61] || s[62] || s[63] != BR) return false;
        if (!BlackCastlingRight(b, side)) return false;
        return !IsAttackedByWhite(b, 5, 7) && !IsAttackedByWhite(b, 6, 7);
    }
    if (s[57] || s[58] || s[59] || s[56] != BR) return false;
    if (!BlackCastlingRight(b, side)) return false;
    return !IsAttackedByWhite(b, 3, 7) && !IsAttackedByWhite(b, 2, 7);
}

int LiveCastlingRooks(const TChessboard& b) {
    return WhiteCastlingRight(b, KING_SIDE) + WhiteCastlingRight(b, QUEEN_SIDE) +
           BlackCastlingRight(b, KING_SIDE) + BlackCastlingRight(b, QUEEN_SIDE);
}

} // namespace zorvane
