// The parts of the window that need no window: the command table, the menu
// rules, the log line, thread defaults, priorities, the tray rule, merging
// problems of another file, the running set and the command line.
#include "core/localized_text.h"
#include "shell/app_log.h"
#include "shell/command_table.h"
#include "shell/menu_state.h"
#include "shell/problem_merge.h"
#include "shell/process_control.h"
#include "shell/running_solves.h"
#include "shell/shell_text.h"
#include "shell/startup.h"
#include "shell/tray_controller.h"

#include "core/fen.h"

#include <QKeySequence>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <fstream>
#include <unistd.h>

using namespace zorvane;

namespace {

// Every command of the menus and pop-ups.
constexpr int MENU_COMMANDS[] = {
    125, 120, 121, 122, 123, 124, 126, 128, 129, 132, 298, 299, 612, 131, 133, 134, 139, 138, 295, 296, 297,
    305, 136, 135, 216, 214, 137, 210, 211, 212, 213, 208, 209, 195, 196, 197, 140, 141, 152, 153, 142, 164,
    143, 169, 144, 150, 151, 176, 145, 146, 147, 159, 160, 167, 168, 161, 162, 163, 156, 158, 157, 154, 155,
    207, 190, 192, 270, 271, 274, 276, 275, 277, 278, 280, 677, 679, 171, 170, 178, 193, 179, 194, 177, 149,
    183, 184, 215, 180, 189, 199, 173, 174, 175, 205, 182, 181, 188, 206, 172, 218, 200, 201, 202, 203, 204,
    198, 187, 185, 165, 285, 286, 287, 300, 310, 250, 251, 252, 257, 256, 255, 279, 290, 320, 321, 325, 1900};
// Names of the languages, which every language shows alike.
constexpr CommandId SAME_IN_ALL_LANGUAGES[] = {CommandId::LanguagePolish, CommandId::LanguageEnglish,
                                               CommandId::LanguageUkrainian, CommandId::KeyCtrlP,
                                               CommandId::KeyCtrlShiftD};

std::unique_ptr<TChessProblem> problem(int id, int moves, const char* fen) {
    auto p = std::make_unique<TChessProblem>();
    p->id = id;
    SetStipulation(*p, moves);
    ReadFen(fen, p->startPosition);
    return p;
}

ProblemMap mapOf(std::vector<std::unique_ptr<TChessProblem>> problems) {
    ProblemMap map;
    for (auto& p : problems) map.emplace(p->id, std::move(p));
    return map;
}

const char* const KING_STEPS = "5k2/8/5K2/8/8/8/8/4R3";
const char* const CORNER = "8/8/8/8/8/2K5/1R6/k7";
const char* const BACK_RANK = "6k1/5ppp/8/8/8/8/8/3R2K1";

} // namespace

class ShellCommandsTest : public QObject {
    Q_OBJECT

  private slots:
    void everyCommandHasThreeTexts() {
        for (int id : MENU_COMMANDS) {
            const CommandInfo* info = FindCommand(CommandOfNumber(id));
            QVERIFY2(info, qPrintable(QString::number(id)));
            QVERIFY(!info->text.polish.empty());
            QVERIFY(!info->text.english.empty());
            QVERIFY(!info->text.ukrainian.empty());
        }
        for (const CommandInfo& info : Commands()) {
            if (std::find(std::begin(SAME_IN_ALL_LANGUAGES), std::end(SAME_IN_ALL_LANGUAGES), info.id) !=
                std::end(SAME_IN_ALL_LANGUAGES))
                continue;
            QVERIFY2(std::wstring(info.text.ukrainian) != info.text.english,
                     qPrintable(QString::number(CommandNumber(info.id))));
        }
    }

    void theTextsKeepTheirOwnSpelling() {
        QCOMPARE(ToQString(FindCommand(CommandId::FileOpenDefault)->text.english),
                 QStringLiteral("&Open defaulf file (myChessProblems.cp)"));
        QCOMPARE(ToQString(FindCommand(CommandId::SkipCurrentMove)->text.polish),
                 QStringLiteral("Zaniechaj analizy bieżącego ruchu i przejdź do &następnego"));
        QCOMPARE(ToQString(FindCommand(CommandId::CommentThisMove)->text.english),
                 QStringLiteral("Add/edit comment to to this move"));
        QCOMPARE(ToQString(MainMenus().back().title.english), QStringLiteral("&Language/Język/Mова"));
    }

    void everyKeyIsAKeySequence() {
        for (const Accelerator& key : Accelerators())
            QVERIFY2(!QKeySequence(QString::fromLatin1(key.keys)).isEmpty(), key.keys);
        QCOMPARE(QKeySequence(QStringLiteral("Ctrl+-")), QKeySequence(Qt::CTRL | Qt::Key_Minus));
    }

    void aliasesComeToTheirTwins() {
        const std::pair<int, int> aliases[] = {
            {610, 132}, {620, 133}, {630, 156},  {634, 154}, {640, 155}, {636, 147}, {637, 122}, {638, 123},
            {148, 123}, {653, 158}, {673, 157},  {655, 140}, {675, 141}, {680, 164}, {685, 159}, {686, 160},
            {688, 145}, {689, 146}, {1900, 155}, {612, 612}, {677, 677}, {145, 145}};
        for (const auto& [alias, twin] : aliases)
            QCOMPARE(CommandNumber(CanonicalCommand(CommandOfNumber(alias))), twin);
    }

    void greyingRules() {
        MenuState idle;
        idle.hasProblem = true;
        QVERIFY(!IsCommandEnabled(CommandId::TypeSelfmate, idle));
        QVERIFY(!IsCommandEnabled(CommandId::TypeHelpmate, idle));
        QVERIFY(!IsCommandEnabled(CommandId::SolveStart, idle)); // no solve driver yet
        idle.solvingConnected = true;
        QVERIFY(IsCommandEnabled(CommandId::SolveStart, idle));
        QVERIFY(!IsCommandEnabled(CommandId::SolveStop, idle));
        QVERIFY(!IsCommandEnabled(CommandId::SolveResume, idle));
        QVERIFY(!IsCommandEnabled(CommandId::Undo, idle));
        idle.canUndo = true;
        QVERIFY(IsCommandEnabled(CommandId::Undo, idle));
        MenuState solving = idle;
        solving.solveOnCurrent = true;
        using enum CommandId;
        // clang-format off
        for (CommandId id :
             {FileSave, Undo, Redo, PositionSettingMode, StipulationUp, StipulationDown, StipulationUpTen,
              StipulationDownTen, SolveStart, SolveAllSolutions, SolveBlackDefence, SolveBlackDefenceThorough,
              SolveShowMainVariant, SolveWithHeuristics, SolveAllWithHeuristics, TempRegisterClear,
              TempRegisterSave, TempRegisterReadDefault, TempRegisterSaveAs, TempRegisterReadFile, RegressionTest,
              QuickRegressionTest, EditSortIndications, PrecalculateData, MaxMovesNextPosition,
              MaxMovesPreviousPosition, PositionInformation, NextPositionOfType, PreviousPositionOfType,
              VerifyPrecalculatedData, VerifyPrecalculatedFiles, VerifyPrecalculatedFilesResume,
              PastePositionByIndex, VerifyPartlyPrecalculatedData, VariantSaveAsMain, VariantSaveAs, SolveResume})
            // clang-format on
            QVERIFY2(!IsCommandEnabled(id, solving), qPrintable(QString::number(CommandNumber(id))));
        for (CommandId id : {SolveStop, SolvePause, SolvePauseOneThread, ProblemNext, FileSaveAs})
            QVERIFY2(IsCommandEnabled(id, solving), qPrintable(QString::number(CommandNumber(id))));
        solving.solvePaused = true;
        QVERIFY(IsCommandEnabled(CommandId::SolveResume, solving));
        for (CommandId id : CommandsNotBuiltYet()) QVERIFY(!IsCommandEnabled(id, idle));
    }

    void checkMarks() {
        MenuState state;
        state.hasProblem = true;
        state.problemType = PROBLEM_SELFMATE;
        QVERIFY(IsCommandChecked(CommandId::TypeSelfmate, state));
        QVERIFY(!IsCommandChecked(CommandId::TypeDirectMate, state));
        state.priorityClass = PRIORITY_BELOW_NORMAL;
        QVERIFY(IsCommandChecked(CommandId::PriorityBelowNormal, state));
        state.languageId = 5;
        QVERIFY(IsCommandChecked(CommandId::LanguageEnglish, state));
        state.affinityMask = 0b101;
        QVERIFY(IsCommandChecked(ProcessorCommand(2), state));
        QVERIFY(!IsCommandChecked(ProcessorCommand(1), state));
    }

    void languageFiveIsEnglish() {
        QVERIFY((LocalizedText{L"pl", L"en", L"uk"}.In(5) == L"en"));
        QCOMPARE(TitleText(5, MessageTitle::Question), QStringLiteral("Question"));
        QCOMPARE(TitleText(0, MessageTitle::Warning), QStringLiteral("Ostrzeżenie"));
        QCOMPARE(TitleText(2, MessageTitle::Error), QStringLiteral("Помилка"));
        QCOMPARE(TranslateTitle(0, L"Information"), QStringLiteral("Informacja"));
        QCOMPARE(TranslateTitle(0, L"Navigation between problems"),
                 QStringLiteral("Navigation between problems"));
    }

    void logLineFormat() {
        std::tm time{};
        time.tm_year = 2024 - 1900;
        time.tm_mon = 4;
        time.tm_mday = 1;
        time.tm_hour = 13;
        time.tm_min = 45;
        time.tm_sec = 7;
        QCOMPARE(QString::fromStdString(LogLinePrefix(time, 4242)),
                 QStringLiteral("2024-05-01 13:45:07, 4242: "));
        QTemporaryDir dir;
        const std::filesystem::path path = std::filesystem::path(dir.path().toStdString()) / "Quorlan.log";
        SetLogFilePath(path);
        WriteLog("Engine stopped: %s", "7. #2 Test");
        WriteLog("Program close (%s)", "0.1");
        std::ifstream in(path);
        const QString text = QString::fromStdString(std::string(std::istreambuf_iterator<char>(in), {}));
        const QRegularExpression lines(
            QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d, %1: Engine stopped: 7\\. #2 Test\n"
                           "\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d, %1: Program close \\(0\\.1\\)\n$")
                .arg(getpid()));
        QVERIFY2(lines.match(text).hasMatch(), qPrintable(text));
    }

    void threadDefaultsFromTheProcessorCount() {
        QCOMPARE(ComputeThreadDefaults(8, 8, 1).threads, 4);
        QCOMPARE(ComputeThreadDefaults(8, 8, 1).multithreadingLevels, 2);
        QCOMPARE(ComputeThreadDefaults(25, 50, 1).threads, 5);
        QCOMPARE(ComputeThreadDefaults(6, 12, 1).threads, 4);
        QCOMPARE(ComputeThreadDefaults(6, 12, 1).multithreadingLevels, 2);
        QCOMPARE(ComputeThreadDefaults(6, 6, 1).threads, 6);
        QCOMPARE(ComputeThreadDefaults(6, 6, 1).multithreadingLevels, 1);
        QCOMPARE(ComputeThreadDefaults(2, 4, 0).threads, 2);
        QCOMPARE(ComputeThreadDefaults(2, 4, 0).multithreadingLevels, 0);
    }

    void priorityClassesAndNiceValues() {
        for (int priority :
             {PRIORITY_HIGH, PRIORITY_ABOVE_NORMAL, PRIORITY_NORMAL, PRIORITY_BELOW_NORMAL, PRIORITY_LOW})
            QCOMPARE(PriorityClassOfNice(NiceOfPriorityClass(priority)), priority);
    }

    void minimizeToTrayRule() {
        QVERIFY(TrayController::wantsTray(1, false));
        QVERIFY(!TrayController::wantsTray(2, false));
        QVERIFY(TrayController::wantsTray(2, true));
        QVERIFY(!TrayController::wantsTray(0, true));
        QVERIFY(!TrayController::wantsTray(7, true));
        QVERIFY(!TrayController::wantsTray(7, false));
    }

    void appendSkipsKnownProblemsAndNamesOtherStipulations() {
        std::vector<std::unique_ptr<TChessProblem>> listed;
        listed.push_back(problem(1, 2, KING_STEPS));
        listed.push_back(problem(4, 3, CORNER));
        ProblemMap list = mapOf(std::move(listed));
        std::vector<std::unique_ptr<TChessProblem>> others;
        others.push_back(problem(1, 2, KING_STEPS));
        others.push_back(problem(2, 4, CORNER));
        others.push_back(problem(3, 1, BACK_RANK));
        const AppendResult result = AppendProblems(list, mapOf(std::move(others)));
        QCOMPARE(result.appended, (std::vector<int32_t>{5, 6}));
        QCOMPARE(result.differingStipulations, std::vector<std::wstring>{L"5 #4 vs. #3"});
        QCOMPARE(list.size(), size_t{4});
        QCOMPARE(list.at(6)->id, 6);
    }

    void removeKeepsTheCurrentProblem() {
        std::vector<std::unique_ptr<TChessProblem>> listed;
        listed.push_back(problem(1, 2, KING_STEPS));
        listed.push_back(problem(2, 3, CORNER));
        listed.push_back(problem(3, 1, BACK_RANK));
        ProblemMap list = mapOf(std::move(listed));
        std::vector<std::unique_ptr<TChessProblem>> others;
        others.push_back(problem(9, 5, KING_STEPS));
        others.push_back(problem(8, 5, CORNER));
        const RemoveResult result = RemoveProblems(list, mapOf(std::move(others)), 1);
        QVERIFY(result.currentKept);
        QCOMPARE(result.removed.size(), size_t{1});
        QCOMPARE(result.removed.count(2), size_t{1});
        QCOMPARE(list.size(), size_t{2});
    }

    void tagsOfTheSamePositionJoin() {
        auto current = problem(1, 2, KING_STEPS);
        current->tags = {L"a"};
        std::vector<std::unique_ptr<TChessProblem>> others;
        others.push_back(problem(5, 3, KING_STEPS));
        others.back()->tags = {L"a", L"b"};
        others.push_back(problem(6, 2, CORNER));
        others.back()->tags = {L"c"};
        QCOMPARE(AppendMatchingTags(*current, mapOf(std::move(others))), 1);
        QCOMPARE(current->tags, (std::set<std::wstring>{L"a", L"b"}));
    }

    void runningSolvesReportChanges() {
        RunningSolves running;
        int changes = 0;
        running.onChanged = [&changes] { ++changes; };
        running.add(3);
        running.add(5);
        running.setPaused(3, true);
        running.setPaused(9, true); // not running: nothing
        QCOMPARE(running.count(), 2);
        QVERIFY(running.isPaused(3));
        QVERIFY(!running.isPaused(9));
        running.remove(3);
        QVERIFY(!running.contains(3));
        QVERIFY(!running.isPaused(3));
        QCOMPARE(changes, 4);
    }

    void theCommandLineIsTakenWhole() {
        const StartupArguments arguments =
            ParseArguments({"zorvane", "--data-dir", "/tmp/d", "my", "problems.cp", "--lock-dir", "/tmp/l"});
        QCOMPARE(QString::fromStdString(arguments.dataDirectory.string()), QStringLiteral("/tmp/d"));
        QCOMPARE(arguments.problemFile, QStringLiteral("my problems.cp"));
        QCOMPARE(arguments.lockDirectory, QStringLiteral("/tmp/l"));
        QVERIFY(ParseArguments({"zorvane"}).problemFile.isEmpty());
        QVERIFY(
            InstanceLockPath("/run/x").endsWith(QStringLiteral("/Local_ProblemySzachoweByBrannoch.lock")));
    }
};

QTEST_GUILESS_MAIN(ShellCommandsTest)
#include "shell_commands_test.moc"
