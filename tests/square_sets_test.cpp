// Sets of squares: the tables, the reach of sliders, and the attack test by
// sets, which must agree with the board's own attack test everywhere.
#include "core/attacks.h"
#include "core/square_sets.h"
#include "position_walk.h"
#include "test_positions.h"
#include "test_squares.h"

#include <gtest/gtest.h>

namespace zorvane {
namespace {

SquareSet setOf(std::initializer_list<const char*> names) {
    SquareSet set = 0;
    for (const char* name : names) set |= SquareBit(sq(name));
    return set;
}

TEST(SquareSets, JumpTablesAtCornerAndCentre) {
    EXPECT_EQ(KNIGHT_REACH[sq("a1")], setOf({"b3", "c2"}));
    EXPECT_EQ(KNIGHT_REACH[sq("d4")], setOf({"c2", "e2", "b3", "f3", "b5", "f5", "c6", "e6"}));
    EXPECT_EQ(KING_REACH[sq("h8")], setOf({"g8", "g7", "h7"}));
    EXPECT_EQ(WHITE_PAWN_ATTACKERS[sq("a5")], setOf({"b4"}));
    EXPECT_EQ(WHITE_PAWN_ATTACKERS[sq("e1")], SquareSet{0});
}

TEST(SquareSets, ReachStopsAtTheFirstManAndTakesIt) {
    const SquareSet men = setOf({"d6", "f4", "b2"});
    EXPECT_EQ(LineReach(sq("d4"), men), setOf({"d5", "d6", "d3", "d2", "d1", "e4", "f4", "c4", "b4", "a4"}));
    EXPECT_EQ(DiagonalReach(sq("d4"), men),
              setOf({"e5", "f6", "g7", "h8", "c5", "b6", "a7", "e3", "f2", "g1", "c3", "b2"}));
    EXPECT_EQ(NearestOnRay<RAY_DOWN_LEFT>(setOf({"b2", "c3"})), sq("c3"));
    EXPECT_EQ(NearestOnRay<RAY_UP>(setOf({"d6", "d8"})), sq("d6"));
}

const char* const WALKED[] = {
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -",
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - -",
    "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq -",
    "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ -",
};

TEST(SquareSets, AttacksAgreeWithTheBoardInEveryPosition) {
    int positions = 0;
    for (const char* fen : WALKED) {
        const TChessboard root = boardFromFen(fen, 5);
        ForEachPosition(root, 3, [&](const TChessboard& b) {
            const BoardSets sets = BoardSets::Of(b);
            // The board's test counts the White king's own square as attacked; no
            // caller asks about it, since the kings never stand side by side.
            for (int square = 0; square < 64; ++square) {
                if (square == b.whiteKing()) continue;
                ASSERT_EQ(sets.WhiteAttacks(square, sets.occupied),
                          IsAttackedByWhite(b, colOf(square), rowOf(square)))
                    << fen << " square " << square << " after " << FormatLogMove(b.m_LastMove);
            }
            ++positions;
        });
    }
    EXPECT_GT(positions, 100000);
}

TEST(SquareSets, AfterAWhiteMoveMatchTheMadeBoard) {
    int moves = 0;
    for (const char* fen : WALKED) {
        const TChessboard root = boardFromFen(fen, 5);
        ForEachPosition(root, 2, [&](const TChessboard& b) {
            if (!b.whiteToMove()) return;
            const BoardSets sets = BoardSets::Of(b);
            MoveBuffer list;
            const int count = GenerateWhiteMovesOrEvasions(b, list);
            TChessboard child;
            for (int i = 0; i < count; ++i) {
                const TMove m = list[i];
                const int kind = b.m_aSquares[m.from] & KIND_MASK;
                const bool secondMan = (kind == KIND_KING && absInt(colOf(m.to) - colOf(m.from)) >= 2) ||
                                       (kind == KIND_PAWN && ((m.from ^ m.to) & 7) && !b.m_aSquares[m.to]);
                CopyToChild(child, b);
                TMove played = m;
                if (secondMan || !MakeWhiteMove(child, played)) continue;
                const int newKind = m.promotionKind() ? m.promotionKind() : kind;
                const BoardSets after = sets.AfterWhiteMove(m.from, m.to, kind, newKind);
                const BoardSets made = BoardSets::Of(child);
                ASSERT_EQ(after.occupied, made.occupied) << fen;
                ASSERT_EQ(after.black, made.black) << fen;
                ASSERT_EQ(after.whiteKing, made.whiteKing) << fen;
                ASSERT_EQ(after.whitePawns, made.whitePawns) << fen;
                ASSERT_EQ(after.whiteKnights, made.whiteKnights) << fen;
                ASSERT_EQ(after.whiteDiagonal, made.whiteDiagonal) << fen;
                ASSERT_EQ(after.whiteLine, made.whiteLine) << fen;
                ++moves;
            }
        });
    }
    EXPECT_GT(moves, 50000);
}

} // namespace
} // namespace zorvane
