// Black's best defence: only replies, refutations, the longest defence, the
// last resort, repetitions, stops, the texts in three languages and the
// Solver's door to the task.
#include "core/chess_exception.h"
#include "core/fen.h"
#include "core/thread_context.h"
#include "engine/best_defence.h"
#include "engine/defence_texts.h"
#include "engine/result_code.h"
#include "engine/solver.h"
#include "global_register/table_generator.h"
#include "global_register/table_set.h"
#include "global_register/table_types.h"
#include "problems/notation.h"
#include "registers/aggregated_register.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

using namespace zorvane;
using namespace std::chrono_literals;

namespace {

// Tables made on the calling thread alone: the solves under test are the
// threads to watch (a thread checker cannot see into the parallel loops).
const TGenerationSettings ONE_THREAD{nullptr, 1, {}};

// Black Kh8, Pb7, Ph7 against Kf7, Ph6, Pb5, Rg1: b7-b6 is Black's one legal
// move, and Rg8 mates after it.
constexpr const char* SINGLE_REPLY = "7k/1p3K1p/7P/1P6/8/8/8/6R1";
// The same without the b-pawns: Black has no move (stalemate).
constexpr const char* STALEMATE = "7k/5K1p/7P/8/8/8/8/6R1";
// Black is mated already.
constexpr const char* MATED = "6Rk/5K1p/7P/8/8/8/8/8";
// Rh1 mates after Kh7 and after a5: every black move loses.
constexpr const char* EVERY_MOVE_LOSES = "7k/5K2/p7/8/8/8/8/6R1";
// After the try Rg1 of a #2, Black's only answer to Rh1 is Nd1-f2, which
// covers h1: the one move that escapes the mate in one.
constexpr const char* ONE_REFUTATION = "7k/5K2/8/8/8/8/8/3n2R1";
// The knight on e1 has two answers to Rh1: Ng2 (to h4) and Nf3 (to h2 or h4).
constexpr const char* TWO_REFUTATIONS = "7k/5K2/8/8/8/8/8/4n1R1";
// Kh8 against Kf6 and Rg1: Kh7 is Black's one move, and no #2 follows it.
constexpr const char* ONLY_MOVE_REFUTES = "7k/8/5K2/8/8/8/8/6R1";
// The king in the middle of the edge: Kd8 and Kf8 are mirror images.
constexpr const char* MIRRORED_KING = "4k3/8/4K3/8/8/8/8/R7";
// A full board: no defence task ends here within the test's time.
constexpr const char* CROWDED = "r1bqk2r/pppp1ppp/2n2n2/2b1p3/2B1P3/2NP1N2/PPP2PPP/R1BQK2R";

// Knight e2 takes the rook: no mate can follow.
constexpr const char* ROOK_TAKEN = "7k/5K2/8/8/8/8/4n3/6R1";

// A position of `fen` wired to a thread context and a job, `plies` left.
struct Engine {
    TChessProblem problem;
    SolveJob job{problem};
    std::unique_ptr<TThreadContext> context = std::make_unique<TThreadContext>();
    TChessboard board = EmptyChessboard();

    Engine() { context->m_pJob = &job; }
    TChessboard& Position(const char* fen, int plies) {
        board = EmptyChessboard();
        EXPECT_TRUE(ReadFen(fen, board)) << fen;
        board.m_pProblem = &problem;
        board.m_pThread = context.get();
        board.m_shPliesLeft = board.m_shPliesTotal = static_cast<uint16_t>(plies);
        board.m_bPass = 2;
        job.m_shRepetitionLimit = static_cast<uint16_t>(plies);
        return board;
    }
};

TMove moveOf(const TChessboard& position, const char* text) {
    return ParseMoveOnBoard(position, text);
}

struct Defence {
    TChessProblem problem;
    TChessboard position = EmptyChessboard();
    SolveJob job{problem};

    // The task at `fen` with Black to move and White to mate in `moves`.
    DefenceOutcome Run(const char* fen, int moves, bool thorough = false, int language = LANGUAGE_ENGLISH,
                       const TTableSet* tables = nullptr) {
        EXPECT_TRUE(ReadFen(fen, position)) << fen;
        position.m_shPliesLeft = position.m_shPliesTotal = static_cast<uint16_t>(2 * moves);
        problem.startPosition = position;
        SetStipulation(problem, moves);
        DefenceRequest request;
        request.position = &position;
        request.plies = 2 * moves;
        request.thorough = thorough;
        request.options.languageId = language;
        request.options.tables = tables;
        return FindBestDefence(job, request);
    }
};

std::string textOf(const DefenceOutcome& outcome) {
    return std::string(outcome.text.begin(), outcome.text.end());
}

// The tables of king and rook against king.
const TTableSet& rookTables() {
    static const TTableSet* set = [] {
        auto* made = new TTableSet("");
        for (const std::string& type : TypesInMakingOrder({"R"}))
            made->Add(GenerateTable(type, made->Prober(), ONE_THREAD).table);
        return made;
    }();
    return *set;
}

// King and rook against the king in the middle, Black to move.
constexpr const char* ROOK_ENDING = "8/8/8/3k4/8/8/4K3/R7";

TEST(BestDefence, TheTablesNameTheLongestDefenceWithoutASearch) {
    Defence d;
    const DefenceOutcome outcome = d.Run(ROOK_ENDING, 16, false, LANGUAGE_ENGLISH, &rookTables());
    EXPECT_EQ(textOf(outcome), "Not found any defence against mate. The best looks: Kd5-d4");
    // White mates in 13 after it (tables probe gives the same): 25 plies.
    EXPECT_EQ(outcome.result.m_wRegisterDepth, 25);
    EXPECT_EQ(d.job.m_nNodes.load(), 0u);
}

TEST(BestDefence, TheTablesNameTheRefutationOfATooShortMate) {
    Defence d;
    const DefenceOutcome outcome = d.Run(ROOK_ENDING, 10, false, LANGUAGE_ENGLISH, &rookTables());
    EXPECT_EQ(textOf(outcome), "Mate in the requested stipulation was refuted with: Kd5-d4");
    EXPECT_EQ(outcome.result.m_wRegisterDepth, 25);
}

TEST(BestDefence, WithoutTablesTheSearchFindsTheSameDefence) {
    // A short stipulation the search settles: the tables change nothing in the answer.
    Defence with, without;
    EXPECT_EQ(textOf(with.Run(ROOK_ENDING, 2, false, LANGUAGE_ENGLISH, &rookTables())),
              textOf(without.Run(ROOK_ENDING, 2)));
}

TEST(BestDefence, SingleLegalReplyIsReportedWithoutASearch) {
    Defence d;
    const DefenceOutcome outcome = d.Run(SINGLE_REPLY, 1);
    EXPECT_EQ(textOf(outcome), "The only reply: b7-b6");
    EXPECT_EQ(outcome.moveText, "b7-b6");
    EXPECT_TRUE(outcome.result.m_bOnlyReply);
    EXPECT_FALSE(outcome.result.m_bFastMateOnly);
    // Nothing was searched: the result is still unknown, and no node was counted.
    EXPECT_EQ(outcome.result.m_cResult, DEFENCE_RESULT_UNKNOWN);
    EXPECT_EQ(d.job.m_nNodes.load(), 0u);
    EXPECT_TRUE(outcome.boxes.empty());
}

TEST(BestDefence, ThoroughSearchBehindASingleReplyFindsTheMate) {
    Defence d;
    const DefenceOutcome outcome = d.Run(SINGLE_REPLY, 1, true);
    EXPECT_EQ(textOf(outcome), "The only reply (not a defence against mate) : b7-b6");
    EXPECT_EQ(outcome.result.m_cResult, RESULT_MATE);
}

TEST(BestDefence, SingleReplyThatRefutesIsNamedSoByTheThoroughSearch) {
    Defence plain;
    EXPECT_EQ(textOf(plain.Run(ONLY_MOVE_REFUTES, 2)), "The only reply: Kh8-h7");
    Defence thorough;
    const DefenceOutcome outcome = thorough.Run(ONLY_MOVE_REFUTES, 2, true);
    EXPECT_EQ(textOf(outcome), "Mate in the requested stipulation was refuted with: Kh8-h7");
    EXPECT_EQ(outcome.result.m_cResult, RESULT_NO_MATE);
}

TEST(BestDefence, NoLegalMoveGivesNoValidMove) {
    for (const char* fen : {STALEMATE, MATED}) {
        for (const bool thorough : {false, true}) {
            Defence d;
            const DefenceOutcome outcome = d.Run(fen, 1, thorough);
            EXPECT_EQ(textOf(outcome), "No valid move found") << fen;
            EXPECT_TRUE(outcome.move.isNull());
            EXPECT_TRUE(outcome.moveText.empty());
            ASSERT_EQ(outcome.boxes.size(), 1u);
            EXPECT_EQ(outcome.boxes[0].title, L"Information");
            EXPECT_EQ(outcome.boxes[0].text, L"No valid move found");
            EXPECT_FALSE(outcome.stopped);
        }
    }
}

TEST(BestDefence, OnlyMoveThatPreventsTheFastMate) {
    Defence d;
    const DefenceOutcome outcome = d.Run(ONE_REFUTATION, 1);
    EXPECT_EQ(textOf(outcome), "The only reply that prevents fast mate: Nd1-f2");
    EXPECT_TRUE(outcome.result.m_bOnlyReply);
    EXPECT_TRUE(outcome.result.m_bFastMateOnly);
}

TEST(BestDefence, ThoroughSearchCallsTheOnlyEscapeARefutation) {
    Defence d;
    const DefenceOutcome outcome = d.Run(ONE_REFUTATION, 1, true);
    EXPECT_EQ(textOf(outcome), "Mate in the requested stipulation was refuted with: Nd1-f2");
    EXPECT_EQ(outcome.result.m_cResult, RESULT_NO_MATE);
    EXPECT_FALSE(outcome.result.m_bOnlyReply);
}

TEST(BestDefence, RefutationOfATryIsFoundByTheSearch) {
    Defence d;
    const DefenceOutcome outcome = d.Run(TWO_REFUTATIONS, 1);
    EXPECT_EQ(textOf(outcome), "Mate in the requested stipulation was refuted with: Ne1-g2");
    EXPECT_EQ(outcome.result.m_cResult, RESULT_NO_MATE);
    ASSERT_EQ(outcome.result.refutations.size(), 1u);
    EXPECT_EQ(outcome.result.refutations[0].text, "Ne1-g2");
    EXPECT_TRUE(outcome.boxes.empty());
}

TEST(BestDefence, EveryMoveLosingGivesTheBestLooking) {
    Defence d;
    const DefenceOutcome outcome = d.Run(EVERY_MOVE_LOSES, 1);
    // Both moves allow a mate at once; the last resort keeps the last of them.
    EXPECT_EQ(textOf(outcome), "Not found any defence against mate. The best looks: Kh8-h7");
    EXPECT_EQ(outcome.result.m_cResult, RESULT_MATE);
}

TEST(BestDefence, LongestDefenceLeavesWhiteTheFewestKeys) {
    // Against #2 only Nf3 and Ng2 avoid a mate at once; after Nf3 White has
    // one key (Rh1), after Ng2 two (Rxg2, Rh1).
    Defence d;
    const DefenceOutcome outcome = d.Run(TWO_REFUTATIONS, 2);
    EXPECT_EQ(textOf(outcome), "Not found any defence against mate. The best looks: Ne1-f3");
    ASSERT_EQ(outcome.result.equivalentMoves.size(), 1u);
}

TEST(BestDefence, EquallyGoodDefencesAreListed) {
    Defence d;
    const DefenceOutcome outcome = d.Run(MIRRORED_KING, 2);
    EXPECT_EQ(textOf(outcome),
              "Not found any defence against mate. The best looks: Ke8-d8\nEquivalent moves: Ke8-d8, Ke8-f8");
}

TEST(BestDefence, StoppedSearchPlaysTheMoveInHand) {
    Defence d;
    d.job.SetCommand(COMMAND_STOP);
    const DefenceOutcome outcome = d.Run(SINGLE_REPLY, 1, true);
    EXPECT_TRUE(outcome.stopped);
    EXPECT_EQ(outcome.moveText, "b7-b6");
    EXPECT_EQ(textOf(outcome), "The only reply: b7-b6 (stopped by user)");
}

TEST(BestDefence, StoppedSearchWithoutAMoveSaysSo) {
    Defence d;
    d.job.SetCommand(COMMAND_STOP);
    const DefenceOutcome outcome = d.Run(TWO_REFUTATIONS, 2);
    EXPECT_TRUE(outcome.stopped);
    EXPECT_TRUE(outcome.move.isNull());
    EXPECT_EQ(textOf(outcome), "Analysis stopped by user");
    EXPECT_TRUE(outcome.boxes.empty());
}

TEST(BestDefence, TextsInPolishAndUkrainian) {
    Defence polish;
    EXPECT_EQ(polish.Run(ONE_REFUTATION, 1, true, LANGUAGE_POLISH).text,
              L"Mat w zadanej liczbie posunięć został obalony posunięciem: Nd1-f2");
    Defence ukrainian;
    EXPECT_EQ(ukrainian.Run(SINGLE_REPLY, 1, false, LANGUAGE_UKRAINIAN).text, L"Єдина відповідь: b7-b6");
    Defence none;
    const DefenceOutcome outcome = none.Run(STALEMATE, 1, false, LANGUAGE_POLISH);
    EXPECT_EQ(outcome.text, L"Nie znaleziono prawidłowego posunięcia");
    ASSERT_EQ(outcome.boxes.size(), 1u);
    EXPECT_EQ(outcome.boxes[0].title, L"Informacja");
}

TEST(BestDefence, EnglishTextsOfTheWords) {
    EXPECT_EQ(DefenceWordText(DefenceWord::OnlyReplyFastMateMateFound, LANGUAGE_ENGLISH),
              L"The only reply that prevents fast mate (not a defence against mate) : ");
    EXPECT_EQ(EquivalentMovesLabel(LANGUAGE_ENGLISH), L"\nEquivalent moves: ");
    EXPECT_EQ(NoRegisterDataBoxText(LANGUAGE_ENGLISH),
              L"No data in temporary register.\n\nDefence by black that will be presented may be incorrect.");
    EXPECT_EQ(
        ChosenMoveRepetitionBoxText(LANGUAGE_ENGLISH),
        L"Program detected position repetition.\nFor performance reasons every position repetition is "
        L"assumed "
        L"to prevent possibility of mate within the required stipulation and program stops analysis in such "
        L"case.");
    // Every text exists in all three languages, and the three differ.
    for (const int word : {0, 1, 2, 3, 4, 5}) {
        const DefenceWord w = static_cast<DefenceWord>(word);
        EXPECT_NE(DefenceWordText(w, LANGUAGE_POLISH), DefenceWordText(w, LANGUAGE_ENGLISH));
        EXPECT_NE(DefenceWordText(w, LANGUAGE_UKRAINIAN), DefenceWordText(w, LANGUAGE_ENGLISH));
    }
}

TEST(BestDefenceSteps, OnlyDefenceIsTheOneMoveThatAvoidsTheQuickMates) {
    Engine e;
    TMove move;
    TChessboard& one = e.Position(ONE_REFUTATION, 2);
    ASSERT_TRUE(FindOnlyDefence(one, move));
    EXPECT_EQ(move, moveOf(one, "Nd1-f2"));
    EXPECT_FALSE(FindOnlyDefence(e.Position(TWO_REFUTATIONS, 2), move));
    EXPECT_FALSE(FindOnlyDefence(e.Position(EVERY_MOVE_LOSES, 2), move));
    // With four plies the mates in two kill Ng2 and Nf3 as well: no move is left.
    EXPECT_FALSE(FindOnlyDefence(e.Position(TWO_REFUTATIONS, 4), move));
}

TEST(BestDefenceSteps, MateOfDepthAnswersForEveryBlackMove) {
    Engine e;
    EXPECT_TRUE(FindMateOfDepth(e.Position(EVERY_MOVE_LOSES, 4), 1));
    EXPECT_FALSE(FindMateOfDepth(e.Position(TWO_REFUTATIONS, 4), 1));
    EXPECT_TRUE(FindMateOfDepth(e.Position(TWO_REFUTATIONS, 4), 3));
    EXPECT_FALSE(FindMateOfDepth(e.Position(ROOK_TAKEN, 4), 3));
}

TEST(BestDefenceSteps, EliminationKeepsTheLastMoveStanding) {
    Engine e;
    bool uncertain = true;
    TChessboard& loses = e.Position(EVERY_MOVE_LOSES, 2);
    EXPECT_EQ(FindDefenceByElimination(loses, uncertain), moveOf(loses, "Kh8-h7"));
    EXPECT_FALSE(uncertain);
    // Two moves escape the mate in one, and nothing deeper is tried with two plies.
    TChessboard& two = e.Position(TWO_REFUTATIONS, 2);
    EXPECT_EQ(FindDefenceByElimination(two, uncertain), moveOf(two, "Ne1-g2"));
    EXPECT_TRUE(uncertain);
    EXPECT_TRUE(FindDefenceByElimination(e.Position(STALEMATE, 2), uncertain).isNull());
}

TEST(BestDefenceSteps, QuickLookFindsTheRefutationOrTheLongestDefences) {
    Engine e;
    std::vector<DefenceMove> list;
    EXPECT_EQ(FindRefutationsQuickly(e.Position(ROOK_TAKEN, 12), list, false), RESULT_NO_MATE);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].text, "Ne2:g1");
    // Both king moves allow the same mate in two.
    EXPECT_EQ(FindRefutationsQuickly(e.Position(MIRRORED_KING, 12), list, false), RESULT_MATE);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0].text, "Ke8-d8");
    EXPECT_EQ(list[1].text, "Ke8-f8");
    // Two plies are too few for it.
    EXPECT_EQ(FindRefutationsQuickly(e.Position(ROOK_TAKEN, 2), list, false), DEFENCE_RESULT_UNKNOWN);
    EXPECT_TRUE(list.empty());
}

TEST(BestDefenceSteps, ASolutionIsForcedWhenEveryLineHasOneMate) {
    Engine e;
    // After Nf3 the key Rh1+ leaves Nh2 or Nh4, each taken with mate.
    TChessboard& afterKnight = e.Position("7k/5K2/8/8/8/5n2/8/6R1", 3);
    EXPECT_TRUE(IsSolutionForced(afterKnight, moveOf(afterKnight, "Rg1-h1"), 3));
    // Rg2 threatens nothing at once: some replies have no mate in one behind them.
    EXPECT_FALSE(IsSolutionForced(afterKnight, moveOf(afterKnight, "Rg1-g2"), 3));
}

TEST(BestDefence, LongStipulationTakesTheQuickLooksRefutation) {
    Defence d;
    const DefenceOutcome outcome = d.Run(ROOK_TAKEN, 6, true);
    EXPECT_EQ(textOf(outcome), "Mate in the requested stipulation was refuted with: Ne2:g1");
    ASSERT_EQ(outcome.result.refutations.size(), 1u);
    EXPECT_EQ(outcome.result.m_cResult, RESULT_NO_MATE);
}

// A line played by hand: each move from the position before it, for the
// side whose turn the plies left say.
struct Line {
    TChessboard boards[8];
    int length = 0;

    Line(const char* fen, int plies) {
        boards[0] = EmptyChessboard();
        EXPECT_TRUE(ReadFen(fen, boards[0]));
        boards[0].m_shPliesLeft = boards[0].m_shPliesTotal = static_cast<uint16_t>(plies);
    }
    const TChessboard& Play(const std::string& text) {
        TMove move = ParseMoveOnBoard(boards[length], text);
        EXPECT_TRUE(PlayMove(boards[length], boards[length + 1], move)) << text;
        boards[length + 1].m_shPliesLeft = static_cast<uint16_t>(boards[length].m_shPliesLeft - 1);
        return boards[++length];
    }
};

TEST(BestDefence, PositionThatRepeatsTheLineIsNotAnalysed) {
    Line line(ONLY_MOVE_REFUTES, 8);
    line.Play("Kh8-h7");
    line.Play("Rg1-g2");
    line.Play("Kh7-h8");
    const TChessboard& again = line.Play("Rg2-g1");
    TChessProblem problem;
    problem.startPosition = line.boards[0];
    SetStipulation(problem, 5); // 9 plies: the line starts inside it
    SolveJob job(problem);
    DefenceRequest request;
    request.position = &again;
    request.plies = 4;
    const DefenceOutcome outcome = FindBestDefence(job, request);
    EXPECT_TRUE(outcome.repetition);
    EXPECT_TRUE(outcome.move.isNull());
    EXPECT_EQ(outcome.text, L"Position repetition");
    ASSERT_EQ(outcome.boxes.size(), 1u);
    EXPECT_EQ(outcome.boxes[0].title, L"Information");
    EXPECT_EQ(
        outcome.boxes[0].text,
        L"Program detected position repetition\nFor optimization reasons every postion repetition is treated "
        L"as preventing mate and, thus, program terminates analysis in such case.");
}

TEST(BestDefence, ChosenMoveThatRepeatsAPositionIsMarked) {
    // White to move: Rg2, Kh8, Rg1 come back to Kh8 with Black to move, whose
    // only move Kh7 repeats the start.
    Line line("8/7k/5K2/8/8/8/8/6R1", 7);
    line.Play("Rg1-g2");
    line.Play("Kh7-h8");
    const TChessboard& before = line.Play("Rg2-g1");
    TChessProblem problem;
    problem.startPosition = line.boards[0];
    SetStipulation(problem, 4);
    SolveJob job(problem);
    DefenceRequest request;
    request.position = &before;
    request.plies = 4;
    const DefenceOutcome outcome = FindBestDefence(job, request);
    EXPECT_FALSE(outcome.repetition);
    EXPECT_EQ(outcome.text, L"The only reply: Kh8-h7\nPosition repetition");
    ASSERT_EQ(outcome.boxes.size(), 1u);
    EXPECT_EQ(outcome.boxes[0].text, ChosenMoveRepetitionBoxText(LANGUAGE_ENGLISH));
}

TEST(BestDefence, PositionOfALineIsSearchedUnderTheHeuristicsOfWhitesPositionAbove) {
    Line line("4k3/8/8/4K3/8/8/8/R7", 7);
    const TChessboard& afterKing = line.Play("Ke5-e6");
    TChessProblem problem;
    problem.startPosition = line.boards[0];
    SetStipulation(problem, 4);
    SolveJob job(problem);
    DefenceRequest request;
    request.position = &afterKing;
    request.plies = 6;
    const DefenceOutcome outcome = FindBestDefence(job, request);
    EXPECT_EQ(
        outcome.text,
        L"Not found any defence against mate. The best looks: Ke8-d8\nEquivalent moves: Ke8-d8, Ke8-f8");
    EXPECT_EQ(outcome.result.m_cResult, RESULT_MATE);
    EXPECT_EQ(outcome.heuristics, "SH_AREKINGSNEAR, SH_3MOVESTOMATE");
    EXPECT_FALSE(job.m_bHeuristics);
    // Without the line above there is no set to start with.
    Defence alone;
    EXPECT_EQ(alone.Run("4k3/8/4K3/8/8/8/8/R7", 3).heuristics, "");
}

TEST(BestDefence, WhiteKingInCheckIsRefused) {
    Defence d;
    try {
        d.Run("k7/p7/1K6/8/8/8/8/7R", 2);
        FAIL() << "no exception";
    } catch (const ChessException& e) {
        EXPECT_STREQ(e.what(), "White king cannot be checked in the mate-defence task starting postition.");
    }
}

TEST(BestDefence, OddPliesAreNotATaskForBlack) {
    TChessProblem problem;
    SolveJob job(problem);
    TChessboard position = EmptyChessboard();
    ASSERT_TRUE(ReadFen(SINGLE_REPLY, position));
    DefenceRequest request;
    request.position = &position;
    request.plies = 3;
    EXPECT_THROW(FindBestDefence(job, request), std::invalid_argument);
}

TEST(BestDefence, ProblemKeepsItsRegister) {
    Defence d;
    auto own = std::make_shared<TProblemRegister>(REGISTER_SMALL_BUCKETS);
    d.problem.m_pRegister = own;
    d.Run(TWO_REFUTATIONS, 2);
    EXPECT_EQ(d.problem.m_pRegister, own);
}

TEST(SolverDefence, DefendRunsTheTaskOnTheSolversThread) {
    TChessProblem problem;
    TChessboard position = EmptyChessboard();
    ASSERT_TRUE(ReadFen(TWO_REFUTATIONS, position));
    SetStipulation(problem, 1);
    problem.startPosition = position;
    DefenceRequest request;
    request.position = &position;
    request.plies = 2;
    Solver solver;
    const DefenceOutcome outcome = solver.Defend(problem, request);
    EXPECT_EQ(textOf(outcome), "Mate in the requested stipulation was refuted with: Ne1-g2");
    EXPECT_FALSE(solver.Running());
    // A defence is waited for by WaitDefence, a solve by Wait.
    solver.StartDefence(problem, request);
    EXPECT_THROW(solver.Wait(), std::logic_error);
    EXPECT_THROW(solver.Start(problem, SolveRequest{}), std::logic_error);
    EXPECT_EQ(textOf(solver.WaitDefence()), "Mate in the requested stipulation was refuted with: Ne1-g2");
}

TEST(SolverDefence, StopEndsALongTask) {
    TChessProblem problem;
    TChessboard position = EmptyChessboard();
    ASSERT_TRUE(ReadFen(CROWDED, position));
    SetStipulation(problem, 8);
    problem.startPosition = position;
    DefenceRequest request;
    request.position = &position;
    request.plies = 16;
    Solver solver;
    solver.StartDefence(problem, request);
    std::this_thread::sleep_for(200ms);
    EXPECT_TRUE(solver.Running());
    const auto stopped = std::chrono::steady_clock::now();
    solver.Stop();
    const DefenceOutcome outcome = solver.WaitDefence();
    EXPECT_LT(std::chrono::steady_clock::now() - stopped, 5s);
    EXPECT_TRUE(outcome.stopped);
    EXPECT_EQ(textOf(outcome), "Analysis stopped by user");
    EXPECT_TRUE(outcome.move.isNull());
}

TEST(SolverDefence, TheAnalysedLineOfADefenceStartsWithBlacksMove) {
    TChessboard root = EmptyChessboard();
    ASSERT_TRUE(ReadFen(TWO_REFUTATIONS, root));
    root.m_shPliesLeft = root.m_shPliesTotal = 4;
    AnalysedLine line;
    line.steps[0] = {moveOf(root, "Ne1-f3"), 1, 7};
    TChessboard afterKnight;
    TMove knight = moveOf(root, "Ne1-f3");
    ASSERT_TRUE(PlayMove(root, afterKnight, knight));
    line.steps[1] = {moveOf(afterKnight, "Rg1-h1"), 0, 14};
    line.length = 2;
    EXPECT_EQ(AnalysedLineText(root, line), "1...Nf3 (2/7) 2.Rh1 (1/14)");
}

} // namespace
