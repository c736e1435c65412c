// The cost of a look-up in a loaded endgame table: the type of the position,
// its index and the cell, over random legal positions of the table.
#include "global_register/expected_mate.h"
#include "global_register/position_index.h"
#include "global_register/table_generator.h"
#include "global_register/table_set.h"
#include "global_register/table_types.h"

#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

namespace {

using namespace zorvane;

// Made once: the 3-man tables of queen and rook and the 4-man Rr.
const TTableSet& tables() {
    static const TTableSet* set = [] {
        auto* made = new TTableSet("");
        for (const std::string& type : TypesInMakingOrder({"Q", "Rr"}))
            made->Add(GenerateTable(type, made->Prober(), {}).table);
        return made;
    }();
    return *set;
}

// Legal White-to-move positions of the type, drawn at random from its indices.
std::vector<TChessboard> positionsOf(const char* type, size_t count) {
    const TTableLayout layout = MakeTableLayout(type, false, false);
    const uint64_t size = TableSize(layout);
    std::mt19937_64 random(12345);
    std::vector<TChessboard> positions;
    while (positions.size() < count) {
        TChessboard board = EmptyChessboard();
        if (PositionOfIndex(layout, random() % size, board) && SetUpTablePosition(board, true))
            positions.push_back(board);
    }
    return positions;
}

void probeType(benchmark::State& state, const char* type) {
    const TTableSet& set = tables();
    const std::vector<TChessboard> positions = positionsOf(type, 4096);
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(set.Probe(positions[i]));
        i = (i + 1) & (positions.size() - 1);
    }
}

void BM_ProbeQ(benchmark::State& state) {
    probeType(state, "Q");
}
void BM_ProbeRr(benchmark::State& state) {
    probeType(state, "Rr");
}

BENCHMARK(BM_ProbeQ);
BENCHMARK(BM_ProbeRr);

} // namespace

BENCHMARK_MAIN();
