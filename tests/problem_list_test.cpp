// The problem list: changes against the snapshot, saving and throwing away,
// navigation with its questions, the history of viewed problems.
#include "core/fen.h"
#include "core/make_move.h"
#include "engine/mate_search.h"
#include "problems/problem_list.h"

#include <gtest/gtest.h>

#include <cstring>
#include <deque>
#include <fstream>
#include <stdexcept>

namespace zorvane {
namespace {

// Answers questions from a queue and records what the list asked and showed.
class ScriptedHost : public ProblemListHost {
  public:
    std::deque<Answer> answers;
    std::vector<std::wstring> questions;
    std::vector<Buttons> buttons;
    std::vector<std::wstring> errors;
    int writes = 0;
    bool failWrites = false;
    bool solving = false;
    int stops = 0;

    Answer Ask(const std::wstring& title, const std::wstring& text, Buttons offered) override {
        questions.push_back(title + L"|" + text);
        buttons.push_back(offered);
        if (answers.empty()) throw std::logic_error("unexpected question");
        const Answer a = answers.front();
        answers.pop_front();
        return a;
    }
    void ShowError(const std::wstring& title, const std::wstring& text) override {
        errors.push_back(title + L"|" + text);
    }
    bool IsSolving(const TChessProblem&) override { return solving; }
    void StopSolving(TChessProblem&) override {
        ++stops;
        solving = false;
    }
    void WriteFile(const std::filesystem::path&, const ProblemMap&) override {
        if (failWrites) throw std::runtime_error("disk full");
        ++writes;
    }
};

std::unique_ptr<TChessProblem> makeProblem(int32_t id, const std::string& fen, int moves,
                                           uint16_t type = PROBLEM_DIRECT_MATE) {
    auto p = std::make_unique<TChessProblem>();
    p->id = id;
    p->type = type;
    SetStipulation(*p, moves);
    p->startPosition.m_shPliesLeft = p->startPosition.m_shPliesTotal = p->plies;
    EXPECT_TRUE(ReadFen(fen, p->startPosition)) << fen;
    p->description = L"problem " + std::to_wstring(id);
    return p;
}

struct ListFixture : ::testing::Test {
    ScriptedHost host;
    ProblemList list{host, LANGUAGE_ENGLISH};

    void SetUp() override {
        ProblemMap map;
        map[1] = makeProblem(1, "k7/8/1K6/8/8/8/8/7R", 2);
        map[3] = makeProblem(3, "7k/8/6K1/8/8/8/8/R7", 2);
        map[7] = makeProblem(7, "4k3/8/4K3/8/8/8/8/7Q", 3);
        list.Replace(std::move(map), "/tmp/problems.cp");
    }
    int32_t currentId() { return list.Current()->id; }
};

TEST_F(ListFixture, UntouchedProblemIsUnchangedAlsoAfterASolve) {
    EXPECT_FALSE(list.IsCurrentProblemChanged());
    MateProof proof;
    EXPECT_EQ(proof.FindKeys(list.Current()->startPosition, 2).texts.size(), 12u);
    EXPECT_FALSE(list.IsCurrentProblemChanged());
}

TEST_F(ListFixture, MovingAManInThePositionIsAChange) {
    TChessProblem& p = *list.Current();
    p.startPosition.m_aSquares[7] = 0;
    p.startPosition.m_aSquares[6] = WR;
    EXPECT_TRUE(list.IsCurrentProblemChanged());
}

TEST_F(ListFixture, EveryRecordedFieldCounts) {
    TChessProblem& p = *list.Current();
    SetStipulation(p, 3);
    EXPECT_TRUE(list.IsCurrentProblemChanged());
    SetStipulation(p, 2);
    EXPECT_FALSE(list.IsCurrentProblemChanged());
    p.description += L"!";
    EXPECT_TRUE(list.IsCurrentProblemChanged());
    list.TakeSnapshot(false);
    p.tags.insert(L"miniature");
    EXPECT_TRUE(list.IsCurrentProblemChanged());
    list.TakeSnapshot(false);
    p.variants[L"Main variant"] = TVariant{L"Main variant", {}};
    EXPECT_TRUE(list.IsCurrentProblemChanged());
    list.TakeSnapshot(false);
    p.variants[L"Main variant"].moves.push_back(TVariantMove{ParseMove("h1-h8", true), "h1-h8", L""});
    EXPECT_TRUE(list.IsCurrentProblemChanged());
    list.TakeSnapshot(false);
    p.type = PROBLEM_SELFMATE;
    EXPECT_TRUE(list.IsCurrentProblemChanged());
}

TEST_F(ListFixture, PlayedMoveIsAChangeOnlyForAPosition) {
    TChessProblem& p = *list.Current();
    TChessboard child;
    CopyToChild(child, p.startPosition);
    TMove move = ParseMove("h1-h2", true);
    ASSERT_TRUE(MakeWhiteMove(child, move));
    p.playedPositions.push_back(child);
    EXPECT_FALSE(list.IsCurrentProblemChanged());

    ProblemMap map;
    map[5] = makeProblem(5, "k7/8/1K6/8/8/8/8/7R", 0, PROBLEM_POSITION);
    list.Replace(std::move(map), "/tmp/positions.cp");
    TChessProblem& position = *list.Current();
    CopyToChild(child, position.startPosition);
    move = ParseMove("h1-h2", true);
    position.startPosition.m_shPliesLeft = 255;
    ASSERT_TRUE(MakeWhiteMove(child, move));
    position.playedPositions.push_back(child);
    EXPECT_TRUE(list.IsCurrentProblemChanged());
}

TEST_F(ListFixture, RevertGivesBackTheSavedState) {
    TChessProblem& p = *list.Current();
    p.description = L"changed";
    p.tags.insert(L"tag");
    SetStipulation(p, 4);
    p.startPosition.m_aSquares[7] = 0;
    EXPECT_FALSE(list.RevertToSnapshot());
    EXPECT_EQ(p.description, L"problem 1");
    EXPECT_TRUE(p.tags.empty());
    EXPECT_EQ(p.plies, 3);
    EXPECT_EQ(p.stipulationPlies, 3);
    EXPECT_EQ(p.startPosition.m_aSquares[7], WR);
    EXPECT_FALSE(list.IsCurrentProblemChanged());
}

TEST_F(ListFixture, SaveQuestionYesWritesTheFile) {
    list.Current()->description = L"new text";
    host.answers = {Answer::Yes};
    EXPECT_EQ(list.AskSaveChanges(false), 0);
    EXPECT_EQ(host.writes, 1);
    ASSERT_EQ(host.questions.size(), 1u);
    EXPECT_EQ(host.questions[0],
              L"Question|There are changes in the current problem.\nDo you want to save them?");
    EXPECT_FALSE(list.IsCurrentProblemChanged());
}

TEST(ProblemListFile, PathPartsAndTheFileTime) {
    ScriptedHost host;
    ProblemList list(host, LANGUAGE_ENGLISH);
    const std::filesystem::path path = std::filesystem::temp_directory_path() / "zorvane-list-test.cp";
    { std::ofstream(path) << "x"; }
    ProblemMap map;
    map[1] = makeProblem(1, "k7/8/1K6/8/8/8/8/7R", 2);
    list.Replace(std::move(map), path);
    EXPECT_EQ(list.FileName(), L"zorvane-list-test.cp");
    EXPECT_EQ(list.FileDirectory(), std::filesystem::temp_directory_path().wstring());
    EXPECT_EQ(list.fileTime, std::filesystem::last_write_time(path));
    std::filesystem::remove(path);
}

TEST_F(ListFixture, SaveQuestionCancelAndNo) {
    list.Current()->description = L"new text";
    host.answers = {Answer::Cancel};
    EXPECT_EQ(list.AskSaveChanges(false), 1);
    EXPECT_EQ(list.Current()->description, L"new text");
    host.answers = {Answer::No};
    EXPECT_EQ(list.AskSaveChanges(false), 0);
    EXPECT_EQ(list.Current()->description, L"problem 1");
    EXPECT_EQ(host.writes, 0);
}

TEST_F(ListFixture, FailedWriteIsReportedAndKeepsTheChange) {
    list.Current()->description = L"new text";
    host.failWrites = true;
    host.answers = {Answer::Yes};
    EXPECT_EQ(list.AskSaveChanges(false), 1);
    EXPECT_EQ(host.errors,
              (std::vector<std::wstring>{L"Error|Error writing to file", L"Error|Error saving to file"}));
    EXPECT_TRUE(list.IsCurrentProblemChanged());
}

TEST_F(ListFixture, PolishQuestionText) {
    list.SetLanguage(LANGUAGE_POLISH);
    list.Current()->description = L"x";
    host.answers = {Answer::Cancel};
    list.AskSaveChanges(false);
    EXPECT_EQ(host.questions[0], L"Question|Dokonałeś zmian w bieżącym problemie.\nCzy chcesz je zachować?");
}

TEST_F(ListFixture, SamePositionIsAskedBeforeSaving) {
    ASSERT_TRUE(list.NavigateToProblem(Navigation::ById, 3));
    std::memcpy(list.Current()->startPosition.m_aSquares, list.problems[1]->startPosition.m_aSquares, 64);
    EXPECT_EQ(list.FindSamePosition(3), list.problems[1].get());
    host.answers = {Answer::No};
    EXPECT_FALSE(list.SaveCurrentFile());
    EXPECT_EQ(host.writes, 0);
    EXPECT_EQ(host.questions.back(),
              L"Question|The same position already exists in this file as the following "
              L"problem:\n1. #2 problem 1\n\nDo you want to save changes anyway?");
    host.answers = {Answer::Yes};
    EXPECT_TRUE(list.SaveCurrentFile());
    EXPECT_EQ(host.writes, 1);
}

// ---- A file loaded in part.

const std::wstring PART_QUESTION =
    L"Question|This file was loaded in part: it holds 4 problem(s) beyond the ones shown.\nSaving writes "
    L"over the "
    L"file, and they will be lost.\n\nDo you want to write over the file anyway? (No keeps the file; Save as "
    L"writes to another one)";

struct PartListFixture : ListFixture {
    void SetUp() override {
        ProblemMap map;
        map[1] = makeProblem(1, "k7/8/1K6/8/8/8/8/7R", 2);
        map[2] = makeProblem(2, "7k/8/6K1/8/8/8/8/R7", 2);
        list.Replace(std::move(map), "/tmp/part.cp", 4);
    }
};

TEST_F(PartListFixture, SaveAsksAndNoKeepsTheFile) {
    EXPECT_TRUE(list.LoadedInPart());
    host.answers = {Answer::No};
    EXPECT_FALSE(list.SaveCurrentFile());
    EXPECT_EQ(host.writes, 0);
    EXPECT_EQ(host.questions, std::vector<std::wstring>{PART_QUESTION});
    EXPECT_EQ(host.buttons, std::vector<Buttons>{Buttons::YesNoDefaultNo});
    EXPECT_TRUE(host.errors.empty());
    EXPECT_EQ(list.problemsNotLoaded, 4);
}

TEST_F(PartListFixture, YesWritesAndTheNextSaveAsksNoMore) {
    host.answers = {Answer::Yes};
    EXPECT_TRUE(list.SaveCurrentFile());
    EXPECT_EQ(host.writes, 1);
    EXPECT_FALSE(list.LoadedInPart());
    EXPECT_TRUE(list.SaveCurrentFile()); // an unexpected question would throw
    EXPECT_EQ(host.writes, 2);
    EXPECT_EQ(host.questions.size(), 1u);
}

TEST_F(PartListFixture, SavingChangesOnLeavingAsksAndNoStaysWithoutAnError) {
    list.Current()->description = L"new text";
    host.answers = {Answer::Yes, Answer::No};
    EXPECT_EQ(list.AskSaveChanges(false), 1);
    EXPECT_EQ(host.writes, 0);
    ASSERT_EQ(host.questions.size(), 2u);
    EXPECT_EQ(host.questions[1], PART_QUESTION);
    EXPECT_TRUE(host.errors.empty());
    EXPECT_EQ(list.Current()->description, L"new text");
    // Navigation stays on the problem, its change kept.
    host.answers = {Answer::Yes, Answer::No};
    EXPECT_FALSE(list.NavigateToProblem(Navigation::Next));
    EXPECT_EQ(currentId(), 1);
}

TEST_F(PartListFixture, OnlyTheSameFileIsAskedFor) {
    EXPECT_TRUE(list.MayWriteOver("/tmp/other.cp"));
    EXPECT_TRUE(host.questions.empty());
    host.answers = {Answer::No, Answer::No};
    EXPECT_FALSE(list.MayWriteOver("/tmp/../tmp/part.cp"));
    EXPECT_FALSE(list.MayWriteOver("/tmp/part.cpx")); // its double of the comment mode
    EXPECT_EQ(host.questions.size(), 2u);
}

TEST_F(PartListFixture, AWholeLoadClearsTheMark) {
    ProblemMap map;
    map[1] = makeProblem(1, "k7/8/1K6/8/8/8/8/7R", 2);
    list.Replace(std::move(map), "/tmp/part.cp");
    EXPECT_FALSE(list.LoadedInPart());
    EXPECT_TRUE(list.MayWriteOver("/tmp/part.cp"));
}

TEST_F(PartListFixture, PolishAndUkrainianTexts) {
    host.answers = {Answer::No, Answer::No};
    list.SetLanguage(LANGUAGE_POLISH);
    list.MayWriteOver("/tmp/part.cp");
    list.SetLanguage(LANGUAGE_UKRAINIAN);
    list.MayWriteOver("/tmp/part.cp");
    EXPECT_EQ(
        host.questions[0],
        L"Question|Ten plik został wczytany częściowo: zawiera jeszcze 4 problem(ów) poza wyświetlonymi.\n"
        L"Zapis nadpisze plik i zostaną one utracone.\n\nCzy mimo to chcesz nadpisać plik? (Nie zachowuje "
        L"plik; Zapisz jako zapisuje do innego)");
    EXPECT_EQ(
        host.questions[1],
        L"Question|Цей файл завантажено частково: він містить ще 4 задач(і) понад показані.\nЗбереження "
        L"перезапише файл, і їх буде втрачено.\n\nВсе одно перезаписати файл? (Ні зберігає файл; Зберегти "
        L"як записує в інший)");
}

TEST_F(ListFixture, PreviousAtTheFirstProblemStays) {
    EXPECT_EQ(currentId(), 1);
    list.NavigateToProblem(Navigation::Previous);
    EXPECT_EQ(currentId(), 1);
    EXPECT_TRUE(host.questions.empty());
}

TEST_F(ListFixture, NextLastFirstAndById) {
    EXPECT_TRUE(list.NavigateToProblem(Navigation::Next));
    EXPECT_EQ(currentId(), 3);
    EXPECT_TRUE(list.NavigateToProblem(Navigation::Last));
    EXPECT_EQ(currentId(), 7);
    EXPECT_TRUE(list.NavigateToProblem(Navigation::First));
    EXPECT_EQ(currentId(), 1);
    EXPECT_TRUE(list.NavigateToProblem(Navigation::ById, 7));
    EXPECT_EQ(currentId(), 7);
    EXPECT_FALSE(list.NavigateToProblem(Navigation::ById, 5));
    EXPECT_EQ(list.currentProblem, list.problems.end());
}

TEST_F(ListFixture, NextAtTheLastAsksAndNumbersTheNewProblemLastPlusOne) {
    list.NavigateToProblem(Navigation::Last);
    host.answers = {Answer::Yes};
    ASSERT_TRUE(list.NavigateToProblem(Navigation::Next));
    EXPECT_EQ(host.questions.back(), L"Question|This is the last problem.\nDo you want to create a new one?");
    EXPECT_EQ(currentId(), 8);
    const TChessProblem& fresh = *list.Current();
    EXPECT_EQ(fresh.startPosition.m_aSquares[4], WK);
    EXPECT_EQ(fresh.startPosition.m_aSquares[60], BK);
    EXPECT_EQ(fresh.description, L"New Problem");
    EXPECT_TRUE(list.snapshot.isNewProblem);
    EXPECT_EQ(list.snapshot.savedId, -1);
}

TEST_F(ListFixture, NewProblemLeftUnsavedDisappearsFromListAndHistory) {
    list.NavigateToProblem(Navigation::Last);
    host.answers = {Answer::Yes};
    ASSERT_TRUE(list.NavigateToProblem(Navigation::Next));
    ASSERT_EQ(currentId(), 8);
    host.answers = {Answer::No};
    ASSERT_TRUE(list.NavigateToProblem(Navigation::First));
    EXPECT_EQ(list.problems.count(8), 0u);
    EXPECT_EQ(list.history, (std::vector<int32_t>{1, 7, 1}));
    EXPECT_EQ(currentId(), 1);
}

TEST_F(ListFixture, RunningSolveIsAskedAboutWhenLeaving) {
    host.solving = true;
    host.answers = {Answer::Cancel};
    EXPECT_FALSE(list.NavigateToProblem(Navigation::Next));
    EXPECT_EQ(currentId(), 1);
    EXPECT_EQ(host.questions.back(),
              L"Navigation between problems|Search for mate pending. Do you want to stop this task?");
    host.answers = {Answer::Yes};
    EXPECT_TRUE(list.NavigateToProblem(Navigation::Next));
    EXPECT_EQ(host.stops, 1);
    EXPECT_EQ(currentId(), 3);
}

TEST_F(ListFixture, HistoryCutsTheForwardPartOnAPush) {
    list.NavigateToProblem(Navigation::Next);
    list.NavigateToProblem(Navigation::Next);
    EXPECT_EQ(list.history, (std::vector<int32_t>{1, 3, 7}));
    EXPECT_TRUE(list.HistoryBack());
    EXPECT_TRUE(list.HistoryBack());
    EXPECT_EQ(currentId(), 1);
    EXPECT_FALSE(list.HistoryBack());
    EXPECT_TRUE(list.HistoryForward());
    EXPECT_EQ(currentId(), 3);
    EXPECT_EQ(list.historyIndex, 1);
    list.NavigateToProblem(Navigation::Last);
    EXPECT_EQ(list.history, (std::vector<int32_t>{1, 3, 7}));
    EXPECT_EQ(list.historyIndex, 2);
}

TEST(Stipulation, PliesByType) {
    TChessProblem p;
    EXPECT_EQ(p.plies, 3);
    SetStipulation(p, 5);
    EXPECT_EQ(p.plies, 9);
    EXPECT_EQ(p.stipulationPlies, 9);
    p.type = PROBLEM_SELFMATE;
    SetStipulation(p, 5);
    EXPECT_EQ(p.plies, 11);
    EXPECT_EQ(p.stipulationMoves(), 5);
    p.type = PROBLEM_POSITION;
    SetStipulation(p, 5);
    EXPECT_EQ(p.plies, 255);
    EXPECT_EQ(p.stipulationMoves(), 0);
}

TEST(Stipulation, ChangingTheTypeKeepsTheNumberOfMoves) {
    TChessProblem p;
    SetStipulation(p, 3);
    SetProblemType(p, PROBLEM_SELFMATE);
    EXPECT_EQ(p.plies, 7);
    EXPECT_EQ(p.stipulationPlies, 7);
    SetProblemType(p, PROBLEM_DIRECT_MATE);
    EXPECT_EQ(p.plies, 5);
}

TEST(ProblemRecord, NewRecordDefaults) {
    ProblemDefaults defaults;
    defaults.useMainVariantAsSortIndications = true;
    TChessProblem p(defaults);
    EXPECT_EQ(p.type, PROBLEM_DIRECT_MATE);
    EXPECT_EQ(p.plies, 3);
    EXPECT_EQ(p.threads, 255);
    EXPECT_EQ(p.multithreadingLevels, 255);
    EXPECT_EQ(p.schedulerLevels, -1);
    EXPECT_EQ(p.lichessLevels, -1);
    EXPECT_EQ(p.globalRegisterMB, -1);
    EXPECT_EQ(p.useMainVariantAsSortIndications, 1);
    EXPECT_EQ(p.startPosition.m_shPliesLeft, 5);
    EXPECT_TRUE(p.description.empty());
}

} // namespace
} // namespace zorvane
