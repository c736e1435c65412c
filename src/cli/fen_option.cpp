#include "cli/fen_option.h"

#include "core/chess_exception.h"

#include <cstdio>

namespace zorvane::cli {

std::optional<FenPosition> ReadFenOption(const std::string& fen, int plies) {
    FenPosition position{EmptyChessboard(), {}};
    TChessboard& board = position.board;
    const size_t first = fen.find_first_not_of(' ');
    const std::string placement =
        first == std::string::npos ? std::string() : fen.substr(first, fen.find(' ', first) - first);
    if (fen.find('{') != std::string::npos || !ReadFenPlacement(placement, board.m_aSquares)) {
        std::fprintf(stderr, "Improper FEN code.\n");
        return std::nullopt;
    }
    // The fields beyond the placement; the men are read and checked here.
    TChessboard scratch = EmptyChessboard();
    ReadFen(fen, scratch, &position.notes);
    const bool white = plies & 1;
    if (white && position.notes.sideToMove == 'b') {
        std::fprintf(stderr, "The FEN gives Black the move; a direct mate starts with White (\"w\").\n");
        return std::nullopt;
    }
    if (!white && position.notes.sideToMove == 'w') {
        std::fprintf(stderr, "The FEN gives White the move; the best defence starts with Black (\"b\").\n");
        return std::nullopt;
    }
    board.m_shPliesLeft = board.m_shPliesTotal = static_cast<uint16_t>(plies);
    try {
        // The set-up's own message says what is wrong with the men.
        SetupChessboard(board, true);
    } catch (const ChessException& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return std::nullopt;
    }
    return position;
}

} // namespace zorvane::cli
