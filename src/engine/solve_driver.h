#pragma once
// The solve driver: what stands between a solve command and the search steps.
// It chooses the depths (a #5 is tried as #1, #2, #3 and #5, since a shorter
// mate cooks the stipulated one), runs the passes of one depth (0 the register
// screen, 1 with heuristics, 2 without), collects the solutions and leaves a
// result that the window and the command line read.
//
// Two roads lead in: SolveProblem solves a problem's start position at its
// stipulated depth alone; SolveFromPosition solves a later position with
// White to move through the ordered set of depths. Both run on the calling
// thread for a SolveJob; the front ends reach them through the Solver.
#include "core/chessboard.h"
#include "core/move.h"
#include "engine/solution_tree.h"
#include "engine/solve_job.h"
#include "problems/chess_problem.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace zorvane {

struct TThreadContext;

// Memory the temporary register of a problem may take before stores are dropped.
constexpr uint64_t REGISTER_MEMORY_LIMIT = uint64_t{1} << 30;

// What a full FEN says beyond the placement, for the start of a solve.
struct StartConditions {
    uint8_t deniedCastling = 0; // CastlingRightBit: rights the board allows and the text denies
    int enPassantSquare = -1;   // a capture on this square is possible at the first move
};

// How a run goes, beside the problem's own flags.
struct SolveOptions {
    bool allSolutions = false;   // else the first solution ends the run, unless the problem asks for all
    bool heuristics = true;      // the automatic set of heuristics; off, the search bets on nothing
    bool relaxHeuristics = true; // passes 1b, 1c... after the first pass with heuristics
    bool passWithoutHeuristics = true; // pass 2, the one that decides
    bool clearRegisterOnStart = false; // start with an empty temporary register and no screen pass
    bool useRegister = true;           // the temporary register at all (off to measure it)
    bool moveOrdering = true;          // the ordered lists (off to measure what they gain)
    bool quickMode = true;             // the option; the problem's SAFEMODE still forces safe mode
    StartConditions start;             // of the start position (SolveProblem only)
    uint64_t registerMemoryLimit = REGISTER_MEMORY_LIMIT; // bytes; a store beyond it is dropped
    int languageId = 1;
    // Endgame tables to answer the positions they hold, loaded for the
    // problem's men (TTableSet::LoadReachable); none: no table is asked.
    const TTableSet* tables = nullptr;
    // The whole solution after the keys (SolveProblem only).
    TreeOptions tree;
    // Where each relaxation of the heuristics is logged; empty for no log.
    std::filesystem::path relaxationLog;
};

// Keys of the result map: from, to and the promoted kind, in this order.
struct MoveKeyLess {
    bool operator()(const TMove& a, const TMove& b) const {
        if (a.from != b.from) return a.from < b.from;
        if (a.to != b.to) return a.to < b.to;
        return (a.promotion & 31) < (b.promotion & 31);
    }
};

struct SolutionEntry {
    int plies = 0;                    // the depth at which the move was proved
    std::string pass;                 // the pass that proved it (PassName)
    std::string ffm;                  // the forcing-moves level of that pass (FfmLevelText); empty for none
    std::vector<std::string> threats; // White's threats after the key, long notation
};

struct SolveResult {
    std::map<TMove, SolutionEntry, MoveKeyLess> solutions;
    std::vector<TMove> moves;       // the solutions in the order found
    std::vector<std::string> texts; // their long notation, same order
    std::vector<int> keyPositions;  // 1-based place of each in the ordered root list
    int rootMoves = 0;              // White's possible moves in the root
    uint64_t nodes = 0;
    std::string heuristics;  // the set of heuristics the solve started with, as text; empty for none
    double milliseconds = 0; // paused time left out
    bool stopped = false;    // a stop command ended the run
    bool stoppedOnDual = false;
    bool stoppedOnThree = false;
    bool fromRegister = false; // every solution came from the register without a search
    bool safeMode = false;     // the run was in safe mode
    std::wstring text;         // the result text for the user
    // The problem's expected first moves, each marked (EXPECTED_MOVE_MET) that the root list put first.
    std::vector<TMove> expectedSortWhiteMoves;
    // Built when asked for, after the keys; its time is not in `milliseconds`.
    SolutionTree tree;
    double treeMilliseconds = 0;
};

class SolveDriver {
  public:
    SolveDriver();
    ~SolveDriver();
    SolveDriver(const SolveDriver&) = delete;
    SolveDriver& operator=(const SolveDriver&) = delete;

    // The start position of the job's problem at its stipulated depth. Throws
    // ChessException when the position cannot be set up, the side not to
    // move stands in check, or the start's en passant square does not fit.
    SolveResult SolveProblem(SolveJob& job, const SolveOptions& options);

    // A later position with White to move and `plies` (odd) left, through the
    // depth loop. `position` belongs to the problem's chain of played positions.
    // The task check throws ChessException for either king in check when it
    // is not his move; an even `plies` (Black to move) is std::invalid_argument.
    SolveResult SolveFromPosition(SolveJob& job, const TChessboard& position, int plies,
                                  const SolveOptions& options);

    // The passes a solve of the job's problem would run, without solving: the
    // starting set (the automatic choice with the problem's options over it)
    // and each of its relaxations (ShowRelaxationPath). Throws as SolveProblem
    // for a position that cannot be set up.
    std::string PreviewPasses(SolveJob& job, const SolveOptions& options);

  private:
    std::unique_ptr<TThreadContext> m_pContext;
    // The position before Black's double step, when the start names an en passant square.
    TChessboard m_beforeDoubleStep = EmptyChessboard();
};

// The depths at which a stipulation of `plies` is tried, smallest first: 1,
// the known mate, 3, 5, 7, 9, 11, 13 where the stipulation is long enough, and
// the stipulation itself. `known` is the register's shortest mate (0 for none).
std::vector<int> DepthsToTry(int plies, int known);

} // namespace zorvane
