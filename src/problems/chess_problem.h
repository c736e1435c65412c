#pragma once
// TChessProblem: everything known about one problem, the row of the problem
// file. A running solve keeps its own state apart, in the engine's SolveJob;
// search threads reach this record through TChessboard::m_pProblem only to
// read it. The problem owns its temporary register, so that a second solve
// starts warm.
#include "core/chessboard.h"
#include "core/move.h"
#include "problems/sort_indication.h"
#include "problems/variant.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace zorvane {

// A problem's register: proven results, and apart from them, per set of
// heuristics, what was found under bets.
class TAggregatedTemporaryChessboardRegister;
using TProblemRegister = TAggregatedTemporaryChessboardRegister;

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

// The settings a new record takes from the options at the moment it is made.
struct ProblemDefaults {
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

    // Solved positions of this problem, made by the engine at the first solve
    // and kept between solves. Shared so that this library needs no more than
    // its name: the engine that makes it gives it its deleter.
    std::shared_ptr<TProblemRegister> m_pRegister;

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
