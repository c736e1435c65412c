#include "movegen.h"

#include "attacks.h"
#include "castling.h"
#include "knight_table.h"
#include "rays.h"

namespace zorvane {

namespace {

// What differs between the colours in generation.
template <bool White> struct Side {
    static constexpr uint8_t own = White ? WHITE : BLACK;
    static constexpr uint8_t enemy = White ? BLACK : WHITE;
    static constexpr uint8_t pawn = White ? WP : BP;
    static constexpr uint8_t enemyPawn = White ? BP : WP;
    static constexpr int forward = White ? 8 : -8;
    static constexpr int startRow = White ? 1 : 6;
    static constexpr int lastRowBeforePromotion = White ? 6 : 1;
    static constexpr int enPassantRow = White ? 4 : 3;
    static constexpr int lowerCapture = White ? 7 : -9;
    static constexpr int higherCapture = White ? 9 : -7;
};

// Every move is kept in a plain generation; the check candidates keep fewer.
struct KeepAll {
    bool operator()(int, uint8_t) const { return true; }
};

// Keeps the pawn moves after which the pawn, or what it becomes, aims at the
// black king from its new square, whatever stands between.
struct PawnAimsAtKing {
    int kingCol, kingRow;
    bool operator()(int to, uint8_t promotion) const {
        const int dc = absInt(kingCol - colOf(to)), dr = kingRow - rowOf(to);
        switch (promotion) {
        case 0:
            return dc == 1 && dr == 1;
        case KIND_KNIGHT:
            return dc * absInt(dr) == 2;
        case KIND_BISHOP:
            return dc == absInt(dr);
        case KIND_ROOK:
            return dc == 0 || dr == 0;
        default:
            return dc == 0 || dr == 0 || dc == absInt(dr);
        }
    }
};

inline void push(TMove* out, int& n, int from, int to, uint8_t promotion = 0) {
    out[n].from = static_cast<uint8_t>(from);
    out[n].to = static_cast<uint8_t>(to);
    out[n].promotion = promotion;
    out[n].enPassant = 0;
    ++n;
}

template <bool White, class Keep = KeepAll>
inline void pushPawnMove(TMove* out, int& n, int from, int to, Keep keep = {}) {
    if (rowOf(from) == Side<White>::lastRowBeforePromotion) {
        for (const uint8_t kind : {KIND_QUEEN, KIND_ROOK, KIND_BISHOP, KIND_KNIGHT})
            if (keep(to, kind)) push(out, n, from, to, kind);
    } else if (keep(to, 0)) {
        push(out, n, from, to);
    }
}

template <bool White, int Step> inline void rayMoves(const uint8_t* s, int from, TMove* out, int& n) {
    int sq = from;
    while (CanStep<Step>(sq)) {
        sq += Step;
        const uint8_t target = s[sq];
        if (target & Side<White>::own) return;
        push(out, n, from, sq);
        if (target) return;
    }
}

template <bool White> inline void rookMoves(const uint8_t* s, int from, TMove* out, int& n) {
    rayMoves<White, 8>(s, from, out, n);
    rayMoves<White, -8>(s, from, out, n);
    rayMoves<White, 1>(s, from, out, n);
    rayMoves<White, -1>(s, from, out, n);
}

template <bool White> inline void bishopMoves(const uint8_t* s, int from, TMove* out, int& n) {
    rayMoves<White, 9>(s, from, out, n);
    rayMoves<White, 7>(s, from, out, n);
    rayMoves<White, -7>(s, from, out, n);
    rayMoves<White, -9>(s, from, out, n);
}

template <bool White> inline void knightMoves(const uint8_t* s, int from, TMove* out, int& n) {
    const int8_t* jumps = KnightJumps(from);
    for (int i = 0, count = KnightJumpCount(from); i < count; ++i) {
        const int to = from + jumps[i];
        if (!(s[to] & Side<White>::own)) push(out, n, from, to);
    }
}

template <bool White, int Step> inline void kingStep(const uint8_t* s, int from, TMove* out, int& n) {
    if (CanStep<Step>(from) && !(s[from + Step] & Side<White>::own)) push(out, n, from, from + Step);
}

template <bool White> inline void kingSteps(const uint8_t* s, int from, TMove* out, int& n) {
    kingStep<White, -8>(s, from, out, n);
    kingStep<White, -9>(s, from, out, n);
    kingStep<White, -7>(s, from, out, n);
    kingStep<White, 8>(s, from, out, n);
    kingStep<White, 7>(s, from, out, n);
    kingStep<White, 9>(s, from, out, n);
    kingStep<White, -1>(s, from, out, n);
    kingStep<White, 1>(s, from, out, n);
}

template <bool White> inline void castlings(const TChessboard& b, int from, TMove* out, int& n) {
    constexpr int home = White ? 4 : 60;
    if (from != home) return;
    if constexpr (White) {
        if (WhiteCanCastle(b, KING_SIDE)) push(out, n, from, from + 2);
        if (WhiteCanCastle(b, QUEEN_SIDE)) push(out, n, from, from - 2);
    } else {
        if (BlackCanCastle(b, KING_SIDE)) push(out, n, from, from + 2);
        if (BlackCanCastle(b, QUEEN_SIDE)) push(out, n, from, from - 2);
    }
}

// En passant onto the column next to `from`: the enemy pawn stands beside it
// and the last move, made from a parent, was its double step.
template <bool White> inline bool enPassantPossible(const TChessboard& b, int from, int beside) {
    if (rowOf(from) != Side<White>::enPassantRow || !b.m_pParent) return false;
    if (b.m_aSquares[beside] != Side<White>::enemyPawn) return false;
    return b.m_LastMove.to == beside && b.m_LastMove.from == beside + 2 * Side<White>::forward;
}

// En passant is always kept: the taken pawn's square may open a line.
template <bool White, class Keep = KeepAll>
inline void pawnMoves(const TChessboard& b, int from, TMove* out, int& n, Keep keep = {}) {
    using S = Side<White>;
    const uint8_t* s = b.m_aSquares;
    const int ahead = from + S::forward;
    if (!s[ahead]) {
        pushPawnMove<White>(out, n, from, ahead, keep);
        const int twoAhead = ahead + S::forward;
        if (rowOf(from) == S::startRow && !s[twoAhead] && keep(twoAhead, 0)) push(out, n, from, twoAhead);
    }
    if (colOf(from) > 0) {
        const int to = from + S::lowerCapture;
        if (s[to] & S::enemy)
            pushPawnMove<White>(out, n, from, to, keep);
        else if (enPassantPossible<White>(b, from, from - 1))
            push(out, n, from, to);
    }
    if (colOf(from) < 7) {
        const int to = from + S::higherCapture;
        if (s[to] & S::enemy)
            pushPawnMove<White>(out, n, from, to, keep);
        else if (enPassantPossible<White>(b, from, from + 1))
            push(out, n, from, to);
    }
}

template <bool White> int manMoves(const TChessboard& b, int square, TMove* out) {
    const uint8_t* s = b.m_aSquares;
    int n = 0;
    switch (s[square]) {
    case (White ? WK : BK):
        kingSteps<White>(s, square, out, n);
        castlings<White>(b, square, out, n);
        break;
    case (White ? WP : BP): pawnMoves<White>(b, square, out, n);
        break;
    case (White ? WB : BB): bishopMoves<White>(s, square, out, n);
        break;
    case (White ? WR : BR): rookMoves<White>(s, square, out, n);
        break;
    case (White ? WQ : BQ):
        rookMoves<White>(s, square, out, n);
        bishopMoves<White>(s, square, out, n);
        break;
    case (White ? WN : BN): knightMoves<White>(s, square, out, n);
        break;
    default:
        break;
    }
    return n;
}

template <bool White> int allMoves(const TChessboard& b, TMove* out) {
    int n = 0;
    for (int sq = 0; sq < 64; ++sq)
        if (b.m_aSquares[sq] & Side<White>::own) n += manMoves<White>(b, sq, out + n);
    return n;
}

template <bool White> int evasions(const TChessboard& b, TMove* out) {
    using S = Side<White>;
    const uint8_t* s = b.m_aSquares;
    const int king = White ? b.whiteKing() : b.blackKing();
    const int checker = White ? b.m_cWhiteChecker : b.m_cBlackChecker;
    int n = 0;
    kingSteps<White>(s, king, out, n);
    if (checker == DOUBLE_CHECK) return n;

    // Captures of the checker, by every man but the king.
    TSquareList list;
    if constexpr (White)
        WhiteAttackers(b, colOf(checker), rowOf(checker), &list);
    else
        BlackAttackers(b, colOf(checker), rowOf(checker), &list);
    for (int i = 0; i < list.count; ++i) {
        const int from = squareOf(list.cols[i], list.rows[i]);
        if (from == king) continue;
        if (s[from] == S::pawn)
            pushPawnMove<White>(out, n, from, checker);
        else
            push(out, n, from, checker);
    }

    // Interpositions on the squares between a checking slider and the king.
    const uint8_t kind = s[checker] & KIND_MASK;
    if (kind == KIND_BISHOP || kind == KIND_ROOK || kind == KIND_QUEEN) {
        const int step = LineStep(king, checker);
        for (int sq = king + step; sq != checker; sq += step) {
            TSquareList reaching;
            if constexpr (White)
                WhiteMenReaching(b, colOf(sq), rowOf(sq), reaching);
            else
                BlackMenReaching(b, colOf(sq), rowOf(sq), reaching);
            for (int i = 0; i < reaching.count; ++i) {
                const int from = squareOf(reaching.cols[i], reaching.rows[i]);
                if (s[from] == S::pawn)
                    pushPawnMove<White>(out, n, from, sq);
                else
                    push(out, n, from, sq);
            }
        }
    }

    // En passant: the double-stepped pawn may be the checker, or its square
    // behind may lie on the checking line.
    if (b.m_pParent && s[b.m_LastMove.to] == S::enemyPawn &&
        b.m_LastMove.from == b.m_LastMove.to + 2 * S::forward) {
        const int beside = b.m_LastMove.to;
        const int target = beside + S::forward;
        if (colOf(beside) > 0 && s[beside - 1] == S::pawn) push(out, n, beside - 1, target);
        if (colOf(beside) < 7 && s[beside + 1] == S::pawn) push(out, n, beside + 1, target);
    }
    return n;
}

// The moves of a White pawn or king that does not screen the black king and
// may give check: the pawn's that bring it, or what it becomes, to aim at him
// (and en passant), the king's castlings, which bring a rook. Other men give
// all their moves.
int whiteCheckCandidates(const TChessboard& b, int from, TMove* out) {
    int n = 0;
    switch (b.m_aSquares[from]) {
    case WK:
        castlings<true>(b, from, out, n);
        return n;
    case WP:
        pawnMoves<true>(b, from, out, n, PawnAimsAtKing{b.m_cBlackKingCol, b.m_cBlackKingRow});
        return n;
    default:
        return manMoves<true>(b, from, out);
    }
}

} // namespace

int GenerateWhiteCheckCandidates(const TChessboard& b, int square, bool screensKing, TMove* out) {
    return screensKing ? manMoves<true>(b, square, out) : whiteCheckCandidates(b, square, out);
}

int GenerateWhiteManMoves(const TChessboard& b, int square, TMove* out) {
    return manMoves<true>(b, square, out);
}
int GenerateBlackManMoves(const TChessboard& b, int square, TMove* out) {
    return manMoves<false>(b, square, out);
}
int GenerateWhiteMoves(const TChessboard& b, TMove* out) {
    return allMoves<true>(b, out);
}
int GenerateBlackMoves(const TChessboard& b, TMove* out) {
    return allMoves<false>(b, out);
}
int GenerateWhiteEvasions(const TChessboard& b, TMove* out) {
    return evasions<true>(b, out);
}
int GenerateBlackEvasions(const TChessboard& b, TMove* out) {
    return evasions<false>(b, out);
}

int GenerateWhiteMovesOrEvasions(const TChessboard& b, TMove* out) {
    return b.m_cWhiteChecker >= 0 ? evasions<true>(b, out) : allMoves<true>(b, out);
}
int GenerateBlackMovesOrEvasions(const TChessboard& b, TMove* out) {
    return b.m_cBlackChecker >= 0 ? evasions<false>(b, out) : allMoves<false>(b, out);
}

} // namespace zorvane
