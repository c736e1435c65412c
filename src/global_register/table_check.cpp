#include "table_check.h"

#include "position_index.h"
#include "position_type.h"
#include "table_layout.h"
#include "table_symmetry.h"

#include <tbb/blocked_range.h>
#include <tbb/enumerable_thread_specific.h>
#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>

#include <algorithm>
#include <chrono>
#include <thread>

namespace zorvane {

namespace {

constexpr uint64_t GRAIN = 1024;
constexpr auto PAUSE_STEP = std::chrono::milliseconds(100);

struct Found {
    std::vector<TTableFault> faults;
    uint64_t count = 0;
    uint64_t positions = 0;
};

} // namespace

int LongestMate(const TRawTable& table) {
    uint32_t longest = 0;
    for (uint64_t i = 1; i < table.nSize; ++i) {
        const uint32_t cell = table.Cell(i);
        if (cell != CELL_NOT_GENERATED || table.nCellWidth != 1) longest = std::max(longest, cell);
    }
    return static_cast<int>(longest);
}

TCheckResult CheckTable(const TRawTable& table, const TMateProbe& lesserProbe,
                        const TCheckSettings& settings) {
    const auto start = std::chrono::steady_clock::now();
    TTableLayout layout = MakeTableLayout(table.sType, (table.nHeader & TABLE_HEADER_PAWN_COMPACT) != 0,
                                          (table.nHeader & TABLE_HEADER_MAPPERS) != 0);
    TCombinationMappers mappers;
    if (layout.bUsesMappers) AttachCombinationMappers(layout, mappers);
    const uint64_t key = PosTypeKey(table.sType);
    const TMateProbe probe = [&](const TChessboard& position) {
        if (PosTypeKeyOfPosition(position) != key) return lesserProbe(position);
        return static_cast<int>(table.Cell(IndexOfPosition(layout, position)));
    };

    std::atomic<bool> stopped{false};
    auto stopRequested = [&] {
        if (stopped) return true;
        if (settings.pStop == nullptr) return false;
        for (;;) {
            const int word = settings.pStop->load(std::memory_order_relaxed);
            if (word == 0) return false;
            if (word == 3) {
                stopped = true;
                return true;
            }
            std::this_thread::sleep_for(PAUSE_STEP);
        }
    };

    tbb::enumerable_thread_specific<Found> found;
    const int threads =
        settings.nThreads > 0 ? settings.nThreads : static_cast<int>(std::thread::hardware_concurrency());
    tbb::task_arena arena(std::max(threads, 1));
    arena.execute([&] {
        tbb::parallel_for(
            tbb::blocked_range<uint64_t>(1, table.nSize, GRAIN),
            [&](const tbb::blocked_range<uint64_t>& range) {
                if (stopRequested()) return;
                Found& mine = found.local();
                for (uint64_t i = range.begin(); i != range.end(); ++i) {
                    TChessboard position;
                    int expected = 0;
                    if (PositionOfIndex(layout, i, position) && SetUpTablePosition(position, true)) {
                        ++mine.positions;
                        expected = ExpectedMate(position, probe);
                    }
                    const int stored = static_cast<int>(table.Cell(i));
                    if (stored == expected) continue;
                    if (settings.nLevelLimit != 0 && stored == 0 && expected > settings.nLevelLimit) continue;
                    ++mine.count;
                    if (mine.faults.size() < settings.nMaxListed)
                        mine.faults.push_back(TTableFault{i, expected, stored});
                }
            });
    });

    TCheckResult result;
    for (Found& mine : found) {
        result.nFaults += mine.count;
        result.nPositions += mine.positions;
        result.faults.insert(result.faults.end(), mine.faults.begin(), mine.faults.end());
    }
    std::sort(result.faults.begin(), result.faults.end(),
              [](const TTableFault& a, const TTableFault& b) { return a.nIndex < b.nIndex; });
    if (result.faults.size() > settings.nMaxListed) result.faults.resize(settings.nMaxListed);
    result.bStopped = stopped;
    result.dSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return result;
}

} // namespace zorvane
