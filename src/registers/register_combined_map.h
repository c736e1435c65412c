#pragma once
// TRegisterCombinedMap: the hash table that holds the bulk of the temporary
// register, one 68-byte record per position with two ply counts in it, rather
// than one entry per level.
//
// The table is a power-of-two array of 64-bit bucket words:
//   bits 0-47   pointer (sign-extended to read it), null for an empty bucket
//   bits 48-62  left as they are whenever the pointer is replaced
//   bit 63      clear: the pointer is a vector of up to 8 records, searched
//               linearly; set: it is a tree keyed by position.
// A vector gets room for 8 records when it is made, so it never grows; the
// ninth position of a bucket moves everything into a tree. Crowded buckets are
// rare with the register hash, and the tree keeps them from costing a linear
// walk of hundreds of records.
//
// The map has no lock and no counters of its own: its register holds both.
#include "register_item.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace zorvane {

// The answer of a look-up when nothing is known; callers that read it signed see -2.
constexpr uint8_t REGISTER_UNKNOWN = 254;

// The two numbers kept for a position.
// MovesMate: the smallest ply count for which a mate has been proven, 0 for none.
// MovesNoMate: the largest ply count for which no mate has been proven, 0 for none.
// Invariant after every store (unless a conflict is kept on purpose):
// MovesMate == 0 or MovesNoMate < MovesMate.
struct TRegisterMoves {
    uint16_t MovesMate = 0;
    uint16_t MovesNoMate = 0;
};
static_assert(sizeof(TRegisterMoves) == 4);

// A packed record of a bucket vector.
struct TRegisterRecord {
    TChessboardRegisterItem m_Item;
    TRegisterMoves m_Moves;
};
static_assert(sizeof(TRegisterRecord) == 68, "one position costs 68 bytes in a bucket vector, no padding");
static_assert(offsetof(TRegisterRecord, m_Item) == 0);
static_assert(offsetof(TRegisterRecord, m_Moves) == 64);
static_assert(offsetof(TRegisterRecord, m_Moves) + offsetof(TRegisterMoves, MovesMate) == 64);
static_assert(offsetof(TRegisterRecord, m_Moves) + offsetof(TRegisterMoves, MovesNoMate) == 66);

using TRegisterVector = std::vector<TRegisterRecord>;
using TRegisterTree = std::map<TChessboardRegisterItem, TRegisterMoves>;

// ---- The answers, from the two numbers of a position and the ply count k asked about.

// 0 proven no mate, 1 proven mate, 254 unknown.
inline uint8_t AttackerAnswer(TRegisterMoves m, unsigned k) {
    if (m.MovesNoMate != 0 && k <= m.MovesNoMate) return 0;
    if (m.MovesMate != 0 && k >= m.MovesMate) return 1;
    return REGISTER_UNKNOWN;
}

// As AttackerAnswer, and 2 when a mate is known that takes longer than k,
// unless k is below the bound b, where such a mate is of no use.
inline uint8_t BoundAnswer(TRegisterMoves m, unsigned k, unsigned b) {
    if (m.MovesNoMate != 0 && k <= m.MovesNoMate) return 0;
    if (m.MovesMate == 0) return REGISTER_UNKNOWN;
    if (k >= m.MovesMate) return 1;
    return k < b ? REGISTER_UNKNOWN : 2;
}

// For mates that may be shorter than the present level k: 1 when a mate is
// known at u plies or more and no absence of mate reaches up to k, else 0.
inline uint8_t RangeAnswer(TRegisterMoves m, unsigned k, unsigned u) {
    if (m.MovesNoMate == 0) return m.MovesMate != 0 && u <= m.MovesMate ? 1 : 0;
    return k > m.MovesNoMate && m.MovesMate != 0 && u <= m.MovesMate ? 1 : 0;
}

// 0 when no mate in k plies is proven, else 254.
inline uint8_t AbsenceAnswer(TRegisterMoves m, unsigned k) {
    return m.MovesNoMate != 0 && k <= m.MovesNoMate ? 0 : REGISTER_UNKNOWN;
}

// Adds one result to the numbers of a position. A mate lowers MovesMate, an
// absence raises MovesNoMate. When the two then contradict each other (the
// absence reaches up to the mate), `bRepair` trusts the mate and puts the
// absence just below it; otherwise the contradiction is kept for the caller to
// report. Returns true when a contradiction is kept.
inline bool AddResult(TRegisterMoves& m, uint16_t nMoves, bool bThereIsMate, bool bRepair) {
    if (bThereIsMate) {
        if (m.MovesMate == 0 || m.MovesMate > nMoves) m.MovesMate = nMoves;
    } else if (nMoves > m.MovesNoMate) {
        m.MovesNoMate = nMoves;
    }
    if (m.MovesMate == 0 || m.MovesNoMate < m.MovesMate) return false;
    if (!bRepair) return true;
    m.MovesNoMate = m.MovesMate == 1 ? 0 : static_cast<uint16_t>(m.MovesMate - 2);
    return false;
}

struct TRegisterStoreOutcome {
    bool bStored = false;   // false only when the map has no bucket array
    bool bAdded = false;    // a new record was made
    bool bConflict = false; // the contradiction was kept (no repair)
    TRegisterMoves moves;   // the numbers after the store
};

class TRegisterCombinedMap {
  public:
    enum class BucketForm { Empty, Vector, Tree };
    static constexpr size_t kVectorRecords = 8;
    // The clear reports its progress after every this many buckets.
    static constexpr uint32_t kClearTickBuckets = 1024;

    TRegisterCombinedMap() = default;
    ~TRegisterCombinedMap() {
        Clear(false, [](uint64_t) {});
    }
    TRegisterCombinedMap(const TRegisterCombinedMap&) = delete;
    TRegisterCombinedMap& operator=(const TRegisterCombinedMap&) = delete;

    // Frees every record and the array, then makes an empty array of
    // `bucketCount` buckets (rounded up to a power of two; 0 leaves no array).
    // Returns the number of records freed.
    uint64_t Allocate(uint32_t bucketCount);
    uint32_t BucketCount() const { return m_nBuckets; }
    uint32_t BucketOf(uint32_t hash) const { return hash & (m_nBuckets - 1); }
    // Where the next partial purge starts.
    uint32_t& SweepCursor() { return m_uSweepCursor; }

    // The numbers of a position, or null. No allocation.
    const TRegisterMoves* Find(const TChessboardRegisterItem& item, uint32_t hash) const {
        if (m_nBuckets == 0) return nullptr;
        const uint64_t word = m_aBuckets[BucketOf(hash)];
        if (word & kTreeBit) {
            const TRegisterTree& tree = *static_cast<const TRegisterTree*>(pointerOf(word));
            const auto it = tree.find(item);
            return it == tree.end() ? nullptr : &it->second;
        }
        const TRegisterVector* records = static_cast<const TRegisterVector*>(pointerOf(word));
        if (!records) return nullptr;
        for (const TRegisterRecord& record : *records)
            if (record.m_Item == item) return &record.m_Moves;
        return nullptr;
    }

    // Adds one result for a position (see AddResult), making its record if it
    // is new. May throw std::bad_alloc; the map is then as it was.
    TRegisterStoreOutcome Store(const TChessboardRegisterItem& item, uint32_t hash, uint16_t nMoves,
                                bool bThereIsMate, bool bRepair);

    // Frees every vector and tree. `tick(freedSoFar)` is called after every
    // kClearTickBuckets buckets. The array is kept (all buckets empty) or freed.
    // Returns the number of records freed.
    template <class Tick> uint64_t Clear(bool bKeepArray, Tick&& tick) {
        uint64_t freed = 0;
        for (uint32_t i = 0; i < m_nBuckets; ++i) {
            freed += freeBucket(m_aBuckets[i]);
            if ((i + 1) % kClearTickBuckets == 0) tick(freed);
        }
        if (!bKeepArray) {
            m_aBuckets.reset();
            m_nBuckets = 0;
        }
        m_uSweepCursor = 0;
        return freed;
    }

    // The partial purge: removes the records whose MovesMate is not above
    // `maxMate` and whose MovesNoMate is not above `maxNoMate`, visiting every
    // bucket once from the sweep cursor on. A tree loses all such records; a
    // vector is walked by index and closes the gap by moving its tail down, so
    // the record that moves into the gap is passed over until the next sweep:
    // a vector whose records all qualify loses every second one. Emptied
    // buckets keep their vector or tree. Returns the number of records removed.
    uint64_t Sweep(uint16_t maxMate, uint16_t maxNoMate);

    // For tests and diagnostics.
    BucketForm Form(uint32_t bucket) const;
    size_t RecordsIn(uint32_t bucket) const;
    uint64_t Word(uint32_t bucket) const { return m_aBuckets[bucket]; }

  private:
    static constexpr uint64_t kTreeBit = uint64_t{1} << 63;
    static constexpr uint64_t kPointerBits = (uint64_t{1} << 48) - 1;
    static constexpr uint64_t kKeptBits = ~kTreeBit & ~kPointerBits;

    static void* pointerOf(uint64_t word) {
        return reinterpret_cast<void*>(static_cast<intptr_t>(static_cast<int64_t>(word << 16) >> 16));
    }
    static uint64_t withPointer(uint64_t word, const void* pointer, bool bTree) {
        return (word & kKeptBits) | (bTree ? kTreeBit : 0) |
               (static_cast<uint64_t>(reinterpret_cast<uintptr_t>(pointer)) & kPointerBits);
    }
    // Frees what a bucket holds and leaves it empty; returns the records freed.
    static uint64_t freeBucket(uint64_t& word);

    std::unique_ptr<uint64_t[]> m_aBuckets;
    uint32_t m_nBuckets = 0;
    uint32_t m_uSweepCursor = 0;
};

static_assert(sizeof(void*) == 8, "bucket words keep pointers in 48 bits");

} // namespace zorvane
