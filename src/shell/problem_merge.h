#pragma once
// Taking problems of another file into the open list, or out of it, by their
// positions (the 64 squares of the start). Plain C++ over the problem map.
#include "problems/chess_problem.h"

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace zorvane {

struct AppendResult {
    std::vector<int32_t> appended; // new numbers, ascending
    // One line per appended problem whose position is in the list with another stipulation.
    std::vector<std::wstring> differingStipulations;
};

// Appends the problems of `other` under new numbers behind the last one.
// A problem whose position and stipulation are both in the list already is left out.
AppendResult AppendProblems(ProblemMap& list, ProblemMap other);

struct RemoveResult {
    ProblemMap removed;       // by their numbers, to give back when the user rejects the change
    bool currentKept = false; // the current problem matched and stayed
};

// Takes out of the list every problem whose position is in `other`, except the current one.
RemoveResult RemoveProblems(ProblemMap& list, const ProblemMap& other, int32_t currentId);

// The tags of the problems in `other` that have the position of `problem`; the number added.
int AppendMatchingTags(TChessProblem& problem, const ProblemMap& other);

} // namespace zorvane
