#include "make_move.h"

#include "attacks.h"
#include "castling.h"
#include "check_detection.h"
#include "movegen.h"
#include "square_sets.h"
#include "thread_context.h"

#include <cstring>

namespace zorvane {

namespace {

// Least plies left at which a line of knights alone is held to lead nowhere.
constexpr int KNIGHTS_REFUSAL_MIN_PLIES = 2;

uint8_t& whiteCount(TChessboard& b, int kind) {
    switch (kind) {
    case KIND_QUEEN:
        return b.m_nWhiteQueens;
    case KIND_ROOK:
        return b.m_nWhiteRooks;
    case KIND_BISHOP:
        return b.m_nWhiteBishops;
    case KIND_KNIGHT:
        return b.m_nWhiteKnights;
    default:
        return b.m_nWhitePawns;
    }
}

uint8_t& blackCount(TChessboard& b, int kind) {
    switch (kind) {
    case KIND_QUEEN:
        return b.m_nBlackQueens;
    case KIND_ROOK:
        return b.m_nBlackRooks;
    case KIND_BISHOP:
        return b.m_nBlackBishops;
    case KIND_KNIGHT:
        return b.m_nBlackKnights;
    default:
        return b.m_nBlackPawns;
    }
}

// The list slot of a white man of `kind` that stood on `from` now stands on `to`.
void moveInWhiteLists(TChessboard& b, int kind, int from, int to) {
    const auto target = static_cast<uint8_t>(to);
    switch (kind) {
    case KIND_QUEEN:
        b.m_cWhiteQueen = target;
        break;
    case KIND_ROOK:
        b.m_aWhiteRooks[b.m_aWhiteRooks[0] == from ? 0 : 1] = target;
        break;
    case KIND_BISHOP:
        b.m_aWhiteBishops[b.m_aWhiteBishops[0] == from ? 0 : 1] = target;
        break;
    case KIND_KNIGHT:
        b.m_aWhiteKnights[b.m_aWhiteKnights[0] == from ? 0 : 1] = target;
        break;
    default:
        break;
    }
}

// A new white man of `kind` (already counted) on `square`: into its slot, or the lists go off.
void addToWhiteLists(TChessboard& b, int kind, int square) {
    const auto sq = static_cast<uint8_t>(square);
    switch (kind) {
    case KIND_QUEEN:
        if (b.m_nWhiteQueens == 1) {
            b.m_cWhiteQueen = sq;
            return;
        }
        break;
    case KIND_ROOK:
        if (b.m_nWhiteRooks <= 2) {
            b.m_aWhiteRooks[b.m_nWhiteRooks - 1] = sq;
            return;
        }
        break;
    case KIND_KNIGHT:
        if (b.m_nWhiteKnights <= 2) {
            b.m_aWhiteKnights[b.m_nWhiteKnights - 1] = sq;
            return;
        }
        break;
    case KIND_BISHOP:
        if (b.m_nWhiteBishops == 1 ||
            (b.m_nWhiteBishops == 2 && squareColour(b.m_aWhiteBishops[0]) != squareColour(square))) {
            b.m_aWhiteBishops[b.m_nWhiteBishops - 1] = sq;
            return;
        }
        break;
    default:
        return;
    }
    b.m_bWhiteListsValid = 0;
}

// A white man of `kind` (count already lowered) taken on `square`: the second
// slot closes up into the first.
void removeFromWhiteLists(TChessboard& b, int kind, int square) {
    uint8_t* slots = nullptr;
    switch (kind) {
    case KIND_QUEEN:
        b.m_cWhiteQueen = NO_SQUARE;
        return;
    case KIND_ROOK:
        slots = b.m_aWhiteRooks;
        break;
    case KIND_BISHOP:
        slots = b.m_aWhiteBishops;
        break;
    case KIND_KNIGHT:
        slots = b.m_aWhiteKnights;
        break;
    default:
        return;
    }
    if (slots[0] == square) slots[0] = slots[1];
    slots[1] = NO_SQUARE;
}

// Whether the man on `square` arrived there by a black promotion.
bool arrivedByBlackPromotion(const TChessboard& b, int square) {
    for (const TChessboard* p = b.m_pParent; p && p->m_pParent; p = p->m_pParent)
        if (p->m_LastMove.to == square)
            return p->m_LastMove.promotionKind() != 0 && isBlack(p->m_aSquares[square]);
    return false;
}

void noteBlackCapture(TChessboard& b, uint8_t captured, int square) {
    const int count = (b.m_bPlayState & PLAY_BLACK_CAPTURES) >> 4;
    if (count >= 3) return;
    if (b.m_pThread) {
        b.m_pThread->m_aBlackCaptures[count] = captured;
        b.m_pThread->m_aBlackCaptureSquares[count] = static_cast<uint8_t>(square);
    }
    b.m_bPlayState = static_cast<uint8_t>(b.m_bPlayState + 16);
}

void noteWhiteCapture(TChessboard& b, uint8_t captured, int square) {
    const int count = (b.m_bPlayState & PLAY_WHITE_CAPTURES) >> 2;
    if (count >= 3) return;
    if (b.m_pThread) {
        b.m_pThread->m_aWhiteCaptures[count] = captured;
        b.m_pThread->m_aWhiteCaptureSquares[count] = static_cast<uint8_t>(square);
    }
    b.m_bPlayState = static_cast<uint8_t>(b.m_bPlayState + 4);
}

// No mate can follow against a bare king from bishops of one colour alone.
bool bareKingHopeless(const TChessboard& b) {
    if (b.m_nWhiteKnights || b.m_nWhitePawns || b.m_nWhiteRooks || b.m_nWhiteQueens) return false;
    if (b.m_nWhiteBishops == 0) return true;
    const int first = FindSquare(b, WB);
    for (int sq = FindSquare(b, WB, first + 1); sq != NO_SQUARE; sq = FindSquare(b, WB, sq + 1))
        if (squareColour(sq) != squareColour(first)) return false;
    return true;
}

// Knights alone against a bare king mate only at once: with plies still to
// come, only a check that leaves the king on the edge without a flight is kept.
// With black men on the board the line is left to the search.
bool knightsLineRefused(TChessboard& b) {
    if (b.m_shPliesLeft < KNIGHTS_REFUSAL_MIN_PLIES || b.m_nWhitePawns || b.m_nBlackPawns) return false;
    if (b.m_nWhiteQueens || b.m_nWhiteRooks || b.m_nWhiteBishops || b.m_nWhiteKnights > 2) return false;
    if (b.blackMenBesideKing() != 0) return false;
    return !(b.m_nWhiteKnights == 2 && (b.m_wFlags2 & FLAGS2_EDGE_LEVEL) == 0 && b.m_cBlackChecker >= 0 &&
             !BlackKingHasFlight(b));
}

// A promotion must be a pawn's step onto the last row into a figure, and a
// pawn on the last row must be promoted: moves read from text are held to it.
inline bool promotionSound(int kind, int promotion, int to, int lastRow) {
    if (kind != KIND_PAWN) return promotion == 0;
    if (rowOf(to) != lastRow) return promotion == 0;
    return promotion == KIND_QUEEN || promotion == KIND_ROOK || promotion == KIND_BISHOP ||
           promotion == KIND_KNIGHT;
}

// The watched squares follow their black men; a taken man frees its slot.
inline bool anyWatched(const TChessboard& b) {
    uint64_t slots;
    std::memcpy(&slots, b.m_aWatched, sizeof slots);
    return slots != ~uint64_t{0};
}
void moveWatched(TChessboard& b, int from, int to) {
    for (uint8_t& slot : b.m_aWatched)
        if (slot == from) slot = static_cast<uint8_t>(to);
}

inline bool weakWhiteFlagMayChange(const TChessboard& b) {
    return (b.m_wFlags & FLAG_WEAK_WHITE) || (!b.m_nWhiteQueens && !b.m_nWhiteRooks && b.m_nWhitePawns);
}

} // namespace

int CountBlackKingFlights(const TChessboard& b, int limit) {
    const int flights = __builtin_popcountll(BoardSets::Of(b).BlackKingFlights(b.blackKing()));
    return flights < limit ? flights : limit;
}

bool BlackKingHasFlight(const TChessboard& b) {
    return CountBlackKingFlights(b, 1) > 0;
}

bool BlackHasLegalMove(TChessboard& b) {
    return BlackKingHasFlight(b) || BlackManAnswersCheck(b);
}

bool BlackManAnswersCheck(TChessboard& b) {
    if (b.m_cBlackChecker == DOUBLE_CHECK) return false;
    MoveBuffer moves;
    const int count = GenerateBlackEvasions(b, moves);
    const int king = b.blackKing();
    TChessboard child;
    for (int i = 0; i < count; ++i) {
        if (moves[i].from == king) continue;
        CopyToChild(child, b);
        if (MakeBlackMove(child, moves[i], false) != BLACK_MOVE_ILLEGAL) return true;
    }
    return false;
}

bool MakeWhiteMove(TChessboard& b, TMove& m) {
    uint8_t* s = b.m_aSquares;
    const int from = m.from, to = m.to;
    const uint8_t mover = s[from];
    const int kind = mover & KIND_MASK;

    // 2. Mover, captured man, en passant.
    int captureSquare = to;
    uint8_t captured = s[to];
    const bool enPassant = kind == KIND_PAWN && ((from ^ to) & 7) != 0 && captured == 0;
    if (enPassant) {
        captureSquare = to - 8;
        captured = s[captureSquare];
    }
    m.enPassant = enPassant;
    const uint8_t promotion = m.promotion & KIND_MASK;
    if ((promotion || kind == KIND_PAWN) && !promotionSound(kind, promotion, to, 7)) return false;

    // Castling is judged on the position before the move.
    int rookTo = -1;
    if (kind == KIND_KING && absInt(colOf(to) - colOf(from)) >= 2) {
        const TChessboard& before = b.m_pParent ? *b.m_pParent : b;
        if (from != 4 || (to != 6 && to != 2)) return false;
        if (!WhiteCanCastle(before, to == 6 ? KING_SIDE : QUEEN_SIDE)) return false;
    }

    // 3. Move the man.
    if (promotion) {
        s[to] = static_cast<uint8_t>(promotion | WHITE);
        --b.m_nWhitePawns;
        ++whiteCount(b, promotion);
        if (b.m_bWhiteListsValid) addToWhiteLists(b, promotion, to);
        if (promotion == KIND_QUEEN) b.m_wFlags2 |= FLAGS2_WHITE_QUEEN_PROMOTED;
        if (promotion & KIND_ROOK)
            b.m_wFlags &= static_cast<uint16_t>(~FLAG_WEAK_WHITE);
        else if (b.m_wFlags & FLAG_WEAK_WHITE)
            UpdateWeakWhiteFlag(b);
    } else {
        s[to] = mover;
    }
    s[from] = 0;
    if (enPassant) s[captureSquare] = 0;

    const int king = kind == KIND_KING ? to : b.whiteKing();
    if (kind == KIND_KING) {
        // 4. The king: castling moves its rook; no king may step into an attack.
        if (absInt(colOf(to) - colOf(from)) >= 2) {
            const int rookFrom = to == 6 ? 7 : 0;
            rookTo = to == 6 ? 5 : 3;
            s[rookFrom] = 0;
            s[rookTo] = WR;
            if (b.m_bWhiteListsValid) moveInWhiteLists(b, KIND_ROOK, rookFrom, rookTo);
        }
        if (IsAttackedByBlack(b, colOf(to), rowOf(to))) return false;
        b.m_cWhiteKingCol = static_cast<int8_t>(colOf(to));
        b.m_cWhiteKingRow = static_cast<int8_t>(rowOf(to));
    } else {
        // 5./6. Other men: list slot, then legality by the line through the
        // vacated square(s), or the full test when in check.
        if (!promotion && b.m_bWhiteListsValid) moveInWhiteLists(b, kind, from, to);
        if (b.m_cWhiteChecker < 0) {
            if (ExposesOwnKing<true>(b, king, from)) return false;
            if (enPassant && ExposesOwnKing<true>(b, king, captureSquare)) return false;
        } else if (IsAttackedByBlack(b, colOf(king), rowOf(king))) {
            return false;
        }
    }
    b.m_cWhiteChecker = NO_CHECK;

    // 7. A capture.
    if (captured) {
        const int capturedKind = captured & KIND_MASK;
        --blackCount(b, capturedKind);
        noteBlackCapture(b, captured, captureSquare);
        const int promotions = b.m_wFlags2 & FLAGS2_BLACK_PROMOTIONS;
        if (capturedKind != KIND_PAWN && (promotions == 1 || promotions == 2) &&
            arrivedByBlackPromotion(b, to))
            --b.m_wFlags2;
        if (b.blackMenBesideKing() == 0) b.m_wFlags |= FLAG_BLACK_BARE_KING;
        if (weakWhiteFlagMayChange(b)) UpdateWeakWhiteFlag(b);
        if (anyWatched(b)) moveWatched(b, captureSquare, NO_SQUARE);
    }

    // 8. Against a bare king, bishops of one colour cannot mate.
    if ((b.m_wFlags & FLAG_BLACK_BARE_KING) && bareKingHopeless(b)) return false;

    // 9. The wrong bishop and the rook's pawn.
    if (promotion)
        UpdateWrongBishopFlag(b);
    else if ((b.m_wFlags2 & FLAGS2_WRONG_BISHOP) && kind == KIND_PAWN && colOf(to) != colOf(from))
        b.m_wFlags2 &= static_cast<uint16_t>(~FLAGS2_WRONG_BISHOP);

    // 10. Record the move, find the check on Black.
    b.m_LastMove = m;
    if (b.m_shPliesLeft != 0)
        b.m_cBlackChecker = FindCheck<true>(b, from, to, enPassant ? captureSquare : -1, rookTo);
    --b.m_shPliesLeft;

    // 12. Knights alone against a bare king.
    if (b.m_nWhiteKnights && knightsLineRefused(b)) return false;
    return true;
}

int MakeBlackMove(TChessboard& b, TMove& m, bool bLegal) {
    uint8_t* s = b.m_aSquares;
    const int from = m.from, to = m.to;

    // 1. A pass changes nothing on the board.
    if (from == to) {
        b.m_LastMove = m;
        --b.m_shPliesLeft;
        return BLACK_MOVE_MADE;
    }

    const uint8_t mover = s[from];
    // 2. A pawn marked as blocked may not advance straight.
    if ((mover & (PAWN_BLOCK_MARK | KIND_MASK)) == (PAWN_BLOCK_MARK | KIND_PAWN) && ((from ^ to) & 7) == 0)
        return BLACK_MOVE_ILLEGAL;
    const int kind = mover & KIND_MASK;

    int captureSquare = to;
    uint8_t captured = s[to];
    const bool enPassant = kind == KIND_PAWN && ((from ^ to) & 7) != 0 && captured == 0;
    if (enPassant) {
        captureSquare = to + 8;
        captured = s[captureSquare];
    }
    m.enPassant = enPassant;
    const uint8_t promotion = m.promotion & KIND_MASK;
    if ((promotion || kind == KIND_PAWN) && !promotionSound(kind, promotion, to, 0))
        return BLACK_MOVE_ILLEGAL;

    if (kind == KIND_KING && absInt(colOf(to) - colOf(from)) >= 2) {
        const TChessboard& before = b.m_pParent ? *b.m_pParent : b;
        if (from != 60 || (to != 62 && to != 58)) return BLACK_MOVE_ILLEGAL;
        if (!BlackCanCastle(before, to == 62 ? KING_SIDE : QUEEN_SIDE)) return BLACK_MOVE_ILLEGAL;
    }

    // 3. Move the man; promotions are counted up to three.
    if (promotion) {
        s[to] = static_cast<uint8_t>(promotion | BLACK);
        --b.m_nBlackPawns;
        ++blackCount(b, promotion);
        if ((b.m_wFlags2 & FLAGS2_BLACK_PROMOTIONS) < 3) ++b.m_wFlags2;
    } else {
        s[to] = mover;
    }
    s[from] = 0;
    if (enPassant) s[captureSquare] = 0;
    if (anyWatched(b)) moveWatched(b, from, to);

    // 4. A white man taken: counts, notes, lists.
    if (captured) {
        const int capturedKind = captured & KIND_MASK;
        --whiteCount(b, capturedKind);
        noteWhiteCapture(b, captured, captureSquare);
        if (b.m_bWhiteListsValid)
            removeFromWhiteLists(b, capturedKind, captureSquare);
        else if (WhiteListsPossible(b))
            RebuildWhiteLists(b);
        UpdateWrongBishopFlag(b);
    }

    int rookTo = -1;
    if (kind == KIND_KING) {
        if (absInt(colOf(to) - colOf(from)) >= 2) {
            const int rookFrom = to == 62 ? 63 : 56;
            rookTo = to == 62 ? 61 : 59;
            s[rookFrom] = 0;
            s[rookTo] = BR;
            if (anyWatched(b)) moveWatched(b, rookFrom, rookTo);
        }
        // 5./6. The king may not step into an attack; his fields and edge level follow him.
        if (!bLegal && IsAttackedByWhite(b, colOf(to), rowOf(to))) return BLACK_MOVE_ILLEGAL;
        b.m_cBlackKingCol = static_cast<int8_t>(colOf(to));
        b.m_cBlackKingRow = static_cast<int8_t>(rowOf(to));
        UpdateEdgeLevel(b);
    } else if (!bLegal) {
        const int king = b.blackKing();
        if (b.m_cBlackChecker < 0) {
            if (ExposesOwnKing<false>(b, king, from)) return BLACK_MOVE_ILLEGAL;
            if (enPassant && ExposesOwnKing<false>(b, king, captureSquare)) return BLACK_MOVE_ILLEGAL;
        } else if (IsAttackedByWhite(b, colOf(king), rowOf(king))) {
            return BLACK_MOVE_ILLEGAL;
        }
    }
    b.m_cBlackChecker = NO_CHECK;
    if (weakWhiteFlagMayChange(b)) UpdateWeakWhiteFlag(b);

    // 7. Record the move, find the check on White.
    b.m_LastMove = m;
    b.m_cWhiteChecker = FindCheck<false>(b, from, to, enPassant ? captureSquare : -1, rookTo);
    --b.m_shPliesLeft;
    return BLACK_MOVE_MADE;
}

} // namespace zorvane
