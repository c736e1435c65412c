#include "engine/mate_in_one.h"

#include "core/make_move.h"
#include "core/knight_table.h"
#include "core/movegen.h"
#include "core/square_sets.h"
#include "core/thread_context.h"

namespace zorvane {

namespace {

// The White man nearest to the black king on a ray screens him when a White
// slider of that ray's kind stands next behind it: moving it may uncover check.
template <int Direction> inline void addScreen(const BoardSets& sets, int king, SquareSet& screens) {
    constexpr bool diagonal = Direction >= RAY_UP_RIGHT;
    const SquareSet sliders = diagonal ? sets.whiteDiagonal : sets.whiteLine;
    if (!(RAYS[Direction][king] & sliders)) return;
    const SquareSet men = RAYS[Direction][king] & sets.occupied;
    const int first = NearestOnRay<Direction>(men);
    if (sets.black & SquareBit(first)) return;
    const SquareSet beyond = RAYS[Direction][first] & sets.occupied;
    if (beyond && (sliders & SquareBit(NearestOnRay<Direction>(beyond)))) screens |= SquareBit(first);
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

    // For a move that it judges: check, and no flight for the king. What the
    // caller knows already is not looked at again: that the move checks, and
    // which squares beside the king it takes.
    bool ChecksWithoutFlight(const TMove& m, bool checks, SquareSet taken) const {
        const int kind = m_board.m_aSquares[m.from] & KIND_MASK;
        const int newKind = (m.promotion & KIND_MASK) ? (m.promotion & KIND_MASK) : kind;
        const BoardSets after = m_sets.AfterWhiteMove(m.from, m.to, kind, newKind);
        if (!checks && !after.WhiteAttacks(m_king, after.occupied)) return false;
        // The king steps off his square, so a checking line runs on through it.
        const SquareSet occupiedWithoutKing = after.occupied & ~SquareBit(m_king);
        for (SquareSet squares = KING_REACH[m_king] & ~after.black & ~taken; squares; squares &= squares - 1)
            if (!after.WhiteAttacks(__builtin_ctzll(squares), occupiedWithoutKing)) return false;
        return true;
    }

private:
    const TChessboard& m_board;
    const BoardSets& m_sets;
    const int m_king;
};

inline bool onOneLine(int a, int b) {
    const int dc = absInt(colOf(a) - colOf(b)), dr = absInt(rowOf(a) - rowOf(b));
    return dc == 0 || dr == 0 || dc == dr;
}

// The squares from which a man of `kind` (knight, bishop, rook, queen) would
// attack `square`, with `men` in the way.
inline SquareSet attackingSquares(int kind, int square, SquareSet men) {
    switch (kind) {
    case KIND_KNIGHT: return KNIGHT_REACH[square];
    case KIND_BISHOP: return DiagonalReach(square, men);
    case KIND_ROOK: return LineReach(square, men);
    default: return LineReach(square, men) | DiagonalReach(square, men);
    }
}

// The squares a knight or slider of White on `from` may go to, in no order.
inline SquareSet reachOf(int kind, int from, const BoardSets& sets) {
    return attackingSquares(kind, from, sets.occupied) & ~(sets.occupied & ~sets.black);
}

// The targets of one ray of a slider, near to far, as moves from `from`.
template <int Direction> inline void addRayTargets(int from, SquareSet targets, TMove* out, int& count) {
    for (SquareSet ray = targets & RAYS[Direction][from]; ray;) {
        const int to = NearestOnRay<Direction>(ray);
        ray &= ~SquareBit(to);
        out[count++] = TMove{static_cast<uint8_t>(from), static_cast<uint8_t>(to), 0, 0};
    }
}

// Moves to `targets` in the base order of the generator: the rook's rays, then
// the bishop's, each near to far; a knight's jumps in the order of its table.
int movesToTargets(int kind, int from, SquareSet targets, TMove* out) {
    int count = 0;
    if (kind == KIND_KNIGHT) {
        const int8_t* jumps = KnightJumps(from);
        for (int i = 0, n = KnightJumpCount(from); i < n; ++i)
            if (targets & SquareBit(from + jumps[i]))
                out[count++] = TMove{static_cast<uint8_t>(from), static_cast<uint8_t>(from + jumps[i]), 0, 0};
        return count;
    }
    if (kind & KIND_ROOK) {
        addRayTargets<RAY_UP>(from, targets, out, count);
        addRayTargets<RAY_DOWN>(from, targets, out, count);
        addRayTargets<RAY_RIGHT>(from, targets, out, count);
        addRayTargets<RAY_LEFT>(from, targets, out, count);
    }
    if (kind & KIND_BISHOP) {
        addRayTargets<RAY_UP_RIGHT>(from, targets, out, count);
        addRayTargets<RAY_UP_LEFT>(from, targets, out, count);
        addRayTargets<RAY_DOWN_RIGHT>(from, targets, out, count);
        addRayTargets<RAY_DOWN_LEFT>(from, targets, out, count);
    }
    return count;
}

// The moves of a knight or slider that does not screen the king and could
// mate: it must check him from its new square, and from there attack every
// square he could flee to now (`flights`), unless a line through the square
// it leaves may open onto that square. The flights that every such move takes
// go to `taken`.
int mateCandidates(const BoardSets& sets, int kind, int from, int king, SquareSet flights, TMove* out,
                   SquareSet& taken) {
    const SquareSet without = sets.occupied & ~SquareBit(from);
    SquareSet targets = reachOf(kind, from, sets) & attackingSquares(kind, king, without);
    // The king leaves his square when he flees, so a line through it runs on.
    const SquareSet withoutKing = without & ~SquareBit(king);
    taken = 0;
    for (SquareSet squares = flights; squares && targets; squares &= squares - 1) {
        const int flight = __builtin_ctzll(squares);
        if (onOneLine(from, flight)) continue;
        targets &= attackingSquares(kind, flight, withoutKing);
        taken |= SquareBit(flight);
    }
    return targets ? movesToTargets(kind, from, targets, out) : 0;
}

// A king that screens nothing checks only by castling, from his first square;
// a pawn only from two or three rows below the king and at most two columns
// off, or by promoting, or by taking en passant (which may open a line).
inline bool mayCheckAtAll(int kind, int square, int king) {
    if (kind == KIND_KING) return square == 4;
    if (kind != KIND_PAWN) return true;
    const int row = rowOf(square), dr = rowOf(king) - row;
    return row == 6 || row == 4 || ((dr == 2 || dr == 3) && absInt(colOf(king) - colOf(square)) <= 2);
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
    auto mates = [&](TMove& move, bool checks, SquareSet taken) {
        if (!filter.Judges(move)) {
            if (!MatesAtOnce(b, child, move)) return false;
        } else {
            if (!filter.ChecksWithoutFlight(move, checks, taken)) return false;
            CopyToChild(child, b);
            if (!MakeWhiteMove(child, move) || child.m_cBlackChecker < 0 || BlackManAnswersCheck(child)) return false;
        }
        if (mateMove) *mateMove = move;
        return true;
    };
    if (b.m_cWhiteChecker >= 0) {
        const int count = GenerateWhiteEvasions(b, moves);
        for (int i = 0; i < count; ++i)
            if (mates(moves[i], false, 0)) return true;
        return false;
    }
    // Only the moves that may mate are tried, man by man from a1.
    const int king = b.blackKing();
    const SquareSet screens = kingScreens(sets, king);
    const SquareSet flights = sets.BlackKingFlights(king);
    for (SquareSet white = sets.occupied & ~sets.black; white; white &= white - 1) {
        const int square = __builtin_ctzll(white);
        const int kind = b.m_aSquares[square] & KIND_MASK;
        const bool screening = (screens >> square) & 1;
        if (!screening && !mayCheckAtAll(kind, square, king)) continue;
        // The candidates of a knight or slider check, and take some flights.
        const bool listed = !screening && kind != KIND_PAWN && kind != KIND_KING;
        SquareSet taken = 0;
        const int count = listed ? mateCandidates(sets, kind, square, king, flights, moves, taken)
                                 : GenerateWhiteCheckCandidates(b, square, screening, moves);
        for (int i = 0; i < count; ++i)
            if (mates(moves[i], listed, taken)) return true;
    }
    return false;
}

} // namespace zorvane
