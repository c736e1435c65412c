// White's candidates in a forcing-moves run: each rule of the list on a
// position where it takes a move and on a near miss, the order of the list,
// what `complete` and `depthCut` say, the levels as a chain of ever larger
// lists, and the threat test the levels are built on.
#include "core/movegen.h"
#include "engine/ffm_candidates.h"
#include "test_line.h"
#include "test_squares.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace zorvane {

// Rule names in failure messages instead of bare numbers.
void PrintTo(FfmRule rule, std::ostream* os) {
    static const char* const names[] = {
        "none",        "Check",          "NearKing",          "Evasion", "Threat",
        "AtLoneQueen", "RookMove",       "AfterQueenCapture", "Box",     "ProposedKingStep",
        "QueenMove",   "SeventhRankPawn"};
    const auto index = static_cast<size_t>(rule);
    *os << (index < std::size(names) ? names[index] : "?");
}

} // namespace zorvane

using namespace zorvane;

namespace {

// Enough plies for every level's threat to fit without a cut.
constexpr int PLENTY_OF_PLIES = 15;

// One list as BuildFfmCandidates returns it.
struct Candidates {
    FfmList list;
    std::vector<TMove> moves;
    std::vector<FfmRule> rules;

    bool has(const TMove& move) const { return std::find(moves.begin(), moves.end(), move) != moves.end(); }
    // The rule that took `move`, nothing when it is not listed.
    std::optional<FfmRule> ruleOf(const TMove& move) const {
        const auto it = std::find(moves.begin(), moves.end(), move);
        if (it == moves.end()) return std::nullopt;
        return rules[static_cast<size_t>(it - moves.begin())];
    }
};

Candidates candidatesOf(TChessboard& position, uint8_t level, const TMove& proposed = {},
                        bool addCaptures = false) {
    TMove out[MAX_MOVES];
    FfmRule rules[MAX_MOVES];
    Candidates c;
    c.list = BuildFfmCandidates(position, level, addCaptures, proposed, out, rules);
    c.moves.assign(out, out + c.list.count);
    c.rules.assign(rules, rules + c.list.count);
    return c;
}

// The list of a position read from FEN, White to move with `plies` left.
Candidates candidatesOf(const char* fen, uint8_t level, const TMove& proposed = {}, bool addCaptures = false,
                        int plies = PLENTY_OF_PLIES) {
    const auto root = std::make_unique<Root>(fen, plies);
    return candidatesOf(root->board, level, proposed, addCaptures);
}

// White's legal moves, in the generator's order.
std::vector<TMove> legalMoves(const TChessboard& position) {
    TMove moves[MAX_MOVES];
    const int count = GenerateWhiteMovesOrEvasions(position, moves);
    std::vector<TMove> legal;
    for (int i = 0; i < count; ++i) {
        TChessboard child;
        CopyToChild(child, position);
        if (MakeWhiteMove(child, moves[i])) legal.push_back(moves[i]);
    }
    return legal;
}

// White's move from the root, made in the slot the search makes it in.
TChessboard& afterWhite(Root& root, const TMove& move) {
    TChessboard& child = root.ctx.m_aBoards[root.board.m_shPliesLeft];
    CopyToChild(child, root.board);
    TMove made = move;
    EXPECT_TRUE(MakeWhiteMove(child, made));
    return child;
}

// White's move and Black's reply from the root, each in its search slot, so
// that the node keeps its parents as FindMate leaves them.
TChessboard& afterWhiteAndBlack(Root& root, const TMove& white, const TMove& black) {
    TChessboard& child = afterWhite(root, white);
    TChessboard& grandchild = root.ctx.m_aBoards[child.m_shPliesLeft];
    CopyToChild(grandchild, child);
    TMove made = black;
    EXPECT_EQ(MakeBlackMove(grandchild, made, false), BLACK_MOVE_MADE);
    return grandchild;
}

// The rules' groups in the order the list shows them, each group once.
std::vector<FfmRule> groupsOf(const Candidates& c, size_t from) {
    std::vector<FfmRule> groups;
    for (size_t i = from; i < c.rules.size(); ++i)
        if (groups.empty() || groups.back() != c.rules[i]) groups.push_back(c.rules[i]);
    return groups;
}

// Within a rule the moves keep the generator's order.
void expectGeneratorOrderWithinRules(const Candidates& c, size_t from, const std::vector<TMove>& legal) {
    auto indexOf = [&](const TMove& m) { return std::find(legal.begin(), legal.end(), m) - legal.begin(); };
    for (size_t i = from + 1; i < c.moves.size(); ++i) {
        if (c.rules[i] != c.rules[i - 1]) continue;
        EXPECT_LT(indexOf(c.moves[i - 1]), indexOf(c.moves[i])) << i;
    }
}

} // namespace

// ---- Each rule: a move it takes, and a near miss

TEST(FfmRules, CheckTakesTheChecksOnly) {
    const Candidates c = candidatesOf("4k3/7p/8/8/4N3/8/8/4K3 w - - 0 1", FFM_LEVEL_CHECKS);
    EXPECT_EQ(c.ruleOf(mv("e4", "d6")), FfmRule::Check);
    EXPECT_EQ(c.ruleOf(mv("e4", "f6")), FfmRule::Check);
    // The same knight one square aside gives no check, and the king has room enough.
    EXPECT_FALSE(c.has(mv("e4", "c5")));
    EXPECT_EQ(c.list.count, 2);
}

TEST(FfmRules, NearKingTakesMovesThatTakeRoomFromAHemmedKing) {
    // The king on a8 has b8 only: g3 takes it, c6 takes it too, b7 stands beside him.
    const char* fen = "k2N4/8/1K6/8/8/8/8/4B3 w - - 0 1";
    const Candidates c = candidatesOf(fen, FFM_LEVEL_CHECKS);
    EXPECT_EQ(c.ruleOf(mv("e1", "g3")), FfmRule::NearKing);
    EXPECT_EQ(c.ruleOf(mv("d8", "c6")), FfmRule::NearKing);
    EXPECT_EQ(c.ruleOf(mv("d8", "b7")), FfmRule::NearKing);
    // Neither leaves him less room nor comes beside him.
    EXPECT_FALSE(c.has(mv("e1", "d2")));
    EXPECT_FALSE(c.has(mv("d8", "e6")));
    EXPECT_EQ(c.list.count, 3);
    // Two free squares are still too few: Qc5 takes f8 from the king on g8.
    EXPECT_EQ(candidatesOf("6k1/5ppp/8/8/8/8/2Q5/6K1 w - - 0 1", FFM_LEVEL_CHECKS).ruleOf(mv("c2", "c5")),
              FfmRule::NearKing);
    // Three are room enough: Kc6 takes b7 from the king on a8 and is not listed.
    EXPECT_FALSE(candidatesOf("k7/8/3K4/8/8/8/8/7R w - - 0 1", FFM_LEVEL_CHECKS).has(mv("d6", "c6")));
}

TEST(FfmRules, EvasionTakesEveryMoveOutOfCheck) {
    const Candidates c = candidatesOf("k3r3/8/8/8/7R/8/8/4K3 w - - 0 1", FFM_LEVEL_CHECKS);
    EXPECT_EQ(c.ruleOf(mv("h4", "e4")), FfmRule::Evasion);
    EXPECT_EQ(c.ruleOf(mv("e1", "d1")), FfmRule::Evasion);
    EXPECT_EQ(c.ruleOf(mv("e1", "f2")), FfmRule::Evasion);
    // Out of check the rook's move would be a rook move, not an evasion.
    const Candidates free = candidatesOf("k5r1/8/8/8/7R/8/8/4K3 w - - 0 1", FFM_LEVEL_CHECKS);
    EXPECT_EQ(free.ruleOf(mv("h4", "e4")), FfmRule::RookMove);
    EXPECT_FALSE(free.has(mv("e1", "d1")));
}

TEST(FfmRules, ThreatTakesAQuietMoveThatThreatensMateInOne) {
    // Qc4 keeps Qc8 mate in hand; Qg6 aims at the pawns, but no mate follows.
    const char* fen = "6k1/5ppp/8/8/8/8/2Q5/6K1 w - - 0 1";
    const Candidates c = candidatesOf(fen, FFM_LEVEL_MATE1);
    EXPECT_EQ(c.ruleOf(mv("c2", "c4")), FfmRule::Threat);
    EXPECT_FALSE(c.has(mv("c2", "g6")));
    // At the level of checks the threat is not asked for.
    EXPECT_FALSE(candidatesOf(fen, FFM_LEVEL_CHECKS).has(mv("c2", "c4")));
}

TEST(FfmRules, ThreatTakesACaptureBesideTheKingWhenCapturesAreAdded) {
    // Bb3:d5 threatens nothing, but takes the knight beside the king.
    const char* knight = "8/p7/8/3nk3/8/1B6/8/K7 w - - 0 1";
    const TMove capture = mv("b3", "d5");
    EXPECT_EQ(candidatesOf(knight, FFM_LEVEL_MATE2, {}, true).ruleOf(capture), FfmRule::Threat);
    // Not without the option, not below the level of mate in two, and not for a pawn.
    EXPECT_FALSE(candidatesOf(knight, FFM_LEVEL_MATE2, {}, false).has(capture));
    EXPECT_FALSE(candidatesOf(knight, FFM_LEVEL_MATE1_WIDE, {}, true).has(capture));
    EXPECT_FALSE(candidatesOf("8/p7/8/3pk3/8/1B6/8/K7 w - - 0 1", FFM_LEVEL_MATE2, {}, true).has(capture));
}

TEST(FfmRules, AtLoneQueenTakesHerCaptureAndTheAttacksOnHer) {
    const char* fen = "k7/7p/8/3q4/5N2/8/6N1/6K1 w - - 0 1";
    const Candidates c = candidatesOf(fen, FFM_LEVEL_CHECKS);
    EXPECT_EQ(c.ruleOf(mv("f4", "d5")), FfmRule::AtLoneQueen);
    EXPECT_EQ(c.ruleOf(mv("g2", "e3")), FfmRule::AtLoneQueen);
    EXPECT_FALSE(c.has(mv("f4", "e6")));
    EXPECT_EQ(c.list.count, 2);
    // Beside a black rook the queen is not alone.
    const Candidates withRook = candidatesOf("k6r/7p/8/3q4/5N2/8/6N1/6K1 w - - 0 1", FFM_LEVEL_CHECKS);
    EXPECT_FALSE(withRook.has(mv("g2", "e3")));
    EXPECT_FALSE(withRook.has(mv("f4", "d5")));
}

TEST(FfmRules, RookMoveTakesEveryMoveOfAWhiteRook) {
    const Candidates c = candidatesOf("4k3/8/8/8/8/8/8/R1B3K1 w - - 0 1", FFM_LEVEL_CHECKS);
    EXPECT_EQ(c.ruleOf(mv("a1", "a2")), FfmRule::RookMove);
    EXPECT_EQ(c.ruleOf(mv("a1", "b1")), FfmRule::RookMove);
    // The bishop's quiet move is no rook's.
    EXPECT_FALSE(c.has(mv("c1", "d2")));
}

TEST(FfmRules, AfterQueenCaptureTakesTheMovesOfTheManThatTookHer) {
    // Nc3:d5 takes the queen, Black plays h7-h6; the knight's quiet moves are listed.
    const char* fen = "4k3/7p/8/3q4/8/2N5/8/6K1 w - - 0 1";
    const auto root = std::make_unique<Root>(fen, PLENTY_OF_PLIES + 2);
    TChessboard& node = afterWhiteAndBlack(*root, mv("c3", "d5"), mv("h7", "h6"));
    const Candidates c = candidatesOf(node, FFM_LEVEL_CHECKS);
    EXPECT_EQ(c.ruleOf(mv("d5", "b4")), FfmRule::AfterQueenCapture);
    EXPECT_EQ(c.ruleOf(mv("d5", "e3")), FfmRule::AfterQueenCapture);
    EXPECT_EQ(c.ruleOf(mv("d5", "c7")), FfmRule::Check);
    EXPECT_FALSE(c.has(mv("g1", "g2")));
    // The same position without that history lists none of them.
    const Candidates fresh = candidatesOf("4k3/8/7p/3N4/8/8/8/6K1 w - - 0 1", FFM_LEVEL_CHECKS);
    EXPECT_FALSE(fresh.has(mv("d5", "b4")));
    EXPECT_EQ(fresh.ruleOf(mv("d5", "c7")), FfmRule::Check);
}

TEST(FfmRules, AfterQueenCaptureIsAboutTheQueenOnly) {
    // The knight took a rook two plies back: its moves are nothing special.
    const auto root = std::make_unique<Root>("4k3/7p/8/3r4/8/2N5/8/6K1 w - - 0 1", PLENTY_OF_PLIES + 2);
    TChessboard& node = afterWhiteAndBlack(*root, mv("c3", "d5"), mv("h7", "h6"));
    EXPECT_FALSE(candidatesOf(node, FFM_LEVEL_CHECKS).has(mv("d5", "b4")));
}

TEST(FfmRules, BoxTakesTheLastFreeSquaresFromAStrongerWhite) {
    // Qg6 takes g8, g7 and h7 at once; Qe6 takes g8 only, Qc6 nothing.
    const char* fen = "7k/p7/3Q4/8/8/8/8/2K5 w - - 0 1";
    const Candidates c = candidatesOf(fen, FFM_LEVEL_CHECKS);
    EXPECT_EQ(c.ruleOf(mv("d6", "g6")), FfmRule::Box);
    EXPECT_FALSE(c.has(mv("d6", "e6")));
    EXPECT_FALSE(c.has(mv("d6", "c6")));
    // Against two rooks the queen is not the stronger side.
    EXPECT_FALSE(candidatesOf("rr5k/p7/3Q4/8/8/8/8/2K5 w - - 0 1", FFM_LEVEL_CHECKS).has(mv("d6", "g6")));
}

TEST(FfmRules, BoxKeepsEveryMoveThatLeavesAWalledInKingWalledIn) {
    // The king in his corner has no square: a stronger White may wait, as a
    // mate of a walled-in king often needs a quiet move.
    const Candidates c = candidatesOf("6bk/6pp/8/8/8/8/8/Q1K5 w - - 0 1", FFM_LEVEL_CHECKS);
    EXPECT_EQ(c.ruleOf(mv("c1", "d2")), FfmRule::Box);
    EXPECT_TRUE(c.list.complete);
    // With material even, waiting is no forcing move.
    const Candidates even = candidatesOf("6bk/6pp/8/8/8/8/8/B1K5 w - - 0 1", FFM_LEVEL_CHECKS);
    EXPECT_FALSE(even.has(mv("c1", "d2")));
}

TEST(FfmRules, ProposedKingStepTakesTheProposedApproachToTwoSquares) {
    const char* fen = "4k3/7p/8/2K5/8/8/8/2B5 w - - 0 1";
    const Candidates c = candidatesOf(fen, FFM_LEVEL_CHECKS, mv("c5", "d6"));
    EXPECT_EQ(c.ruleOf(mv("c5", "d6")), FfmRule::ProposedKingStep);
    EXPECT_EQ(c.list.count, 1);
    // Unproposed, the same step is not listed; a proposed step away is not either.
    EXPECT_FALSE(candidatesOf(fen, FFM_LEVEL_CHECKS).has(mv("c5", "d6")));
    EXPECT_FALSE(candidatesOf(fen, FFM_LEVEL_CHECKS, mv("c5", "c4")).has(mv("c5", "c4")));
    // A king already two squares off is not approaching.
    EXPECT_FALSE(candidatesOf("4k3/7p/3K4/8/8/8/8/2B5 w - - 0 1", FFM_LEVEL_CHECKS, mv("d6", "c6"))
                     .has(mv("d6", "c6")));
}

TEST(FfmRules, QueenMoveTakesTheQuietMovesOfTwoQueens) {
    const Candidates c = candidatesOf("8/8/8/4k3/8/8/Q7/1Q5K w - - 0 1", FFM_LEVEL_CHECKS);
    EXPECT_EQ(c.ruleOf(mv("a2", "a3")), FfmRule::QueenMove);
    EXPECT_EQ(c.ruleOf(mv("b1", "c1")), FfmRule::QueenMove);
    EXPECT_FALSE(c.has(mv("h1", "g1")));
    // One queen alone has only her checks listed.
    EXPECT_FALSE(candidatesOf("8/8/8/4k3/8/8/Q7/7K w - - 0 1", FFM_LEVEL_CHECKS).has(mv("a2", "a3")));
}

TEST(FfmRules, SeventhRankPawnTakesEveryPromotion) {
    const Candidates c = candidatesOf("8/1P6/2P5/8/4k3/8/8/7K w - - 0 1", FFM_LEVEL_CHECKS);
    for (const uint8_t kind : {KIND_QUEEN, KIND_ROOK, KIND_BISHOP, KIND_KNIGHT})
        EXPECT_EQ(c.ruleOf(mv("b7", "b8", kind)), FfmRule::SeventhRankPawn) << int(kind);
    // A pawn on the sixth rank waits.
    EXPECT_FALSE(c.has(mv("c6", "c7")));
    EXPECT_EQ(c.list.count, 4);
}

// ---- Order

// Checks, rook moves and promotions in one list, with a proposed king step.
constexpr const char* MIXED = "4k3/7P/8/2K5/8/8/8/R7 w - - 0 1";

TEST(FfmOrder, RulesComeInTheirOrderEachInTheGeneratorsOrder) {
    const auto root = std::make_unique<Root>(MIXED, PLENTY_OF_PLIES);
    const Candidates c = candidatesOf(root->board, FFM_LEVEL_CHECKS);
    EXPECT_EQ(groupsOf(c, 0),
              (std::vector<FfmRule>{FfmRule::Check, FfmRule::RookMove, FfmRule::SeventhRankPawn}));
    expectGeneratorOrderWithinRules(c, 0, legalMoves(root->board));
    EXPECT_EQ(c.moves.front(), mv("a1", "a8"));
    EXPECT_EQ(c.moves.back(), mv("h7", "h8", KIND_KNIGHT));
}

TEST(FfmOrder, TheProposedMoveComesFirst) {
    const auto root = std::make_unique<Root>(MIXED, PLENTY_OF_PLIES);
    const Candidates step = candidatesOf(root->board, FFM_LEVEL_CHECKS, mv("c5", "d6"));
    ASSERT_GE(step.list.count, 1);
    EXPECT_EQ(step.moves[0], mv("c5", "d6"));
    EXPECT_EQ(step.rules[0], FfmRule::ProposedKingStep);
    EXPECT_EQ(groupsOf(step, 1),
              (std::vector<FfmRule>{FfmRule::Check, FfmRule::RookMove, FfmRule::SeventhRankPawn}));
    expectGeneratorOrderWithinRules(step, 1, legalMoves(root->board));
    // A proposed rook move is taken out of its group and put in front.
    const Candidates rook = candidatesOf(root->board, FFM_LEVEL_CHECKS, mv("a1", "a5"));
    EXPECT_EQ(rook.moves[0], mv("a1", "a5"));
    EXPECT_EQ(rook.rules[0], FfmRule::RookMove);
    EXPECT_EQ(std::count(rook.moves.begin(), rook.moves.end(), mv("a1", "a5")), 1);
    EXPECT_EQ(groupsOf(rook, 1),
              (std::vector<FfmRule>{FfmRule::Check, FfmRule::RookMove, FfmRule::SeventhRankPawn}));
    // A proposed move that no rule takes is not put in.
    const Candidates none = candidatesOf(root->board, FFM_LEVEL_CHECKS, mv("c5", "c4"));
    EXPECT_FALSE(none.has(mv("c5", "c4")));
    EXPECT_EQ(none.moves, candidatesOf(root->board, FFM_LEVEL_CHECKS).moves);
}

// ---- complete and depthCut

TEST(FfmList, CompleteInCheckWithEveryEvasionListed) {
    const auto root = std::make_unique<Root>("k3r3/8/8/8/7R/8/8/4K3 w - - 0 1", PLENTY_OF_PLIES);
    const Candidates c = candidatesOf(root->board, FFM_LEVEL_CHECKS);
    EXPECT_TRUE(c.list.complete);
    EXPECT_EQ(c.list.count, 5);
    EXPECT_EQ(c.moves.size(), legalMoves(root->board).size());
}

TEST(FfmList, CompleteWhenEveryLegalMoveQualifies) {
    // The rook on a2 holds the White king: only rook moves are legal.
    const auto held = std::make_unique<Root>("4k3/8/8/8/8/8/r7/6RK w - - 0 1", PLENTY_OF_PLIES);
    const Candidates c = candidatesOf(held->board, FFM_LEVEL_CHECKS);
    EXPECT_TRUE(c.list.complete);
    EXPECT_EQ(c.list.count, 13);
    EXPECT_EQ(c.moves.size(), legalMoves(held->board).size());
    // One row higher the king may step, and his steps are left out.
    const Candidates free = candidatesOf("4k3/8/8/8/8/r7/8/6RK w - - 0 1", FFM_LEVEL_CHECKS);
    EXPECT_FALSE(free.list.complete);
    EXPECT_EQ(free.list.count, 13);
}

TEST(FfmList, IncompleteWhenAMoveIsLeftOut) {
    EXPECT_FALSE(candidatesOf("4k3/7p/8/8/4N3/8/8/4K3 w - - 0 1", FFM_LEVEL_CHECKS).list.complete);
    // Nothing listed at all is incomplete too, not an empty success.
    const Candidates none = candidatesOf("k6r/7p/8/3q4/5N2/8/6N1/6K1 w - - 0 1", FFM_LEVEL_CHECKS);
    EXPECT_EQ(none.list.count, 0);
    EXPECT_FALSE(none.list.complete);
}

TEST(FfmList, DepthCutWhenThePliesLeftAreTooFewForTheLevelsThreat) {
    const char* fen = "k7/8/3K4/8/8/8/8/7R w - - 0 1";
    EXPECT_TRUE(candidatesOf(fen, FFM_LEVEL_MATE2, {}, false, 3).list.depthCut);
    EXPECT_FALSE(candidatesOf(fen, FFM_LEVEL_MATE2, {}, false, 5).list.depthCut);
    EXPECT_TRUE(candidatesOf(fen, FFM_LEVEL_MAX, {}, false, 9).list.depthCut);
    EXPECT_FALSE(candidatesOf(fen, FFM_LEVEL_MAX, {}, false, 11).list.depthCut);
    // Checks need no threat, so nothing is cut.
    EXPECT_FALSE(candidatesOf(fen, FFM_LEVEL_CHECKS, {}, false, 3).list.depthCut);
    // A wide level is cut where its mate by checks no longer fits.
    EXPECT_TRUE(candidatesOf(fen, FFM_LEVEL_MATE1_WIDE, {}, false, 3).list.depthCut);
    EXPECT_FALSE(candidatesOf(fen, FFM_LEVEL_MATE1_WIDE, {}, false, 5).list.depthCut);
    EXPECT_TRUE(candidatesOf(fen, FFM_LEVEL_MATE2_WIDE, {}, false, 5).list.depthCut);
    EXPECT_FALSE(candidatesOf(fen, FFM_LEVEL_MATE2_WIDE, {}, false, 7).list.depthCut);
    // The cut threat is the one that fits: Kc6 threatens mate in two, not in one.
    EXPECT_FALSE(candidatesOf(fen, FFM_LEVEL_MATE2, {}, false, 3).has(mv("d6", "c6")));
    EXPECT_TRUE(candidatesOf(fen, FFM_LEVEL_MATE2, {}, false, 5).has(mv("d6", "c6")));
}

// ---- Levels

TEST(FfmLevels, AHigherLevelListsEveryMoveOfALowerOne) {
    // Rook, two bishops, bishop and knight, rook and knight against a pawn,
    // a queen against the back rank and one in the open.
    const char* const positions[] = {
        "k7/8/3K4/8/8/8/8/7R w - - 0 1",      "2k5/8/1K6/3B4/8/8/8/4B3 w - - 0 1",
        "6k1/8/6K1/8/8/8/1N6/2B5 w - - 0 1",  "5k2/5p2/8/4N1K1/8/8/8/3R4 w - - 0 1",
        "6k1/5ppp/8/8/8/8/2Q5/6K1 w - - 0 1", "8/8/8/8/2k5/8/1Q6/4K3 w - - 0 1",
        "8/p7/8/3nk3/8/1B6/8/K7 w - - 0 1",
    };
    // Some higher level must add a move somewhere, or the subsets prove nothing.
    bool grown = false;
    for (const char* fen : positions) {
        for (const bool addCaptures : {false, true}) {
            std::vector<Candidates> lists;
            for (uint8_t level = FFM_LEVEL_CHECKS; level <= FFM_LEVEL_MAX; ++level)
                lists.push_back(candidatesOf(fen, level, {}, addCaptures));
            for (size_t lower = 0; lower < lists.size(); ++lower)
                for (size_t higher = lower + 1; higher < lists.size(); ++higher)
                    for (const TMove& m : lists[lower].moves)
                        EXPECT_TRUE(lists[higher].has(m))
                            << fen << " captures " << addCaptures << ": level " << lower + FFM_LEVEL_CHECKS
                            << " lists " << FormatLogMove(m) << " level " << higher + FFM_LEVEL_CHECKS
                            << " does not";
            grown = grown || lists.back().list.count > lists.front().list.count;
        }
    }
    EXPECT_TRUE(grown);
}

TEST(FfmList, TheSearchsListHoldsTheSameMovesWithoutTheRules) {
    // The search asks for no rules and skips the threat test of a move that a
    // later rule takes anyway: the moves must be the same.
    const char* const positions[] = {
        "k7/8/3K4/8/8/8/8/7R w - - 0 1",           "5k2/5p2/8/4N1K1/8/8/8/3R4 w - - 0 1",
        "6k1/5ppp/8/8/8/8/2Q5/6K1 w - - 0 1",      "1q4k1/5ppp/8/8/8/8/1R3PPP/1Q4K1 w - - 0 1",
        "6k1/P4ppp/8/8/8/8/5PPP/Q2Q2K1 w - - 0 1",
    };
    for (const char* fen : positions) {
        for (uint8_t level = FFM_LEVEL_CHECKS; level <= FFM_LEVEL_MAX; ++level) {
            const Candidates labelled = candidatesOf(fen, level);
            const auto root = std::make_unique<Root>(fen, PLENTY_OF_PLIES);
            TMove out[MAX_MOVES];
            const FfmList plain = BuildFfmCandidates(root->board, level, false, {}, out, nullptr);
            EXPECT_EQ(plain.count, labelled.list.count) << fen << " level " << int{level};
            EXPECT_EQ(plain.complete, labelled.list.complete) << fen << " level " << int{level};
            for (int i = 0; i < plain.count; ++i)
                EXPECT_TRUE(labelled.has(out[i]))
                    << fen << " level " << int{level} << ": " << FormatLogMove(out[i]);
        }
    }
}

TEST(FfmLevels, AThreatOfMateInTwoWaitsForItsLevel) {
    // Kc6 threatens Kb6 and Rh8 mate: two moves, and none of them a check.
    const char* fen = "k7/8/3K4/8/8/8/8/7R w - - 0 1";
    const TMove step = mv("d6", "c6");
    EXPECT_FALSE(candidatesOf(fen, FFM_LEVEL_MATE1).has(step));
    EXPECT_FALSE(candidatesOf(fen, FFM_LEVEL_MATE1_WIDE).has(step));
    EXPECT_EQ(candidatesOf(fen, FFM_LEVEL_MATE2).ruleOf(step), FfmRule::Threat);
}

// ---- ThreatensMate

TEST(ThreatensMate, AQuietMoveThatThreatensMateInOne) {
    const auto root = std::make_unique<Root>("6k1/5ppp/8/8/8/8/2Q5/6K1 w - - 0 1", PLENTY_OF_PLIES);
    EXPECT_TRUE(ThreatensMate(afterWhite(*root, mv("c2", "c4")), 1, false));
}

TEST(ThreatensMate, AQuietMoveWithoutThreat) {
    const auto root = std::make_unique<Root>("4k3/8/8/8/8/8/8/R5K1 w - - 0 1", PLENTY_OF_PLIES);
    TChessboard& child = afterWhite(*root, mv("g1", "g2"));
    EXPECT_FALSE(ThreatensMate(child, 1, false));
    EXPECT_FALSE(ThreatensMate(child, 1, true));
    EXPECT_FALSE(ThreatensMate(child, 2, false));
}

TEST(ThreatensMate, ACheckIsNoThreat) {
    // Qc8 mates, yet a checking move is never counted as a threat.
    const auto root = std::make_unique<Root>("6k1/5ppp/8/8/8/8/2Q5/6K1 w - - 0 1", PLENTY_OF_PLIES);
    TChessboard& child = afterWhite(*root, mv("c2", "c8"));
    ASSERT_TRUE(child.blackInCheck());
    EXPECT_FALSE(ThreatensMate(child, 1, false));
    EXPECT_FALSE(ThreatensMate(child, 3, true));
}

TEST(ThreatensMate, AThreatOfMateInTwoOnly) {
    // After Kc6 and a pass: Kb6 Kb8 Rh8 mate, with no check on the way.
    const auto root = std::make_unique<Root>("k7/8/3K4/8/8/8/8/7R w - - 0 1", PLENTY_OF_PLIES);
    TChessboard& child = afterWhite(*root, mv("d6", "c6"));
    EXPECT_FALSE(ThreatensMate(child, 1, false));
    EXPECT_TRUE(ThreatensMate(child, 2, false));
    // The mate starts with a quiet move, so the form by checks does not find it.
    EXPECT_FALSE(ThreatensMate(child, 1, true));
}

TEST(ThreatensMate, AThreatOfMateInTwoByChecks) {
    // Q:d8+ R:d8 R:d8 mate: not a mate in one, but a mate in two by checks.
    const auto root = std::make_unique<Root>("2rr2k1/5ppp/8/8/8/8/3Q4/3R2K1 w - - 0 1", PLENTY_OF_PLIES);
    TChessboard& child = afterWhite(*root, mv("g1", "h1"));
    EXPECT_FALSE(ThreatensMate(child, 1, false));
    EXPECT_TRUE(ThreatensMate(child, 1, true));
    EXPECT_TRUE(ThreatensMate(child, 2, false));
}

TEST(ThreatensMate, NoMovesNoThreat) {
    const auto root = std::make_unique<Root>("6k1/5ppp/8/8/8/8/2Q5/6K1 w - - 0 1", PLENTY_OF_PLIES);
    EXPECT_FALSE(ThreatensMate(afterWhite(*root, mv("c2", "c4")), 0, true));
}

// ---- FfmThreatMoves

TEST(FfmThreatMoves, EachLevelsThreatLength) {
    const int expected[] = {0, 0, 0, 1, 1, 2, 2, 3, 4, 5, 0};
    for (uint8_t level = 0; level <= 10; ++level)
        EXPECT_EQ(FfmThreatMoves(level), expected[level]) << int(level);
    EXPECT_EQ(FfmThreatMoves(FFM_LEVEL_CHECKS), 0);
    EXPECT_EQ(FfmThreatMoves(FFM_LEVEL_MAX), 5);
}
