#include "engine/relaxation_path.h"

#include "core/make_move.h"
#include "core/thread_context.h"
#include "engine/heuristic_relaxation.h"
#include "engine/heuristics_catalogue.h"

#include <cstdio>
#include <ctime>
#include <fstream>
#include <memory>
#include <mutex>
#include <vector>

namespace zorvane {

namespace {

constexpr const char* NO_HEURISTICS_TEXT = "No heuristics selected.";
constexpr const char* TIME_DEPENDENT_NOTE =
    "\n\n* time-dependent relaxation (non-deterministic) - possible, but actually occurs only if all "
    "previous passes are completed in a short time";
// The sea snake's "only after" list in the preview is cut at this many moves.
constexpr size_t SEA_SNAKE_SHOWN_MOVES = 64;

std::mutex& logLock() {
    static std::mutex lock;
    return lock;
}

// The moves after which the sea snake starts, numbered, played from the root.
std::string seaSnakeAfterText(const TChessboard& root, const SolveWideHeuristicParams& solveWide) {
    const std::vector<TMove>& moves = solveWide.m_aSeaSnakeOnlyAfter;
    if (moves.size() >= SEA_SNAKE_SHOWN_MOVES) return ", SH_SEASNAKE(after many moves only)";
    std::string text = ", SH_SEASNAKE(after ";
    TChessboard boards[2] = {root, root};
    for (size_t i = 0; i < moves.size(); ++i) {
        const TChessboard& before = boards[i % 2];
        TChessboard& after = boards[(i + 1) % 2];
        TMove move = moves[i];
        char number[32];
        std::snprintf(number, sizeof number, "%zd. ", i + 1);
        text +=
            number + FormatMove(move, before.m_aSquares[move.from], before.m_aSquares[move.to] != 0) + " ";
        CopyToChild(after, before);
        if (before.whiteToMove() ? !MakeWhiteMove(after, move)
                                 : MakeBlackMove(after, move, true) == BLACK_MOVE_ILLEGAL)
            break;
    }
    return text + "only)";
}

} // namespace

std::string ShowRelaxationPath(const TChessboard& root, const TSpecialHeuristicsParams& params,
                               const SolveWideHeuristicParams& solveWide) {
    if (!root.m_uHeuristics) return NO_HEURISTICS_TEXT;
    // A thread of its own for the preview: the relaxation works on a thread's record.
    auto ctx = std::make_unique<TThreadContext>();
    static_cast<TSpecialHeuristicsParams&>(*ctx) = params;
    TChessboard board = root;
    board.m_pParent = nullptr;
    board.m_pThread = ctx.get();
    ctx->m_pRoot = &board;
    SolveWideHeuristicParams wide = solveWide;
    // The clock stands still at now, so that the time rule offers a step only
    // where it would fit.
    HeuristicPassTimes times;
    const uint64_t now = SystemTicks();
    times.m_uStartTicks = now;
    times.m_uPassStartTicks = now;
    RelaxationHooks hooks;
    hooks.now = [now] { return now; };

    std::string text = "Pass 1: " + GetSpecialHeuristicsText(board, *ctx, wide);
    if (!wide.m_aSeaSnakeOnlyAfter.empty()) text += seaSnakeAfterText(board, wide);
    bool timeDependent = false;
    for (char letter = 'b'; board.m_uHeuristics && letter <= 'z'; ++letter) {
        const int relaxed = TryRelaxSpecialHeuristics(board, *ctx, wide, times, hooks);
        if (!relaxed) break;
        const bool byTime = relaxed == RELAXED_BY_TIME;
        timeDependent |= byTime;
        text += std::string("\n\nPass 1") + letter + (byTime ? "*" : "") + ": " +
                GetSpecialHeuristicsText(board, *ctx, wide);
    }
    if (timeDependent) text += TIME_DEPENDENT_NOTE;
    return text;
}

void LogRelaxation(const std::filesystem::path& file, int thread, bool before, const std::string& set) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char stamp[80];
    std::snprintf(stamp, sizeof stamp, "%d-%02d-%02d %02d:%02d:%02d", local.tm_year + 1900, local.tm_mon + 1,
                  local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
    std::lock_guard<std::mutex> guard(logLock());
    std::ofstream out(file, std::ios::app);
    out << stamp << ' ' << (before ? "BEFORE" : "AFTER ") << " th=" << thread << ' ' << set << '\n';
}

} // namespace zorvane
