#pragma once
// TTemporaryChessboardRegister: the register of one problem's solve. It holds
// the persistent map of its base and the combined map that the search fills,
// each under its own lock; no operation holds both locks at once.
//
// The search asks it at every White node with enough plies left and stores
// every result it has proven, so look-ups stay free of allocation, of virtual
// calls and of any lock but the map's own reader-writer lock. A store may
// allocate: the first entry of a bucket makes its vector (room for 8), and
// the ninth turns the bucket into a tree; the search pays that only for new
// positions. A store beyond the memory limit has the owner purge first, and is
// dropped when that makes no room.
#include "chessboard_register.h"
#include "register_combined_map.h"
#include "register_item.h"
#include "register_lock.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>

namespace zorvane {

// Buckets of a problem's register: a short problem does not need the big array.
constexpr uint32_t REGISTER_SMALL_BUCKETS = 16384;
constexpr uint32_t REGISTER_LARGE_BUCKETS = 524288;
constexpr uint32_t RegisterBucketCount(uint16_t plies) {
    return plies < 15 ? REGISTER_SMALL_BUCKETS : REGISTER_LARGE_BUCKETS;
}

// Clearing a large array takes seconds; the window shows the true count meanwhile.
constexpr std::chrono::milliseconds REGISTER_CLEAR_REPAINT_INTERVAL{600};
struct TRegisterClearProgress {
    // Called, with the counters already lowered, at most once per interval.
    void (*pfnRepaint)(void* user) = nullptr;
    void* user = nullptr;
    std::chrono::milliseconds interval = REGISTER_CLEAR_REPAINT_INTERVAL;
};

// Shows a contradiction found by a store: the text and the title "Error".
using TRegisterConflictReport = void (*)(void* user, const std::string& text, const char* title);

// The text of a contradiction: the position id, then the store and the numbers.
std::string RegisterConflictText(const TChessboardRegisterItem& item, uint16_t nMoves, bool bThereIsMate,
                                 TRegisterMoves moves);

// The flag tells the two instances apart; both behave alike here.
template <int nKind> class TTemporaryChessboardRegister : public TChessboardRegister<bool> {
    static_assert(nKind == 0 || nKind == 1);

  public:
    explicit TTemporaryChessboardRegister(uint32_t bucketCount = 0);
    // Takes its records off the counter given to CountAlsoIn.
    ~TTemporaryChessboardRegister() override;

    // Slot 0: the entries of the combined map.
    uint32_t CountAll() const override { return m_nElementsInMap.load(); }
    uint32_t ElementCount() const { return m_nElementsInMap.load(); }

    // A new bucket count. An array of the same size is kept (bKeep) or
    // emptied; an array of another size is emptied, freed and made anew.
    void Resize(uint32_t bucketCount, bool bKeep);
    uint32_t BucketCount() const { return m_map.BucketCount(); }

    // ---- Store. A full register first has its owner purge (makeRoom); the
    // store is dropped when there is still no room, or no array.
    void Store(uint16_t nMoves, const TChessboardRegisterItem& item, bool bThereIsMate, uint32_t hash);
    void Store(uint16_t nMoves, const TChessboardRegisterItem& item, bool bThereIsMate) {
        Store(nMoves, item, bThereIsMate, item.hash());
    }

    // ---- Look-ups: 254 for a position that is not there.
    // 0 proven no mate, 1 proven mate.
    uint8_t Lookup(uint16_t nMoves, const TChessboardRegisterItem& item, uint32_t hash) {
        return ask(item, hash, [nMoves](TRegisterMoves m) { return AttackerAnswer(m, nMoves); });
    }
    uint8_t Lookup(uint16_t nMoves, const TChessboardRegisterItem& item) {
        return Lookup(nMoves, item, item.hash());
    }
    // As Lookup; 2 for a mate that takes longer than nMoves, when nMoves is not below the bound.
    uint8_t LookupWithBound(uint16_t nMoves, uint16_t lowerBound, const TChessboardRegisterItem& item,
                            uint32_t hash) {
        return ask(item, hash, [=](TRegisterMoves m) { return BoundAnswer(m, nMoves, lowerBound); });
    }
    uint8_t LookupWithBound(uint16_t nMoves, uint16_t lowerBound, const TChessboardRegisterItem& item) {
        return LookupWithBound(nMoves, lowerBound, item, item.hash());
    }
    // 1 or 0 for mates that may be shorter than the present level (RangeAnswer).
    uint8_t LookupInRange(uint16_t nMoves, uint16_t upperBound, const TChessboardRegisterItem& item,
                          uint32_t hash) {
        return ask(item, hash, [=](TRegisterMoves m) { return RangeAnswer(m, nMoves, upperBound); });
    }
    uint8_t LookupInRange(uint16_t nMoves, uint16_t upperBound, const TChessboardRegisterItem& item) {
        return LookupInRange(nMoves, upperBound, item, item.hash());
    }
    // 0 for a proven absence of mate, else 254.
    uint8_t LookupNoMate(uint16_t nMoves, const TChessboardRegisterItem& item, uint32_t hash) {
        return ask(item, hash, [nMoves](TRegisterMoves m) { return AbsenceAnswer(m, nMoves); });
    }
    uint8_t LookupNoMate(uint16_t nMoves, const TChessboardRegisterItem& item) {
        return LookupNoMate(nMoves, item, item.hash());
    }
    // The two numbers of a position, or false; for tests and the file writer.
    bool Numbers(const TChessboardRegisterItem& item, TRegisterMoves& moves);

    // Empties both maps and sets the short-level switch again; the array is
    // kept or freed. Progress is shown while the buckets are walked.
    void Clear(bool bKeepArray, const TRegisterClearProgress& progress = {});
    // Empties the combined map only; returns the records freed.
    uint64_t ClearCombined(bool bKeepArray, const TRegisterClearProgress& progress = {});
    // The partial purge of the combined map under its write lock (see
    // TRegisterCombinedMap::Sweep); returns the records removed.
    uint32_t Sweep(uint16_t maxMate, uint16_t maxNoMate);

    // A second counter that follows the element count: every record made or
    // freed is counted there too, under the map's lock, so that the sum an
    // aggregate keeps of its registers never runs behind or ahead of them.
    void CountAlsoIn(std::atomic<uint32_t>* counter) { m_pAlsoCounted = counter; }

    // ---- Contradictions between a mate and an absence of mate.
    // The solve-wide latch of the heuristics' admission test: while it is clear
    // (or not given) a store repairs a contradiction in silence.
    void SetCoherencyLatch(const std::atomic<bool>* latch) { m_pCoherencyLatch = latch; }
    void SetConflictReport(TRegisterConflictReport report, void* user) {
        m_pfnConflictReport = report;
        m_pConflictUser = user;
    }
    // The option that shows a kept contradiction.
    bool m_bCheckCoherency = true;

    // The map itself, for tests and diagnostics; take no reference across stores.
    const TRegisterCombinedMap& CombinedMap() const { return m_map; }
    TRegisterLock& CombinedMapLock() { return m_csCombined; }

  private:
    template <class Answer> uint8_t ask(const TChessboardRegisterItem& item, uint32_t hash, Answer answer) {
        TRegisterReadGuard guard(m_csCombined);
        const TRegisterMoves* moves = m_map.Find(item, hash);
        return moves ? answer(*moves) : REGISTER_UNKNOWN;
    }
    // Lowers the element count and the second counter, if any.
    void uncount(uint64_t records) {
        m_nElementsInMap.fetch_sub(static_cast<uint32_t>(records));
        if (m_pAlsoCounted) m_pAlsoCounted->fetch_sub(static_cast<uint32_t>(records));
    }

    TRegisterCombinedMap m_map;
    TRegisterLock m_csCombined;
    const std::atomic<bool>* m_pCoherencyLatch = nullptr;
    TRegisterConflictReport m_pfnConflictReport = nullptr;
    void* m_pConflictUser = nullptr;
    std::atomic<uint32_t>* m_pAlsoCounted = nullptr;
};

extern template class TTemporaryChessboardRegister<0>;
extern template class TTemporaryChessboardRegister<1>;

} // namespace zorvane
