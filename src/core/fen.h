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
    // Which rights those are (CastlingRightBit): a solve that obeys the text
    // denies them from its start.
    uint8_t deniedCastling = 0;
    // The text names an en passant square.
    bool enPassantNamed = false;
    // That square (0..63), or -1 when the field is "-", absent, or no square.
    int enPassantSquare = -1;
    // The side-to-move field: 'w', 'b', or 0 when the text has none. The
    // position does not take it: the side comes from the plies of the problem.
    char sideToMove = 0;
};

// The placement field alone, into 64 square bytes; false on any fault of the text.
bool ReadFenPlacement(const std::string& placement, uint8_t squares[64]);

// Reads FEN into board.m_aSquares and sets the position up strictly. Never
// throws: any fault gives false. The side to move is not read from the text.
bool ReadFen(const std::string& text, TChessboard& board, FenNotes* notes = nullptr);

// Gives `position` (White to move) the history that its FEN's en passant
// square implies: `parent` becomes the position before Black's double step
// through `square`, and `position` its child, so that the capture is possible
// at the first move. False, with nothing changed, when the square does not fit
// (not on the sixth row, no black pawn in front of it, or the squares it
// passed not empty).
bool SetUpDoubleStepHistory(TChessboard& position, TChessboard& parent, int square);

} // namespace zorvane
