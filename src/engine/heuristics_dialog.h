#pragma once
// What OK in the heuristics dialog decides, free of any window toolkit: the
// controls as the user left them, read in a fixed order into the heuristics'
// word and parameters. The first fault stops the read; the window shows its
// message under "Information" and stays open.
#include "core/chessboard.h"
#include "core/heuristic_params.h"
#include "core/localized_text.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zorvane {

// m_wFlags2: the unblock list's figures are followed in m_aWatched.
constexpr uint16_t FLAGS2_UNBLOCK_WATCHED = 0x4000;

// Shown by the dialog's recall command when nothing was stored before.
inline constexpr LocalizedText NO_PREVIOUS_HEURISTICS_SETTINGS{L"Brak poprzednich ustawień heurystyk",
                                                               L"No previous settings for heuristics",
                                                               L"Немає попередніх налаштувань евристик"};

// The two radios behind "Keep king near corner, max.".
enum class CornerDistanceUnit {
    Squares, // 1043 "squares"
    Moves,   // 1044 "moves away"
};

// The two radios under "Don't let promoted".
enum class PromotedMover {
    Queen,     // 1102 "queen"
    AnyFigure, // 1104 "any figure move"
};

// The strength radios of "First run FindForcedMate"; the value is m_nFfmLevel.
enum class FfmLevelChoice : uint8_t {
    CheckWithExceptions = 2, // 1601 "check+excps"
    ThreatMate1 = 3,         // 1602 "threat #1"
    ThreatMate1Plus = 4,     // 1603 "#1+"
    ThreatMate2 = 5,         // 1604 "#2"
    ThreatMate2Plus = 6,     // 1605 "#2+"
    ThreatMate3 = 7,         // 1611 "#3"
    ThreatMate4 = 8,         // 1612 "#4"
    ThreatMate5 = 9,         // 1614 "#5"
};
// The strongest level: the relaxations must not lead past it.
constexpr int FFM_STRONGEST_LEVEL = static_cast<int>(FfmLevelChoice::ThreatMate5);

// The radios of "FFM with other heuristics".
enum class FfmWithOthersChoice {
    No,                       // 1621
    Yes,                      // 1620
    Partially,                // 1622
    PartiallyWithInitialPass, // 1623 "Partially + initial pass with edge heur."
};

// The controls that the read looks at, by what they mean. Text fields are
// kept as typed. The defaults are a dialog with everything off.
struct HeuristicsDialogControls {
    // The black king's edge and band.
    bool dontLetKingMove = false;                                        // 1010
    bool allowKingMoveExceptions = false;                                // 1015 "allow exc"
    bool keepKingOnEdge = false;                                         // 1020
    bool inclCornerSquares = false;                                      // 1025 "incl.b2/b7/g2/g7"
    bool keepKingWithinExtEdge = false;                                  // 1030 "out of ext.edge"
    bool extEdgeMoveUnlessOnEdge = false;                                // 1031 "move unless on the edge"
    bool assertKingSurrounded = false;                                   // 1040
    bool surroundedStrict = false;                                       // 1046 "strict (max 2 free sqrs)"
    bool keepKingNearCorner = false;                                     // 1041
    std::string cornerDistance;                                          // 1042
    CornerDistanceUnit cornerDistanceUnit = CornerDistanceUnit::Squares; // 1043, 1044

    // "Dynamically relax edge/ext.edge heuristics".
    bool dynRelaxOnAdvancedPawn = false;       // 1407 "on advanced pawn"
    std::string dynRelaxFiguresCaptured = "0"; // 1420 "(0 = off)"
    std::string deferMoves = "0";              // 1440 "defer check"
    bool dynRelaxExtEdgeOnly = false;          // 1445 "applicable for ext.edge version ONLY"
    bool skipDeferIfBalanceFixed = false;      // 1450
    bool autoDynRelax = false;                 // 1452 "let program automatically dyn.relax heuristics"

    bool areKingsNear = false;              // 1050
    bool dontRecedeBlackKing = false;       // 1060
    bool saveQueenRook = false;             // 1070
    bool dontLoseAnyFigures = false;        // 1080
    bool loseFiguresInclPawns = false;      // 1082 "including pawns"
    bool loseFiguresInclPromotable = false; // 1084 "including promotable pawns"

    bool dontLeaveMainDiagonal = false; // 1090
    std::string mainDiagonalFigure;     // 1091, a square or nothing

    bool dontLetPromotedMove = false;                   // 1100
    PromotedMover promotedMover = PromotedMover::Queen; // 1102, 1104
    bool promotedStrict = false;                        // 1106 "strict (less exceptions)"
    bool dontLetQueenCheckTwice = false;                // 1110

    bool dontLetFigureUnblock = false;               // 1120
    std::string blockedFigures[MAX_BLOCKED_FIGURES]; // 1131 to 1138
    bool unblockDynamic = true;                      // 1139 "let program apply this heuristics dynamically"

    bool singleQueenMate = false;           // 1170
    bool skipWorstWhiteMoves = false;       // 1174
    bool reductionToGlobalRegister = false; // 1178
    bool threeMovesToMate = false;          // 1180

    bool keyWhiteFigure = false;      // 1190
    std::string keyWhiteFigureSquare; // 1200

    bool oneColourPlay = false;     // 1210
    bool sweepingWhiteRook = false; // 1211

    bool keyLine = false;          // 1300
    std::string keyLineFile;       // 1310
    bool keyDiagonal = false;      // 1320
    std::string keyDiagonalFirst;  // 1330
    std::string keyDiagonalSecond; // 1340

    bool captureKnight = false;    // 1350
    bool seaSnake = false;         // 1360
    std::string seaSnakeApproach;  // 1362
    std::string seaSnakeTurnBack;  // 1366, may be empty
    std::string seaSnakePendulum1; // 1375 "(approachable)"
    std::string seaSnakePendulum2; // 1376
    std::string seaSnakeOnlyAfter; // 1377, moves separated by blanks

    bool zugzwang = false;     // 1370
    std::string zugzwangMoves; // 1371, moves separated by blanks
    // 1371 as the dialog filled it on opening: the positions are played again
    // only when the user has changed the text.
    std::string zugzwangMovesShown;

    bool letRelax = true;            // 1608 "Let relax heuristics"
    bool heuristicsFallback = false; // 1609 "Enable heur.fallback"
    bool pass2 = true;               // 1610 "Let program run pass 2 (without heuristics)"

    bool findForcedMate = false;                                        // 1600 "First run FindForcedMate"
    FfmLevelChoice ffmLevel = FfmLevelChoice::ThreatMate1;              // 1601 to 1605, 1611, 1612, 1614
    std::string ffmRelaxations = "0";                                   // 1631 "Let relax FFM"
    bool ffmAddCaptures = false;                                        // 1606
    FfmWithOthersChoice ffmWithOthers = FfmWithOthersChoice::Partially; // 1620 to 1623
};

// A message put together at read time, such as one with a number in it: it
// owns its three forms, and view() lends them as a LocalizedText.
struct ComposedText {
    std::wstring polish;
    std::wstring english;
    std::wstring ukrainian;

    LocalizedText view() const { return {polish, english, ukrainian}; }
    std::wstring_view In(int languageId) const { return view().In(languageId); }
};

struct HeuristicsDialogResult {
    bool ok = false;
    // Why the read stopped, when it did not succeed.
    ComposedText fault;
    // Notes that do not stop the read, in the order they arose; the window
    // shows them after OK.
    std::vector<ComposedText> notes;

    LocalizedText message() const { return fault.view(); }
};

// Reads the controls into `params` (the per-thread parameters, here the ones
// the next solve starts from), `solveWide` and `position` in this order:
//   1. the two band options exclude each other;
//   2. "Don't let black king move" excludes the edge option, and "allow exc"
//      needs it;
//   3. corner squares; the distance of "Keep king near corner" (1 to 5
//      squares, or 1 to 2 moves, kept negative);
//   4. the edge, band and surrounded bets and their sub-options (a
//      sub-option alone turns its bet on);
//   5. the dynamic relaxation's switches;
//   6. its two numbers, and a defer only with a dynamic option;
//   7. kings near, don't recede, save queen/rook, don't lose figures;
//   8. the main diagonal and its black figure;
//   9. promoted figures, queen checks, the unblock list's dynamic use;
//  10. the unblock list: squares of black men, also watched in `position`;
//  11. single queen mate, reduction to the global register, #3 test;
//  12. the key white figure and the black figure it pins;
//  13. one-colour play, sweeping rook, skip worst moves;
//  14. key line and key diagonal;
//  15. the sea snake: squares, "only after" moves, not with FindForcedMate;
//  16. capture of a knight; the zugzwang positions, played from `position`;
//  17. relaxation, fallback and pass 2;
//  18. FindForcedMate's level and relaxations;
//  19. its captures option and its company.
// A field that belongs to a check box is read only with the box checked; with
// the box clear its parameter goes back to "none". At a fault the read stops
// and returns its message: what was read before it stays written. On success
// the set goes to position.m_uHeuristics.
//
// The fingerprint is the caller's to refresh: after an ok read, store
// CalcHeuristicParams(position) into position.m_uHeuristicParams before the
// position is solved or stored.
HeuristicsDialogResult ReadHeuristicsDialog(TChessboard& position, TSpecialHeuristicsParams& params,
                                            SolveWideHeuristicParams& solveWide,
                                            const HeuristicsDialogControls& controls);

} // namespace zorvane
