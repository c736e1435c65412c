#pragma once
// SolveJob: the state of one running solve, kept apart from the problem it
// solves. The problem (TChessProblem) is the document, the row of the .cp
// file; the job holds what a solve adds for its run: the command word that
// stops, pauses or redirects its threads, the counters the window and the
// command line read, the settings decided at its start, and the callbacks.
// Every search thread reaches it through TThreadContext::m_pJob. Fields that
// keep their old names were fields of the problem record before.
#include "core/heuristic_params.h"
#include "core/move.h"
#include "problems/chess_problem.h"
#include "problems/sort_indication.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace zorvane {

struct TThreadContext;
class TTableSet;
class TAggregatedTemporaryChessboardRegister;
using TProblemRegister = TAggregatedTemporaryChessboardRegister;

enum EngineCommand : uint8_t {
    COMMAND_RUN = 0,
    COMMAND_PAUSE = 1,
    COMMAND_JUMP = 2,
    COMMAND_STOP = 3,
};
constexpr uint16_t ALL_THREADS = 0xFFFF;

// A key as it is proven: the move, its text and the time since the start
// (paused time left out). A null move clears the display at the start.
struct SolutionEvent {
    TMove move;
    std::string text;
    double milliseconds = 0;
};

// One move of the line a search thread is analysing: the move, its place in
// its list (from 0) and the length of that list.
struct AnalysedMove {
    TMove move;
    uint8_t index = 0;
    uint8_t count = 0;
};
// The progress display shows the top of the line only: the moves below change
// faster than anyone can read them.
constexpr int SHOWN_LINE_DEPTH = 10;
struct AnalysedLine {
    std::array<AnalysedMove, SHOWN_LINE_DEPTH> steps{};
    int length = 0;
};

// What a running solve has done so far; a snapshot, read from any thread.
struct SolveProgress {
    int rootMoves = 0;      // White's possible moves in the root
    int rootMovesBegun = 0; // of them, begun in the running pass
    int pass = 0;           // 0 register screen, 1 with heuristics, 2 without
    int relaxations = 0;    // of the heuristics so far: with pass 1 it names 1b, 1c... (PassName)
    uint64_t nodes = 0;
    bool safeMode = false;
    bool buildingTree = false; // after the keys, the whole solution
    // The problem's temporary register, when the run has one: positions held
    // and the memory they take.
    bool hasRegister = false;
    uint64_t registerPositions = 0;
    uint64_t registerBytes = 0;
    // The moves being analysed, from the root down, as the search last showed
    // them: "1.Qd4 (3/25) 1...Kf5 (2/8)", each with its place in its list.
    std::string line;
};

struct SolveCallbacks {
    // On the solve thread, at each key proven.
    std::function<void(const SolutionEvent&)> onSolution;
    // On the solve thread, as its very last act: the result may be waited for.
    std::function<void()> onFinished;
};

struct SolveJob {
    explicit SolveJob(TChessProblem& solved) : problem(solved) {}
    SolveJob(const SolveJob&) = delete;
    SolveJob& operator=(const SolveJob&) = delete;

    // The document being solved; the search reads it and changes nothing in it.
    TChessProblem& problem;
    // The problem's register, borrowed for the run; none: the search runs without one.
    TProblemRegister* m_pRegister = nullptr;
    // A register the run made for itself (Black's best defence), kept alive
    // with the job so that nothing that read it during the run is left dangling.
    std::shared_ptr<TProblemRegister> m_pOwnRegister;
    // The same register for the progress display on other threads: published
    // once the run has set it up.
    std::atomic<const TProblemRegister*> m_pShownRegister{nullptr};
    SolveCallbacks callbacks;

    // Counted at every White step with fewer than 4 plies left.
    std::atomic<uint64_t> m_nNodes{0};
    // Time the first thread was held by a pause; the clock of a solve leaves it out.
    std::atomic<uint64_t> m_nPausedMicroseconds{0};
    // The command word: written under the spin byte, read without it at every move.
    std::atomic<uint8_t> m_bCommandLock{0};
    std::atomic<uint8_t> m_nCommand{COMMAND_RUN};
    std::atomic<uint16_t> m_wCommandThread{ALL_THREADS};
    uint8_t m_nSavedCommand = COMMAND_RUN;
    uint16_t m_wSavedCommandThread = ALL_THREADS;
    // Target of a jump: the ply to go back to, and what to do with its moves
    // (1 swap the current move with the one before it, 2 send the one before it to the end).
    uint16_t m_wCommandDepth = 0;
    uint8_t m_nCommandMode = 0;
    // Decided at the start of the run by SafeModeFor; atomic, since the window
    // reads it for the progress panel while the run goes on.
    std::atomic<uint8_t> m_bSafeMode{0};
    // Repetitions count only for positions first reached with at most this many plies left.
    uint16_t m_shRepetitionLimit = 0;
    // The endgame tables of the root's men and of all they can come to, when
    // the solve has them; none: the search asks no table.
    const TTableSet* m_pTables = nullptr;
    // Lists ordered by the chess rules of the ordering; off only to measure what it gains.
    bool m_bMoveOrdering = true;
    // The solve started with a set of heuristics: its searches test the set in
    // force and cut what the impossibility tail proves, in every pass. Off,
    // the search is the one without bets.
    bool m_bHeuristics = false;
    // Castling rights (CastlingRightBit) that the start position denies though
    // the board allows them: a FEN's "-". The threads take it into their context.
    uint8_t m_bDeniedCastling = 0;
    // The sort indications in force for this run (the problem's own, or its main variant's).
    SortIndications activeSortIndications;
    // The problem's expected first moves, each marked when the root list put it first.
    std::vector<TMove> expectedSortWhiteMoves;
    // The heuristics' settings that stay fixed for the whole solve.
    SolveWideHeuristicParams m_solveWideHeuristics;
    // The times of the passes, for the time-dependent relaxation.
    HeuristicPassTimes m_passTimes;
    // A solve thread runs on this job.
    std::atomic<uint8_t> m_bSolving{0};
    // White's root moves that are still possible, and how many of them the
    // running pass has begun; the pass itself (0 register screen, 1, 2).
    std::atomic<uint8_t> m_nRootMoves{0};
    std::atomic<uint8_t> m_nRootMovesBegun{0};
    std::atomic<uint8_t> m_nPass{0};
    std::atomic<uint8_t> m_nRelaxations{0};
    // The keys are in; the solution tree below them is being built.
    std::atomic<uint8_t> m_bBuildingTree{0};

    void LockCommand() {
        while (m_bCommandLock.exchange(1, std::memory_order_acquire)) std::this_thread::yield();
    }
    void UnlockCommand() { m_bCommandLock.store(0, std::memory_order_release); }

    // Sets the command word for one thread or ALL_THREADS.
    void SetCommand(uint8_t command, uint16_t thread = ALL_THREADS) {
        LockCommand();
        m_wCommandThread.store(thread, std::memory_order_relaxed);
        m_nCommand.store(command, std::memory_order_release);
        UnlockCommand();
    }
    // Whether the command word tells thread `thread` to stop.
    bool StopMeant(uint16_t thread) const {
        if (m_nCommand.load(std::memory_order_acquire) < COMMAND_STOP) return false;
        const uint16_t target = m_wCommandThread.load(std::memory_order_relaxed);
        return target == ALL_THREADS || target == thread;
    }
    // A jump back to `depth` plies left; afterwards the word becomes the saved pair.
    void SetJump(uint16_t thread, uint16_t depth, uint8_t mode, uint8_t thenCommand, uint16_t thenThread) {
        LockCommand();
        m_wCommandDepth = depth;
        m_nCommandMode = mode;
        m_nSavedCommand = thenCommand;
        m_wSavedCommandThread = thenThread;
        m_wCommandThread.store(thread, std::memory_order_relaxed);
        m_nCommand.store(COMMAND_JUMP, std::memory_order_release);
        UnlockCommand();
    }

    // The line of the first thread at its last regular visit to the outside
    // world. The search only tries the lock: a window reading the line makes
    // it skip one note, never wait.
    void NoteLine(const TThreadContext& ctx, int top, int below);
    AnalysedLine Line() const {
        std::lock_guard<std::mutex> guard(m_lineLock);
        return m_line;
    }

    SolveProgress Progress() const {
        SolveProgress progress;
        progress.rootMoves = m_nRootMoves.load(std::memory_order_relaxed);
        progress.rootMovesBegun = m_nRootMovesBegun.load(std::memory_order_relaxed);
        progress.pass = m_nPass.load(std::memory_order_relaxed);
        progress.relaxations = m_nRelaxations.load(std::memory_order_relaxed);
        progress.nodes = m_nNodes.load(std::memory_order_relaxed);
        progress.safeMode = m_bSafeMode.load(std::memory_order_relaxed) != 0;
        progress.buildingTree = m_bBuildingTree.load(std::memory_order_relaxed) != 0;
        return progress;
    }

  private:
    mutable std::mutex m_lineLock;
    AnalysedLine m_line;
};

// The one rule of safe mode: on when the quick-mode option is off or the
// problem's file asks for it (SAFEMODE).
bool SafeModeFor(const TChessProblem& problem, bool quickModeOption);

} // namespace zorvane
