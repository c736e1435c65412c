// The aggregated register of a solve: doubtful registers by key, the look-ups
// that combine them with what is certain, pins, the partial purges, the purge
// of a full quota in its order, the clear modes, and threads.
#include "registers/aggregated_register.h"
#include "registers/register_log.h"
#include "register_test_items.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace zorvane {
namespace {

using Aggregate = TAggregatedTemporaryChessboardRegister;

// Two sets of heuristics, as a pass would give them.
constexpr uint32_t kHeur = 0x21, kParams = 3;
constexpr uint32_t kOtherHeur = 0x40, kOtherParams = 0;

uint64_t nowMs() {
    return static_cast<uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                     std::chrono::steady_clock::now().time_since_epoch())
                                     .count());
}

// Two purges closer than the guard are one; tests that purge again wait it out.
void waitOutThePurgeGuard() {
    std::this_thread::sleep_for(std::chrono::milliseconds(REGISTER_PURGE_GUARD_MS + 4));
}

// A limit in bytes that gives exactly `entries` entries.
void setMaxEntries(Aggregate& reg, uint32_t entries) {
    uint64_t bytes = uint64_t{entries} * REGISTER_BYTES_PER_ENTRY * 100 / REGISTER_NET_PERCENT;
    for (reg.SetMemoryLimit(bytes); reg.MaxEntries() < entries; reg.SetMemoryLimit(++bytes)) {
    }
    ASSERT_EQ(reg.MaxEntries(), entries);
}

// Items 0..n-1 of NumberedItem fall into distinct buckets of any array of 256
// buckets or more: the number's low byte has the odd weight 289 in the hash.
constexpr uint32_t kDistinctItems = 256;

// The register log of one test, read back message by message.
class LogFile {
  public:
    LogFile()
        : m_path(std::filesystem::temp_directory_path() /
                 (std::string("aggregated_") +
                  ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".log")),
          log(m_path) {
        std::filesystem::remove(m_path);
    }
    ~LogFile() { std::filesystem::remove(m_path); }
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    // The first line of every message: "<text>, msg params: p1, p2".
    std::vector<std::string> Messages() const {
        std::vector<std::string> messages;
        std::ifstream in(m_path);
        for (std::string line; std::getline(in, line);)
            if (!line.empty() && line[0] != '\t') messages.push_back(line);
        return messages;
    }
    // Only the messages that start with one of `prefixes`.
    std::vector<std::string> Messages(const std::vector<std::string>& prefixes) const {
        std::vector<std::string> chosen;
        for (const std::string& message : Messages())
            for (const std::string& prefix : prefixes)
                if (message.rfind(prefix, 0) == 0) {
                    chosen.push_back(message);
                    break;
                }
        return chosen;
    }
    bool Has(const std::string& prefix) const { return !Messages({prefix}).empty(); }

  private:
    std::filesystem::path m_path;

  public:
    CRegisterLog log;
};

// ---- Keys.

TEST(DoubtfulKey, KeysCompareAsOneSignedWordWithTheParametersAbove) {
    EXPECT_EQ((TDoubtfulKey{0x21, 3}.Packed()), 0x0000000300000021);
    EXPECT_TRUE((TDoubtfulKey{0xFFFFFFFF, 0} < TDoubtfulKey{0, 1}));
    EXPECT_TRUE((TDoubtfulKey{1, 5} < TDoubtfulKey{2, 5}));
    // A parameter word with its top bit set makes the value negative.
    EXPECT_TRUE((TDoubtfulKey{0, 0x80000000} < TDoubtfulKey{0, 0}));
    EXPECT_TRUE((TDoubtfulKey{7, 7} == TDoubtfulKey{7, 7}));
}

// ---- The cases that pin the behaviour down.

TEST(AggregatedRegister, ACertainUnknownWithADoubtfulAbsenceGivesMinusOneNeverZero) {
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    const TChessboardRegisterItem item = KingsItem();
    reg.StoreDoubtful(9, item, kHeur, kParams, true);
    EXPECT_EQ(reg.LookupWithDoubtful(9, item, kHeur, kParams), -1);
    EXPECT_EQ(reg.LookupWithDoubtful(7, item, kHeur, kParams), -1);
    EXPECT_EQ(reg.LookupWithBoundAndDoubtful(9, 1, item, kHeur, kParams), -1);
    // Above the proven absence, and under another key, nothing is known.
    EXPECT_EQ(reg.LookupWithDoubtful(11, item, kHeur, kParams), -2);
    EXPECT_EQ(reg.LookupWithDoubtful(9, item, kOtherHeur, kOtherParams), -2);
    // The certain part itself knows nothing of it.
    EXPECT_EQ(reg.Lookup(9, item), REGISTER_UNKNOWN);
}

TEST(AggregatedRegister, AStoreAtTheLimitRunsThePurgeAndGoesInWhenThatMadeRoom) {
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    LogFile file;
    reg.SetLog(&file.log);
    setMaxEntries(reg, 4);
    for (uint32_t i = 0; i < 4; ++i) reg.Store(5, NumberedItem(i), true);
    ASSERT_EQ(reg.TotalEntries(), 4u);
    reg.StoreDoubtful(9, KingsItem(), kHeur, kParams, true);
    EXPECT_TRUE(file.Has("EmptySomeDataWhenRegisterFull complete"));
    EXPECT_EQ(reg.ElementCount(), 0u);
    EXPECT_EQ(reg.DoubtfulElementsIn(), 1u);
    EXPECT_EQ(reg.LookupWithDoubtful(9, KingsItem(), kHeur, kParams), -1);
}

TEST(AggregatedRegister, AStoreAtTheLimitIsDroppedWhenThePurgeLeavesItFull) {
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    LogFile file;
    reg.SetLog(&file.log);
    setMaxEntries(reg, 4);
    // Longer than any level the purge reaches: nothing can go.
    for (uint32_t i = 0; i < 4; ++i) reg.Store(257, NumberedItem(i), true);
    reg.StoreDoubtful(9, KingsItem(), kHeur, kParams, true);
    EXPECT_TRUE(file.Has("EmptySomeDataWhenRegisterFull started"));
    EXPECT_EQ(reg.ElementCount(), 4u);
    EXPECT_EQ(reg.DoubtfulElementsIn(), 0u);
    EXPECT_EQ(reg.TotalEntries(), 4u);
    EXPECT_EQ(reg.LookupWithDoubtful(9, KingsItem(), kHeur, kParams), -2);
}

TEST(AggregatedRegister, WithNoMemoryAllowedADoubtfulStoreReturnsAtOnceWithoutAPurge) {
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    LogFile file;
    reg.SetLog(&file.log);
    reg.SetMemoryLimit(0);
    ASSERT_EQ(reg.MaxEntries(), 0u);
    const uint64_t lastEmptied = reg.LastEmptied();
    reg.StoreDoubtful(9, KingsItem(), kHeur, kParams, true);
    reg.StoreDoubtful(9, KingsItem(), kHeur, kParams, false);
    EXPECT_EQ(reg.DoubtfulRegisterCount(), 0u);
    EXPECT_EQ(reg.DoubtfulElementsIn(), 0u);
    EXPECT_TRUE(file.Messages().empty());
    EXPECT_EQ(reg.LastEmptied(), lastEmptied);
    // Nor does a certain store purge.
    reg.Store(5, KingsItem(), true);
    EXPECT_EQ(reg.ElementCount(), 0u);
    EXPECT_TRUE(file.Messages().empty());
}

TEST(AggregatedRegister, WhenEveryRecordIsLongerThanTheLastLevelThePurgeLogsItsFailure) {
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    LogFile file;
    reg.SetLog(&file.log);
    setMaxEntries(reg, 10);
    for (uint32_t i = 0; i < 5; ++i) reg.Store(257, NumberedItem(i), true);
    for (uint32_t i = 5; i < 10; ++i) reg.Store(256, NumberedItem(i), false);
    reg.EmptySomeDataWhenRegisterFull(false);
    const std::vector<std::string> messages = file.Messages();
    ASSERT_FALSE(messages.empty());
    EXPECT_EQ(messages.front(), "EmptySomeDataWhenRegisterFull started, msg params: 0, 0");
    EXPECT_EQ(messages.back(), "!!!! EmptySomeDataWhenRegisterFull failed., msg params: 0, 0");
    EXPECT_FALSE(file.Has("EmptySomeDataWhenRegisterFull complete"));
    // Every level up to the last was tried.
    EXPECT_TRUE(file.Has("TAggregatedTemporaryChessboardRegister::RemoveNMovers start., msg params: 255, 0"));
    EXPECT_TRUE(file.Has("TAggregatedTemporaryChessboardRegister::RemoveNMovers start., msg params: 254, 0"));
    EXPECT_EQ(reg.ElementCount(), 10u);
}

TEST(AggregatedRegister, WithOnePinTheNextRemoveDoubtfulDropsThePinAndTheOneAfterWipes) {
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    reg.StoreDoubtful(9, KingsItem(), kHeur, kParams, true);
    reg.StoreDoubtful(7, ItemWith("a2", WP), kHeur, kParams, false);
    reg.Pin(kHeur, kParams);
    EXPECT_EQ(reg.Pins(kHeur, kParams), 1u);
    EXPECT_EQ(reg.RemoveDoubtful(kHeur, kParams), 0u);
    EXPECT_EQ(reg.Pins(kHeur, kParams), 0u);
    EXPECT_EQ(reg.DoubtfulElementsIn(), 2u);
    EXPECT_EQ(reg.LookupWithDoubtful(9, KingsItem(), kHeur, kParams), -1);
    EXPECT_EQ(reg.RemoveDoubtful(kHeur, kParams), 2u);
    EXPECT_EQ(reg.DoubtfulElementsIn(), 0u);
    EXPECT_EQ(reg.LookupWithDoubtful(9, KingsItem(), kHeur, kParams), -2);
    // The register itself stays, with its array, for the next results of its key.
    EXPECT_EQ(reg.DoubtfulRegisterCount(), 1u);
    reg.StoreDoubtful(9, KingsItem(), kHeur, kParams, true);
    EXPECT_EQ(reg.LookupWithDoubtful(9, KingsItem(), kHeur, kParams), -1);
}

TEST(AggregatedRegister, RemoveNMoversOfOneGivesDoubtfulRegistersTheLimitZero) {
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    const TChessboardRegisterItem doubt = KingsItem(), notDoubtful = ItemWith("a2", WP),
                                  both = ItemWith("b2", WP);
    reg.StoreDoubtful(1, doubt, kHeur, kParams, false);      // Doubtful 1, NotDoubtful 0
    reg.StoreDoubtful(1, notDoubtful, kHeur, kParams, true); // Doubtful 0, NotDoubtful 1
    reg.StoreDoubtful(1, both, kHeur, kParams, true);        // a NotDoubtful 1 ...
    reg.StoreDoubtful(3, both, kHeur, kParams, false);       // ... below a Doubtful 3
    // In the certain part the same numbers all go at 1 ... 3.
    reg.Store(1, notDoubtful, false);
    ASSERT_EQ(reg.DoubtfulElementsIn(), 3u);
    EXPECT_EQ(reg.RemoveNMovers(1), 2u);
    EXPECT_EQ(reg.ElementCount(), 0u);
    TRegisterMoves moves;
    EXPECT_FALSE(reg.DoubtfulNumbers(doubt, kHeur, kParams, moves));
    EXPECT_TRUE(reg.DoubtfulNumbers(notDoubtful, kHeur, kParams, moves));
    EXPECT_EQ(moves.MovesNoMate, 1);
    EXPECT_TRUE(reg.DoubtfulNumbers(both, kHeur, kParams, moves));
    EXPECT_EQ(reg.DoubtfulElementsIn(), 2u);
}

TEST(AggregatedRegister, AVectorWhoseRecordsAllQualifyLosesEverySecondRecordInOneSweep) {
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    const uint32_t bucket = reg.CombinedMap().BucketOf(SameHashItem(0).hash());
    for (int k = 0; k < 8; ++k) reg.Store(5, SameHashItem(k), true);
    ASSERT_EQ(reg.CombinedMap().Form(bucket), TRegisterCombinedMap::BucketForm::Vector);
    EXPECT_EQ(reg.RemoveNMovers(5), 4u);
    EXPECT_EQ(reg.ElementCount(), 4u);
    for (int k = 0; k < 8; ++k)
        EXPECT_EQ(reg.Lookup(5, SameHashItem(k)), k % 2 == 1 ? 1 : REGISTER_UNKNOWN) << k;
    // The next sweep finds the ones passed over.
    EXPECT_EQ(reg.RemoveNMovers(5), 2u);
    EXPECT_EQ(reg.ElementCount(), 2u);
}

// ---- Look-ups.

class AggregatedLookups : public ::testing::Test {
  protected:
    void SetUp() override {
        reg.Store(11, mate, true);
        reg.Store(5, mate, false);
        reg.Store(7, noMate, false);
        reg.StoreDoubtful(7, noMate, kHeur, kParams, true); // the certain answer wins
        reg.StoreDoubtful(9, underHeur, kHeur, kParams, true);
        reg.StoreDoubtful(13, markedOnly, kHeur, kParams, false);
    }
    Aggregate reg{REGISTER_SMALL_BUCKETS};
    const TChessboardRegisterItem mate = KingsItem();
    const TChessboardRegisterItem noMate = ItemWith("c3", WN);
    const TChessboardRegisterItem underHeur = ItemWith("d4", WB);
    const TChessboardRegisterItem markedOnly = ItemWith("e4", WR);
    const TChessboardRegisterItem absent = ItemWith("f4", WQ);
};

TEST_F(AggregatedLookups, WithDoubtfulGivesEachOfItsFourAnswers) {
    EXPECT_EQ(reg.LookupWithDoubtful(11, mate, kHeur, kParams), 1);
    EXPECT_EQ(reg.LookupWithDoubtful(5, mate, kHeur, kParams), 0);
    EXPECT_EQ(reg.LookupWithDoubtful(7, mate, kHeur, kParams), -2);
    EXPECT_EQ(reg.LookupWithDoubtful(7, noMate, kHeur, kParams), 0);
    EXPECT_EQ(reg.LookupWithDoubtful(9, underHeur, kHeur, kParams), -1);
    // A mark of doubt is no absence of mate.
    EXPECT_EQ(reg.LookupWithDoubtful(13, markedOnly, kHeur, kParams), -2);
    EXPECT_EQ(reg.LookupWithDoubtful(9, absent, kHeur, kParams), -2);
    // A given hash is used as given.
    EXPECT_EQ(reg.LookupWithDoubtful(9, underHeur, kHeur, kParams, underHeur.hash()), -1);
    EXPECT_EQ(reg.LookupWithDoubtful(9, underHeur, kHeur, kParams, underHeur.hash() + 1), -2);
}

TEST_F(AggregatedLookups, WithBoundAndDoubtful) {
    EXPECT_EQ(reg.LookupWithBoundAndDoubtful(5, 7, mate, kHeur, kParams), 0);
    EXPECT_EQ(reg.LookupWithBoundAndDoubtful(9, 7, mate, kHeur, kParams), 2);
    EXPECT_EQ(reg.LookupWithBoundAndDoubtful(7, 9, mate, kHeur, kParams), -2); // below the bound
    EXPECT_EQ(reg.LookupWithBoundAndDoubtful(13, 7, mate, kHeur, kParams), 1);
    EXPECT_EQ(reg.LookupWithBoundAndDoubtful(9, 1, underHeur, kHeur, kParams), -1);
    EXPECT_EQ(reg.LookupWithBoundAndDoubtful(11, 1, underHeur, kHeur, kParams), -2);
    EXPECT_EQ(reg.LookupWithBoundAndDoubtful(9, 1, absent, kHeur, kParams), -2);
}

TEST_F(AggregatedLookups, TheRangeLookUpAsksTheDoubtfulRegisterDirectly) {
    // Marked Doubtful at 13: asked from 13 down it answers 1, above it 0.
    EXPECT_EQ(reg.LookupDoubtfulInRange(9, 13, markedOnly, kHeur, kParams, markedOnly.hash()), 1);
    EXPECT_EQ(reg.LookupDoubtfulInRange(9, 11, markedOnly, kHeur, kParams, markedOnly.hash()), 1);
    EXPECT_EQ(reg.LookupDoubtfulInRange(9, 15, markedOnly, kHeur, kParams, markedOnly.hash()), 0);
    // Only a NotDoubtful: no mark.
    EXPECT_EQ(reg.LookupDoubtfulInRange(9, 9, underHeur, kHeur, kParams, underHeur.hash()), 0);
    EXPECT_EQ(reg.LookupDoubtfulInRange(9, 9, absent, kHeur, kParams, absent.hash()), REGISTER_UNKNOWN);
    EXPECT_EQ(reg.LookupDoubtfulInRange(9, 13, markedOnly, kOtherHeur, kOtherParams, markedOnly.hash()),
              REGISTER_UNKNOWN);
}

TEST_F(AggregatedLookups, ThePersistentMapIsApart) {
    reg.Insert(9, absent, true, nullptr, false);
    EXPECT_EQ(reg.LookupWithDoubtful(9, absent, kHeur, kParams), -2);
    EXPECT_EQ(reg.LookupInserted(9, absent), 1);
    EXPECT_EQ(reg.CountAll(), reg.ElementCount() + reg.DoubtfulElementsIn() + 1);
}

TEST(AggregatedRegister, ShortestProvenMateWalksDownToTheShortestLevel) {
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    const TChessboardRegisterItem five = KingsItem(), one = ItemWith("a2", WP), seven = ItemWith("b2", WP),
                                  doubtful = ItemWith("c2", WP);
    reg.Store(5, five, true);
    reg.Store(1, one, true);
    reg.Store(7, seven, true);
    reg.Store(3, seven, false);
    reg.StoreDoubtful(9, doubtful, kHeur, kParams, true);
    EXPECT_EQ(reg.ShortestProvenMate(9, five, kHeur, kParams), 5);
    EXPECT_EQ(reg.ShortestProvenMate(5, five, kHeur, kParams), 5);
    EXPECT_EQ(reg.ShortestProvenMate(3, five, kHeur, kParams), -2);
    EXPECT_EQ(reg.ShortestProvenMate(7, one, kHeur, kParams), 1);
    EXPECT_EQ(reg.ShortestProvenMate(1, one, kHeur, kParams), 1);
    EXPECT_EQ(reg.ShortestProvenMate(11, seven, kHeur, kParams), 7);
    EXPECT_EQ(reg.ShortestProvenMate(3, seven, kHeur, kParams), 0);
    EXPECT_EQ(reg.ShortestProvenMate(9, doubtful, kHeur, kParams), -1);
    EXPECT_EQ(reg.ShortestProvenMate(9, ItemWith("d2", WP), kHeur, kParams), -2);
}

// ---- Doubtful stores and their registers.

TEST(AggregatedRegister, EachKeyGetsItsOwnRegisterMadeOnDemand) {
    Aggregate reg(4096);
    EXPECT_EQ(reg.DoubtfulRegisterCount(), 0u);
    reg.StoreDoubtful(9, KingsItem(), kHeur, kParams, true);
    reg.StoreDoubtful(9, ItemWith("a2", WP), kHeur, kParams, false);
    reg.StoreDoubtful(7, KingsItem(), kOtherHeur, kOtherParams, true);
    reg.StoreDoubtful(7, KingsItem(), kOtherHeur, kOtherParams, true); // known: no new record
    reg.Store(5, KingsItem(), true);
    reg.Insert(5, KingsItem(), true, nullptr, false);
    EXPECT_EQ(reg.DoubtfulRegisterCount(), 2u);
    EXPECT_EQ(reg.DoubtfulElementsIn(), 3u);
    EXPECT_EQ(reg.SecondCount(), 3u);
    EXPECT_EQ(reg.ElementCount(), 1u);
    EXPECT_EQ(reg.CountAll(), 5u);
    EXPECT_EQ(reg.TotalEntries(), 5u);
    std::vector<TDoubtfulKey> keys;
    reg.ForEachDoubtful([&](TDoubtfulKey key, TDoubtfulRegister& doubtful) {
        keys.push_back(key);
        EXPECT_EQ(doubtful.BucketCount(), 4096u);
        EXPECT_TRUE(doubtful.m_bNoFiles);
        EXPECT_EQ(doubtful.Owner(), &reg);
        EXPECT_EQ(doubtful.TotalEntries(), 5u); // counted against the aggregate's quota
    });
    ASSERT_EQ(keys.size(), 2u);
    EXPECT_TRUE(keys[0] == (TDoubtfulKey{kOtherHeur, kOtherParams})); // parameters 0 come first
    EXPECT_TRUE(keys[1] == (TDoubtfulKey{kHeur, kParams}));
}

TEST(AggregatedRegister, NotDoubtfulRaisesItsNumberAndADoubtLowersTheOther) {
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    const TChessboardRegisterItem item = KingsItem();
    reg.StoreDoubtful(7, item, kHeur, kParams, true);
    reg.StoreDoubtful(5, item, kHeur, kParams, true);
    reg.StoreDoubtful(15, item, kHeur, kParams, false);
    reg.StoreDoubtful(13, item, kHeur, kParams, false);
    TRegisterMoves moves;
    ASSERT_TRUE(reg.DoubtfulNumbers(item, kHeur, kParams, moves));
    EXPECT_EQ(moves.MovesMate, 13);  // Doubtful
    EXPECT_EQ(moves.MovesNoMate, 7); // NotDoubtful
    // A NotDoubtful that reaches the doubt is put just below it.
    reg.StoreDoubtful(15, item, kHeur, kParams, true);
    ASSERT_TRUE(reg.DoubtfulNumbers(item, kHeur, kParams, moves));
    EXPECT_EQ(moves.MovesMate, 13);
    EXPECT_EQ(moves.MovesNoMate, 11);
    EXPECT_EQ(reg.DoubtfulElementsIn(), 1u);
}

TEST(AggregatedRegister, TheVirtualOperationsAnswerThroughTheBase) {
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    reg.StoreDoubtful(9, KingsItem(), kHeur, kParams, true);
    reg.StoreDoubtful(9, ItemWith("a2", WP), kOtherHeur, kOtherParams, true);
    reg.Store(5, KingsItem(), true);
    reg.Pin(kHeur, kParams);
    reg.RemoveDoubtful(kHeur, kParams); // the pin goes; the key is now free to be wiped
    TChessboardRegister<bool>& base = reg;
    EXPECT_EQ(base.CountAll(), 3u);
    EXPECT_EQ(base.SecondCount(), 2u);
    // Only keys whose pins have gone are wiped; a key never pinned is not.
    EXPECT_EQ(base.RemoveDoubtfulEntries(), 1u);
    EXPECT_EQ(reg.DoubtfulElementsIn(), 1u);
    EXPECT_EQ(reg.LookupWithDoubtful(9, ItemWith("a2", WP), kOtherHeur, kOtherParams), -1);
}

TEST(AggregatedRegister, RemoveDoubtfulEntriesLeavesAKeyThatIsStillPinned) {
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    reg.StoreDoubtful(9, KingsItem(), kHeur, kParams, true);
    reg.Pin(kHeur, kParams);
    EXPECT_EQ(reg.RemoveDoubtfulEntries(), 0u);
    EXPECT_EQ(reg.Pins(kHeur, kParams), 1u);
    EXPECT_EQ(reg.DoubtfulElementsIn(), 1u);
}

TEST(AggregatedRegister, RemoveNMoversKeepsADoubtfulAbsenceTwoPliesLonger) {
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    LogFile file;
    reg.SetLog(&file.log);
    reg.Store(7, NumberedItem(0), false);                         // 0, 7: goes
    reg.Store(7, NumberedItem(1), true);                          // 7, 0: goes
    reg.Store(9, NumberedItem(2), true);                          // 9, 0: stays
    reg.StoreDoubtful(7, NumberedItem(3), kHeur, kParams, true);  // 0, 7: stays
    reg.StoreDoubtful(5, NumberedItem(4), kHeur, kParams, true);  // 0, 5: goes
    reg.StoreDoubtful(7, NumberedItem(5), kHeur, kParams, false); // 7, 0: goes
    reg.StoreDoubtful(9, NumberedItem(6), kHeur, kParams, false); // 9, 0: stays
    EXPECT_EQ(reg.RemoveNMovers(7), 4u);
    EXPECT_EQ(reg.ElementCount(), 1u);
    EXPECT_EQ(reg.DoubtfulElementsIn(), 2u);
    EXPECT_EQ(reg.Lookup(9, NumberedItem(2)), 1);
    EXPECT_EQ(reg.LookupWithDoubtful(7, NumberedItem(3), kHeur, kParams), -1);
    EXPECT_EQ(file.Messages(),
              (std::vector<std::string>{
                  "TAggregatedTemporaryChessboardRegister::RemoveNMovers start., msg params: 7, 0",
                  "TTemporaryChessboardRegister::RemoveNMovers start., msg params: 7, 0",
                  "TTemporaryChessboardRegister::RemoveNMovers complete., msg params: 7, 2",
                  "TAggregatedTemporaryChessboardRegister::RemoveNMovers complete., msg params: 7, 4",
              }));
}

// ---- The purge of a full quota.

TEST(AggregatedRegister, ThePurgeGoesDoubtfulFirstThenShortLevelsThenFiveAndFourThenSevenAndSix) {
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    LogFile file;
    setMaxEntries(reg, 100);
    // Key 7 was left by its pass (pinned, then let go); key 9 was never pinned.
    reg.StoreDoubtful(9, ItemWith("a2", WP), 7, 0, false);
    reg.StoreDoubtful(9, ItemWith("b2", WP), 7, 0, false);
    reg.Pin(7, 0);
    reg.RemoveDoubtful(7, 0);
    reg.StoreDoubtful(9, ItemWith("c2", WP), 9, 0, true);
    uint32_t next = 0;
    auto store = [&](int count, uint16_t plies, bool bMate) {
        for (int i = 0; i < count; ++i) reg.Store(plies, NumberedItem(next++), bMate);
    };
    store(2, 3, true);
    store(2, 5, true);
    store(2, 4, false);
    store(10, 7, true);
    store(5, 6, false);
    store(76, 9, true);
    ASSERT_LT(next, kDistinctItems);
    ASSERT_EQ(reg.TotalEntries(), 100u);
    const uint64_t lastEmptied = reg.LastEmptied();
    reg.SetLog(&file.log);

    reg.EmptySomeDataWhenRegisterFull(false);
    EXPECT_EQ(file.Messages({"EmptySomeData", "RemoveDoubtful", "TAggregated"}),
              (std::vector<std::string>{
                  "EmptySomeDataWhenRegisterFull started, msg params: 0, 0",
                  "RemoveDoubtful start., msg params: 7, 0",
                  "RemoveDoubtful complete., msg params: 7, 2",
                  "TAggregatedTemporaryChessboardRegister::RemoveNMovers start., msg params: 3, 0",
                  "TAggregatedTemporaryChessboardRegister::RemoveNMovers complete., msg params: 3, 2",
                  "TAggregatedTemporaryChessboardRegister::RemoveNMovers start., msg params: 5, 0",
                  "TAggregatedTemporaryChessboardRegister::RemoveNMovers complete., msg params: 5, 4",
                  "TAggregatedTemporaryChessboardRegister::RemoveNMovers start., msg params: 4, 0",
                  "TAggregatedTemporaryChessboardRegister::RemoveNMovers complete., msg params: 4, 0",
                  "TAggregatedTemporaryChessboardRegister::RemoveNMovers start., msg params: 7, 0",
                  "TAggregatedTemporaryChessboardRegister::RemoveNMovers complete., msg params: 7, 15",
                  "TAggregatedTemporaryChessboardRegister::RemoveNMovers start., msg params: 6, 0",
                  "TAggregatedTemporaryChessboardRegister::RemoveNMovers complete., msg params: 6, 0",
                  "EmptySomeDataWhenRegisterFull complete, msg params: 0, 23",
              }));
    // A fifth of the quota is free again; the longest results stayed.
    EXPECT_EQ(reg.TotalEntries(), 77u);
    EXPECT_EQ(reg.ElementCount(), 76u);
    EXPECT_EQ(reg.DoubtfulElementsIn(), 1u);
    for (uint32_t i = 21; i < next; ++i) ASSERT_EQ(reg.Lookup(9, NumberedItem(i)), 1) << i;
    EXPECT_EQ(reg.LookupWithDoubtful(9, ItemWith("c2", WP), 9, 0), -1);
    EXPECT_GT(reg.LastEmptied(), lastEmptied);
}

TEST(AggregatedRegister, ThePurgeClearsTheShortLevelSwitchInTheAggregateAndEveryDoubtfulRegister) {
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    setMaxEntries(reg, 30);
    reg.StoreDoubtful(9, KingsItem(), kHeur, kParams, true);
    reg.StoreDoubtful(9, KingsItem(), kOtherHeur, kOtherParams, true);
    for (uint32_t i = 0; i < 28; ++i) reg.Store(9, NumberedItem(i), true);
    reg.EmptySomeDataWhenRegisterFull(false);
    // Nothing under 4 plies was there to remove: short levels are not worth keeping.
    EXPECT_FALSE(reg.ShortLevels());
    int doubtfulRegisters = 0;
    reg.ForEachDoubtful([&](TDoubtfulKey, TDoubtfulRegister& doubtful) {
        ++doubtfulRegisters;
        EXPECT_FALSE(doubtful.ShortLevels());
    });
    EXPECT_EQ(doubtfulRegisters, 2);
    // From now on nothing under 4 plies is stored, doubtful or not.
    const TChessboardRegisterItem item = ItemWith("h5", BP);
    reg.Store(3, item, true);
    reg.StoreDoubtful(3, item, kHeur, kParams, true);
    reg.StoreDoubtful(3, item, kHeur, kParams, false);
    reg.StoreDoubtful(3, item, 0x99, 0, false); // a register made now starts without them too
    reg.Insert(3, item, true, nullptr, false);
    EXPECT_EQ(reg.Lookup(3, item), REGISTER_UNKNOWN);
    TRegisterMoves moves;
    EXPECT_FALSE(reg.DoubtfulNumbers(item, kHeur, kParams, moves));
    EXPECT_FALSE(reg.DoubtfulNumbers(item, 0x99, 0, moves));
    EXPECT_EQ(reg.LookupInserted(3, item), REGISTER_UNKNOWN);
    reg.Store(4, item, false);
    EXPECT_EQ(reg.Lookup(4, item), 0);
    // A clear of the certain part brings them back there.
    reg.Clear(1);
    EXPECT_TRUE(reg.ShortLevels());
}

TEST(AggregatedRegister, TwoPurgesWithinTheGuardAreOne) {
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    LogFile file;
    reg.SetLog(&file.log);
    setMaxEntries(reg, 10);
    for (uint32_t i = 0; i < 10; ++i) reg.Store(5, NumberedItem(i), true);
    reg.EmptySomeDataWhenRegisterFull(false);
    ASSERT_EQ(reg.ElementCount(), 0u);
    for (uint32_t i = 0; i < 10; ++i) reg.Store(5, NumberedItem(i), true);
    const size_t before = file.Messages().size();
    reg.EmptySomeDataWhenRegisterFull(false);
    // Some other thread has just done the work: only the first line.
    EXPECT_EQ(file.Messages().size(), before + 1);
    EXPECT_EQ(reg.ElementCount(), 10u);
    waitOutThePurgeGuard();
    reg.EmptySomeDataWhenRegisterFull(false);
    EXPECT_EQ(reg.ElementCount(), 0u);
}

TEST(AggregatedRegister, TheFirstPurgeOfANewRegisterIsNotHeldOff) {
    const uint64_t before = nowMs();
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    EXPECT_LE(reg.LastEmptied() + REGISTER_PURGE_FIRST_AGE_MS, nowMs());
    EXPECT_GE(reg.LastEmptied() + REGISTER_PURGE_FIRST_AGE_MS, before);
}

TEST(AggregatedRegister, ASoftPurgeLeavesARegisterWithAQuarterFree) {
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    LogFile file;
    reg.SetLog(&file.log);
    setMaxEntries(reg, 100);
    for (uint32_t i = 0; i < 75; ++i) reg.Store(5, NumberedItem(i), true);
    reg.EmptySomeDataWhenRegisterFull(true);
    EXPECT_EQ(reg.ElementCount(), 75u);
    EXPECT_EQ(file.Messages(),
              (std::vector<std::string>{"EmptySomeDataWhenRegisterFull started, msg params: 1, 0"}));
    // One more and less than a quarter is free.
    reg.Store(5, NumberedItem(75), true);
    reg.EmptySomeDataWhenRegisterFull(true);
    EXPECT_EQ(reg.ElementCount(), 0u);
    EXPECT_TRUE(file.Has("EmptySomeDataWhenRegisterFull complete, msg params: 1, 76"));
}

TEST(AggregatedRegister, AnUrgentPurgeThatFreedEnoughDoubtfulEntriesStopsThere) {
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    LogFile file;
    constexpr uint32_t kDoubtful = REGISTER_PURGE_URGENT_DOUBTFUL + 1;
    for (uint32_t i = 0; i < kDoubtful; ++i) reg.StoreDoubtful(9, NumberedItem(i), kHeur, kParams, true);
    for (uint32_t i = 0; i < 20; ++i) reg.Store(3, NumberedItem(i), true);
    setMaxEntries(reg, kDoubtful + 20);
    reg.Pin(kHeur, kParams);
    reg.RemoveDoubtful(kHeur, kParams);
    reg.SetLog(&file.log);
    reg.EmptySomeDataWhenRegisterFull(false);
    EXPECT_EQ(reg.DoubtfulElementsIn(), 0u);
    EXPECT_EQ(reg.ElementCount(), 20u);
    EXPECT_TRUE(reg.ShortLevels());
    EXPECT_FALSE(file.Has("TAggregatedTemporaryChessboardRegister::RemoveNMovers"));
    EXPECT_TRUE(file.Has("EmptySomeDataWhenRegisterFull complete, msg params: 0, 4097"));
}

TEST(AggregatedRegister, ACertainStoreOrInsertAtTheLimitHasTheAggregatePurge) {
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    setMaxEntries(reg, 4);
    for (uint32_t i = 0; i < 4; ++i) reg.Store(5, NumberedItem(i), true);
    reg.Store(9, NumberedItem(4), true);
    EXPECT_EQ(reg.ElementCount(), 1u);
    EXPECT_EQ(reg.Lookup(9, NumberedItem(4)), 1);
    for (uint32_t i = 0; i < 3; ++i) reg.Store(5, NumberedItem(i), true);
    ASSERT_EQ(reg.TotalEntries(), 4u);
    waitOutThePurgeGuard();
    reg.Insert(11, KingsItem(), true, nullptr, false);
    EXPECT_EQ(reg.ElementsIn.load(), 1u);
    EXPECT_EQ(reg.ElementCount(), 1u);
    EXPECT_EQ(reg.LookupInserted(11, KingsItem()), 1);
}

// ---- Resize and clear.

TEST(AggregatedRegister, ResizeGivesEveryDoubtfulRegisterAndTheNextOnesTheCount) {
    Aggregate reg(REGISTER_SMALL_BUCKETS);
    reg.Store(9, KingsItem(), true);
    reg.StoreDoubtful(9, KingsItem(), kHeur, kParams, true);
    reg.Resize(REGISTER_SMALL_BUCKETS, true);
    EXPECT_EQ(reg.LookupWithDoubtful(9, KingsItem(), kHeur, kParams), 1);
    EXPECT_EQ(reg.LookupWithDoubtful(7, KingsItem(), kHeur, kParams), -1);
    EXPECT_EQ(reg.DoubtfulElementsIn(), 1u);
    reg.Resize(REGISTER_SMALL_BUCKETS, false);
    EXPECT_EQ(reg.ElementCount(), 0u);
    EXPECT_EQ(reg.DoubtfulElementsIn(), 0u);
    reg.StoreDoubtful(9, KingsItem(), kHeur, kParams, true);
    reg.Resize(REGISTER_LARGE_BUCKETS, true);
    EXPECT_EQ(reg.BucketCount(), REGISTER_LARGE_BUCKETS);
    EXPECT_EQ(reg.DoubtfulBucketCount(), REGISTER_LARGE_BUCKETS);
    EXPECT_EQ(reg.DoubtfulElementsIn(), 0u);
    reg.StoreDoubtful(9, KingsItem(), kOtherHeur, kOtherParams, true);
    reg.ForEachDoubtful([](TDoubtfulKey, TDoubtfulRegister& doubtful) {
        EXPECT_EQ(doubtful.BucketCount(), REGISTER_LARGE_BUCKETS);
    });
    EXPECT_EQ(reg.DoubtfulRegisterCount(), 2u);
}

class AggregatedClear : public ::testing::Test {
  protected:
    void SetUp() override {
        reg.Store(9, KingsItem(), true);
        reg.Insert(9, KingsItem(), true, nullptr, false);
        reg.StoreDoubtful(9, ItemWith("a2", WP), kHeur, kParams, true);
        reg.StoreDoubtful(9, ItemWith("b2", WP), kOtherHeur, kOtherParams, true);
        reg.Pin(kHeur, kParams);
        reg.SetShortLevels(false);
    }
    Aggregate reg{REGISTER_SMALL_BUCKETS};
};

TEST_F(AggregatedClear, ModeOneClearsTheCertainPartAndKeepsTheArrayAndTheDoubtfulRegisters) {
    reg.Clear(1);
    EXPECT_EQ(reg.ElementCount(), 0u);
    EXPECT_EQ(reg.ElementsIn.load(), 0u);
    EXPECT_EQ(reg.BucketCount(), REGISTER_SMALL_BUCKETS);
    EXPECT_TRUE(reg.ShortLevels());
    EXPECT_EQ(reg.DoubtfulRegisterCount(), 2u);
    EXPECT_EQ(reg.DoubtfulElementsIn(), 2u);
    EXPECT_EQ(reg.CountAll(), 2u);
    EXPECT_EQ(reg.LookupWithDoubtful(9, ItemWith("a2", WP), kHeur, kParams), -1);
    EXPECT_EQ(reg.LookupWithDoubtful(9, KingsItem(), kHeur, kParams), -2);
}

TEST_F(AggregatedClear, ModeZeroAlsoFreesTheArrayAndDestroysTheDoubtfulRegisters) {
    reg.Clear(0);
    EXPECT_EQ(reg.BucketCount(), 0u);
    EXPECT_EQ(reg.DoubtfulRegisterCount(), 0u);
    EXPECT_EQ(reg.DoubtfulElementsIn(), 0u);
    EXPECT_EQ(reg.CountAll(), 0u);
    EXPECT_EQ(reg.LookupWithDoubtful(9, ItemWith("a2", WP), kHeur, kParams), -2);
    // The holders of a key keep their pins.
    EXPECT_EQ(reg.Pins(kHeur, kParams), 1u);
    // The solve then sizes the array again.
    reg.Resize(REGISTER_SMALL_BUCKETS, true);
    reg.StoreDoubtful(9, ItemWith("a2", WP), kHeur, kParams, true);
    EXPECT_EQ(reg.LookupWithDoubtful(9, ItemWith("a2", WP), kHeur, kParams), -1);
}

TEST_F(AggregatedClear, ANegativeModeDestroysOnlyTheDoubtfulRegisters) {
    reg.Clear(-1);
    EXPECT_EQ(reg.DoubtfulRegisterCount(), 0u);
    EXPECT_EQ(reg.DoubtfulElementsIn(), 0u);
    EXPECT_EQ(reg.ElementCount(), 1u);
    EXPECT_EQ(reg.ElementsIn.load(), 1u);
    EXPECT_FALSE(reg.ShortLevels());
    EXPECT_EQ(reg.LookupWithDoubtful(9, KingsItem(), kHeur, kParams), 1);
}

struct ClearWatch {
    Aggregate* reg = nullptr;
    std::vector<uint32_t> countsSeen;
    static void repaint(void* user) {
        auto* self = static_cast<ClearWatch*>(user);
        self->countsSeen.push_back(self->reg->CountAll());
    }
};

TEST(AggregatedRegister, AClearShowsItsProgressUnlessToldNotTo) {
    Aggregate reg(2048);
    reg.Store(9, KingsItem(), true, 0);
    reg.StoreDoubtful(9, KingsItem(), kHeur, kParams, true, 0);
    ClearWatch watch;
    watch.reg = &reg;
    TRegisterClearProgress progress;
    progress.pfnRepaint = &ClearWatch::repaint;
    progress.user = &watch;
    progress.interval = std::chrono::milliseconds(0);
    reg.SetClearProgress(progress);
    reg.Clear(0, true);
    EXPECT_TRUE(watch.countsSeen.empty());
    reg.Resize(2048, true);
    reg.Store(9, KingsItem(), true, 0);
    reg.StoreDoubtful(9, KingsItem(), kHeur, kParams, true, 0);
    reg.Clear(0);
    // Two ticks of the certain part, then two of the doubtful register: the
    // counts shown are true while the clear runs.
    EXPECT_EQ(watch.countsSeen, (std::vector<uint32_t>{1, 1, 0, 0}));
}

// ---- Threads.

TEST(AggregatedRegister, ThreadsStoreAndLookUpWhileOnePurges) {
    // A small array, so that buckets turn into trees while others read and sweep.
    Aggregate reg(256);
    setMaxEntries(reg, 1500);
    constexpr int kWorkers = 3;
    constexpr uint32_t kRounds = 30000;
    std::atomic<bool> stop{false};
    std::atomic<int> wrong{0};
    auto work = [&](int worker) {
        for (uint32_t i = 0; i < kRounds; ++i) {
            const TChessboardRegisterItem item = NumberedItem(worker * kRounds + i);
            const uint32_t heuristics = 1 + (i % 3);
            const uint16_t plies = static_cast<uint16_t>(3 + 2 * (i % 6));
            reg.Store(plies, item, i % 2 == 0);
            reg.StoreDoubtful(plies, item, heuristics, 0, i % 4 < 2);
            if (i % 32 == 0) reg.Insert(static_cast<uint16_t>(plies + 2), item, true, nullptr, false);
            const int8_t answer = reg.LookupWithDoubtful(plies, item, heuristics, 0);
            if (answer < -2 || answer > 1) ++wrong;
            const int8_t bound = reg.LookupWithBoundAndDoubtful(plies, 3, item, heuristics, 0);
            if (bound < -2 || bound > 2) ++wrong;
            if (reg.ShortestProvenMate(plies, item, heuristics, 0) > plies) ++wrong;
        }
    };
    auto purge = [&] {
        // A few rounds at least, however quick the workers are.
        for (int round = 0; !stop.load() || round < 4; ++round) {
            reg.Pin(1 + round % 3, 0);
            reg.EmptySomeDataWhenRegisterFull(round % 2 == 0);
            reg.RemoveDoubtful(1 + round % 3, 0);
            reg.RemoveDoubtful(1 + (round + 1) % 3, 0);
            if (round % 8 == 0) reg.RemoveNMovers(5);
            // The window's command may clear doubtful data while a solve runs.
            if (round % 5 == 4) reg.Clear(-1);
            std::this_thread::sleep_for(std::chrono::milliseconds(REGISTER_PURGE_GUARD_MS + 1));
        }
    };
    const uint64_t lastEmptied = reg.LastEmptied();
    std::thread purger(purge);
    std::vector<std::thread> workers;
    for (int worker = 0; worker < kWorkers; ++worker) workers.emplace_back(work, worker);
    for (std::thread& worker : workers) worker.join();
    stop = true;
    purger.join();

    EXPECT_EQ(wrong.load(), 0);
    EXPECT_GT(reg.LastEmptied(), lastEmptied);
    // Stores that found room at the same moment may overshoot by one each.
    EXPECT_LE(reg.TotalEntries(), reg.MaxEntries() + 3 * kWorkers);
    // The counters agree with what the maps hold.
    uint64_t doubtfulRecords = 0, doubtfulCounts = 0;
    reg.ForEachDoubtful([&](TDoubtfulKey, TDoubtfulRegister& doubtful) {
        doubtfulCounts += doubtful.ElementCount();
        for (uint32_t bucket = 0; bucket < doubtful.BucketCount(); ++bucket)
            doubtfulRecords += doubtful.CombinedMap().RecordsIn(bucket);
    });
    EXPECT_EQ(reg.DoubtfulElementsIn(), doubtfulCounts);
    EXPECT_EQ(doubtfulRecords, doubtfulCounts);
    uint64_t records = 0;
    for (uint32_t bucket = 0; bucket < reg.BucketCount(); ++bucket)
        records += reg.CombinedMap().RecordsIn(bucket);
    EXPECT_EQ(reg.ElementCount(), records);
    EXPECT_LE(reg.DoubtfulRegisterCount(), 3u);
    EXPECT_FALSE(reg.PersistentMapLock().Held());
    EXPECT_EQ(reg.PersistentMapLock().Readers(), 0u);
    EXPECT_FALSE(reg.CombinedMapLock().Held());
}

} // namespace
} // namespace zorvane
