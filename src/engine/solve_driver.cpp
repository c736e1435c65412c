#include "engine/solve_driver.h"

#include "core/castling.h"
#include "core/chess_exception.h"
#include "core/fen.h"
#include "core/make_move.h"
#include "core/movegen.h"
#include "core/thread_context.h"
#include "engine/command_poll.h"
#include "engine/find_mate.h"
#include "engine/find_forced_mate.h"
#include "engine/heuristic_relaxation.h"
#include "engine/heuristics_catalogue.h"
#include "engine/heuristics_choice.h"
#include "engine/move_ordering.h"
#include "engine/relaxation_path.h"
#include "engine/register_eligibility.h"
#include "engine/register_hooks.h"
#include "engine/solve_texts.h"
#include "global_register/table_set.h"
#include "engine/threats.h"
#include "problems/notation.h"
#include "registers/aggregated_register.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <stdexcept>
#include <thread>

namespace zorvane {

namespace {

using Clock = std::chrono::steady_clock;

// Status of a root move in the pass loop: negative is open (not yet tried, or
// doubtful), 0 refuted, 1 a solution, REFUSED never playable.
constexpr int STATUS_OPEN = -1;
constexpr int STATUS_REFUSED = 254;
// Heuristics under which a pass after the first is still worth running when a
// solution is already known.
constexpr uint32_t SH_SEARCH_ON_AFTER_SOLUTION = 0x80004u;
constexpr auto PAUSE_WAIT = std::chrono::milliseconds(100);

// One run of a solve: the problem, the thread, the options and the result.
struct Run {
    SolveJob& job;
    const TChessProblem& problem;
    TThreadContext& ctx;
    const SolveOptions& options;
    SolveResult& result;
    Clock::time_point start;
    bool allSolutions;
    // Root moves proved with the register's help in a screen, and by a search.
    int fromRegister = 0;
    int searched = 0;
    // Relaxations of the heuristics made in this solve: passes 1b, 1c...
    int relaxations = 0;

    double elapsed() const {
        const double paused = static_cast<double>(job.m_nPausedMicroseconds.load()) / 1000.0;
        return std::chrono::duration<double, std::milli>(Clock::now() - start).count() - paused;
    }
};

std::string EnPassantMisfitText(int square) {
    std::string name = "?";
    if (square >= 0 && square < 64) {
        name = "a1";
        name[0] = static_cast<char>('a' + colOf(square));
        name[1] = static_cast<char>('1' + rowOf(square));
    }
    return "The en passant square " + name +
           " does not fit the position: with White to move it lies on the sixth row, behind a black pawn "
           "that has just made a double step.";
}

// Sizes (or makes) the problem's register for a run of `plies`, and lends it to the job.
void prepareRegister(SolveJob& job, int plies, const SolveOptions& options) {
    TChessProblem& problem = job.problem;
    job.m_pRegister = nullptr;
    if (!options.useRegister) return;
    const uint32_t buckets = RegisterBucketCount(static_cast<uint16_t>(plies));
    if (!problem.m_pRegister) {
        problem.m_pRegister = std::make_shared<TProblemRegister>(buckets);
    } else if (problem.m_pRegister->BucketCount() != buckets) {
        problem.m_pRegister->Resize(buckets, true);
    } else if (options.clearRegisterOnStart) {
        problem.m_pRegister->Clear(1);
    }
    problem.m_pRegister->SetMemoryLimit(options.registerMemoryLimit);
    job.m_pRegister = problem.m_pRegister.get();
    job.m_pShownRegister.store(job.m_pRegister, std::memory_order_release);
}

// The set of heuristics the solve starts with: the automatic choice, unless
// the run is asked to bet on nothing. Only ordered searches bet, and a solve
// of fewer than 4 plies has nothing to gain from bets.
constexpr int HEURISTICS_MIN_PLIES = 4;
void chooseHeuristics(SolveJob& job, TThreadContext& ctx, TChessboard& root, const SolveOptions& options) {
    root.m_uHeuristics = 0;
    root.m_uHeuristicParams = 0;
    static_cast<TSpecialHeuristicsParams&>(ctx) = TSpecialHeuristicsParams{};
    job.m_solveWideHeuristics = SolveWideHeuristicParams{};
    HeuristicPassTimes& times = job.m_passTimes;
    times.m_uStartTicks = times.m_uPassStartTicks = SystemTicks();
    std::fill(std::begin(times.m_aPassTicks), std::end(times.m_aPassTicks), 0);
    if (options.heuristics && options.moveOrdering && root.m_shPliesLeft >= HEURISTICS_MIN_PLIES) {
        InitialPositionTypeCheck(root, ctx);
        ctx.m_bLetRelax = options.relaxHeuristics;
        ctx.m_bPass2 = options.passWithoutHeuristics;
        // The problem's own options set and override what the choice made.
        ApplyHeuristicOptions(job.problem.heuristicOptions, root, ctx, job.m_solveWideHeuristics);
        ParkForcedMateForPreliminaryPass(root, ctx);
        root.m_uHeuristicParams = CalcHeuristicParams(root, ctx, root, 0);
    }
    job.m_bHeuristics = root.m_uHeuristics != 0;
}

// The task check: the side not to move must not stand in check.
void checkTask(const TChessboard& root, int plies) {
    if ((plies & 1) && root.m_cBlackChecker >= 0) throw ChessException(BLACK_KING_CHECKED_TEXT);
    if (!(plies & 1) && root.m_cWhiteChecker >= 0) throw ChessException(WHITE_KING_CHECKED_TEXT);
}

// The tables answer the search when they hold the root's men: the flag is
// inherited by every position below, each looked up by its own men. The
// set-up clears the flag, so this follows every set-up of the root.
void useTables(SolveJob& job, TChessboard& root, const SolveOptions& options) {
    job.m_pTables = options.tables && options.tables->Covers(root) ? options.tables : nullptr;
    if (job.m_pTables)
        root.m_wFlags |= FLAG_GLOBAL_REGISTER;
    else
        root.m_wFlags &= static_cast<uint16_t>(~FLAG_GLOBAL_REGISTER);
}

// Sets the root up strictly for `plies` left and runs the task check.
void setUpRoot(TChessboard& root, int plies) {
    root.m_shPliesLeft = root.m_shPliesTotal = static_cast<uint16_t>(plies);
    SetupChessboard(root, false);
    checkTask(root, plies);
}

// Pass 0: no search. A root move all of whose replies are answered as mates by
// the register (or, unless `registerOnly`, by a mate at once) is a solution.
bool screenedMate(Run& run, TChessboard& child, bool registerOnly) {
    TMove replies[MAX_MOVES];
    const int count = GenerateBlackMovesOrEvasions(child, replies);
    TChessboard& reply = run.ctx.m_aBoards[child.m_shPliesLeft];
    const bool askRegister = run.job.m_pRegister && child.m_shPliesTotal >= REGISTER_MIN_TOTAL_PLIES;
    bool anyLegal = false;
    int fromRegister = 0;
    for (int i = 0; i < count; ++i) {
        CopyToChild(reply, child);
        const int made = MakeBlackMove(reply, replies[i], false);
        if (made == BLACK_MOVE_ILLEGAL) continue;
        if (made == BLACK_MOVE_BEATS_WHITE) return false;
        anyLegal = true;
        if (askRegister && search_hooks::ProbeTemporaryRegister<RegisterSearch>(reply) == RESULT_MATE) {
            ++fromRegister;
            continue;
        }
        if (!registerOnly && reply.m_shPliesLeft >= 1 && FindMateInOne(reply)) continue;
        return false;
    }
    if (anyLegal && fromRegister) ++run.fromRegister;
    return anyLegal || (!registerOnly && child.m_cBlackChecker >= 0);
}

// White's moves at the root of a depth: the mates at once for one ply, all
// moves otherwise, ordered when more than three plies are searched.
int rootMoves(TChessboard& root, int plies, TMove* list) {
    int count = GenerateWhiteMovesOrEvasions(root, list);
    if (plies == 1) {
        TChessboard& child = root.m_pThread->m_aBoards[1];
        int mates = 0;
        for (int i = 0; i < count; ++i) {
            // The move as made: it carries the maker's notes (an en passant capture).
            TMove move = list[i];
            if (MatesAtOnce(root, child, move)) list[mates++] = move;
        }
        return mates;
    }
    if (plies > 3 && root.m_pThread->m_pJob->m_bMoveOrdering) {
        WhiteSortOutcome sorted;
        count = SortWhiteMoves(root, list, count, true, sorted);
    }
    return count;
}

int legalCount(TChessboard& root, const TMove* list, int count) {
    TChessboard& child = root.m_pThread->m_aBoards[root.m_shPliesLeft];
    int legal = 0;
    for (int i = 0; i < count; ++i) {
        CopyToChild(child, root);
        TMove move = list[i];
        legal += MakeWhiteMove(child, move) ? 1 : 0;
    }
    return legal;
}

// A solution proved: noted in the run and told to the window.
void noteSolution(Run& run, const TChessboard& root, const TMove& move, int place, int plies, int pass) {
    const std::string text = MoveTextOn(root, move);
    SolveResult& result = run.result;
    if (result.solutions.count(move)) return;
    result.solutions[move].plies = plies;
    result.solutions[move].pass = PassName(pass, run.relaxations);
    if (pass == 1 && RunsForcedMate(root, plies))
        result.solutions[move].ffm = FfmLevelText(run.ctx.m_nFfmLevel);
    result.moves.push_back(move);
    result.texts.push_back(text);
    result.keyPositions.push_back(place);
    if (run.job.callbacks.onSolution) run.job.callbacks.onSolution({move, text, run.elapsed()});
}

// Whether the flags of the run end it with the solutions found so far.
bool enoughSolutions(Run& run, size_t found) {
    const uint16_t flags = run.problem.flags;
    if (!run.allSolutions) return true;
    if ((flags & StopOnDual) && found >= 2) {
        run.result.stoppedOnDual = true;
        return true;
    }
    if ((flags & StopOn3Sol) && found >= 3) {
        run.result.stoppedOnThree = true;
        return true;
    }
    return false;
}

// One step of relaxation of the root's set, logged before and after when the
// option asks for it.
int relaxOneStep(Run& run, TChessboard& root) {
    SolveJob& job = run.job;
    TThreadContext& ctx = run.ctx;
    const std::filesystem::path& log = run.options.relaxationLog;
    if (!log.empty())
        LogRelaxation(log, ctx.m_shThreadId, true,
                      GetSpecialHeuristicsText(root, ctx, job.m_solveWideHeuristics));
    const int relaxed = TryRelaxSpecialHeuristics(root, ctx, job.m_solveWideHeuristics, job.m_passTimes, {});
    if (!log.empty())
        LogRelaxation(log, ctx.m_shThreadId, false,
                      GetSpecialHeuristicsText(root, ctx, job.m_solveWideHeuristics));
    return relaxed;
}

// The pass loop at one depth: passes 0 (the register screen), 1 (with the
// heuristics, relaxed in passes 1b, 1c...) and 2 (without). Appends each proved
// root move to `found`; 1 if at least one exists.
int passLoop(Run& run, TChessboard& root, int plies, std::vector<TMove>& found) {
    SolveJob& job = run.job;
    TThreadContext& ctx = run.ctx;
    // 3. The root of this depth.
    root.m_shPliesLeft = static_cast<uint16_t>(plies);
    root.m_bPass = 1;
    ctx.m_shRootPlies = static_cast<uint16_t>(plies);
    // 5. The list.
    TMove list[MAX_MOVES];
    const int count = rootMoves(root, plies, list);
    job.m_nRootMoves.store(static_cast<uint8_t>(plies == 1 ? count : legalCount(root, list, count)));
    ctx.m_apMoves[plies] = list;
    ctx.m_aMoveCount[plies] = static_cast<uint8_t>(count);
    // 7. A status per move; a copy of the root to restore.
    int status[MAX_MOVES];
    std::fill(status, status + count, STATUS_OPEN);
    const TChessboard saved = root;
    const TSpecialHeuristicsParams savedParams = ctx;
    const size_t foundBefore = found.size();
    auto finish = [&](int answer) {
        root = saved;
        static_cast<TSpecialHeuristicsParams&>(ctx) = savedParams;
        return answer;
    };
    // One ply: the list holds the mates themselves.
    if (plies == 1) {
        for (int i = 0; i < count; ++i) {
            found.push_back(list[i]);
            noteSolution(run, root, list[i], i + 1, plies, 1);
            ++run.searched;
            if (enoughSolutions(run, found.size())) return finish(1);
        }
        return finish(count > 0 ? 1 : 0);
    }
    const bool screen = !run.options.clearRegisterOnStart;
    TChessboard& child = ctx.m_aBoards[plies];
    for (int pass = screen ? 0 : 1, first = 1; pass <= 2; ++pass, first = 0) {
        // a. A later pass has nothing to add once a solution is in hand, unless
        // all solutions are wanted: their open moves may still be keys.
        if (!first && found.size() > foundBefore && !run.allSolutions &&
            !(root.m_uHeuristics & SH_SEARCH_ON_AFTER_SOLUTION))
            break;
        // b. The last pass: relax the heuristics first while that is wanted.
        if (pass == 2 && root.m_uHeuristics) {
            // What was found under the old set is of no use under the next.
            if (job.m_pRegister) job.m_pRegister->RemoveDoubtful(root.m_uHeuristics, root.m_uHeuristicParams);
            const bool wanted =
                plies > 1 && run.options.relaxHeuristics && (run.allSolutions || found.empty());
            const int relaxed = wanted ? relaxOneStep(run, root) : 0;
            if (relaxed) {
                pass = 1;
                job.m_nRelaxations.store(static_cast<uint8_t>(std::min(++run.relaxations, 255)));
            } else {
                root.m_uHeuristics = 0;
                root.m_uHeuristicParams = 0;
            }
        }
        // c. The pass without heuristics may be switched off.
        if (pass == 2 && !run.options.passWithoutHeuristics) break;
        // d. Nothing open: everything is settled.
        if (std::none_of(status, status + count, [](int s) { return s < 0; })) break;
        job.m_nPass.store(static_cast<uint8_t>(pass));
        job.m_passTimes.m_uPassStartTicks = SystemTicks();
        // With no heuristic in force pass 1 bets on nothing: it searches as
        // the deciding pass, so that no doubt is left for pass 2 to redo.
        root.m_bPass = static_cast<uint8_t>(pass == 2 || root.m_uHeuristics == 0 ? 2 : 1);
        job.m_nRootMovesBegun.store(0);
        for (int i = 0; i < count; ++i) {
            if (status[i] >= 0) continue;
            // e. The command word, as at every move of the search.
            int8_t commanded;
            const Command command = PollCommand(job, ctx, plies, list, count, i, commanded);
            if (command == Command::Return) {
                run.result.stopped = true;
                return finish(found.size() > foundBefore ? 1 : 0);
            }
            if (command == Command::Jumped) {
                --i;
                continue;
            }
            ctx.m_aMoveIndex[plies] = static_cast<uint8_t>(i);
            job.m_nRootMovesBegun.store(static_cast<uint8_t>(i + 1));
            // f. The move.
            CopyToChild(child, root);
            TMove move = list[i];
            if (!MakeWhiteMove(child, move)) {
                status[i] = STATUS_REFUSED;
                continue;
            }
            // g./h. The screen asks and searches nothing; later passes search.
            int8_t answer;
            if (pass == 0) {
                answer = screenedMate(run, child, false) ? RESULT_MATE : RESULT_DOUBTFUL;
            } else {
                answer = RunsForcedMate(root, plies) ? FindForcedMate(child) : FindMateBlackStep(child);
                if (job.StopMeant(ctx.m_shThreadId)) {
                    run.result.stopped = true;
                    return finish(found.size() > foundBefore ? 1 : 0);
                }
            }
            status[i] = answer == RESULT_MATE ? 1 : answer == RESULT_NO_MATE ? 0 : STATUS_OPEN;
            if (status[i] == 1) {
                found.push_back(move);
                noteSolution(run, root, move, i + 1, plies, pass);
                if (pass > 0) ++run.searched;
                if (enoughSolutions(run, found.size())) return finish(1);
            }
            job.NoteLine(ctx, plies, plies - 1);
        }
    }
    return finish(found.size() > foundBefore ? 1 : 0);
}

// The result text of a solve of the start position.
std::wstring problemResultText(const Run& run, int moves) {
    const SolveResult& result = run.result;
    const int language = run.options.languageId;
    if (result.moves.empty()) {
        if (result.stopped) return AnalysisStoppedText(language);
        NoSolutionNotes notes;
        notes.relaxationOff = !run.options.relaxHeuristics;
        notes.passWithoutHeuristicsOff = !run.options.passWithoutHeuristics;
        notes.quickMode = !run.job.m_bSafeMode;
        return NoSolutionText(moves, result.milliseconds, notes, language);
    }
    std::wstring text;
    if (result.stoppedOnDual)
        text = DualStopText(language) + L"\n";
    else if (result.stoppedOnThree)
        text = ThreeSolutionsStopText(language) + L"\n";
    else if (result.moves.size() > 1)
        text = SeveralSolutionsText(static_cast<int>(result.moves.size()), language) + L"\n";
    for (size_t i = 0; i < result.moves.size(); ++i) {
        const SolutionEntry& entry = result.solutions.at(result.moves[i]);
        if (i) text += L"\n";
        const int entryMoves = (entry.plies + 1) / 2;
        if (entryMoves < moves) text += OrLessText(entryMoves, language);
        text += std::wstring(result.texts[i].begin(), result.texts[i].end());
        for (size_t t = 0; t < entry.threats.size(); ++t) {
            text += t ? L", " : L" " + ThreatLabel(language);
            text += std::wstring(entry.threats[t].begin(), entry.threats[t].end());
        }
    }
    if (result.fromRegister) text += FromRegisterSuffix(language);
    if (result.stopped) text += StoppedByUserSuffix(language);
    text += SecondsText(result.milliseconds);
    return text;
}

// The threats of each solution, computed on the root after the run.
void addThreats(Run& run, TChessboard& root) {
    TChessboard& child = run.ctx.m_aBoards[root.m_shPliesLeft];
    for (const TMove& key : run.result.moves) {
        SolutionEntry& entry = run.result.solutions[key];
        root.m_shPliesLeft = root.m_shPliesTotal = static_cast<uint16_t>(entry.plies);
        CopyToChild(child, root);
        TMove move = key;
        if (MakeWhiteMove(child, move)) entry.threats = FindThreats(child, (entry.plies - 1) / 2);
    }
}

// The whole solution below the keys, timed on its own.
void addTree(Run& run, const TChessboard& root, int moves) {
    const auto start = Clock::now();
    run.job.m_bBuildingTree.store(1);
    run.result.tree = BuildSolutionTree(root, moves, run.result.moves, run.options.tree);
    run.result.treeMilliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    run.job.m_bBuildingTree.store(0);
}

// Starts a run: the settings of the job, the clock, the counters, the display cleared.
Run beginRun(SolveJob& job, TThreadContext& ctx, const SolveOptions& options, SolveResult& result) {
    const TChessProblem& problem = job.problem;
    Run run{job,
            problem,
            ctx,
            options,
            result,
            Clock::now(),
            options.allSolutions || (problem.flags & AllSolutions)};
    job.m_bSafeMode = SafeModeFor(problem, options.quickMode) ? 1 : 0;
    job.m_bMoveOrdering = options.moveOrdering;
    job.expectedSortWhiteMoves = problem.expectedSortWhiteMoves;
    job.m_bSolving.store(1);
    job.m_nNodes.store(0);
    job.m_nPausedMicroseconds.store(0);
    job.m_nPass.store(0);
    job.m_nRootMovesBegun.store(0);
    ctx.ClearPlyArrays();
    if (job.callbacks.onSolution) job.callbacks.onSolution({});
    return run;
}

void endRun(Run& run) {
    run.result.nodes = run.job.m_nNodes.load();
    run.result.milliseconds = run.elapsed();
    run.result.rootMoves = run.job.m_nRootMoves.load();
    run.result.fromRegister = !run.result.moves.empty() && run.searched == 0 && run.fromRegister > 0;
    run.result.safeMode = run.job.m_bSafeMode != 0;
    run.result.expectedSortWhiteMoves = run.job.expectedSortWhiteMoves;
    // The doubts of the run's sets mean nothing to the next run; the proofs stay.
    if (run.job.m_pRegister) run.job.m_pRegister->Clear(-1);
    run.job.m_bSolving.store(0);
}

// The root of a run: a copy on the thread, which works for the job.
TChessboard rootOf(SolveJob& job, TThreadContext& ctx, const TChessboard& position) {
    TChessboard root = position;
    root.m_pProblem = &job.problem;
    root.m_pThread = &ctx;
    ctx.m_pJob = &job;
    ctx.m_bDeniedCastling = job.m_bDeniedCastling;
    return root;
}

// The sort indications in force for this solve: the main variant's moves when
// the problem asks for them and has one, else its own indications.
void activateSortIndications(SolveJob& job, int languageId) {
    const TChessProblem& problem = job.problem;
    const TVariant* mainVariant = nullptr;
    for (const std::wstring& name : MainVariantNames) {
        const auto found = problem.variants.find(name);
        if (found != problem.variants.end()) {
            mainVariant = &found->second;
            break;
        }
    }
    try {
        job.activeSortIndications =
            ChooseActiveSortIndications(problem.useMainVariantAsSortIndications != 0, mainVariant,
                                        problem.startPosition, false, problem.sortIndications, languageId);
    } catch (const ChessException&) {
        // A variant whose moves make no indication leaves the problem's own.
        job.activeSortIndications = problem.sortIndications;
    }
}

// Castling rights are measured from the top of the root's chain.
void noteChainTop(TThreadContext& ctx, const TChessboard& root) {
    const TChessboard* top = &root;
    while (top->m_pParent) top = top->m_pParent;
    ctx.m_pRoot = top;
}

} // namespace

std::vector<int> DepthsToTry(int plies, int known) {
    std::vector<int> depths{plies};
    if (plies > 1) depths.push_back(1);
    if (known > 0 && known < plies) depths.push_back(known);
    const int steps[][2] = {{3, 4}, {5, 6}, {7, 9}, {9, 11}, {11, 13}};
    for (const auto& [depth, above] : steps)
        if (plies > above) depths.push_back(depth);
    if (plies > 15 && !(known > 0 && known <= 13)) depths.push_back(13);
    std::sort(depths.begin(), depths.end());
    depths.erase(std::unique(depths.begin(), depths.end()), depths.end());
    return depths;
}

SolveDriver::SolveDriver() : m_pContext(std::make_unique<TThreadContext>()) {}
SolveDriver::~SolveDriver() = default;

SolveResult SolveDriver::SolveProblem(SolveJob& job, const SolveOptions& options) {
    SolveResult result;
    TThreadContext& ctx = *m_pContext;
    const TChessProblem& problem = job.problem;
    const int plies = problem.plies;
    if (problem.type != PROBLEM_DIRECT_MATE || !(plies & 1))
        throw ChessException("Only mate problems (type=1) supported currently.");
    job.m_bDeniedCastling = options.start.deniedCastling;
    TChessboard root = rootOf(job, ctx, problem.startPosition);
    root.m_pParent = nullptr;
    root.m_LastMove = TMove{};
    if (options.start.enPassantSquare >= 0 &&
        !SetUpDoubleStepHistory(root, m_beforeDoubleStep, options.start.enPassantSquare))
        throw ChessException(EnPassantMisfitText(options.start.enPassantSquare));
    noteChainTop(ctx, root);
    setUpRoot(root, plies);
    useTables(job, root, options);
    prepareRegister(job, plies, options);
    activateSortIndications(job, options.languageId);
    job.m_shRepetitionLimit = static_cast<uint16_t>(plies);
    chooseHeuristics(job, ctx, root, options);
    result.heuristics = GetSpecialHeuristicsText(root, ctx, job.m_solveWideHeuristics);
    Run run = beginRun(job, ctx, options, result);
    std::vector<TMove> found;
    passLoop(run, root, plies, found);
    endRun(run);
    if (!result.stopped) addThreats(run, root);
    if (!result.stopped && options.tree.build) addTree(run, root, (plies + 1) / 2);
    result.text = problemResultText(run, (plies + 1) / 2);
    return result;
}

std::string SolveDriver::PreviewPasses(SolveJob& job, const SolveOptions& options) {
    TThreadContext& ctx = *m_pContext;
    job.m_bDeniedCastling = options.start.deniedCastling;
    TChessboard root = rootOf(job, ctx, job.problem.startPosition);
    root.m_pParent = nullptr;
    noteChainTop(ctx, root);
    setUpRoot(root, job.problem.plies);
    chooseHeuristics(job, ctx, root, options);
    return ShowRelaxationPath(root, ctx, job.m_solveWideHeuristics);
}

SolveResult SolveDriver::SolveFromPosition(SolveJob& job, const TChessboard& position, int plies,
                                           const SolveOptions& options) {
    SolveResult result;
    TThreadContext& ctx = *m_pContext;
    job.m_bDeniedCastling = 0;
    TChessboard root = rootOf(job, ctx, position);
    noteChainTop(ctx, root);
    setUpRoot(root, plies);
    useTables(job, root, options);
    // Black to move is the defence search's task, not this road's.
    if (!(plies & 1)) throw std::invalid_argument("a solve from a position needs White to move");
    prepareRegister(job, plies, options);
    activateSortIndications(job, options.languageId);
    job.m_shRepetitionLimit = static_cast<uint16_t>(plies);
    chooseHeuristics(job, ctx, root, options);
    result.heuristics = GetSpecialHeuristicsText(root, ctx, job.m_solveWideHeuristics);
    Run run = beginRun(job, ctx, options, result);

    // 6./8. The known shortest mate and the depths.
    int known = 0;
    TRegisterMoves numbers;
    if (job.m_pRegister && job.m_pRegister->Numbers(TChessboardRegisterItem::FromBoard(root), numbers))
        known = numbers.MovesMate;
    const std::vector<int> depths = DepthsToTry(plies, known);

    // Sweep 0: what the register already knows, nothing searched.
    if (job.m_pRegister && RegisterEligible(root)) {
        TMove list[MAX_MOVES];
        for (const int depth : depths) {
            if (depth <= 1) continue;
            root.m_shPliesLeft = root.m_shPliesTotal = static_cast<uint16_t>(depth);
            const int count = GenerateWhiteMovesOrEvasions(root, list);
            TChessboard& child = ctx.m_aBoards[depth];
            for (int i = 0; i < count; ++i) {
                CopyToChild(child, root);
                TMove move = list[i];
                if (MakeWhiteMove(child, move) && screenedMate(run, child, true) &&
                    !result.solutions.count(move)) {
                    noteSolution(run, root, move, i + 1, depth, 0);
                }
            }
        }
    }
    // Sweep 1: the search, depth by depth.
    for (const int depth : depths) {
        if (!result.moves.empty() && !run.allSolutions) break;
        while (job.m_nCommand.load() == COMMAND_PAUSE) std::this_thread::sleep_for(PAUSE_WAIT);
        if (job.m_nCommand.load() > COMMAND_JUMP || result.stopped) break;
        setUpRoot(root, depth);
        useTables(job, root, options);
        ctx.ClearPlyArrays();
        // A key keeps the depth at which it was first noted: the smallest, as the depths rise.
        std::vector<TMove> found;
        passLoop(run, root, depth, found);
        if (result.stoppedOnDual || result.stoppedOnThree) break;
    }
    root.m_shPliesLeft = root.m_shPliesTotal = static_cast<uint16_t>(plies);
    endRun(run);
    if (!result.stopped) addThreats(run, root);
    const int language = options.languageId;
    if (result.moves.empty()) {
        result.text = result.stopped ? AnalysisStoppedText(language)
                                     : NoSolutionFromPositionText(result.milliseconds,
                                                                  !options.passWithoutHeuristics, language);
    } else {
        result.text = problemResultText(run, (plies + 1) / 2);
        int shortest = plies;
        for (const auto& [move, entry] : result.solutions) shortest = std::min(shortest, entry.plies);
        result.text += L" >> #" + std::to_wstring((shortest + 1) / 2);
    }
    return result;
}

} // namespace zorvane
