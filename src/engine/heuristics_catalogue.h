#pragma once
// The catalogue of the special heuristics: the name of each bit, the text of
// a set and of each bit's parameters, the fingerprint that keys solved
// positions to a set, and the reader of a problem's stored options.
//
// Squares print in capital letters ("A1-C3", "E4"): the key diagonal's and the
// sea snake's forms show them so, and one case for every square of the texts
// keeps them easy to compare. A square byte with either of its top two bits
// set (255 = none) prints as nothing. The reader takes squares and words in
// either case, since problem files are written by hand.
#include "core/chessboard.h"
#include "core/heuristic_params.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace zorvane {

// The name of one bit; "..." for 0, several bits or a bit without a name.
const char* GetSpecialHeuristicName(uint32_t flag);

// The name of a FindForcedMate level ("CheckOnly", "#1", "#1+", ... "#5"); empty for another value.
std::string_view FfmLevelText(uint8_t level);

// The text of one flag's parameters ("STRICT,C2", "A1-C3", "#2-Custom"...),
// empty when the flag has none or is no single named bit.
std::string GetSpecialHeuristicParamText(uint32_t flag, const TChessboard& position,
                                         const TSpecialHeuristicsParams& params,
                                         const SolveWideHeuristicParams& solveWide);

// The active set as the user reads it: the flags from the lowest bit, joined
// by ", ", each as NAME or NAME(params), with the edge flag's strict forms
// shown as SH_DONTLETKINGMOVE. Empty for an empty set.
std::string GetSpecialHeuristicsText(const TChessboard& position, const TSpecialHeuristicsParams& params,
                                     const SolveWideHeuristicParams& solveWide);

// The fingerprint of the position's set (`m_uHeuristicParams`): everything
// that changes what a bet means, packed so that a position solved under one
// set is not reused under another. Two inputs are not in the record:
// `root` is the line's root (the stored root of a resumed run), whose black
// men number the unblock list; `queenMateIndex` is the single queen mate's
// current pattern, kept by the thread that tests it. Free of allocation: the
// search calls it whenever a line changes its set.
uint32_t CalcHeuristicParams(const TChessboard& position, const TSpecialHeuristicsParams& params,
                             const TChessboard& root, uint8_t queenMateIndex) noexcept;

// The move log's line for a doubtful move: "<move> (<flag's name>)\n" for a
// bet, "<move>/impossible (<code>)\n" for an impossibility code, and
// "<move> (<value> (temp.reg.))\n" for a result the temporary register gave.
std::string DoubtfulReasonText(const std::string& move, uint32_t reason);

// The fingerprint of a position of a search: the line's root is the thread's
// root, and no single queen mate is being tested. What the relaxation and the
// search refresh a set with.
uint32_t HeuristicFingerprintOf(const TChessboard& position, const TSpecialHeuristicsParams& params) noexcept;

// Applies a problem's stored options (bit -> "OFF" in any case, or the
// parameter text that GetSpecialHeuristicParamText writes) to the root's set
// and the parameters, then refreshes the root's fingerprint. Throws
// ChessException, with nothing changed, for a bit without a name, a text that
// is no parameter form of its flag, or a square that does not hold the man
// the flag needs ("Invalid piece (e4)").
void ApplyHeuristicOptions(const std::map<uint32_t, std::string>& options, TChessboard& root,
                           TSpecialHeuristicsParams& params, SolveWideHeuristicParams& solveWide);

// The checks of the squares that the options and the dialog share.

// A square whose black man (no king) SH_DONTLEAVEMAINDIAGONAL can watch: one
// of the two long diagonals.
bool IsMainDiagonalFigureSquare(const TChessboard& position, int square);
// Two squares that give a key diagonal: distinct, equal file and rank distance.
bool IsKeyDiagonal(int first, int second);

enum class KeyWhiteFigureCheck : uint8_t {
    Pins,           // the figure pins a black man against the black king
    NotAKeyFigure,  // no white bishop, rook or queen on the square
    NoPinnedFigure, // no line to the black king, or no pinnable man alone on it
};
struct KeyWhiteFigurePin {
    KeyWhiteFigureCheck check = KeyWhiteFigureCheck::NotAKeyFigure;
    uint8_t pinnedSquare = HEURISTIC_NO_SQUARE;
    bool isRook = false;
};
// The pin of SH_KEYWHITEFIGURE: from the white figure towards the black king
// along a line the figure moves on, the first man met must be a black knight,
// a black bishop on a straight line or a black rook on a diagonal, and the
// next one the black king.
KeyWhiteFigurePin FindKeyWhiteFigurePin(const TChessboard& position, int square);

} // namespace zorvane
