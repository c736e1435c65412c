#pragma once
// Making a table: every position of a type, White to move, with its mate length.
//
// The table grows level by level: first every mate in 1, then every mate in
// 2, and so on, each level complete before the next begins, so that a table
// stopped between levels is right up to the last level it holds. Positions
// after a capture or a promotion belong to lesser tables, which the caller
// answers for through the probe.
#include "expected_mate.h"
#include "table_file.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace zorvane {

// The stop word of a run: 0 runs, STOP_RUN stops, any other value pauses.
constexpr int STOP_RUN = 3;

struct TLevelReport {
    int nLevel = 0;
    uint64_t nNewCells = 0; // positions found to mate in nLevel moves
    double dSeconds = 0;
};

struct TGenerationSettings {
    const std::atomic<int>* pStop = nullptr;
    // Threads of the parallel loops; 0 for every logical processor.
    int nThreads = 0;
    // After each complete level: its report and the table as it stands, every
    // cell beyond the level 0.
    std::function<void(const TLevelReport&, const TRawTable&)> onLevel;
};

struct TGenerationResult {
    TRawTable table;
    int nLevels = 0; // the last complete level
    bool bStopped = false;
    double dPrepareSeconds = 0; // the first pass over all positions
    double dSeconds = 0;        // the whole run
    std::vector<TLevelReport> levels;
};

// Makes the table of a regular type (no mappers, one-byte cells). Positions
// of other types are asked of `lesserProbe`; one it cannot answer throws
// "Register not found or loaded for position %s !". Illegal positions (men on
// one square, kings side by side, Black in check) hold 0. Throws
// ChessException for a text that is no type, or for a mate too long for a
// one-byte cell.
TGenerationResult GenerateTable(std::string_view type, const TMateProbe& lesserProbe,
                                const TGenerationSettings& settings);

} // namespace zorvane
