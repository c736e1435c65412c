#pragma once
// Retractions: the moves that could have led to a position, taken back.
//
// The tables are made backwards from the mates, so they need the moves into
// a position as well as those out of it. Only moves inside one table are
// retracted: no capture is undone (the taken man would change the type) and
// no promotion (the pawn would), and there is no castling in the tables.
// Whether the position before is legal is left to the caller.
#include "core/chessboard.h"

#include <cstdint>

namespace zorvane {

// The man now on `to` stood on `from`.
struct TRetraction {
    uint8_t from = 0;
    uint8_t to = 0;
};

// Enough for a queen, two rooks and more on an empty board.
constexpr int MAX_RETRACTIONS = 160;

// The retractions of the side that has just moved: White's when Black is to
// move, and the other way round. Pawn steps back one row, and two rows from
// the fourth (fifth) row over empty squares.
int GenerateWhiteRetractions(const TChessboard& board, TRetraction* out);
int GenerateBlackRetractions(const TChessboard& board, TRetraction* out);

// Takes the move back on the squares and the kings' fields. Counts stay right
// (nothing is taken or promoted); the white lists are marked out of date.
void ApplyRetraction(TChessboard& board, const TRetraction& retraction);

// Whether a retraction is a pawn's double step.
inline bool IsDoubleStepRetraction(const TChessboard& board, const TRetraction& r) {
    return (board.m_aSquares[r.to] & KIND_MASK) == KIND_PAWN && absInt(r.to - r.from) == 16;
}

} // namespace zorvane
