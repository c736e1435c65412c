#pragma once
// Checking a table against the rule it was made by: every cell must equal
// what its successors one full move ahead say, the table's own cells and the
// lesser tables' together. How the table was made plays no part.
#include "expected_mate.h"
#include "table_file.h"

#include <atomic>
#include <cstdint>
#include <vector>

namespace zorvane {

struct TTableFault {
    uint64_t nIndex = 0;
    int nExpected = 0;
    int nFound = 0;
};

struct TCheckSettings {
    const std::atomic<int>* pStop = nullptr; // as for the generator: 3 stops, other values pause
    int nThreads = 0;                        // 0: every logical processor
    // A partially made table holds its levels up to this one (0: the table is
    // whole): a 0 where the rule expects a longer mate is then no fault.
    int nLevelLimit = 0;
    // Faults listed beyond this are only counted.
    size_t nMaxListed = 1000;
};

struct TCheckResult {
    std::vector<TTableFault> faults; // by index, at most nMaxListed
    uint64_t nFaults = 0;
    uint64_t nPositions = 0; // legal positions looked at
    bool bStopped = false;
    double dSeconds = 0;
};

// Checks every cell but the header: no position or an illegal one must hold
// 0, any other the rule's value. Positions of other types are asked of
// `lesserProbe`; throws "Register not found or loaded for position %s !" when
// one is not at hand.
TCheckResult CheckTable(const TRawTable& table, const TMateProbe& lesserProbe,
                        const TCheckSettings& settings);

// The longest mate in a table (the level a partial table has reached).
int LongestMate(const TRawTable& table);

} // namespace zorvane
