#pragma once
// Knight jumps by square class. A square's class depends on how close it is to
// each edge (five column classes times five row classes); a row of the jump
// table holds the jumps that stay on the board from that class, padded with its
// last entry so that an attack test can read all eight without a branch.
#include <array>
#include <cstdint>

namespace zorvane {

constexpr std::array<int8_t, 8> KNIGHT_OFFSETS = {-17, -15, -10, -6, 6, 10, 15, 17};

namespace knight_detail {

constexpr int edgeClass(int coordinate) {
    return coordinate == 0 ? 0 : coordinate == 1 ? 1 : coordinate == 6 ? 3 : coordinate == 7 ? 4 : 2;
}
// A representative coordinate of each class.
constexpr int classCoordinate(int cls) {
    constexpr int sample[5] = {0, 1, 3, 6, 7};
    return sample[cls];
}
constexpr int offsetCol(int offset) {
    switch (offset) {
    case -17:
    case 15:
        return -1;
    case -15:
    case 17:
        return 1;
    case -10:
    case 6:
        return -2;
    default:
        return 2; // -6, 10
    }
}
constexpr int offsetRow(int offset) {
    switch (offset) {
    case -17:
    case -15:
        return -2;
    case -10:
    case -6:
        return -1;
    case 6:
    case 10:
        return 1;
    default:
        return 2; // 15, 17
    }
}

struct Tables {
    std::array<uint8_t, 64> squareClass{};
    std::array<uint8_t, 25> jumpCount{};
    std::array<std::array<int8_t, 8>, 25> jumps{};
};

constexpr Tables makeTables() {
    Tables t;
    for (int sq = 0; sq < 64; ++sq)
        t.squareClass[sq] = static_cast<uint8_t>(edgeClass(sq & 7) * 5 + edgeClass(sq >> 3));
    for (int cls = 0; cls < 25; ++cls) {
        const int col = classCoordinate(cls / 5), row = classCoordinate(cls % 5);
        int n = 0;
        for (int8_t offset : KNIGHT_OFFSETS) {
            const int c = col + offsetCol(offset), r = row + offsetRow(offset);
            if (c >= 0 && c < 8 && r >= 0 && r < 8) t.jumps[cls][n++] = offset;
        }
        t.jumpCount[cls] = static_cast<uint8_t>(n);
        for (int i = n; i < 8; ++i) t.jumps[cls][i] = t.jumps[cls][n - 1];
    }
    return t;
}

} // namespace knight_detail

inline constexpr knight_detail::Tables KNIGHT_TABLES = knight_detail::makeTables();

inline int KnightClass(int square) {
    return KNIGHT_TABLES.squareClass[square];
}
inline int KnightJumpCount(int square) {
    return KNIGHT_TABLES.jumpCount[KnightClass(square)];
}
inline const int8_t* KnightJumps(int square) {
    return KNIGHT_TABLES.jumps[KnightClass(square)].data();
}

// Whether `piece` stands a knight's jump from `square`; eight reads, no branch.
inline bool KnightOnJump(const uint8_t* squares, int square, uint8_t piece) {
    const int8_t* j = KnightJumps(square);
    int hits = 0;
    for (int i = 0; i < 8; ++i) hits += squares[square + j[i]] == piece;
    return hits != 0;
}

} // namespace zorvane
