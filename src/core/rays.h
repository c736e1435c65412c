#pragma once
// Walking rays on the 0..63 index. Each step is bounded by a test on the row
// and column bits of the index, so there are no border squares and no ray tables.
namespace zorvane {

template <int Step> constexpr bool CanStep(int sq) {
    if constexpr (Step == 8)
        return sq < 56;
    else if constexpr (Step == -8)
        return sq >= 8;
    else if constexpr (Step == 1)
        return (sq & 7) != 7;
    else if constexpr (Step == -1)
        return (sq & 7) != 0;
    else if constexpr (Step == 9)
        return (sq & 7) != 7 && sq < 56;
    else if constexpr (Step == 7)
        return (sq & 7) != 0 && sq < 56;
    else if constexpr (Step == -7)
        return (sq & 7) != 7 && sq >= 8;
    else {
        static_assert(Step == -9);
        return (sq & 7) != 0 && sq >= 8;
    }
}

// The first occupied square from `sq` (exclusive) along Step, or -1.
template <int Step> inline int FirstManOnRay(const uint8_t* squares, int sq) {
    while (CanStep<Step>(sq)) {
        sq += Step;
        if (squares[sq]) return sq;
    }
    return -1;
}

// Step between two squares on one line or diagonal, 0 when they share none.
inline int LineStep(int from, int to) {
    const int dc = (to & 7) - (from & 7), dr = (to >> 3) - (from >> 3);
    if (dc == 0 && dr == 0) return 0;
    if (dc != 0 && dr != 0 && dc != dr && dc != -dr) return 0;
    return (dr > 0 ? 8 : dr < 0 ? -8 : 0) + (dc > 0 ? 1 : dc < 0 ? -1 : 0);
}

// First occupied square from `sq` (exclusive) along a run-time step, or -1.
inline int FirstManOnLine(const uint8_t* squares, int sq, int step) {
    switch (step) {
    case 8:
        return FirstManOnRay<8>(squares, sq);
    case -8:
        return FirstManOnRay<-8>(squares, sq);
    case 1:
        return FirstManOnRay<1>(squares, sq);
    case -1:
        return FirstManOnRay<-1>(squares, sq);
    case 9:
        return FirstManOnRay<9>(squares, sq);
    case 7:
        return FirstManOnRay<7>(squares, sq);
    case -7:
        return FirstManOnRay<-7>(squares, sq);
    default:
        return FirstManOnRay<-9>(squares, sq);
    }
}

inline bool IsDiagonalStep(int step) {
    return step == 9 || step == 7 || step == -7 || step == -9;
}

} // namespace zorvane
