#pragma once
// The value a table cell must hold, read from the position's successors one
// full move ahead: the rule that both makes and checks the tables.
//
// White mates in m when some move leaves Black either mated (m = 1) or with
// replies that all lead to positions of known mates, the longest of them in
// m - 1. A reply leading to a position without mate spoils the move, and so
// does stalemate. Castling is no move here: table positions carry no rights.
#include "core/chessboard.h"

#include <functional>

namespace zorvane {

// What a probe answers when no table covers the position.
constexpr int PROBE_NOT_AVAILABLE = -1;

// The mate length of a position with White to move (0 none), from whatever
// tables the caller has, or PROBE_NOT_AVAILABLE.
using TMateProbe = std::function<int(const TChessboard&)>;

// Sets up a board filled by PositionOfIndex (or by hand) with the side to move
// given, and tells whether it is a legal table position: kings apart and the
// side not to move not in check.
bool SetUpTablePosition(TChessboard& board, bool whiteToMove);

// Throws ChessException "Register not found or loaded for position %s !" with
// the position's FEN.
[[noreturn]] void ThrowRegisterNotFound(const TChessboard& position);

// The value of the position reached by a black reply (White to move, its
// parent the position before the reply): what `probe` says, 0 when White has
// only his king; after a black double step beside a white pawn the en
// passant capture is weighed too. Throws as above when no table answers.
int ReplyValue(const TChessboard& afterReply, const TMateProbe& probe);

// The value of the position after a white move (Black to move, its parent the
// position before): 1 when Black is mated, 0 when he is stalemated or a reply
// reaches a position without mate, else one more than the worst reply.
int WhiteMoveValue(const TChessboard& afterWhite, const TMateProbe& probe);

// Whether the last move was a black double step that lands beside a white
// pawn, so that the position holds an en passant capture its cell knows nothing of.
bool DoubleStepBesideWhitePawn(const TChessboard& afterReply);

// The mate length that the rule gives `position` (set up, White to move, no
// history). Throws as above when a successor has no table.
int ExpectedMate(const TChessboard& position, const TMateProbe& probe);

// Whether a move is a castling, which the tables leave out.
inline bool IsCastlingMove(const TChessboard& before, int from, int to) {
    return (before.m_aSquares[from] & KIND_MASK) == KIND_KING && absInt(colOf(to) - colOf(from)) >= 2;
}

} // namespace zorvane
