#include "square_sets.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace zorvane {

namespace {

#if defined(__SSE2__)
// The squares whose byte has every bit of `bits`, sixteen bytes at a time.
SquareSet squaresWithBits(const __m128i (&rows)[4], uint8_t bits) {
    const __m128i mask = _mm_set1_epi8(static_cast<char>(bits));
    SquareSet set = 0;
    for (int i = 0; i < 4; ++i) {
        const __m128i hit = _mm_cmpeq_epi8(_mm_and_si128(rows[i], mask), mask);
        set |= SquareSet{static_cast<uint16_t>(_mm_movemask_epi8(hit))} << (16 * i);
    }
    return set;
}

SquareSet squaresHolding(const __m128i (&rows)[4], uint8_t piece) {
    const __m128i needle = _mm_set1_epi8(static_cast<char>(piece));
    SquareSet set = 0;
    for (int i = 0; i < 4; ++i)
        set |= SquareSet{static_cast<uint16_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(rows[i], needle)))} << (16 * i);
    return set;
}
#endif

} // namespace

BoardSets BoardSets::Of(const TChessboard& b) {
    BoardSets sets;
#if defined(__SSE2__)
    __m128i rows[4];
    SquareSet empty = 0;
    const __m128i zero = _mm_setzero_si128();
    for (int i = 0; i < 4; ++i) {
        rows[i] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b.m_aSquares + 16 * i));
        empty |= SquareSet{static_cast<uint16_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(rows[i], zero)))} << (16 * i);
    }
    sets.occupied = ~empty;
    // Black is the byte's top bit, which is what a byte mask reads.
    for (int i = 0; i < 4; ++i) sets.black |= SquareSet{static_cast<uint16_t>(_mm_movemask_epi8(rows[i]))} << (16 * i);
    sets.whiteKing = squaresHolding(rows, WK);
    sets.whitePawns = squaresHolding(rows, WP);
    sets.whiteKnights = squaresHolding(rows, WN);
    sets.whiteDiagonal = squaresWithBits(rows, WHITE_DIAGONAL);
    sets.whiteLine = squaresWithBits(rows, WHITE_LINE);
#else
    for (int square = 0; square < 64; ++square) {
        const uint8_t man = b.m_aSquares[square];
        if (!man) continue;
        const SquareSet bit = SquareBit(square);
        sets.occupied |= bit;
        if (isBlack(man)) sets.black |= bit;
        if (man == WK) sets.whiteKing |= bit;
        if (man == WP) sets.whitePawns |= bit;
        if (man == WN) sets.whiteKnights |= bit;
        if ((man & WHITE_DIAGONAL) == WHITE_DIAGONAL) sets.whiteDiagonal |= bit;
        if ((man & WHITE_LINE) == WHITE_LINE) sets.whiteLine |= bit;
    }
#endif
    return sets;
}

BlackMen BlackMen::Of(const TChessboard& b) {
    BlackMen men;
#if defined(__SSE2__)
    __m128i rows[4];
    for (int i = 0; i < 4; ++i) rows[i] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b.m_aSquares + 16 * i));
    men.king = squaresHolding(rows, BK);
    men.freePawns = squaresHolding(rows, BP);
    men.pawns = men.freePawns | squaresHolding(rows, BP | PAWN_BLOCK_MARK);
    men.knights = squaresHolding(rows, BN);
    men.diagonal = squaresWithBits(rows, BLACK_DIAGONAL);
    men.line = squaresWithBits(rows, BLACK_LINE);
#else
    for (int square = 0; square < 64; ++square) {
        const uint8_t man = b.m_aSquares[square];
        if (!isBlack(man)) continue;
        const SquareSet bit = SquareBit(square);
        if (man == BK) men.king |= bit;
        if (man == BP) men.freePawns |= bit;
        if ((man & KIND_MASK) == KIND_PAWN) men.pawns |= bit;
        if (man == BN) men.knights |= bit;
        if ((man & BLACK_DIAGONAL) == BLACK_DIAGONAL) men.diagonal |= bit;
        if ((man & BLACK_LINE) == BLACK_LINE) men.line |= bit;
    }
#endif
    return men;
}

} // namespace zorvane
