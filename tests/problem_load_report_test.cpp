// A load that stops at an error: what it tells of the blocks read and of the
// blocks of the file that it did not give, and the count of blocks by bodies.
#include "core/chess_exception.h"
#include "problems/problem_file.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

namespace zorvane {
namespace {

namespace fs = std::filesystem;

const char* const GOOD_FEN = "4k3/8/8/8/8/8/8/4K3";

std::string block(int id, const std::string& fen) {
    return std::to_string(id) + " #2\n{\n\tDescription: problem " + std::to_string(id) + "\n\tFEN: " + fen +
           "\n}\n\n";
}

// Five problems; the third one's FEN has a letter too many.
std::string fiveWithBadThird() {
    std::string text = "UTF-8\n\n";
    for (int id = 1; id <= 5; ++id) text += block(id, id == 3 ? std::string(GOOD_FEN) + "X" : GOOD_FEN);
    return text;
}

// Reads `text` and gives the report; `error` takes the message that came out.
ProblemLoadReport reportOf(const std::string& text, ProblemMap& problems, std::string& error) {
    std::set<std::wstring> tags;
    ProblemLoadReport report;
    try {
        ReadProblemText(text, problems, ProblemFileSettings{}, tags, &report);
    } catch (const ChessException& e) {
        error = e.what();
    }
    return report;
}

TEST(ProblemLoadReport, AWholeLoadReadsEveryBlock) {
    std::string text = "UTF-8\n\n";
    for (int id = 1; id <= 4; ++id) text += block(id, GOOD_FEN);
    ProblemMap problems;
    std::string error;
    const ProblemLoadReport report = reportOf(text, problems, error);
    EXPECT_EQ(error, "");
    EXPECT_TRUE(report.whole);
    EXPECT_EQ(report.problemsRead, 4);
    EXPECT_EQ(report.problemsInFile, 4);
    EXPECT_EQ(report.problemsNotRead, 0);
    EXPECT_EQ(report.error, "");
    EXPECT_EQ(problems.size(), 4u);
}

TEST(ProblemLoadReport, AnErrorInTheThirdOfFiveLeavesThreeUnread) {
    ProblemMap problems;
    std::string error;
    const ProblemLoadReport report = reportOf(fiveWithBadThird(), problems, error);
    // The error and the problems read before it are as without a report.
    EXPECT_EQ(error, "Error parsing problem 3: Improper FEN code");
    EXPECT_EQ(problems.size(), 2u);
    EXPECT_FALSE(report.whole);
    EXPECT_EQ(report.problemsRead, 2);
    EXPECT_EQ(report.problemsInFile, 5);
    EXPECT_EQ(report.problemsNotRead, 3);
    EXPECT_EQ(report.error, "Error parsing problem 3: Improper FEN code");
}

TEST(ProblemLoadReport, ALastBlockWithoutBodyStillCountsAsUnread) {
    ProblemMap problems;
    std::string error;
    const ProblemLoadReport report =
        reportOf(block(1, GOOD_FEN) + block(2, GOOD_FEN) + "3 #2\n", problems, error);
    EXPECT_EQ(error, "Error parsing problem 3: Unexpected end of file.");
    EXPECT_EQ(report.problemsRead, 2);
    EXPECT_EQ(report.problemsInFile, 2);
    EXPECT_EQ(report.problemsNotRead, 1);
}

TEST(ProblemLoadReport, AnErrorInTheDefaultClausesLeavesEveryBlockUnread) {
    ProblemMap problems;
    std::string error;
    const ProblemLoadReport report =
        reportOf("//!default #2\n" + block(1, GOOD_FEN) + block(2, GOOD_FEN), problems, error);
    EXPECT_EQ(error, "Incorrect 'default' clause.");
    EXPECT_EQ(report.problemsRead, 0);
    EXPECT_EQ(report.problemsNotRead, 2);
}

TEST(ProblemLoadReport, AFileOfNoBlockLacksNone) {
    ProblemMap problems;
    std::string error;
    const ProblemLoadReport report = reportOf("UTF-8", problems, error);
    EXPECT_EQ(error, "Unexpected end of file.");
    EXPECT_FALSE(report.whole);
    EXPECT_EQ(report.problemsInFile, 0);
    EXPECT_EQ(report.problemsNotRead, 0);
}

TEST(ProblemLoadReport, AFileThatCannotBeOpenedReadsNothing) {
    ProblemMap problems;
    std::set<std::wstring> tags;
    ProblemLoadReport report;
    report.problemsRead = 7; // a report used before starts afresh
    const fs::path missing = fs::temp_directory_path() / "zorvane_no_such_dir" / "missing.cp";
    EXPECT_THROW(LoadProblemFile(missing, problems, false, ProblemFileSettings{}, tags, &report),
                 ChessException);
    EXPECT_FALSE(report.whole);
    EXPECT_EQ(report.problemsRead, 0);
    EXPECT_EQ(report.problemsNotRead, 0);
    EXPECT_EQ(report.error, "Error opening file: " + missing.string());
}

// ---- The count of blocks.

TEST(CountProblemBlocks, OneForEachBody) {
    EXPECT_EQ(CountProblemBlocks(""), 0);
    EXPECT_EQ(CountProblemBlocks("UTF-8\n"), 0);
    EXPECT_EQ(CountProblemBlocks(block(1, GOOD_FEN)), 1);
    EXPECT_EQ(CountProblemBlocks(fiveWithBadThird()), 5);
}

TEST(CountProblemBlocks, BracesOfCommentsVariantsAndDescriptionsOpenNoBody) {
    const std::string text = "UTF-8\n"
                             "/* 9 #2 { FEN: 8/8/8/8/8/8/8/8 } */\n"
                             "// { a line comment }\n"
                             "1 #2\n"
                             "//!VARIANTS\n"
                             "//!{Main variant} Ke1-e2\n"
                             "//!ENDVARIANTS\n"
                             "{\n"
                             "\tDescription: braces { and } in the title { too\n"
                             "\tFEN: 4k3/8/8/8/8/8/8/4K3\n"
                             "}\n"
                             "2 #2 { d : { still the description\n"
                             "\tFEN: 4k3/8/8/8/8/8/8/4K3 // { after the field\n"
                             "}\n";
    EXPECT_EQ(CountProblemBlocks(text), 2);
    ProblemMap problems;
    std::string error;
    EXPECT_EQ(reportOf(text, problems, error).problemsInFile, 2);
    EXPECT_EQ(error, "");
    EXPECT_EQ(problems.size(), 2u);
}

TEST(CountProblemBlocks, ABodyLeftOpenDoesNotSwallowTheNext) {
    EXPECT_EQ(
        CountProblemBlocks("1 #2 {\n\tFEN: 4k3/8/8/8/8/8/8/4K3\n2 #2 {\n\tFEN: 4k3/8/8/8/8/8/8/4K3\n}\n"), 2);
    EXPECT_EQ(CountProblemBlocks("1 #2 {\n\tFEN: 4k3/8/8/8/8/8/8/4K3\n"), 1);
    EXPECT_EQ(CountProblemBlocks("1 #2 /* never closed {\n}\n"), 0);
}

TEST(CountProblemBlocks, OnlyTheFirstWordOfABodyCanBeADescription) {
    // "D" after the FEN is no description: the "}" on its line closes the body.
    EXPECT_EQ(CountProblemBlocks("1 #2 {\n\tFEN: 4k3/8/8/8/8/8/8/4K3 D: }\n2 #2 {\n}\n"), 2);
}

// ---- The shared corpus, broken in its sixth problem.

TEST(ProblemLoadReport, CorpusBrokenInItsSixthProblem) {
    const fs::path corpus = fs::path(ZORVANE_SHARED_DIR "/corpus/peer_examples.cp");
    if (!fs::exists(corpus)) GTEST_SKIP() << "corpus not found at " << corpus << " (../shared is absent)";
    std::ifstream in(corpus, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    std::string text = bytes.str();
    const size_t sixth = text.find("\n6 #");
    ASSERT_NE(sixth, std::string::npos);
    const size_t fen = text.find("FEN: ", sixth);
    ASSERT_NE(fen, std::string::npos);
    text.insert(text.find_first_of("\r\n", fen), "X");
    ProblemMap problems;
    std::string error;
    const ProblemLoadReport report = reportOf(text, problems, error);
    EXPECT_EQ(error, "Error parsing problem 6: Improper FEN code");
    EXPECT_EQ(report.problemsRead, 5);
    EXPECT_EQ(report.problemsInFile, 125);
    EXPECT_EQ(report.problemsNotRead, 120);
    EXPECT_EQ(CountProblemBlocks(bytes.str()), 125);
}

} // namespace
} // namespace zorvane
