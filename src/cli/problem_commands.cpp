// zorvane-cli check, format and solve: whole problem files from scripts.
#include "cli/commands.h"
#include "core/chess_exception.h"
#include "engine/mate_search.h"
#include "problems/problem_file.h"

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
};

constexpr auto PROGRESS_INTERVAL = std::chrono::seconds(1);

// Watches one solve from beside it: a progress line on stderr once a second,
// and the stop command when the time is up.
class SolveWatch {
public:
    SolveWatch(MateProof& proof, int id, double timeout) : m_proof(proof), m_id(id), m_timeout(timeout) {
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
                m_proof.Problem().SetCommand(COMMAND_STOP);
            }
            const MateProgress progress = m_proof.Progress();
            const double seconds = std::chrono::duration<double>(now - start).count();
            std::fprintf(stderr, "\rproblem %d: root move %d of %d (%d%%), %llu nodes, %.0f s   ", m_id,
                         progress.rootMove, progress.rootMoves,
                         progress.rootMoves ? 100 * (progress.rootMove - 1) / progress.rootMoves : 0,
                         static_cast<unsigned long long>(progress.nodes), seconds);
            std::fflush(stderr);
            m_printed = true;
            ++m_lines;
        }
    }

    MateProof& m_proof;
    int m_id;
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

int runSolve(const FileOptions& options) {
    ProblemMap problems;
    if (!load(options.path, problems, nullptr)) return 2;
    if (options.problem != 0 && !problems.count(options.problem)) {
        std::fprintf(stderr, "Problem %d is not in %s\n", options.problem, options.path.c_str());
        return 2;
    }
    int passed = 0, failed = 0, skipped = 0;
    for (const auto& [id, problem] : problems) {
        if (options.problem != 0 && id != options.problem) continue;
        const int moves = problem->stipulationMoves();
        const std::string stipulation =
            problem->type == PROBLEM_SELFMATE ? "s#" + std::to_string(moves)
            : problem->type == PROBLEM_DIRECT_MATE ? "#" + std::to_string(moves) : "";
        std::vector<std::string> keys;
        MateKeys result;
        std::string verdict;
        if (problem->type != PROBLEM_DIRECT_MATE) {
            verdict = "skipped";
        } else {
            try {
                MateProof proof((problem->flags & SafeMode) != 0);
                SolveWatch watch(proof, id, options.timeout);
                result = proof.FindKeys(problem->startPosition, moves);
                keys = result.texts;
                if (result.stopped) verdict = "stopped";
            } catch (const ChessException& e) {
                std::fprintf(stderr, "Problem %d: %s\n", id, e.what());
                verdict = "failed";
            }
        }
        const bool hasAnswer = (problem->flags & HasAnswer) != 0;
        const std::vector<std::string> expected = hasAnswer ? expectedTexts(*problem) : std::vector<std::string>{};
        if (verdict.empty())
            verdict = !hasAnswer ? "unchecked" : SameMoveSet(result.keys, problem->expectedAnswers) ? "passed" : "failed";
        passed += verdict == "passed";
        failed += verdict == "failed";
        skipped += verdict == "skipped" || verdict == "unchecked" || verdict == "stopped";
        if (options.json) {
            std::printf("{\"id\":%d,\"stipulation\":\"%s\",\"keys\":%s,\"expected\":%s,\"verdict\":\"%s\","
                        "\"time_ms\":%.0f,\"nodes\":%llu}\n",
                        id, stipulation.c_str(), jsonList(keys).c_str(),
                        hasAnswer ? jsonList(expected).c_str() : "null", verdict.c_str(), result.milliseconds,
                        static_cast<unsigned long long>(result.nodes));
        } else if (verdict == "skipped") {
            std::printf("%d %s: skipped (only direct mates are solved)\n", id, stipulation.c_str());
        } else {
            const std::string found = verdict == "stopped"
                                          ? (keys.empty() ? "Analysis stopped by user" : joined(keys) + " (stopped by user)")
                                      : keys.empty() ? "Not found any solutions for " + stipulation
                                                     : joined(keys);
            std::printf("%d %s: %s  [%s, %.0f ms, %llu nodes]\n", id, stipulation.c_str(), found.c_str(),
                        verdict.c_str(), result.milliseconds, static_cast<unsigned long long>(result.nodes));
            if (verdict == "failed" && hasAnswer) std::printf("    expected: %s\n", joined(expected).c_str());
        }
        std::fflush(stdout);
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
    return [options] { return runSolve(*options); };
}

} // namespace zorvane::cli
