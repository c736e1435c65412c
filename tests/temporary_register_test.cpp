// The temporary register of a solve: stores and look-ups on its combined map,
// contradictions, the short-level switch, the budget, the clear, and threads.
#include "registers/temporary_register.h"
#include "registers/register_log.h"
#include "register_test_items.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace zorvane {
namespace {

using Register = TTemporaryChessboardRegister<0>;

TRegisterMoves numbersOf(Register& reg, const TChessboardRegisterItem& item) {
    TRegisterMoves moves;
    EXPECT_TRUE(reg.Numbers(item, moves));
    return moves;
}

struct Reports {
    std::vector<std::string> texts;
    std::vector<std::string> titles;
    static void report(void* user, const std::string& text, const char* title) {
        auto* self = static_cast<Reports*>(user);
        self->texts.push_back(text);
        self->titles.push_back(title);
    }
};

// ---- The cases that pin the behaviour down.

TEST(TemporaryRegister, MateAtFiveThenAbsenceAtSevenLeavesNoMateThree) {
    Register reg(REGISTER_SMALL_BUCKETS);
    reg.Store(5, KingsItem(), true);
    reg.Store(7, KingsItem(), false);
    const TRegisterMoves moves = numbersOf(reg, KingsItem());
    EXPECT_EQ(moves.MovesMate, 5);
    EXPECT_EQ(moves.MovesNoMate, 3);
    EXPECT_EQ(reg.ElementCount(), 1u);
}

TEST(TemporaryRegister, MateInOnePlyThenAConflictLeavesNoMateZero) {
    Register reg(REGISTER_SMALL_BUCKETS);
    reg.Store(1, KingsItem(), true);
    reg.Store(3, KingsItem(), false);
    const TRegisterMoves moves = numbersOf(reg, KingsItem());
    EXPECT_EQ(moves.MovesMate, 1);
    EXPECT_EQ(moves.MovesNoMate, 0);
}

TEST(TemporaryRegister, WithShortLevelsOffThreePliesChangeNothingAndFourDo) {
    Register reg(REGISTER_SMALL_BUCKETS);
    reg.SetShortLevels(false);
    reg.Store(3, KingsItem(), true);
    TRegisterMoves moves;
    EXPECT_FALSE(reg.Numbers(KingsItem(), moves));
    EXPECT_EQ(reg.ElementCount(), 0u);
    EXPECT_EQ(reg.Lookup(3, KingsItem()), REGISTER_UNKNOWN);
    reg.Store(4, KingsItem(), false);
    EXPECT_EQ(reg.ElementCount(), 1u);
    moves = numbersOf(reg, KingsItem());
    EXPECT_EQ(moves.MovesMate, 0);
    EXPECT_EQ(moves.MovesNoMate, 4);
}

TEST(TemporaryRegister, TheNinthPositionOfABucketMakesATreeAndAllNineAnswerAsBefore) {
    Register reg(REGISTER_SMALL_BUCKETS);
    const uint32_t bucket = reg.CombinedMap().BucketOf(SameHashItem(0).hash());
    // Mates at 3, 5, ... for even k, absences for odd k.
    auto plies = [](int k) { return static_cast<uint16_t>(2 * k + 3); };
    for (int k = 0; k < 8; ++k) reg.Store(plies(k), SameHashItem(k), k % 2 == 0);
    ASSERT_EQ(reg.CombinedMap().Form(bucket), TRegisterCombinedMap::BucketForm::Vector);
    std::vector<uint8_t> before;
    for (int k = 0; k < 8; ++k)
        for (int asked = 1; asked <= 21; ++asked)
            before.push_back(reg.Lookup(static_cast<uint16_t>(asked), SameHashItem(k)));

    reg.Store(plies(8), SameHashItem(8), true);
    EXPECT_EQ(reg.CombinedMap().Form(bucket), TRegisterCombinedMap::BucketForm::Tree);
    EXPECT_EQ(reg.CombinedMap().RecordsIn(bucket), 9u);
    EXPECT_EQ(reg.ElementCount(), 9u);
    std::vector<uint8_t> after;
    for (int k = 0; k < 8; ++k)
        for (int asked = 1; asked <= 21; ++asked)
            after.push_back(reg.Lookup(static_cast<uint16_t>(asked), SameHashItem(k)));
    EXPECT_EQ(after, before);
    for (int k = 0; k < 9; ++k) {
        EXPECT_EQ(reg.Lookup(plies(k), SameHashItem(k)), k % 2 == 0 ? 1 : 0) << k;
        EXPECT_EQ(reg.Lookup(static_cast<uint16_t>(plies(k) - 2), SameHashItem(k)),
                  k % 2 == 0 ? REGISTER_UNKNOWN : 0)
            << k;
    }
    EXPECT_EQ(reg.Lookup(19, SameHashItem(8)), 1);
    EXPECT_EQ(reg.Lookup(17, SameHashItem(8)), REGISTER_UNKNOWN);
}

TEST(TemporaryRegister, ALookupAtExactlyMovesMateIsMateAndAtExactlyMovesNoMateIsNoMate) {
    Register reg(REGISTER_SMALL_BUCKETS);
    reg.Store(9, KingsItem(), true);
    reg.Store(5, KingsItem(), false);
    EXPECT_EQ(reg.Lookup(9, KingsItem()), 1);
    EXPECT_EQ(reg.Lookup(5, KingsItem()), 0);
}

TEST(TemporaryRegister, AnInsertOfTheSameAnswerTwiceAtOneLevelLeavesElementsInUnchanged) {
    Register reg(REGISTER_SMALL_BUCKETS);
    reg.Insert(7, KingsItem(), true, nullptr, false);
    EXPECT_EQ(reg.ElementsIn.load(), 1u);
    reg.Insert(7, KingsItem(), true, nullptr, false);
    EXPECT_EQ(reg.ElementsIn.load(), 1u);
    // The persistent map and the combined map are apart.
    EXPECT_EQ(reg.ElementCount(), 0u);
    EXPECT_EQ(reg.Lookup(7, KingsItem()), REGISTER_UNKNOWN);
}

// ---- Look-ups just below, at and just above the stored numbers.

class TemporaryRegisterLookups : public ::testing::Test {
  protected:
    void SetUp() override {
        reg.Store(11, KingsItem(), true);
        reg.Store(5, KingsItem(), false);
    }
    Register reg{REGISTER_SMALL_BUCKETS};
    const TChessboardRegisterItem item = KingsItem();
    const TChessboardRegisterItem absent = ItemWith("c3", WN);
};

TEST_F(TemporaryRegisterLookups, Attacker) {
    EXPECT_EQ(reg.Lookup(3, item), 0);
    EXPECT_EQ(reg.Lookup(5, item), 0);
    EXPECT_EQ(reg.Lookup(7, item), REGISTER_UNKNOWN);
    EXPECT_EQ(reg.Lookup(9, item), REGISTER_UNKNOWN);
    EXPECT_EQ(reg.Lookup(11, item), 1);
    EXPECT_EQ(reg.Lookup(13, item), 1);
    EXPECT_EQ(reg.Lookup(11, absent), REGISTER_UNKNOWN);
    EXPECT_EQ(static_cast<int8_t>(reg.Lookup(11, absent)), -2);
}

TEST_F(TemporaryRegisterLookups, WithBound) {
    EXPECT_EQ(reg.LookupWithBound(5, 7, item), 0);
    EXPECT_EQ(reg.LookupWithBound(7, 9, item), REGISTER_UNKNOWN); // just below the bound
    EXPECT_EQ(reg.LookupWithBound(9, 9, item), 2);                // at the bound
    EXPECT_EQ(reg.LookupWithBound(9, 7, item), 2);                // above it
    EXPECT_EQ(reg.LookupWithBound(11, 7, item), 1);
    EXPECT_EQ(reg.LookupWithBound(13, 7, item), 1);
    EXPECT_EQ(reg.LookupWithBound(9, 1, absent), REGISTER_UNKNOWN);
}

TEST_F(TemporaryRegisterLookups, InRange) {
    EXPECT_EQ(reg.LookupInRange(5, 11, item), 0); // at MovesNoMate
    EXPECT_EQ(reg.LookupInRange(7, 9, item), 1);
    EXPECT_EQ(reg.LookupInRange(7, 11, item), 1); // at MovesMate
    EXPECT_EQ(reg.LookupInRange(7, 13, item), 0); // above it
    EXPECT_EQ(reg.LookupInRange(7, 9, absent), REGISTER_UNKNOWN);
}

TEST_F(TemporaryRegisterLookups, InRangeWithoutAnAbsence) {
    const TChessboardRegisterItem mateOnly = ItemWith("h7", BP);
    reg.Store(9, mateOnly, true);
    EXPECT_EQ(reg.LookupInRange(3, 7, mateOnly), 1);
    EXPECT_EQ(reg.LookupInRange(3, 9, mateOnly), 1);
    EXPECT_EQ(reg.LookupInRange(3, 11, mateOnly), 0);
}

TEST_F(TemporaryRegisterLookups, NoMate) {
    EXPECT_EQ(reg.LookupNoMate(3, item), 0);
    EXPECT_EQ(reg.LookupNoMate(5, item), 0);
    EXPECT_EQ(reg.LookupNoMate(7, item), REGISTER_UNKNOWN);
    EXPECT_EQ(reg.LookupNoMate(13, item), REGISTER_UNKNOWN);
    EXPECT_EQ(reg.LookupNoMate(3, absent), REGISTER_UNKNOWN);
}

TEST_F(TemporaryRegisterLookups, AGivenHashIsUsedAsGiven) {
    EXPECT_EQ(reg.Lookup(5, item, item.hash()), 0);
    // The wrong bucket does not hold the position.
    EXPECT_EQ(reg.Lookup(5, item, item.hash() + 1), REGISTER_UNKNOWN);
}

// ---- Contradictions.

TEST(TemporaryRegister, AConflictIsRepairedInSilenceWhileTheLatchIsClear) {
    Register reg(REGISTER_SMALL_BUCKETS);
    std::atomic<bool> latch{false};
    Reports reports;
    reg.SetCoherencyLatch(&latch);
    reg.SetConflictReport(&Reports::report, &reports);
    reg.Store(7, KingsItem(), false);
    reg.Store(5, KingsItem(), true);
    const TRegisterMoves moves = numbersOf(reg, KingsItem());
    EXPECT_EQ(moves.MovesMate, 5);
    EXPECT_EQ(moves.MovesNoMate, 3);
    EXPECT_TRUE(reports.texts.empty());
}

TEST(TemporaryRegister, WithTheLatchSetAConflictIsKeptAndShown) {
    Register reg(REGISTER_SMALL_BUCKETS);
    std::atomic<bool> latch{true};
    Reports reports;
    reg.SetCoherencyLatch(&latch);
    reg.SetConflictReport(&Reports::report, &reports);
    reg.Store(5, KingsItem(), true);
    reg.Store(7, KingsItem(), false);
    const TRegisterMoves moves = numbersOf(reg, KingsItem());
    EXPECT_EQ(moves.MovesMate, 5);
    EXPECT_EQ(moves.MovesNoMate, 7);
    ASSERT_EQ(reports.texts.size(), 1u);
    const std::string id = ToAlphanum6(ChessboardIdFromSquares(KingsItem().m_aSquares));
    EXPECT_EQ(reports.texts[0], id + "\n\nnMoves=7, bThereIsMate=0\nMovesMate=5, MovesNoMate=7");
    EXPECT_EQ(reports.titles[0], "Error");
}

TEST(TemporaryRegister, WithTheLatchSetAndTheCheckOffAConflictIsKeptInSilence) {
    Register reg(REGISTER_SMALL_BUCKETS);
    std::atomic<bool> latch{true};
    Reports reports;
    reg.SetCoherencyLatch(&latch);
    reg.SetConflictReport(&Reports::report, &reports);
    reg.m_bCheckCoherency = false;
    reg.Store(5, KingsItem(), true);
    reg.Store(7, KingsItem(), false);
    const TRegisterMoves moves = numbersOf(reg, KingsItem());
    EXPECT_EQ(moves.MovesMate, 5);
    EXPECT_EQ(moves.MovesNoMate, 7);
    EXPECT_TRUE(reports.texts.empty());
}

TEST(TemporaryRegister, AConflictTextOfAKeyThatIsNoPositionStillShowsTheNumbers) {
    TChessboardRegisterItem junk = KingsItem();
    junk.m_aSquares[sq("d4")] = 3; // no man has code 3
    TRegisterMoves moves;
    moves.MovesMate = 3;
    moves.MovesNoMate = 5;
    EXPECT_EQ(RegisterConflictText(junk, 5, false, moves),
              "?\n\nnMoves=5, bThereIsMate=0\nMovesMate=3, MovesNoMate=5");
}

// ---- The short-level switch.

TEST(TemporaryRegister, ShortLevelsAreKeptUntilSwitchedOffAndAgainAfterAClear) {
    Register reg(REGISTER_SMALL_BUCKETS);
    EXPECT_TRUE(reg.ShortLevels());
    reg.Store(3, KingsItem(), true);
    EXPECT_EQ(reg.Lookup(3, KingsItem()), 1);
    reg.SetShortLevels(false);
    // Known entries still answer; new ones under 4 plies are not taken.
    EXPECT_EQ(reg.Lookup(3, KingsItem()), 1);
    reg.Store(3, ItemWith("a2", WP), true);
    reg.Store(1, ItemWith("a3", WP), true);
    EXPECT_EQ(reg.Lookup(3, ItemWith("a2", WP)), REGISTER_UNKNOWN);
    EXPECT_EQ(reg.ElementCount(), 1u);
    reg.Clear(true);
    EXPECT_TRUE(reg.ShortLevels());
    reg.Store(3, ItemWith("a2", WP), true);
    EXPECT_EQ(reg.Lookup(3, ItemWith("a2", WP)), 1);
}

// ---- Budget, counts, sizes.

TEST(TemporaryRegister, AFullRegisterDropsTheStore) {
    Register reg(REGISTER_SMALL_BUCKETS);
    reg.SetMemoryLimit(300); // room for two entries
    reg.Store(5, KingsItem(), true);
    reg.Store(5, ItemWith("a2", WP), true);
    reg.Store(5, ItemWith("b2", WP), true);
    EXPECT_EQ(reg.ElementCount(), 2u);
    EXPECT_EQ(reg.Lookup(5, ItemWith("b2", WP)), REGISTER_UNKNOWN);
    // Full means full: even a known position takes no new result.
    reg.Store(3, KingsItem(), true);
    EXPECT_EQ(numbersOf(reg, KingsItem()).MovesMate, 5);
}

TEST(TemporaryRegister, PersistentEntriesCountAgainstTheSameBudget) {
    Register reg(REGISTER_SMALL_BUCKETS);
    reg.SetMemoryLimit(300);
    reg.Insert(5, KingsItem(), true, nullptr, false);
    reg.Store(5, KingsItem(), true);
    reg.Store(5, ItemWith("a2", WP), true);
    EXPECT_EQ(reg.TotalEntries(), 2u);
    EXPECT_EQ(reg.ElementCount(), 1u);
}

TEST(TemporaryRegister, TheCountIsOfPositionsNotOfStores) {
    Register reg(REGISTER_SMALL_BUCKETS);
    reg.Store(5, KingsItem(), true);
    reg.Store(3, KingsItem(), false);
    reg.Store(7, KingsItem(), true);
    reg.Store(5, ItemWith("a2", WP), false);
    EXPECT_EQ(reg.ElementCount(), 2u);
    EXPECT_EQ(reg.CountAll(), 2u);
    EXPECT_EQ(reg.SecondCount(), 0u);
}

TEST(TemporaryRegister, WithoutAnArrayStoresAreDroppedAndNothingIsKnown) {
    Register reg;
    EXPECT_EQ(reg.BucketCount(), 0u);
    reg.Store(5, KingsItem(), true);
    EXPECT_EQ(reg.ElementCount(), 0u);
    EXPECT_EQ(reg.Lookup(5, KingsItem()), REGISTER_UNKNOWN);
}

TEST(TemporaryRegister, BucketCountsFollowTheLengthOfTheProblem) {
    EXPECT_EQ(RegisterBucketCount(13), 16384u);
    EXPECT_EQ(RegisterBucketCount(14), 16384u);
    EXPECT_EQ(RegisterBucketCount(15), 524288u);
    EXPECT_EQ(RegisterBucketCount(509), 0x80000u);
}

TEST(TemporaryRegister, ResizeKeepsOrEmptiesAnArrayOfTheSameSize) {
    Register reg(REGISTER_SMALL_BUCKETS);
    reg.Store(5, KingsItem(), true);
    reg.Resize(REGISTER_SMALL_BUCKETS, true);
    EXPECT_EQ(reg.Lookup(5, KingsItem()), 1);
    reg.Resize(REGISTER_SMALL_BUCKETS, false);
    EXPECT_EQ(reg.Lookup(5, KingsItem()), REGISTER_UNKNOWN);
    EXPECT_EQ(reg.ElementCount(), 0u);
    EXPECT_EQ(reg.BucketCount(), REGISTER_SMALL_BUCKETS);
}

TEST(TemporaryRegister, ResizeToAnotherSizeStartsEmpty) {
    Register reg(REGISTER_SMALL_BUCKETS);
    reg.Store(5, KingsItem(), true);
    reg.Resize(REGISTER_LARGE_BUCKETS, true);
    EXPECT_EQ(reg.BucketCount(), REGISTER_LARGE_BUCKETS);
    EXPECT_EQ(reg.ElementCount(), 0u);
    EXPECT_EQ(reg.Lookup(5, KingsItem()), REGISTER_UNKNOWN);
    reg.Store(5, KingsItem(), true);
    EXPECT_EQ(reg.Lookup(5, KingsItem()), 1);
}

TEST(TemporaryRegister, BothInstancesBehaveAlike) {
    TTemporaryChessboardRegister<1> other(REGISTER_SMALL_BUCKETS);
    other.Store(5, KingsItem(), true);
    other.Store(7, KingsItem(), false);
    EXPECT_EQ(other.Lookup(5, KingsItem()), 1);
    EXPECT_EQ(other.Lookup(3, KingsItem()), 0);
    EXPECT_TRUE(other.m_bNoFiles);
    EXPECT_EQ(sizeof(TTemporaryChessboardRegister<1>), sizeof(TTemporaryChessboardRegister<0>));
}

// ---- The clear.

struct ClearWatch {
    Register* reg = nullptr;
    std::vector<uint32_t> countsSeen;
    static void repaint(void* user) {
        auto* self = static_cast<ClearWatch*>(user);
        self->countsSeen.push_back(self->reg->ElementCount());
    }
};

TEST(TemporaryRegister, TheClearShowsTrueCountsWhileItRuns) {
    Register reg(4096);
    // Two positions in bucket 0 (hash 0 and 4096), one at 2048 and one at 4095.
    TChessboardRegisterItem a = KingsItem(), b = ItemWith("a2", WP), c = ItemWith("a3", WP),
                            d = ItemWith("a4", WP);
    reg.Store(5, a, true, 0);
    reg.Store(5, b, true, 4096);
    reg.Store(5, c, true, 2048);
    reg.Store(5, d, true, 4095);
    reg.Insert(5, a, true, nullptr, false);
    ASSERT_EQ(reg.ElementCount(), 4u);
    ClearWatch watch;
    watch.reg = &reg;
    TRegisterClearProgress progress;
    progress.pfnRepaint = &ClearWatch::repaint;
    progress.user = &watch;
    progress.interval = std::chrono::milliseconds(0); // every 1024 buckets
    reg.Clear(true, progress);
    EXPECT_EQ(watch.countsSeen, (std::vector<uint32_t>{2, 2, 1, 0}));
    EXPECT_EQ(reg.ElementCount(), 0u);
    EXPECT_EQ(reg.ElementsIn.load(), 0u);
    EXPECT_EQ(reg.BucketCount(), 4096u);
    EXPECT_EQ(reg.Lookup(5, a, 0), REGISTER_UNKNOWN);
}

TEST(TemporaryRegister, TheClearRepaintsOnlyAfterItsInterval) {
    Register reg(4096);
    reg.Store(5, KingsItem(), true);
    ClearWatch watch;
    watch.reg = &reg;
    TRegisterClearProgress progress;
    progress.pfnRepaint = &ClearWatch::repaint;
    progress.user = &watch;
    reg.Clear(false, progress); // far less than 600 ms
    EXPECT_TRUE(watch.countsSeen.empty());
    EXPECT_EQ(reg.ElementCount(), 0u);
    EXPECT_EQ(reg.BucketCount(), 0u);
}

// ---- The register log.

TEST(TemporaryRegister, TheLogWritesTheMessageAndTheCounters) {
    const std::filesystem::path path = std::filesystem::temp_directory_path() /
                                       ("registerInfo_" + std::to_string(RegisterThreadId()) + ".log");
    std::filesystem::remove(path);
    CRegisterLog log(path);
    log.Write("RemoveDoubtful start.", 3, -1, 12, 7);
    log.Write("RemoveDoubtful complete.", 0, 0, 5, 0);
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    EXPECT_EQ(text.str(),
              "RemoveDoubtful start., msg params: 3, -1\n\t\t\tElementsIn= 12, DoubtfulElementsIn=7\n"
              "RemoveDoubtful complete., msg params: 0, 0\n\t\t\tElementsIn= 5, DoubtfulElementsIn=0\n");
    std::filesystem::remove(path);
}

// ---- Threads.

TEST(TemporaryRegister, TwoThreadsStoringAndLookingUpEndWithExactCounts) {
    // A small array, so that vectors turn into trees while the other thread reads.
    Register reg(64);
    constexpr uint32_t kShared = 3000, kOwn = 3000;
    std::atomic<int> wrong{0};
    auto work = [&](int side) {
        for (uint32_t i = 0; i < kShared; ++i) {
            // One side proves mates in 9, the other absences in 5: no conflict,
            // whatever the order.
            const TChessboardRegisterItem shared = NumberedItem(i);
            reg.Store(side == 0 ? 9 : 5, shared, side == 0);
            reg.Store(7, NumberedItem(kShared + side * kOwn + i), side == 0);
            const uint8_t early = reg.Lookup(5, shared);
            const uint8_t late = reg.Lookup(9, shared);
            if (early != 0 && early != REGISTER_UNKNOWN) ++wrong;
            if (late != 1 && late != REGISTER_UNKNOWN) ++wrong;
            if (side == 0 && late != 1) ++wrong; // its own store is visible
            if (side == 1 && early != 0) ++wrong;
        }
    };
    std::thread a(work, 0), b(work, 1);
    a.join();
    b.join();
    EXPECT_EQ(wrong.load(), 0);
    EXPECT_EQ(reg.ElementCount(), kShared + 2 * kOwn);
    for (uint32_t i = 0; i < kShared; ++i) {
        const TRegisterMoves moves = numbersOf(reg, NumberedItem(i));
        ASSERT_EQ(moves.MovesMate, 9) << i;
        ASSERT_EQ(moves.MovesNoMate, 5) << i;
    }
    for (uint32_t i = 0; i < 2 * kOwn; ++i)
        ASSERT_EQ(reg.Lookup(7, NumberedItem(kShared + i)), i < kOwn ? 1 : 0) << i;
    const TRegisterCombinedMap& map = reg.CombinedMap();
    size_t records = 0;
    for (uint32_t bucket = 0; bucket < map.BucketCount(); ++bucket) records += map.RecordsIn(bucket);
    EXPECT_EQ(records, kShared + 2 * kOwn);
    EXPECT_FALSE(reg.CombinedMapLock().Held());
    EXPECT_EQ(reg.CombinedMapLock().Readers(), 0u);
}

} // namespace
} // namespace zorvane
