// Custom position types: fixed men, the text and key of such a type, and the
// numbering of its table over the free squares.
#include "core/chessboard.h"
#include "global_register/custom_pos_type.h"
#include "test_squares.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <stdexcept>
#include <utility>

namespace zorvane {
namespace {

uint64_t setOf(std::initializer_list<const char*> names) {
    uint64_t set = 0;
    for (const char* name : names) set |= uint64_t{1} << sq(name);
    return set;
}

// A black pawn on b7 above the fixed chain b4-c3 / c4.
TChessboard blockedPosition() {
    return boardWith({{"e1", WK}, {"e8", BK}, {"d1", WQ}, {"b4", WP}, {"c3", WP}, {"c4", BP}, {"b7", BP}});
}
const uint64_t FIXED = setOf({"b4", "c3", "c4"});

TEST(CustomPosType, TextListsMovableThenFixedMen) {
    const TCustomPosType type = CustomPosTypeOfPosition(blockedPosition(), FIXED);
    // Fixed white pawns ascending: c3 (18) before b4 (25).
    EXPECT_EQ(CustomPosTypeText(type), "KQkp(b7)+Pc3b4pc4");
    ASSERT_EQ(type.movable.size(), 4u);
    EXPECT_EQ(type.movable[3].piece, BP);
    EXPECT_EQ(type.movable[3].square, sq("b7"));
    ASSERT_EQ(type.fixed.size(), 3u);
}

TEST(CustomPosType, BlackPawnsByFileFromTheTop) {
    const TChessboard b =
        boardWith({{"e1", WK}, {"e8", BK}, {"a3", BP}, {"h6", BP}, {"a6", BP}, {"a2", WP}, {"c2", WP}});
    EXPECT_EQ(CustomPosTypeText(CustomPosTypeOfPosition(b, setOf({"a2"}))), "KPkp(a6)p(a3)p(h6)+Pa2");
}

TEST(CustomPosType, KeysAreOddAndTellTypesApart) {
    const TCustomPosType type = CustomPosTypeOfPosition(blockedPosition(), FIXED);
    const uint64_t key = CustomPosTypeKey(type);
    EXPECT_EQ(key & 3, 1u);
    EXPECT_EQ(CustomPosTypeKey(CustomPosTypeOfPosition(blockedPosition(), FIXED)), key);
    // Another top of the stretch, another fixed set, another man: other keys.
    TCustomPosType lower = type;
    lower.movable[3].square = sq("b6");
    EXPECT_NE(CustomPosTypeKey(lower), key);
    EXPECT_NE(CustomPosTypeKey(CustomPosTypeOfPosition(blockedPosition(), setOf({"b4", "c3"}))), key);
    TCustomPosType rook = type;
    rook.movable[1].piece = WR;
    EXPECT_NE(CustomPosTypeKey(rook), key);
    // The same men moved from the fixed list to the movable one.
    TCustomPosType moved = type;
    moved.fixed.pop_back();
    moved.movable.push_back({BP, NO_SQUARE});
    EXPECT_NE(CustomPosTypeKey(moved), key);
}

TEST(CustomPosType, LargeTypesGetRegisteredKeys) {
    // Sixteen fixed pawns do not pack into 62 bits.
    TChessboard b = boardWith({{"e1", WK}, {"e8", BK}});
    uint64_t fixed = 0;
    for (int file = 0; file < 8; ++file) {
        PutMan(b, squareOf(file, 3), WP);
        PutMan(b, squareOf(file, 4), BP);
        fixed |= (uint64_t{1} << squareOf(file, 3)) | (uint64_t{1} << squareOf(file, 4));
    }
    const TCustomPosType type = CustomPosTypeOfPosition(b, fixed);
    const uint64_t key = CustomPosTypeKey(type);
    EXPECT_EQ(key & 3, 3u);
    EXPECT_EQ(CustomPosTypeKey(type), key);
    TCustomPosType other = type;
    other.fixed.back().square = sq("h6");
    EXPECT_EQ(CustomPosTypeKey(other) & 3, 3u);
    EXPECT_NE(CustomPosTypeKey(other), key);
}

TEST(CustomPosType, IndexIsMixedRadixOverFreeSquares) {
    const TCustomLayout layout = MakeCustomLayout(CustomPosTypeOfPosition(blockedPosition(), FIXED));
    // 61 free squares for K, Q, k; the pawn's stretch b7 b6 b5 above b4.
    ASSERT_EQ(layout.aRadix.size(), 4u);
    EXPECT_EQ(layout.aRadix[0], 61);
    EXPECT_EQ(layout.aRadix[3], 3);
    EXPECT_EQ(layout.aBottom[3], sq("b5"));
    EXPECT_EQ(layout.aSquareNumber[sq("c3")], NO_SQUARE);
    EXPECT_EQ(CustomTableSize(layout), 61ull * 61 * 61 * 3);
    // K e1 is free square 4, Q d1 3, k e8 57 (three fixed squares below it), the pawn two up from b5.
    EXPECT_EQ(CustomIndexOfPosition(layout, blockedPosition()), ((4ull * 61 + 3) * 61 + 57) * 3 + 2);
}

TEST(CustomPosType, EveryIndexRoundTrips) {
    const TCustomLayout layout = MakeCustomLayout(CustomPosTypeOfPosition(blockedPosition(), FIXED));
    const uint64_t size = CustomTableSize(layout);
    uint64_t positions = 0;
    for (uint64_t index = 0; index < size; ++index) {
        TChessboard b;
        if (!CustomPositionOfIndex(layout, index, b)) continue;
        ++positions;
        ASSERT_EQ(CustomIndexOfPosition(layout, b), index);
        ASSERT_EQ(b.m_aSquares[sq("c4")], BP);
    }
    // The pawn takes one of its 3 squares; K, Q and k the 60, 59, 58 left of the 61 free.
    EXPECT_EQ(positions, 3ull * 60 * 59 * 58);
    TChessboard b;
    EXPECT_FALSE(CustomPositionOfIndex(layout, size, b));
}

TEST(CustomPosType, BadLayoutsAreRefused) {
    TCustomPosType twice;
    twice.movable = {{WK, NO_SQUARE}, {BK, NO_SQUARE}};
    twice.fixed = {{WP, sq("b4")}, {BP, sq("b4")}};
    EXPECT_THROW(MakeCustomLayout(twice), std::runtime_error);
    TCustomPosType blocked;
    blocked.movable = {{WK, NO_SQUARE}, {BK, NO_SQUARE}, {BP, sq("b4")}};
    blocked.fixed = {{WP, sq("b4")}};
    EXPECT_THROW(MakeCustomLayout(blocked), std::runtime_error);
    TCustomPosType unordered;
    unordered.movable = {{BK, NO_SQUARE}, {WK, NO_SQUARE}};
    EXPECT_THROW(MakeCustomLayout(unordered), std::runtime_error);
}

} // namespace
} // namespace zorvane
