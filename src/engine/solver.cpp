#include "engine/solver.h"

#include "core/thread_context.h"
#include "engine/find_mate.h"
#include "engine/register_eligibility.h"
#include "engine/threats.h"
#include "problems/notation.h"
#include "registers/aggregated_register.h"

#include <algorithm>
#include <stdexcept>

namespace zorvane {

namespace {

constexpr std::size_t STACK_BYTES_PER_PLY = 2048;
constexpr std::size_t MIN_STACK_BYTES = std::size_t{1} << 20;

// A copy of `position` that the engine's routines can run on, for a job that
// nothing else runs.
TChessboard searchable(SolveJob& job, TThreadContext& context, const TChessboard& position) {
    context.m_pJob = &job;
    TChessboard probe = position;
    probe.m_pThread = &context;
    probe.m_pProblem = &job.problem;
    return probe;
}

} // namespace

std::string AnalysedLineText(const TChessboard& root, const AnalysedLine& line) {
    std::vector<TChessboard> boards(static_cast<size_t>(line.length) + 1);
    boards[0] = root;
    std::string text;
    for (int i = 0; i < line.length; ++i) {
        const AnalysedMove& step = line.steps[i];
        TMove move = step.move;
        if (!PlayMove(boards[i], boards[i + 1], move)) break;
        // A line from a position with Black to move (a best defence) starts with Black's move.
        const int ply = root.whiteToMove() ? i : i + 1;
        const bool white = (ply & 1) == 0;
        if (i) text += ' ';
        text += std::to_string(ply / 2 + 1) + (white ? "." : "...") + FormatShortMove(boards[i + 1]) + " (" +
                std::to_string(step.index + 1) + "/" + std::to_string(step.count) + ")";
    }
    return text;
}

std::size_t SolveStackBytes(int plies) {
    return std::max(static_cast<std::size_t>(std::max(plies, 0)) * STACK_BYTES_PER_PLY, MIN_STACK_BYTES);
}

Solver::Solver() = default;

Solver::~Solver() {
    if (!m_started) return;
    Stop();
    m_thread.Join();
}

void Solver::Start(TChessProblem& problem, const SolveRequest& request, SolveCallbacks callbacks) {
    if (m_started) throw std::logic_error("a solve runs already; wait for it first");
    m_defenceRun = false;
    m_job = std::make_unique<SolveJob>(problem);
    m_job->callbacks = std::move(callbacks);
    m_result = SolveResult{};
    m_error = nullptr;
    const int plies = request.position ? request.plies : problem.plies;
    m_lineRoot = request.position ? *request.position : problem.startPosition;
    m_started = true;
    m_thread.Start(SolveStackBytes(plies), [this, request] {
        try {
            m_result = request.position ? m_driver.SolveFromPosition(*m_job, *request.position, request.plies,
                                                                     request.options)
                                        : m_driver.SolveProblem(*m_job, request.options);
        } catch (...) {
            m_error = std::current_exception();
        }
        if (m_job->callbacks.onFinished) m_job->callbacks.onFinished();
    });
}

void Solver::Stop() {
    if (m_job) m_job->SetCommand(COMMAND_STOP);
}

void Solver::Pause(bool firstThreadOnly) {
    if (m_job) m_job->SetCommand(COMMAND_PAUSE, firstThreadOnly ? uint16_t{0} : ALL_THREADS);
}

void Solver::Resume() {
    if (m_job) m_job->SetCommand(COMMAND_RUN);
}

SolveResult Solver::Wait() {
    if (!m_started) throw std::logic_error("no solve was started");
    if (m_defenceRun) throw std::logic_error("the run is a best defence; wait for it with WaitDefence");
    m_thread.Join();
    m_started = false;
    if (m_error) std::rethrow_exception(m_error);
    return m_result;
}

SolveResult Solver::Solve(TChessProblem& problem, const SolveRequest& request, SolveCallbacks callbacks) {
    Start(problem, request, std::move(callbacks));
    return Wait();
}

void Solver::StartDefence(TChessProblem& problem, const DefenceRequest& request,
                          std::function<void()> onFinished) {
    if (m_started) throw std::logic_error("a solve runs already; wait for it first");
    if (!request.position) throw std::invalid_argument("a best defence needs a position");
    m_defenceRun = true;
    m_job = std::make_unique<SolveJob>(problem);
    m_job->callbacks.onFinished = std::move(onFinished);
    m_defence = DefenceOutcome{};
    m_error = nullptr;
    m_lineRoot = *request.position;
    m_started = true;
    m_thread.Start(SolveStackBytes(request.plies), [this, request] {
        try {
            m_defence = FindBestDefence(*m_job, request);
        } catch (...) {
            m_error = std::current_exception();
        }
        if (m_job->callbacks.onFinished) m_job->callbacks.onFinished();
    });
}

DefenceOutcome Solver::WaitDefence() {
    if (!m_started) throw std::logic_error("no best defence was started");
    if (!m_defenceRun) throw std::logic_error("the run is a solve; wait for it with Wait");
    m_thread.Join();
    m_started = false;
    if (m_error) std::rethrow_exception(m_error);
    return m_defence;
}

DefenceOutcome Solver::Defend(TChessProblem& problem, const DefenceRequest& request) {
    StartDefence(problem, request);
    return WaitDefence();
}

SolveProgress Solver::Progress() const {
    if (!m_job) return {};
    SolveProgress progress = m_job->Progress();
    if (const TProblemRegister* reg = m_job->m_pShownRegister.load(std::memory_order_acquire)) {
        progress.hasRegister = true;
        progress.registerPositions = reg->ElementCount();
        progress.registerBytes = reg->BudgetedBytes();
    }
    progress.line = AnalysedLineText(m_lineRoot, m_job->Line());
    return progress;
}

std::string Solver::PreviewPasses(TChessProblem& problem, const SolveOptions& options) {
    SolveJob job(problem);
    SolveDriver driver;
    return driver.PreviewPasses(job, options);
}

KnownMate Solver::KnownMateOf(TChessProblem& problem, const TChessboard& position) {
    if (!position.whiteToMove()) return {};
    SolveJob job(problem);
    auto context = std::make_unique<TThreadContext>();
    TChessboard probe = searchable(job, *context, position);
    probe.m_shPliesLeft = probe.m_shPliesTotal = 1;
    if (FindMateInOne(probe)) return {KnownMate::AtOnce, 1};
    if (problem.m_pRegister && RegisterEligible(position)) {
        TRegisterMoves moves;
        if (problem.m_pRegister->Numbers(TChessboardRegisterItem::FromBoard(position), moves) &&
            moves.MovesMate != 0)
            return {KnownMate::Register, (moves.MovesMate + 1) / 2};
    }
    return {};
}

std::string Solver::FirstThreatOf(TChessProblem& problem, const TChessboard& position) {
    if (position.whiteToMove()) return {};
    SolveJob job(problem);
    auto context = std::make_unique<TThreadContext>();
    const std::vector<std::string> threats =
        FindThreats(searchable(job, *context, position), position.m_shPliesLeft / 2);
    return threats.empty() ? std::string() : threats.front();
}

uint64_t Solver::RegisterPositions(const TChessProblem& problem) {
    return problem.m_pRegister ? problem.m_pRegister->ElementCount() : 0;
}

} // namespace zorvane
