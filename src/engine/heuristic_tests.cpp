#include "engine/heuristic_tests.h"

#include "core/attacks.h"
#include "engine/heuristic_bits.h"
#include "engine/heuristics_catalogue.h"
#include "engine/impossibility.h"
#include "engine/mate_in_one.h"
#include "engine/solve_job.h"

#include <algorithm>

namespace zorvane {

namespace {

// Plies left at which the cheap endgame bets of SH_3MOVESTOMATE look at the
// free squares, and below which they look at a far white king.
constexpr int THREE_MOVES_FREE_SQUARE_PLIES = 5;
constexpr int THREE_MOVES_FAR_KING_BELOW_PLIES = 15;
// Free squares beside the black king above which a surrounded king counts as loose.
constexpr int SURROUNDED_LIMIT = 3;
constexpr int SURROUNDED_STRICT_LIMIT = 2;
// The lowest square index of the sixth row: a white pawn beyond it is near promotion.
constexpr int FIRST_SQUARE_OF_SIXTH_ROW = 40;

// The escape "unless immediate mate": a bet that White breaks with a mate at once is no bet.
bool doubtfulUnlessMateInOne(TChessboard& b, TThreadContext& ctx, uint32_t reason) {
    if (FindMateInOne(b)) return false;
    ctx.m_nDoubtfulReason = reason;
    return true;
}

// White pawns within `rows` rows of promotion.
bool whitePawnWithinRows(const TChessboard& b, int rows) {
    if (!b.m_nWhitePawns) return false;
    for (int square = (8 - 1 - rows) * 8; square < 56; ++square)
        if (square >= 0 && b.m_aSquares[square] == WP) return true;
    return false;
}

// The fewest moves a white pawn needs to promote, or a large number without pawns.
int pawnMovesToPromotion(const TChessboard& b) {
    int fewest = 99;
    for (int square = 8; square < 56; ++square)
        if (b.m_aSquares[square] == WP) fewest = std::min(fewest, 7 - rowOf(square) - (rowOf(square) == 1));
    return fewest;
}

bool blackManBesideKing(const TChessboard& b) {
    const int king = b.blackKing();
    for (int square = 0; square < 64; ++square)
        if (distance(square, king) == 1 && isBlack(b.m_aSquares[square])) return true;
    return false;
}

// 1. The cheap endgame bets: White with little material and a king too far,
// or a black king with too much room for the plies left.
bool threeMovesToMateBroken(TChessboard& b, TThreadContext& ctx) {
    const int plies = b.m_shPliesLeft;
    const int heavy = b.m_nWhiteQueens + b.m_nWhiteRooks;
    if (heavy >= 2) return false;
    const int band = b.edgeLevel();
    if (plies == THREE_MOVES_FREE_SQUARE_PLIES && b.m_bWhiteListsValid &&
        !whitePawnWithinRows(b, (plies + 1) / 2) && b.m_pParent) {
        const int free = CountFreeKingSquares(b);
        // The parent's count, only where the child's already says loose.
        auto parentFree = [&](int atLeast) { return CountFreeKingSquares(*b.m_pParent) >= atLeast; };
        const bool loose = heavy == 0 ? (band >= 2 && free >= 5 && parentFree(5)) ||
                                            (band == 1 && free >= 6 && parentFree(5))
                                      : (band >= 2 && free >= 6 && parentFree(6)) ||
                                            (band == 1 && !b.m_nWhiteQueens && free >= 7 && parentFree(6));
        if (loose) {
            ctx.m_nDoubtfulReason = SH_3MOVESTOMATE;
            return true;
        }
    }
    const int minors = b.m_nWhiteBishops + b.m_nWhiteKnights;
    if (plies < THREE_MOVES_FAR_KING_BELOW_PLIES && ((heavy == 0 && minors <= 2) || minors == 0) &&
        band == 0 && b.whiteFigures() <= 1 && !blackManBesideKing(b)) {
        // A lone White figure mates an edge king only with its own king near.
        const int moves = (plies + 1) / 2;
        const int kings = distance(b.whiteKing(), b.blackKing());
        if (moves + 2 <= kings && (b.m_nWhitePawns == 0 || moves + 1 < pawnMovesToPromotion(b))) {
            ctx.m_nDoubtfulReason = SH_3MOVESTOMATE;
            return true;
        }
    }
    return false;
}

// 5. A listed black figure left its blockade by more than one square.
bool figureUnblocked(TChessboard& b, TThreadContext& ctx, const TMove& reply) {
    const TChessboard& parent = *b.m_pParent;
    for (int i = 0; i < ctx.m_nBlockedFigures; ++i) {
        if (parent.m_aWatched[i] != reply.from) continue;
        if (!ctx.m_bBlockedHasPawn && (parent.m_aSquares[reply.from] & KIND_MASK) == KIND_PAWN) return false;
        const int start = ctx.m_aBlockedStart[i];
        if (start < 64 && distance(start, reply.to) > 1)
            return doubtfulUnlessMateInOne(b, ctx, SH_DONTLETFIGUREUNBLOCK);
    }
    return false;
}

// 6./7. A promoted black man moved: promotions are counted in the position, and
// a man that stands where no such man stood at the root came by promotion.
bool promotedManMoved(TChessboard& b, TThreadContext& ctx, const TMove& reply) {
    if (!(b.m_wFlags2 & FLAGS2_BLACK_PROMOTIONS) || (reply.promotion & KIND_MASK)) return false;
    const uint8_t man = b.m_aSquares[reply.to];
    const uint8_t kind = man & KIND_MASK;
    if (kind == KIND_PAWN || kind == KIND_KING || !ctx.m_pRoot) return false;
    int atRoot = 0, now = 0;
    for (int square = 0; square < 64; ++square) {
        atRoot += ctx.m_pRoot->m_aSquares[square] == man;
        now += b.m_aSquares[square] == man;
    }
    if (now <= atRoot) return false;
    const bool queen = kind == KIND_QUEEN;
    const uint32_t flag = queen && (b.m_uHeuristics & SH_DONTLETPROMOTEDQUEENMOVE)
                              ? SH_DONTLETPROMOTEDQUEENMOVE
                              : SH_DONTLETPROMOTEDFIGUREMOVE;
    if (!(b.m_uHeuristics & flag)) return false;
    // A queen that guards her king is let alone while White has figures to spare.
    if (queen && !ctx.m_bPromotedStrict && distance(reply.to, b.blackKing()) == 1 && b.whiteFigures() >= 2)
        return false;
    return doubtfulUnlessMateInOne(b, ctx, flag);
}

// Rooks and queens share the rook's bit, bishops and queens the bishop's.
bool slidesLikeRook(uint8_t man) {
    return (man & KIND_ROOK) != 0;
}
bool slidesLikeBishop(uint8_t man) {
    return (man & KIND_BISHOP) != 0;
}

// 8./9. The key file or diagonal was used by a black line man: no escape.
bool keyLineUsed(const TChessboard& b, TThreadContext& ctx, const TMove& reply) {
    const SolveWideHeuristicParams& wide = ctx.m_pJob->m_solveWideHeuristics;
    const uint8_t man = b.m_aSquares[reply.to];
    if ((b.m_uHeuristics & SH_KEYLINE) && wide.m_cKeyLineFile < 8 &&
        colOf(reply.from) == wide.m_cKeyLineFile && colOf(reply.to) == wide.m_cKeyLineFile &&
        slidesLikeRook(man)) {
        ctx.m_nDoubtfulReason = SH_KEYLINE;
        return true;
    }
    if ((b.m_uHeuristics & SH_KEYDIAGONAL) && wide.m_wKeyDiagonal != 0xFFFF && slidesLikeBishop(man)) {
        const int a = wide.m_wKeyDiagonal & 0x3F, c = (wide.m_wKeyDiagonal >> 8) & 0x3F;
        auto onDiagonal = [&](int square) {
            return absInt(colOf(square) - colOf(a)) == absInt(rowOf(square) - rowOf(a)) &&
                   ((colOf(square) - colOf(a)) * (rowOf(c) - rowOf(a)) ==
                    (rowOf(square) - rowOf(a)) * (colOf(c) - colOf(a)));
        };
        if (onDiagonal(reply.from) && onDiagonal(reply.to)) {
            ctx.m_nDoubtfulReason = SH_KEYDIAGONAL;
            return true;
        }
    }
    return false;
}

// 10. A black queen checks the white king a second time running.
bool queenChecksTwice(TChessboard& b, TThreadContext& ctx, const TMove& reply) {
    if (b.m_cWhiteChecker != reply.to || b.m_aSquares[reply.to] != BQ) return false;
    const TChessboard* before = b.m_pParent ? b.m_pParent->m_pParent : nullptr;
    if (!before || before->m_cWhiteChecker != reply.from) return false;
    // A queen that stays beside the white king is one check, not two.
    if (distance(reply.to, b.whiteKing()) == 1 && distance(reply.from, reply.to) == 1) return false;
    if (b.m_nWhiteQueens <= 1 && distance(b.whiteKing(), b.blackKing()) <= 2) return false;
    return doubtfulUnlessMateInOne(b, ctx, SH_DONTLETBLACKQUEENCHECKTWICE);
}

// 11. Black took a White figure (or a pawn, in the stricter modes).
bool figureLost(TChessboard& b, TThreadContext& ctx, const TMove& reply) {
    const TChessboard& parent = *b.m_pParent;
    const uint8_t taken = parent.m_aSquares[reply.to];
    if (!isWhite(taken)) return false;
    const uint8_t kind = taken & KIND_MASK;
    if (kind == KIND_PAWN) {
        if (ctx.m_nLoseFiguresMode == 0) return false;
        if (ctx.m_nLoseFiguresMode == 2 && reply.to < FIRST_SQUARE_OF_SIXTH_ROW) return false;
    }
    // Taking back a man that has just taken is the price of the exchange White chose.
    const TMove& white = parent.m_LastMove;
    if (white.to == reply.to && parent.m_pParent && parent.m_pParent->m_aSquares[white.to] != 0) return false;
    return doubtfulUnlessMateInOne(b, ctx, SH_DONTLOSEANYFIGURES);
}

// 12. The white king cannot come next to the black king in the moves left.
bool kingsTooFar(const TChessboard& b, TThreadContext& ctx) {
    const int moves = (b.m_shPliesLeft + 1) / 2;
    if (distance(b.whiteKing(), b.blackKing()) - 2 <= moves) return false;
    ctx.m_nDoubtfulReason = SH_AREKINGSNEAR;
    return true;
}

// 13. The black king went too far from the nearest corner.
bool kingLeftCorner(TChessboard& b, TThreadContext& ctx) {
    const int king = b.blackKing();
    const int col = std::min(colOf(king), 7 - colOf(king));
    const int row = std::min(rowOf(king), 7 - rowOf(king));
    const int limit = ctx.m_cCornerDistance;
    const int away = limit >= 0 ? col + row : std::max(col, row);
    if (away <= absInt(limit)) return false;
    return doubtfulUnlessMateInOne(b, ctx, SH_KEEPKINGNEARCORNER);
}

// 15. Enough black figures have been taken to let the king go.
bool figuresCapturedRelease(const TChessboard& b, const TThreadContext& ctx) {
    if (!ctx.m_nDynRelaxFiguresCaptured || !ctx.m_pRoot) return false;
    const TChessboard& root = *ctx.m_pRoot;
    const int captured = b.whiteFigures() - root.whiteFigures() + root.blackFigures() - b.blackFigures();
    return captured >= ctx.m_nDynRelaxFiguresCaptured;
}

// 16. The defer step: a broken band bet may wait some moves for a dynamic
// relaxation (a capture, a pawn near promotion) to come. The first break
// marks the position and sets the plies by which the bet must hold again;
// below them the break counts. True: the test is passed for now.
bool deferred(TChessboard& b, TThreadContext& ctx) {
    const int plies = b.m_shPliesLeft;
    if (b.m_wFlags2 & FLAGS2_BAND_CHECK_DEFERRED) return plies >= ctx.m_wDeferLimit;
    const bool dynamic = ctx.m_nDynRelaxFiguresCaptured > 0 || ctx.m_bDynRelaxOnAdvancedPawn;
    if (!ctx.m_wDeferMoves || !dynamic) return false;
    if (ctx.m_bSkipDeferIfBalanceFixed && b.blackFigures() == 0) return false;
    ctx.m_wDeferLimit = static_cast<uint16_t>(std::max(1, plies - 2 * ctx.m_wDeferMoves));
    b.m_wFlags2 |= FLAGS2_BAND_CHECK_DEFERRED;
    b.m_uHeuristicParams = HeuristicFingerprintOf(b, ctx);
    return true;
}

// 14. The black king left the edge (band form) or moved at all (king form).
bool kingLeftEdge(TChessboard& b, TThreadContext& ctx, const TMove& reply) {
    const TChessboard& parent = *b.m_pParent;
    const bool kingMoved = (parent.m_aSquares[reply.from] & KIND_MASK) == KIND_KING;
    if (ctx.m_bKingMoveStrict) {
        if (!kingMoved) return false;
        // A king driven out of check, or stepping along the edge when exceptions are allowed, keeps the bet.
        if (parent.m_cBlackChecker >= 0 && !ctx.m_bKingMoveExceptions) return false;
        if (ctx.m_bKingMoveExceptions && SquareEdgeLevel(reply.to) == 0 && parent.m_cBlackChecker >= 0)
            return false;
        return doubtfulUnlessMateInOne(b, ctx, SH_KEEPKINGONTHEEDGE);
    }
    if (b.edgeLevel() == 0) return false;
    if (!ctx.m_bDynRelaxExtEdgeOnly && figuresCapturedRelease(b, ctx)) return false;
    if (ctx.m_bInclCornerSquares && b.edgeLevel() == 1 &&
        (colOf(b.blackKing()) == 1 || colOf(b.blackKing()) == 6) &&
        (rowOf(b.blackKing()) == 1 || rowOf(b.blackKing()) == 6))
        return false;
    if (!ctx.m_bDynRelaxExtEdgeOnly && deferred(b, ctx)) return false;
    return doubtfulUnlessMateInOne(b, ctx, SH_KEEPKINGONTHEEDGE);
}

// 17. The black king left the edge and the line beside it.
bool kingLeftBand(TChessboard& b, TThreadContext& ctx, const TMove& reply) {
    if (ctx.m_bExtEdgeMoveUnlessOnEdge) {
        const TChessboard& parent = *b.m_pParent;
        if ((parent.m_aSquares[reply.from] & KIND_MASK) != KIND_KING || parent.edgeLevel() == 0) return false;
    } else {
        if (b.edgeLevel() < 2) return false;
        if (figuresCapturedRelease(b, ctx)) return false;
    }
    if (deferred(b, ctx)) return false;
    return doubtfulUnlessMateInOne(b, ctx, SH_KEEPKINGWITHINEXTEDGE);
}

// 18. The black king has too many free squares about him.
bool kingLoose(TChessboard& b, TThreadContext& ctx) {
    int limit = ctx.m_bSurroundedStrict ? SURROUNDED_STRICT_LIMIT : SURROUNDED_LIMIT;
    if (!ctx.m_bSurroundedStrict && b.blackFigures() == 0 && b.whiteFigures() >= 3) {
        const bool captured = b.m_pParent && b.m_pParent->m_pParent &&
                              b.m_pParent->m_pParent->m_aSquares[b.m_pParent->m_LastMove.to] != 0;
        limit = 4 + captured + (distance(b.whiteKing(), b.blackKing()) <= 3);
    }
    if (CountFreeKingSquares(b) <= limit) return false;
    return doubtfulUnlessMateInOne(b, ctx, SH_ASSERTBLACKKINGSURROUNDED);
}

// 24. What no move order can mate in the plies left is no mate, under any set.
int tail(TChessboard& b, TThreadContext& ctx) {
    const int code = ImpossibilityCode(b);
    if (!code) return HEURISTIC_PASSED;
    ctx.m_nDoubtfulReason = ImpossibilityReason(code);
    return HEURISTIC_IMPOSSIBLE;
}

int testsInOrder(TChessboard& b, TThreadContext& ctx) {
    const uint32_t set = b.m_uHeuristics;
    const TMove reply = b.m_LastMove;
    if ((set & SH_3MOVESTOMATE) && threeMovesToMateBroken(b, ctx)) return HEURISTIC_DOUBTFUL;
    if (!set || b.m_shPliesLeft == 0 || !b.m_pParent) return tail(b, ctx);
    if ((set & SH_DONTLETFIGUREUNBLOCK) && figureUnblocked(b, ctx, reply)) return HEURISTIC_DOUBTFUL;
    if ((set & (SH_DONTLETPROMOTEDQUEENMOVE | SH_DONTLETPROMOTEDFIGUREMOVE)) &&
        promotedManMoved(b, ctx, reply))
        return HEURISTIC_DOUBTFUL;
    if ((set & (SH_KEYLINE | SH_KEYDIAGONAL)) && keyLineUsed(b, ctx, reply)) return HEURISTIC_DOUBTFUL;
    if ((set & SH_DONTLETBLACKQUEENCHECKTWICE) && queenChecksTwice(b, ctx, reply)) return HEURISTIC_DOUBTFUL;
    if ((set & SH_DONTLOSEANYFIGURES) && figureLost(b, ctx, reply)) return HEURISTIC_DOUBTFUL;
    if ((set & SH_AREKINGSNEAR) && kingsTooFar(b, ctx)) return HEURISTIC_DOUBTFUL;
    if ((set & SH_KEEPKINGNEARCORNER) && kingLeftCorner(b, ctx)) return HEURISTIC_DOUBTFUL;
    if ((set & SH_KEEPKINGONTHEEDGE) && kingLeftEdge(b, ctx, reply)) return HEURISTIC_DOUBTFUL;
    if ((set & SH_KEEPKINGWITHINEXTEDGE) && kingLeftBand(b, ctx, reply)) return HEURISTIC_DOUBTFUL;
    if ((set & SH_ASSERTBLACKKINGSURROUNDED) && kingLoose(b, ctx)) return HEURISTIC_DOUBTFUL;
    return tail(b, ctx);
}

} // namespace

int IsMateDoubtfulAfterBlackMove(TChessboard& position, TThreadContext& ctx) {
    ++ctx.m_nHeuristicsDepth;
    const int answer = testsInOrder(position, ctx);
    --ctx.m_nHeuristicsDepth;
    return answer;
}

int ImpossibilityAfterBlackMove(TChessboard& position, TThreadContext& ctx) {
    return tail(position, ctx);
}

bool IsWhiteMoveDoubtful(const TChessboard& child, TThreadContext& ctx) {
    const TChessboard& parent = *child.m_pParent;
    // A White man left the diagonal of the black king that the bet keeps it on.
    if ((child.m_uHeuristics & (SH_KEEPKINGONTHEEDGE | SH_DONTLEAVEMAINDIAGONAL)) ==
            (SH_KEEPKINGONTHEEDGE | SH_DONTLEAVEMAINDIAGONAL) &&
        ctx.m_bKingMoveStrict) {
        const TMove& move = child.m_LastMove;
        const int king = child.blackKing();
        auto onKingDiagonal = [&](int square) {
            return absInt(colOf(square) - colOf(king)) == absInt(rowOf(square) - rowOf(king));
        };
        if (parent.m_aSquares[move.from] == WB && onKingDiagonal(move.from) && !onKingDiagonal(move.to)) {
            ctx.m_nDoubtfulReason = SH_DONTLEAVEMAINDIAGONAL;
            return true;
        }
    }
    return false;
}

} // namespace zorvane
