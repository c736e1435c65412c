// The solve benchmark: each problem of the fixed list from the shared corpus,
// solved by the mate proof on one thread. Reports nodes, time and keys.
#include "core/fen.h"
#include "engine/mate_search.h"
#include "engine/solve_benchmark.h"
#include "problems/problem_scan.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace {

const std::string CORPUS = ZORVANE_SHARED_DIR "/corpus/peer_examples.cp";

void solveOne(benchmark::State& state, zorvane::ScannedProblem problem) {
    zorvane::TChessboard board = zorvane::EmptyChessboard();
    if (!zorvane::ReadFen(problem.fen, board)) {
        state.SkipWithError("bad FEN");
        return;
    }
    zorvane::MateKeys keys;
    for (auto _ : state) {
        zorvane::MateProof proof;
        keys = proof.FindKeys(board, problem.moves);
    }
    std::string label = "#";
    label += std::to_string(problem.moves);
    for (const std::string& key : keys.texts) {
        label += ' ';
        label += key;
    }
    state.counters["nodes"] = static_cast<double>(keys.nodes);
    state.SetLabel(label);
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (!std::filesystem::exists(CORPUS)) {
        std::fprintf(stderr, "solve_bench: corpus not found at %s\n", CORPUS.c_str());
        return 2;
    }
    const std::vector<zorvane::ScannedProblem> corpus = zorvane::ScanProblemFile(CORPUS);
    for (const int number : zorvane::SolveBenchmarkNumbers()) {
        const auto found = std::find_if(corpus.begin(), corpus.end(),
                                        [number](const zorvane::ScannedProblem& p) { return p.number == number; });
        if (found == corpus.end()) continue;
        benchmark::RegisterBenchmark(("Solve/" + std::to_string(number)).c_str(), solveOne, *found)
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
