// The main window driven as a user would: start-up with a data directory and
// a file, navigation and history, languages, a second instance, outside
// changes of the file, file commands, the menus during a solve, and closing.
// Every question is answered by ScriptedPrompts, which notes "Title|Text".
#include "options/profile_file.h"
#include "scripted_prompts.h"
#include "window_session.h"
#include "shell/app_log.h"
#include "shell/command_registry.h"
#include "shell/command_table.h"
#include "shell/file_commands.h"
#include "shell/instance_state.h"
#include "shell/main_window.h"
#include "shell/process_control.h"

#include <QAction>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QMenuBar>
#include <QRegularExpression>
#include <QSystemTrayIcon>
#include <QTemporaryDir>
#include <QTest>

#include <bit>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <unistd.h>

using namespace zorvane;
namespace fs = std::filesystem;

namespace {

const QString CHANGED_OUTSIDE = QStringLiteral(
    "The opened file has been changed by an external application.\n\nIt is strongly recommended to "
    "reopen it (close and open it again)\n\n");
const QString SAVE_OR_REJECT =
    QStringLiteral("\n\nDo you want to save changes? (select 'No' to reject them)");
const QString NOT_AVAILABLE =
    QStringLiteral("Information|This function is not available yet in this version of the program.");
const QString SECOND_INSTANCE_BOX =
    QStringLiteral("Information|Note:\nProgram will be opened in read-only mode for .lichess files.\n\nAlso "
                   "particular care should "
                   "be taken while saving problem files (.cp) - although program instances warn and suggest "
                   "sychronization/reload");
const QString SECOND_INSTANCE_STATUS =
    QStringLiteral("WARNING: This is not the first instance of the program running.\n");
const QString COUNT_STATUS = QStringLiteral("Number of chess problems in this file: 4");

void writeText(const QString& path, const std::string& text) {
    std::ofstream out(fs::path(path.toStdString()), std::ios::binary);
    out << text;
}

std::string readText(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

std::string problemBlock(int id, const char* stipulation, const char* fen) {
    return std::to_string(id) + " " + stipulation + "\n{\n\tFEN: " + fen + "\n}\n\n";
}

void moveFileTime(const QString& file, std::chrono::seconds by) {
    const fs::path path(file.toStdString());
    fs::last_write_time(path, fs::last_write_time(path) + by);
}

} // namespace

class MainWindowTest : public QObject {
    Q_OBJECT

  private slots:
    void startUpLoadsTheFileOfTheCommandLine() {
        Session s;
        startOnSample(s);
        QCOMPARE(s.window->problems().problems.size(), size_t{4});
        QCOMPARE(s.current(), 1);
        QCOMPARE(s.window->windowTitle(), QStringLiteral("Zorvane - ") + s.sample());
        QCOMPARE(s.window->statusText(), COUNT_STATUS);
        QCOMPARE(s.window->problems().history, std::vector<int32_t>{1});
        QCOMPARE(s.window->refreshPeriod(), 250);
        QVERIFY(!s.window->isSecondInstance());
        QCOMPARE(s.prompts.boxes, QStringList());
        QCOMPARE(ProcessPriorityClass(), PRIORITY_BELOW_NORMAL);
        QVERIFY(s.checked(CommandId::PriorityBelowNormal));
        const QString log = QString::fromStdString(readText(fs::path(s.path("Quorlan.log").toStdString())));
        const QRegularExpression line(
            QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d, %1: Program opened \\(%2\\)\n$")
                .arg(getpid())
                .arg(QRegularExpression::escape(QString::fromLatin1(ProgramVersion()))));
        QVERIFY2(line.match(log).hasMatch(), qPrintable(log));
    }

    void startUpWithoutFileCreatesTheDefaultFile() {
        Session s;
        start(s, QString());
        QVERIFY(QFile::exists(s.path(QStringLiteral("myChessProblems.cp"))));
        QCOMPARE(s.window->problems().problems.size(), size_t{1});
        QCOMPARE(s.window->windowTitle(), QStringLiteral("Zorvane"));
        QCOMPARE(s.window->statusText(), QStringLiteral("Number of chess problems in this file: 1"));
    }

    void aReadersErrorIsShownAndOneEmptyProblemStays() {
        Session s;
        writeText(s.path(QStringLiteral("bad.cp")), "1 #2\n{\n\tFEN: 8/8/9\n}\n");
        start(s, s.path(QStringLiteral("bad.cp")));
        QCOMPARE(s.prompts.boxes,
                 QStringList{QStringLiteral("Error|Error parsing problem 1: Improper FEN code")});
        QCOMPARE(s.window->problems().problems.size(), size_t{1});
        QCOMPARE(s.current(), 1);
        QCOMPARE(s.window->problems().Current()->description, std::wstring());
    }

    void nextPreviousFirstLastAndByNumber() {
        Session s;
        startOnSample(s);
        s.window->DispatchCommand(CommandId::ProblemNext);
        QCOMPARE(s.current(), 2);
        QCOMPARE(s.window->statusText(), QString());
        s.window->DispatchCommand(CommandId::ProblemNextButton); // the tool button's next
        QCOMPARE(s.current(), 3);
        s.window->DispatchCommand(CommandId::ProblemPrevious);
        QCOMPARE(s.current(), 2);
        s.window->DispatchCommand(CommandId::ProblemPreviousButton);
        QCOMPARE(s.current(), 1);
        s.window->DispatchCommand(CommandId::ProblemPrevious); // at the first problem the list stays there
        QCOMPARE(s.current(), 1);
        s.window->DispatchCommand(CommandId::ProblemLastKey); // Ctrl+End
        QCOMPARE(s.current(), 4);
        s.window->DispatchCommand(CommandId::ProblemFirstKey); // Ctrl+Home
        QCOMPARE(s.current(), 1);
        s.prompts.numbers.push_back(3);
        s.window->DispatchCommand(CommandId::ProblemSelectByNumberKey); // Ctrl+G
        QCOMPARE(s.current(), 3);
        s.prompts.items.push_back(QStringLiteral("2. #2 The king steps aside"));
        s.window->DispatchCommand(CommandId::ProblemSelectFromList);
        QCOMPARE(s.current(), 2);
        QCOMPARE(s.prompts.offeredItems,
                 (QStringList{"1. #1 Back rank", "2. #2 The king steps aside",
                              "3. #3 Rook and king in the corner", "4. #5 Rook and king from afar"}));
        QCOMPARE(s.prompts.boxes, QStringList());
    }

    void historyGoesBackAndForward() {
        Session s;
        startOnSample(s);
        QVERIFY(!s.enabled(CommandId::ProblemHistoryBack));
        s.window->DispatchCommand(CommandId::ProblemNext);
        s.window->DispatchCommand(CommandId::ProblemNext);
        QCOMPARE(s.current(), 3);
        s.window->DispatchCommand(CommandId::ProblemHistoryBack);
        QCOMPARE(s.current(), 2);
        s.window->DispatchCommand(CommandId::ProblemHistoryBack);
        QCOMPARE(s.current(), 1);
        QVERIFY(!s.enabled(CommandId::ProblemHistoryBack));
        QVERIFY(s.enabled(CommandId::ProblemHistoryForward));
        s.window->DispatchCommand(CommandId::ProblemHistoryForward);
        s.window->DispatchCommand(CommandId::ProblemHistoryForward);
        QCOMPARE(s.current(), 3);
        QVERIFY(!s.enabled(CommandId::ProblemHistoryForward));
        QCOMPARE(s.window->problems().history, (std::vector<int32_t>{1, 2, 3}));
    }

    void nextAtTheLastProblemAsksForANewOne() {
        Session s;
        startOnSample(s);
        s.window->DispatchCommand(CommandId::ProblemLast);
        s.prompts.answers = {Answer::No};
        s.window->DispatchCommand(CommandId::ProblemNext);
        QCOMPARE(s.current(), 4);
        QCOMPARE(s.prompts.boxes,
                 QStringList{
                     QStringLiteral("Question|This is the last problem.\nDo you want to create a new one?")});
        s.prompts.boxes.clear();
        s.prompts.answers = {Answer::Yes};
        s.window->DispatchCommand(CommandId::ProblemNext);
        QCOMPARE(s.current(), 5);
        // Left without saving, the new problem goes away again.
        s.prompts.answers = {Answer::No};
        s.window->DispatchCommand(CommandId::ProblemPrevious);
        QCOMPARE(s.current(), 4);
        QCOMPARE(s.window->problems().problems.size(), size_t{4});
        QCOMPARE(
            s.prompts.boxes.back(),
            QStringLiteral("Question|There are changes in the current problem.\nDo you want to save them?"));
    }

    void newProblemCommandAppendsBehindTheLastNumber() {
        Session s;
        startOnSample(s);
        s.window->DispatchCommand(CommandId::ProblemNewKey); // Ctrl+N
        const TChessProblem* problem = s.window->problems().Current();
        QCOMPARE(problem->id, 5);
        QCOMPARE(problem->description, std::wstring(L"New Problem"));
        QCOMPARE(problem->startPosition.m_aSquares[4], WK);
        QCOMPARE(problem->startPosition.m_aSquares[60], BK);
        QCOMPARE(s.window->problems().history, (std::vector<int32_t>{1, 5}));
        s.prompts.answers = {Answer::No};
        s.window->DispatchCommand(CommandId::ProblemFirst);
        QCOMPARE(s.current(), 1);
        QCOMPARE(s.window->problems().problems.count(5), size_t{0});
    }

    void tagsAreAddedAndRemoved() {
        Session s;
        startOnSample(s);
        s.prompts.items.push_back(QStringLiteral("miniature"));
        s.window->DispatchCommand(CommandId::TagAdd);
        QCOMPARE(s.window->problems().Current()->tags, std::set<std::wstring>{L"miniature"});
        QVERIFY(s.window->problems().allTags.count(L"miniature"));
        QVERIFY(s.window->problems().IsCurrentProblemChanged());
        s.prompts.items.push_back(QStringLiteral("miniature"));
        s.window->DispatchCommand(CommandId::TagRemove);
        QCOMPARE(s.prompts.offeredItems, QStringList{QStringLiteral("miniature")});
        QVERIFY(s.window->problems().Current()->tags.empty());
        s.window->DispatchCommand(CommandId::TagRemove);
        QCOMPARE(s.prompts.boxes,
                 QStringList{QStringLiteral("Information|The current problem has no tags.")});
    }

    void languageCommandsReplaceTheTextsAndSaveAtOnce() {
        Session s;
        startOnSample(s);
        const fs::path options = fs::path(s.path(QStringLiteral("options.ini")).toStdString());
        QCOMPARE(s.firstMenu(), QStringLiteral("&File"));
        QCOMPARE(s.text(CommandId::FileNew), QStringLiteral("&New file"));
        QVERIFY(s.checked(CommandId::LanguageEnglish));
        s.window->DispatchCommand(CommandId::LanguagePolish);
        QCOMPARE(s.firstMenu(), QStringLiteral("&Plik"));
        QCOMPARE(s.text(CommandId::FileNew), QStringLiteral("&Nowy plik"));
        QCOMPARE(s.text(CommandId::FileOpen),
                 QStringLiteral("Otwórz plik z problemami szachowymi (.cp) ...\tCtrl+O"));
        QVERIFY(s.checked(CommandId::LanguagePolish));
        QVERIFY(!s.checked(CommandId::LanguageEnglish));
        QCOMPARE(ReadProfileFile(options)->Get("chess", "LanguageId"), std::optional<std::string>("0"));
        // The list's own questions follow the language too.
        s.window->DispatchCommand(CommandId::ProblemLast);
        s.prompts.answers = {Answer::No};
        s.window->DispatchCommand(CommandId::ProblemNext);
        QCOMPARE(s.prompts.boxes,
                 QStringList{QStringLiteral("Pytanie|To jest ostatni problem.\nCzy chcesz utworzyć nowy?")});
        s.window->DispatchCommand(CommandId::LanguageUkrainian);
        QCOMPARE(s.firstMenu(), QStringLiteral("&Файл"));
        QCOMPARE(s.text(CommandId::FileNew), QStringLiteral("&Новий файл"));
        QCOMPARE(ReadProfileFile(options)->Get("chess", "LanguageId"), std::optional<std::string>("2"));
        s.window->DispatchCommand(CommandId::LanguageEnglish);
        QCOMPARE(s.text(CommandId::FileNew), QStringLiteral("&New file"));
        QCOMPARE(ReadProfileFile(options)->Get("chess", "LanguageId"), std::optional<std::string>("1"));
    }

    void theMainVariantTakesTheNameOfTheLanguage() {
        Session s;
        startOnSample(s);
        ProblemList& list = s.window->problems();
        list.Current()->variants[L"Main variant"] = TVariant{L"Main variant", {}};
        list.TakeSnapshot(false);
        s.window->DispatchCommand(CommandId::LanguagePolish);
        QCOMPARE(list.Current()->variants.count(L"Wariant główny"), size_t{1});
        QCOMPARE(list.Current()->variants.count(L"Main variant"), size_t{0});
        QVERIFY(!list.IsCurrentProblemChanged());
    }

    void minimizingGoesToTheTrayWhenAsked() {
        Session s;
        writeText(s.path(QStringLiteral("options.ini")), "[chess]\nMinimizeToTray=1\n");
        startOnSample(s);
        s.window->showMinimized();
        if (QSystemTrayIcon::isSystemTrayAvailable()) {
            QTRY_VERIFY_WITH_TIMEOUT(!s.window->isVisible(), 60000);
            QCOMPARE(s.prompts.boxes, QStringList());
        } else {
            QTRY_VERIFY_WITH_TIMEOUT(!s.prompts.boxes.isEmpty(), 60000);
            QCOMPARE(s.prompts.boxes, QStringList{QStringLiteral("Error|Unable to Set Tray Icon")});
        }
    }

    void languageIdFiveGivesEnglish() {
        Session s;
        writeText(s.path(QStringLiteral("options.ini")), "[chess]\nLanguageId=5\n");
        startOnSample(s);
        QCOMPARE(s.window->options().LanguageId, 5);
        QCOMPARE(s.firstMenu(), QStringLiteral("&File"));
        QCOMPARE(s.text(CommandId::FileExit), QStringLiteral("E&xit"));
        QVERIFY(s.checked(CommandId::LanguageEnglish));
        QCOMPARE(s.window->statusText(), COUNT_STATUS);
        QCOMPARE(Translate(5, {L"pl", L"en", L"uk"}), QStringLiteral("en"));
    }

    void aSecondInstanceIsNoticedAndWarned() {
        Session first;
        startOnSample(first);
        Session second;
        second.copySample();
        start(second, second.sample(), first.dir.path());
        QVERIFY(!first.window->isSecondInstance());
        QVERIFY(second.window->isSecondInstance());
        QCOMPARE(second.prompts.boxes, QStringList{SECOND_INSTANCE_BOX});
        QCOMPARE(second.window->statusText(), SECOND_INSTANCE_STATUS + COUNT_STATUS);
        QVERIFY(!MayWriteLichessFiles());
    }

    void aSecondInstanceWarnsByStatusOnlyWithOne() {
        Session first;
        startOnSample(first);
        Session second;
        writeText(second.path(QStringLiteral("options.ini")),
                  "[chess]\nWarnAboutSecondInstanceOfProgram=1\n");
        second.copySample();
        start(second, second.sample(), first.dir.path());
        QCOMPARE(second.prompts.boxes, QStringList());
        QCOMPARE(second.window->statusText(), SECOND_INSTANCE_STATUS + COUNT_STATUS);
    }

    void aSecondInstanceWithoutWarningsStillWritesNoLichessFiles() {
        Session first;
        startOnSample(first);
        QVERIFY(MayWriteLichessFiles());
        Session second;
        writeText(second.path(QStringLiteral("options.ini")),
                  "[chess]\nWarnAboutSecondInstanceOfProgram=0\n");
        second.copySample();
        start(second, second.sample(), first.dir.path());
        QVERIFY(second.window->isSecondInstance());
        QCOMPARE(second.prompts.boxes, QStringList());
        QCOMPARE(second.window->statusText(), COUNT_STATUS);
        QVERIFY(!MayWriteLichessFiles());
    }

    void anOutsideChangeOffersAReload() {
        Session s;
        startOnSample(s);
        std::string text = readText(s.sample().toStdString());
        text.replace(text.find("Back rank"), 9, "Changed outside");
        writeText(s.sample(), text);
        moveFileTime(s.sample(), std::chrono::seconds(5));
        s.prompts.answers = {Answer::Yes};
        s.window->checkFileChange();
        QCOMPARE(s.prompts.boxes.front(), QStringLiteral("Question|") + CHANGED_OUTSIDE +
                                              QStringLiteral("Do you want to reload the file?"));
        QCOMPARE(s.prompts.boxes.size(), 1);
        QCOMPARE(s.window->problems().Current()->description, std::wstring(L"Changed outside"));
        QVERIFY(
            s.window->statusText().startsWith(QStringLiteral("The opened file contains 4 chess problem(s)")));
    }

    void anOutsideChangeWithUnsavedChangesOnlyWarns() {
        Session s;
        startOnSample(s);
        s.window->problems().Current()->tags.insert(L"mine");
        moveFileTime(s.sample(), std::chrono::seconds(5));
        s.window->checkFileChange();
        QCOMPARE(
            s.prompts.boxes,
            QStringList{QStringLiteral("Information|") + CHANGED_OUTSIDE +
                        QStringLiteral("Any unsaved changes will be lost.\nIf you want to save them, it is "
                                       "recommended to save to another file (File... Save As).")});
        QCOMPARE(s.window->problems().Current()->tags, std::set<std::wstring>{L"mine"});
        // Noticed once: the same time later shows nothing more.
        s.window->checkFileChange();
        QCOMPARE(s.prompts.boxes.size(), 1);
    }

    void aTouchKeepingTheTimeShowsNothing() {
        Session s;
        startOnSample(s);
        const fs::path path(s.sample().toStdString());
        const auto time = fs::last_write_time(path);
        writeText(s.sample(), readText(path));
        fs::last_write_time(path, time);
        s.window->checkFileChange();
        QCOMPARE(s.prompts.boxes, QStringList());
    }

    void theWatchAndTheTimerNoticeAWrite() {
        Session s;
        startOnSample(s);
        writeText(s.sample(), readText(s.sample().toStdString()) + "\n");
        moveFileTime(s.sample(), std::chrono::seconds(5));
        s.prompts.answers = {Answer::No};
        QTRY_VERIFY_WITH_TIMEOUT(!s.prompts.boxes.isEmpty(), 60000);
        QCOMPARE(s.prompts.boxes.front(), QStringLiteral("Question|") + CHANGED_OUTSIDE +
                                              QStringLiteral("Do you want to reload the file?"));
    }

    void closingAsksOnceWithTheNumberOfRunningSolves() {
        Session s;
        startOnSample(s);
        int stops = 0;
        s.window->onStopAllSolves = [&stops] { ++stops; };
        s.window->runningSolves().add(1);
        s.window->runningSolves().add(3);
        QVERIFY(s.window->iconAnimationRunning());
        s.prompts.answers = {Answer::No};
        QVERIFY(!s.window->close());
        QVERIFY(s.window->isVisible());
        QCOMPARE(s.prompts.boxes,
                 QStringList{QStringLiteral(
                     "Question|Search for solution is pending for 2 problem(s).\nAre you sure you "
                     "want to quit?")});
        QCOMPARE(stops, 0);
        s.prompts.answers = {Answer::Yes};
        QVERIFY(s.window->close());
        QCOMPARE(s.prompts.boxes.size(), 2);
        QCOMPARE(stops, 1);
        const std::string log = readText(s.path(QStringLiteral("Quorlan.log")).toStdString());
        QVERIFY(log.find(std::string(": Program close (") + ProgramVersion() + ")\n") != std::string::npos);
    }

    void closingAsksToSaveChangesAndCancelStays() {
        Session s;
        startOnSample(s);
        s.window->problems().Current()->tags.insert(L"mine");
        s.prompts.answers = {Answer::Cancel};
        QVERIFY(!s.window->close());
        QCOMPARE(s.prompts.boxes,
                 QStringList{QStringLiteral(
                     "Question|There are changes in the current problem.\nDo you want to save them?")});
    }

    void solveCommandsWaitForTheSolveDriver() {
        Session s;
        startOnSample(s);
        QVERIFY(!s.enabled(CommandId::SolveStart));
        QVERIFY(!s.enabled(CommandId::SolveStartKey));
        s.window->DispatchCommand(CommandId::SolveStartKey);
        QCOMPARE(s.prompts.boxes, QStringList{NOT_AVAILABLE});
        std::vector<CommandId> received;
        s.window->onSolveCommand = [&received](CommandId id) { received.push_back(id); };
        s.window->UpdateMenuState();
        QVERIFY(s.enabled(CommandId::SolveStart));
        QVERIFY(s.enabled(CommandId::SolveStartKey));
        QVERIFY(!s.enabled(CommandId::SolveStop));
        s.window->DispatchCommand(CommandId::SolveStartKey);
        s.window->DispatchCommand(CommandId::SolveAllSolutionsKey);
        // The whole main variant stays greyed (its engine is not built), and the
        // best defence at the start position, where Black is not to move.
        QVERIFY(!s.enabled(CommandId::SolveShowMainVariant));
        QVERIFY(!s.enabled(CommandId::SolveBlackDefence));
        s.window->DispatchCommand(CommandId::SolveShowMainVariantKey);
        s.window->DispatchCommand(CommandId::SolveBlackDefence);
        QCOMPARE(received, (std::vector<CommandId>{CommandId::SolveStart, CommandId::SolveAllSolutions}));
    }

    void menusDuringASolveOfTheCurrentProblem() {
        Session s;
        startOnSample(s);
        s.window->onSolveCommand = [](CommandId) {};
        s.window->runningSolves().add(1);
        using enum CommandId;
        for (CommandId id : {SolveStart, SolveAllSolutions, SolveBlackDefence, SolveBlackDefenceThorough,
                             SolveShowMainVariant, SolveWithHeuristics, SolveAllWithHeuristics, FileSave,
                             Undo, Redo, PositionSettingMode, StipulationUp, StipulationDown,
                             StipulationUpTen, StipulationDownTen, SolveResume})
            QVERIFY2(!s.enabled(id), qPrintable(QString::number(CommandNumber(id))));
        for (CommandId id : {SolveStop, SolvePause, SolvePauseOneThread, ProblemNext, ProblemPrevious,
                             FileOpen, ViewRotateBoard})
            QVERIFY2(s.enabled(id), qPrintable(QString::number(CommandNumber(id))));
        s.window->runningSolves().setPaused(1, true);
        QVERIFY(s.enabled(CommandId::SolveResume));
        s.window->DispatchCommand(CommandId::FileSaveKey); // Ctrl+S comes by key
        QCOMPARE(s.prompts.boxes,
                 QStringList{QStringLiteral("Information|Analysis pending - position cannot be modified")});
        // Leaving the solve running behind, the next problem is free.
        s.prompts.answers = {Answer::No};
        s.window->DispatchCommand(CommandId::ProblemNext);
        QCOMPARE(s.current(), 2);
        QCOMPARE(s.prompts.boxes.back(),
                 QStringLiteral(
                     "Navigation between problems|Search for mate pending. Do you want to stop this task?"));
        QVERIFY(s.enabled(CommandId::SolveStart));
        QVERIFY(!s.enabled(CommandId::SolveStop));
    }

    void selfmatesStaySelfmatesWithTheItemGrey() {
        Session s;
        writeText(s.path(QStringLiteral("s.cp")), problemBlock(1, "s#2", "5k2/8/5K2/8/8/8/8/4R3"));
        start(s, s.path(QStringLiteral("s.cp")));
        QCOMPARE(s.window->problems().Current()->type, uint16_t{PROBLEM_SELFMATE});
        QVERIFY(!s.enabled(CommandId::TypeSelfmate));
        QVERIFY(s.checked(CommandId::TypeSelfmate));
        QVERIFY(!s.checked(CommandId::TypeDirectMate));
        QVERIFY(!s.enabled(CommandId::TypeHelpmate));
    }

    void keysAndAliasesShareTheirTwinsState() {
        Session s;
        startOnSample(s);
        QVERIFY(!s.enabled(CommandId::PositionCopy));
        QVERIFY(!s.enabled(CommandId::PositionCopyKey));
        s.window->DispatchCommand(CommandId::PositionCopyKey); // as Ctrl+C would, were it not greyed
        QCOMPARE(s.prompts.boxes, QStringList{NOT_AVAILABLE});
        QVERIFY(s.enabled(CommandId::FileOpenKey));
        QCOMPARE(s.window->commands().action(CommandId::FileOpenKey)->shortcut(),
                 QKeySequence(QStringLiteral("Ctrl+O")));
        QCOMPARE(s.window->commands().action(CommandId::ProblemHistoryForward)->shortcut(),
                 QKeySequence(QStringLiteral("Ctrl++")));
        s.window->commands().action(CommandId::ProblemLastKey)->trigger();
        QCOMPARE(s.current(), 4);
    }

    void openingAFileReplacesTheList() {
        Session s;
        writeText(s.path(QStringLiteral("one.cp")), problemBlock(7, "#2", "5k2/8/5K2/8/8/8/8/4R3"));
        startOnSample(s);
        s.prompts.fileNames.push_back(s.path(QStringLiteral("one.cp")));
        s.window->DispatchCommand(CommandId::FileOpenKey);
        QCOMPARE(s.window->problems().problems.size(), size_t{1});
        QCOMPARE(s.current(), 7);
        QCOMPARE(s.window->windowTitle(), QStringLiteral("Zorvane - one.cp"));
        QCOMPARE(
            s.window->statusText(),
            QStringLiteral("The opened file contains 1 chess problem(s)\n\nSample compositions: File, Open "
                           "sample compositions.\nCtrl+F finds problems."));
        s.window->DispatchCommand(CommandId::FileOpenSamples);
        QCOMPARE(s.window->problems().problems.size(), size_t{4});
        QCOMPARE(s.window->windowTitle(), QStringLiteral("Zorvane - sample_problems.cp"));
        writeText(s.path(QStringLiteral("empty.cp")), "");
        s.prompts.fileNames.push_back(s.path(QStringLiteral("empty.cp")));
        s.window->DispatchCommand(CommandId::FileOpen);
        // The reader's error; the old list stays open.
        QCOMPARE(s.prompts.boxes, QStringList{QStringLiteral("Error|Unexpected end of file.")});
        QCOMPARE(s.window->problems().problems.size(), size_t{4});
        QCOMPARE(s.window->windowTitle(), QStringLiteral("Zorvane - sample_problems.cp"));
    }

    void openingWhileSolvesRunAsksFirst() {
        Session s;
        startOnSample(s);
        int stops = 0;
        s.window->onStopAllSolves = [&stops] { ++stops; };
        s.window->runningSolves().add(2);
        s.prompts.answers = {Answer::No};
        s.window->DispatchCommand(CommandId::FileOpenSamples);
        QCOMPARE(s.prompts.boxes,
                 QStringList{QStringLiteral("Question|All pending threads of mate search will be "
                                            "stopped.\nDo you want to continue?")});
        QCOMPARE(stops, 0);
    }

    void saveAsNewFileAndSave() {
        Session s;
        startOnSample(s);
        s.prompts.fileNames.push_back(s.path(QStringLiteral("copy")));
        s.window->DispatchCommand(CommandId::FileSaveAs);
        QCOMPARE(s.window->windowTitle(), QStringLiteral("Zorvane - copy.cp"));
        QCOMPARE(QString::fromStdWString(s.window->problems().filePath.wstring()),
                 s.path(QStringLiteral("copy.cp")));
        s.prompts.items.push_back(QStringLiteral("saved tag"));
        s.window->DispatchCommand(CommandId::TagAdd);
        s.window->DispatchCommand(CommandId::FileSaveKey);
        QVERIFY(!s.window->problems().IsCurrentProblemChanged());
        QVERIFY(readText(s.path(QStringLiteral("copy.cp")).toStdString()).find("//#saved tag") !=
                std::string::npos);
        s.window->checkFileChange(); // our own write is no outside change
        s.prompts.fileNames.push_back(s.path(QStringLiteral("fresh.cp")));
        s.window->DispatchCommand(CommandId::FileNew);
        QCOMPARE(s.window->problems().problems.size(), size_t{1});
        QCOMPARE(s.window->windowTitle(), QStringLiteral("Zorvane - fresh.cp"));
        QCOMPARE(s.prompts.boxes, QStringList());
    }

    void appendingProblemsOfAnotherFileCanBeRejected() {
        Session s;
        startOnSample(s);
        writeText(s.path(QStringLiteral("other.cp")), problemBlock(1, "#3", "5k2/8/5K2/8/8/8/8/4R3") +
                                                          problemBlock(2, "#2", "5k2/8/5K2/8/8/8/8/4R3") +
                                                          problemBlock(3, "#2", "k7/8/1K6/8/8/8/8/7R"));
        s.prompts.fileNames.push_back(s.path(QStringLiteral("other.cp")));
        s.prompts.answers = {Answer::No};
        s.window->DispatchCommand(CommandId::FileAppendProblems);
        QCOMPARE(s.prompts.boxes,
                 QStringList{QStringLiteral("Question|Appended problems: 2\nMoreover some problems "
                                            "differ only by stipulation (#n): \n5 #3 vs. #2\n") +
                             SAVE_OR_REJECT});
        QCOMPARE(s.window->problems().problems.size(), size_t{4});
    }

    void removingProblemsKeepsTheCurrentOneAndSaves() {
        Session s;
        startOnSample(s);
        writeText(s.path(QStringLiteral("other.cp")), problemBlock(1, "#1", "6k1/5ppp/8/8/8/8/8/3R2K1") +
                                                          problemBlock(2, "#3", "8/8/8/8/8/2K5/1R6/k7"));
        s.prompts.fileNames.push_back(s.path(QStringLiteral("other.cp")));
        s.prompts.answers = {Answer::Yes};
        s.window->DispatchCommand(CommandId::FileRemoveProblems);
        QCOMPARE(
            s.prompts.boxes,
            QStringList{QStringLiteral("Question|Removed problems: 1\nWarning: the current problem cannot be "
                                       "removed.") +
                        SAVE_OR_REJECT});
        QCOMPARE(s.window->problems().problems.size(), size_t{3});
        QCOMPARE(s.window->problems().problems.count(3), size_t{0});
        QVERIFY(readText(s.sample().toStdString()).find("Rook and king in the corner") == std::string::npos);
        s.window->checkFileChange();
        QCOMPARE(s.prompts.boxes.size(), 1);
    }

    void helpAboutThreadsAndProgressArea() {
        Session s;
        startOnSample(s);
        s.window->DispatchCommand(CommandId::HelpAbout);
        QVERIFY(
            s.prompts.boxes.value(0).startsWith(QStringLiteral("About|Zorvane ") + ProgramVersion() + "\n"));
        s.prompts.numbers.push_back(3);
        s.window->DispatchCommand(CommandId::Threads);
        QCOMPARE(s.window->threadSettings().threads, 3);
        const int small = s.window->progressPanel()->maximumHeight();
        s.window->DispatchCommand(CommandId::ViewResizeProgressArea);
        QVERIFY(s.window->progressPanel()->maximumHeight() > small);
        s.window->DispatchCommand(CommandId::ViewResizeProgressArea);
        QCOMPARE(s.window->progressPanel()->maximumHeight(), small);
    }

    void processorAffinityItemsToggleTheirBit() {
        Session s;
        startOnSample(s);
        const uint64_t mask = ProcessAffinityMask();
        int items = 0;
        for (int cpu = 0; cpu <= ProcessorOf(CommandId::ProcessorLast); ++cpu)
            items += s.window->commands().action(ProcessorCommand(cpu)) ? 1 : 0;
        QCOMPARE(items, std::popcount(mask));
        if (std::popcount(mask) < 2) QSKIP("one processor: no bit can be taken away");
        const int cpu = std::countr_zero(mask);
        QVERIFY(s.checked(ProcessorCommand(cpu)));
        QCOMPARE(s.window->commands().action(ProcessorCommand(cpu))->text(),
                 QStringLiteral("Procesor ") + QString::number(cpu));
        s.window->DispatchCommand(ProcessorCommand(cpu));
        QCOMPARE(ProcessAffinityMask(), mask & ~(uint64_t{1} << cpu));
        QVERIFY(!s.checked(ProcessorCommand(cpu)));
        // A change made by someone else is reported and taken over.
        QVERIFY(SetProcessAffinityMask(mask));
        s.window->DispatchCommand(ProcessorCommand(cpu));
        QCOMPARE(s.prompts.boxes,
                 QStringList{QStringLiteral("Information|Settings were changed outside the "
                                            "program.\nThe current settings are taken over.")});
        QCOMPARE(ProcessAffinityMask(), mask);
        QVERIFY(s.checked(ProcessorCommand(cpu)));
    }

    void theWindowIsGrabbed() {
        Session s;
        startOnSample(s);
        QCoreApplication::processEvents();
        const QImage image = s.window->grab().toImage();
        QVERIFY(image.width() > 400);
        const QString file = QStringLiteral(ZORVANE_BINARY_DIR "/zorvane-window.png");
        QVERIFY(image.save(file));
        QVERIFY(!QImage(file).isNull());
    }

    // Last: a lower priority cannot be raised again without privileges.
    void priorityItemsSetTheClass() {
        Session s;
        startOnSample(s);
        s.window->DispatchCommand(CommandId::PriorityLow);
        QCOMPARE(ProcessPriorityClass(), PRIORITY_LOW);
        QVERIFY(s.checked(CommandId::PriorityLow));
        QVERIFY(!s.checked(CommandId::PriorityBelowNormal));
    }
};

QTEST_MAIN(MainWindowTest)
#include "main_window_test.moc"
