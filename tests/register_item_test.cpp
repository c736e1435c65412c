// The register key: 64 square bytes compared as eight signed little-endian words.
#include "core/position_id.h"
#include "registers/register_item.h"
#include "register_test_items.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>

namespace zorvane {
namespace {

TChessboardRegisterItem emptyItem() {
    TChessboardRegisterItem item;
    std::memset(item.m_aSquares, 0, 64);
    return item;
}

TEST(RegisterItem, WordsAreTheSquaresOfOneRankLowestSquareInTheLowestByte) {
    TChessboardRegisterItem item = emptyItem();
    item.m_aSquares[sq("a1")] = 0x01;
    item.m_aSquares[sq("b1")] = 0x02;
    item.m_aSquares[sq("h2")] = 0x03;
    EXPECT_EQ(item.word(0), 0x0201);
    EXPECT_EQ(item.word(1), int64_t{0x03} << 56);
    for (int i = 2; i < 8; ++i) EXPECT_EQ(item.word(i), 0) << i;
}

TEST(RegisterItem, AHigherSquareOfARankWeighsMoreThanALowerOne) {
    // Read little-endian, b1 is the more significant byte of word 0.
    TChessboardRegisterItem onB1 = emptyItem(), onA1 = emptyItem();
    onB1.m_aSquares[sq("b1")] = 1;
    onA1.m_aSquares[sq("a1")] = 2;
    EXPECT_TRUE(onA1 < onB1);
    EXPECT_FALSE(onB1 < onA1);
}

TEST(RegisterItem, WordZeroDecidesBeforeLaterWords) {
    TChessboardRegisterItem low = emptyItem(), high = emptyItem();
    low.m_aSquares[sq("h8")] = WQ;
    high.m_aSquares[sq("a1")] = WP;
    EXPECT_TRUE(low < high);
    EXPECT_FALSE(high < low);
}

TEST(RegisterItem, WordsCompareSigned) {
    // A black man on h1 sets the sign bit of word 0: that key sorts first.
    TChessboardRegisterItem black = emptyItem(), empty = emptyItem();
    black.m_aSquares[sq("h1")] = BK;
    EXPECT_LT(black.word(0), 0);
    EXPECT_TRUE(black < empty);
    EXPECT_FALSE(empty < black);
}

TEST(RegisterItem, EqualityLooksAtEveryByte) {
    TChessboardRegisterItem a = KingsItem(), b = KingsItem();
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a < b);
    EXPECT_FALSE(b < a);
    b.m_aSquares[sq("h8")] = BP;
    EXPECT_FALSE(a == b);
}

TEST(RegisterItem, KeysOfOneFamilyShareTheHashAndStayDistinct) {
    std::map<TChessboardRegisterItem, int> keys;
    for (int k = 0; k <= 40; ++k) {
        keys[SameHashItem(k)] = k;
        EXPECT_EQ(SameHashItem(k).hash(), SameHashItem(0).hash()) << k;
    }
    EXPECT_EQ(keys.size(), 41u);
}

TEST(RegisterItem, FromBoardTakesTheSquaresAndTheRegisterHash) {
    TChessboard board = EmptyChessboard();
    board.m_aSquares[sq("e1")] = WK;
    board.m_aSquares[sq("e8")] = BK;
    board.m_shPliesLeft = 7;
    const TChessboardRegisterItem item = TChessboardRegisterItem::FromBoard(board);
    EXPECT_TRUE(item == KingsItem());
    EXPECT_EQ(item.hash(), RegisterHash(board.m_aSquares));
    EXPECT_EQ(item.hash(), uint32_t{WK} * 25 + uint32_t{BK} * 61 * 61);
}

} // namespace
} // namespace zorvane
