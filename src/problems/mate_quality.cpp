#include "mate_quality.h"

#include "core/attacks.h"
#include "notation.h"

namespace zorvane {

namespace {

// Whether the White slider on `square` pins a black man against the king.
bool pinsBlackMan(const TChessboard& b, int square) {
    const int kind = b.m_aSquares[square] & KIND_MASK;
    if (kind != KIND_BISHOP && kind != KIND_ROOK && kind != KIND_QUEEN) return false;
    const int king = b.blackKing();
    const int dc = colOf(king) - colOf(square), dr = rowOf(king) - rowOf(square);
    const bool line = dc == 0 || dr == 0;
    const bool diagonal = absInt(dc) == absInt(dr);
    if (!(line && (kind & KIND_ROOK)) && !(diagonal && (kind & KIND_BISHOP))) return false;
    const int stepCol = (dc > 0) - (dc < 0), stepRow = (dr > 0) - (dr < 0);
    int between = 0;
    bool blackBetween = false;
    for (int col = colOf(square) + stepCol, row = rowOf(square) + stepRow; squareOf(col, row) != king;
         col += stepCol, row += stepRow) {
        const uint8_t man = b.m_aSquares[squareOf(col, row)];
        if (man == 0) continue;
        ++between;
        blackBetween = isBlack(man);
    }
    return between == 1 && blackBetween;
}

struct MateFacts {
    bool pure = true;
    bool whiteAllTakePart = true;     // every White man
    bool whiteFiguresTakePart = true; // every White man but the king and the pawns
    bool blackAllTakePart = true;
};

MateFacts judge(const TChessboard& position) {
    MateFacts facts;
    const int king = position.blackKing();
    TChessboard lifted = position;
    lifted.m_aSquares[king] = 0;

    // The field: the king's neighbours on the board.
    bool field[64] = {};
    for (int dc = -1; dc <= 1; ++dc)
        for (int dr = -1; dr <= 1; ++dr) {
            const int col = colOf(king) + dc, row = rowOf(king) + dr;
            if ((dc || dr) && col >= 0 && col < 8 && row >= 0 && row < 8) field[squareOf(col, row)] = true;
        }

    // 1. Purity of the field.
    for (int sq = 0; sq < 64; ++sq) {
        if (!field[sq]) continue;
        TSquareList attackers;
        WhiteAttackers(lifted, colOf(sq), rowOf(sq), &attackers);
        const bool blocked = isBlack(position.m_aSquares[sq]);
        if (blocked ? attackers.count != 0 : attackers.count != 1) facts.pure = false;
    }

    // 2. Who takes part.
    for (int sq = 0; sq < 64; ++sq) {
        const uint8_t man = position.m_aSquares[sq];
        if (!isPieceByte(man)) continue;
        if (isBlack(man)) {
            if (sq != king && !field[sq]) facts.blackAllTakePart = false;
            continue;
        }
        bool takesPart = ManAttacksSquare(lifted, king, sq) || pinsBlackMan(position, sq);
        for (int target = 0; target < 64 && !takesPart; ++target)
            takesPart = field[target] && ManAttacksSquare(lifted, target, sq);
        if (takesPart) continue;
        facts.whiteAllTakePart = false;
        const int kind = man & KIND_MASK;
        if (kind != KIND_KING && kind != KIND_PAWN) facts.whiteFiguresTakePart = false;
    }
    return facts;
}

} // namespace

MateQuality FindMateQuality(const TChessboard& position) {
    if (position.whiteToMove() || !position.blackInCheck() || SideToMoveHasLegalMove(position))
        return MateQuality::NoMate;
    const MateFacts facts = judge(position);
    if (!facts.pure) return MateQuality::Plain;
    if (facts.whiteAllTakePart && facts.blackAllTakePart) return MateQuality::Ideal;
    if (facts.whiteFiguresTakePart) return MateQuality::Model;
    return MateQuality::Plain;
}

bool IsModelMate(const TChessboard& position) {
    const MateQuality quality = FindMateQuality(position);
    return quality == MateQuality::Model || quality == MateQuality::Ideal;
}

bool IsIdealMate(const TChessboard& position) {
    return FindMateQuality(position) == MateQuality::Ideal;
}

} // namespace zorvane
