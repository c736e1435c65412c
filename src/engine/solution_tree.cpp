#include "engine/solution_tree.h"

#include "core/make_move.h"
#include "core/movegen.h"
#include "core/thread_context.h"
#include "engine/find_mate.h"
#include "engine/mate_in_one.h"
#include "engine/move_ordering.h"
#include "engine/solve_job.h"
#include "engine/threats.h"
#include "problems/notation.h"

#include <algorithm>

namespace zorvane {

// Problems of two and three moves are read whole; longer ones would print
// thousands of lines, so their third move on shows one line.
constexpr int WHOLE_TREE_MAX_MOVES = 3;
constexpr int LONG_TREE_FULL_MOVES = 2;
// Set play is what a reader looks for in short problems only.
constexpr int SET_PLAY_MAX_MOVES = 3;

int FullTreeDepth(int moves, int depth) {
    if (depth > 0) return std::min(depth, moves);
    return moves <= WHOLE_TREE_MAX_MOVES ? moves : LONG_TREE_FULL_MOVES;
}

namespace {

// The board stack holds the tree's own line: a position with Black to move
// and `left` White moves after it lies in slot 2*left+1, White's position
// after Black's reply in slot 2*left, so that every search asked about a
// position builds its children below it.
class TreeBuilder {
  public:
    TreeBuilder(const TChessboard& root, int moves, const TreeOptions& options)
        : m_root(root), m_ctx(*root.m_pThread), m_job(*m_ctx.m_pJob), m_moves(moves),
          m_fullDepth(FullTreeDepth(moves, options.depth)), m_maxRefutations(options.maxRefutations) {
        // The proof without bets: every answer of the tree is exact.
        m_root.m_bPass = 2;
        m_root.m_uHeuristics = 0;
        m_root.m_uHeuristicParams = 0;
        m_root.m_shPliesLeft = m_root.m_shPliesTotal = static_cast<uint16_t>(2 * moves - 1);
        m_ctx.m_bForcedMate = false;
        m_job.m_bHeuristics = false;
    }

    SolutionTree build(const std::vector<TMove>& keys) {
        SolutionTree tree;
        tree.moves = m_moves;
        tree.fullDepth = m_fullDepth;
        addKeys(tree, keys);
        if (!stopped() && m_moves >= 2) addTries(tree, keys);
        if (!stopped() && m_moves >= 2 && m_moves <= SET_PLAY_MAX_MOVES) addSetPlay(tree);
        tree.stopped = stopped();
        return tree;
    }

  private:
    bool stopped() const { return m_job.StopMeant(m_ctx.m_shThreadId); }

    TChessboard& slot(int index) { return m_ctx.m_aBoards[index]; }

    // Black to move on `b`: does White mate within `whiteMoves` moves? With
    // none left the Black step tests whether Black is mated.
    static bool losesWithin(TChessboard& b, int whiteMoves) {
        b.m_shPliesLeft = b.m_shPliesTotal = static_cast<uint16_t>(2 * whiteMoves);
        return FindMateBlackStep(b) == RESULT_MATE;
    }
    // White to move on `w`: does White mate within `moves` moves?
    static bool matesWithin(TChessboard& w, int moves) {
        w.m_shPliesLeft = w.m_shPliesTotal = static_cast<uint16_t>(2 * moves - 1);
        return FindMate(w, false) == RESULT_MATE;
    }

    // White's shortest mate from `b` (Black to move, after White's move)
    // within `left` more White moves, counted with the move that led to `b`:
    // 1 when `b` is mate; 0 for none.
    static int forcedMate(TChessboard& b, int left) {
        if (!losesWithin(b, left)) return 0;
        for (int k = 0; k < left; ++k)
            if (losesWithin(b, k)) return k + 1;
        return left + 1;
    }

    // The move as generated: the marks of a sort are no part of it.
    static TMove plain(const TMove& move) { return TMove{move.from, move.to, move.promotionKind(), 0}; }

    static TreeMove describeWhite(const TChessboard& parent, const TMove& move) {
        TreeMove shown{plain(move), parent.m_aSquares[move.from], TakesOn(parent, move), false, false};
        TChessboard child;
        CopyToChild(child, parent);
        TMove made = shown.move;
        if (!MakeWhiteMove(child, made)) return shown;
        shown.check = child.m_cBlackChecker >= 0;
        shown.mate = shown.check && !BlackHasLegalMove(child);
        return shown;
    }
    static TreeMove describeBlack(const TChessboard& parent, const TChessboard& child, const TMove& move) {
        return {plain(move), parent.m_aSquares[move.from], TakesOn(parent, move), child.m_cWhiteChecker >= 0,
                false};
    }

    // 1. The keys, each with the whole tree below it.
    void addKeys(SolutionTree& tree, const std::vector<TMove>& keys) {
        const int left = m_moves - 1;
        for (const TMove& key : keys) {
            TChessboard& b = slot(2 * left + 1);
            CopyToChild(b, m_root);
            TMove move = key;
            if (!MakeWhiteMove(b, move)) continue;
            WhitePlay play = playOf(describeWhite(m_root, key));
            // A key mates within the stipulation: only the shorter mates need a search.
            play.mateIn = m_moves;
            for (int k = 0; k < left && !stopped(); ++k)
                if (losesWithin(b, k)) {
                    play.mateIn = k + 1;
                    break;
                }
            // A stop keeps the key, proven by the solve, with what was built below it.
            play.shortMate = play.mateIn < m_moves;
            expand(play, b, left, 1, true);
            tree.keys.push_back(std::move(play));
        }
    }

    // `play` is White's move number `number`; it led to `b` (Black to move,
    // in its slot) with `left` White moves after it.
    void expand(WhitePlay& play, TChessboard& b, int left, int number, bool withThreat) {
        if (play.move.mate || left == 0 || stopped()) return;
        if (number <= m_fullDepth)
            expandFull(play, b, left, number, withThreat);
        else
            expandLine(play, b, left, number);
    }

    // Every legal reply of Black, each with its continuations.
    void expandFull(WhitePlay& play, TChessboard& b, int left, int number, bool withThreat) {
        b.m_shPliesLeft = static_cast<uint16_t>(2 * left);
        if (withThreat && !play.move.check) {
            const Threat threat = FindThreat(b, left);
            if (stopped()) return;
            const TChessboard& passed = slot(2 * left);
            for (const TMove& move : threat.list) play.threat.push_back(describeWhite(passed, move));
            play.threatMoves = threat.moves;
            play.zugzwang = threat.list.empty();
        }
        TMove moves[MAX_MOVES];
        b.m_shPliesLeft = static_cast<uint16_t>(2 * left);
        const int count = GenerateBlackMovesOrEvasions(b, moves);
        TChessboard& w = slot(2 * left);
        for (int i = 0; i < count && !stopped(); ++i) {
            CopyToChild(w, b);
            TMove reply = moves[i];
            if (MakeBlackMove(w, reply, false) == BLACK_MOVE_ILLEGAL) continue;
            BlackDefence defence = defenceOf(describeBlack(b, w, reply));
            if (number + 1 <= m_fullDepth)
                allContinuations(defence, w, left, play.threat);
            else
                shortestContinuation(defence, w, left, play.threat);
            if (!defence.allowsThreat) expandReplies(defence, w, left, number);
            play.defences.push_back(std::move(defence));
        }
    }

    // Below the tree's depth: the line of Black's longest defence.
    void expandLine(WhitePlay& play, TChessboard& b, int left, int number) {
        TMove moves[MAX_MOVES];
        b.m_shPliesLeft = static_cast<uint16_t>(2 * left);
        const int count = GenerateBlackMovesOrEvasions(b, moves);
        TChessboard& w = slot(2 * left);
        // No defence outlasts the mate White's move forces.
        const int longest = std::min(play.mateIn - 1, left);
        int best = -1, bestLength = 0;
        for (int i = 0; i < count && bestLength < longest; ++i) {
            CopyToChild(w, b);
            TMove reply = moves[i];
            if (MakeBlackMove(w, reply, false) == BLACK_MOVE_ILLEGAL) continue;
            int length = 1;
            while (length <= left && !matesWithin(w, length)) ++length;
            if (stopped()) return;
            if (best < 0 || length > bestLength) {
                best = i;
                bestLength = length;
            }
        }
        if (best < 0) return;
        CopyToChild(w, b);
        TMove reply = moves[best];
        MakeBlackMove(w, reply, false);
        BlackDefence defence = defenceOf(describeBlack(b, w, reply));
        shortestContinuation(defence, w, left, {});
        expandReplies(defence, w, left, number);
        play.defences.push_back(std::move(defence));
    }

    // The continuations below a defence, each expanded in its turn. `w` is
    // the position after the defence; each continuation is made again, since
    // the searches have used the slot below.
    void expandReplies(BlackDefence& defence, const TChessboard& w, int left, int number) {
        TChessboard& b = slot(2 * left - 1);
        for (WhitePlay& reply : defence.replies) {
            if (stopped()) return;
            CopyToChild(b, w);
            TMove move = reply.move.move;
            if (MakeWhiteMove(b, move)) expand(reply, b, left - 1, number + 1, true);
        }
    }

    // Every White move after the defence that mates within the `left` moves.
    void allContinuations(BlackDefence& defence, TChessboard& w, int left,
                          const std::vector<TreeMove>& threat) {
        TMove moves[MAX_MOVES];
        w.m_shPliesLeft = static_cast<uint16_t>(2 * left - 1);
        // The last move: only the mates at once, found by the checks alone.
        const bool last = left == 1;
        const int count = last ? AllMatesInOne(w, moves) : GenerateWhiteMovesOrEvasions(w, moves);
        TChessboard& b = slot(2 * left - 1);
        for (int i = 0; i < count && !stopped(); ++i) {
            CopyToChild(b, w);
            TMove move = moves[i];
            if (!MakeWhiteMove(b, move)) continue;
            const int mate = last ? 1 : forcedMate(b, left - 1);
            if (mate == 0) continue;
            WhitePlay reply = playOf(describeWhite(w, moves[i]));
            reply.mateIn = mate;
            reply.shortMate = mate < left;
            defence.allowsThreat = defence.allowsThreat || isThreat(moves[i], threat);
            defence.replies.push_back(std::move(reply));
        }
        std::stable_sort(defence.replies.begin(), defence.replies.end(),
                         [](const WhitePlay& x, const WhitePlay& y) { return x.mateIn < y.mateIn; });
        defence.refutes = defence.replies.empty() && !stopped();
    }

    // One continuation: a threat move that still mates in time, else White's shortest mate.
    void shortestContinuation(BlackDefence& defence, TChessboard& w, int left,
                              const std::vector<TreeMove>& threat) {
        TChessboard& b = slot(2 * left - 1);
        TMove moves[MAX_MOVES];
        w.m_shPliesLeft = static_cast<uint16_t>(2 * left - 1);
        const int count = GenerateWhiteMovesOrEvasions(w, moves);
        // Only from the list: the defence may have taken the threatening man.
        for (int i = 0; i < count; ++i) {
            if (!isThreat(moves[i], threat)) continue;
            CopyToChild(b, w);
            TMove move = moves[i];
            if (!MakeWhiteMove(b, move)) continue;
            if (const int mate = forcedMate(b, left - 1)) {
                defence.allowsThreat = true;
                defence.replies.push_back(continuation(w, moves[i], mate, left));
                return;
            }
        }
        for (int k = 0; k < left && !stopped(); ++k) {
            for (int i = 0; i < count; ++i) {
                CopyToChild(b, w);
                TMove move = moves[i];
                if (!MakeWhiteMove(b, move) || !losesWithin(b, k)) continue;
                defence.replies.push_back(continuation(w, moves[i], k + 1, left));
                return;
            }
        }
        defence.refutes = !stopped();
    }

    static WhitePlay continuation(const TChessboard& w, const TMove& move, int mate, int left) {
        WhitePlay reply = playOf(describeWhite(w, move));
        reply.mateIn = mate;
        reply.shortMate = mate < left;
        return reply;
    }

    static WhitePlay playOf(const TreeMove& move) {
        WhitePlay play;
        play.move = move;
        return play;
    }
    static BlackDefence defenceOf(const TreeMove& move) {
        BlackDefence defence;
        defence.move = move;
        return defence;
    }

    static bool isThreat(const TMove& move, const std::vector<TreeMove>& threat) {
        return std::any_of(threat.begin(), threat.end(), [&](const TreeMove& t) { return t.move == move; });
    }

    // 2. The tries: first moves that no more than the allowed Black moves refute.
    void addTries(SolutionTree& tree, const std::vector<TMove>& keys) {
        const int left = m_moves - 1;
        TMove moves[MAX_MOVES];
        const int count = GenerateWhiteMovesOrEvasions(m_root, moves);
        TChessboard& b = slot(2 * left + 1);
        TChessboard& w = slot(2 * left);
        for (int i = 0; i < count && !stopped(); ++i) {
            if (std::find(keys.begin(), keys.end(), moves[i]) != keys.end()) continue;
            CopyToChild(b, m_root);
            TMove move = moves[i];
            if (!MakeWhiteMove(b, move)) continue;
            WhitePlay attempt = playOf(describeWhite(m_root, moves[i]));
            TMove replies[MAX_MOVES];
            b.m_shPliesLeft = static_cast<uint16_t>(2 * left);
            const int replyCount = refutersFirst(b, replies);
            bool tooMany = false;
            for (int j = 0; j < replyCount && !tooMany && !stopped(); ++j) {
                CopyToChild(w, b);
                TMove reply = replies[j];
                if (MakeBlackMove(w, reply, false) == BLACK_MOVE_ILLEGAL) continue;
                if (matesWithin(w, left)) continue;
                if (stopped()) break;
                BlackDefence refutation = defenceOf(describeBlack(b, w, reply));
                refutation.refutes = true;
                attempt.defences.push_back(std::move(refutation));
                tooMany = static_cast<int>(attempt.defences.size()) > m_maxRefutations;
            }
            if (!tooMany && !stopped() && !attempt.defences.empty()) tree.tries.push_back(std::move(attempt));
        }
    }

    // Black's replies on `b`, those likeliest to refute first as the search
    // orders them, so that a first move with many refutations is dropped
    // soon. The sort may cut the list short: the rest follow in their order.
    static int refutersFirst(const TChessboard& b, TMove* out) {
        TMove generated[MAX_MOVES];
        const int count = GenerateBlackMovesOrEvasions(b, generated);
        std::copy(generated, generated + count, out);
        int sorted = std::max(SortBlackMoves(b, out, count, TMove{}), 0);
        for (int i = 0; i < count; ++i)
            if (std::find(out, out + sorted, generated[i]) == out + sorted) out[sorted++] = generated[i];
        return sorted;
    }

    // 3. Set play: Black moves first in the start position.
    void addSetPlay(SolutionTree& tree) {
        if (m_root.m_cWhiteChecker >= 0) return; // Black could not be to move here
        const int left = m_moves - 1;
        TChessboard& b = slot(2 * left + 1);
        CopyToChild(b, m_root);
        // The same squares with Black to move are no repetition of the start.
        b.m_pParent = m_root.m_pParent;
        b.m_LastMove = TMove{};
        WhitePlay start;
        expandFull(start, b, left, 1, false);
        for (BlackDefence& defence : start.defences)
            if (!defence.refutes) tree.setPlay.push_back(std::move(defence));
    }

    TChessboard m_root;
    TThreadContext& m_ctx;
    SolveJob& m_job;
    const int m_moves;
    const int m_fullDepth;
    const int m_maxRefutations;
};

} // namespace

SolutionTree BuildSolutionTree(const TChessboard& root, int moves, const std::vector<TMove>& keys,
                               const TreeOptions& options) {
    return TreeBuilder(root, moves, options).build(keys);
}

} // namespace zorvane
