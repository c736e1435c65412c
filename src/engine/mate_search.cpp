#include "engine/mate_search.h"

#include "core/chess_exception.h"
#include "core/make_move.h"
#include "core/movegen.h"
#include "core/thread_context.h"
#include "engine/find_mate.h"
#include "registers/temporary_register.h"

#include <chrono>
#include <stdexcept>

namespace zorvane {

MateProof::MateProof(bool safeMode, bool useRegister)
    : m_bUseRegister(useRegister), m_pContext(std::make_unique<TThreadContext>()), m_root(EmptyChessboard()) {
    m_problem.m_bSafeMode = safeMode ? 1 : 0;
}

MateProof::~MateProof() = default;

MateKeys MateProof::FindKeys(const TChessboard& root, int moves) {
    if (moves < 1 || moves > MAX_STIPULATION_MOVES)
        throw std::invalid_argument("the number of moves must lie between 1 and 255");
    const auto start = std::chrono::steady_clock::now();
    const auto plies = static_cast<uint16_t>(2 * moves - 1);

    // The root: strict set-up, the task check, the thread's state cleared.
    m_root = root;
    m_root.m_pProblem = &m_problem;
    m_root.m_pThread = m_pContext.get();
    m_root.m_shPliesLeft = m_root.m_shPliesTotal = plies;
    m_root.m_bPass = 2;
    SetupChessboard(m_root, false);
    if (m_root.m_cBlackChecker >= 0)
        throw ChessException("Black king cannot be checked in the mate task starting postition.");
    m_problem.m_shRepetitionLimit = plies;
    if (m_bUseRegister) {
        const uint32_t buckets = RegisterBucketCount(plies);
        if (!m_problem.m_pRegister) {
            m_problem.m_pRegister = std::make_unique<TProblemRegister>(buckets);
            m_problem.m_pRegister->SetMemoryLimit(REGISTER_MEMORY_LIMIT);
        } else if (m_problem.m_pRegister->BucketCount() != buckets) {
            m_problem.m_pRegister->Resize(buckets, true);
        }
    }
    m_problem.m_nNodes.store(0);
    m_pContext->ClearPlyArrays();
    const TChessboard* top = &m_root;
    while (top->m_pParent) top = top->m_pParent;
    m_pContext->m_pRoot = top;

    MateKeys result;
    TMove list[MAX_MOVES];
    const int count = GenerateWhiteMovesOrEvasions(m_root, list);
    m_nRootMoves.store(count, std::memory_order_relaxed);
    TChessboard& child = m_pContext->m_aBoards[plies];
    for (int i = 0; i < count; ++i) {
        if (m_problem.StopMeant(m_pContext->m_shThreadId)) {
            result.stopped = true;
            break;
        }
        m_pContext->m_aMoveIndex[plies] = static_cast<uint8_t>(i);
        m_nRootMove.store(i + 1, std::memory_order_relaxed);
        CopyToChild(child, m_root);
        TMove move = list[i];
        if (!MakeWhiteMove(child, move)) continue;
        const int8_t answer = FindMateBlackStep(child);
        if (m_problem.StopMeant(m_pContext->m_shThreadId)) {
            result.stopped = true;
            break;
        }
        if (answer != RESULT_MATE) continue;
        const bool capture = m_root.m_aSquares[move.to] != 0 || move.enPassant;
        result.keys.push_back(move);
        result.texts.push_back(FormatMove(move, m_root.m_aSquares[move.from], capture));
    }
    result.nodes = m_problem.m_nNodes.load();
    result.milliseconds =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    return result;
}

} // namespace zorvane
