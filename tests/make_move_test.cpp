// The two move makers: legality by the exposed line, castling rights from the
// parent chain, en passant, incremental check detection, and the fields and
// flags they keep (counts, lists, capture notes, promotion marks).
#include "core/castling.h"
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
#include <vector>

namespace zorvane {
namespace {

// Makes the move on a fresh copy of `parent`; true when the maker accepts it.
bool tryMove(const TChessboard& parent, TMove m, TChessboard* childOut = nullptr) {
    TChessboard child;
    CopyToChild(child, parent);
    const bool made = parent.whiteToMove() ? MakeWhiteMove(child, m) : MakeBlackMove(child, m, false) == 1;
    if (made && childOut) *childOut = child;
    return made;
}

std::vector<TMove> generate(const TChessboard& b) {
    TMove moves[MAX_MOVES];
    const int n =
        b.whiteToMove() ? GenerateWhiteMovesOrEvasions(b, moves) : GenerateBlackMovesOrEvasions(b, moves);
    return std::vector<TMove>(moves, moves + n);
}

bool contains(const std::vector<TMove>& moves, const TMove& m) {
    for (const TMove& x : moves)
        if (x == m) return true;
    return false;
}

TEST(MakeMove, WhiteMoveRecordsTheMoveAndCountsThePly) {
    const TChessboard root = boardFromFen("4k3/8/8/8/8/8/4P3/4K3", 5);
    TChessboard child;
    ASSERT_TRUE(tryMove(root, mv("e2", "e4"), &child));
    EXPECT_EQ(child.m_pParent, &root);
    EXPECT_EQ(child.m_LastMove, mv("e2", "e4"));
    EXPECT_EQ(child.m_shPliesLeft, 4);
    EXPECT_EQ(child.m_aSquares[sq("e2")], 0);
    EXPECT_EQ(child.m_aSquares[sq("e4")], WP);
    EXPECT_FALSE(child.whiteToMove());
}

TEST(MakeMove, BlackNullMoveLeavesTheBoard) {
    const TChessboard root = boardFromFen("4k3/3p4/8/8/8/8/8/R3K3", 4);
    TChessboard child;
    CopyToChild(child, root);
    TMove pass = mv("e8", "e8");
    EXPECT_EQ(FormatMove(pass, BK, false), "-");
    ASSERT_EQ(MakeBlackMove(child, pass, false), BLACK_MOVE_MADE);
    EXPECT_EQ(std::memcmp(child.m_aSquares, root.m_aSquares, 64), 0);
    EXPECT_EQ(child.m_shPliesLeft, 3);
    EXPECT_TRUE(child.m_LastMove.isNull());
    EXPECT_EQ(child.m_nBlackPawns, 1);
    EXPECT_EQ(child.m_cWhiteChecker, NO_CHECK);
}

TEST(MakeMove, PinnedManMayOnlyMoveAlongThePin) {
    // The bishop on d2 is pinned by the queen on a5.
    const TChessboard root = boardFromFen("4k3/7p/8/q7/8/8/3B4/4K3", 1);
    EXPECT_FALSE(tryMove(root, mv("d2", "e3")));
    EXPECT_TRUE(tryMove(root, mv("d2", "c3")));
    EXPECT_TRUE(tryMove(root, mv("d2", "a5")));
    // A rook pinned on the file.
    const TChessboard file = boardFromFen("4r2k/8/8/8/8/8/4R3/4K3", 1);
    EXPECT_FALSE(tryMove(file, mv("e2", "d2")));
    EXPECT_TRUE(tryMove(file, mv("e2", "e5")));
    EXPECT_TRUE(tryMove(file, mv("e2", "e8")));
}

TEST(MakeMove, KingMayNotStepIntoAnAttack) {
    const TChessboard root = boardFromFen("3rk3/8/8/8/8/8/8/4K3", 1);
    EXPECT_FALSE(tryMove(root, mv("e1", "d1")));
    EXPECT_FALSE(tryMove(root, mv("e1", "d2")));
    EXPECT_TRUE(tryMove(root, mv("e1", "f2")));
    // Nor back along the line of the checking rook.
    const TChessboard checked = boardFromFen("4r2k/8/8/8/8/8/4K3/8", 1);
    ASSERT_EQ(checked.m_cWhiteChecker, sq("e8"));
    EXPECT_FALSE(tryMove(checked, mv("e2", "e1")));
    EXPECT_TRUE(tryMove(checked, mv("e2", "d1")));
}

TEST(MakeMove, InCheckOnlyAnAnswerToTheCheckIsLegal) {
    const TChessboard root = boardFromFen("4r2k/8/8/8/8/8/R7/4K3", 1);
    ASSERT_EQ(root.m_cWhiteChecker, sq("e8"));
    EXPECT_FALSE(tryMove(root, mv("a2", "a3")));
    EXPECT_TRUE(tryMove(root, mv("a2", "e2")));
    const TChessboard black = boardFromFen("4k3/8/8/8/8/8/r7/4R2K", 2);
    ASSERT_EQ(black.m_cBlackChecker, sq("e1"));
    EXPECT_FALSE(tryMove(black, mv("a2", "a3")));
    EXPECT_TRUE(tryMove(black, mv("a2", "e2")));
    EXPECT_TRUE(tryMove(black, mv("e8", "d8")));
    EXPECT_FALSE(tryMove(black, mv("e8", "e7")));
}

TEST(EnPassant, CaptureRemovesThePawnAndMarksTheMove) {
    GameLine line(boardFromFen("4k3/3p4/8/4P3/8/8/8/4K3", 4));
    ASSERT_TRUE(line.play("d7-d5"));
    TMove ep = mv("e5", "d6");
    ASSERT_TRUE(line.play(ep));
    EXPECT_EQ(line.lastMove().enPassant, 1);
    EXPECT_EQ(line.last().m_LastMove.enPassant, 1);
    EXPECT_EQ(line.last().m_aSquares[sq("d5")], 0);
    EXPECT_EQ(line.last().m_aSquares[sq("e5")], 0);
    EXPECT_EQ(line.last().m_aSquares[sq("d6")], WP);
    EXPECT_EQ(line.last().m_nBlackPawns, 0);
    // An ordinary pawn move is no en passant.
    GameLine plain(boardFromFen("4k3/3p4/8/4P3/8/8/8/4K3", 4));
    ASSERT_TRUE(plain.play("d7-d5"));
    ASSERT_TRUE(plain.play("e5-e6"));
    EXPECT_EQ(plain.lastMove().enPassant, 0);
}

TEST(EnPassant, PinnedOnTheRowWithTheCapturedPawn) {
    // King a5, pawns e5 and (after d7-d5) d5, rook h5: taking en passant empties
    // both squares of the row.
    GameLine line(boardFromFen("7k/3p4/7N/K3P2r/8/8/8/8", 4));
    ASSERT_TRUE(line.play("d7-d5"));
    const TChessboard& b = line.last();
    const std::vector<TMove> moves = generate(b);
    int epIndex = -1;
    for (size_t i = 0; i < moves.size(); ++i)
        if (moves[i] == mv("e5", "d6")) epIndex = static_cast<int>(i);
    ASSERT_EQ(epIndex, 6); // five king moves, e5-e6, then the en passant
    ASSERT_EQ(moves.size(), 11u);
    int made = 0;
    for (size_t i = 0; i < moves.size(); ++i) {
        const bool ok = tryMove(b, moves[i]);
        EXPECT_EQ(ok, static_cast<int>(i) != epIndex) << i;
        made += ok;
    }
    EXPECT_EQ(made, 10);

    // Without the rook the capture is legal.
    GameLine free(boardFromFen("7k/3p4/7N/K3P3/8/8/8/8", 4));
    ASSERT_TRUE(free.play("d7-d5"));
    EXPECT_TRUE(tryMove(free.last(), mv("e5", "d6")));
}

TEST(EnPassant, TakenPawnWasTheLastManOnADiagonal) {
    // Only d5 stood between the bishop f7 and the king b3 (the root has White
    // in check, which d7-d5 answers); the square the capturing pawn leaves lies
    // on no line with the king, so only the taken pawn's square shows the pin.
    GameLine line(boardFromFen("7k/3p1b2/8/4P3/8/1K6/8/8", 4));
    ASSERT_EQ(line.last().m_cWhiteChecker, sq("f7"));
    ASSERT_TRUE(line.play("d7-d5"));
    EXPECT_EQ(line.last().m_cWhiteChecker, NO_CHECK);
    EXPECT_TRUE(contains(generate(line.last()), mv("e5", "d6")));
    EXPECT_FALSE(tryMove(line.last(), mv("e5", "d6")));
    EXPECT_TRUE(tryMove(line.last(), mv("e5", "e6")));
}

TEST(EnPassant, BlackCapturesAndTheCheckingPawnGoes) {
    GameLine line(boardFromFen("8/8/8/4k3/4p3/8/3P4/4K3", 3));
    ASSERT_TRUE(line.play("d2-d4"));
    ASSERT_EQ(line.last().m_cBlackChecker, sq("d4"));
    TMove ep = mv("e4", "d3");
    ASSERT_TRUE(line.play(ep));
    EXPECT_EQ(line.lastMove().enPassant, 1);
    EXPECT_EQ(line.last().m_aSquares[sq("d4")], 0);
    EXPECT_EQ(line.last().m_aSquares[sq("d3")], BP);
    EXPECT_EQ(line.last().m_nWhitePawns, 0);
    EXPECT_EQ(line.last().m_cBlackChecker, NO_CHECK);
}

TEST(Castling, RookThatLeftAndCameBackHasNoRight) {
    GameLine line(boardFromFen("4k3/8/8/8/8/8/8/R3K2R", 9));
    EXPECT_TRUE(WhiteCastlingRight(line.last(), KING_SIDE));
    ASSERT_TRUE(line.play("h1-h2"));
    ASSERT_TRUE(line.play("e8-d8"));
    ASSERT_TRUE(line.play("h2-h1"));
    ASSERT_TRUE(line.play("d8-e8"));
    const TChessboard& b = line.last();
    EXPECT_EQ(b.m_aSquares[sq("h1")], WR);
    EXPECT_EQ(b.m_aSquares[sq("e1")], WK);
    EXPECT_FALSE(WhiteCastlingRight(b, KING_SIDE));
    EXPECT_TRUE(WhiteCastlingRight(b, QUEEN_SIDE));
    EXPECT_FALSE(WhiteCanCastle(b, KING_SIDE));
    EXPECT_TRUE(WhiteCanCastle(b, QUEEN_SIDE));
    const std::vector<TMove> moves = generate(b);
    EXPECT_FALSE(contains(moves, mv("e1", "g1")));
    EXPECT_TRUE(contains(moves, mv("e1", "c1")));
    // The maker tests the right again for a move that did not come from the generator.
    EXPECT_FALSE(tryMove(b, mv("e1", "g1")));
    EXPECT_TRUE(tryMove(b, mv("e1", "c1")));
}

TEST(Castling, RookCapturedOnItsCornerAndReplacedHasNoRight) {
    GameLine line(boardFromFen("k7/1b6/8/8/8/7R/P7/4K2R", 9));
    ASSERT_TRUE(line.play("a2-a3"));
    ASSERT_TRUE(line.play("b7:h1"));
    ASSERT_TRUE(line.play("h3:h1"));
    ASSERT_TRUE(line.play("a8-b8"));
    const TChessboard& b = line.last();
    EXPECT_EQ(b.m_aSquares[sq("h1")], WR);
    EXPECT_FALSE(WhiteCastlingRight(b, KING_SIDE));
    EXPECT_FALSE(contains(generate(b), mv("e1", "g1")));

    // The same men without the capture keep the right.
    GameLine quiet(boardFromFen("k7/1b6/8/8/8/7R/P7/4K2R", 9));
    ASSERT_TRUE(quiet.play("a2-a3"));
    ASSERT_TRUE(quiet.play("a8-b8"));
    EXPECT_TRUE(WhiteCastlingRight(quiet.last(), KING_SIDE));
}

TEST(Castling, KingThatMovedAndCameBackHasNoRight) {
    GameLine line(boardFromFen("r3k2r/8/8/8/8/8/8/R3K2R", 9));
    ASSERT_TRUE(line.play("a1-a2"));
    ASSERT_TRUE(line.play("e8-f8"));
    ASSERT_TRUE(line.play("a2-a1"));
    ASSERT_TRUE(line.play("f8-e8"));
    EXPECT_FALSE(BlackCastlingRight(line.last(), KING_SIDE));
    EXPECT_FALSE(BlackCastlingRight(line.last(), QUEEN_SIDE));
    EXPECT_FALSE(WhiteCastlingRight(line.last(), QUEEN_SIDE));
    EXPECT_TRUE(WhiteCastlingRight(line.last(), KING_SIDE));
    EXPECT_EQ(LiveCastlingRooks(line.last()), 1);
}

TEST(Castling, QueenSideMayCrossAnAttackedB1) {
    const TChessboard b = boardFromFen("1r5k/8/8/8/8/8/8/R3K3", 1);
    ASSERT_TRUE(contains(generate(b), mv("e1", "c1")));
    TChessboard child;
    ASSERT_TRUE(tryMove(b, mv("e1", "c1"), &child));
    EXPECT_EQ(child.m_aSquares[sq("c1")], WK);
    EXPECT_EQ(child.m_aSquares[sq("d1")], WR);
    EXPECT_EQ(child.m_aSquares[sq("a1")], 0);
    EXPECT_EQ(child.m_aSquares[sq("e1")], 0);
    EXPECT_EQ(child.m_cWhiteKingCol, 2);
    EXPECT_EQ(child.m_cWhiteKingRow, 0);
    EXPECT_EQ(child.m_aWhiteRooks[0], sq("d1"));

    // d1 and c1 are tested.
    for (const char* fen : {"3r3k/8/8/8/8/8/8/R3K3", "2r4k/8/8/8/8/8/8/R3K3"}) {
        const TChessboard attacked = boardFromFen(fen, 1);
        EXPECT_FALSE(contains(generate(attacked), mv("e1", "c1"))) << fen;
        EXPECT_FALSE(tryMove(attacked, mv("e1", "c1"))) << fen;
    }
}

TEST(Castling, KingSideTestsF1AndG1AndTheCheck) {
    for (const char* fen : {"k4r2/8/8/8/8/8/8/4K2R", "k5r1/8/8/8/8/8/8/4K2R", "k3r3/8/8/8/8/8/8/4K2R"}) {
        const TChessboard b = boardFromFen(fen, 1);
        EXPECT_FALSE(contains(generate(b), mv("e1", "g1"))) << fen;
        EXPECT_FALSE(tryMove(b, mv("e1", "g1"))) << fen;
    }
    // The rook itself may be attacked.
    const TChessboard b = boardFromFen("7r/k7/8/8/8/8/8/4K2R", 1);
    EXPECT_TRUE(tryMove(b, mv("e1", "g1")));
}

TEST(Castling, BlackCastlesBothWays) {
    const TChessboard b = boardFromFen("r3k2r/8/8/8/8/8/8/4K3", 2);
    TChessboard child;
    ASSERT_TRUE(tryMove(b, mv("e8", "g8"), &child));
    EXPECT_EQ(child.m_aSquares[sq("g8")], BK);
    EXPECT_EQ(child.m_aSquares[sq("f8")], BR);
    EXPECT_EQ(child.m_aSquares[sq("h8")], 0);
    EXPECT_EQ(child.blackKing(), sq("g8"));
    ASSERT_TRUE(tryMove(b, mv("e8", "c8"), &child));
    EXPECT_EQ(child.m_aSquares[sq("c8")], BK);
    EXPECT_EQ(child.m_aSquares[sq("d8")], BR);
    EXPECT_EQ(child.m_aSquares[sq("a8")], 0);
}

TEST(CheckDetection, DirectChecksByKind) {
    TChessboard child;
    ASSERT_TRUE(tryMove(boardFromFen("4k3/8/8/8/8/8/8/R3K3", 1), mv("a1", "a8"), &child));
    EXPECT_EQ(child.m_cBlackChecker, sq("a8"));
    ASSERT_TRUE(tryMove(boardFromFen("4k3/8/8/8/2N5/8/8/4K3", 1), mv("c4", "d6"), &child));
    EXPECT_EQ(child.m_cBlackChecker, sq("d6"));
    ASSERT_TRUE(tryMove(boardFromFen("4k3/8/3P4/8/8/8/8/4K3", 1), mv("d6", "d7"), &child));
    EXPECT_EQ(child.m_cBlackChecker, sq("d7"));
    ASSERT_TRUE(tryMove(boardFromFen("4k3/7p/8/8/8/8/2B5/4K3", 1), mv("c2", "a4"), &child));
    EXPECT_EQ(child.m_cBlackChecker, sq("a4"));
    ASSERT_TRUE(tryMove(boardFromFen("4k3/8/8/8/8/8/8/1Q2K3", 1), mv("b1", "b5"), &child));
    EXPECT_EQ(child.m_cBlackChecker, sq("b5"));
    // Moves that give no check: off the line, or the line blocked.
    ASSERT_TRUE(tryMove(boardFromFen("4k3/7p/8/8/8/8/2B5/4K3", 1), mv("c2", "b1"), &child));
    EXPECT_EQ(child.m_cBlackChecker, NO_CHECK);
    ASSERT_TRUE(tryMove(boardFromFen("4k3/8/8/8/8/8/8/R3K3", 1), mv("a1", "a7"), &child));
    EXPECT_EQ(child.m_cBlackChecker, NO_CHECK);
    ASSERT_TRUE(tryMove(boardFromFen("2n1k3/8/8/8/8/8/8/R3K3", 1), mv("a1", "a8"), &child));
    EXPECT_EQ(child.m_cBlackChecker, NO_CHECK);
}

TEST(CheckDetection, PromotedManChecksByItsNewKind) {
    TChessboard child;
    ASSERT_TRUE(tryMove(boardFromFen("7k/p3P3/8/8/8/8/8/K7", 1), mv("e7", "e8", KIND_QUEEN), &child));
    EXPECT_EQ(child.m_cBlackChecker, sq("e8"));
    ASSERT_TRUE(tryMove(boardFromFen("7k/p3P3/8/8/8/8/8/K7", 1), mv("e7", "e8", KIND_BISHOP), &child));
    EXPECT_EQ(child.m_cBlackChecker, NO_CHECK);
    ASSERT_TRUE(tryMove(boardFromFen("8/4P1k1/8/8/8/8/8/K7", 1), mv("e7", "e8", KIND_KNIGHT), &child));
    EXPECT_EQ(child.m_cBlackChecker, sq("e8"));
}

TEST(CheckDetection, CastlingRookGivesCheck) {
    TChessboard child;
    ASSERT_TRUE(tryMove(boardFromFen("5k2/8/8/8/8/8/8/4K2R", 1), mv("e1", "g1"), &child));
    EXPECT_EQ(child.m_cBlackChecker, sq("f1"));
    ASSERT_TRUE(tryMove(boardFromFen("3k4/8/8/8/8/8/8/R3K3", 1), mv("e1", "c1"), &child));
    EXPECT_EQ(child.m_cBlackChecker, sq("d1"));
    ASSERT_TRUE(tryMove(boardFromFen("4k3/8/8/8/8/8/8/R3K3", 1), mv("e1", "c1"), &child));
    EXPECT_EQ(child.m_cBlackChecker, NO_CHECK);
}

TEST(CheckDetection, DiscoveredAndDoubleCheck) {
    const TChessboard b = boardFromFen("4k3/8/8/8/4N3/8/8/K3R3", 1);
    TChessboard child;
    ASSERT_TRUE(tryMove(b, mv("e4", "c3"), &child));
    EXPECT_EQ(child.m_cBlackChecker, sq("e1"));
    ASSERT_TRUE(tryMove(b, mv("e4", "d6"), &child));
    EXPECT_EQ(child.m_cBlackChecker, DOUBLE_CHECK);
    ASSERT_TRUE(tryMove(b, mv("e4", "f6"), &child));
    EXPECT_EQ(child.m_cBlackChecker, DOUBLE_CHECK);
    // By a bishop behind a pawn's step.
    ASSERT_TRUE(tryMove(boardFromFen("7k/8/8/8/3P4/8/1B6/K7", 1), mv("d4", "d5"), &child));
    EXPECT_EQ(child.m_cBlackChecker, sq("b2"));
    // The queen behind the rook on the same line: the mover is not its own discoverer.
    ASSERT_TRUE(tryMove(boardFromFen("4k3/8/8/8/8/4R3/8/K3Q3", 1), mv("e3", "e5"), &child));
    EXPECT_EQ(child.m_cBlackChecker, sq("e5"));
}

TEST(CheckDetection, EnPassantDiscoversCheckAlongTheRow) {
    // Rook a5, pawns e5 and d5 between it and the king on h5: both go.
    GameLine line(boardFromFen("8/3p4/8/R3P2k/8/8/8/K7", 4));
    ASSERT_TRUE(line.play("d7-d5"));
    ASSERT_TRUE(line.play("e5-d6"));
    EXPECT_EQ(line.lastMove().enPassant, 1);
    EXPECT_EQ(line.last().m_cBlackChecker, sq("a5"));
}

TEST(CheckDetection, EnPassantDiscoversCheckThroughTheTakenPawn) {
    // The bishop's diagonal b3-g8 runs through d5 only, not through e5.
    GameLine line(boardFromFen("6k1/3p4/8/4P3/8/1B6/8/K7", 4));
    ASSERT_EQ(line.last().m_cBlackChecker, sq("b3"));
    ASSERT_TRUE(line.play("d7-d5"));
    EXPECT_EQ(line.last().m_cWhiteChecker, NO_CHECK);
    ASSERT_TRUE(line.play("e5-d6"));
    EXPECT_EQ(line.last().m_cBlackChecker, sq("b3"));
}

TEST(CheckDetection, BlackMovesCheckWhite) {
    TChessboard child;
    ASSERT_TRUE(tryMove(boardFromFen("r3k3/8/8/8/8/8/8/4K3", 2), mv("a8", "a1"), &child));
    EXPECT_EQ(child.m_cWhiteChecker, 0); // a1 is square 0
    ASSERT_TRUE(tryMove(boardFromFen("4k3/8/8/8/8/5p2/8/4K3", 2), mv("f3", "f2"), &child));
    EXPECT_EQ(child.m_cWhiteChecker, sq("f2"));
    ASSERT_TRUE(tryMove(boardFromFen("4k3/8/8/4n3/8/8/8/4K3", 2), mv("e5", "d3"), &child));
    EXPECT_EQ(child.m_cWhiteChecker, sq("d3"));
    // Discovered and double.
    const TChessboard b = boardFromFen("4r2k/8/8/4n3/8/8/8/4K3", 2);
    ASSERT_TRUE(tryMove(b, mv("e5", "c4"), &child));
    EXPECT_EQ(child.m_cWhiteChecker, sq("e8"));
    ASSERT_TRUE(tryMove(b, mv("e5", "d3"), &child));
    EXPECT_EQ(child.m_cWhiteChecker, DOUBLE_CHECK);
    ASSERT_TRUE(tryMove(b, mv("e5", "f3"), &child));
    EXPECT_EQ(child.m_cWhiteChecker, DOUBLE_CHECK);
    // Black's move clears the check on his own king.
    const TChessboard checked = boardFromFen("4k3/8/8/8/8/8/8/4RK2", 2);
    ASSERT_EQ(checked.m_cBlackChecker, sq("e1"));
    ASSERT_TRUE(tryMove(checked, mv("e8", "d7"), &child));
    EXPECT_EQ(child.m_cBlackChecker, NO_CHECK);
}

TEST(Flags, WeakWhiteAfterPromotions) {
    // A pawn to spare on c2; the black king on h8 with no neighbours.
    const TChessboard b = boardFromFen("7k/1P6/8/8/8/8/2P5/K7", 1);
    ASSERT_EQ(b.m_wFlags & FLAG_WEAK_WHITE, FLAG_WEAK_WHITE);
    TChessboard child;
    ASSERT_TRUE(tryMove(b, mv("b7", "b8", KIND_ROOK), &child));
    EXPECT_EQ(child.m_wFlags & FLAG_WEAK_WHITE, 0);
    ASSERT_TRUE(tryMove(b, mv("b7", "b8", KIND_QUEEN), &child));
    EXPECT_EQ(child.m_wFlags & FLAG_WEAK_WHITE, 0);
    ASSERT_TRUE(tryMove(b, mv("b7", "b8", KIND_KNIGHT), &child));
    EXPECT_EQ(child.m_wFlags & FLAG_WEAK_WHITE, FLAG_WEAK_WHITE);
    ASSERT_TRUE(tryMove(b, mv("b7", "b8", KIND_BISHOP), &child));
    EXPECT_EQ(child.m_wFlags & FLAG_WEAK_WHITE, FLAG_WEAK_WHITE);

    // With a knight already there, a second minor piece ends it.
    const TChessboard knight = boardFromFen("7k/1P6/8/8/8/8/2P5/K6N", 1);
    ASSERT_EQ(knight.m_wFlags & FLAG_WEAK_WHITE, FLAG_WEAK_WHITE);
    ASSERT_TRUE(tryMove(knight, mv("b7", "b8", KIND_KNIGHT), &child));
    EXPECT_EQ(child.m_wFlags & FLAG_WEAK_WHITE, 0);
    // The last pawn promoting to a knight leaves no pawn.
    const TChessboard last = boardFromFen("7k/1P6/8/8/8/8/8/K7", 1);
    ASSERT_TRUE(tryMove(last, mv("b7", "b8", KIND_KNIGHT), &child));
    EXPECT_EQ(child.m_wFlags & FLAG_WEAK_WHITE, 0);
}

TEST(Flags, WeakWhiteFollowsTheBlackKingsNeighbours) {
    // g7 next to the cornered king: off; the pawn steps away, the flag comes back.
    const TChessboard b = boardFromFen("7k/6p1/8/8/8/8/2P5/K7", 2);
    ASSERT_EQ(b.m_wFlags & FLAG_WEAK_WHITE, 0);
    TChessboard child;
    ASSERT_TRUE(tryMove(b, mv("g7", "g6"), &child));
    EXPECT_EQ(child.m_wFlags & FLAG_WEAK_WHITE, FLAG_WEAK_WHITE);
}

TEST(Flags, BareBlackKingAfterTheLastCapture) {
    const TChessboard b = boardFromFen("7k/8/8/8/8/1p6/8/1R2K3", 1);
    ASSERT_EQ(b.m_wFlags & FLAG_BLACK_BARE_KING, 0);
    TChessboard child;
    ASSERT_TRUE(tryMove(b, mv("b1", "b3"), &child));
    EXPECT_EQ(child.m_wFlags & FLAG_BLACK_BARE_KING, FLAG_BLACK_BARE_KING);
    EXPECT_EQ(child.m_nBlackPawns, 0);
    // Not the last man: no flag.
    const TChessboard two = boardFromFen("7k/7p/8/8/8/1p6/8/1R2K3", 1);
    ASSERT_TRUE(tryMove(two, mv("b1", "b3"), &child));
    EXPECT_EQ(child.m_wFlags & FLAG_BLACK_BARE_KING, 0);
}

TEST(Flags, BishopsOfOneColourCannotMateABareKing) {
    // The bishop takes the last black man: refused.
    EXPECT_FALSE(tryMove(boardFromFen("7k/8/8/8/8/8/1p6/2B1K3", 1), mv("c1", "b2")));
    // Two bishops on one colour: refused too.
    EXPECT_FALSE(tryMove(boardFromFen("7k/8/8/8/8/4B3/1p6/2B1K3", 1), mv("c1", "b2")));
    // Bishops of both colours, or any other man, can still mate.
    EXPECT_TRUE(tryMove(boardFromFen("7k/8/8/8/8/8/1p6/2B1KB2", 1), mv("c1", "b2")));
    EXPECT_TRUE(tryMove(boardFromFen("7k/8/8/8/8/8/1p6/2B1K1N1", 1), mv("c1", "b2")));
    // The king alone takes it: nothing left to mate with.
    EXPECT_FALSE(tryMove(boardFromFen("7k/8/8/8/8/8/3p4/4K3", 1), mv("e1", "d2")));
}

TEST(Flags, WhiteQueenPromotionMark) {
    const TChessboard b = boardFromFen("7k/1P6/8/8/8/8/2P5/K7", 1);
    TChessboard child;
    ASSERT_TRUE(tryMove(b, mv("b7", "b8", KIND_QUEEN), &child));
    EXPECT_EQ(child.m_wFlags2 & FLAGS2_WHITE_QUEEN_PROMOTED, FLAGS2_WHITE_QUEEN_PROMOTED);
    EXPECT_EQ(child.m_nWhiteQueens, 1);
    EXPECT_EQ(child.m_nWhitePawns, 1);
    EXPECT_EQ(child.m_cWhiteQueen, sq("b8"));
    EXPECT_EQ(child.m_aSquares[sq("b8")], WQ);
    ASSERT_TRUE(tryMove(b, mv("b7", "b8", KIND_ROOK), &child));
    EXPECT_EQ(child.m_wFlags2 & FLAGS2_WHITE_QUEEN_PROMOTED, 0);
    EXPECT_EQ(child.m_nWhiteRooks, 1);
    EXPECT_EQ(child.m_aWhiteRooks[0], sq("b8"));
}

TEST(Flags, BlackPromotionsAreCountedAndTakenBack) {
    GameLine line(boardFromFen("k7/p7/8/8/8/2N4K/3p4/8", 5));
    ASSERT_TRUE(line.play("h3-h4"));
    EXPECT_EQ(line.last().m_wFlags2 & FLAGS2_BLACK_PROMOTIONS, 0);
    ASSERT_TRUE(line.play(mv("d2", "d1", KIND_QUEEN)));
    EXPECT_EQ(line.last().m_wFlags2 & FLAGS2_BLACK_PROMOTIONS, 1);
    EXPECT_EQ(line.last().m_nBlackQueens, 1);
    EXPECT_EQ(line.last().m_nBlackPawns, 1); // a7 is left
    EXPECT_EQ(line.last().m_aSquares[sq("d1")], BQ);
    // Taking the promoted queen takes the promotion back.
    ASSERT_TRUE(line.play("c3:d1"));
    EXPECT_EQ(line.last().m_wFlags2 & FLAGS2_BLACK_PROMOTIONS, 0);
    EXPECT_EQ(line.last().m_nBlackQueens, 0);

    // A queen that stood there from the start is no promotion.
    TChessboard root = boardFromFen("k7/8/8/8/8/2N5/7K/3q4", 1);
    root.m_wFlags2 |= 1;
    TChessboard child;
    ASSERT_TRUE(tryMove(root, mv("c3", "d1"), &child));
    EXPECT_EQ(child.m_wFlags2 & FLAGS2_BLACK_PROMOTIONS, 1);
}

TEST(Flags, BlackPromotionCountStopsAtThree) {
    TChessboard root = boardFromFen("k7/8/8/8/8/8/3p4/7K", 2);
    root.m_wFlags2 |= 2;
    TChessboard child;
    ASSERT_TRUE(tryMove(root, mv("d2", "d1", KIND_KNIGHT), &child));
    EXPECT_EQ(child.m_wFlags2 & FLAGS2_BLACK_PROMOTIONS, 3);
    root.m_wFlags2 |= 3;
    ASSERT_TRUE(tryMove(root, mv("d2", "d1", KIND_KNIGHT), &child));
    EXPECT_EQ(child.m_wFlags2 & FLAGS2_BLACK_PROMOTIONS, 3);
    EXPECT_EQ(child.m_nBlackKnights, 1);
}

TEST(WhiteLists, SecondQueenTurnsThemOffAndBlacksCaptureRestoresThem) {
    GameLine line(boardFromFen("r6k/4P3/8/8/8/8/8/1Q2K3", 3));
    ASSERT_EQ(line.last().m_bWhiteListsValid, 1);
    ASSERT_TRUE(line.play(mv("e7", "e8", KIND_QUEEN)));
    EXPECT_EQ(line.last().m_nWhiteQueens, 2);
    EXPECT_EQ(line.last().m_bWhiteListsValid, 0);
    EXPECT_EQ(line.last().m_cBlackChecker, sq("e8"));
    ASSERT_TRUE(line.play("a8:e8"));
    EXPECT_EQ(line.last().m_nWhiteQueens, 1);
    EXPECT_EQ(line.last().m_bWhiteListsValid, 1);
    EXPECT_EQ(line.last().m_cWhiteQueen, sq("b1"));
}

TEST(WhiteLists, BishopPromotionOnTheColourOfTheOtherBishop) {
    // c1 and d8 share a colour; e8 is of the other one.
    TChessboard child;
    ASSERT_TRUE(tryMove(boardFromFen("7k/p2P4/8/8/8/8/8/2B1K3", 1), mv("d7", "d8", KIND_BISHOP), &child));
    EXPECT_EQ(child.m_nWhiteBishops, 2);
    EXPECT_EQ(child.m_bWhiteListsValid, 0);
    ASSERT_TRUE(tryMove(boardFromFen("7k/p3P3/8/8/8/8/8/2B1K3", 1), mv("e7", "e8", KIND_BISHOP), &child));
    EXPECT_EQ(child.m_nWhiteBishops, 2);
    EXPECT_EQ(child.m_bWhiteListsValid, 1);
    EXPECT_EQ(child.m_aWhiteBishops[0], sq("c1"));
    EXPECT_EQ(child.m_aWhiteBishops[1], sq("e8"));
}

TEST(WhiteLists, MovesAndCapturesKeepTheSlotsPacked) {
    GameLine line(boardFromFen("1k6/8/8/8/8/8/r7/R3K2R", 5));
    ASSERT_TRUE(line.play("h1-h5"));
    EXPECT_EQ(line.last().m_aWhiteRooks[0], sq("a1"));
    EXPECT_EQ(line.last().m_aWhiteRooks[1], sq("h5"));
    ASSERT_TRUE(line.play("a2:a1"));
    EXPECT_EQ(line.last().m_nWhiteRooks, 1);
    EXPECT_EQ(line.last().m_aWhiteRooks[0], sq("h5"));
    EXPECT_EQ(line.last().m_aWhiteRooks[1], NO_SQUARE);
    EXPECT_EQ(line.last().m_bWhiteListsValid, 1);
}

TEST(CaptureNotes, FirstThreeCapturesOfEachColour) {
    auto thread = std::make_unique<TThreadContext>();
    GameLine line(boardFromFen("7k/8/8/8/p1p1p1p1/8/8/Q3K3", 9, thread.get()));
    ASSERT_TRUE(line.play("a1:a4"));
    EXPECT_EQ(line.last().m_bPlayState & PLAY_BLACK_CAPTURES, 1 << 4);
    ASSERT_TRUE(line.play("h8-h7"));
    ASSERT_TRUE(line.play("a4:c4"));
    ASSERT_TRUE(line.play("h7-h8"));
    ASSERT_TRUE(line.play("c4:e4"));
    EXPECT_EQ(line.last().m_bPlayState & PLAY_BLACK_CAPTURES, 3 << 4);
    ASSERT_TRUE(line.play("h8-g8"));
    ASSERT_TRUE(line.play("e4:g4"));
    EXPECT_EQ(line.last().m_bPlayState & PLAY_BLACK_CAPTURES, 3 << 4);
    EXPECT_EQ(line.last().m_bPlayState & PLAY_WHITE_CAPTURES, 0);
    EXPECT_EQ(line.last().m_nBlackPawns, 0);
    const uint8_t squares[3] = {static_cast<uint8_t>(sq("a4")), static_cast<uint8_t>(sq("c4")),
                                static_cast<uint8_t>(sq("e4"))};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(thread->m_aBlackCaptures[i], BP) << i;
        EXPECT_EQ(thread->m_aBlackCaptureSquares[i], squares[i]) << i;
        EXPECT_EQ(thread->m_aWhiteCaptures[i], 0) << i;
        EXPECT_EQ(thread->m_aWhiteCaptureSquares[i], NO_SQUARE) << i;
    }
}

TEST(CaptureNotes, BlackCapturesAndEnPassantSquares) {
    auto thread = std::make_unique<TThreadContext>();
    GameLine line(boardFromFen("4k3/3p4/8/4P3/8/8/r7/R3K3", 4, thread.get()));
    ASSERT_TRUE(line.play("a2:a1"));
    EXPECT_EQ(line.last().m_bPlayState & PLAY_WHITE_CAPTURES, 1 << 2);
    EXPECT_EQ(thread->m_aWhiteCaptures[0], WR);
    EXPECT_EQ(thread->m_aWhiteCaptureSquares[0], sq("a1"));
    EXPECT_EQ(line.last().m_nWhiteRooks, 0);
    ASSERT_TRUE(line.play("e1-e2"));
    ASSERT_TRUE(line.play("d7-d5"));
    ASSERT_TRUE(line.play("e5-d6"));
    // The pawn taken en passant stood on d5, not on d6.
    EXPECT_EQ(thread->m_aBlackCaptures[0], BP);
    EXPECT_EQ(thread->m_aBlackCaptureSquares[0], sq("d5"));
    EXPECT_EQ(line.last().m_bPlayState & PLAY_BLACK_CAPTURES, 1 << 4);
    EXPECT_EQ(line.last().m_bPlayState & PLAY_WHITE_CAPTURES, 1 << 2);
}

TEST(KnightsAlone, LinesThatCannotMateAreRefused) {
    // King and knight against a bare king, with plies to come.
    EXPECT_FALSE(tryMove(boardFromFen("7k/8/8/8/8/8/8/N3K3", 5), mv("a1", "b3")));
    EXPECT_FALSE(tryMove(boardFromFen("7k/8/8/8/8/8/8/N3K3", 5), mv("e1", "e2")));
    // At the last ply nothing is refused.
    EXPECT_TRUE(tryMove(boardFromFen("7k/8/8/8/8/8/8/N3K3", 1), mv("a1", "b3")));
    // A pawn on the board leaves the line to the search.
    EXPECT_TRUE(tryMove(boardFromFen("7k/8/8/8/8/8/P7/N3K3", 5), mv("a1", "b3")));
}

TEST(BlackHasLegalMove, MateOrAnAnswer) {
    // The back-rank mate: no flight, nothing to put between.
    TChessboard mate = boardFromFen("R5k1/5ppp/8/8/8/8/8/6K1", 2);
    ASSERT_EQ(mate.m_cBlackChecker, sq("a8"));
    EXPECT_FALSE(BlackHasLegalMove(mate));
    // A knight that can block on f8 or d8.
    TChessboard block = boardFromFen("R5k1/5ppp/4n3/8/8/8/8/6K1", 2);
    EXPECT_TRUE(BlackHasLegalMove(block));
    // A flight on h7.
    TChessboard flight = boardFromFen("R5k1/5pp1/8/8/8/8/8/6K1", 2);
    EXPECT_TRUE(BlackHasLegalMove(flight));
    // Double check: only the king may answer, and he cannot, though the knight
    // could block one line and the pawn take the other checker.
    TChessboard twice = boardFromFen("R5k1/5ppp/4n2N/8/8/8/8/6K1", 2);
    ASSERT_EQ(twice.m_cBlackChecker, DOUBLE_CHECK);
    EXPECT_FALSE(BlackHasLegalMove(twice));
}

} // namespace
} // namespace zorvane

namespace zorvane {
namespace {

TEST(Promotions, OnlyAPawnStepOntoTheLastRowPromotesIntoAFigure) {
    const TChessboard white = boardFromFen("k7/4P3/8/8/8/8/8/4K3", 3);
    EXPECT_FALSE(tryMove(white, mv("e7", "e8", KIND_KING)));
    EXPECT_FALSE(tryMove(white, mv("e7", "e8", KIND_PAWN)));
    EXPECT_FALSE(tryMove(white, mv("e7", "e8")));
    EXPECT_FALSE(tryMove(white, mv("e1", "e2", KIND_QUEEN)));
    EXPECT_TRUE(tryMove(white, mv("e7", "e8", KIND_QUEEN)));
    const TChessboard black = boardFromFen("k7/8/8/8/8/8/4p3/K7", 2);
    EXPECT_FALSE(tryMove(black, mv("e2", "e1", KIND_KING)));
    EXPECT_FALSE(tryMove(black, mv("e2", "e1")));
    EXPECT_TRUE(tryMove(black, mv("e2", "e1", KIND_ROOK)));
}

TEST(WatchedSquares, FollowTheirMenAndFreeTheSlotOfATakenMan) {
    TChessboard b = boardFromFen("k7/8/8/3r4/8/8/8/3RK3", 2);
    b.m_aWatched[2] = static_cast<uint8_t>(sq("d5"));
    TChessboard afterBlack;
    ASSERT_TRUE(tryMove(b, mv("d5", "d4"), &afterBlack));
    EXPECT_EQ(afterBlack.m_aWatched[2], sq("d4"));
    EXPECT_EQ(afterBlack.m_aWatched[0], NO_SQUARE);
    TChessboard afterWhite;
    ASSERT_TRUE(tryMove(afterBlack, mv("d1", "d4"), &afterWhite));
    EXPECT_EQ(afterWhite.m_aWatched[2], NO_SQUARE);
}

} // namespace
} // namespace zorvane
