#pragma once
// Where things are on the board view, in the widget's own pixels, and which
// thing a click hits. Plain arithmetic, so that it can be tested without a
// window.
//
//   x 0..399, y 30..429   the squares, 50 pixels each, rank 1 at the bottom
//   x 410..509, y 30..329 the palette of setting mode: white column, black column,
//                          one row per figure in PieceToColumn order
//   x 410..509, y 380..429 the stipulation arrows: upper half up, lower half down
#include <cstdint>

namespace zorvane::board_geometry {

constexpr int CELL = 50;
constexpr int BOARD_LEFT = 0;
constexpr int BOARD_BOTTOM = 430; // first pixel row below rank 1
constexpr int BOARD_TOP = BOARD_BOTTOM - 8 * CELL;
constexpr int BOARD_RIGHT = BOARD_LEFT + 8 * CELL;

constexpr int PALETTE_LEFT = BOARD_RIGHT + 10;
constexpr int PALETTE_TOP = BOARD_TOP;
constexpr int PALETTE_ENTRIES = 6; // king, queen, rook, bishop, knight, pawn
constexpr int PALETTE_RIGHT = PALETTE_LEFT + 2 * CELL;
constexpr int PALETTE_BOTTOM = PALETTE_TOP + PALETTE_ENTRIES * CELL;

constexpr int ARROWS_LEFT = PALETTE_LEFT;
constexpr int ARROWS_RIGHT = PALETTE_RIGHT;
constexpr int ARROWS_TOP = BOARD_BOTTOM - CELL;
constexpr int ARROWS_BOTTOM = BOARD_BOTTOM;

// The whole view, with a strip for the file letters under the board.
constexpr int VIEW_WIDTH = PALETTE_RIGHT + 10;
constexpr int VIEW_HEIGHT = BOARD_BOTTOM + 25;

constexpr int NO_HIT = -1;

// The square under a pixel, or NO_HIT above, below or left of the board. The
// file is x / 50 capped at 7, so anything right of the board reads as the last
// file; the rotated view mirrors file and rank at 7.
int SquareAt(int x, int y, bool rotated);

// Top-left pixel of a square's cell as drawn.
struct CellCorner {
    int x;
    int y;
};
CellCorner CellOf(int square, bool rotated);

// Palette column of a figure (colour bits ignored): king 0, queen 1, rook 2,
// bishop 3, knight 4, pawn 5. Throws ChessException "Unknown figure code
// passed to PieceToColumn." for any other code.
int PieceToColumn(uint8_t piece);
// Figure kind of a palette column; column 6 is a pawn as well. Throws
// ChessException "Cannot convert column to piece." for any other column.
uint8_t ColumnToPiece(int column);

enum class HitKind { Nothing, Palette, Arrow, Square };
struct Hit {
    HitKind kind = HitKind::Nothing;
    int square = NO_HIT; // Square
    int column = NO_HIT; // Palette
    bool white = true;   // Palette
    bool up = false;     // Arrow
};

// What a click at (x, y) hits. The palette exists only in setting mode and is
// tested before the squares, since the capped file would otherwise take it.
Hit HitTest(int x, int y, bool rotated, bool settingMode);

} // namespace zorvane::board_geometry
