#include "expected_mate.h"

#include "core/chess_exception.h"
#include "core/fen.h"
#include "core/make_move.h"
#include "core/movegen.h"

#include <algorithm>
#include <cstdio>

namespace zorvane {

namespace {

// Plies left on a board about to take a white move: odd for White, and so low
// that the move maker's refusals for lines still to come stay off.
constexpr uint16_t WHITE_MOVE_PLIES = 1;

} // namespace

bool DoubleStepBesideWhitePawn(const TChessboard& position) {
    const TMove& m = position.m_LastMove;
    if (position.m_pParent == nullptr || position.m_aSquares[m.to] != BP || m.from - m.to != 16) return false;
    const int to = m.to;
    return (colOf(to) > 0 && position.m_aSquares[to - 1] == WP) ||
           (colOf(to) < 7 && position.m_aSquares[to + 1] == WP);
}

namespace {

// WhiteMoveValue, given up as 0 once a reply shows that the move cannot come
// under `cutoff` (0: no cutoff), which a better move already has.
int whiteMoveValue(const TChessboard& afterWhite, const TMateProbe& probe, int cutoff) {
    MoveBuffer replies;
    const int count = GenerateBlackMovesOrEvasions(afterWhite, replies);
    int worst = 0;
    bool anyReply = false;
    TChessboard next;
    for (int i = 0; i < count; ++i) {
        if (IsCastlingMove(afterWhite, replies[i].from, replies[i].to)) continue;
        CopyToChild(next, afterWhite);
        if (MakeBlackMove(next, replies[i], false) == BLACK_MOVE_ILLEGAL) continue;
        anyReply = true;
        const int v = ReplyValue(next, probe);
        if (v == 0 || (cutoff != 0 && v + 1 >= cutoff)) return 0;
        worst = std::max(worst, v);
    }
    if (!anyReply) return afterWhite.blackInCheck() ? 1 : 0;
    return worst + 1;
}

} // namespace

int WhiteMoveValue(const TChessboard& afterWhite, const TMateProbe& probe) {
    return whiteMoveValue(afterWhite, probe, 0);
}

namespace {

// The best value over the white moves of `position` that `onlyEnPassant`
// allows: all of them, or only captures en passant.
int bestMove(const TChessboard& position, const TMateProbe& probe, bool onlyEnPassant) {
    MoveBuffer moves;
    const int count = GenerateWhiteMovesOrEvasions(position, moves);
    int best = 0;
    TChessboard child;
    for (int i = 0; i < count; ++i) {
        TMove move = moves[i];
        if (IsCastlingMove(position, move.from, move.to)) continue;
        if (onlyEnPassant && !((position.m_aSquares[move.from] == WP) && colOf(move.from) != colOf(move.to) &&
                               position.m_aSquares[move.to] == 0))
            continue;
        CopyToChild(child, position);
        child.m_shPliesLeft = WHITE_MOVE_PLIES;
        if (!MakeWhiteMove(child, move)) continue;
        const int value = whiteMoveValue(child, probe, best);
        if (value != 0 && (best == 0 || value < best)) best = value;
        if (best == 1) break;
    }
    return best;
}

} // namespace

bool SetUpTablePosition(TChessboard& board, bool whiteToMove) {
    board.m_shPliesLeft = whiteToMove ? WHITE_MOVE_PLIES : WHITE_MOVE_PLIES + 1;
    if (!TrySetupChessboard(board, false)) return false;
    if (distance(board.whiteKing(), board.blackKing()) <= 1) return false;
    return whiteToMove ? !board.blackInCheck() : !board.whiteInCheck();
}

void ThrowRegisterNotFound(const TChessboard& position) {
    const std::string fen = WriteFen(position, false);
    char text[256];
    std::snprintf(text, sizeof text, "Register not found or loaded for position %s !", fen.c_str());
    throw ChessException(text);
}

int ReplyValue(const TChessboard& afterReply, const TMateProbe& probe) {
    // A bare white king mates nobody, and has no table.
    int value = 0;
    if (afterReply.whiteMenBesideKing() != 0) {
        value = probe(afterReply);
        if (value == PROBE_NOT_AVAILABLE) ThrowRegisterNotFound(afterReply);
    }
    // The table cell knows no en passant right; the capture may mate sooner,
    // or mate where the cell says none.
    if (DoubleStepBesideWhitePawn(afterReply)) {
        const int enPassant = bestMove(afterReply, probe, true);
        if (enPassant != 0) value = value == 0 ? enPassant : std::min(value, enPassant);
    }
    return value;
}

int ExpectedMate(const TChessboard& position, const TMateProbe& probe) {
    return bestMove(position, probe, false);
}

} // namespace zorvane
