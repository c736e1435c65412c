#include "shell/board_geometry.h"

#include "core/chess_exception.h"
#include "core/piece.h"

#include <algorithm>

namespace zorvane::board_geometry {

namespace {

constexpr uint8_t COLUMN_KINDS[] = {KIND_KING,   KIND_QUEEN, KIND_ROOK, KIND_BISHOP,
                                    KIND_KNIGHT, KIND_PAWN,  KIND_PAWN};

bool inside(int x, int y, int left, int top, int right, int bottom) {
    return x >= left && x < right && y >= top && y < bottom;
}

} // namespace

int SquareAt(int x, int y, bool rotated) {
    if (x < BOARD_LEFT || y < BOARD_TOP || y >= BOARD_BOTTOM) return NO_HIT;
    int file = std::min((x - BOARD_LEFT) / CELL, 7);
    int rank = (BOARD_BOTTOM - 1 - y) / CELL;
    if (rotated) {
        file = 7 - file;
        rank = 7 - rank;
    }
    return squareOf(file, rank);
}

CellCorner CellOf(int square, bool rotated) {
    int file = colOf(square);
    int rank = rowOf(square);
    if (rotated) {
        file = 7 - file;
        rank = 7 - rank;
    }
    return {BOARD_LEFT + file * CELL, BOARD_BOTTOM - CELL * (rank + 1)};
}

int PieceToColumn(uint8_t piece) {
    // The blocking mark counts, so that a marked pawn is no figure of the palette.
    switch (piece & KIND_MASK_MARKED) {
    case KIND_KING:
        return 0;
    case KIND_QUEEN:
        return 1;
    case KIND_ROOK:
        return 2;
    case KIND_BISHOP:
        return 3;
    case KIND_KNIGHT:
        return 4;
    case KIND_PAWN:
        return 5;
    default:
        throw ChessException("Unknown figure code passed to PieceToColumn.");
    }
}

uint8_t ColumnToPiece(int column) {
    if (column < 0 || column >= static_cast<int>(std::size(COLUMN_KINDS)))
        throw ChessException("Cannot convert column to piece.");
    return COLUMN_KINDS[column];
}

Hit HitTest(int x, int y, bool rotated, bool settingMode) {
    Hit hit;
    if (settingMode && inside(x, y, PALETTE_LEFT, PALETTE_TOP, PALETTE_RIGHT, PALETTE_BOTTOM)) {
        hit.kind = HitKind::Palette;
        hit.column = (y - PALETTE_TOP) / CELL;
        hit.white = x < PALETTE_LEFT + CELL;
        return hit;
    }
    if (inside(x, y, ARROWS_LEFT, ARROWS_TOP, ARROWS_RIGHT, ARROWS_BOTTOM)) {
        hit.kind = HitKind::Arrow;
        hit.up = y < ARROWS_TOP + CELL / 2;
        return hit;
    }
    hit.square = SquareAt(x, y, rotated);
    if (hit.square != NO_HIT) hit.kind = HitKind::Square;
    return hit;
}

} // namespace zorvane::board_geometry
