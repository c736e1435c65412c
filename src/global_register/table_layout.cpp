#include "table_layout.h"

#include "position_type.h"

#include <stdexcept>

namespace zorvane {

TTableLayout MakeTableLayout(std::string_view type, bool pawnCompact, bool usesMappers) {
    if (type.empty() || type.size() > MAX_TABLE_LETTERS)
        throw std::runtime_error("No table layout for position type " + std::string(type));
    TTableLayout layout;
    layout.sType = std::string(type);
    layout.nLetters = static_cast<uint8_t>(type.size());
    for (size_t i = 0; i < type.size(); ++i) {
        const char letter = type[i];
        const int code = PosTypeLetterCode(letter);
        if (code == 0) throw std::runtime_error("No table layout for position type " + std::string(type));
        layout.aPiece[i] = PieceOfPosTypeLetter(letter);
        layout.aPawn[i] = IsPawnLetter(letter);
        layout.bHasPawns = layout.bHasPawns || layout.aPawn[i];
        layout.bHasX = layout.bHasX || code == POS_TYPE_CODE_X || code == POS_TYPE_CODE_SMALL_X;
        if (i == 0 || letter != type[i - 1]) {
            // The board scan fills a letter's slots one after the other, so its men must form one run.
            if (layout.aRunEnd[code] != 0)
                throw std::runtime_error("No table layout for position type " + std::string(type));
            layout.aRunFirst[code] = static_cast<uint8_t>(i);
            layout.aGroupFirst[layout.nGroups++] = static_cast<uint8_t>(i);
        }
        layout.aRunEnd[code] = static_cast<uint8_t>(i + 1);
        ++layout.aGroupSize[layout.nGroups - 1];
    }
    layout.bPawnCompact = pawnCompact;
    layout.bUsesMappers = usesMappers && layout.nLetters >= MIN_MAPPED_TYPE_LETTERS;
    layout.nKingSlots = static_cast<uint8_t>(layout.bHasPawns || layout.bHasX ? KING_SLOTS_WITH_PAWNS
                                                                              : KING_SLOTS_WITHOUT_PAWNS);
    return layout;
}

const CMappingCombinationIndexIntoSetBase* TCombinationMappers::Get(bool pawns, int count) {
    if (count < MIN_MAPPED_MEN || count > MAX_MAPPED_MEN) return nullptr;
    auto& mapper = m_aMappers[pawns ? 1 : 0][count];
    if (!mapper) mapper = CreateCombinationMapper(pawns, count);
    return mapper.get();
}

bool AttachCombinationMappers(TTableLayout& layout, TCombinationMappers& mappers) {
    layout.apMapper.fill(nullptr);
    if (!layout.bUsesMappers) return true;
    for (int g = 0; g < layout.nGroups; ++g) {
        const int size = layout.aGroupSize[g];
        if (size < MIN_MAPPED_MEN || size > MAX_MAPPED_MEN) continue;
        layout.apMapper[g] = mappers.Get(layout.aPawn[layout.aGroupFirst[g]], size);
        if (layout.apMapper[g] == nullptr) {
            layout.apMapper.fill(nullptr);
            layout.bUsesMappers = false;
            return false;
        }
    }
    return true;
}

} // namespace zorvane
