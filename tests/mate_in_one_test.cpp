// Mate at once: the routine that tries only the moves that may check, judged
// first by sets of squares, finds exactly the first mate that playing every
// White move in the base order finds, in every position of several trees.
#include "core/fen.h"
#include "core/thread_context.h"
#include "engine/mate_in_one.h"
#include "mate_oracle.h"
#include "position_walk.h"
#include "test_positions.h"
#include "test_squares.h"

#include <gtest/gtest.h>

#include <memory>

namespace zorvane {
namespace {

// A tree to walk: the root, its plies left, and how deep to go.
struct Tree {
    const char* fen;
    int plies;
    int depth;
};

struct Tally {
    int positions = 0;
    int mates = 0;
};

Tally compareInTrees(std::initializer_list<Tree> trees) {
    Tally tally;
    auto context = std::make_unique<TThreadContext>();
    for (const Tree& tree : trees) {
        const TChessboard root = boardFromFen(tree.fen, tree.plies, context.get());
        ForEachPosition(root, tree.depth, [&](const TChessboard& b) {
            if (!b.whiteToMove()) return;
            TChessboard probe = b;
            TMove fast, played;
            const bool found = FindMateInOne(probe, &fast);
            ASSERT_EQ(found, FirstMateByPlayingAll(b, played))
                << tree.fen << " after " << FormatLogMove(b.m_LastMove);
            if (found) {
                ASSERT_EQ(fast, played) << tree.fen;
                ++tally.mates;
            }
            ++tally.positions;
        });
    }
    return tally;
}

TEST(MateInOne, AgreesWithPlayingEveryMoveInPublishedTrees) {
    const Tally tally = compareInTrees({
        {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -", 5, 2},
        {"8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - -", 7, 4},
        {"r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq -", 5, 2},
        {"rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ -", 5, 2},
    });
    EXPECT_GT(tally.positions, 10000);
    EXPECT_GT(tally.mates, 0);
}

// Positions rich in mates: a queen and rooks round a king, promotions, a
// discovered check, a mate by castling and one by en passant.
TEST(MateInOne, AgreesWithPlayingEveryMoveNearMates) {
    const Tally tally = compareInTrees({
        {"7R/8/4Qp2/1p2b3/3rkp2/6P1/1P2P3/5RK1 w - -", 5, 2},
        {"6k1/5ppp/8/8/8/8/5PPP/R3R1K1 w - -", 5, 2},
        {"3k4/1P1P4/K7/8/8/8/8/2R5 w - -", 5, 2},
        {"1k6/1p6/1K6/8/8/8/1B6/1R6 w - -", 5, 2},
        {"4k3/8/8/8/8/8/8/4K2R w K -", 3, 2},
        {"4rkr1/4p1p1/8/8/8/8/8/4K2R w K -", 3, 2},
        {"2N5/3p4/p7/k3P2R/pp6/8/8/7K b - -", 4, 1},
    });
    EXPECT_GT(tally.positions, 1000);
    EXPECT_GT(tally.mates, 50);
}

TEST(MateInOne, CastlingThatMates) {
    auto context = std::make_unique<TThreadContext>();
    TChessboard b = boardFromFen("4rkr1/4p1p1/8/8/8/8/8/4K2R w K -", 1, context.get());
    TMove mate;
    ASSERT_TRUE(FindMateInOne(b, &mate));
    EXPECT_EQ(mate, mv("e1", "g1"));
}

TEST(MateInOne, EnPassantThatMates) {
    // Taking d5 in passing clears the fifth row for the rook on h5.
    auto context = std::make_unique<TThreadContext>();
    const TChessboard root = boardFromFen("2N5/3p4/p7/k3P2R/pp6/8/8/7K b - -", 2, context.get());
    GameLine line(root);
    ASSERT_TRUE(line.play("d7-d5"));
    TChessboard b = line.last();
    TMove mate;
    ASSERT_TRUE(FindMateInOne(b, &mate));
    EXPECT_EQ(mate, mv("e5", "d6"));
}

TEST(MateInOne, APinnedManDoesNotAnswerTheCheck) {
    // The knight on e6 could take on a8 or step between, but the bishop on c4
    // pins it to the king.
    auto context = std::make_unique<TThreadContext>();
    TChessboard b = boardFromFen("6k1/6pp/3Nn3/8/2B5/8/8/RK6 w - -", 1, context.get());
    TMove mate;
    ASSERT_TRUE(FindMateInOne(b, &mate));
    EXPECT_EQ(mate, mv("a1", "a8"));
}

TEST(MateInOne, ADoubleStepBetweenAnswersTheCheck) {
    // After Bb2+ only e7-e5 comes between, and it does.
    auto context = std::make_unique<TThreadContext>();
    TChessboard b = boardFromFen("7k/4p2p/8/8/8/B7/8/2K3R1 w - -", 1, context.get());
    TMove played = mv("a3", "b2");
    TChessboard child;
    EXPECT_FALSE(MatesAtOnce(b, child, played));
    EXPECT_FALSE(FindMateInOne(b));
}

TEST(MateInOne, AKingLeftToBeTakenDoesNoHarm) {
    // No search reaches such a position, but a board being set up may show
    // one: Black stands in check with White to move. The answer is whatever
    // playing every move gives, and nothing reads outside its tables.
    auto context = std::make_unique<TThreadContext>();
    TChessboard b = boardFromFen("2k5/1P1P4/K7/8/8/8/8/3R4 w - -", 1, context.get());
    TMove fast, played;
    const bool found = FindMateInOne(b, &fast);
    EXPECT_EQ(found, FirstMateByPlayingAll(b, played));
}

} // namespace
} // namespace zorvane
