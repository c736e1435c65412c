#pragma once
// Piece bytes and square helpers shared by the whole engine.
//
// A piece byte keeps the kind in its low five bits and the colour in bit 64
// (white) or bit 128 (black). The queen's kind is the union of the rook's and
// the bishop's, so one mask test finds every slider of a direction.
#include <cstdint>

namespace zorvane {

enum PieceKind : uint8_t {
    KIND_KING = 1,
    KIND_PAWN = 2,
    KIND_BISHOP = 4,
    KIND_ROOK = 8,
    KIND_QUEEN = 12,
    KIND_KNIGHT = 16,
};

constexpr uint8_t WHITE = 64;
constexpr uint8_t BLACK = 128;
constexpr uint8_t KIND_MASK = 31;
// Counts the blocking mark 32 as part of the kind, so that a marked pawn is no pawn.
constexpr uint8_t KIND_MASK_MARKED = 63;
constexpr uint8_t PAWN_BLOCK_MARK = 32;

constexpr uint8_t WK = WHITE | KIND_KING;   // 65
constexpr uint8_t WP = WHITE | KIND_PAWN;   // 66
constexpr uint8_t WB = WHITE | KIND_BISHOP; // 68
constexpr uint8_t WR = WHITE | KIND_ROOK;   // 72
constexpr uint8_t WQ = WHITE | KIND_QUEEN;  // 76
constexpr uint8_t WN = WHITE | KIND_KNIGHT; // 80
constexpr uint8_t BK = BLACK | KIND_KING;   // 129
constexpr uint8_t BP = BLACK | KIND_PAWN;   // 130
constexpr uint8_t BB = BLACK | KIND_BISHOP; // 132
constexpr uint8_t BR = BLACK | KIND_ROOK;   // 136
constexpr uint8_t BQ = BLACK | KIND_QUEEN;  // 140
constexpr uint8_t BN = BLACK | KIND_KNIGHT; // 144

// Slider masks: (byte & mask) == mask selects the sliders of one direction.
constexpr uint8_t WHITE_DIAGONAL = WB; // white bishop or queen
constexpr uint8_t WHITE_LINE = WR;     // white rook or queen
constexpr uint8_t BLACK_DIAGONAL = BB; // black bishop or queen
constexpr uint8_t BLACK_LINE = BR;     // black rook or queen

constexpr uint8_t NO_SQUARE = 255;
constexpr int8_t NO_CHECK = -1; // 255 as a byte
constexpr int8_t DOUBLE_CHECK = 64;

inline bool isWhite(uint8_t piece) {
    return (piece & WHITE) != 0;
}
inline bool isBlack(uint8_t piece) {
    return (piece & BLACK) != 0;
}
inline bool isPieceByte(uint8_t piece) {
    switch (piece) {
    case WK:
    case WP:
    case WB:
    case WR:
    case WQ:
    case WN:
    case BK:
    case BP:
    case BB:
    case BR:
    case BQ:
    case BN:
        return true;
    default:
        return false;
    }
}

constexpr int squareOf(int col, int row) {
    return row * 8 + col;
}
constexpr int colOf(int square) {
    return square & 7;
}
constexpr int rowOf(int square) {
    return square >> 3;
}

// 0 on the colour of a1, 1 on the other colour.
constexpr int squareColour(int square) {
    return ((square >> 3) + square) & 1;
}

constexpr int absInt(int v) {
    return v < 0 ? -v : v;
}
constexpr int distance(int squareA, int squareB) {
    const int dc = absInt(colOf(squareA) - colOf(squareB));
    const int dr = absInt(rowOf(squareA) - rowOf(squareB));
    return dc > dr ? dc : dr;
}

} // namespace zorvane
