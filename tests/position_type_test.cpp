// Position type texts and keys of the endgame tables, and the two helpers
// that take one man out of a type.
#include "core/chessboard.h"
#include "global_register/position_type.h"
#include "test_squares.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <stdexcept>
#include <string>
#include <utility>

namespace zorvane {
namespace {

template <class Call> std::string errorOf(Call call) {
    try {
        call();
    } catch (const std::runtime_error& e) {
        return e.what();
    }
    return "";
}

TEST(PositionType, DecoderGivesTheCodesOneToTwelve) {
    EXPECT_EQ(POS_TYPE_DECODER, "QRBNPqrbnpXx");
    EXPECT_EQ(PosTypeLetterCode('Q'), 1);
    EXPECT_EQ(PosTypeLetterCode('P'), 5);
    EXPECT_EQ(PosTypeLetterCode('q'), 6);
    EXPECT_EQ(PosTypeLetterCode('p'), 10);
    EXPECT_EQ(PosTypeLetterCode('X'), 11);
    EXPECT_EQ(PosTypeLetterCode('x'), 12);
    EXPECT_EQ(PosTypeLetterCode('K'), 0);
    EXPECT_EQ(PosTypeLetterCode('k'), 0);
}

TEST(PositionType, KeysOfRegularTexts) {
    // ((0 * 16 + 1) * 16 + 7) * 2: Q is 1, r is 7.
    EXPECT_EQ(PosTypeKey("Qr"), 46u);
    // (0 * 16 + 2) * 2
    EXPECT_EQ(PosTypeKey("R"), 4u);
    // R 2, R 2, p 10: 0x22A * 2 = 554 * 2.
    EXPECT_EQ(PosTypeKey("RRp"), 1108u);
    // The codes read as hex digits: 0x123456789A * 2.
    EXPECT_EQ(PosTypeKey("QRBNPqrbnp"), 0x2468ACF134u);
    // X 11, x 12: 0xBC * 2.
    EXPECT_EQ(PosTypeKey("Xx"), 376u);
    EXPECT_EQ(PosTypeKey(""), 0u);
    EXPECT_FALSE(IsCustomPosTypeKey(PosTypeKey("Qr")));
    EXPECT_NE(PosTypeKey("Qr"), PosTypeKey("rQ"));
}

TEST(PositionType, TextOfABoardFollowsTheFixedOrder) {
    const TChessboard b =
        boardWith({{"e1", WK}, {"e8", BK}, {"a1", WR}, {"h8", WQ}, {"c5", BP}, {"d4", BR}, {"b2", WR}});
    EXPECT_EQ(PosTypeText(b), "QRRrp");
    // Q 1, R 2, R 2, r 7, p 10: 0x1227A * 2.
    EXPECT_EQ(PosTypeKeyOfPosition(b), 0x244F4u);
    EXPECT_EQ(PosTypeKeyOfPosition(b), PosTypeKey(PosTypeText(b)));
}

TEST(PositionType, BareKingsAndCrowdedBoardsHaveNoRegularKey) {
    const TChessboard bare = boardWith({{"e1", WK}, {"e8", BK}});
    EXPECT_EQ(PosTypeText(bare), "");
    EXPECT_EQ(PosTypeKeyOfPosition(bare), 0u);
    const TChessboard five =
        boardWith({{"e1", WK}, {"e8", BK}, {"a2", WP}, {"b2", WP}, {"c2", WP}, {"d7", BP}, {"h7", BP}});
    EXPECT_EQ(PosTypeKeyOfPosition(five), PosTypeKey("PPPpp"));
    const TChessboard six = boardWith(
        {{"e1", WK}, {"e8", BK}, {"a2", WP}, {"b2", WP}, {"c2", WP}, {"d7", BP}, {"h7", BP}, {"a8", BN}});
    EXPECT_EQ(PosTypeText(six), "PPPnpp");
    EXPECT_EQ(PosTypeKeyOfPosition(six), 0u);
}

TEST(PositionType, RemoveTakesOnlyTheFirstOfEqualLetters) {
    EXPECT_EQ(RemoveFromPosType("RR", 'R'), "R");
    EXPECT_EQ(RemoveFromPosType("QRRr", 'R'), "QRr");
    EXPECT_EQ(RemoveFromPosType("Qr", 'r'), "Q");
    EXPECT_EQ(RemoveFromPosType("Qr", 'Q'), "r");
}

TEST(PositionType, RemoveOfAMissingLetterFails) {
    EXPECT_EQ(errorOf([] { RemoveFromPosType("Qr", 'B'); }),
              "Error in RemoveFromPosType: pos.type Qr does not contain B");
    // Case counts: a black rook is no white rook.
    EXPECT_EQ(errorOf([] { RemoveFromPosType("Qr", 'R'); }),
              "Error in RemoveFromPosType: pos.type Qr does not contain R");
}

TEST(PositionType, IndexToRemoveCutsAtTheFirstFittingPlace) {
    EXPECT_EQ(GetIndexToRemoveToObtainOtherPosType("QR", "Q"), 1);
    EXPECT_EQ(GetIndexToRemoveToObtainOtherPosType("QR", "R"), 0);
    EXPECT_EQ(GetIndexToRemoveToObtainOtherPosType("QRr", "Qr"), 1);
    EXPECT_EQ(GetIndexToRemoveToObtainOtherPosType("QRr", "QR"), 2);
    EXPECT_EQ(GetIndexToRemoveToObtainOtherPosType("QQr", "Qr"), 0);
    EXPECT_EQ(GetIndexToRemoveToObtainOtherPosType("Q", ""), 0);
    EXPECT_EQ(GetIndexToRemoveToObtainOtherPosType("QR", "B"), -1);
    EXPECT_EQ(GetIndexToRemoveToObtainOtherPosType("QRr", "rQ"), -1);
}

TEST(PositionType, IndexToRemoveNeedsOneLetterMore) {
    EXPECT_EQ(errorOf([] { GetIndexToRemoveToObtainOtherPosType("QRr", "Q"); }),
              "Error in GetIndexToRemoveToObtainOtherPosType: QRr and Q passed to function");
    EXPECT_EQ(errorOf([] { GetIndexToRemoveToObtainOtherPosType("Q", "Qr"); }),
              "Error in GetIndexToRemoveToObtainOtherPosType: Q and Qr passed to function");
    EXPECT_EQ(errorOf([] { GetIndexToRemoveToObtainOtherPosType("Qr", "Qr"); }),
              "Error in GetIndexToRemoveToObtainOtherPosType: Qr and Qr passed to function");
}

} // namespace
} // namespace zorvane
