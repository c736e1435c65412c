#pragma once
// The two move makers. Each turns a copy of the parent (see CopyToChild) into
// the child in place: it settles legality by the one line on which the move
// can have exposed its own king, finds the check it gives incrementally from
// the moved man and the vacated square, and keeps every field of the record.
#include "chessboard.h"
#include "move.h"

namespace zorvane {

// False when the move is illegal or refused; the copy is then undefined.
bool MakeWhiteMove(TChessboard& child, TMove& move);

enum BlackMoveResult : int { BLACK_MOVE_ILLEGAL = 0, BLACK_MOVE_MADE = 1, BLACK_MOVE_BEATS_WHITE = -1 };
// bLegal: the caller has already proved the move legal, the line test is skipped.
int MakeBlackMove(TChessboard& child, TMove& move, bool bLegal);

// Whether the black king has a flight: a neighbour free of black men and not
// attacked by White once the king is lifted off his square.
bool BlackKingHasFlight(const TChessboard& b);
// The number of such flights, counted up to `limit`.
int CountBlackKingFlights(const TChessboard& b, int limit = 8);

// Black in check: has he any legal move? Stops at the first one; no means mate.
bool BlackHasLegalMove(TChessboard& b);
// Black in check: can a man other than the king take the checker or step
// between? For callers that know the king has no flight.
bool BlackManAnswersCheck(TChessboard& b);

} // namespace zorvane
