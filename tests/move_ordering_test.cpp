// Move ordering: keys, cuts, and what the sorts leave in the list.
#include "core/fen.h"
#include "core/make_move.h"
#include "core/movegen.h"
#include "core/thread_context.h"
#include "engine/move_ordering.h"
#include "engine/solve_job.h"
#include "problems/chess_problem.h"
#include "engine/find_mate.h"
#include "engine/heuristic_bits.h"
#include "problems/sort_indication.h"
#include "test_line.h"
#include "test_squares.h"

#include <gtest/gtest.h>

using namespace zorvane;

namespace {

int indexOf(const TMove* moves, int count, const TMove& move) {
    for (int i = 0; i < count; ++i)
        if (moves[i] == move) return i;
    return -1;
}

// White's list of the last position of `line`, sorted below the root.
int sortedWhiteList(TChessboard& position, TMove* moves, WhiteSortOutcome& outcome) {
    const int generated = GenerateWhiteMovesOrEvasions(position, moves);
    return SortWhiteMoves(position, moves, generated, false, outcome);
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

TEST(SortWhiteMoves, TheHeuristicCutsTheWorstFifthOfALongList) {
    // 26 moves of two rooks and the king: 4/5 of them stay.
    Root root("4k3/8/8/8/8/8/8/R3K2R", 9);
    root.board.m_uHeuristics = SH_SKIPWORSTWHITEMOVES;
    TMove moves[MAX_MOVES];
    const int generated = GenerateWhiteMovesOrEvasions(root.board, moves);
    ASSERT_EQ(generated, 26);
    WhiteSortOutcome outcome;
    EXPECT_EQ(SortWhiteMoves(root.board, moves, generated, false, outcome), 25);
}

TEST(SortWhiteMoves, AMateAtOnceIsReportedAndComesFirst) {
    Root root("6k1/5ppp/8/8/8/8/5PPP/3R2K1", 9);
    TMove moves[MAX_MOVES];
    WhiteSortOutcome outcome;
    const int count = sortedWhiteList(root.board, moves, outcome);
    EXPECT_EQ(count, 20);
    EXPECT_TRUE(outcome.mateFound);
    EXPECT_EQ(outcome.mate, mv("d1", "d8"));
    EXPECT_EQ(moves[0], mv("d1", "d8"));
}

TEST(SortWhiteMoves, TheStoredKeyComesFirstWhileTheBlackKingStandsOnHisDiagramSquare) {
    Root root("6k1/5ppp/8/8/8/8/5PPP/3R2K1", 9);
    root.problem.startPosition = root.board;
    root.problem.expectedAnswers = {mv("g1", "f1")};
    TMove moves[MAX_MOVES];
    WhiteSortOutcome outcome;
    sortedWhiteList(root.board, moves, outcome);
    EXPECT_EQ(moves[0], mv("g1", "f1"));
    EXPECT_EQ(moves[0].enPassant, WHITE_KEY_INDICATED);
    EXPECT_EQ(outcome.indicated, 0); // a stored key is no indication of the user's
}

TEST(SortWhiteMoves, TheStoredKeyIsNoHintOnceTheBlackKingHasMoved) {
    Root root("6k1/5ppp/8/8/8/8/5PPP/3R2K1", 9);
    root.problem.startPosition = root.board;
    root.problem.expectedAnswers = {mv("g1", "f1")};
    // The same men with the black king on h8: not the diagram's position.
    Root moved("7k/5ppp/8/8/8/8/5PPP/3R2K1", 9);
    moved.job.problem.expectedAnswers = root.problem.expectedAnswers;
    moved.problem.startPosition = root.board;
    TMove moves[MAX_MOVES];
    WhiteSortOutcome outcome;
    const int count = sortedWhiteList(moved.board, moves, outcome);
    const int at = indexOf(moves, count, mv("g1", "f1"));
    ASSERT_GE(at, 0);
    EXPECT_NE(moves[at].enPassant, WHITE_KEY_INDICATED);
    EXPECT_EQ(moves[0], mv("d1", "d8"));
}

TEST(SortWhiteMoves, OfTwoEqualQueenMovesTheOneNearerTheKingsCornerGoesFirst) {
    // Qe6 (no flight left) and Qe8 (mate) share the best rank, and Qe6 is
    // generated first; Qe8 is nearer the corner h8 and is swapped in front.
    Root root("7k/8/6K1/1p6/4Q3/8/8/8", 9);
    TMove moves[MAX_MOVES];
    const int generated = GenerateWhiteMovesOrEvasions(root.board, moves);
    ASSERT_LT(indexOf(moves, generated, mv("e4", "e6")), indexOf(moves, generated, mv("e4", "e8")));
    WhiteSortOutcome outcome;
    const int count = SortWhiteMoves(root.board, moves, generated, false, outcome);
    ASSERT_GT(count, 1);
    EXPECT_EQ(moves[0], mv("e4", "e8"));
    EXPECT_EQ(moves[1], mv("e4", "e6"));
    EXPECT_EQ(moves[0].enPassant, moves[1].enPassant);
}

TEST(SortWhiteMoves, TheSecondSortPutsTheRookThatCutsTheKingOffBeforeTheChecks) {
    // The first key favours the checks Ra8+ and Rh8+; the finer key counts
    // the squares of the king's field: Ra7 and Rh7 hold the whole seventh row.
    Root root("4k3/8/8/8/8/8/8/R3K2R", 9);
    TMove moves[MAX_MOVES];
    WhiteSortOutcome outcome;
    const int count = sortedWhiteList(root.board, moves, outcome);
    ASSERT_EQ(count, 26);
    EXPECT_EQ(moves[0], mv("a1", "a7"));
    EXPECT_EQ(moves[1], mv("h1", "h7"));
    EXPECT_EQ(moves[2], mv("a1", "a8"));
    EXPECT_EQ(moves[3], mv("h1", "h8"));
    EXPECT_EQ(static_cast<int8_t>(moves[0].enPassant), -17);
    EXPECT_EQ(static_cast<int8_t>(moves[2].enPassant), -5);
}

TEST(SortWhiteMoves, TheSecondSortLeavesAListWhoseFirstMoveMates) {
    // Twenty moves, none refused, and Rd8 mates: the first keys stand.
    Root root("6k1/5ppp/8/8/8/8/5PPP/3R2K1", 9);
    TMove moves[MAX_MOVES];
    WhiteSortOutcome outcome;
    const int count = sortedWhiteList(root.board, moves, outcome);
    ASSERT_EQ(count, 20);
    EXPECT_EQ(moves[0].enPassant, 1);
    for (int i = 1; i < count; ++i) EXPECT_EQ(moves[i].enPassant, 33) << i;
}

TEST(SortWhiteMoves, TakingTheManThatJustMovedHalvesTheRank) {
    // Black's rook goes to e4, where White's rook takes it.
    Line line("8/8/8/7k/6r1/8/8/K3R3", 10);
    line.play(mv("g4", "e4"));
    TMove moves[MAX_MOVES];
    WhiteSortOutcome outcome;
    sortedWhiteList(line.last(), moves, outcome);
    EXPECT_EQ(moves[0], mv("e1", "e4"));
}

TEST(SortWhiteMoves, ARookBesideTheTargetsFileGetsRankEight) {
    // Black's pawn steps to c2: Rb1 stands beside its file and goes first.
    Line line("8/8/8/7k/8/2p5/8/K3R3", 10);
    line.play(mv("c3", "c2"));
    TMove moves[MAX_MOVES];
    WhiteSortOutcome outcome;
    const int count = sortedWhiteList(line.last(), moves, outcome);
    ASSERT_EQ(count, 15);
    EXPECT_EQ(moves[0], mv("e1", "b1"));
    EXPECT_EQ(moves[0].enPassant, 8);
    // Rd1 is beside it too, but the pawn takes there: the hanging man's penalty follows.
    EXPECT_EQ(moves[indexOf(moves, count, mv("e1", "d1"))].enPassant, 11);
    // Rg1 is not beside the file.
    EXPECT_EQ(moves[indexOf(moves, count, mv("e1", "g1"))].enPassant, 27);
}

TEST(SortWhiteMoves, AQuietMoveBehindAPawnAboutToPromoteGoesToTheBack) {
    Line line("8/8/8/7k/8/2p5/8/K3R3", 10);
    line.play(mv("c3", "c2"));
    TMove moves[MAX_MOVES];
    WhiteSortOutcome outcome;
    const int count = sortedWhiteList(line.last(), moves, outcome);
    for (const char* to : {"e3", "e4", "e6", "e7", "e8"})
        EXPECT_EQ(moves[indexOf(moves, count, mv("e1", to))].enPassant, WHITE_KEY_MAX_RANK) << to;
    // A check on the way keeps its rank; so does a move that stays on the pawn's row.
    EXPECT_EQ(moves[indexOf(moves, count, mv("e1", "e5"))].enPassant, 57);
    EXPECT_EQ(moves[indexOf(moves, count, mv("a1", "a2"))].enPassant, 81);
    EXPECT_EQ(moves[count - 1], mv("e1", "e8"));
}

namespace {

// White's rook goes a1-a2-a1 while the black king steps h8-g8: the line
// `rounds` times, so that Black's Kg8-h8 next brings back the start.
void rookShuffle(Line& line, int rounds) {
    for (int i = 0; i < rounds; ++i) {
        if (i > 0) line.play(mv("g8", "h8"));
        line.play(mv("a1", "a2"));
        line.play(mv("h8", "g8"));
        line.play(mv("a2", "a1"));
    }
}

} // namespace

TEST(SortBlackMoves, AReplyThatRepeatsThePositionOfFourPliesAgoIsMovedUp) {
    // Quick mode does not prune it here: the reply is only lifted.
    Line line("7k/8/8/8/8/8/8/R6K", 9);
    line.root.job.m_shRepetitionLimit = 9;
    rookShuffle(line, 1);
    ASSERT_EQ(line.last().m_shPliesLeft, 6);
    TMove moves[MAX_MOVES];
    const int generated = GenerateBlackMovesOrEvasions(line.last(), moves);
    const int count = SortBlackMoves(line.last(), moves, generated, TMove{});
    ASSERT_EQ(count, 5);
    EXPECT_EQ(moves[0], mv("g8", "h8"));
    EXPECT_EQ(static_cast<int8_t>(moves[0].enPassant), -10);
    EXPECT_EQ(line.root.ctx.m_aRepetition[6], 0);
}

TEST(SortBlackMoves, AReplyWhosePositionStoodTwiceBeforeStandsFirst) {
    Line line("7k/8/8/8/8/8/8/R6K", 13);
    line.root.job.m_shRepetitionLimit = 13;
    rookShuffle(line, 2);
    ASSERT_EQ(line.last().m_shPliesLeft, 6);
    TMove moves[MAX_MOVES];
    const int generated = GenerateBlackMovesOrEvasions(line.last(), moves);
    const int count = SortBlackMoves(line.last(), moves, generated, TMove{});
    ASSERT_EQ(count, 5);
    EXPECT_EQ(moves[0], mv("g8", "h8"));
    EXPECT_EQ(static_cast<int8_t>(moves[0].enPassant), BLACK_KEY_FIRST);
}

TEST(SortBlackMoves, AboveTheRepetitionLimitNothingIsNoted) {
    // The start lies above the limit: the repetition does not count.
    Line line("7k/8/8/8/8/8/8/R6K", 9);
    line.root.job.m_shRepetitionLimit = 7;
    rookShuffle(line, 1);
    TMove moves[MAX_MOVES];
    const int generated = GenerateBlackMovesOrEvasions(line.last(), moves);
    SortBlackMoves(line.last(), moves, generated, TMove{});
    EXPECT_NE(moves[0], mv("g8", "h8"));
}

TEST(SortBlackMoves, InSafeModeDeepDownARepetitionSettlesTheNode) {
    Line line("7k/8/8/8/8/8/8/R6K", 17);
    line.root.job.m_shRepetitionLimit = 17;
    line.root.job.m_bSafeMode = 1;
    rookShuffle(line, 1);
    ASSERT_EQ(line.last().m_shPliesLeft, 14);
    TMove moves[MAX_MOVES];
    const int generated = GenerateBlackMovesOrEvasions(line.last(), moves);
    EXPECT_EQ(SortBlackMoves(line.last(), moves, generated, TMove{}), BLACK_SORT_REPETITION);
    EXPECT_EQ(line.root.ctx.m_aRepetition[14], 17);
}

TEST(SortBlackMoves, InSafeModeAShallowRepetitionIsOnlyMovedUp) {
    Line line("7k/8/8/8/8/8/8/R6K", 15);
    line.root.job.m_shRepetitionLimit = 15;
    line.root.job.m_bSafeMode = 1;
    rookShuffle(line, 1);
    ASSERT_EQ(line.last().m_shPliesLeft, 12);
    TMove moves[MAX_MOVES];
    const int generated = GenerateBlackMovesOrEvasions(line.last(), moves);
    EXPECT_EQ(SortBlackMoves(line.last(), moves, generated, TMove{}), 5);
    EXPECT_EQ(moves[0], mv("g8", "h8"));
    EXPECT_EQ(line.root.ctx.m_aRepetition[12], 0);
}

TEST(BlackStep, ARepetitionFromTheOrderingIsCarriedOnePlyUp) {
    // The Black step returns the repetition without searching a reply, and
    // the White step above learns where the repeated position was first played.
    Line line("7k/8/8/8/8/8/8/R6K", 17);
    line.root.job.m_shRepetitionLimit = 17;
    line.root.job.m_bSafeMode = 1;
    rookShuffle(line, 1);
    const uint64_t nodes = line.root.job.m_nNodes.load();
    EXPECT_EQ(FindMateBlackStep(line.last()), RESULT_REPETITION);
    EXPECT_EQ(line.root.ctx.m_aRepetition[15], 17);
    EXPECT_EQ(line.root.job.m_nNodes.load(), nodes);
}

TEST(SortBlackMoves, UnderBetsADoubtfulReplySettlesTheNodeBeforeAnyIsSearched) {
    Line line("k7/8/8/2K5/8/8/8/7R w - - 0 1", 9);
    line.root.board.m_uHeuristics = SH_KEEPKINGONTHEEDGE;
    line.root.board.m_bPass = 1;
    line.root.ctx.m_bKingMoveStrict = 1;
    line.play(mv("h1", "h2"));
    TMove moves[MAX_MOVES];
    const int generated = GenerateBlackMovesOrEvasions(line.last(), moves);
    EXPECT_EQ(SortBlackMoves<true>(line.last(), moves, generated, TMove{}), BLACK_SORT_DOUBTFUL);
    // The same list without bets is only ordered.
    const int again = GenerateBlackMovesOrEvasions(line.last(), moves);
    EXPECT_EQ(SortBlackMoves(line.last(), moves, again, TMove{}), 3);
}

TEST(SortBlackMoves, UnderBetsAReplyAfterWhichWhiteCannotMateRefutesTheNode) {
    // A lone rook and a king far from a free black king: no set needed.
    Line line("8/8/8/4k3/8/8/7R/K7 w - - 0 1", 7);
    line.root.board.m_bPass = 2;
    line.play(mv("h2", "h3"));
    TMove moves[MAX_MOVES];
    const int generated = GenerateBlackMovesOrEvasions(line.last(), moves);
    EXPECT_EQ(SortBlackMoves<true>(line.last(), moves, generated, TMove{}), BLACK_SORT_NO_MATE);
}

TEST(SortBlackMoves, UnderBetsAReplyThatStartsABandBetsWaitIsMarked) {
    Line line("7k/8/8/8/8/8/8/R6K w - - 0 1", 15);
    line.root.board.m_uHeuristics = SH_KEEPKINGONTHEEDGE;
    line.root.board.m_bPass = 1;
    TThreadContext& ctx = line.root.ctx;
    ctx.m_bKingMoveStrict = 0;
    ctx.m_wDeferMoves = 3;
    ctx.m_bDynRelaxOnAdvancedPawn = 1;
    line.play(mv("a1", "a2"));
    TMove moves[MAX_MOVES];
    const int generated = GenerateBlackMovesOrEvasions(line.last(), moves);
    const int count = SortBlackMoves<true>(line.last(), moves, generated, TMove{});
    ASSERT_EQ(count, 3);
    for (int i = 0; i < count; ++i)
        EXPECT_EQ((moves[i].promotion & MOVE_MARK_DEFERS_BAND_CHECK) != 0, moves[i] == mv("h8", "g7"))
            << static_cast<int>(moves[i].from) << "-" << static_cast<int>(moves[i].to);
}
