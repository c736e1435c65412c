#pragma once
// The solution tree as problemists read it, one move a line:
//
//   1.Qa1-g7! (2.Qg7-b7#)
//      1...Kb8-c8 2.Qg7-c7#
//      1...Ra8-a1, Rh8-h1 2.Qg7-b7#
//   1.Qa1-a2? but 1...Rh8-h1!
//
// Keys end in "!", tries in "?" with their refutations; White's threat
// stands in brackets behind a key or continuation. A Black move of move
// number k is indented by 3k blanks and followed by White's answer on the
// same line; a defence with several answers takes one line for each, marked
// " (dual)", and a mate before the last move is marked " (short mate)".
// Black moves that let the threat through share one line. Set play follows
// the tries under its own heading. UTF-8, with the figure letters of the
// language (K Q R B N; K H W G S; Кр Ф Т С К).
#include "engine/solution_tree.h"

#include <string>

namespace zorvane {

// A move in long notation with the language's letters, "+" for check and "#" for mate.
std::string TreeMoveText(const TreeMove& move, int languageId);

std::string SolutionTreeText(const SolutionTree& tree, int languageId);

} // namespace zorvane
