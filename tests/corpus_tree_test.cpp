// Every line of the solution trees of the corpus's two-, three- and
// four-movers, checked against solves of its own positions.
#include "corpus_solving.h"
#include "tree_check.h"

#include <gtest/gtest.h>

namespace zorvane {
namespace {

void CheckCorpusTrees(int moves) {
    if (!CorpusPresent()) GTEST_SKIP() << "corpus not found at " << CORPUS << " (../shared is absent)";
    ForEachCorpusMate(moves, moves, [&](int id, const TChessProblem& problem, int) {
        MateProof proof;
        proof.WithTree({true});
        const MateKeys keys = proof.FindKeys(problem.startPosition, moves);
        EXPECT_EQ(keys.tree.keys.size(), keys.keys.size()) << "problem " << id;
        TreeChecker checker(problem.startPosition, moves, "problem " + std::to_string(id));
        checker.check(keys.tree);
    });
}

TEST(CorpusTrees, TwoMovers) {
    CheckCorpusTrees(2);
}
TEST(CorpusTrees, ThreeMovers) {
    CheckCorpusTrees(3);
}
TEST(CorpusTrees, FourMovers) {
    CheckCorpusTrees(4);
}

} // namespace
} // namespace zorvane
