// A table's file after the process that made it was killed: what the file
// holds is the table up to the last level written, never a torn file.
#include "global_register/table_check.h"
#include "global_register/table_file.h"
#include "global_register/table_generator.h"
#include "global_register/table_set.h"
#include "global_register/table_types.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace zorvane {
namespace {

constexpr int LEVELS_WRITTEN = 4;

TEST(TableCrash, AFileLeftByAKilledRunHoldsItsLastLevelWhole) {
    // The lesser table of Rr, made here; Rr itself in a child process that
    // writes each level's table and is killed (SIGKILL, no clean-up of any
    // kind) while it works on the next.
    TTableSet lesser("");
    for (const std::string& type : TypesInMakingOrder({"R"}))
        lesser.Add(GenerateTable(type, lesser.Prober(), {nullptr, 1, {}}).table);
    const std::filesystem::path dir =
        std::filesystem::temp_directory_path() / ("zorvane-crash-" + std::to_string(::getpid()));
    std::filesystem::remove_all(dir);
    const std::filesystem::path path = TableFilePath(dir, "Rr");
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        TGenerationSettings settings;
        settings.nThreads = 1;
        settings.onLevel = [&](const TLevelReport& report, const TRawTable& partial) {
            // The next level is made in memory, and the process dies before it is written.
            if (report.nLevel > LEVELS_WRITTEN) ::raise(SIGKILL);
            WriteRawTable(path, partial);
        };
        GenerateTable("Rr", lesser.Prober(), settings);
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the child was to be killed";
    EXPECT_EQ(WTERMSIG(status), SIGKILL);
    // The file is whole, holds exactly the levels written, and each of them right.
    const TRawTable table = ReadRawTable(path, "Rr");
    EXPECT_EQ(LongestMate(table), LEVELS_WRITTEN);
    TCheckSettings partial;
    partial.nLevelLimit = LEVELS_WRITTEN;
    EXPECT_EQ(CheckTable(table, lesser.Prober(), partial).nFaults, 0u);
    // No temporary file of the write is left beside it.
    size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(path.parent_path())) {
        (void)entry;
        ++files;
    }
    EXPECT_EQ(files, 1u);
    std::filesystem::remove_all(dir);
}

} // namespace
} // namespace zorvane
