// The search with endgame tables: a position whose men have a table is
// answered from it, and the keys stay those of the search without tables.
#include "core/fen.h"
#include "engine/solver.h"
#include "global_register/table_generator.h"
#include "global_register/table_set.h"
#include "global_register/table_types.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace zorvane {
namespace {

// Tables made on the calling thread alone: the solves under test are the
// threads to watch (a thread checker cannot see into the parallel loops).
const TGenerationSettings ONE_THREAD{nullptr, 1, {}};

// The tables of king and rook, and of king and queen, with what they need.
TTableSet& tables() {
    static TTableSet* set = [] {
        auto* made = new TTableSet("");
        for (const std::string& type : TypesInMakingOrder({"R", "Q"}))
            made->Add(GenerateTable(type, made->Prober(), ONE_THREAD).table);
        return made;
    }();
    return *set;
}

struct Solved {
    std::vector<std::string> keys;
    SolveResult result;
};

Solved solve(const char* fen, int moves, const TTableSet* withTables) {
    TChessProblem problem;
    EXPECT_TRUE(ReadFen(fen, problem.startPosition)) << fen;
    SetStipulation(problem, moves);
    SolveRequest request;
    request.options.allSolutions = true;
    request.options.tables = withTables;
    Solved solved;
    solved.result = Solver().Solve(problem, request);
    solved.keys = solved.result.texts;
    std::sort(solved.keys.begin(), solved.keys.end());
    return solved;
}

TEST(TableSearch, TheLongRookMateIsReadFromItsTable) {
    // King and rook against king, #16 with every key: each root move's
    // replies stand in the table, castling long among them.
    const Solved solved = solve("8/8/8/3k4/8/8/8/R3K3", 16, &tables());
    EXPECT_EQ(solved.keys,
              (std::vector<std::string>{"0-0-0", "Ke1-d1", "Ke1-d2", "Ke1-e2", "Ke1-f1", "Ke1-f2", "Ra1-a2",
                                        "Ra1-a3", "Ra1-a4", "Ra1-a5", "Ra1-a6", "Ra1-a7", "Ra1-a8", "Ra1-b1",
                                        "Ra1-c1", "Ra1-d1"}));
    // No White node below the root was searched.
    EXPECT_EQ(solved.result.nodes, 0u);
}

TEST(TableSearch, KeysAreTheSearchsOwn) {
    // Short stipulations that the search settles alone in a moment: the
    // tables change the work, never the keys.
    const char* const positions[] = {"8/8/8/8/8/4K3/2R5/k7", "8/8/8/3k4/8/8/8/R3K3", "8/8/2k5/8/8/8/8/Q3K3",
                                     "7k/8/6K1/8/8/8/8/1Q6"};
    for (const char* fen : positions)
        for (int moves = 1; moves <= 6; ++moves) {
            const Solved with = solve(fen, moves, &tables());
            const Solved without = solve(fen, moves, nullptr);
            EXPECT_EQ(with.keys, without.keys) << fen << " #" << moves;
            EXPECT_LE(with.result.nodes, without.result.nodes) << fen << " #" << moves;
        }
}

TEST(TableSearch, MenWithoutATableAreSearched) {
    // King, rook and pawn: no table here, so the search runs as without any.
    const Solved with = solve("8/8/8/3k4/8/8/P7/R3K3", 3, &tables());
    const Solved without = solve("8/8/8/3k4/8/8/P7/R3K3", 3, nullptr);
    EXPECT_EQ(with.keys, without.keys);
    EXPECT_EQ(with.result.nodes, without.result.nodes);
}

} // namespace
} // namespace zorvane
