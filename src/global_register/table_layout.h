#pragma once
// TTableLayout: how one position type's table numbers its positions.
//
// Made once per type when its table is opened, and then only read: the
// register keeps one per sub-register and hands it to index-of-position at
// every probe. It fixes the order in which the men's squares are read (the
// type text's order, like men by ascending square), how many white king slots
// there are, whether pawns take 48 or 64 cells of the table, and which runs of
// like men are numbered as one set (combination_mapper.h).
#include "combination_mapper.h"
#include "core/piece.h"
#include "table_symmetry.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace zorvane {

// The most men beside the kings that a table can be laid out for: ten men in
// all still number within a u64.
constexpr int MAX_TABLE_LETTERS = 8;
// Below this many men beside the kings a table never uses mappers, whatever
// its header says.
constexpr int MIN_MAPPED_TYPE_LETTERS = 4;

// The letter code (1..10) of each piece byte of a man beside the kings, else 0.
inline constexpr std::array<uint8_t, 256> POS_TYPE_CODE_OF_PIECE = [] {
    std::array<uint8_t, 256> codes{};
    codes[WQ] = 1;
    codes[WR] = 2;
    codes[WB] = 3;
    codes[WN] = 4;
    codes[WP] = 5;
    codes[BQ] = 6;
    codes[BR] = 7;
    codes[BB] = 8;
    codes[BN] = 9;
    codes[BP] = 10;
    return codes;
}();

struct TTableLayout {
    std::string sType;
    uint8_t nLetters = 0;
    // Per letter, in text order: its piece byte (0 for X and x) and whether it is a pawn.
    std::array<uint8_t, MAX_TABLE_LETTERS> aPiece{};
    std::array<bool, MAX_TABLE_LETTERS> aPawn{};
    // Per letter code (0..12): where its run starts in the text and where it ends.
    std::array<uint8_t, 13> aRunFirst{};
    std::array<uint8_t, 13> aRunEnd{};
    // Runs of like letters, in text order.
    uint8_t nGroups = 0;
    std::array<uint8_t, MAX_TABLE_LETTERS> aGroupFirst{};
    std::array<uint8_t, MAX_TABLE_LETTERS> aGroupSize{};
    // Per group: the set numbering, or null for one digit per man. Owned by a
    // TCombinationMappers that lives as long as the table.
    std::array<const CMappingCombinationIndexIntoSetBase*, MAX_TABLE_LETTERS> apMapper{};
    bool bHasPawns = false;
    bool bHasX = false;
    // Header bit 0: the table's size counts pawns on 48 squares, not 64.
    bool bPawnCompact = false;
    // Header bit 1, honoured from MIN_MAPPED_TYPE_LETTERS men beside the kings.
    bool bUsesMappers = false;
    // 32 white king slots with pawns (or X), else 10.
    uint8_t nKingSlots = KING_SLOTS_WITHOUT_PAWNS;
};

// The layout of a regular type text (letters of "QRBNPqrbnpXx", like letters
// together, 1 to MAX_TABLE_LETTERS of them). `usesMappers` and `pawnCompact`
// are the table's header bits. The mappers are not attached yet. Throws
// std::runtime_error for a text that is no such type.
TTableLayout MakeTableLayout(std::string_view type, bool pawnCompact, bool usesMappers);

// The mappers of one table, made when it first needs each kind.
class TCombinationMappers {
  public:
    // Null when the memory is not there.
    const CMappingCombinationIndexIntoSetBase* Get(bool pawns, int count);

  private:
    std::array<std::array<std::unique_ptr<CMappingCombinationIndexIntoSetBase>, MAX_MAPPED_MEN + 1>, 2>
        m_aMappers;
};

// Gives each run of 2..5 like men of a mapper layout its mapper. When one
// cannot be made the layout falls back to no mappers and the answer is false:
// its table, written with mappers, is then unreadable.
bool AttachCombinationMappers(TTableLayout& layout, TCombinationMappers& mappers);

} // namespace zorvane
