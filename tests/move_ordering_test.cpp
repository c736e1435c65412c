// Move ordering: keys, cuts, and what the sorts leave in the list.
#include "core/fen.h"
#include "core/movegen.h"
#include "core/thread_context.h"
#include "engine/move_ordering.h"
#include "engine/solve_job.h"
#include "problems/chess_problem.h"
#include "problems/sort_indication.h"
#include "test_squares.h"

#include <gtest/gtest.h>

using namespace zorvane;

namespace {

struct Root {
    TChessProblem problem;
    SolveJob job{problem};
    TThreadContext ctx;
    TChessboard board = EmptyChessboard();
    Root(const char* fen, int plies) {
        ctx.m_pJob = &job;
        EXPECT_TRUE(ReadFen(fen, board));
        board.m_pProblem = &problem;
        board.m_pThread = &ctx;
        board.m_shPliesLeft = board.m_shPliesTotal = static_cast<uint16_t>(plies);
        SetupChessboard(board, false);
        ctx.m_pRoot = &board;
    }
};

int indexOf(const TMove* moves, int count, const TMove& move) {
    for (int i = 0; i < count; ++i)
        if (moves[i] == move) return i;
    return -1;
}

} // namespace

TEST(SkipWorstWhiteMoves, CutsOnlyLongLists) {
    EXPECT_EQ(SkipWorstWhiteMoves(24), 24);
    EXPECT_EQ(SkipWorstWhiteMoves(100), 80);
    EXPECT_EQ(SkipWorstWhiteMoves(30), 25);
}

TEST(SortWhiteMoves, AnIndicationComesFirstAndANegatedOneLastYetKept) {
    Root root("8/8/8/8/8/4K3/2R5/k7", 9);
    ParseSortIndications(root.job.activeSortIndications, "1.Ke3-d3; ~1.Rc2-c1", 1);
    TMove moves[MAX_MOVES];
    const int generated = GenerateWhiteMovesOrEvasions(root.board, moves);
    WhiteSortOutcome outcome;
    const int count = SortWhiteMoves(root.board, moves, generated, true, outcome);
    EXPECT_EQ(count, generated);
    EXPECT_EQ(moves[0], mv("e3", "d3"));
    EXPECT_EQ(moves[0].promotion & MOVE_MARK_INDICATED, MOVE_MARK_INDICATED);
    EXPECT_EQ(outcome.indicated, 1);
    // Rc2-c1 stays in the list, behind every ranked move.
    const int sentBack = indexOf(moves, count, mv("c2", "c1"));
    ASSERT_GE(sentBack, 0);
    for (int i = 0; i < count; ++i) {
        if (moves[i].enPassant < WHITE_KEY_SENT_BACK) {
            EXPECT_LT(i, sentBack);
        }
    }
}

TEST(SortWhiteMoves, ARefusedRootMoveGets127AndStays) {
    // King and bishop cannot mate a bare king: the maker refuses every move.
    Root root("k7/8/8/8/8/8/8/1B4K1", 3);
    TMove moves[MAX_MOVES];
    const int generated = GenerateWhiteMovesOrEvasions(root.board, moves);
    WhiteSortOutcome outcome;
    const int count = SortWhiteMoves(root.board, moves, generated, true, outcome);
    EXPECT_EQ(count, generated);
    for (int i = 0; i < count; ++i) EXPECT_EQ(moves[i].enPassant, WHITE_KEY_ROOT_REMOVED);
}

TEST(SortWhiteMoves, BelowTheRootAListOfRefusedMovesCountsZero) {
    Root root("k7/8/8/8/8/8/8/1B4K1", 3);
    TMove moves[MAX_MOVES];
    const int generated = GenerateWhiteMovesOrEvasions(root.board, moves);
    ASSERT_GT(generated, 0);
    WhiteSortOutcome outcome;
    EXPECT_EQ(SortWhiteMoves(root.board, moves, generated, false, outcome), 0);
}

TEST(SortBlackMoves, OnlyAnIllegalReplyGivesZero) {
    // Black: Ka8 and nothing else; every king step walks into White's men.
    Root root("k7/2K5/1Q6/8/8/8/8/8", 4);
    TMove moves[MAX_MOVES];
    const int generated = GenerateBlackMovesOrEvasions(root.board, moves);
    ASSERT_GT(generated, 0);
    EXPECT_EQ(SortBlackMoves(root.board, moves, generated, TMove{}), BLACK_SORT_NO_REPLY);
}

TEST(SortBlackMoves, TheReplyThatRefutedLastTimeComesRightAfterTheChecks) {
    // Black's rook checks on e2 or h1; the pawn's step to c4 refuted last time.
    Root root("k7/8/8/2p5/8/8/7r/4K3", 4);
    TMove moves[MAX_MOVES];
    const int generated = GenerateBlackMovesOrEvasions(root.board, moves);
    const int count = SortBlackMoves(root.board, moves, generated, mv("c5", "c4"));
    ASSERT_GT(count, 3);
    EXPECT_EQ(moves[0], mv("h2", "e2")); // a check beside the king, nearer to him
    EXPECT_EQ(moves[1], mv("h2", "h1"));
    EXPECT_EQ(moves[2], mv("c5", "c4"));
}
