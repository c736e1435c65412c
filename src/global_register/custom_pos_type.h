#pragma once
// Custom position types: tables in which some men never move.
//
// With blocked pawns on the board a regular table would be far too large, but
// the men that cannot move can be fixed: the table then numbers only the
// movable men, over the squares the fixed ones leave free. Its text lists the
// movable men (kings too), then behind a '+' the fixed ones by square:
// "KkQp(b5)+Pb4c3pc4" is a white king, black king, white queen and a black
// pawn that may stand on b5 down to the fixed pawn below it, beside fixed
// white pawns on b4 and c3 and a fixed black pawn on c4.
//
// Movable men are written in the order K Q R B N P k q r b n, like men in
// board-scan order, then the black pawns by file and, in a file, from the top
// down. Fixed men are grouped by letter in the same order, squares ascending.
#include "core/chessboard.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace zorvane {

constexpr char CUSTOM_FIXED_MARK = '+';

struct TCustomMan {
    uint8_t piece = 0;
    // A fixed man's square; for a movable black pawn the top of its stretch;
    // NO_SQUARE for another movable man.
    uint8_t square = NO_SQUARE;
};

struct TCustomPosType {
    std::vector<TCustomMan> movable;
    std::vector<TCustomMan> fixed;
};

// The custom type of `board` with the men on `fixedSquares` (bit s for square
// s) fixed; a movable black pawn's stretch starts on its own square.
TCustomPosType CustomPosTypeOfPosition(const TChessboard& board, uint64_t fixedSquares);
std::string CustomPosTypeText(const TCustomPosType& type);
// An odd key no regular type has, equal only for equal custom types.
uint64_t CustomPosTypeKey(const TCustomPosType& type);

// How a custom type's table numbers its positions: each movable man, the
// first most significant, is one digit over the free squares (renumbered
// without the fixed ones), a black pawn one over its stretch. Never mirrored.
struct TCustomLayout {
    TCustomPosType type;
    uint64_t setFixed = 0;
    std::array<uint8_t, 64> aSquareNumber{}; // NO_SQUARE on a fixed square
    std::array<uint8_t, 64> aSquareOfNumber{};
    // Per movable man: its radix and, for a black pawn, the bottom of its stretch.
    std::vector<uint8_t> aRadix;
    std::vector<uint8_t> aBottom;
    // Where each letter's men (K..n, in text order) and each file's black pawns lie in the list.
    std::array<uint8_t, 11> aRunFirst{};
    std::array<uint8_t, 11> aRunEnd{};
    std::array<uint8_t, 8> aPawnFileFirst{};
    std::array<uint8_t, 8> aPawnFileEnd{};
};

// Throws std::runtime_error for men on one square, a piece byte that is no
// man, or a stretch with no free square.
TCustomLayout MakeCustomLayout(const TCustomPosType& type);
// The product of the radices, 0 when it overflows a u64.
uint64_t CustomTableSize(const TCustomLayout& layout);
// The index of `board`, whose fixed men stand on their squares.
uint64_t CustomIndexOfPosition(const TCustomLayout& layout, const TChessboard& board);
// False when the index names no position: two men on one square, a pawn on
// the first or last row, or an index beyond the table.
bool CustomPositionOfIndex(const TCustomLayout& layout, uint64_t index, TChessboard& board);

} // namespace zorvane
