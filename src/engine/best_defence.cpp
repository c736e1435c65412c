#include "engine/best_defence.h"

#include "core/chess_exception.h"
#include "core/make_move.h"
#include "core/movegen.h"
#include "core/thread_context.h"
#include "engine/defence_texts.h"
#include "engine/find_mate.h"
#include "engine/heuristic_relaxation.h"
#include "engine/heuristics_catalogue.h"
#include "engine/heuristics_choice.h"
#include "engine/register_eligibility.h"
#include "engine/repetition.h"
#include "engine/solve_texts.h"
#include "registers/aggregated_register.h"

#include <algorithm>
#include <climits>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>

namespace zorvane {

namespace {

// The fast look at Black's moves pays only in long stipulations.
constexpr int QUICK_LOOK_MIN_PLIES = 12;
// A mate of this many plies or fewer is worth measuring exactly before the longest defence is sought.
constexpr int MEASURED_MATE_MAX_PLIES = 8;
// The depths at which the actual mate is measured.
constexpr int MEASURED_MATE_DEPTHS[] = {1, 3, 5, 7};
// A single solution of a mate this long or longer is tested for being forced.
constexpr int FORCED_SOLUTION_MIN_PLIES = 5;
// The last resort tests mates up to this many plies.
constexpr int ELIMINATION_MAX_PLIES = 13;
// The task's result goes into the register from this many plies on.
constexpr int REGISTER_STORE_MIN_PLIES = 13;
// Bets pay nothing in a search this short (as in a solve).
constexpr int HEURISTICS_MIN_PLIES = 4;
// A position repeats one of the line after this many reversible plies.
constexpr int REPETITION_PLIES = 4;
const char* const THREAD_STOPPED_TEXT = "Thread stopped";

SolveJob& jobOf(const TChessboard& position) {
    return *position.m_pThread->m_pJob;
}

bool stopMeant(const TChessboard& position) {
    return jobOf(position).m_nCommand.load(std::memory_order_acquire) >= COMMAND_STOP;
}

// Where the children of `position` are built.
TChessboard& childSlot(const TChessboard& position) {
    return position.m_pThread->m_aBoards[position.m_shPliesLeft];
}

std::string moveText(const TChessboard& position, const TMove& move) {
    const bool capture = position.m_aSquares[move.to] != 0 || move.enPassant;
    return FormatMove(move, position.m_aSquares[move.from], capture);
}

int makeBlack(const TChessboard& position, const TMove& move, TChessboard& child) {
    CopyToChild(child, position);
    TMove made = move;
    return MakeBlackMove(child, made, false);
}

// The legal black moves of `position`, as the maker noted them.
int legalBlackMoves(TChessboard& position, TMove* out) {
    TMove moves[MAX_MOVES];
    const int count = GenerateBlackMovesOrEvasions(position, moves);
    TChessboard& child = childSlot(position);
    int legal = 0;
    for (int i = 0; i < count; ++i) {
        CopyToChild(child, position);
        if (MakeBlackMove(child, moves[i], false) != BLACK_MOVE_ILLEGAL) out[legal++] = moves[i];
    }
    return legal;
}

// White to move: a mate within `plies`, proven by the search that bets on nothing.
bool mateWithin(const TChessboard& position, int plies) {
    if (plies < 1) return false;
    TChessboard probe = position;
    probe.m_shPliesLeft = static_cast<uint16_t>(plies);
    probe.m_uHeuristics = 0;
    probe.m_uHeuristicParams = 0;
    probe.m_bPass = 2;
    if (plies == 1) return FindMateInOne(probe);
    return FindMate(probe, true) == RESULT_MATE;
}

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

// The task's own temporary register in the problem's place while the task runs.
class RegisterSwap {
  public:
    RegisterSwap(SolveJob& job, int plies, const SolveOptions& options)
        : m_job(job), m_kept(job.problem.m_pRegister) {
        m_job.m_pShownRegister.store(nullptr, std::memory_order_release);
        if (!options.useRegister) {
            m_job.m_pRegister = nullptr;
            return;
        }
        // The job keeps the task's register alive after the task, for a
        // progress display that may still be reading it.
        m_job.m_pOwnRegister =
            std::make_shared<TProblemRegister>(RegisterBucketCount(static_cast<uint16_t>(plies)));
        m_job.m_pOwnRegister->SetMemoryLimit(options.registerMemoryLimit);
        m_job.problem.m_pRegister = m_job.m_pOwnRegister;
        m_job.m_pRegister = m_job.m_pOwnRegister.get();
    }
    ~RegisterSwap() {
        m_job.problem.m_pRegister = m_kept;
        m_job.m_pRegister = nullptr;
    }
    RegisterSwap(const RegisterSwap&) = delete;
    RegisterSwap& operator=(const RegisterSwap&) = delete;

  private:
    SolveJob& m_job;
    std::shared_ptr<TProblemRegister> m_kept;
};

// The position four reversible plies back, if `position` repeats it.
bool repeatsLine(const TChessboard& position) {
    const TChessboard* back = &position;
    for (int i = 0; i < REPETITION_PLIES; ++i) {
        if (!back->m_pParent || !ReversiblePly(*back)) return false;
        back = back->m_pParent;
    }
    return SamePosition(*back, position);
}

bool negativeResult(int result) {
    return result < 0 || result == DEFENCE_RESULT_UNKNOWN || result == DEFENCE_RESULT_REPETITION;
}

int8_t registerAnswer(const SolveJob& job, const TChessboard& position, int plies) {
    if (!job.m_pRegister || !RegisterEligible(position)) return RESULT_REFUTED_EARLY;
    const uint8_t answer =
        job.m_pRegister->Lookup(static_cast<uint16_t>(plies), TChessboardRegisterItem::FromBoard(position));
    return answer == 1   ? int8_t{RESULT_MATE}
           : answer == 0 ? int8_t{RESULT_NO_MATE}
                         : int8_t{RESULT_REFUTED_EARLY};
}

// The set of heuristics for the position: its own word, or the automatic
// choice for White's position above it (a set belongs to White's positions).
// A position given without its line has no set: the search bets on nothing.
uint32_t chooseWord(SolveJob& job, TThreadContext& ctx, TChessboard& position, TChessboard* parent,
                    const SolveOptions& options) {
    if (position.m_uHeuristics) return position.m_uHeuristics;
    if (!parent || !options.heuristics || !options.moveOrdering ||
        position.m_shPliesLeft < HEURISTICS_MIN_PLIES)
        return 0;
    job.m_solveWideHeuristics = SolveWideHeuristicParams{};
    HeuristicPassTimes& times = job.m_passTimes;
    times.m_uStartTicks = times.m_uPassStartTicks = SystemTicks();
    std::fill(std::begin(times.m_aPassTicks), std::end(times.m_aPassTicks), 0);
    parent->m_shPliesLeft = parent->m_shPliesTotal = static_cast<uint16_t>(position.m_shPliesLeft + 1);
    InitialPositionTypeCheck(*parent, ctx);
    ctx.m_bLetRelax = options.relaxHeuristics;
    ctx.m_bPass2 = options.passWithoutHeuristics;
    ApplyHeuristicOptions(job.problem.heuristicOptions, *parent, ctx, job.m_solveWideHeuristics);
    ParkForcedMateForPreliminaryPass(*parent, ctx);
    parent->m_uHeuristicParams = HeuristicFingerprintOf(*parent, ctx);
    return parent->m_uHeuristics;
}

// The full search under the set of heuristics, relaxed step by step while it
// leaves doubts. Negative: nothing decided.
int searchUnderHeuristics(SolveJob& job, TThreadContext& ctx, TChessboard& position, uint32_t word) {
    int8_t answer = RESULT_DOUBTFUL;
    if (!word) return answer;
    job.m_bHeuristics = true;
    position.m_uHeuristics = word;
    position.m_bPass = 1;
    for (;;) {
        position.m_uHeuristicParams = HeuristicFingerprintOf(position, ctx);
        ctx.ClearPlyArrays();
        answer = FindMateBlackStep(position);
        if (stopMeant(position) || answer >= 0) break;
        if (job.m_pRegister)
            job.m_pRegister->RemoveDoubtful(position.m_uHeuristics, position.m_uHeuristicParams);
        if (!TryRelaxSpecialHeuristics(position, ctx, job.m_solveWideHeuristics, job.m_passTimes, {})) break;
        job.m_passTimes.m_uPassStartTicks = SystemTicks();
    }
    job.m_bHeuristics = false;
    return answer;
}

// The move that refuted at the root of the last search, if it truly refutes.
bool refutationOfSearch(TChessboard& position, const TMove* legal, int count, TMove& refutation) {
    const TMove strong = position.m_pThread->m_aStrongMove[position.m_shPliesLeft];
    if (strong.isNull() || std::find(legal, legal + count, strong) == legal + count) return false;
    const TMove move = *std::find(legal, legal + count, strong);
    TChessboard& child = childSlot(position);
    const int made = makeBlack(position, move, child);
    if (made == BLACK_MOVE_ILLEGAL) return false;
    if (made != BLACK_MOVE_BEATS_WHITE && mateWithin(child, position.m_shPliesLeft - 1)) return false;
    refutation = move;
    return true;
}

DefenceWord wordFor(const TDefenceResult& result, bool singleLegal, bool refuted) {
    const bool mate = result.m_cResult == RESULT_MATE;
    if (result.m_bOnlyReply) {
        if (result.m_bFastMateOnly)
            return mate ? DefenceWord::OnlyReplyFastMateMateFound : DefenceWord::OnlyReplyFastMate;
        return mate ? DefenceWord::OnlyReplyMateBehind : DefenceWord::OnlyReply;
    }
    if (refuted) return DefenceWord::Refuted;
    if (result.m_bFastMateOnly) return DefenceWord::OnlyReplyFastMateMateFound;
    if (singleLegal) return DefenceWord::OnlyReplyMateBehind;
    return DefenceWord::NoDefence;
}

std::wstring widen(const std::string& text) {
    return std::wstring(text.begin(), text.end());
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

DefenceOutcome FindBestDefence(SolveJob& job, const DefenceRequest& request) {
    if (!request.position || request.plies < 2 || (request.plies & 1))
        throw std::invalid_argument("the best defence needs Black to move with an even number of plies left");
    const int plies = request.plies;
    const SolveOptions& options = request.options;
    const int language = options.languageId;
    DefenceOutcome outcome;
    TDefenceResult& result = outcome.result;

    auto context = std::make_unique<TThreadContext>();
    TThreadContext& ctx = *context;
    ctx.m_pJob = &job;
    job.m_bDeniedCastling = 0;
    // The line above is the caller's; White's position just above is copied,
    // since a relaxation of the heuristics writes its set there.
    TChessboard position = *request.position;
    TChessboard parent = EmptyChessboard();
    position.m_pProblem = &job.problem;
    position.m_pThread = &ctx;
    if (position.m_pParent) {
        parent = *position.m_pParent;
        parent.m_pProblem = &job.problem;
        parent.m_pThread = &ctx;
        position.m_pParent = &parent;
    }
    const TChessboard* top = &position;
    while (top->m_pParent) top = top->m_pParent;
    ctx.m_pRoot = top;
    // The moves of a position that cannot stand mean nothing: it is tested first.
    position.m_shPliesLeft = position.m_shPliesTotal = static_cast<uint16_t>(plies);
    SetupChessboard(position, false);
    if (position.m_cWhiteChecker >= 0) throw ChessException(WHITE_KING_CHECKED_TEXT);

    job.m_bSafeMode = SafeModeFor(job.problem, options.quickMode) ? 1 : 0;
    job.m_bMoveOrdering = options.moveOrdering;
    job.m_bHeuristics = false;
    job.m_shRepetitionLimit = static_cast<uint16_t>(plies);
    job.m_nNodes.store(0);
    job.m_bSolving.store(1);
    struct SolvingFlag {
        SolveJob& job;
        ~SolvingFlag() {
            job.m_bHeuristics = false;
            job.m_bSolving.store(0);
        }
    } solvingFlag{job};

    // 1. The registers; nothing holds the thread.
    const RegisterSwap registers(job, plies, options);
    ctx.m_nSuspended.store(0);
    if (position.m_bPass == 0) position.m_bPass = 1;
    const bool thorough = request.thorough;
    std::vector<DefenceMove> solutions;

    // 2. The fast look, in long stipulations only.
    if (plies >= QUICK_LOOK_MIN_PLIES) {
        std::vector<DefenceMove> quick;
        result.m_cResult = FindRefutationsQuickly(position, quick, thorough);
        if (result.m_cResult == RESULT_NO_MATE) result.refutations = quick;
        if (result.m_cResult == RESULT_MATE) solutions = quick;
    }

    // 3. One legal move.
    TMove legal[MAX_MOVES];
    const int legalCount = legalBlackMoves(position, legal);
    const bool singleLegal = legalCount == 1;
    TMove onlyMove;
    if (singleLegal) {
        result.m_bOnlyReply = true;
        onlyMove = legal[0];
    } else if (legalCount > 1 && FindOnlyDefence(position, onlyMove)) {
        // 4. One move that avoids a quick mate.
        result.m_bOnlyReply = result.m_bFastMateOnly = true;
    }
    const bool onlyReplyFound = result.m_bOnlyReply;

    // 5. The thorough command wants to know what stands behind an only reply.
    if (result.m_bOnlyReply && thorough) {
        TChessboard& child = childSlot(position);
        if (makeBlack(position, onlyMove, child) == BLACK_MOVE_MADE &&
            registerAnswer(job, child, plies - 1) == RESULT_MATE)
            result.m_cResult = RESULT_MATE;
        else
            result.m_bOnlyReply = false;
    }

    // 7. A position that repeats one of the line is not analysed.
    if (plies + REPETITION_PLIES <= job.problem.plies && repeatsLine(position)) {
        outcome.repetition = true;
        outcome.text = PositionRepetitionWord(language);
        outcome.boxes.push_back({InformationTitle(language), LineRepetitionBoxText(language)});
        return outcome;
    }

    // 8. The register may know the position itself.
    bool registerAnswered = false;
    if (result.m_cResult == DEFENCE_RESULT_UNKNOWN && !result.m_bOnlyReply) {
        const int8_t known = registerAnswer(job, position, plies);
        if (known == RESULT_MATE || known == RESULT_NO_MATE) {
            result.m_bFromRegister = registerAnswered = true;
            result.m_cResult = known;
        }
    }

    // 9. The full search, under heuristics while they decide something.
    bool searched = false;
    if (result.m_cResult == DEFENCE_RESULT_UNKNOWN && !result.m_bOnlyReply &&
        result.m_wRegisterDepth == REGISTER_DEPTH_UNKNOWN) {
        searched = true;
        const uint32_t word = chooseWord(job, ctx, position, position.m_pParent ? &parent : nullptr, options);
        const uint32_t savedWord = position.m_uHeuristics;
        result.m_cResult = searchUnderHeuristics(job, ctx, position, word);
        // 10. Still undecided: one run that bets on nothing.
        if (result.m_cResult < 0 && !stopMeant(position)) {
            position.m_bPass = 2;
            position.m_uHeuristics = 0;
            position.m_uHeuristicParams = 0;
            ctx.ClearPlyArrays();
            const int8_t answer = FindMateBlackStep(position);
            result.m_cResult = answer == RESULT_REPETITION ? int{RESULT_NO_MATE} : int{answer};
            position.m_bPass = 1;
        }
        position.m_uHeuristics = savedWord;
        position.m_uHeuristicParams = 0;
    }
    // 11.
    if (negativeResult(result.m_cResult) && !result.m_bOnlyReply &&
        result.m_wRegisterDepth == REGISTER_DEPTH_UNKNOWN)
        result.m_cResult = RESULT_NO_MATE;

    // 12. A stop leaves no answer, unless a move is in hand already.
    outcome.stopped = stopMeant(position);
    TMove chosen;
    std::vector<DefenceMove> equivalents;
    if (outcome.stopped) {
        if (onlyReplyFound) {
            result.m_bOnlyReply = true;
            chosen = onlyMove;
        }
        if (searched) result.m_cResult = DEFENCE_RESULT_UNKNOWN;
    } else if (onlyReplyFound) {
        chosen = onlyMove;
    } else {
        // The search's refutation, proven once more.
        TMove refutation;
        if (searched && result.m_cResult == RESULT_NO_MATE && result.refutations.empty() &&
            refutationOfSearch(position, legal, legalCount, refutation))
            result.refutations.push_back({refutation, moveText(position, refutation)});
        // 13. The best move.
        const bool mate = result.m_cResult == RESULT_MATE;
        if ((mate && plies <= MEASURED_MATE_MAX_PLIES) || result.refutations.empty()) {
            if (!result.refutations.empty()) {
                chosen = result.refutations.front().move;
            } else if (solutions.size() == 1) {
                chosen = solutions.front().move;
            } else if (mate) {
                int depth = plies - 1;
                for (const int measured : MEASURED_MATE_DEPTHS) {
                    if (measured >= plies - 1) break;
                    if (FindMateOfDepth(position, measured)) {
                        depth = measured;
                        break;
                    }
                }
                const TMove expected = solutions.empty() ? TMove{} : solutions.front().move;
                try {
                    FindLongestDefence(position, chosen, depth, expected, equivalents);
                } catch (const std::runtime_error&) {
                    // Stopped: the best move so far is still worth playing.
                    outcome.stopped = true;
                }
            }
            if (chosen.isNull() && !outcome.stopped) {
                bool uncertain = false;
                chosen = FindDefenceByElimination(position, uncertain);
                if (uncertain)
                    outcome.boxes.push_back({InformationTitle(language), NoRegisterDataBoxText(language)});
            }
        } else {
            chosen = result.refutations.front().move;
        }
        if (result.m_cResult == RESULT_NO_MATE && !result.refutations.empty())
            equivalents = result.refutations;
    }

    // 14. The register remembers a decided long task.
    if (!registerAnswered && plies >= REGISTER_STORE_MIN_PLIES && !outcome.stopped && job.m_pRegister &&
        RegisterEligible(position) && (result.m_cResult == RESULT_MATE || result.m_cResult == RESULT_NO_MATE))
        job.m_pRegister->Store(static_cast<uint16_t>(plies), TChessboardRegisterItem::FromBoard(position),
                               result.m_cResult == RESULT_MATE);

    // 15. The text.
    if (chosen.isNull()) {
        if (outcome.stopped) {
            outcome.text = AnalysisStoppedText(language);
        } else {
            outcome.text = NoValidMoveText(language);
            outcome.boxes.push_back({InformationTitle(language), NoValidMoveText(language)});
        }
        return outcome;
    }
    result.equivalentMoves = equivalents;
    outcome.move = chosen;
    outcome.moveText = moveText(position, chosen);
    const bool refuted = result.m_wRegisterDepth != REGISTER_DEPTH_UNKNOWN
                             ? result.m_wRegisterDepth == 0 || result.m_wRegisterDepth > plies
                             : result.m_cResult == RESULT_NO_MATE;
    std::wstring text =
        DefenceWordText(wordFor(result, singleLegal, refuted), language) + widen(outcome.moveText);
    if (result.m_bFromRegister) text += FromRegisterSuffix(language);
    if (equivalents.size() > 1) {
        text += EquivalentMovesLabel(language);
        for (size_t i = 0; i < equivalents.size(); ++i)
            text += (i ? L", " : L"") + widen(equivalents[i].text);
    }
    TChessboard after;
    if (makeBlack(position, chosen, after) != BLACK_MOVE_ILLEGAL && repeatsLine(after)) {
        text += L"\n" + PositionRepetitionWord(language);
        outcome.boxes.push_back({InformationTitle(language), ChosenMoveRepetitionBoxText(language)});
    }
    if (outcome.stopped) text += StoppedByUserSuffix(language);
    outcome.text = text;
    return outcome;
}

} // namespace zorvane
