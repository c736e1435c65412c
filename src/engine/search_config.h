#pragma once
// The compile-time axes of the search. The steps are written once and
// instantiated per configuration, so a configuration without registers,
// ordering, heuristics or thread levels carries no test for them: each hook
// below sits behind `if constexpr` in the steps and costs nothing while off.
#include "core/chessboard.h"
#include "core/move.h"

#include <cstdint>

namespace zorvane {

// The plain proof search: every White move in base order, no memory of solved
// positions, no bets.
struct PlainSearch {
    static constexpr bool kGlobalRegister = false;
    static constexpr bool kTemporaryRegister = false;
    static constexpr bool kOrdering = false;
    static constexpr bool kHeuristics = false;
    static constexpr bool kLevels = false;
    static constexpr bool kForcedMate = false;
};

// The proof search with the problem's temporary register: proven mates and
// absences of mate are stored and asked for, from 10 plies of stipulation on.
struct RegisterSearch : PlainSearch {
    static constexpr bool kTemporaryRegister = true;
};

// Move ordering: sorted lists deep down, Black's replies sorted from 4 plies
// left, and the move that settled the last node of a depth tried first.
struct OrderedSearch : PlainSearch {
    static constexpr bool kOrdering = true;
};
struct OrderedRegisterSearch : RegisterSearch {
    static constexpr bool kOrdering = true;
};

// The search of a solve that bets: the set in force is tested after each
// black reply and on White's candidates, and the impossibility tail cuts what
// cannot be mated, in every pass. Only ordered searches bet: the unordered
// ones exist to measure the ordering.
struct OrderedHeuristicSearch : OrderedSearch {
    static constexpr bool kHeuristics = true;
};
struct OrderedRegisterHeuristicSearch : OrderedRegisterSearch {
    static constexpr bool kHeuristics = true;
};

// The forcing-moves run (FindForcedMate): White tries only the candidates of
// the level in force, and a node that left a legal move out proves nothing.
// It is a pass of the heuristics, so it bets as they do.
struct ForcedMateSearch : OrderedHeuristicSearch {
    static constexpr bool kForcedMate = true;
};
struct ForcedMateRegisterSearch : OrderedRegisterHeuristicSearch {
    static constexpr bool kForcedMate = true;
};

// Any of the searches above that also asks the endgame tables: a position
// whose men have a table is answered at once. Chosen only when the solve has
// tables for its men.
template <class Base> struct WithTables : Base { static constexpr bool kGlobalRegister = true; };

// Hooks filled in by the subsystems that provide them; declared here so that
// the steps name them at their places. Only configurations that switch the
// matching axis on instantiate them.
namespace search_hooks {
// Plies to mate from the tables, 0 for none, -1 for a mate of unknown length, -2 not registered.
template <class Config> int ProbeGlobalRegister(const TChessboard& position);
// 1, 0, -1 as stored for the position, or a value below -1 when unknown or not to be asked.
template <class Config> int8_t ProbeTemporaryRegister(const TChessboard& position);
template <class Config> void StoreTemporaryRegister(const TChessboard& position, int8_t result);
// Hands a White list to the thread levels; -128 when not taken.
template <class Config> int8_t HandToLevels(TChessboard& position, TMove* moves, int count);
} // namespace search_hooks

} // namespace zorvane
