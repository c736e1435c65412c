#include "engine/heuristics_choice.h"

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
    const int free = CountFreeKingSquares(root);
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
