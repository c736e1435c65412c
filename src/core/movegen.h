#pragma once
// Pseudo-legal move generation in the fixed base order of every move list:
// rook rays up, down, right, left; bishop steps +9, +7, -7, -9; the queen as
// rook then bishop; knights in table order; the king down-file, down-left,
// down-right, up-file, up-left, up-right, left, right, then castling king-side
// before queen-side; pawns straight, double, capture on the lower column (en
// passant right after it), capture on the higher column (en passant after it),
// promotions queen, rook, bishop, knight. Legality is left to the move makers.
#include "chessboard.h"
#include "move.h"

namespace zorvane {

// Moves of the man on `square`; 0 for a byte outside that colour's codes.
int GenerateWhiteManMoves(const TChessboard& b, int square, TMove* out);
int GenerateBlackManMoves(const TChessboard& b, int square, TMove* out);

// The moves of the White man on `square` that may check the black king, in
// the base order: all of them when the man screens the king from a White
// slider; else a pawn's after which it aims at him (blockers aside) and en
// passant, a king's castlings, and every move of another man. The maker
// decides whether a check is given.
int GenerateWhiteCheckCandidates(const TChessboard& b, int square, bool screensKing, TMove* out);

// Moves of all men, square by square from a1.
int GenerateWhiteMoves(const TChessboard& b, TMove* out);
int GenerateBlackMoves(const TChessboard& b, TMove* out);

// In check: king moves, captures of the checker, interpositions (only king
// moves under double check), then en passant captures, which can take a
// checking pawn or block a line.
int GenerateWhiteEvasions(const TChessboard& b, TMove* out);
int GenerateBlackEvasions(const TChessboard& b, TMove* out);

// All moves of the side to move: evasions in check, every man's moves otherwise.
int GenerateWhiteMovesOrEvasions(const TChessboard& b, TMove* out);
int GenerateBlackMovesOrEvasions(const TChessboard& b, TMove* out);

} // namespace zorvane
