#pragma once
// Moves as text: the long notation of the file and the logs ("Ng1-f3",
// "e7-e8Q", "0-0"), the short notation of the window ("Nf3", "ed5"), and the
// strict reading of typed and pasted moves against a position.
#include "core/chessboard.h"
#include "core/move.h"

#include <optional>
#include <string>
#include <string_view>

namespace zorvane {

// A square by its name, file letter then rank digit, in either case ("e4",
// "E4"); nothing for any other text. Dialog fields take squares this way.
std::optional<int> ParseSquareName(std::string_view text);

// Long text of a move; `figure` is the man on the from-square.
std::string FormatLongMove(const TMove& move, uint8_t figure, bool isCapture);
// Whether `move` takes a man on `before`: an occupied target, or a pawn that
// changes file (en passant), whatever the move's own flags say.
bool TakesOn(const TChessboard& before, const TMove& move);
// Long text of `move` played from `before`: its man and capture read from the board.
std::string MoveTextOn(const TChessboard& before, const TMove& move);
// Short text of the move that led to `position` (its parent holds the position before).
std::string FormatShortMove(const TChessboard& position);
// Long text into a move record; castling by the side given.
TMove ParseLongMove(const std::string& text, bool isWhite);
// Long text of a short move for the side to move on `position`; nothing when
// the text is not short notation or names no single legal move.
std::optional<std::string> ConvertShortToLong(const TChessboard& position, const std::string& text);
// Strict reading of a long move, checked for legality on `position`.
TMove ParseMoveOnBoard(const TChessboard& position, const std::string& text);

// Plays `move` for the side to move of `parent` into `child` (made a child of
// `parent`), if it is legal. A pawn that reaches the last row without a
// promotion figure becomes a queen. The board is rebuilt from its squares, so
// none of the search's refusals of moves can turn a legal move down.
bool PlayMove(const TChessboard& parent, TChessboard& child, TMove& move);
// Whether the side to move has any legal move.
bool SideToMoveHasLegalMove(const TChessboard& position);
// Check given by the last move: 0 none, 1 check, 2 double check.
int CheckLevel(const TChessboard& position);

} // namespace zorvane
