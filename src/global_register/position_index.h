#pragma once
// The index of a position in its type's table, the position of an index, and
// the size of a table.
//
// An index is a mixed-radix number: the white king's slot is the fastest
// digit, then the black king's square (64), then the men from the last letter
// of the type text to the first, a piece on 64 squares and a pawn on the 48
// squares a2..h7. A run of like men that has a mapper is one digit, its set's
// number. Before that the whole position is mirrored so that the white king
// stands in its slot (table_symmetry.h). Only White to move is indexed.
//
// Cells that name no position (two men on one square, kings side by side)
// are kept: the arithmetic stays a plain radix, and index 0, with every man
// on a1, is free to hold the table's header.
#include "core/chessboard.h"
#include "table_layout.h"

#include <cstdint>
#include <string_view>

namespace zorvane {

// Header bits of a table, its cell 0.
constexpr uint8_t TABLE_HEADER_PAWN_COMPACT = 1;
constexpr uint8_t TABLE_HEADER_MAPPERS = 2;

// Number of cells of a regular type's table: W * 64^(men - 1), W the king
// slots; a pawn-compact table gives each pawn 48 of the 64 (and a text with X
// or x an eighth of it all); a mapper table puts the number of sets in place
// of each mapped run's share. 0 for a text that is no type.
uint64_t TableSize(std::string_view type, bool pawnCompact, bool usesMappers);
uint64_t TableSize(const TTableLayout& layout);

// The index of `board` (White to move, the men of the layout's type, each
// mapped run's mapper attached). No allocation; a virtual call only for a
// mapped run.
uint64_t IndexOfPosition(const TTableLayout& layout, const TChessboard& board);

// Sets `board` to the position of `index`, as the table sees it (mirrored so
// that the white king is in his slot), White to move, kings' and men's fields
// filled, checks not set up. False, with `board` unspecified, when the index
// names no position: two men on one square, a pawn on the first or last row,
// an index beyond the table, or an X or x among the men.
bool PositionOfIndex(const TTableLayout& layout, uint64_t index, TChessboard& board);

} // namespace zorvane
