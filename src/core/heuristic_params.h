#pragma once
// The parameters that give the special heuristics' bits their meaning. Each
// search thread carries its own copy (TThreadContext derives from this
// record), since a relaxation or a dynamic change in one thread must not
// disturb the others; the few fields that stay fixed for a whole solve live
// in SolveWideHeuristicParams. Every field starts at the value a fresh solve
// gives it.
#include "core/move.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace zorvane {

struct TChessboard;

constexpr uint8_t HEURISTIC_NO_SQUARE = 255;
constexpr int MAX_BLOCKED_FIGURES = 8;

// Values of m_nFfmWithOthers.
constexpr uint8_t FFM_WITHOUT_OTHERS = 0;
constexpr uint8_t FFM_WITH_OTHERS = 1;
constexpr uint8_t FFM_PARTIALLY_WITH_OTHERS = 255;

// Levels of FindForcedMate (m_nFfmLevel): what a White move must do to be
// tried. A higher level admits more moves.
constexpr uint8_t FFM_LEVEL_CHECKS = 2;     // checks and a few exceptions
constexpr uint8_t FFM_LEVEL_MATE1 = 3;      // and threats of mate in one
constexpr uint8_t FFM_LEVEL_MATE1_WIDE = 4; // and threats of mate in two by checks
constexpr uint8_t FFM_LEVEL_MATE2 = 5;      // threats of mate in two
constexpr uint8_t FFM_LEVEL_MATE2_WIDE = 6; // and threats of mate in three by checks
constexpr uint8_t FFM_LEVEL_MATE3 = 7;
constexpr uint8_t FFM_LEVEL_MATE4 = 8;
constexpr uint8_t FFM_LEVEL_MAX = 9; // threats of mate in five

struct TSpecialHeuristicsParams {
    // The edge and band bets.
    uint8_t m_bKingMoveStrict = 1;
    uint8_t m_bKingMoveExceptions = 0;
    uint8_t m_bExtEdgeMoveUnlessOnEdge = 0;
    uint8_t m_bSurroundedStrict = 0;
    int8_t m_cCornerDistance = 0;
    uint8_t m_nDynRelaxFiguresCaptured = 0;
    uint8_t m_bDynRelaxExtEdgeOnly = 0;
    uint8_t m_bDynRelaxOnAdvancedPawn = 0;
    uint8_t m_bSkipDeferIfBalanceFixed = 0;
    uint8_t m_bAutoDynRelax = 0;
    uint16_t m_wDeferMoves = 0;
    uint16_t m_wDeferLimit = 0;
    uint8_t m_bInclCornerSquares = 0;

    // The figure bets.
    uint8_t m_nLoseFiguresMode = 0;
    uint8_t m_cKeyField = HEURISTIC_NO_SQUARE;
    uint8_t m_cKeyWhiteFigure = HEURISTIC_NO_SQUARE;
    uint8_t m_cKeyPinnedFigure = HEURISTIC_NO_SQUARE;
    uint8_t m_bKeyFigureIsRook = 0;
    uint8_t m_cMainDiagonalFigure = HEURISTIC_NO_SQUARE;

    // Black figures kept at their blockade.
    uint8_t m_nBlockedFigures = 0;
    uint8_t m_nBlockedFiguresSaved = 0;
    uint8_t m_aBlockedStart[MAX_BLOCKED_FIGURES] = {255, 255, 255, 255, 255, 255, 255, 255};
    uint8_t m_aBlockedNow[MAX_BLOCKED_FIGURES] = {255, 255, 255, 255, 255, 255, 255, 255};
    uint8_t m_bBlockedEffective = 0;
    uint8_t m_bBlockedHasPawn = 0;
    uint8_t m_bUnblockDynamic = 1;

    // The sea snake's squares.
    uint8_t m_cPendulum2 = HEURISTIC_NO_SQUARE;
    uint8_t m_cPendulum1 = HEURISTIC_NO_SQUARE;
    uint8_t m_cApproach = HEURISTIC_NO_SQUARE;
    uint8_t m_cTurnBack = HEURISTIC_NO_SQUARE;
    uint8_t m_bSeaSnakeRequested = 0;
    uint8_t m_nSeaSnakeCount = 0;

    uint8_t m_bPromotedStrict = 0;

    // How the passes follow one another.
    uint8_t m_bLetRelax = 1;
    uint8_t m_bHeuristicsFallback = 0;
    uint8_t m_bPass2 = 1;
    uint8_t m_nPassIndex = 0;

    // FindForcedMate.
    uint8_t m_nFfmLevel = 0;
    uint8_t m_nFfmStartLevel = 0;
    uint8_t m_nFfmRelaxations = 0;
    uint8_t m_bFfmAddCaptures = 0;
    uint8_t m_nFfmWithOthers = FFM_PARTIALLY_WITH_OTHERS;
    uint8_t m_bFfmCustom = 0;
    uint8_t m_nFfmCustomRelaxations = 0;
    uint8_t m_bFfmPreliminary = 0;
    uint32_t m_uFfmSavedHeuristics = 0;

    // Why the last line was doubtful: a flag, an impossibility code (from
    // 0xFFFFFFE0) or a result of the temporary register.
    uint32_t m_nDoubtfulReason = 0;
    // Raised while the tests run, so that they know when they are inside one
    // of their own look-aheads.
    uint8_t m_nHeuristicsDepth = 0;

    // The relaxation's memory between its single steps.
    uint8_t m_nRelaxBlockedCount = 0;
    uint8_t m_aRelaxBlocked[MAX_BLOCKED_FIGURES] = {255, 255, 255, 255, 255, 255, 255, 255};
    uint8_t m_bBlockedRelaxable = 0;
    uint8_t m_bBlockedAllowed = 0;
    uint8_t m_nFiguresAtStart = 0;
    uint8_t m_bDropQueenCheckFirst = 0;
    uint8_t m_bDropPromotedQueenFirst = 0;
    uint8_t m_bStrictEdgeAllowed = 0;
    uint8_t m_bKeyFigurePending = 0;
    uint8_t m_bUnblockPending = 0;
    uint8_t m_bFallbackRequested = 0;
};

// A position reached by the moves typed for SH_ZUGZWANG, and the move that
// reached it.
struct ZugzwangPosition {
    TMove reachedBy;
    uint16_t plyFromStart = 0;
};

struct SolveWideHeuristicParams {
    uint8_t m_cKeyLineFile = HEURISTIC_NO_SQUARE;
    uint16_t m_wKeyDiagonal = 0xFFFF;
    std::vector<TMove> m_aSeaSnakeOnlyAfter;
    // Keyed by the position's identifier text.
    std::map<std::string, ZugzwangPosition> m_aZugzwangAfter;
    // Set once the sea snake has been relaxed away in this solve.
    bool m_bSeaSnakeOver = false;
    // A black knight has been captured somewhere near the root.
    bool m_bKnightCaptured = false;
    // Promoted black queens are judged by their mobility first.
    bool m_bPromotedQueenMobility = false;
};

// The fingerprint of a set (CalcHeuristicParams): what the register keys a
// doubtful position by. Each change of the word or of a parameter it covers is
// followed by a fresh value from it.
using HeuristicFingerprint = uint32_t (*)(const TChessboard& position,
                                          const TSpecialHeuristicsParams& params);

// One entry per pass index (m_nPassIndex is a byte).
constexpr int PASS_INDEX_COUNT = 256;

// When the solve and its passes started, and when each pass index was first
// finished, in milliseconds of the system's tick counter. Shared by all
// threads of a solve, so that they agree on the time-dependent relaxation:
// the first thread to finish a pass index writes its time, under the spin
// counter, and the others read that time.
struct HeuristicPassTimes {
    std::atomic<uint64_t> m_uStartTicks{0};
    std::atomic<uint64_t> m_uPassStartTicks{0};
    // 0: not finished yet.
    uint64_t m_aPassTicks[PASS_INDEX_COUNT] = {};
    std::atomic<uint16_t> m_wPassTicksLock{0};
};

} // namespace zorvane
