// TMove equality and the two text forms of a move: the writer and the reader.
#include "core/chess_exception.h"
#include "core/move.h"
#include "core/piece.h"
#include "test_squares.h"

#include <gtest/gtest.h>

#include <string>

namespace zorvane {
namespace {

// The message of ParseMove, or "" when it reads the text.
std::string parseMessage(const std::string& text, bool white = true) {
    try {
        ParseMove(text, white);
    } catch (const ChessException& e) {
        return e.what();
    }
    return "";
}

constexpr const char* EMPTY = "Empty string";
constexpr const char* LENGTH = "Improper string length";
constexpr const char* DESCRIPTION = "Improper full description of move";

TEST(MoveRecord, FourBytesAndEqualityIgnoresMarksAndEnPassant) {
    EXPECT_EQ(sizeof(TMove), 4u);
    TMove a = mv("e7", "e8", KIND_QUEEN);
    TMove b = mv("e7", "e8", KIND_QUEEN | 32 | 64);
    b.enPassant = 1;
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a == mv("e7", "e8", KIND_ROOK));
    EXPECT_FALSE(a == mv("e7", "e8"));
    EXPECT_FALSE(mv("e2", "e4") == mv("e2", "e3"));
    EXPECT_FALSE(mv("e2", "e4") == mv("d2", "e4"));
    EXPECT_TRUE(mv("e2", "e2").isNull());
    EXPECT_FALSE(mv("e2", "e4").isNull());
    EXPECT_EQ(b.promotionKind(), KIND_QUEEN);
}

TEST(FormatMove, PawnMovesAndCaptures) {
    EXPECT_EQ(FormatMove(mv("e2", "e4"), WP, false), "e2-e4");
    EXPECT_EQ(FormatMove(mv("d4", "e5"), WP, true), "d4:e5");
    EXPECT_EQ(FormatMove(mv("a7", "a5"), BP, false), "a7-a5");
    EXPECT_EQ(FormatMove(mv("h2", "g1"), BP, true), "h2:g1");
}

TEST(FormatMove, PieceLetterInFront) {
    EXPECT_EQ(FormatMove(mv("g1", "f3"), WN, false), "Ng1-f3");
    EXPECT_EQ(FormatMove(mv("g1", "f3"), WN, true), "Ng1:f3");
    EXPECT_EQ(FormatMove(mv("d8", "h4"), BQ, false), "Qd8-h4");
    EXPECT_EQ(FormatMove(mv("a1", "a8"), WR, true), "Ra1:a8");
    EXPECT_EQ(FormatMove(mv("c1", "h6"), WB, false), "Bc1-h6");
    EXPECT_EQ(FormatMove(mv("e1", "f1"), WK, false), "Ke1-f1");
    EXPECT_EQ(FormatMove(mv("e8", "d7"), BK, true), "Ke8:d7");
    // A byte that is no man gets the letter of the unknown kind.
    EXPECT_EQ(FormatMove(mv("e2", "e4"), 0, false), "Ee2-e4");
}

TEST(FormatMove, PromotionLetterAtTheEnd) {
    EXPECT_EQ(FormatMove(mv("e7", "e8", KIND_QUEEN), WP, false), "e7-e8Q");
    EXPECT_EQ(FormatMove(mv("d7", "e8", KIND_ROOK), WP, true), "d7:e8R");
    EXPECT_EQ(FormatMove(mv("b2", "b1", KIND_BISHOP), BP, false), "b2-b1B");
    EXPECT_EQ(FormatMove(mv("b2", "a1", KIND_KNIGHT), BP, true), "b2:a1N");
    EXPECT_EQ(FormatMove(mv("e7", "e8", KIND_KING), WP, false), "e7-e8K");
    EXPECT_EQ(FormatMove(mv("e7", "e8", KIND_PAWN), WP, false), "e7-e8 ");
    EXPECT_EQ(FormatMove(mv("e7", "e8", 3), WP, false), "e7-e8E");
    // Ordering marks above the kind do not show.
    EXPECT_EQ(FormatMove(mv("e7", "e8", KIND_QUEEN | 32 | 64), WP, false), "e7-e8Q");
}

TEST(FormatMove, Castlings) {
    EXPECT_EQ(FormatMove(mv("e1", "g1"), WK, false), "0-0");
    EXPECT_EQ(FormatMove(mv("e1", "c1"), WK, false), "0-0-0");
    EXPECT_EQ(FormatMove(mv("e8", "g8"), BK, false), "0-0");
    EXPECT_EQ(FormatMove(mv("e8", "c8"), BK, false), "0-0-0");
    // A rook moving two columns is no castling.
    EXPECT_EQ(FormatMove(mv("e1", "g1"), WR, false), "Re1-g1");
}

TEST(FormatMove, NullMoveAndSquaresOffTheBoard) {
    EXPECT_EQ(FormatMove(mv("e2", "e2"), WP, false), "-");
    EXPECT_EQ(FormatMove(mv("a1", "a1"), 0, true), "-");
    TMove high = mv("e2", "e4");
    high.from = 64;
    EXPECT_EQ(FormatMove(high, WP, false), "");
    high = mv("e2", "e4");
    high.to = 200;
    EXPECT_EQ(FormatMove(high, WR, false), "");
}

TEST(FormatMove, LogForm) {
    EXPECT_EQ(FormatLogMove(mv("e2", "e4")), "e2-e4\n");
    EXPECT_EQ(FormatLogMove(mv("g1", "f3")), "g1-f3\n");
    EXPECT_EQ(FormatLogMove(mv("h7", "h8", KIND_QUEEN)), "h7-h8\n");
}

TEST(ParseMove, SquaresAndSeparators) {
    TMove m = ParseMove("e2-e4", true);
    EXPECT_EQ(m.from, sq("e2"));
    EXPECT_EQ(m.to, sq("e4"));
    EXPECT_EQ(m.promotion, 0);
    EXPECT_EQ(m.enPassant, 0);
    m = ParseMove("d4:e5", false);
    EXPECT_EQ(m.from, sq("d4"));
    EXPECT_EQ(m.to, sq("e5"));
    m = ParseMove("a1-h8", true);
    EXPECT_EQ(m.from, 0);
    EXPECT_EQ(m.to, 63);
}

TEST(ParseMove, PieceLetterIsSkipped) {
    TMove m = ParseMove("Ng1-f3", true);
    EXPECT_EQ(m.from, sq("g1"));
    EXPECT_EQ(m.to, sq("f3"));
    EXPECT_EQ(m.promotion, 0);
    m = ParseMove("Qd8:h4", false);
    EXPECT_EQ(m.from, sq("d8"));
    EXPECT_EQ(m.to, sq("h4"));
    m = ParseMove("Ke1-e2", true);
    EXPECT_EQ(m.from, sq("e1"));
    EXPECT_EQ(m.to, sq("e2"));
}

TEST(ParseMove, Promotions) {
    EXPECT_EQ(ParseMove("e7-e8Q", true).promotion, KIND_QUEEN);
    EXPECT_EQ(ParseMove("e7-e8R", true).promotion, KIND_ROOK);
    EXPECT_EQ(ParseMove("d7:e8B", true).promotion, KIND_BISHOP);
    EXPECT_EQ(ParseMove("b2-b1N", false).promotion, KIND_KNIGHT);
    const TMove m = ParseMove("b2:a1N", false);
    EXPECT_EQ(m.from, sq("b2"));
    EXPECT_EQ(m.to, sq("a1"));
}

TEST(ParseMove, CastlingForBothSides) {
    TMove m = ParseMove("0-0", true);
    EXPECT_EQ(m.from, sq("e1"));
    EXPECT_EQ(m.to, sq("g1"));
    m = ParseMove("0-0-0", true);
    EXPECT_EQ(m.from, sq("e1"));
    EXPECT_EQ(m.to, sq("c1"));
    m = ParseMove("0-0", false);
    EXPECT_EQ(m.from, sq("e8"));
    EXPECT_EQ(m.to, sq("g8"));
    m = ParseMove("0-0-0", false);
    EXPECT_EQ(m.from, sq("e8"));
    EXPECT_EQ(m.to, sq("c8"));
    EXPECT_EQ(m.promotion, 0);
}

TEST(ParseMove, BlanksAroundAreTrimmed) {
    TMove m = ParseMove("  e2-e4  ", true);
    EXPECT_EQ(m.from, sq("e2"));
    EXPECT_EQ(m.to, sq("e4"));
    m = ParseMove(" 0-0 ", false);
    EXPECT_EQ(m.from, sq("e8"));
    EXPECT_EQ(m.to, sq("g8"));
    m = ParseMove("0-0-0   ", true);
    EXPECT_EQ(m.to, sq("c1"));
    m = ParseMove(" e7-e8N", true);
    EXPECT_EQ(m.promotion, KIND_KNIGHT);
}

TEST(ParseMove, EmptyText) {
    EXPECT_EQ(parseMessage(""), EMPTY);
    EXPECT_EQ(parseMessage("", false), EMPTY);
    // Blanks alone are no empty text: trimmed, they fail on the length.
    EXPECT_EQ(parseMessage(" "), LENGTH);
    EXPECT_EQ(parseMessage("      ", false), LENGTH);
}

TEST(ParseMove, WrongLength) {
    EXPECT_EQ(parseMessage("e2e4"), LENGTH);
    EXPECT_EQ(parseMessage("e2"), LENGTH);
    EXPECT_EQ(parseMessage("-"), LENGTH);
    EXPECT_EQ(parseMessage("e7-e8QQQ"), LENGTH);
    EXPECT_EQ(parseMessage("  e2e4  "), LENGTH);
    EXPECT_EQ(parseMessage("0-0-0-0"), LENGTH);
    EXPECT_EQ(parseMessage("Qe7-e8QQ"), LENGTH);
}

TEST(ParseMove, WrongDescription) {
    EXPECT_EQ(parseMessage("i2-e4"), DESCRIPTION);
    EXPECT_EQ(parseMessage("e9-e4"), DESCRIPTION);
    EXPECT_EQ(parseMessage("e2-e0"), DESCRIPTION);
    EXPECT_EQ(parseMessage("22-e4"), DESCRIPTION);
    EXPECT_EQ(parseMessage("e2-44"), DESCRIPTION);
    // Seven bytes with a final letter: the blank lands on character 4 of the rest.
    EXPECT_EQ(parseMessage("e2-e4 Q"), DESCRIPTION);
}

TEST(ParseMove, FinalLetterMustNameAFigure) {
    EXPECT_EQ(parseMessage("e7-e8X"), "Unknown figure letter: X");
    EXPECT_EQ(parseMessage("Ne2-e"), "Unknown figure letter: e");
    EXPECT_EQ(parseMessage("O-O"), "Unknown figure letter: O");
}

TEST(ParseMove, SeparatorAndPieceLetterAreNotRead) {
    TMove m = ParseMove("e2*e4", true);
    EXPECT_EQ(m.from, sq("e2"));
    EXPECT_EQ(m.to, sq("e4"));
    m = ParseMove("Xg1-f3", true);
    EXPECT_EQ(m.from, sq("g1"));
    EXPECT_EQ(m.to, sq("f3"));
    m = ParseMove("d4xe5", false);
    EXPECT_EQ(m.from, sq("d4"));
    EXPECT_EQ(m.to, sq("e5"));
}

TEST(ParseMove, LettersInEitherCase) {
    TMove m = ParseMove("E2-E4", true);
    EXPECT_EQ(m.from, sq("e2"));
    EXPECT_EQ(m.to, sq("e4"));
    EXPECT_EQ(ParseMove("e7-e8q", true).promotion, KIND_QUEEN);
    // Polish letters: hetman, wieza, goniec, skoczek.
    EXPECT_EQ(ParseMove("e7-e8H", true).promotion, KIND_QUEEN);
    EXPECT_EQ(ParseMove("e7-e8W", true).promotion, KIND_ROOK);
    EXPECT_EQ(ParseMove("e7-e8G", true).promotion, KIND_BISHOP);
    EXPECT_EQ(ParseMove("e7-e8S", true).promotion, KIND_KNIGHT);
}

TEST(MoveText, WriterAndReaderAgreeOnEveryPair) {
    for (int from = 0; from < 64; ++from)
        for (int to = 0; to < 64; ++to) {
            if (from == to) continue;
            TMove m;
            m.from = static_cast<uint8_t>(from);
            m.to = static_cast<uint8_t>(to);
            for (const bool capture : {false, true}) {
                EXPECT_EQ(ParseMove(FormatMove(m, WQ, capture), true), m) << FormatMove(m, WQ, capture);
                EXPECT_EQ(ParseMove(FormatMove(m, BP, capture), false), m) << FormatMove(m, BP, capture);
            }
        }
    for (const uint8_t kind : {KIND_QUEEN, KIND_ROOK, KIND_BISHOP, KIND_KNIGHT}) {
        const TMove m = mv("c7", "b8", kind);
        EXPECT_EQ(ParseMove(FormatMove(m, WP, true), true), m);
        EXPECT_EQ(ParseMove(FormatMove(m, WP, true), true).promotion, kind);
    }
}

} // namespace
} // namespace zorvane
