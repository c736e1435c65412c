// The preview of the passes a set of heuristics runs through, and the log of
// the relaxations of a solve.
#include "core/fen.h"
#include "engine/heuristic_bits.h"
#include "engine/relaxation_path.h"
#include "test_line.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <string>

using namespace zorvane;

namespace {

std::string preview(const char* fen, uint32_t set, const TSpecialHeuristicsParams& params = {}) {
    Root root(fen, 15);
    root.board.m_uHeuristics = set;
    return ShowRelaxationPath(root.board, params, SolveWideHeuristicParams{});
}

} // namespace

TEST(RelaxationPath, AnEmptySetSaysSoAndStops) {
    EXPECT_EQ(preview("k7/8/1K6/8/8/8/8/7R w - - 0 1", 0), "No heuristics selected.");
}

TEST(RelaxationPath, TheSweepingRookGoesBeforeTheZugzwang) {
    EXPECT_EQ(preview("k7/8/1K6/8/8/8/8/7R w - - 0 1", SH_SWEEPINGWHITEROOK | SH_ZUGZWANG),
              "Pass 1: SH_SWEEPINGWHITEROOK, SH_ZUGZWANG\n\nPass 1b: SH_ZUGZWANG");
}

TEST(RelaxationPath, TheStrictEdgeWidensStepByStep) {
    TSpecialHeuristicsParams params;
    params.m_bKingMoveStrict = 1;
    EXPECT_EQ(preview("k7/8/1K6/8/8/8/8/7R w - - 0 1", SH_KEEPKINGONTHEEDGE | SH_3MOVESTOMATE, params),
              "Pass 1: SH_DONTLETKINGMOVE, SH_3MOVESTOMATE\n\n"
              "Pass 1b: SH_KEEPKINGONTHEEDGE, SH_3MOVESTOMATE\n\n"
              // A White rook against a bare king: no band bet follows the edge.
              "Pass 1c: SH_3MOVESTOMATE");
}

TEST(RelaxationPath, ThePreviewLeavesTheGivenRecordAsItIs) {
    Root root("k7/8/1K6/8/8/8/8/7R w - - 0 1", 15);
    root.board.m_uHeuristics = SH_SWEEPINGWHITEROOK | SH_ZUGZWANG;
    TSpecialHeuristicsParams params;
    params.m_nPassIndex = 3;
    ShowRelaxationPath(root.board, params, SolveWideHeuristicParams{});
    EXPECT_EQ(root.board.m_uHeuristics, SH_SWEEPINGWHITEROOK | SH_ZUGZWANG);
    EXPECT_EQ(params.m_nPassIndex, 3);
}

TEST(RelaxationPath, TheLogHasOneLineBeforeAndOneAfter) {
    const std::filesystem::path file = std::filesystem::temp_directory_path() / "zorvane_relaxation_test.log";
    std::filesystem::remove(file);
    LogRelaxation(file, 2, true, "SH_DONTLETKINGMOVE, SH_3MOVESTOMATE");
    LogRelaxation(file, 2, false, "SH_KEEPKINGONTHEEDGE, SH_3MOVESTOMATE");
    std::ifstream in(file);
    std::string first, second, third;
    std::getline(in, first);
    std::getline(in, second);
    EXPECT_FALSE(std::getline(in, third));
    const std::regex stamp("^[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2} ");
    EXPECT_TRUE(std::regex_search(first, stamp)) << first;
    EXPECT_EQ(first.substr(20), "BEFORE th=2 SH_DONTLETKINGMOVE, SH_3MOVESTOMATE");
    EXPECT_EQ(second.substr(20), "AFTER  th=2 SH_KEEPKINGONTHEEDGE, SH_3MOVESTOMATE");
    std::filesystem::remove(file);
}
