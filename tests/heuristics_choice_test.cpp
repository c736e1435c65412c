// The automatic choice of the starting set, for the forcing-moves run: long
// problems where White can force play get it at level #1, with the other bets
// all through where the king is hemmed in, with further levels as the
// material promises, and behind a pass with the band rule when very long.
#include "core/heuristic_params.h"
#include "engine/heuristic_bits.h"
#include "engine/heuristic_relaxation.h"
#include "engine/heuristics_choice.h"
#include "test_line.h"

#include <gtest/gtest.h>

using namespace zorvane;

namespace {

constexpr const char* HEMMED_BEHIND_PAWNS = "6k1/5ppp/8/8/8/8/5PPP/3Q2K1 w - - 0 1";
constexpr const char* FREE_IN_THE_CENTRE = "8/p6p/3k4/8/8/8/PPP5/1K2Q3 w - - 0 1";
constexpr const char* FREE_IN_THE_BAND = "8/p6p/1k6/8/8/8/PPP5/1K2Q3 w - - 0 1";
constexpr const char* ROOKS_KINGS_TWO_APART = "3r4/pp6/8/8/8/2k5/6PP/K6R w - - 0 1";

} // namespace

TEST(HeuristicsChoice, ALongProblemWithAThreatAgainstAHemmedKingRunsForcingMovesWithTheOtherBets) {
    Root root(HEMMED_BEHIND_PAWNS, 11);
    InitialPositionTypeCheck(root.board, root.ctx);
    EXPECT_TRUE(root.board.m_uHeuristics & SH_FINDFORCEDMATE);
    EXPECT_EQ(root.ctx.m_nFfmLevel, FFM_LEVEL_MATE1);
    EXPECT_EQ(root.ctx.m_nFfmStartLevel, FFM_LEVEL_MATE1);
    EXPECT_EQ(root.ctx.m_nFfmWithOthers, FFM_WITH_OTHERS);
    // One white figure, his king far: one further level.
    EXPECT_EQ(root.ctx.m_nFfmRelaxations, 1);
    EXPECT_EQ(root.ctx.m_bFfmPreliminary, 0);
}

TEST(HeuristicsChoice, ShortProblemsAndMiniaturesGetNoForcingMoves) {
    Root shorter(HEMMED_BEHIND_PAWNS, 9);
    InitialPositionTypeCheck(shorter.board, shorter.ctx);
    EXPECT_FALSE(shorter.board.m_uHeuristics & SH_FINDFORCEDMATE);
    Root miniature("6k1/8/8/8/8/8/5PPP/3Q2K1 w - - 0 1", 21);
    InitialPositionTypeCheck(miniature.board, miniature.ctx);
    EXPECT_FALSE(miniature.board.m_uHeuristics & SH_FINDFORCEDMATE);
}

TEST(HeuristicsChoice, AFreeKingGetsTheRunPartiallyWithTheOtherBets) {
    Root root(FREE_IN_THE_CENTRE, 21);
    InitialPositionTypeCheck(root.board, root.ctx);
    EXPECT_TRUE(root.board.m_uHeuristics & SH_FINDFORCEDMATE);
    EXPECT_EQ(root.ctx.m_nFfmWithOthers, FFM_PARTIALLY_WITH_OTHERS);
    // The king is not in the band: no preliminary pass however long the problem.
    Root longer(FREE_IN_THE_CENTRE, 63);
    InitialPositionTypeCheck(longer.board, longer.ctx);
    EXPECT_EQ(longer.ctx.m_bFfmPreliminary, 0);
}

TEST(HeuristicsChoice, KingsTwoApartWithMatchedMaterialLetTheRunRelaxTwice) {
    Root root(ROOKS_KINGS_TWO_APART, 21);
    InitialPositionTypeCheck(root.board, root.ctx);
    EXPECT_TRUE(root.board.m_uHeuristics & SH_FINDFORCEDMATE);
    EXPECT_EQ(root.ctx.m_nFfmRelaxations, 2);
}

TEST(HeuristicsChoice, AVeryLongProblemStartsWithThePreliminaryBandPass) {
    Root root(FREE_IN_THE_BAND, 63);
    InitialPositionTypeCheck(root.board, root.ctx);
    ASSERT_EQ(root.ctx.m_bFfmPreliminary, 1);
    const uint32_t chosen = root.board.m_uHeuristics;
    ASSERT_TRUE(chosen & SH_FINDFORCEDMATE);
    // The first pass: the band rule without the run; the set waits parked.
    ParkForcedMateForPreliminaryPass(root.board, root.ctx);
    EXPECT_EQ(root.ctx.m_uFfmSavedHeuristics, chosen);
    EXPECT_FALSE(root.board.m_uHeuristics & SH_FINDFORCEDMATE);
    EXPECT_TRUE(root.board.m_uHeuristics & SH_KEEPKINGWITHINEXTEDGE);
    // The first relaxation puts it back.
    SolveWideHeuristicParams wide;
    HeuristicPassTimes times;
    EXPECT_NE(TryRelaxSpecialHeuristics(root.board, root.ctx, wide, times, {}), 0);
    EXPECT_EQ(root.board.m_uHeuristics, chosen);
    EXPECT_EQ(root.ctx.m_bFfmPreliminary, 0);
}

TEST(HeuristicsChoice, ASetWithoutThePreliminaryPassIsNotParked) {
    Root root(FREE_IN_THE_BAND, 21);
    InitialPositionTypeCheck(root.board, root.ctx);
    const uint32_t chosen = root.board.m_uHeuristics;
    ParkForcedMateForPreliminaryPass(root.board, root.ctx);
    EXPECT_EQ(root.board.m_uHeuristics, chosen);
}
