#pragma once
// The check of a text file's FEN codes against the open collection: every
// code found in the text, in any format around it, is looked up by its
// placement among the problems' start positions.
#include "problems/chess_problem.h"

#include <string>
#include <vector>

namespace zorvane {

struct FenCheckResult {
    int codes = 0;                     // FEN codes the text holds
    std::vector<std::string> notFound; // those of them that no problem has, as written
};

FenCheckResult CheckFenCodes(const std::string& text, const ProblemMap& problems);

} // namespace zorvane
