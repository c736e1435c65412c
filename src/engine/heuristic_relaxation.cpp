#include "engine/heuristic_relaxation.h"

#include "core/make_move.h"
#include "core/movegen.h"
#include "core/rays.h"
#include "core/square_sets.h"
#include "engine/heuristics_choice.h"
#include "engine/impossibility.h"

#include <chrono>
#include <thread>

namespace zorvane {

namespace {

// The unblock list is shrunk only when the start had this many white figures.
constexpr int MIN_FIGURES_FOR_LIST_SHRINK = 3;
// Step 11's exception for a single queen: the kings stand this far apart.
constexpr int QUEEN_OPPOSITION_DISTANCE = 2;
// Step 11's exception for a pinned black rook: the king has at most this many free squares.
constexpr int PINNED_ROOK_MAX_FREE = 2;
// The band flags watch a black king this close to the edge.
constexpr int BAND_LIMIT = 1;
// The black pawns that make the centre a wall, so that b2, b7, g2 and g7 count as edge.
constexpr int CENTRE_WALL_PAWNS = 4;
constexpr SquareSet CENTRE_RING = 0x00003C24243C0000ULL; // c3-f3, c4, f4, c5, f5, c6-f6
// Surrounding the black king is worth a bet when he has fewer free squares than this.
constexpr int SURROUNDED_FREE_BELOW = 3;
constexpr int SURROUNDED_MIN_MEN = 5;
constexpr int SURROUNDED_KINGS_NEAR = 3;
// A problem this short takes #2+ after #2 even without a white queen.
constexpr int FFM_SHORT_PROBLEM_PLIES = 22;
// The custom sequence of levels is offered to a king with at most this many free squares.
constexpr int FFM_CUSTOM_MAX_FREE = 2;
constexpr int FFM_STOP_CORNER_FIGURES = 4;
// A white king further than this takes no part in the mate.
constexpr int FFM_KING_TOUCH_DISTANCE = 3;
constexpr int FFM_QUEEN_DUEL_FIGURES = 3;
// The spin counter yields to the scheduler after this many tries.
constexpr int SPIN_TRIES_BEFORE_YIELD = 100;

bool onCorner(int square) {
    return (colOf(square) == 0 || colOf(square) == 7) && (rowOf(square) == 0 || rowOf(square) == 7);
}

int valueOf(uint8_t piece) {
    switch (piece & KIND_MASK) {
    case KIND_QUEEN:
        return QUEEN_MATERIAL;
    case KIND_ROOK:
        return ROOK_MATERIAL;
    case KIND_BISHOP:
    case KIND_KNIGHT:
        return MINOR_MATERIAL;
    case KIND_PAWN:
        return PAWN_MATERIAL;
    default:
        return 0;
    }
}

// The black men beside their king, in material.
int materialBesideBlackKing(const TChessboard& b) {
    int material = 0;
    for (SquareSet men = KING_REACH[b.blackKing()] & MenOfColour(b, BLACK); men; men &= men - 1)
        material += valueOf(b.m_aSquares[__builtin_ctzll(men)]);
    return material;
}

int menOfColourAround(const TChessboard& b, int square, uint8_t colour) {
    return __builtin_popcountll(KING_REACH[square] & MenOfColour(b, colour));
}

// All neighbours of a king but one hold men of `colour`: 2 of 3 in a corner,
// 4 of 5 on an edge, 7 of 8 inside.
bool kingHemmedBy(const TChessboard& b, int king, uint8_t colour) {
    return menOfColourAround(b, king, colour) >= __builtin_popcountll(KING_REACH[king]) - 1;
}

// Whether the White man on `from` moves along `step` (a bishop diagonally, a
// rook straight, a queen both ways).
bool whiteSliderAlong(uint8_t piece, int step) {
    const uint8_t mask = IsDiagonalStep(step) ? WHITE_DIAGONAL : WHITE_LINE;
    return isWhite(piece) && (piece & mask) == mask;
}

// The man on `pinned` stands between the black king and the White slider on
// `pinner`, on one line with nothing else between.
bool pinHolds(const TChessboard& b, int pinned, int pinner) {
    if (pinned >= 64 || pinner >= 64) return false;
    const int king = b.blackKing();
    const int step = LineStep(king, pinned);
    if (step == 0 || LineStep(king, pinner) != step) return false;
    return FirstManOnLine(b.m_aSquares, king, step) == pinned &&
           FirstManOnLine(b.m_aSquares, pinned, step) == pinner &&
           whiteSliderAlong(b.m_aSquares[pinner], step);
}

// Whether a move of White gives check.
bool whiteCanCheck(const TChessboard& b) {
    MoveBuffer moves;
    const int count = GenerateWhiteMovesOrEvasions(b, moves);
    TChessboard child;
    for (int i = 0; i < count; ++i) {
        CopyToChild(child, b);
        child.m_pThread = nullptr; // a look-ahead notes no captures in the thread
        if (MakeWhiteMove(child, moves[i]) && child.blackInCheck()) return true;
    }
    return false;
}

// The lone white queen cannot reach a square from which she checks the black king.
bool queenCannotCheck(const TChessboard& b) {
    const int queen = b.m_cWhiteQueen != NO_SQUARE ? b.m_cWhiteQueen : FindSquare(b, WQ);
    if (queen == NO_SQUARE) return true;
    const SquareSet occupied = MenOfColour(b, WHITE) | MenOfColour(b, BLACK);
    const int king = b.blackKing();
    const SquareSet reach =
        (LineReach(queen, occupied) | DiagonalReach(queen, occupied)) & ~MenOfColour(b, WHITE);
    const SquareSet checking = LineReach(king, occupied) | DiagonalReach(king, occupied);
    return (reach & checking) == 0;
}

// A single white queen (no other White man) against two or more black
// figures, the kings in opposition off the last row, and no check at hand.
bool loneQueenOpposition(const TChessboard& b) {
    return b.m_nWhiteQueens == 1 && b.whiteMenBesideKing() == 1 && b.blackFigures() >= 2 &&
           distance(b.whiteKing(), b.blackKing()) == QUEEN_OPPOSITION_DISTANCE && b.m_cWhiteKingRow != 7 &&
           b.m_cBlackKingRow != 7 && queenCannotCheck(b);
}

// A black figure beside its king that cannot move, and a black rook pinned
// against the king, which has at most two free squares.
bool blockedFigureAndPinnedRook(const TChessboard& b) {
    const int king = b.blackKing();
    bool blocked = false;
    MoveBuffer moves;
    for (SquareSet near = KING_REACH[king] & MenOfColour(b, BLACK); near && !blocked; near &= near - 1) {
        const int square = __builtin_ctzll(near);
        const int kind = b.m_aSquares[square] & KIND_MASK;
        if (kind != KIND_PAWN && kind != KIND_KING && GenerateBlackManMoves(b, square, moves) == 0)
            blocked = true;
    }
    if (!blocked) return false;
    for (int square = 0; square < 64; ++square) {
        if (b.m_aSquares[square] != BR) continue;
        const int step = LineStep(king, square);
        if (step == 0) continue;
        const int beyond = FirstManOnLine(b.m_aSquares, square, step);
        if (beyond >= 0 && pinHolds(b, square, beyond))
            return CountFreeKingSquares(b) <= PINNED_ROOK_MAX_FREE;
    }
    return false;
}

// Step 11's exceptions: positions where a black king move is forced back
// rather than free, so that the strict bet may let it happen.
bool kingMoveExceptionsFit(const TChessboard& b) {
    return loneQueenOpposition(b) || kingHemmedBy(b, b.blackKing(), BLACK) ||
           kingHemmedBy(b, b.whiteKing(), WHITE) || blockedFigureAndPinnedRook(b);
}

// The square a white pawn on `square` promotes on, when every square up to
// it is empty; NO_SQUARE otherwise.
int freePromotionSquare(const TChessboard& b, int square) {
    int ahead = square + 8;
    for (; ahead < 56; ahead += 8)
        if (b.m_aSquares[ahead]) return NO_SQUARE;
    return b.m_aSquares[ahead] ? NO_SQUARE : ahead;
}

// A white pawn move after which the pawn runs to promotion: its way is
// empty and the black king, to move, cannot catch it (the rule of the square).
bool whitePawnCanPromote(const TChessboard& b) {
    if (!b.m_nWhitePawns) return false;
    MoveBuffer moves;
    TChessboard child;
    for (int square = 8; square < 56; ++square) {
        if (b.m_aSquares[square] != WP) continue;
        const int count = GenerateWhiteManMoves(b, square, moves);
        for (int i = 0; i < count; ++i) {
            CopyToChild(child, b);
            child.m_pThread = nullptr;
            if (!MakeWhiteMove(child, moves[i])) continue;
            if (moves[i].promotionKind()) return true;
            const int goal = freePromotionSquare(child, moves[i].to);
            if (goal == NO_SQUARE) continue;
            const int pawnSteps = rowOf(goal) - rowOf(moves[i].to);
            if (distance(child.blackKing(), goal) > pawnSteps) return true;
        }
    }
    return false;
}

// White has a pawn that can move at all.
bool whiteCanUsePawns(const TChessboard& b) {
    if (!b.m_nWhitePawns) return false;
    MoveBuffer moves;
    for (int square = 8; square < 56; ++square)
        if (b.m_aSquares[square] == WP && GenerateWhiteManMoves(b, square, moves) > 0) return true;
    return false;
}

bool blackPawnWallAroundCentre(const TChessboard& b) {
    SquareSet pawns = 0;
    for (int square = 8; square < 56; ++square)
        if (b.m_aSquares[square] == BP) pawns |= SquareBit(square);
    return __builtin_popcountll(pawns & CENTRE_RING) >= CENTRE_WALL_PAWNS;
}

// The black king can still step off the band: a free square further inside.
bool blackKingCanLeaveBand(const TChessboard& b) {
    const SquareSet flights = BoardSets::Of(b).BlackKingFlights(b.blackKing());
    for (SquareSet f = flights; f; f &= f - 1)
        if (SquareEdgeLevel(__builtin_ctzll(f)) > BAND_LIMIT) return true;
    return false;
}

// White can still net the black king on the edge: he stands there, and
// White has the figures to close it.
bool whiteCanNetKing(const TChessboard& b) {
    return b.edgeLevel() == 0 && b.whiteFigures() >= 2;
}

// The wider test of #1+ looks at the men beside the black king; with none
// there it adds nothing, and #2 is the next level worth a pass.
bool wideMateInOneAddsNothing(const TChessboard& b) {
    return (KING_REACH[b.blackKing()] & MenOfColour(b, BLACK)) == 0;
}

// A white pawn stopped head-on by a black pawn.
bool pawnDuel(const TChessboard& b) {
    for (int square = 8; square < 56; ++square)
        if (b.m_aSquares[square] == WP && b.m_aSquares[square + 8] == BP) return true;
    return false;
}

// One call of the relaxation: the root, its parameters and the hooks, and
// what this call has done so far.
struct Relaxation {
    TChessboard& root;
    TThreadContext& ctx;
    SolveWideHeuristicParams& solveWide;
    HeuristicPassTimes& times;
    const RelaxationHooks& hooks;
    // Entry step 5 gave the unblock flag back in this call.
    bool unblockRestored = false;

    bool has(uint32_t flag) const { return (root.m_uHeuristics & flag) != 0; }
    void add(uint32_t flag) { root.m_uHeuristics |= flag; }
    void drop(uint32_t flag) { root.m_uHeuristics &= ~flag; }
    void refresh() { root.m_uHeuristicParams = hooks.refresh(root, ctx); }
    // The end of a step: fresh fingerprint, and whether a set is left.
    int done() {
        refresh();
        return root.m_uHeuristics ? 1 : 0;
    }
    bool strictEdge() const { return has(SH_KEEPKINGONTHEEDGE) && ctx.m_bKingMoveStrict; }

    int run();
    int order();
    int ffmChain();
    void dropKeyFigure();
    bool shrinkUnblockList();
    void shrinkToMinors();
    void noteShrink(int before);
    void endUnblockList();
    void stopFfm();
};

// Remembers the list's length before its first change, and whether a pawn is still listed.
void Relaxation::noteShrink(int before) {
    if (!ctx.m_nBlockedFiguresSaved) ctx.m_nBlockedFiguresSaved = static_cast<uint8_t>(before);
    ctx.m_bBlockedHasPawn = 0;
    for (int i = 0; i < ctx.m_nBlockedFigures; ++i)
        if (ctx.m_aBlockedStart[i] < 64 && root.m_aSquares[ctx.m_aBlockedStart[i]] == BP)
            ctx.m_bBlockedHasPawn = 1;
}

void Relaxation::endUnblockList() {
    drop(SH_DONTLETFIGUREUNBLOCK);
    ctx.m_bUnblockDynamic = 0;
    ctx.m_bBlockedAllowed = 0;
}

// Steps 8 and 13: the figures marked for relaxation leave the unblock list,
// each swapped with the last entry. Applies only while one of them is listed.
bool Relaxation::shrinkUnblockList() {
    if (!ctx.m_bBlockedRelaxable || !(has(SH_DONTLETFIGUREUNBLOCK) || ctx.m_bBlockedAllowed) ||
        ctx.m_nFiguresAtStart < MIN_FIGURES_FOR_LIST_SHRINK)
        return false;
    const int before = ctx.m_nBlockedFigures;
    int count = before;
    for (int r = 0; r < ctx.m_nRelaxBlockedCount && r < MAX_BLOCKED_FIGURES; ++r) {
        for (int i = 0; i < count; ++i) {
            if (ctx.m_aBlockedStart[i] != ctx.m_aRelaxBlocked[r]) continue;
            --count;
            ctx.m_aBlockedStart[i] = ctx.m_aBlockedStart[count];
            ctx.m_aBlockedNow[i] = ctx.m_aBlockedNow[count];
            ctx.m_aBlockedStart[count] = ctx.m_aBlockedNow[count] = HEURISTIC_NO_SQUARE;
            break;
        }
    }
    if (count == before) return false;
    ctx.m_nBlockedFigures = static_cast<uint8_t>(count);
    noteShrink(before);
    if (count == 0) {
        endUnblockList();
        if (ctx.m_bHeuristicsFallback) ctx.m_bFallbackRequested = 1;
    }
    return true;
}

// Step 25: only the black bishops and knights stay listed; when that changes
// nothing (or leaves nothing), the list goes.
void Relaxation::shrinkToMinors() {
    const int before = ctx.m_nBlockedFigures;
    int kept = 0;
    for (int i = 0; i < before; ++i) {
        const int square = ctx.m_aBlockedStart[i];
        const uint8_t man = square < 64 ? root.m_aSquares[square] : 0;
        if (man != BB && man != BN) continue;
        ctx.m_aBlockedStart[kept] = ctx.m_aBlockedStart[i];
        ctx.m_aBlockedNow[kept] = ctx.m_aBlockedNow[i];
        ++kept;
    }
    if (kept == 0 || kept == before) {
        endUnblockList();
        return;
    }
    for (int i = kept; i < before; ++i) ctx.m_aBlockedStart[i] = ctx.m_aBlockedNow[i] = HEURISTIC_NO_SQUARE;
    ctx.m_nBlockedFigures = static_cast<uint8_t>(kept);
    noteShrink(before);
}

// Steps 10 and 14: the key figure goes; under the strict edge with the
// unblock flag the next call brings it back in place of that flag.
void Relaxation::dropKeyFigure() {
    drop(SH_KEYWHITEFIGURE);
    if (strictEdge() && has(SH_DONTLETFIGUREUNBLOCK)) ctx.m_bKeyFigurePending = 1;
}

// FindForcedMate comes off: a custom sequence gives way to the ordinary one
// at the start level (once: the custom allowance is spent), else the flag goes.
void Relaxation::stopFfm() {
    if (ctx.m_bFfmCustom) {
        ctx.m_bFfmCustom = 0;
        ctx.m_nFfmCustomRelaxations = 0;
        ctx.m_nFfmLevel = ctx.m_nFfmStartLevel;
    } else {
        drop(SH_FINDFORCEDMATE);
    }
}

int Relaxation::ffmChain() {
    // 1. The preliminary pass with the band rule is over: the parked FFM set comes back.
    if (ctx.m_bFfmPreliminary) {
        ctx.m_bFfmPreliminary = 0;
        root.m_uHeuristics = ctx.m_uFfmSavedHeuristics;
        return done();
    }
    // 2. Within the allowance: the next weaker level; #1+ is passed over where it adds nothing.
    const int allowance = ctx.m_bFfmCustom ? ctx.m_nFfmCustomRelaxations : ctx.m_nFfmRelaxations;
    if (ctx.m_nFfmLevel - ctx.m_nFfmStartLevel < allowance && ctx.m_nFfmLevel < FFM_LEVEL_MAX) {
        ++ctx.m_nFfmLevel;
        if (ctx.m_nFfmLevel == FFM_LEVEL_MATE1_WIDE && wideMateInOneAddsNothing(root)) ++ctx.m_nFfmLevel;
        return done();
    }
    // 3. #2 without a white queen still gets #2+ where a black queen fights on or the problem is short.
    if (ctx.m_nFfmLevel == FFM_LEVEL_MATE2 && root.m_nWhiteQueens == 0 &&
        (((root.m_wFlags & FLAG_HEURISTIC_32) && root.m_nBlackQueens) ||
         root.m_shPliesTotal < FFM_SHORT_PROBLEM_PLIES)) {
        ctx.m_nFfmLevel = FFM_LEVEL_MATE2_WIDE;
        return done();
    }
    // 4. With the other heuristics in play, a nearly netted king earns the custom sequence.
    if (ctx.m_nFfmWithOthers > 0 && !ctx.m_bFfmCustom && ctx.m_nFfmCustomRelaxations > 0 &&
        CountFreeKingSquares(root) <= FFM_CUSTOM_MAX_FREE) {
        ctx.m_bFfmCustom = 1;
        ctx.m_nFfmLevel = ctx.m_nFfmStartLevel;
        return done();
    }
    // 5. Material where forcing moves are no way to the mate: FFM stops.
    const int figures = root.whiteFigures();
    const bool stop =
        (figures < 3 && !(figures == 2 && root.m_nWhiteQueens == 0)) ||
        (onCorner(root.blackKing()) && figures >= FFM_STOP_CORNER_FIGURES &&
         CountFreeKingSquares(root) <= 1) ||
        (distance(root.whiteKing(), root.blackKing()) > FFM_KING_TOUCH_DISTANCE &&
         BlackMaterial(root) - materialBesideBlackKing(root) < WhiteMaterial(root)) ||
        (root.m_nWhiteQueens && figures + root.blackFigures() >= FFM_QUEEN_DUEL_FIGURES && pawnDuel(root));
    if (!stop) {
        // 6. The time of the pass just finished, as the first thread to finish it saw it.
        const int finished = ctx.m_nPassIndex > 0 ? ctx.m_nPassIndex - 1 : 0;
        const uint64_t ended = PassEndTicks(times, finished, hooks.now());
        const uint64_t started = times.m_uPassStartTicks.load(std::memory_order_relaxed);
        const uint64_t elapsed = ended > started ? ended - started : 0;
        // 7. Near the limit the decision is reported.
        if (elapsed >= TIME_RELAXATION_REPORT_FROM_MS && elapsed <= TIME_RELAXATION_REPORT_TO_MS &&
            hooks.print)
            hooks.print(TimeRelaxationLine(elapsed));
        // 8. A quick pass earns one more level (#1 and #2 are passed over).
        if (elapsed < TIME_RELAXATION_LIMIT_MS && ctx.m_nFfmLevel < FFM_LEVEL_MATE2_WIDE &&
            !(ctx.m_nFfmLevel == FFM_LEVEL_CHECKS && root.m_nWhiteQueens)) {
            ++ctx.m_nFfmLevel;
            if (ctx.m_nFfmLevel == FFM_LEVEL_MATE1 || ctx.m_nFfmLevel == FFM_LEVEL_MATE2) ++ctx.m_nFfmLevel;
            refresh();
            return root.m_uHeuristics ? RELAXED_BY_TIME : 0;
        }
    }
    // 9. FindForcedMate stops.
    stopFfm();
    return done();
}

int Relaxation::order() {
    // 1.
    if (has(SH_FINDFORCEDMATE) || ctx.m_bFfmPreliminary) return ffmChain();
    // 2.-3.
    for (const uint32_t flag : {SH_SWEEPINGWHITEROOK, SH_ZUGZWANG}) {
        if (has(flag)) {
            drop(flag);
            return done();
        }
    }
    // 4. The sea snake is over for the whole solve.
    if (has(SH_SEASNAKE)) {
        drop(SH_SEASNAKE);
        solveWide.m_bSeaSnakeOver = true;
        return done();
    }
    // 5.
    if (has(SH_ONECOLORPLAYPOSSIBLE)) {
        drop(SH_ONECOLORPLAYPOSSIBLE);
        root.m_bPlayState &= static_cast<uint8_t>(~PLAY_ONE_COLOUR_MODE);
        return done();
    }
    // 6.
    if (has(SH_KEEPKINGNEARCORNER)) {
        drop(SH_KEEPKINGNEARCORNER);
        return done();
    }
    // 7. A strict edge with exceptions becomes the surrounding bet, where allowed.
    if (has(SH_KEEPKINGONTHEEDGE) && ctx.m_bKingMoveStrict && ctx.m_bKingMoveExceptions &&
        ctx.m_bStrictEdgeAllowed) {
        drop(SH_KEEPKINGONTHEEDGE);
        add(SH_ASSERTBLACKKINGSURROUNDED);
        return done();
    }
    // 8.
    if (shrinkUnblockList()) return done();
    // 9.
    if (has(SH_DONTLEAVEMAINDIAGONAL)) {
        drop(SH_DONTLEAVEMAINDIAGONAL);
        return done();
    }
    // 10. The key figure, early where its pin holds round a cornered king.
    if (has(SH_KEYWHITEFIGURE) && root.whiteFigures() >= 2 && onCorner(root.blackKing()) &&
        pinHolds(root, ctx.m_cKeyPinnedFigure, ctx.m_cKeyWhiteFigure)) {
        dropKeyFigure();
        return done();
    }
    // 11. The strict edge: first the unblock flag may wait a pass, then exceptions may be allowed.
    if (strictEdge()) {
        if (has(SH_DONTLETFIGUREUNBLOCK) && !unblockRestored && root.whiteFigures() == 1 &&
            ctx.m_nBlockedFigures >= 3) {
            drop(SH_DONTLETFIGUREUNBLOCK);
            ctx.m_bUnblockPending = 1;
            return done();
        }
        if (!ctx.m_bKingMoveExceptions && kingMoveExceptionsFit(root)) {
            ctx.m_bKingMoveExceptions = 1;
            return done();
        }
    }
    // 12. On the edge itself the king may move along it; two majors and a bishop surround him instead.
    if (strictEdge() && root.edgeLevel() == 0) {
        ctx.m_bKingMoveStrict = 0;
        if (root.m_nWhiteQueens + root.m_nWhiteRooks == 2 && root.m_nWhiteBishops && whiteCanCheck(root)) {
            drop(SH_KEEPKINGONTHEEDGE);
            add(SH_ASSERTBLACKKINGSURROUNDED);
        }
        return done();
    }
    // 13.
    if (shrinkUnblockList()) return done();
    // 14.
    if (has(SH_KEYWHITEFIGURE)) {
        dropKeyFigure();
        return done();
    }
    // 15.
    if (ctx.m_bDropQueenCheckFirst && has(SH_DONTLETBLACKQUEENCHECKTWICE)) {
        drop(SH_DONTLETBLACKQUEENCHECKTWICE);
        return done();
    }
    if (ctx.m_bDropPromotedQueenFirst && has(SH_DONTLETPROMOTEDQUEENMOVE)) {
        drop(SH_DONTLETPROMOTEDQUEENMOVE);
        return done();
    }
    // 16. The unblock bet in its effective form: the word stays.
    if (has(SH_DONTLETFIGUREUNBLOCK) && ctx.m_nBlockedFigures > 0 && !ctx.m_bBlockedEffective) {
        ctx.m_bBlockedEffective = 1;
        return done();
    }
    // 17.
    if (has(SH_SINGLEQUEENMATE)) {
        drop(SH_SINGLEQUEENMATE);
        return done();
    }
    // 18. Losing no figure stays only where a pawn runs home against a bare, surrounded king.
    if (has(SH_DONTLOSEANYFIGURES)) {
        const bool keep = whiteCanUsePawns(root) && whitePawnCanPromote(root) &&
                          root.blackMenBesideKing() == 0 && has(SH_ASSERTBLACKKINGSURROUNDED) &&
                          root.whiteFigures() < 4;
        if (!keep) {
            drop(SH_DONTLOSEANYFIGURES);
            return done();
        }
    }
    // 19.
    if (has(SH_ASSERTBLACKKINGSURROUNDED)) {
        if (ctx.m_bSurroundedStrict)
            ctx.m_bSurroundedStrict = 0;
        else
            drop(SH_ASSERTBLACKKINGSURROUNDED);
        return done();
    }
    // 20.
    if (has(SH_DONTLOSEANYFIGURES)) {
        drop(SH_DONTLOSEANYFIGURES);
        return done();
    }
    // 21. The edge gives way to the band next to it, or to the surrounding bet.
    if (has(SH_KEEPKINGONTHEEDGE)) {
        drop(SH_KEEPKINGONTHEEDGE);
        const int figures = root.whiteFigures();
        const bool band = root.edgeLevel() <= BAND_LIMIT && (figures > 0 || whitePawnCanPromote(root));
        const bool noDuel = root.m_nWhiteQueens + root.m_nWhiteRooks == 0 || root.m_nBlackQueens > 0;
        if (band && noDuel) {
            add(SH_KEEPKINGWITHINEXTEDGE);
            if (blackPawnWallAroundCentre(root)) ctx.m_bInclCornerSquares = 1;
        } else if (figures >= 2) {
            const int free = CountFreeKingSquares(root);
            const int men = 2 + root.whiteMenBesideKing() + root.blackMenBesideKing();
            const bool majors =
                root.m_nWhiteQueens + root.m_nWhiteRooks + root.m_nBlackQueens + root.m_nBlackRooks > 0;
            const bool minorEnding = figures < 3 &&
                                     distance(root.whiteKing(), root.blackKing()) <= SURROUNDED_KINGS_NEAR &&
                                     !(root.m_nWhiteKnights == 2 && root.m_nWhitePawns == 0);
            if ((free < SURROUNDED_FREE_BELOW && men >= SURROUNDED_MIN_MEN && (majors || minorEnding)) ||
                free <= 1)
                add(SH_ASSERTBLACKKINGSURROUNDED);
        }
        return done();
    }
    // 22. While the unblock list may still shrink and the king can still break the band, the band waits.
    const bool unblockInPlay = has(SH_DONTLETFIGUREUNBLOCK) || ctx.m_bBlockedAllowed;
    if (!(unblockInPlay && has(SH_KEEPKINGWITHINEXTEDGE) && blackKingCanLeaveBand(root))) {
        // 23.
        if (!has(SH_KEEPKINGWITHINEXTEDGE)) {
            if (has(SH_DONTLETBLACKQUEENCHECKTWICE))
                drop(SH_DONTLETBLACKQUEENCHECKTWICE);
            else if (has(SH_SKIPWORSTWHITEMOVES))
                drop(SH_SKIPWORSTWHITEMOVES);
            else
                root.m_uHeuristics = 0;
            return done();
        }
        // 24.
        if (!ctx.m_bExtEdgeMoveUnlessOnEdge) {
            drop(SH_KEEPKINGWITHINEXTEDGE);
            if (CountFreeKingSquares(root) <= 1 || whiteCanNetKing(root)) add(SH_ASSERTBLACKKINGSURROUNDED);
        } else {
            ctx.m_bExtEdgeMoveUnlessOnEdge = 0;
        }
        return done();
    }
    // 25.
    shrinkToMinors();
    return done();
}

int Relaxation::run() {
    // 1.
    ctx.m_bFallbackRequested = 0;
    // 2. Relaxation is switched off: the next pass is the one without heuristics.
    if (!ctx.m_bLetRelax) {
        root.m_uHeuristics = 0;
        root.m_uHeuristicParams = 0;
        return 0;
    }
    // 3. Black to move: the set belongs to White's position above.
    if (!root.whiteToMove()) {
        if (!root.m_pParent) return 0;
        const TChessboard kept = root;
        // The parent is a board of the caller's own (a stack slot or the
        // driver's root), only reached through the record's const link.
        TChessboard& parent = const_cast<TChessboard&>(*root.m_pParent);
        const int result = TryRelaxSpecialHeuristics(parent, ctx, solveWide, times, hooks);
        root = kept;
        if (result) {
            root.m_uHeuristics = parent.m_uHeuristics;
            refresh();
        } else {
            root.m_uHeuristics = 0;
            root.m_uHeuristicParams = 0;
        }
        return result;
    }
    // 4.
    if (ctx.m_nPassIndex < PASS_INDEX_COUNT - 1) ++ctx.m_nPassIndex;
    // 5. The unblock flag that step 11 held back for a pass returns.
    if (ctx.m_bUnblockPending) {
        ctx.m_bUnblockPending = 0;
        add(SH_DONTLETFIGUREUNBLOCK);
        unblockRestored = true;
    }
    // 6. The key figure dropped by step 10 or 14 comes back for one pass in
    // place of the unblock flag, then the unblock flag in place of it.
    if (ctx.m_bKeyFigurePending) {
        if (has(SH_DONTLETFIGUREUNBLOCK)) {
            drop(SH_DONTLETFIGUREUNBLOCK);
            add(SH_KEYWHITEFIGURE);
            refresh();
            return 1;
        }
        add(SH_DONTLETFIGUREUNBLOCK);
        drop(SH_KEYWHITEFIGURE);
        ctx.m_bKeyFigurePending = 0;
    }
    return order();
}

} // namespace

void ParkForcedMateForPreliminaryPass(TChessboard& root, TSpecialHeuristicsParams& params) {
    if (!params.m_bFfmPreliminary || !(root.m_uHeuristics & SH_FINDFORCEDMATE)) return;
    params.m_uFfmSavedHeuristics = root.m_uHeuristics;
    root.m_uHeuristics =
        (root.m_uHeuristics & ~(SH_ASSERTBLACKKINGSURROUNDED | SH_KEEPKINGONTHEEDGE | SH_FINDFORCEDMATE)) |
        SH_KEEPKINGWITHINEXTEDGE;
}

uint64_t SystemTicks() {
    using namespace std::chrono;
    return static_cast<uint64_t>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

uint64_t PassEndTicks(HeuristicPassTimes& times, int passIndex, uint64_t now) {
    if (passIndex < 0 || passIndex >= PASS_INDEX_COUNT) return now;
    for (int tries = 1;; ++tries) {
        if (times.m_wPassTicksLock.fetch_add(1, std::memory_order_acquire) == 0) break;
        times.m_wPassTicksLock.fetch_sub(1, std::memory_order_relaxed);
        if (tries % SPIN_TRIES_BEFORE_YIELD == 0) std::this_thread::sleep_for(std::chrono::milliseconds(0));
    }
    if (times.m_aPassTicks[passIndex] == 0) times.m_aPassTicks[passIndex] = now;
    const uint64_t ended = times.m_aPassTicks[passIndex];
    times.m_wPassTicksLock.fetch_sub(1, std::memory_order_release);
    return ended;
}

std::string TimeRelaxationLine(uint64_t milliseconds) {
    return "Time dependent relaxation near the limit: calcTime=" + std::to_string(milliseconds) +
           " msec.; limit=" + std::to_string(TIME_RELAXATION_LIMIT_MS) + " msec. " +
           (milliseconds < TIME_RELAXATION_LIMIT_MS ? "(additional relaxation accepted)"
                                                    : "(additional relaxation refused)");
}

int TryRelaxSpecialHeuristics(TChessboard& root, TThreadContext& ctx, SolveWideHeuristicParams& solveWide,
                              HeuristicPassTimes& times, const RelaxationHooks& hooks) {
    Relaxation relaxation{root, ctx, solveWide, times, hooks};
    return relaxation.run();
}

bool FallbackAddsKingsNear(const TChessboard& position) {
    return position.m_nWhiteQueens + position.m_nWhiteRooks == 0 &&
           position.m_nWhiteBishops + position.m_nWhiteKnights <= 2 &&
           distance(position.whiteKing(), position.blackKing()) <= FALLBACK_KINGS_NEAR;
}

bool FallbackApplies(const TChessboard& position, const TThreadContext& ctx) {
    if (!ctx.m_bHeuristicsFallback || ctx.m_nFallbackDepth) return false;
    if (position.m_shPliesLeft < FALLBACK_MIN_PLIES_LEFT ||
        position.m_shPliesTotal - position.m_shPliesLeft > FALLBACK_MAX_PLIES_PLAYED)
        return false;
    if ((position.m_uHeuristics & SH_KEEPKINGONTHEEDGE) && ctx.m_bKingMoveStrict) return false;
    // 1. The black king has just stepped from an inner square onto the edge.
    const int king = position.blackKing();
    const int from = position.m_LastMove.from;
    if (position.m_LastMove.to != king || SquareEdgeLevel(king) != 0) return false;
    if (from < 9 || from > 54 || colOf(from) == 0 || colOf(from) == 7) return false;
    // 2. No queen or rook on either side, one black minor (none in one-colour play), one white bishop at
    // most.
    if (position.m_nWhiteQueens + position.m_nWhiteRooks + position.m_nBlackQueens + position.m_nBlackRooks)
        return false;
    const int blackMinors = position.m_nBlackBishops + position.m_nBlackKnights;
    if (!(blackMinors == 1 || (blackMinors == 0 && (position.m_bPlayState & PLAY_ONE_COLOUR_MODE))))
        return false;
    if (position.m_nWhiteBishops > 1 || !position.m_bWhiteListsValid) return false;
    // 3. A black bishop stays by its king.
    if (position.m_nBlackBishops) {
        const int bishop = FindSquare(position, BB);
        if (bishop == NO_SQUARE || distance(bishop, king) > FALLBACK_BISHOP_NEAR_KING) return false;
    }
    return true;
}

} // namespace zorvane
