// The safe save: links, the temporary files of dead and live saves, the
// reasons of failures, and zorvane-cli format killed at any moment of its run.
#include "core/chess_exception.h"
#include "problems/problem_file.h"
#include "problems/safe_write.h"

#include "files_on_disk.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace zorvane {
namespace {

namespace fs = std::filesystem;

std::string messageOf(const fs::path& target, const std::string& bytes) {
    try {
        WriteFileSafely(target, bytes);
    } catch (const ChessException& e) {
        return e.what();
    }
    return "(no error)";
}

// The id of a process that has just ended.
pid_t deadProcessId() {
    const pid_t child = fork();
    if (child == 0) _exit(0);
    EXPECT_GT(child, 0);
    int status = 0;
    waitpid(child, &status, 0);
    return child;
}

// A process that sleeps until the test ends it.
class SleepingProcess {
  public:
    SleepingProcess() : pid_(fork()) {
        if (pid_ == 0)
            for (;;) pause();
    }
    ~SleepingProcess() {
        // Never kill(-1): a failed fork must not end every process of the user.
        if (pid_ <= 0) return;
        kill(pid_, SIGKILL);
        int status = 0;
        waitpid(pid_, &status, 0);
    }
    int pid() const { return static_cast<int>(pid_); }

  private:
    pid_t pid_;
};

class SafeWriteOnDisk : public ::testing::Test {
  protected:
    TempFolder folder_{"zorvane_safe_write_"};
    const fs::path dir_ = folder_.path();
    std::set<std::string> entries() const { return EntriesOf(dir_); }
    // The name of a temporary file of this machine for dir_/problems.cp.
    std::string temporaryName(int pid, unsigned counter, const std::string& file = "problems.cp") const {
        return SafeWriteTemporaryPath(dir_ / file, SafeWriteHostName(), pid, counter).filename().string();
    }
};

// ---- The name of a temporary file.

TEST(SafeWriteName, HiddenBesideTheFileWithMachineProcessAndCounter) {
    EXPECT_EQ(SafeWriteTemporaryPath("/data/problems.cp", "box", 4711, 0),
              fs::path("/data/.problems.cp.zorvane-tmp.box.4711.0"));
    EXPECT_EQ(SafeWriteTemporaryPath("problems.cp", "box", 12, 345),
              fs::path("./.problems.cp.zorvane-tmp.box.12.345"));
}

TEST(SafeWriteName, HostNameKeepsOnlyLettersDigitsAndHyphens) {
    const std::string host = SafeWriteHostName();
    ASSERT_FALSE(host.empty());
    EXPECT_LE(host.size(), 64u);
    EXPECT_EQ(host.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_"),
              std::string::npos);
}

// ---- Links.

TEST_F(SafeWriteOnDisk, WritesTheFileALinkPointsToAndKeepsTheLink) {
    fs::create_directories(dir_ / "real");
    fs::create_directories(dir_ / "links");
    const fs::path real = dir_ / "real" / "problems.cp";
    WriteBytes(real, "old");
    fs::permissions(real, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    fs::create_symlink("../real/problems.cp", dir_ / "links" / "link.cp");
    // A link to the link: both are followed.
    fs::create_symlink("links/link.cp", dir_ / "chain.cp");

    WriteFileSafely(dir_ / "chain.cp", "new");
    EXPECT_EQ(ReadBytes(real), "new");
    EXPECT_TRUE(fs::is_symlink(dir_ / "chain.cp"));
    EXPECT_EQ(fs::read_symlink(dir_ / "chain.cp"), fs::path("links/link.cp"));
    EXPECT_TRUE(fs::is_symlink(dir_ / "links" / "link.cp"));
    EXPECT_EQ(fs::read_symlink(dir_ / "links" / "link.cp"), fs::path("../real/problems.cp"));
    EXPECT_EQ(fs::status(real).permissions(),
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    // The temporary file went beside the real file and is gone.
    EXPECT_EQ(EntriesOf(dir_ / "real"), std::set<std::string>{"problems.cp"});
    EXPECT_EQ(EntriesOf(dir_ / "links"), std::set<std::string>{"link.cp"});
    EXPECT_EQ(entries(), (std::set<std::string>{"chain.cp", "links", "real"}));
}

TEST_F(SafeWriteOnDisk, ALinkToAMissingFileCreatesThatFile) {
    fs::create_symlink("made.cp", dir_ / "link.cp");
    WriteFileSafely(dir_ / "link.cp", "text");
    EXPECT_TRUE(fs::is_symlink(dir_ / "link.cp"));
    EXPECT_EQ(ReadBytes(dir_ / "made.cp"), "text");
    EXPECT_EQ(entries(), (std::set<std::string>{"link.cp", "made.cp"}));
}

TEST_F(SafeWriteOnDisk, ALinkLoopNamesTheReason) {
    fs::create_symlink("b.cp", dir_ / "a.cp");
    fs::create_symlink("a.cp", dir_ / "b.cp");
    EXPECT_EQ(messageOf(dir_ / "a.cp", "text"),
              "Error opening file: " + (dir_ / "a.cp").string() + " (Too many levels of symbolic links)");
    EXPECT_EQ(entries(), (std::set<std::string>{"a.cp", "b.cp"}));
}

// ---- Temporary files left behind.

TEST_F(SafeWriteOnDisk, RemovesTheTemporaryFileOfADeadSave) {
    WriteBytes(dir_ / "problems.cp", "old");
    const std::string stale = temporaryName(deadProcessId(), 3);
    WriteBytes(dir_ / stale, "half a colle");
    ASSERT_EQ(entries(), (std::set<std::string>{"problems.cp", stale}));
    WriteFileSafely(dir_ / "problems.cp", "new");
    EXPECT_EQ(ReadBytes(dir_ / "problems.cp"), "new");
    EXPECT_EQ(entries(), std::set<std::string>{"problems.cp"});
}

TEST_F(SafeWriteOnDisk, KeepsTheTemporaryFilesOfLiveSaves) {
    WriteBytes(dir_ / "problems.cp", "old");
    SleepingProcess sleeper;
    ASSERT_GT(sleeper.pid(), 0);
    // This process, with a counter that none of its saves reaches.
    const std::string own = temporaryName(static_cast<int>(getpid()), 999999);
    const std::string other = temporaryName(sleeper.pid(), 0);
    WriteBytes(dir_ / own, "being written");
    WriteBytes(dir_ / other, "being written too");
    WriteFileSafely(dir_ / "problems.cp", "new");
    EXPECT_EQ(ReadBytes(dir_ / "problems.cp"), "new");
    EXPECT_EQ(entries(), (std::set<std::string>{"problems.cp", own, other}));
    EXPECT_EQ(ReadBytes(dir_ / own), "being written");
    EXPECT_EQ(ReadBytes(dir_ / other), "being written too");
}

TEST_F(SafeWriteOnDisk, KeepsEveryFileThatIsNoTemporaryFileOfItsOwn) {
    WriteBytes(dir_ / "problems.cp", "old");
    const int dead = deadProcessId();
    const std::string host = SafeWriteHostName();
    const std::string pid = std::to_string(dead);
    const std::set<std::string> kept = {
        temporaryName(dead, 0, "other.cp"),                     // another file's
        ".problems.cp.zorvane-tmp." + host + "x." + pid + ".0", // another machine's
        ".problems.cp.zorvane-tmp." + host + "." + pid + ".0x", // no number at the end
        ".problems.cp.zorvane-tmp." + host + "." + pid + ".",   // no counter
        ".problems.cp.zorvane-tmp." + host + "." + pid,         // no counter at all
        ".problems.cp.zorvane-tmp." + host + ".x" + pid + ".0", // no process
        "problems.cp.zorvane-tmp." + host + "." + pid + ".0",   // not hidden
        ".problems.cp.tmp." + host + "." + pid + ".0",          // not ours
    };
    for (const std::string& name : kept) WriteBytes(dir_ / name, "someone's");
    // Named as a dead save's, but a folder and a link.
    const std::string folder = temporaryName(dead, 1), link = temporaryName(dead, 2);
    fs::create_directory(dir_ / folder);
    fs::create_symlink("problems.cp", dir_ / link);

    WriteFileSafely(dir_ / "problems.cp", "new");
    std::set<std::string> expected = kept;
    expected.insert({"problems.cp", folder, link});
    EXPECT_EQ(entries(), expected);
    EXPECT_EQ(ReadBytes(dir_ / "problems.cp"), "new");
}

// ---- Failures name their reason.

TEST_F(SafeWriteOnDisk, AnUnwritableFolderNamesTheReason) {
    const fs::path target = dir_ / "problems.cp";
    WriteBytes(target, "old");
    if (geteuid() == 0) GTEST_SKIP() << "root writes whatever the permissions say";
    fs::permissions(dir_, fs::perms::owner_read | fs::perms::owner_exec);
    const std::string message = messageOf(target, "new");
    fs::permissions(dir_, fs::perms::owner_all);
    EXPECT_EQ(message, "Error opening file: " + target.string() + " (Permission denied)");
    EXPECT_EQ(ReadBytes(target), "old");
    EXPECT_EQ(entries(), std::set<std::string>{"problems.cp"});
}

TEST_F(SafeWriteOnDisk, AFolderThatIsAFileNamesTheReason) {
    WriteBytes(dir_ / "plain", "a file");
    const fs::path target = dir_ / "plain" / "problems.cp";
    EXPECT_EQ(messageOf(target, "new"), "Error opening file: " + target.string() + " (Not a directory)");
    EXPECT_EQ(ReadBytes(dir_ / "plain"), "a file");
    EXPECT_EQ(entries(), std::set<std::string>{"plain"});
}

TEST_F(SafeWriteOnDisk, AMissingFolderNamesTheReason) {
    const fs::path target = dir_ / "missing" / "problems.cp";
    EXPECT_EQ(messageOf(target, "new"),
              "Error opening file: " + target.string() + " (No such file or directory)");
    EXPECT_TRUE(entries().empty());
}

// ---- zorvane-cli format in place.

// Starts `zorvane-cli format FILE`, its output thrown away.
pid_t startFormat(const fs::path& file) {
    const std::string program = ZORVANE_CLI, path = file.string();
    const pid_t child = fork();
    if (child == 0) {
        const int null = open("/dev/null", O_WRONLY);
        if (null >= 0) {
            dup2(null, STDOUT_FILENO);
            dup2(null, STDERR_FILENO);
        }
        execl(program.c_str(), program.c_str(), "format", path.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    return child;
}

// The exit code of a run to its end; -1 when it ended otherwise.
int formatToTheEnd(const fs::path& file) {
    const pid_t child = startFormat(file);
    int status = 0;
    if (child <= 0 || waitpid(child, &status, 0) != child) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// A collection that no problem of keeps its text on a format: "D:", the
// lists of men and "Solution:" all come back in other words.
std::string unformattedCollection(int problems) {
    std::string text = "UTF-8\n";
    for (int id = 1; id <= problems; ++id)
        text += std::to_string(id) + " #2\n{\n\tD: problem " + std::to_string(id) +
                "\n\tWhite: Ke1, Ra1\n\tBlack: Ke8\n\tSolution: Ra1-a8\n}\n";
    return text;
}

TEST_F(SafeWriteOnDisk, FormatInPlaceThroughALinkKeepsTheLink) {
    WriteBytes(dir_ / "real.cp", unformattedCollection(2));
    fs::create_symlink("real.cp", dir_ / "link.cp");
    ASSERT_EQ(formatToTheEnd(dir_ / "link.cp"), 0);
    EXPECT_TRUE(fs::is_symlink(dir_ / "link.cp"));
    EXPECT_EQ(ReadBytes(dir_ / "real.cp"),
              "UTF-8\n\n\n1 #2\n{\n\tDescription: problem 1\n\tFEN: 4k3/8/8/8/8/8/8/R3K3\n"
              "\tAnswer:  Ra1-a8\n}\n\n2 #2\n{\n\tDescription: problem 2\n"
              "\tFEN: 4k3/8/8/8/8/8/8/R3K3\n\tAnswer:  Ra1-a8\n}\n");
    EXPECT_EQ(entries(), (std::set<std::string>{"link.cp", "real.cp"}));
}

// Enough problems that a run takes some tens of milliseconds and its write
// a few, so that kills spread over the run fall before, during and after it.
constexpr int KILLED_COLLECTION_PROBLEMS = 16000;
constexpr int KILLS = 30;

TEST_F(SafeWriteOnDisk, FormatKilledAtAnyMomentLeavesTheOldOrTheNewText) {
    const fs::path file = dir_ / "collection.cp";
    const std::string old = unformattedCollection(KILLED_COLLECTION_PROBLEMS);
    WriteBytes(file, old);
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(formatToTheEnd(file), 0);
    const auto wholeRun = std::chrono::steady_clock::now() - start;
    const std::string formatted = ReadBytes(file);
    ProblemMap problems;
    std::set<std::wstring> tags;
    ReadProblemText(old, problems, ProblemFileSettings{}, tags);
    ASSERT_EQ(formatted, WriteProblemFileText(problems, true));
    ASSERT_NE(formatted, old);

    const std::string temporaryPrefix = ".collection.cp.zorvane-tmp.";
    const auto temporaryShows = [&] {
        for (const std::string& name : entries())
            if (name.rfind(temporaryPrefix, 0) == 0) return true;
        return false;
    };
    // Any trace of a write: a file beside ours, or ours replaced, cut or gone.
    struct stat oldFile {};
    const auto writeShows = [&] {
        struct stat now {};
        return entries().size() != 1 || stat(file.c_str(), &now) != 0 || now.st_ino != oldFile.st_ino ||
               now.st_size != oldFile.st_size;
    };
    int keptOld = 0, gotNew = 0, leftTemporary = 0;
    for (int round = 0; round < KILLS; ++round) {
        WriteBytes(file, old);
        ASSERT_EQ(stat(file.c_str(), &oldFile), 0);
        const pid_t child = startFormat(file);
        ASSERT_GT(child, 0);
        bool ended = false;
        if (round % 2 == 0) {
            // Spread evenly from the start to half a run past the end.
            std::this_thread::sleep_for(wholeRun * 3 * round / (2 * (KILLS - 2)));
        } else {
            // Once the write shows in the folder, a little later each time.
            const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(10);
            int status = 0;
            while (!writeShows() && std::chrono::steady_clock::now() < giveUp)
                if (waitpid(child, &status, WNOHANG) == child) {
                    ended = true;
                    break;
                }
            std::this_thread::sleep_for(std::chrono::microseconds(250 * (round / 2 % 6)));
        }
        if (!ended) {
            kill(child, SIGKILL);
            int status = 0;
            waitpid(child, &status, 0);
        }
        const std::string text = ReadBytes(file);
        EXPECT_TRUE(text == old || text == formatted)
            << "kill " << round << " left " << text.size() << " bytes";
        keptOld += text == old;
        gotNew += text == formatted;
        leftTemporary += temporaryShows();

        // The next whole run removes what the killed one left.
        ASSERT_EQ(formatToTheEnd(file), 0);
        EXPECT_EQ(ReadBytes(file), formatted);
        EXPECT_EQ(entries(), std::set<std::string>{"collection.cp"}) << "after kill " << round;
    }
    std::cout << "whole run " << std::chrono::duration_cast<std::chrono::milliseconds>(wholeRun).count()
              << " ms; " << KILLS << " kills: " << keptOld << " old text, " << gotNew << " new text, "
              << leftTemporary << " with a temporary file left\n";
    // The first kill comes before the program has even started.
    EXPECT_GT(keptOld, 0);
}

} // namespace
} // namespace zorvane
