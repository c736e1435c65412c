#pragma once
// The position of a --fen option, read as the single-position commands read it.
#include "core/chessboard.h"
#include "core/fen.h"

#include <optional>
#include <string>

namespace zorvane::cli {

struct FenPosition {
    TChessboard board;
    FenNotes notes; // the fields beyond the placement, as the full FEN gave them
};

// The placement of `fen` set up strictly with `plies` left (odd: White to
// move, even: Black). A FEN that gives the other side the move, a bad
// placement or a position the set-up refuses is told on stderr, and the
// result is empty.
std::optional<FenPosition> ReadFenOption(const std::string& fen, int plies);

} // namespace zorvane::cli
