#pragma once
// Squares and moves by name in tests: sq("e4"), mv("e7", "e8", KIND_QUEEN).
#include "core/move.h"

#include <cstdint>

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

} // namespace zorvane
