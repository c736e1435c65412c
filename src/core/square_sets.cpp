#include "square_sets.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace zorvane {

namespace {

// The squares whose byte, masked by `mask`, equals `value`: sixteen bytes at a
// time where the processor has the instructions for it.
SquareSet squaresWhere(const uint8_t* squares, uint8_t mask, uint8_t value) {
    SquareSet set = 0;
#if defined(__SSE2__)
    const __m128i masks = _mm_set1_epi8(static_cast<char>(mask));
    const __m128i values = _mm_set1_epi8(static_cast<char>(value));
    for (int i = 0; i < 4; ++i) {
        const __m128i row = _mm_loadu_si128(reinterpret_cast<const __m128i*>(squares + 16 * i));
        const __m128i hit = _mm_cmpeq_epi8(_mm_and_si128(row, masks), values);
        set |= SquareSet{static_cast<uint16_t>(_mm_movemask_epi8(hit))} << (16 * i);
    }
#else
    for (int square = 0; square < 64; ++square)
        if ((squares[square] & mask) == value) set |= SquareBit(square);
#endif
    return set;
}

constexpr uint8_t EVERY_BIT = 0xFF;

} // namespace

SquareSet MenOfColour(const TChessboard& b, uint8_t colour) {
    return squaresWhere(b.m_aSquares, colour, colour);
}

BoardSets BoardSets::Of(const TChessboard& b) {
    const uint8_t* squares = b.m_aSquares;
    BoardSets sets;
    sets.occupied = ~squaresWhere(squares, EVERY_BIT, 0);
    sets.black = squaresWhere(squares, BLACK, BLACK);
    sets.whiteKing = squaresWhere(squares, EVERY_BIT, WK);
    sets.whitePawns = squaresWhere(squares, EVERY_BIT, WP);
    sets.whiteKnights = squaresWhere(squares, EVERY_BIT, WN);
    sets.whiteDiagonal = squaresWhere(squares, WHITE_DIAGONAL, WHITE_DIAGONAL);
    sets.whiteLine = squaresWhere(squares, WHITE_LINE, WHITE_LINE);
    return sets;
}

BlackMen BlackMen::Of(const TChessboard& b) {
    const uint8_t* squares = b.m_aSquares;
    BlackMen men;
    men.king = squaresWhere(squares, EVERY_BIT, BK);
    men.freePawns = squaresWhere(squares, EVERY_BIT, BP);
    men.pawns = squaresWhere(squares, BLACK | KIND_MASK, BP);
    men.knights = squaresWhere(squares, EVERY_BIT, BN);
    men.diagonal = squaresWhere(squares, BLACK_DIAGONAL, BLACK_DIAGONAL);
    men.line = squaresWhere(squares, BLACK_LINE, BLACK_LINE);
    return men;
}

} // namespace zorvane
