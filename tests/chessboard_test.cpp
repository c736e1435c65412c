// TChessboard set-up: kings, counts, white lists, checker fields, flags and
// the three faults of the strict and the testing form.
#include "core/chess_exception.h"
#include "core/chessboard.h"
#include "test_squares.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>

namespace zorvane {
namespace {

// The message of the strict set-up, or "" when it succeeds.
std::string setupMessage(TChessboard b) {
    try {
        SetupChessboard(b, true);
    } catch (const ChessException& e) {
        return e.what();
    }
    return "";
}

constexpr const char* PAWN_ROW = "Pawns cannot occupy 1st nor 8th line of the chessboard.";
constexpr const char* KINGS = "Illegal number of kings.";
constexpr const char* BOTH_ATTACKED = "Both kings attacked.";

TEST(Chessboard, EmptyRecordHasNoMenChecksOrWatchedSquares) {
    const TChessboard b = EmptyChessboard();
    for (int i = 0; i < 64; ++i) EXPECT_EQ(b.m_aSquares[i], 0) << i;
    for (int i = 0; i < 8; ++i) EXPECT_EQ(b.m_aWatched[i], NO_SQUARE) << i;
    EXPECT_EQ(b.m_cWhiteChecker, NO_CHECK);
    EXPECT_EQ(b.m_cBlackChecker, NO_CHECK);
    EXPECT_EQ(b.m_pParent, nullptr);
    EXPECT_EQ(b.m_cWhiteQueen, NO_SQUARE);
    EXPECT_EQ(b.m_aWhiteRooks[0], NO_SQUARE);
    EXPECT_EQ(b.m_aWhiteRooks[1], NO_SQUARE);
}

TEST(Chessboard, CopyToChildLinksTheParent) {
    TChessboard parent = boardWith({{"e1", WK}, {"e8", BK}});
    SetupChessboard(parent, true);
    TChessboard child;
    CopyToChild(child, parent);
    EXPECT_EQ(child.m_pParent, &parent);
    EXPECT_EQ(child.m_aSquares[sq("e1")], WK);
}

TEST(Chessboard, SetupFillsKingsCountsAndLists) {
    TChessboard b = boardWith({{"a1", WR},
                               {"b1", WN},
                               {"c1", WB},
                               {"d1", WQ},
                               {"e1", WK},
                               {"f1", WB},
                               {"g1", WN},
                               {"h1", WR},
                               {"a2", WP},
                               {"h2", WP},
                               {"e8", BK},
                               {"d8", BQ},
                               {"a8", BR},
                               {"c8", BB},
                               {"b8", BN},
                               {"g8", BN},
                               {"a7", BP},
                               {"b7", BP},
                               {"c7", BP}});
    SetupChessboard(b, true);
    EXPECT_EQ(b.m_cWhiteKingCol, 4);
    EXPECT_EQ(b.m_cWhiteKingRow, 0);
    EXPECT_EQ(b.m_cBlackKingCol, 4);
    EXPECT_EQ(b.m_cBlackKingRow, 7);
    EXPECT_EQ(b.whiteKing(), sq("e1"));
    EXPECT_EQ(b.blackKing(), sq("e8"));
    EXPECT_EQ(b.m_nWhiteQueens, 1);
    EXPECT_EQ(b.m_nWhiteRooks, 2);
    EXPECT_EQ(b.m_nWhiteBishops, 2);
    EXPECT_EQ(b.m_nWhiteKnights, 2);
    EXPECT_EQ(b.m_nWhitePawns, 2);
    EXPECT_EQ(b.m_nBlackQueens, 1);
    EXPECT_EQ(b.m_nBlackRooks, 1);
    EXPECT_EQ(b.m_nBlackBishops, 1);
    EXPECT_EQ(b.m_nBlackKnights, 2);
    EXPECT_EQ(b.m_nBlackPawns, 3);
    EXPECT_EQ(b.m_bWhiteListsValid, 1);
    EXPECT_EQ(b.m_cWhiteQueen, sq("d1"));
    EXPECT_EQ(b.m_aWhiteRooks[0], sq("a1"));
    EXPECT_EQ(b.m_aWhiteRooks[1], sq("h1"));
    EXPECT_EQ(b.m_aWhiteBishops[0], sq("c1"));
    EXPECT_EQ(b.m_aWhiteBishops[1], sq("f1"));
    EXPECT_EQ(b.m_aWhiteKnights[0], sq("b1"));
    EXPECT_EQ(b.m_aWhiteKnights[1], sq("g1"));
    EXPECT_EQ(b.m_cWhiteChecker, NO_CHECK);
    EXPECT_EQ(b.m_cBlackChecker, NO_CHECK);
}

TEST(Chessboard, TwoBishopsOfOneColourAreValidButTurnTheListsOff) {
    // c1 and e3 are both dark squares.
    ASSERT_EQ(squareColour(sq("c1")), squareColour(sq("e3")));
    TChessboard b = boardWith({{"e1", WK}, {"e8", BK}, {"c1", WB}, {"e3", WB}});
    EXPECT_EQ(setupMessage(b), "");
    SetupChessboard(b, true);
    EXPECT_EQ(b.m_nWhiteBishops, 2);
    EXPECT_EQ(b.m_bWhiteListsValid, 0);
}

TEST(Chessboard, TwoBishopsOfOppositeColoursKeepTheLists) {
    TChessboard b = boardWith({{"e1", WK}, {"e8", BK}, {"c1", WB}, {"f1", WB}});
    SetupChessboard(b, true);
    EXPECT_EQ(b.m_nWhiteBishops, 2);
    EXPECT_EQ(b.m_bWhiteListsValid, 1);
    EXPECT_EQ(b.m_aWhiteBishops[0], sq("c1"));
    EXPECT_EQ(b.m_aWhiteBishops[1], sq("f1"));
}

TEST(Chessboard, ThirdBishopTurnsTheListsOffButCounts) {
    TChessboard b = boardWith({{"e1", WK}, {"e8", BK}, {"c1", WB}, {"f1", WB}, {"d4", WB}});
    SetupChessboard(b, true);
    EXPECT_EQ(b.m_nWhiteBishops, 3);
    EXPECT_EQ(b.m_bWhiteListsValid, 0);
}

TEST(Chessboard, TwoWhiteQueensAreValidButTurnTheListsOff) {
    TChessboard b = boardWith({{"e1", WK}, {"e8", BK}, {"a3", WQ}, {"b3", WQ}});
    EXPECT_EQ(setupMessage(b), "");
    SetupChessboard(b, true);
    EXPECT_EQ(b.m_nWhiteQueens, 2);
    EXPECT_EQ(b.m_bWhiteListsValid, 0);
}

TEST(Chessboard, ThirdRookOrKnightTurnsTheListsOff) {
    TChessboard rooks = boardWith({{"e1", WK}, {"e8", BK}, {"a3", WR}, {"b3", WR}, {"c3", WR}});
    SetupChessboard(rooks, true);
    EXPECT_EQ(rooks.m_nWhiteRooks, 3);
    EXPECT_EQ(rooks.m_bWhiteListsValid, 0);

    TChessboard knights = boardWith({{"e1", WK}, {"e8", BK}, {"a3", WN}, {"b3", WN}, {"c3", WN}});
    SetupChessboard(knights, true);
    EXPECT_EQ(knights.m_nWhiteKnights, 3);
    EXPECT_EQ(knights.m_bWhiteListsValid, 0);
}

TEST(Chessboard, BlackMenNeverTouchTheWhiteLists) {
    TChessboard b = boardWith({{"e1", WK},
                               {"e8", BK},
                               {"a6", BQ},
                               {"b6", BQ},
                               {"c6", BR},
                               {"d6", BR},
                               {"g6", BR},
                               {"a4", BB},
                               {"c5", BB}});
    SetupChessboard(b, true);
    EXPECT_EQ(b.m_nBlackQueens, 2);
    EXPECT_EQ(b.m_nBlackRooks, 3);
    EXPECT_EQ(b.m_nBlackBishops, 2);
    EXPECT_EQ(b.m_bWhiteListsValid, 1);
}

TEST(Chessboard, PawnRowFaultComesBeforeTheMissingKing) {
    EXPECT_EQ(setupMessage(boardWith({{"h8", WP}})), PAWN_ROW);
    EXPECT_EQ(setupMessage(boardWith({{"a1", BP}})), PAWN_ROW);
    // Three kings before the faulty pawn in square order: still the pawn.
    EXPECT_EQ(setupMessage(boardWith({{"e1", WK}, {"e2", WK}, {"e5", BK}, {"c8", BP}})), PAWN_ROW);
    EXPECT_EQ(setupMessage(boardWith({{"e1", WK}, {"e8", BK}, {"d1", WP}})), PAWN_ROW);
    EXPECT_EQ(setupMessage(boardWith({{"e1", WK}, {"e8", BK}, {"d8", WP}})), PAWN_ROW);
}

TEST(Chessboard, WrongNumberOfKings) {
    EXPECT_EQ(setupMessage(boardWith({})), KINGS);
    EXPECT_EQ(setupMessage(boardWith({{"e1", WK}})), KINGS);
    EXPECT_EQ(setupMessage(boardWith({{"e8", BK}})), KINGS);
    EXPECT_EQ(setupMessage(boardWith({{"e1", WK}, {"a1", WK}, {"e8", BK}})), KINGS);
    EXPECT_EQ(setupMessage(boardWith({{"e1", WK}, {"e8", BK}, {"a8", BK}})), KINGS);
}

TEST(Chessboard, KingsAreCountedBeforeChecksAreLookedAt) {
    // Adjacent kings and a third king: the count decides first.
    EXPECT_EQ(setupMessage(boardWith({{"e4", WK}, {"e5", BK}, {"a8", BK}})), KINGS);
}

TEST(Chessboard, AdjacentKingsAreBothAttacked) {
    EXPECT_EQ(setupMessage(boardWith({{"e4", WK}, {"e5", BK}})), BOTH_ATTACKED);
    EXPECT_EQ(setupMessage(boardWith({{"a1", WK}, {"b2", BK}})), BOTH_ATTACKED);
}

TEST(Chessboard, BothKingsCheckedByMen) {
    EXPECT_EQ(setupMessage(boardWith({{"a1", WK}, {"h8", BK}, {"h1", WR}, {"a8", BR}})), BOTH_ATTACKED);
}

TEST(Chessboard, TestingFormAnswersFalseForTheSameFaults) {
    TChessboard pawn = boardWith({{"e1", WK}, {"e8", BK}, {"a1", WP}});
    TChessboard kings = boardWith({{"e1", WK}});
    TChessboard adjacent = boardWith({{"e4", WK}, {"e5", BK}});
    TChessboard good = boardWith({{"e1", WK}, {"e8", BK}, {"a2", WP}});
    EXPECT_FALSE(TrySetupChessboard(pawn, true));
    EXPECT_FALSE(TrySetupChessboard(kings, true));
    EXPECT_FALSE(TrySetupChessboard(adjacent, true));
    EXPECT_TRUE(TrySetupChessboard(good, true));
    EXPECT_EQ(good.m_nWhitePawns, 1);
}

TEST(Chessboard, CheckerFieldsGiveTheSquareOrDoubleCheck) {
    TChessboard none = boardWith({{"e1", WK}, {"e8", BK}, {"a2", WR}});
    SetupChessboard(none, true);
    EXPECT_EQ(none.m_cBlackChecker, NO_CHECK);
    EXPECT_EQ(none.m_cWhiteChecker, NO_CHECK);
    EXPECT_FALSE(none.blackInCheck());

    TChessboard single = boardWith({{"e1", WK}, {"e8", BK}, {"a8", WR}});
    SetupChessboard(single, true);
    EXPECT_EQ(single.m_cBlackChecker, sq("a8"));
    EXPECT_TRUE(single.blackInCheck());
    EXPECT_EQ(single.m_cWhiteChecker, NO_CHECK);

    TChessboard twice = boardWith({{"e1", WK}, {"e8", BK}, {"a8", WR}, {"d6", WN}});
    SetupChessboard(twice, true);
    EXPECT_EQ(twice.m_cBlackChecker, DOUBLE_CHECK);

    // A checker on a1 is square 0, which must not read as "no check".
    TChessboard corner = boardWith({{"e1", WK}, {"h8", BK}, {"a1", BB}});
    SetupChessboard(corner, true);
    EXPECT_EQ(corner.m_cWhiteChecker, NO_CHECK);
    TChessboard onA1 = boardWith({{"h1", WK}, {"h8", BK}, {"a1", BR}});
    SetupChessboard(onA1, true);
    EXPECT_EQ(onA1.m_cWhiteChecker, 0);
    EXPECT_TRUE(onA1.whiteInCheck());
}

TEST(Chessboard, ResetFlagClearsFlagsAndHeuristics) {
    TChessboard keep = boardWith({{"e1", WK}, {"e8", BK}, {"a3", WR}, {"d5", BP}});
    keep.m_wFlags = FLAG_GLOBAL_REGISTER;
    keep.m_uHeuristics = 5;
    SetupChessboard(keep, false);
    EXPECT_EQ(keep.m_wFlags, FLAG_GLOBAL_REGISTER);
    EXPECT_EQ(keep.m_uHeuristics, 5u);

    TChessboard reset = boardWith({{"e1", WK}, {"e8", BK}, {"a3", WR}, {"d5", BP}});
    reset.m_wFlags = FLAG_GLOBAL_REGISTER;
    reset.m_uHeuristics = 5;
    SetupChessboard(reset, true);
    EXPECT_EQ(reset.m_wFlags, 0);
    EXPECT_EQ(reset.m_uHeuristics, 0u);
}

TEST(Chessboard, SetupClearsTheCaptureCountsButNotTheOneColourMode) {
    TChessboard b = boardWith({{"e1", WK}, {"e8", BK}});
    b.m_bPlayState = 0x3F;
    SetupChessboard(b, true);
    EXPECT_EQ(b.m_bPlayState, 0x03);
}

TEST(Chessboard, EdgeLevelOfTheBlackKing) {
    struct Case {
        const char* king;
        const char* whiteKing;
        int level;
    };
    for (const Case c : {Case{"a5", "h1", 0}, Case{"h8", "a1", 0}, Case{"e8", "a1", 0}, Case{"b7", "h1", 1},
                         Case{"g2", "a8", 1}, Case{"c6", "h1", 2}, Case{"f3", "a8", 2}, Case{"b4", "h1", 1},
                         Case{"d4", "h1", 3}, Case{"e5", "a1", 3}}) {
        TChessboard b = boardWith({{c.whiteKing, WK}, {c.king, BK}});
        SetupChessboard(b, true);
        EXPECT_EQ(b.m_wFlags2 & FLAGS2_EDGE_LEVEL, c.level << 3) << c.king;
        EXPECT_EQ(b.edgeLevel(), c.level) << c.king;
    }
    EXPECT_EQ(SquareEdgeLevel(sq("d5")), 3);
    EXPECT_EQ(SquareEdgeLevel(sq("c7")), 1);
    EXPECT_EQ(SquareEdgeLevel(sq("h4")), 0);
}

TEST(Chessboard, MarkedPawnAndStrayBytesCountAsNothing) {
    const auto marked = static_cast<uint8_t>(BP | PAWN_BLOCK_MARK);
    TChessboard b = boardWith({{"e1", WK}, {"e8", BK}, {"e5", marked}, {"d5", 3}, {"c5", 200}});
    EXPECT_EQ(setupMessage(b), "");
    SetupChessboard(b, true);
    EXPECT_EQ(b.m_nBlackPawns, 0);
    EXPECT_EQ(b.blackMenBesideKing(), 0);
    EXPECT_EQ(b.m_aSquares[sq("e5")], marked);
    // Not a pawn, so not refused on the last row either.
    TChessboard onLastRow = boardWith({{"e1", WK}, {"e8", BK}, {"a1", marked}});
    EXPECT_EQ(setupMessage(onLastRow), "");
}

TEST(Chessboard, BareBlackKingFlag) {
    TChessboard bare = boardWith({{"e1", WK}, {"e8", BK}, {"a3", WR}});
    SetupChessboard(bare, true);
    EXPECT_EQ(bare.m_wFlags & FLAG_BLACK_BARE_KING, FLAG_BLACK_BARE_KING);

    TChessboard withPawn = boardWith({{"e1", WK}, {"e8", BK}, {"a3", WR}, {"a6", BP}});
    SetupChessboard(withPawn, true);
    EXPECT_EQ(withPawn.m_wFlags & FLAG_BLACK_BARE_KING, 0);
}

TEST(Chessboard, WeakWhiteFlagNeedsFewWhiteMenAndAFreeBlackKing) {
    auto weak = [](std::initializer_list<std::pair<const char*, uint8_t>> men) {
        TChessboard b = boardWith(men);
        SetupChessboard(b, true);
        return (b.m_wFlags & FLAG_WEAK_WHITE) != 0;
    };
    // A pawn and one minor piece, black king in the open.
    EXPECT_TRUE(weak({{"a1", WK}, {"a2", WP}, {"e5", BK}}));
    EXPECT_TRUE(weak({{"a1", WK}, {"a2", WP}, {"b1", WN}, {"e5", BK}}));
    EXPECT_TRUE(weak({{"a1", WK}, {"a2", WP}, {"e5", BK}, {"e6", BP}}));
    // No pawn, a rook, a queen, or two minors: off.
    EXPECT_FALSE(weak({{"a1", WK}, {"b1", WN}, {"e5", BK}}));
    EXPECT_FALSE(weak({{"a1", WK}, {"a2", WP}, {"b1", WR}, {"e5", BK}}));
    EXPECT_FALSE(weak({{"a1", WK}, {"a2", WP}, {"b1", WQ}, {"e5", BK}}));
    EXPECT_FALSE(weak({{"a1", WK}, {"a2", WP}, {"b1", WN}, {"c1", WB}, {"e5", BK}}));
    // Two black neighbours hem the king in.
    EXPECT_FALSE(weak({{"a1", WK}, {"a2", WP}, {"e5", BK}, {"e6", BP}, {"d4", BN}}));
    // On a corner a single neighbour is already too many; on an edge it is not.
    EXPECT_TRUE(weak({{"a1", WK}, {"a2", WP}, {"h8", BK}}));
    EXPECT_FALSE(weak({{"a1", WK}, {"a2", WP}, {"h8", BK}, {"g7", BP}}));
    EXPECT_TRUE(weak({{"a1", WK}, {"a2", WP}, {"e8", BK}, {"d7", BP}}));
    // White men next to the king do not hem him in.
    EXPECT_TRUE(weak({{"a1", WK}, {"c2", WP}, {"h8", BK}, {"g7", WN}}));
}

TEST(Chessboard, WrongBishopFlagForALoneBishopAndARooksPawn) {
    auto wrong = [](std::initializer_list<std::pair<const char*, uint8_t>> men) {
        TChessboard b = boardWith(men);
        SetupChessboard(b, true);
        return (b.m_wFlags2 & FLAGS2_WRONG_BISHOP) != 0;
    };
    // h8 and c1 share a colour: a bishop on c1 commands the promotion square.
    ASSERT_EQ(squareColour(sq("h8")), squareColour(sq("c1")));
    EXPECT_FALSE(wrong({{"a1", WK}, {"h5", WP}, {"c1", WB}, {"e8", BK}}));
    EXPECT_TRUE(wrong({{"a1", WK}, {"h5", WP}, {"f1", WB}, {"e8", BK}}));
    EXPECT_FALSE(wrong({{"a1", WK}, {"g5", WP}, {"f1", WB}, {"e8", BK}}));
    EXPECT_FALSE(wrong({{"a1", WK}, {"h5", WP}, {"f1", WB}, {"b1", WN}, {"e8", BK}}));
}

TEST(Chessboard, PutManUpdatesKingsCountsAndListSlots) {
    TChessboard b = EmptyChessboard();
    b.m_bWhiteListsValid = 1;
    PutMan(b, sq("e1"), WK);
    PutMan(b, sq("d4"), BK);
    PutMan(b, sq("h1"), WR);
    PutMan(b, sq("a8"), WR);
    PutMan(b, sq("c3"), BP);
    EXPECT_EQ(b.whiteKing(), sq("e1"));
    EXPECT_EQ(b.blackKing(), sq("d4"));
    EXPECT_EQ(b.edgeLevel(), 3);
    EXPECT_EQ(b.m_nWhiteRooks, 2);
    EXPECT_EQ(b.m_nBlackPawns, 1);
    EXPECT_EQ(b.m_aWhiteRooks[0], sq("h1"));
    EXPECT_EQ(b.m_aWhiteRooks[1], sq("a8"));
    EXPECT_EQ(b.m_bWhiteListsValid, 1);
    PutMan(b, sq("b2"), WR);
    EXPECT_EQ(b.m_nWhiteRooks, 3);
    EXPECT_EQ(b.m_bWhiteListsValid, 0);
}

TEST(Chessboard, WhiteListsPossibleAndRebuild) {
    TChessboard b = boardWith(
        {{"e1", WK}, {"e8", BK}, {"a8", WR}, {"h1", WR}, {"f1", WB}, {"c1", WB}, {"d5", WQ}, {"g3", WN}});
    SetupChessboard(b, true);
    EXPECT_TRUE(WhiteListsPossible(b));
    b.m_bWhiteListsValid = 0;
    b.m_aWhiteRooks[0] = b.m_aWhiteRooks[1] = NO_SQUARE;
    RebuildWhiteLists(b);
    EXPECT_EQ(b.m_bWhiteListsValid, 1);
    // Filled from a1 upward.
    EXPECT_EQ(b.m_aWhiteRooks[0], sq("h1"));
    EXPECT_EQ(b.m_aWhiteRooks[1], sq("a8"));
    EXPECT_EQ(b.m_aWhiteBishops[0], sq("c1"));
    EXPECT_EQ(b.m_aWhiteBishops[1], sq("f1"));
    EXPECT_EQ(b.m_aWhiteKnights[0], sq("g3"));
    EXPECT_EQ(b.m_aWhiteKnights[1], NO_SQUARE);
    EXPECT_EQ(b.m_cWhiteQueen, sq("d5"));

    TChessboard sameColour = boardWith({{"e1", WK}, {"e8", BK}, {"c1", WB}, {"e3", WB}});
    SetupChessboard(sameColour, true);
    EXPECT_FALSE(WhiteListsPossible(sameColour));
    sameColour.m_bWhiteListsValid = 1;
    RebuildWhiteLists(sameColour);
    EXPECT_EQ(sameColour.m_bWhiteListsValid, 0);

    TChessboard queens = boardWith({{"e1", WK}, {"e8", BK}, {"c1", WQ}, {"e3", WQ}});
    SetupChessboard(queens, true);
    EXPECT_FALSE(WhiteListsPossible(queens));
}

TEST(Chessboard, FindSquareScansFromTheStart) {
    const TChessboard b = boardWith({{"e1", WK}, {"e8", BK}, {"b2", WP}, {"g2", WP}});
    EXPECT_EQ(FindSquare(b, WP), sq("b2"));
    EXPECT_EQ(FindSquare(b, WP, sq("b2") + 1), sq("g2"));
    EXPECT_EQ(FindSquare(b, WP, sq("g2") + 1), NO_SQUARE);
    EXPECT_EQ(FindSquare(b, BQ), NO_SQUARE);
    EXPECT_EQ(FindSquare(b, BK), sq("e8"));
}

TEST(Chessboard, SquareColourAndDistance) {
    EXPECT_EQ(squareColour(sq("a1")), 0);
    EXPECT_EQ(squareColour(sq("b1")), 1);
    EXPECT_EQ(squareColour(sq("h1")), 1);
    EXPECT_EQ(squareColour(sq("a8")), 1);
    EXPECT_EQ(squareColour(sq("h8")), 0);
    EXPECT_EQ(squareColour(sq("e4")), 1);
    EXPECT_EQ(distance(sq("a1"), sq("h8")), 7);
    EXPECT_EQ(distance(sq("e4"), sq("f6")), 2);
    EXPECT_EQ(distance(sq("e4"), sq("e4")), 0);
    EXPECT_EQ(distance(sq("h1"), sq("a2")), 7);
}

} // namespace
} // namespace zorvane
