// FEN: the writer (placement and full form), the reader's faults and its two
// notes, Polish letters, and the letter table.
#include "core/castling.h"
#include "core/chess_exception.h"
#include "core/fen.h"
#include "core/make_move.h"
#include "core/movegen.h"
#include "core/thread_context.h"
#include "test_positions.h"
#include "test_squares.h"

#include <gtest/gtest.h>

#include <cstring>
#include <deque>
#include <memory>
#include <string>

namespace zorvane {
namespace {

constexpr const char* INITIAL = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";

TChessboard freshBoard(int pliesLeft) {
    TChessboard b = EmptyChessboard();
    b.m_shPliesLeft = static_cast<uint16_t>(pliesLeft);
    b.m_shPliesTotal = static_cast<uint16_t>(pliesLeft);
    return b;
}

bool reads(const std::string& fen, FenNotes* notes = nullptr) {
    TChessboard b = freshBoard(1);
    return ReadFen(fen, b, notes);
}

TEST(FenWriter, PlacementOnly) {
    EXPECT_EQ(WriteFen(boardFromFen(INITIAL, 1), true), INITIAL);
    EXPECT_EQ(WriteFen(boardFromFen("4k3/8/8/8/8/8/8/4K3", 1), true), "4k3/8/8/8/8/8/8/4K3");
    EXPECT_EQ(WriteFen(boardFromFen("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R", 1), true),
              "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R");
    EXPECT_EQ(WriteFen(boardFromFen("7k/8/8/8/8/8/8/K7 b - - 0 40", 2), true), "7k/8/8/8/8/8/8/K7");
}

TEST(FenWriter, SideToMoveFollowsThePlies) {
    EXPECT_EQ(WriteFen(boardFromFen(INITIAL, 1), false), std::string(INITIAL) + " w KQkq - 0 1");
    EXPECT_EQ(WriteFen(boardFromFen(INITIAL, 2), false), std::string(INITIAL) + " b KQkq - 0 1");
    // The side named in the text is not read.
    EXPECT_EQ(WriteFen(boardFromFen(std::string(INITIAL) + " b KQkq - 0 1", 7), false),
              std::string(INITIAL) + " w KQkq - 0 1");
}

TEST(FenWriter, CastlingLettersInOrder) {
    EXPECT_EQ(WriteFen(boardFromFen("r3k3/8/8/8/8/8/8/4K2R", 1), false), "r3k3/8/8/8/8/8/8/4K2R w Kq - 0 1");
    EXPECT_EQ(WriteFen(boardFromFen("4k2r/8/8/8/8/8/8/R3K3", 1), false), "4k2r/8/8/8/8/8/8/R3K3 w Qk - 0 1");
    EXPECT_EQ(WriteFen(boardFromFen("4k3/8/8/8/8/8/8/4K3", 1), false), "4k3/8/8/8/8/8/8/4K3 w - - 0 1");
    // A rook off its corner, or a king off its square, gives no letter.
    EXPECT_EQ(WriteFen(boardFromFen("1r2k2r/8/8/8/8/8/8/R4K1R", 1), false),
              "1r2k2r/8/8/8/8/8/8/R4K1R w k - 0 1");
}

TEST(FenWriter, CastlingRightsFromTheParentChain) {
    GameLine line(boardFromFen("r3k2r/8/8/8/8/8/8/R3K2R", 9));
    ASSERT_TRUE(line.play("h1-h2"));
    EXPECT_EQ(WriteFen(line.last(), false), "r3k2r/8/8/8/8/8/7R/R3K3 b Qkq - 0 1");
    ASSERT_TRUE(line.play("e8-d8"));
    ASSERT_TRUE(line.play("h2-h1"));
    EXPECT_EQ(WriteFen(line.last(), false), "r2k3r/8/8/8/8/8/8/R3K2R b Q - 0 2");
}

TEST(FenWriter, EnPassantSquareAndMoveNumber) {
    GameLine line(boardFromFen(INITIAL, 9));
    ASSERT_TRUE(line.play("e2-e4"));
    EXPECT_EQ(WriteFen(line.last(), false), "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1");
    ASSERT_TRUE(line.play("c7-c5"));
    EXPECT_EQ(WriteFen(line.last(), false), "rnbqkbnr/pp1ppppp/8/2p5/4P3/8/PPPP1PPP/RNBQKBNR w KQkq c6 0 2");
    ASSERT_TRUE(line.play("g1-f3"));
    EXPECT_EQ(WriteFen(line.last(), false), "rnbqkbnr/pp1ppppp/8/2p5/4P3/5N2/PPPP1PPP/RNBQKB1R b KQkq - 0 2");
    ASSERT_TRUE(line.play("d7-d6"));
    EXPECT_EQ(WriteFen(line.last(), false),
              "rnbqkbnr/pp2pppp/3p4/2p5/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq - 0 3");

    // Plies done count from m_shPliesTotal.
    TChessboard deep = boardFromFen("4k3/8/8/8/8/8/8/4K3", 11);
    deep.m_shPliesTotal = 21;
    EXPECT_EQ(WriteFen(deep, false), "4k3/8/8/8/8/8/8/4K3 w - - 0 6");
}

TEST(FenWriter, NoEnPassantSquareWithoutAParent) {
    // A root whose last-move field happens to look like a double step.
    TChessboard b = boardFromFen("4k3/8/8/8/4P3/8/8/4K3", 2);
    b.m_LastMove.from = static_cast<uint8_t>(sq("e2"));
    b.m_LastMove.to = static_cast<uint8_t>(sq("e4"));
    EXPECT_EQ(WriteFen(b, false), "4k3/8/8/8/4P3/8/8/4K3 b - - 0 1");
}

TEST(FenReader, ReadsAndSetsThePositionUp) {
    TChessboard b = freshBoard(1);
    b.m_uHeuristics = 77;
    ASSERT_TRUE(ReadFen("4k3/8/8/8/8/8/3Q4/R3K3 w Q - 0 1", b));
    EXPECT_EQ(b.m_aSquares[sq("e8")], BK);
    EXPECT_EQ(b.m_aSquares[sq("d2")], WQ);
    EXPECT_EQ(b.m_aSquares[sq("a1")], WR);
    EXPECT_EQ(b.m_aSquares[sq("e1")], WK);
    EXPECT_EQ(b.m_nWhiteQueens, 1);
    EXPECT_EQ(b.m_nWhiteRooks, 1);
    EXPECT_EQ(b.whiteKing(), sq("e1"));
    EXPECT_EQ(b.blackKing(), sq("e8"));
    EXPECT_EQ(b.m_uHeuristics, 0u);
    EXPECT_EQ(b.m_shPliesLeft, 1);
}

TEST(FenReader, BlanksAroundAndBetweenFields) {
    FenNotes notes;
    EXPECT_TRUE(reads("   4k3/8/8/8/8/8/8/4K3   w   -   -   0   1", &notes));
    EXPECT_FALSE(notes.castlingDenied);
    EXPECT_FALSE(notes.enPassantNamed);
}

TEST(FenReader, BraceOrNoSlashIsNoFen) {
    EXPECT_FALSE(reads(std::string(INITIAL) + " {a comment}"));
    EXPECT_FALSE(reads("{rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR"));
    EXPECT_FALSE(reads("4k3/8/8/8/{/8/8/4K3"));
    EXPECT_FALSE(reads("8"));
    EXPECT_FALSE(reads(""));
    EXPECT_FALSE(reads("   "));
    EXPECT_FALSE(reads("4k3 8 8 8 8 8 8 4K3"));
}

TEST(FenReader, BadDigits) {
    EXPECT_FALSE(reads("4k3/9/8/8/8/8/8/4K3"));
    EXPECT_FALSE(reads("4k3/8/8/8/8/8/8/04K3"));
    EXPECT_FALSE(reads("4k3/8/8/8/8/8/8/4K03"));
    EXPECT_TRUE(reads("4k3/8/8/8/8/8/8/4K3"));
    EXPECT_TRUE(reads("4k3/8/8/8/8/8/8/1111K111"));
}

TEST(FenReader, RowsOfTheWrongWidth) {
    EXPECT_FALSE(reads("4k4/8/8/8/8/8/8/4K3"));
    EXPECT_FALSE(reads("4k3/ppppppppp/8/8/8/8/8/4K3"));
    EXPECT_FALSE(reads("4k3/8/8/44p/8/8/8/4K3"));
    EXPECT_FALSE(reads("4k3/8/8/8/8/8/8/4K2"));
    EXPECT_FALSE(reads("4k2/8/8/8/8/8/8/4K3"));
    EXPECT_FALSE(reads("4k3/8/8//8/8/8/4K3"));
}

TEST(FenReader, WrongNumberOfRows) {
    EXPECT_FALSE(reads("4k3/8/8/8/8/8/4K3"));
    EXPECT_FALSE(reads("4k3/8/4K3"));
    EXPECT_FALSE(reads("4k3/8/8/8/8/8/8/8/4K3"));
    EXPECT_FALSE(reads("4k3/8/8/8/8/8/8/4K3/"));
}

TEST(FenReader, EightEmptyRowsHaveNoKings) {
    EXPECT_FALSE(reads("8/8/8/8/8/8/8/8"));
    EXPECT_FALSE(reads("8/8/8/8/8/8/8/8 w - - 0 1"));
}

TEST(FenReader, BadLettersAndBytes) {
    EXPECT_FALSE(reads("4k3/8/8/8/8/8/8/4K2X"));
    EXPECT_FALSE(reads("4k3/8/8/8/8/8/8/4K2x"));
    EXPECT_FALSE(reads("4k3/8/8/8/8/8/8/4K2*"));
    EXPECT_FALSE(reads("4k3/8/8/8/8/8/8/4K2\xc4"));
    EXPECT_FALSE(reads(std::string("4k3/8/8/8/8/8/8/4K2") + '\0'));
}

TEST(FenReader, PositionFaultsGiveFalseNotExceptions) {
    EXPECT_NO_THROW(EXPECT_FALSE(reads("4k3/8/8/8/8/8/8/P3K3")));
    EXPECT_NO_THROW(EXPECT_FALSE(reads("4k3/8/8/8/8/8/8/4KK2")));
    EXPECT_NO_THROW(EXPECT_FALSE(reads("8/8/8/8/8/8/8/3Kk3")));
    EXPECT_NO_THROW(EXPECT_FALSE(reads("k6R/8/8/8/8/8/8/r6K")));
}

TEST(FenReader, FailureLeavesTheBoardAlone) {
    TChessboard b = boardFromFen("4k3/8/8/8/8/8/8/4K3", 1);
    EXPECT_FALSE(ReadFen("8/8/8/8/8/8/8/8", b));
    EXPECT_EQ(b.m_aSquares[sq("e1")], WK);
    EXPECT_EQ(b.m_aSquares[sq("e8")], BK);
}

TEST(FenReader, CastlingNotes) {
    const std::string board = "r3k2r/8/8/8/8/8/8/R3K2R";
    FenNotes notes;
    ASSERT_TRUE(reads(board + " w KQkq - 0 1", &notes));
    EXPECT_FALSE(notes.castlingDenied);
    ASSERT_TRUE(reads(board, &notes));
    EXPECT_FALSE(notes.castlingDenied); // one field: all rights
    ASSERT_TRUE(reads(board + " w qkQK - 0 1", &notes));
    EXPECT_FALSE(notes.castlingDenied); // letters are looked for, not their order
    for (const char* denied :
         {" w Kkq - 0 1", " w Qkq - 0 1", " w KQq - 0 1", " w KQk - 0 1", " w - - 0 1"}) {
        ASSERT_TRUE(reads(board + denied, &notes)) << denied;
        EXPECT_TRUE(notes.castlingDenied) << denied;
    }
    // No rook in the corner: nothing can be denied.
    ASSERT_TRUE(reads("4k3/8/8/8/8/8/8/4K3 w - - 0 1", &notes));
    EXPECT_FALSE(notes.castlingDenied);
    ASSERT_TRUE(reads("4k3/8/8/8/8/8/8/4K2R w K - 0 1", &notes));
    EXPECT_FALSE(notes.castlingDenied);
    ASSERT_TRUE(reads("4k3/8/8/8/8/8/8/4K2R w - - 0 1", &notes));
    EXPECT_TRUE(notes.castlingDenied);
}

TEST(FenReader, DeniedRightStaysInThePosition) {
    TChessboard b = freshBoard(1);
    FenNotes notes;
    ASSERT_TRUE(ReadFen("r3k2r/8/8/8/8/8/8/R3K2R w - - 0 1", b, &notes));
    EXPECT_TRUE(notes.castlingDenied);
    EXPECT_TRUE(WhiteCastlingRight(b, KING_SIDE));
    EXPECT_TRUE(BlackCastlingRight(b, QUEEN_SIDE));
    EXPECT_EQ(WriteFen(b, false), "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1");
}

TEST(FenReader, EnPassantNote) {
    FenNotes notes;
    ASSERT_TRUE(reads("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1", &notes));
    EXPECT_TRUE(notes.enPassantNamed);
    EXPECT_FALSE(notes.castlingDenied);
    ASSERT_TRUE(reads("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1", &notes));
    EXPECT_FALSE(notes.enPassantNamed);
    ASSERT_TRUE(reads("4k3/8/8/8/4P3/8/8/4K3 b - e3", &notes));
    EXPECT_TRUE(notes.enPassantNamed);
    ASSERT_TRUE(reads("4k3/8/8/8/4P3/8/8/4K3 b -", &notes));
    EXPECT_FALSE(notes.enPassantNamed);
    ASSERT_TRUE(reads("4k3/8/8/8/4P3/8/8/4K3", &notes));
    EXPECT_FALSE(notes.enPassantNamed);
}

TEST(FenReader, PolishLettersReadAsEnglish) {
    const TChessboard english = boardFromFen("qbnrk3/pppp4/8/8/8/8/PPPP4/QBNRK3", 1);
    const TChessboard polish = boardFromFen("hgswk3/pppp4/8/8/8/8/PPPP4/HGSWK3", 1);
    EXPECT_EQ(std::memcmp(english.m_aSquares, polish.m_aSquares, 64), 0);
    EXPECT_EQ(polish.m_aSquares[sq("a1")], WQ);
    EXPECT_EQ(polish.m_aSquares[sq("b1")], WB);
    EXPECT_EQ(polish.m_aSquares[sq("c1")], WN);
    EXPECT_EQ(polish.m_aSquares[sq("d1")], WR);
    EXPECT_EQ(polish.m_aSquares[sq("a8")], BQ);
    EXPECT_EQ(polish.m_aSquares[sq("d8")], BR);
    // The writer uses the English letters only.
    EXPECT_EQ(WriteFen(polish, true), "qbnrk3/pppp4/8/8/8/8/PPPP4/QBNRK3");
}

TEST(FenReader, WriterAndReaderAgree) {
    for (const char* fen :
         {INITIAL, "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R",
          "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8", "7k/8/8/8/8/8/8/K7", "QQQQQQQQ/8/8/8/8/8/8/k6K"}) {
        const TChessboard first = boardFromFen(fen, 1);
        const std::string written = WriteFen(first, true);
        EXPECT_EQ(written, fen);
        const TChessboard second = boardFromFen(written, 1);
        EXPECT_EQ(std::memcmp(first.m_aSquares, second.m_aSquares, 64), 0) << fen;
    }
}

TEST(Letters, KindFromLetter) {
    EXPECT_EQ(KindFromLetter('K'), KIND_KING);
    EXPECT_EQ(KindFromLetter('k'), KIND_KING);
    EXPECT_EQ(KindFromLetter('P'), KIND_PAWN);
    EXPECT_EQ(KindFromLetter('p'), KIND_PAWN);
    for (const char c : {'B', 'b', 'G', 'g'}) EXPECT_EQ(KindFromLetter(c), KIND_BISHOP) << c;
    for (const char c : {'Q', 'q', 'H', 'h'}) EXPECT_EQ(KindFromLetter(c), KIND_QUEEN) << c;
    for (const char c : {'N', 'n', 'S', 's'}) EXPECT_EQ(KindFromLetter(c), KIND_KNIGHT) << c;
    for (const char c : {'R', 'r', 'W', 'w'}) EXPECT_EQ(KindFromLetter(c), KIND_ROOK) << c;
}

TEST(Letters, UnknownLetterNamesIt) {
    for (const char c : {'X', 'x', 'A', 'z', '1', '*', ' '}) {
        try {
            KindFromLetter(c);
            ADD_FAILURE() << "no exception for " << c;
        } catch (const ChessException& e) {
            EXPECT_EQ(std::string(e.what()), std::string("Unknown figure letter: ") + c);
        }
    }
}

TEST(FenReader, NotesNameEachDeniedRightTheSquareAndTheSide) {
    const std::string board = "r3k2r/8/8/8/8/8/8/R3K2R";
    FenNotes notes;
    ASSERT_TRUE(reads(board + " w Kq - 0 1", &notes));
    EXPECT_EQ(notes.deniedCastling, WHITE_LONG_CASTLING | BLACK_SHORT_CASTLING);
    EXPECT_EQ(notes.sideToMove, 'w');
    EXPECT_EQ(notes.enPassantSquare, -1);
    ASSERT_TRUE(reads(board + " b - - 0 1", &notes));
    EXPECT_EQ(notes.deniedCastling,
              WHITE_SHORT_CASTLING | WHITE_LONG_CASTLING | BLACK_SHORT_CASTLING | BLACK_LONG_CASTLING);
    EXPECT_EQ(notes.sideToMove, 'b');
    ASSERT_TRUE(reads(board, &notes));
    EXPECT_EQ(notes.deniedCastling, 0);
    EXPECT_EQ(notes.sideToMove, 0);
    ASSERT_TRUE(reads("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1", &notes));
    EXPECT_TRUE(notes.enPassantNamed);
    EXPECT_EQ(notes.enPassantSquare, sq("d6"));
    // A field that names no square is noted, with no square.
    ASSERT_TRUE(reads("4k3/8/8/3pP3/8/8/8/4K3 w - x9 0 1", &notes));
    EXPECT_TRUE(notes.enPassantNamed);
    EXPECT_EQ(notes.enPassantSquare, -1);
}

TEST(FenReader, ANulByteIsNoSideToMove) {
    FenNotes notes;
    ASSERT_TRUE(reads(std::string("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR \0 KQkq - 0 1", 56), &notes));
    EXPECT_EQ(notes.sideToMove, 0);
}

TEST(DoubleStepHistory, MakesTheCaptureOnTheNamedSquarePossible) {
    TChessboard b = freshBoard(1);
    ASSERT_TRUE(ReadFen("4k3/8/8/3pP3/8/8/8/4K3", b));
    TMove moves[MAX_MOVES];
    auto hasCapture = [&](const TChessboard& position) {
        const int count = GenerateWhiteMoves(position, moves);
        for (int i = 0; i < count; ++i)
            if (moves[i].from == sq("e5") && moves[i].to == sq("d6")) return true;
        return false;
    };
    EXPECT_FALSE(hasCapture(b));
    TChessboard parent;
    ASSERT_TRUE(SetUpDoubleStepHistory(b, parent, sq("d6")));
    EXPECT_EQ(b.m_pParent, &parent);
    EXPECT_EQ(parent.m_aSquares[sq("d7")], BP);
    EXPECT_EQ(parent.m_aSquares[sq("d5")], 0);
    EXPECT_EQ(b.m_aSquares[sq("d5")], BP);
    EXPECT_TRUE(hasCapture(b));
    EXPECT_EQ(WriteFen(b, false).substr(0, 28), "4k3/8/8/3pP3/8/8/8/4K3 w - d");
}

TEST(DoubleStepHistory, RefusesASquareThatDoesNotFit) {
    TChessboard b = freshBoard(1);
    ASSERT_TRUE(ReadFen("4k3/3p4/8/3pP3/8/8/8/4K3", b));
    TChessboard parent;
    const TChessboard before = b;
    EXPECT_FALSE(SetUpDoubleStepHistory(b, parent, sq("e6"))); // no black pawn in front
    EXPECT_FALSE(SetUpDoubleStepHistory(b, parent, sq("d3"))); // not the sixth row
    EXPECT_FALSE(SetUpDoubleStepHistory(b, parent, sq("d6"))); // d7 is taken: the pawn did not pass
    EXPECT_FALSE(SetUpDoubleStepHistory(b, parent, 64));
    EXPECT_EQ(b.m_pParent, nullptr);
    EXPECT_EQ(std::memcmp(b.m_aSquares, before.m_aSquares, 64), 0);
}

TEST(DeniedCastling, TheSolvesMaskKillsTheRightWithoutTouchingThePosition) {
    TChessboard b = freshBoard(1);
    ASSERT_TRUE(ReadFen("r3k2r/8/8/8/8/8/8/R3K2R", b));
    auto context = std::make_unique<TThreadContext>();
    b.m_pThread = context.get();
    EXPECT_TRUE(WhiteCanCastle(b, QUEEN_SIDE));
    context->m_bDeniedCastling = WHITE_LONG_CASTLING | BLACK_SHORT_CASTLING;
    EXPECT_FALSE(WhiteCastlingRight(b, QUEEN_SIDE));
    EXPECT_FALSE(WhiteCanCastle(b, QUEEN_SIDE));
    EXPECT_TRUE(WhiteCastlingRight(b, KING_SIDE));
    EXPECT_FALSE(BlackCastlingRight(b, KING_SIDE));
    EXPECT_TRUE(BlackCastlingRight(b, QUEEN_SIDE));
    EXPECT_EQ(WriteFen(b, false), "r3k2r/8/8/8/8/8/8/R3K2R w Kq - 0 1");
    // The position itself is as the placement gives it.
    b.m_pThread = nullptr;
    EXPECT_TRUE(WhiteCastlingRight(b, QUEEN_SIDE));
}

} // namespace
} // namespace zorvane
