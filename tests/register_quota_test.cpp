// A solve under a small memory quota for its register: the purges run, the
// keys stay exact, and the memory the process really holds stays within the
// quota and a stated slack.
#include "corpus_solving.h"
#include "engine/solver.h"
#include "platform/process_memory.h"
#include "registers/aggregated_register.h"
#include "registers/register_log.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <filesystem>
#include <fstream>
#include <string>

namespace zorvane {
namespace {

constexpr uint64_t QUOTA_BYTES = 16ull << 20;
// Beside the entries the quota counts: the bucket array of the register, the
// allocator's own keeping and the solve's thread context.
constexpr uint64_t SLACK_BYTES = 24ull << 20;
// AddressSanitizer keeps freed memory in quarantine, and both sanitizers add
// their shadow: the resident set then says nothing about what the register holds.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool RESIDENT_SET_MEANINGFUL = false;
#else
constexpr bool RESIDENT_SET_MEANINGFUL = true;
#endif
constexpr auto SAMPLE_INTERVAL = std::chrono::milliseconds(20);
constexpr const char* PURGE_LINE = "EmptySomeDataWhenRegisterFull started";

int linesWith(const std::filesystem::path& path, const std::string& text) {
    std::ifstream in(path);
    int count = 0;
    for (std::string line; std::getline(in, line);) count += line.find(text) != std::string::npos;
    return count;
}

// Solves corpus problem `id` under the quota with every key; returns the
// purges its register's log counts.
int solveUnderQuota(int id) {
    ProblemMap corpus = LoadCorpus();
    EXPECT_TRUE(corpus.count(id));
    if (!corpus.count(id)) return 0;
    TChessProblem& problem = *corpus[id];
    const std::filesystem::path logPath =
        std::filesystem::temp_directory_path() / ("zorvane_quota_" + std::to_string(id) + ".log");
    std::filesystem::remove(logPath);
    CRegisterLog log(logPath);
    problem.m_pRegister = std::make_shared<TProblemRegister>(RegisterBucketCount(problem.plies));
    problem.m_pRegister->SetLog(&log);

    SolveRequest request;
    request.options.allSolutions = true;
    request.options.registerMemoryLimit = QUOTA_BYTES;
    // The resident set is sampled while the solve runs: its peak is what the machine must have.
    const uint64_t before = platform::ResidentSetBytes();
    std::atomic<bool> done{false};
    uint64_t peak = before;
    std::thread sampler([&] {
        while (!done.load()) {
            peak = std::max(peak, platform::ResidentSetBytes());
            std::this_thread::sleep_for(SAMPLE_INTERVAL);
        }
    });
    Solver solver;
    const SolveResult result = solver.Solve(problem, request);
    done = true;
    sampler.join();
    peak = std::max(peak, platform::ResidentSetBytes());

    EXPECT_TRUE(SameMoveSet(result.moves, problem.expectedAnswers)) << "problem " << id;
    EXPECT_LE(problem.m_pRegister->BudgetedBytes(), QUOTA_BYTES);
    if (RESIDENT_SET_MEANINGFUL) {
        EXPECT_LT(peak - before, QUOTA_BYTES + SLACK_BYTES);
    }
    const int purges = linesWith(logPath, PURGE_LINE);
    std::printf("problem %d: resident set +%llu KiB at its peak, %d purges\n", id,
                static_cast<unsigned long long>((peak - before) >> 10), purges);
    problem.m_pRegister->SetLog(nullptr);
    std::filesystem::remove(logPath);
    return purges;
}

TEST(RegisterQuota, ASixMoverGivesItsKeyUnderSixteenMegabytes) {
    if (!CorpusPresent()) GTEST_SKIP() << "corpus not found at " << CORPUS << " (../shared is absent)";
    solveUnderQuota(117);
}
TEST(RegisterQuota, AnEightMoverFillsTheQuotaAndGivesItsKeyAfterThePurges) {
    if (!CorpusPresent()) GTEST_SKIP() << "corpus not found at " << CORPUS << " (../shared is absent)";
    EXPECT_GT(solveUnderQuota(125), 0) << "the quota was never reached: no purge";
}

} // namespace
} // namespace zorvane
