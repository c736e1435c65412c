// The benchmark list solves to its corpus keys, and its node count is the
// signature of the search: a change of the search that alters it on purpose
// updates this number in the same commit.
#include "corpus_solving.h"
#include "engine/solve_benchmark.h"

namespace zorvane {
namespace {

constexpr uint64_t EXPECTED_NODES = 5095484;

TEST(SolveBenchmark, KeysAndNodeSignature) {
    if (!CorpusPresent()) GTEST_SKIP() << "corpus not found at " << CORPUS << " (../shared is absent)";
    uint64_t nodes = 0;
    for (const BenchmarkProblem& solved : RunSolveBenchmark(CORPUS)) {
        EXPECT_TRUE(SameMoveSet(solved.keyMoves, solved.expected)) << "problem " << solved.number;
        nodes += solved.nodes;
    }
    EXPECT_EQ(nodes, EXPECTED_NODES);
}

TEST(SolveBenchmark, ListHoldsThreeToSixMovers) { EXPECT_EQ(SolveBenchmarkNumbers().size(), 23u); }

TEST(SolveBenchmark, MissingCorpusIsReported) {
    EXPECT_THROW(RunSolveBenchmark("/nonexistent/problems.cp"), std::runtime_error);
}

} // namespace
} // namespace zorvane
