#include "chessboard_register.h"

#include "core/chess_exception.h"
#include "register_log.h"

namespace zorvane {

namespace {

const char* incoherenceText(bool bDefence, bool bPolish) {
    if (bPolish)
        return bDefence ? "Sprzeczna informacja w TChessboardRegister::InsertDefence()"
                        : "Sprzeczna informacja w TChessboardRegister::Insert()";
    return "Incoherent information in TChessboardRegister::Insert()";
}

} // namespace

template <class TResult>
void TChessboardRegister<TResult>::Insert(uint16_t nMoves, const TChessboardRegisterItem& item,
                                          TResult bThereIsMate, const TMove* move, bool bSave) {
    insertAt(false, nMoves, item, bThereIsMate, move, bSave);
}

template <class TResult>
void TChessboardRegister<TResult>::InsertDefence(uint16_t nMoves, const TChessboardRegisterItem& item,
                                                 TResult bThereIsMate, const TMove* move, bool bSave) {
    insertAt(true, nMoves, item, bThereIsMate, move, bSave);
}

template <class TResult>
void TChessboardRegister<TResult>::insertAt(bool bDefence, uint16_t nMoves,
                                            const TChessboardRegisterItem& item, TResult bThereIsMate,
                                            const TMove* move, bool bSave) {
    // 1. Short levels may be switched off under memory pressure.
    if (!ShortLevels() && nMoves < REGISTER_SHORT_LEVELS) return;
    // 2. A full register purges, and drops the entry if that made no room.
    if (!makeRoom()) return;

    bool bFailed = false;
    {
        // 3. What is known already decides whether there is anything to add.
        TRegisterWriteGuard guard(m_csMap);
        const uint8_t known = bDefence ? LookupInsertedDefence(nMoves, item) : LookupInserted(nMoves, item);
        if (known != REGISTER_UNKNOWN) {
            if ((known == 1) == static_cast<bool>(bThereIsMate)) return;
            throw ChessException(incoherenceText(bDefence, m_bPolishTexts));
        }
        try {
            // 4. The entry itself.
            const TSubproblemRegisterInfo<TResult> info{nMoves, SUBPROBLEM_INFO_MARK, move ? *move : TMove{},
                                                        bThereIsMate};
            if (!m_map[nMoves].emplace(item, info).second) return;
            ElementsIn.fetch_add(1);
            // 5. Entries that the new one implies.
            if (m_bRemoveRedundant) removeRedundant(bDefence, nMoves, item, static_cast<bool>(bThereIsMate));
            // 6. Saving to the per-problem file belongs to the file layer; a
            // register with m_bNoFiles never saves.
            (void)bSave;
        } catch (...) {
            bFailed = true;
        }
    }
    // 7. Out of memory: the entry is lost, the search goes on. The purge runs
    // once the lock is released, as it takes this lock itself.
    if (bFailed) {
        logMessage("Exception caught in method TChessboardRegister::Insert", nMoves,
                   static_cast<int>(bThereIsMate));
        purgeAfterFailure();
    }
}

template <class TResult>
void TChessboardRegister<TResult>::removeRedundant(bool bDefence, uint16_t nMoves,
                                                   const TChessboardRegisterItem& item, bool bThereIsMate) {
    // The attacker: a mate in n implies every longer mate, an absence in n
    // every shorter absence. The defender's levels read the other way round.
    const bool removeAbove = bDefence ? !bThereIsMate : bThereIsMate;
    const unsigned parity = bDefence ? 0 : 1;
    for (auto& [level, positions] : m_map) {
        if ((level & 1u) != parity || level == nMoves) continue;
        if ((level > nMoves) != removeAbove) continue;
        const auto it = positions.find(item);
        if (it == positions.end() || static_cast<bool>(it->second.bThereIsMate) != bThereIsMate) continue;
        positions.erase(it);
        ElementsIn.fetch_sub(1);
    }
}

template <class TResult>
uint8_t TChessboardRegister<TResult>::LookupInserted(uint16_t nMoves, const TChessboardRegisterItem& item) {
    TRegisterReadGuard guard(m_csMap);
    for (const auto& [level, positions] : m_map) {
        if ((level & 1u) == 0) continue;
        const auto it = positions.find(item);
        if (it == positions.end()) continue;
        if (it->second.bThereIsMate && level <= nMoves) return 1;
        if (!it->second.bThereIsMate && level >= nMoves) return 0;
    }
    return REGISTER_UNKNOWN;
}

template <class TResult>
uint8_t TChessboardRegister<TResult>::LookupInsertedDefence(uint16_t nMoves,
                                                            const TChessboardRegisterItem& item) {
    TRegisterReadGuard guard(m_csMap);
    for (const auto& [level, positions] : m_map) {
        if ((level & 1u) != 0) continue;
        const auto it = positions.find(item);
        if (it == positions.end()) continue;
        if (it->second.bThereIsMate && level >= nMoves) return 1;
        if (!it->second.bThereIsMate && level <= nMoves) return 0;
    }
    return REGISTER_UNKNOWN;
}

template <class TResult>
const TSubproblemRegisterInfo<TResult>*
TChessboardRegister<TResult>::InsertedAt(uint16_t nMoves, const TChessboardRegisterItem& item) {
    TRegisterReadGuard guard(m_csMap);
    const auto level = m_map.find(nMoves);
    if (level == m_map.end()) return nullptr;
    const auto it = level->second.find(item);
    return it == level->second.end() ? nullptr : &it->second;
}

template <class TResult> void TChessboardRegister<TResult>::ClearInserted() {
    TRegisterWriteGuard guard(m_csMap);
    m_map.clear();
    ElementsIn.store(0);
    SetShortLevels(true);
}

template <class TResult> void TChessboardRegister<TResult>::SetMemoryLimit(uint64_t limitBytes) {
    m_uMemoryLimit = limitBytes;
    // Computed so that a limit near 2^64 cannot overflow.
    m_uNetMemoryLimit =
        limitBytes / 100 * REGISTER_NET_PERCENT + limitBytes % 100 * REGISTER_NET_PERCENT / 100;
    const uint64_t entries = m_uNetMemoryLimit / REGISTER_BYTES_PER_ENTRY;
    m_uMaxEntries.store(entries > std::numeric_limits<uint32_t>::max() ? std::numeric_limits<uint32_t>::max()
                                                                       : static_cast<uint32_t>(entries));
}

template <class TResult>
void TChessboardRegister<TResult>::logMessage(const char* message, int p1, int p2) const {
    if (m_pLog)
        m_pLog->Write(message, p1, p2, TotalEntries(), m_nSecondCount.load(std::memory_order_relaxed));
}

template <class TResult> bool TChessboardRegister<TResult>::makeRoom() {
    if (!Full()) return true;
    TChessboardRegister& root = m_pOwner ? *m_pOwner : *this;
    // No memory allowed at all: nothing to purge, and nothing may be stored.
    if (root.MaxEntries() == 0) return false;
    root.EmptySomeDataWhenRegisterFull(false);
    return !Full();
}

template <class TResult> void TChessboardRegister<TResult>::purgeAfterFailure() {
    (m_pOwner ? *m_pOwner : *this).EmptySomeDataWhenRegisterFull(false);
}

template class TChessboardRegister<bool>;

} // namespace zorvane
