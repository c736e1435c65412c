#include "engine/impossibility.h"

#include "core/attacks.h"

namespace zorvane {

int CountFreeKingSquares(const TChessboard& position) {
    TChessboard withoutKing = position;
    const int king = position.blackKing();
    withoutKing.m_aSquares[king] = 0;
    int free = 0;
    for (int dc = -1; dc <= 1; ++dc) {
        for (int dr = -1; dr <= 1; ++dr) {
            const int col = colOf(king) + dc, row = rowOf(king) + dr;
            if ((dc == 0 && dr == 0) || col < 0 || col > 7 || row < 0 || row > 7) continue;
            if (isBlack(withoutKing.m_aSquares[squareOf(col, row)])) continue;
            if (!IsAttackedByWhite(withoutKing, col, row)) ++free;
        }
    }
    return free;
}

} // namespace zorvane
