#pragma once
// The road of a set of heuristics through its relaxations, as the user sees
// it: the preview of the passes a set would run (1, 1b, 1c...) and the log of
// the relaxations a solve made.
#include "core/chessboard.h"
#include "core/heuristic_params.h"

#include <filesystem>
#include <string>

namespace zorvane {

// The file of LogRelaxation in the data folder.
constexpr const char* RELAXATION_LOG_FILE = "TryRelaxSpecialHeuristics.log";

// "Pass 1: " and the set, then "\n\nPass 1b: " and each relaxed set in turn,
// a "*" behind the letter of a step granted by the time rule, and the note on
// such steps at the end; "No heuristics selected." for an empty set. Works on
// copies: the record given stays as it is.
std::string ShowRelaxationPath(const TChessboard& root, const TSpecialHeuristicsParams& params,
                               const SolveWideHeuristicParams& solveWide);

// Appends "<time> BEFORE th=<thread> <set>" (or "AFTER ") to the log file.
// Threads of one solve share the file; their lines do not interleave.
void LogRelaxation(const std::filesystem::path& file, int thread, bool before, const std::string& set);

} // namespace zorvane
