#pragma once
// The symmetries that fold a table's positions onto few white king squares.
//
// With pawns only the left-right mirror is free, so the white king keeps the
// 32 squares of files a to d. Without pawns the rows and the long diagonal
// fold too, and the king keeps the ten squares of the triangle a1-d1-d4. A
// king on the diagonal is not folded any further: both mirror images of such
// a position have cells of their own.
#include <array>
#include <cstdint>

namespace zorvane {

constexpr int KING_SLOTS_WITH_PAWNS = 32;
constexpr int KING_SLOTS_WITHOUT_PAWNS = 10;
constexpr uint8_t NO_KING_SLOT = 255;

// The two mirrors are square + 7 - 2 * column and column - row * 8 + 56, which
// on 0..63 are the bit flips below.
constexpr int MirrorColumns(int square) {
    return square ^ 7;
}
constexpr int MirrorRows(int square) {
    return square ^ 56;
}
constexpr int FlipDiagonal(int square) {
    return (square >> 3) + (square & 7) * 8;
}

// The white king's square of each slot of a pawnless table: a1 b1 c1 d1 b2 c2 d2 c3 d3 d4.
inline constexpr std::array<uint8_t, KING_SLOTS_WITHOUT_PAWNS> PAWNLESS_SLOT_SQUARE = {0,  1,  2,  3,  9,
                                                                                       10, 11, 18, 19, 27};

// The slot of a white king square in a pawnless table, NO_KING_SLOT outside the triangle.
inline constexpr std::array<uint8_t, 64> PAWNLESS_KING_SLOT = [] {
    // Not "slots": the window's headers make that word a macro.
    std::array<uint8_t, 64> kingSlots{};
    for (auto& slot : kingSlots) slot = NO_KING_SLOT;
    for (int i = 0; i < KING_SLOTS_WITHOUT_PAWNS; ++i)
        kingSlots[PAWNLESS_SLOT_SQUARE[i]] = static_cast<uint8_t>(i);
    return kingSlots;
}();

// What to do to every square of a position so that the white king lands in
// its slot: xor with `mirror` (the column and row mirrors), then transpose if
// `flip`.
struct TSymmetry {
    uint8_t mirror = 0;
    bool flip = false;

    constexpr int Apply(int square) const {
        const int mirrored = square ^ mirror;
        return flip ? FlipDiagonal(mirrored) : mirrored;
    }
};

constexpr TSymmetry SymmetryWithPawns(int whiteKing) {
    return TSymmetry{static_cast<uint8_t>((whiteKing & 7) >= 4 ? 7 : 0), false};
}

// Columns first, then rows, then the diagonal, decided on the king's square.
constexpr TSymmetry SymmetryWithoutPawns(int whiteKing) {
    const int col = whiteKing & 7;
    const int row = whiteKing >> 3;
    const bool mirrorColumns = col >= 4;
    const bool mirrorRows = row >= 4;
    const int foldedCol = mirrorColumns ? 7 - col : col;
    const int foldedRow = mirrorRows ? 7 - row : row;
    return TSymmetry{static_cast<uint8_t>((mirrorColumns ? 7 : 0) | (mirrorRows ? 56 : 0)),
                     foldedRow > foldedCol};
}

// The slot of a folded white king square in a table with pawns: row * 4 + column.
constexpr int KingSlotWithPawns(int foldedKing) {
    return (foldedKing >> 3) * 4 + (foldedKing & 7);
}
constexpr int KingSquareOfSlotWithPawns(int slot) {
    return (slot >> 2) * 8 + (slot & 3);
}

} // namespace zorvane
