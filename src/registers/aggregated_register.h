#pragma once
// TAggregatedTemporaryChessboardRegister: the register of a solve. What it
// holds itself is proven; what was found under heuristics lives apart, in one
// doubtful register per set of heuristics, since a search that cut moves away
// may call a position "no mate" where a mate exists. The aggregate also keeps
// all of these inside one memory quota and decides what goes when it is used
// up: first what is doubtful, then what is cheapest to find again.
//
// A doubtful register is a temporary register whose two numbers mean other
// things: in the place of MovesMate stands `Doubtful` (an absence of mate at
// that many plies rests on cuts and is not to be relied on), in the place of
// MovesNoMate stands `NotDoubtful` (an absence of mate at that many plies
// holds under the same heuristics).
//
// Locks, in the order in which they are taken where more than one is held:
// the create section (taken alone by stores and clears of doubtful
// registers), the one purge section of the program, the persistent map's lock
// of the aggregate (it also guards the map of doubtful registers and the
// pins), and the combined-map lock of one register. Look-ups take only the
// reader sides of the last two.
#include "temporary_register.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

namespace zorvane {

// The set of heuristics a result was found under: the node's m_uHeuristics
// and m_uHeuristicParams.
struct TDoubtfulKey {
    uint32_t uHeuristics = 0;
    uint32_t uParams = 0;

    // One signed 64-bit value with the parameter word in the upper half: the
    // order of the registers, and of their sections in a saved register.
    int64_t Packed() const { return static_cast<int64_t>((uint64_t{uParams} << 32) | uHeuristics); }
};
inline bool operator<(TDoubtfulKey a, TDoubtfulKey b) {
    return a.Packed() < b.Packed();
}
inline bool operator==(TDoubtfulKey a, TDoubtfulKey b) {
    return a.Packed() == b.Packed();
}

using TDoubtfulRegister = TTemporaryChessboardRegister<1>;

// Look-up answers of the aggregate, read signed: the certain answers 1 and 0
// (and 2 of the bound form), then these two.
constexpr int8_t REGISTER_NO_MATE_UNDER_HEURISTICS = -1;
constexpr int8_t REGISTER_UNKNOWN_SIGNED = -2;

// The purge's tuned numbers.
// Two purges closer than this are one: the threads that all found the
// register full at once must not purge in turn.
constexpr uint64_t REGISTER_PURGE_GUARD_MS = 16;
// A register made new counts as purged this long ago, so the first purge runs.
constexpr uint64_t REGISTER_PURGE_FIRST_AGE_MS = 100;
// Removing more doubtful entries than this is enough for a purge.
constexpr uint32_t REGISTER_PURGE_SOFT_DOUBTFUL = 0x40000;
constexpr uint32_t REGISTER_PURGE_URGENT_DOUBTFUL = 4096;
// The least that a purge of levels removes (the share of m_uMaxEntries may ask for more).
constexpr uint32_t REGISTER_PURGE_SOFT_MINIMUM = 0x80000;
constexpr uint32_t REGISTER_PURGE_URGENT_MINIMUM = 4096;
constexpr uint32_t REGISTER_PURGE_SOFT_DIVISOR = 12;
constexpr uint32_t REGISTER_PURGE_URGENT_DIVISOR = 25;
// The highest ply count that the purge of levels reaches.
constexpr uint16_t REGISTER_PURGE_LAST_LEVEL = 255;
// Bytes of the allocation that tells whether a purge has left the allocator room.
constexpr size_t REGISTER_PURGE_PROBE_BYTES = 1024;

class TAggregatedTemporaryChessboardRegister : public TTemporaryChessboardRegister<0> {
  public:
    // `bucketCount` buckets for the certain part and for every doubtful register made later.
    explicit TAggregatedTemporaryChessboardRegister(uint32_t bucketCount = 0);
    ~TAggregatedTemporaryChessboardRegister() override;

    // ---- The three virtual operations, in their order.
    // Everything counted against the quota: the certain combined map, the
    // doubtful registers and the persistent map.
    uint32_t CountAll() const override;
    // (SecondCount, inherited: DoubtfulElementsIn.)
    // Wipes the doubtful register of every key whose pins have all gone.
    uint32_t RemoveDoubtfulEntries() override;

    // Frees memory, first what is doubtful, then short levels, then level by
    // level upwards. bSoft: a periodic check, which does nothing while a
    // quarter of the quota is free.
    void EmptySomeDataWhenRegisterFull(bool bSoft) override;

    // Whether the periodic check of the search has work to do: less than a
    // quarter of the quota is free. Cheap, so the search may ask it often.
    bool SoftPurgeDue() const { return freeEntries() < int64_t{MaxEntries() / 4}; }

    // Sum of the element counts of all doubtful registers.
    uint32_t DoubtfulElementsIn() const { return m_nSecondCount.load(); }

    // A new bucket count for the certain part and every doubtful register, and
    // for those made later. An array of the same size is kept (bKeep) or
    // emptied; another size is made anew. Hides the certain part's Resize.
    void Resize(uint32_t bucketCount, bool bKeep);
    uint32_t DoubtfulBucketCount() const { return m_uBucketCount.load(); }

    // Removes the certain entries up to `nMovers` plies, and the doubtful ones
    // marked up to `nMovers` whose proven absence reaches no higher than
    // `nMovers` - 2. Returns the entries removed.
    uint32_t RemoveNMovers(uint16_t nMovers);
    // Wipes one doubtful register, unless its key is pinned: then one pin goes
    // instead. Returns the entries removed.
    uint32_t RemoveDoubtful(uint32_t heuristics, uint32_t params);
    // One more holder of a key: its register survives one RemoveDoubtful more.
    void Pin(uint32_t heuristics, uint32_t params);
    uint32_t Pins(uint32_t heuristics, uint32_t params);

    // ---- Doubtful results.
    // Stores into the register of the key: bNotDoubtful raises NotDoubtful,
    // otherwise Doubtful is lowered to nMoves.
    void StoreDoubtful(uint16_t nMoves, const TChessboardRegisterItem& item, uint32_t heuristics,
                       uint32_t params, bool bNotDoubtful, uint32_t hash);
    void StoreDoubtful(uint16_t nMoves, const TChessboardRegisterItem& item, uint32_t heuristics,
                       uint32_t params, bool bNotDoubtful) {
        StoreDoubtful(nMoves, item, heuristics, params, bNotDoubtful, item.hash());
    }

    // 1 proven mate, 0 proven no mate, -1 no mate under these heuristics, -2 unknown.
    int8_t LookupWithDoubtful(uint16_t nMoves, const TChessboardRegisterItem& item, uint32_t heuristics,
                              uint32_t params, uint32_t hash);
    int8_t LookupWithDoubtful(uint16_t nMoves, const TChessboardRegisterItem& item, uint32_t heuristics,
                              uint32_t params) {
        return LookupWithDoubtful(nMoves, item, heuristics, params, item.hash());
    }
    // As LookupWithBound of the certain part (0, 1, 2, -2), and -1 as above.
    int8_t LookupWithBoundAndDoubtful(uint16_t nMoves, uint16_t lowerBound,
                                      const TChessboardRegisterItem& item, uint32_t heuristics,
                                      uint32_t params, uint32_t hash);
    int8_t LookupWithBoundAndDoubtful(uint16_t nMoves, uint16_t lowerBound,
                                      const TChessboardRegisterItem& item, uint32_t heuristics,
                                      uint32_t params) {
        return LookupWithBoundAndDoubtful(nMoves, lowerBound, item, heuristics, params, item.hash());
    }
    // The range look-up asked of the doubtful register of the key: 1 when the
    // position is marked Doubtful at `upperBound` plies or above (and no
    // NotDoubtful reaches up to nMoves), 0 otherwise, 254 when not there.
    uint8_t LookupDoubtfulInRange(uint16_t nMoves, uint16_t upperBound, const TChessboardRegisterItem& item,
                                  uint32_t heuristics, uint32_t params, uint32_t hash);
    // The shortest level at which a mate is proven, asked from nMoves down in
    // steps of 2; or, when nMoves itself gives no mate, that answer (0, -1, -2).
    int ShortestProvenMate(uint16_t nMoves, const TChessboardRegisterItem& item, uint32_t heuristics,
                           uint32_t params, uint32_t hash);
    int ShortestProvenMate(uint16_t nMoves, const TChessboardRegisterItem& item, uint32_t heuristics,
                           uint32_t params) {
        return ShortestProvenMate(nMoves, item, heuristics, params, item.hash());
    }

    // ---- Clear. Mode 1: the certain part and the persistent map, keeping the
    // array; 0: the same, freeing the array, and every doubtful register
    // destroyed; negative: the doubtful registers destroyed, nothing else.
    // Pins stay: they belong to the passes that hold them. Hides the certain
    // part's Clear, whose bool reads as mode 1 or 0.
    void Clear(int8_t nMode, bool bNoProgress = false);
    // Where a clear that shows progress shows it.
    void SetClearProgress(const TRegisterClearProgress& progress) { m_clearProgress = progress; }

    // ---- For tests, diagnostics and the file writer.
    size_t DoubtfulRegisterCount();
    // The numbers (Doubtful, NotDoubtful) of a position under a key, or false.
    bool DoubtfulNumbers(const TChessboardRegisterItem& item, uint32_t heuristics, uint32_t params,
                         TRegisterMoves& moves);
    // fn(key, register) for every doubtful register in key order, under the
    // lock that keeps them alive; fn must not store into the aggregate.
    template <class Fn> void ForEachDoubtful(Fn&& fn) {
        TRegisterReadGuard guard(PersistentMapLock());
        for (auto& [key, reg] : m_doubtful) fn(key, *reg);
    }
    // Milliseconds of the steady clock at the end of the last purge.
    uint64_t LastEmptied() const { return m_uLastEmptied.load(); }

  private:
    using TDoubtfulMap = std::map<TDoubtfulKey, std::unique_ptr<TDoubtfulRegister>>;

    // The register of a key or null; no allocation. The caller holds the
    // persistent map's lock or the create section.
    TDoubtfulRegister* findDoubtful(TDoubtfulKey key) const {
        const auto it = m_doubtful.find(key);
        return it == m_doubtful.end() ? nullptr : it->second.get();
    }
    // Answer of the certain part, made -1 when it knows nothing and the
    // doubtful register of the key holds an absence of mate.
    int8_t withDoubtful(uint8_t certain, uint16_t nMoves, const TChessboardRegisterItem& item,
                        TDoubtfulKey key, uint32_t hash) const;
    void destroyDoubtful(const TRegisterClearProgress& progress);
    // The free part of the quota, negative when it is overdrawn.
    int64_t freeEntries() const { return int64_t{MaxEntries()} - int64_t{TotalEntries()}; }

    TDoubtfulMap m_doubtful;
    std::map<TDoubtfulKey, uint32_t> m_pins;
    std::mutex m_csCreate;
    std::atomic<uint64_t> m_uLastEmptied;
    std::atomic<uint32_t> m_uBucketCount;
    TRegisterClearProgress m_clearProgress;
};

} // namespace zorvane
