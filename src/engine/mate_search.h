#pragma once
// The mate proof of one position: every White first move is tried, and each
// one that forces mate within the stipulated moves is a key. This is the facade
// that the command line and the benchmarks use.
#include "core/chessboard.h"
#include "core/move.h"
#include "problems/chess_problem.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zorvane {

struct TThreadContext;

constexpr int MAX_STIPULATION_MOVES = 255;
// Memory the temporary register of a proof may take before stores are dropped.
constexpr uint64_t REGISTER_MEMORY_LIMIT = uint64_t{1} << 30;

struct MateKeys {
    std::vector<TMove> keys;
    std::vector<std::string> texts; // long notation, in the order found
    uint64_t nodes = 0;
    double milliseconds = 0;
    bool stopped = false;
};

// What a running FindKeys has done so far, readable from another thread.
struct MateProgress {
    int rootMove = 0;   // root moves begun
    int rootMoves = 0;  // White's moves in the root
    uint64_t nodes = 0;
};

class MateProof {
public:
    // Settings of the run: quick mode (repetitions pruned everywhere) unless
    // safe mode is asked for; the temporary register (used from 10 plies on)
    // unless switched off. The register stays warm from one FindKeys to the next.
    explicit MateProof(bool safeMode = false, bool useRegister = true);
    ~MateProof();
    MateProof(const MateProof&) = delete;
    MateProof& operator=(const MateProof&) = delete;

    // Keys of a direct mate in `moves` (1..255) from `root`, White to move. The
    // root is set up strictly; throws ChessException for a bad position or when
    // the black king stands in check.
    MateKeys FindKeys(const TChessboard& root, int moves);

    // The solve-wide record: its command word stops or pauses a running FindKeys
    // from another thread.
    TChessProblem& Problem() { return m_problem; }
    MateProgress Progress() const {
        return {m_nRootMove.load(std::memory_order_relaxed), m_nRootMoves.load(std::memory_order_relaxed),
                m_problem.m_nNodes.load(std::memory_order_relaxed)};
    }

private:
    TChessProblem m_problem;
    bool m_bUseRegister;
    std::atomic<int> m_nRootMove{0};
    std::atomic<int> m_nRootMoves{0};
    std::unique_ptr<TThreadContext> m_pContext;
    TChessboard m_root;
};

} // namespace zorvane
