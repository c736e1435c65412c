#include "engine/solve_benchmark.h"

#include "engine/mate_search.h"
#include "engine/solver.h"
#include "global_register/table_set.h"
#include "problems/epd_mates.h"
#include "problems/problem_file.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stdexcept>

namespace zorvane {

const std::vector<int>& SolveBenchmarkNumbers() {
    // Four three-movers, six four-movers and five five-movers of varied
    // material; then eight six-movers, long enough (ten plies and more) for the
    // register to take part. They are the six-movers of the corpus that solve in
    // under a second, so that the list stays quick.
    static const std::vector<int> numbers = {30, 38, 47,  52,  57,  60,  63,  68,  77,  78,  85, 89,
                                             93, 99, 101, 106, 109, 110, 111, 114, 115, 116, 117};
    return numbers;
}

namespace {

ProblemMap loadProblems(const std::string& path) {
    ProblemMap problems;
    std::set<std::wstring> tags;
    LoadProblemFile(path, problems, false, ProblemFileSettings{}, tags);
    return problems;
}

BenchmarkProblem solveOne(MateProof& proof, const TChessProblem& problem, bool firstSolution) {
    const int moves = problem.stipulationMoves();
    const MateKeys keys = firstSolution ? proof.FindFirstKey(problem.startPosition, moves)
                                        : proof.FindKeys(problem.startPosition, moves);
    return {problem.id,        moves,          keys.texts, keys.keys,         problem.expectedAnswers,
            keys.keyPositions, keys.rootMoves, keys.nodes, keys.milliseconds, keys.treeMilliseconds};
}

// The first key of `problem` within the cap; the solve is stopped at the cap.
LongMateRun firstKeyWithin(TChessProblem& problem, const LongBenchmarkSettings& settings) {
    std::mutex lock;
    std::condition_variable ended;
    bool finished = false;
    SolveCallbacks callbacks;
    callbacks.onFinished = [&] {
        std::lock_guard<std::mutex> guard(lock);
        finished = true;
        ended.notify_one();
    };
    Solver solver;
    SolveRequest request;
    request.options.heuristics = settings.heuristics;
    solver.Start(problem, request, std::move(callbacks));
    {
        std::unique_lock<std::mutex> guard(lock);
        if (!ended.wait_for(guard, std::chrono::duration<double>(settings.capSeconds),
                            [&] { return finished; }))
            solver.Stop();
    }
    const SolveResult result = solver.Wait();
    LongMateRun run;
    run.moves = problem.stipulationMoves();
    run.proven = !result.moves.empty();
    if (run.proven) {
        run.key = result.texts.front();
        const SolutionEntry& entry = result.solutions.at(result.moves.front());
        run.pass = entry.pass;
        run.ffm = entry.ffm;
    }
    run.milliseconds = result.milliseconds;
    run.nodes = result.nodes;
    return run;
}

} // namespace

std::vector<LongMateRun> RunLongBenchmark(const LongBenchmarkSettings& settings,
                                          const std::function<void(const LongMateRun&)>& onSolved) {
    std::vector<LongMateRun> runs;
    const auto solved = [&](LongMateRun run, std::string name) {
        run.name = std::move(name);
        runs.push_back(run);
        if (onSolved) onSolved(runs.back());
    };
    if (!settings.corpusPath.empty()) {
        ProblemMap corpus = loadProblems(settings.corpusPath);
        for (auto& [id, problem] : corpus) {
            const int moves = problem->stipulationMoves();
            if (problem->type != PROBLEM_DIRECT_MATE || moves < settings.corpusMinMoves ||
                moves > settings.corpusMaxMoves)
                continue;
            solved(firstKeyWithin(*problem, settings), "corpus " + std::to_string(id));
        }
    }
    if (!settings.epdPath.empty()) {
        int inRange = 0;
        for (const EpdMate& mate : LoadEpdMates(settings.epdPath)) {
            if (mate.moves < settings.epdMinMoves || mate.moves > settings.epdMaxMoves) continue;
            if (inRange++ % std::max(settings.epdEvery, 1)) continue;
            TChessProblem problem;
            problem.startPosition = mate.position;
            SetStipulation(problem, mate.moves);
            solved(firstKeyWithin(problem, settings), "long_mates line " + std::to_string(mate.line));
        }
    }
    return runs;
}

std::vector<BenchmarkProblem>
RunSolveBenchmark(const std::string& corpusPath, const BenchmarkSettings& settings,
                  const std::function<void(const BenchmarkProblem&)>& onSolved) {
    const ProblemMap corpus = loadProblems(corpusPath);
    std::vector<BenchmarkProblem> results;
    MateProof proof(false, settings.useRegister, settings.ordering, settings.heuristics);
    if (settings.tree) proof.WithTree({true});
    for (const int number : SolveBenchmarkNumbers()) {
        const auto found = corpus.find(number);
        if (found == corpus.end() || found->second->type != PROBLEM_DIRECT_MATE)
            throw std::runtime_error("benchmark problem " + std::to_string(number) + " is missing from " +
                                     corpusPath);
        results.push_back(solveOne(proof, *found->second, settings.firstSolution));
        if (onSolved) onSolved(results.back());
    }
    return results;
}

std::vector<BenchmarkProblem> RunFileBenchmark(const std::string& path, const BenchmarkSettings& settings,
                                               const std::function<void(const BenchmarkProblem&)>& onSolved) {
    const ProblemMap problems = loadProblems(path);
    std::vector<BenchmarkProblem> results;
    for (const auto& [id, problem] : problems) {
        if (problem->type != PROBLEM_DIRECT_MATE) continue;
        // Each problem with a register of its own, as a solve of a file has.
        MateProof proof(false, settings.useRegister, settings.ordering, settings.heuristics);
        if (settings.tree) proof.WithTree({true});
        std::string tablesError;
        const std::unique_ptr<TTableSet> tables =
            settings.tablesBase.empty()
                ? nullptr
                : LoadTablesFor(settings.tablesBase, problem->startPosition, tablesError);
        if (!tablesError.empty()) throw std::runtime_error(tablesError);
        proof.WithTables(tables.get());
        results.push_back(solveOne(proof, *problem, settings.firstSolution));
        if (onSolved) onSolved(results.back());
    }
    return results;
}

} // namespace zorvane
