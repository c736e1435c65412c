#pragma once
// Solving the direct mates of the shared corpus and comparing their keys with
// the complete key sets of the file.
#include "core/fen.h"
#include "engine/mate_search.h"
#include "problems/problem_scan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace zorvane {

inline const std::string CORPUS = std::string(ZORVANE_SHARED_DIR) + "/corpus/peer_examples.cp";

inline bool CorpusPresent() { return std::filesystem::exists(CORPUS); }

inline std::vector<std::string> Sorted(std::vector<std::string> v) {
    std::sort(v.begin(), v.end());
    return v;
}

// Every corpus problem of minMoves..maxMoves must give exactly its key set.
inline void SolveCorpus(int minMoves, int maxMoves, bool safeMode, bool report = false) {
    if (!CorpusPresent()) GTEST_SKIP() << "corpus not found at " << CORPUS << " (../shared is absent)";
    int solved = 0;
    for (const ScannedProblem& problem : ScanProblemFile(CORPUS)) {
        if (problem.moves < minMoves || problem.moves > maxMoves) continue;
        TChessboard board = EmptyChessboard();
        ASSERT_TRUE(ReadFen(problem.fen, board)) << "problem " << problem.number;
        MateProof proof(safeMode);
        const MateKeys keys = proof.FindKeys(board, problem.moves);
        EXPECT_EQ(Sorted(keys.texts), Sorted(problem.answers))
            << "problem " << problem.number << " #" << problem.moves << " " << problem.fen;
        if (report)
            std::printf("problem %d #%d: %.0f ms, %llu nodes\n", problem.number, problem.moves, keys.milliseconds,
                        static_cast<unsigned long long>(keys.nodes));
        ++solved;
    }
    EXPECT_GT(solved, 0);
}

} // namespace zorvane
