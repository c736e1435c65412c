// Making endgame tables: known mate lengths, tables without mates, illegal
// positions, runs stopped and paused between levels, the check that finds a
// wrong cell, a missing lesser table, and a 4-man table held against the
// engine's own search.
#include "core/chess_exception.h"
#include "engine/mate_search.h"
#include "global_register/position_index.h"
#include "global_register/position_type.h"
#include "global_register/table_check.h"
#include "global_register/table_generator.h"
#include "global_register/table_set.h"
#include "global_register/table_types.h"
#include "test_squares.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <map>
#include <random>
#include <thread>

namespace zorvane {
namespace {

// The 3-man tables and the 4-man one, made once for all tests of the file.
constexpr const char* FOUR_MAN_TYPE = "Rr";

TTableSet& tables() {
    static TTableSet* set = [] {
        auto* made = new TTableSet("");
        for (const std::string& type : TypesInMakingOrder({"P", "B", FOUR_MAN_TYPE}))
            made->Add(GenerateTable(type, made->Prober(), {}).table);
        return made;
    }();
    return *set;
}

const TRawTable& table(const char* type) {
    const TRawTable* found = tables().Find(type);
    EXPECT_NE(found, nullptr) << type;
    return *found;
}

int probe(const TChessboard& board) {
    return tables().Probe(board);
}

int longest(const TRawTable& t) {
    return LongestMate(t);
}

TEST(TableTypes, LesserTablesComeFirst) {
    EXPECT_EQ(TypesInMakingOrder({"P"}), (std::vector<std::string>{"B", "N", "Q", "R", "P"}));
    EXPECT_EQ(TypesInMakingOrder({"Qr"}), (std::vector<std::string>{"Q", "Qr"}));
    const std::vector<std::string> pp = TypesInMakingOrder({"Pp"});
    EXPECT_EQ(pp.back(), "Pp");
    EXPECT_NE(std::find(pp.begin(), pp.end(), "Qq"), pp.end());
    EXPECT_LT(std::find(pp.begin(), pp.end(), "P") - pp.begin(),
              std::find(pp.begin(), pp.end(), "Pq") - pp.begin());
    EXPECT_EQ(AllTypesWithWhiteMen(3), (std::vector<std::string>{"B", "N", "Q", "R", "P"}));
    EXPECT_EQ(AllTypesWithWhiteMen(4).size(), 40u);
}

TEST(TableGenerator, LongestMatesOfTheThreeManTables) {
    EXPECT_EQ(longest(table("Q")), 10);
    EXPECT_EQ(longest(table("R")), 16);
    EXPECT_EQ(longest(table("P")), 28);
}

TEST(TableGenerator, TablesWithoutMateHoldOnlyTheirHeader) {
    for (const char* type : {"B", "N"}) {
        const TRawTable& t = table(type);
        EXPECT_EQ(t.aBytes[0], 0);
        EXPECT_EQ(std::count(t.aBytes.begin(), t.aBytes.end(), 0), static_cast<long>(t.nSize)) << type;
    }
    EXPECT_EQ(table("P").aBytes[0], TABLE_HEADER_PAWN_COMPACT);
}

TEST(TableGenerator, KnownPositions) {
    EXPECT_EQ(probe(boardWith({{"a6", WK}, {"a8", BK}, {"h7", WQ}})), 1);
    EXPECT_EQ(probe(boardWith({{"b6", WK}, {"a8", BK}, {"h1", WR}})), 1);
    // The promotion mates along the last row.
    EXPECT_EQ(probe(boardWith({{"g6", WK}, {"h8", BK}, {"a7", WP}})), 1);
    // Black in front of the rook's pawn holds the corner.
    EXPECT_EQ(probe(boardWith({{"e1", WK}, {"h8", BK}, {"h2", WP}})), 0);
    // A white bare king has no table and no mate.
    EXPECT_EQ(probe(boardWith({{"a1", WK}, {"h8", BK}})), 0);
    EXPECT_EQ(probe(boardWith({{"a1", WK}, {"h8", BK}, {"c3", BR}})), 0);
}

TEST(TableGenerator, IllegalPositionsHoldZero) {
    for (const char* type : {"Q", "R", "P", FOUR_MAN_TYPE}) {
        const TRawTable& t = table(type);
        const TTableLayout layout =
            MakeTableLayout(type, (t.nHeader & TABLE_HEADER_PAWN_COMPACT) != 0, false);
        uint64_t illegal = 0;
        for (uint64_t i = 1; i < t.nSize; ++i) {
            TChessboard board;
            if (PositionOfIndex(layout, i, board) && SetUpTablePosition(board, true)) continue;
            ++illegal;
            ASSERT_EQ(t.Cell(i), 0u) << type << " index " << i;
        }
        EXPECT_GT(illegal, t.nSize / 10) << type;
    }
    // Black in check with White to move, and kings side by side.
    EXPECT_EQ(probe(boardWith({{"a1", WK}, {"a8", BK}, {"a2", WQ}})), 0);
    EXPECT_EQ(probe(boardWith({{"d4", WK}, {"d5", BK}, {"h1", WR}})), 0);
}

TEST(TableCheck, MadeTablesPassTheCheck) {
    for (const char* type : {"Q", "R", "B", "N", "P", FOUR_MAN_TYPE}) {
        const TCheckResult result = CheckTable(table(type), tables().Prober(), {});
        EXPECT_EQ(result.nFaults, 0u) << type;
        EXPECT_FALSE(result.bStopped);
        EXPECT_GT(result.nPositions, 0u);
    }
}

TEST(TableCheck, WrongCellsAreFoundWithTheirValues) {
    TRawTable wrong = table("R");
    uint64_t mateInFive = 0, mateInOne = 0;
    for (uint64_t i = 1; i < wrong.nSize && (!mateInFive || !mateInOne); ++i) {
        if (wrong.aBytes[i] == 5 && !mateInFive) mateInFive = i;
        if (wrong.aBytes[i] == 1 && !mateInOne) mateInOne = i;
    }
    ASSERT_NE(mateInFive, 0u);
    ASSERT_NE(mateInOne, 0u);
    wrong.aBytes[mateInFive] = 4;
    wrong.aBytes[mateInOne] = 0;
    TCheckSettings settings;
    const TCheckResult result = CheckTable(wrong, tables().Prober(), settings);
    // A wrong cell also spoils the positions whose expected value reads it;
    // the two changed cells are among the faults with their own values.
    ASSERT_GE(result.nFaults, 2u);
    std::map<uint64_t, TTableFault> byIndex;
    for (const TTableFault& fault : result.faults) byIndex[fault.nIndex] = fault;
    ASSERT_TRUE(byIndex.count(mateInFive));
    EXPECT_EQ(byIndex[mateInFive].nExpected, 5);
    EXPECT_EQ(byIndex[mateInFive].nFound, 4);
    ASSERT_TRUE(byIndex.count(mateInOne));
    EXPECT_EQ(byIndex[mateInOne].nExpected, 1);
    EXPECT_EQ(byIndex[mateInOne].nFound, 0);
}

TEST(TableGenerator, StoppedRunKeepsTheLevelsItCompleted) {
    constexpr int STOP_AFTER = 5;
    std::atomic<int> stop{0};
    TGenerationSettings settings;
    settings.pStop = &stop;
    int partialLevels = 0;
    TRawTable written;
    settings.onLevel = [&](const TLevelReport& report, const TRawTable& partial) {
        partialLevels = report.nLevel;
        written = partial;
        if (report.nLevel == STOP_AFTER) stop = STOP_RUN;
    };
    const TGenerationResult result = GenerateTable("R", tables().Prober(), settings);
    EXPECT_TRUE(result.bStopped);
    EXPECT_EQ(result.nLevels, STOP_AFTER);
    EXPECT_EQ(partialLevels, STOP_AFTER);
    EXPECT_EQ(result.table.aBytes, written.aBytes);
    const TRawTable& full = table("R");
    for (uint64_t i = 1; i < full.nSize; ++i)
        ASSERT_EQ(result.table.aBytes[i], full.aBytes[i] <= STOP_AFTER ? full.aBytes[i] : 0) << i;
    // Valid up to its level; a whole-table check sees the missing levels.
    TCheckSettings partial;
    partial.nLevelLimit = LongestMate(result.table);
    EXPECT_EQ(partial.nLevelLimit, STOP_AFTER);
    EXPECT_EQ(CheckTable(result.table, tables().Prober(), partial).nFaults, 0u);
    EXPECT_GT(CheckTable(result.table, tables().Prober(), {}).nFaults, 0u);
}

TEST(TableGenerator, PausedRunGoesOnWhenResumed) {
    std::atomic<int> stop{0};
    TGenerationSettings settings;
    settings.pStop = &stop;
    std::thread resume;
    settings.onLevel = [&](const TLevelReport& report, const TRawTable&) {
        if (report.nLevel != 2) return;
        stop = 1;
        resume = std::thread([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            stop = 0;
        });
    };
    const auto start = std::chrono::steady_clock::now();
    const TGenerationResult result = GenerateTable("Q", tables().Prober(), settings);
    resume.join();
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(300));
    EXPECT_FALSE(result.bStopped);
    EXPECT_EQ(result.table.aBytes, table("Q").aBytes);
}

TEST(TableGenerator, MissingLesserTableIsNamed) {
    const TMateProbe none = [](const TChessboard&) { return PROBE_NOT_AVAILABLE; };
    try {
        GenerateTable("Qr", none, {});
        FAIL() << "no error";
    } catch (const ChessException& e) {
        const std::string text = e.what();
        EXPECT_EQ(text.rfind("Register not found or loaded for position ", 0), 0u) << text;
        EXPECT_EQ(text.substr(text.size() - 2), " !");
    }
}

TEST(TableGenerator, OneThreadMakesTheSameTable) {
    TGenerationSettings settings;
    settings.nThreads = 1;
    EXPECT_EQ(GenerateTable("P", tables().Prober(), settings).table.aBytes, table("P").aBytes);
}

// A position the engine may castle in is no table position.
bool castlingPossible(const TChessboard& board) {
    const uint8_t* s = board.m_aSquares;
    return (s[sq("e1")] == WK && (s[sq("a1")] == WR || s[sq("h1")] == WR)) ||
           (s[sq("e8")] == BK && (s[sq("a8")] == BR || s[sq("h8")] == BR));
}

TEST(TableGenerator, FourManTableAgreesWithTheSearch) {
    // Random legal positions of each short value, and some without mate: for
    // a value m the search finds a mate in m and none in m - 1; for 0 none
    // within NO_MATE_BOUND moves.
    const std::map<int, int> wanted = {{0, 100}, {1, 100}, {2, 100}, {3, 100}, {4, 20}};
    constexpr int LONGEST_SEARCHED = 4;
    constexpr int NO_MATE_BOUND = 3;
    const TRawTable& t = table(FOUR_MAN_TYPE);
    const TTableLayout layout = MakeTableLayout(FOUR_MAN_TYPE, false, false);
    std::mt19937_64 random(20261125);
    std::map<int, int> picked;
    MateProof proof;
    auto done = [&] {
        for (const auto& [value, count] : wanted)
            if (picked[value] < count) return false;
        return true;
    };
    for (int tries = 0; tries < 100000000 && !done(); ++tries) {
        const uint64_t index = random() % t.nSize;
        const int value = static_cast<int>(t.Cell(index));
        if (value > LONGEST_SEARCHED || picked[value] >= wanted.at(value)) continue;
        TChessboard board;
        if (!PositionOfIndex(layout, index, board) || !SetUpTablePosition(board, true) ||
            castlingPossible(board))
            continue;
        ++picked[value];
        if (value == 0) {
            EXPECT_TRUE(proof.FindFirstKey(board, NO_MATE_BOUND).keys.empty()) << index;
            continue;
        }
        EXPECT_FALSE(proof.FindFirstKey(board, value).keys.empty()) << index << " mate in " << value;
        if (value > 1) {
            EXPECT_TRUE(proof.FindFirstKey(board, value - 1).keys.empty()) << index;
        }
    }
    for (const auto& [value, count] : wanted) EXPECT_EQ(picked[value], count) << "mate in " << value;
}

} // namespace
} // namespace zorvane
