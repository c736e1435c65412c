#pragma once
// The mate proof of one position, for the benchmarks and the tests: every
// White first move is tried, and each one that forces mate within the
// stipulated moves is a key. It runs through the Solver, like every front end.
#include "core/chessboard.h"
#include "core/move.h"
#include "engine/solver.h"
#include "problems/chess_problem.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zorvane {

constexpr int MAX_STIPULATION_MOVES = 255;

struct MateKeys {
    std::vector<TMove> keys;
    std::vector<std::string> texts; // long notation, in the order found
    std::vector<int> keyPositions;  // 1-based place of each key in the ordered root list
    int rootMoves = 0;
    uint64_t nodes = 0;
    double milliseconds = 0;
    bool stopped = false;
    // With a tree asked for (WithTree): the whole solution and the time it took.
    SolutionTree tree;
    double treeMilliseconds = 0;
};

class MateProof {
  public:
    // Settings of the run: quick mode (repetitions pruned everywhere) unless
    // safe mode is asked for; the temporary register (used from 10 plies on)
    // and move ordering unless switched off; the special heuristics only when
    // asked, so that the proof is the plain search's unless a caller wants to
    // measure or check the bets. The register stays warm from one FindKeys to the next.
    explicit MateProof(bool safeMode = false, bool useRegister = true, bool ordering = true,
                       bool heuristics = false);
    MateProof(const MateProof&) = delete;
    MateProof& operator=(const MateProof&) = delete;

    // Keys of a direct mate in `moves` (1..255) from `root`, White to move. The
    // root is set up strictly; throws ChessException for a bad position or when
    // the black king stands in check.
    MateKeys FindKeys(const TChessboard& root, int moves);
    // The same run stopped at the first key: what a solve in first-solution mode gives.
    MateKeys FindFirstKey(const TChessboard& root, int moves);
    // The runs after this one build the solution tree after the keys.
    void WithTree(const TreeOptions& tree) { m_options.tree = tree; }
    // The runs after this one read these endgame tables (null: none).
    void WithTables(const TTableSet* tables) { m_options.tables = tables; }

  private:
    MateKeys solve(const TChessboard& root, int moves, bool allSolutions);

    TChessProblem m_problem;
    SolveOptions m_options;
};

} // namespace zorvane
