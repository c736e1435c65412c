#include "engine/mate_in_one.h"

#include "core/make_move.h"
#include "core/knight_table.h"
#include "core/movegen.h"
#include "core/rays.h"
#include "core/square_sets.h"
#include "core/thread_context.h"

namespace zorvane {

namespace {

// The man nearest to the king on a ray, when it is one of `own` and a slider
// of `sliders` (of that ray's kind) stands next behind it: a White man there
// screens the black king, a black man is pinned to him.
template <int Direction>
inline void addShielded(int king, SquareSet occupied, SquareSet own, SquareSet diagonal, SquareSet line,
                        SquareSet& shields) {
    const SquareSet sliders = Direction >= RAY_UP_RIGHT ? diagonal : line;
    if (!(RAYS[Direction][king] & sliders)) return;
    const int first = NearestOnRay<Direction>(RAYS[Direction][king] & occupied);
    if (!(own & SquareBit(first))) return;
    const SquareSet beyond = RAYS[Direction][first] & occupied;
    if (beyond && (sliders & SquareBit(NearestOnRay<Direction>(beyond)))) shields |= SquareBit(first);
}

SquareSet shieldsOfKing(int king, const BoardSets& sets, SquareSet own) {
    SquareSet shields = 0;
    const SquareSet d = sets.whiteDiagonal, l = sets.whiteLine, o = sets.occupied;
    addShielded<RAY_UP>(king, o, own, d, l, shields);
    addShielded<RAY_DOWN>(king, o, own, d, l, shields);
    addShielded<RAY_RIGHT>(king, o, own, d, l, shields);
    addShielded<RAY_LEFT>(king, o, own, d, l, shields);
    addShielded<RAY_UP_RIGHT>(king, o, own, d, l, shields);
    addShielded<RAY_UP_LEFT>(king, o, own, d, l, shields);
    addShielded<RAY_DOWN_RIGHT>(king, o, own, d, l, shields);
    addShielded<RAY_DOWN_LEFT>(king, o, own, d, l, shields);
    return shields;
}

// The squares strictly between two squares of one line; none if they share none.
inline SquareSet between(int from, int to) {
    int direction;
    switch (LineStep(from, to)) {
    case 8:
        direction = RAY_UP;
        break;
    case -8:
        direction = RAY_DOWN;
        break;
    case 1:
        direction = RAY_RIGHT;
        break;
    case -1:
        direction = RAY_LEFT;
        break;
    case 9:
        direction = RAY_UP_RIGHT;
        break;
    case 7:
        direction = RAY_UP_LEFT;
        break;
    case -7:
        direction = RAY_DOWN_RIGHT;
        break;
    case -9:
        direction = RAY_DOWN_LEFT;
        break;
    default:
        return 0;
    }
    return RAYS[direction][from] & ~RAYS[direction][to] & ~SquareBit(to);
}

// The black men other than the king that could move to the empty `square`.
inline SquareSet blackMenReaching(const BlackMen& black, int square, SquareSet occupied) {
    SquareSet men = (KNIGHT_REACH[square] & black.knights) |
                    SlidersReaching(square, occupied, black.line, black.diagonal);
    if (square < 56) {
        men |= black.freePawns & SquareBit(square + 8);
        if (rowOf(square) == 4 && !(occupied & SquareBit(square + 8)))
            men |= black.freePawns & SquareBit(square + 16);
    }
    return men;
}

// After a White move that checks the black king and leaves him no square:
// whether the move was legal and no other black man takes the checker or
// steps between. En passant is not looked at: the caller leaves a pawn's
// double step to the maker. `knownCheckers`, when not empty, are the men that
// give the check, as the caller knows them.
bool unanswered(const BoardSets& after, const BlackMen& black, int king, int whiteKing,
                SquareSet knownCheckers) {
    if (black.Attack(whiteKing, after.occupied)) return false;
    const SquareSet checkers = knownCheckers ? knownCheckers : after.WhiteAttackers(king, after.occupied);
    if (!checkers) return false;
    if (checkers & (checkers - 1)) return true;
    const int checker = __builtin_ctzll(checkers);
    SquareSet answers = (KNIGHT_REACH[checker] & black.knights) |
                        (BLACK_PAWN_ATTACKERS[checker] & black.pawns) |
                        SlidersReaching(checker, after.occupied, black.line, black.diagonal);
    for (SquareSet squares = between(checker, king); squares && !answers; squares &= squares - 1)
        answers |= blackMenReaching(black, __builtin_ctzll(squares), after.occupied);
    // A pinned man stays on its line through the king, which crosses the line
    // of the check only on the king's square: it never answers.
    return !answers || !(answers & ~shieldsOfKing(king, after, after.black));
}

// Judges White's moves in one position by sets of squares, before any is
// played: after a mate the black king stands in check and every square beside
// him is his own man's or attacked.
class MateFilter {
  public:
    MateFilter(const TChessboard& b, const BoardSets& sets)
        : m_board(b), m_sets(sets), m_king(b.blackKing()) {}

    // Castling and en passant move a second man; the sets do not follow them.
    bool Judges(const TMove& m) const {
        const int kind = m_board.m_aSquares[m.from] & KIND_MASK;
        if (kind == KIND_KING) return absInt(colOf(m.to) - colOf(m.from)) < 2;
        return kind != KIND_PAWN || !((m.from ^ m.to) & 7) || m_board.m_aSquares[m.to];
    }

    // For a move that it judges: whether it may mate. It must check, leave
    // the king no square, be legal, and leave no other black man an answer.
    // What the caller knows already is not looked at again: that the move
    // checks, and which squares beside the king it takes.
    bool MayMate(const TMove& m, bool checks, SquareSet taken) {
        const int kind = m_board.m_aSquares[m.from] & KIND_MASK;
        const int newKind = (m.promotion & KIND_MASK) ? (m.promotion & KIND_MASK) : kind;
        const BoardSets after = m_sets.AfterWhiteMove(m.from, m.to, kind, newKind);
        if (!checks && !after.WhiteAttacks(m_king, after.occupied)) return false;
        // The king steps off his square, so a checking line runs on through it.
        const SquareSet occupiedWithoutKing = after.occupied & ~SquareBit(m_king);
        for (SquareSet squares = KING_REACH[m_king] & ~after.black & ~taken; squares; squares &= squares - 1)
            if (!after.WhiteAttacks(__builtin_ctzll(squares), occupiedWithoutKing)) return false;
        // A pawn's double step may be taken en passant: the maker judges it.
        if (kind == KIND_PAWN && m.to == m.from + 16) return true;
        if (!m_blackKnown) {
            m_black = BlackMen::Of(m_board);
            m_blackKnown = true;
        }
        const int whiteKing = kind == KIND_KING ? m.to : m_board.whiteKing();
        // A listed move checks with the moved man alone: its man screens nothing.
        return unanswered(after, m_black.Without(m.to), m_king, whiteKing, checks ? SquareBit(m.to) : 0);
    }

  private:
    const TChessboard& m_board;
    const BoardSets& m_sets;
    const int m_king;
    BlackMen m_black;
    bool m_blackKnown = false;
};

inline bool onOneLine(int a, int b) {
    const int dc = absInt(colOf(a) - colOf(b)), dr = absInt(rowOf(a) - rowOf(b));
    return dc == 0 || dr == 0 || dc == dr;
}

// The squares from which a man of `kind` (knight, bishop, rook, queen) would
// attack `square`, with `men` in the way.
inline SquareSet attackingSquares(int kind, int square, SquareSet men) {
    switch (kind) {
    case KIND_KNIGHT:
        return KNIGHT_REACH[square];
    case KIND_BISHOP:
        return DiagonalReach(square, men);
    case KIND_ROOK:
        return LineReach(square, men);
    default:
        return LineReach(square, men) | DiagonalReach(square, men);
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

namespace {

// Each White move that mates at once goes to `onMate`, man by man from a1,
// until `onMate` says enough. Whether it said so is the answer.
template <class OnMate> bool forEachMateInOne(TChessboard& b, OnMate&& onMate) {
    TChessboard& child = b.m_pThread->m_aBoards[b.m_shPliesLeft];
    const BoardSets sets = BoardSets::Of(b);
    MateFilter filter(b, sets);
    MoveBuffer moves;
    // The filter lets through only what may mate; the maker and the mate test
    // have the last word.
    auto mates = [&](TMove& move, bool checks, SquareSet taken) {
        if (!filter.Judges(move)) {
            if (!MatesAtOnce(b, child, move)) return false;
        } else {
            if (!filter.MayMate(move, checks, taken)) return false;
            CopyToChild(child, b);
            if (!MakeWhiteMove(child, move) || child.m_cBlackChecker < 0 || BlackManAnswersCheck(child))
                return false;
        }
        return onMate(move);
    };
    if (b.m_cWhiteChecker >= 0) {
        const int count = GenerateWhiteEvasions(b, moves);
        for (int i = 0; i < count; ++i)
            if (mates(moves[i], false, 0)) return true;
        return false;
    }
    // Only the moves that may mate are tried, man by man from a1.
    const int king = b.blackKing();
    const SquareSet screens = shieldsOfKing(king, sets, sets.occupied & ~sets.black);
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

} // namespace

bool FindMateInOne(TChessboard& b, TMove* mateMove) {
    return forEachMateInOne(b, [mateMove](const TMove& move) {
        if (mateMove) *mateMove = move;
        return true;
    });
}

int AllMatesInOne(TChessboard& b, TMove* out) {
    int count = 0;
    forEachMateInOne(b, [&](const TMove& move) {
        out[count++] = move;
        return false;
    });
    return count;
}

} // namespace zorvane
