#include "engine/heuristics_choice.h"

#include "core/make_move.h"
#include "core/movegen.h"
#include "core/thread_context.h"
#include "engine/ffm_candidates.h"
#include "engine/heuristic_bits.h"
#include "engine/impossibility.h"

namespace zorvane {

namespace {

// Fewer men than this make a miniature, solved by the kings' geometry.
constexpr int MINIATURE_MEN = 8;
// Free squares about the black king at or below which he counts as hemmed in.
constexpr int HEMMED_FREE_SQUARES = 2;
// White pawns on these rows of Black's: a black pawn this far promotes within two moves.
constexpr int BLACK_PAWN_NEAR_PROMOTION_ROW = 2;

// Forcing moves are worth a run from this many plies on.
constexpr int FFM_MIN_PLIES = 11;
// From this many plies on a forcing run is preceded by a pass with the band rule.
constexpr int FFM_PRELIMINARY_PLIES = 61;
constexpr int FFM_KINGS_APART = 2;
constexpr int FFM_FEW_FIGURES = 3;

// How White can force play in the root: 0 not at all, 1 by checks or threats
// of mate in one, 2 by a threat of mate in one against a king with little room.
int forcingPlay(TChessboard& root, int freeSquares) {
    TMove moves[MAX_MOVES];
    const int count = GenerateWhiteMovesOrEvasions(root, moves);
    TChessboard& child = root.m_pThread->m_aBoards[root.m_shPliesLeft];
    int form = 0;
    for (int i = 0; i < count; ++i) {
        CopyToChild(child, root);
        if (!MakeWhiteMove(child, moves[i])) continue;
        if (child.m_cBlackChecker >= 0) {
            form = 1;
        } else if (ThreatensMate(child, 1, false)) {
            if (freeSquares < HEMMED_FREE_SQUARES + 1) return 2;
            form = 1;
        }
    }
    return form;
}

// The forcing-moves run of the automatic choice: level #1, with the other
// bets all through where the king is hemmed in, and as many further levels as
// the material promises.
void chooseForcedMate(TChessboard& root, TThreadContext& ctx, uint32_t& set, int free) {
    const int form = forcingPlay(root, free);
    if (form == 0) return;
    set |= SH_FINDFORCEDMATE;
    ctx.m_nFfmLevel = ctx.m_nFfmStartLevel = FFM_LEVEL_MATE1;
    if (form == 2) ctx.m_nFfmWithOthers = FFM_WITH_OTHERS;
    const int white = WhiteMaterial(root), black = BlackMaterial(root);
    const int figures = root.whiteFigures();
    const int kings = distance(root.whiteKing(), root.blackKing());
    if (2 * white > black && 3 * white >= 2 * black && figures < FFM_FEW_FIGURES && kings == FFM_KINGS_APART)
        ctx.m_nFfmRelaxations = 2;
    else if (root.m_nWhiteQueens + root.m_nWhiteRooks == 0 && kings == FFM_KINGS_APART &&
             2 * black > 5 * white && free > 0)
        ctx.m_nFfmRelaxations = 3;
    else if (figures == 1 && kings > FFM_KINGS_APART)
        ctx.m_nFfmRelaxations = 1;
    if (root.m_shPliesLeft >= FFM_PRELIMINARY_PLIES && ctx.m_nFfmWithOthers == FFM_PARTIALLY_WITH_OTHERS &&
        root.edgeLevel() < 2)
        ctx.m_bFfmPreliminary = 1;
}

bool blackPawnNearPromotion(const TChessboard& b) {
    for (int square = 8; square < 8 * (BLACK_PAWN_NEAR_PROMOTION_ROW + 1); ++square)
        if (b.m_aSquares[square] == BP) return true;
    return false;
}

} // namespace

int WhiteMaterial(const TChessboard& b) {
    return QUEEN_MATERIAL * b.m_nWhiteQueens + ROOK_MATERIAL * b.m_nWhiteRooks +
           MINOR_MATERIAL * (b.m_nWhiteBishops + b.m_nWhiteKnights) + PAWN_MATERIAL * b.m_nWhitePawns;
}
int BlackMaterial(const TChessboard& b) {
    return QUEEN_MATERIAL * b.m_nBlackQueens + ROOK_MATERIAL * b.m_nBlackRooks +
           MINOR_MATERIAL * (b.m_nBlackBishops + b.m_nBlackKnights) + PAWN_MATERIAL * b.m_nBlackPawns;
}

uint32_t InitialPositionTypeCheck(TChessboard& root, TThreadContext& ctx) {
    static_cast<TSpecialHeuristicsParams&>(ctx) = TSpecialHeuristicsParams{};
    uint32_t type = 0;
    // 3. Every sub-position with few moves left is asked whether a mate still looks possible.
    uint32_t set = SH_3MOVESTOMATE;
    const int men = 2 + root.whiteMenBesideKing() + root.blackMenBesideKing();
    const int whiteFigures = root.whiteFigures();
    const int heavy = root.m_nWhiteQueens + root.m_nWhiteRooks;
    ctx.m_nFiguresAtStart = static_cast<uint8_t>(whiteFigures);
    // 4. A miniature: a lone White figure mates only with its king beside.
    if (men < MINIATURE_MEN) {
        type |= POSITION_MINIATURE;
        if (whiteFigures <= 1 && root.m_nWhitePawns == 0) set |= SH_AREKINGSNEAR;
        root.m_uHeuristics = set;
        return type;
    }
    // 5. A long problem where White can force play: a forcing-moves run first.
    const int free = CountFreeKingSquares(root);
    if (root.m_shPliesLeft >= FFM_MIN_PLIES) chooseForcedMate(root, ctx, set, free);
    // 6. An overwhelming White keeps its figures.
    const int white = WhiteMaterial(root), black = BlackMaterial(root);
    if (white >= 2 * black) type |= POSITION_WHITE_STRONGER;
    if (whiteFigures >= 2 && white >= 2 * black) set |= SH_DONTLOSEANYFIGURES;
    // 7. A black man that promotes is not let play.
    if (root.m_nBlackPawns) {
        type |= POSITION_BLACK_PAWNS;
        set |= blackPawnNearPromotion(root) && heavy < 2 && black >= white ? SH_DONTLETPROMOTEDFIGUREMOVE
                                                                           : SH_DONTLETPROMOTEDQUEENMOVE;
    }
    // 9. The black king's room: kept on the edge, in the band beside it, or hemmed in.
    const int band = root.edgeLevel();
    if (free <= HEMMED_FREE_SQUARES) type |= POSITION_KING_HEMMED;
    if (band == 0) {
        type |= POSITION_KING_ON_EDGE;
        if (free <= HEMMED_FREE_SQUARES) {
            set |= SH_KEEPKINGONTHEEDGE;
            // A king without a free square is bet not to move at all; with one or
            // two, only to stay on the edge.
            ctx.m_bKingMoveStrict = free == 0;
            ctx.m_bStrictEdgeAllowed = 1;
        } else {
            set |= SH_KEEPKINGWITHINEXTEDGE;
        }
    } else if (band == 1) {
        type |= POSITION_KING_IN_BAND;
        set |= SH_KEEPKINGWITHINEXTEDGE;
    } else if (free <= HEMMED_FREE_SQUARES) {
        set |= SH_ASSERTBLACKKINGSURROUNDED;
    }
    if (!(set & SH_KEEPKINGONTHEEDGE)) ctx.m_bKingMoveStrict = 0;
    root.m_uHeuristics = set;
    return type;
}

} // namespace zorvane
