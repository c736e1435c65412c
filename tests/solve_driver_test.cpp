// The solve driver: depths, passes, stops, flags, result texts.
#include "core/chess_exception.h"
#include "core/fen.h"
#include "core/movegen.h"
#include "core/thread_context.h"
#include "engine/move_ordering.h"
#include "engine/solve_driver.h"
#include "engine/solver.h"
#include "engine/solve_texts.h"
#include "registers/chessboard_register.h"
#include "test_squares.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <atomic>
#include <regex>
#include <thread>

using namespace zorvane;
using namespace std::chrono_literals;

namespace {

// A record with a position and its stipulation in moves.
void setUp(TChessProblem& problem, const char* fen, int moves) {
    ASSERT_TRUE(ReadFen(fen, problem.startPosition)) << fen;
    SetStipulation(problem, moves);
}

SolveOptions allSolutions() {
    SolveOptions options;
    options.allSolutions = true;
    return options;
}

// #1 with one key; king and rook against king, a #5 with five keys and a #6.
constexpr const char* MATE_IN_ONE = "6k1/8/6K1/8/8/8/8/3R4";
constexpr const char* FIVE_KEYS = "8/8/8/8/8/4K3/2R5/k7";
constexpr const char* LONG_SEARCH = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";
constexpr const char* SIX_MOVER = "8/8/8/8/8/4K3/2R5/k7";

std::vector<std::string> texts(const SolveResult& result) {
    return result.texts;
}

// The driver is reached through the Solver, as the front ends reach it.
SolveResult solve(Solver& solver, TChessProblem& problem, const SolveOptions& options,
                  SolveCallbacks callbacks = {}) {
    SolveRequest request;
    request.options = options;
    return solver.Solve(problem, request, std::move(callbacks));
}

SolveResult solveFrom(Solver& solver, TChessProblem& problem, const TChessboard& position, int plies,
                      const SolveOptions& options) {
    SolveRequest request;
    request.position = &position;
    request.plies = plies;
    request.options = options;
    return solver.Solve(problem, request);
}

SolveOptions safeMode() {
    SolveOptions options;
    options.quickMode = false;
    return options;
}

} // namespace

TEST(DepthsToTry, FollowTheStipulationWithItsGaps) {
    EXPECT_EQ(DepthsToTry(1, 0), (std::vector<int>{1}));
    EXPECT_EQ(DepthsToTry(3, 0), (std::vector<int>{1, 3}));
    EXPECT_EQ(DepthsToTry(7, 0), (std::vector<int>{1, 3, 5, 7}));      // #4: #1, #2, #3, #4
    EXPECT_EQ(DepthsToTry(9, 0), (std::vector<int>{1, 3, 5, 9}));      // #5: no #4
    EXPECT_EQ(DepthsToTry(11, 0), (std::vector<int>{1, 3, 5, 7, 11})); // #6: no #5
    EXPECT_EQ(DepthsToTry(17, 0), (std::vector<int>{1, 3, 5, 7, 9, 11, 13, 17}));
}

TEST(DepthsToTry, TakeTheKnownMateAndDropNeedlessThirteen) {
    EXPECT_EQ(DepthsToTry(9, 7), (std::vector<int>{1, 3, 5, 7, 9}));
    EXPECT_EQ(DepthsToTry(9, 9), (std::vector<int>{1, 3, 5, 9}));
    EXPECT_EQ(DepthsToTry(17, 11), (std::vector<int>{1, 3, 5, 7, 9, 11, 17}));
}

TEST(SolveDriver, MateInOneTakesTheListOfMates) {
    TChessProblem problem;
    setUp(problem, MATE_IN_ONE, 1);
    Solver solver;
    const SolveResult result = solve(solver, problem, allSolutions());
    EXPECT_EQ(texts(result), std::vector<std::string>{"Rd1-d8"});
    EXPECT_EQ(result.solutions.at(mv("d1", "d8")).plies, 1);
    EXPECT_EQ(result.nodes, 0u);
    EXPECT_EQ(result.text, L"Rd1-d8" + SecondsText(result.milliseconds));
}

TEST(SolveDriver, BlackKingInCheckIsATaskErrorAndNothingIsSearched) {
    TChessProblem problem;
    setUp(problem, "k7/8/8/8/8/8/8/R6K", 2);
    Solver solver;
    try {
        solve(solver, problem, SolveOptions{});
        FAIL() << "no task error";
    } catch (const ChessException& e) {
        EXPECT_STREQ(e.what(), "Black king cannot be checked in the mate task starting postition.");
    }
    EXPECT_EQ(solver.Progress().nodes, 0u);
}

TEST(SolveDriver, NoSolutionTextCarriesTheQuickModeNote) {
    TChessProblem problem;
    setUp(problem, "7k/8/8/8/8/8/8/K7", 2);
    Solver solver;
    const SolveResult result = solve(solver, problem, SolveOptions{});
    EXPECT_TRUE(result.moves.empty());
    EXPECT_EQ(result.text,
              L"Not found any solutions for #2" + SecondsText(result.milliseconds) +
                  L"\n\nNote:\n\t* in Quick Mode (see menu Advanced->Options) there exists a small "
                  L"probability (~0.3%) of false negatives\n");
}

TEST(SolveDriver, SafeModeWithAllPassesHasNoNote) {
    TChessProblem problem;
    setUp(problem, "7k/8/8/8/8/8/8/K7", 2);
    Solver solver;
    const SolveResult result = solve(solver, problem, safeMode());
    EXPECT_EQ(result.text, L"Not found any solutions for #2" + SecondsText(result.milliseconds));
}

TEST(SolveDriver, SwitchedOffPassesAreNoted) {
    TChessProblem problem;
    setUp(problem, "7k/8/8/8/8/8/8/K7", 2);
    SolveOptions options = safeMode();
    options.relaxHeuristics = false;
    options.passWithoutHeuristics = false;
    Solver solver;
    const SolveResult result = solve(solver, problem, options);
    EXPECT_EQ(result.text,
              L"Not found any solutions for #2" + SecondsText(result.milliseconds) +
                  L"\n\nNote:\n\t* there was only one pass with heuristcs (relaxation of heuristics was "
                  L"switched off by user's request)\n\t* pass without heuristics has been skipped (on "
                  L"user's request)\n");
}

TEST(SolveDriver, PolishAndUkrainianTextsExist) {
    EXPECT_EQ(DualStopText(0), L"Poszukiwanie rozwiązań zostało zatrzymane po wykryciu dualu.");
    EXPECT_EQ(SeveralSolutionsText(2, 2), L"Знайдено більше ніж один розв'язок: 2");
    EXPECT_EQ(SeveralSolutionsText(2, 7), L"More than one solution found: 2");
}

// Five king moves all mate in five.
class SeveralKeys : public ::testing::Test {
  protected:
    void SetUp() override { setUp(problem, FIVE_KEYS, 5); }
    TChessProblem problem;
    Solver solver;
};

TEST_F(SeveralKeys, AllSolutionsFindsEveryKey) {
    const SolveResult result = solve(solver, problem, allSolutions());
    EXPECT_TRUE(SameMoveSet(
        result.moves, {mv("e3", "e2"), mv("e3", "d2"), mv("e3", "e4"), mv("e3", "d4"), mv("e3", "d3")}));
    EXPECT_FALSE(result.stoppedOnDual);
    EXPECT_EQ(result.text.rfind(SeveralSolutionsText(static_cast<int>(result.moves.size()), 1), 0), 0u);
}

TEST_F(SeveralKeys, FirstSolutionEndsTheRun) {
    const SolveResult result = solve(solver, problem, SolveOptions{});
    EXPECT_EQ(result.moves.size(), 1u);
}

TEST_F(SeveralKeys, StopOnDualNeverLooksForAThird) {
    problem.flags |= StopOnDual;
    int told = 0;
    SolveCallbacks callbacks;
    callbacks.onSolution = [&told](const SolutionEvent& event) { told += !event.move.isNull(); };
    const SolveResult result = solve(solver, problem, allSolutions(), callbacks);
    EXPECT_EQ(result.moves.size(), 2u);
    EXPECT_EQ(told, 2);
    EXPECT_TRUE(result.stoppedOnDual);
    EXPECT_EQ(result.text.rfind(L"Search for solutions has been stopped after detection of dual.\n", 0), 0u);
}

TEST_F(SeveralKeys, StopOnThreeSolutions) {
    problem.flags |= StopOn3Sol;
    const SolveResult result = solve(solver, problem, allSolutions());
    EXPECT_EQ(result.moves.size(), 3u);
    EXPECT_TRUE(result.stoppedOnThree);
    EXPECT_EQ(result.text.rfind(L"Search for solutions has been stopped after finding 3 solutions\n", 0), 0u);
}

TEST_F(SeveralKeys, AStopKeepsTheSolutionsFoundSoFar) {
    // The stop comes from the solution callback itself, right after the first key.
    SolveCallbacks callbacks;
    callbacks.onSolution = [this](const SolutionEvent& event) {
        if (!event.move.isNull()) solver.Stop();
    };
    const SolveResult result = solve(solver, problem, allSolutions(), callbacks);
    ASSERT_EQ(result.moves.size(), 1u);
    EXPECT_TRUE(result.stopped);
    EXPECT_NE(result.text.find(L" (stopped by user)"), std::wstring::npos);
}

TEST(SolveDriver, StopEndsALongSolveWithin200Milliseconds) {
    TChessProblem problem;
    setUp(problem, LONG_SEARCH, 9);
    Solver solver;
    std::atomic<bool> finished{false};
    SolveCallbacks callbacks;
    callbacks.onFinished = [&finished] { finished = true; };
    SolveRequest request;
    request.options = allSolutions();
    solver.Start(problem, request, callbacks);
    std::this_thread::sleep_for(300ms);
    ASSERT_FALSE(finished.load());
    const auto stopAt = std::chrono::steady_clock::now();
    solver.Stop();
    const SolveResult result = solver.Wait();
    EXPECT_LT(std::chrono::steady_clock::now() - stopAt, 200ms);
    EXPECT_TRUE(result.stopped);
    EXPECT_EQ(result.text, L"Analysis stopped by user");
}

TEST(SolveDriver, PausedTimeIsLeftOutOfTheClock) {
    TChessProblem problem;
    setUp(problem, LONG_SEARCH, 9);
    Solver solver;
    const auto start = std::chrono::steady_clock::now();
    SolveRequest request;
    request.options = allSolutions();
    solver.Start(problem, request);
    std::this_thread::sleep_for(100ms);
    solver.Pause();
    std::this_thread::sleep_for(50ms);
    const uint64_t nodesAtPause = solver.Progress().nodes;
    std::this_thread::sleep_for(550ms);
    // Held: the counter stands still (a step may finish its last node).
    EXPECT_LE(solver.Progress().nodes, nodesAtPause + 1);
    solver.Stop();
    const SolveResult result = solver.Wait();
    const double wall =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    EXPECT_LT(result.milliseconds, wall - 400);
}

TEST(PassName, NamesTheScreenTheRelaxedPassesAndTheLastOne) {
    EXPECT_EQ(PassName(0, 0), "0");
    EXPECT_EQ(PassName(1, 0), "1");
    EXPECT_EQ(PassName(1, 1), "1b");
    EXPECT_EQ(PassName(1, 2), "1c");
    EXPECT_EQ(PassName(1, 25), "1z");
    EXPECT_EQ(PassName(1, 26), "1(27)");
    EXPECT_EQ(PassName(2, 3), "2");
}

TEST(AnalysedLineText, NumbersTheMovesAndGivesEachItsPlaceInItsList) {
    TChessboard root = EmptyChessboard();
    ASSERT_TRUE(ReadFen(LONG_SEARCH, root));
    root.m_shPliesLeft = root.m_shPliesTotal = 17; // White to move
    AnalysedLine line;
    line.steps[0] = {ParseMove("e2-e4", true), 4, 20};
    line.steps[1] = {ParseMove("e7-e5", false), 0, 20};
    line.steps[2] = {ParseMove("Ng1-f3", true), 28, 29};
    line.length = 3;
    EXPECT_EQ(AnalysedLineText(root, line), "1.e4 (5/20) 1...e5 (1/20) 2.Nf3 (29/29)");
    // A note that no longer fits the board ends the text before it.
    line.steps[1] = {ParseMove("e7-e4", false), 0, 20};
    EXPECT_EQ(AnalysedLineText(root, line), "1.e4 (5/20)");
    line.length = 0;
    EXPECT_EQ(AnalysedLineText(root, line), "");
}

TEST(SolveDriver, TheProgressShowsTheRegisterAndTheLineBeingAnalysed) {
    TChessProblem problem;
    setUp(problem, LONG_SEARCH, 9);
    Solver solver;
    SolveRequest request;
    request.options = allSolutions();
    solver.Start(problem, request);
    SolveProgress progress;
    const auto deadline = std::chrono::steady_clock::now() + 20s;
    do {
        std::this_thread::sleep_for(20ms);
        progress = solver.Progress();
    } while ((progress.line.size() < 40 || progress.registerPositions == 0) &&
             std::chrono::steady_clock::now() < deadline);
    solver.Stop();
    solver.Wait();
    const SolveProgress after = solver.Progress();
    // The visit with nine plies left shows the eight moves above it, White's first.
    const std::regex eightMoves(R"(1\.\S+ \(\d+/\d+\) 1\.\.\.\S+ \(\d+/\d+\) 2\.\S+ \(\d+/\d+\) 2\.\.\.\S+ )"
                                R"(\(\d+/\d+\) 3\.\S+ \(\d+/\d+\) 3\.\.\.\S+ \(\d+/\d+\) 4\.\S+ \(\d+/\d+\) )"
                                R"(4\.\.\.\S+ \(\d+/\d+\))");
    EXPECT_TRUE(std::regex_match(progress.line, eightMoves)) << progress.line;
    EXPECT_GT(progress.registerPositions, 0u);
    EXPECT_GT(after.registerPositions, 0u);
    EXPECT_EQ(after.registerBytes, after.registerPositions * REGISTER_BYTES_PER_ENTRY);
}

TEST(SolveDriver, ARepeatedSolveIsAnsweredFromTheRegister) {
    TChessProblem problem;
    setUp(problem, SIX_MOVER, 6);
    Solver solver;
    const SolveResult first = solve(solver, problem, allSolutions());
    ASSERT_FALSE(first.moves.empty());
    EXPECT_FALSE(first.fromRegister);
    const SolveResult second = solve(solver, problem, allSolutions());
    EXPECT_EQ(second.texts, first.texts);
    EXPECT_TRUE(second.fromRegister);
    EXPECT_NE(second.text.find(L" (from register)"), std::wstring::npos);
    EXPECT_LT(second.nodes * 3, first.nodes);
}

TEST(SolveDriver, ThreatsAreShownBehindTheKey) {
    // White: Kf6, Qa1; Black: Kh8. Among the keys, quiet queen moves threaten Qg7 mate.
    TChessProblem problem;
    setUp(problem, "7k/8/5K2/8/8/8/8/Q7", 2);
    Solver solver;
    const SolveResult result = solve(solver, problem, allSolutions());
    ASSERT_FALSE(result.moves.empty());
    bool anyThreat = false;
    for (const auto& [move, entry] : result.solutions) anyThreat |= !entry.threats.empty();
    EXPECT_TRUE(anyThreat);
    EXPECT_NE(result.text.find(L" threat: "), std::wstring::npos);
}

TEST(SolveDriver, FromALaterPositionAShorterMateIsNamedOrLess) {
    // #3 stipulated, but a mate in one stands on the board.
    TChessProblem problem;
    setUp(problem, MATE_IN_ONE, 3);
    Solver solver;
    SolveOptions options;
    const SolveResult result = solveFrom(solver, problem, problem.startPosition, 5, options);
    ASSERT_EQ(texts(result), std::vector<std::string>{"Rd1-d8"});
    EXPECT_EQ(result.solutions.at(mv("d1", "d8")).plies, 1);
    EXPECT_EQ(result.text.rfind(L"(1 or less) Rd1-d8", 0), 0u);
    EXPECT_NE(result.text.find(L" >> #1"), std::wstring::npos);
    // The mate in one ends the run: no longer depth was searched.
    EXPECT_EQ(result.nodes, 0u);
}

TEST(SolveDriver, FromALaterPositionAllSolutionsGoesOnToTheStipulatedDepth) {
    TChessProblem problem;
    setUp(problem, MATE_IN_ONE, 3);
    Solver solver;
    const SolveResult result = solveFrom(solver, problem, problem.startPosition, 5, allSolutions());
    ASSERT_GT(result.moves.size(), 1u);
    EXPECT_EQ(result.solutions.at(mv("d1", "d8")).plies, 1);
    for (const auto& [move, entry] : result.solutions) {
        if (!(move == mv("d1", "d8"))) {
            EXPECT_GT(entry.plies, 1);
        }
    }
    EXPECT_GT(result.nodes, 0u);
}

TEST(SolveDriver, WhiteKingInCheckIsTheDefenceTaskError) {
    TChessProblem problem;
    setUp(problem, "k7/8/8/8/8/8/8/r6K", 2);
    Solver solver;
    try {
        solveFrom(solver, problem, problem.startPosition, 4, SolveOptions{});
        FAIL() << "no task error";
    } catch (const ChessException& e) {
        EXPECT_STREQ(e.what(), "White king cannot be checked in the mate-defence task starting postition.");
    }
}

TEST(SolveDriver, ExpectedSortMovesAreMarkedWhenMet) {
    TChessProblem problem;
    setUp(problem, FIVE_KEYS, 5);
    // Find the front of the ordered root list first, then expect it.
    Solver solver;
    const SolveResult probe = solve(solver, problem, allSolutions());
    ASSERT_FALSE(probe.moves.empty());
    TChessboard root = problem.startPosition;
    TThreadContext ctx;
    root.m_pThread = &ctx;
    root.m_pProblem = &problem;
    SolveJob job(problem);
    ctx.m_pJob = &job;
    root.m_shPliesLeft = root.m_shPliesTotal = problem.plies;
    SetupChessboard(root, false);
    ctx.m_pRoot = &root;
    TMove list[MAX_MOVES];
    int count = GenerateWhiteMovesOrEvasions(root, list);
    WhiteSortOutcome outcome;
    count = SortWhiteMoves(root, list, count, true, outcome);
    ASSERT_GT(count, 1);
    TMove front = list[0], other = list[1];
    front.enPassant = other.enPassant = 0;
    problem.flags |= HasExpectedSortWhiteMoves;
    problem.expectedSortWhiteMoves = {front, other};
    const SolveResult marked = solve(solver, problem, SolveOptions{});
    ASSERT_EQ(marked.expectedSortWhiteMoves.size(), 2u);
    EXPECT_GE(marked.expectedSortWhiteMoves[0].from, EXPECTED_MOVE_MET);
    EXPECT_GE(marked.expectedSortWhiteMoves[0].to, EXPECTED_MOVE_MET);
    EXPECT_LT(marked.expectedSortWhiteMoves[1].from, EXPECTED_MOVE_MET);
    // The document keeps its expectation as the file gave it.
    EXPECT_LT(problem.expectedSortWhiteMoves[0].from, EXPECTED_MOVE_MET);
}

// The problem's sort indications reach the root list at the start of a solve.
namespace {

SolveResult firstKeyOf(TChessProblem& problem) {
    Solver solver;
    return solve(solver, problem, SolveOptions{});
}

} // namespace

TEST(SolveDriver, SortIndicationPutsItsMoveFirstInTheRootList) {
    TChessProblem plain;
    setUp(plain, FIVE_KEYS, 5);
    const SolveResult without = firstKeyOf(plain);
    ASSERT_EQ(without.moves.size(), 1u);
    ASSERT_NE(without.texts[0], "Ke3-d3");
    EXPECT_GT(without.keyPositions[0], 1);

    TChessProblem indicated;
    setUp(indicated, FIVE_KEYS, 5);
    // An indication without a number is never in force (the highest key, 0,
    // lies below the first move): it needs "1.".
    ParseSortIndications(indicated.sortIndications, "1.Ke3-d3", 1);
    const SolveResult with = firstKeyOf(indicated);
    EXPECT_EQ(with.texts, (std::vector<std::string>{"Ke3-d3"}));
    EXPECT_EQ(with.keyPositions, (std::vector<int>{1}));
}

TEST(SolveDriver, MainVariantServesAsSortIndicationWhenTheProblemAsks) {
    TChessProblem problem;
    setUp(problem, FIVE_KEYS, 5);
    const TVariant variant = ParseVariantText(L"{Main variant} Ke3-d3 Ka1-b1", false, 1);
    problem.variants[variant.name] = variant;
    // Without the option the variant is only a variant.
    EXPECT_NE(firstKeyOf(problem).keyPositions, (std::vector<int>{1}));

    TChessProblem asking;
    setUp(asking, FIVE_KEYS, 5);
    asking.variants[variant.name] = variant;
    asking.useMainVariantAsSortIndications = 1;
    const SolveResult with = firstKeyOf(asking);
    EXPECT_EQ(with.texts, (std::vector<std::string>{"Ke3-d3"}));
    EXPECT_EQ(with.keyPositions, (std::vector<int>{1}));
}

TEST(SafeModeFor, TheOptionOffOrTheFilesFlagTurnsItOn) {
    TChessProblem problem;
    EXPECT_FALSE(SafeModeFor(problem, true));
    EXPECT_TRUE(SafeModeFor(problem, false));
    problem.flags |= SafeMode;
    EXPECT_TRUE(SafeModeFor(problem, true));
}

TEST(SolveDriver, TheFilesSafeModeFlagHoldsAgainstTheQuickModeOption) {
    TChessProblem problem;
    setUp(problem, "7k/8/8/8/8/8/8/K7", 2);
    problem.flags |= SafeMode;
    Solver solver;
    const SolveResult result = solve(solver, problem, SolveOptions{});
    EXPECT_TRUE(result.safeMode);
    EXPECT_EQ(result.text, L"Not found any solutions for #2" + SecondsText(result.milliseconds));
}

TEST(SolveDriver, TheAutomaticSetStartsTheSolveAndIsGivenAsText) {
    TChessProblem problem;
    setUp(problem, FIVE_KEYS, 5);
    Solver solver;
    EXPECT_EQ(solve(solver, problem, allSolutions()).heuristics, "SH_AREKINGSNEAR, SH_3MOVESTOMATE");
    SolveOptions without = allSolutions();
    without.heuristics = false;
    const SolveResult plain = solve(solver, problem, without);
    EXPECT_EQ(plain.heuristics, "");
    EXPECT_EQ(plain.moves.size(), 5u);
}

TEST(SolveDriver, TheProblemsOwnOptionsOverrideTheAutomaticSet) {
    TChessProblem problem;
    setUp(problem, FIVE_KEYS, 5);
    problem.heuristicOptions[0x00000001] = "OFF";
    problem.heuristicOptions[0x00080000] = "strict";
    Solver solver;
    const SolveResult result = solve(solver, problem, allSolutions());
    EXPECT_EQ(result.heuristics, "SH_ASSERTBLACKKINGSURROUNDED(strict), SH_3MOVESTOMATE");
    EXPECT_EQ(result.moves.size(), 5u);
}

TEST(SolveDriver, EachRelaxationIsLoggedBeforeAndAfterWhenAsked) {
    TChessProblem problem;
    setUp(problem, FIVE_KEYS, 5);
    SolveOptions options = allSolutions();
    options.relaxationLog = std::filesystem::temp_directory_path() / "zorvane_driver_relaxation.log";
    std::filesystem::remove(options.relaxationLog);
    Solver solver;
    solve(solver, problem, options);
    std::ifstream in(options.relaxationLog);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line.substr(20));
    // The set relaxes to nothing at once: pass 2 follows.
    EXPECT_EQ(lines,
              (std::vector<std::string>{"BEFORE th=0 SH_AREKINGSNEAR, SH_3MOVESTOMATE", "AFTER  th=0 "}));
    std::filesystem::remove(options.relaxationLog);
}
