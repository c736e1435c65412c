// The persistent map of a register: Insert and InsertDefence, their look-ups,
// the removal of redundant entries, the incoherence error and the budget.
#include "core/chess_exception.h"
#include "registers/chessboard_register.h"
#include "register_test_items.h"

#include <gtest/gtest.h>

#include <string>

namespace zorvane {
namespace {

using Register = TChessboardRegister<bool>;

std::string insertError(Register& reg, bool bDefence, uint16_t nMoves, bool bThereIsMate) {
    try {
        if (bDefence)
            reg.InsertDefence(nMoves, KingsItem(), bThereIsMate, nullptr, false);
        else
            reg.Insert(nMoves, KingsItem(), bThereIsMate, nullptr, false);
    } catch (const ChessException& e) {
        return e.what();
    }
    return "";
}

TEST(ChessboardRegister, AnEntryKeepsItsLevelTheMarkTheMoveAndTheAnswer) {
    Register reg;
    const TMove move = mv("d1", "d7");
    reg.Insert(5, KingsItem(), true, &move, false);
    const TSubproblemRegisterInfo<bool>* info = reg.InsertedAt(5, KingsItem());
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->nMoves, 5);
    EXPECT_EQ(info->wMark, 970);
    EXPECT_EQ(info->move.from, sq("d1"));
    EXPECT_EQ(info->move.to, sq("d7"));
    EXPECT_TRUE(info->bThereIsMate);
    EXPECT_EQ(reg.ElementsIn.load(), 1u);
}

TEST(ChessboardRegister, WithoutAMoveTheEntryHoldsTheNullMove) {
    Register reg;
    reg.InsertDefence(4, KingsItem(), false, nullptr, false);
    const TSubproblemRegisterInfo<bool>* info = reg.InsertedAt(4, KingsItem());
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->wMark, 970);
    EXPECT_EQ(info->move.from, 0);
    EXPECT_EQ(info->move.to, 0);
    EXPECT_FALSE(info->bThereIsMate);
}

TEST(ChessboardRegister, InsertingTheSameAnswerTwiceLeavesElementsInUnchanged) {
    Register reg;
    reg.Insert(7, KingsItem(), true, nullptr, false);
    EXPECT_EQ(reg.ElementsIn.load(), 1u);
    reg.Insert(7, KingsItem(), true, nullptr, false);
    EXPECT_EQ(reg.ElementsIn.load(), 1u);
    reg.InsertDefence(6, KingsItem(), false, nullptr, false);
    reg.InsertDefence(6, KingsItem(), false, nullptr, false);
    EXPECT_EQ(reg.ElementsIn.load(), 2u);
}

TEST(ChessboardRegister, AttackerLookupAroundAMate) {
    Register reg;
    reg.Insert(7, KingsItem(), true, nullptr, false);
    EXPECT_EQ(reg.LookupInserted(5, KingsItem()), REGISTER_UNKNOWN);
    EXPECT_EQ(reg.LookupInserted(7, KingsItem()), 1);
    EXPECT_EQ(reg.LookupInserted(9, KingsItem()), 1);
    EXPECT_EQ(reg.LookupInserted(7, ItemWith("a2", WP)), REGISTER_UNKNOWN);
}

TEST(ChessboardRegister, AttackerLookupAroundAnAbsence) {
    Register reg;
    reg.Insert(7, KingsItem(), false, nullptr, false);
    EXPECT_EQ(reg.LookupInserted(5, KingsItem()), 0);
    EXPECT_EQ(reg.LookupInserted(7, KingsItem()), 0);
    EXPECT_EQ(reg.LookupInserted(9, KingsItem()), REGISTER_UNKNOWN);
}

TEST(ChessboardRegister, DefenderLookupReadsTheLevelsTheOtherWay) {
    Register reg;
    reg.InsertDefence(6, KingsItem(), true, nullptr, false);
    EXPECT_EQ(reg.LookupInsertedDefence(4, KingsItem()), 1);
    EXPECT_EQ(reg.LookupInsertedDefence(6, KingsItem()), 1);
    EXPECT_EQ(reg.LookupInsertedDefence(8, KingsItem()), REGISTER_UNKNOWN);
    const TChessboardRegisterItem other = ItemWith("h2", WP);
    reg.InsertDefence(6, other, false, nullptr, false);
    EXPECT_EQ(reg.LookupInsertedDefence(4, other), REGISTER_UNKNOWN);
    EXPECT_EQ(reg.LookupInsertedDefence(6, other), 0);
    EXPECT_EQ(reg.LookupInsertedDefence(8, other), 0);
}

TEST(ChessboardRegister, EachLookupSeesOnlyItsOwnParity) {
    Register reg;
    reg.InsertDefence(6, KingsItem(), true, nullptr, false);
    EXPECT_EQ(reg.LookupInserted(7, KingsItem()), REGISTER_UNKNOWN);
    reg.Insert(7, KingsItem(), false, nullptr, false);
    EXPECT_EQ(reg.LookupInsertedDefence(8, KingsItem()), REGISTER_UNKNOWN);
    EXPECT_EQ(reg.ElementsIn.load(), 2u);
}

TEST(ChessboardRegister, AnAttackersShorterMateRemovesTheLongerOnes) {
    Register reg;
    reg.Insert(9, KingsItem(), true, nullptr, false);
    reg.Insert(7, KingsItem(), true, nullptr, false);
    EXPECT_EQ(reg.ElementsIn.load(), 1u);
    EXPECT_EQ(reg.InsertedAt(9, KingsItem()), nullptr);
    EXPECT_NE(reg.InsertedAt(7, KingsItem()), nullptr);
}

TEST(ChessboardRegister, AnAttackersLongerAbsenceRemovesTheShorterOnes) {
    Register reg;
    reg.Insert(3, KingsItem(), false, nullptr, false);
    reg.Insert(5, KingsItem(), false, nullptr, false);
    reg.Insert(9, KingsItem(), true, nullptr, false);
    reg.Insert(7, KingsItem(), false, nullptr, false);
    EXPECT_EQ(reg.ElementsIn.load(), 2u);
    EXPECT_EQ(reg.InsertedAt(3, KingsItem()), nullptr);
    EXPECT_EQ(reg.InsertedAt(5, KingsItem()), nullptr);
    EXPECT_NE(reg.InsertedAt(7, KingsItem()), nullptr);
    EXPECT_NE(reg.InsertedAt(9, KingsItem()), nullptr);
}

TEST(ChessboardRegister, RedundancyIsPerPosition) {
    Register reg;
    reg.Insert(9, ItemWith("a2", WP), true, nullptr, false);
    reg.Insert(7, KingsItem(), true, nullptr, false);
    EXPECT_EQ(reg.ElementsIn.load(), 2u);
    EXPECT_NE(reg.InsertedAt(9, ItemWith("a2", WP)), nullptr);
}

TEST(ChessboardRegister, ADefendersAbsenceRemovesTheHigherAbsences) {
    Register reg;
    reg.InsertDefence(8, KingsItem(), false, nullptr, false);
    reg.InsertDefence(10, ItemWith("a2", WP), false, nullptr, false);
    // An absence at 6 is not known from one at 8 (the defender reads upward),
    // so it goes in and takes the entry at 8 away.
    reg.InsertDefence(6, KingsItem(), false, nullptr, false);
    EXPECT_EQ(reg.ElementsIn.load(), 2u);
    EXPECT_EQ(reg.InsertedAt(8, KingsItem()), nullptr);
    EXPECT_NE(reg.InsertedAt(6, KingsItem()), nullptr);
}

TEST(ChessboardRegister, ADefendersMateRemovesTheLowerMates) {
    Register reg;
    reg.InsertDefence(4, KingsItem(), true, nullptr, false);
    reg.InsertDefence(8, KingsItem(), true, nullptr, false);
    EXPECT_EQ(reg.ElementsIn.load(), 1u);
    EXPECT_EQ(reg.InsertedAt(4, KingsItem()), nullptr);
    EXPECT_NE(reg.InsertedAt(8, KingsItem()), nullptr);
}

TEST(ChessboardRegister, WithoutTheRedundancySwitchEveryEntryStays) {
    Register reg;
    reg.m_bRemoveRedundant = false;
    reg.Insert(9, KingsItem(), true, nullptr, false);
    reg.Insert(7, KingsItem(), true, nullptr, false);
    EXPECT_EQ(reg.ElementsIn.load(), 2u);
    EXPECT_NE(reg.InsertedAt(9, KingsItem()), nullptr);
}

TEST(ChessboardRegister, AContradictingInsertThrows) {
    Register reg;
    reg.Insert(7, KingsItem(), true, nullptr, false);
    EXPECT_EQ(insertError(reg, false, 9, false), "Incoherent information in TChessboardRegister::Insert()");
    EXPECT_EQ(reg.ElementsIn.load(), 1u);
    // The lock was given back: the register still answers and takes entries.
    EXPECT_EQ(reg.LookupInserted(7, KingsItem()), 1);
    reg.Insert(9, ItemWith("a2", WP), false, nullptr, false);
    EXPECT_EQ(reg.ElementsIn.load(), 2u);
}

TEST(ChessboardRegister, AContradictingDefenceThrowsTheSameEnglishText) {
    Register reg;
    reg.InsertDefence(6, KingsItem(), false, nullptr, false);
    EXPECT_EQ(insertError(reg, true, 8, true), "Incoherent information in TChessboardRegister::Insert()");
}

TEST(ChessboardRegister, ThePolishTextsNameTheMethod) {
    Register reg;
    reg.m_bPolishTexts = true;
    reg.Insert(7, KingsItem(), true, nullptr, false);
    reg.InsertDefence(6, KingsItem(), false, nullptr, false);
    EXPECT_EQ(insertError(reg, false, 9, false), "Sprzeczna informacja w TChessboardRegister::Insert()");
    EXPECT_EQ(insertError(reg, true, 8, true), "Sprzeczna informacja w TChessboardRegister::InsertDefence()");
}

TEST(ChessboardRegister, WithShortLevelsOffAnInsertUnderFourPliesIsDropped) {
    Register reg;
    reg.SetShortLevels(false);
    reg.Insert(3, KingsItem(), true, nullptr, false);
    EXPECT_EQ(reg.ElementsIn.load(), 0u);
    reg.InsertDefence(4, KingsItem(), true, nullptr, false);
    EXPECT_EQ(reg.ElementsIn.load(), 1u);
}

TEST(ChessboardRegister, TheLimitInBytesBecomesACountOfEntries) {
    Register reg;
    EXPECT_EQ(reg.MaxEntries(), 0xFFFFFFFFu);
    reg.SetMemoryLimit(uint64_t{1} << 30);
    EXPECT_EQ(reg.MemoryLimit(), uint64_t{1} << 30);
    EXPECT_EQ(reg.NetMemoryLimit(), 783831531u); // 73 % of 1 GiB
    EXPECT_EQ(reg.MaxEntries(), 8164911u);       // 96 bytes an entry
    reg.SetMemoryLimit(300);
    EXPECT_EQ(reg.NetMemoryLimit(), 219u);
    EXPECT_EQ(reg.MaxEntries(), 2u);
}

TEST(ChessboardRegister, AFullRegisterDropsTheInsert) {
    Register reg;
    reg.SetMemoryLimit(300);
    reg.Insert(5, KingsItem(), true, nullptr, false);
    reg.Insert(5, ItemWith("a2", WP), true, nullptr, false);
    reg.Insert(5, ItemWith("b2", WP), true, nullptr, false);
    EXPECT_EQ(reg.ElementsIn.load(), 2u);
    EXPECT_EQ(reg.LookupInserted(5, ItemWith("b2", WP)), REGISTER_UNKNOWN);
}

TEST(ChessboardRegister, CountsGoToTheOwnersBudget) {
    Register owner, member;
    owner.SetMemoryLimit(300);
    member.SetOwner(&owner); // the member's own limit stays open
    owner.Insert(5, KingsItem(), true, nullptr, false);
    owner.Insert(5, ItemWith("a2", WP), true, nullptr, false);
    member.Insert(5, KingsItem(), true, nullptr, false);
    EXPECT_EQ(member.ElementsIn.load(), 0u);
    EXPECT_EQ(member.TotalEntries(), 2u);
}

TEST(ChessboardRegister, ClearEmptiesTheMapAndKeepsShortLevelsAgain) {
    Register reg;
    reg.Insert(5, KingsItem(), true, nullptr, false);
    reg.SetShortLevels(false);
    reg.ClearInserted();
    EXPECT_EQ(reg.ElementsIn.load(), 0u);
    EXPECT_EQ(reg.LookupInserted(5, KingsItem()), REGISTER_UNKNOWN);
    EXPECT_TRUE(reg.ShortLevels());
}

TEST(ChessboardRegister, TheVirtualCountsAreThoseOfThePersistentMap) {
    Register reg;
    reg.Insert(5, KingsItem(), true, nullptr, false);
    EXPECT_EQ(reg.CountAll(), 1u);
    EXPECT_EQ(reg.SecondCount(), 0u);
    EXPECT_EQ(reg.RemoveDoubtfulEntries(), 0u);
}

} // namespace
} // namespace zorvane
