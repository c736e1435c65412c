// Move generation in its fixed base order, evasions, en passant and castling
// as generated, the knight table, and the attack tests.
#include "core/attacks.h"
#include "core/castling.h"
#include "core/fen.h"
#include "core/knight_table.h"
#include "core/make_move.h"
#include "core/movegen.h"
#include "test_positions.h"
#include "test_squares.h"

#include <gtest/gtest.h>

#include <deque>
#include <set>
#include <string>
#include <vector>

namespace zorvane {
namespace {

std::string squareName(int square) {
    return {static_cast<char>('a' + colOf(square)), static_cast<char>('1' + rowOf(square))};
}

// "e2-e4", with the promotion letter appended.
std::string text(const TMove& m) {
    std::string t = squareName(m.from) + "-" + squareName(m.to);
    switch (m.promotionKind()) {
    case KIND_QUEEN:
        return t + "Q";
    case KIND_ROOK:
        return t + "R";
    case KIND_BISHOP:
        return t + "B";
    case KIND_KNIGHT:
        return t + "N";
    default:
        return t;
    }
}

std::vector<std::string> texts(const TMove* moves, int n) {
    std::vector<std::string> result;
    for (int i = 0; i < n; ++i) result.push_back(text(moves[i]));
    return result;
}

std::vector<std::string> manMoves(const TChessboard& b, const char* square) {
    TMove moves[MAX_MOVES];
    const bool white = isWhite(b.m_aSquares[sq(square)]);
    const int n =
        white ? GenerateWhiteManMoves(b, sq(square), moves) : GenerateBlackManMoves(b, sq(square), moves);
    return texts(moves, n);
}

using Texts = std::vector<std::string>;

TEST(MoveGeneration, RookRaysUpDownRightLeft) {
    const TChessboard b = boardFromFen("7k/8/8/8/3R4/8/8/K7", 1);
    EXPECT_EQ(manMoves(b, "d4"), (Texts{"d4-d5", "d4-d6", "d4-d7", "d4-d8", "d4-d3", "d4-d2", "d4-d1",
                                        "d4-e4", "d4-f4", "d4-g4", "d4-h4", "d4-c4", "d4-b4", "d4-a4"}));
}

TEST(MoveGeneration, CaptureEndsARayAndOwnMenStopIt) {
    const TChessboard b = boardFromFen("7k/8/3n4/8/3R1P2/8/8/K7", 1);
    EXPECT_EQ(manMoves(b, "d4"),
              (Texts{"d4-d5", "d4-d6", "d4-d3", "d4-d2", "d4-d1", "d4-e4", "d4-c4", "d4-b4", "d4-a4"}));
}

TEST(MoveGeneration, BishopStepsPlusNinePlusSevenMinusSevenMinusNine) {
    const TChessboard b = boardFromFen("8/7k/8/8/3B4/8/8/1K6", 1);
    EXPECT_EQ(manMoves(b, "d4"), (Texts{"d4-e5", "d4-f6", "d4-g7", "d4-h8", "d4-c5", "d4-b6", "d4-a7",
                                        "d4-e3", "d4-f2", "d4-g1", "d4-c3", "d4-b2", "d4-a1"}));
}

TEST(MoveGeneration, QueenIsRookThenBishop) {
    const TChessboard b = boardFromFen("8/7k/8/8/3Q4/8/8/1K6", 1);
    EXPECT_EQ(manMoves(b, "d4"),
              (Texts{"d4-d5", "d4-d6", "d4-d7", "d4-d8", "d4-d3", "d4-d2", "d4-d1", "d4-e4", "d4-f4",
                     "d4-g4", "d4-h4", "d4-c4", "d4-b4", "d4-a4", "d4-e5", "d4-f6", "d4-g7", "d4-h8",
                     "d4-c5", "d4-b6", "d4-a7", "d4-e3", "d4-f2", "d4-g1", "d4-c3", "d4-b2", "d4-a1"}));
}

TEST(MoveGeneration, KnightInTableOrder) {
    const TChessboard b = boardFromFen("7k/8/8/8/3N4/8/8/K6N", 1);
    EXPECT_EQ(manMoves(b, "d4"),
              (Texts{"d4-c2", "d4-e2", "d4-b3", "d4-f3", "d4-b5", "d4-f5", "d4-c6", "d4-e6"}));
    EXPECT_EQ(manMoves(b, "h1"), (Texts{"h1-f2", "h1-g3"}));
    const TChessboard black = boardFromFen("n6k/8/8/8/8/8/8/K7", 2);
    EXPECT_EQ(manMoves(black, "a8"), (Texts{"a8-b6", "a8-c7"}));
}

TEST(MoveGeneration, KingOrder) {
    const TChessboard b = boardFromFen("7k/8/8/8/4K3/8/8/8", 1);
    EXPECT_EQ(manMoves(b, "e4"),
              (Texts{"e4-e3", "e4-d3", "e4-f3", "e4-e5", "e4-d5", "e4-f5", "e4-d4", "e4-f4"}));
    const TChessboard corner = boardFromFen("7k/8/8/8/8/8/8/K7", 1);
    EXPECT_EQ(manMoves(corner, "a1"), (Texts{"a1-a2", "a1-b2", "a1-b1"}));
    // The generator makes no test of attacked squares.
    const TChessboard black = boardFromFen("7k/8/8/8/8/8/8/K5R1", 2);
    EXPECT_EQ(manMoves(black, "h8"), (Texts{"h8-h7", "h8-g7", "h8-g8"}));
}

TEST(MoveGeneration, CastlingsComeLastKingSideFirst) {
    const TChessboard white = boardFromFen("r3k2r/8/8/8/8/8/8/R3K2R", 1);
    EXPECT_EQ(manMoves(white, "e1"), (Texts{"e1-e2", "e1-d2", "e1-f2", "e1-d1", "e1-f1", "e1-g1", "e1-c1"}));
    const TChessboard black = boardFromFen("r3k2r/8/8/8/8/8/8/R3K2R", 2);
    EXPECT_EQ(manMoves(black, "e8"), (Texts{"e8-e7", "e8-d7", "e8-f7", "e8-d8", "e8-f8", "e8-g8", "e8-c8"}));
}

TEST(MoveGeneration, PawnStraightDoubleLowerCaptureHigherCapture) {
    const TChessboard white = boardFromFen("4k3/8/8/8/8/3n1b2/4P3/4K3", 1);
    EXPECT_EQ(manMoves(white, "e2"), (Texts{"e2-e3", "e2-e4", "e2-d3", "e2-f3"}));
    const TChessboard black = boardFromFen("4k3/4p3/3N1B2/8/8/8/8/4K3", 2);
    EXPECT_EQ(manMoves(black, "e7"), (Texts{"e7-e6", "e7-e5", "e7-d6", "e7-f6"}));
}

TEST(MoveGeneration, BlockedPawns) {
    EXPECT_EQ(manMoves(boardFromFen("4k3/8/8/8/8/4n3/4P3/4K3", 1), "e2"), Texts{});
    EXPECT_EQ(manMoves(boardFromFen("4k3/8/8/8/4n3/8/4P3/4K3", 1), "e2"), Texts{"e2-e3"});
    // No double step off the start row.
    EXPECT_EQ(manMoves(boardFromFen("4k3/8/8/8/8/4P3/8/4K3", 1), "e3"), Texts{"e3-e4"});
    // Own men are not captured.
    EXPECT_EQ(manMoves(boardFromFen("4k3/8/8/8/8/3N1N2/4P3/4K3", 1), "e2"), (Texts{"e2-e3", "e2-e4"}));
}

TEST(MoveGeneration, PromotionsQueenRookBishopKnight) {
    const TChessboard white = boardFromFen("3n1n2/4P3/8/8/8/8/8/k3K3", 1);
    EXPECT_EQ(manMoves(white, "e7"), (Texts{"e7-e8Q", "e7-e8R", "e7-e8B", "e7-e8N", "e7-d8Q", "e7-d8R",
                                            "e7-d8B", "e7-d8N", "e7-f8Q", "e7-f8R", "e7-f8B", "e7-f8N"}));
    const TChessboard black = boardFromFen("4k3/8/8/8/8/8/4p3/3N1N1K", 2);
    EXPECT_EQ(manMoves(black, "e2"), (Texts{"e2-e1Q", "e2-e1R", "e2-e1B", "e2-e1N", "e2-d1Q", "e2-d1R",
                                            "e2-d1B", "e2-d1N", "e2-f1Q", "e2-f1R", "e2-f1B", "e2-f1N"}));
}

TEST(MoveGeneration, EnPassantRightAfterTheCaptureOnItsColumn) {
    // f7-f5 beside e5; a black knight on d6 gives the lower-column capture.
    GameLine higher(boardFromFen("4k3/5p2/3n4/4P3/8/8/8/4K3", 4));
    ASSERT_TRUE(higher.play("f7-f5"));
    EXPECT_EQ(manMoves(higher.last(), "e5"), (Texts{"e5-e6", "e5-d6", "e5-f6"}));

    // d7-d5 beside e5: en passant on the lower column, before the capture on f6.
    GameLine lower(boardFromFen("4k3/3p4/5n2/4P3/8/8/8/4K3", 4));
    ASSERT_TRUE(lower.play("d7-d5"));
    TMove moves[MAX_MOVES];
    const int n = GenerateWhiteManMoves(lower.last(), sq("e5"), moves);
    ASSERT_EQ(texts(moves, n), (Texts{"e5-e6", "e5-d6", "e5-f6"}));
    EXPECT_EQ(lower.last().m_aSquares[sq("d6")], 0); // d6 empty: the en passant one

    // Black: after d2-d4 beside e4 and c4.
    GameLine black(boardFromFen("4k3/8/8/8/2p1p3/8/3P4/4K3", 3));
    ASSERT_TRUE(black.play("d2-d4"));
    EXPECT_EQ(manMoves(black.last(), "c4"), (Texts{"c4-c3", "c4-d3"}));
    EXPECT_EQ(manMoves(black.last(), "e4"), (Texts{"e4-e3", "e4-d3"}));
}

TEST(MoveGeneration, NoEnPassantWithoutAParent) {
    GameLine line(boardFromFen("4k3/5p2/3n4/4P3/8/8/8/4K3", 4));
    ASSERT_TRUE(line.play("f7-f5"));
    TChessboard orphan = line.last();
    orphan.m_pParent = nullptr; // the last move is still f7-f5
    EXPECT_EQ(orphan.m_LastMove.from, sq("f7"));
    EXPECT_EQ(manMoves(orphan, "e5"), (Texts{"e5-e6", "e5-d6"}));

    // A root position with the pawns in place offers nothing either.
    const TChessboard root = boardFromFen("4k3/8/3n4/4Pp2/8/8/8/4K3 w - f6 0 1", 1);
    EXPECT_EQ(manMoves(root, "e5"), (Texts{"e5-e6", "e5-d6"}));
}

TEST(MoveGeneration, NoEnPassantAfterASingleStepOrAnotherMove) {
    GameLine single(boardFromFen("4k3/8/5p2/4P3/8/8/8/4K3", 4));
    ASSERT_TRUE(single.play("f6-f5"));
    EXPECT_EQ(manMoves(single.last(), "e5"), Texts{"e5-e6"});

    GameLine later(boardFromFen("4k3/5p2/8/4P3/8/8/8/4K3", 4));
    ASSERT_TRUE(later.play("f7-f5"));
    ASSERT_TRUE(later.play("e1-d1"));
    ASSERT_TRUE(later.play("e8-d8"));
    EXPECT_EQ(manMoves(later.last(), "e5"), Texts{"e5-e6"});
}

TEST(MoveGeneration, WrongColourOrNoManGivesNothing) {
    const TChessboard b = boardFromFen("4k3/8/8/8/3r4/8/8/4K3", 1);
    TMove moves[MAX_MOVES];
    EXPECT_EQ(GenerateWhiteManMoves(b, sq("d4"), moves), 0);
    EXPECT_EQ(GenerateWhiteManMoves(b, sq("a4"), moves), 0);
    EXPECT_EQ(GenerateBlackManMoves(b, sq("e1"), moves), 0);
    EXPECT_EQ(GenerateBlackManMoves(b, sq("d4"), moves), 14);
    TChessboard marked = b;
    marked.m_aSquares[sq("a4")] = static_cast<uint8_t>(WP | PAWN_BLOCK_MARK);
    EXPECT_EQ(GenerateWhiteManMoves(marked, sq("a4"), moves), 0);
}

TEST(MoveGeneration, NoTestForTheEnemyKing) {
    // The rook's ray ends on the black king like on any black man.
    const TChessboard b = boardFromFen("4k3/8/8/8/8/8/8/K3R3", 1);
    const Texts moves = manMoves(b, "e1");
    EXPECT_EQ(moves.size(), 13u);
    EXPECT_EQ(moves[6], "e1-e8");
}

TEST(MoveGeneration, AllMovesSquareBySquareFromA1) {
    const TChessboard b = boardFromFen("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", 1);
    TMove moves[MAX_MOVES];
    const int n = GenerateWhiteMoves(b, moves);
    EXPECT_EQ(texts(moves, n), (Texts{"b1-a3", "b1-c3", "g1-f3", "g1-h3", "a2-a3", "a2-a4", "b2-b3",
                                      "b2-b4", "c2-c3", "c2-c4", "d2-d3", "d2-d4", "e2-e3", "e2-e4",
                                      "f2-f3", "f2-f4", "g2-g3", "g2-g4", "h2-h3", "h2-h4"}));
    const TChessboard black = boardFromFen("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", 2);
    const int nb = GenerateBlackMoves(black, moves);
    ASSERT_EQ(nb, 20);
    EXPECT_EQ(text(moves[0]), "a7-a6");
    EXPECT_EQ(text(moves[1]), "a7-a5");
    EXPECT_EQ(text(moves[16]), "b8-a6");
    EXPECT_EQ(text(moves[19]), "g8-h6");
}

TEST(Evasions, KingMovesThenCapturesThenInterpositions) {
    const TChessboard b = boardFromFen("4k3/8/8/4r3/2N4R/8/8/2B1K3", 1);
    ASSERT_EQ(b.m_cWhiteChecker, sq("e5"));
    TMove moves[MAX_MOVES];
    const int n = GenerateWhiteEvasions(b, moves);
    EXPECT_EQ(texts(moves, n),
              (Texts{"e1-e2", "e1-d2", "e1-f2", "e1-d1", "e1-f1", "c4-e5", "c4-e3", "c1-e3", "h4-e4"}));
    EXPECT_EQ(GenerateWhiteMovesOrEvasions(b, moves), n);
}

TEST(Evasions, DoubleCheckLeavesOnlyKingMoves) {
    const TChessboard b = boardFromFen("4k3/8/8/4r3/2N4R/3n4/8/2B1K3", 1);
    ASSERT_EQ(b.m_cWhiteChecker, DOUBLE_CHECK);
    TMove moves[MAX_MOVES];
    const int n = GenerateWhiteEvasions(b, moves);
    EXPECT_EQ(texts(moves, n), (Texts{"e1-e2", "e1-d2", "e1-f2", "e1-d1", "e1-f1"}));
}

TEST(Evasions, BlackTakesTheCheckingPawnEnPassant) {
    GameLine line(boardFromFen("8/8/8/4k3/4p3/8/3P4/4K3", 3));
    ASSERT_TRUE(line.play("d2-d4"));
    const TChessboard& b = line.last();
    ASSERT_EQ(b.m_cBlackChecker, sq("d4"));
    TMove moves[MAX_MOVES];
    const int n = GenerateBlackEvasions(b, moves);
    EXPECT_EQ(texts(moves, n),
              (Texts{"e5-d4", "e5-f4", "e5-e6", "e5-d6", "e5-f6", "e5-d5", "e5-f5", "e4-d3"}));
    EXPECT_EQ(GenerateBlackMovesOrEvasions(b, moves), n);
    // Every one of them is legal: the pawn on d4 guards nothing the king steps on.
    int made = 0;
    for (int i = 0; i < n; ++i) {
        TChessboard child;
        CopyToChild(child, b);
        made += MakeBlackMove(child, moves[i], false) == BLACK_MOVE_MADE;
    }
    EXPECT_EQ(made, 8);
}

TEST(Evasions, BlackCapturesAndInterposes) {
    // Rook a8 checks along the row; the bishop takes it, the knight blocks on f8 or d8.
    const TChessboard b = boardFromFen("R5k1/8/4n3/3b4/8/8/8/6K1", 2);
    ASSERT_EQ(b.m_cBlackChecker, sq("a8"));
    TMove moves[MAX_MOVES];
    const int n = GenerateBlackEvasions(b, moves);
    EXPECT_EQ(texts(moves, n),
              (Texts{"g8-g7", "g8-f7", "g8-h7", "g8-f8", "g8-h8", "d5-a8", "e6-f8", "e6-d8"}));
}

TEST(AttackTests, EveryKindOfAttacker) {
    const TChessboard b = boardFromFen("4k3/8/8/3p4/8/7n/8/4K2R", 1);
    // Black pawn d5 attacks c4 and e4, not d4.
    EXPECT_TRUE(IsAttackedByBlack(b, 2, 3));
    EXPECT_TRUE(IsAttackedByBlack(b, 4, 3));
    EXPECT_FALSE(IsAttackedByBlack(b, 3, 3));
    // Knight h3 attacks g1, f2, g5, not e2.
    EXPECT_TRUE(IsAttackedByBlack(b, 6, 0));
    EXPECT_TRUE(IsAttackedByBlack(b, 5, 1));
    EXPECT_TRUE(IsAttackedByBlack(b, 6, 4));
    EXPECT_FALSE(IsAttackedByBlack(b, 4, 1));
    // King e8 attacks d7, not e6.
    EXPECT_TRUE(IsAttackedByBlack(b, 3, 6));
    EXPECT_FALSE(IsAttackedByBlack(b, 4, 5));
    // Rook h1 takes on h3 and sees no further; along the row the white king stops it.
    EXPECT_TRUE(IsAttackedByWhite(b, 7, 2));
    EXPECT_FALSE(IsAttackedByWhite(b, 7, 3));
    EXPECT_TRUE(IsAttackedByWhite(b, 5, 0));
    EXPECT_TRUE(IsAttackedByWhite(b, 3, 0)); // by the king
    EXPECT_FALSE(IsAttackedByWhite(b, 2, 0));
    EXPECT_FALSE(IsAttackedByWhite(b, 6, 6));
}

TEST(AttackTests, SlidersStopAtTheFirstMan) {
    const TChessboard b = boardFromFen("7k/8/8/8/3P4/8/1B6/K7", 1);
    EXPECT_TRUE(IsAttackedByWhite(b, 2, 2));  // c3 by the bishop
    EXPECT_FALSE(IsAttackedByWhite(b, 5, 5)); // f6 behind the own pawn on d4
    EXPECT_TRUE(IsAttackedByWhite(b, 2, 4));  // c5 by the pawn
    EXPECT_FALSE(IsAttackedByWhite(b, 3, 4)); // a pawn does not attack straight
    const TChessboard q = boardFromFen("7k/8/8/8/8/8/K7/3q4", 2);
    EXPECT_TRUE(IsAttackedByBlack(q, 3, 7));
    EXPECT_TRUE(IsAttackedByBlack(q, 7, 4));
    EXPECT_TRUE(IsAttackedByBlack(q, 1, 0));
    EXPECT_FALSE(IsAttackedByBlack(q, 4, 2));
}

TEST(AttackTests, AttackersNoneOneOrMany) {
    const TChessboard b = boardFromFen("4k3/8/3N4/8/8/8/8/K3R3", 1);
    TSquareList list;
    EXPECT_EQ(WhiteAttackers(b, 4, 7, &list), DOUBLE_CHECK);
    ASSERT_EQ(list.count, 2);
    // Knights before sliders.
    EXPECT_EQ(list.cols[0], 3);
    EXPECT_EQ(list.rows[0], 5);
    EXPECT_EQ(list.cols[1], 4);
    EXPECT_EQ(list.rows[1], 0);

    EXPECT_EQ(WhiteAttackers(b, 4, 4), sq("e1"));
    EXPECT_EQ(WhiteAttackers(b, 7, 6), NO_SQUARE);
    TSquareList empty;
    EXPECT_EQ(WhiteAttackers(b, 7, 6, &empty), NO_SQUARE);
    EXPECT_EQ(empty.count, 0);
    EXPECT_EQ(WhiteAttackers(b, 1, 1), sq("a1")); // the king counts

    const TChessboard black = boardFromFen("k7/8/8/8/2p5/8/8/4K3", 2);
    EXPECT_EQ(BlackAttackers(black, 1, 2), sq("c4"));
    EXPECT_EQ(BlackAttackers(black, 2, 2), NO_SQUARE);
    EXPECT_EQ(BlackAttackers(black, 1, 6), sq("a8"));
}

TEST(AttackTests, ManAttacksSquare) {
    const TChessboard b = boardFromFen("4k3/8/8/8/1n6/8/4P3/R3K3", 1);
    EXPECT_TRUE(ManAttacksSquare(b, sq("a8"), sq("a1")));
    EXPECT_TRUE(ManAttacksSquare(b, sq("d1"), sq("a1")));
    EXPECT_FALSE(ManAttacksSquare(b, sq("f1"), sq("a1"))); // the king is in the way
    EXPECT_FALSE(ManAttacksSquare(b, sq("b2"), sq("a1"))); // no diagonal for a rook
    EXPECT_TRUE(ManAttacksSquare(b, sq("d3"), sq("e2")));
    EXPECT_TRUE(ManAttacksSquare(b, sq("f3"), sq("e2")));
    EXPECT_FALSE(ManAttacksSquare(b, sq("e3"), sq("e2"))); // pawns only diagonally
    EXPECT_TRUE(ManAttacksSquare(b, sq("d3"), sq("b4")));
    EXPECT_TRUE(ManAttacksSquare(b, sq("a2"), sq("b4")));
    EXPECT_FALSE(ManAttacksSquare(b, sq("b2"), sq("b4")));
    EXPECT_TRUE(ManAttacksSquare(b, sq("d7"), sq("e8")));
    EXPECT_FALSE(ManAttacksSquare(b, sq("e6"), sq("e8")));
    EXPECT_FALSE(ManAttacksSquare(b, sq("e8"), sq("e8")));
}

TEST(AttackTests, MenReachingAnEmptySquare) {
    const TChessboard b = boardFromFen("4k3/4p3/8/8/8/6N1/4P3/4K2R", 1);
    TSquareList white;
    WhiteMenReaching(b, 4, 3, white); // e4: the pawn's double step and the knight
    ASSERT_EQ(white.count, 2);
    EXPECT_EQ(squareOf(white.cols[0], white.rows[0]), sq("e2"));
    EXPECT_EQ(squareOf(white.cols[1], white.rows[1]), sq("g3"));
    TSquareList rook;
    WhiteMenReaching(b, 7, 5, rook); // h6: the rook up its file
    ASSERT_EQ(rook.count, 1);
    EXPECT_EQ(squareOf(rook.cols[0], rook.rows[0]), sq("h1"));
    TSquareList diagonal;
    WhiteMenReaching(b, 3, 2, diagonal); // d3: a capture square of the pawn, not a step
    EXPECT_EQ(diagonal.count, 0);

    TSquareList black;
    BlackMenReaching(b, 4, 4, black); // e5: the black double step
    ASSERT_EQ(black.count, 1);
    EXPECT_EQ(squareOf(black.cols[0], black.rows[0]), sq("e7"));
    TSquareList blocked;
    const TChessboard b2 = boardFromFen("4k3/4p3/4n3/8/8/8/8/4K3", 2);
    BlackMenReaching(b2, 4, 4, blocked); // the knight on e6 blocks the double step
    EXPECT_EQ(blocked.count, 0);
}

TEST(KnightTable, TwentyFiveClassesAndTheirJumpCounts) {
    std::set<int> classes;
    for (int s = 0; s < 64; ++s) classes.insert(KnightClass(s));
    EXPECT_EQ(classes.size(), 25u);
    EXPECT_EQ(KnightJumpCount(sq("a1")), 2);
    EXPECT_EQ(KnightJumpCount(sq("h8")), 2);
    EXPECT_EQ(KnightJumpCount(sq("b1")), 3);
    EXPECT_EQ(KnightJumpCount(sq("a2")), 3);
    EXPECT_EQ(KnightJumpCount(sq("g8")), 3);
    EXPECT_EQ(KnightJumpCount(sq("b2")), 4);
    EXPECT_EQ(KnightJumpCount(sq("c1")), 4);
    EXPECT_EQ(KnightJumpCount(sq("a4")), 4);
    EXPECT_EQ(KnightJumpCount(sq("g7")), 4);
    EXPECT_EQ(KnightJumpCount(sq("b4")), 6);
    EXPECT_EQ(KnightJumpCount(sq("e2")), 6);
    EXPECT_EQ(KnightJumpCount(sq("g5")), 6);
    EXPECT_EQ(KnightJumpCount(sq("c3")), 8);
    EXPECT_EQ(KnightJumpCount(sq("e5")), 8);
    EXPECT_EQ(KnightJumpCount(sq("f6")), 8);
    int total = 0;
    for (int s = 0; s < 64; ++s) total += KnightJumpCount(s);
    EXPECT_EQ(total, 336);
}

TEST(KnightTable, JumpsStayOnTheBoardAndRowsArePadded) {
    for (int s = 0; s < 64; ++s) {
        const int8_t* jumps = KnightJumps(s);
        const int n = KnightJumpCount(s);
        int previous = -100;
        for (int i = 0; i < n; ++i) {
            const int to = s + jumps[i];
            ASSERT_GE(to, 0) << s;
            ASSERT_LT(to, 64) << s;
            EXPECT_EQ(absInt((colOf(to) - colOf(s)) * (rowOf(to) - rowOf(s))), 2) << s << " " << to;
            EXPECT_GT(jumps[i], previous) << s; // in the order of the offsets
            previous = jumps[i];
        }
        for (int i = n; i < 8; ++i) EXPECT_EQ(jumps[i], jumps[n - 1]) << s;
    }
    const int8_t* corner = KnightJumps(sq("a1"));
    EXPECT_EQ(corner[0], 10);
    EXPECT_EQ(corner[1], 17);
    EXPECT_EQ(corner[7], 17);
}

TEST(KnightTable, AttackTestReadsAllEightJumps) {
    uint8_t squares[64] = {};
    squares[sq("c2")] = BN;
    EXPECT_TRUE(KnightOnJump(squares, sq("a1"), BN));
    EXPECT_TRUE(KnightOnJump(squares, sq("e3"), BN));
    EXPECT_FALSE(KnightOnJump(squares, sq("a1"), WN));
    EXPECT_FALSE(KnightOnJump(squares, sq("c4"), BN));
}

} // namespace
} // namespace zorvane
