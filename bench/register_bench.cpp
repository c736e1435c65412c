// Throughput of the temporary register: stores of new and of known positions,
// look-ups that hit and that miss, and look-ups from two threads at once.
// Keys are positions of the two kings and six men on random squares, so the
// register hash spreads them as it spreads the positions of a search.
#include "core/piece.h"
#include "registers/temporary_register.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <vector>

namespace {

using zorvane::TChessboardRegisterItem;
using Register = zorvane::TTemporaryChessboardRegister<0>;

constexpr size_t kPositions = 1 << 16;

std::vector<TChessboardRegisterItem> makePositions(size_t count, uint32_t seed) {
    static constexpr uint8_t kMen[] = {zorvane::WQ, zorvane::WR, zorvane::WN, zorvane::WP,
                                       zorvane::BR, zorvane::BB, zorvane::BN, zorvane::BP};
    std::mt19937 random(seed);
    std::vector<TChessboardRegisterItem> positions(count);
    for (TChessboardRegisterItem& item : positions) {
        for (uint8_t& square : item.m_aSquares) square = 0;
        auto place = [&](uint8_t man) {
            for (;;) {
                const auto square = random() % 64;
                if (item.m_aSquares[square] == 0) {
                    item.m_aSquares[square] = man;
                    return;
                }
            }
        };
        place(zorvane::WK);
        place(zorvane::BK);
        for (int i = 0; i < 6; ++i) place(kMen[random() % 8]);
    }
    return positions;
}

const std::vector<TChessboardRegisterItem>& stored() {
    static const auto positions = makePositions(kPositions, 1);
    return positions;
}
const std::vector<TChessboardRegisterItem>& absent() {
    static const auto positions = makePositions(kPositions, 2);
    return positions;
}

std::unique_ptr<Register> filledRegister() {
    auto reg = std::make_unique<Register>(zorvane::REGISTER_LARGE_BUCKETS);
    for (size_t i = 0; i < kPositions; ++i)
        reg->Store(static_cast<uint16_t>(3 + 2 * (i % 8)), stored()[i], i % 3 == 0);
    return reg;
}

void BM_StoreNewPositions(benchmark::State& state) {
    Register reg(zorvane::REGISTER_LARGE_BUCKETS);
    const auto& positions = stored();
    for (auto _ : state) {
        for (size_t i = 0; i < kPositions; ++i) reg.Store(7, positions[i], i % 3 == 0);
        state.PauseTiming();
        reg.Clear(true);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kPositions));
}

void BM_StoreKnownPositions(benchmark::State& state) {
    auto reg = filledRegister();
    const auto& positions = stored();
    size_t i = 0;
    for (auto _ : state) {
        reg->Store(static_cast<uint16_t>(5 + 2 * (i % 4)), positions[i], (i & 1) != 0);
        i = (i + 1) % kPositions;
    }
    state.SetItemsProcessed(state.iterations());
}

void BM_LookupHit(benchmark::State& state) {
    auto reg = filledRegister();
    const auto& positions = stored();
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(reg->Lookup(9, positions[i]));
        i = (i + 1) % kPositions;
    }
    state.SetItemsProcessed(state.iterations());
}

void BM_LookupMiss(benchmark::State& state) {
    auto reg = filledRegister();
    const auto& positions = absent();
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(reg->Lookup(9, positions[i]));
        i = (i + 1) % kPositions;
    }
    state.SetItemsProcessed(state.iterations());
}

// Look-ups from two threads on one register: readers share the lock, but they
// still write its reader count, so the cache line moves between the cores.
Register* g_pShared = nullptr;
void BM_LookupHitShared(benchmark::State& state) {
    static std::unique_ptr<Register> shared;
    if (state.thread_index() == 0) {
        shared = filledRegister();
        g_pShared = shared.get();
    }
    const auto& positions = stored();
    size_t i = static_cast<size_t>(state.thread_index()) * (kPositions / 2);
    for (auto _ : state) {
        benchmark::DoNotOptimize(g_pShared->Lookup(9, positions[i]));
        i = (i + 1) % kPositions;
    }
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK(BM_StoreNewPositions)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StoreKnownPositions);
BENCHMARK(BM_LookupHit);
BENCHMARK(BM_LookupMiss);
BENCHMARK(BM_LookupHitShared)->Threads(1)->Threads(2);

} // namespace

BENCHMARK_MAIN();
