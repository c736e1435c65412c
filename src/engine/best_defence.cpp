#include "engine/best_defence.h"

#include "core/chess_exception.h"
#include "core/make_move.h"
#include "core/movegen.h"
#include "core/thread_context.h"
#include "engine/defence_moves.h"
#include "engine/defence_texts.h"
#include "engine/find_mate.h"
#include "engine/heuristic_relaxation.h"
#include "engine/heuristics_catalogue.h"
#include "engine/heuristics_choice.h"
#include "engine/register_eligibility.h"
#include "engine/repetition.h"
#include "engine/solve_texts.h"
#include "global_register/table_set.h"
#include "registers/aggregated_register.h"

#include <algorithm>
#include <memory>
#include <stdexcept>

namespace zorvane {

using namespace defence_detail;

namespace {

// The fast look at Black's moves pays only in long stipulations.
constexpr int QUICK_LOOK_MIN_PLIES = 12;
// A mate of this many plies or fewer is worth measuring exactly before the longest defence is sought.
constexpr int MEASURED_MATE_MAX_PLIES = 8;
// The depths at which the actual mate is measured.
constexpr int MEASURED_MATE_DEPTHS[] = {1, 3, 5, 7};
// The task's result goes into the register from this many plies on.
constexpr int REGISTER_STORE_MIN_PLIES = 13;
// Bets pay nothing in a search this short (as in a solve).
constexpr int HEURISTICS_MIN_PLIES = 4;
// A position repeats one of the line after this many reversible plies.
constexpr int REPETITION_PLIES = 4;

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

// One run of the task: the position on the task's own context, and what the
// steps find out in turn.
class DefenceTask {
  public:
    DefenceTask(SolveJob& job, const DefenceRequest& request)
        : m_job(job), m_request(request), m_plies(request.plies), m_language(request.options.languageId),
          m_context(std::make_unique<TThreadContext>()), m_ctx(*m_context) {}

    DefenceOutcome run();

  private:
    void setUp();
    void findOnlyReply();
    bool lineRepeats();
    void askTables();
    void askRegister();
    void search();
    void chooseMove();
    void storeResult();
    void composeText();
    bool stopped() const { return stopMeant(m_position); }

    SolveJob& m_job;
    const DefenceRequest& m_request;
    const int m_plies;
    const int m_language;
    std::unique_ptr<TThreadContext> m_context;
    TThreadContext& m_ctx;
    // The position, and a copy of White's position above it (a relaxation of
    // the heuristics writes its set there); the line further up is the caller's.
    TChessboard m_position = EmptyChessboard();
    TChessboard m_parent = EmptyChessboard();
    DefenceOutcome m_outcome;
    TDefenceResult& m_result = m_outcome.result;
    TMove m_legal[MAX_MOVES];
    int m_legalCount = 0;
    TMove m_onlyMove;
    bool m_onlyReplyFound = false; // by step 3 or 4, whatever step 5 decided
    bool m_registerAnswered = false;
    bool m_searched = false;
    std::vector<DefenceMove> m_solutions; // the longest defences of the quick look
    TMove m_chosen;
    std::vector<DefenceMove> m_equivalents;
};

void DefenceTask::setUp() {
    m_ctx.m_pJob = &m_job;
    m_job.m_bDeniedCastling = 0;
    m_position = *m_request.position;
    m_position.m_pProblem = &m_job.problem;
    m_position.m_pThread = &m_ctx;
    if (m_position.m_pParent) {
        m_parent = *m_position.m_pParent;
        m_parent.m_pProblem = &m_job.problem;
        m_parent.m_pThread = &m_ctx;
        m_position.m_pParent = &m_parent;
    }
    const TChessboard* top = &m_position;
    while (top->m_pParent) top = top->m_pParent;
    m_ctx.m_pRoot = top;
    // The moves of a position that cannot stand mean nothing: it is tested first.
    m_position.m_shPliesLeft = m_position.m_shPliesTotal = static_cast<uint16_t>(m_plies);
    SetupChessboard(m_position, false);
    if (m_position.m_cWhiteChecker >= 0) throw ChessException(WHITE_KING_CHECKED_TEXT);
    const SolveOptions& options = m_request.options;
    m_job.m_bSafeMode = SafeModeFor(m_job.problem, options.quickMode) ? 1 : 0;
    m_job.m_bMoveOrdering = options.moveOrdering;
    m_job.m_bHeuristics = false;
    // The tables answer below the position when they hold its men.
    m_job.m_pTables = options.tables && options.tables->Covers(m_position) ? options.tables : nullptr;
    if (m_job.m_pTables) m_position.m_wFlags |= FLAG_GLOBAL_REGISTER;
    m_job.m_shRepetitionLimit = static_cast<uint16_t>(m_plies);
    m_job.m_nNodes.store(0);
    m_ctx.m_nSuspended.store(0);
    if (m_position.m_bPass == 0) m_position.m_bPass = 1;
}

void DefenceTask::findOnlyReply() {
    // 3. One legal move.
    m_legalCount = legalBlackMoves(m_position, m_legal);
    if (m_legalCount == 1) {
        m_result.m_bOnlyReply = true;
        m_onlyMove = m_legal[0];
    } else if (m_legalCount > 1 && FindOnlyDefence(m_position, m_onlyMove)) {
        // 4. One move that avoids a quick mate.
        m_result.m_bOnlyReply = m_result.m_bFastMateOnly = true;
    }
    m_onlyReplyFound = m_result.m_bOnlyReply;
    // 5. The thorough command wants to know what stands behind an only reply:
    // a known mate settles it, anything else leaves it to the search.
    if (m_result.m_bOnlyReply && m_request.thorough) {
        TChessboard& child = childSlot(m_position);
        if (makeBlack(m_position, m_onlyMove, child) == BLACK_MOVE_MADE &&
            registerAnswer(m_job, child, m_plies - 1) == RESULT_MATE)
            m_result.m_cResult = RESULT_MATE;
        else
            m_result.m_bOnlyReply = false;
    }
}

bool DefenceTask::lineRepeats() {
    // The position four plies back must lie inside the stipulation.
    if (m_plies + REPETITION_PLIES > m_job.problem.plies || !repeatsLine(m_position)) return false;
    m_outcome.repetition = true;
    m_outcome.text = PositionRepetitionWord(m_language);
    m_outcome.boxes.push_back({InformationTitle(m_language), LineRepetitionBoxText(m_language)});
    return true;
}

void DefenceTask::askTables() {
    if (m_result.m_bOnlyReply) return;
    std::vector<DefenceMove> known;
    const int depth = FindDefenceInGlobalRegister(m_position, known, m_request.thorough);
    if (depth == REGISTER_DEPTH_UNKNOWN) return;
    m_result.m_wRegisterDepth = static_cast<uint16_t>(depth);
    m_solutions = std::move(known);
}

void DefenceTask::askRegister() {
    if (m_result.m_cResult != DEFENCE_RESULT_UNKNOWN || m_result.m_bOnlyReply) return;
    const int8_t known = registerAnswer(m_job, m_position, m_plies);
    if (known != RESULT_MATE && known != RESULT_NO_MATE) return;
    m_result.m_bFromRegister = m_registerAnswered = true;
    m_result.m_cResult = known;
}

void DefenceTask::search() {
    if (m_result.m_cResult != DEFENCE_RESULT_UNKNOWN || m_result.m_bOnlyReply ||
        m_result.m_wRegisterDepth != REGISTER_DEPTH_UNKNOWN)
        return;
    m_searched = true;
    // 9. Under heuristics while they decide something.
    const uint32_t word =
        chooseWord(m_job, m_ctx, m_position, m_position.m_pParent ? &m_parent : nullptr, m_request.options);
    const uint32_t savedWord = m_position.m_uHeuristics;
    if (word) m_outcome.heuristics = GetSpecialHeuristicsText(m_parent, m_ctx, m_job.m_solveWideHeuristics);
    m_result.m_cResult = searchUnderHeuristics(m_job, m_ctx, m_position, word);
    // 10. Still undecided: one run that bets on nothing.
    if (m_result.m_cResult < 0 && !stopped()) {
        m_position.m_bPass = 2;
        m_position.m_uHeuristics = 0;
        m_position.m_uHeuristicParams = 0;
        m_ctx.ClearPlyArrays();
        const int8_t answer = FindMateBlackStep(m_position);
        m_result.m_cResult = answer == RESULT_REPETITION ? int{RESULT_NO_MATE} : int{answer};
        m_position.m_bPass = 1;
    }
    m_position.m_uHeuristics = savedWord;
    m_position.m_uHeuristicParams = 0;
    // The refutation that ended the search, proven once more.
    TMove refutation;
    if (!stopped() && m_result.m_cResult == RESULT_NO_MATE && m_result.refutations.empty() &&
        refutationOfSearch(m_position, m_legal, m_legalCount, refutation))
        m_result.refutations.push_back({refutation, moveText(m_position, refutation)});
}

void DefenceTask::chooseMove() {
    if (m_onlyReplyFound) {
        m_chosen = m_onlyMove;
        return;
    }
    // The tables' longest defence, or their refutations.
    if (m_result.m_wRegisterDepth != REGISTER_DEPTH_UNKNOWN && !m_solutions.empty()) {
        m_chosen = m_solutions.front().move;
        if (m_solutions.size() > 1) m_equivalents = m_solutions;
        return;
    }
    const bool mate = m_result.m_cResult == RESULT_MATE;
    if (!m_result.refutations.empty()) {
        m_chosen = m_result.refutations.front().move;
        if (m_result.m_cResult == RESULT_NO_MATE) m_equivalents = m_result.refutations;
        if (!(mate && m_plies <= MEASURED_MATE_MAX_PLIES)) return;
    }
    if (!m_chosen.isNull()) return;
    if (m_solutions.size() == 1) {
        m_chosen = m_solutions.front().move;
    } else if (mate) {
        // The depth of the actual mate, measured where it is cheap.
        int depth = m_plies - 1;
        for (const int measured : MEASURED_MATE_DEPTHS) {
            if (measured >= m_plies - 1) break;
            if (FindMateOfDepth(m_position, measured)) {
                depth = measured;
                break;
            }
        }
        const TMove expected = m_solutions.empty() ? TMove{} : m_solutions.front().move;
        try {
            FindLongestDefence(m_position, m_chosen, depth, expected, m_equivalents);
        } catch (const std::runtime_error&) {
            // Stopped: the best move so far is still worth playing.
            m_outcome.stopped = true;
        }
    }
    if (m_chosen.isNull() && !m_outcome.stopped) {
        bool uncertain = false;
        m_chosen = FindDefenceByElimination(m_position, uncertain);
        if (uncertain)
            m_outcome.boxes.push_back({InformationTitle(m_language), NoRegisterDataBoxText(m_language)});
    }
}

void DefenceTask::storeResult() {
    if (m_registerAnswered || m_plies < REGISTER_STORE_MIN_PLIES || m_outcome.stopped || !m_job.m_pRegister ||
        !RegisterEligible(m_position))
        return;
    if (m_result.m_cResult == RESULT_MATE || m_result.m_cResult == RESULT_NO_MATE)
        m_job.m_pRegister->Store(static_cast<uint16_t>(m_plies),
                                 TChessboardRegisterItem::FromBoard(m_position),
                                 m_result.m_cResult == RESULT_MATE);
}

void DefenceTask::composeText() {
    if (m_chosen.isNull()) {
        if (m_outcome.stopped) {
            m_outcome.text = AnalysisStoppedText(m_language);
        } else {
            m_outcome.text = NoValidMoveText(m_language);
            m_outcome.boxes.push_back({InformationTitle(m_language), NoValidMoveText(m_language)});
        }
        return;
    }
    m_result.equivalentMoves = m_equivalents;
    m_outcome.move = m_chosen;
    m_outcome.moveText = moveText(m_position, m_chosen);
    const bool refuted = m_result.m_wRegisterDepth != REGISTER_DEPTH_UNKNOWN
                             ? m_result.m_wRegisterDepth == 0 || m_result.m_wRegisterDepth > m_plies
                             : m_result.m_cResult == RESULT_NO_MATE;
    std::wstring text = DefenceWordText(wordFor(m_result, m_legalCount == 1, refuted), m_language) +
                        widen(m_outcome.moveText);
    if (m_result.m_bFromRegister) text += FromRegisterSuffix(m_language);
    if (m_equivalents.size() > 1) {
        text += EquivalentMovesLabel(m_language);
        for (size_t i = 0; i < m_equivalents.size(); ++i)
            text += (i ? L", " : L"") + widen(m_equivalents[i].text);
    }
    TChessboard after;
    if (makeBlack(m_position, m_chosen, after) != BLACK_MOVE_ILLEGAL && repeatsLine(after)) {
        text += L"\n" + PositionRepetitionWord(m_language);
        m_outcome.boxes.push_back({InformationTitle(m_language), ChosenMoveRepetitionBoxText(m_language)});
    }
    if (m_outcome.stopped) text += StoppedByUserSuffix(m_language);
    m_outcome.text = text;
}

DefenceOutcome DefenceTask::run() {
    setUp();
    m_job.m_bSolving.store(1);
    struct SolvingFlag {
        SolveJob& job;
        ~SolvingFlag() {
            job.m_bHeuristics = false;
            job.m_bSolving.store(0);
        }
    } solvingFlag{m_job};
    // 1. The task's own registers in place of the problem's, until the end.
    const RegisterSwap registers(m_job, m_plies, m_request.options);
    // 2. The fast look, in long stipulations only.
    if (m_plies >= QUICK_LOOK_MIN_PLIES) {
        std::vector<DefenceMove> quick;
        m_result.m_cResult = FindRefutationsQuickly(m_position, quick, m_request.thorough);
        if (m_result.m_cResult == RESULT_NO_MATE) m_result.refutations = quick;
        if (m_result.m_cResult == RESULT_MATE) m_solutions = quick;
    }
    // 3.-5. A single reply, or a single escape from the quick mates.
    findOnlyReply();
    // 6. The endgame tables may know every reply.
    askTables();
    // 7. A position that repeats one of the line is not analysed.
    if (lineRepeats()) return m_outcome;
    // 8. The register may know the position itself.
    askRegister();
    // 9./10. The full search.
    search();
    // 11. What stays undecided counts as no mate.
    if (negativeResult(m_result.m_cResult) && !m_result.m_bOnlyReply &&
        m_result.m_wRegisterDepth == REGISTER_DEPTH_UNKNOWN)
        m_result.m_cResult = RESULT_NO_MATE;
    // 12. A stop leaves no answer, unless a move is in hand already.
    m_outcome.stopped = stopped();
    if (m_outcome.stopped) {
        if (m_onlyReplyFound) {
            m_result.m_bOnlyReply = true;
            m_chosen = m_onlyMove;
        }
        if (m_searched) m_result.m_cResult = DEFENCE_RESULT_UNKNOWN;
    } else {
        // 13. The best move.
        chooseMove();
    }
    // 14. The register remembers a decided long task.
    storeResult();
    // 15. The text.
    composeText();
    return m_outcome;
}

} // namespace

DefenceOutcome FindBestDefence(SolveJob& job, const DefenceRequest& request) {
    if (!request.position || request.plies < 2 || (request.plies & 1))
        throw std::invalid_argument("the best defence needs Black to move with an even number of plies left");
    DefenceTask task(job, request);
    return task.run();
}

} // namespace zorvane
