#pragma once
// Solver: the one door into the engine. The command line and the window start
// a solve here, stop, pause, resume and wait for it, and hear of its keys and
// progress through typed callbacks; neither writes the command word or builds
// a search context of its own. A solve runs on a thread of its own with the
// stack its stipulation needs; the state of the run lives in its SolveJob.
#include "core/chessboard.h"
#include "engine/best_defence.h"
#include "engine/solve_driver.h"
#include "engine/solve_job.h"
#include "platform/sized_thread.h"
#include "problems/chess_problem.h"

#include <atomic>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <string>

namespace zorvane {

// What to solve: the problem's start position at its stipulated depth, or,
// with `position` set (a position of the problem's chain, White to move),
// that position with `plies` left through the depths that may be shorter.
struct SolveRequest {
    const TChessboard* position = nullptr;
    int plies = 0;
    SolveOptions options;
};

// A mate the engine knows at once for a position with White to move.
struct KnownMate {
    enum Source { None, AtOnce, Register } source = None;
    int moves = 0; // at most this many
};

class Solver {
  public:
    Solver();
    ~Solver(); // a solve still running is stopped and waited for
    Solver(const Solver&) = delete;
    Solver& operator=(const Solver&) = delete;

    // Starts the solve of `problem` on a thread of its own; the problem must
    // stay as it is until Wait returns. `callbacks.onFinished` (if set) is
    // called on that thread at its very end. Throws std::logic_error while an
    // earlier solve has not been waited for.
    void Start(TChessProblem& problem, const SolveRequest& request, SolveCallbacks callbacks = {});
    // The threads unwind at their next move; the keys proven so far are kept.
    void Stop();
    // Holds every thread, or the first only, at its next move; Resume lets them go on.
    void Pause(bool firstThreadOnly = false);
    void Resume();
    // Started and not yet waited for.
    bool Running() const { return m_started; }
    // The result, once the thread has ended. Throws the solve's
    // ChessException (a position that cannot be solved), or another error.
    SolveResult Wait();
    // Start and Wait in one, for callers that block anyway.
    SolveResult Solve(TChessProblem& problem, const SolveRequest& request, SolveCallbacks callbacks = {});

    // Black's best defence at `request.position` (Black to move, `plies`
    // even), on a thread of its own sized as a solve's. Stop, Pause, Resume,
    // Running and Progress serve it as they serve a solve; a stop gives the
    // move in hand, if any, with " (stopped by user)". `onFinished` (if set)
    // is called on that thread at its very end. Throws std::logic_error while
    // an earlier run has not been waited for.
    void StartDefence(TChessProblem& problem, const DefenceRequest& request,
                      std::function<void()> onFinished = {});
    // The answer, once the thread has ended; throws as Wait does. A run
    // started by Start is waited for by Wait, one started by StartDefence by
    // WaitDefence (the other one throws std::logic_error).
    DefenceOutcome WaitDefence();
    // StartDefence and WaitDefence in one.
    DefenceOutcome Defend(TChessProblem& problem, const DefenceRequest& request);
    // The counters of the running solve, or of the last one, with the
    // register's figures and the line being analysed as text.
    SolveProgress Progress() const;

    // For the board of the window, with no solve of the problem running: a
    // mate at once, or one the problem's register has proven.
    static KnownMate KnownMateOf(TChessProblem& problem, const TChessboard& position);
    // With Black to move, White's first threat within the moves left (long
    // notation); empty when there is none.
    static std::string FirstThreatOf(TChessProblem& problem, const TChessboard& position);
    // The passes a solve of `problem` would run under `options`, as text; no solve.
    static std::string PreviewPasses(TChessProblem& problem, const SolveOptions& options);
    // Positions in the problem's temporary register; none when it has none.
    static uint64_t RegisterPositions(const TChessProblem& problem);

  private:
    std::unique_ptr<SolveJob> m_job;
    // Where the solve's line starts, to give its moves their text.
    TChessboard m_lineRoot;
    SolveDriver m_driver;
    SizedThread m_thread;
    SolveResult m_result;
    DefenceOutcome m_defence;
    bool m_defenceRun = false; // the run started is a best defence
    std::exception_ptr m_error;
    bool m_started = false;
};

// "1.Qd4 (3/25) 1...Kf5 (2/8) 2.Rb3 (1/12)": the line played from `root`,
// each move with its place in its list (from 1); "1...Kf5 (2/8) 2.Rb3 (1/12)"
// from a root with Black to move. A move the board refuses (a
// note caught between two passes) ends the text there.
std::string AnalysedLineText(const TChessboard& root, const AnalysedLine& line);

// The stack of a solve's thread: 2 KiB a ply, at least 1 MiB.
std::size_t SolveStackBytes(int plies);

} // namespace zorvane
