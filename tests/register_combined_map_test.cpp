// The combined map: bucket words, vectors of up to eight packed records, the
// tree from the ninth position on, the two numbers of a position and the
// answers read from them.
#include "registers/register_combined_map.h"
#include "register_test_items.h"

#include <gtest/gtest.h>

#include <vector>

namespace zorvane {
namespace {

using Form = TRegisterCombinedMap::BucketForm;

TRegisterMoves numbers(uint16_t mate, uint16_t noMate) {
    TRegisterMoves m;
    m.MovesMate = mate;
    m.MovesNoMate = noMate;
    return m;
}

// ---- The two numbers.

TEST(RegisterNumbers, AMateLowersMovesMateAndNeverRaisesIt) {
    TRegisterMoves m;
    EXPECT_FALSE(AddResult(m, 9, true, true));
    EXPECT_EQ(m.MovesMate, 9);
    AddResult(m, 11, true, true);
    EXPECT_EQ(m.MovesMate, 9);
    AddResult(m, 7, true, true);
    EXPECT_EQ(m.MovesMate, 7);
    EXPECT_EQ(m.MovesNoMate, 0);
}

TEST(RegisterNumbers, AnAbsenceRaisesMovesNoMateAndNeverLowersIt) {
    TRegisterMoves m;
    AddResult(m, 5, false, true);
    EXPECT_EQ(m.MovesNoMate, 5);
    AddResult(m, 3, false, true);
    EXPECT_EQ(m.MovesNoMate, 5);
    AddResult(m, 7, false, true);
    EXPECT_EQ(m.MovesNoMate, 7);
    EXPECT_EQ(m.MovesMate, 0);
}

TEST(RegisterNumbers, AnAbsenceJustBelowTheMateIsNoConflict) {
    TRegisterMoves m = numbers(7, 0);
    EXPECT_FALSE(AddResult(m, 5, false, false));
    EXPECT_EQ(m.MovesMate, 7);
    EXPECT_EQ(m.MovesNoMate, 5);
}

TEST(RegisterNumbers, AConflictIsRepairedToTwoBelowTheMate) {
    TRegisterMoves m = numbers(0, 9);
    EXPECT_FALSE(AddResult(m, 7, true, true));
    EXPECT_EQ(m.MovesMate, 7);
    EXPECT_EQ(m.MovesNoMate, 5);
}

TEST(RegisterNumbers, AConflictAtAnEqualLevelIsRepairedToo) {
    TRegisterMoves m = numbers(7, 0);
    EXPECT_FALSE(AddResult(m, 7, false, true));
    EXPECT_EQ(m.MovesMate, 7);
    EXPECT_EQ(m.MovesNoMate, 5);
}

TEST(RegisterNumbers, AConflictWithAMateInOnePlyLeavesNoAbsence) {
    TRegisterMoves m = numbers(1, 0);
    EXPECT_FALSE(AddResult(m, 3, false, true));
    EXPECT_EQ(m.MovesMate, 1);
    EXPECT_EQ(m.MovesNoMate, 0);
}

TEST(RegisterNumbers, WithoutRepairAConflictIsKeptAndReported) {
    TRegisterMoves m = numbers(5, 0);
    EXPECT_TRUE(AddResult(m, 7, false, false));
    EXPECT_EQ(m.MovesMate, 5);
    EXPECT_EQ(m.MovesNoMate, 7);
}

// ---- The answers, just below, at and just above the stored numbers.

TEST(RegisterAnswers, AttackerAroundBothNumbers) {
    const TRegisterMoves m = numbers(9, 5);
    EXPECT_EQ(AttackerAnswer(m, 3), 0);
    EXPECT_EQ(AttackerAnswer(m, 5), 0);
    EXPECT_EQ(AttackerAnswer(m, 7), REGISTER_UNKNOWN);
    EXPECT_EQ(AttackerAnswer(m, 9), 1);
    EXPECT_EQ(AttackerAnswer(m, 11), 1);
    EXPECT_EQ(AttackerAnswer(numbers(0, 0), 5), REGISTER_UNKNOWN);
}

TEST(RegisterAnswers, BoundGivesTwoForALongerMateFromTheBoundOn) {
    const TRegisterMoves m = numbers(11, 3);
    EXPECT_EQ(BoundAnswer(m, 3, 7), 0);
    EXPECT_EQ(BoundAnswer(m, 5, 7), REGISTER_UNKNOWN); // below the bound
    EXPECT_EQ(BoundAnswer(m, 7, 7), 2);                // at the bound
    EXPECT_EQ(BoundAnswer(m, 9, 7), 2);                // above it, still shorter than the mate
    EXPECT_EQ(BoundAnswer(m, 11, 7), 1);
    EXPECT_EQ(BoundAnswer(m, 13, 7), 1);
    EXPECT_EQ(BoundAnswer(numbers(0, 3), 5, 1), REGISTER_UNKNOWN);
}

TEST(RegisterAnswers, RangeWithoutAnAbsence) {
    EXPECT_EQ(RangeAnswer(numbers(9, 0), 5, 7), 1);
    EXPECT_EQ(RangeAnswer(numbers(9, 0), 5, 9), 1);
    EXPECT_EQ(RangeAnswer(numbers(9, 0), 5, 11), 0);
    EXPECT_EQ(RangeAnswer(numbers(0, 0), 5, 1), 0);
}

TEST(RegisterAnswers, RangeWithAnAbsence) {
    const TRegisterMoves m = numbers(9, 5);
    EXPECT_EQ(RangeAnswer(m, 5, 9), 0); // the level is covered by the absence
    EXPECT_EQ(RangeAnswer(m, 7, 9), 1);
    EXPECT_EQ(RangeAnswer(m, 7, 11), 0);
    EXPECT_EQ(RangeAnswer(numbers(0, 5), 7, 1), 0);
}

TEST(RegisterAnswers, AbsenceAroundMovesNoMate) {
    const TRegisterMoves m = numbers(9, 5);
    EXPECT_EQ(AbsenceAnswer(m, 3), 0);
    EXPECT_EQ(AbsenceAnswer(m, 5), 0);
    EXPECT_EQ(AbsenceAnswer(m, 7), REGISTER_UNKNOWN);
    EXPECT_EQ(AbsenceAnswer(m, 9), REGISTER_UNKNOWN);
    EXPECT_EQ(AbsenceAnswer(numbers(9, 0), 1), REGISTER_UNKNOWN);
}

// ---- The map.

TEST(RegisterCombinedMap, TheBucketCountIsAPowerOfTwo) {
    TRegisterCombinedMap map;
    EXPECT_EQ(map.BucketCount(), 0u);
    map.Allocate(16384);
    EXPECT_EQ(map.BucketCount(), 16384u);
    map.Allocate(1000);
    EXPECT_EQ(map.BucketCount(), 1024u);
    EXPECT_EQ(map.BucketOf(1024 + 17), 17u);
}

TEST(RegisterCombinedMap, WithoutAnArrayNothingIsStoredOrFound) {
    TRegisterCombinedMap map;
    const TRegisterStoreOutcome outcome = map.Store(KingsItem(), KingsItem().hash(), 5, true, true);
    EXPECT_FALSE(outcome.bStored);
    EXPECT_FALSE(outcome.bAdded);
    EXPECT_EQ(map.Find(KingsItem(), KingsItem().hash()), nullptr);
}

TEST(RegisterCombinedMap, AnEmptyBucketGetsAVector) {
    TRegisterCombinedMap map;
    map.Allocate(64);
    const TChessboardRegisterItem item = KingsItem();
    const uint32_t bucket = map.BucketOf(item.hash());
    EXPECT_EQ(map.Form(bucket), Form::Empty);
    EXPECT_EQ(map.Word(bucket), 0u);
    const TRegisterStoreOutcome outcome = map.Store(item, item.hash(), 7, false, true);
    EXPECT_TRUE(outcome.bStored);
    EXPECT_TRUE(outcome.bAdded);
    EXPECT_EQ(outcome.moves.MovesNoMate, 7);
    EXPECT_EQ(map.Form(bucket), Form::Vector);
    EXPECT_EQ(map.RecordsIn(bucket), 1u);
    EXPECT_EQ(map.Word(bucket) >> 48, 0u);
}

TEST(RegisterCombinedMap, AKnownPositionKeepsItsRecord) {
    TRegisterCombinedMap map;
    map.Allocate(64);
    const TChessboardRegisterItem item = KingsItem();
    map.Store(item, item.hash(), 7, false, true);
    const TRegisterStoreOutcome outcome = map.Store(item, item.hash(), 11, true, true);
    EXPECT_FALSE(outcome.bAdded);
    EXPECT_EQ(map.RecordsIn(map.BucketOf(item.hash())), 1u);
    const TRegisterMoves* found = map.Find(item, item.hash());
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->MovesMate, 11);
    EXPECT_EQ(found->MovesNoMate, 7);
}

TEST(RegisterCombinedMap, EightPositionsOfOneBucketStayInItsVector) {
    TRegisterCombinedMap map;
    map.Allocate(16384);
    const uint32_t hash = SameHashItem(0).hash();
    const uint32_t bucket = map.BucketOf(hash);
    for (int k = 0; k < 8; ++k) EXPECT_TRUE(map.Store(SameHashItem(k), hash, 5, false, true).bAdded);
    EXPECT_EQ(map.Form(bucket), Form::Vector);
    EXPECT_EQ(map.RecordsIn(bucket), 8u);
}

TEST(RegisterCombinedMap, TheNinthPositionTurnsTheBucketIntoATree) {
    TRegisterCombinedMap map;
    map.Allocate(16384);
    const uint32_t hash = SameHashItem(0).hash();
    const uint32_t bucket = map.BucketOf(hash);
    for (int k = 0; k < 9; ++k)
        map.Store(SameHashItem(k), hash, static_cast<uint16_t>(2 * k + 3), k % 2 == 0, true);
    EXPECT_EQ(map.Form(bucket), Form::Tree);
    EXPECT_EQ(map.Word(bucket) >> 63, 1u);
    EXPECT_EQ(map.RecordsIn(bucket), 9u);
    for (int k = 0; k < 9; ++k) {
        const TRegisterMoves* found = map.Find(SameHashItem(k), hash);
        ASSERT_NE(found, nullptr) << k;
        EXPECT_EQ(found->MovesMate, k % 2 == 0 ? 2 * k + 3 : 0) << k;
        EXPECT_EQ(found->MovesNoMate, k % 2 == 0 ? 0 : 2 * k + 3) << k;
    }
    // The tree goes on taking positions and results.
    EXPECT_TRUE(map.Store(SameHashItem(9), hash, 3, true, true).bAdded);
    EXPECT_FALSE(map.Store(SameHashItem(1), hash, 9, true, true).bAdded);
    EXPECT_EQ(map.RecordsIn(bucket), 10u);
    EXPECT_EQ(map.Find(SameHashItem(1), hash)->MovesMate, 9);
    EXPECT_EQ(map.Find(SameHashItem(1), hash)->MovesNoMate, 5);
    EXPECT_EQ(map.Find(SameHashItem(10), hash), nullptr);
}

TEST(RegisterCombinedMap, OtherBucketsKeepTheirVectorsWhenOneBecomesATree) {
    TRegisterCombinedMap map;
    map.Allocate(16384);
    const TChessboardRegisterItem elsewhere = ItemWith("d4", WQ);
    const uint32_t hash = SameHashItem(0).hash();
    ASSERT_NE(map.BucketOf(elsewhere.hash()), map.BucketOf(hash));
    map.Store(elsewhere, elsewhere.hash(), 5, true, true);
    for (int k = 0; k < 12; ++k) map.Store(SameHashItem(k), hash, 5, true, true);
    EXPECT_EQ(map.Form(map.BucketOf(elsewhere.hash())), Form::Vector);
    EXPECT_EQ(map.Find(elsewhere, elsewhere.hash())->MovesMate, 5);
}

TEST(RegisterCombinedMap, ClearTicksEveryThousandTwentyFourBuckets) {
    TRegisterCombinedMap map;
    map.Allocate(4096);
    // Ten positions in bucket 0, one in each of buckets 1100 and 4095.
    for (int k = 0; k < 10; ++k) map.Store(SameHashItem(k), 0, 5, true, true);
    map.Store(KingsItem(), 1100, 5, true, true);
    map.Store(ItemWith("a2", WP), 4095, 5, true, true);
    std::vector<uint64_t> ticks;
    const uint64_t freed = map.Clear(true, [&](uint64_t freedSoFar) { ticks.push_back(freedSoFar); });
    EXPECT_EQ(freed, 12u);
    EXPECT_EQ(ticks, (std::vector<uint64_t>{10, 11, 11, 12}));
    EXPECT_EQ(map.BucketCount(), 4096u);
    for (uint32_t bucket : {0u, 1100u, 4095u}) EXPECT_EQ(map.Form(bucket), Form::Empty) << bucket;
    EXPECT_EQ(map.Find(KingsItem(), 1100), nullptr);
}

TEST(RegisterCombinedMap, ClearCanFreeTheArray) {
    TRegisterCombinedMap map;
    map.Allocate(64);
    map.Store(KingsItem(), 3, 5, true, true);
    EXPECT_EQ(map.Clear(false, [](uint64_t) {}), 1u);
    EXPECT_EQ(map.BucketCount(), 0u);
    EXPECT_EQ(map.Find(KingsItem(), 3), nullptr);
}

TEST(RegisterCombinedMap, AllocateFreesWhatWasThere) {
    TRegisterCombinedMap map;
    map.Allocate(64);
    for (int k = 0; k < 9; ++k) map.Store(SameHashItem(k), 7, 5, true, true);
    map.Store(KingsItem(), 8, 5, true, true);
    EXPECT_EQ(map.Allocate(128), 10u);
    EXPECT_EQ(map.BucketCount(), 128u);
    EXPECT_EQ(map.Find(KingsItem(), 8), nullptr);
}

// ---- The sweep, the partial purge.

TEST(RegisterCombinedMapSweep, AVectorWhoseRecordsAllQualifyLosesEverySecondRecord) {
    TRegisterCombinedMap map;
    map.Allocate(64);
    for (int k = 0; k < 8; ++k) map.Store(SameHashItem(k), 9, 5, true, true);
    EXPECT_EQ(map.Sweep(5, 5), 4u);
    // Each gap took the next record, which the walk then passed over.
    EXPECT_EQ(map.RecordsIn(9), 4u);
    for (int k = 0; k < 8; ++k) EXPECT_EQ(map.Find(SameHashItem(k), 9) != nullptr, k % 2 == 1) << k;
    EXPECT_EQ(map.Sweep(5, 5), 2u);
    EXPECT_EQ(map.Sweep(5, 5), 1u);
    EXPECT_EQ(map.Sweep(5, 5), 1u);
    // An emptied bucket gives its vector back (held memory follows the
    // entries), and takes eight again as a vector.
    EXPECT_EQ(map.Form(9), Form::Empty);
    EXPECT_EQ(map.RecordsIn(9), 0u);
    for (int k = 0; k < 8; ++k) map.Store(SameHashItem(k), 9, 7, true, true);
    EXPECT_EQ(map.Form(9), Form::Vector);
    EXPECT_EQ(map.RecordsIn(9), 8u);
}

TEST(RegisterCombinedMapSweep, ARecordGoesOnlyWhenBothNumbersAreWithinTheLimits) {
    TRegisterCombinedMap map;
    map.Allocate(64);
    map.Store(SameHashItem(0), 1, 5, true, true);  // 5, 0
    map.Store(SameHashItem(1), 2, 7, true, true);  // 7, 0
    map.Store(SameHashItem(2), 3, 3, false, true); // 0, 3
    map.Store(SameHashItem(3), 4, 5, false, true); // 0, 5
    map.Store(SameHashItem(4), 5, 9, true, true);
    map.Store(SameHashItem(4), 5, 3, false, true); // 9, 3
    EXPECT_EQ(map.Sweep(5, 3), 2u);
    EXPECT_EQ(map.Find(SameHashItem(0), 1), nullptr);
    EXPECT_NE(map.Find(SameHashItem(1), 2), nullptr);
    EXPECT_EQ(map.Find(SameHashItem(2), 3), nullptr);
    EXPECT_NE(map.Find(SameHashItem(3), 4), nullptr);
    EXPECT_NE(map.Find(SameHashItem(4), 5), nullptr);
}

TEST(RegisterCombinedMapSweep, ATreeLosesEveryRecordThatQualifies) {
    TRegisterCombinedMap map;
    map.Allocate(64);
    for (int k = 0; k < 12; ++k) map.Store(SameHashItem(k), 30, k < 10 ? 5 : 7, true, true);
    ASSERT_EQ(map.Form(30), Form::Tree);
    EXPECT_EQ(map.Sweep(5, 5), 10u);
    EXPECT_EQ(map.Form(30), Form::Tree);
    EXPECT_EQ(map.RecordsIn(30), 2u);
    EXPECT_NE(map.Find(SameHashItem(10), 30), nullptr);
    EXPECT_NE(map.Find(SameHashItem(11), 30), nullptr);
}

TEST(RegisterCombinedMapSweep, EveryBucketIsVisitedOnceFromTheCursorOn) {
    TRegisterCombinedMap map;
    map.Allocate(64);
    for (uint32_t bucket = 0; bucket < 64; ++bucket) map.Store(NumberedItem(bucket), bucket, 5, true, true);
    map.SweepCursor() = 40;
    EXPECT_EQ(map.Sweep(5, 0), 64u);
    EXPECT_EQ(map.SweepCursor(), 40u);
    EXPECT_EQ(map.Sweep(5, 0), 0u);
    TRegisterCombinedMap empty;
    EXPECT_EQ(empty.Sweep(255, 255), 0u);
}

} // namespace
} // namespace zorvane
