#include "register_combined_map.h"

#include <bit>

namespace zorvane {

uint64_t TRegisterCombinedMap::Allocate(uint32_t bucketCount) {
    const uint64_t freed = Clear(false, [](uint64_t) {});
    if (bucketCount == 0) return freed;
    // The bucket of a position is hash & (count - 1): only a power of two masks right.
    const uint32_t count = std::bit_ceil(bucketCount);
    m_aBuckets = std::make_unique<uint64_t[]>(count);
    m_nBuckets = count;
    return freed;
}

TRegisterStoreOutcome TRegisterCombinedMap::Store(const TChessboardRegisterItem& item, uint32_t hash,
                                                  uint16_t nMoves, bool bThereIsMate, bool bRepair) {
    TRegisterStoreOutcome outcome;
    if (m_nBuckets == 0) return outcome;
    uint64_t& word = m_aBuckets[BucketOf(hash)];
    TRegisterMoves* moves = nullptr;

    if (word & kTreeBit) {
        auto [it, inserted] = static_cast<TRegisterTree*>(pointerOf(word))->try_emplace(item);
        moves = &it->second;
        outcome.bAdded = inserted;
    } else {
        TRegisterVector* records = static_cast<TRegisterVector*>(pointerOf(word));
        if (records) {
            for (TRegisterRecord& record : *records)
                if (record.m_Item == item) {
                    moves = &record.m_Moves;
                    break;
                }
        }
        if (!moves) {
            outcome.bAdded = true;
            if (!records) {
                // Most buckets of a large register hold one position: room for
                // more is made only when it comes, so that memory follows the
                // entries that the quota counts.
                auto fresh = std::make_unique<TRegisterVector>();
                fresh->push_back(TRegisterRecord{item, {}});
                moves = &fresh->back().m_Moves;
                word = withPointer(word, fresh.release(), false);
            } else if (records->size() < kVectorRecords) {
                // Stores hold the map's write lock: a reallocation here is seen by no reader.
                records->push_back(TRegisterRecord{item, {}});
                moves = &records->back().m_Moves;
            } else {
                // The ninth position: build the tree in full before the bucket
                // changes, so that a failed allocation leaves the vector intact.
                auto tree = std::make_unique<TRegisterTree>();
                for (const TRegisterRecord& record : *records) tree->emplace(record.m_Item, record.m_Moves);
                moves = &tree->try_emplace(item).first->second;
                word = withPointer(word, tree.release(), true);
                delete records;
            }
        }
    }
    outcome.bStored = true;
    outcome.bConflict = AddResult(*moves, nMoves, bThereIsMate, bRepair);
    outcome.moves = *moves;
    return outcome;
}

uint64_t TRegisterCombinedMap::Sweep(uint16_t maxMate, uint16_t maxNoMate) {
    auto qualifies = [=](TRegisterMoves m) { return m.MovesMate <= maxMate && m.MovesNoMate <= maxNoMate; };
    uint64_t removed = 0;
    for (uint32_t visited = 0; visited < m_nBuckets; ++visited) {
        uint64_t& word = m_aBuckets[BucketOf(m_uSweepCursor + visited)];
        bool empty = false;
        if (word & kTreeBit) {
            TRegisterTree& tree = *static_cast<TRegisterTree*>(pointerOf(word));
            removed += std::erase_if(tree, [&](const auto& entry) { return qualifies(entry.second); });
            empty = tree.empty();
        } else if (TRegisterVector* records = static_cast<TRegisterVector*>(pointerOf(word))) {
            // The index goes on past an erased record, so of a run of records
            // that all qualify every second one stays for a later sweep.
            for (size_t i = 0; i < records->size(); ++i) {
                if (!qualifies((*records)[i].m_Moves)) continue;
                records->erase(records->begin() + static_cast<std::ptrdiff_t>(i));
                ++removed;
            }
            empty = records->empty();
        }
        // A bucket left empty gives its memory back: a purge must free what it
        // counts as freed.
        if (empty) freeBucket(word);
    }
    return removed;
}

uint64_t TRegisterCombinedMap::freeBucket(uint64_t& word) {
    uint64_t freed = 0;
    if (word & kTreeBit) {
        TRegisterTree* tree = static_cast<TRegisterTree*>(pointerOf(word));
        freed = tree->size();
        delete tree;
    } else if (TRegisterVector* records = static_cast<TRegisterVector*>(pointerOf(word))) {
        freed = records->size();
        delete records;
    }
    word &= kKeptBits;
    return freed;
}

TRegisterCombinedMap::BucketForm TRegisterCombinedMap::Form(uint32_t bucket) const {
    const uint64_t word = m_aBuckets[bucket];
    if (word & kTreeBit) return BucketForm::Tree;
    return pointerOf(word) ? BucketForm::Vector : BucketForm::Empty;
}

size_t TRegisterCombinedMap::RecordsIn(uint32_t bucket) const {
    const uint64_t word = m_aBuckets[bucket];
    if (word & kTreeBit) return static_cast<const TRegisterTree*>(pointerOf(word))->size();
    const TRegisterVector* records = static_cast<const TRegisterVector*>(pointerOf(word));
    return records ? records->size() : 0;
}

} // namespace zorvane
