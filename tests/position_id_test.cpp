// Position identifiers: the bit string of the squares, its two alphanumeric
// texts, and the register hash.
#include "core/chess_exception.h"
#include "core/piece.h"
#include "core/position_id.h"
#include "test_squares.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace zorvane {
namespace {

constexpr uint8_t PIECES_BY_CODE[12] = {WK, BK, WP, BP, WQ, BQ, WR, BR, WB, BB, WN, BN};

struct Squares {
    uint8_t s[64] = {};
};

Squares twoKings() {
    Squares b;
    b.s[sq("e1")] = WK;
    b.s[sq("e8")] = BK;
    return b;
}

std::string idMessage(const Squares& b) {
    try {
        ChessboardIdFromSquares(b.s);
    } catch (const ChessException& e) {
        return e.what();
    }
    return "";
}

std::string readMessage(const TChessboardId& id) {
    Squares out;
    try {
        SquaresFromChessboardId(id, out.s);
    } catch (const ChessException& e) {
        return e.what();
    }
    return "";
}

TEST(ChessboardId, TwoKingsTakeSeventyTwoBits) {
    const TChessboardId id = ChessboardIdFromSquares(twoKings().s);
    EXPECT_EQ(id.m_nBits, 72);
    // e1 is bit 4 (code 0: four zero bits follow); e8 is bit 64 (code 1: bit 65 set).
    EXPECT_EQ(id.m_aBits[0], 0x10);
    for (int i = 1; i < 8; ++i) EXPECT_EQ(id.m_aBits[i], 0) << i;
    EXPECT_EQ(id.m_aBits[8], 0x03);
    for (int i = 9; i < 40; ++i) EXPECT_EQ(id.m_aBits[i], 0) << i;
    const std::string text = ToAlphanum6(id);
    EXPECT_EQ(text.size(), 12u);
    EXPECT_EQ(text, "g000000000M0");
}

TEST(ChessboardId, EveryPieceByteRoundTrips) {
    for (int code = 0; code < 12; ++code) {
        Squares b;
        b.s[0] = PIECES_BY_CODE[code];
        b.s[37] = PIECES_BY_CODE[code];
        const TChessboardId id = ChessboardIdFromSquares(b.s);
        EXPECT_EQ(id.m_nBits, 62 + 10) << code;
        // A man on a1 is a 1 bit and then its code: the first character is 1 + 2 * code.
        EXPECT_EQ(id.m_aBits[0] & 31, 1 + 2 * code) << code;
        Squares back;
        std::memset(back.s, 0xEE, 64);
        SquaresFromChessboardId(id, back.s);
        EXPECT_EQ(std::memcmp(b.s, back.s, 64), 0) << code;
    }
    // All twelve at once.
    Squares all;
    for (int code = 0; code < 12; ++code) all.s[5 * code] = PIECES_BY_CODE[code];
    const TChessboardId id = ChessboardIdFromSquares(all.s);
    EXPECT_EQ(id.m_nBits, 52 + 12 * 5);
    Squares back;
    SquaresFromChessboardId(id, back.s);
    EXPECT_EQ(std::memcmp(all.s, back.s, 64), 0);
}

TEST(ChessboardId, CodeTableInTheFirstCharacter) {
    const char expected[12] = {'1', '3', '5', '7', '9', 'b', 'd', 'f', 'h', 'j', 'l', 'n'};
    for (int code = 0; code < 12; ++code) {
        Squares b;
        b.s[0] = PIECES_BY_CODE[code];
        EXPECT_EQ(ToAlphanum6(ChessboardIdFromSquares(b.s)), std::string(1, expected[code]) + "00000000000")
            << code;
    }
}

TEST(ChessboardId, ByteThatIsNoManIsRefused) {
    for (const uint8_t piece : {static_cast<uint8_t>(BP | PAWN_BLOCK_MARK), static_cast<uint8_t>(WP | 32),
                                static_cast<uint8_t>(WK | 32), uint8_t{1}, uint8_t{32}, uint8_t{255}}) {
        Squares b = twoKings();
        b.s[sq("d4")] = piece;
        EXPECT_EQ(idMessage(b), "Unknown figure code") << int(piece);
    }
    EXPECT_EQ(idMessage(twoKings()), "");
}

TEST(ChessboardId, BitsRunningOutEarly) {
    TChessboardId empty;
    EXPECT_EQ(readMessage(empty), "Wrong chessboard id");
    TChessboardId short63;
    short63.m_nBits = 63;
    EXPECT_EQ(readMessage(short63), "Wrong chessboard id");
    TChessboardId full64;
    full64.m_nBits = 64;
    EXPECT_EQ(readMessage(full64), "");
    // A man whose code is cut off.
    TChessboardId cut;
    cut.m_nBits = 3;
    cut.m_aBits[0] = 1;
    EXPECT_EQ(readMessage(cut), "Wrong chessboard id");
    // The last man's code must be complete too.
    Squares h8 = twoKings();
    h8.s[sq("h8")] = WN;
    TChessboardId lastCut = ChessboardIdFromSquares(h8.s);
    ASSERT_EQ(lastCut.m_nBits, 61 + 3 * 5);
    lastCut.m_nBits = 75;
    EXPECT_EQ(readMessage(lastCut), "Wrong chessboard id");
}

TEST(ChessboardId, CodesAboveElevenAreRefused) {
    for (int code = 12; code < 16; ++code) {
        TChessboardId id;
        id.m_nBits = 320;
        id.m_aBits[0] = static_cast<uint8_t>(1 | (code << 1));
        EXPECT_EQ(readMessage(id), "Unknown figure short code") << code;
    }
    TChessboardId eleven;
    eleven.m_nBits = 68;
    eleven.m_aBits[0] = static_cast<uint8_t>(1 | (11 << 1));
    Squares out;
    SquaresFromChessboardId(eleven, out.s);
    EXPECT_EQ(out.s[0], BN);
}

TEST(ChessboardId, Alphanum6RoundTrip) {
    TChessboardId id;
    ASSERT_TRUE(ChessboardIdFromAlphanum6("g000000000M0", id));
    EXPECT_EQ(id.m_nBits, 72);
    Squares back;
    SquaresFromChessboardId(id, back.s);
    EXPECT_EQ(std::memcmp(back.s, twoKings().s, 64), 0);

    // The initial position.
    Squares initial;
    const uint8_t backRow[8] = {WR, WN, WB, WQ, WK, WB, WN, WR};
    for (int c = 0; c < 8; ++c) {
        initial.s[c] = backRow[c];
        initial.s[8 + c] = WP;
        initial.s[48 + c] = BP;
        initial.s[56 + c] = static_cast<uint8_t>(backRow[c] ^ WHITE ^ BLACK);
    }
    const TChessboardId start = ChessboardIdFromSquares(initial.s);
    EXPECT_EQ(start.m_nBits, 32 + 32 * 5);
    const std::string text = ToAlphanum6(start);
    EXPECT_EQ(text.size(), 32u);
    TChessboardId read;
    ASSERT_TRUE(ChessboardIdFromAlphanum6(text, read));
    EXPECT_EQ(read.m_nBits, 192);
    EXPECT_EQ(std::memcmp(read.m_aBits, start.m_aBits, 40), 0);
    Squares again;
    SquaresFromChessboardId(read, again.s);
    EXPECT_EQ(std::memcmp(again.s, initial.s, 64), 0);
    EXPECT_EQ(ToAlphanum6(read), text);
}

TEST(ChessboardId, Alphanum6Alphabet) {
    TChessboardId id;
    ASSERT_TRUE(ChessboardIdFromAlphanum6("09azAZ()", id));
    EXPECT_EQ(id.m_nBits, 48);
    EXPECT_EQ(ToAlphanum6(id), "09azAZ()");
    ASSERT_TRUE(ChessboardIdFromAlphanum6("()", id));
    EXPECT_EQ(id.m_nBits, 12);
    EXPECT_EQ(id.m_aBits[0], 0xFE); // 62 then the low two bits of 63
    EXPECT_EQ(id.m_aBits[1], 0x0F);
    EXPECT_TRUE(ChessboardIdFromAlphanum6("", id));
    EXPECT_EQ(id.m_nBits, 0);
}

TEST(ChessboardId, ForeignCharactersGiveFalse) {
    TChessboardId id;
    for (const char* text : {"g0-0", "#", "g000000000M ", "[", "\xe9", "g00_"}) {
        EXPECT_FALSE(ChessboardIdFromAlphanum6(text, id)) << text;
    }
    EXPECT_FALSE(ChessboardIdFromAlphanum5("w", id));
    EXPECT_FALSE(ChessboardIdFromAlphanum5("A", id));
    EXPECT_FALSE(ChessboardIdFromAlphanum5("(", id));
    EXPECT_TRUE(ChessboardIdFromAlphanum5("v", id));
    EXPECT_EQ(id.m_nBits, 5);
    EXPECT_EQ(id.m_aBits[0], 31);
}

TEST(ChessboardId, Alphanum5RoundTrip) {
    const TChessboardId id = ChessboardIdFromSquares(twoKings().s);
    const std::string text = ToAlphanum5(id);
    EXPECT_EQ(text, "g00000000000g10");
    TChessboardId read;
    ASSERT_TRUE(ChessboardIdFromAlphanum5(text, read));
    EXPECT_EQ(read.m_nBits, 75);
    EXPECT_EQ(std::memcmp(read.m_aBits, id.m_aBits, 40), 0);
    Squares back;
    SquaresFromChessboardId(read, back.s);
    EXPECT_EQ(std::memcmp(back.s, twoKings().s, 64), 0);
    EXPECT_EQ(ToAlphanum5(read), text);
}

TEST(ChessboardId, NoRoomBeyondFortyBytes) {
    // 53 characters are 318 bits; a 54th may only pad with zeros up to 320.
    TChessboardId id;
    EXPECT_TRUE(ChessboardIdFromAlphanum6(std::string(53, '0'), id));
    EXPECT_EQ(id.m_nBits, 318);
    EXPECT_TRUE(ChessboardIdFromAlphanum6(std::string(54, '0'), id));
    EXPECT_EQ(id.m_nBits, 320);
    try {
        ChessboardIdFromAlphanum6(std::string(53, '0') + "z", id);
        ADD_FAILURE() << "no exception";
    } catch (const ChessException& e) {
        EXPECT_EQ(std::string(e.what()), "Exception in TChessboardId");
    }
    // 64 men fill all 320 bits.
    Squares full;
    for (int i = 0; i < 64; ++i) full.s[i] = WP;
    EXPECT_EQ(ChessboardIdFromSquares(full.s).m_nBits, 320);
}

TEST(RegisterHash, WeightIsSquarePlusOneSquared) {
    Squares b;
    EXPECT_EQ(RegisterHash(b.s), 0u);
    b.s[sq("a1")] = WK;
    EXPECT_EQ(RegisterHash(b.s), 65u);
    b = Squares{};
    b.s[sq("a2")] = WK;
    EXPECT_EQ(RegisterHash(b.s), 65u * 81u);
    b = Squares{};
    b.s[sq("h8")] = WK;
    EXPECT_EQ(RegisterHash(b.s), 65u * 4096u);
    b = Squares{};
    b.s[sq("h8")] = 255;
    b.s[sq("a1")] = 1;
    EXPECT_EQ(RegisterHash(b.s), 255u * 4096u + 1u);
    Squares all;
    std::memset(all.s, 255, 64);
    EXPECT_EQ(RegisterHash(all.s), 255u * 89440u);
}

TEST(RegisterHash, MirroredPositionsDiffer) {
    Squares left;
    left.s[sq("a1")] = WK;
    left.s[sq("c3")] = BK;
    Squares right;
    right.s[sq("h1")] = WK;
    right.s[sq("f3")] = BK;
    EXPECT_EQ(RegisterHash(left.s), 65u * 1u + 129u * 361u);
    EXPECT_EQ(RegisterHash(right.s), 65u * 64u + 129u * 484u);
    EXPECT_NE(RegisterHash(left.s), RegisterHash(right.s));
    // Colours swapped by a vertical mirror: different too.
    Squares flipped;
    flipped.s[sq("a8")] = BK;
    flipped.s[sq("c6")] = WK;
    EXPECT_EQ(RegisterHash(flipped.s), 129u * 3249u + 65u * 1849u);
    EXPECT_NE(RegisterHash(flipped.s), RegisterHash(left.s));
}

} // namespace
} // namespace zorvane

namespace zorvane {
namespace {

TEST(ChessboardId, FullBoardOfMenReadsBackFromItsText) {
    // 64 men take all 320 bits; the 54th character carries four zero bits of padding.
    uint8_t squares[64];
    for (int i = 0; i < 64; ++i) squares[i] = i % 2 ? BN : WQ;
    const TChessboardId id = ChessboardIdFromSquares(squares);
    ASSERT_EQ(id.m_nBits, 320);
    const std::string text = ToAlphanum6(id);
    ASSERT_EQ(text.size(), 54u);
    TChessboardId back;
    ASSERT_TRUE(ChessboardIdFromAlphanum6(text, back));
    EXPECT_EQ(back.m_nBits, 320);
    uint8_t read[64];
    SquaresFromChessboardId(back, read);
    EXPECT_EQ(std::vector<uint8_t>(read, read + 64), std::vector<uint8_t>(squares, squares + 64));
    // A set bit beyond the 320th is no padding.
    TChessboardId overflow;
    EXPECT_THROW(ChessboardIdFromAlphanum6(text.substr(0, 53) + ")", overflow), ChessException);
}

} // namespace
} // namespace zorvane
