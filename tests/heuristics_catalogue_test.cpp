// The special heuristics' catalogue: names by bit, the text of each flag's
// parameters and of a set, the fingerprint by hand, and the reader of a
// problem's options with its round trips and its faults.
#include "core/chess_exception.h"
#include "engine/heuristic_bits.h"
#include "engine/heuristics_catalogue.h"
#include "engine/impossibility.h"
#include "problems/problem_file.h"
#include "test_positions.h"
#include "test_squares.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace zorvane {
namespace {

// Black: Ke8, Rb7, pf7, Ne6, Bc3. White: Kg1, Qh1, Re2 (which pins the knight).
const std::string FEN = "4k3/1r3p2/4n3/8/8/2b5/4R3/6KQ w - - 0 1";

// A position with its set, the thread's parameters and the solve-wide ones.
struct HeuristicSet {
    TChessboard board;
    TSpecialHeuristicsParams params;
    SolveWideHeuristicParams wide;

    explicit HeuristicSet(uint32_t word = 0, const std::string& fen = FEN) : board(boardFromFen(fen, 5)) {
        board.m_uHeuristics = word;
    }
    std::string text() const { return GetSpecialHeuristicsText(board, params, wide); }
    std::string paramText(uint32_t flag) const {
        return GetSpecialHeuristicParamText(flag, board, params, wide);
    }
    uint32_t fingerprint(uint8_t queenMateIndex = 0) const {
        return CalcHeuristicParams(board, params, board, queenMateIndex);
    }
    void apply(const std::map<uint32_t, std::string>& options) {
        ApplyHeuristicOptions(options, board, params, wide);
    }
    // Every active named flag with its parameter text, as the options hold them.
    std::map<uint32_t, std::string> options() const {
        std::map<uint32_t, std::string> options;
        for (const HeuristicName& heuristic : HeuristicNames)
            if (board.m_uHeuristics & heuristic.bit) options[heuristic.bit] = paramText(heuristic.bit);
        return options;
    }
};

std::string errorOf(HeuristicSet& set, const std::map<uint32_t, std::string>& options) {
    try {
        set.apply(options);
    } catch (const ChessException& e) {
        return e.what();
    }
    return "no error";
}

// ---- Names ----

TEST(HeuristicName, EveryNamedBitGivesItsName) {
    EXPECT_EQ(HeuristicNames.size(), 29u);
    for (const HeuristicName& heuristic : HeuristicNames)
        EXPECT_STREQ(GetSpecialHeuristicName(heuristic.bit), heuristic.name);
    EXPECT_STREQ(GetSpecialHeuristicName(SH_AREKINGSNEAR), "SH_AREKINGSNEAR");
    EXPECT_STREQ(GetSpecialHeuristicName(SH_KEEPKINGONTHEEDGE), "SH_KEEPKINGONTHEEDGE");
    EXPECT_STREQ(GetSpecialHeuristicName(SH_SAVEQUEEN_ROOK), "SH_SAVEQUEEN/ROOK");
    EXPECT_STREQ(GetSpecialHeuristicName(SH_3MOVESTOMATE), "SH_3MOVESTOMATE");
    EXPECT_STREQ(GetSpecialHeuristicName(SH_SEASNAKE), "SH_SEASNAKE");
    EXPECT_STREQ(GetSpecialHeuristicName(SH_REDUCTIONTOGLOBREGPOS), "SH_REDUCTIONTOGLOBREGPOS");
    EXPECT_STREQ(GetSpecialHeuristicName(SH_ZUGZWANG), "SH_ZUGZWANG");
}

TEST(HeuristicName, UnnamedBitsAndOtherValuesReadAsDots) {
    EXPECT_STREQ(GetSpecialHeuristicName(0x100), "...");
    EXPECT_STREQ(GetSpecialHeuristicName(0x10000000), "...");
    EXPECT_STREQ(GetSpecialHeuristicName(0x20000000), "...");
    EXPECT_STREQ(GetSpecialHeuristicName(0), "...");
    EXPECT_STREQ(GetSpecialHeuristicName(SH_AREKINGSNEAR | SH_SWEEPINGWHITEROOK), "...");
    EXPECT_STREQ(GetSpecialHeuristicName(0xFFFFFFFFu), "...");
    int named = 0;
    for (int i = 0; i < 32; ++i) named += std::string(GetSpecialHeuristicName(1u << i)) != "...";
    EXPECT_EQ(named, 29);
}

// ---- The parameter text of a flag ----

TEST(HeuristicParamText, EdgeLeadsWithItsStrictness) {
    HeuristicSet set;
    EXPECT_EQ(set.paramText(SH_KEEPKINGONTHEEDGE), "STRICT"); // strict is the fresh value
    set.params.m_bKingMoveExceptions = 1;
    EXPECT_EQ(set.paramText(SH_KEEPKINGONTHEEDGE), "ALMOST_STRICT");
    set.params.m_bKingMoveStrict = 0;
    set.params.m_bKingMoveExceptions = 0;
    EXPECT_EQ(set.paramText(SH_KEEPKINGONTHEEDGE), "");
    set.params.m_nDynRelaxFiguresCaptured = 2;
    EXPECT_EQ(set.paramText(SH_KEEPKINGONTHEEDGE), "C2");
    set.params.m_bKingMoveStrict = 1;
    EXPECT_EQ(set.paramText(SH_KEEPKINGONTHEEDGE), "STRICT,C2");
    set.params.m_bDynRelaxOnAdvancedPawn = 1;
    EXPECT_EQ(set.paramText(SH_KEEPKINGONTHEEDGE), "STRICT,C2A");
    set.params.m_wDeferMoves = 3;
    set.params.m_wDeferLimit = 11;
    set.params.m_bInclCornerSquares = 1;
    set.params.m_bKingMoveExceptions = 1;
    EXPECT_EQ(set.paramText(SH_KEEPKINGONTHEEDGE), "ALMOST_STRICT,C2A,D3,M11,incl.corner");
    // The band's "strict" is no part of the edge's text.
    set.params.m_bExtEdgeMoveUnlessOnEdge = 1;
    EXPECT_EQ(set.paramText(SH_KEEPKINGONTHEEDGE), "ALMOST_STRICT,C2A,D3,M11,incl.corner");
}

TEST(HeuristicParamText, CommonTailPartsAloneHaveNoComma) {
    HeuristicSet set;
    set.params.m_bKingMoveStrict = 0;
    set.params.m_bDynRelaxOnAdvancedPawn = 1;
    EXPECT_EQ(set.paramText(SH_KEEPKINGONTHEEDGE), "A");
    set.params.m_bDynRelaxOnAdvancedPawn = 0;
    set.params.m_bInclCornerSquares = 1;
    EXPECT_EQ(set.paramText(SH_KEEPKINGONTHEEDGE), "incl.corner");
    set.params.m_bInclCornerSquares = 0;
    set.params.m_wDeferMoves = 4;
    EXPECT_EQ(set.paramText(SH_KEEPKINGONTHEEDGE), "D4,M0");
    EXPECT_EQ(set.paramText(SH_KEEPKINGWITHINEXTEDGE), "D4,M0");
    set.params.m_wDeferMoves = 0;
    set.params.m_wDeferLimit = 9; // the limit means nothing without a defer
    EXPECT_EQ(set.paramText(SH_KEEPKINGWITHINEXTEDGE), "");
    set.params.m_bExtEdgeMoveUnlessOnEdge = 1;
    EXPECT_EQ(set.paramText(SH_KEEPKINGWITHINEXTEDGE), "strict");
}

TEST(HeuristicParamText, BandShowsTheWholeTail) {
    HeuristicSet set;
    EXPECT_EQ(set.paramText(SH_KEEPKINGWITHINEXTEDGE), "");
    set.params.m_nDynRelaxFiguresCaptured = 12;
    set.params.m_bDynRelaxOnAdvancedPawn = 1;
    set.params.m_wDeferMoves = 3;
    set.params.m_wDeferLimit = 11;
    set.params.m_bInclCornerSquares = 1;
    set.params.m_bExtEdgeMoveUnlessOnEdge = 1;
    EXPECT_EQ(set.paramText(SH_KEEPKINGWITHINEXTEDGE), "C12A,D3,M11,incl.corner,strict");
}

TEST(HeuristicParamText, RelaxationForTheBandOnlyHidesTheEdgesTail) {
    HeuristicSet set;
    set.params.m_bDynRelaxExtEdgeOnly = 1;
    set.params.m_bInclCornerSquares = 1;
    // No dynamic option: the tail stands.
    EXPECT_EQ(set.paramText(SH_KEEPKINGONTHEEDGE), "STRICT,incl.corner");
    set.params.m_nDynRelaxFiguresCaptured = 2;
    EXPECT_EQ(set.paramText(SH_KEEPKINGONTHEEDGE), "STRICT");
    EXPECT_EQ(set.paramText(SH_KEEPKINGWITHINEXTEDGE), "C2,incl.corner");
    set.params.m_nDynRelaxFiguresCaptured = 0;
    set.params.m_bDynRelaxOnAdvancedPawn = 1;
    EXPECT_EQ(set.paramText(SH_KEEPKINGONTHEEDGE), "STRICT");
}

TEST(HeuristicParamText, CornerDistanceInSquaresOrMoves) {
    HeuristicSet set;
    EXPECT_EQ(set.paramText(SH_KEEPKINGNEARCORNER), "");
    set.params.m_cCornerDistance = 3;
    EXPECT_EQ(set.paramText(SH_KEEPKINGNEARCORNER), "3S");
    set.params.m_cCornerDistance = -2;
    EXPECT_EQ(set.paramText(SH_KEEPKINGNEARCORNER), "2M");
}

TEST(HeuristicParamText, SeaSnakeSquaresInCapitals) {
    HeuristicSet set;
    EXPECT_EQ(set.paramText(SH_SEASNAKE), ",");
    set.params.m_cApproach = sq("a1");
    set.params.m_cTurnBack = sq("b2");
    set.params.m_cPendulum1 = sq("h7"); // the pendulum is no part of the text
    EXPECT_EQ(set.paramText(SH_SEASNAKE), "A1,B2");
    set.params.m_nSeaSnakeCount = 3;
    EXPECT_EQ(set.paramText(SH_SEASNAKE), "A1,B2,3");
    set.params.m_cTurnBack = HEURISTIC_NO_SQUARE;
    set.params.m_nSeaSnakeCount = 0;
    EXPECT_EQ(set.paramText(SH_SEASNAKE), "A1,");
}

TEST(HeuristicParamText, KeyDiagonalSquaresWithTopBitsPrintAsNothing) {
    HeuristicSet set;
    EXPECT_EQ(set.paramText(SH_KEYDIAGONAL), "-");
    set.wide.m_wKeyDiagonal = static_cast<uint16_t>(sq("a1") | sq("c3") << 8);
    EXPECT_EQ(set.paramText(SH_KEYDIAGONAL), "A1-C3");
    set.wide.m_wKeyDiagonal = static_cast<uint16_t>(sq("h8") | sq("a1") << 8);
    EXPECT_EQ(set.paramText(SH_KEYDIAGONAL), "H8-A1");
    set.wide.m_wKeyDiagonal = static_cast<uint16_t>(0x40 | sq("c3") << 8);
    EXPECT_EQ(set.paramText(SH_KEYDIAGONAL), "-C3");
    set.wide.m_wKeyDiagonal = static_cast<uint16_t>(sq("a1") | 0x80 << 8);
    EXPECT_EQ(set.paramText(SH_KEYDIAGONAL), "A1-");
}

TEST(HeuristicParamText, UnblockListWithItsEffectiveForm) {
    HeuristicSet set;
    EXPECT_EQ(set.paramText(SH_DONTLETFIGUREUNBLOCK), "");
    set.params.m_nBlockedFigures = 2;
    set.params.m_aBlockedStart[0] = sq("e6");
    set.params.m_aBlockedStart[1] = sq("c3");
    set.params.m_aBlockedStart[2] = sq("b7"); // past the count
    EXPECT_EQ(set.paramText(SH_DONTLETFIGUREUNBLOCK), "E6,C3");
    set.params.m_bBlockedEffective = 1;
    EXPECT_EQ(set.paramText(SH_DONTLETFIGUREUNBLOCK), "EFF,E6,C3");
    set.params.m_nBlockedFigures = 0;
    EXPECT_EQ(set.paramText(SH_DONTLETFIGUREUNBLOCK), "EFF");
}

TEST(HeuristicParamText, ForcedMateLevelsAndForms) {
    HeuristicSet set;
    const std::map<uint8_t, std::string> levels = {{2, "CheckOnly"}, {3, "#1"}, {4, "#1+"}, {5, "#2"},
                                                   {6, "#2+"},       {7, "#3"}, {8, "#4"},  {9, "#5"}};
    for (const auto& [level, name] : levels) {
        set.params.m_nFfmLevel = level;
        EXPECT_EQ(set.paramText(SH_FINDFORCEDMATE), name);
    }
    set.params.m_nFfmLevel = 5;
    set.params.m_bFfmPreliminary = 1;
    EXPECT_EQ(set.paramText(SH_FINDFORCEDMATE), "#2-Preliminary");
    set.params.m_bFfmCustom = 1;
    EXPECT_EQ(set.paramText(SH_FINDFORCEDMATE), "#2-Preliminary-Custom");
    set.params.m_nFfmLevel = 4;
    set.params.m_bFfmPreliminary = 0;
    EXPECT_EQ(set.paramText(SH_FINDFORCEDMATE), "#1+-Custom");
    set.params.m_nFfmLevel = 0; // no level of the dialog
    set.params.m_bFfmCustom = 0;
    EXPECT_EQ(set.paramText(SH_FINDFORCEDMATE), "");
}

TEST(HeuristicParamText, OneColourModeFromThePlayState) {
    HeuristicSet set;
    EXPECT_EQ(set.paramText(SH_ONECOLORPLAYPOSSIBLE), "");
    set.board.m_bPlayState = 1;
    EXPECT_EQ(set.paramText(SH_ONECOLORPLAYPOSSIBLE), "WhiteFieldsOnly");
    set.board.m_bPlayState = 2 | PLAY_WHITE_CAPTURES | PLAY_BLACK_CAPTURES;
    EXPECT_EQ(set.paramText(SH_ONECOLORPLAYPOSSIBLE), "BlackFieldsOnly");
    set.board.m_bPlayState = 3;
    EXPECT_EQ(set.paramText(SH_ONECOLORPLAYPOSSIBLE), "SeparatedBlackBishop");
}

TEST(HeuristicParamText, SquaresFilesAndWords) {
    HeuristicSet set;
    EXPECT_EQ(set.paramText(SH_DONTLEAVEMAINDIAGONAL), "");
    set.params.m_cMainDiagonalFigure = sq("c3");
    EXPECT_EQ(set.paramText(SH_DONTLEAVEMAINDIAGONAL), "C3");
    EXPECT_EQ(set.paramText(SH_KEYLINE), "");
    set.wide.m_cKeyLineFile = 4;
    EXPECT_EQ(set.paramText(SH_KEYLINE), "E");
    EXPECT_EQ(set.paramText(SH_KEYFIELD), "");
    set.params.m_cKeyField = sq("e4");
    EXPECT_EQ(set.paramText(SH_KEYFIELD), "E4");
    set.params.m_cKeyWhiteFigure = sq("e2");
    EXPECT_EQ(set.paramText(SH_KEYWHITEFIGURE), "E2");

    EXPECT_EQ(set.paramText(SH_DONTLETPROMOTEDQUEENMOVE), "");
    set.params.m_bPromotedStrict = 1;
    EXPECT_EQ(set.paramText(SH_DONTLETPROMOTEDQUEENMOVE), "strict");
    EXPECT_EQ(set.paramText(SH_DONTLETPROMOTEDFIGUREMOVE), "strict");
    EXPECT_EQ(set.paramText(SH_ASSERTBLACKKINGSURROUNDED), "");
    set.params.m_bSurroundedStrict = 1;
    EXPECT_EQ(set.paramText(SH_ASSERTBLACKKINGSURROUNDED), "strict");

    EXPECT_EQ(set.paramText(SH_DONTLOSEANYFIGURES), "");
    set.params.m_nLoseFiguresMode = 1;
    EXPECT_EQ(set.paramText(SH_DONTLOSEANYFIGURES), "incl.pawns");
    set.params.m_nLoseFiguresMode = 2;
    EXPECT_EQ(set.paramText(SH_DONTLOSEANYFIGURES), "incl.pawnsBeforePromo");
}

TEST(HeuristicParamText, FlagsWithoutParametersAndOtherValuesGiveNothing) {
    HeuristicSet set;
    set.params.m_bPromotedStrict = 1;
    set.params.m_cKeyField = sq("e4");
    for (uint32_t flag :
         {SH_AREKINGSNEAR, SH_SWEEPINGWHITEROOK, SH_ZUGZWANGTRIANGLES, SH_DONTRECEDEBLACKKING,
          SH_SAVEQUEEN_ROOK, SH_DONTLETBLACKQUEENCHECKTWICE, SH_USEBLOCKBLACKPAWNSLEVEL, SH_SINGLEQUEENMATE,
          SH_3MOVESTOMATE, SH_CAPTUREKNIGHT, SH_SKIPWORSTWHITEMOVES, SH_REDUCTIONTOGLOBREGPOS, SH_ZUGZWANG,
          0x100u, 0x10000000u, 0u, SH_KEYFIELD | SH_DONTLETPROMOTEDQUEENMOVE})
        EXPECT_EQ(set.paramText(flag), "") << flag;
}

// ---- The text of a set ----

TEST(HeuristicsText, EmptySetGivesEmptyText) {
    HeuristicSet set;
    set.params.m_bUnblockDynamic = 0;
    EXPECT_EQ(set.text(), "");
}

TEST(HeuristicsText, StrictEdgePrintsAsDontLetKingMove) {
    HeuristicSet set(SH_KEEPKINGONTHEEDGE);
    EXPECT_EQ(set.text(), "SH_DONTLETKINGMOVE");
    set.params.m_bKingMoveExceptions = 1;
    EXPECT_EQ(set.text(), "SH_DONTLETKINGMOVE(excptns)");
    // Only the three whole forms are renamed.
    set.params.m_nDynRelaxFiguresCaptured = 2;
    EXPECT_EQ(set.text(), "SH_KEEPKINGONTHEEDGE(ALMOST_STRICT,C2)");
    set.params.m_bKingMoveExceptions = 0;
    EXPECT_EQ(set.text(), "SH_KEEPKINGONTHEEDGE(STRICT,C2)");
    set.params.m_nDynRelaxFiguresCaptured = 0;
    set.params.m_bKingMoveStrict = 0;
    EXPECT_EQ(set.text(), "SH_KEEPKINGONTHEEDGE");
    // The flag's own text keeps its name.
    set.params.m_bKingMoveStrict = 1;
    EXPECT_EQ(set.paramText(SH_KEEPKINGONTHEEDGE), "STRICT");
}

TEST(HeuristicsText, FlagsFromTheLowestBitJoinedByCommas) {
    HeuristicSet set(SH_ZUGZWANG | SH_KEEPKINGNEARCORNER | SH_AREKINGSNEAR | SH_KEEPKINGONTHEEDGE |
                     SH_SAVEQUEEN_ROOK | SH_DONTLOSEANYFIGURES);
    set.params.m_cCornerDistance = 3;
    set.params.m_nLoseFiguresMode = 1;
    EXPECT_EQ(set.text(), "SH_AREKINGSNEAR, SH_DONTLETKINGMOVE, SH_SAVEQUEEN/ROOK, "
                          "SH_DONTLOSEANYFIGURES(incl.pawns), SH_KEEPKINGNEARCORNER(3S), SH_ZUGZWANG");
}

TEST(HeuristicsText, UnnamedBitsReadAsDots) {
    HeuristicSet set(SH_AREKINGSNEAR | 0x100 | 0x20000000);
    EXPECT_EQ(set.text(), "SH_AREKINGSNEAR, ..., ...");
}

TEST(HeuristicsText, UnblockThatCannotBeAppliedDynamically) {
    HeuristicSet set(SH_DONTLETFIGUREUNBLOCK | SH_AREKINGSNEAR);
    set.params.m_nBlockedFigures = 1;
    set.params.m_aBlockedStart[0] = sq("e6");
    EXPECT_EQ(set.text(), "SH_AREKINGSNEAR, SH_DONTLETFIGUREUNBLOCK(E6)");
    set.params.m_bUnblockDynamic = 0;
    EXPECT_EQ(set.text(), "SH_AREKINGSNEAR, SH_DONTLETFIGUREUNBLOCK(E6) (CannotApplyDLFUDynamically)");
    set.board.m_uHeuristics = SH_AREKINGSNEAR;
    EXPECT_EQ(set.text(), "SH_AREKINGSNEAR");
}

TEST(HeuristicsText, ForcedMateEndsWithItsForm) {
    HeuristicSet set(SH_FINDFORCEDMATE);
    set.params.m_nFfmLevel = 5;
    set.params.m_nFfmWithOthers = FFM_WITH_OTHERS;
    EXPECT_EQ(set.text(), "SH_FINDFORCEDMATE(#2) with other heuristics");
    set.params.m_nFfmWithOthers = FFM_WITHOUT_OTHERS;
    EXPECT_EQ(set.text(), "SH_FINDFORCEDMATE(#2) without other heuristics");
    set.params.m_nFfmWithOthers = FFM_PARTIALLY_WITH_OTHERS;
    EXPECT_EQ(set.text(), "SH_FINDFORCEDMATE(#2) partially with other heuristics");
    set.board.m_uHeuristics = SH_AREKINGSNEAR;
    EXPECT_EQ(set.text(), "SH_AREKINGSNEAR");

    set.board.m_uHeuristics = SH_FINDFORCEDMATE | SH_DONTLETFIGUREUNBLOCK;
    set.params.m_nBlockedFigures = 1;
    set.params.m_aBlockedStart[0] = sq("e6");
    set.params.m_bUnblockDynamic = 0;
    EXPECT_EQ(set.text(), "SH_DONTLETFIGUREUNBLOCK(E6), SH_FINDFORCEDMATE(#2) (CannotApplyDLFUDynamically) "
                          "partially with other heuristics");
}

// ---- The fingerprint ----

TEST(HeuristicFingerprint, EmptySetGivesZero) {
    HeuristicSet set;
    set.params.m_bKingMoveExceptions = 1;
    set.params.m_nFfmLevel = 7;
    set.board.m_wFlags2 |= 0x120;
    EXPECT_EQ(set.fingerprint(3), 0u);
}

TEST(HeuristicFingerprint, ValuesByHand) {
    HeuristicSet set(SH_AREKINGSNEAR);
    EXPECT_EQ(set.fingerprint(), 1u); // step 3 alone: the unblock bet is dynamic
    set.params.m_bUnblockDynamic = 0;
    EXPECT_EQ(set.fingerprint(), 0u);
    set.params.m_bUnblockDynamic = 1;

    set.board.m_uHeuristics = SH_KEEPKINGONTHEEDGE; // 1, then strict 1000
    EXPECT_EQ(set.fingerprint(), 24u);
    set.board.m_wFlags2 |= 0x100; // deferred: strict gives way to the defer bit, 0010
    EXPECT_EQ(set.fingerprint(), 18u);
    set.board.m_wFlags2 &= ~0x100;

    set.board.m_uHeuristics = SH_KEEPKINGNEARCORNER;
    set.params.m_cCornerDistance = 3; // 1 * 8 + 2
    EXPECT_EQ(set.fingerprint(), 10u);
    set.params.m_cCornerDistance = -2; // 1 * 8 - 1
    EXPECT_EQ(set.fingerprint(), 7u);

    set.board.m_uHeuristics = SH_SINGLEQUEENMATE; // 1 * 4 + 2
    EXPECT_EQ(set.fingerprint(2), 6u);

    set.board.m_uHeuristics = SH_KEYWHITEFIGURE; // (1 << 6) + e2
    set.params.m_cKeyWhiteFigure = sq("e2");
    EXPECT_EQ(set.fingerprint(), 76u);
}

TEST(HeuristicFingerprint, ForcedMateKeepsItsOffsets) {
    HeuristicSet set(SH_FINDFORCEDMATE);
    set.params.m_nFfmLevel = 5;
    // v = 1; (5 + 8) * 8 = 104; (104 + 255) * 2 - 28 = 690
    EXPECT_EQ(set.fingerprint(), 690u);
    set.params.m_bFfmPreliminary = 1;
    EXPECT_EQ(set.fingerprint(), 691u);
    set.params.m_bFfmCustom = 1; // 104 * 2 - 18 + 1
    EXPECT_EQ(set.fingerprint(), 191u);
    // Everything 0: (0 + 0) * 2 - 28 wraps in 32 bits.
    set.params.m_bFfmCustom = 0;
    set.params.m_bFfmPreliminary = 0;
    set.params.m_nFfmLevel = 0;
    set.params.m_nFfmWithOthers = FFM_WITHOUT_OTHERS;
    set.params.m_bUnblockDynamic = 0;
    EXPECT_EQ(set.fingerprint(), 0xFFFFFFE4u);
    // The edge first, then FFM #1 with others: 24; (3 + 192) * 8 = 1560; 1561 * 2 - 28.
    set.board.m_uHeuristics = SH_KEEPKINGONTHEEDGE | SH_FINDFORCEDMATE;
    set.params.m_bUnblockDynamic = 1;
    set.params.m_nFfmLevel = 3;
    set.params.m_nFfmWithOthers = FFM_WITH_OTHERS;
    EXPECT_EQ(set.fingerprint(), 3094u);
}

TEST(HeuristicFingerprint, UnblockListByTheRootsBlackMen) {
    // The root's black men in square order: Bc3 0, Ne6 1, Rb7 2, (pf7), Ke8 3.
    HeuristicSet set(SH_DONTLETFIGUREUNBLOCK);
    set.params.m_nBlockedFigures = 1;
    set.params.m_aBlockedStart[0] = set.board.m_aWatched[0] = sq("e6");
    // list 10, pawn bit 0 at 4, effective 0, none moved 1, dynamic 1: 10 0 1 1
    EXPECT_EQ(set.fingerprint(), 19u);

    // The knight has gone to d4: its square is shifted in instead.
    TChessboard later = set.board;
    later.m_aWatched[0] = sq("d4");
    EXPECT_EQ(CalcHeuristicParams(later, set.params, set.board, 0), ((4u << 6) + 27) * 2 + 1);
    // The effective form does not look where the figures went.
    set.params.m_bBlockedEffective = 1;
    EXPECT_EQ(CalcHeuristicParams(later, set.params, set.board, 0), 11u);
    EXPECT_EQ(set.fingerprint(), 23u);

    // With a pawn listed the pawns count: Bc3 0, Ne6 1, Rb7 2, pf7 3, Ke8 4.
    set.params.m_bBlockedEffective = 0;
    set.params.m_nBlockedFigures = 2;
    set.params.m_aBlockedStart[1] = set.board.m_aWatched[1] = sq("f7");
    set.params.m_bBlockedHasPawn = 1;
    // 1 01010 (pawn bit at 5), 0, 1, 1
    EXPECT_EQ(set.fingerprint(), 339u);
}

TEST(HeuristicFingerprint, SameSetSameValueInTwoComputations) {
    const std::map<uint32_t, std::string> options = {
        {SH_KEEPKINGONTHEEDGE, "ALMOST_STRICT,C2A,D3,M0,incl.corner"},
        {SH_DONTLETFIGUREUNBLOCK, "E6,C3"},
        {SH_KEYWHITEFIGURE, "E2"},
        {SH_FINDFORCEDMATE, "#2+-Preliminary"},
    };
    HeuristicSet first;
    HeuristicSet second;
    first.apply(options);
    second.apply(options);
    EXPECT_NE(first.board.m_uHeuristicParams, 0u);
    EXPECT_EQ(first.board.m_uHeuristicParams, second.board.m_uHeuristicParams);
    EXPECT_EQ(first.fingerprint(), second.fingerprint());
    EXPECT_EQ(first.board.m_uHeuristicParams, first.fingerprint());
    // A set made field by field gives the same value.
    HeuristicSet third(SH_KEEPKINGONTHEEDGE | SH_DONTLETFIGUREUNBLOCK | SH_KEYWHITEFIGURE |
                       SH_FINDFORCEDMATE);
    third.params.m_bKingMoveExceptions = 1;
    third.params.m_bInclCornerSquares = 1;
    third.params.m_nBlockedFigures = 2;
    third.params.m_aBlockedStart[0] = third.board.m_aWatched[0] = sq("e6");
    third.params.m_aBlockedStart[1] = third.board.m_aWatched[1] = sq("c3");
    third.params.m_cKeyWhiteFigure = sq("e2");
    third.params.m_nFfmLevel = 6;
    third.params.m_bFfmPreliminary = 1;
    EXPECT_EQ(third.fingerprint(), first.board.m_uHeuristicParams);
}

TEST(HeuristicFingerprint, EveryCoveredParameterChangesIt) {
    struct Case {
        const char* what;
        uint32_t word;
        std::function<void(HeuristicSet&)> change;
    };
    const std::vector<Case> cases = {
        {"unblock dynamic", SH_AREKINGSNEAR, [](HeuristicSet& s) { s.params.m_bUnblockDynamic = 0; }},
        {"edge strict", SH_KEEPKINGONTHEEDGE, [](HeuristicSet& s) { s.params.m_bKingMoveStrict = 0; }},
        {"edge exceptions", SH_KEEPKINGONTHEEDGE,
         [](HeuristicSet& s) { s.params.m_bKingMoveExceptions = 1; }},
        {"edge defer", SH_KEEPKINGONTHEEDGE, [](HeuristicSet& s) { s.board.m_wFlags2 |= 0x100; }},
        {"edge corner", SH_KEEPKINGONTHEEDGE, [](HeuristicSet& s) { s.params.m_bInclCornerSquares = 1; }},
        {"one colour", SH_ONECOLORPLAYPOSSIBLE, [](HeuristicSet& s) { s.board.m_bPlayState |= 2; }},
        {"pendulum 1", SH_ZUGZWANGTRIANGLES, [](HeuristicSet& s) { s.params.m_cPendulum1 = sq("c5"); }},
        {"pendulum 2", SH_ZUGZWANGTRIANGLES, [](HeuristicSet& s) { s.params.m_cPendulum2 = sq("c5"); }},
        {"band strict", SH_KEEPKINGWITHINEXTEDGE,
         [](HeuristicSet& s) { s.params.m_bExtEdgeMoveUnlessOnEdge = 1; }},
        {"band only", SH_KEEPKINGWITHINEXTEDGE, [](HeuristicSet& s) { s.params.m_bDynRelaxExtEdgeOnly = 1; }},
        {"band defer", SH_KEEPKINGWITHINEXTEDGE, [](HeuristicSet& s) { s.board.m_wFlags2 |= 0x100; }},
        {"band corner", SH_KEEPKINGWITHINEXTEDGE, [](HeuristicSet& s) { s.params.m_bInclCornerSquares = 1; }},
        {"save queen", SH_SAVEQUEEN_ROOK, [](HeuristicSet& s) { s.board.m_wFlags2 |= 0x20; }},
        {"lose mode", SH_DONTLOSEANYFIGURES, [](HeuristicSet& s) { s.params.m_nLoseFiguresMode = 2; }},
        {"surrounded", SH_ASSERTBLACKKINGSURROUNDED,
         [](HeuristicSet& s) { s.params.m_bSurroundedStrict = 1; }},
        {"corner", SH_KEEPKINGNEARCORNER, [](HeuristicSet& s) { s.params.m_cCornerDistance = 4; }},
        {"ffm level", SH_FINDFORCEDMATE, [](HeuristicSet& s) { s.params.m_nFfmLevel = 6; }},
        {"ffm others", SH_FINDFORCEDMATE, [](HeuristicSet& s) { s.params.m_nFfmWithOthers = 1; }},
        {"ffm custom", SH_FINDFORCEDMATE, [](HeuristicSet& s) { s.params.m_bFfmCustom = 1; }},
        {"ffm preliminary", SH_FINDFORCEDMATE, [](HeuristicSet& s) { s.params.m_bFfmPreliminary = 1; }},
        {"key white figure", SH_KEYWHITEFIGURE,
         [](HeuristicSet& s) { s.params.m_cKeyWhiteFigure = sq("h1"); }},
        {"unblock list", SH_DONTLETFIGUREUNBLOCK,
         [](HeuristicSet& s) { s.params.m_aBlockedStart[0] = s.board.m_aWatched[0] = sq("b7"); }},
        {"unblock pawns", SH_DONTLETFIGUREUNBLOCK, [](HeuristicSet& s) { s.params.m_bBlockedHasPawn = 1; }},
        {"unblock effective", SH_DONTLETFIGUREUNBLOCK,
         [](HeuristicSet& s) { s.params.m_bBlockedEffective = 1; }},
        {"unblock moved", SH_DONTLETFIGUREUNBLOCK, [](HeuristicSet& s) { s.board.m_aWatched[0] = sq("d4"); }},
        {"knight bet", SH_AREKINGSNEAR, [](HeuristicSet& s) { s.board.m_uHeuristics |= SH_CAPTUREKNIGHT; }},
        {"skip worst", SH_AREKINGSNEAR,
         [](HeuristicSet& s) { s.board.m_uHeuristics |= SH_SKIPWORSTWHITEMOVES; }},
    };
    for (const Case& c : cases) {
        HeuristicSet set(c.word);
        set.params.m_cCornerDistance = 3;
        set.params.m_nFfmLevel = 5;
        set.params.m_nBlockedFigures = 1;
        set.params.m_aBlockedStart[0] = set.board.m_aWatched[0] = sq("e6");
        set.params.m_cKeyWhiteFigure = sq("e2");
        const uint32_t before = set.fingerprint();
        c.change(set);
        EXPECT_NE(set.fingerprint(), before) << c.what;
    }
    HeuristicSet queenMate(SH_SINGLEQUEENMATE);
    EXPECT_NE(queenMate.fingerprint(1), queenMate.fingerprint(0));
}

// ---- The problem's options ----

TEST(HeuristicOptions, EveryTextFormRoundTrips) {
    const std::vector<std::pair<uint32_t, std::string>> forms = {
        {SH_KEEPKINGONTHEEDGE, "STRICT"},
        {SH_KEEPKINGONTHEEDGE, "ALMOST_STRICT"},
        {SH_KEEPKINGONTHEEDGE, ""},
        {SH_KEEPKINGONTHEEDGE, "C2"},
        {SH_KEEPKINGONTHEEDGE, "STRICT,C2A,D3,M11,incl.corner"},
        {SH_KEEPKINGONTHEEDGE, "A,incl.corner"},
        {SH_KEEPKINGWITHINEXTEDGE, ""},
        {SH_KEEPKINGWITHINEXTEDGE, "strict"},
        {SH_KEEPKINGWITHINEXTEDGE, "C255A,D65535,M0,incl.corner,strict"},
        {SH_ONECOLORPLAYPOSSIBLE, ""},
        {SH_ONECOLORPLAYPOSSIBLE, "WhiteFieldsOnly"},
        {SH_ONECOLORPLAYPOSSIBLE, "BlackFieldsOnly"},
        {SH_ONECOLORPLAYPOSSIBLE, "SeparatedBlackBishop"},
        {SH_DONTLEAVEMAINDIAGONAL, ""},
        {SH_DONTLEAVEMAINDIAGONAL, "C3"},
        {SH_DONTLEAVEMAINDIAGONAL, "B7"},
        {SH_DONTLETFIGUREUNBLOCK, ""},
        {SH_DONTLETFIGUREUNBLOCK, "E6,C3"},
        {SH_DONTLETFIGUREUNBLOCK, "EFF,E6,F7,B7"},
        {SH_DONTLETFIGUREUNBLOCK, "EFF"},
        {SH_FINDFORCEDMATE, "CheckOnly"},
        {SH_FINDFORCEDMATE, "#1"},
        {SH_FINDFORCEDMATE, "#1+"},
        {SH_FINDFORCEDMATE, "#2"},
        {SH_FINDFORCEDMATE, "#2+-Preliminary"},
        {SH_FINDFORCEDMATE, "#3-Custom"},
        {SH_FINDFORCEDMATE, "#4-Preliminary-Custom"},
        {SH_FINDFORCEDMATE, "#5"},
        {SH_DONTLETPROMOTEDQUEENMOVE, ""},
        {SH_DONTLETPROMOTEDQUEENMOVE, "strict"},
        {SH_DONTLETPROMOTEDFIGUREMOVE, "strict"},
        {SH_KEYLINE, ""},
        {SH_KEYLINE, "A"},
        {SH_KEYLINE, "H"},
        {SH_KEYDIAGONAL, "-"},
        {SH_KEYDIAGONAL, "A1-C3"},
        {SH_KEYDIAGONAL, "H1-A8"},
        {SH_DONTLOSEANYFIGURES, ""},
        {SH_DONTLOSEANYFIGURES, "incl.pawns"},
        {SH_DONTLOSEANYFIGURES, "incl.pawnsBeforePromo"},
        {SH_KEYFIELD, ""},
        {SH_KEYFIELD, "E4"},
        {SH_ASSERTBLACKKINGSURROUNDED, ""},
        {SH_ASSERTBLACKKINGSURROUNDED, "strict"},
        {SH_KEYWHITEFIGURE, "E2"},
        {SH_KEEPKINGNEARCORNER, "1S"},
        {SH_KEEPKINGNEARCORNER, "5S"},
        {SH_KEEPKINGNEARCORNER, "1M"},
        {SH_KEEPKINGNEARCORNER, "2M"},
        {SH_SEASNAKE, "A1,B2"},
        {SH_SEASNAKE, "A1,B2,3"},
        {SH_SEASNAKE, "A1,"},
        {SH_SEASNAKE, ",H8,255"},
        {SH_SEASNAKE, ","},
        {SH_AREKINGSNEAR, ""},
        {SH_ZUGZWANG, ""},
    };
    for (const auto& [flag, text] : forms) {
        HeuristicSet set;
        set.apply({{flag, text}});
        EXPECT_EQ(set.board.m_uHeuristics, flag) << text;
        EXPECT_EQ(set.paramText(flag), text) << GetSpecialHeuristicName(flag);
        EXPECT_EQ(set.board.m_uHeuristicParams, set.fingerprint()) << text;
    }
}

TEST(HeuristicOptions, ParametersRoundTripThroughTheirTexts) {
    HeuristicSet set(SH_KEEPKINGONTHEEDGE | SH_KEEPKINGWITHINEXTEDGE | SH_ONECOLORPLAYPOSSIBLE |
                     SH_DONTLEAVEMAINDIAGONAL | SH_DONTLETFIGUREUNBLOCK | SH_FINDFORCEDMATE |
                     SH_DONTLETPROMOTEDQUEENMOVE | SH_KEYLINE | SH_KEYDIAGONAL | SH_DONTLOSEANYFIGURES |
                     SH_KEYFIELD | SH_ASSERTBLACKKINGSURROUNDED | SH_KEYWHITEFIGURE | SH_KEEPKINGNEARCORNER |
                     SH_SEASNAKE | SH_ZUGZWANG);
    TSpecialHeuristicsParams& p = set.params;
    p.m_bKingMoveExceptions = 1;
    p.m_nDynRelaxFiguresCaptured = 2;
    p.m_bDynRelaxExtEdgeOnly = 1;
    p.m_wDeferMoves = 2;
    p.m_wDeferLimit = 7;
    p.m_bExtEdgeMoveUnlessOnEdge = 1;
    set.board.m_bPlayState = 2;
    p.m_cMainDiagonalFigure = sq("c3");
    p.m_nBlockedFigures = 2;
    p.m_aBlockedStart[0] = p.m_aBlockedNow[0] = set.board.m_aWatched[0] = sq("e6");
    p.m_aBlockedStart[1] = p.m_aBlockedNow[1] = set.board.m_aWatched[1] = sq("f7");
    p.m_bBlockedHasPawn = 1;
    p.m_nFfmLevel = p.m_nFfmStartLevel = 8;
    p.m_bFfmCustom = 1;
    p.m_bPromotedStrict = 1;
    set.wide.m_cKeyLineFile = 1;
    set.wide.m_wKeyDiagonal = static_cast<uint16_t>(sq("h1") | sq("a8") << 8);
    p.m_nLoseFiguresMode = 2;
    p.m_cKeyField = sq("d5");
    p.m_bSurroundedStrict = 1;
    p.m_cKeyWhiteFigure = sq("e2");
    p.m_cKeyPinnedFigure = sq("e6");
    p.m_bKeyFigureIsRook = 1;
    p.m_cCornerDistance = -1;
    p.m_cApproach = sq("g3");
    p.m_cTurnBack = sq("f2");
    p.m_nSeaSnakeCount = 4;
    set.board.m_uHeuristicParams = set.fingerprint();
    EXPECT_EQ(set.text(), "SH_DONTLETKINGMOVE(excptns), SH_ONECOLORPLAYPOSSIBLE(BlackFieldsOnly), "
                          "SH_DONTLEAVEMAINDIAGONAL(C3), SH_KEEPKINGWITHINEXTEDGE(C2,D2,M7,strict), "
                          "SH_DONTLETFIGUREUNBLOCK(E6,F7), SH_FINDFORCEDMATE(#4-Custom), "
                          "SH_DONTLETPROMOTEDQUEENMOVE(strict), SH_KEYLINE(B), SH_KEYDIAGONAL(H1-A8), "
                          "SH_DONTLOSEANYFIGURES(incl.pawnsBeforePromo), SH_KEYFIELD(D5), "
                          "SH_ASSERTBLACKKINGSURROUNDED(strict), SH_KEYWHITEFIGURE(E2), "
                          "SH_KEEPKINGNEARCORNER(1M), SH_SEASNAKE(G3,F2,4), SH_ZUGZWANG partially with other "
                          "heuristics");

    HeuristicSet read;
    read.apply(set.options());
    EXPECT_EQ(read.text(), set.text());
    EXPECT_EQ(read.board.m_uHeuristics, set.board.m_uHeuristics);
    EXPECT_EQ(read.board.m_uHeuristicParams, set.board.m_uHeuristicParams);
    EXPECT_EQ(read.board.m_bPlayState, 2);
    EXPECT_EQ(read.params.m_bDynRelaxExtEdgeOnly, 1);
    EXPECT_EQ(read.params.m_nFfmStartLevel, 8);
    EXPECT_EQ(read.params.m_cKeyPinnedFigure, sq("e6"));
    EXPECT_EQ(read.params.m_bKeyFigureIsRook, 1);
    EXPECT_EQ(read.params.m_bBlockedHasPawn, 1);
    EXPECT_EQ(read.params.m_cCornerDistance, -1);
    EXPECT_EQ(read.wide.m_cKeyLineFile, 1);
}

TEST(HeuristicOptions, OffInAnyCaseClearsTheBit) {
    HeuristicSet set(SH_AREKINGSNEAR | SH_ZUGZWANG | SH_KEYLINE | SH_ONECOLORPLAYPOSSIBLE);
    set.board.m_bPlayState = 3 | PLAY_BLACK_CAPTURES;
    set.apply({{SH_ZUGZWANG, "OFF"}, {SH_KEYLINE, "off"}, {SH_ONECOLORPLAYPOSSIBLE, "Off"}});
    EXPECT_EQ(set.board.m_uHeuristics, SH_AREKINGSNEAR);
    // No colour is kept for White without the bet.
    EXPECT_EQ(set.board.m_bPlayState, PLAY_BLACK_CAPTURES);
    EXPECT_EQ(set.board.m_uHeuristicParams, 1u);
    set.apply({{SH_AREKINGSNEAR, "oFF"}});
    EXPECT_EQ(set.board.m_uHeuristics, 0u);
    EXPECT_EQ(set.board.m_uHeuristicParams, 0u);
}

TEST(HeuristicOptions, WordsAndSquaresInEitherCase) {
    HeuristicSet set;
    set.apply({{SH_KEEPKINGONTHEEDGE, "strict"},
               {SH_DONTLETFIGUREUNBLOCK, "eff,e6,c3"},
               {SH_FINDFORCEDMATE, "checkonly-preliminary"},
               {SH_KEYDIAGONAL, "a1-c3"},
               {SH_KEYLINE, "e"}});
    EXPECT_EQ(set.text(), "SH_DONTLETKINGMOVE, SH_DONTLETFIGUREUNBLOCK(EFF,E6,C3), "
                          "SH_FINDFORCEDMATE(CheckOnly-Preliminary), SH_KEYLINE(E), SH_KEYDIAGONAL(A1-C3) "
                          "partially with other heuristics");
}

TEST(HeuristicOptions, UnblockListFillsTheWatchedSquares) {
    HeuristicSet set;
    set.apply({{SH_DONTLETFIGUREUNBLOCK, "EFF,F7,E6"}});
    EXPECT_EQ(set.params.m_nBlockedFigures, 2);
    EXPECT_EQ(set.params.m_bBlockedEffective, 1);
    EXPECT_EQ(set.params.m_bBlockedHasPawn, 1);
    const uint8_t expected[8] = {sq("f7"), sq("e6"), 255, 255, 255, 255, 255, 255};
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(set.params.m_aBlockedStart[i], expected[i]);
        EXPECT_EQ(set.params.m_aBlockedNow[i], expected[i]);
        EXPECT_EQ(set.board.m_aWatched[i], expected[i]);
    }
    set.apply({{SH_DONTLETFIGUREUNBLOCK, "C3"}});
    EXPECT_EQ(set.params.m_nBlockedFigures, 1);
    EXPECT_EQ(set.params.m_bBlockedEffective, 0);
    EXPECT_EQ(set.params.m_bBlockedHasPawn, 0);
    EXPECT_EQ(set.board.m_aWatched[1], 255);
}

TEST(HeuristicOptions, EdgeAndBandShareTheirTail) {
    HeuristicSet bandOnly;
    bandOnly.apply({{SH_KEEPKINGONTHEEDGE, "STRICT"}, {SH_KEEPKINGWITHINEXTEDGE, "C2"}});
    EXPECT_EQ(bandOnly.params.m_bDynRelaxExtEdgeOnly, 1);
    EXPECT_EQ(bandOnly.params.m_nDynRelaxFiguresCaptured, 2);
    EXPECT_EQ(bandOnly.text(), "SH_DONTLETKINGMOVE, SH_KEEPKINGWITHINEXTEDGE(C2)");

    HeuristicSet both;
    both.apply({{SH_KEEPKINGONTHEEDGE, "STRICT,C2"}, {SH_KEEPKINGWITHINEXTEDGE, "C2,strict"}});
    EXPECT_EQ(both.params.m_bDynRelaxExtEdgeOnly, 0);
    EXPECT_EQ(both.params.m_bExtEdgeMoveUnlessOnEdge, 1);
    EXPECT_EQ(both.text(), "SH_KEEPKINGONTHEEDGE(STRICT,C2), SH_KEEPKINGWITHINEXTEDGE(C2,strict)");

    const std::string disagree = "The parameters of SH_KEEPKINGONTHEEDGE and SH_KEEPKINGWITHINEXTEDGE "
                                 "disagree: their common part must be the same";
    HeuristicSet set;
    EXPECT_EQ(errorOf(set, {{SH_KEEPKINGONTHEEDGE, "STRICT,C2"}, {SH_KEEPKINGWITHINEXTEDGE, "C3"}}),
              disagree);
    EXPECT_EQ(errorOf(set, {{SH_KEEPKINGONTHEEDGE, "STRICT,incl.corner"}, {SH_KEEPKINGWITHINEXTEDGE, "C2"}}),
              disagree);
    EXPECT_EQ(errorOf(set, {{SH_KEEPKINGONTHEEDGE, "STRICT"}, {SH_KEEPKINGWITHINEXTEDGE, "incl.corner"}}),
              disagree);
}

TEST(HeuristicOptions, PromotedFlagsShareTheirStrictness) {
    HeuristicSet set;
    EXPECT_EQ(errorOf(set, {{SH_DONTLETPROMOTEDQUEENMOVE, "strict"}, {SH_DONTLETPROMOTEDFIGUREMOVE, ""}}),
              "The parameters of SH_DONTLETPROMOTEDFIGUREMOVE and SH_DONTLETPROMOTEDQUEENMOVE disagree: "
              "\"strict\" is one setting for both");
    set.apply({{SH_DONTLETPROMOTEDQUEENMOVE, "strict"}, {SH_DONTLETPROMOTEDFIGUREMOVE, "strict"}});
    EXPECT_EQ(set.text(), "SH_DONTLETPROMOTEDQUEENMOVE(strict), SH_DONTLETPROMOTEDFIGUREMOVE(strict)");
}

TEST(HeuristicOptions, MalformedTextNamesTheHeuristic) {
    HeuristicSet set;
    EXPECT_EQ(errorOf(set, {{SH_KEYLINE, "a1b"}}),
              "Invalid parameters of SH_KEYLINE (\"a1b\"): a file letter A to H or nothing expected");
    EXPECT_EQ(errorOf(set, {{SH_AREKINGSNEAR, "x"}}),
              "Invalid parameters of SH_AREKINGSNEAR (\"x\"): no parameter expected");
    const std::vector<std::pair<uint32_t, std::string>> malformed = {
        {SH_KEEPKINGONTHEEDGE, "STRICT,strict"},
        {SH_KEEPKINGONTHEEDGE, "C0"},
        {SH_KEEPKINGONTHEEDGE, "C"},
        {SH_KEEPKINGONTHEEDGE, "C256"},
        {SH_KEEPKINGONTHEEDGE, "D3"},
        {SH_KEEPKINGONTHEEDGE, "D0,M1"},
        {SH_KEEPKINGONTHEEDGE, "M3"},
        {SH_KEEPKINGONTHEEDGE, "C2,A"},
        {SH_KEEPKINGONTHEEDGE, "incl.corner,C2"},
        {SH_KEEPKINGONTHEEDGE, "STRICT,,C2"},
        {SH_KEEPKINGONTHEEDGE, ",C2"},
        {SH_KEEPKINGONTHEEDGE, "STRICT,"},
        {SH_KEEPKINGONTHEEDGE, "C+2"},
        {SH_KEEPKINGWITHINEXTEDGE, "strict,C2"},
        {SH_KEEPKINGWITHINEXTEDGE, "D1,M65536"},
        {SH_ONECOLORPLAYPOSSIBLE, "Black"},
        {SH_DONTLEAVEMAINDIAGONAL, "C33"},
        {SH_DONTLETFIGUREUNBLOCK, "E6,E6"},
        {SH_DONTLETFIGUREUNBLOCK, "E6,"},
        {SH_DONTLETFIGUREUNBLOCK, "E6,EFF"},
        {SH_DONTLETFIGUREUNBLOCK, "A1,A2,A3,A4,A5,A6,A7,A8,B1"},
        {SH_FINDFORCEDMATE, ""},
        {SH_FINDFORCEDMATE, "#6"},
        {SH_FINDFORCEDMATE, "#2-Custom-Preliminary"},
        {SH_FINDFORCEDMATE, "#2-"},
        {SH_FINDFORCEDMATE, "Preliminary"},
        {SH_DONTLETPROMOTEDQUEENMOVE, "STRICTER"},
        {SH_KEYLINE, "I"},
        {SH_KEYDIAGONAL, "A1C3"},
        {SH_KEYDIAGONAL, "A1-C3-E5"},
        {SH_KEYDIAGONAL, "A1-X9"},
        {SH_DONTLOSEANYFIGURES, "incl.pawn"},
        {SH_KEYFIELD, "E9"},
        {SH_ASSERTBLACKKINGSURROUNDED, "strict,strict"},
        {SH_KEYWHITEFIGURE, ""},
        {SH_KEYWHITEFIGURE, "E"},
        {SH_SEASNAKE, "A1"},
        {SH_SEASNAKE, "A1,B2,0"},
        {SH_SEASNAKE, "A1,B2,256"},
        {SH_SEASNAKE, "A1,B2,3,4"},
        {SH_SEASNAKE, "I1,B2"},
        {SH_ZUGZWANG, "e2-e4"},
    };
    for (const auto& [flag, text] : malformed) {
        const std::string error = errorOf(set, {{flag, text}});
        EXPECT_EQ(error.rfind(std::string("Invalid parameters of ") + GetSpecialHeuristicName(flag) + " (\"" +
                                  text + "\"): ",
                              0),
                  0u)
            << error;
    }
}

TEST(HeuristicOptions, FaultsWithTheProgramsOwnTexts) {
    HeuristicSet set;
    const std::string corner =
        "Invalid maximum distance from corner in the parameter of heuristics 'Keep king near corner'";
    for (const std::string text : {"", "0S", "6S", "3M", "3", "S", "-2M", "2X"})
        EXPECT_EQ(errorOf(set, {{SH_KEEPKINGNEARCORNER, text}}), corner) << text;
    for (const std::string text : {"A1-C4", "A1-A1", "A1-", "-C3"})
        EXPECT_EQ(errorOf(set, {{SH_KEYDIAGONAL, text}}), "Invalid field Key diagonal") << text;
    EXPECT_EQ(errorOf(set, {{SH_KEYWHITEFIGURE, "H1"}}), "Invalid key white figure (pinned piece not found)");
    EXPECT_EQ(errorOf(set, {{0x100, ""}}), "No special heuristic has the bit 0x00000100");
    EXPECT_EQ(errorOf(set, {{SH_AREKINGSNEAR | SH_ZUGZWANG, "OFF"}}),
              "No special heuristic has the bit 0x80000001");
}

TEST(HeuristicOptions, WronglyPlacedSquaresAreInvalidPieces) {
    HeuristicSet set;
    // Off the long diagonals, or no black figure there.
    EXPECT_EQ(errorOf(set, {{SH_DONTLEAVEMAINDIAGONAL, "E6"}}), "Invalid piece (E6)");
    EXPECT_EQ(errorOf(set, {{SH_DONTLEAVEMAINDIAGONAL, "d4"}}), "Invalid piece (d4)");
    EXPECT_EQ(errorOf(set, {{SH_DONTLEAVEMAINDIAGONAL, "H1"}}), "Invalid piece (H1)");
    // An empty square, the black king, a white man.
    EXPECT_EQ(errorOf(set, {{SH_DONTLETFIGUREUNBLOCK, "E6,E4"}}), "Invalid piece (E4)");
    EXPECT_EQ(errorOf(set, {{SH_DONTLETFIGUREUNBLOCK, "E8"}}), "Invalid piece (E8)");
    EXPECT_EQ(errorOf(set, {{SH_DONTLETFIGUREUNBLOCK, "EFF,g1"}}), "Invalid piece (g1)");
    // No white bishop, rook or queen.
    EXPECT_EQ(errorOf(set, {{SH_KEYWHITEFIGURE, "G1"}}), "Invalid piece (G1)");
    EXPECT_EQ(errorOf(set, {{SH_KEYWHITEFIGURE, "E6"}}), "Invalid piece (E6)");
    EXPECT_EQ(errorOf(set, {{SH_KEYWHITEFIGURE, "D4"}}), "Invalid piece (D4)");
}

TEST(HeuristicOptions, AFaultChangesNothing) {
    HeuristicSet set(SH_AREKINGSNEAR);
    set.params.m_cCornerDistance = 4;
    set.board.m_uHeuristicParams = set.fingerprint();
    const std::string before = set.text();
    EXPECT_EQ(errorOf(set, {{SH_AREKINGSNEAR, "OFF"},
                            {SH_KEYLINE, "C"},
                            {SH_DONTLETFIGUREUNBLOCK, "E6"},
                            {SH_KEEPKINGNEARCORNER, "9S"}}),
              "Invalid maximum distance from corner in the parameter of heuristics 'Keep king near corner'");
    EXPECT_EQ(set.board.m_uHeuristics, SH_AREKINGSNEAR);
    EXPECT_EQ(set.board.m_uHeuristicParams, 1u);
    EXPECT_EQ(set.board.m_aWatched[0], 255);
    EXPECT_EQ(set.params.m_nBlockedFigures, 0);
    EXPECT_EQ(set.params.m_cCornerDistance, 4);
    EXPECT_EQ(set.wide.m_cKeyLineFile, 255);
    EXPECT_EQ(set.text(), before);
}

TEST(HeuristicOptions, OptionsReadFromAProblemFile) {
    ProblemMap problems;
    std::set<std::wstring> tags;
    ReadProblemText("1 #3 SH_KEEPKINGWITHINEXTEDGE ( C2A , D3 , M0 , incl.corner ) "
                    "SH_FINDFORCEDMATE(#2+-Preliminary) sh_dontletfigureunblock(EFF, E6) SH_ZUGZWANG off\n"
                    "{\n\tFEN: " +
                        FEN.substr(0, FEN.find(' ')) + "\n}\n",
                    problems, ProblemFileSettings{}, tags);
    TChessProblem& problem = *problems.at(1);
    HeuristicSet set(SH_ZUGZWANG | SH_AREKINGSNEAR);
    set.apply(problem.heuristicOptions);
    EXPECT_EQ(set.text(),
              "SH_AREKINGSNEAR, SH_KEEPKINGWITHINEXTEDGE(C2A,D3,M0,incl.corner), "
              "SH_DONTLETFIGUREUNBLOCK(EFF,E6), SH_FINDFORCEDMATE(#2+-Preliminary) partially with "
              "other heuristics");
}

// ---- The key white figure's pin ----

TEST(KeyWhiteFigure, PinsAKnightOrAnOffLineFigure) {
    struct Case {
        const char* fen;
        const char* square;
        KeyWhiteFigureCheck check;
        const char* pinned;
        bool isRook;
    };
    const Case cases[] = {
        {"4k3/8/4n3/8/8/8/8/4R1K1 w - - 0 1", "e1", KeyWhiteFigureCheck::Pins, "e6", true},
        {"4k3/8/4n3/8/8/8/8/4Q1K1 w - - 0 1", "e1", KeyWhiteFigureCheck::Pins, "e6", false},
        {"4k3/8/4b3/8/8/8/8/4R1K1 w - - 0 1", "e1", KeyWhiteFigureCheck::Pins, "e6", true},
        {"4k3/8/2r5/8/B7/8/8/6K1 w - - 0 1", "a4", KeyWhiteFigureCheck::Pins, "c6", false},
        {"4k3/8/4r3/8/8/8/8/4R1K1 w - - 0 1", "e1", KeyWhiteFigureCheck::NoPinnedFigure, nullptr, false},
        {"4k3/8/2b5/8/B7/8/8/6K1 w - - 0 1", "a4", KeyWhiteFigureCheck::NoPinnedFigure, nullptr, false},
        {"4k3/4p3/4n3/8/8/8/8/4R1K1 w - - 0 1", "e1", KeyWhiteFigureCheck::NoPinnedFigure, nullptr, false},
        {"4k3/8/8/8/4P3/8/8/4R1K1 w - - 0 1", "e1", KeyWhiteFigureCheck::NoPinnedFigure, nullptr, false},
        {"4k3/8/4n3/8/8/8/8/4B1K1 w - - 0 1", "e1", KeyWhiteFigureCheck::NoPinnedFigure, nullptr, false},
        {"4k3/8/4n3/8/8/8/8/3R2K1 w - - 0 1", "d1", KeyWhiteFigureCheck::NoPinnedFigure, nullptr, false},
        {"4k3/8/4n3/8/8/8/4P3/6K1 w - - 0 1", "e2", KeyWhiteFigureCheck::NotAKeyFigure, nullptr, false},
        {"4k3/8/4n3/8/8/8/8/4R1K1 w - - 0 1", "e3", KeyWhiteFigureCheck::NotAKeyFigure, nullptr, false},
    };
    for (const Case& c : cases) {
        const TChessboard board = boardFromFen(c.fen, 5);
        const KeyWhiteFigurePin pin = FindKeyWhiteFigurePin(board, sq(c.square));
        EXPECT_EQ(pin.check, c.check) << c.fen;
        EXPECT_EQ(pin.pinnedSquare, c.pinned ? sq(c.pinned) : HEURISTIC_NO_SQUARE) << c.fen;
        EXPECT_EQ(pin.isRook, c.isRook) << c.fen;
    }
}

TEST(KeyWhiteFigure, OptionStoresThePin) {
    HeuristicSet set;
    set.apply({{SH_KEYWHITEFIGURE, "E2"}});
    EXPECT_EQ(set.params.m_cKeyWhiteFigure, sq("e2"));
    EXPECT_EQ(set.params.m_cKeyPinnedFigure, sq("e6"));
    EXPECT_EQ(set.params.m_bKeyFigureIsRook, 1);
    EXPECT_EQ(set.board.m_uHeuristicParams, (1u << 6) + sq("e2"));
}

TEST(KeyDiagonal, TwoDistinctSquaresOnADiagonal) {
    EXPECT_TRUE(IsKeyDiagonal(sq("a1"), sq("c3")));
    EXPECT_TRUE(IsKeyDiagonal(sq("h1"), sq("a8")));
    EXPECT_TRUE(IsKeyDiagonal(sq("d5"), sq("b3")));
    EXPECT_FALSE(IsKeyDiagonal(sq("a1"), sq("a1")));
    EXPECT_FALSE(IsKeyDiagonal(sq("a1"), sq("c4")));
    EXPECT_FALSE(IsKeyDiagonal(sq("a1"), 255));
}

} // namespace
TEST(DoubtfulReason, EachKindOfReasonHasItsLogForm) {
    EXPECT_EQ(DoubtfulReasonText("Kd2-e3", SH_KEEPKINGONTHEEDGE), "Kd2-e3 (SH_KEEPKINGONTHEEDGE)\n");
    EXPECT_EQ(DoubtfulReasonText("Kd2-e3", ImpossibilityReason(IMPOSSIBLE_LONE_ROOK)),
              "Kd2-e3/impossible (-2)\n");
    EXPECT_EQ(DoubtfulReasonText("Kd2-e3", 0xFFFFFFE0u), "Kd2-e3/impossible (-32)\n");
    EXPECT_EQ(DoubtfulReasonText("Kd2-e3", 0xFFFFFFFFu), "Kd2-e3 (-1 (temp.reg.))\n");
    EXPECT_EQ(DoubtfulReasonText("Kd2-e3", 0), "Kd2-e3 (0 (temp.reg.))\n");
}

} // namespace zorvane
