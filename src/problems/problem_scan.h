#pragma once
// A light scan of a problem file: the header line "N #m", and the "FEN:" and
// "Answer:" lines of each block. Enough to solve and check direct mates from a
// collection; the full reader of the file format stands apart from it.
#include <string>
#include <vector>

namespace zorvane {

struct ScannedProblem {
    int number = 0;
    int moves = 0;                       // m of "#m"; 0 for another stipulation
    std::string fen;
    std::vector<std::string> answers;    // the keys of the "Answer:" line, in its order
};

// Throws std::runtime_error when the file cannot be opened.
std::vector<ScannedProblem> ScanProblemFile(const std::string& path);

} // namespace zorvane
