// The solution tree: keys with threats and variations, tries, set play, the
// text a problemist reads, and the stop.
#include "core/fen.h"
#include "engine/mate_search.h"
#include "engine/solution_tree_text.h"
#include "engine/solver.h"
#include "test_squares.h"
#include "tree_check.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

using namespace zorvane;

namespace {

// Sam Loyd's #2 of 1868 with the waiting key Ba4-c2, and of 1879 with the threat Rf2-f5.
constexpr const char* LOYD_WAITING = "7K/Q7/2pp4/3k4/B3R2N/2Pr4/8/8";
constexpr const char* LOYD_THREAT = "b1K1N3/1n6/5Q1b/1pk3P1/8/3P4/4R1r1/1R5B";
// Loyd's complete block of 1859: every Black move has its mate before the key.
constexpr const char* LOYD_BLOCK = "4br1n/8/4p2Q/3p1k2/4p1N1/1B4K1/8/8";
// Loyd's #3 of 1857 with castling in one line.
constexpr const char* LOYD_CASTLING = "8/8/8/8/8/6P1/6k1/4KR1R";
// King and rook against king, mate in five with five keys.
constexpr const char* ROOK_FIVE = "8/8/8/8/8/4K3/2R5/k7";

TChessboard boardOf(const char* fen) {
    TChessboard board = EmptyChessboard();
    EXPECT_TRUE(ReadFen(fen, board)) << fen;
    return board;
}

MateKeys solveWithTree(const char* fen, int moves, TreeOptions tree = {true}) {
    MateProof proof;
    proof.WithTree(tree);
    return proof.FindKeys(boardOf(fen), moves);
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    size_t start = 0;
    for (size_t end; (end = text.find('\n', start)) != std::string::npos; start = end + 1)
        lines.push_back(text.substr(start, end - start));
    return lines;
}

bool hasLine(const std::string& text, const std::string& line) {
    for (const std::string& each : linesOf(text))
        if (each == line) return true;
    return false;
}

} // namespace

TEST(SolutionTree, TheKeyWithItsThreatItsDefencesAndTheMovesThatLetTheThreatThrough) {
    const MateKeys keys = solveWithTree(LOYD_THREAT, 2);
    const std::string text = SolutionTreeText(keys.tree, LANGUAGE_ENGLISH);
    const std::vector<std::string> lines = linesOf(text);
    ASSERT_GE(lines.size(), 7u) << text;
    EXPECT_EQ(lines[0], "1.Re2-f2! (2.Rf2-f5#)");
    EXPECT_EQ(lines[1], "   1...Rg2:g5 2.Rf2-c2#");
    EXPECT_EQ(lines[2], "   1...Rg2:f2 2.Qf6:f2#");
    EXPECT_EQ(lines[3], "   1...Nb7-a5 2.Qf6-d6#");
    EXPECT_EQ(lines[4], "   1...Nb7-d6+ 2.Qf6:d6#");
    EXPECT_EQ(lines[5], "   1...Nb7-d8 2.Qf6-d6#");
    EXPECT_EQ(lines[6],
              "   1...Rg2-g3, Rg2-g4, Rg2-g1, Rg2-h2, b5-b4, Kc5-d5, Bh6-g7, Bh6-f8, Bh6:g5 2.Rf2-f5#");
    // The knight's check refutes the knight's try; the king's step lets the bishop go.
    EXPECT_TRUE(hasLine(text, "1.Ne8-c7? but 1...Nb7-d6+!")) << text;
    EXPECT_TRUE(hasLine(text, "1.Kc8-c7? but 1...Bh6-g7!")) << text;
    ASSERT_EQ(keys.tree.keys.size(), 1u);
    EXPECT_EQ(keys.tree.keys[0].threatMoves, 1);
    EXPECT_FALSE(keys.tree.keys[0].zugzwang);
    TreeChecker checker(boardOf(LOYD_THREAT), 2, "Loyd 1879");
    checker.check(keys.tree);
}

TEST(SolutionTree, AWaitingKeyIsZugzwangAndDualsTakeALineEach) {
    const MateKeys keys = solveWithTree(LOYD_WAITING, 2);
    const std::string text = SolutionTreeText(keys.tree, LANGUAGE_ENGLISH);
    EXPECT_EQ(linesOf(text).front(), "1.Ba4-c2! (zugzwang)");
    // The king takes the rook and the queen still mates; the rook's side step allows two mates.
    EXPECT_TRUE(hasLine(text, "   1...Kd5:e4 2.Qa7-d4#")) << text;
    EXPECT_TRUE(hasLine(text, "   1...Rd3-e3 2.c3-c4# (dual)")) << text;
    EXPECT_TRUE(hasLine(text, "   1...Rd3-e3 2.Qa7-d4# (dual)")) << text;
    EXPECT_TRUE(hasLine(text, "1.Qa7-d4+? but 1...Rd3:d4!")) << text;
    ASSERT_EQ(keys.tree.keys.size(), 1u);
    EXPECT_TRUE(keys.tree.keys[0].zugzwang);
    TreeChecker checker(boardOf(LOYD_WAITING), 2, "Loyd 1868");
    checker.check(keys.tree);
}

TEST(SolutionTree, ACompleteBlockHasSetPlayForEveryBlackMove) {
    const MateKeys keys = solveWithTree(LOYD_BLOCK, 2);
    EXPECT_EQ(keys.tree.setPlay.size(), 15u);
    const std::string text = SolutionTreeText(keys.tree, LANGUAGE_ENGLISH);
    EXPECT_TRUE(hasLine(text, "set play:")) << text;
    // Before the key the bishop mates from c2; after it from b1.
    EXPECT_TRUE(hasLine(text, "   1...e4-e3 2.Bb3-c2#")) << text;
    EXPECT_TRUE(hasLine(text, "   1...e4-e3 2.Ba2-b1#")) << text;
    TreeChecker checker(boardOf(LOYD_BLOCK), 2, "Loyd 1859");
    checker.check(keys.tree);
}

TEST(SolutionTree, AThreeMoverIsShownWholeWithTheThreatsOfTheSecondMove) {
    const MateKeys keys = solveWithTree(LOYD_CASTLING, 3);
    const std::string text = SolutionTreeText(keys.tree, LANGUAGE_ENGLISH);
    const std::vector<std::string> lines = linesOf(text);
    ASSERT_GE(lines.size(), 5u) << text;
    EXPECT_EQ(lines[0], "1.Rf1-f4! (zugzwang)");
    EXPECT_EQ(lines[1], "   1...Kg2:h1 2.Ke1-f2 (3.Rf4-h4#)");
    EXPECT_EQ(lines[2], "      2...Kh1-h2 3.Rf4-h4#");
    EXPECT_EQ(lines[3], "   1...Kg2:g3 2.0-0 (3.Rf1-f3#)");
    EXPECT_EQ(lines[4], "      2...Kg3-h3 3.Rf1-f3#");
    TreeChecker checker(boardOf(LOYD_CASTLING), 3, "Loyd 1857");
    checker.check(keys.tree);
}

TEST(SolutionTree, BelowItsDepthALongerProblemShowsOneLineToTheMate) {
    const MateKeys keys = solveWithTree(ROOK_FIVE, 5, {true, 1});
    ASSERT_FALSE(keys.tree.keys.empty());
    EXPECT_EQ(keys.tree.fullDepth, 1);
    // Under each key: every Black reply with one answer, and each that stops
    // the threat followed by a single line to the mate.
    int lines = 0;
    for (const WhitePlay& key : keys.tree.keys)
        for (const BlackDefence& defence : key.defences) {
            ASSERT_EQ(defence.replies.size(), 1u);
            if (defence.allowsThreat) continue;
            ++lines;
            const WhitePlay* white = &defence.replies[0];
            while (!white->move.mate) {
                ASSERT_EQ(white->defences.size(), 1u);
                ASSERT_EQ(white->defences[0].replies.size(), 1u);
                white = &white->defences[0].replies[0];
            }
        }
    EXPECT_EQ(lines, 2); // after the two zugzwang keys
    TreeChecker checker(boardOf(ROOK_FIVE), 5, "rook #5");
    checker.check(keys.tree);
    EXPECT_GT(checker.linesChecked(), 20);
}

TEST(SolutionTree, MoreRefutationsAllowedMakeMoreTries) {
    const MateKeys one = solveWithTree(LOYD_THREAT, 2, {true, 0, 1});
    const MateKeys two = solveWithTree(LOYD_THREAT, 2, {true, 0, 2});
    EXPECT_GT(two.tree.tries.size(), one.tree.tries.size());
    bool twoNamed = false;
    for (const WhitePlay& attempt : two.tree.tries) {
        EXPECT_LE(attempt.defences.size(), 2u);
        twoNamed = twoNamed || attempt.defences.size() == 2;
    }
    EXPECT_TRUE(twoNamed);
    TreeChecker checker(boardOf(LOYD_THREAT), 2, "Loyd 1879, two refutations");
    checker.check(two.tree);
}

TEST(SolutionTree, FigureLettersFollowTheLanguage) {
    TreeMove queen{mv("a1", "g7"), WQ, false, false, false};
    TreeMove knight{mv("e8", "c7"), WN, true, true, true};
    TreeMove king{mv("e1", "g1"), WK, false, true, false};
    TreeMove promotion{mv("a7", "a8", KIND_ROOK), WP, false, false, false};
    EXPECT_EQ(TreeMoveText(queen, LANGUAGE_ENGLISH), "Qa1-g7");
    EXPECT_EQ(TreeMoveText(queen, LANGUAGE_POLISH), "Ha1-g7");
    EXPECT_EQ(TreeMoveText(queen, LANGUAGE_UKRAINIAN), "Фa1-g7");
    EXPECT_EQ(TreeMoveText(knight, LANGUAGE_ENGLISH), "Ne8:c7#");
    EXPECT_EQ(TreeMoveText(knight, LANGUAGE_POLISH), "Se8:c7#");
    EXPECT_EQ(TreeMoveText(knight, LANGUAGE_UKRAINIAN), "Кe8:c7#");
    EXPECT_EQ(TreeMoveText(king, LANGUAGE_UKRAINIAN), "0-0+");
    EXPECT_EQ(TreeMoveText(promotion, LANGUAGE_POLISH), "a7-a8W");
    const MateKeys keys = solveWithTree(LOYD_THREAT, 2);
    const std::string polish = SolutionTreeText(keys.tree, LANGUAGE_POLISH);
    EXPECT_EQ(linesOf(polish).front(), "1.We2-f2! (2.Wf2-f5#)");
    EXPECT_TRUE(hasLine(polish, "1.Se8-c7? ale 1...Sb7-d6+!")) << polish;
    const std::string ukrainian = SolutionTreeText(solveWithTree(LOYD_BLOCK, 2).tree, LANGUAGE_UKRAINIAN);
    EXPECT_EQ(linesOf(ukrainian).front(), "1.Сb3-a2! (цугцванг)");
    EXPECT_TRUE(hasLine(ukrainian, "позірна гра:")) << ukrainian;
}

TEST(SolutionTree, NoTreeUnlessAskedAndTheKeysTimeLeavesItOut) {
    MateProof proof;
    const MateKeys keys = proof.FindKeys(boardOf(LOYD_THREAT), 2);
    EXPECT_EQ(keys.keys.size(), 1u);
    EXPECT_TRUE(keys.tree.keys.empty());
    EXPECT_EQ(keys.treeMilliseconds, 0);
}

TEST(SolutionTree, AStopWhileTheTreeGrowsKeepsTheKeysAndWhatWasBuilt) {
    // As a seven-mover the keys come in a tenth of the time of the whole tree.
    TChessProblem problem;
    problem.startPosition = boardOf(ROOK_FIVE);
    SetStipulation(problem, 7);
    SolveRequest request;
    request.options.allSolutions = true;
    request.options.heuristics = false;
    request.options.tree = {true, 7};
    Solver solver;
    solver.Start(problem, request);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!solver.Progress().buildingTree && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    ASSERT_TRUE(solver.Progress().buildingTree);
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    solver.Stop();
    const SolveResult result = solver.Wait();
    EXPECT_FALSE(result.stopped);
    EXPECT_FALSE(result.moves.empty());
    EXPECT_TRUE(result.tree.stopped);
    EXPECT_EQ(result.tree.keys.size(), result.moves.size()); // each proven key is kept
    EXPECT_TRUE(linesOf(SolutionTreeText(result.tree, LANGUAGE_ENGLISH)).back() ==
                "Analysis stopped by user");
}
