#include "engine/move_ordering.h"

#include "core/attacks.h"
#include "core/make_move.h"
#include "core/thread_context.h"
#include "engine/heuristic_bits.h"
#include "engine/heuristic_tests.h"
#include "engine/mate_in_one.h"
#include "engine/repetition.h"
#include "engine/solve_job.h"
#include "problems/sort_indication.h"

#include <algorithm>

namespace zorvane {

namespace {

// White's rank: each flight the black king keeps costs this much, or more when
// White has too little material to drive the king without taking squares.
constexpr int FLIGHT_WEIGHT = 4;
constexpr int FLIGHT_WEIGHT_THIN_MATERIAL = 16;
constexpr int CHECK_BONUS = 6;
constexpr int FLIGHT_TAKEN_BONUS = 2;
constexpr int CAPTURE_BONUS = 3;
// A king walking away from the black king is rarely the point of a problem.
constexpr int IDLE_KING_PENALTY = 6;
// A man put where a black man takes it for nothing is rarely the key.
constexpr int HANGING_PENALTY = 3;
// Black's qualities: a check, a capture by the value of the man, a promotion.
// (Counting a king move's flights cost a sixth of the time on a #5 and ordered
// the replies no better.)
constexpr int BLACK_CHECK_KEY = -60;
constexpr int BLACK_CAPTURE_STEP = -8;
constexpr int BLACK_PROMOTION_KEY = -40;
// The reply that refuted last time at this depth goes before every quiet
// reply, but after checks and most captures: put first outright, it cost twice
// the nodes on the #5s, since a check or a capture restricts White far more.
constexpr int STRONG_REPLY_KEY = -15;
// Another reply of the man that refuted last time: nearly as good a guess
// (measured over the benchmark list; -5 and -20 both cost more nodes).
constexpr int STRONG_REPLY_BONUS = -14;
// Taking the man that White has just moved answers most of its ideas.
constexpr int BLACK_RECAPTURE_KEY = -20;
// A reply that brings back the position of four plies ago, when that is not
// pruned outright: tried early, since it shows White's line going round.
constexpr int NEAR_REPETITION_KEY = -10;
// Black's last move gives White a target square: a rook move to the file
// beside it is worth this rank at most.
constexpr int ROOK_BESIDE_TARGET_RANK = 8;
// The second sort: lists with at least this many moves, the front this long.
constexpr int SECOND_SORT_MIN_MOVES = 16;
constexpr int SECOND_SORT_FRONT = 10;
// Its weights: each attacked square of the king's field, a threat of mate.
constexpr int FIELD_ATTACK_WEIGHT = 4;
constexpr int MATE_THREAT_WEIGHT = 8;
constexpr int FINE_KEY_MIN = -127;
constexpr int FINE_KEY_MAX = 125;

inline uint8_t& key(TMove& move) {
    return move.enPassant;
}
inline int8_t blackKey(const TMove& move) {
    return static_cast<int8_t>(move.enPassant);
}
// The first move of a sorted list that the second sort leaves in place: one
// that an indication named or that has the best rank there is (in practice a
// check that leaves the king no flight).
constexpr uint8_t STRONG_FIRST_KEY = 1;
inline bool strongFirst(const TMove& move) {
    return move.enPassant <= STRONG_FIRST_KEY;
}

int manValue(uint8_t man) {
    switch (man & KIND_MASK) {
    case KIND_QUEEN:
        return 9;
    case KIND_ROOK:
        return 5;
    case KIND_BISHOP:
    case KIND_KNIGHT:
        return 3;
    case KIND_PAWN:
        return 1;
    default:
        return 0;
    }
}

int kingDistance(int a, int b) {
    return std::max(absInt(colOf(a) - colOf(b)), absInt(rowOf(a) - rowOf(b)));
}

// Insertion sort by a key: lists are short, and it neither allocates nor
// reorders equal keys, so node counts do not depend on the library.
template <class Less> void sortByKey(TMove* moves, int count, Less less) {
    for (int i = 1; i < count; ++i) {
        const TMove move = moves[i];
        int j = i;
        for (; j > 0 && less(move, moves[j - 1]); --j) moves[j] = moves[j - 1];
        moves[j] = move;
    }
}

// The White move number of `position` (1 at the root of the stipulation).
int whiteMoveNumber(const TChessboard& position) {
    return (position.m_shPliesTotal - position.m_shPliesLeft) / 2 + 1;
}

// Whether a black man takes the man on `square` and nothing white guards it.
bool hanging(TChessboard& child, int square) {
    const uint8_t man = child.m_aSquares[square];
    if ((man & KIND_MASK) == KIND_KING || (man & KIND_MASK) == KIND_PAWN) return false;
    if (!IsAttackedByBlack(child, colOf(square), rowOf(square))) return false;
    return !IsAttackedByWhite(child, colOf(square), rowOf(square));
}

// Rank of one White move (lower first), the child already made.
int rankWhiteMove(const TChessboard& position, const TMove& move, TChessboard& child, int flightsBefore) {
    const int flights = CountBlackKingFlights(child);
    const int pieces = position.m_nWhiteQueens + position.m_nWhiteRooks + position.m_nWhiteBishops +
                       position.m_nWhiteKnights;
    int rank = 1 + flights * (pieces < 2 ? FLIGHT_WEIGHT_THIN_MATERIAL : FLIGHT_WEIGHT);
    if (child.m_cBlackChecker >= 0) rank -= CHECK_BONUS;
    if (flights < flightsBefore) rank -= FLIGHT_TAKEN_BONUS * (flightsBefore - flights);
    const bool capture = position.m_aSquares[move.to] != 0 || child.m_LastMove.enPassant;
    if (capture) rank -= CAPTURE_BONUS;
    const uint8_t mover = position.m_aSquares[move.from];
    // The square of Black's last move is the target: taking there answers his
    // threat at once. A pawn that has just moved is a runner: a rook beside
    // its file takes it from the side, and near its promotion a quiet move
    // that lands behind it is hopeless.
    if (position.m_pParent && !position.m_LastMove.isNull()) {
        const int target = position.m_LastMove.to;
        const bool runner = position.m_aSquares[target] == BP;
        if (move.to == target) {
            rank /= 2;
        } else if (runner && (mover & KIND_MASK) == KIND_ROOK &&
                   absInt(colOf(move.to) - colOf(target)) == 1) {
            rank = std::min(rank, ROOK_BESIDE_TARGET_RANK);
        } else if (runner && rowOf(target) <= 2 && rowOf(move.to) > rowOf(target) &&
                   child.m_cBlackChecker < 0 && !capture) {
            // 244 plus the rows it lands above the pawn, capped: the last rank.
            rank = WHITE_KEY_MAX_RANK;
        }
    }
    const int blackKing = position.blackKing();
    if ((mover & KIND_MASK) == KIND_KING && child.m_cBlackChecker < 0 &&
        kingDistance(move.to, blackKing) > kingDistance(move.from, blackKing))
        rank += IDLE_KING_PENALTY;
    if (child.m_cBlackChecker < 0 && hanging(child, move.to)) rank += HANGING_PENALTY;
    if ((mover & KIND_MASK) == KIND_KNIGHT)
        rank += kingDistance(move.to, blackKing) - kingDistance(move.from, blackKing);
    return std::clamp(rank, 1, int{WHITE_KEY_MAX_RANK});
}

// How far a queen on `square` stands from the corner nearest the black king:
// a queen that goes towards that corner usually drives the king into it.
int cornerDistance(int square, int blackKing) {
    const int cornerCol = colOf(blackKing) < 4 ? 0 : 7;
    const int cornerRow = rowOf(blackKing) < 4 ? 0 : 7;
    return absInt(colOf(square) - cornerCol) + absInt(rowOf(square) - cornerRow);
}

// Whether `move` is a stored key of the problem and the black king stands
// where he stood in the diagram: then the move is tried first.
bool storedKey(const SolveJob* job, const TChessboard& position, const TMove& move) {
    if (!job) return false;
    const TChessProblem& problem = job->problem;
    if (problem.expectedAnswers.empty() || problem.startPosition.blackKing() != position.blackKing())
        return false;
    for (const TMove& key : problem.expectedAnswers)
        if (key.from == move.from && key.to == move.to) return true;
    return false;
}

// The finer key of the second sort, signed, lower first: the squares of the
// black king's field that White holds after the move and whether it threatens
// mate, taken off the first key.
int fineKey(const TChessboard& position, const TMove& move, uint8_t firstKey) {
    TChessboard child;
    CopyToChild(child, position);
    TMove played = move;
    played.enPassant = 0;
    if (!MakeWhiteMove(child, played)) return FINE_KEY_MAX;
    int attacked = 0;
    const int kingCol = child.m_cBlackKingCol, kingRow = child.m_cBlackKingRow;
    for (int dc = -1; dc <= 1; ++dc)
        for (int dr = -1; dr <= 1; ++dr) {
            const int col = kingCol + dc, row = kingRow + dr;
            if (col >= 0 && col < 8 && row >= 0 && row < 8 && IsAttackedByWhite(child, col, row)) ++attacked;
        }
    int threats = 0;
    if (child.m_cBlackChecker < 0 && child.m_pThread) {
        // Black passes: a mate at once is what the move threatens.
        TChessboard passed;
        CopyToChild(passed, child);
        passed.m_LastMove = TMove{};
        passed.m_shPliesLeft = 1;
        if (FindMateInOne(passed)) ++threats;
    }
    const int score = firstKey - FIELD_ATTACK_WEIGHT * attacked - MATE_THREAT_WEIGHT * threats;
    return std::clamp(score, FINE_KEY_MIN, FINE_KEY_MAX);
}
} // namespace

int SkipWorstWhiteMoves(int count) {
    if (count <= 24) return count;
    return std::max(25, count * 4 / 5);
}

void MarkExpectedSortMove(std::vector<TMove>& expected, const TMove& first) {
    for (TMove& entry : expected) {
        if (entry.from >= EXPECTED_MOVE_MET && entry.to >= EXPECTED_MOVE_MET) continue;
        if (entry == first) {
            entry.from = static_cast<uint8_t>(entry.from + EXPECTED_MOVE_MET);
            entry.to = static_cast<uint8_t>(entry.to + EXPECTED_MOVE_MET);
        }
        return;
    }
}

int SortWhiteMoves(const TChessboard& position, TMove* moves, int count, bool root,
                   WhiteSortOutcome& outcome) {
    SolveJob* job = position.m_pThread ? position.m_pThread->m_pJob : nullptr;
    const int moveNumber = whiteMoveNumber(position);
    const SortIndications* indications = job && SortIndicationsApply(job->activeSortIndications, moveNumber)
                                             ? &job->activeSortIndications
                                             : nullptr;
    TChessboard scratch = position;
    const int flightsBefore = CountBlackKingFlights(scratch);
    int removed = 0;
    // 4. A key per move.
    for (int i = 0; i < count; ++i) {
        TChessboard child;
        CopyToChild(child, position);
        TMove played = moves[i];
        if (!MakeWhiteMove(child, played)) {
            key(moves[i]) = root ? WHITE_KEY_ROOT_REMOVED : WHITE_KEY_REMOVED;
            if (!root) ++removed;
            continue;
        }
        if (indications) {
            if (const SortIndication* hit = FindMatchingIndication(*indications, moveNumber, child);
                hit && EarlierIndicationsMatch(*indications, moveNumber, child)) {
                if (hit->negated) {
                    key(moves[i]) = WHITE_KEY_SENT_BACK;
                } else {
                    key(moves[i]) = WHITE_KEY_INDICATED;
                    if (moveNumber <= 2) {
                        moves[i].promotion |= MOVE_MARK_INDICATED;
                        ++outcome.indicated;
                    }
                }
                continue;
            }
        }
        if (storedKey(job, position, played)) {
            key(moves[i]) = WHITE_KEY_INDICATED;
            continue;
        }
        // A mate at once needs no search at all.
        if (child.m_cBlackChecker >= 0 && !BlackHasLegalMove(child) && !outcome.mateFound) {
            outcome.mateFound = true;
            outcome.mate = played;
        }
        key(moves[i]) = static_cast<uint8_t>(rankWhiteMove(position, played, child, flightsBefore));
    }
    // 6. Sort by the first key; removed moves form the tail.
    sortByKey(moves, count, [](const TMove& a, const TMove& b) { return a.enPassant < b.enPassant; });
    const int generated = count;
    count -= removed;
    // Two queen moves from one square with one key: the one nearer the black
    // king's corner first.
    if (count > 1 && moves[0].from == moves[1].from && key(moves[0]) == key(moves[1]) &&
        (position.m_aSquares[moves[0].from] & KIND_MASK) == KIND_QUEEN &&
        cornerDistance(moves[1].to, position.blackKing()) < cornerDistance(moves[0].to, position.blackKing()))
        std::swap(moves[0], moves[1]);
    // 7. The worst moves may go under the heuristic that allows it.
    if (position.m_uHeuristics & SH_SKIPWORSTWHITEMOVES) count = SkipWorstWhiteMoves(count);
    // 8. A long list gets a finer order at its front, unless the list lost few
    // moves and its first move is already a strong one.
    if (count >= SECOND_SORT_MIN_MOVES && !(count * 10 >= generated * 7 && strongFirst(moves[0]))) {
        int front = 0;
        for (; front < std::min(count, SECOND_SORT_FRONT) && key(moves[front]) <= WHITE_KEY_MAX_RANK; ++front)
            key(moves[front]) = static_cast<uint8_t>(
                static_cast<int8_t>(key(moves[front]) == WHITE_KEY_INDICATED
                                        ? FINE_KEY_MIN
                                        : fineKey(position, moves[front], key(moves[front]))));
        sortByKey(moves, front, [](const TMove& a, const TMove& b) { return blackKey(a) < blackKey(b); });
    }
    if (root && job && count > 0 && (job->problem.flags & HasExpectedSortWhiteMoves))
        MarkExpectedSortMove(job->expectedSortWhiteMoves, moves[0]);
    return count;
}

template <bool Bets>
int SortBlackMoves(const TChessboard& position, TMove* moves, int count, const TMove& strongReply) {
    int illegal = 0;
    const int whiteKing = position.whiteKing();
    TThreadContext* ctx = position.m_pThread;
    const SolveJob* job = ctx ? ctx->m_pJob : nullptr;
    const int limit = job ? job->m_shRepetitionLimit : 0;
    const int n = position.m_shPliesLeft;
    // The plies left of a position that a reply repeats and that settles the
    // node; answered only after every reply was made, since one that beats
    // White at once says more.
    int repeated = 0;
    for (int i = 0; i < count; ++i) {
        TChessboard child;
        CopyToChild(child, position);
        TMove played = moves[i];
        const int made = MakeBlackMove(child, played, false);
        if (made == BLACK_MOVE_ILLEGAL) {
            moves[i].enPassant = static_cast<uint8_t>(BLACK_KEY_ILLEGAL);
            ++illegal;
            continue;
        }
        // 1. A reply that beats White at once is all the node needs.
        if (made == BLACK_MOVE_BEATS_WHITE) {
            moves[0] = moves[i];
            moves[0].enPassant = 0;
            return 1;
        }
        // 2. The bets of the set in force and the impossibility tail, on every
        // reply before any is searched.
        if constexpr (Bets) {
            if (n - 1 >= HEURISTIC_TESTS_MIN_PLIES) {
                const uint16_t before = child.m_wFlags2;
                const int answer = position.m_bPass == 1 && child.m_uHeuristics
                                       ? IsMateDoubtfulAfterBlackMove(child, *ctx)
                                       : ImpossibilityAfterBlackMove(child, *ctx);
                if (answer == HEURISTIC_DOUBTFUL) return BLACK_SORT_DOUBTFUL;
                if (answer == HEURISTIC_IMPOSSIBLE) return BLACK_SORT_NO_MATE;
                if ((child.m_wFlags2 ^ before) & FLAGS2_BAND_CHECK_DEFERRED)
                    moves[i].promotion |= MOVE_MARK_DEFERS_BAND_CHECK;
            }
        }
        // 2b. A reply that repeats a position of the line.
        int score = 0;
        if (limit) {
            if (const int first = RepetitionOf(child, limit)) {
                if (job->m_bSafeMode && RepetitionSettles(*job, *ctx, n, child)) {
                    repeated = std::max(repeated, first);
                } else if (RepeatedTwice(child)) {
                    // The position stood further back as well: the line goes round.
                    moves[i].enPassant = static_cast<uint8_t>(BLACK_KEY_FIRST);
                    continue;
                } else {
                    score += NEAR_REPETITION_KEY;
                }
            }
        }
        // 3. The reply's qualities.
        if (child.m_cWhiteChecker >= 0) score += BLACK_CHECK_KEY;
        if (const uint8_t taken = position.m_aSquares[moves[i].to]) {
            score += BLACK_CAPTURE_STEP * manValue(taken);
            if (moves[i].to == position.m_LastMove.to) score += BLACK_RECAPTURE_KEY;
        }
        if (moves[i].promotion & KIND_MASK) score += BLACK_PROMOTION_KEY;
        // Men that come near the white king tend to spoil White's plans.
        score -= 7 - kingDistance(moves[i].to, whiteKing);
        if (score < -123)
            score = BLACK_KEY_FIRST;
        else if (moves[i] == strongReply)
            score += STRONG_REPLY_KEY;
        else if (strongReply.from == moves[i].from)
            score += STRONG_REPLY_BONUS;
        moves[i].enPassant = static_cast<uint8_t>(static_cast<int8_t>(std::clamp(score, -128, 126)));
    }
    if (repeated) {
        ctx->m_aRepetition[n] = std::max<uint16_t>(ctx->m_aRepetition[n], static_cast<uint16_t>(repeated));
        return BLACK_SORT_REPETITION;
    }
    // 4. Sort by signed key and count off the illegal tail.
    sortByKey(moves, count, [](const TMove& a, const TMove& b) { return blackKey(a) < blackKey(b); });
    return count - illegal;
}

template int SortBlackMoves<false>(const TChessboard&, TMove*, int, const TMove&);
template int SortBlackMoves<true>(const TChessboard&, TMove*, int, const TMove&);

} // namespace zorvane
