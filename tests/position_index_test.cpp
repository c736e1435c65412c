// The index of a position in its type's table, the position of an index, the
// folding by symmetry and the sizes of the tables.
#include "core/chessboard.h"
#include "global_register/position_index.h"
#include "global_register/table_layout.h"
#include "global_register/table_symmetry.h"
#include "test_squares.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <stdexcept>
#include <utility>

namespace zorvane {
namespace {

uint64_t indexOf(const char* type, const TChessboard& board) {
    return IndexOfPosition(MakeTableLayout(type, false, false), board);
}

// The 8 images of a square under the board's symmetries: xor 7, xor 56, transpose.
int image(int square, int which) {
    const TSymmetry symmetry{static_cast<uint8_t>(((which & 1) ? 7 : 0) | ((which & 2) ? 56 : 0)),
                             (which & 4) != 0};
    return symmetry.Apply(square);
}

TEST(PositionIndex, KingsAndManOnA1AreIndexZero) {
    // Both kings on a1 cannot be set up by PutMan; the index reads the fields.
    TChessboard b = EmptyChessboard();
    b.m_aSquares[sq("a1")] = WQ;
    b.m_nWhiteQueens = 1;
    b.m_cWhiteKingCol = b.m_cWhiteKingRow = b.m_cBlackKingCol = b.m_cBlackKingRow = 0;
    EXPECT_EQ(indexOf("Q", b), 0u);
    // With a pawn, index 0 has it on a2, its lowest square.
    TChessboard p = EmptyChessboard();
    p.m_aSquares[sq("a2")] = WP;
    p.m_nWhitePawns = 1;
    p.m_cWhiteKingCol = p.m_cWhiteKingRow = p.m_cBlackKingCol = p.m_cBlackKingRow = 0;
    EXPECT_EQ(indexOf("P", p), 0u);
    // The cell exists but names no position: it is free for the header.
    TChessboard out;
    EXPECT_FALSE(PositionOfIndex(MakeTableLayout("Q", false, false), 0, out));
    EXPECT_FALSE(PositionOfIndex(MakeTableLayout("P", false, false), 0, out));
}

TEST(PositionIndex, PawnlessKingOnE4FoldsToD4) {
    EXPECT_EQ(SymmetryWithoutPawns(sq("e4")).Apply(sq("e4")), sq("d4"));
    EXPECT_EQ(PAWNLESS_KING_SLOT[sq("d4")], 9);
    // The columns are mirrored: black king a8 -> h8 (63), queen h1 -> a1 (0).
    // (0 * 64 + 63) * 10 + 9
    const TChessboard b = boardWith({{"e4", WK}, {"a8", BK}, {"h1", WQ}});
    EXPECT_EQ(indexOf("Q", b), 639u);
}

TEST(PositionIndex, PawnlessKingOnB3FlipsToC2) {
    const TSymmetry symmetry = SymmetryWithoutPawns(sq("b3"));
    EXPECT_EQ(symmetry.mirror, 0);
    EXPECT_TRUE(symmetry.flip);
    EXPECT_EQ(symmetry.Apply(sq("b3")), sq("c2"));
    EXPECT_EQ(PAWNLESS_KING_SLOT[sq("c2")], 5);
    // Transposed: queen a8 -> h1 (7), black king h8 stays (63).
    // (7 * 64 + 63) * 10 + 5
    const TChessboard b = boardWith({{"b3", WK}, {"h8", BK}, {"a8", WQ}});
    EXPECT_EQ(indexOf("Q", b), 5115u);
}

TEST(PositionIndex, KingOnTheDiagonalKeepsBothMirrorImages) {
    const TChessboard a3 = boardWith({{"b2", WK}, {"h8", BK}, {"a3", WQ}});
    const TChessboard c1 = boardWith({{"b2", WK}, {"h8", BK}, {"c1", WQ}});
    // King b2 is slot 4. (16 * 64 + 63) * 10 + 4 and (2 * 64 + 63) * 10 + 4.
    EXPECT_EQ(indexOf("Q", a3), 10874u);
    EXPECT_EQ(indexOf("Q", c1), 1914u);
    const TTableLayout layout = MakeTableLayout("Q", false, false);
    TChessboard out;
    ASSERT_TRUE(PositionOfIndex(layout, 10874, out));
    EXPECT_EQ(out.m_aSquares[sq("a3")], WQ);
    ASSERT_TRUE(PositionOfIndex(layout, 1914, out));
    EXPECT_EQ(out.m_aSquares[sq("c1")], WQ);
}

TEST(PositionIndex, SlotTablesAreInverse) {
    const uint8_t triangle[] = {sq("a1"), sq("b1"), sq("c1"), sq("d1"), sq("b2"),
                                sq("c2"), sq("d2"), sq("c3"), sq("d3"), sq("d4")};
    int inside = 0;
    for (int s = 0; s < 64; ++s)
        if (PAWNLESS_KING_SLOT[s] != NO_KING_SLOT) {
            ++inside;
            EXPECT_EQ(PAWNLESS_SLOT_SQUARE[PAWNLESS_KING_SLOT[s]], s);
        }
    EXPECT_EQ(inside, 10);
    for (int i = 0; i < 10; ++i) EXPECT_EQ(PAWNLESS_SLOT_SQUARE[i], triangle[i]);
    // Every king square folds into the triangle, and with pawns into files a-d.
    for (int s = 0; s < 64; ++s) {
        EXPECT_NE(PAWNLESS_KING_SLOT[SymmetryWithoutPawns(s).Apply(s)], NO_KING_SLOT) << s;
        const int folded = SymmetryWithPawns(s).Apply(s);
        EXPECT_LT(folded & 7, 4) << s;
        EXPECT_EQ(KingSquareOfSlotWithPawns(KingSlotWithPawns(folded)), folded);
    }
}

TEST(PositionIndex, PawnTableMirrorsColumnsOnly) {
    // King e2 -> d2 (slot 1 * 4 + 3 = 7), black king e8 -> d8 (59), pawn h4 -> a4 (24, digit 16).
    // (16 * 64 + 59) * 32 + 7
    const TChessboard b = boardWith({{"e2", WK}, {"e8", BK}, {"h4", WP}});
    EXPECT_EQ(indexOf("P", b), 34663u);
    const TChessboard mirrored = boardWith({{"d2", WK}, {"d8", BK}, {"a4", WP}});
    EXPECT_EQ(indexOf("P", mirrored), 34663u);
    // Rows are not folded with pawns: the same men one row up differ.
    const TChessboard up = boardWith({{"d3", WK}, {"d8", BK}, {"a4", WP}});
    EXPECT_NE(indexOf("P", up), 34663u);
}

TEST(PositionIndex, FirstManIsTheSlowestDigit) {
    // Qr: queen, then rook, black king, white king slot. King a1 is slot 0.
    // ((1 * 64 + 2) * 64 + 63) * 10: the queen on b1, the rook on c1, black king h8.
    const TChessboard qr = boardWith({{"a1", WK}, {"h8", BK}, {"b1", WQ}, {"c1", BR}});
    EXPECT_EQ(indexOf("Qr", qr), ((1u * 64 + 2) * 64 + 63) * 10);
    // Two like men: the lower square first.
    const TChessboard rr = boardWith({{"a1", WK}, {"h8", BK}, {"c1", WR}, {"b1", WR}});
    EXPECT_EQ(indexOf("RR", rr), ((1u * 64 + 2) * 64 + 63) * 10);
}

TEST(PositionIndex, AllEightImagesShareTheIndex) {
    const TTableLayout layout = MakeTableLayout("Rn", false, false);
    const uint64_t expected = indexOf("Rn", boardWith({{"c2", WK}, {"g7", BK}, {"b6", WR}, {"e3", BN}}));
    for (int which = 0; which < 8; ++which) {
        TChessboard b = EmptyChessboard();
        b.m_shPliesLeft = 1;
        PutMan(b, image(sq("c2"), which), WK);
        PutMan(b, image(sq("g7"), which), BK);
        PutMan(b, image(sq("b6"), which), WR);
        PutMan(b, image(sq("e3"), which), BN);
        EXPECT_EQ(IndexOfPosition(layout, b), expected) << which;
    }
}

// Every index of a three-man table: the positions it names come back to it,
// and exactly `valid` of them name one.
void roundTripAll(const char* type, uint64_t valid) {
    const TTableLayout layout = MakeTableLayout(type, false, false);
    const uint64_t size = TableSize(layout);
    uint64_t positions = 0;
    for (uint64_t index = 0; index < size; ++index) {
        TChessboard b;
        if (!PositionOfIndex(layout, index, b)) continue;
        ++positions;
        ASSERT_EQ(IndexOfPosition(layout, b), index) << type;
    }
    EXPECT_EQ(positions, valid) << type;
}

TEST(PositionIndex, EveryIndexOfTheThreeManTablesRoundTrips) {
    // Pawnless: 10 king slots, 63 squares for the black king, 62 for the man.
    for (const char* type : {"Q", "R", "B", "N", "q", "r", "b", "n"}) roundTripAll(type, 10 * 63 * 62);
    // With a pawn: 24 king slots on rows 2-7 leave the pawn 46 squares beside a
    // black king on those rows (47 of them) and 47 beside one on rows 1 and 8
    // (16); the 8 slots on rows 1 and 8 leave it 47 and 48 of 48 and 15.
    // 24 * (47 * 46 + 16 * 47) + 8 * (48 * 47 + 15 * 48) = 69936 + 23808
    roundTripAll("P", 93744);
    roundTripAll("p", 93744);
}

TEST(PositionIndex, EveryIndexOfAFourManTableRoundTrips) {
    // 10 * 63 * 62 * 61 positions of Qr.
    roundTripAll("Qr", 10 * 63 * 62 * 61);
}

// Every `stride`-th index: a position comes back to its index.
void roundTripSample(const TTableLayout& layout, uint64_t stride, uint64_t minimumPositions) {
    const uint64_t size = TableSize(layout);
    uint64_t positions = 0;
    for (uint64_t index = 0; index < size; index += stride) {
        TChessboard b;
        if (!PositionOfIndex(layout, index, b)) continue;
        ++positions;
        ASSERT_EQ(IndexOfPosition(layout, b), index) << layout.sType << " " << index;
    }
    EXPECT_GE(positions, minimumPositions) << layout.sType;
}

TEST(PositionIndex, SampledIndicesOfFiveManTablesRoundTrip) {
    // 10 * 64^4 = 167772160 cells; about one in 10007 of them.
    roundTripSample(MakeTableLayout("QRr", false, false), 10007, 14000);
    // 32 * 64 * 48^2 cells, compact: one in 1009.
    roundTripSample(MakeTableLayout("Pp", true, false), 1009, 4000);
}

TEST(PositionIndex, LikeMenWithoutMapperComeBackSorted) {
    // Without a mapper the index of mirrored like men is the index of their
    // squares in the order the mirror left them; the position of the index
    // is still the same position.
    const TTableLayout layout = MakeTableLayout("RRr", false, false);
    const TChessboard b = boardWith({{"f5", WK}, {"a8", BK}, {"b1", WR}, {"h2", WR}, {"d7", BR}});
    TChessboard back;
    ASSERT_TRUE(PositionOfIndex(layout, IndexOfPosition(layout, b), back));
    // Folded: xor 63. f5 -> c4, which the diagonal takes to d3.
    for (int s = 0; s < 64; ++s) {
        const int folded = SymmetryWithoutPawns(sq("f5")).Apply(s);
        EXPECT_EQ(back.m_aSquares[folded], b.m_aSquares[s]) << s;
    }
}

TEST(PositionIndex, MapperTablesRoundTrip) {
    TCombinationMappers mappers;
    TTableLayout rooks = MakeTableLayout("RRrr", false, true);
    ASSERT_TRUE(AttachCombinationMappers(rooks, mappers));
    ASSERT_NE(rooks.apMapper[0], nullptr);
    EXPECT_EQ(rooks.apMapper[0], rooks.apMapper[1]);
    roundTripSample(rooks, 100003, 1000);
    TTableLayout pawns = MakeTableLayout("PPPp", true, true);
    ASSERT_TRUE(AttachCombinationMappers(pawns, mappers));
    EXPECT_NE(pawns.apMapper[0], nullptr);
    EXPECT_EQ(pawns.apMapper[1], nullptr);
    roundTripSample(pawns, 100003, 1000);
}

TEST(PositionIndex, MapperIndexIsTheSetNumber) {
    TCombinationMappers mappers;
    TTableLayout layout = MakeTableLayout("RRrr", false, true);
    ASSERT_TRUE(AttachCombinationMappers(layout, mappers));
    // King a1, no fold. White rooks b1 c1: set (1, 2) is 63 + 0 = 63 (the 63
    // pairs with a1 come first). Black rooks a2 b2 (8, 9): the pairs that
    // start on a1 (63), b1 (62) ... h1 (56) come first, 476 in all.
    const TChessboard b = boardWith({{"a1", WK}, {"h8", BK}, {"b1", WR}, {"c1", WR}, {"a2", BR}, {"b2", BR}});
    EXPECT_EQ(IndexOfPosition(layout, b), ((63u * 2016 + 476) * 64 + 63) * 10);
    // Mirrored to the other corner the squares come out of the fold unsorted; the set is the same.
    TChessboard h8 = EmptyChessboard();
    h8.m_shPliesLeft = 1;
    for (const auto& [square, piece] :
         {std::pair{"a1", WK}, {"h8", BK}, {"b1", WR}, {"c1", WR}, {"a2", BR}, {"b2", BR}})
        PutMan(h8, sq(square) ^ 63, piece);
    EXPECT_EQ(IndexOfPosition(layout, h8), ((63u * 2016 + 476) * 64 + 63) * 10);
}

TEST(PositionIndex, MappersNeedFourMenBesideTheKings) {
    EXPECT_FALSE(MakeTableLayout("RRr", false, true).bUsesMappers);
    EXPECT_TRUE(MakeTableLayout("RRrr", false, true).bUsesMappers);
    EXPECT_EQ(TableSize("RRr", false, true), 10ull << 24);
}

TEST(PositionIndex, TableSizes) {
    // Three men pawnless: 10 * 64^2.
    EXPECT_EQ(TableSize("Q", false, false), 40960u);
    EXPECT_EQ(TableSize("Qr", false, false), 10ull * 64 * 64 * 64);
    EXPECT_EQ(TableSize("P", false, false), 32ull * 64 * 64);
    EXPECT_EQ(TableSize("P", true, false), 32ull * 64 * 48);
    EXPECT_EQ(TableSize("PPp", true, false), 32ull * 64 * 48 * 48 * 48);
    EXPECT_EQ(TableSize("QPp", true, false), 32ull * 64 * 64 * 48 * 48);
    // X widens to 32 slots; pawn-compact takes an eighth of that.
    EXPECT_EQ(TableSize("X", false, false), 32ull * 64 * 64);
    EXPECT_EQ(TableSize("X", true, false), 32ull * 64 * 64 / 8);
    // Mappers: the set count in place of the run's share.
    EXPECT_EQ(TableSize("QQQQ", false, true), 10ull * 64 * 635376);
    EXPECT_EQ(TableSize("RRRRR", false, true), 10ull * 64 * 7624512);
    EXPECT_EQ(TableSize("RRrr", false, true), 10ull * 64 * 2016 * 2016);
    EXPECT_EQ(TableSize("PPPp", true, true), 32ull * 64 * 17296 * 48);
    EXPECT_EQ(TableSize("PPpp", true, true), 32ull * 64 * 1128 * 1128);
    EXPECT_EQ(TableSize("QRpp", true, true), 32ull * 64 * 64 * 64 * 1128);
    // Not compact, the mapped pawns' share was 64 per pawn.
    EXPECT_EQ(TableSize("PPpp", false, true), 32ull * 64 * 1128 * 1128);
    EXPECT_EQ(TableSize("QRBN", false, true), 10ull * 64 * 64 * 64 * 64 * 64);
    EXPECT_EQ(TableSize("", false, false), 0u);
    EXPECT_EQ(TableSize("K", false, false), 0u);
}

TEST(PositionIndex, PositionOfIndexRefusesSharedSquares) {
    const TTableLayout layout = MakeTableLayout("Qr", false, false);
    TChessboard b;
    // King a1 (slot 0), black king b1, queen a1, rook c1.
    EXPECT_FALSE(PositionOfIndex(layout, ((0u * 64 + 2) * 64 + 1) * 10, b));
    // Queen and rook both on c1.
    EXPECT_FALSE(PositionOfIndex(layout, ((2u * 64 + 2) * 64 + 1) * 10, b));
    // Beyond the table.
    EXPECT_FALSE(PositionOfIndex(layout, TableSize(layout), b));
    // Queen d1, rook c1: a position, White to move, with its counts.
    ASSERT_TRUE(PositionOfIndex(layout, ((3u * 64 + 2) * 64 + 1) * 10, b));
    EXPECT_EQ(b.m_aSquares[sq("a1")], WK);
    EXPECT_EQ(b.m_aSquares[sq("b1")], BK);
    EXPECT_EQ(b.m_aSquares[sq("d1")], WQ);
    EXPECT_EQ(b.m_aSquares[sq("c1")], BR);
    EXPECT_EQ(b.m_nWhiteQueens, 1);
    EXPECT_EQ(b.m_nBlackRooks, 1);
    EXPECT_TRUE(b.whiteToMove());
}

TEST(PositionIndex, LayoutOfATypeText) {
    const TTableLayout layout = MakeTableLayout("QRRp", true, false);
    EXPECT_EQ(layout.nLetters, 4);
    EXPECT_EQ(layout.nGroups, 3);
    EXPECT_EQ(layout.aGroupFirst[1], 1);
    EXPECT_EQ(layout.aGroupSize[1], 2);
    EXPECT_EQ(layout.aPiece[3], BP);
    EXPECT_TRUE(layout.aPawn[3]);
    EXPECT_TRUE(layout.bHasPawns);
    EXPECT_EQ(layout.nKingSlots, 32);
    EXPECT_EQ(MakeTableLayout("QR", false, false).nKingSlots, 10);
    EXPECT_THROW(MakeTableLayout("QrQ", false, false), std::runtime_error);
    EXPECT_THROW(MakeTableLayout("Kq", false, false), std::runtime_error);
    EXPECT_THROW(MakeTableLayout("", false, false), std::runtime_error);
    // X has no man on a board: its cells name no position.
    TChessboard b;
    EXPECT_FALSE(PositionOfIndex(MakeTableLayout("X", false, false), 12345, b));
}

} // namespace
} // namespace zorvane
