#include "engine/solve_benchmark.h"

#include "engine/mate_search.h"
#include "problems/problem_file.h"

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

BenchmarkProblem solveOne(MateProof& proof, const TChessProblem& problem) {
    const int moves = problem.stipulationMoves();
    const MateKeys keys = proof.FindKeys(problem.startPosition, moves);
    return {problem.id,        moves,          keys.texts, keys.keys,        problem.expectedAnswers,
            keys.keyPositions, keys.rootMoves, keys.nodes, keys.milliseconds};
}

} // namespace

std::vector<BenchmarkProblem>
RunSolveBenchmark(const std::string& corpusPath, const BenchmarkSettings& settings,
                  const std::function<void(const BenchmarkProblem&)>& onSolved) {
    const ProblemMap corpus = loadProblems(corpusPath);
    std::vector<BenchmarkProblem> results;
    MateProof proof(false, settings.useRegister, settings.ordering);
    for (const int number : SolveBenchmarkNumbers()) {
        const auto found = corpus.find(number);
        if (found == corpus.end() || found->second->type != PROBLEM_DIRECT_MATE)
            throw std::runtime_error("benchmark problem " + std::to_string(number) + " is missing from " +
                                     corpusPath);
        results.push_back(solveOne(proof, *found->second));
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
        MateProof proof(false, settings.useRegister, settings.ordering);
        results.push_back(solveOne(proof, *problem));
        if (onSolved) onSolved(results.back());
    }
    return results;
}

} // namespace zorvane
