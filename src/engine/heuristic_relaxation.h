#pragma once
// Relaxation of the special heuristics between passes.
//
// A set of heuristics is a bet on the shape of the solution. When a pass
// under it ends without a proof, TryRelaxSpecialHeuristics widens the set of
// one thread's root by exactly one step (passes 1b, 1c...), in a fixed order,
// until nothing is left and the pass without heuristics follows.
#include "core/chessboard.h"
#include "core/heuristic_params.h"
#include "core/piece.h"
#include "core/thread_context.h"
#include "engine/heuristic_bits.h"

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
    HeuristicFingerprint refresh = nullptr;
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

// The time at which pass index `passIndex` was first finished: the first
// caller writes `now`, every later caller gets that value. Under the spin
// counter, since threads finish their passes independently.
uint64_t PassEndTicks(HeuristicPassTimes& times, int passIndex, uint64_t now);

// The line of the time-dependent rule for a pass of `milliseconds`.
std::string TimeRelaxationLine(uint64_t milliseconds);

} // namespace zorvane
