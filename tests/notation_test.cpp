// Long and short move texts, the strict reading of typed moves, and the
// conversion of short notation into long.
#include "core/chess_exception.h"
#include "core/fen.h"
#include "core/piece.h"
#include "problems/notation.h"
#include "test_squares.h"
#include "test_positions.h"

#include <gtest/gtest.h>

#include <string>

namespace zorvane {
namespace {

TChessboard position(const std::string& fen, bool whiteToMove = true) {
    return boardFromFen(fen, whiteToMove ? 1 : 2);
}

// The short text of `move` played on `fen`.
std::string shortText(const std::string& fen, TMove move, bool whiteToMove = true) {
    const TChessboard parent = position(fen, whiteToMove);
    TChessboard child;
    EXPECT_TRUE(PlayMove(parent, child, move));
    return FormatShortMove(child);
}

template <typename F> std::string messageOf(F f) {
    try {
        f();
    } catch (const ChessException& e) {
        return e.what();
    }
    return "";
}

std::string onBoardMessage(const TChessboard& board, const std::string& text) {
    return messageOf([&] { ParseMoveOnBoard(board, text); });
}

std::string converted(const TChessboard& board, const std::string& text) {
    const auto result = ConvertShortToLong(board, text);
    return result ? *result : "<none>";
}

const char* const OPENING = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";

TEST(FormatLongMove, NullMoveIsADashWithoutLetter) {
    EXPECT_EQ(FormatLongMove(mv("e2", "e2"), WN, false), "-");
    EXPECT_EQ(FormatLongMove(mv("e2", "e2"), WQ, true), "-");
}

TEST(FormatLongMove, KingTwoFilesIsCastlingOtherMenStayLong) {
    EXPECT_EQ(FormatLongMove(mv("e1", "g1"), WK, false), "0-0");
    EXPECT_EQ(FormatLongMove(mv("e1", "c1"), WK, false), "0-0-0");
    EXPECT_EQ(FormatLongMove(mv("e1", "h1"), WR, false), "Re1-h1");
    EXPECT_EQ(FormatLongMove(mv("e1", "f1"), WK, false), "Ke1-f1");
}

TEST(FormatLongMove, LettersAndCaptures) {
    EXPECT_EQ(FormatLongMove(mv("a7", "a8", KIND_QUEEN), WP, false), "a7-a8Q");
    EXPECT_EQ(FormatLongMove(mv("e1", "e2"), WK, false), "Ke1-e2");
    EXPECT_EQ(FormatLongMove(mv("d1", "d8"), WR, true), "Rd1:d8");
    EXPECT_EQ(FormatLongMove(mv("e4", "d5"), WP, true), "e4:d5");
}

TEST(ParseLongMove, ReadsWhatTheWriterWrites) {
    EXPECT_EQ(ParseLongMove("Rd1:d8", true), mv("d1", "d8"));
    EXPECT_EQ(ParseLongMove("a7-a8Q", true), mv("a7", "a8", KIND_QUEEN));
    EXPECT_EQ(ParseLongMove("0-0", false), mv("e8", "g8"));
    EXPECT_EQ(ParseLongMove("0-0-0", true), mv("e1", "c1"));
    EXPECT_EQ(ParseLongMove(" Ng1-f3 ", true), mv("g1", "f3"));
}

TEST(ParseLongMove, MessageTexts) {
    EXPECT_EQ(messageOf([] { ParseLongMove("", true); }), "Empty string");
    EXPECT_EQ(messageOf([] { ParseLongMove("e2-e", true); }), "Unknown figure letter: e");
    EXPECT_EQ(messageOf([] { ParseLongMove("e7-e8Z", true); }), "Unknown figure letter: Z");
    EXPECT_EQ(messageOf([] { ParseLongMove("e2e4", true); }), "Improper string length");
    EXPECT_EQ(messageOf([] { ParseLongMove("QNe2-e4", true); }), "Improper string length");
    EXPECT_EQ(messageOf([] { ParseLongMove("e2-4e4", true); }), "Improper full description of move");
}

TEST(FormatShortMove, NoOtherFigureNoDisambiguator) {
    EXPECT_EQ(shortText(OPENING, mv("g1", "f3")), "Nf3");
    EXPECT_EQ(shortText(OPENING, mv("e2", "e4")), "e4");
}

TEST(FormatShortMove, OtherOnTheSameFileGivesTheRank) {
    EXPECT_EQ(shortText("4k3/8/8/R7/8/8/8/R3K3", mv("a1", "a3")), "R1a3");
    EXPECT_EQ(shortText("4k3/8/8/R7/8/8/8/R3K3", mv("a5", "a3")), "R5a3");
}

TEST(FormatShortMove, OtherOnAnotherFileGivesTheFile) {
    EXPECT_EQ(shortText("4k3/8/8/8/8/8/8/R4RK1", mv("a1", "d1")), "Rad1");
    EXPECT_EQ(shortText("4k3/8/8/8/8/8/8/R4RK1", mv("f1", "d1")), "Rfd1");
    // With one capture there is a colon after the file.
    EXPECT_EQ(shortText("4k3/8/8/8/8/8/8/R2n1RK1", mv("f1", "d1")), "Rf:d1");
}

TEST(FormatShortMove, SeveralOthersGiveTheWholeSquare) {
    EXPECT_EQ(shortText("8/Q7/8/7k/8/8/8/Q3K1Q1", mv("a1", "d4")), "Qa1-d4");
    EXPECT_EQ(shortText("8/Q7/8/7k/3p4/8/8/Q3K1Q1", mv("a1", "d4")), "Qa1:d4");
}

TEST(FormatShortMove, OnlyLegalMovesOfOthersCount) {
    // The knight on d2 is pinned by the bishop on a5, so Ng1-f3 needs no disambiguator.
    EXPECT_EQ(shortText("7k/8/8/b7/8/8/3N4/4K1N1", mv("g1", "f3")), "Nf3");
    EXPECT_EQ(shortText("7k/8/8/8/8/8/3N4/4K1N1", mv("g1", "f3")), "Ngf3");
}

TEST(FormatShortMove, Captures) {
    EXPECT_EQ(shortText("4k3/8/8/8/8/5p2/8/4K1N1", mv("g1", "f3")), "N:f3");
    EXPECT_EQ(shortText("4k3/8/8/3p4/4P3/8/8/4K3", mv("e4", "d5")), "ed5");
    EXPECT_EQ(shortText("4k3/8/8/3p4/2P1P3/8/8/4K3", mv("c4", "d5")), "c:d5");
}

TEST(FormatShortMove, Castlings) {
    EXPECT_EQ(shortText("4k3/8/8/8/8/8/8/R3K2R", mv("e1", "g1")), "0-0");
    EXPECT_EQ(shortText("4k3/8/8/8/8/8/8/R3K2R", mv("e1", "c1")), "0-0-0");
    EXPECT_EQ(shortText("r3k2r/8/8/8/8/8/8/4K3", mv("e8", "c8"), false), "0-0-0");
}

TEST(FormatShortMove, EnPassantCountsAsCapture) {
    const TChessboard start = position("4k3/3p4/8/4P3/8/8/8/4K3", false);
    TChessboard afterDouble, afterCapture;
    TMove doubleStep = mv("d7", "d5");
    ASSERT_TRUE(PlayMove(start, afterDouble, doubleStep));
    TMove capture = mv("e5", "d6");
    ASSERT_TRUE(PlayMove(afterDouble, afterCapture, capture));
    EXPECT_EQ(capture.enPassant, 1);
    EXPECT_EQ(afterCapture.m_aSquares[sq("d5")], 0);
    EXPECT_EQ(FormatShortMove(afterCapture), "ed6");
}

TEST(FormatShortMove, PromotionLetterAtTheEnd) {
    EXPECT_EQ(shortText("4k3/1P6/8/8/8/8/8/4K3", mv("b7", "b8", KIND_QUEEN)), "b8Q");
    EXPECT_EQ(shortText("r3k3/1P6/8/8/8/8/8/4K3", mv("b7", "a8", KIND_KNIGHT)), "ba8N");
}

TEST(ConvertShortToLong, FiguresAndPawns) {
    const TChessboard opening = position(OPENING);
    EXPECT_EQ(converted(opening, "Nf3"), "Ng1-f3");
    EXPECT_EQ(converted(opening, "e4"), "e2-e4");
    EXPECT_EQ(converted(opening, "e3"), "e2-e3");
    EXPECT_EQ(converted(opening, "Nf3+"), "Ng1-f3");
    EXPECT_EQ(converted(opening, "Nf3 "), "Ng1-f3");
    // The input's own letter leads the result.
    EXPECT_EQ(converted(opening, "Sf3"), "Sg1-f3");
}

TEST(ConvertShortToLong, Disambiguators) {
    EXPECT_EQ(converted(position("4k3/8/8/8/8/8/8/R4RK1"), "Rad1"), "Ra1-d1");
    EXPECT_EQ(converted(position("4k3/8/8/R7/8/8/8/R3K3"), "R1a3"), "Ra1-a3");
    EXPECT_EQ(converted(position("8/Q7/8/7k/8/8/8/Q3K1Q1"), "Qa1d4"), "Qa1-d4");
    // Ambiguous without it: no single move.
    EXPECT_EQ(converted(position("4k3/8/8/8/8/8/8/R4RK1"), "Rd1"), "<none>");
}

TEST(ConvertShortToLong, Captures) {
    const TChessboard board = position("4k3/8/8/3p4/4P3/5p2/8/4K1N1");
    EXPECT_EQ(converted(board, "ed5"), "e4:d5");
    EXPECT_EQ(converted(board, "exd5"), "e4:d5");
    EXPECT_EQ(converted(board, "ed"), "e4:d5");
    EXPECT_EQ(converted(board, "e:d5"), "e4:d5");
    EXPECT_EQ(converted(board, "Nxf3"), "Ng1:f3");
    EXPECT_EQ(converted(board, "N:f3"), "Ng1:f3");
}

TEST(ConvertShortToLong, EnPassantAndPromotion) {
    const TChessboard start = position("4k3/3p4/8/4P3/8/8/8/4K3", false);
    TChessboard afterDouble;
    TMove doubleStep = mv("d7", "d5");
    ASSERT_TRUE(PlayMove(start, afterDouble, doubleStep));
    EXPECT_EQ(converted(afterDouble, "ed6"), "e5:d6");
    EXPECT_EQ(converted(afterDouble, "ed"), "e5:d6");
    EXPECT_EQ(converted(position("4k3/1P6/8/8/8/8/8/4K3"), "b8N"), "b7-b8N");
    EXPECT_EQ(converted(position("4k3/1P6/8/8/8/8/8/4K3"), "b8"), "b7-b8Q");
}

TEST(ConvertShortToLong, LongTextIsNoShortNotation) {
    const TChessboard opening = position(OPENING);
    EXPECT_EQ(converted(opening, "e2-e4"), "<none>");
    EXPECT_EQ(converted(opening, "0-0"), "<none>");
    EXPECT_EQ(converted(position("4k3/8/8/3p4/4P3/8/8/4K3"), "e4:d5"), "<none>");
    EXPECT_EQ(converted(opening, "Nf6"), "<none>");
    EXPECT_EQ(converted(opening, "Xf3"), "<none>");
}

TEST(ParseSquareName, FileAndRankInEitherCase) {
    EXPECT_EQ(ParseSquareName("a1"), 0);
    EXPECT_EQ(ParseSquareName("e4"), sq("e4"));
    EXPECT_EQ(ParseSquareName("E4"), sq("e4"));
    EXPECT_EQ(ParseSquareName("h8"), 63);
}

TEST(ParseSquareName, AnythingElseIsNoSquare) {
    for (const char* text : {"", "e", "e9", "i4", "e0", "4e", "e44", " e4", "Ne4", "I4"})
        EXPECT_FALSE(ParseSquareName(text).has_value()) << text;
}

TEST(ParseMoveOnBoard, LegalMoves) {
    const TChessboard opening = position(OPENING);
    EXPECT_EQ(ParseMoveOnBoard(opening, "e2-e4"), mv("e2", "e4"));
    EXPECT_EQ(ParseMoveOnBoard(opening, "Ng1-f3"), mv("g1", "f3"));
    EXPECT_EQ(ParseMoveOnBoard(opening, "Pe2-e3"), mv("e2", "e3"));
    EXPECT_EQ(ParseMoveOnBoard(position("4k3/8/8/8/8/8/8/R3K2R"), "0-0"), mv("e1", "g1"));
    EXPECT_EQ(ParseMoveOnBoard(position("r3k3/8/8/8/8/8/8/4K3", false), "0-0-0"), mv("e8", "c8"));
    // A pawn on the last row without a letter becomes a queen.
    EXPECT_EQ(ParseMoveOnBoard(position("4k3/1P6/8/8/8/8/8/4K3"), "b7-b8").promotion, KIND_QUEEN);
    EXPECT_EQ(ParseMoveOnBoard(position("4k3/1P6/8/8/8/8/8/4K3"), "b7-b8R").promotion, KIND_ROOK);
}

TEST(ParseMoveOnBoard, EnPassantOnlyAfterTheDoubleStep) {
    const TChessboard start = position("4k3/3p4/8/4P3/8/8/8/4K3", false);
    TChessboard afterDouble;
    TMove doubleStep = mv("d7", "d5");
    ASSERT_TRUE(PlayMove(start, afterDouble, doubleStep));
    const TMove taken = ParseMoveOnBoard(afterDouble, "e5:d6");
    EXPECT_EQ(taken, mv("e5", "d6"));
    EXPECT_EQ(taken.enPassant, 1);
    EXPECT_EQ(onBoardMessage(position("4k3/8/8/3pP3/8/8/8/4K3"), "e5:d6"), "Illegal move");
}

TEST(ParseMoveOnBoard, ImproperMoveDescription) {
    const TChessboard opening = position(OPENING);
    EXPECT_EQ(onBoardMessage(opening, ":e2-e4"), "Improper move description");
    EXPECT_EQ(onBoardMessage(opening, "xe2-e4"), "Improper move description");
    EXPECT_EQ(onBoardMessage(opening, "e3-e4"), "Improper move description");  // no man
    EXPECT_EQ(onBoardMessage(opening, "e7-e5"), "Improper move description");  // not White's
    EXPECT_EQ(onBoardMessage(opening, "Ne2-e4"), "Improper move description"); // letter against man
    EXPECT_EQ(onBoardMessage(opening, "g1-f3"), "Improper move description");  // no letter, no pawn
    EXPECT_EQ(onBoardMessage(opening, "Ra1-a2"), "Improper move description"); // own man on a2
}

TEST(ParseMoveOnBoard, ShortNotationRefused) {
    const TChessboard opening = position(OPENING);
    EXPECT_EQ(onBoardMessage(opening, "e4"), "Short notation not supported.");
    EXPECT_EQ(onBoardMessage(opening, "Nf3"), "Short notation not supported.");
    EXPECT_EQ(onBoardMessage(opening, "e2e4"), "Short notation not supported.");
    EXPECT_EQ(onBoardMessage(position("4k3/8/8/3p4/8/5N2/8/4K3"), "Nfxd4"), "Short notation not supported.");
    EXPECT_EQ(onBoardMessage(position("4k3/8/8/3p4/8/5N2/8/4K3"), "Nf:d4"), "Short notation not supported.");
}

TEST(ParseMoveOnBoard, IllegalMoves) {
    const TChessboard opening = position(OPENING);
    EXPECT_EQ(onBoardMessage(opening, "Ng1-g3"), "Illegal move");
    EXPECT_EQ(onBoardMessage(opening, "e2-e5"), "Illegal move");
    EXPECT_EQ(onBoardMessage(opening, "e2-d3"), "Illegal move");
    EXPECT_EQ(onBoardMessage(opening, "Bc1-e3"), "Illegal move");
    EXPECT_EQ(onBoardMessage(position("4k3/8/8/8/8/8/8/4KB1R"), "0-0"), "Illegal move");
    // Castling onto its own knight is no move at all.
    EXPECT_EQ(onBoardMessage(opening, "0-0"), "Improper move description");
    // The pinned knight may not move.
    EXPECT_EQ(onBoardMessage(position("4r2k/8/8/8/8/8/4N3/4K3"), "Ne2-c3"), "Illegal move");
    // The king may not cross an attacked square when castling.
    EXPECT_EQ(onBoardMessage(position("5r1k/8/8/8/8/8/8/4K2R"), "0-0"), "Illegal move");
    EXPECT_EQ(onBoardMessage(position("4k3/8/8/8/8/8/8/4K2R"), "Ng1-f3"), "Improper move description");
    EXPECT_EQ(onBoardMessage(position("4k3/1P6/8/8/8/8/8/4K3"), "b7-b8K"), "Illegal move");
}

TEST(ParseMoveOnBoard, EmptyAndBadTexts) {
    const TChessboard opening = position(OPENING);
    EXPECT_EQ(onBoardMessage(opening, ""), "Empty string");
    EXPECT_EQ(onBoardMessage(opening, "e2-e4-e5"), "Improper string length");
    EXPECT_EQ(onBoardMessage(opening, "e2-e4X"), "Unknown figure letter: X");
}

} // namespace
} // namespace zorvane
