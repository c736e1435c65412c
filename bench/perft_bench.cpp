// Perft throughput on one thread: every leaf is made by the move makers, with
// no bulk counting at the last ply. Reports leaf nodes per second.
#include "core/fen.h"
#include "core/perft.h"

#include <benchmark/benchmark.h>

namespace {

void perftFrom(benchmark::State& state, const char* fen, int depth) {
    zorvane::TChessboard board = zorvane::EmptyChessboard();
    board.m_shPliesLeft = board.m_shPliesTotal = 201;
    if (!zorvane::ReadFen(fen, board)) {
        state.SkipWithError("bad FEN");
        return;
    }
    uint64_t leaves = 0;
    for (auto _ : state) {
        leaves = zorvane::Perft(board, depth);
        benchmark::DoNotOptimize(leaves);
    }
    state.counters["leaves"] = static_cast<double>(leaves);
    state.counters["leaves/s"] =
        benchmark::Counter(static_cast<double>(leaves), benchmark::Counter::kIsIterationInvariantRate);
}

void BM_PerftInitial5(benchmark::State& state) {
    perftFrom(state, "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", 5);
}
void BM_PerftCastlings4(benchmark::State& state) {
    perftFrom(state, "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -", 4);
}
void BM_PerftEndgame5(benchmark::State& state) {
    perftFrom(state, "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - -", 5);
}

BENCHMARK(BM_PerftInitial5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PerftCastlings4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PerftEndgame5)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
