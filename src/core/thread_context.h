#pragma once
// TThreadContext: the search state of one engine thread. The move makers note
// captures here and read the root for castling rights; the search keeps its
// board stack and per-ply move state here, where the progress display reads it.
#include "chessboard.h"
#include "heuristic_params.h"
#include "move.h"

#include <atomic>
#include <cstdint>

namespace zorvane {

struct SolveJob;

// Room for the longest stipulation (255 moves = 509 plies) with a margin.
constexpr int MAX_PLIES = 600;

// The heuristics' parameters are the thread's own: a relaxation in one
// thread leaves the others' sets alone.
struct TThreadContext : TSpecialHeuristicsParams {
    // The child of a node with m_shPliesLeft = p is built in slot p.
    TChessboard m_aBoards[MAX_PLIES];
    // Top of the parent chain: castling rights are measured from here.
    const TChessboard* m_pRoot = nullptr;
    // The solve this thread works for: its command word, counters and settings.
    SolveJob* m_pJob = nullptr;
    // Castling rights (CastlingRightBit) that the start of the solve denies
    // though the board would allow them, as a FEN's castling field can. It
    // lives here, with the solve, so that neither the position record nor the
    // register's keys change for it.
    uint8_t m_bDeniedCastling = 0;
    uint16_t m_shThreadId = 0;
    // Plies left at the root of the running pass: the progress line starts there.
    uint16_t m_shRootPlies = 0;

    uint8_t m_aMoveIndex[MAX_PLIES];
    uint8_t m_aMoveIndexShown[MAX_PLIES];
    uint8_t m_aMoveCount[MAX_PLIES];
    const TMove* m_apMoves[MAX_PLIES];
    // The move that settled the last node with these plies left: White's mate
    // or Black's refutation. Tried first at the next node of that depth.
    TMove m_aStrongMove[MAX_PLIES];
    // Highest plies-left value at which a repetition seen below was first played.
    uint16_t m_aRepetition[MAX_PLIES];

    // 0 run, 1 held at a safe point, above 1 stop this thread.
    std::atomic<uint8_t> m_nSuspended{0};

    // Raised while a fallback's inner search runs: a fallback is never tried
    // inside another.
    uint8_t m_nFallbackDepth = 0;

    // A forcing-moves run is going on: the steps take the candidates of m_nFfmLevel.
    bool m_bForcedMate = false;
    // The run's two sets: the one it starts with (FindForcedMate alone, unless
    // the other heuristics count all through) and the whole set, which takes
    // over at this many plies left and below (0: never).
    uint32_t m_uFfmAloneWord = 0;
    uint32_t m_uFfmFullWord = 0;
    uint32_t m_uFfmFullParams = 0;
    uint16_t m_shFfmOthersFromPlies = 0;
    uint16_t m_shAdditionalMoves = 0;
    bool m_bQuickerMateFound = false;
    // Set by a White step that returns mate: whether its mating move took on
    // the square of Black's last move (so other promotions there fall alike).
    bool m_bRecaptured = false;

    // The first three captures of each colour since the root: byte and square.
    uint8_t m_aWhiteCaptures[3];
    uint8_t m_aWhiteCaptureSquares[3];
    uint8_t m_aBlackCaptures[3];
    uint8_t m_aBlackCaptureSquares[3];

    TThreadContext() { ClearPlyArrays(); }

    // Between two searches: indices to 255, counts and pointers to 0.
    void ClearPlyArrays() {
        for (int i = 0; i < MAX_PLIES; ++i) {
            m_aMoveIndex[i] = 255;
            m_aMoveIndexShown[i] = 255;
            m_aMoveCount[i] = 0;
            m_apMoves[i] = nullptr;
            m_aRepetition[i] = 0;
            m_aStrongMove[i] = TMove{};
        }
        for (int i = 0; i < 3; ++i) {
            m_aWhiteCaptures[i] = m_aBlackCaptures[i] = 0;
            m_aWhiteCaptureSquares[i] = m_aBlackCaptureSquares[i] = NO_SQUARE;
        }
    }
};

} // namespace zorvane
