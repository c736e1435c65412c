#pragma once
// Relaxation of the special heuristics between passes, and the fallback
// inside a line.
//
// A set of heuristics is a bet on the shape of the solution. When a pass
// under it ends without a proof, TryRelaxSpecialHeuristics widens the set of
// one thread's root by exactly one step (passes 1b, 1c...), in a fixed order,
// until nothing is left and the pass without heuristics follows. The fallback
// is the opposite: inside a line it tightens the edge bet for one inner
// search and puts the set back afterwards.
#include "core/chessboard.h"
#include "core/heuristic_params.h"
#include "core/piece.h"
#include "core/thread_context.h"
#include "engine/heuristic_bits.h"
#include "engine/heuristics_catalogue.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace zorvane {

// Milliseconds of the system's steady tick counter.
uint64_t SystemTicks();

// What the relaxation needs from outside: the fingerprint of a set, the clock
// of the time-dependent step, and where its line goes.
struct RelaxationHooks {
    HeuristicFingerprint refresh = HeuristicFingerprintOf;
    std::function<uint64_t()> now = SystemTicks;
    // Receives the time-dependent step's line, without a line end; may be empty.
    std::function<void(std::string_view)> print;
};

// A new set granted by the time-dependent rule (-1 as a signed byte).
constexpr int RELAXED_BY_TIME = 255;

// The time-dependent rule: a pass index that ended within this many
// milliseconds of its start earns one more FindForcedMate level; times near
// the limit are reported either way.
constexpr uint64_t TIME_RELAXATION_LIMIT_MS = 1000;
constexpr uint64_t TIME_RELAXATION_REPORT_FROM_MS = 800;
constexpr uint64_t TIME_RELAXATION_REPORT_TO_MS = 1200;

// One step of widening of the set of `root` (a thread's root, White to move;
// with Black to move its parent is widened instead). The word, the
// parameters in `ctx` and the fingerprint change together. Returns 0 when no
// set is left (the pass without heuristics comes next), a positive value for
// a new set, RELAXED_BY_TIME for a set granted by the time-dependent rule.
int TryRelaxSpecialHeuristics(TChessboard& root, TThreadContext& ctx, SolveWideHeuristicParams& solveWide,
                              HeuristicPassTimes& times, const RelaxationHooks& hooks);

// A forcing-moves run announced with a preliminary pass (m_bFfmPreliminary)
// parks its set in m_uFfmSavedHeuristics and starts with the band rule
// alone: the edge and surrounding bets and the run itself wait for the first
// relaxation, which puts the set back. No change for another set.
void ParkForcedMateForPreliminaryPass(TChessboard& root, TSpecialHeuristicsParams& params);

// The time at which pass index `passIndex` was first finished: the first
// caller writes `now`, every later caller gets that value. Under the spin
// counter, since threads finish their passes independently.
uint64_t PassEndTicks(HeuristicPassTimes& times, int passIndex, uint64_t now);

// The line of the time-dependent rule for a pass of `milliseconds`.
std::string TimeRelaxationLine(uint64_t milliseconds);

// Fallback: White to move in a line where the black king has just stepped
// from the inside onto the edge, and little material is left. The edge bet
// is then worth a strict inner search of its own.
constexpr int FALLBACK_MIN_PLIES_LEFT = 17;
constexpr int FALLBACK_MAX_PLIES_PLAYED = 9;
// A black bishop further than this from its king may run away from him.
constexpr int FALLBACK_BISHOP_NEAR_KING = 2;
// Kings within this distance make SH_AREKINGSNEAR part of the fallback's bet.
constexpr int FALLBACK_KINGS_NEAR = 3;

bool FallbackApplies(const TChessboard& position, const TThreadContext& ctx);
// Whether the fallback adds SH_AREKINGSNEAR to the edge bet.
bool FallbackAddsKingsNear(const TChessboard& position);

// Runs `search` (the plain white search, returning a result code) on
// `position` under the strict edge bet, and puts the word, the fingerprint
// and m_bKingMoveStrict back whatever it answers. True: the node is a mate.
// Otherwise the node goes on as if nothing had been tried.
template <class Search>
bool TryFallback(TChessboard& position, TThreadContext& ctx, HeuristicFingerprint refresh, Search&& search) {
    struct Restore {
        TChessboard& position;
        TThreadContext& ctx;
        uint32_t word, fingerprint;
        uint8_t strict;
        ~Restore() {
            position.m_uHeuristics = word;
            position.m_uHeuristicParams = fingerprint;
            ctx.m_bKingMoveStrict = strict;
        }
    } restore{position, ctx, position.m_uHeuristics, position.m_uHeuristicParams, ctx.m_bKingMoveStrict};
    // 1. No fallback inside this one.
    ++ctx.m_nFallbackDepth;
    // 2. The strict edge bet, with the kings' bet where few men are left.
    position.m_uHeuristics |= SH_KEEPKINGONTHEEDGE;
    if (FallbackAddsKingsNear(position)) position.m_uHeuristics |= SH_AREKINGSNEAR;
    ctx.m_bKingMoveStrict = 1;
    position.m_uHeuristicParams = refresh(position, ctx);
    // 3. The inner search.
    const int result = search(position);
    --ctx.m_nFallbackDepth;
    // 4. The set comes back as the guard leaves; 5. only a mate counts.
    return result > 0;
}

} // namespace zorvane
