#pragma once
// The mate proof of one position: every White first move is tried, and each
// one that forces mate within the stipulated moves is a key. This is the facade
// that the command line and the benchmarks use.
#include "core/chessboard.h"
#include "core/move.h"
#include "engine/solve_driver.h"
#include "problems/chess_problem.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zorvane {

struct TThreadContext;

constexpr int MAX_STIPULATION_MOVES = 255;

// What a full FEN says beyond the placement, for the start of the solve.
struct StartConditions {
    uint8_t deniedCastling = 0; // CastlingRightBit: rights the board allows and the text denies
    int enPassantSquare = -1;   // a capture on this square is possible at the first move
};

struct MateKeys {
    std::vector<TMove> keys;
    std::vector<std::string> texts; // long notation, in the order found
    std::vector<int> keyPositions;  // 1-based place of each key in the ordered root list
    int rootMoves = 0;
    uint64_t nodes = 0;
    double milliseconds = 0;
    bool stopped = false;
};

// What a running FindKeys has done so far, readable from another thread.
struct MateProgress {
    int rootMove = 0;   // root moves begun in the running pass
    int rootMoves = 0;  // White's possible moves in the root
    int pass = 0;
    uint64_t nodes = 0;
};

class MateProof {
public:
    // Settings of the run: quick mode (repetitions pruned everywhere) unless
    // safe mode is asked for; the temporary register (used from 10 plies on)
    // and move ordering unless switched off. The register stays warm from one FindKeys to the next.
    explicit MateProof(bool safeMode = false, bool useRegister = true, bool ordering = true);
    ~MateProof();
    MateProof(const MateProof&) = delete;
    MateProof& operator=(const MateProof&) = delete;

    // Keys of a direct mate in `moves` (1..255) from `root`, White to move. The
    // root is set up strictly; throws ChessException for a bad position or when
    // the black king stands in check.
    MateKeys FindKeys(const TChessboard& root, int moves) { return FindKeys(root, moves, StartConditions{}); }
    // The same, with the start's castling rights and en passant square as a
    // full FEN gives them. Throws ChessException for an en passant square
    // that does not fit the position.
    MateKeys FindKeys(const TChessboard& root, int moves, const StartConditions& start);

    // The solve-wide record: its command word stops or pauses a running FindKeys
    // from another thread.
    TChessProblem& Problem() { return m_problem; }
    MateProgress Progress() const {
        return {m_problem.m_nRootMovesBegun.load(std::memory_order_relaxed),
                m_problem.m_nRootMoves.load(std::memory_order_relaxed), m_problem.m_nPass.load(std::memory_order_relaxed),
                m_problem.m_nNodes.load(std::memory_order_relaxed)};
    }

private:
    TChessProblem m_problem;
    // The position before Black's double step, when the start names an en passant square.
    TChessboard m_beforeDoubleStep = EmptyChessboard();
    SolveOptions m_options;
    SolveDriver m_driver;
};

} // namespace zorvane
