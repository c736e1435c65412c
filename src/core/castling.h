#pragma once
// Castling rights. There are no castling flags: a right lives while the king
// and the rook stand where they stood at the top of the parent chain and no
// move of the chain has ended on either square.
#include "chessboard.h"

namespace zorvane {

enum CastlingSide { KING_SIDE = 0, QUEEN_SIDE = 1 };

// Whether White (Black) still has the right to castle on that side; says
// nothing about attacked or occupied squares.
bool WhiteCastlingRight(const TChessboard& b, CastlingSide side);
bool BlackCastlingRight(const TChessboard& b, CastlingSide side);

// Every condition of castling: the right, empty squares between, the king not
// in check and the squares it crosses not attacked.
bool WhiteCanCastle(const TChessboard& b, CastlingSide side);
bool BlackCanCastle(const TChessboard& b, CastlingSide side);

// Number of rooks whose right is still alive, both colours together.
int LiveCastlingRooks(const TChessboard& b);

} // namespace zorvane
