#pragma once
// Positions as FEN text.
#include "chessboard.h"

#include <string>

namespace zorvane {

// Kind code of a piece letter, English (K Q R B N P) or Polish (H W G S) in
// either case; throws ChessException "Unknown figure letter: X" for any other.
uint8_t KindFromLetter(char letter);

// FEN of the position; bPlacementOnly stops after the men, the form of the
// problem file. The full form adds side, castling, en passant, " 0" and the move number.
std::string WriteFen(const TChessboard& board, bool bPlacementOnly);

struct FenNotes {
    // The board allows a castling that the text denies; the position keeps it.
    bool castlingDenied = false;
    // The text names an en passant square.
    bool enPassantNamed = false;
};

// The placement field alone, into 64 square bytes; false on any fault of the text.
bool ReadFenPlacement(const std::string& placement, uint8_t squares[64]);

// Reads FEN into board.m_aSquares and sets the position up strictly. Never
// throws: any fault gives false. The side to move is not read from the text.
bool ReadFen(const std::string& text, TChessboard& board, FenNotes* notes = nullptr);

} // namespace zorvane
