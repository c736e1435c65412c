#include "temporary_register.h"

#include "core/position_id.h"

namespace zorvane {

std::string RegisterConflictText(const TChessboardRegisterItem& item, uint16_t nMoves, bool bThereIsMate,
                                 TRegisterMoves moves) {
    std::string id;
    try {
        id = ToAlphanum6(ChessboardIdFromSquares(item.m_aSquares));
    } catch (...) {
        id = "?"; // a key that is no position still deserves its numbers
    }
    return id + "\n\nnMoves=" + std::to_string(nMoves) +
           ", bThereIsMate=" + std::to_string(bThereIsMate ? 1 : 0) +
           "\nMovesMate=" + std::to_string(moves.MovesMate) +
           ", MovesNoMate=" + std::to_string(moves.MovesNoMate);
}

template <int nKind> TTemporaryChessboardRegister<nKind>::TTemporaryChessboardRegister(uint32_t bucketCount) {
    m_bNoFiles = true;
    m_map.Allocate(bucketCount);
}

template <int nKind> TTemporaryChessboardRegister<nKind>::~TTemporaryChessboardRegister() {
    if (m_pAlsoCounted) m_pAlsoCounted->fetch_sub(m_nElementsInMap.load());
}

template <int nKind> void TTemporaryChessboardRegister<nKind>::Resize(uint32_t bucketCount, bool bKeep) {
    if (bucketCount == m_map.BucketCount()) {
        if (!bKeep) ClearCombined(true);
        return;
    }
    TRegisterWriteGuard guard(m_csCombined);
    uncount(m_map.Allocate(bucketCount));
}

template <int nKind>
void TTemporaryChessboardRegister<nKind>::Store(uint16_t nMoves, const TChessboardRegisterItem& item,
                                                bool bThereIsMate, uint32_t hash) {
    // 1. Short levels may be switched off under memory pressure.
    if (!ShortLevels() && nMoves < REGISTER_SHORT_LEVELS) return;
    // A full register drops the result, unless its owner's purge makes room:
    // it can be found again by searching.
    if (!makeRoom()) return;
    const bool bRepair = !(m_pCoherencyLatch && m_pCoherencyLatch->load(std::memory_order_relaxed));

    // 2.-5. Find or make the record and add the result to it.
    TRegisterStoreOutcome outcome;
    try {
        TRegisterWriteGuard guard(m_csCombined);
        outcome = m_map.Store(item, hash, nMoves, bThereIsMate, bRepair);
        if (outcome.bAdded) {
            m_nElementsInMap.fetch_add(1);
            if (m_pAlsoCounted) m_pAlsoCounted->fetch_add(1);
        }
    } catch (...) {
        // 6. The guard has released the lock; the result is lost, not the search.
        logMessage("Exception caught in method TChessboardRegister::Insert", nMoves, bThereIsMate ? 1 : 0);
        purgeAfterFailure();
        return;
    }
    // 4. A contradiction kept while the latch is set is shown, outside the lock:
    // a message box must not hold up the other threads.
    if (outcome.bConflict && m_bCheckCoherency && m_pfnConflictReport)
        m_pfnConflictReport(m_pConflictUser, RegisterConflictText(item, nMoves, bThereIsMate, outcome.moves),
                            "Error");
}

template <int nKind>
bool TTemporaryChessboardRegister<nKind>::Numbers(const TChessboardRegisterItem& item,
                                                  TRegisterMoves& moves) {
    TRegisterReadGuard guard(m_csCombined);
    const TRegisterMoves* found = m_map.Find(item, item.hash());
    if (found) moves = *found;
    return found != nullptr;
}

template <int nKind>
void TTemporaryChessboardRegister<nKind>::Clear(bool bKeepArray, const TRegisterClearProgress& progress) {
    ClearCombined(bKeepArray, progress);
    ClearInserted();
}

template <int nKind>
uint64_t TTemporaryChessboardRegister<nKind>::ClearCombined(bool bKeepArray,
                                                            const TRegisterClearProgress& progress) {
    using Clock = std::chrono::steady_clock;
    TRegisterWriteGuard guard(m_csCombined);
    auto lastRepaint = Clock::now();
    uint64_t subtracted = 0;
    const uint64_t freed = m_map.Clear(bKeepArray, [&](uint64_t freedSoFar) {
        if (!progress.pfnRepaint) return;
        const auto now = Clock::now();
        if (now - lastRepaint < progress.interval) return;
        lastRepaint = now;
        uncount(freedSoFar - subtracted);
        subtracted = freedSoFar;
        progress.pfnRepaint(progress.user);
    });
    uncount(freed - subtracted);
    return freed;
}

template <int nKind>
uint32_t TTemporaryChessboardRegister<nKind>::Sweep(uint16_t maxMate, uint16_t maxNoMate) {
    TRegisterWriteGuard guard(m_csCombined);
    const uint64_t removed = m_map.Sweep(maxMate, maxNoMate);
    uncount(removed);
    return static_cast<uint32_t>(removed);
}

template class TTemporaryChessboardRegister<0>;
template class TTemporaryChessboardRegister<1>;

} // namespace zorvane
