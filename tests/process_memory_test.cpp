// The resident set size that the quota test measures against.
#include "platform/process_memory.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

namespace zorvane {
namespace {

#if defined(__linux__)

TEST(ProcessMemory, TheResidentSetIsReadAndGrowsWithMemoryTouched) {
    const uint64_t before = platform::ResidentSetBytes();
    EXPECT_GT(before, 0u);
    // Pages count only once they are touched.
    constexpr size_t kBytes = size_t{64} << 20;
    auto block = std::make_unique<char[]>(kBytes);
    std::memset(block.get(), 1, kBytes);
    const uint64_t after = platform::ResidentSetBytes();
    EXPECT_GE(after, before + kBytes / 2);
    // Keep the block alive, and its pages, until the second reading.
    EXPECT_EQ(block[kBytes - 1], 1);
}

TEST(ProcessMemory, TheSizeIsAWholeNumberOfPages) {
    EXPECT_EQ(platform::ResidentSetBytes() % 4096, 0u);
}

#else

TEST(ProcessMemory, WhereTheSystemCannotTellTheSizeIsZero) {
    EXPECT_EQ(platform::ResidentSetBytes(), 0u);
}

#endif

} // namespace
} // namespace zorvane
