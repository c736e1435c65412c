// Relaxation of the special heuristics between passes, one step per call, and
// the fallback that tightens the edge bet inside a line.
#include "core/thread_context.h"
#include "engine/heuristic_bits.h"
#include "engine/heuristic_relaxation.h"
#include "test_positions.h"
#include "test_squares.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

using namespace zorvane;

namespace {

// A stand-in for the set's fingerprint: a pure function of the word and of
// the parameters the steps change, 0 for the empty set, so that a test sees
// whether the value was refreshed after the last change.
uint32_t fakeFingerprint(const TChessboard& b, const TSpecialHeuristicsParams& p) {
    if (!b.m_uHeuristics) return 0;
    uint32_t v = b.m_uHeuristics * 2654435761u;
    v += p.m_bKingMoveStrict + 2u * p.m_bKingMoveExceptions + 4u * p.m_bSurroundedStrict +
         8u * p.m_bBlockedEffective + 16u * p.m_nFfmLevel + 256u * p.m_bFfmCustom +
         512u * p.m_nBlockedFigures + 8192u * p.m_bExtEdgeMoveUnlessOnEdge + 16384u * p.m_bInclCornerSquares;
    return v | 1u;
}

// One thread's root under a set, with a clock the test sets and the lines printed.
class Relax {
  public:
    Relax(const char* fen, uint32_t word, int plies = 9) {
        root = boardFromFen(fen, plies, ctx.get());
        root.m_uHeuristics = word;
        hooks.refresh = fakeFingerprint;
        hooks.now = [this] { return clock; };
        hooks.print = [this](std::string_view line) { printed.emplace_back(line); };
        root.m_uHeuristicParams = fakeFingerprint(root, *ctx);
    }
    Relax(const Relax&) = delete;

    int relax() { return relax(root); }
    int relax(TChessboard& board) { return TryRelaxSpecialHeuristics(board, *ctx, solveWide, times, hooks); }
    uint32_t word() const { return root.m_uHeuristics; }
    bool fresh() const { return root.m_uHeuristicParams == fakeFingerprint(root, *ctx); }
    void list(std::initializer_list<const char*> squares) {
        ctx->m_nBlockedFigures = 0;
        for (const char* s : squares) {
            ctx->m_aBlockedStart[ctx->m_nBlockedFigures] = sq(s);
            ctx->m_aBlockedNow[ctx->m_nBlockedFigures] = sq(s);
            ++ctx->m_nBlockedFigures;
        }
        root.m_uHeuristicParams = fakeFingerprint(root, *ctx);
    }
    std::vector<uint8_t> listed() const {
        return std::vector<uint8_t>(ctx->m_aBlockedStart, ctx->m_aBlockedStart + ctx->m_nBlockedFigures);
    }
    // The FindForcedMate settings of a test.
    void ffm(uint8_t level, uint8_t start, uint8_t relaxations, uint8_t withOthers) {
        ctx->m_nFfmLevel = level;
        ctx->m_nFfmStartLevel = start;
        ctx->m_nFfmRelaxations = relaxations;
        ctx->m_nFfmWithOthers = withOthers;
        root.m_uHeuristicParams = fakeFingerprint(root, *ctx);
    }

    std::unique_ptr<TThreadContext> ctx = std::make_unique<TThreadContext>();
    SolveWideHeuristicParams solveWide;
    HeuristicPassTimes times;
    RelaxationHooks hooks;
    TChessboard root;
    uint64_t clock = 50000;
    std::vector<std::string> printed;
};

// Kings and a rook: the flags of the first steps read no position.
constexpr const char* ROOK_ENDING = "4k3/8/4K3/8/8/8/8/R7";
// A white king boxed in by his own pawns, a knight, the black king on the back row.
constexpr const char* BOXED_WHITE_KING = "4k3/8/8/8/8/5N2/PP6/K7";
// A lone queen that cannot check, two black knights, the kings two apart.
constexpr const char* LONE_QUEEN = "8/8/k7/8/K7/8/6pn/6nQ";
// The black king in the corner, behind two of his pawns.
constexpr const char* HEMMED_BLACK_KING = "7k/6pp/8/8/8/8/8/2N1K3";
// Queen, rook and bishop; the black king on the back row, two squares from his opponent.
constexpr const char* THREE_FIGURES = "5k2/8/5K2/8/8/8/8/QRB5";
// A white bishop on c3 pins the knight g7 to the king in the corner; a rook besides.
constexpr const char* KEY_PIN = "7k/6n1/8/8/8/2B5/8/R3K3";

} // namespace

// ---- The edge cases of the order ----

TEST(RelaxationOrder, SweepingRookAndZugzwangGiveTwoPassesRookFirst) {
    Relax r(ROOK_ENDING, SH_SWEEPINGWHITEROOK | SH_ZUGZWANG);
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_ZUGZWANG);
    EXPECT_TRUE(r.fresh());
    EXPECT_EQ(r.ctx->m_nPassIndex, 1);
    EXPECT_EQ(r.relax(), 0);
    EXPECT_EQ(r.word(), 0u);
    EXPECT_EQ(r.root.m_uHeuristicParams, 0u);
    EXPECT_EQ(r.ctx->m_nPassIndex, 2);
}

TEST(RelaxationEntry, SwitchedOffTheFirstCallEmptiesTheSet) {
    Relax r(ROOK_ENDING, SH_KEEPKINGONTHEEDGE | SH_ZUGZWANG);
    r.ctx->m_bLetRelax = 0;
    r.ctx->m_bFallbackRequested = 1;
    EXPECT_EQ(r.relax(), 0);
    EXPECT_EQ(r.word(), 0u);
    EXPECT_EQ(r.root.m_uHeuristicParams, 0u);
    EXPECT_EQ(r.ctx->m_nPassIndex, 0);
    EXPECT_EQ(r.ctx->m_bFallbackRequested, 0);
}

TEST(RelaxationOrder, StrictEdgeGoesStrictExceptionsPlainBandNone) {
    Relax r(BOXED_WHITE_KING, SH_KEEPKINGONTHEEDGE);
    ASSERT_EQ(r.ctx->m_bKingMoveStrict, 1);
    ASSERT_EQ(r.ctx->m_bKingMoveExceptions, 0);
    // 1b: the king may move where he is forced straight back.
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_KEEPKINGONTHEEDGE);
    EXPECT_EQ(r.ctx->m_bKingMoveStrict, 1);
    EXPECT_EQ(r.ctx->m_bKingMoveExceptions, 1);
    EXPECT_TRUE(r.fresh());
    // 1c: the plain edge.
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_KEEPKINGONTHEEDGE);
    EXPECT_EQ(r.ctx->m_bKingMoveStrict, 0);
    EXPECT_TRUE(r.fresh());
    // 1d: the band next to the edge.
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_KEEPKINGWITHINEXTEDGE);
    EXPECT_EQ(r.ctx->m_bInclCornerSquares, 0);
    EXPECT_TRUE(r.fresh());
    // No band: the pass without heuristics is next.
    EXPECT_EQ(r.relax(), 0);
    EXPECT_EQ(r.word(), 0u);
    EXPECT_EQ(r.root.m_uHeuristicParams, 0u);
    EXPECT_EQ(r.ctx->m_nPassIndex, 4);
}

// ---- Entry ----

TEST(RelaxationEntry, BlackToMoveRelaxesTheParentAndTakesItsSet) {
    Relax r(ROOK_ENDING, SH_SWEEPINGWHITEROOK | SH_ZUGZWANG);
    TChessboard child;
    CopyToChild(child, r.root);
    child.m_shPliesLeft = 8;
    child.m_wFlags = 0x1234;
    EXPECT_EQ(r.relax(child), 1);
    EXPECT_EQ(r.root.m_uHeuristics, SH_ZUGZWANG);
    EXPECT_EQ(child.m_uHeuristics, SH_ZUGZWANG);
    EXPECT_EQ(child.m_uHeuristicParams, fakeFingerprint(child, *r.ctx));
    EXPECT_EQ(child.m_wFlags, 0x1234);
    EXPECT_EQ(child.m_shPliesLeft, 8);
    EXPECT_EQ(r.ctx->m_nPassIndex, 1);
    // The parent's set runs out: the child's is cleared with it.
    EXPECT_EQ(r.relax(child), 0);
    EXPECT_EQ(child.m_uHeuristics, 0u);
    EXPECT_EQ(child.m_uHeuristicParams, 0u);
}

TEST(RelaxationEntry, BlackToMoveWithoutParentGivesNothing) {
    Relax r(ROOK_ENDING, SH_ZUGZWANG, 8);
    r.root.m_pParent = nullptr;
    EXPECT_EQ(r.relax(), 0);
    EXPECT_EQ(r.word(), SH_ZUGZWANG);
    EXPECT_EQ(r.ctx->m_nPassIndex, 0);
}

TEST(RelaxationEntry, ThePendingUnblockFlagComesBackAndIsNotDroppedAgainAtOnce) {
    // One white figure, three listed black men: the strict edge first runs a pass without the list.
    Relax r("4k3/8/8/8/3ppp2/8/8/R3K3", SH_KEEPKINGONTHEEDGE | SH_DONTLETFIGUREUNBLOCK);
    r.list({"d4", "e4", "f4"});
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_KEEPKINGONTHEEDGE);
    EXPECT_EQ(r.ctx->m_bUnblockPending, 1);
    EXPECT_TRUE(r.fresh());
    // The flag returns; this call makes the next step instead of dropping it again.
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_KEEPKINGONTHEEDGE | SH_DONTLETFIGUREUNBLOCK);
    EXPECT_EQ(r.ctx->m_bUnblockPending, 0);
    EXPECT_EQ(r.ctx->m_bKingMoveStrict, 0);
    EXPECT_TRUE(r.fresh());
}

TEST(RelaxationEntry, TheKeyFigureComesBackInPlaceOfTheUnblockFlagForOnePass) {
    Relax r(KEY_PIN, SH_KEEPKINGONTHEEDGE | SH_KEYWHITEFIGURE | SH_DONTLETFIGUREUNBLOCK);
    r.ctx->m_cKeyWhiteFigure = sq("c3");
    r.ctx->m_cKeyPinnedFigure = sq("g7");
    r.list({"g7"});
    // The pin holds round the cornered king: the key figure goes first.
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_KEEPKINGONTHEEDGE | SH_DONTLETFIGUREUNBLOCK);
    EXPECT_EQ(r.ctx->m_bKeyFigurePending, 1);
    EXPECT_TRUE(r.fresh());
    // It comes back in place of the unblock flag.
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_KEEPKINGONTHEEDGE | SH_KEYWHITEFIGURE);
    EXPECT_EQ(r.ctx->m_bKeyFigurePending, 1);
    EXPECT_TRUE(r.fresh());
    // Then the unblock flag again without it, and the order makes its step (the plain edge).
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_KEEPKINGONTHEEDGE | SH_DONTLETFIGUREUNBLOCK);
    EXPECT_EQ(r.ctx->m_bKeyFigurePending, 0);
    EXPECT_EQ(r.ctx->m_bKingMoveStrict, 0);
    EXPECT_TRUE(r.fresh());
    EXPECT_EQ(r.ctx->m_nPassIndex, 3);
}

// ---- The order, rule by rule ----

TEST(RelaxationOrder, SeaSnakeGoesAndIsOverForTheSolve) {
    Relax r(ROOK_ENDING, SH_SEASNAKE | SH_KEEPKINGONTHEEDGE);
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_KEEPKINGONTHEEDGE);
    EXPECT_TRUE(r.solveWide.m_bSeaSnakeOver);
    EXPECT_TRUE(r.fresh());
}

TEST(RelaxationOrder, OneColourPlayGoesWithItsModeBits) {
    Relax r(ROOK_ENDING, SH_ONECOLORPLAYPOSSIBLE | SH_KEEPKINGNEARCORNER);
    r.root.m_bPlayState = 2 | PLAY_WHITE_CAPTURES;
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_KEEPKINGNEARCORNER);
    EXPECT_EQ(r.root.m_bPlayState, PLAY_WHITE_CAPTURES);
    // Then the corner bet.
    EXPECT_EQ(r.relax(), 0);
    EXPECT_EQ(r.word(), 0u);
}

TEST(RelaxationOrder, StrictEdgeWithExceptionsBecomesSurroundedWhereAllowed) {
    Relax r(ROOK_ENDING, SH_KEEPKINGONTHEEDGE | SH_DONTLEAVEMAINDIAGONAL);
    r.ctx->m_bKingMoveExceptions = 1;
    r.ctx->m_bStrictEdgeAllowed = 1;
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_ASSERTBLACKKINGSURROUNDED | SH_DONTLEAVEMAINDIAGONAL);
    EXPECT_TRUE(r.fresh());
    // The diagonal bet next.
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_ASSERTBLACKKINGSURROUNDED);
}

TEST(RelaxationOrder, TheMarkedFiguresLeaveTheUnblockListThenTheListGoes) {
    Relax r("4k3/8/2n5/3ppp2/8/8/8/RB2K1N1", SH_DONTLETFIGUREUNBLOCK | SH_DONTLETBLACKQUEENCHECKTWICE);
    r.list({"d5", "e5", "f5", "c6"});
    r.ctx->m_bBlockedRelaxable = 1;
    r.ctx->m_nFiguresAtStart = 3;
    r.ctx->m_bHeuristicsFallback = 1;
    r.ctx->m_nRelaxBlockedCount = 1;
    r.ctx->m_aRelaxBlocked[0] = sq("d5");
    // d5 swaps with the last entry.
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.listed(), (std::vector<uint8_t>{sq("c6"), sq("e5"), sq("f5")}));
    EXPECT_EQ(r.ctx->m_aBlockedNow[0], sq("c6"));
    EXPECT_EQ(r.ctx->m_nBlockedFiguresSaved, 4);
    EXPECT_EQ(r.ctx->m_bBlockedHasPawn, 1);
    EXPECT_EQ(r.word(), SH_DONTLETFIGUREUNBLOCK | SH_DONTLETBLACKQUEENCHECKTWICE);
    EXPECT_EQ(r.ctx->m_bFallbackRequested, 0);
    EXPECT_TRUE(r.fresh());
    // Every remaining figure marked: the list and its flag go, the fallback is asked for.
    r.ctx->m_nRelaxBlockedCount = 3;
    r.ctx->m_aRelaxBlocked[0] = sq("c6");
    r.ctx->m_aRelaxBlocked[1] = sq("e5");
    r.ctx->m_aRelaxBlocked[2] = sq("f5");
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.ctx->m_nBlockedFigures, 0);
    EXPECT_EQ(r.ctx->m_nBlockedFiguresSaved, 4);
    EXPECT_EQ(r.word(), SH_DONTLETBLACKQUEENCHECKTWICE);
    EXPECT_EQ(r.ctx->m_bUnblockDynamic, 0);
    EXPECT_EQ(r.ctx->m_bBlockedAllowed, 0);
    EXPECT_EQ(r.ctx->m_bFallbackRequested, 1);
    EXPECT_TRUE(r.fresh());
    // Cleared at the next entry.
    EXPECT_EQ(r.relax(), 0);
    EXPECT_EQ(r.ctx->m_bFallbackRequested, 0);
}

TEST(RelaxationOrder, TheListIsNotShrunkWithFewFiguresAtTheStart) {
    Relax r("4k3/8/2n5/3ppp2/8/8/8/RB2K1N1", SH_DONTLETFIGUREUNBLOCK);
    r.list({"d5", "c6"});
    r.ctx->m_bBlockedRelaxable = 1;
    r.ctx->m_nFiguresAtStart = 2;
    r.ctx->m_nRelaxBlockedCount = 1;
    r.ctx->m_aRelaxBlocked[0] = sq("d5");
    // The effective form instead, the word unchanged.
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.listed(), (std::vector<uint8_t>{sq("d5"), sq("c6")}));
    EXPECT_EQ(r.ctx->m_bBlockedEffective, 1);
    EXPECT_EQ(r.word(), SH_DONTLETFIGUREUNBLOCK);
    EXPECT_TRUE(r.fresh());
}

TEST(RelaxationOrder, KeyFigureAwayFromTheCornerGoesLate) {
    Relax r("8/8/8/4k3/8/8/8/RB2K3",
            SH_KEYWHITEFIGURE | SH_DONTLETBLACKQUEENCHECKTWICE | SH_ASSERTBLACKKINGSURROUNDED);
    r.ctx->m_bDropQueenCheckFirst = 1;
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_DONTLETBLACKQUEENCHECKTWICE | SH_ASSERTBLACKKINGSURROUNDED);
    EXPECT_EQ(r.ctx->m_bKeyFigurePending, 0);
    // With the drop moved forward the queen check goes before the surrounding bet.
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_ASSERTBLACKKINGSURROUNDED);
}

TEST(RelaxationOrder, WithoutTheDropMovedForwardSurroundingGoesBeforeTheQueenCheck) {
    Relax r(ROOK_ENDING, SH_DONTLETBLACKQUEENCHECKTWICE | SH_ASSERTBLACKKINGSURROUNDED);
    r.ctx->m_bSurroundedStrict = 1;
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_DONTLETBLACKQUEENCHECKTWICE | SH_ASSERTBLACKKINGSURROUNDED);
    EXPECT_EQ(r.ctx->m_bSurroundedStrict, 0);
    EXPECT_TRUE(r.fresh());
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_DONTLETBLACKQUEENCHECKTWICE);
    EXPECT_EQ(r.relax(), 0);
    EXPECT_EQ(r.word(), 0u);
}

TEST(RelaxationOrder, PromotedQueenGoesFirstWhenMovedForward) {
    Relax r(ROOK_ENDING, SH_DONTLETPROMOTEDQUEENMOVE | SH_SINGLEQUEENMATE);
    r.ctx->m_bDropPromotedQueenFirst = 1;
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_SINGLEQUEENMATE);
}

TEST(RelaxationOrder, SingleQueenMateGoesBeforeLosingFigures) {
    Relax r(ROOK_ENDING, SH_SINGLEQUEENMATE | SH_DONTLOSEANYFIGURES);
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_DONTLOSEANYFIGURES);
    EXPECT_EQ(r.relax(), 0);
}

TEST(RelaxationOrder, ExceptionsForALoneQueenInOpposition) {
    Relax r(LONE_QUEEN, SH_KEEPKINGONTHEEDGE);
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.ctx->m_bKingMoveExceptions, 1);
    EXPECT_EQ(r.ctx->m_bKingMoveStrict, 1);
}

TEST(RelaxationOrder, ExceptionsForABlackKingHemmedInByHisMen) {
    Relax r(HEMMED_BLACK_KING, SH_KEEPKINGONTHEEDGE);
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.ctx->m_bKingMoveExceptions, 1);
    EXPECT_EQ(r.word(), SH_KEEPKINGONTHEEDGE);
}

TEST(RelaxationOrder, NoExceptionsForAFreeKingTheStrictBitGoes) {
    Relax r(ROOK_ENDING, SH_KEEPKINGONTHEEDGE);
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.ctx->m_bKingMoveExceptions, 0);
    EXPECT_EQ(r.ctx->m_bKingMoveStrict, 0);
    EXPECT_EQ(r.word(), SH_KEEPKINGONTHEEDGE);
}

TEST(RelaxationOrder, TwoMajorsAndABishopThatCanCheckSurroundInsteadOfTheEdge) {
    Relax r("4k3/8/8/8/2B5/8/8/2KQ3R", SH_KEEPKINGONTHEEDGE);
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_ASSERTBLACKKINGSURROUNDED);
    EXPECT_EQ(r.ctx->m_bKingMoveStrict, 0);
    EXPECT_TRUE(r.fresh());
}

TEST(RelaxationOrder, LosingFiguresGoesAtOnceWithoutPawns) {
    Relax r(ROOK_ENDING, SH_DONTLOSEANYFIGURES | SH_ASSERTBLACKKINGSURROUNDED);
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_ASSERTBLACKKINGSURROUNDED);
}

TEST(RelaxationOrder, LosingFiguresStaysWhileAPawnRunsHomeAgainstABareSurroundedKing) {
    Relax r("7k/8/P7/8/8/8/8/2B1K3", SH_DONTLOSEANYFIGURES | SH_ASSERTBLACKKINGSURROUNDED);
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_DONTLOSEANYFIGURES);
    // Without the surrounding bet it goes.
    EXPECT_EQ(r.relax(), 0);
    EXPECT_EQ(r.word(), 0u);
}

TEST(RelaxationOrder, TheEdgeOffTheBandLeavesNoBand) {
    // The black king in the centre: band 3.
    Relax r("8/8/8/3k4/8/8/8/R3K3", SH_KEEPKINGONTHEEDGE);
    r.ctx->m_bKingMoveStrict = 0;
    EXPECT_EQ(r.relax(), 0);
    EXPECT_EQ(r.word(), 0u);
}

TEST(RelaxationOrder, AQueenAgainstNoQueenTakesTheSurroundingBetForTheEdge) {
    // The black king in the corner with one free square; queen and rook: no band.
    Relax r("k7/2K5/8/8/8/8/8/3Q3R", SH_KEEPKINGONTHEEDGE);
    r.ctx->m_bKingMoveStrict = 0;
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_ASSERTBLACKKINGSURROUNDED);
    EXPECT_TRUE(r.fresh());
}

TEST(RelaxationOrder, ABlackPawnWallMakesTheInnerCornersEdge) {
    Relax r("4k3/8/8/8/8/2pppp2/8/1N2K3", SH_KEEPKINGONTHEEDGE);
    r.ctx->m_bKingMoveStrict = 0;
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_KEEPKINGWITHINEXTEDGE);
    EXPECT_EQ(r.ctx->m_bInclCornerSquares, 1);
    EXPECT_TRUE(r.fresh());
}

TEST(RelaxationOrder, PawnsOnlyTakeTheBandWhenOneRunsHome) {
    Relax runs("7k/8/8/8/8/8/P7/4K3", SH_KEEPKINGONTHEEDGE);
    runs.ctx->m_bKingMoveStrict = 0;
    EXPECT_EQ(runs.relax(), 1);
    EXPECT_EQ(runs.word(), SH_KEEPKINGWITHINEXTEDGE);
    // The king stands in front of the pawn: no band.
    Relax caught("8/8/8/8/8/k7/P7/4K3", SH_KEEPKINGONTHEEDGE);
    caught.ctx->m_bKingMoveStrict = 0;
    EXPECT_EQ(caught.relax(), 0);
    EXPECT_EQ(caught.word(), 0u);
}

TEST(RelaxationOrder, TheBandWaitsForTheUnblockListToShrinkToMinors) {
    // The black king on b7 (band 1) can step to c6 (band 2); listed a knight, a pawn, a bishop.
    Relax r("8/1kn5/8/1p6/2b5/8/8/R3K1N1", SH_KEEPKINGWITHINEXTEDGE | SH_DONTLETFIGUREUNBLOCK);
    r.list({"c7", "b5", "c4"});
    r.ctx->m_bBlockedEffective = 1;
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.listed(), (std::vector<uint8_t>{sq("c7"), sq("c4")}));
    EXPECT_EQ(r.ctx->m_nBlockedFiguresSaved, 3);
    EXPECT_EQ(r.ctx->m_bBlockedHasPawn, 0);
    EXPECT_EQ(r.word(), SH_KEEPKINGWITHINEXTEDGE | SH_DONTLETFIGUREUNBLOCK);
    EXPECT_TRUE(r.fresh());
    // Only minors left: the list goes.
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_KEEPKINGWITHINEXTEDGE);
    EXPECT_EQ(r.ctx->m_bUnblockDynamic, 0);
    EXPECT_EQ(r.ctx->m_bBlockedAllowed, 0);
    // Then the band itself.
    EXPECT_EQ(r.relax(), 0);
    EXPECT_EQ(r.word(), 0u);
}

TEST(RelaxationOrder, WithoutABandTheQueenCheckThenTheWorstMovesThenEverything) {
    Relax r(ROOK_ENDING, SH_DONTLETBLACKQUEENCHECKTWICE | SH_SKIPWORSTWHITEMOVES | SH_3MOVESTOMATE);
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_SKIPWORSTWHITEMOVES | SH_3MOVESTOMATE);
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_3MOVESTOMATE);
    EXPECT_EQ(r.relax(), 0);
    EXPECT_EQ(r.word(), 0u);
    EXPECT_EQ(r.root.m_uHeuristicParams, 0u);
}

TEST(RelaxationOrder, TheBandOptionGoesFirstThenTheBandWithSurroundingForANarrowKing) {
    // The black king in the corner with one free square.
    Relax r("k7/2K5/8/8/8/8/8/7R", SH_KEEPKINGWITHINEXTEDGE);
    r.ctx->m_bExtEdgeMoveUnlessOnEdge = 1;
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_KEEPKINGWITHINEXTEDGE);
    EXPECT_EQ(r.ctx->m_bExtEdgeMoveUnlessOnEdge, 0);
    EXPECT_TRUE(r.fresh());
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_ASSERTBLACKKINGSURROUNDED);
    EXPECT_TRUE(r.fresh());
}

// ---- FindForcedMate ----

TEST(RelaxationFfm, ThePreliminaryPassGivesBackTheParkedSet) {
    Relax r(THREE_FIGURES, SH_KEEPKINGWITHINEXTEDGE);
    r.ctx->m_bFfmPreliminary = 1;
    r.ctx->m_uFfmSavedHeuristics = SH_FINDFORCEDMATE | SH_KEEPKINGONTHEEDGE;
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_FINDFORCEDMATE | SH_KEEPKINGONTHEEDGE);
    EXPECT_EQ(r.ctx->m_bFfmPreliminary, 0);
    EXPECT_TRUE(r.fresh());
}

TEST(RelaxationFfm, LevelsRiseWithinTheAllowance) {
    // A black pawn beside the king: #1+ is worth its pass.
    Relax r("5k2/5p2/5K2/8/8/8/8/QRB5", SH_FINDFORCEDMATE | SH_KEEPKINGONTHEEDGE);
    r.ffm(3, 3, 2, FFM_WITHOUT_OTHERS);
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.ctx->m_nFfmLevel, 4);
    EXPECT_TRUE(r.fresh());
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.ctx->m_nFfmLevel, 5);
    EXPECT_EQ(r.word(), SH_FINDFORCEDMATE | SH_KEEPKINGONTHEEDGE);
    EXPECT_TRUE(r.printed.empty());
}

TEST(RelaxationFfm, LevelFourIsPassedOverWhereItAddsNothing) {
    Relax r(THREE_FIGURES, SH_FINDFORCEDMATE);
    r.ffm(3, 3, 2, FFM_WITHOUT_OTHERS);
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.ctx->m_nFfmLevel, 5);
    EXPECT_TRUE(r.fresh());
}

TEST(RelaxationFfm, AShortProblemWithoutAWhiteQueenGetsTwoPlusAfterTwo) {
    Relax r("5k2/8/5K2/8/8/8/8/1RB1N3", SH_FINDFORCEDMATE, 21);
    r.ffm(5, 3, 2, FFM_WITHOUT_OTHERS);
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.ctx->m_nFfmLevel, 6);
    EXPECT_EQ(r.word(), SH_FINDFORCEDMATE);
}

TEST(RelaxationFfm, ANearlyNettedKingStartsTheCustomSequenceAtTheStartLevel) {
    // The black king in the corner behind his pawn, the other heuristics tested.
    Relax r("k7/p1K5/8/8/8/8/8/1QRB4", SH_FINDFORCEDMATE);
    r.ffm(5, 3, 2, FFM_WITH_OTHERS);
    r.ctx->m_nFfmCustomRelaxations = 1;
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.ctx->m_bFfmCustom, 1);
    EXPECT_EQ(r.ctx->m_nFfmLevel, 3);
    EXPECT_TRUE(r.fresh());
    // Its own allowance.
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.ctx->m_nFfmLevel, 4);
}

TEST(RelaxationFfm, TooFewFiguresStopFindForcedMate) {
    Relax r("5k2/8/5K2/8/8/8/8/Q7", SH_FINDFORCEDMATE | SH_ASSERTBLACKKINGSURROUNDED);
    r.ffm(5, 3, 2, FFM_WITHOUT_OTHERS);
    r.times.m_uPassStartTicks = r.clock;
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_ASSERTBLACKKINGSURROUNDED);
    EXPECT_EQ(r.ctx->m_nFfmLevel, 5);
    EXPECT_TRUE(r.fresh());
    // No time was taken: the rule that reads the clock was not reached.
    EXPECT_EQ(r.times.m_aPassTicks[0], 0u);
}

TEST(RelaxationFfm, TheEndOfACustomSequenceGoesBackToTheStartLevel) {
    // Two free squares: the custom sequence would be offered, but it has run.
    Relax r("5k2/8/5K2/8/8/8/8/Q7", SH_FINDFORCEDMATE);
    r.ffm(5, 3, 0, FFM_WITH_OTHERS);
    r.ctx->m_bFfmCustom = 1;
    r.ctx->m_nFfmCustomRelaxations = 2;
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.word(), SH_FINDFORCEDMATE);
    EXPECT_EQ(r.ctx->m_bFfmCustom, 0);
    EXPECT_EQ(r.ctx->m_nFfmLevel, 3);
    EXPECT_EQ(r.ctx->m_nFfmCustomRelaxations, 0);
    EXPECT_TRUE(r.fresh());
    // The ordinary chain has no allowance: FFM comes off.
    EXPECT_EQ(r.relax(), 0);
    EXPECT_EQ(r.word(), 0u);
}

TEST(RelaxationFfm, ExactlyTheLimitIsRefusedAndMakesNoLevelStep) {
    Relax r(THREE_FIGURES, SH_FINDFORCEDMATE | SH_KEEPKINGONTHEEDGE);
    r.ffm(5, 3, 2, FFM_WITHOUT_OTHERS);
    r.times.m_uPassStartTicks = 10000;
    r.clock = 11000;
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.printed,
              (std::vector<std::string>{"Time dependent relaxation near the limit: calcTime=1000 "
                                        "msec.; limit=1000 msec. (additional relaxation refused)"}));
    EXPECT_EQ(r.ctx->m_nFfmLevel, 5);
    // The chain ends instead.
    EXPECT_EQ(r.word(), SH_KEEPKINGONTHEEDGE);
    EXPECT_EQ(r.times.m_aPassTicks[0], 11000u);
}

TEST(RelaxationFfm, AQuickPassEarnsALevelByTime) {
    Relax r(THREE_FIGURES, SH_FINDFORCEDMATE);
    r.ffm(5, 3, 2, FFM_WITHOUT_OTHERS);
    r.times.m_uPassStartTicks = 10000;
    r.clock = 10999;
    EXPECT_EQ(r.relax(), RELAXED_BY_TIME);
    EXPECT_EQ(r.ctx->m_nFfmLevel, 6);
    EXPECT_EQ(r.word(), SH_FINDFORCEDMATE);
    EXPECT_TRUE(r.fresh());
    EXPECT_EQ(r.printed,
              (std::vector<std::string>{"Time dependent relaxation near the limit: calcTime=999 "
                                        "msec.; limit=1000 msec. (additional relaxation accepted)"}));
}

TEST(RelaxationFfm, TheTimeRulePassesOverOneAndTwoAndIsSilentFarFromTheLimit) {
    Relax r(THREE_FIGURES, SH_FINDFORCEDMATE);
    r.ffm(4, 4, 0, FFM_WITHOUT_OTHERS);
    r.times.m_uPassStartTicks = 10000;
    r.clock = 10500;
    EXPECT_EQ(r.relax(), RELAXED_BY_TIME);
    EXPECT_EQ(r.ctx->m_nFfmLevel, 6);
    EXPECT_TRUE(r.printed.empty());
    // Level 6 is as far as time goes.
    EXPECT_EQ(r.relax(), 0);
    EXPECT_EQ(r.ctx->m_nFfmLevel, 6);
    EXPECT_EQ(r.word(), 0u);
}

TEST(RelaxationFfm, CheckLevelWithAWhiteQueenGetsNoLevelByTime) {
    Relax r(THREE_FIGURES, SH_FINDFORCEDMATE | SH_ZUGZWANG);
    r.ffm(2, 2, 0, FFM_WITHOUT_OTHERS);
    r.times.m_uPassStartTicks = 10000;
    r.clock = 10100;
    EXPECT_EQ(r.relax(), 1);
    EXPECT_EQ(r.ctx->m_nFfmLevel, 2);
    EXPECT_EQ(r.word(), SH_ZUGZWANG);
}

TEST(RelaxationFfm, TheTimeOfAPassIsTheFirstFinishersAndTheLineFollowsTheWindow) {
    Relax r(THREE_FIGURES, SH_FINDFORCEDMATE | SH_ZUGZWANG);
    r.ffm(5, 3, 2, FFM_WITHOUT_OTHERS);
    r.times.m_uPassStartTicks = 10000;
    // Another thread finished this pass index at 10800: its time counts.
    EXPECT_EQ(PassEndTicks(r.times, 0, 10800), 10800u);
    r.clock = 20000;
    EXPECT_EQ(r.relax(), RELAXED_BY_TIME);
    EXPECT_EQ(r.printed,
              (std::vector<std::string>{"Time dependent relaxation near the limit: calcTime=800 "
                                        "msec.; limit=1000 msec. (additional relaxation accepted)"}));
    EXPECT_EQ(TimeRelaxationLine(1200),
              "Time dependent relaxation near the limit: calcTime=1200 msec.; limit=1000 msec. (additional "
              "relaxation refused)");
}

TEST(RelaxationFfm, BeyondTheWindowNothingIsPrinted) {
    Relax r(THREE_FIGURES, SH_FINDFORCEDMATE | SH_ZUGZWANG);
    r.ffm(5, 3, 2, FFM_WITHOUT_OTHERS);
    r.times.m_uPassStartTicks = 10000;
    r.clock = 11201;
    EXPECT_EQ(r.relax(), 1);
    EXPECT_TRUE(r.printed.empty());
    EXPECT_EQ(r.word(), SH_ZUGZWANG);
}

TEST(PassEndTicks, TheFirstWriterWinsAcrossThreads) {
    HeuristicPassTimes times;
    constexpr int THREADS = 8;
    uint64_t seen[THREADS] = {};
    std::vector<std::thread> threads;
    for (int t = 0; t < THREADS; ++t)
        threads.emplace_back([&, t] {
            for (int i = 0; i < 1000; ++i) PassEndTicks(times, i % 5 + 1, 1000 + t);
            seen[t] = PassEndTicks(times, 3, 1000 + t);
        });
    for (std::thread& thread : threads) thread.join();
    for (int t = 1; t < THREADS; ++t) EXPECT_EQ(seen[t], seen[0]);
    EXPECT_GE(seen[0], 1000u);
    EXPECT_LT(seen[0], 1000u + THREADS);
    EXPECT_EQ(times.m_wPassTicksLock.load(), 0);
    EXPECT_EQ(times.m_aPassTicks[0], 0u);
    EXPECT_EQ(PassEndTicks(times, 0, 7), 7u);
    EXPECT_EQ(PassEndTicks(times, 0, 9), 7u);
}

// ---- Fallback ----

namespace {

// #11: White's quiet first move, then the black king steps from g7 to the
// corner; one black knight, one white bishop.
struct FallbackLine {
    std::unique_ptr<TThreadContext> ctx = std::make_unique<TThreadContext>();
    TChessboard root;
    std::unique_ptr<GameLine> line;
    explicit FallbackLine(const char* fen = "1n6/6k1/8/8/8/8/8/2B1K3", const char* black = "g7-h8") {
        root = boardFromFen(fen, 21, ctx.get());
        ctx->m_bHeuristicsFallback = 1;
        line = std::make_unique<GameLine>(root);
        EXPECT_TRUE(line->play("e1-e2"));
        EXPECT_TRUE(line->play(black));
    }
    TChessboard position() const { return line->last(); }
};

} // namespace

TEST(Fallback, AppliesAfterTheKingStepsOntoTheEdgeInAThinEnding) {
    FallbackLine f;
    const TChessboard p = f.position();
    ASSERT_EQ(p.m_shPliesLeft, 19);
    EXPECT_TRUE(FallbackApplies(p, *f.ctx));
    // Not when switched off, nor inside another fallback.
    f.ctx->m_bHeuristicsFallback = 0;
    EXPECT_FALSE(FallbackApplies(p, *f.ctx));
    f.ctx->m_bHeuristicsFallback = 1;
    f.ctx->m_nFallbackDepth = 1;
    EXPECT_FALSE(FallbackApplies(p, *f.ctx));
    f.ctx->m_nFallbackDepth = 0;
    // Not under the strict edge already.
    TChessboard strict = p;
    strict.m_uHeuristics = SH_KEEPKINGONTHEEDGE;
    EXPECT_FALSE(FallbackApplies(strict, *f.ctx));
    f.ctx->m_bKingMoveStrict = 0;
    EXPECT_TRUE(FallbackApplies(strict, *f.ctx));
}

TEST(Fallback, NeedsAKingStepOntoTheEdgeFromInside) {
    FallbackLine inside("1n6/6k1/8/8/8/8/8/2B1K3", "g7-g6");
    EXPECT_FALSE(FallbackApplies(inside.position(), *inside.ctx));
    FallbackLine alongEdge("1n5k/8/8/8/8/8/8/2B1K3", "h8-g8");
    EXPECT_FALSE(FallbackApplies(alongEdge.position(), *alongEdge.ctx));
    FallbackLine knight("1n6/6k1/8/8/8/8/8/2B1K3", "b8-c6");
    EXPECT_FALSE(FallbackApplies(knight.position(), *knight.ctx));
}

TEST(Fallback, NeedsThinMaterial) {
    FallbackLine rook("1n6/6k1/8/8/8/8/8/R1B1K3");
    EXPECT_FALSE(FallbackApplies(rook.position(), *rook.ctx));
    FallbackLine twoBlackMinors("1nn5/6k1/8/8/8/8/8/2B1K3");
    EXPECT_FALSE(FallbackApplies(twoBlackMinors.position(), *twoBlackMinors.ctx));
    FallbackLine farBishop("b7/6k1/8/8/8/8/8/2B1K3");
    EXPECT_FALSE(FallbackApplies(farBishop.position(), *farBishop.ctx));
    FallbackLine nearBishop("6b1/6k1/8/8/8/8/8/2B1K3");
    EXPECT_TRUE(FallbackApplies(nearBishop.position(), *nearBishop.ctx));
}

TEST(Fallback, TooDeepOrTooShortLinesAreLeftAlone) {
    FallbackLine f;
    TChessboard p = f.position();
    p.m_shPliesTotal = static_cast<uint16_t>(p.m_shPliesLeft + FALLBACK_MAX_PLIES_PLAYED + 1);
    EXPECT_FALSE(FallbackApplies(p, *f.ctx));
    p = f.position();
    p.m_shPliesLeft = FALLBACK_MIN_PLIES_LEFT - 2;
    EXPECT_FALSE(FallbackApplies(p, *f.ctx));
}

TEST(Fallback, TheInnerSearchRunsStrictAndTheSetComesBack) {
    FallbackLine f;
    TChessboard p = f.position();
    p.m_uHeuristics = SH_DONTLETBLACKQUEENCHECKTWICE;
    p.m_uHeuristicParams = 0xABCD;
    f.ctx->m_bKingMoveStrict = 0;
    for (const int answer : {1, 0, -1}) {
        int calls = 0;
        const bool mate = TryFallback(p, *f.ctx, fakeFingerprint, [&](TChessboard& inner) {
            ++calls;
            EXPECT_EQ(inner.m_uHeuristics, SH_DONTLETBLACKQUEENCHECKTWICE | SH_KEEPKINGONTHEEDGE);
            EXPECT_EQ(f.ctx->m_bKingMoveStrict, 1);
            EXPECT_EQ(inner.m_uHeuristicParams, fakeFingerprint(inner, *f.ctx));
            EXPECT_EQ(f.ctx->m_nFallbackDepth, 1);
            return answer;
        });
        EXPECT_EQ(calls, 1);
        EXPECT_EQ(mate, answer > 0);
        EXPECT_EQ(p.m_uHeuristics, SH_DONTLETBLACKQUEENCHECKTWICE);
        EXPECT_EQ(p.m_uHeuristicParams, 0xABCDu);
        EXPECT_EQ(f.ctx->m_bKingMoveStrict, 0);
        EXPECT_EQ(f.ctx->m_nFallbackDepth, 0);
    }
}

TEST(Fallback, KingsNearAddTheirBetWithFewWhiteMinors) {
    // The white king three squares from the black one.
    TThreadContext* none = nullptr;
    TChessboard near = boardFromFen("7k/8/8/4K3/8/8/8/2B5", 19, none);
    EXPECT_TRUE(FallbackAddsKingsNear(near));
    auto ctx = std::make_unique<TThreadContext>();
    near.m_pThread = ctx.get();
    TryFallback(near, *ctx, fakeFingerprint, [](TChessboard& inner) {
        EXPECT_EQ(inner.m_uHeuristics, SH_KEEPKINGONTHEEDGE | SH_AREKINGSNEAR);
        return 0;
    });
    EXPECT_EQ(near.m_uHeuristics, 0u);
    EXPECT_FALSE(FallbackAddsKingsNear(boardFromFen("7k/8/8/8/8/8/8/K1B5", 19, none)));
    EXPECT_FALSE(FallbackAddsKingsNear(boardFromFen("7k/8/8/4K3/8/8/8/2BNN3", 19, none)));
}
