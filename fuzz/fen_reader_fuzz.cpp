// Any bytes through the FEN reader. It must never crash or throw, and a text it
// accepts must come back unchanged through the writer: the placement written
// from the position reads to the same squares, and so does the full form.
#include "core/fen.h"

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

void check(bool condition) {
    if (!condition) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace zorvane;
    const std::string text(reinterpret_cast<const char*>(data), size);
    TChessboard board = freshBoard();
    FenNotes notes;
    if (!ReadFen(text, board, &notes)) return 0;

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
