// The forcing-moves run: it proves what its candidates prove, never refutes,
// ends a node without candidates with reason 512 and a node past its level's
// depth with -4, and splits the set into its forms as m_nFfmWithOthers says.
#include "core/heuristic_params.h"
#include "engine/ffm_candidates.h"
#include "engine/find_forced_mate.h"
#include "engine/find_mate.h"
#include "engine/heuristic_bits.h"
#include "engine/heuristics_catalogue.h"
#include "test_line.h"
#include "test_squares.h"

#include <gtest/gtest.h>

using namespace zorvane;

namespace {

// The Black node after `key` from `fen` with `plies` at the root, under a
// forcing-moves set at `level`.
struct AfterKey : Line {
    AfterKey(const char* fen, int plies, uint8_t level, const TMove& key, uint32_t word = SH_FINDFORCEDMATE)
        : Line(fen, plies) {
        root.ctx.m_nFfmLevel = root.ctx.m_nFfmStartLevel = level;
        root.board.m_uHeuristics = word;
        root.board.m_uHeuristicParams = HeuristicFingerprintOf(root.board, root.ctx);
        play(key);
    }
};

// A White node searched as a forcing-moves run would search it.
int8_t forcingWhiteStep(Root& root, uint8_t level) {
    root.ctx.m_nFfmLevel = level;
    root.board.m_uHeuristics = SH_FINDFORCEDMATE;
    root.board.m_bPass = 1;
    root.ctx.m_bForcedMate = true;
    const int8_t result = FindMate(root.board, false);
    root.ctx.m_bForcedMate = false;
    return result;
}

} // namespace

TEST(FindForcedMate, TwoRooksMateByTheirMovesAndChecks) {
    // The rook roller: every White move of the mate is a check.
    // Rb2-g2 cuts the king off; the rook moves and the checks do the rest.
    AfterKey after("8/8/8/7k/8/R7/1R6/2K5 w - - 0 1", 7, FFM_LEVEL_CHECKS, mv("b2", "g2"));
    EXPECT_EQ(FindForcedMate(after.last()), RESULT_MATE);
    // The run leaves the set and the thread as it found them.
    EXPECT_EQ(after.last().m_uHeuristics, SH_FINDFORCEDMATE);
    EXPECT_FALSE(after.root.ctx.m_bForcedMate);
}

TEST(FindForcedMate, AFailedRunIsDoubtfulAndNeverNoMate) {
    // No mate at all: a lone rook cannot mate in two.
    AfterKey none("8/8/8/4k3/8/8/8/R6K w - - 0 1", 5, FFM_LEVEL_MATE1, mv("a1", "a5"));
    EXPECT_EQ(FindForcedMate(none.last()), RESULT_DOUBTFUL);
    // Nothing to try after any reply: still no refutation.
    AfterKey idle("7k/p7/8/8/8/8/P7/7K w - - 0 1", 5, FFM_LEVEL_MATE1, mv("h1", "g1"));
    EXPECT_EQ(FindForcedMate(idle.last()), RESULT_DOUBTFUL);
}

TEST(FindForcedMate, ANodeWithoutCandidatesIsDoubtfulWithReason512) {
    // Pawns and kings only, the black king free: nothing checks or threatens.
    Root root("7k/p7/8/8/8/8/P7/7K w - - 0 1", 3);
    EXPECT_EQ(forcingWhiteStep(root, FFM_LEVEL_MATE1), RESULT_DOUBTFUL);
    EXPECT_EQ(root.ctx.m_nDoubtfulReason, FFM_DOUBTFUL_REASON);
}

TEST(FindForcedMate, TheEndOfTheLevelsDepthGivesMinus4AndIsADoubtAbove) {
    // The checks and rook moves are tried and fail; a threat of mate in two
    // cannot be carried out with three plies left, so the level's depth ends here.
    const char* fen = "7k/p7/8/8/8/8/R7/4B2K w - - 0 1";
    Root root(fen, 3);
    EXPECT_EQ(forcingWhiteStep(root, FFM_LEVEL_MATE2), RESULT_FFM_DEPTH_END);
    // With depth enough for the level the same failure is a plain doubt.
    Root deep(fen, 5);
    EXPECT_EQ(forcingWhiteStep(deep, FFM_LEVEL_MATE2), RESULT_DOUBTFUL);
    // The Black step above reads -4 as a doubt.
    AfterKey after(fen, 5, FFM_LEVEL_MATE2, mv("h1", "g1"));
    after.root.ctx.m_bForcedMate = true;
    EXPECT_EQ(FindMateBlackStep(after.last()), RESULT_DOUBTFUL);
    after.root.ctx.m_bForcedMate = false;
}

TEST(FindForcedMate, TheFormsSplitTheSet) {
    const uint32_t word = SH_FINDFORCEDMATE | SH_3MOVESTOMATE;
    // "Yes": the whole set all through.
    AfterKey with("8/8/8/4k3/8/8/1R6/R6K w - - 0 1", 11, FFM_LEVEL_CHECKS, mv("a1", "a5"), word);
    with.root.ctx.m_nFfmWithOthers = FFM_WITH_OTHERS;
    FindForcedMate(with.last());
    EXPECT_EQ(with.root.ctx.m_uFfmAloneWord, word);
    EXPECT_EQ(with.root.ctx.m_uFfmFullWord, word);
    EXPECT_EQ(with.root.ctx.m_shFfmOthersFromPlies, 0);
    // "No": the run alone.
    AfterKey alone("8/8/8/4k3/8/8/1R6/R6K w - - 0 1", 11, FFM_LEVEL_CHECKS, mv("a1", "a5"), word);
    alone.root.ctx.m_nFfmWithOthers = FFM_WITHOUT_OTHERS;
    FindForcedMate(alone.last());
    EXPECT_EQ(alone.root.ctx.m_uFfmAloneWord, SH_FINDFORCEDMATE);
    EXPECT_EQ(alone.root.ctx.m_shFfmOthersFromPlies, 0);
    // "Partially": alone first, the others from half the line on.
    AfterKey partly("8/8/8/4k3/8/8/1R6/R6K w - - 0 1", 11, FFM_LEVEL_CHECKS, mv("a1", "a5"), word);
    partly.root.ctx.m_nFfmWithOthers = FFM_PARTIALLY_WITH_OTHERS;
    FindForcedMate(partly.last());
    EXPECT_EQ(partly.root.ctx.m_uFfmAloneWord, SH_FINDFORCEDMATE);
    EXPECT_EQ(partly.root.ctx.m_uFfmFullWord, word);
    EXPECT_EQ(partly.root.ctx.m_shFfmOthersFromPlies, 5);
    EXPECT_EQ(partly.last().m_uHeuristics, word);
    // A custom sequence of levels bets with the others whatever the form says.
    AfterKey custom("8/8/8/4k3/8/8/1R6/R6K w - - 0 1", 11, FFM_LEVEL_CHECKS, mv("a1", "a5"), word);
    custom.root.ctx.m_nFfmWithOthers = FFM_WITHOUT_OTHERS;
    custom.root.ctx.m_bFfmCustom = 1;
    FindForcedMate(custom.last());
    EXPECT_EQ(custom.root.ctx.m_uFfmAloneWord, word);
}

TEST(FindForcedMate, QueenAndBishopAgainstAnEdgeKingBetOnSurroundingHim) {
    const uint32_t word = SH_FINDFORCEDMATE | SH_KEEPKINGONTHEEDGE;
    AfterKey swapped("4k3/8/8/8/8/8/8/2B1QK2 w - - 0 1", 11, FFM_LEVEL_CHECKS, mv("e1", "e2"), word);
    swapped.root.ctx.m_bKingMoveStrict = 1;
    swapped.root.ctx.m_nFfmWithOthers = FFM_WITH_OTHERS;
    FindForcedMate(swapped.last());
    EXPECT_EQ(swapped.root.ctx.m_uFfmFullWord, SH_FINDFORCEDMATE | SH_ASSERTBLACKKINGSURROUNDED);
    EXPECT_EQ(swapped.last().m_uHeuristics, word);
    // A king free to walk the edge keeps the edge bet.
    AfterKey kept("4k3/8/8/8/8/8/8/2B1QK2 w - - 0 1", 11, FFM_LEVEL_CHECKS, mv("e1", "e2"), word);
    kept.root.ctx.m_bKingMoveStrict = 0;
    kept.root.ctx.m_nFfmWithOthers = FFM_WITH_OTHERS;
    FindForcedMate(kept.last());
    EXPECT_EQ(kept.root.ctx.m_uFfmFullWord, word);
}

TEST(FindForcedMate, APassRunsForcingMovesFromFourPliesUnderItsBit) {
    Root root("8/8/8/7k/8/R7/1R6/2K5 w - - 0 1", 7);
    root.board.m_uHeuristics = SH_FINDFORCEDMATE | SH_3MOVESTOMATE;
    EXPECT_TRUE(RunsForcedMate(root.board, FFM_MIN_ROOT_PLIES));
    EXPECT_FALSE(RunsForcedMate(root.board, FFM_MIN_ROOT_PLIES - 1));
    root.board.m_uHeuristics = SH_3MOVESTOMATE;
    EXPECT_FALSE(RunsForcedMate(root.board, 7));
}
