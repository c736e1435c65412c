#pragma once
// Squares, moves and boards by name in tests: sq("e4"), mv("e7", "e8", KIND_QUEEN),
// boardWith({{"e1", WK}, {"e8", BK}}).
#include "core/chessboard.h"
#include "core/move.h"

#include <cstdint>
#include <initializer_list>
#include <utility>

namespace zorvane {

constexpr uint8_t sq(const char* name) {
    return static_cast<uint8_t>((name[1] - '1') * 8 + (name[0] - 'a'));
}

inline TMove mv(const char* from, const char* to, uint8_t promotion = 0) {
    TMove m;
    m.from = sq(from);
    m.to = sq(to);
    m.promotion = promotion;
    return m;
}

// A board with these men and nothing else, White to move, not set up.
inline TChessboard boardWith(std::initializer_list<std::pair<const char*, uint8_t>> men) {
    TChessboard b = EmptyChessboard();
    b.m_shPliesLeft = 1;
    for (const auto& [square, piece] : men) PutMan(b, sq(square), piece);
    return b;
}

} // namespace zorvane
