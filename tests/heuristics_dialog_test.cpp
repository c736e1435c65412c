// The heuristics dialog's read: each of its checks refuses with its own text,
// the controls land in the set and its parameters, and the read stops at the
// first fault with what it read before left in place.
#include "core/position_id.h"
#include "engine/heuristic_bits.h"
#include "engine/heuristics_dialog.h"
#include "test_positions.h"
#include "test_squares.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace zorvane {
namespace {

const char* const KINGS_ONLY = "4k3/8/8/8/8/8/8/K7";
// Plies of a #3 with White to move.
constexpr int WHITE_TO_MOVE = 5;

// What a read did, with the records it wrote into.
struct Read {
    TChessboard position;
    TSpecialHeuristicsParams params;
    SolveWideHeuristicParams solveWide;
    HeuristicsDialogResult result;
};

Read readOn(const std::string& fen, const HeuristicsDialogControls& controls) {
    Read r;
    r.position = boardFromFen(fen, WHITE_TO_MOVE);
    r.result = ReadHeuristicsDialog(r.position, r.params, r.solveWide, controls);
    return r;
}

Read readOn(const std::string& fen, const std::function<void(HeuristicsDialogControls&)>& set) {
    HeuristicsDialogControls controls;
    set(controls);
    return readOn(fen, controls);
}

// The English form of the refusal of a read that must fail.
std::wstring refusal(const Read& r) {
    EXPECT_FALSE(r.result.ok);
    return r.result.fault.english;
}

std::wstring refusalOn(const std::string& fen, const std::function<void(HeuristicsDialogControls&)>& set) {
    return refusal(readOn(fen, set));
}

std::string positionId(const std::string& fen) {
    const TChessboard b = boardFromFen(fen, WHITE_TO_MOVE);
    return ToAlphanum6(ChessboardIdFromSquares(b.m_aSquares));
}

TEST(ReadHeuristicsDialog, AnEmptyDialogIsAnEmptySet) {
    Read r;
    r.position = boardFromFen(KINGS_ONLY, WHITE_TO_MOVE);
    r.position.m_uHeuristics = 0xFFFFFFFFu;
    r.result = ReadHeuristicsDialog(r.position, r.params, r.solveWide, HeuristicsDialogControls{});
    EXPECT_TRUE(r.result.ok);
    EXPECT_TRUE(r.result.notes.empty());
    EXPECT_EQ(r.position.m_uHeuristics, 0u);
}

// 1.
TEST(ReadHeuristicsDialog, BandAndMoveUnlessOnEdgeConflict) {
    EXPECT_EQ(
        refusalOn(KINGS_ONLY,
                  [](auto& c) {
                      c.keepKingWithinExtEdge = true;
                      c.extEdgeMoveUnlessOnEdge = true;
                  }),
        L"Conflict of heuristics: select only one of 'Don't let black king out of (sub)band' and '(Don't "
        L"let black king) move unless on band'");
}

// 2.
TEST(ReadHeuristicsDialog, KingMoveAndEdgeConflict) {
    EXPECT_EQ(refusalOn(KINGS_ONLY,
                        [](auto& c) {
                            c.dontLetKingMove = true;
                            c.keepKingOnEdge = true;
                        }),
              L"Conflict of heuristics (\"Don't let black king move\" and \"Don't let black king out of band "
              L"and/or subband\") ");
}

TEST(ReadHeuristicsDialog, ExceptionsNeedTheKingMoveBet) {
    EXPECT_EQ(
        refusalOn(KINGS_ONLY, [](auto& c) { c.allowKingMoveExceptions = true; }),
        L"Heuristics 'Don't let black king move' is off, while 'allow exc' is on.\nIt requires correction.");
}

// 3.
const wchar_t* const CORNER_MESSAGE =
    L"Invalid maximum distance from corner in the parameter of heuristics 'Keep king near corner'";

auto corner(const char* distance, CornerDistanceUnit unit) {
    return [=](HeuristicsDialogControls& c) {
        c.keepKingNearCorner = true;
        c.cornerDistance = distance;
        c.cornerDistanceUnit = unit;
    };
}

TEST(ReadHeuristicsDialog, FiveIsTooFarInMovesButNotInSquares) {
    EXPECT_EQ(refusalOn(KINGS_ONLY, corner("5", CornerDistanceUnit::Moves)), CORNER_MESSAGE);
    const Read squares = readOn(KINGS_ONLY, corner("5", CornerDistanceUnit::Squares));
    ASSERT_TRUE(squares.result.ok);
    EXPECT_EQ(squares.params.m_cCornerDistance, 5);
    EXPECT_EQ(squares.position.m_uHeuristics, SH_KEEPKINGNEARCORNER);
}

TEST(ReadHeuristicsDialog, CornerMovesAreKeptNegative) {
    const Read r = readOn(KINGS_ONLY, corner("2", CornerDistanceUnit::Moves));
    ASSERT_TRUE(r.result.ok);
    EXPECT_EQ(r.params.m_cCornerDistance, -2);
}

TEST(ReadHeuristicsDialog, CornerDistanceMustBeOneToTheMaximum) {
    for (const char* text : {"0", "6", "-1", "x", ""})
        EXPECT_EQ(refusalOn(KINGS_ONLY, corner(text, CornerDistanceUnit::Squares)), CORNER_MESSAGE) << text;
    EXPECT_EQ(refusalOn(KINGS_ONLY, corner("3", CornerDistanceUnit::Moves)), CORNER_MESSAGE);
}

TEST(ReadHeuristicsDialog, CornerDistanceIsIgnoredWithItsBoxClear) {
    const Read r = readOn(KINGS_ONLY, [](auto& c) { c.cornerDistance = "x"; });
    ASSERT_TRUE(r.result.ok);
    EXPECT_EQ(r.params.m_cCornerDistance, 0);
    EXPECT_EQ(r.position.m_uHeuristics, 0u);
}

// 4. and 5.
TEST(ReadHeuristicsDialog, SubOptionsTurnTheirBetsOnAndFillTheParameters) {
    const Read r = readOn(KINGS_ONLY, [](auto& c) {
        c.dontLetKingMove = true;
        c.allowKingMoveExceptions = true;
        c.extEdgeMoveUnlessOnEdge = true;
        c.surroundedStrict = true;
        c.inclCornerSquares = true;
        c.dynRelaxExtEdgeOnly = true;
        c.skipDeferIfBalanceFixed = true;
        c.autoDynRelax = true;
        c.dynRelaxOnAdvancedPawn = true;
    });
    ASSERT_TRUE(r.result.ok);
    EXPECT_EQ(r.position.m_uHeuristics,
              SH_KEEPKINGONTHEEDGE | SH_KEEPKINGWITHINEXTEDGE | SH_ASSERTBLACKKINGSURROUNDED);
    EXPECT_EQ(r.params.m_bKingMoveStrict, 1);
    EXPECT_EQ(r.params.m_bKingMoveExceptions, 1);
    EXPECT_EQ(r.params.m_bExtEdgeMoveUnlessOnEdge, 1);
    EXPECT_EQ(r.params.m_bSurroundedStrict, 1);
    EXPECT_EQ(r.params.m_bInclCornerSquares, 1);
    EXPECT_EQ(r.params.m_bDynRelaxExtEdgeOnly, 1);
    EXPECT_EQ(r.params.m_bSkipDeferIfBalanceFixed, 1);
    EXPECT_EQ(r.params.m_bAutoDynRelax, 1);
    EXPECT_EQ(r.params.m_bDynRelaxOnAdvancedPawn, 1);
}

TEST(ReadHeuristicsDialog, EdgeAloneIsNotStrict) {
    const Read r = readOn(KINGS_ONLY, [](auto& c) { c.keepKingOnEdge = true; });
    ASSERT_TRUE(r.result.ok);
    EXPECT_EQ(r.position.m_uHeuristics, SH_KEEPKINGONTHEEDGE);
    EXPECT_EQ(r.params.m_bKingMoveStrict, 0);
    EXPECT_EQ(r.params.m_bKingMoveExceptions, 0);
}

// 6.
const wchar_t* const FIGURES_MESSAGE =
    L"Invalid number of figures to capture for relaxation of band heuristics";

TEST(ReadHeuristicsDialog, ZeroFiguresToCaptureMeansOff) {
    Read r;
    r.position = boardFromFen(KINGS_ONLY, WHITE_TO_MOVE);
    r.params.m_nDynRelaxFiguresCaptured = 4;
    HeuristicsDialogControls c;
    c.dynRelaxFiguresCaptured = "0";
    r.result = ReadHeuristicsDialog(r.position, r.params, r.solveWide, c);
    ASSERT_TRUE(r.result.ok);
    EXPECT_EQ(r.params.m_nDynRelaxFiguresCaptured, 0);
}

TEST(ReadHeuristicsDialog, FiguresToCaptureThatIsNoNumberIsRefused) {
    EXPECT_EQ(refusalOn(KINGS_ONLY, [](auto& c) { c.dynRelaxFiguresCaptured = "x"; }), FIGURES_MESSAGE);
    EXPECT_EQ(refusalOn(KINGS_ONLY, [](auto& c) { c.dynRelaxFiguresCaptured = ""; }), FIGURES_MESSAGE);
    EXPECT_EQ(refusalOn(KINGS_ONLY, [](auto& c) { c.dynRelaxFiguresCaptured = "256"; }), FIGURES_MESSAGE);
}

TEST(ReadHeuristicsDialog, FiguresToCaptureIsTaken) {
    const Read r = readOn(KINGS_ONLY, [](auto& c) { c.dynRelaxFiguresCaptured = "3"; });
    ASSERT_TRUE(r.result.ok);
    EXPECT_EQ(r.params.m_nDynRelaxFiguresCaptured, 3);
}

TEST(ReadHeuristicsDialog, DeferMovesThatIsNoNumberIsRefused) {
    EXPECT_EQ(refusalOn(KINGS_ONLY, [](auto& c) { c.deferMoves = "x"; }),
              L"Invalid number of moves to defer");
    EXPECT_EQ(refusalOn(KINGS_ONLY, [](auto& c) { c.deferMoves = ""; }), L"Invalid number of moves to defer");
}

TEST(ReadHeuristicsDialog, DeferNeedsADynamicOption) {
    EXPECT_EQ(refusalOn(KINGS_ONLY, [](auto& c) { c.deferMoves = "2"; }),
              L"Defer check is meaningful only when 'on advanced pawn' or 'on figure captured' selected.");
    const Read captured = readOn(KINGS_ONLY, [](auto& c) {
        c.deferMoves = "2";
        c.dynRelaxFiguresCaptured = "1";
    });
    ASSERT_TRUE(captured.result.ok);
    EXPECT_EQ(captured.params.m_wDeferMoves, 2);
    const Read pawn = readOn(KINGS_ONLY, [](auto& c) {
        c.deferMoves = "7";
        c.dynRelaxOnAdvancedPawn = true;
    });
    ASSERT_TRUE(pawn.result.ok);
    EXPECT_EQ(pawn.params.m_wDeferMoves, 7);
}

// 7.
TEST(ReadHeuristicsDialog, OnlyOneLoseFiguresOption) {
    EXPECT_EQ(
        refusalOn(KINGS_ONLY,
                  [](auto& c) {
                      c.loseFiguresInclPawns = true;
                      c.loseFiguresInclPromotable = true;
                  }),
        L"Only one of additional options of Don't lose any figures (incl. pawns + incl.promotable pawns) "
        L"can be selected.");
}

TEST(ReadHeuristicsDialog, LoseFiguresModes) {
    const Read plain = readOn(KINGS_ONLY, [](auto& c) { c.dontLoseAnyFigures = true; });
    EXPECT_EQ(plain.position.m_uHeuristics, SH_DONTLOSEANYFIGURES);
    EXPECT_EQ(plain.params.m_nLoseFiguresMode, 0);
    const Read pawns = readOn(KINGS_ONLY, [](auto& c) { c.loseFiguresInclPawns = true; });
    EXPECT_EQ(pawns.position.m_uHeuristics, SH_DONTLOSEANYFIGURES);
    EXPECT_EQ(pawns.params.m_nLoseFiguresMode, 1);
    const Read promotable = readOn(KINGS_ONLY, [](auto& c) { c.loseFiguresInclPromotable = true; });
    EXPECT_EQ(promotable.position.m_uHeuristics, SH_DONTLOSEANYFIGURES);
    EXPECT_EQ(promotable.params.m_nLoseFiguresMode, 2);
}

// 8.
auto mainDiagonal(const char* square) {
    return [=](HeuristicsDialogControls& c) {
        c.dontLeaveMainDiagonal = true;
        c.mainDiagonalFigure = square;
    };
}
const wchar_t* const MAIN_DIAGONAL_MESSAGE = L"Improper field (Black figure not let leave main diagonal)";

TEST(ReadHeuristicsDialog, MainDiagonalFigureMustBeBlackAndOnALongDiagonal) {
    // Black bishops on d4 (a1-h8) and c5 (no long diagonal), a white knight on b7 (h1-a8).
    const char* const fen = "4k3/1N6/8/2b5/3b4/8/8/K7";
    EXPECT_EQ(refusalOn(fen, mainDiagonal("c5")), MAIN_DIAGONAL_MESSAGE);
    EXPECT_EQ(refusalOn(fen, mainDiagonal("b7")), MAIN_DIAGONAL_MESSAGE);
    EXPECT_EQ(refusalOn(fen, mainDiagonal("e5")), MAIN_DIAGONAL_MESSAGE);
    const Read r = readOn(fen, mainDiagonal("D4"));
    ASSERT_TRUE(r.result.ok);
    EXPECT_EQ(r.params.m_cMainDiagonalFigure, sq("d4"));
    EXPECT_EQ(r.position.m_uHeuristics, SH_DONTLEAVEMAINDIAGONAL);
}

TEST(ReadHeuristicsDialog, MainDiagonalWithoutFigure) {
    const Read r = readOn(KINGS_ONLY, mainDiagonal(""));
    ASSERT_TRUE(r.result.ok);
    EXPECT_EQ(r.params.m_cMainDiagonalFigure, HEURISTIC_NO_SQUARE);
    EXPECT_EQ(r.position.m_uHeuristics, SH_DONTLEAVEMAINDIAGONAL);
}

TEST(ReadHeuristicsDialog, ATextThatNamesNoSquareIsAnInvalidPiece) {
    EXPECT_EQ(refusalOn(KINGS_ONLY, mainDiagonal("z9")), L"Invalid piece (z9)");
    // A figure letter must name the man on the square.
    const char* const fen = "4k3/8/8/8/3b4/8/8/K7";
    EXPECT_EQ(refusalOn(fen, mainDiagonal("Xd4")), L"Invalid piece (Xd4)");
    EXPECT_EQ(refusalOn(fen, mainDiagonal("Nd4")), L"Invalid piece (Nd4)");
    const Read named = readOn(fen, mainDiagonal("Bd4"));
    ASSERT_TRUE(named.result.ok);
    EXPECT_EQ(named.params.m_cMainDiagonalFigure, sq("d4"));
    // The Polish letter of the bishop too.
    EXPECT_TRUE(readOn(fen, mainDiagonal("Gd4")).result.ok);
}

// 9.
TEST(ReadHeuristicsDialog, PromotedFiguresNeedTheirBox) {
    const Read queen = readOn(KINGS_ONLY, [](auto& c) {
        c.dontLetPromotedMove = true;
        c.promotedMover = PromotedMover::Queen;
    });
    EXPECT_EQ(queen.position.m_uHeuristics, SH_DONTLETPROMOTEDQUEENMOVE);
    const Read any = readOn(KINGS_ONLY, [](auto& c) {
        c.dontLetPromotedMove = true;
        c.promotedMover = PromotedMover::AnyFigure;
        c.promotedStrict = true;
    });
    EXPECT_EQ(any.position.m_uHeuristics, SH_DONTLETPROMOTEDFIGUREMOVE);
    EXPECT_EQ(any.params.m_bPromotedStrict, 1);
    const Read off = readOn(KINGS_ONLY, [](auto& c) { c.promotedMover = PromotedMover::AnyFigure; });
    EXPECT_EQ(off.position.m_uHeuristics, 0u);
    const Read notDynamic = readOn(KINGS_ONLY, [](auto& c) { c.unblockDynamic = false; });
    EXPECT_EQ(notDynamic.params.m_bUnblockDynamic, 0);
}

// 10.
// A black pawn on d6 and a black knight on c5.
const char* const BLOCKADE = "4k3/8/3p4/2n5/8/8/8/K7";

auto unblock(std::vector<const char*> squares) {
    return [=](HeuristicsDialogControls& c) {
        c.dontLetFigureUnblock = true;
        for (std::size_t i = 0; i < squares.size(); ++i) c.blockedFigures[i] = squares[i];
    };
}

TEST(ReadHeuristicsDialog, UnblockFieldMustHoldABlackMan) {
    EXPECT_EQ(refusalOn(BLOCKADE, unblock({"d6", "", "e4"})), L"Improper field: Figure not let unblock #3");
    EXPECT_EQ(refusalOn(BLOCKADE, unblock({"a1"})), L"Improper field: Figure not let unblock #1");
    EXPECT_EQ(refusalOn(BLOCKADE, unblock({"", "", "", "", "", "", "", "h8"})),
              L"Improper field: Figure not let unblock #8");
    EXPECT_EQ(refusalOn(BLOCKADE, unblock({"d66"})), L"Invalid piece (d66)");
}

TEST(ReadHeuristicsDialog, UnblockListIsWatchedByThePosition) {
    const Read r = readOn(BLOCKADE, unblock({"d6", "", "c5"}));
    ASSERT_TRUE(r.result.ok);
    EXPECT_EQ(r.position.m_uHeuristics, SH_DONTLETFIGUREUNBLOCK);
    EXPECT_EQ(r.params.m_nBlockedFigures, 2);
    EXPECT_EQ(r.params.m_nBlockedFiguresSaved, 2);
    EXPECT_EQ(r.params.m_bBlockedHasPawn, 1);
    const uint8_t expected[MAX_BLOCKED_FIGURES] = {sq("d6"), sq("c5"), 255, 255, 255, 255, 255, 255};
    for (int i = 0; i < MAX_BLOCKED_FIGURES; ++i) {
        EXPECT_EQ(r.params.m_aBlockedStart[i], expected[i]) << i;
        EXPECT_EQ(r.params.m_aBlockedNow[i], expected[i]) << i;
        EXPECT_EQ(r.position.m_aWatched[i], expected[i]) << i;
    }
    EXPECT_EQ(r.position.m_wFlags2 & FLAGS2_UNBLOCK_WATCHED, FLAGS2_UNBLOCK_WATCHED);

    const Read knight = readOn(BLOCKADE, unblock({"c5"}));
    ASSERT_TRUE(knight.result.ok);
    EXPECT_EQ(knight.params.m_bBlockedHasPawn, 0);
}

TEST(ReadHeuristicsDialog, NoUnblockListWatchesNothing) {
    Read r;
    r.position = boardFromFen(BLOCKADE, WHITE_TO_MOVE);
    r.position.m_aWatched[0] = sq("d6");
    r.position.m_wFlags2 |= FLAGS2_UNBLOCK_WATCHED;
    r.params.m_nBlockedFigures = 1;
    HeuristicsDialogControls c;
    c.blockedFigures[0] = "d6"; // ignored with the box clear
    r.result = ReadHeuristicsDialog(r.position, r.params, r.solveWide, c);
    ASSERT_TRUE(r.result.ok);
    EXPECT_EQ(r.params.m_nBlockedFigures, 0);
    EXPECT_EQ(r.position.m_aWatched[0], NO_SQUARE);
    EXPECT_EQ(r.position.m_wFlags2 & FLAGS2_UNBLOCK_WATCHED, 0);
}

// 12.
auto keyFigure(const char* square) {
    return [=](HeuristicsDialogControls& c) {
        c.keyWhiteFigure = true;
        c.keyWhiteFigureSquare = square;
    };
}
const wchar_t* const PINNED_NOT_FOUND = L"Invalid key white figure (pinned piece not found)";

TEST(ReadHeuristicsDialog, KeyFigureOnTheKingsLineWithNothingToPinIsRefused) {
    EXPECT_EQ(refusalOn("4k3/8/8/8/8/8/8/K3R3", keyFigure("e1")), PINNED_NOT_FOUND);
    // Two black men between, or one that moves along the line.
    EXPECT_EQ(refusalOn("4k3/4n3/8/4n3/8/8/8/K3R3", keyFigure("e1")), PINNED_NOT_FOUND);
    EXPECT_EQ(refusalOn("4k3/8/8/4r3/8/8/8/K3R3", keyFigure("e1")), PINNED_NOT_FOUND);
    EXPECT_EQ(refusalOn("4k3/8/2b5/8/B7/8/8/K7", keyFigure("a4")), PINNED_NOT_FOUND);
    // A white man in front of the black one.
    EXPECT_EQ(refusalOn("4k3/8/8/4n3/4P3/8/8/K3R3", keyFigure("e1")), PINNED_NOT_FOUND);
    // A bishop does not pin along a file, nor anything off the king's lines.
    EXPECT_EQ(refusalOn("4k3/8/8/4n3/8/8/8/K3B3", keyFigure("e1")), PINNED_NOT_FOUND);
    EXPECT_EQ(refusalOn("4k3/8/8/4n3/8/8/8/K2R4", keyFigure("d1")), PINNED_NOT_FOUND);
}

TEST(ReadHeuristicsDialog, KeyFigureMustBeAWhiteLinePiece) {
    EXPECT_EQ(refusalOn("4k3/8/8/4n3/8/8/4P3/K7", keyFigure("e2")), L"Invalid key white figure");
    EXPECT_EQ(refusalOn("4k3/8/8/4n3/8/8/8/K3N3", keyFigure("e1")), L"Invalid key white figure");
    EXPECT_EQ(refusalOn("4k3/8/8/4n3/8/8/8/K3r3", keyFigure("e1")), L"Invalid key white figure");
    EXPECT_EQ(refusalOn(KINGS_ONLY, keyFigure("")), L"Invalid key white figure");
}

TEST(ReadHeuristicsDialog, KeyFigureAndThePinnedOne) {
    const Read rook = readOn("4k3/8/8/4b3/8/8/8/K3R3", keyFigure("e1"));
    ASSERT_TRUE(rook.result.ok);
    EXPECT_EQ(rook.position.m_uHeuristics, SH_KEYWHITEFIGURE);
    EXPECT_EQ(rook.params.m_cKeyWhiteFigure, sq("e1"));
    EXPECT_EQ(rook.params.m_cKeyPinnedFigure, sq("e5"));
    EXPECT_EQ(rook.params.m_bKeyFigureIsRook, 1);

    const Read bishop = readOn("4k3/8/2r5/8/B7/8/8/K7", keyFigure("a4"));
    ASSERT_TRUE(bishop.result.ok);
    EXPECT_EQ(bishop.params.m_cKeyPinnedFigure, sq("c6"));
    EXPECT_EQ(bishop.params.m_bKeyFigureIsRook, 0);

    const Read queen = readOn("4k3/3n4/8/8/Q7/8/8/K7", keyFigure("a4"));
    ASSERT_TRUE(queen.result.ok);
    EXPECT_EQ(queen.params.m_cKeyPinnedFigure, sq("d7"));
    EXPECT_EQ(queen.params.m_bKeyFigureIsRook, 0);
}

// 11. and 13. and the other plain boxes: each sets its own bit and no other.
TEST(ReadHeuristicsDialog, EachBoxSetsItsOwnBit) {
    using Setter = std::function<void(HeuristicsDialogControls&)>;
    const std::vector<std::pair<Setter, uint32_t>> boxes = {
        {[](auto& c) { c.dontLetKingMove = true; }, SH_KEEPKINGONTHEEDGE},
        {[](auto& c) { c.keepKingWithinExtEdge = true; }, SH_KEEPKINGWITHINEXTEDGE},
        {[](auto& c) { c.assertKingSurrounded = true; }, SH_ASSERTBLACKKINGSURROUNDED},
        {[](auto& c) { c.areKingsNear = true; }, SH_AREKINGSNEAR},
        {[](auto& c) { c.dontRecedeBlackKing = true; }, SH_DONTRECEDEBLACKKING},
        {[](auto& c) { c.saveQueenRook = true; }, SH_SAVEQUEEN_ROOK},
        {[](auto& c) { c.dontLetQueenCheckTwice = true; }, SH_DONTLETBLACKQUEENCHECKTWICE},
        {[](auto& c) { c.singleQueenMate = true; }, SH_SINGLEQUEENMATE},
        {[](auto& c) { c.reductionToGlobalRegister = true; }, SH_REDUCTIONTOGLOBREGPOS},
        {[](auto& c) { c.threeMovesToMate = true; }, SH_3MOVESTOMATE},
        {[](auto& c) { c.oneColourPlay = true; }, SH_ONECOLORPLAYPOSSIBLE},
        {[](auto& c) { c.sweepingWhiteRook = true; }, SH_SWEEPINGWHITEROOK},
        {[](auto& c) { c.skipWorstWhiteMoves = true; }, SH_SKIPWORSTWHITEMOVES},
        {[](auto& c) { c.captureKnight = true; }, SH_CAPTUREKNIGHT},
        {[](auto& c) { c.zugzwang = true; }, SH_ZUGZWANG},
        {[](auto& c) { c.findForcedMate = true; }, SH_FINDFORCEDMATE},
    };
    for (const auto& [set, bit] : boxes) {
        const Read r = readOn(KINGS_ONLY, set);
        EXPECT_TRUE(r.result.ok);
        EXPECT_EQ(r.position.m_uHeuristics, bit) << std::hex << bit;
    }
}

// 14.
TEST(ReadHeuristicsDialog, KeyLineIsOneFileLetter) {
    for (const char* text : {"i", "", "ab", "1"})
        EXPECT_EQ(refusalOn(KINGS_ONLY,
                            [=](auto& c) {
                                c.keyLine = true;
                                c.keyLineFile = text;
                            }),
                  L"Invalid field Key line")
            << text;
    const Read r = readOn(KINGS_ONLY, [](auto& c) {
        c.keyLine = true;
        c.keyLineFile = "E";
    });
    ASSERT_TRUE(r.result.ok);
    EXPECT_EQ(r.solveWide.m_cKeyLineFile, 4);
    EXPECT_EQ(r.position.m_uHeuristics, SH_KEYLINE);
}

auto keyDiagonal(const char* first, const char* second) {
    return [=](HeuristicsDialogControls& c) {
        c.keyDiagonal = true;
        c.keyDiagonalFirst = first;
        c.keyDiagonalSecond = second;
    };
}

TEST(ReadHeuristicsDialog, KeyDiagonalIsTwoSquaresOnADiagonal) {
    EXPECT_EQ(refusalOn(KINGS_ONLY, keyDiagonal("a1", "c4")), L"Invalid field Key diagonal");
    EXPECT_EQ(refusalOn(KINGS_ONLY, keyDiagonal("a1", "")), L"Invalid field Key diagonal");
    EXPECT_EQ(refusalOn(KINGS_ONLY, keyDiagonal("c3", "c3")), L"Invalid field Key diagonal");
    EXPECT_EQ(refusalOn(KINGS_ONLY, keyDiagonal("a1", "c9")), L"Invalid piece (c9)");
    const Read r = readOn(KINGS_ONLY, keyDiagonal("A1", "c3"));
    ASSERT_TRUE(r.result.ok);
    EXPECT_EQ(r.solveWide.m_wKeyDiagonal, sq("a1") | (sq("c3") << 8));
    EXPECT_EQ(r.position.m_uHeuristics, SH_KEYDIAGONAL);
    const Read other = readOn(KINGS_ONLY, keyDiagonal("h2", "b8"));
    ASSERT_TRUE(other.result.ok);
    EXPECT_EQ(other.solveWide.m_wKeyDiagonal, sq("h2") | (sq("b8") << 8));
}

// 15.
const char* const PAWN_AND_KINGS = "4k3/8/8/8/8/8/4P3/4K3";

auto seaSnake(const char* onlyAfter) {
    return [=](HeuristicsDialogControls& c) {
        c.seaSnake = true;
        c.seaSnakeApproach = "d2";
        c.seaSnakeTurnBack = "";
        c.seaSnakePendulum1 = "f7";
        c.seaSnakePendulum2 = "g6";
        c.seaSnakeOnlyAfter = onlyAfter;
    };
}

TEST(ReadHeuristicsDialog, SeaSnakeSquares) {
    const Read r = readOn(PAWN_AND_KINGS, seaSnake(""));
    ASSERT_TRUE(r.result.ok);
    EXPECT_EQ(r.position.m_uHeuristics, SH_SEASNAKE);
    EXPECT_EQ(r.params.m_bSeaSnakeRequested, 1);
    EXPECT_EQ(r.params.m_cApproach, sq("d2"));
    EXPECT_EQ(r.params.m_cTurnBack, HEURISTIC_NO_SQUARE);
    EXPECT_EQ(r.params.m_cPendulum1, sq("f7"));
    EXPECT_EQ(r.params.m_cPendulum2, sq("g6"));
    EXPECT_TRUE(r.solveWide.m_aSeaSnakeOnlyAfter.empty());
}

TEST(ReadHeuristicsDialog, SeaSnakeOnlyAfterMovesDeferTheBet) {
    const Read r = readOn(PAWN_AND_KINGS, seaSnake(" e2-e4  Kd7 "));
    ASSERT_TRUE(r.result.ok);
    EXPECT_EQ(r.position.m_uHeuristics, 0u);
    EXPECT_EQ(r.params.m_bSeaSnakeRequested, 1);
    ASSERT_EQ(r.solveWide.m_aSeaSnakeOnlyAfter.size(), 2u);
    EXPECT_EQ(r.solveWide.m_aSeaSnakeOnlyAfter[0], mv("e2", "e4"));
    EXPECT_EQ(r.solveWide.m_aSeaSnakeOnlyAfter[1], mv("e8", "d7"));
}

TEST(ReadHeuristicsDialog, SeaSnakeRefusals) {
    EXPECT_EQ(refusalOn(PAWN_AND_KINGS, seaSnake("e2-e4 e2-e5")), L"Invalid move: e2-e5");
    EXPECT_EQ(refusalOn(PAWN_AND_KINGS, seaSnake("e2-e5")), L"Invalid move: e2-e5");
    EXPECT_EQ(refusalOn(PAWN_AND_KINGS,
                        [](auto& c) {
                            seaSnake("")(c);
                            c.findForcedMate = true;
                        }),
              L"FindForcedMate cannot be used together with SeaSnake.");
    EXPECT_EQ(refusalOn(PAWN_AND_KINGS,
                        [](auto& c) {
                            seaSnake("")(c);
                            c.seaSnakeApproach = "";
                        }),
              L"Invalid piece ()");
    EXPECT_EQ(refusalOn(PAWN_AND_KINGS,
                        [](auto& c) {
                            seaSnake("")(c);
                            c.seaSnakePendulum2 = "g";
                        }),
              L"Invalid piece (g)");
}

// 16.
TEST(ReadHeuristicsDialog, ZugzwangPositionsArePlayedFromThePosition) {
    const Read r = readOn(PAWN_AND_KINGS, [](auto& c) {
        c.zugzwang = true;
        c.zugzwangMoves = "e2-e4 Ke8-d7 Ke2";
    });
    ASSERT_TRUE(r.result.ok);
    EXPECT_EQ(r.position.m_uHeuristics, SH_ZUGZWANG);
    const auto& after = r.solveWide.m_aZugzwangAfter;
    ASSERT_EQ(after.size(), 3u);
    const auto first = after.find(positionId("4k3/8/8/8/4P3/8/8/4K3"));
    const auto second = after.find(positionId("8/3k4/8/8/4P3/8/8/4K3"));
    const auto third = after.find(positionId("8/3k4/8/8/4P3/8/4K3/8"));
    ASSERT_NE(first, after.end());
    ASSERT_NE(second, after.end());
    ASSERT_NE(third, after.end());
    EXPECT_EQ(first->second.reachedBy, mv("e2", "e4"));
    EXPECT_EQ(first->second.plyFromStart, 1);
    EXPECT_EQ(second->second.reachedBy, mv("e8", "d7"));
    EXPECT_EQ(second->second.plyFromStart, 2);
    EXPECT_EQ(third->second.reachedBy, mv("e1", "e2"));
    EXPECT_EQ(third->second.plyFromStart, 3);
    // The position the dialog was read on is not moved.
    EXPECT_EQ(r.position.m_aSquares[sq("e2")], WP);
}

TEST(ReadHeuristicsDialog, ZugzwangMovesAsShownAreNotPlayedAgain) {
    Read r;
    r.position = boardFromFen(PAWN_AND_KINGS, WHITE_TO_MOVE);
    r.solveWide.m_aZugzwangAfter["kept"] = {mv("a1", "a2"), 7};
    HeuristicsDialogControls c;
    c.zugzwang = true;
    c.zugzwangMoves = c.zugzwangMovesShown = "e2-e4";
    r.result = ReadHeuristicsDialog(r.position, r.params, r.solveWide, c);
    ASSERT_TRUE(r.result.ok);
    ASSERT_EQ(r.solveWide.m_aZugzwangAfter.size(), 1u);
    EXPECT_EQ(r.solveWide.m_aZugzwangAfter.begin()->first, "kept");
}

TEST(ReadHeuristicsDialog, ZugzwangMoveThatIsNotLegalIsRefused) {
    EXPECT_EQ(refusalOn(PAWN_AND_KINGS,
                        [](auto& c) {
                            c.zugzwang = true;
                            c.zugzwangMoves = "e2-e4 e2-e3";
                        }),
              L"Invalid move: e2-e3");
    EXPECT_EQ(refusalOn(PAWN_AND_KINGS,
                        [](auto& c) {
                            c.zugzwang = true;
                            c.zugzwangMoves = "e2-e4 e4-e5";
                        }),
              L"Invalid move: e4-e5");
}

// 17.
TEST(ReadHeuristicsDialog, PassesSwitches) {
    const Read r = readOn(KINGS_ONLY, [](auto& c) {
        c.letRelax = false;
        c.heuristicsFallback = true;
        c.pass2 = false;
    });
    ASSERT_TRUE(r.result.ok);
    EXPECT_EQ(r.params.m_bLetRelax, 0);
    EXPECT_EQ(r.params.m_bHeuristicsFallback, 1);
    EXPECT_EQ(r.params.m_bPass2, 0);
}

// 18.
auto ffm(FfmLevelChoice level, const char* relaxations) {
    return [=](HeuristicsDialogControls& c) {
        c.findForcedMate = true;
        c.ffmLevel = level;
        c.ffmRelaxations = relaxations;
    };
}

TEST(ReadHeuristicsDialog, FfmRelaxationsMustBeDigits) {
    for (const char* text : {"x", "", "-1", "1x", " 1"})
        EXPECT_EQ(refusalOn(KINGS_ONLY, ffm(FfmLevelChoice::ThreatMate1, text)),
                  L"Invalid value in field with number of heuristics relaxations for FFM (FindForcedMate)")
            << text;
}

TEST(ReadHeuristicsDialog, FfmRelaxationsMayNotGoPastMateInFive) {
    EXPECT_EQ(refusalOn(KINGS_ONLY, ffm(FfmLevelChoice::ThreatMate5, "1")),
              L"Number of heuristics relaxations for FFM is too large (max = 0 => #5)");
    EXPECT_EQ(refusalOn(KINGS_ONLY, ffm(FfmLevelChoice::ThreatMate1, "7")),
              L"Number of heuristics relaxations for FFM is too large (max = 6 => #5)");
    EXPECT_EQ(refusalOn(KINGS_ONLY, ffm(FfmLevelChoice::CheckWithExceptions, "99999999999999")),
              L"Number of heuristics relaxations for FFM is too large (max = 7 => #5)");
    const Read r = readOn(KINGS_ONLY, ffm(FfmLevelChoice::ThreatMate1, "6"));
    ASSERT_TRUE(r.result.ok);
    EXPECT_EQ(r.params.m_nFfmLevel, 3);
    EXPECT_EQ(r.params.m_nFfmStartLevel, 3);
    EXPECT_EQ(r.params.m_nFfmRelaxations, 6);
}

TEST(ReadHeuristicsDialog, FfmLevelsByRadio) {
    const std::pair<FfmLevelChoice, int> levels[] = {
        {FfmLevelChoice::CheckWithExceptions, 2}, {FfmLevelChoice::ThreatMate1, 3},
        {FfmLevelChoice::ThreatMate1Plus, 4},     {FfmLevelChoice::ThreatMate2, 5},
        {FfmLevelChoice::ThreatMate2Plus, 6},     {FfmLevelChoice::ThreatMate3, 7},
        {FfmLevelChoice::ThreatMate4, 8},         {FfmLevelChoice::ThreatMate5, 9},
    };
    for (const auto& [choice, level] : levels) {
        const Read r = readOn(KINGS_ONLY, ffm(choice, "0"));
        ASSERT_TRUE(r.result.ok);
        EXPECT_EQ(r.params.m_nFfmLevel, level);
    }
}

TEST(ReadHeuristicsDialog, FfmRelaxationsWithoutRelaxationIsANoteAndTheReadGoesOn) {
    const Read r = readOn(KINGS_ONLY, [](auto& c) {
        ffm(FfmLevelChoice::ThreatMate2, "2")(c);
        c.letRelax = false;
        c.ffmAddCaptures = true;
        c.ffmWithOthers = FfmWithOthersChoice::Yes;
    });
    ASSERT_TRUE(r.result.ok);
    ASSERT_EQ(r.result.notes.size(), 1u);
    EXPECT_EQ(r.result.notes[0].english,
              L"Note: relaxation of heuristics is off, so setting for FFM (2 time(s)) will be ignored");
    EXPECT_EQ(r.params.m_nFfmRelaxations, 2);
    // Step 19 was still read.
    EXPECT_EQ(r.params.m_bFfmAddCaptures, 1);
    EXPECT_EQ(r.params.m_nFfmWithOthers, FFM_WITH_OTHERS);
    EXPECT_EQ(r.position.m_uHeuristics, SH_FINDFORCEDMATE);
}

TEST(ReadHeuristicsDialog, NoNoteWithRelaxationOnOrNoFfmRelaxation) {
    EXPECT_TRUE(readOn(KINGS_ONLY, ffm(FfmLevelChoice::ThreatMate2, "2")).result.notes.empty());
    EXPECT_TRUE(readOn(KINGS_ONLY, [](auto& c) {
                    ffm(FfmLevelChoice::ThreatMate2, "0")(c);
                    c.letRelax = false;
                }).result.notes.empty());
}

// 19.
TEST(ReadHeuristicsDialog, FfmCompany) {
    const std::pair<FfmWithOthersChoice, std::pair<int, int>> choices[] = {
        {FfmWithOthersChoice::No, {FFM_WITHOUT_OTHERS, 0}},
        {FfmWithOthersChoice::Yes, {FFM_WITH_OTHERS, 0}},
        {FfmWithOthersChoice::Partially, {FFM_PARTIALLY_WITH_OTHERS, 0}},
        {FfmWithOthersChoice::PartiallyWithInitialPass, {FFM_PARTIALLY_WITH_OTHERS, 1}},
    };
    for (const auto& [choice, expected] : choices) {
        const Read r = readOn(KINGS_ONLY, [=](auto& c) { c.ffmWithOthers = choice; });
        ASSERT_TRUE(r.result.ok);
        EXPECT_EQ(r.params.m_nFfmWithOthers, expected.first);
        EXPECT_EQ(r.params.m_bFfmPreliminary, expected.second);
    }
}

// The whole read.
TEST(ReadHeuristicsDialog, ASuccessfulReadWritesExactlyTheChosenSet) {
    Read r;
    r.position = boardFromFen("4k3/8/8/4b3/8/8/8/K3R3", WHITE_TO_MOVE);
    r.position.m_uHeuristics = 0xFFFFFFFFu;
    r.position.m_uHeuristicParams = 0x12345678u;
    HeuristicsDialogControls c;
    c.dontLetKingMove = true;
    c.allowKingMoveExceptions = true;
    c.extEdgeMoveUnlessOnEdge = true;
    c.surroundedStrict = true;
    c.keepKingNearCorner = true;
    c.cornerDistance = "2";
    c.cornerDistanceUnit = CornerDistanceUnit::Moves;
    c.areKingsNear = true;
    c.loseFiguresInclPromotable = true;
    c.dontLetPromotedMove = true;
    c.promotedMover = PromotedMover::AnyFigure;
    c.dontLetQueenCheckTwice = true;
    c.threeMovesToMate = true;
    c.keyWhiteFigure = true;
    c.keyWhiteFigureSquare = "Re1";
    c.sweepingWhiteRook = true;
    c.keyLine = true;
    c.keyLineFile = "c";
    c.captureKnight = true;
    c.findForcedMate = true;
    c.ffmLevel = FfmLevelChoice::ThreatMate2;
    c.ffmRelaxations = "2";
    c.ffmWithOthers = FfmWithOthersChoice::PartiallyWithInitialPass;
    r.result = ReadHeuristicsDialog(r.position, r.params, r.solveWide, c);
    ASSERT_TRUE(r.result.ok);
    EXPECT_TRUE(r.result.notes.empty());
    EXPECT_EQ(r.position.m_uHeuristics, SH_KEEPKINGONTHEEDGE | SH_KEEPKINGWITHINEXTEDGE |
                                            SH_ASSERTBLACKKINGSURROUNDED | SH_KEEPKINGNEARCORNER |
                                            SH_AREKINGSNEAR | SH_DONTLOSEANYFIGURES |
                                            SH_DONTLETPROMOTEDFIGUREMOVE | SH_DONTLETBLACKQUEENCHECKTWICE |
                                            SH_3MOVESTOMATE | SH_KEYWHITEFIGURE | SH_SWEEPINGWHITEROOK |
                                            SH_KEYLINE | SH_CAPTUREKNIGHT | SH_FINDFORCEDMATE);
    EXPECT_EQ(r.position.m_uHeuristics, 0x06E99247u);
    // The fingerprint is the caller's to refresh.
    EXPECT_EQ(r.position.m_uHeuristicParams, 0x12345678u);
    EXPECT_EQ(r.params.m_bKingMoveStrict, 1);
    EXPECT_EQ(r.params.m_bKingMoveExceptions, 1);
    EXPECT_EQ(r.params.m_bExtEdgeMoveUnlessOnEdge, 1);
    EXPECT_EQ(r.params.m_bSurroundedStrict, 1);
    EXPECT_EQ(r.params.m_cCornerDistance, -2);
    EXPECT_EQ(r.params.m_nLoseFiguresMode, 2);
    EXPECT_EQ(r.params.m_cKeyWhiteFigure, sq("e1"));
    EXPECT_EQ(r.params.m_cKeyPinnedFigure, sq("e5"));
    EXPECT_EQ(r.params.m_bKeyFigureIsRook, 1);
    EXPECT_EQ(r.solveWide.m_cKeyLineFile, 2);
    EXPECT_EQ(r.solveWide.m_wKeyDiagonal, 0xFFFF);
    EXPECT_EQ(r.params.m_nFfmLevel, 5);
    EXPECT_EQ(r.params.m_nFfmRelaxations, 2);
    EXPECT_EQ(r.params.m_nFfmWithOthers, FFM_PARTIALLY_WITH_OTHERS);
    EXPECT_EQ(r.params.m_bFfmPreliminary, 1);
}

TEST(ReadHeuristicsDialog, TheReadStopsAtTheFirstFaultWithWhatCameBeforeWritten) {
    Read r;
    r.position = boardFromFen("4k3/8/8/2b5/8/8/8/K7", WHITE_TO_MOVE);
    r.position.m_uHeuristics = 0xABCDu;
    r.solveWide.m_cKeyLineFile = 3;
    HeuristicsDialogControls c;
    c.inclCornerSquares = true;      // step 3
    c.surroundedStrict = true;       // step 4
    c.dynRelaxExtEdgeOnly = true;    // step 5
    c.dynRelaxFiguresCaptured = "2"; // step 6
    c.loseFiguresInclPawns = true;   // step 7
    c.dontLeaveMainDiagonal = true;  // step 8: c5 is on no long diagonal
    c.mainDiagonalFigure = "c5";
    c.keyLine = true; // step 14, not reached
    c.keyLineFile = "a";
    c.letRelax = false;            // step 17, not reached
    c.dontLetFigureUnblock = true; // step 10, not reached
    c.blockedFigures[0] = "c5";
    // step 15, not reached: it would have refused too
    c.seaSnake = true;
    c.findForcedMate = true;
    r.result = ReadHeuristicsDialog(r.position, r.params, r.solveWide, c);
    EXPECT_EQ(refusal(r), L"Improper field (Black figure not let leave main diagonal)");
    EXPECT_EQ(r.position.m_uHeuristics, 0xABCDu);
    EXPECT_EQ(r.params.m_bInclCornerSquares, 1);
    EXPECT_EQ(r.params.m_bSurroundedStrict, 1);
    EXPECT_EQ(r.params.m_bDynRelaxExtEdgeOnly, 1);
    EXPECT_EQ(r.params.m_nDynRelaxFiguresCaptured, 2);
    EXPECT_EQ(r.params.m_nLoseFiguresMode, 1);
    EXPECT_EQ(r.params.m_cMainDiagonalFigure, HEURISTIC_NO_SQUARE);
    EXPECT_EQ(r.params.m_nBlockedFigures, 0);
    EXPECT_EQ(r.position.m_aWatched[0], NO_SQUARE);
    EXPECT_EQ(r.solveWide.m_cKeyLineFile, 3);
    EXPECT_EQ(r.params.m_bLetRelax, 1);
}

// The other languages.
TEST(ReadHeuristicsDialog, MessagesInPolish) {
    const Read ffmRead = readOn(KINGS_ONLY, ffm(FfmLevelChoice::ThreatMate5, "1"));
    EXPECT_EQ(ffmRead.result.message().In(LANGUAGE_POLISH),
              L"Liczba łagodzeń heurystyk dla FFM jest zbyt duża (max = 0 => #5)");
    EXPECT_EQ(refusal(readOn(KINGS_ONLY, [](auto& c) { c.deferMoves = "x"; })),
              L"Invalid number of moves to defer");
    EXPECT_EQ(readOn(KINGS_ONLY, [](auto& c) { c.deferMoves = "x"; }).result.fault.polish,
              L"Niepoprawna liczba ruchów odroczenia");
    EXPECT_EQ(readOn(KINGS_ONLY, mainDiagonal("z9")).result.fault.polish, L"Niepoprawna bierka (z9)");
    EXPECT_EQ(NO_PREVIOUS_HEURISTICS_SETTINGS.In(LANGUAGE_POLISH), L"Brak poprzednich ustawień heurystyk");
}

TEST(ReadHeuristicsDialog, MessagesInUkrainian) {
    const Read unblockRead = readOn(BLOCKADE, unblock({"d6", "e4"}));
    EXPECT_EQ(unblockRead.result.message().In(LANGUAGE_UKRAINIAN),
              L"Неправильне поле: Фігура, якій не можна залишати блокаду № 2");
    const Read note = readOn(KINGS_ONLY, [](auto& c) {
        ffm(FfmLevelChoice::ThreatMate1, "3")(c);
        c.letRelax = false;
    });
    ASSERT_EQ(note.result.notes.size(), 1u);
    EXPECT_EQ(
        note.result.notes[0].In(LANGUAGE_UKRAINIAN),
        L"Примітка: послаблення евристик вимкнено, тому налаштування для FFM (3 раз(и)) буде проігноровано");
    EXPECT_EQ(refusalOn("4k3/8/8/8/8/8/8/K3R3", keyFigure("e1")), PINNED_NOT_FOUND);
    EXPECT_EQ(readOn("4k3/8/8/8/8/8/8/K3R3", keyFigure("e1")).result.fault.ukrainian,
              L"Неправильна ключова біла фігура (не знайдено зв’язаної фігури)");
}

TEST(ReadHeuristicsDialog, EveryMessageHasAllThreeForms) {
    const Read r = readOn(KINGS_ONLY, [](auto& c) { c.allowKingMoveExceptions = true; });
    EXPECT_FALSE(r.result.fault.polish.empty());
    EXPECT_FALSE(r.result.fault.ukrainian.empty());
    EXPECT_NE(r.result.fault.polish, r.result.fault.english);
    EXPECT_NE(r.result.fault.ukrainian, r.result.fault.english);
    EXPECT_EQ(NO_PREVIOUS_HEURISTICS_SETTINGS.In(LANGUAGE_ENGLISH), L"No previous settings for heuristics");
    EXPECT_EQ(NO_PREVIOUS_HEURISTICS_SETTINGS.In(LANGUAGE_UKRAINIAN),
              L"Немає попередніх налаштувань евристик");
}

} // namespace
} // namespace zorvane
