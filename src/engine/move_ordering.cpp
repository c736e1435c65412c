#include "engine/move_ordering.h"

#include "core/attacks.h"
#include "core/make_move.h"
#include "engine/heuristic_bits.h"
#include "core/thread_context.h"
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

inline uint8_t& key(TMove& move) {
    return move.enPassant;
}
inline int8_t blackKey(const TMove& move) {
    return static_cast<int8_t>(move.enPassant);
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
    // The square of Black's last move: taking there answers his threat at once.
    if (position.m_pParent && !position.m_LastMove.isNull() && move.to == position.m_LastMove.to) rank /= 2;
    const uint8_t mover = position.m_aSquares[move.from];
    const int blackKing = position.blackKing();
    if ((mover & KIND_MASK) == KIND_KING && child.m_cBlackChecker < 0 &&
        kingDistance(move.to, blackKing) > kingDistance(move.from, blackKing))
        rank += IDLE_KING_PENALTY;
    if (child.m_cBlackChecker < 0 && hanging(child, move.to)) rank += HANGING_PENALTY;
    if ((mover & KIND_MASK) == KIND_KNIGHT)
        rank += kingDistance(move.to, blackKing) - kingDistance(move.from, blackKing);
    return std::clamp(rank, 1, int{WHITE_KEY_MAX_RANK});
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
        // A mate at once needs no search at all.
        if (child.m_cBlackChecker >= 0 && !BlackHasLegalMove(child) && !outcome.mateFound) {
            outcome.mateFound = true;
            outcome.mate = played;
        }
        key(moves[i]) = static_cast<uint8_t>(rankWhiteMove(position, played, child, flightsBefore));
    }
    // 6. Sort by the first key; removed moves form the tail.
    sortByKey(moves, count, [](const TMove& a, const TMove& b) { return a.enPassant < b.enPassant; });
    count -= removed;
    // 7. The worst moves may go under the heuristic that allows it.
    if (position.m_uHeuristics & SH_SKIPWORSTWHITEMOVES) count = SkipWorstWhiteMoves(count);
    if (root && job && count > 0 && (job->problem.flags & HasExpectedSortWhiteMoves))
        MarkExpectedSortMove(job->expectedSortWhiteMoves, moves[0]);
    return count;
}

int SortBlackMoves(const TChessboard& position, TMove* moves, int count, const TMove& strongReply) {
    int illegal = 0;
    const int whiteKing = position.whiteKing();
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
        // 3. The reply's qualities.
        int score = 0;
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
    // 4. Sort by signed key and count off the illegal tail.
    sortByKey(moves, count, [](const TMove& a, const TMove& b) { return blackKey(a) < blackKey(b); });
    return count - illegal;
}

} // namespace zorvane
