// The heuristics' tests after a black reply and after a White move: each bet
// breaks where it should, holds where it should, and the escape of a mate at
// once passes over the bets that have it.
#include "engine/heuristic_bits.h"
#include "engine/heuristic_tests.h"
#include "engine/impossibility.h"
#include "test_line.h"
#include "test_squares.h"

#include <gtest/gtest.h>

using namespace zorvane;

namespace {

// The line root -> White's move -> Black's reply under `set`; the answer of the test.
int afterReply(Line& line, uint32_t set, const TMove& white, const TMove& black) {
    line.root.board.m_uHeuristics = set;
    line.play(white);
    line.play(black);
    line.root.ctx.m_nDoubtfulReason = 0;
    return IsMateDoubtfulAfterBlackMove(line.last(), line.root.ctx);
}

} // namespace

TEST(HeuristicTests, AFarWhiteKingWithALoneRookCannotMateAnEdgeKingInTime) {
    Line far("7k/8/8/8/8/8/6R1/K7 w - - 0 1", 9);
    EXPECT_EQ(afterReply(far, SH_3MOVESTOMATE, mv("g2", "g3"), mv("h8", "h7")), HEURISTIC_DOUBTFUL);
    EXPECT_EQ(far.root.ctx.m_nDoubtfulReason, SH_3MOVESTOMATE);
    // Two squares nearer, the king arrives in time.
    Line near("7k/8/8/8/8/2K5/6R1/8 w - - 0 1", 9);
    EXPECT_NE(afterReply(near, SH_3MOVESTOMATE, mv("g2", "g3"), mv("h8", "h7")), HEURISTIC_DOUBTFUL);
    EXPECT_NE(near.root.ctx.m_nDoubtfulReason, SH_3MOVESTOMATE);
}

TEST(HeuristicTests, AKingThatMayNotMoveIsDoubtfulWhenItMovesWithoutAMateAtOnce) {
    Line moved("k7/8/8/2K5/8/8/8/7R w - - 0 1", 9);
    moved.root.ctx.m_bKingMoveStrict = 1;
    EXPECT_EQ(afterReply(moved, SH_KEEPKINGONTHEEDGE, mv("h1", "h2"), mv("a8", "a7")), HEURISTIC_DOUBTFUL);
    EXPECT_EQ(moved.root.ctx.m_nDoubtfulReason, SH_KEEPKINGONTHEEDGE);
    // Kb8 allows Rh8 mate: the bet is passed over.
    Line mated("k7/8/1K6/8/8/8/8/7R w - - 0 1", 9);
    mated.root.ctx.m_bKingMoveStrict = 1;
    EXPECT_EQ(afterReply(mated, SH_KEEPKINGONTHEEDGE, mv("h1", "h2"), mv("a8", "b8")), HEURISTIC_PASSED);
}

TEST(HeuristicTests, TheBandFormOfTheEdgeBetLetsTheKingWalkAlongTheEdge) {
    Line along("k7/8/8/2K5/8/8/8/7R w - - 0 1", 9);
    along.root.ctx.m_bKingMoveStrict = 0;
    EXPECT_EQ(afterReply(along, SH_KEEPKINGONTHEEDGE, mv("h1", "h2"), mv("a8", "a7")), HEURISTIC_PASSED);
    Line off("k7/8/8/2K5/8/8/8/7R w - - 0 1", 9);
    off.root.ctx.m_bKingMoveStrict = 0;
    EXPECT_EQ(afterReply(off, SH_KEEPKINGONTHEEDGE, mv("h1", "h2"), mv("a8", "b7")), HEURISTIC_DOUBTFUL);
}

TEST(HeuristicTests, TheBandBetBreaksOnlyWhenTheKingReachesTheCentreLines) {
    Line band("8/1k6/8/8/4K3/8/8/7R w - - 0 1", 9);
    EXPECT_EQ(afterReply(band, SH_KEEPKINGWITHINEXTEDGE, mv("h1", "h2"), mv("b7", "b6")), HEURISTIC_PASSED);
    Line centre("8/1k6/8/8/4K3/8/8/7R w - - 0 1", 9);
    EXPECT_EQ(afterReply(centre, SH_KEEPKINGWITHINEXTEDGE, mv("h1", "h2"), mv("b7", "c6")),
              HEURISTIC_DOUBTFUL);
    EXPECT_EQ(centre.root.ctx.m_nDoubtfulReason, SH_KEEPKINGWITHINEXTEDGE);
}

TEST(HeuristicTests, ALooseKingBreaksTheSurroundedBet) {
    Line loose("8/8/3k4/8/8/8/8/K6R w - - 0 1", 9);
    EXPECT_EQ(afterReply(loose, SH_ASSERTBLACKKINGSURROUNDED, mv("h1", "h2"), mv("d6", "d5")),
              HEURISTIC_DOUBTFUL);
    EXPECT_EQ(loose.root.ctx.m_nDoubtfulReason, SH_ASSERTBLACKKINGSURROUNDED);
    // Hemmed in by his own men and the rook, the king keeps the bet.
    Line hemmed("7k/6pp/8/8/8/8/8/K5R1 w - - 0 1", 9);
    EXPECT_EQ(afterReply(hemmed, SH_ASSERTBLACKKINGSURROUNDED, mv("a1", "b1"), mv("h7", "h6")),
              HEURISTIC_PASSED);
}

TEST(HeuristicTests, TheKeyFileHasNoEscapeOfAMateAtOnce) {
    // Rd8-d5 leaves the back rank to Ra8 mate, yet the key file's bet has no escape.
    Line line("3r2k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", 9);
    line.root.job.m_solveWideHeuristics.m_cKeyLineFile = 3;
    EXPECT_EQ(afterReply(line, SH_KEYLINE, mv("g1", "f1"), mv("d8", "d5")), HEURISTIC_DOUBTFUL);
    EXPECT_EQ(line.root.ctx.m_nDoubtfulReason, SH_KEYLINE);
    Line across("3r2k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", 9);
    across.root.job.m_solveWideHeuristics.m_cKeyLineFile = 3;
    EXPECT_EQ(afterReply(across, SH_KEYLINE, mv("g1", "f1"), mv("d8", "c8")), HEURISTIC_PASSED);
}

TEST(HeuristicTests, ALostWhiteFigureIsDoubtfulUnlessItWasTakenBack) {
    Line lost("k7/8/8/3n4/8/4N3/8/K6R w - - 0 1", 9);
    EXPECT_EQ(afterReply(lost, SH_DONTLOSEANYFIGURES, mv("h1", "h2"), mv("d5", "e3")), HEURISTIC_DOUBTFUL);
    EXPECT_EQ(lost.root.ctx.m_nDoubtfulReason, SH_DONTLOSEANYFIGURES);
    // White took on e3 first: Black's taking back is the price of the exchange.
    Line exchange("k7/8/8/3n4/8/4b3/8/K2QN2R w - - 0 1", 9);
    exchange.root.board.m_uHeuristics = SH_DONTLOSEANYFIGURES;
    exchange.play(mv("h1", "h3"));
    exchange.play(mv("a8", "b8"));
    EXPECT_EQ(afterReply(exchange, SH_DONTLOSEANYFIGURES, mv("h3", "e3"), mv("d5", "e3")), HEURISTIC_PASSED);
    // A pawn counts only in the stricter modes.
    Line pawn("k7/8/8/3n4/8/4P3/8/K6R w - - 0 1", 9);
    EXPECT_EQ(afterReply(pawn, SH_DONTLOSEANYFIGURES, mv("h1", "h2"), mv("d5", "e3")), HEURISTIC_PASSED);
}

TEST(HeuristicTests, AKingTooFarFromTheCornerBreaksTheCornerBet) {
    Line squares("8/8/8/8/8/1k6/8/3K3R w - - 0 1", 9);
    squares.root.ctx.m_cCornerDistance = 2;
    // b3 to c3: 2 + 2 squares from a1.
    EXPECT_EQ(afterReply(squares, SH_KEEPKINGNEARCORNER, mv("h1", "h8"), mv("b3", "c3")), HEURISTIC_DOUBTFUL);
    Line moves("8/8/8/8/8/1k6/8/3K3R w - - 0 1", 9);
    moves.root.ctx.m_cCornerDistance = -2;
    // In king moves c3 is 2 from a1: inside.
    EXPECT_EQ(afterReply(moves, SH_KEEPKINGNEARCORNER, mv("h1", "h8"), mv("b3", "c3")), HEURISTIC_PASSED);
}

TEST(HeuristicTests, TheTestsRaiseAndLowerTheirDepth) {
    Line line("k7/8/8/2K5/8/8/8/7R w - - 0 1", 9);
    line.root.ctx.m_nHeuristicsDepth = 3;
    afterReply(line, SH_KEEPKINGONTHEEDGE, mv("h1", "h2"), mv("a8", "a7"));
    EXPECT_EQ(line.root.ctx.m_nHeuristicsDepth, 3);
}

TEST(HeuristicTests, ABishopLeavingTheBlackKingsDiagonalIsDoubtfulAfterWhitesMove) {
    Line line("7k/6p1/8/8/3B4/8/8/K7 w - - 0 1", 9);
    line.root.board.m_uHeuristics = SH_KEEPKINGONTHEEDGE | SH_DONTLEAVEMAINDIAGONAL;
    line.root.ctx.m_bKingMoveStrict = 1;
    line.play(mv("d4", "c3"));
    EXPECT_FALSE(IsWhiteMoveDoubtful(line.last(), line.root.ctx));
    Line off("7k/6p1/8/8/3B4/8/8/K7 w - - 0 1", 9);
    off.root.board.m_uHeuristics = SH_KEEPKINGONTHEEDGE | SH_DONTLEAVEMAINDIAGONAL;
    off.root.ctx.m_bKingMoveStrict = 1;
    off.play(mv("d4", "e3"));
    EXPECT_TRUE(IsWhiteMoveDoubtful(off.last(), off.root.ctx));
    EXPECT_EQ(off.root.ctx.m_nDoubtfulReason, SH_DONTLEAVEMAINDIAGONAL);
}

TEST(HeuristicTests, WithAnEmptySetALoneRookFarFromAFreeKingIsStillCutOffByTheTail) {
    Line line("8/8/8/4k3/8/8/7R/K7 w - - 0 1", 7);
    EXPECT_EQ(afterReply(line, 0, mv("h2", "h3"), mv("e5", "e4")), HEURISTIC_IMPOSSIBLE);
    EXPECT_EQ(line.root.ctx.m_nDoubtfulReason, ImpossibilityReason(IMPOSSIBLE_LONE_ROOK));
    EXPECT_EQ(ImpossibilityAfterBlackMove(line.last(), line.root.ctx), HEURISTIC_IMPOSSIBLE);
    // A rook that stays with its king near an edge king may mate: no cut.
    Line near("k7/8/1K6/8/8/8/8/7R w - - 0 1", 7);
    EXPECT_EQ(afterReply(near, 0, mv("h1", "h2"), mv("a8", "b8")), HEURISTIC_PASSED);
}

TEST(HeuristicTests, ADeferOfThreeMovesLetsTheKingOffTheEdgeForSixPlies) {
    Line line("7k/8/8/8/8/8/8/R6K w - - 0 1", 15);
    TThreadContext& ctx = line.root.ctx;
    ctx.m_bKingMoveStrict = 0;
    ctx.m_wDeferMoves = 3;
    ctx.m_bDynRelaxOnAdvancedPawn = 1;
    // Off the edge with 13 plies left: the check waits until fewer than 13 - 6.
    EXPECT_NE(afterReply(line, SH_KEEPKINGONTHEEDGE, mv("a1", "a2"), mv("h8", "g7")), HEURISTIC_DOUBTFUL);
    EXPECT_TRUE(line.last().m_wFlags2 & FLAGS2_BAND_CHECK_DEFERRED);
    EXPECT_EQ(ctx.m_wDeferLimit, 7);
    const char* white[] = {"a2", "a3", "a4", "a5", "a6"};
    const char* black[] = {"g7", "f7", "e7", "d7", "c7"};
    for (int i = 0; i < 4; ++i) {
        line.play(mv(white[i], white[i + 1]));
        line.play(mv(black[i], black[i + 1]));
        const int answer = IsMateDoubtfulAfterBlackMove(line.last(), ctx);
        if (line.last().m_shPliesLeft >= 7)
            EXPECT_NE(answer, HEURISTIC_DOUBTFUL) << line.last().m_shPliesLeft << " plies left";
        else
            EXPECT_EQ(answer, HEURISTIC_DOUBTFUL) << line.last().m_shPliesLeft << " plies left";
    }
    EXPECT_EQ(ctx.m_nDoubtfulReason, SH_KEEPKINGONTHEEDGE);
    // Without a dynamic option there is nothing to wait for.
    Line at_once("7k/8/8/8/8/8/8/R6K w - - 0 1", 15);
    at_once.root.ctx.m_bKingMoveStrict = 0;
    at_once.root.ctx.m_wDeferMoves = 3;
    EXPECT_EQ(afterReply(at_once, SH_KEEPKINGONTHEEDGE, mv("a1", "a2"), mv("h8", "g7")), HEURISTIC_DOUBTFUL);
}
