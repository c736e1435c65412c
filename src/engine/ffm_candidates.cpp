#include "engine/ffm_candidates.h"

#include "core/attacks.h"
#include "core/make_move.h"
#include "core/movegen.h"
#include "core/thread_context.h"
#include "engine/find_mate.h"
#include "engine/heuristics_choice.h"
#include "engine/impossibility.h"

#include <algorithm>

namespace zorvane {

namespace {

// The black king with this little room is worth hemming in further by any move.
constexpr int NEAR_KING_FREE_BELOW = 3;
// A stronger White boxes the king in only where the mate can still follow.
constexpr int BOX_MIN_PLIES = 3;
// The white king comes this near to the black one when it is proposed.
constexpr int KING_APPROACH_DISTANCE = 2;
constexpr int SEVENTH_ROW = 6;
constexpr int RULE_COUNT = static_cast<int>(FfmRule::SeventhRankPawn) + 1;

// Black to move in `position` with all his replies to checks: does White go
// on checking to mate within the plies left? The wider threat tests' search:
// few moves on each side, so it needs neither register nor ordering.
bool mateByChecks(TChessboard& position);

// White to move: a checking move that mates within the plies left.
bool whiteMatesByChecks(TChessboard& b) {
    if (b.m_shPliesLeft == 1) return FindMateInOne(b);
    TThreadContext& ctx = *b.m_pThread;
    MoveBuffer moves;
    const int count = GenerateWhiteMovesOrEvasions(b, moves);
    TChessboard& child = ctx.m_aBoards[b.m_shPliesLeft];
    for (int i = 0; i < count; ++i) {
        CopyToChild(child, b);
        if (!MakeWhiteMove(child, moves[i]) || child.m_cBlackChecker < 0) continue;
        if (mateByChecks(child)) return true;
    }
    return false;
}

bool mateByChecks(TChessboard& position) {
    TThreadContext& ctx = *position.m_pThread;
    MoveBuffer replies;
    const int count = GenerateBlackEvasions(position, replies);
    TChessboard& child = ctx.m_aBoards[position.m_shPliesLeft];
    for (int i = 0; i < count; ++i) {
        CopyToChild(child, position);
        const int made = MakeBlackMove(child, replies[i], false);
        if (made == BLACK_MOVE_ILLEGAL) continue;
        if (made == BLACK_MOVE_BEATS_WHITE || !whiteMatesByChecks(child)) return false;
    }
    return true;
}

// The man on `square` attacks the black queen (or takes her) from there.
bool aimsAtQueen(const TChessboard& child, const TMove& move, int queenSquare) {
    return move.to == queenSquare || ManAttacksSquare(child, queenSquare, move.to);
}

// The square of the man that took a black queen with White's previous move, or -1.
int queenTakerSquare(const TChessboard& b) {
    const TChessboard* afterWhite = b.m_pParent;
    if (!afterWhite || !afterWhite->m_pParent) return -1;
    const TMove previous = afterWhite->m_LastMove;
    if (previous.isNull()) return -1;
    const uint8_t taken = afterWhite->m_pParent->m_aSquares[previous.to];
    if (taken != BQ) return -1;
    // The taker may have been taken since.
    return isWhite(b.m_aSquares[previous.to]) ? previous.to : -1;
}

} // namespace

int FfmThreatMoves(uint8_t level) {
    switch (level) {
    case FFM_LEVEL_MATE1:
    case FFM_LEVEL_MATE1_WIDE:
        return 1;
    case FFM_LEVEL_MATE2:
    case FFM_LEVEL_MATE2_WIDE:
        return 2;
    case FFM_LEVEL_MATE3:
        return 3;
    case FFM_LEVEL_MATE4:
        return 4;
    case FFM_LEVEL_MAX:
        return 5;
    default:
        return 0;
    }
}

bool ThreatensMate(const TChessboard& afterWhiteMove, int moves, bool byChecks) {
    if (afterWhiteMove.m_cBlackChecker >= 0 || moves < 1) return false;
    TThreadContext& ctx = *afterWhiteMove.m_pThread;
    // Black passes: his king "moves" to his own square, and White, who has
    // just moved legally, is not in check. The slot is that of the child of
    // the Black node below, free while the White node builds its list.
    TChessboard& passed = ctx.m_aBoards[afterWhiteMove.m_shPliesLeft];
    CopyToChild(passed, afterWhiteMove);
    const uint8_t king = static_cast<uint8_t>(afterWhiteMove.blackKing());
    passed.m_LastMove = TMove{king, king, 0, 0};
    passed.m_cWhiteChecker = -1;
    passed.m_bPass = 2;
    passed.m_uHeuristics = 0;
    passed.m_uHeuristicParams = 0;
    passed.m_shPliesLeft = static_cast<uint16_t>(2 * moves - 1);
    const bool mates = moves == 1 ? FindMateInOne(passed) : FindMateWithoutBets(passed) == RESULT_MATE;
    if (mates || !byChecks) return mates;
    passed.m_shPliesLeft = static_cast<uint16_t>(2 * moves + 1);
    return whiteMatesByChecks(passed);
}

FfmList BuildFfmCandidates(TChessboard& b, uint8_t level, bool addCaptures, const TMove& proposed, TMove* out,
                           FfmRule* rules) {
    TThreadContext& ctx = *b.m_pThread;
    const int n = b.m_shPliesLeft;
    FfmList list;

    MoveBuffer moves;
    const int count = GenerateWhiteMovesOrEvasions(b, moves);
    uint8_t ruleOf[MAX_MOVES];

    // What every move is measured against.
    const bool whiteInCheck = b.m_cWhiteChecker >= 0;
    const int blackKing = b.blackKing();
    const int freeBefore = CountFreeKingSquares(b);
    // The threat must be playable in the plies left: White's move, Black's
    // reply, then the mate.
    const int levelThreat = FfmThreatMoves(level);
    const int threat = std::min(levelThreat, (n - 1) / 2);
    const bool wide = level == FFM_LEVEL_MATE1_WIDE || level == FFM_LEVEL_MATE2_WIDE;
    const bool wideFits = wide && 2 * threat + 3 <= n;
    list.depthCut = threat < levelThreat || (wide && !wideFits);
    const bool capturesBesideKing = addCaptures && level >= FFM_LEVEL_MATE2;
    int queenSquare = -1;
    if (b.m_nBlackQueens == 1 && b.m_nBlackRooks == 0) queenSquare = FindSquare(b, BQ);
    const int queenTaker = queenTakerSquare(b);
    const bool whiteStronger = WhiteMaterial(b) > BlackMaterial(b);

    TChessboard& child = ctx.m_aBoards[n];
    int legal = 0;
    for (int i = 0; i < count; ++i) {
        ruleOf[i] = 0;
        CopyToChild(child, b);
        TMove move = moves[i];
        if (!MakeWhiteMove(child, move)) continue;
        moves[i] = move;
        ++legal;
        const uint8_t man = b.m_aSquares[move.from];
        const uint8_t taken = b.m_aSquares[move.to];
        // The rules that need no search are read once. In the search they are
        // asked before the threat test: the list holds the same moves, and only
        // the test's caller wants to know which rule of the order takes each first.
        const bool atQueen = queenSquare >= 0 && aimsAtQueen(child, move, queenSquare);
        const bool rookMove = man == WR;
        const bool takerMove = move.from == queenTaker;
        const bool queenMove = b.m_nWhiteQueens >= 2 && man == WQ;
        const bool seventhRankPawn = man == WP && rowOf(move.from) == SEVENTH_ROW;
        const bool askThreat = rules || !(atQueen || rookMove || takerMove || queenMove || seventhRankPawn);
        FfmRule rule{};
        if (child.m_cBlackChecker >= 0) {
            rule = FfmRule::Check;
        } else if (freeBefore < NEAR_KING_FREE_BELOW &&
                   (distance(move.to, blackKing) <= 1 || CountFreeKingSquares(child) < freeBefore)) {
            rule = FfmRule::NearKing;
        } else if (whiteInCheck) {
            rule = FfmRule::Evasion;
        } else if ((askThreat && threat && ThreatensMate(child, threat, wideFits)) ||
                   (capturesBesideKing && isBlack(taken) && (taken & KIND_MASK) != KIND_PAWN &&
                    distance(move.to, blackKing) <= 1)) {
            rule = FfmRule::Threat;
        } else if (atQueen) {
            rule = FfmRule::AtLoneQueen;
        } else if (rookMove) {
            rule = FfmRule::RookMove;
        } else if (takerMove) {
            rule = FfmRule::AfterQueenCapture;
        } else if (n >= BOX_MIN_PLIES && whiteStronger && CountFreeKingSquares(child) <= (taken ? 1 : 0)) {
            rule = FfmRule::Box;
        } else if (move == proposed && man == WK && distance(move.from, blackKing) > KING_APPROACH_DISTANCE &&
                   distance(move.to, blackKing) == KING_APPROACH_DISTANCE) {
            rule = FfmRule::ProposedKingStep;
        } else if (queenMove) {
            rule = FfmRule::QueenMove;
        } else if (seventhRankPawn) {
            rule = FfmRule::SeventhRankPawn;
        }
        ruleOf[i] = static_cast<uint8_t>(rule);
    }

    // The proposed move first, then rule by rule in the generator's order.
    int proposedAt = -1;
    for (int i = 0; i < count; ++i)
        if (ruleOf[i] && moves[i] == proposed) proposedAt = i;
    auto take = [&](int i) {
        if (rules) rules[list.count] = static_cast<FfmRule>(ruleOf[i]);
        out[list.count++] = moves[i];
    };
    if (proposedAt >= 0) take(proposedAt);
    for (int rule = 1; rule < RULE_COUNT; ++rule)
        for (int i = 0; i < count; ++i)
            if (ruleOf[i] == rule && i != proposedAt) take(i);
    list.complete = list.count == legal;
    return list;
}

} // namespace zorvane
