// Any bytes through the FEN reader. It must never crash or throw, and a text it
// accepts must come back unchanged through the writer: the placement written
// from the position reads to the same squares, and so does the full form. The
// notes of the fields beyond the placement stay within their ranges, and an
// en passant square either builds its history or is refused untouched.
#include "core/castling.h"
#include "core/fen.h"
#include "core/movegen.h"
#include "fuzz_check.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

zorvane::TChessboard freshBoard() {
    zorvane::TChessboard b = zorvane::EmptyChessboard();
    b.m_shPliesLeft = 1; // White to move
    b.m_shPliesTotal = 1;
    return b;
}

using zorvane::fuzz::check;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace zorvane;
    const std::string text(reinterpret_cast<const char*>(data), size);
    TChessboard board = freshBoard();
    FenNotes notes;
    if (!ReadFen(text, board, &notes)) return 0;
    check(notes.castlingDenied == (notes.deniedCastling != 0));
    check((notes.deniedCastling & ~0x0F) == 0);
    check(notes.enPassantSquare >= -1 && notes.enPassantSquare < 64);
    check(notes.enPassantSquare < 0 || notes.enPassantNamed);
    check(notes.sideToMove == 0 || notes.sideToMove == 'w' || notes.sideToMove == 'b');
    if (notes.enPassantSquare >= 0) {
        TChessboard withHistory = board;
        TChessboard parent;
        if (SetUpDoubleStepHistory(withHistory, parent, notes.enPassantSquare)) {
            check(withHistory.m_pParent == &parent);
            check(std::memcmp(withHistory.m_aSquares, board.m_aSquares, 64) == 0);
            TMove moves[MAX_MOVES];
            GenerateWhiteMoves(withHistory, moves);
        } else {
            check(withHistory.m_pParent == nullptr);
        }
    }

    const std::string placement = WriteFen(board, true);
    TChessboard again = freshBoard();
    check(ReadFen(placement, again));
    check(std::memcmp(board.m_aSquares, again.m_aSquares, 64) == 0);
    check(WriteFen(again, true) == placement);

    const std::string full = WriteFen(board, false);
    TChessboard third = freshBoard();
    FenNotes fullNotes;
    check(ReadFen(full, third, &fullNotes));
    check(std::memcmp(board.m_aSquares, third.m_aSquares, 64) == 0);
    // The writer names every right the board allows, so none is denied on reading.
    check(!fullNotes.castlingDenied);
    return 0;
}
