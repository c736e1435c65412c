// Lists of long direct mates: the lines of the public suites, and every way a
// line can be wrong.
#include "core/chess_exception.h"
#include "core/fen.h"
#include "problems/epd_mates.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace zorvane;

namespace {

std::string errorOf(std::string_view text) {
    try {
        ReadEpdMates(text);
    } catch (const ChessException& e) {
        return e.what();
    }
    return "(read)";
}

} // namespace

TEST(EpdMates, ALineGivesThePositionTheLengthAndTheSource) {
    const auto mates = ReadEpdMates("K7/8/5k2/8/8/8/1R6/8 w - - bm #13; c0 \"KRvK line 552\";\n");
    ASSERT_EQ(mates.size(), 1u);
    EXPECT_EQ(mates[0].line, 1);
    EXPECT_EQ(mates[0].moves, 13);
    EXPECT_EQ(mates[0].source, "KRvK line 552");
    EXPECT_EQ(mates[0].fen, "K7/8/5k2/8/8/8/1R6/8 w - -");
    EXPECT_EQ(WriteFen(mates[0].position, true), "K7/8/5k2/8/8/8/1R6/8");
    EXPECT_TRUE(mates[0].position.whiteToMove());
    EXPECT_EQ(mates[0].position.m_shPliesLeft, 25);
}

TEST(EpdMates, BlankLinesAndCommentsAreSkippedAndLinesKeepTheirNumbers) {
    const auto mates = ReadEpdMates("# long mates\n\n8/8/8/8/1K2k3/8/8/6R1 w - - bm #13;\r\n"
                                    "   \n8/8/8/3k4/8/5R2/8/5K2 w - - bm #14;");
    ASSERT_EQ(mates.size(), 2u);
    EXPECT_EQ(mates[0].line, 3);
    EXPECT_EQ(mates[1].line, 5);
    EXPECT_EQ(mates[1].moves, 14);
    EXPECT_EQ(mates[1].source, "");
}

TEST(EpdMates, EveryFaultNamesItsLine) {
    EXPECT_EQ(errorOf("\n8/8/8/8/1K2k3/8/8/6R1 w - - dm 13;"), "Line 2 of the mate list: no \"bm #n\" field");
    EXPECT_EQ(errorOf("8/8/8/8/1K2k3/8/8/6R1 w - - bm #0;"),
              "Line 1 of the mate list: the mate length is not a number from 1 to 255");
    EXPECT_EQ(errorOf("8/8/8/8/1K2k3/8/8/6R1 w - - bm #256;"),
              "Line 1 of the mate list: the mate length is not a number from 1 to 255");
    EXPECT_EQ(errorOf("8/8/8/8/1K2k3/8/8/6R1 w - - bm #x;"),
              "Line 1 of the mate list: the mate length is not a number from 1 to 255");
    EXPECT_EQ(errorOf("8/8/8/8/1K2k3/8/8/6R1 w - - bm #13"),
              "Line 1 of the mate list: \"bm #n\" is not closed by ';'");
    EXPECT_EQ(errorOf("8/8/8/8/1K2k3/8/8/6R9 w - - bm #13;"),
              "Line 1 of the mate list: the position is no valid FEN: 8/8/8/8/1K2k3/8/8/6R9 w - -");
    EXPECT_EQ(errorOf("8/8/8/8/1K2k3/8/8/6R1 b - - bm #13;"),
              "Line 1 of the mate list: White must be to move");
    EXPECT_EQ(errorOf("8/8/8/8/1K2k3/8/8/6R1 bm #13;"), "Line 1 of the mate list: White must be to move");
}

TEST(EpdMates, AMissingFileIsNamed) {
    EXPECT_THROW(
        {
            try {
                LoadEpdMates("/nonexistent/long_mates.epd");
            } catch (const ChessException& e) {
                EXPECT_STREQ(e.what(), "Error opening file: /nonexistent/long_mates.epd");
                throw;
            }
        },
        ChessException);
}

TEST(EpdMates, TheSharedListReadsWhole) {
    const std::string path = std::string(ZORVANE_SHARED_DIR) + "/corpus/long_mates.epd";
    if (!std::filesystem::exists(path))
        GTEST_SKIP() << "long mates not found at " << path << " (../shared is absent)";
    const auto mates = LoadEpdMates(path);
    ASSERT_EQ(mates.size(), 100u);
    for (const EpdMate& mate : mates) {
        EXPECT_GE(mate.moves, 9) << mate.line;
        EXPECT_LE(mate.moves, 40) << mate.line;
        EXPECT_FALSE(mate.source.empty()) << mate.line;
    }
}
