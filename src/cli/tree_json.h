#pragma once
// The solution tree as JSON, for scripts:
//   White move: {"move":"Qa1-g7","mark":"!","check":false,"mateIn":2,"short":false,
//                "threat":[White moves],"zugzwang":false,"defences":[Black moves]}
//   Black move: {"move":"Kb8-c8","check":false,"refutes":false,"allowsThreat":false,
//                "replies":[White moves]}
// A mate has no defences; "mark" is "!" for a key, "?" for a try, "+" for a
// check, "#" for a mate and "" otherwise. Moves are in long notation with
// English letters.
#include "engine/solution_tree.h"

#include <string>

namespace zorvane::cli {

// The keys and the tries, one object each.
std::string TreeJson(const SolutionTree& tree);
// The set play: Black moves.
std::string SetPlayJson(const SolutionTree& tree);

} // namespace zorvane::cli
