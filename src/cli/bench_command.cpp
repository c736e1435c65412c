// zorvane-cli bench: solves the fixed benchmark list and prints its node count,
// the signature of the search.
#include "cli/commands.h"
#include "engine/solve_benchmark.h"

#include <cstdio>
#include <memory>
#include <stdexcept>

namespace zorvane::cli {

namespace {

int runBench(const std::string& corpus, const BenchmarkSettings& settings) {
    uint64_t totalNodes = 0;
    double totalMs = 0;
    try {
        RunSolveBenchmark(corpus, settings, [&](const BenchmarkProblem& p) {
            std::string keys;
            for (size_t i = 0; i < p.keys.size(); ++i)
                keys += (i ? ", " : "") + p.keys[i] + " (#" + std::to_string(p.keyPositions[i]) + " in the root list)";
            std::printf("%4d #%d %12llu nodes %9.0f ms  %s\n", p.number, p.moves,
                        static_cast<unsigned long long>(p.nodes), p.milliseconds, keys.c_str());
            std::fflush(stdout);
            totalNodes += p.nodes;
            totalMs += p.milliseconds;
        });
    } catch (const std::runtime_error& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 2;
    }
    std::printf("Total time: %.0f ms\nNodes searched: %llu\n", totalMs, static_cast<unsigned long long>(totalNodes));
    return 0;
}

} // namespace

Runner AddBenchCommand(CLI::App& app) {
    auto corpus = std::make_shared<std::string>(ZORVANE_SHARED_DIR "/corpus/peer_examples.cp");
    CLI::App* bench = app.add_subcommand("bench", "Solve the benchmark problems and print their node count");
    auto settings = std::make_shared<BenchmarkSettings>();
    bench->add_option("--corpus", *corpus, "Problem file that holds the benchmark problems");
    bench->add_flag("--no-ordering{false}", settings->ordering, "Search White's and Black's moves in base order");
    bench->add_flag("--no-register{false}", settings->useRegister, "Search without the temporary register");
    return [corpus, settings] { return runBench(*corpus, *settings); };
}

} // namespace zorvane::cli
