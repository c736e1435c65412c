// Combination mappers: the number of a set of like men is its rank in
// lexicographic order, and the set of a number comes back ascending.
#include "global_register/combination_mapper.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>

namespace zorvane {
namespace {

// The lexicographic rank counted the slow way: for each element, the sets
// that agree before it and take a smaller square there.
uint32_t slowRank(const uint8_t* squares, int count, int setSize, int offset) {
    uint32_t rank = 0;
    int low = 0;
    for (int i = 0; i < count; ++i) {
        const int s = squares[i] - offset;
        for (int x = low; x < s; ++x)
            rank += Binomial(static_cast<uint32_t>(setSize - 1 - x), static_cast<uint32_t>(count - 1 - i));
        low = s + 1;
    }
    return rank;
}

// Every set in order, against the mapper, both ways.
void checkAll(const CMappingCombinationIndexIntoSetBase& mapper, int count, int setSize, int offset) {
    std::array<int, MAX_MAPPED_MEN> set{};
    for (int i = 0; i < count; ++i) set[i] = i;
    uint32_t index = 0;
    for (;; ++index) {
        std::array<uint8_t, MAX_MAPPED_MEN> expected{};
        for (int i = 0; i < count; ++i) expected[i] = static_cast<uint8_t>(set[i] + offset);
        std::array<uint8_t, MAX_MAPPED_MEN> got{};
        mapper.GetCombinationOfIndex(index, got.data());
        ASSERT_EQ(got, expected) << index;
        ASSERT_EQ(mapper.GetIndexOfCombination(expected.data()), index);
        int i = count - 1;
        while (i >= 0 && set[i] == setSize - count + i) --i;
        if (i < 0) break;
        ++set[i];
        for (int j = i + 1; j < count; ++j) set[j] = set[j - 1] + 1;
    }
    EXPECT_EQ(index + 1, mapper.GetNumberOfCombinations());
}

// Every `stride`-th set: ascending, inside the set, ranked as counted slowly.
void checkSample(const CMappingCombinationIndexIntoSetBase& mapper, int count, int setSize, int offset,
                 uint32_t stride) {
    const uint32_t sets = mapper.GetNumberOfCombinations();
    for (uint64_t index = 0; index < sets; index += stride) {
        std::array<uint8_t, MAX_MAPPED_MEN> got{};
        mapper.GetCombinationOfIndex(static_cast<uint32_t>(index), got.data());
        ASSERT_GE(got[0], offset) << index;
        ASSERT_LT(got[count - 1], offset + setSize) << index;
        for (int i = 1; i < count; ++i) ASSERT_LT(got[i - 1], got[i]) << index;
        ASSERT_EQ(slowRank(got.data(), count, setSize, offset), index);
        ASSERT_EQ(mapper.GetIndexOfCombination(got.data()), index);
    }
    // The last set is the top squares.
    std::array<uint8_t, MAX_MAPPED_MEN> last{};
    mapper.GetCombinationOfIndex(sets - 1, last.data());
    for (int i = 0; i < count; ++i) EXPECT_EQ(last[i], offset + setSize - count + i);
    EXPECT_EQ(mapper.GetIndexOfCombination(last.data()), sets - 1);
}

TEST(CombinationMapper, NumbersOfCombinations) {
    const uint32_t pieces[] = {2016, 41664, 635376, 7624512};
    const uint32_t pawns[] = {1128, 17296, 194580, 1712304};
    for (int count = 2; count <= 5; ++count) {
        EXPECT_EQ(MapperCombinations(false, count), pieces[count - 2]) << count;
        EXPECT_EQ(MapperCombinations(true, count), pawns[count - 2]) << count;
    }
    EXPECT_EQ(MapperCombinations(false, 1), 0u);
    EXPECT_EQ(MapperCombinations(true, 6), 0u);
}

TEST(CombinationMapper, OnlyTwoToFiveMenHaveAMapper) {
    EXPECT_EQ(CreateCombinationMapper(false, 1), nullptr);
    EXPECT_EQ(CreateCombinationMapper(true, 6), nullptr);
    const auto mapper = CreateCombinationMapper(true, 3);
    ASSERT_NE(mapper, nullptr);
    EXPECT_EQ(mapper->GetNumberOfCombinations(), 17296u);
    EXPECT_EQ(mapper->BytesPerEntry(), 3);
}

TEST(CombinationMapper, TwoAndThreePiecesEverySet) {
    checkAll(TPieceMapper<2>(), 2, 64, 0);
    checkAll(TPieceMapper<3>(), 3, 64, 0);
}

TEST(CombinationMapper, TwoAndThreePawnsEverySet) {
    checkAll(TPawnMapper<2>(), 2, 48, 8);
    checkAll(TPawnMapper<3>(), 3, 48, 8);
}

TEST(CombinationMapper, FourAndFivePiecesSampled) {
    checkSample(TPieceMapper<4>(), 4, 64, 0, 101);
    const auto five = CreateCombinationMapper(false, 5);
    ASSERT_NE(five, nullptr);
    EXPECT_EQ(five->BytesPerEntry(), 5);
    checkSample(*five, 5, 64, 0, 997);
}

TEST(CombinationMapper, FourAndFivePawnsSampled) {
    checkSample(TPawnMapper<4>(), 4, 48, 8, 37);
    checkSample(TPawnMapper<5>(), 5, 48, 8, 331);
}

TEST(CombinationMapper, FirstSetsInOrder) {
    const TPawnMapper<2> pawns;
    // a2 b2 is set 0, a2 c2 set 1, and the 47 pairs with a2 come before b2 c2.
    const uint8_t a2b2[] = {8, 9};
    const uint8_t a2c2[] = {8, 10};
    const uint8_t b2c2[] = {9, 10};
    EXPECT_EQ(pawns.GetIndexOfCombination(a2b2), 0u);
    EXPECT_EQ(pawns.GetIndexOfCombination(a2c2), 1u);
    EXPECT_EQ(pawns.GetIndexOfCombination(b2c2), 47u);
    const TPieceMapper<3> pieces;
    // a1 b1 d1: after a1 b1 c1 comes a1 b1 d1.
    const uint8_t abd[] = {0, 1, 3};
    EXPECT_EQ(pieces.GetIndexOfCombination(abd), 1u);
    // b1 c1 d1 follows all C(63, 2) = 1953 sets that hold a1.
    const uint8_t bcd[] = {1, 2, 3};
    EXPECT_EQ(pieces.GetIndexOfCombination(bcd), 1953u);
}

} // namespace
} // namespace zorvane
