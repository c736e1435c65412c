// zorvane-cli bench: solves the fixed benchmark list and prints its node count,
// the signature of the search.
#include "cli/commands.h"
#include "engine/solve_benchmark.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace zorvane::cli {

namespace {

struct BenchOptions {
    std::string corpus = ZORVANE_SHARED_DIR "/corpus/peer_examples.cp";
    std::vector<std::string> files; // instead of the corpus list: every direct mate of these
    BenchmarkSettings settings;
    bool longMates = false; // the long-problem benchmark instead
    LongBenchmarkSettings longSettings;
};

// One line a problem: the time to its first key, or that none came within the cap.
int runLongBench(const BenchOptions& options) {
    LongBenchmarkSettings settings = options.longSettings;
    settings.corpusPath = options.corpus;
    int proven = 0, total = 0;
    double provenMs = 0;
    std::vector<double> provenTimes;
    std::map<int, std::pair<int, int>> byMoves; // n -> proven, lines
    try {
        RunLongBenchmark(settings, [&](const LongMateRun& run) {
            ++total;
            ++byMoves[run.moves].second;
            if (run.proven) {
                ++proven;
                ++byMoves[run.moves].first;
                provenMs += run.milliseconds;
                provenTimes.push_back(run.milliseconds);
            }
            std::string how;
            if (run.proven) how = "pass " + run.pass + (run.ffm.empty() ? "" : ", forcing moves " + run.ffm);
            std::printf("%-24s #%-3d %-10s %9.0f ms %14llu nodes  %-12s %s\n", run.name.c_str(), run.moves,
                        run.proven ? "proven" : "not proven", run.milliseconds,
                        static_cast<unsigned long long>(run.nodes), run.key.c_str(), how.c_str());
            std::fflush(stdout);
        });
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 2;
    }
    std::printf("Proven: %d of %d within %.0f s each; time of the proven: %.0f ms\n", proven, total,
                settings.capSeconds, provenMs);
    if (!provenTimes.empty()) {
        std::sort(provenTimes.begin(), provenTimes.end());
        const size_t middle = provenTimes.size() / 2;
        const double median = provenTimes.size() % 2 ? provenTimes[middle]
                                                     : (provenTimes[middle - 1] + provenTimes[middle]) / 2;
        std::printf("Median time of the proven: %.0f ms\n", median);
    }
    // Proven lines by length, one mark a line: # proven, . not.
    for (const auto& [moves, count] : byMoves)
        std::printf("#%-3d %2d/%-2d %s%s\n", moves, count.first, count.second,
                    std::string(count.first, '#').c_str(),
                    std::string(count.second - count.first, '.').c_str());
    return 0;
}

int runBench(const BenchOptions& options) {
    uint64_t totalNodes = 0;
    double totalMs = 0, totalTreeMs = 0;
    try {
        const auto print = [&](const BenchmarkProblem& p) {
            std::string keys;
            for (size_t i = 0; i < p.keys.size(); ++i)
                keys += (i ? ", " : "") + p.keys[i] + " (#" + std::to_string(p.keyPositions[i]) +
                        " in the root list)";
            if (options.settings.tree)
                std::printf("%4d #%d %12llu nodes %9.2f ms  tree %9.2f ms  %s\n", p.number, p.moves,
                            static_cast<unsigned long long>(p.nodes), p.milliseconds, p.treeMilliseconds,
                            keys.c_str());
            else
                std::printf("%4d #%d %12llu nodes %9.0f ms  %s\n", p.number, p.moves,
                            static_cast<unsigned long long>(p.nodes), p.milliseconds, keys.c_str());
            std::fflush(stdout);
            totalNodes += p.nodes;
            totalMs += p.milliseconds;
            totalTreeMs += p.treeMilliseconds;
        };
        if (options.files.empty()) RunSolveBenchmark(options.corpus, options.settings, print);
        for (const std::string& file : options.files) RunFileBenchmark(file, options.settings, print);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 2;
    }
    std::printf("Total time: %.0f ms\nNodes searched: %llu\n", totalMs,
                static_cast<unsigned long long>(totalNodes));
    if (options.settings.tree) std::printf("Total time of the trees: %.0f ms\n", totalTreeMs);
    return 0;
}

} // namespace

Runner AddBenchCommand(CLI::App& app) {
    auto options = std::make_shared<BenchOptions>();
    CLI::App* bench = app.add_subcommand("bench", "Solve the benchmark problems and print their node count");
    bench->add_option("--corpus", options->corpus, "Problem file that holds the benchmark problems");
    bench->add_option("--file", options->files,
                      "Solve every direct mate of this file instead of the corpus list (may be repeated)");
    bench->add_flag("--no-ordering{false}", options->settings.ordering,
                    "Search White's and Black's moves in base order");
    bench->add_flag("--no-register{false}", options->settings.useRegister,
                    "Search without the temporary register");
    bench->add_flag("--first", options->settings.firstSolution,
                    "Stop each problem at its first key (the signature counts every key)");
    bench->add_flag("--tree", options->settings.tree,
                    "Build each problem's solution tree after its keys and time it apart (nodes: the keys')");
    bench->add_option(
        "--tables", options->settings.tablesBase,
        "With --file: read the endgame tables of this folder for each problem (none by default)");
    bench->add_flag("--heuristics", options->settings.heuristics,
                    "Solve with the automatic set of special heuristics (the signature solves without)");
    bench->add_flag(
        "--long", options->longMates,
        "Time the first key of long mates instead: the corpus's #6 to #8 and the list of long mates");
    options->longSettings.epdPath = ZORVANE_SHARED_DIR "/corpus/long_mates.epd";
    bench->add_option("--epd", options->longSettings.epdPath,
                      "List of long mates for --long (\"bm #n\" lines)");
    bench
        ->add_option("--max-moves", options->longSettings.epdMaxMoves,
                     "With --long: the lines of the list up to this many moves")
        ->check(CLI::Range(1, 255));
    bench
        ->add_option("--min-moves", options->longSettings.epdMinMoves,
                     "With --long: the lines of the list from this many moves")
        ->check(CLI::Range(1, 255));
    bench
        ->add_option("--every", options->longSettings.epdEvery,
                     "With --long: of the lines in range, the first and every N-th after it")
        ->check(CLI::Range(1, 255));
    bench
        ->add_option("--cap", options->longSettings.capSeconds,
                     "With --long: seconds allowed to each problem")
        ->check(CLI::Range(0.1, 86400.0));
    bench->add_flag("--no-heuristics{false}", options->longSettings.heuristics,
                    "With --long: solve without special heuristics, to compare");
    return [options] { return options->longMates ? runLongBench(*options) : runBench(*options); };
}

} // namespace zorvane::cli
