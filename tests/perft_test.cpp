// Perft counts of published positions, counted through the engine's own
// generators and makers. None of these lines reaches the makers' refusals: every
// position keeps pawns on both sides within the depth searched, so neither the
// bare-king refusal nor the refusal of lines with knights alone can fire.
#include "core/fen.h"
#include "core/perft.h"

#include <gtest/gtest.h>

namespace zorvane {
namespace {

uint64_t perftOf(const std::string& fen, int depth) {
    TChessboard board = EmptyChessboard();
    board.m_shPliesLeft = 201; // White to move, and enough plies that every move looks for check
    board.m_shPliesTotal = 201;
    EXPECT_TRUE(ReadFen(fen, board)) << fen;
    return Perft(board, depth);
}

TEST(Perft, InitialPosition) {
    EXPECT_EQ(perftOf("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", 1), 20u);
    EXPECT_EQ(perftOf("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", 3), 8902u);
    EXPECT_EQ(perftOf("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", 5), 4865609u);
}

TEST(Perft, CastlingsEverywhere) {
    EXPECT_EQ(perftOf("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -", 1), 48u);
    EXPECT_EQ(perftOf("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -", 4), 4085603u);
}

TEST(Perft, EnPassantAndPins) {
    EXPECT_EQ(perftOf("8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - -", 5), 674624u);
}

TEST(Perft, PromotionsAndBlackCastling) {
    EXPECT_EQ(perftOf("r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq -", 4), 422333u);
}

TEST(Perft, DiscoveredChecksAndPromotions) {
    EXPECT_EQ(perftOf("rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ -", 4), 2103487u);
}

TEST(Perft, QuietMiddlegame) {
    EXPECT_EQ(perftOf("r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - -", 4), 3894594u);
}

} // namespace
} // namespace zorvane
