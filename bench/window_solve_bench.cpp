// window_solve_bench: what the window costs a solve. With --window it solves
// every problem of a file through the window, shown with its progress panel
// refreshed as always; with --solver it solves them through the Solver alone,
// with the options the window would give. Both start the same Qt application
// on the offscreen platform, so a farm-bench pair of the two commands times
// what the window adds and nothing else. Without a file the problems are the
// solve benchmark's list from the shared corpus.
#include "engine/solve_benchmark.h"
#include "options/options.h"
#include "problems/problem_file.h"
#include "shell/main_window.h"
#include "shell/prompts.h"
#include "shell/solution_panel.h"
#include "shell/solve_controller.h"

#include <QApplication>
#include <QEventLoop>
#include <QLabel>
#include <QTemporaryDir>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <set>

using namespace zorvane;

namespace {

// Nobody sits at the bench: boxes are dropped, questions answered No.
class QuietPrompts : public Prompts {
  public:
    Answer ask(const QString&, const QString&, Buttons, PromptIcon) override { return Answer::No; }
    void message(const QString&, const QString&, PromptIcon) override {}
    QString openFileName(const QString&, const QString&, const QString&) override { return {}; }
    QString saveFileName(const QString&, const QString&, const QString&) override { return {}; }
    std::optional<int> askNumber(const QString&, const QString&, int, int, int) override { return {}; }
    std::optional<QString> askItem(const QString&, const QString&, const QStringList&, bool) override {
        return {};
    }
};

struct Timing {
    int problems = 0;
    double seconds = 0;
};

double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Through the window: each solve from its command to the window's report of
// its end, summed; the moves between problems left out.
Timing solveInWindow(const std::filesystem::path& file) {
    QTemporaryDir data;
    const QString copy = data.filePath(QStringLiteral("bench.cp"));
    std::filesystem::copy_file(file, copy.toStdString());
    StartupArguments arguments;
    arguments.dataDirectory = data.path().toStdString();
    arguments.problemFile = copy;
    arguments.lockDirectory = data.path();
    QuietPrompts prompts;
    MainWindow window(arguments, prompts);
    window.show();
    window.startInitialisation();
    while (!window.isInitialised()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    SolveController solving(window, window.board());
    solving.attachTo(window);
    window.progressPanel()->show();

    window.DispatchCommand(CommandId::ProblemFirst);
    Timing timing;
    timing.problems = static_cast<int>(window.problems().problems.size());
    for (int i = 0; i < timing.problems; ++i) {
        QEventLoop wait;
        const auto connection =
            QObject::connect(&solving, &SolveController::solveFinished, &wait, &QEventLoop::quit);
        const auto start = std::chrono::steady_clock::now();
        window.DispatchCommand(CommandId::SolveAllSolutions);
        wait.exec();
        timing.seconds += secondsSince(start);
        QObject::disconnect(connection);
        window.DispatchCommand(CommandId::ProblemNext);
    }
    return timing;
}

// Through the Solver as the command line uses it: each solve timed, summed.
Timing solveAlone(const std::filesystem::path& file) {
    ProblemMap problems;
    std::set<std::wstring> tags;
    LoadProblemFile(file, problems, false, ProblemFileSettings{}, tags);
    const Options options;
    Timing timing;
    for (auto& [id, problem] : problems) {
        Solver solver;
        SolveRequest request;
        request.options = SolveOptionsFor(options, true);
        // The window builds the tree of a short problem for its panel: so does this side.
        request.options.tree.build = WindowBuildsTree(*problem);
        const auto start = std::chrono::steady_clock::now();
        solver.Solve(*problem, request);
        timing.seconds += secondsSince(start);
        ++timing.problems;
    }
    return timing;
}

// The benchmark's list from the corpus, written as a file of its own.
std::filesystem::path writeBenchmarkList(const QTemporaryDir& dir) {
    ProblemMap corpus, list;
    std::set<std::wstring> tags;
    LoadProblemFile(ZORVANE_SHARED_DIR "/corpus/peer_examples.cp", corpus, false, ProblemFileSettings{},
                    tags);
    for (const int number : SolveBenchmarkNumbers()) {
        const auto found = corpus.find(number);
        if (found == corpus.end())
            throw std::runtime_error("the corpus lacks problem " + std::to_string(number));
        list.emplace(number, std::move(found->second));
    }
    const std::filesystem::path path = dir.filePath(QStringLiteral("benchmark_list.cp")).toStdString();
    SaveProblemFile(path, list, ProblemFileSettings{});
    return path;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3 ||
        (std::strcmp(argv[1], "--window") != 0 && std::strcmp(argv[1], "--solver") != 0)) {
        std::fprintf(stderr, "usage: window_solve_bench --window|--solver [FILE.cp]\n");
        return 2;
    }
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const bool inWindow = std::strcmp(argv[1], "--window") == 0;
    try {
        const QTemporaryDir listDir;
        const std::filesystem::path file =
            argc == 3 ? std::filesystem::path(argv[2]) : writeBenchmarkList(listDir);
        const Timing timing = inWindow ? solveInWindow(file) : solveAlone(file);
        std::printf("%d problems solved %s in %.3f s\n", timing.problems,
                    inWindow ? "in the window" : "by the solver", timing.seconds);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 1;
    }
    return 0;
}
