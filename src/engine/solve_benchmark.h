#pragma once
// The solve benchmark: a fixed list of direct mates (#3 to #6) from the shared
// corpus, solved one by one, or every direct mate of given files (the
// project's own set, which needs no corpus). Its total node count is the
// signature of the search: it changes only when the search itself changes.
#include "core/move.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zorvane {

struct BenchmarkProblem {
    int number = 0;
    int moves = 0;
    std::vector<std::string> keys;
    // The keys found and the file's answer, to compare as sets.
    std::vector<TMove> keyMoves;
    std::vector<TMove> expected;
    std::vector<int> keyPositions; // place of each key in the ordered root list
    int rootMoves = 0;
    uint64_t nodes = 0;
    double milliseconds = 0;
    double treeMilliseconds = 0; // the solution tree after the keys, when asked for
};

// What the search may use, to measure what each part gains.
struct BenchmarkSettings {
    bool ordering = true;
    bool useRegister = true;
    bool heuristics = false;    // the signature is the search's without bets
    bool firstSolution = false; // stop each problem at its first key, as a user's solve does
    bool tree = false;          // build the solution tree after the keys, timed on its own
    // Files of the problems only: the endgame tables under this folder, read
    // for each problem's men; empty for none.
    std::string tablesBase;
};

// Corpus numbers of the benchmark problems, in the order they are solved.
const std::vector<int>& SolveBenchmarkNumbers();

// Solves the list from the corpus file; `onSolved` sees each problem as it is
// done. Throws std::runtime_error if the file or a listed problem is missing.
std::vector<BenchmarkProblem>
RunSolveBenchmark(const std::string& corpusPath, const BenchmarkSettings& settings = {},
                  const std::function<void(const BenchmarkProblem&)>& onSolved = {});

// Solves every direct mate of the file, in the file's order. Throws
// ChessException when the file cannot be read.
std::vector<BenchmarkProblem>
RunFileBenchmark(const std::string& path, const BenchmarkSettings& settings = {},
                 const std::function<void(const BenchmarkProblem&)>& onSolved = {});

// The long-problem benchmark: the time to the first key of long direct mates,
// each solve capped, in the mode that stops at the first solution.
struct LongMateRun {
    std::string name; // "corpus 123" or "long_mates line 17"
    int moves = 0;
    bool proven = false; // a key was found within the cap
    std::string key;     // its long notation
    std::string pass;    // the pass that proved it (1, 1b, ..., 2)
    std::string ffm;     // the forcing-moves level of that pass, empty for none
    double milliseconds = 0;
    uint64_t nodes = 0;
};

struct LongBenchmarkSettings {
    std::string corpusPath; // its direct mates of corpusMinMoves..corpusMaxMoves; empty: none
    int corpusMinMoves = 6;
    int corpusMaxMoves = 8;
    std::string epdPath; // its lines of epdMinMoves..epdMaxMoves; empty: none
    int epdMinMoves = 1;
    int epdMaxMoves = 16;
    int epdEvery = 1; // of the lines in range, the first and then every epdEvery-th
    double capSeconds = 60;
    bool heuristics = true; // the automatic set; off to compare with the search without bets
};

// Throws ChessException when a file cannot be read.
std::vector<LongMateRun> RunLongBenchmark(const LongBenchmarkSettings& settings,
                                          const std::function<void(const LongMateRun&)>& onSolved = {});

} // namespace zorvane
