// Key sets of checked direct mates from the shared corpus: every White first
// move that forces mate within the stipulation, no more and no fewer.
#include "core/fen.h"
#include "engine/mate_search.h"
#include "problems/problem_scan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace zorvane {
namespace {

const std::string CORPUS = std::string(ZORVANE_SHARED_DIR) + "/corpus/peer_examples.cp";

std::vector<std::string> sorted(std::vector<std::string> v) {
    std::sort(v.begin(), v.end());
    return v;
}

void solveCorpus(int minMoves, int maxMoves, bool safeMode) {
    if (!std::filesystem::exists(CORPUS)) GTEST_SKIP() << "corpus not found at " << CORPUS << " (../shared is absent)";
    int solved = 0;
    for (const ScannedProblem& problem : ScanProblemFile(CORPUS)) {
        if (problem.moves < minMoves || problem.moves > maxMoves) continue;
        TChessboard board = EmptyChessboard();
        ASSERT_TRUE(ReadFen(problem.fen, board)) << "problem " << problem.number;
        MateProof proof(safeMode);
        const MateKeys keys = proof.FindKeys(board, problem.moves);
        std::printf("problem %d #%d: %.0f ms, %llu nodes\n", problem.number, problem.moves, keys.milliseconds,
                    static_cast<unsigned long long>(keys.nodes));
        EXPECT_EQ(sorted(keys.texts), sorted(problem.answers))
            << "problem " << problem.number << " #" << problem.moves << " " << problem.fen;
        ++solved;
    }
    EXPECT_GT(solved, 0);
}

TEST(CorpusKeys, TwoMovers) { solveCorpus(1, 2, false); }
TEST(CorpusKeys, ThreeMovers) { solveCorpus(3, 3, false); }
TEST(CorpusKeys, FourMovers) { solveCorpus(4, 4, false); }
TEST(CorpusKeysLong, FiveMovers) { solveCorpus(5, 5, false); }
TEST(CorpusKeysLong, SixMovers) { solveCorpus(6, 6, false); }
TEST(CorpusKeys, TwoAndThreeMoversInSafeMode) { solveCorpus(1, 3, true); }

} // namespace
} // namespace zorvane
