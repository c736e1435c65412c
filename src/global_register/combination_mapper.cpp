#include "combination_mapper.h"

#include <new>

namespace zorvane {

static_assert(TPieceMapper<2>::COMBINATIONS == 2016);
static_assert(TPieceMapper<3>::COMBINATIONS == 41664);
static_assert(TPieceMapper<4>::COMBINATIONS == 635376);
static_assert(TPieceMapper<5>::COMBINATIONS == 7624512);
static_assert(TPawnMapper<2>::COMBINATIONS == 1128);
static_assert(TPawnMapper<3>::COMBINATIONS == 17296);
static_assert(TPawnMapper<4>::COMBINATIONS == 194580);
static_assert(TPawnMapper<5>::COMBINATIONS == 1712304);

uint32_t MapperCombinations(bool pawns, int count) {
    if (count < MIN_MAPPED_MEN || count > MAX_MAPPED_MEN) return 0;
    return Binomial(pawns ? PAWN_SET_SIZE : PIECE_SET_SIZE, static_cast<uint32_t>(count));
}

std::unique_ptr<CMappingCombinationIndexIntoSetBase> CreateCombinationMapper(bool pawns, int count) {
    try {
        switch (count) {
        case 2:
            if (pawns) return std::make_unique<TPawnMapper<2>>();
            return std::make_unique<TPieceMapper<2>>();
        case 3:
            if (pawns) return std::make_unique<TPawnMapper<3>>();
            return std::make_unique<TPieceMapper<3>>();
        case 4:
            if (pawns) return std::make_unique<TPawnMapper<4>>();
            return std::make_unique<TPieceMapper<4>>();
        case 5:
            if (pawns) return std::make_unique<TPawnMapper<5>>();
            return std::make_unique<TPieceMapper<5>>();
        default:
            return nullptr;
        }
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

} // namespace zorvane
