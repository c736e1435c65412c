// Model and ideal mates, on positions checked by hand.
#include "core/fen.h"
#include "problems/mate_quality.h"
#include "test_positions.h"

#include <gtest/gtest.h>

#include <string>

namespace zorvane {
namespace {

// Black to move.
TChessboard blackToMove(const std::string& fen) {
    return boardFromFen(fen, 2);
}

MateQuality quality(const std::string& fen) {
    return FindMateQuality(blackToMove(fen));
}

TEST(MateQuality, RookMateInTheCornerIsIdeal) {
    // Ra8 checks and holds g8, Kg6 holds g7 and h7, each once; every man takes part.
    const TChessboard board = blackToMove("R6k/8/6K1/8/8/8/8/8");
    EXPECT_EQ(FindMateQuality(board), MateQuality::Ideal);
    EXPECT_TRUE(IsIdealMate(board));
    EXPECT_TRUE(IsModelMate(board));
}

TEST(MateQuality, IdlePawnKeepsAModelButNoIdealMate) {
    // The pawn on a2 does nothing; a model mate may leave pawns idle, an ideal one not.
    const TChessboard board = blackToMove("R6k/8/6K1/8/8/8/P7/8");
    EXPECT_EQ(FindMateQuality(board), MateQuality::Model);
    EXPECT_TRUE(IsModelMate(board));
    EXPECT_FALSE(IsIdealMate(board));
}

TEST(MateQuality, IdleBlackManKeepsAModelButNoIdealMate) {
    // The black pawn on a7 blocks no square around the king.
    EXPECT_EQ(quality("R6k/p7/6K1/8/8/8/8/8"), MateQuality::Model);
}

TEST(MateQuality, SmotheredMateIsModel) {
    // g8, g7 and h7 are blocked by black men that nothing attacks; the knight
    // checks. The White king takes no part: a model, not an ideal mate.
    const TChessboard board = blackToMove("6rk/5Npp/8/8/8/8/8/K7");
    EXPECT_TRUE(IsModelMate(board));
    EXPECT_FALSE(IsIdealMate(board));
}

TEST(MateQuality, SquareGuardedTwiceIsImpure) {
    // h7 is held by both the queen and the king: a plain mate.
    const TChessboard board = blackToMove("7k/6Q1/6K1/8/8/8/8/8");
    EXPECT_EQ(FindMateQuality(board), MateQuality::Plain);
    EXPECT_FALSE(IsModelMate(board));
    EXPECT_FALSE(IsIdealMate(board));
    // With the king on f6 every square is held once, and the king guards the queen.
    EXPECT_EQ(quality("7k/6Q1/5K2/8/8/8/8/8"), MateQuality::Ideal);
}

TEST(MateQuality, AttackedBlockIsImpure) {
    // The black pawn on h7 stands on a square the bishop on d3 attacks.
    EXPECT_EQ(quality("R6k/7p/5K2/8/8/3B4/8/8"), MateQuality::Plain);
    // Without the bishop the block is clean, and everything takes part.
    EXPECT_EQ(quality("R6k/7p/5K2/8/8/8/8/8"), MateQuality::Ideal);
}

TEST(MateQuality, IdleFigureSpoilsTheModelMate) {
    // The knight on a1 holds nothing around the king.
    const TChessboard board = blackToMove("R6k/8/6K1/8/8/8/8/N7");
    EXPECT_EQ(FindMateQuality(board), MateQuality::Plain);
    EXPECT_FALSE(IsModelMate(board));
}

TEST(MateQuality, PinningFigureTakesPart) {
    // Without the bishop on e5 the knight on f6 would block on g8; the pin is
    // the bishop's only part, and it is enough. The knight blocks nothing: no
    // ideal mate.
    const TChessboard board = blackToMove("R6k/8/5nK1/4B3/8/8/8/8");
    EXPECT_EQ(FindMateQuality(board), MateQuality::Model);
    // A bishop that pins nothing and holds nothing spoils the model mate.
    EXPECT_EQ(quality("R6k/8/6K1/8/8/8/8/1B6"), MateQuality::Plain);
}

TEST(MateQuality, NoMateNoQuality) {
    // The king escapes to g7 or h7.
    EXPECT_EQ(quality("R6k/8/8/6K1/8/8/8/8"), MateQuality::NoMate);
    // Not in check at all.
    EXPECT_EQ(quality("7k/8/6K1/8/8/8/8/R7"), MateQuality::NoMate);
}

} // namespace
} // namespace zorvane
