#include "aggregated_register.h"

#include <algorithm>
#include <chrono>
#include <new>

namespace zorvane {

namespace {

uint64_t tickCountMs() {
    return static_cast<uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                     std::chrono::steady_clock::now().time_since_epoch())
                                     .count());
}

// One purge at a time in the whole program: the purge walks every register of
// an aggregate, and two of them at once would only fight over the same locks.
std::mutex& purgeSection() {
    static std::mutex s_csPurge;
    return s_csPurge;
}

// Whether the allocator can still hand out a small block. Called through the
// replaceable operator new, which the compiler may not leave out.
bool allocatorHasRoom() {
    void* volatile probe = ::operator new(REGISTER_PURGE_PROBE_BYTES, std::nothrow);
    if (!probe) return false;
    ::operator delete(probe);
    return true;
}

} // namespace

TAggregatedTemporaryChessboardRegister::TAggregatedTemporaryChessboardRegister(uint32_t bucketCount)
    : TTemporaryChessboardRegister<0>(bucketCount), m_uBucketCount(bucketCount) {
    const uint64_t now = tickCountMs();
    m_uLastEmptied.store(now > REGISTER_PURGE_FIRST_AGE_MS ? now - REGISTER_PURGE_FIRST_AGE_MS : 0);
}

// The doubtful registers go before the base, whose DoubtfulElementsIn they count down.
TAggregatedTemporaryChessboardRegister::~TAggregatedTemporaryChessboardRegister() = default;

uint32_t TAggregatedTemporaryChessboardRegister::CountAll() const {
    return ElementCount() + DoubtfulElementsIn() + ElementsIn.load();
}

uint32_t TAggregatedTemporaryChessboardRegister::RemoveDoubtfulEntries() {
    // RemoveDoubtful takes the same lock again (the writer may), and changes no
    // pin whose count is 0: the walk stays valid.
    TRegisterWriteGuard guard(PersistentMapLock());
    uint32_t removed = 0;
    for (const auto& [key, count] : m_pins)
        if (count == 0) removed += RemoveDoubtful(key.uHeuristics, key.uParams);
    return removed;
}

void TAggregatedTemporaryChessboardRegister::Resize(uint32_t bucketCount, bool bKeep) {
    std::lock_guard<std::mutex> create(m_csCreate);
    m_uBucketCount.store(bucketCount);
    TTemporaryChessboardRegister<0>::Resize(bucketCount, bKeep);
    TRegisterWriteGuard guard(PersistentMapLock());
    for (auto& [key, reg] : m_doubtful) reg->Resize(bucketCount, bKeep);
}

uint32_t TAggregatedTemporaryChessboardRegister::RemoveNMovers(uint16_t nMovers) {
    // 1.-3. The certain part, all records proven at up to nMovers plies.
    logMessage("TAggregatedTemporaryChessboardRegister::RemoveNMovers start.", nMovers, 0);
    logMessage("TTemporaryChessboardRegister::RemoveNMovers start.", nMovers, 0);
    uint32_t removed = Sweep(nMovers, nMovers);
    logMessage("TTemporaryChessboardRegister::RemoveNMovers complete.", nMovers, static_cast<int>(removed));
    // 4. The doubtful registers keep a NotDoubtful two plies longer: a proven
    // absence under heuristics costs a deeper search to find again.
    {
        const uint16_t maxNotDoubtful = nMovers < 2 ? 0 : static_cast<uint16_t>(nMovers - 2);
        TRegisterWriteGuard guard(PersistentMapLock());
        for (auto& [key, reg] : m_doubtful) removed += reg->Sweep(nMovers, maxNotDoubtful);
    }
    // 5.
    logMessage("TAggregatedTemporaryChessboardRegister::RemoveNMovers complete.", nMovers,
               static_cast<int>(removed));
    return removed;
}

uint32_t TAggregatedTemporaryChessboardRegister::RemoveDoubtful(uint32_t heuristics, uint32_t params) {
    const TDoubtfulKey key{heuristics, params};
    // 1.
    logMessage("RemoveDoubtful start.", static_cast<int>(heuristics), static_cast<int>(params));
    uint32_t removed = 0;
    {
        TRegisterWriteGuard guard(PersistentMapLock());
        // 2. A pinned register still has a holder: one holder lets go instead.
        const auto pin = m_pins.find(key);
        if (pin != m_pins.end() && pin->second > 0) {
            --pin->second;
            return 0;
        }
        // 3. DoubtfulElementsIn follows the clear (CountAlsoIn).
        if (TDoubtfulRegister* reg = findDoubtful(key))
            removed = static_cast<uint32_t>(reg->ClearCombined(true));
    }
    // 4.
    logMessage("RemoveDoubtful complete.", static_cast<int>(heuristics), static_cast<int>(removed));
    return removed;
}

void TAggregatedTemporaryChessboardRegister::Pin(uint32_t heuristics, uint32_t params) {
    TRegisterWriteGuard guard(PersistentMapLock());
    ++m_pins[TDoubtfulKey{heuristics, params}];
}

uint32_t TAggregatedTemporaryChessboardRegister::Pins(uint32_t heuristics, uint32_t params) {
    TRegisterReadGuard guard(PersistentMapLock());
    const auto pin = m_pins.find(TDoubtfulKey{heuristics, params});
    return pin == m_pins.end() ? 0 : pin->second;
}

void TAggregatedTemporaryChessboardRegister::StoreDoubtful(uint16_t nMoves,
                                                           const TChessboardRegisterItem& item,
                                                           uint32_t heuristics, uint32_t params,
                                                           bool bNotDoubtful, uint32_t hash) {
    // 1. A full quota purges first, before any lock is held; with no memory
    // allowed at all there is nothing to purge and nothing to store.
    if (TotalEntries() >= MaxEntries()) {
        if (MaxEntries() == 0) return;
        EmptySomeDataWhenRegisterFull(false);
    }
    // 2. The short levels that the purge gave up are not taken back.
    if (!ShortLevels() && nMoves == 3 && bNotDoubtful) return;

    // A doubtful register's MovesMate is Doubtful: "mate" marks the doubt.
    const bool bDoubt = !bNotDoubtful;
    const TDoubtfulKey key{heuristics, params};
    bool bFailed = false;
    {
        std::lock_guard<std::mutex> create(m_csCreate);
        try {
            if (TDoubtfulRegister* reg = findDoubtful(key)) {
                // 4. The store counts its new record in DoubtfulElementsIn (CountAlsoIn).
                reg->Store(nMoves, item, bDoubt, hash);
            } else {
                // 3. A new register, filled before the look-ups can see it.
                auto fresh = std::make_unique<TDoubtfulRegister>(m_uBucketCount.load());
                fresh->SetOwner(this);
                fresh->SetLog(Log());
                fresh->SetShortLevels(ShortLevels());
                fresh->CountAlsoIn(&m_nSecondCount);
                fresh->Store(nMoves, item, bDoubt, hash);
                TRegisterWriteGuard guard(PersistentMapLock());
                m_doubtful.emplace(key, std::move(fresh));
            }
        } catch (...) {
            bFailed = true;
        }
    }
    // 5. Out of memory: the result is lost, and memory is freed for the next.
    if (bFailed && MaxEntries() != 0) EmptySomeDataWhenRegisterFull(false);
}

int8_t TAggregatedTemporaryChessboardRegister::withDoubtful(uint8_t certain, uint16_t nMoves,
                                                            const TChessboardRegisterItem& item,
                                                            TDoubtfulKey key, uint32_t hash) const {
    if (certain != REGISTER_UNKNOWN) return static_cast<int8_t>(certain);
    // Only an absence of mate under the same heuristics counts; never 0, as it
    // is no proof.
    TDoubtfulRegister* reg = findDoubtful(key);
    if (reg && reg->LookupNoMate(nMoves, item, hash) == 0) return REGISTER_NO_MATE_UNDER_HEURISTICS;
    return REGISTER_UNKNOWN_SIGNED;
}

int8_t TAggregatedTemporaryChessboardRegister::LookupWithDoubtful(uint16_t nMoves,
                                                                  const TChessboardRegisterItem& item,
                                                                  uint32_t heuristics, uint32_t params,
                                                                  uint32_t hash) {
    TRegisterReadGuard guard(PersistentMapLock());
    return withDoubtful(Lookup(nMoves, item, hash), nMoves, item, TDoubtfulKey{heuristics, params}, hash);
}

int8_t TAggregatedTemporaryChessboardRegister::LookupWithBoundAndDoubtful(uint16_t nMoves,
                                                                          uint16_t lowerBound,
                                                                          const TChessboardRegisterItem& item,
                                                                          uint32_t heuristics,
                                                                          uint32_t params, uint32_t hash) {
    TRegisterReadGuard guard(PersistentMapLock());
    return withDoubtful(LookupWithBound(nMoves, lowerBound, item, hash), nMoves, item,
                        TDoubtfulKey{heuristics, params}, hash);
}

uint8_t TAggregatedTemporaryChessboardRegister::LookupDoubtfulInRange(uint16_t nMoves, uint16_t upperBound,
                                                                      const TChessboardRegisterItem& item,
                                                                      uint32_t heuristics, uint32_t params,
                                                                      uint32_t hash) {
    TRegisterReadGuard guard(PersistentMapLock());
    TDoubtfulRegister* reg = findDoubtful(TDoubtfulKey{heuristics, params});
    return reg ? reg->LookupInRange(nMoves, upperBound, item, hash) : REGISTER_UNKNOWN;
}

int TAggregatedTemporaryChessboardRegister::ShortestProvenMate(uint16_t nMoves,
                                                               const TChessboardRegisterItem& item,
                                                               uint32_t heuristics, uint32_t params,
                                                               uint32_t hash) {
    const int8_t answer = LookupWithDoubtful(nMoves, item, heuristics, params, hash);
    if (answer < 1 || nMoves == 1) return answer;
    // A mate here: the level below decides whether this is the shortest one.
    const int shorter = ShortestProvenMate(static_cast<uint16_t>(nMoves - 2), item, heuristics, params, hash);
    return shorter < 1 ? nMoves : shorter;
}

void TAggregatedTemporaryChessboardRegister::Clear(int8_t nMode, bool bNoProgress) {
    const TRegisterClearProgress progress = bNoProgress ? TRegisterClearProgress{} : m_clearProgress;
    if (nMode >= 0) TTemporaryChessboardRegister<0>::Clear(nMode != 0, progress);
    if (nMode <= 0) destroyDoubtful(progress);
}

void TAggregatedTemporaryChessboardRegister::destroyDoubtful(const TRegisterClearProgress& progress) {
    // The create section keeps stores out, the write lock look-ups.
    std::lock_guard<std::mutex> create(m_csCreate);
    TRegisterWriteGuard guard(PersistentMapLock());
    // Emptied one by one first, so that the progress shown stays true.
    for (auto& [key, reg] : m_doubtful) reg->ClearCombined(false, progress);
    m_doubtful.clear();
}

size_t TAggregatedTemporaryChessboardRegister::DoubtfulRegisterCount() {
    TRegisterReadGuard guard(PersistentMapLock());
    return m_doubtful.size();
}

bool TAggregatedTemporaryChessboardRegister::DoubtfulNumbers(const TChessboardRegisterItem& item,
                                                             uint32_t heuristics, uint32_t params,
                                                             TRegisterMoves& moves) {
    TRegisterReadGuard guard(PersistentMapLock());
    TDoubtfulRegister* reg = findDoubtful(TDoubtfulKey{heuristics, params});
    return reg && reg->Numbers(item, moves);
}

void TAggregatedTemporaryChessboardRegister::EmptySomeDataWhenRegisterFull(bool bSoft) {
    // 1.
    logMessage("EmptySomeDataWhenRegisterFull started", bSoft ? 1 : 0, 0);
    std::lock_guard<std::mutex> purge(purgeSection());
    // 2. Another thread has just done the work.
    if (tickCountMs() <= m_uLastEmptied.load() + REGISTER_PURGE_GUARD_MS) return;

    const uint32_t maxEntries = MaxEntries();
    uint64_t count = 0;
    bool bDone = false;
    // 3.-4. What is doubtful goes first. A periodic check leaves a register
    // alone while a quarter of it is free.
    if (bSoft) {
        if (freeEntries() >= int64_t{maxEntries / 4}) return;
        count = RemoveDoubtfulEntries();
        bDone = count > REGISTER_PURGE_SOFT_DOUBTFUL;
    } else {
        count = RemoveDoubtfulEntries();
        bDone = count > REGISTER_PURGE_URGENT_DOUBTFUL;
    }
    // 5. Then the short levels, the cheapest to find again. When they were not
    // worth much, they are not kept any more.
    if (!bDone && ShortLevels()) {
        count += RemoveNMovers(REGISTER_SHORT_LEVELS - 1);
        bDone = count > REGISTER_PURGE_URGENT_DOUBTFUL;
        if (count < maxEntries / 3) {
            SetShortLevels(false);
            TRegisterWriteGuard guard(PersistentMapLock());
            for (auto& [key, reg] : m_doubtful) reg->SetShortLevels(false);
        }
    }
    // 6. Then level by level upwards, the attacker's and the defender's below it.
    const uint64_t target =
        bSoft ? std::max<uint64_t>(maxEntries / REGISTER_PURGE_SOFT_DIVISOR, REGISTER_PURGE_SOFT_MINIMUM)
              : std::max<uint64_t>(maxEntries / REGISTER_PURGE_URGENT_DIVISOR, REGISTER_PURGE_URGENT_MINIMUM);
    for (uint16_t n = REGISTER_SHORT_LEVELS + 1; n <= REGISTER_PURGE_LAST_LEVEL;
         n = static_cast<uint16_t>(n + 2)) {
        // 6.1 Enough removed, and the allocator has room again.
        if (bDone && allocatorHasRoom()) break;
        // 6.2
        count += RemoveNMovers(n);
        count += RemoveNMovers(static_cast<uint16_t>(n - 1));
        // 6.3-6.4
        if (count > target) bDone = true;
        if (freeEntries() >= int64_t{maxEntries / 5}) bDone = true;
        // 6.5 Everything left is longer than any level the purge reaches. The
        // time is still noted, so that the crowd of full stores is held off.
        if (n == REGISTER_PURGE_LAST_LEVEL) {
            logMessage("!!!! EmptySomeDataWhenRegisterFull failed.", bSoft ? 1 : 0, static_cast<int>(count));
            m_uLastEmptied.store(tickCountMs());
            return;
        }
    }
    // 7.
    logMessage("EmptySomeDataWhenRegisterFull complete", bSoft ? 1 : 0, static_cast<int>(count));
    m_uLastEmptied.store(tickCountMs());
}

} // namespace zorvane
