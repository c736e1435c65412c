// The temporary register in the proof search: which positions it may hold,
// and that it keeps the keys while it shortens the search.
#include "engine/mate_search.h"
#include "engine/register_eligibility.h"
#include "test_positions.h"
#include "test_squares.h"

#include <gtest/gtest.h>

namespace zorvane {
namespace {

TEST(RegisterEligibility, PlainPositionIsEligible) {
    EXPECT_TRUE(RegisterEligible(boardFromFen("k7/8/1K6/8/8/8/8/7R", 3)));
}

TEST(RegisterEligibility, PossibleEnPassantKeepsThePositionOut) {
    GameLine line(boardFromFen("4k3/3p4/8/4P3/8/8/8/4K3", 4));
    ASSERT_TRUE(line.play("d7-d5"));
    EXPECT_FALSE(RegisterEligible(line.last()));
    GameLine noCapturer(boardFromFen("4k3/3p4/8/6P1/8/8/8/4K3", 4));
    ASSERT_TRUE(noCapturer.play("d7-d5"));
    EXPECT_TRUE(RegisterEligible(noCapturer.last()));
}

TEST(RegisterEligibility, CastlingRightsMustFollowFromTheSquares) {
    // King and rooks at home with both rights alive: the squares tell the state.
    EXPECT_TRUE(RegisterEligible(boardFromFen("4k3/8/8/8/8/8/8/R3K2R", 3)));
    // The h1 rook went away and came back: same squares, one right gone.
    GameLine line(boardFromFen("4k3/8/8/8/8/8/8/R3K2R", 5));
    ASSERT_TRUE(line.play("h1-h2"));
    ASSERT_TRUE(line.play("e8-d8"));
    ASSERT_TRUE(line.play("h2-h1"));
    EXPECT_FALSE(RegisterEligible(line.last()));
    // Black's side is judged the same way.
    GameLine black(boardFromFen("r3k3/8/8/8/8/8/8/4K3", 4));
    ASSERT_TRUE(black.play("a8-a7"));
    ASSERT_TRUE(black.play("e1-d1"));
    ASSERT_TRUE(black.play("a7-a8"));
    EXPECT_FALSE(RegisterEligible(black.last()));
}

// Rook and king against the king in the corner, as a six-mover: many keys, and
// deep enough (11 plies) for the register.
constexpr const char* SIX_MOVER = "8/8/8/8/8/4K3/2R5/k7";

TEST(RegisterSearch, SameKeysWithAndWithoutTheRegister) {
    TChessboard board = boardFromFen(SIX_MOVER, 11);
    MateProof plain(false, false);
    MateProof withRegister(false, true);
    const MateKeys expected = plain.FindKeys(board, 6);
    const MateKeys found = withRegister.FindKeys(board, 6);
    EXPECT_EQ(found.texts, expected.texts);
    EXPECT_EQ(expected.texts.size(), 11u);
    EXPECT_LT(found.nodes * 4, expected.nodes);
}

TEST(RegisterSearch, WarmRegisterShortensARepeatedSolve) {
    TChessboard board = boardFromFen(SIX_MOVER, 11);
    MateProof proof;
    const MateKeys first = proof.FindKeys(board, 6);
    const MateKeys second = proof.FindKeys(board, 6);
    EXPECT_EQ(second.texts, first.texts);
    EXPECT_LT(second.nodes * 3, first.nodes);
}

TEST(RegisterSearch, ShortStipulationsDoNotTouchTheRegister) {
    // Below 10 plies the register is never asked: the node counts agree exactly.
    TChessboard board = boardFromFen(SIX_MOVER, 9);
    MateProof plain(false, false);
    MateProof withRegister(false, true);
    EXPECT_EQ(withRegister.FindKeys(board, 5).nodes, plain.FindKeys(board, 5).nodes);
}

} // namespace
} // namespace zorvane
