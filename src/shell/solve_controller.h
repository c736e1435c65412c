#pragma once
// SolveController: the solving runs of the window. Every solve is a thread of
// its own on the problem's record; the window watches it through its timer,
// may pause or stop it, and shows the outcome when the thread posts it back.
// Several problems can be solved at once, and navigating away leaves a solve
// running: its end is told in a box with the problem's number. The current
// problem's outcome goes to the solution panel beside the board, without a box.
//
// While a run is on, the record is not edited: the menus grey every command
// that changes it, and the board refuses moves and position setting.
#include "engine/solver.h"
#include "options/localized_text.h"
#include "options/options.h"
#include "shell/board_rules.h"
#include "shell/command_id.h"

#include <QObject>
#include <QString>

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

class QTimer;
class QToolButton;

namespace zorvane {

class BoardController;
class MainWindow;
class SolutionPanel;
class WindowServices;

// Runs that may go on at the same time with threads of their own; a run
// beyond them goes on in a single thread, after a warning.
constexpr int SOLVE_POOL_SIZE = 64;

// What a run started from the window asks of the engine, by the options.
SolveOptions SolveOptionsFor(const Options& options, bool allSolutions);

// The box of a run that ended by an exception: its message, when there is one,
// behind the problem's number (and its description, when it has one).
QString ThreadErrorText(int languageId, int32_t id, const std::wstring& description,
                        const std::string& message);
// The first line of the result box of a run whose problem is no longer current.
QString BackgroundRunHead(int languageId, SolveRoad road, size_t solutions, int32_t id);
QString TooManySolvesText(int languageId);

class SolveController : public QObject {
    Q_OBJECT
  public:
    SolveController(WindowServices& window, BoardController& board, QObject* parent = nullptr);
    // Stops every run and waits for its thread. Destroy it before the window's list of problems.
    ~SolveController() override;

    // Takes the window's solve commands, its stop-all on opening and closing,
    // fills its progress panel at every refresh, and puts the Start/stop
    // button on its tool bar.
    void attachTo(MainWindow& window);

    // The Start/stop button: a left click starts the current problem or stops
    // its run; a right click finds all solutions, or pauses and resumes a run
    // (with Ctrl one thread, or the heuristics dialog when nothing runs).
    void startButtonClicked(bool rightButton, bool ctrl);

    // The solve commands: start (and F5), all solutions, stop, pause, pause one
    // thread, resume, and Black's best defence, plain and thorough. The whole
    // main variant and the heuristics dialog are not built yet: the menus keep
    // them greyed, and they do nothing here.
    void dispatch(CommandId id);
    // From a position of the line with Black to move, the start commands run
    // Black's best defence: the thorough one for all solutions.
    void StartSolving(bool allSolutions);
    // Black's best defence at the board shown, Black to move; nothing elsewhere.
    // Its move is played on the board, and its text goes to the status line.
    void StartDefence(bool thorough);
    void StopSolving();
    // `quietly` (when the program closes): the runs end without their result boxes.
    void StopAllSolving(bool quietly = false);
    void PauseOrResume(bool oneThread);
    void ResumeSolving();
    int CountRunningSolves() const;
    // The counters of the run of problem `id`; zeros when none runs.
    SolveProgress ProgressOf(int32_t id) const;

    // The progress panel's text for the current problem, empty without a run.
    QString progressText() const;
    // The size of the pool of simultaneous runs (tests make it small).
    void setSolvePoolSize(int size) { m_solvePool = size; }

    // The text of the last finished run of the current problem, for the panel.
    QString lastResultText() const;
    // The panel of the solutions, made by attachTo; nullptr before.
    SolutionPanel* solutionPanel() const { return m_panel; }

  signals:
    // A run ended and its outcome has been shown.
    void solveFinished(int problemId);

  private:
    struct Run;
    void start(TChessProblem& problem, SolveRoad road, int plies, const TChessboard* position,
               bool allSolutions);
    void finish(int32_t id);
    // The end of a best defence: its boxes, its move onto the problem's line, its text.
    void finishDefence(Run& run, bool current);
    // The checks before a run of the current problem: none runs yet, and position setting is left.
    TChessProblem* problemToStart();
    void stop(Run& run);
    void tell(const QString& title, const QString& text);
    // A status text of the run `id` ("Initial position type check...", "Stop
    // pending..."), cleared when the run ends unless something else replaced it.
    void showRunStatus(int32_t id, const QString& text);
    // Play while the current problem rests, stop while it is being solved.
    void refreshStartButton();
    QString translate(const LocalizedText& text) const;

    WindowServices& m_window;
    BoardController& m_board;
    MainWindow* m_mainWindow = nullptr; // the window attached to, whose commands the start button gives
    std::map<int32_t, std::unique_ptr<Run>> m_runs;
    std::map<int32_t, QString> m_lastResults;
    bool m_quiet = false; // runs end without their boxes
    int32_t m_runStatusId = 0;
    QString m_runStatus;
    QToolButton* m_startButton = nullptr;
    SolutionPanel* m_panel = nullptr; // the window's child
    int m_solvePool = SOLVE_POOL_SIZE;
};

} // namespace zorvane
