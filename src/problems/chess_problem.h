#pragma once
// TChessProblem: everything known about one problem. It is at once the row of
// the problem file and the context of a running solve: every search thread
// reaches it through TChessboard::m_pProblem, for the node counter, the command
// word that stops, pauses or redirects threads, and the settings of the solve.
#include "core/chessboard.h"
#include "core/move.h"
#include "problems/sort_indication.h"
#include "problems/variant.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace zorvane {

struct TThreadContext;
template <int nKind> class TTemporaryChessboardRegister;
using TProblemRegister = TTemporaryChessboardRegister<0>;

enum ProblemType : uint16_t {
    PROBLEM_DIRECT_MATE = 1,
    PROBLEM_SELFMATE = 2,
    PROBLEM_POSITION = 4, // no stipulation
};
// Plies of a position without stipulation.
constexpr uint16_t POSITION_PLIES = 255;

enum ProblemFlag : uint16_t {
    NoMirror = 0x0001,
    AllSolutions = 0x0002,
    HasAnswer = 0x0004,
    StopOnDual = 0x0008,
    StopOn3Sol = 0x0010,
    UseMainVariantAsSortIndications = 0x0020,
    NoGlobalRegister = 0x0040,
    SafeMode = 0x0080,
    MirrorOnly = 0x0100,
    HasExpectedSortWhiteMoves = 0x0200,
    ExpectedSortWhiteMovesOnly = 0x0400,
    GuiCheckBestDefence = 0x0800,
    GuiCheck = 0x1000,
    RequiresSyzygy = 0x2000,
    AllSolutionsRequiresSyzygy = 0x4000,
};

enum EngineCommand : uint8_t {
    COMMAND_RUN = 0,
    COMMAND_PAUSE = 1,
    COMMAND_JUMP = 2,
    COMMAND_STOP = 3,
};
constexpr uint16_t ALL_THREADS = 0xFFFF;

// The settings a new record takes from the options at the moment it is made.
struct ProblemDefaults {
    bool quickMode = true;
    int schedulerLevels = 0;
    bool customScheduler = false;
    bool useMainVariantAsSortIndications = false;
};

struct TChessProblem {
    // ---- The row of the problem file, in declared order.
    uint16_t type = PROBLEM_DIRECT_MATE;
    int32_t id = 0;
    uint16_t plies = 3;
    // Head of the chain of positions; the "Moves:" line or moves played on the
    // board add positions behind it in `playedPositions`, each the child of the one before.
    TChessboard startPosition = EmptyChessboard();
    std::deque<TChessboard> playedPositions;
    std::vector<TMove> expectedAnswers;
    std::vector<TMove> expectedSortWhiteMoves;
    uint16_t flags = 0;
    uint8_t threads = 255;
    uint8_t multithreadingLevels = 255;
    int16_t schedulerLevels = -1;
    int32_t lichessLevels = -1;
    int32_t globalRegisterMB = -1;
    uint8_t stopRelaxHeuristicsOnFirstSolution = 0;
    std::wstring description;
    uint64_t guiCheckCount = 0;
    std::map<uint32_t, std::string> heuristicOptions;
    // `requires` of the file; the word is reserved in C++20.
    std::set<std::string> requiresConditions;
    std::set<std::string> allSolutionsRequires;
    TVariantMap variants;
    TChessboard referencePosition = EmptyChessboard();
    uint16_t stipulationPlies = 3;
    uint8_t useMainVariantAsSortIndications = 0;
    std::set<std::wstring> tags;
    SortIndications sortIndications;
    SortIndications activeSortIndications;

    // ---- Solve-wide state.
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
    uint8_t m_bSafeMode = 0;
    // Castling rights (CastlingRightBit) that the start position denies though
    // the board allows them: a FEN's "-" given on the command line. The solve's
    // threads take it into their context; the position record cannot hold it.
    uint8_t m_bDeniedCastling = 0;
    // Repetitions count only for positions first reached with at most this many plies left.
    uint16_t m_shRepetitionLimit = 0;
    uint8_t m_nMultithreadingLevels = 0;
    uint8_t m_nSchedulerLevels = 0;
    bool m_bSchedulerAll = false;
    bool m_bCustomScheduler = false;
    // Solved positions of this problem; it lives with the problem so that a
    // second solve starts warm. None: the search runs without it.
    std::unique_ptr<TProblemRegister> m_pRegister;
    // Lists ordered by the chess rules of the ordering; off only to measure what it gains.
    bool m_bMoveOrdering = true;
    // A solve thread runs on this record.
    std::atomic<uint8_t> m_bSolving{0};
    // White's root moves that are still possible, and how many of them the
    // running pass has begun; the pass itself (0 register screen, 1, 2).
    std::atomic<uint8_t> m_nRootMoves{0};
    std::atomic<uint8_t> m_nRootMovesBegun{0};
    std::atomic<uint8_t> m_nPass{0};
    // Called on the solve thread with each solution: the move as a 32-bit
    // word, its text, the problem and the elapsed milliseconds. A null move
    // (0) clears the display at the start of a solve.
    void (*m_pfnSolution)(TChessProblem& problem, uint32_t move, const std::string& text, double milliseconds,
                          void* user) = nullptr;
    void* m_pSolutionUser = nullptr;
    // Called from the search at its regular visits to the outside world.
    void (*m_pfnProgress)(TChessProblem& problem, const TThreadContext& thread, void* user) = nullptr;
    void* m_pProgressUser = nullptr;

    // A new record starts as "#2" with an empty board whose plies are 5.
    TChessProblem();
    // A new record takes the solve settings of the options at this moment.
    explicit TChessProblem(const ProblemDefaults& defaults);
    ~TChessProblem();
    TChessProblem(const TChessProblem&) = delete;
    TChessProblem& operator=(const TChessProblem&) = delete;

    // The last position of the chain: the start, or the last played position.
    const TChessboard& currentPosition() const {
        return playedPositions.empty() ? startPosition : playedPositions.back();
    }
    // Moves of the stipulation: n of "#n" or "s#n"; 0 for a position without one.
    int stipulationMoves() const;

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
};

// Sets `plies` and `stipulationPlies` from n moves by the type: 2n-1 for a
// direct mate, 2n+1 for a selfmate, 255 for a position.
void SetStipulation(TChessProblem& problem, int moves);

// Changes the type and derives the plies from the same number of moves, so
// that "#3" becomes "s#3".
void SetProblemType(TChessProblem& problem, uint16_t type);

// The problems of one file, owned, ordered by number.
using ProblemMap = std::map<int32_t, std::unique_ptr<TChessProblem>>;

} // namespace zorvane
