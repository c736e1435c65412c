// The mate proof: the White and Black steps, the last-plies routines,
// repetitions, and the command word that stops, pauses and holds threads.
#include "core/chess_exception.h"
#include "core/fen.h"
#include "core/make_move.h"
#include "core/thread_context.h"
#include "engine/find_mate.h"
#include "engine/mate_search.h"
#include "engine/solve_driver.h"
#include "engine/solver.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <thread>

namespace zorvane {
namespace {

using namespace std::chrono_literals;

// A position wired to a thread context, a problem and its solve, with `plies` left.
struct SearchFixture {
    TChessProblem problem;
    SolveJob job{problem};
    std::unique_ptr<TThreadContext> context = std::make_unique<TThreadContext>();

    SearchFixture() { context->m_pJob = &job; }

    TChessboard Position(const std::string& fen, int plies) {
        TChessboard board = EmptyChessboard();
        board.m_pProblem = &problem;
        board.m_pThread = context.get();
        board.m_shPliesLeft = board.m_shPliesTotal = static_cast<uint16_t>(plies);
        board.m_bPass = 2;
        EXPECT_TRUE(ReadFen(fen, board)) << fen;
        job.m_shRepetitionLimit = static_cast<uint16_t>(plies);
        return board;
    }
};

std::vector<std::string> keysOf(const std::string& fen, int moves, bool safeMode = false) {
    TChessboard board = EmptyChessboard();
    EXPECT_TRUE(ReadFen(fen, board));
    MateProof proof(safeMode);
    return proof.FindKeys(board, moves).texts;
}

TEST(FindMate, StalemateWithPliesLeftIsNoMate) {
    SearchFixture f;
    // Black to move: Ka8 has no move and is not in check.
    TChessboard board = f.Position("k7/2Q5/1K6/8/8/8/8/8", 2);
    EXPECT_EQ(FindMateBlackStep(board), RESULT_NO_MATE);
    board = f.Position("k7/2Q5/1K6/8/8/8/8/8", 4);
    EXPECT_EQ(FindMateBlackStep(board), RESULT_NO_MATE);
}

TEST(FindMate, StalemateAtTheLeafIsNoMate) {
    SearchFixture f;
    TChessboard board = f.Position("k7/2Q5/1K6/8/8/8/8/8", 0);
    EXPECT_EQ(FindMateBlackStep(board), RESULT_NO_MATE);
}

TEST(FindMate, MateBeforeTheLastPlyCountsAtEveryDepth) {
    SearchFixture f;
    // Black is mated already: no legal reply while in check gives mate at any n.
    for (int plies : {0, 2, 4, 6}) {
        TChessboard board = f.Position("k7/1Q6/1K6/8/8/8/8/8", plies);
        EXPECT_EQ(FindMateBlackStep(board), RESULT_MATE) << plies;
    }
}

TEST(FindMate, CheckWithoutMateIsNoMateAtTheLeaf) {
    SearchFixture f;
    TChessboard board = f.Position("k7/8/1K6/8/8/8/8/Q7", 0);
    ASSERT_TRUE(board.blackInCheck());
    EXPECT_EQ(FindMateBlackStep(board), RESULT_NO_MATE);
}

TEST(FindMate, ShorterMateIsAKeyOfTheLongerStipulation) {
    // Rd1-d8 mates at once; in a #2 it is still a key, beside the quiet ones.
    const auto keys = keysOf("6k1/5ppp/8/8/8/8/8/3R2K1", 2);
    EXPECT_NE(std::find(keys.begin(), keys.end(), "Rd1-d8"), keys.end());
    EXPECT_EQ(keysOf("6k1/5ppp/8/8/8/8/8/3R2K1", 1), std::vector<std::string>{"Rd1-d8"});
}

TEST(FindMate, MateInOneKinds) {
    // Promotions, a queen's mates in generation order, a rook beside a useless bishop.
    EXPECT_EQ(keysOf("k7/2P5/1K6/8/8/8/8/8", 1), (std::vector<std::string>{"c7-c8Q", "c7-c8R"}));
    EXPECT_EQ(keysOf("7k/5Q2/6K1/8/8/8/8/8", 1),
              (std::vector<std::string>{"Qf7-f8", "Qf7-g7", "Qf7-h7", "Qf7-e8"}));
    EXPECT_EQ(keysOf("k7/8/1K6/8/8/8/8/1B5R", 1), (std::vector<std::string>{"Rh1-h8"}));
    // The knight unmasks the rook: from d6 and f6 it checks too, and a double check cannot be parried;
    // its other moves give a single check that the bishop or the queen blocks on e7.
    EXPECT_EQ(keysOf("3qkb2/3p1p2/8/8/4N3/8/8/1K2R3", 1), (std::vector<std::string>{"Ne4-d6", "Ne4-f6"}));
}

TEST(FindMate, EnPassantThatUncoversTheQueenMates) {
    // The position of a corpus two-mover after 1.Qg4+ f5: e.p. takes away the blocker.
    SearchFixture f;
    TChessboard before = f.Position("5R2/1N3p2/3pk3/6PR/6Q1/B3K3/8/8", 2);
    TChessboard after = before;
    after.m_pParent = &before;
    TMove doubleStep{53, 37, 0, 0};
    ASSERT_EQ(MakeBlackMove(after, doubleStep, false), BLACK_MOVE_MADE);
    TMove mate;
    ASSERT_TRUE(FindMateInOne(after, &mate));
    EXPECT_EQ(mate.from, 38); // g5
    EXPECT_EQ(mate.to, 45);   // f6
}

TEST(FindMate, AllRepliesIllegalInCheckIsMateAndOtherwiseStalemate) {
    SearchFixture f;
    // Black's only man, a pinned bishop, cannot move; lazy (n = 2) and full (n = 4) generation agree.
    for (int plies : {2, 4}) {
        TChessboard stalemate = f.Position("k7/1b6/2Q5/8/8/8/8/7K", plies);
        ASSERT_FALSE(stalemate.blackInCheck());
        EXPECT_EQ(FindMateBlackStep(stalemate), RESULT_NO_MATE) << plies;
        TChessboard mate = f.Position("kb6/1Q6/2K5/8/8/8/8/8", plies);
        ASSERT_TRUE(mate.blackInCheck());
        EXPECT_EQ(FindMateBlackStep(mate), RESULT_MATE) << plies;
    }
}

TEST(FindMate, TaskCheckRefusesBlackInCheck) {
    TChessboard board = EmptyChessboard();
    ASSERT_TRUE(ReadFen("k7/8/8/8/8/8/8/R6K", board));
    MateProof proof;
    try {
        proof.FindKeys(board, 2);
        FAIL() << "no exception";
    } catch (const ChessException& e) {
        EXPECT_STREQ(e.what(), "Black king cannot be checked in the mate task starting postition.");
    }
}

TEST(FindMate, StipulationOutsideTheRangeIsRefused) {
    TChessboard board = EmptyChessboard();
    ASSERT_TRUE(ReadFen("k7/8/1K6/8/8/8/8/7R", board));
    MateProof proof;
    EXPECT_THROW(proof.FindKeys(board, 0), std::invalid_argument);
    EXPECT_THROW(proof.FindKeys(board, 256), std::invalid_argument);
    EXPECT_NO_THROW(proof.FindKeys(board, 1));
}

// A king and rook shuffle: the rook goes h1-h2 and back while the black king
// steps e5-e6 and back, so the last White move repeats the position four plies up.
struct ShuffleLine {
    SearchFixture f;
    TChessboard p0, p1, p2, p3;

    explicit ShuffleLine(int limit) {
        p0 = f.Position("8/8/8/4k3/8/8/8/K6R", 6);
        p0.m_shPliesLeft = 6; // Black to move
        f.job.m_shRepetitionLimit = static_cast<uint16_t>(limit);
        play(p1, p0, TMove{36, 44, 0, 0}, false);
        play(p2, p1, TMove{7, 15, 0, 0}, true);
        play(p3, p2, TMove{44, 36, 0, 0}, false);
    }
    static void play(TChessboard& child, const TChessboard& parent, TMove move, bool white) {
        CopyToChild(child, parent);
        const bool made =
            white ? MakeWhiteMove(child, move) : MakeBlackMove(child, move, false) == BLACK_MOVE_MADE;
        ASSERT_TRUE(made);
    }
};

TEST(FindMate, RepetitionWithinTheLimitIsCountedInQuickMode) {
    ShuffleLine line(6);
    EXPECT_EQ(FindMate(line.p3, true), RESULT_REPETITION);
    EXPECT_EQ(line.f.context->m_aRepetition[3], 6);
}

TEST(FindMate, RepetitionFirstPlayedAboveTheLimitDoesNotCount) {
    ShuffleLine line(5);
    EXPECT_EQ(FindMate(line.p3, true), RESULT_NO_MATE);
    EXPECT_EQ(line.f.context->m_aRepetition[3], 0);
}

TEST(FindMate, SafeModeSearchesShallowRepetitions) {
    ShuffleLine line(6);
    line.f.job.m_bSafeMode = 1;
    EXPECT_EQ(FindMate(line.p3, true), RESULT_NO_MATE);
}

TEST(FindMate, NodesAreCountedNearTheLeaves) {
    TChessboard board = EmptyChessboard();
    ASSERT_TRUE(ReadFen("5k2/8/5K2/8/8/8/8/4R3", board));
    MateProof proof;
    const MateKeys keys = proof.FindKeys(board, 2);
    EXPECT_EQ(keys.texts, std::vector<std::string>{"Kf6-g6"});
    EXPECT_EQ(keys.nodes, 18u); // the key itself is proved by the screen of pass 0
}

// A search from the initial position that runs for minutes unless stopped.
constexpr const char* LONG_SEARCH = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";

// A solve of the long search through the Solver.
struct LongSolve {
    TChessProblem problem;
    Solver solver;

    explicit LongSolve(const char* fen, int moves = 9) {
        EXPECT_TRUE(ReadFen(fen, problem.startPosition));
        SetStipulation(problem, moves);
        SolveRequest request;
        request.options.allSolutions = true;
        solver.Start(problem, request);
    }
};

TEST(FindMateCommands, StopEndsTheSearchQuickly) {
    LongSolve run(LONG_SEARCH);
    std::this_thread::sleep_for(300ms);
    ASSERT_TRUE(run.solver.Running());
    const auto stopAt = std::chrono::steady_clock::now();
    run.solver.Stop();
    const SolveResult result = run.solver.Wait();
    EXPECT_LT(std::chrono::steady_clock::now() - stopAt, 200ms);
    EXPECT_TRUE(result.stopped);
    EXPECT_TRUE(result.moves.empty());
}

TEST(FindMateCommands, PauseHoldsTheNodeCountAndResumeGoesOn) {
    LongSolve run(LONG_SEARCH);
    std::this_thread::sleep_for(200ms);
    run.solver.Pause();
    std::this_thread::sleep_for(250ms);
    const uint64_t held = run.solver.Progress().nodes;
    std::this_thread::sleep_for(300ms);
    EXPECT_EQ(run.solver.Progress().nodes, held);
    run.solver.Resume();
    std::this_thread::sleep_for(300ms);
    EXPECT_GT(run.solver.Progress().nodes, held);
    run.solver.Stop();
    EXPECT_TRUE(run.solver.Wait().stopped);
}

// The command word as the engine's own threads use it: for one thread, or a
// jump. A job and the driver on the test's thread stand for a solve.
struct DriverRun {
    TChessProblem problem;
    SolveJob job{problem};
    SolveDriver driver;

    explicit DriverRun(const std::string& fen, int moves) {
        EXPECT_TRUE(ReadFen(fen, problem.startPosition));
        SetStipulation(problem, moves);
    }
    SolveResult Solve() {
        SolveOptions options;
        options.allSolutions = true;
        return driver.SolveProblem(job, options);
    }
};

TEST(FindMateCommands, CommandForAnotherThreadIsIgnored) {
    DriverRun run("5k2/8/5K2/8/8/8/8/4R3", 2);
    // The word as the thread commands leave it: stop, for thread 7; the search runs as thread 0.
    run.job.m_wCommandThread.store(7);
    run.job.m_nCommand.store(COMMAND_STOP);
    const SolveResult result = run.Solve();
    EXPECT_FALSE(result.stopped);
    EXPECT_EQ(result.texts, std::vector<std::string>{"Kf6-g6"});
}

TEST(FindMateCommands, SuspendedThreadResumesAtOneAndUnwindsAtTwo) {
    SearchFixture f;
    TChessboard board = f.Position(LONG_SEARCH, 15);
    TChessboard child = board;
    child.m_pParent = &board;
    TMove e4{12, 28, 0, 0};
    ASSERT_TRUE(MakeWhiteMove(child, e4));
    auto running = std::async(std::launch::async, [&] { return FindMateBlackStep(child); });
    std::this_thread::sleep_for(200ms);
    f.context->m_nSuspended.store(1);
    std::this_thread::sleep_for(250ms);
    const uint64_t held = f.job.m_nNodes.load();
    std::this_thread::sleep_for(300ms);
    EXPECT_EQ(f.job.m_nNodes.load(), held);
    f.context->m_nSuspended.store(0);
    std::this_thread::sleep_for(300ms);
    EXPECT_GT(f.job.m_nNodes.load(), held);
    f.context->m_nSuspended.store(2);
    ASSERT_EQ(running.wait_for(2s), std::future_status::ready);
    EXPECT_EQ(running.get(), RESULT_NO_MATE);
}

TEST(FindMateCommands, JumpBackKeepsTheAnswer) {
    // A jump to the first Black ply sends the interrupted reply to the end of
    // its list; the proof must come to the same keys.
    const std::string fen = "8/8/8/8/8/4K3/2R5/k7";
    DriverRun plain(fen, 5);
    const auto expected = plain.Solve().texts;
    DriverRun jumped(fen, 5);
    jumped.job.SetJump(ALL_THREADS, 8, 2, COMMAND_RUN, ALL_THREADS);
    EXPECT_EQ(jumped.Solve().texts, expected);
    EXPECT_EQ(jumped.job.m_nCommand.load(), COMMAND_RUN);
}

} // namespace
} // namespace zorvane
