#pragma once
// Solving the direct mates of the shared corpus and comparing their keys with
// the complete key sets of the file's answers.
#include "engine/mate_search.h"
#include "problems/problem_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace zorvane {

inline const std::string CORPUS = std::string(ZORVANE_SHARED_DIR) + "/corpus/peer_examples.cp";

inline bool CorpusPresent() {
    return std::filesystem::exists(CORPUS);
}

inline ProblemMap LoadCorpus() {
    ProblemMap corpus;
    std::set<std::wstring> tags;
    LoadProblemFile(CORPUS, corpus, false, ProblemFileSettings{}, tags);
    return corpus;
}

inline std::string JoinedTexts(const std::vector<std::string>& texts) {
    std::string joined;
    for (const std::string& text : texts) joined += (joined.empty() ? "" : ", ") + text;
    return joined;
}

// Calls check(id, problem, moves) for every direct mate of the corpus with
// minMoves..maxMoves, and makes sure that there was one.
template <class Check> void ForEachCorpusMate(int minMoves, int maxMoves, Check&& check) {
    int solved = 0;
    for (const auto& [id, problem] : LoadCorpus()) {
        const int moves = problem->stipulationMoves();
        if (problem->type != PROBLEM_DIRECT_MATE || moves < minMoves || moves > maxMoves) continue;
        check(id, *problem, moves);
        ++solved;
    }
    EXPECT_GT(solved, 0);
}

// Every corpus problem of minMoves..maxMoves must give exactly its key set; a
// problem without an answer has no solution. With `heuristics` the solve bets
// first, as a user's solve does, and must still give every key.
inline void SolveCorpus(int minMoves, int maxMoves, bool safeMode, bool report = false,
                        bool heuristics = false) {
    if (!CorpusPresent()) GTEST_SKIP() << "corpus not found at " << CORPUS << " (../shared is absent)";
    ForEachCorpusMate(minMoves, maxMoves, [&](int id, const TChessProblem& problem, int moves) {
        MateProof proof(safeMode, true, true, heuristics);
        const MateKeys keys = proof.FindKeys(problem.startPosition, moves);
        EXPECT_TRUE(SameMoveSet(keys.keys, problem.expectedAnswers))
            << "problem " << id << " #" << moves << ": found " << JoinedTexts(keys.texts);
        EXPECT_EQ((problem.flags & HasAnswer) != 0, !problem.expectedAnswers.empty()) << "problem " << id;
        if (report)
            std::printf("problem %d #%d: %.0f ms, %llu nodes\n", id, moves, keys.milliseconds,
                        static_cast<unsigned long long>(keys.nodes));
    });
}

// In first-solution mode the key found must be one of the answer's keys, and a
// problem without an answer gives none.
inline void SolveCorpusFirstKey(int minMoves, int maxMoves, bool safeMode, bool heuristics) {
    if (!CorpusPresent()) GTEST_SKIP() << "corpus not found at " << CORPUS << " (../shared is absent)";
    ForEachCorpusMate(minMoves, maxMoves, [&](int id, const TChessProblem& problem, int moves) {
        MateProof proof(safeMode, true, true, heuristics);
        const MateKeys keys = proof.FindFirstKey(problem.startPosition, moves);
        if (problem.expectedAnswers.empty()) {
            EXPECT_TRUE(keys.keys.empty()) << "problem " << id << ": found " << JoinedTexts(keys.texts);
            return;
        }
        ASSERT_FALSE(keys.keys.empty()) << "problem " << id;
        EXPECT_EQ(
            std::count(problem.expectedAnswers.begin(), problem.expectedAnswers.end(), keys.keys.front()), 1)
            << "problem " << id << " #" << moves << ": first key " << keys.texts.front();
    });
}

} // namespace zorvane
