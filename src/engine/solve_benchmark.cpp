#include "engine/solve_benchmark.h"

#include "core/fen.h"
#include "engine/mate_search.h"
#include "problems/problem_scan.h"

#include <algorithm>
#include <stdexcept>

namespace zorvane {

const std::vector<int>& SolveBenchmarkNumbers() {
    // Four three-movers, six four-movers and five five-movers of varied material.
    static const std::vector<int> numbers = {30, 38, 47, 52, 57, 60, 63, 68, 77, 78, 85, 89, 93, 99, 101};
    return numbers;
}

std::vector<BenchmarkProblem> RunSolveBenchmark(const std::string& corpusPath,
                                                const std::function<void(const BenchmarkProblem&)>& onSolved) {
    const std::vector<ScannedProblem> corpus = ScanProblemFile(corpusPath);
    std::vector<BenchmarkProblem> results;
    MateProof proof;
    for (const int number : SolveBenchmarkNumbers()) {
        const auto found = std::find_if(corpus.begin(), corpus.end(),
                                        [number](const ScannedProblem& p) { return p.number == number; });
        if (found == corpus.end() || found->moves == 0)
            throw std::runtime_error("benchmark problem " + std::to_string(number) + " is missing from " + corpusPath);
        TChessboard board = EmptyChessboard();
        if (!ReadFen(found->fen, board))
            throw std::runtime_error("benchmark problem " + std::to_string(number) + " has a bad FEN");
        const MateKeys keys = proof.FindKeys(board, found->moves);
        BenchmarkProblem result{number, found->moves, keys.texts, keys.nodes, keys.milliseconds};
        if (onSolved) onSolved(result);
        results.push_back(std::move(result));
    }
    return results;
}

} // namespace zorvane
