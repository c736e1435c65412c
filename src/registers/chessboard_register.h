#pragma once
// TChessboardRegister<bool>: the base of every register, and the persistent
// map that it owns.
//
// The persistent map keeps results with the move that achieves them, level by
// level: an ordered map by ply count of ordered maps by position. It is small
// (results near the root, best defences) and is what the per-problem files
// save. The bulk of the search's memory is the combined map of the derived
// TTemporaryChessboardRegister.
//
// The base also holds what all registers share: the switches, the element
// counters that the memory limit is measured by, the limit itself and the
// owner whose budget the counts go to.
#include "core/move.h"
#include "register_combined_map.h"
#include "register_item.h"
#include "register_lock.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>

namespace zorvane {

class CRegisterLog;

// Written into every persistent entry and into the files that save them; the
// register itself never reads it back.
constexpr uint16_t SUBPROBLEM_INFO_MARK = 970;

template <class TResult> struct TSubproblemRegisterInfo {
    uint16_t nMoves;
    uint16_t wMark;
    TMove move;
    TResult bThereIsMate;
};
static_assert(offsetof(TSubproblemRegisterInfo<bool>, nMoves) == 0);
static_assert(offsetof(TSubproblemRegisterInfo<bool>, wMark) == 2);
static_assert(offsetof(TSubproblemRegisterInfo<bool>, move) == 4);
static_assert(offsetof(TSubproblemRegisterInfo<bool>, bThereIsMate) == 8);
static_assert(sizeof(TSubproblemRegisterInfo<bool>) == 10);

// Budget of one position in memory: the limit in bytes is turned into a count
// of entries, so that a store compares counters and never measures memory.
constexpr uint64_t REGISTER_BYTES_PER_ENTRY = 96;
// Share of the limit given to entries; the rest is the allocator's reserve.
constexpr unsigned REGISTER_NET_PERCENT = 73;
// Entries below this ply count are the first to go under memory pressure.
constexpr uint16_t REGISTER_SHORT_LEVELS = 4;

template <class TResult> class TChessboardRegister {
  public:
    using TLevelMap = std::map<TChessboardRegisterItem, TSubproblemRegisterInfo<TResult>>;
    using TPersistentMap = std::map<unsigned short, TLevelMap>;

    TChessboardRegister() = default;
    virtual ~TChessboardRegister() = default;
    TChessboardRegister(const TChessboardRegister&) = delete;
    TChessboardRegister& operator=(const TChessboardRegister&) = delete;

    // ---- The three virtual operations, in this order, then the purge.
    // Count of all entries.
    virtual uint32_t CountAll() const { return ElementsIn.load(); }
    virtual uint32_t SecondCount() const { return m_nSecondCount.load(); }
    // Nothing to do here; an aggregate of registers removes its doubtful entries.
    virtual uint32_t RemoveDoubtfulEntries() { return 0; }
    // Frees memory when the budget is used up (bSoft: a periodic check rather
    // than a store that found no room). A register on its own has nothing it
    // may throw away, so a full one just drops what comes; an aggregate purges.
    virtual void EmptySomeDataWhenRegisterFull(bool bSoft) { (void)bSoft; }

    // ---- The persistent map.
    // An attacker's result; `nMoves` is odd. `move` may be null. Throws
    // ChessException when the map already holds the opposite answer.
    void Insert(uint16_t nMoves, const TChessboardRegisterItem& item, TResult bThereIsMate, const TMove* move,
                bool bSave);
    // A defender's result; `nMoves` is even.
    void InsertDefence(uint16_t nMoves, const TChessboardRegisterItem& item, TResult bThereIsMate,
                       const TMove* move, bool bSave);
    // 1 mate known, 0 no mate known, 254 nothing known, at attacker (odd) or
    // defender (even) levels.
    uint8_t LookupInserted(uint16_t nMoves, const TChessboardRegisterItem& item);
    uint8_t LookupInsertedDefence(uint16_t nMoves, const TChessboardRegisterItem& item);
    // The entry kept at exactly one level, or null; for tests and the file writer.
    const TSubproblemRegisterInfo<TResult>* InsertedAt(uint16_t nMoves, const TChessboardRegisterItem& item);
    // Empties the persistent map and sets the short-level switch again. The
    // second count is left alone: it counts what an aggregate keeps elsewhere.
    void ClearInserted();

    // ---- Memory budget.
    // Turns a limit in bytes into m_uMaxEntries.
    void SetMemoryLimit(uint64_t limitBytes);
    uint64_t MemoryLimit() const { return m_uMemoryLimit; }
    uint64_t NetMemoryLimit() const { return m_uNetMemoryLimit; }
    uint32_t MaxEntries() const { return m_uMaxEntries.load(std::memory_order_relaxed); }
    // All entries counted against the budget of this register's owner (or its
    // own): persistent, combined and second counts. Three atomic loads, so
    // that every store can afford it.
    uint32_t TotalEntries() const {
        const TChessboardRegister& root = m_pOwner ? *m_pOwner : *this;
        return root.ElementsIn.load(std::memory_order_relaxed) +
               root.m_nElementsInMap.load(std::memory_order_relaxed) +
               root.m_nSecondCount.load(std::memory_order_relaxed);
    }
    // The memory the entries take, as the budget counts it.
    uint64_t BudgetedBytes() const { return uint64_t{TotalEntries()} * REGISTER_BYTES_PER_ENTRY; }
    // Whether the owner's budget (or this register's own) is used up.
    bool Full() const { return TotalEntries() >= (m_pOwner ? *m_pOwner : *this).MaxEntries(); }

    // ---- Switches and links.
    bool ShortLevels() const { return m_bShortLevels.load(std::memory_order_relaxed); }
    // Cleared under memory pressure: entries under 4 plies are then not kept.
    void SetShortLevels(bool bKeep) { m_bShortLevels.store(bKeep, std::memory_order_relaxed); }
    void SetOwner(TChessboardRegister* owner) { m_pOwner = owner; }
    TChessboardRegister* Owner() const { return m_pOwner; }
    void SetLog(CRegisterLog* log) { m_pLog = log; }
    CRegisterLog* Log() const { return m_pLog; }
    // The lock of the persistent map; an aggregate guards its doubtful registers with it too.
    TRegisterLock& PersistentMapLock() { return m_csMap; }

    // Entries of the persistent map.
    std::atomic<uint32_t> ElementsIn{0};

    // Insert removes the entries that a new one makes redundant; cleared while
    // a saved register is read back, where every entry is wanted as it was.
    bool m_bRemoveRedundant = true;
    // A register that never touches the disk.
    bool m_bNoFiles = false;
    // The interface language of the error texts.
    bool m_bPolishTexts = false;

  protected:
    // A message of the register log, with the counters.
    void logMessage(const char* message, int p1, int p2) const;
    // Whether a store may go ahead: when the budget is used up, the owner (or
    // this register) purges first, unless its limit is 0, and the store goes
    // ahead only if that made room. Call it before taking any lock: the purge
    // takes the locks of every register of the aggregate.
    bool makeRoom();
    // After a failed allocation: the owner (or this register) frees memory.
    void purgeAfterFailure();

    // Entries of a combined map; stays 0 in a register without one. Kept here
    // so that the budget test needs no virtual call.
    std::atomic<uint32_t> m_nElementsInMap{0};
    // The second count: an aggregate keeps its doubtful entries here.
    std::atomic<uint32_t> m_nSecondCount{0};
    std::atomic<bool> m_bShortLevels{true};

  private:
    void insertAt(bool bDefence, uint16_t nMoves, const TChessboardRegisterItem& item, TResult bThereIsMate,
                  const TMove* move, bool bSave);
    void removeRedundant(bool bDefence, uint16_t nMoves, const TChessboardRegisterItem& item,
                         bool bThereIsMate);

    TPersistentMap m_map;
    TRegisterLock m_csMap;
    uint64_t m_uMemoryLimit = std::numeric_limits<uint64_t>::max();
    uint64_t m_uNetMemoryLimit = std::numeric_limits<uint64_t>::max();
    // No limit until one is set.
    std::atomic<uint32_t> m_uMaxEntries{std::numeric_limits<uint32_t>::max()};
    TChessboardRegister* m_pOwner = nullptr;
    CRegisterLog* m_pLog = nullptr;
};

extern template class TChessboardRegister<bool>;

} // namespace zorvane
