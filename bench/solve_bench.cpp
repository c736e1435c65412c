// The solve benchmark: each problem of the fixed list from the shared corpus,
// solved by the mate proof on one thread. Reports nodes, time and keys.
#include "engine/mate_search.h"
#include "engine/solve_benchmark.h"
#include "problems/problem_file.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>

namespace {

const std::string CORPUS = ZORVANE_SHARED_DIR "/corpus/peer_examples.cp";

void solveOne(benchmark::State& state, const zorvane::TChessProblem* problem) {
    zorvane::MateKeys keys;
    for (auto _ : state) {
        zorvane::MateProof proof;
        keys = proof.FindKeys(problem->startPosition, problem->stipulationMoves());
    }
    std::string label = "#";
    label += std::to_string(problem->stipulationMoves());
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
    zorvane::ProblemMap corpus;
    std::set<std::wstring> tags;
    zorvane::LoadProblemFile(CORPUS, corpus, false, zorvane::ProblemFileSettings{}, tags);
    for (const int number : zorvane::SolveBenchmarkNumbers()) {
        const auto found = corpus.find(number);
        if (found == corpus.end()) continue;
        benchmark::RegisterBenchmark(("Solve/" + std::to_string(number)).c_str(), solveOne,
                                     found->second.get())
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
