#pragma once
// Lists of long direct mates in the EPD form of public test suites: one
// position a line, "placement w - - bm #n;" with an optional c0 "source";.
// White is to move; the mate in at most n moves is what a solve must prove.
#include "core/chessboard.h"

#include <string>
#include <string_view>
#include <vector>

namespace zorvane {

struct EpdMate {
    int line = 0; // 1-based line of the list
    TChessboard position = EmptyChessboard();
    int moves = 0;
    std::string fen;    // the text of the position, as the line gives it
    std::string source; // the c0 field, or empty
};

// Every line of `text` that is not blank or a "#" comment is one mate. Throws
// ChessException naming the line for a line that is not of the form, a FEN
// that cannot be set up, Black to move, or a mate length outside 1..255.
std::vector<EpdMate> ReadEpdMates(std::string_view text);

// The file read as above; throws ChessException "Error opening file: " and the path.
std::vector<EpdMate> LoadEpdMates(const std::string& path);

} // namespace zorvane
