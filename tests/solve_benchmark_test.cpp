// The benchmark list solves to its corpus keys, and its node count is the
// signature of the search: a change of the search that alters it on purpose
// updates this number in the same commit.
#include "corpus_solving.h"
#include "core/chess_exception.h"
#include "engine/solve_benchmark.h"

#include <cstdio>
#include <filesystem>

namespace zorvane {
namespace {

constexpr uint64_t EXPECTED_NODES = 5079444;
// The project's own set, which every test run has: the sample collection and
// a few endgames of our own, where the register takes part.
constexpr uint64_t EXPECTED_OWN_NODES = 2502183;
const std::vector<std::string> OWN_SET = {ZORVANE_SOURCE_DIR "/data/sample_problems.cp",
                                          ZORVANE_SOURCE_DIR "/bench/own_positions.cp"};

TEST(SolveBenchmark, KeysAndNodeSignature) {
    if (!CorpusPresent()) GTEST_SKIP() << "corpus not found at " << CORPUS << " (../shared is absent)";
    uint64_t nodes = 0;
    for (const BenchmarkProblem& solved : RunSolveBenchmark(CORPUS)) {
        EXPECT_TRUE(SameMoveSet(solved.keyMoves, solved.expected)) << "problem " << solved.number;
        nodes += solved.nodes;
    }
    EXPECT_EQ(nodes, EXPECTED_NODES);
}

TEST(SolveBenchmark, OwnSetKeysAndNodeSignature) {
    uint64_t nodes = 0;
    int solved = 0;
    for (const std::string& file : OWN_SET) {
        for (const BenchmarkProblem& problem : RunFileBenchmark(file)) {
            EXPECT_TRUE(SameMoveSet(problem.keyMoves, problem.expected))
                << file << " problem " << problem.number;
            nodes += problem.nodes;
            ++solved;
        }
    }
    EXPECT_EQ(solved, 49);
    EXPECT_EQ(nodes, EXPECTED_OWN_NODES);
}

TEST(SolveBenchmark, TheKeysDoNotDependOnTheOrdering) {
    // Equal keys leave the order of two moves to the sort: whatever it is,
    // the same keys must come out, and so they must with no ordering at all.
    const std::string file = ZORVANE_SOURCE_DIR "/data/sample_problems.cp";
    const std::vector<BenchmarkProblem> ordered = RunFileBenchmark(file);
    BenchmarkSettings plain;
    plain.ordering = false;
    const std::vector<BenchmarkProblem> unordered = RunFileBenchmark(file, plain);
    ASSERT_EQ(ordered.size(), unordered.size());
    for (size_t i = 0; i < ordered.size(); ++i) {
        EXPECT_TRUE(SameMoveSet(ordered[i].keyMoves, unordered[i].keyMoves))
            << "problem " << ordered[i].number;
        EXPECT_TRUE(SameMoveSet(ordered[i].keyMoves, ordered[i].expected)) << "problem " << ordered[i].number;
    }
}

TEST(SolveBenchmark, TheFirstSolutionRunWithHeuristicsGivesOneKeyOfEachProblem) {
    BenchmarkSettings first;
    first.firstSolution = true;
    first.heuristics = true;
    int solved = 0;
    for (const std::string& file : OWN_SET) {
        for (const BenchmarkProblem& problem : RunFileBenchmark(file, first)) {
            if (problem.expected.empty()) {
                EXPECT_TRUE(problem.keyMoves.empty()) << file << " problem " << problem.number;
            } else {
                ASSERT_EQ(problem.keyMoves.size(), 1u) << file << " problem " << problem.number;
                EXPECT_EQ(
                    std::count(problem.expected.begin(), problem.expected.end(), problem.keyMoves.front()), 1)
                    << file << " problem " << problem.number;
            }
            ++solved;
        }
    }
    EXPECT_EQ(solved, 49);
}

TEST(SolveBenchmark, ListHoldsThreeToSixMovers) {
    EXPECT_EQ(SolveBenchmarkNumbers().size(), 23u);
}

TEST(SolveBenchmark, MissingCorpusIsReported) {
    EXPECT_THROW(RunSolveBenchmark("/nonexistent/problems.cp"), std::runtime_error);
}

} // namespace
} // namespace zorvane

namespace zorvane {
namespace {

std::string writeList(const std::string& name, const std::string& text) {
    const std::string path = (std::filesystem::temp_directory_path() / name).string();
    std::FILE* file = std::fopen(path.c_str(), "wb");
    std::fputs(text.c_str(), file);
    std::fclose(file);
    return path;
}

TEST(LongBenchmark, GivesTheFirstKeyAndStopsAtTheCap) {
    LongBenchmarkSettings settings;
    settings.epdPath = writeList("zorvane_long_benchmark_test.epd",
                                 "6k1/8/6K1/8/8/8/8/3R4 w - - bm #1;\n"
                                 "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - bm #9;\n"
                                 "K7/8/5k2/8/8/8/1R6/8 w - - bm #40;\n");
    settings.epdMaxMoves = 16;
    settings.capSeconds = 0.3;
    std::vector<std::string> seen;
    const auto runs =
        RunLongBenchmark(settings, [&seen](const LongMateRun& run) { seen.push_back(run.name); });
    ASSERT_EQ(runs.size(), 2u); // the #40 lies beyond the moves asked for
    EXPECT_EQ(seen, (std::vector<std::string>{"long_mates line 1", "long_mates line 2"}));
    EXPECT_TRUE(runs[0].proven);
    EXPECT_EQ(runs[0].key, "Rd1-d8");
    EXPECT_EQ(runs[0].moves, 1);
    EXPECT_FALSE(runs[1].proven);
    EXPECT_EQ(runs[1].key, "");
    EXPECT_EQ(runs[1].moves, 9);
    std::filesystem::remove(settings.epdPath);
}

TEST(LongBenchmark, AMissingListIsReported) {
    LongBenchmarkSettings settings;
    settings.epdPath = "/nonexistent/long_mates.epd";
    EXPECT_THROW(RunLongBenchmark(settings), ChessException);
}

} // namespace
} // namespace zorvane
