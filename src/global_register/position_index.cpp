#include "position_index.h"

#include "position_type.h"

#include <cstring>
#include <stdexcept>

namespace zorvane {

namespace {

constexpr uint64_t SQUARES = 64;
constexpr uint64_t PAWN_SQUARES = PAWN_SET_SIZE;

// The squares of the layout's men in text order, like men ascending (the
// board is read a1 upward). A man the board lacks stays on a1.
// Eight squares are read as one word and empty words are skipped: a table
// position has few men, and the tables are made by millions of these calls.
void gatherSquares(const TTableLayout& layout, const TChessboard& board, uint8_t* squares) {
    std::array<uint8_t, 13> next = layout.aRunFirst;
    for (int i = 0; i < layout.nLetters; ++i) squares[i] = 0;
    for (int row = 0; row < 8; ++row) {
        uint64_t word;
        std::memcpy(&word, board.m_aSquares + row * 8, sizeof word);
        if (word == 0) continue;
        for (int s = row * 8; s < row * 8 + 8; ++s) {
            const int code = POS_TYPE_CODE_OF_PIECE[board.m_aSquares[s]];
            if (code != 0 && next[code] < layout.aRunEnd[code])
                squares[next[code]++] = static_cast<uint8_t>(s);
        }
    }
}

// Mirroring breaks the ascending order that a set's number needs.
void sortRun(uint8_t* squares, int count) {
    for (int i = 1; i < count; ++i)
        for (int j = i; j > 0 && squares[j - 1] > squares[j]; --j) {
            const uint8_t swap = squares[j];
            squares[j] = squares[j - 1];
            squares[j - 1] = swap;
        }
}

uint64_t manDigit(uint64_t v, bool pawn, int square) {
    return pawn ? v * PAWN_SQUARES + static_cast<uint64_t>(square - PAWN_SET_OFFSET)
                : v * SQUARES + static_cast<uint64_t>(square);
}

uint64_t power(uint64_t base, int exponent) {
    uint64_t result = 1;
    for (int i = 0; i < exponent; ++i) result *= base;
    return result;
}

} // namespace

uint64_t TableSize(const TTableLayout& layout) {
    const int men = layout.nLetters + 2;
    uint64_t size = static_cast<uint64_t>(layout.nKingSlots) << (6 * (men - 1));
    int pawns = 0;
    for (int i = 0; i < layout.nLetters; ++i) pawns += layout.aPawn[i] ? 1 : 0;
    if (layout.bPawnCompact) {
        // Three quarters per pawn; the powers of two in 64^(men - 1) keep every step exact.
        for (int i = 0; i < pawns; ++i) size = size / 4 * 3;
        if (layout.bHasX) size >>= 3;
    }
    if (!layout.bUsesMappers) return size;
    for (int g = 0; g < layout.nGroups; ++g) {
        const int count = layout.aGroupSize[g];
        const bool pawn = layout.aPawn[layout.aGroupFirst[g]];
        const uint32_t sets = MapperCombinations(pawn, count);
        if (sets == 0) continue;
        const uint64_t share = pawn && layout.bPawnCompact ? PAWN_SQUARES : SQUARES;
        size = size / power(share, count) * sets;
    }
    return size;
}

uint64_t TableSize(std::string_view type, bool pawnCompact, bool usesMappers) {
    try {
        return TableSize(MakeTableLayout(type, pawnCompact, usesMappers));
    } catch (const std::runtime_error&) {
        return 0;
    }
}

uint64_t IndexOfPosition(const TTableLayout& layout, const TChessboard& board) {
    // 1. The squares: kings from their fields, the men from the board.
    uint8_t squares[MAX_TABLE_LETTERS];
    gatherSquares(layout, board, squares);
    int whiteKing = board.whiteKing();
    int blackKing = board.blackKing();

    // 2. Fold the position so that the white king stands in one of the slots.
    const bool withPawns = layout.nKingSlots == KING_SLOTS_WITH_PAWNS;
    const TSymmetry symmetry = withPawns ? SymmetryWithPawns(whiteKing) : SymmetryWithoutPawns(whiteKing);
    whiteKing = symmetry.Apply(whiteKing);
    blackKing = symmetry.Apply(blackKing);
    for (int i = 0; i < layout.nLetters; ++i) squares[i] = static_cast<uint8_t>(symmetry.Apply(squares[i]));
    const int slot = withPawns ? KingSlotWithPawns(whiteKing) : PAWNLESS_KING_SLOT[whiteKing];

    // 3. The men, first letter most significant.
    uint64_t v = 0;
    if (!layout.bUsesMappers) {
        for (int i = 0; i < layout.nLetters; ++i) v = manDigit(v, layout.aPawn[i], squares[i]);
    } else {
        for (int g = 0; g < layout.nGroups; ++g) {
            const int first = layout.aGroupFirst[g];
            const int count = layout.aGroupSize[g];
            const CMappingCombinationIndexIntoSetBase* mapper = layout.apMapper[g];
            if (mapper != nullptr) {
                sortRun(squares + first, count);
                v = v * mapper->GetNumberOfCombinations() + mapper->GetIndexOfCombination(squares + first);
            } else {
                for (int i = first; i < first + count; ++i) v = manDigit(v, layout.aPawn[i], squares[i]);
            }
        }
    }

    // 4. The black king, then the white king's slot, fastest.
    return (v * SQUARES + static_cast<uint64_t>(blackKing)) * layout.nKingSlots + static_cast<uint64_t>(slot);
}

bool PositionOfIndex(const TTableLayout& layout, uint64_t index, TChessboard& board) {
    // 1. Peel the digits off from the fastest: king slot, black king, then the men last to first.
    const int slot = static_cast<int>(index % layout.nKingSlots);
    index /= layout.nKingSlots;
    const int whiteKing = layout.nKingSlots == KING_SLOTS_WITH_PAWNS ? KingSquareOfSlotWithPawns(slot)
                                                                     : PAWNLESS_SLOT_SQUARE[slot];
    const int blackKing = static_cast<int>(index % SQUARES);
    index /= SQUARES;
    uint8_t squares[MAX_TABLE_LETTERS];
    for (int g = layout.nGroups - 1; g >= 0; --g) {
        const int first = layout.aGroupFirst[g];
        const int count = layout.aGroupSize[g];
        const CMappingCombinationIndexIntoSetBase* mapper =
            layout.bUsesMappers ? layout.apMapper[g] : nullptr;
        if (mapper != nullptr) {
            const uint32_t sets = mapper->GetNumberOfCombinations();
            mapper->GetCombinationOfIndex(static_cast<uint32_t>(index % sets), squares + first);
            index /= sets;
            continue;
        }
        for (int i = first + count - 1; i >= first; --i) {
            if (layout.aPawn[i]) {
                squares[i] = static_cast<uint8_t>(index % PAWN_SQUARES + PAWN_SET_OFFSET);
                index /= PAWN_SQUARES;
            } else {
                squares[i] = static_cast<uint8_t>(index % SQUARES);
                index /= SQUARES;
            }
        }
    }
    // What is left over lies beyond the first man's range.
    if (index != 0) return false;

    // 2. Set the men up; a square taken twice or a pawn on an edge row names no position.
    board = EmptyChessboard();
    board.m_shPliesLeft = 1;
    if (whiteKing == blackKing) return false;
    PutMan(board, whiteKing, WK);
    PutMan(board, blackKing, BK);
    for (int i = 0; i < layout.nLetters; ++i) {
        const int square = squares[i];
        if (layout.aPiece[i] == 0 || board.m_aSquares[square] != 0) return false;
        if (layout.aPawn[i] && (rowOf(square) == 0 || rowOf(square) == 7)) return false;
        PutMan(board, square, layout.aPiece[i]);
    }
    return true;
}

} // namespace zorvane
