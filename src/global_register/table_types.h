#pragma once
// Which tables there are, and which a table needs before it can be made.
#include <string>
#include <string_view>
#include <vector>

namespace zorvane {

// The letters in the order of a type text: "rQ" gives "Qr".
std::string CanonicalPosType(std::string letters);

// Whether White has a man beside his king: a type without one has no mate
// and no table.
bool TypeHasWhiteMan(std::string_view type);

// The types one capture or one promotion away, either side's, that have a
// table, in no particular order and each once.
std::vector<std::string> SuccessorTypes(std::string_view type);

// `types` and every table they need, lesser ones first: by men, then by
// pawns (a promotion keeps the men and takes a pawn), then by text.
std::vector<std::string> TypesInMakingOrder(const std::vector<std::string>& types);

// Every regular type of `men` men in all, kings included, in which White has a
// man beside his king, fewer pawns first.
std::vector<std::string> AllTypesWithWhiteMen(int men);

} // namespace zorvane
