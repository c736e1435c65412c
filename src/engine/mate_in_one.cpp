#include "engine/mate_in_one.h"

#include "core/make_move.h"
#include "core/movegen.h"
#include "core/square_sets.h"
#include "core/thread_context.h"

namespace zorvane {

namespace {

// The White man nearest to the black king on a ray screens him when a White
// slider of that ray's kind stands next behind it: moving it may uncover check.
template <int Direction> inline void addScreen(const BoardSets& sets, int king, SquareSet& screens) {
    const SquareSet men = RAYS[Direction][king] & sets.occupied;
    if (!men) return;
    const int first = NearestOnRay<Direction>(men);
    if (sets.black & SquareBit(first)) return;
    const SquareSet beyond = RAYS[Direction][first] & sets.occupied;
    if (!beyond) return;
    constexpr bool diagonal = Direction >= RAY_UP_RIGHT;
    const SquareSet sliders = diagonal ? sets.whiteDiagonal : sets.whiteLine;
    if (sliders & SquareBit(NearestOnRay<Direction>(beyond))) screens |= SquareBit(first);
}

SquareSet kingScreens(const BoardSets& sets, int king) {
    SquareSet screens = 0;
    addScreen<RAY_UP>(sets, king, screens);
    addScreen<RAY_DOWN>(sets, king, screens);
    addScreen<RAY_RIGHT>(sets, king, screens);
    addScreen<RAY_LEFT>(sets, king, screens);
    addScreen<RAY_UP_RIGHT>(sets, king, screens);
    addScreen<RAY_UP_LEFT>(sets, king, screens);
    addScreen<RAY_DOWN_RIGHT>(sets, king, screens);
    addScreen<RAY_DOWN_LEFT>(sets, king, screens);
    return screens;
}

// Judges White's moves in one position by sets of squares, before any is
// played: after a mate the black king stands in check and every square beside
// him is his own man's or attacked.
class MateFilter {
public:
    MateFilter(const TChessboard& b, const BoardSets& sets) : m_board(b), m_sets(sets), m_king(b.blackKing()) {}

    // Castling and en passant move a second man; the sets do not follow them.
    bool Judges(const TMove& m) const {
        const int kind = m_board.m_aSquares[m.from] & KIND_MASK;
        if (kind == KIND_KING) return absInt(colOf(m.to) - colOf(m.from)) < 2;
        return kind != KIND_PAWN || !((m.from ^ m.to) & 7) || m_board.m_aSquares[m.to];
    }

    // For a move that it judges: check, and no flight for the king.
    bool ChecksWithoutFlight(const TMove& m) const {
        const int kind = m_board.m_aSquares[m.from] & KIND_MASK;
        const int newKind = (m.promotion & KIND_MASK) ? (m.promotion & KIND_MASK) : kind;
        const BoardSets after = m_sets.AfterWhiteMove(m.from, m.to, kind, newKind);
        if (!after.WhiteAttacks(m_king, after.occupied)) return false;
        // The king steps off his square, so a checking line runs on through it.
        const SquareSet occupiedWithoutKing = after.occupied & ~SquareBit(m_king);
        for (SquareSet squares = KING_REACH[m_king] & ~after.black; squares; squares &= squares - 1)
            if (!after.WhiteAttacks(__builtin_ctzll(squares), occupiedWithoutKing)) return false;
        return true;
    }

private:
    const TChessboard& m_board;
    const BoardSets& m_sets;
    const int m_king;
};

// Whether a man that does not screen the king can check him at all: a slider
// or knight with no square in reach from which it would aim at him has no
// candidate, and its moves need not be listed.
inline bool mayAim(const BoardSets& sets, uint8_t man, int square, int king) {
    const SquareSet open = ~(sets.occupied & ~sets.black);
    switch (man) {
    case WN: return KNIGHT_REACH[square] & KNIGHT_REACH[king] & open;
    case WB: return DiagonalReach(square, sets.occupied) & DIAGONALS[king] & open;
    case WR: return LineReach(square, sets.occupied) & LINES[king] & open;
    case WQ:
        return (LineReach(square, sets.occupied) | DiagonalReach(square, sets.occupied)) &
               (LINES[king] | DIAGONALS[king]) & open;
    default: return true;
    }
}

} // namespace

bool MatesAtOnce(const TChessboard& position, TChessboard& child, TMove& move) {
    CopyToChild(child, position);
    return MakeWhiteMove(child, move) && child.m_cBlackChecker >= 0 && !BlackHasLegalMove(child);
}

bool FindMateInOne(TChessboard& b, TMove* mateMove) {
    TChessboard& child = b.m_pThread->m_aBoards[b.m_shPliesLeft];
    const BoardSets sets = BoardSets::Of(b);
    MateFilter filter(b, sets);
    MoveBuffer moves;
    // A move that the filter passes still has to be legal, and no other black
    // man may answer its check; the king's flights are known already.
    auto mates = [&](TMove& move) {
        if (!filter.Judges(move)) {
            if (!MatesAtOnce(b, child, move)) return false;
        } else {
            if (!filter.ChecksWithoutFlight(move)) return false;
            CopyToChild(child, b);
            if (!MakeWhiteMove(child, move) || child.m_cBlackChecker < 0 || BlackManAnswersCheck(child)) return false;
        }
        if (mateMove) *mateMove = move;
        return true;
    };
    if (b.m_cWhiteChecker >= 0) {
        const int count = GenerateWhiteEvasions(b, moves);
        for (int i = 0; i < count; ++i)
            if (mates(moves[i])) return true;
        return false;
    }
    // Only the moves that may give check are tried, man by man from a1.
    const int king = b.blackKing();
    const SquareSet screens = kingScreens(sets, king);
    for (SquareSet white = sets.occupied & ~sets.black; white; white &= white - 1) {
        const int square = __builtin_ctzll(white);
        const bool screening = (screens >> square) & 1;
        if (!screening && !mayAim(sets, b.m_aSquares[square], square, king)) continue;
        const int count = GenerateWhiteCheckCandidates(b, square, screening, moves);
        for (int i = 0; i < count; ++i)
            if (mates(moves[i])) return true;
    }
    return false;
}

} // namespace zorvane
