// zorvane-cli check, format and solve: whole problem files from scripts.
#include "cli/commands.h"
#include "core/chess_exception.h"
#include "engine/solve_driver.h"
#include "engine/solve_texts.h"
#include "problems/problem_file.h"
#include "problems/text_encoding.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <thread>
#include <iostream>
#include <memory>

namespace zorvane::cli {

namespace {

struct FileOptions {
    std::string path;
    std::string output;
    int problem = 0;
    bool json = false;
    double timeout = 0; // seconds per problem, 0 for none
    bool allSolutions = false;
    bool stopOnDual = false;
    int repeat = 1;     // solves of each problem; the later ones start from a warm register
};

constexpr auto PROGRESS_INTERVAL = std::chrono::seconds(1);

// Watches one solve from beside it: a progress line on stderr once a second,
// and the stop command when the time is up.
class SolveWatch {
public:
    SolveWatch(TChessProblem& problem, double timeout) : m_problem(problem), m_timeout(timeout) {
        m_thread = std::thread([this] { run(); });
    }
    ~SolveWatch() {
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_done = true;
        }
        m_wake.notify_all();
        m_thread.join();
        if (m_printed) std::fprintf(stderr, "\n");
    }

private:
    void run() {
        const auto start = std::chrono::steady_clock::now();
        std::unique_lock<std::mutex> lock(m_mutex);
        for (;;) {
            auto wakeAt = start + PROGRESS_INTERVAL * (m_lines + 1);
            const auto deadline = start + std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                                              std::chrono::duration<double>(m_timeout));
            if (m_timeout > 0 && deadline < wakeAt) wakeAt = deadline;
            if (m_wake.wait_until(lock, wakeAt, [this] { return m_done; })) return;
            const auto now = std::chrono::steady_clock::now();
            if (m_timeout > 0 && now >= deadline && !m_timedOut) {
                m_timedOut = true;
                m_problem.SetCommand(COMMAND_STOP);
            }
            const int begun = m_problem.m_nRootMovesBegun.load(), total = m_problem.m_nRootMoves.load();
            const double seconds = std::chrono::duration<double>(now - start).count();
            std::fprintf(stderr, "\rproblem %d: pass %d, %.1f%% of %d root moves, %llu nodes, %.0f s   ", m_problem.id,
                         m_problem.m_nPass.load(), total ? 100.0 * std::max(begun - 1, 0) / total : 0.0, total,
                         static_cast<unsigned long long>(m_problem.m_nNodes.load()), seconds);
            std::fflush(stderr);
            m_printed = true;
            ++m_lines;
        }
    }

    TChessProblem& m_problem;
    double m_timeout;
    std::thread m_thread;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_done = false;
    bool m_printed = false;
    bool m_timedOut = false;
    int m_lines = 0;
};

// Loads a file; the reader's message goes to stderr and the result is false.
bool load(const std::string& path, ProblemMap& problems, std::ostream* console) {
    ProblemFileSettings settings;
    settings.console = console;
    std::set<std::wstring> allTags;
    try {
        LoadProblemFile(path, problems, false, settings, allTags);
        return true;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return false;
    }
}

int runCheck(const FileOptions& options) {
    ProblemMap problems;
    if (!load(options.path, problems, &std::cout)) return 2;
    std::cout.flush();
    return 0;
}

int runFormat(const FileOptions& options) {
    ProblemMap problems;
    if (!load(options.path, problems, nullptr)) return 2;
    const std::string target = options.output.empty() ? options.path : options.output;
    try {
        SaveProblemFile(target, problems, ProblemFileSettings{});
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 2;
    }
    std::printf("%zu problems written to %s\n", problems.size(), target.c_str());
    return 0;
}

std::string jsonList(const std::vector<std::string>& items) {
    std::string text = "[";
    for (size_t i = 0; i < items.size(); ++i) text += (i ? ",\"" : "\"") + items[i] + "\"";
    return text + "]";
}

std::string joined(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items) text += (text.empty() ? "" : ", ") + item;
    return text;
}

std::vector<std::string> expectedTexts(const TChessProblem& problem) {
    std::vector<std::string> texts;
    const TChessboard& start = problem.startPosition;
    for (const TMove& move : problem.expectedAnswers) {
        // An answer may name an empty square; it is shown without a figure letter.
        const uint8_t figure = start.m_aSquares[move.from & 63];
        texts.push_back(FormatMove(move, figure ? figure : WP, start.m_aSquares[move.to & 63] != 0));
    }
    return texts;
}

// The keys with their threats: "Rd1-d8, Qh5-f7 threat: Qf7-g8".
std::string keysText(const SolveResult& result) {
    std::string text;
    for (size_t i = 0; i < result.moves.size(); ++i) {
        if (i) text += ", ";
        text += result.texts[i];
        const std::vector<std::string>& threats = result.solutions.at(result.moves[i]).threats;
        if (!threats.empty()) text += " " + WideToUtf8(ThreatLabel(1)) + joined(threats);
    }
    return text;
}

// What a solve found, as the line shows it.
std::string foundText(const SolveResult& result, const std::string& stipulation) {
    if (result.stopped)
        return result.moves.empty() ? WideToUtf8(AnalysisStoppedText(1))
                                    : keysText(result) + WideToUtf8(StoppedByUserSuffix(1));
    if (result.moves.empty()) return "Not found any solutions for " + stipulation;
    std::string text = keysText(result);
    if (result.fromRegister) text += WideToUtf8(FromRegisterSuffix(1));
    if (result.stoppedOnDual) text += "  " + WideToUtf8(DualStopText(1));
    if (result.stoppedOnThree) text += "  " + WideToUtf8(ThreeSolutionsStopText(1));
    return text;
}

// passed: all solutions found equal the answer, or the first one found is in it.
std::string verdictOf(const SolveResult& result, const TChessProblem& problem, bool allSolutions) {
    if (result.stopped) return "stopped";
    if (!(problem.flags & HasAnswer)) return "unchecked";
    if (allSolutions && !result.stoppedOnDual && !result.stoppedOnThree)
        return SameMoveSet(result.moves, problem.expectedAnswers) ? "passed" : "failed";
    if (result.moves.empty()) return problem.expectedAnswers.empty() ? "passed" : "failed";
    for (const TMove& move : result.moves)
        if (std::find(problem.expectedAnswers.begin(), problem.expectedAnswers.end(), move) ==
            problem.expectedAnswers.end())
            return "failed";
    return "passed";
}

int runSolve(const FileOptions& options) {
    ProblemMap problems;
    if (!load(options.path, problems, nullptr)) return 2;
    if (options.problem != 0 && !problems.count(options.problem)) {
        std::fprintf(stderr, "Problem %d is not in %s\n", options.problem, options.path.c_str());
        return 2;
    }
    SolveDriver driver;
    SolveOptions solveOptions;
    solveOptions.allSolutions = options.allSolutions;
    int passed = 0, failed = 0, skipped = 0;
    for (const auto& [id, problem] : problems) {
        if (options.problem != 0 && id != options.problem) continue;
        const int moves = problem->stipulationMoves();
        const std::string stipulation =
            problem->type == PROBLEM_SELFMATE ? "s#" + std::to_string(moves)
            : problem->type == PROBLEM_DIRECT_MATE ? "#" + std::to_string(moves) : "";
        if (options.stopOnDual) problem->flags |= StopOnDual;
        problem->m_bSafeMode = (problem->flags & SafeMode) ? 1 : 0;
        const bool allSolutions = options.allSolutions || (problem->flags & AllSolutions);
        const bool hasAnswer = (problem->flags & HasAnswer) != 0;
        const std::vector<std::string> expected = hasAnswer ? expectedTexts(*problem) : std::vector<std::string>{};
        for (int round = 0; round < std::max(options.repeat, 1); ++round) {
            SolveResult result;
            std::string verdict;
            if (problem->type != PROBLEM_DIRECT_MATE) {
                verdict = "skipped";
            } else {
                try {
                    problem->SetCommand(COMMAND_RUN);
                    SolveWatch watch(*problem, options.timeout);
                    result = driver.SolveProblem(*problem, solveOptions);
                    verdict = verdictOf(result, *problem, allSolutions);
                } catch (const ChessException& e) {
                    std::fprintf(stderr, "Problem %d: %s\n", id, e.what());
                    verdict = "failed";
                }
            }
            passed += verdict == "passed";
            failed += verdict == "failed";
            skipped += verdict == "skipped" || verdict == "unchecked" || verdict == "stopped";
            if (options.json) {
                std::printf("{\"id\":%d,\"stipulation\":\"%s\",\"keys\":%s,\"expected\":%s,\"verdict\":\"%s\","
                            "\"time_ms\":%.0f,\"nodes\":%llu}\n",
                            id, stipulation.c_str(), jsonList(result.texts).c_str(),
                            hasAnswer ? jsonList(expected).c_str() : "null", verdict.c_str(), result.milliseconds,
                            static_cast<unsigned long long>(result.nodes));
            } else if (verdict == "skipped") {
                std::printf("%d %s: skipped (only direct mates are solved)\n", id, stipulation.c_str());
            } else {
                std::printf("%d %s: %s  [%s, %.0f ms, %llu nodes]\n", id, stipulation.c_str(),
                            foundText(result, stipulation).c_str(), verdict.c_str(), result.milliseconds,
                            static_cast<unsigned long long>(result.nodes));
                if (verdict == "failed" && hasAnswer) std::printf("    expected: %s\n", joined(expected).c_str());
            }
            std::fflush(stdout);
            if (verdict == "skipped") break;
        }
    }
    if (!options.json) std::printf("%d passed, %d failed, %d skipped\n", passed, failed, skipped);
    return failed ? 1 : 0;
}

} // namespace

Runner AddCheckCommand(CLI::App& app) {
    auto options = std::make_shared<FileOptions>();
    CLI::App* check = app.add_subcommand("check", "Read a problem file and report each problem or the first error");
    check->add_option("file", options->path, "Problem file (.cp)")->required();
    return [options] { return runCheck(*options); };
}

Runner AddFormatCommand(CLI::App& app) {
    auto options = std::make_shared<FileOptions>();
    CLI::App* format = app.add_subcommand("format", "Read a problem file and write it back in normal form");
    format->add_option("file", options->path, "Problem file (.cp)")->required();
    format->add_option("-o,--output", options->output, "Write here instead of replacing the file");
    return [options] { return runFormat(*options); };
}

Runner AddSolveCommand(CLI::App& app) {
    auto options = std::make_shared<FileOptions>();
    CLI::App* solve = app.add_subcommand("solve", "Solve the direct mates of a problem file and check their answers");
    solve->add_option("file", options->path, "Problem file (.cp)")->required();
    solve->add_option("--problem", options->problem, "Solve only the problem with this number");
    solve->add_flag("--json", options->json, "One JSON object per problem and line");
    solve->add_option("--timeout", options->timeout, "Stop a problem after this many seconds and print what was found")
        ->check(CLI::NonNegativeNumber);
    solve->add_flag("--all-solutions", options->allSolutions, "Find every key, not only the first");
    solve->add_flag("--stop-on-dual", options->stopOnDual, "Stop a problem when a second key is found");
    solve->add_option("--repeat", options->repeat, "Solve each problem this many times; later solves use the warm register")
        ->check(CLI::Range(1, 100));
    return [options] { return runSolve(*options); };
}

} // namespace zorvane::cli
