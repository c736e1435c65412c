#pragma once
// Sets of squares as 64-bit words (bit n is square n, a1 = 0), for the mate
// test of the last ply: there one question, "is this square attacked after
// that move?", is asked millions of times, and a word per kind of man answers
// it with a few masks instead of walking the board byte by byte.
#include "chessboard.h"

#include <array>
#include <cstdint>

namespace zorvane {

using SquareSet = uint64_t;

constexpr SquareSet SquareBit(int square) {
    return SquareSet{1} << square;
}

namespace square_set_detail {

constexpr int DIRECTION_COL[8] = {0, 0, 1, -1, 1, -1, 1, -1};
constexpr int DIRECTION_ROW[8] = {1, -1, 0, 0, 1, 1, -1, -1};

constexpr SquareSet ray(int square, int direction) {
    SquareSet set = 0;
    for (int c = colOf(square) + DIRECTION_COL[direction], r = rowOf(square) + DIRECTION_ROW[direction];
         c >= 0 && c < 8 && r >= 0 && r < 8; c += DIRECTION_COL[direction], r += DIRECTION_ROW[direction])
        set |= SquareBit(squareOf(c, r));
    return set;
}

constexpr SquareSet jumps(int square, const int (&cols)[8], const int (&rows)[8]) {
    SquareSet set = 0;
    for (int i = 0; i < 8; ++i) {
        const int c = colOf(square) + cols[i], r = rowOf(square) + rows[i];
        if (c >= 0 && c < 8 && r >= 0 && r < 8) set |= SquareBit(squareOf(c, r));
    }
    return set;
}

template <class Make> constexpr std::array<SquareSet, 64> table(Make make) {
    std::array<SquareSet, 64> sets{};
    for (int square = 0; square < 64; ++square) sets[square] = make(square);
    return sets;
}

constexpr int KNIGHT_COLS[8] = {1, 2, 2, 1, -1, -2, -2, -1};
constexpr int KNIGHT_ROWS[8] = {2, 1, -1, -2, -2, -1, 1, 2};

} // namespace square_set_detail

// Rays in the directions up, down, right, left, up-right, up-left, down-right, down-left.
enum RayDirection {
    RAY_UP,
    RAY_DOWN,
    RAY_RIGHT,
    RAY_LEFT,
    RAY_UP_RIGHT,
    RAY_UP_LEFT,
    RAY_DOWN_RIGHT,
    RAY_DOWN_LEFT
};

inline constexpr std::array<std::array<SquareSet, 64>, 8> RAYS = [] {
    std::array<std::array<SquareSet, 64>, 8> rays{};
    for (int direction = 0; direction < 8; ++direction)
        for (int square = 0; square < 64; ++square)
            rays[direction][square] = square_set_detail::ray(square, direction);
    return rays;
}();

inline constexpr std::array<SquareSet, 64> KNIGHT_REACH = square_set_detail::table([](int square) {
    return square_set_detail::jumps(square, square_set_detail::KNIGHT_COLS, square_set_detail::KNIGHT_ROWS);
});
inline constexpr std::array<SquareSet, 64> KING_REACH = square_set_detail::table([](int square) {
    return square_set_detail::jumps(square, square_set_detail::DIRECTION_COL,
                                    square_set_detail::DIRECTION_ROW);
});
// The squares from which a white pawn attacks the square.
inline constexpr std::array<SquareSet, 64> WHITE_PAWN_ATTACKERS = square_set_detail::table([](int square) {
    SquareSet set = 0;
    if (rowOf(square) > 0 && colOf(square) > 0) set |= SquareBit(square - 9);
    if (rowOf(square) > 0 && colOf(square) < 7) set |= SquareBit(square - 7);
    return set;
});
// The squares from which a black pawn attacks the square.
inline constexpr std::array<SquareSet, 64> BLACK_PAWN_ATTACKERS = square_set_detail::table([](int square) {
    SquareSet set = 0;
    if (rowOf(square) < 7 && colOf(square) > 0) set |= SquareBit(square + 7);
    if (rowOf(square) < 7 && colOf(square) < 7) set |= SquareBit(square + 9);
    return set;
});
// Whole lines through a square, the square itself left out.
inline constexpr std::array<SquareSet, 64> LINES = square_set_detail::table([](int square) {
    return RAYS[RAY_UP][square] | RAYS[RAY_DOWN][square] | RAYS[RAY_RIGHT][square] | RAYS[RAY_LEFT][square];
});
inline constexpr std::array<SquareSet, 64> DIAGONALS = square_set_detail::table([](int square) {
    return RAYS[RAY_UP_RIGHT][square] | RAYS[RAY_UP_LEFT][square] | RAYS[RAY_DOWN_RIGHT][square] |
           RAYS[RAY_DOWN_LEFT][square];
});

// The square nearest to the ray's start among `men` on a ray of that
// direction: rays up and right run to higher squares, so it is the lowest bit.
// With no man at all the answer is the far corner, a square on the board: a
// caller that expects a man there (a slider left out of `men` in a position
// with a king to be taken) gets a wrong answer, never a wild index.
template <int Direction> inline int NearestOnRay(SquareSet men) {
    constexpr bool upward = Direction == RAY_UP || Direction == RAY_RIGHT || Direction == RAY_UP_RIGHT ||
                            Direction == RAY_UP_LEFT;
    return upward ? __builtin_ctzll(men | SquareBit(63)) : 63 - __builtin_clzll(men | SquareBit(0));
}

// The squares of a ray up to and with the first man on it.
template <int Direction> inline SquareSet RayReach(int square, SquareSet occupied) {
    const SquareSet ray = RAYS[Direction][square];
    const SquareSet blockers = ray & occupied;
    if (!blockers) return ray;
    return ray ^ RAYS[Direction][NearestOnRay<Direction>(blockers)];
}

inline SquareSet LineReach(int square, SquareSet occupied) {
    return RayReach<RAY_UP>(square, occupied) | RayReach<RAY_DOWN>(square, occupied) |
           RayReach<RAY_RIGHT>(square, occupied) | RayReach<RAY_LEFT>(square, occupied);
}

inline SquareSet DiagonalReach(int square, SquareSet occupied) {
    return RayReach<RAY_UP_RIGHT>(square, occupied) | RayReach<RAY_UP_LEFT>(square, occupied) |
           RayReach<RAY_DOWN_RIGHT>(square, occupied) | RayReach<RAY_DOWN_LEFT>(square, occupied);
}

// The slider of `sliders` that stands first among `men` on the ray from
// `square`, as a set of one square or none. A ray that holds none of them is
// not walked.
template <int Direction> inline SquareSet SliderHit(int square, SquareSet men, SquareSet sliders) {
    const SquareSet ray = RAYS[Direction][square];
    return (ray & sliders) ? sliders & SquareBit(NearestOnRay<Direction>(ray & men)) : 0;
}

// The sliders that stand first on the rays from `square`, among `men`: those
// of `line` on the straight rays, those of `diagonal` on the slanting ones.
inline SquareSet SlidersReaching(int square, SquareSet men, SquareSet line, SquareSet diagonal) {
    return SliderHit<RAY_UP>(square, men, line) | SliderHit<RAY_DOWN>(square, men, line) |
           SliderHit<RAY_RIGHT>(square, men, line) | SliderHit<RAY_LEFT>(square, men, line) |
           SliderHit<RAY_UP_RIGHT>(square, men, diagonal) | SliderHit<RAY_UP_LEFT>(square, men, diagonal) |
           SliderHit<RAY_DOWN_RIGHT>(square, men, diagonal) | SliderHit<RAY_DOWN_LEFT>(square, men, diagonal);
}

// The squares that hold a man of `colour` (WHITE or BLACK).
SquareSet MenOfColour(const TChessboard& b, uint8_t colour);

// The men of a position as sets: every man, the black men, and the White men
// by what they attack. A queen is in both slider sets.
struct BoardSets {
    SquareSet occupied = 0;
    SquareSet black = 0;
    SquareSet whiteKing = 0;
    SquareSet whitePawns = 0;
    SquareSet whiteKnights = 0;
    SquareSet whiteDiagonal = 0; // bishops and queens
    SquareSet whiteLine = 0;     // rooks and queens

    static BoardSets Of(const TChessboard& b);

    // Whether a White man attacks `square` with the men on `men` in the way.
    bool WhiteAttacks(int square, SquareSet men) const {
        if ((KNIGHT_REACH[square] & whiteKnights) || (KING_REACH[square] & whiteKing) ||
            (WHITE_PAWN_ATTACKERS[square] & whitePawns))
            return true;
        // Ray by ray, so that the first slider found ends the test.
        return SliderHit<RAY_UP>(square, men, whiteLine) || SliderHit<RAY_DOWN>(square, men, whiteLine) ||
               SliderHit<RAY_RIGHT>(square, men, whiteLine) || SliderHit<RAY_LEFT>(square, men, whiteLine) ||
               SliderHit<RAY_UP_RIGHT>(square, men, whiteDiagonal) ||
               SliderHit<RAY_UP_LEFT>(square, men, whiteDiagonal) ||
               SliderHit<RAY_DOWN_RIGHT>(square, men, whiteDiagonal) ||
               SliderHit<RAY_DOWN_LEFT>(square, men, whiteDiagonal);
    }

    // Every square that a White man attacks, with `men` in the way.
    SquareSet WhiteAttackMap(SquareSet men) const {
        constexpr SquareSet NOT_FILE_A = 0xfefefefefefefefeULL, NOT_FILE_H = 0x7f7f7f7f7f7f7f7fULL;
        SquareSet map = ((whitePawns << 7) & NOT_FILE_H) | ((whitePawns << 9) & NOT_FILE_A);
        if (whiteKing) map |= KING_REACH[__builtin_ctzll(whiteKing)];
        for (SquareSet knights = whiteKnights; knights; knights &= knights - 1)
            map |= KNIGHT_REACH[__builtin_ctzll(knights)];
        for (SquareSet sliders = whiteDiagonal; sliders; sliders &= sliders - 1)
            map |= DiagonalReach(__builtin_ctzll(sliders), men);
        for (SquareSet sliders = whiteLine; sliders; sliders &= sliders - 1)
            map |= LineReach(__builtin_ctzll(sliders), men);
        return map;
    }

    // The squares beside the black king on `king` that hold no black man and
    // that no White man attacks once the king has left his square.
    SquareSet BlackKingFlights(int king) const {
        const SquareSet free = KING_REACH[king] & ~black;
        const SquareSet withoutKing = occupied & ~SquareBit(king);
        // One or two squares are cheaper to ask one by one than to map.
        const SquareSet beyondFirst = free & (free - 1);
        if (beyondFirst & (beyondFirst - 1)) return free & ~WhiteAttackMap(withoutKing);
        SquareSet flights = 0;
        for (SquareSet squares = free; squares; squares &= squares - 1) {
            const int square = __builtin_ctzll(squares);
            if (!WhiteAttacks(square, withoutKing)) flights |= SquareBit(square);
        }
        return flights;
    }

    // The White men that attack `square`, with `men` in the way.
    SquareSet WhiteAttackers(int square, SquareSet men) const {
        return (KNIGHT_REACH[square] & whiteKnights) | (KING_REACH[square] & whiteKing) |
               (WHITE_PAWN_ATTACKERS[square] & whitePawns) |
               SlidersReaching(square, men, whiteLine, whiteDiagonal);
    }

    // The sets after a White man of `kind` goes from `from` to `to`, becoming
    // `newKind` (itself, or what a pawn promotes to). Castling and en passant
    // move a second man and are not told here.
    BoardSets AfterWhiteMove(int from, int to, int kind, int newKind) const {
        BoardSets after = *this;
        const SquareSet gone = ~SquareBit(from), arrived = SquareBit(to);
        after.occupied = (occupied & gone) | arrived;
        after.black &= ~arrived;
        switch (kind) {
        case KIND_KING:
            after.whiteKing = arrived;
            return after;
        case KIND_KNIGHT:
            after.whiteKnights = (whiteKnights & gone) | arrived;
            return after;
        case KIND_PAWN:
            after.whitePawns &= gone;
            break;
        default:
            after.whiteDiagonal &= gone;
            after.whiteLine &= gone;
            break;
        }
        switch (newKind) {
        case KIND_PAWN:
            after.whitePawns |= arrived;
            break;
        case KIND_KNIGHT:
            after.whiteKnights |= arrived;
            break;
        default:
            if (newKind & KIND_BISHOP) after.whiteDiagonal |= arrived;
            if (newKind & KIND_ROOK) after.whiteLine |= arrived;
            break;
        }
        return after;
    }
};

// The black men by what they do, for the answers to a check. A pawn marked
// as blocked still takes, but may not step straight on.
struct BlackMen {
    SquareSet king = 0;
    SquareSet pawns = 0;     // every pawn, marked or not
    SquareSet freePawns = 0; // the pawns that may step straight on
    SquareSet knights = 0;
    SquareSet diagonal = 0; // bishops and queens
    SquareSet line = 0;     // rooks and queens

    static BlackMen Of(const TChessboard& b);

    // Whether a black man attacks `square`, with `men` in the way.
    bool Attack(int square, SquareSet men) const {
        return (KNIGHT_REACH[square] & knights) || (KING_REACH[square] & king) ||
               (BLACK_PAWN_ATTACKERS[square] & pawns) || SlidersReaching(square, men, line, diagonal);
    }

    // The same men once White has taken on `square`.
    BlackMen Without(int square) const {
        const SquareSet keep = ~SquareBit(square);
        return BlackMen{king, pawns & keep, freePawns & keep, knights & keep, diagonal & keep, line & keep};
    }
};

} // namespace zorvane
