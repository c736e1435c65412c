#pragma once
// Castling rights. There are no castling flags: a right lives while the king
// and the rook stand where they stood at the top of the parent chain and no
// move of the chain has ended on either square.
#include "chessboard.h"

namespace zorvane {

enum CastlingSide { KING_SIDE = 0, QUEEN_SIDE = 1 };

// One bit per right, for a set of rights: K, Q, k, q of FEN.
enum CastlingRightBit : uint8_t {
    WHITE_SHORT_CASTLING = 1,
    WHITE_LONG_CASTLING = 2,
    BLACK_SHORT_CASTLING = 4,
    BLACK_LONG_CASTLING = 8,
};

// Whether White (Black) still has the right to castle on that side; says
// nothing about attacked or occupied squares. A right that the solve of the
// position denies from its start (TThreadContext::m_bDeniedCastling) is dead.
bool WhiteCastlingRight(const TChessboard& b, CastlingSide side);
bool BlackCastlingRight(const TChessboard& b, CastlingSide side);

// Every condition of castling: the right, empty squares between, the king not
// in check and the squares it crosses not attacked.
bool WhiteCanCastle(const TChessboard& b, CastlingSide side);
bool BlackCanCastle(const TChessboard& b, CastlingSide side);

// Number of rooks whose right is still alive, both colours together.
int LiveCastlingRooks(const TChessboard& b);

} // namespace zorvane
