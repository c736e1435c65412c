#pragma once
// What the board decides about moves and positions, apart from the window:
// whether the engine refuses a move, what the status line says about a
// position, and how a move joins the problem's chain of positions.
#include "core/chessboard.h"
#include "core/move.h"
#include "problems/chess_problem.h"

#include <cstddef>
#include <optional>
#include <string>

namespace zorvane {

// The move from `from` to `to` (with `promotion`, a kind or 0) as the strict
// reader of typed moves judges it on `position`; nothing when it is illegal.
// A pawn reaching the last row without a figure comes back as a queen's promotion.
std::optional<TMove> LegalMoveOnBoard(const TChessboard& position, int from, int to, uint8_t promotion);

// White has nothing left to mate with: a bare king, or only bishops of one
// colour against a bare black king.
bool MatingImpossible(const TChessboard& position);

// Whether the engine turns down a legal move of a direct-mate problem: its
// move makers refuse it, or it leaves White unable to mate.
bool EngineRefusesMove(const TChessboard& parent, const TMove& move);

// Plays a legal move from the position at `shownIndex` of the problem's chain
// (0 the start, k the k-th played position); the positions after it are
// dropped. The child is made by the engine's makers where they accept the
// move, so that it carries what they keep.
void PlayOnChain(TChessProblem& problem, size_t shownIndex, TMove move);

enum class PositionVerdict { Nothing, Stalemate, MateInOne, TemporaryRegisterMate, NoMate };
struct PositionJudgement {
    PositionVerdict verdict = PositionVerdict::Nothing;
    int moves = 0; // TemporaryRegisterMate: at most this many moves
};
// What the status line says about a position just reached; the engine is
// asked (through the Solver) for a mate at once or one its register knows.
PositionJudgement JudgePosition(TChessProblem& problem, const TChessboard& position);

// With Black to move, White's first threat within the moves left (long
// notation), empty when there is none or the problem is a selfmate.
std::string WhiteThreat(TChessProblem& problem, const TChessboard& position);

// More than nine queens and pawns of one colour.
bool TooManyQueensAndPawns(const TChessboard& position);

// Which solve a start command runs from `shown`, the board on screen: Main
// from the start position, FromPosition from a later one with White to move,
// BestDefence (Black's best defence) from one with Black to move, Analyse for
// a position without stipulation, None past the stipulation's end. `plies`
// and `position` take the half-moves left and the board to start from.
enum class SolveRoad { Main, FromPosition, BestDefence, Analyse, None };
SolveRoad SolveRoadOf(const TChessProblem& problem, const TChessboard* shown, int& plies,
                      const TChessboard*& position);
// The roads whose engine is built: the start commands are greyed on the others.
bool IsSolveRoadBuilt(SolveRoad road);

// The variants whose every move can be played from `start` (set up).
TVariantMap VariantsPlayableFrom(const TVariantMap& variants, const TChessboard& start);

} // namespace zorvane
