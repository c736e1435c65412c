// zorvane-cli check, format and solve: whole problem files from scripts.
#include "cli/commands.h"
#include "cli/json_text.h"
#include "cli/tree_json.h"
#include "cli/number_option.h"
#include "cli/table_option.h"
#include "core/chess_exception.h"
#include "core/localized_text.h"
#include "engine/mate_search.h"
#include "engine/solver.h"
#include "engine/solution_tree_text.h"
#include "engine/solve_texts.h"
#include "problems/problem_file.h"
#include "problems/text_encoding.h"

#include <algorithm>
#include <climits>
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
    bool brief = false;        // one line per problem
    double timeout = 0;        // seconds per problem, 0 for none
    bool first = false;        // stop at the first key: quick, but proves no soundness
    bool allSolutions = false; // every key: the default, named for scripts that say so
    bool stopOnDual = false;
    bool noHeuristics = false;   // bet on nothing: the search of every pass is the last pass's
    bool showPasses = false;     // print the passes each problem would run, and solve nothing
    int repeat = 1;              // solves of each problem; the later ones start from a warm register
    bool tree = false;           // the whole solution after the keys
    int treeDepth = 0;           // White moves of the tree shown in full; 0 for the default
    int maxRefutations = 1;      // of a try
    std::string language = "en"; // the figure letters of the tree
    TableOption tables;
};

int languageIdOf(const std::string& name) {
    if (name == "pl") return LANGUAGE_POLISH;
    if (name == "uk") return LANGUAGE_UKRAINIAN;
    return LANGUAGE_ENGLISH;
}

constexpr auto PROGRESS_INTERVAL = std::chrono::seconds(1);

// Watches one solve from beside it: a progress line on stderr once a second,
// and the stop when the time is up.
class SolveWatch {
  public:
    SolveWatch(Solver& solver, int problemId, double timeout)
        : m_solver(solver), m_problemId(problemId), m_timeout(timeout) {
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
            // Once the stop is given, the deadline no longer wakes the watch:
            // the solve unwinds, and the line is not written again meanwhile.
            const bool timing = m_timeout > 0 && !m_timedOut;
            if (timing && deadline < wakeAt) wakeAt = deadline;
            if (m_wake.wait_until(lock, wakeAt, [this] { return m_done; })) return;
            const auto now = std::chrono::steady_clock::now();
            if (timing && now >= deadline) {
                m_timedOut = true;
                m_solver.Stop();
                if (now < start + PROGRESS_INTERVAL * (m_lines + 1)) continue;
            }
            const SolveProgress progress = m_solver.Progress();
            const int total = progress.rootMoves;
            const double seconds = std::chrono::duration<double>(now - start).count();
            if (progress.buildingTree)
                std::fprintf(stderr, "\rproblem %d: solution tree, %llu nodes, %.0f s                  ",
                             m_problemId, static_cast<unsigned long long>(progress.nodes), seconds);
            else
                std::fprintf(stderr, "\rproblem %d: pass %s, %.1f%% of %d root moves, %llu nodes, %.0f s   ",
                             m_problemId, PassName(progress.pass, progress.relaxations).c_str(),
                             total ? 100.0 * std::max(progress.rootMovesBegun - 1, 0) / total : 0.0, total,
                             static_cast<unsigned long long>(progress.nodes), seconds);
            std::fflush(stderr);
            m_printed = true;
            ++m_lines;
        }
    }

    Solver& m_solver;
    int m_problemId;
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

const std::vector<std::string>& threatsOf(const SolveResult& result, size_t key) {
    return result.solutions.at(result.moves[key]).threats;
}

const std::string& passOf(const SolveResult& result, size_t key) {
    return result.solutions.at(result.moves[key]).pass;
}
// The forcing-moves level of the key's pass, empty when it ran none.
const std::string& ffmOf(const SolveResult& result, size_t key) {
    return result.solutions.at(result.moves[key]).ffm;
}

// What ended or marked the run, behind the verdict.
std::string runNotes(const SolveResult& result) {
    std::string text;
    if (result.stopped && !result.moves.empty()) text += WideToUtf8(StoppedByUserSuffix(1));
    if (result.fromRegister) text += WideToUtf8(FromRegisterSuffix(1));
    if (result.stoppedOnDual) text += "  " + WideToUtf8(DualStopText(1));
    if (result.stoppedOnThree) text += "  " + WideToUtf8(ThreeSolutionsStopText(1));
    return text;
}

// The verdicts of a solve, against the problem's Answer line.
enum class Verdict { Passed, Failed, Cooked, Unchecked, KeyFound, Stopped, Skipped };

const char* verdictName(Verdict verdict) {
    switch (verdict) {
    case Verdict::Passed:
        return "passed";
    case Verdict::Failed:
        return "failed";
    case Verdict::Cooked:
        return "cooked";
    case Verdict::Unchecked:
        return "unchecked";
    case Verdict::KeyFound:
        return "key found";
    case Verdict::Stopped:
        return "stopped";
    case Verdict::Skipped:
        return "skipped";
    }
    return "";
}

bool inAnswer(const TChessProblem& problem, const TMove& move) {
    return std::find(problem.expectedAnswers.begin(), problem.expectedAnswers.end(), move) !=
           problem.expectedAnswers.end();
}

// Soundness needs every key: "passed" only when the keys found are exactly
// the answer, "cooked" when they hold it and more. A run that stopped early
// on purpose (the first key, a dual) can only say that its keys are right.
Verdict verdictOf(const SolveResult& result, const TChessProblem& problem, bool first) {
    if (result.stopped) return Verdict::Stopped;
    if (!(problem.flags & HasAnswer)) return Verdict::Unchecked;
    const bool allInAnswer = std::all_of(result.moves.begin(), result.moves.end(),
                                         [&](const TMove& m) { return inAnswer(problem, m); });
    if (first) {
        if (result.moves.empty()) return problem.expectedAnswers.empty() ? Verdict::Passed : Verdict::Failed;
        return allInAnswer ? Verdict::KeyFound : Verdict::Failed;
    }
    if (result.stoppedOnDual || result.stoppedOnThree) return allInAnswer ? Verdict::Passed : Verdict::Failed;
    if (SameMoveSet(result.moves, problem.expectedAnswers)) return Verdict::Passed;
    const bool holdsAnswer =
        std::all_of(problem.expectedAnswers.begin(), problem.expectedAnswers.end(), [&](const TMove& m) {
            return std::find(result.moves.begin(), result.moves.end(), m) != result.moves.end();
        });
    return holdsAnswer ? Verdict::Cooked : Verdict::Failed;
}

// The counts of the summary line.
struct Tally {
    int passed = 0, failed = 0, skipped = 0, unchecked = 0, cooked = 0, keyFound = 0;

    int total() const { return passed + failed + skipped + unchecked + cooked + keyFound; }
    void add(Verdict verdict) {
        switch (verdict) {
        case Verdict::Passed:
            ++passed;
            break;
        case Verdict::Failed:
            ++failed;
            break;
        case Verdict::Cooked:
            ++cooked;
            break;
        case Verdict::Unchecked:
            ++unchecked;
            break;
        case Verdict::KeyFound:
            ++keyFound;
            break;
        case Verdict::Stopped:
        case Verdict::Skipped:
            ++skipped;
            break;
        }
    }
    std::string line() const {
        std::string text = std::to_string(passed) + " passed, " + std::to_string(failed) + " failed, " +
                           std::to_string(skipped) + " skipped";
        if (unchecked) text += ", " + std::to_string(unchecked) + " unchecked";
        if (cooked) text += ", " + std::to_string(cooked) + " cooked";
        if (keyFound) text += ", " + std::to_string(keyFound) + " key found";
        return text;
    }
};

std::string stipulationOf(const TChessProblem& problem) {
    const int moves = problem.stipulationMoves();
    if (problem.type == PROBLEM_SELFMATE) return "s#" + std::to_string(moves);
    if (problem.type == PROBLEM_DIRECT_MATE) return "#" + std::to_string(moves);
    return "";
}

struct SolveReport {
    const TChessProblem& problem;
    const SolveResult& result;
    Verdict verdict;
    const std::vector<std::string>& expected;
    bool withTree = false;
    int languageId = LANGUAGE_ENGLISH;
};

void printJson(const SolveReport& report) {
    const SolveResult& result = report.result;
    std::string threats = "{";
    for (size_t i = 0; i < result.moves.size(); ++i)
        threats += (i ? "," : "") + JsonText(result.texts[i]) + ":" + JsonList(threatsOf(result, i));
    threats += "}";
    std::string passes = "{";
    for (size_t i = 0; i < result.moves.size(); ++i)
        passes += (i ? "," : "") + JsonText(result.texts[i]) + ":" + JsonText(passOf(result, i));
    passes += "}";
    std::string ffm = "{";
    for (size_t i = 0; i < result.moves.size(); ++i)
        ffm += (i ? "," : "") + JsonText(result.texts[i]) + ":" +
               (ffmOf(result, i).empty() ? std::string("null") : JsonText(ffmOf(result, i)));
    ffm += "}";
    const bool hasAnswer = (report.problem.flags & HasAnswer) != 0;
    char treeTime[32];
    std::snprintf(treeTime, sizeof treeTime, "%.0f", result.treeMilliseconds);
    const std::string tree =
        report.withTree
            ? ",\"tree\":" + TreeJson(result.tree) + ",\"setPlay\":" + SetPlayJson(result.tree) +
                  ",\"tree_stopped\":" + (result.tree.stopped ? "true" : "false") + ",\"tree_ms\":" + treeTime
            : std::string();
    std::printf(
        "{\"id\":%d,\"stipulation\":%s,\"heuristics\":%s,\"keys\":%s,\"threats\":%s,\"pass\":%s,\"ffm\":%s,"
        "\"expected\":%s,"
        "\"verdict\":\"%s\","
        "\"time_ms\":%.0f,\"nodes\":%llu%s}\n",
        report.problem.id, JsonText(stipulationOf(report.problem)).c_str(),
        JsonText(result.heuristics).c_str(), JsonList(result.texts).c_str(), threats.c_str(), passes.c_str(),
        ffm.c_str(), hasAnswer ? JsonList(report.expected).c_str() : "null", verdictName(report.verdict),
        result.milliseconds, static_cast<unsigned long long>(result.nodes), tree.c_str());
}

// The whole report: a head line, then each key on a line of its own with its
// threat below it.
void printFull(const SolveReport& report) {
    const SolveResult& result = report.result;
    const std::string stipulation = stipulationOf(report.problem);
    std::printf("%d %s: %s%s  [%.0f ms, %llu nodes]\n", report.problem.id, stipulation.c_str(),
                verdictName(report.verdict), runNotes(result).c_str(), result.milliseconds,
                static_cast<unsigned long long>(result.nodes));
    std::printf("    heuristics: %s\n", result.heuristics.empty() ? "none" : result.heuristics.c_str());
    if (result.moves.empty())
        std::printf("    %s\n", result.stopped ? WideToUtf8(AnalysisStoppedText(1)).c_str()
                                               : ("Not found any solutions for " + stipulation).c_str());
    for (size_t i = 0; i < result.moves.size(); ++i) {
        if (ffmOf(result, i).empty())
            std::printf("    %s  (pass %s)\n", result.texts[i].c_str(), passOf(result, i).c_str());
        else
            std::printf("    %s  (pass %s, forcing moves %s)\n", result.texts[i].c_str(),
                        passOf(result, i).c_str(), ffmOf(result, i).c_str());
        const std::vector<std::string>& threats = threatsOf(result, i);
        if (!threats.empty())
            std::printf("        %s%s\n", WideToUtf8(ThreatLabel(1)).c_str(), joined(threats).c_str());
    }
    if ((report.verdict == Verdict::Failed || report.verdict == Verdict::Cooked) &&
        (report.problem.flags & HasAnswer))
        std::printf("    expected: %s\n",
                    report.expected.empty() ? "no solution" : joined(report.expected).c_str());
}

// A text of several lines under a problem's header: each line that holds
// text indented as the first, the empty ones left empty.
std::string indented(const std::string& text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        out += text[i];
        if (text[i] == '\n' && i + 1 < text.size() && text[i + 1] != '\n') out += "    ";
    }
    return out;
}

// The solution tree under a problem's report, indented as the keys, and the time it took.
void printTree(const SolveReport& report) {
    if (!report.withTree || report.result.moves.empty()) return;
    std::string text = SolutionTreeText(report.result.tree, report.languageId);
    if (!text.empty() && text.back() == '\n') text.pop_back();
    std::printf("    %s\n    [tree %.0f ms]\n", indented(text).c_str(), report.result.treeMilliseconds);
}

// One line a problem, to read a collection at a glance.
void printBrief(const SolveReport& report) {
    const SolveResult& result = report.result;
    std::string keys =
        result.moves.empty() ? (result.stopped ? "(stopped)" : "(no solution)") : joined(result.texts);
    std::printf("%4d  %-4s %-10s %7.0f ms  %s\n", report.problem.id, stipulationOf(report.problem).c_str(),
                verdictName(report.verdict), result.milliseconds, keys.c_str());
}

// The passes of special heuristics each direct mate would run, one block a
// problem; nothing is solved.
int showPasses(const ProblemMap& problems, int only, const SolveOptions& solveOptions) {
    int status = 0;
    for (const auto& [id, problem] : problems) {
        if (only != 0 && id != only) continue;
        if (problem->type != PROBLEM_DIRECT_MATE) continue;
        std::printf("%d %s:\n", id, stipulationOf(*problem).c_str());
        try {
            std::printf("    %s\n", indented(Solver::PreviewPasses(*problem, solveOptions)).c_str());
        } catch (const ChessException& error) {
            std::printf("    %s\n", error.what());
            status = 1;
        }
    }
    return status;
}

int runSolve(const FileOptions& options) {
    ProblemMap problems;
    if (!load(options.path, problems, nullptr)) return 2;
    if (options.problem != 0 && !problems.count(options.problem)) {
        std::fprintf(stderr, "Problem %d is not in %s\n", options.problem, options.path.c_str());
        return 2;
    }
    Solver solver;
    SolveRequest request;
    request.options.allSolutions = !options.first;
    request.options.heuristics = !options.noHeuristics;
    request.options.tree.build = options.tree;
    request.options.tree.depth = options.treeDepth;
    request.options.tree.maxRefutations = options.maxRefutations;
    request.options.languageId = languageIdOf(options.language);
    if (options.showPasses) return showPasses(problems, options.problem, request.options);
    Tally tally;
    double totalMs = 0;
    for (const auto& [id, problem] : problems) {
        if (options.problem != 0 && id != options.problem) continue;
        if (options.stopOnDual) problem->flags |= StopOnDual;
        // A problem that asks for all its solutions gets them even with --first.
        const bool first = options.first && !(problem->flags & AllSolutions);
        const std::vector<std::string> expected =
            (problem->flags & HasAnswer) ? expectedTexts(*problem) : std::vector<std::string>{};
        for (int round = 0; round < std::max(options.repeat, 1); ++round) {
            SolveResult result;
            Verdict verdict = Verdict::Skipped;
            if (problem->type == PROBLEM_DIRECT_MATE) {
                const std::unique_ptr<TTableSet> tables = TablesFor(options.tables, problem->startPosition);
                request.options.tables = tables.get();
                try {
                    solver.Start(*problem, request);
                    {
                        SolveWatch watch(solver, id, options.timeout);
                        result = solver.Wait();
                    }
                    verdict = verdictOf(result, *problem, first);
                } catch (const ChessException& e) {
                    std::fprintf(stderr, "Problem %d: %s\n", id, e.what());
                    verdict = Verdict::Failed;
                }
            }
            tally.add(verdict);
            totalMs += result.milliseconds;
            const SolveReport report{*problem, result,       verdict,
                                     expected, options.tree, languageIdOf(options.language)};
            if (options.json)
                printJson(report);
            else if (verdict == Verdict::Skipped)
                std::printf("%d %s: skipped (only direct mates are solved)\n", id,
                            stipulationOf(*problem).c_str());
            else if (options.brief)
                printBrief(report);
            else
                printFull(report);
            if (!options.json && verdict != Verdict::Skipped) printTree(report);
            std::fflush(stdout);
            if (verdict == Verdict::Skipped) break;
        }
    }
    if (options.brief) std::printf("%d problems in %.1f s\n", tally.total(), totalMs / 1000);
    if (!options.json) std::printf("%s\n", tally.line().c_str());
    return tally.failed || tally.cooked ? 1 : 0;
}

} // namespace

Runner AddCheckCommand(CLI::App& app) {
    auto options = std::make_shared<FileOptions>();
    CLI::App* check =
        app.add_subcommand("check", "Read a problem file and report each problem or the first error");
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
    CLI::App* solve = app.add_subcommand(
        "solve", "Solve the direct mates of a problem file: every key, compared with the Answer line");
    solve->add_option("file", options->path, "Problem file (.cp)")->required();
    AddWholeNumber(solve, "--problem", options->problem, 1, INT_MAX,
                   "Solve only the problem with this number");
    solve->add_flag("--json", options->json, "One JSON object per problem and line");
    solve->add_flag("--brief", options->brief, "One line per problem: stipulation, verdict, keys, time");
    AddSeconds(solve, "--timeout", options->timeout,
               "Stop a problem after this many seconds and print what was found");
    CLI::Option* first = solve->add_flag(
        "--first", options->first,
        "Stop a problem at its first key (quick, but cannot tell a sound problem from a cooked one)");
    solve->add_flag("--all-solutions", options->allSolutions, "Find every key (the default)")
        ->excludes(first);
    solve->add_flag("--stop-on-dual", options->stopOnDual, "Stop a problem when a second key is found");
    solve->add_flag(
        "--show-passes", options->showPasses,
        "Print the passes of special heuristics each problem would run (1, 1b, ...), and solve nothing");
    solve->add_flag("--no-heuristics", options->noHeuristics,
                    "Solve without special heuristics (one pass, no bets), to compare with the default");
    AddWholeNumber(solve, "--repeat", options->repeat, 1, 100,
                   "Solve each problem this many times; later solves use the warm register");
    AddTableOptions(solve, options->tables);
    solve->add_flag("--tree", options->tree,
                    "After the keys, the whole solution: threats, variations, tries and set play");
    AddWholeNumber(solve, "--tree-depth", options->treeDepth, 1, MAX_STIPULATION_MOVES,
                   "White moves of the tree shown in full (default: all of a #2 or #3, else 2)");
    AddWholeNumber(solve, "--max-refutations", options->maxRefutations, 1, MAX_MOVES,
                   "A first move refuted by at most this many Black moves is a try (default 1)");
    solve->add_option("--language", options->language, "Figure letters of the tree: en, pl or uk")
        ->check(CLI::IsMember({"en", "pl", "uk"}));
    return [options] { return runSolve(*options); };
}

} // namespace zorvane::cli
