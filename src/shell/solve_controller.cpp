#include "shell/solve_controller.h"

#include "engine/relaxation_path.h"

#include "core/chess_exception.h"
#include "options/memory_limit.h"
#include "engine/solve_texts.h"
#include "engine/solver.h"
#include "global_register/table_set.h"
#include "platform/data_directory.h"
#include "shell/app_log.h"
#include "shell/board_controller.h"
#include "shell/board_rules.h"
#include "shell/main_window.h"
#include "shell/process_control.h"
#include "shell/solution_panel.h"
#include "shell/window_services.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QStyle>
#include <QToolBar>
#include <QToolButton>
#include <QLabel>
#include <QMetaObject>
#include <QTimer>

#include <chrono>

namespace zorvane {

namespace {

constexpr int CLOCK_PERIOD_MS = 1000;
constexpr auto STOP_WAIT_STEP = std::chrono::milliseconds(1);

QString wide(const std::wstring& text) {
    return QString::fromStdWString(text);
}

// "12.3k", "4.5M", "1.2G" for the large counters of the panel.
QString counterText(uint64_t value) {
    if (value >= 1000000000ull) return QString::asprintf("%0.1fG", static_cast<double>(value) / 1e9);
    if (value >= 1000000ull) return QString::asprintf("%0.1fM", static_cast<double>(value) / 1e6);
    if (value >= 1000ull) return QString::asprintf("%0.1fk", static_cast<double>(value) / 1e3);
    return QString::number(value);
}

// "12MB", or "1.5GB" from a thousand megabytes on.
QString memoryText(uint64_t bytes) {
    constexpr double MB = 1024.0 * 1024.0;
    const double megabytes = static_cast<double>(bytes) / MB;
    if (megabytes >= 1000.0) return QString::asprintf("%0.1fGB", megabytes / 1024.0);
    return QString::asprintf("%dMB", static_cast<int>(megabytes + 0.5));
}

// "m:ss" or "h:mm:ss".
QString elapsedText(int seconds) {
    if (seconds >= 3600)
        return QString::asprintf("%d:%02d:%02d", seconds / 3600, seconds / 60 % 60, seconds % 60);
    return QString::asprintf("%d:%02d", seconds / 60, seconds % 60);
}

QString problemTitle(const TChessProblem& problem) {
    return QString::number(problem.id) + " #" + QString::number(problem.stipulationMoves());
}

} // namespace

SolveOptions SolveOptionsFor(const Options& options, bool allSolutions) {
    SolveOptions solve;
    solve.allSolutions = allSolutions;
    solve.clearRegisterOnStart = options.ClearRegisterOnStartSolving;
    solve.quickMode = options.QuickMode;
    solve.languageId = options.LanguageId;
    // The log lies in the data folder, which is the current folder.
    if (options.TryRelaxSpecialHeuristicsLog) solve.relaxationLog = RELAXATION_LOG_FILE;
    // The temporary register may take its share of the machine's memory; when
    // the size is unknown, the driver's own limit stands.
    if (const uint64_t physical = PhysicalMemoryBytes())
        solve.registerMemoryLimit = TempRegLimitMb(physical, options.MaxMemRatioForTempReg) * 1024 * 1024;
    return solve;
}

QString ThreadErrorText(int languageId, int32_t id, const std::wstring& description,
                        const std::string& message) {
    const QString head = Translate(languageId, {L"Wątek rozwiązujący problem ", L"Thread solving problem ",
                                                L"Потік, що розв'язує задачу "}) +
                         QString::number(id);
    if (message.empty())
        return head + Translate(languageId, {L" zakończył się błędem.", L" completed with error.",
                                             L" завершився з помилкою."});
    // The problem's description, when it has one, names the problem besides its number.
    const QString named = description.empty() ? head : head + QStringLiteral(" \"") + wide(description);
    return named +
           Translate(languageId,
                     description.empty()
                         ? LocalizedText{L" zakończył się błędem:\n\n", L" completed with error:\n\n",
                                         L" завершився з помилкою:\n\n"}
                         : LocalizedText{L"\" zakończył się błędem:\n\n", L"\" completed with error:\n\n",
                                         L"\" завершився з помилкою:\n\n"}) +
           QString::fromStdString(message);
}

QString BackgroundRunHead(int languageId, SolveRoad road, size_t solutions, int32_t id) {
    // A run from a later position is no solve of the problem: its end alone is told.
    if (road != SolveRoad::Main)
        return Translate(languageId, {L"Wątek rozwiązujący problem ", L"Thread solving problem ",
                                      L"Потік, що розв'язує задачу "}) +
               QString::number(id) +
               Translate(languageId, {L" zakończył się pomyślnie.", L" completed successfully.",
                                      L" успішно завершився."});
    if (solutions == 0)
        return Translate(languageId,
                         {L"Nie znaleziono rozwiązania problemu ", L"No solution found of the problem ",
                          L"Не знайдено розв'язку задачі "}) +
               QString::number(id);
    return QString::number(solutions) +
           Translate(languageId,
                     {L" rozwiązań znaleziono dla problemu ", L" solution(s) found of the problem ",
                      L" розв'язків знайдено для задачі "}) +
           QString::number(id);
}

QString TooManySolvesText(int languageId) {
    return Translate(languageId, {L"Zbyt wiele problemów rozwiązywanych jednocześnie.",
                                  L"Too many problems being solved at the same time.",
                                  L"Забагато задач розв'язується одночасно."});
}

struct SolveController::Run {
    int32_t id = 0;
    TChessProblem* problem = nullptr;
    SolveRoad road = SolveRoad::Main;
    // The endgame tables of the solved men; they outlive the solver, which stops first.
    std::unique_ptr<TTableSet> tables;
    Solver solver;
    SolveResult result;
    // A best defence: the answer, and the place in the problem's line of the position it answers.
    DefenceOutcome defence;
    const TChessboard* position = nullptr;
    std::string error;
    bool unexpected = false; // an error other than the position's own
    bool failed = false;     // the run ended by an error, told or not
    QTimer* clock = nullptr;
    int seconds = 0;
    // Solutions as the engine reports them, for the panel.
    mutable std::mutex lock;
    std::vector<std::string> found;

    void onSolution(const SolutionEvent& event) {
        std::lock_guard<std::mutex> guard(lock);
        if (event.move.isNull())
            found.clear();
        else
            found.push_back(event.text);
    }
};

SolveController::SolveController(WindowServices& window, BoardController& board, QObject* parent)
    : QObject(parent), m_window(window), m_board(board) {}

void SolveController::attachTo(MainWindow& window) {
    m_mainWindow = &window;
    window.onSolveCommand = [this](CommandId id) { dispatch(id); };
    window.onStopAllSolves = [this] { StopAllSolving(); };
    connect(&window, &MainWindow::closing, this, [this] { StopAllSolving(true); });
    connect(&window, &MainWindow::refreshTick, this, [this, &window] {
        window.progressPanel()->setText(progressText());
        refreshStartButton();
    });
    connect(this, &SolveController::solveFinished, &window, [&window] { window.UpdateMenuState(); });
    window.UpdateMenuState();
    m_panel = new SolutionPanel(m_window, m_board, &window);
    m_panel->attachTo(window);
    if (auto* bar = window.findChild<QToolBar*>()) {
        auto* button = new QToolButton(bar);
        button->setObjectName(QStringLiteral("startButton"));
        button->setIcon(window.style()->standardIcon(QStyle::SP_MediaPlay));
        button->setToolTip(translate(
            {L"Start/stop (prawy klik: znajdź wszystkie rozwiązania/wstrzymaj; +Ctrl: okno wyboru "
             L"heurystyk)",
             L"Start/stop (right click: find all solutions/pause; +Ctrl: display heuristics selection "
             L"dialog)",
             L"Старт/стоп (клацання правою кнопкою: знайти всі розв'язки/пауза; +Ctrl: вікно вибору "
             L"евристик)"}));
        button->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(button, &QToolButton::clicked, this, [this] {
            startButtonClicked(false, QGuiApplication::keyboardModifiers() & Qt::ControlModifier);
        });
        connect(button, &QWidget::customContextMenuRequested, this, [this] {
            startButtonClicked(true, QGuiApplication::keyboardModifiers() & Qt::ControlModifier);
        });
        m_startButton = button;
        bar->addWidget(button);
    }
}

void SolveController::startButtonClicked(bool rightButton, bool ctrl) {
    const TChessProblem* problem = m_window.problems().Current();
    if (!problem) return;
    const bool running = m_runs.count(problem->id) != 0;
    // Through the window, so that a greyed command does not run by the button either.
    const auto command = [this](CommandId id) {
        if (m_mainWindow)
            m_mainWindow->DispatchCommand(id);
        else
            dispatch(id);
    };
    if (!rightButton)
        command(running ? CommandId::SolveStop : CommandId::SolveStart);
    else if (running)
        PauseOrResume(ctrl);
    else
        command(ctrl ? CommandId::SolveAllWithHeuristics : CommandId::SolveAllSolutions);
}

void SolveController::refreshStartButton() {
    if (!m_startButton) return;
    const TChessProblem* problem = m_window.problems().Current();
    const bool running = problem && m_runs.count(problem->id);
    m_startButton->setIcon(
        m_startButton->style()->standardIcon(running ? QStyle::SP_MediaStop : QStyle::SP_MediaPlay));
}

SolveController::~SolveController() {
    for (auto& [id, run] : m_runs) run->solver.Stop();
    for (auto& [id, run] : m_runs) {
        try {
            if (run->road == SolveRoad::BestDefence)
                run->solver.WaitDefence();
            else
                run->solver.Wait();
        } catch (const std::exception&) {
            // The window is going: an error of a run nobody waits for is not shown.
        }
        m_window.runningSolves().remove(id);
    }
}

QString SolveController::translate(const LocalizedText& text) const {
    return m_window.translate(text);
}

void SolveController::tell(const QString& title, const QString& text) {
    m_window.prompts().message(title, text, PromptIcon::Information);
}

void SolveController::dispatch(CommandId id) {
    switch (id) {
    case CommandId::SolveStart:
        StartSolving(false);
        return;
    case CommandId::SolveAllSolutions:
        StartSolving(true);
        return;
    case CommandId::SolveStop:
        StopSolving();
        return;
    case CommandId::SolvePause:
        PauseOrResume(false);
        return;
    case CommandId::SolvePauseOneThread:
        PauseOrResume(true);
        return;
    case CommandId::SolveResume:
        ResumeSolving();
        return;
    case CommandId::SolveBlackDefence:
        StartDefence(false);
        return;
    case CommandId::SolveBlackDefenceThorough:
        StartDefence(true);
        return;
    default:
        return;
    }
}

TChessProblem* SolveController::problemToStart() {
    TChessProblem* problem = m_window.problems().Current();
    if (!problem) return nullptr;
    // 1. One run per problem.
    if (m_window.runningSolves().contains(problem->id)) {
        tell(m_window.title(MessageTitle::Information),
             translate({L"Poszukiwanie mata bieżącego problemu w toku.",
                        L"Search for solution of the current problem is pending",
                        L"Пошук розв'язку поточної задачі триває"}));
        return nullptr;
    }
    // 2. Position setting is left first; a refusal cancels the start.
    if (m_board.isSettingMode()) {
        m_board.dispatch(CommandId::PositionSettingMode);
        if (m_board.isSettingMode()) return nullptr;
    }
    return problem;
}

void SolveController::StartDefence(bool thorough) {
    TChessProblem* problem = problemToStart();
    if (!problem) return;
    int plies = 0;
    const TChessboard* position = nullptr;
    if (SolveRoadOf(*problem, m_board.shownPosition(), plies, position) != SolveRoad::BestDefence) return;
    start(*problem, SolveRoad::BestDefence, plies, position, thorough);
}

void SolveController::StartSolving(bool allSolutions) {
    TChessProblem* problem = problemToStart();
    if (!problem) return;
    // 3. The thread by what the board shows.
    int plies = 0;
    const TChessboard* position = nullptr;
    const SolveRoad road = SolveRoadOf(*problem, m_board.shownPosition(), plies, position);
    // The menus grey the start commands on the other roads: their engines are not built yet.
    if (!IsSolveRoadBuilt(road)) return;
    start(*problem, road, plies, position, allSolutions);
}

void SolveController::start(TChessProblem& problem, SolveRoad road, int plies, const TChessboard* position,
                            bool allSolutions) {
    const Options& options = m_window.options();
    // Every run takes a slot of the common pool; without one it still runs, in a single thread.
    if (static_cast<int>(m_runs.size()) >= m_solvePool)
        m_window.prompts().message(m_window.title(MessageTitle::Warning),
                                   TooManySolvesText(m_window.language()), PromptIcon::Warning);
    auto run = std::make_unique<Run>();
    run->id = problem.id;
    run->problem = &problem;
    run->road = road;
    SolveRequest request;
    if (road != SolveRoad::Main) {
        request.position = position;
        request.plies = plies;
    }
    request.options = SolveOptionsFor(options, allSolutions);
    std::string tablesError;
    run->tables = LoadTablesFor(platform::ProgramDataDirectory(),
                                road == SolveRoad::Main ? problem.startPosition : *position, tablesError);
    request.options.tables = run->tables.get();
    // A damaged table leaves the solve without tables; the log keeps why.
    if (!tablesError.empty()) WriteLog("Endgame tables not used: %s", tablesError);
    // The panel shows the whole solution of a short problem, the keys alone of a longer one.
    request.options.tree.build = road == SolveRoad::Main && WindowBuildsTree(problem);
    if (m_panel) m_panel->clearResult(problem.id);
    // 4. A register of an earlier solve goes first when the option says so;
    // the solve clears it, the status says so meanwhile.
    if (options.ClearRegisterOnStartSolving && Solver::RegisterPositions(problem) > 0) {
        m_window.showStatus(
            translate({L"Usuwanie danych tymczasowych z pamięci...\n(opcja czyszczenia tych danych przy "
                       L"starcie rozwiązywania jest włączona)",
                       L"Removing temporary data from memory...\n(the option to clear this data on start "
                       L"solving is on)",
                       L"Видалення тимчасових даних з пам'яті...\n(параметр очищення цих даних на початку "
                       L"розв'язування увімкнено)"}));
    }
    showRunStatus(problem.id,
                  translate({L"Sprawdzanie typu pozycji początkowej...", L"Initial position type check...",
                             L"Перевірка типу початкової позиції..."}));
    // The clock of the run: one second at a time, standing still while paused.
    run->clock = new QTimer(this);
    run->clock->setInterval(CLOCK_PERIOD_MS);
    Run* raw = run.get();
    connect(run->clock, &QTimer::timeout, this, [raw] { ++raw->seconds; });
    run->clock->start();
    const int32_t id = problem.id;
    m_runs[id] = std::move(run);
    m_window.runningSolves().add(id);
    SolveCallbacks callbacks;
    callbacks.onSolution = [raw](const SolutionEvent& event) { raw->onSolution(event); };
    // The end of the run reaches the window as a queued call, on its own thread.
    callbacks.onFinished = [this, id] {
        QMetaObject::invokeMethod(
            this, [this, id] { finish(id); }, Qt::QueuedConnection);
    };
    if (road == SolveRoad::BestDefence) {
        DefenceRequest defence;
        defence.position = raw->position = position;
        defence.plies = plies;
        defence.thorough = allSolutions;
        defence.options = request.options;
        raw->solver.StartDefence(problem, defence, std::move(callbacks.onFinished));
        return;
    }
    raw->solver.Start(problem, request, std::move(callbacks));
}

void SolveController::finish(int32_t id) {
    const auto found = m_runs.find(id);
    if (found == m_runs.end()) return;
    std::unique_ptr<Run> run = std::move(found->second);
    m_runs.erase(found);
    try {
        if (run->road == SolveRoad::BestDefence)
            run->defence = run->solver.WaitDefence();
        else
            run->result = run->solver.Wait();
    } catch (const ChessException& e) {
        // The set-up or the task check: the user is shown the text itself.
        run->error = e.what();
        run->failed = true;
    } catch (const std::exception& e) {
        run->error = e.what();
        run->unexpected = true;
        run->failed = true;
    } catch (...) {
        // Nothing tells what went wrong: the box says only that it did.
        run->unexpected = true;
        run->failed = true;
    }
    delete run->clock;
    TChessProblem& problem = *run->problem;
    m_window.runningSolves().remove(id);
    // What the status said of the run is over with it.
    if (m_runStatusId == id && m_window.statusText() == m_runStatus) m_window.showStatus(QString());
    const bool current = m_window.problems().Current() == &problem;
    // The program is closing: the log is told, the user no more.
    if (m_quiet) {
        if (!run->failed)
            WriteLog(run->result.stopped || run->defence.stopped ? "Engine stopped: %s"
                                                                 : "Engine has completed: %s",
                     problemTitle(problem).toStdString());
        emit solveFinished(id);
        return;
    }
    if (run->failed) {
        QString text = QString::fromStdString(run->error);
        if (run->unexpected) text = ThreadErrorText(m_window.language(), id, problem.description, run->error);
        m_window.prompts().message(
            translate({L"Wystąpił błąd", L"An error has occurred", L"Сталася помилка"}), text,
            PromptIcon::Error);
        emit solveFinished(id);
        return;
    }
    if (run->road == SolveRoad::BestDefence) {
        finishDefence(*run, current);
        emit solveFinished(id);
        return;
    }
    const SolveResult& result = run->result;
    WriteLog(result.stopped ? "Engine stopped: %s" : "Engine has completed: %s",
             problemTitle(problem).toStdString());
    // 6. A first solution's key goes onto the board, and its threat into the status.
    if (current && run->road == SolveRoad::Main && !result.moves.empty() && problem.playedPositions.empty()) {
        PlayOnChain(problem, 0, result.moves.front());
        m_board.setProblem(&problem);
        const std::vector<std::string>& threats = result.solutions.at(result.moves.front()).threats;
        if (!threats.empty())
            m_window.showStatus(QString::fromStdWString(ThreatLabel(m_window.language())) +
                                QString::fromStdString(threats.front()));
    }
    // 8. The result; a problem that is no longer on the board names itself.
    QString text = wide(result.text);
    if (problem.m_pRegister)
        text += "\n" +
                translate({L"Pozycji w rejestrze tymczasowym: ", L"Positions in temporary register: ",
                           L"Позицій у тимчасовому реєстрі: "}) +
                counterText(Solver::RegisterPositions(problem));
    m_lastResults[id] = wide(result.text);
    // The panel holds every problem's outcome; a problem on screen needs no box besides.
    if (m_panel) {
        m_panel->setResult(problem, text, result, run->road == SolveRoad::Main);
        if (current) {
            emit solveFinished(id);
            return;
        }
    }
    if (!current) {
        text = BackgroundRunHead(m_window.language(), run->road, result.moves.size(), id) + "\n\n" + text;
    }
    const QString title =
        run->road == SolveRoad::Main
            ? translate({L"Wynik poszukiwania mata", L"Mate search result", L"Результат пошуку мату"})
            : translate({L"Wynik poszukiwania mata", L"Result of analysis", L"Результат аналізу"});
    m_window.prompts().message(title, text, PromptIcon::Information);
    emit solveFinished(id);
}

void SolveController::finishDefence(Run& run, bool current) {
    TChessProblem& problem = *run.problem;
    const DefenceOutcome& outcome = run.defence;
    WriteLog(outcome.stopped ? "Engine stopped: %s" : "Engine has completed: %s",
             problemTitle(problem).toStdString());
    for (const DefenceBox& box : outcome.boxes)
        m_window.prompts().message(wide(box.title), wide(box.text), PromptIcon::Information);
    // The move joins the line behind the position it answers; the board shows it.
    if (!outcome.move.isNull()) {
        const auto& chain = problem.playedPositions;
        for (size_t i = 0; i < chain.size(); ++i) {
            if (&chain[i] != run.position) continue;
            PlayOnChain(problem, i + 1, outcome.move);
            if (current) m_board.setProblem(&problem);
            break;
        }
    }
    m_lastResults[run.id] = wide(outcome.text);
    if (current)
        m_window.showStatus(wide(outcome.text));
    else
        m_window.prompts().message(
            translate({L"Wynik poszukiwania mata", L"Result of analysis", L"Результат аналізу"}),
            BackgroundRunHead(m_window.language(), run.road, 0, run.id) + "\n\n" + wide(outcome.text),
            PromptIcon::Information);
}

void SolveController::showRunStatus(int32_t id, const QString& text) {
    m_runStatusId = id;
    m_runStatus = text;
    m_window.showStatus(text);
}

void SolveController::stop(Run& run) {
    const int32_t id = run.id;
    run.solver.Stop();
    m_window.runningSolves().setPaused(id, false);
    showRunStatus(id, translate({L"Zatrzymywanie...", L"Stop pending...", L"Зупинка..."}));
    // The window stays alive while the thread winds down: its end comes as a queued call.
    while (m_runs.count(id)) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        std::this_thread::sleep_for(STOP_WAIT_STEP);
    }
}

void SolveController::StopSolving() {
    const TChessProblem* problem = m_window.problems().Current();
    if (!problem) return;
    const auto found = m_runs.find(problem->id);
    if (found != m_runs.end()) stop(*found->second);
}

void SolveController::StopAllSolving(bool quietly) {
    m_quiet = quietly;
    while (!m_runs.empty()) stop(*m_runs.begin()->second);
    m_quiet = false;
}

void SolveController::PauseOrResume(bool oneThread) {
    const TChessProblem* problem = m_window.problems().Current();
    if (!problem) return;
    const auto found = m_runs.find(problem->id);
    if (found == m_runs.end()) return;
    Run& run = *found->second;
    if (m_window.runningSolves().isPaused(run.id)) {
        ResumeSolving();
        return;
    }
    run.solver.Pause(oneThread);
    run.clock->stop();
    m_window.runningSolves().setPaused(run.id, true);
}

void SolveController::ResumeSolving() {
    const TChessProblem* problem = m_window.problems().Current();
    if (!problem) return;
    const auto found = m_runs.find(problem->id);
    if (found == m_runs.end()) return;
    Run& run = *found->second;
    run.solver.Resume();
    run.clock->start();
    m_window.runningSolves().setPaused(run.id, false);
}

int SolveController::CountRunningSolves() const {
    return static_cast<int>(m_runs.size());
}

SolveProgress SolveController::ProgressOf(int32_t id) const {
    const auto found = m_runs.find(id);
    return found == m_runs.end() ? SolveProgress{} : found->second->solver.Progress();
}

QString SolveController::progressText() const {
    const TChessProblem* problem = m_window.problems().Current();
    if (!problem) return QString();
    const auto found = m_runs.find(problem->id);
    if (found == m_runs.end())
        return m_lastResults.count(problem->id) ? m_lastResults.at(problem->id) : QString();
    const Run& run = *found->second;
    const SolveProgress progress = run.solver.Progress();
    const int begun = progress.rootMovesBegun, total = progress.rootMoves;
    QString text =
        QString::asprintf("Pass %s, %0.1f%% ", PassName(progress.pass, progress.relaxations).c_str(),
                          total ? 100.0 * std::max(begun - 1, 0) / total : 0.0) +
        counterText(progress.nodes) + "  " + elapsedText(run.seconds);
    if (progress.safeMode) text += "  Safe mode ON ";
    if (progress.hasRegister)
        text += "\n" + translate({L"Rejestr tymczasowy: ", L"Temporary register: ", L"Тимчасовий реєстр: "}) +
                counterText(progress.registerPositions) + ", " + memoryText(progress.registerBytes);
    if (!progress.line.empty()) text += "\n" + QString::fromStdString(progress.line);
    // The window never waits for an engine thread: a busy list is shown at the next tick.
    std::unique_lock<std::mutex> guard(run.lock, std::try_to_lock);
    if (guard.owns_lock() && !run.found.empty()) {
        text += "\n" + translate({L"Dotychczas znalezione rozwiązania: ", L"Solutions found so far: ",
                                  L"Знайдені досі розв'язки: "});
        for (size_t i = 0; i < run.found.size(); ++i)
            text += (i ? ", " : "") + QString::fromStdString(run.found[i]);
    }
    return text;
}

QString SolveController::lastResultText() const {
    const TChessProblem* problem = m_window.problems().Current();
    if (!problem || !m_lastResults.count(problem->id)) return QString();
    return m_lastResults.at(problem->id);
}

} // namespace zorvane
