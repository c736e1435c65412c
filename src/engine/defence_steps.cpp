#include "engine/best_defence.h"

#include "engine/defence_moves.h"
#include "engine/table_hooks.h"
#include "engine/register_eligibility.h"
#include "registers/aggregated_register.h"

#include <algorithm>
#include <climits>
#include <functional>
#include <map>
#include <stdexcept>

namespace zorvane {

// The best of the tables' answers once a move refutes: above every mate length.
constexpr int REFUTED_IN_TABLES = 32767;

using namespace defence_detail;

namespace {

// A single solution of a mate this long or longer is tested for being forced.
constexpr int FORCED_SOLUTION_MIN_PLIES = 5;
// The last resort tests mates up to this many plies.
constexpr int ELIMINATION_MAX_PLIES = 13;
const char* const THREAD_STOPPED_TEXT = "Thread stopped";

// Black to move: every reply is answered by a mate within the plies left
// (White has exactly one at each of his turns).
bool singleMateEverywhere(const TChessboard& position);

// White to move: exactly one move mates within the plies left; it goes to `only`.
bool singleMatingMove(const TChessboard& position, TMove& only) {
    TMove moves[MAX_MOVES];
    const int count = GenerateWhiteMovesOrEvasions(position, moves);
    int mating = 0;
    for (int i = 0; i < count; ++i) {
        TChessboard child;
        CopyToChild(child, position);
        TMove move = moves[i];
        if (!MakeWhiteMove(child, move)) continue;
        // With no plies left the Black step is the test of mate itself.
        if (FindMateBlackStep(child) != RESULT_MATE) continue;
        if (++mating > 1 || stopMeant(position)) return false;
        only = move;
    }
    return mating == 1;
}

bool singleMateEverywhere(const TChessboard& position) {
    if (position.m_shPliesLeft == 0) return true;
    TMove replies[MAX_MOVES];
    const int count = GenerateBlackMovesOrEvasions(position, replies);
    for (int i = 0; i < count; ++i) {
        TChessboard reply;
        const int made = makeBlack(position, replies[i], reply);
        if (made == BLACK_MOVE_ILLEGAL) continue;
        if (made == BLACK_MOVE_BEATS_WHITE) return false;
        TMove only;
        if (!singleMatingMove(reply, only)) return false;
        TChessboard next;
        CopyToChild(next, reply);
        if (!MakeWhiteMove(next, only) || !singleMateEverywhere(next)) return false;
    }
    return true;
}

// The job's settings that a solve run inside the task changes for its own run.
struct JobSettings {
    bool heuristics;
    bool ordering;
    uint16_t repetitionLimit;
    TProblemRegister* reg;
    explicit JobSettings(const SolveJob& job)
        : heuristics(job.m_bHeuristics), ordering(job.m_bMoveOrdering),
          repetitionLimit(job.m_shRepetitionLimit), reg(job.m_pRegister) {}
    void restore(SolveJob& job) const {
        job.m_bHeuristics = heuristics;
        job.m_bMoveOrdering = ordering;
        job.m_shRepetitionLimit = repetitionLimit;
        job.m_pRegister = reg;
        job.m_bSolving.store(1);
    }
};

// White to move after a black move: the keys that mate within `depth`, by
// the ordinary solve for all solutions, on a context of its own.
SolveResult solveAll(const TChessboard& afterBlack, int depth) {
    SolveJob& job = jobOf(afterBlack);
    const JobSettings kept(job);
    SolveOptions options;
    options.allSolutions = true;
    options.quickMode = job.m_bSafeMode == 0;
    options.moveOrdering = job.m_bMoveOrdering;
    options.useRegister = job.m_pRegister != nullptr;
    SolveDriver driver;
    SolveResult solved;
    try {
        solved = driver.SolveFromPosition(job, afterBlack, depth, options);
    } catch (...) {
        kept.restore(job);
        throw;
    }
    kept.restore(job);
    return solved;
}

} // namespace

bool FindMateOfDepth(const TChessboard& position, int plies) {
    TChessboard probe = position;
    probe.m_shPliesLeft = static_cast<uint16_t>(plies + 1);
    probe.m_uHeuristics = 0;
    probe.m_uHeuristicParams = 0;
    probe.m_bPass = 2;
    return FindMateBlackStep(probe) == RESULT_MATE;
}

int FindDefenceInGlobalRegister(TChessboard& position, std::vector<DefenceMove>& list, bool bThorough) {
    list.clear();
    if (!position.m_pThread->m_pJob->m_pTables || !(position.m_wFlags & FLAG_GLOBAL_REGISTER))
        return REGISTER_DEPTH_UNKNOWN;
    const int whitePlies = position.m_shPliesLeft - 1;
    // The set of moves kept, each marked whether it refutes.
    std::vector<std::pair<TMove, bool>> kept;
    bool allKnown = true, refutationFound = false;
    int best = -1;
    TMove bestMove;
    TMove legal[MAX_MOVES];
    const int count = legalBlackMoves(position, legal);
    TChessboard& child = childSlot(position);
    for (int i = 0; i < count; ++i) {
        if (makeBlack(position, legal[i], child) != BLACK_MOVE_MADE) continue;
        // 1.-2. The table of the child's men; beyond the tables nothing is known.
        const int plies = search_hooks::ProbeGlobalRegister<OrderedSearch>(child);
        if (plies < 0) {
            allKnown = false;
            continue;
        }
        if (plies == 0) {
            // 3. A refutation.
            if (!bThorough && !refutationFound) kept.clear();
            kept.push_back({legal[i], true});
            refutationFound = true;
            best = REFUTED_IN_TABLES;
            bestMove = legal[i];
        } else if (plies > best) {
            // 5. A longer defence.
            if (!bThorough) kept.clear();
            best = plies;
            bestMove = legal[i];
            kept.push_back({legal[i], plies > whitePlies});
        } else if (plies == best) {
            // 6. As long as the best.
            kept.push_back({legal[i], plies > whitePlies});
        } else if (bThorough && plies > whitePlies) {
            // 7. Shorter, but still beyond the stipulation.
            kept.push_back({legal[i], true});
        }
    }
    if (!(allKnown || refutationFound) || bestMove.isNull()) return REGISTER_DEPTH_UNKNOWN;
    list.push_back({bestMove, moveText(position, bestMove)});
    if (bThorough)
        for (const auto& [move, refutes] : kept)
            if (refutes && !(move == bestMove)) list.push_back({move, moveText(position, move)});
    return best == REFUTED_IN_TABLES ? 0 : best;
}

bool FindOnlyDefence(TChessboard& position, TMove& move) {
    const int plies = position.m_shPliesLeft;
    TMove moves[MAX_MOVES];
    const int count = legalBlackMoves(position, moves);
    TChessboard& child = childSlot(position);
    int alive = 0;
    for (int i = 0; i < count; ++i) {
        const int made = makeBlack(position, moves[i], child);
        if (made == BLACK_MOVE_ILLEGAL) continue;
        // Cheap tests first: a move is dead after the first mate found.
        const bool dead = made != BLACK_MOVE_BEATS_WHITE &&
                          (mateWithin(child, 1) || (plies > 3 && mateWithin(child, 3)) ||
                           (plies > 5 && mateWithin(child, 5)) || (plies > 7 && mateWithin(child, 7)));
        if (stopMeant(position)) return false;
        if (dead) continue;
        if (++alive > 1) return false;
        move = moves[i];
    }
    return alive == 1;
}

int FindRefutationsQuickly(TChessboard& position, std::vector<DefenceMove>& list, bool bThorough) {
    list.clear();
    const int plies = position.m_shPliesLeft;
    const int whitePlies = plies - 1;
    if (plies <= 2) return DEFENCE_RESULT_UNKNOWN;
    // 1. An en passant capture or a castling right that the squares do not
    // show would make the register's answers about the children wrong.
    if (!RegisterEligible(position)) return DEFENCE_RESULT_UNKNOWN;
    const SolveJob& job = jobOf(position);
    TMove moves[MAX_MOVES];
    const int count = legalBlackMoves(position, moves);
    std::vector<int> length(static_cast<size_t>(count), -1);
    TChessboard& child = childSlot(position);
    bool refuted = false;
    // 2./3. First pass: what the register knows, then mates in one, two and three.
    for (int i = 0; i < count; ++i) {
        const int made = makeBlack(position, moves[i], child);
        if (made == BLACK_MOVE_BEATS_WHITE) length[i] = 0;
        if (made != BLACK_MOVE_MADE) continue;
        bool excluded[8] = {};
        if (job.m_pRegister && RegisterEligible(child)) {
            const TChessboardRegisterItem item = TChessboardRegisterItem::FromBoard(child);
            if (job.m_pRegister->Lookup(static_cast<uint16_t>(whitePlies), item) == 0) {
                length[i] = 0;
                continue;
            }
            for (const int k : {3, 5, 7})
                excluded[k] = job.m_pRegister->Lookup(static_cast<uint16_t>(k), item) == 0;
        }
        for (const int k : {1, 3, 5}) {
            if (k > whitePlies) break;
            if (!excluded[k] && mateWithin(child, k)) {
                length[i] = k;
                break;
            }
        }
        if (stopMeant(position)) return DEFENCE_RESULT_UNKNOWN;
    }
    // 3./4. Second pass: the rest by the full search, shortened while it still mates.
    for (int i = 0; i < count; ++i) {
        if (length[i] < 0) {
            makeBlack(position, moves[i], child);
            int depth = whitePlies;
            if (mateWithin(child, depth)) {
                while (depth - 2 > 5 && mateWithin(child, depth - 2)) depth -= 2;
                length[i] = depth;
            } else {
                length[i] = 0;
            }
            if (stopMeant(position)) return DEFENCE_RESULT_UNKNOWN;
        }
        if (length[i] == 0) {
            refuted = true;
            list.push_back({moves[i], moveText(position, moves[i])});
            // The plain command needs one refutation; the thorough one names them all.
            if (!bThorough) break;
        }
    }
    if (refuted) return RESULT_NO_MATE;
    // 5. Third pass: the longest group, each move checked once more for a shorter mate.
    std::map<int, std::vector<int>, std::greater<>> groups;
    for (int i = 0; i < count; ++i) groups[length[i]].push_back(i);
    if (!groups.empty()) {
        const auto& [longest, members] = *groups.begin();
        for (const int i : members) {
            makeBlack(position, moves[i], child);
            if (mateWithin(child, longest - 2)) continue;
            list.push_back({moves[i], moveText(position, moves[i])});
        }
    }
    if (stopMeant(position)) {
        list.clear();
        return DEFENCE_RESULT_UNKNOWN;
    }
    // 6.
    return list.empty() ? DEFENCE_RESULT_UNKNOWN : RESULT_MATE;
}

bool IsSolutionForced(const TChessboard& afterBlack, const TMove& key, int depth) {
    TChessboard root = afterBlack;
    root.m_shPliesLeft = static_cast<uint16_t>(depth);
    root.m_uHeuristics = 0;
    root.m_uHeuristicParams = 0;
    root.m_bPass = 2;
    TChessboard afterKey;
    CopyToChild(afterKey, root);
    TMove move = key;
    return MakeWhiteMove(afterKey, move) && singleMateEverywhere(afterKey) && !stopMeant(afterBlack);
}

bool FindLongestDefence(TChessboard& position, TMove& move, int depth, const TMove& expected,
                        std::vector<DefenceMove>& list) {
    const int plies = position.m_shPliesLeft;
    move = TMove{};
    list.clear();
    TMove moves[MAX_MOVES];
    const int count = legalBlackMoves(position, moves);
    TChessboard& child = childSlot(position);
    for (int k = 1; k < depth || (depth == 1 && k == 1); k += 2) {
        int best = INT_MAX;
        std::vector<DefenceMove> found;
        std::vector<bool> marks;
        bool passEnded = false;
        move = TMove{};
        for (int i = 0; i < count && !passEnded; ++i) {
            if (stopMeant(position)) throw std::runtime_error(THREAD_STOPPED_TEXT);
            // 1.
            const int made = makeBlack(position, moves[i], child);
            if (made == BLACK_MOVE_ILLEGAL) continue;
            if (made == BLACK_MOVE_BEATS_WHITE) {
                found.clear();
                passEnded = true;
                break;
            }
            // 2. Short mates kill a move; the later passes forgive more of them.
            if ((plies > 1 && mateWithin(child, 1)) || (k <= 3 && depth > 3 && mateWithin(child, 3)) ||
                (k <= 5 && depth >= 6 && mateWithin(child, 5)))
                continue;
            // 3.
            const SolveResult solved = solveAll(child, depth);
            if (stopMeant(position)) throw std::runtime_error(THREAD_STOPPED_TEXT);
            if (solved.moves.empty()) {
                found.clear();
                passEnded = true;
                break;
            }
            // 4. A single key that forces every line counts as none.
            int solutions = static_cast<int>(solved.moves.size());
            if (solutions == 1 && depth >= FORCED_SOLUTION_MIN_PLIES &&
                IsSolutionForced(child, solved.moves[0], depth))
                solutions = 0;
            // 5. Fewest solutions wins.
            if (solutions < best) {
                best = solutions;
                found.clear();
                marks.clear();
            }
            if (solutions == best) {
                found.push_back({moves[i], moveText(position, moves[i])});
                marks.push_back(!expected.isNull() && moves[i] == expected);
                move = found.front().move;
                list = found;
            }
        }
        if (passEnded || found.empty()) {
            move = TMove{};
            list.clear();
            continue;
        }
        // The expected move goes first among equals.
        std::vector<DefenceMove> ordered;
        std::vector<bool> orderedMarks;
        for (const bool wanted : {true, false})
            for (size_t i = 0; i < found.size(); ++i)
                if (marks[i] == wanted) {
                    ordered.push_back(found[i]);
                    orderedMarks.push_back(wanted);
                }
        // A promotion to a lesser man gives way to the same move promoting to a queen.
        const TMove first = ordered.front().move;
        if (first.promotionKind() && first.promotionKind() != KIND_QUEEN) {
            for (size_t i = 1; i < ordered.size(); ++i) {
                const TMove other = ordered[i].move;
                if (other.from == first.from && other.to == first.to && other.promotionKind() == KIND_QUEEN &&
                    orderedMarks[i] == orderedMarks[0]) {
                    std::swap(ordered[0], ordered[i]);
                    break;
                }
            }
        }
        list = ordered;
        move = list.front().move;
        return true;
    }
    move = TMove{};
    list.clear();
    return false;
}

TMove FindDefenceByElimination(TChessboard& position, bool& uncertain) {
    uncertain = false;
    TMove moves[MAX_MOVES];
    const int count = legalBlackMoves(position, moves);
    if (count == 0) return TMove{};
    if (count == 1) return moves[0];
    std::vector<TMove> left(moves, moves + count);
    TChessboard& child = childSlot(position);
    const int bound = std::min(ELIMINATION_MAX_PLIES, position.m_shPliesLeft - 1);
    for (int k = 1; k <= bound && left.size() > 1; k += 2) {
        for (auto it = left.begin(); it != left.end() && left.size() > 1;) {
            const int made = makeBlack(position, *it, child);
            // A move after which no mate can follow is the answer at once.
            if (made != BLACK_MOVE_MADE) return *it;
            if (mateWithin(child, k))
                it = left.erase(it);
            else
                ++it;
        }
        if (stopMeant(position)) break;
    }
    uncertain = left.size() > 1;
    return left.front();
}

} // namespace zorvane
