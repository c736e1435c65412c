// Small promises of the window: the Help menu opens the README, items of
// solves that are not built are greyed, the status forgets a run that ended,
// a problem comes back with its diagram, and quitting during a solve shows
// no result.
#include "shell/board_controller.h"
#include "shell/board_view.h"
#include "shell/solution_panel.h"
#include "shell/solve_controller.h"
#include "shell/system_commands.h"
#include "solving_session.h"

#include <QDesktopServices>
#include <QLabel>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolButton>
#include <QUrl>

#include <filesystem>
#include <fstream>

using namespace zorvane;
namespace fs = std::filesystem;

namespace {

const QString README = QStringLiteral(ZORVANE_SOURCE_DIR "/README.md");
const QString NOT_AVAILABLE =
    QStringLiteral("Information|This function is not available yet in this version of the program.");
const QString QUIT_QUESTION = QStringLiteral(
    "Question|Search for solution is pending for 1 problem(s).\nAre you sure you want to quit?");

void touch(const fs::path& path) {
    fs::create_directories(path.parent_path());
    std::ofstream(path) << "# Zorvane\n";
}

} // namespace

// Takes the file URLs that the window asks the desktop to open.
class UrlCatcher : public QObject {
    Q_OBJECT
  public:
    QList<QUrl> urls;
  public slots:
    void open(const QUrl& url) { urls << url; }
};

class WindowFixesTest : public QObject {
    Q_OBJECT

  private slots:
    // ---- Help: the manual and the readme are the README.md of the program.

    void theHelpItemsOpenTheReadme() {
        UrlCatcher catcher;
        QDesktopServices::setUrlHandler(QStringLiteral("file"), &catcher, "open");
        Session s;
        startOnSample(s);
        QCOMPARE(s.text(CommandId::HelpManual), QStringLiteral("Open &manual (quick start)"));
        QCOMPARE(s.text(CommandId::HelpReadme), QStringLiteral("&Open readme.txt"));
        s.window->DispatchCommand(CommandId::HelpManual);
        s.window->DispatchCommand(CommandId::HelpReadme);
        QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
        QCOMPARE(s.prompts.boxes, QStringList());
        QCOMPARE(catcher.urls, (QList<QUrl>{QUrl::fromLocalFile(README), QUrl::fromLocalFile(README)}));
    }

    void theReadmeIsLookedForBesideTheProgramThenInShare() {
        QTemporaryDir prefix;
        const fs::path bin = fs::path(prefix.path().toStdString()) / "bin";
        fs::create_directories(bin);
        QCOMPARE(QString::fromStdString(FindReadme(bin).string()), README);
        const fs::path shared = fs::path(prefix.path().toStdString()) / "share" / "zorvane" / "README.md";
        touch(shared);
        QCOMPARE(FindReadme(bin), shared);
        touch(bin / "README.md");
        QCOMPARE(FindReadme(bin), bin / "README.md");
    }

    // ---- Solves that are not built are greyed, with their texts as they are.

    void itemsOfSolvesNotBuiltAreGreyed() {
        SolvingSession s;
        startOnSample(s);
        s.attach();
        QVERIFY(s.enabled(CommandId::SolveStart));
        QVERIFY(s.enabled(CommandId::SolveAllSolutions));
        using enum CommandId;
        // At the start position the best defence has nothing to answer either.
        for (CommandId id : {SolveBlackDefence, SolveBlackDefenceThorough, SolveShowMainVariant,
                             SolveWithHeuristics, SolveAllWithHeuristics, SolveShowMainVariantKey})
            QVERIFY2(!s.enabled(id), qPrintable(QString::number(CommandNumber(id))));
        QCOMPARE(s.text(CommandId::SolveBlackDefence), QStringLiteral("Find best defence for &black\tF5"));
        QCOMPARE(s.text(CommandId::SolveShowMainVariant),
                 QStringLiteral("Solve and show whole main &variant\tAlt+F5 or middle-click"));
        QCOMPARE(s.text(CommandId::SolveWithHeuristics),
                 QStringLiteral("Select &heuristics and find solution\tCtrl+F5"));
        // Their keys do nothing, and the controller has no box for them left.
        QTest::keyClick(s.window.get(), Qt::Key_F5, Qt::ControlModifier);
        QTest::keyClick(s.window.get(), Qt::Key_F5, Qt::AltModifier);
        for (CommandId id : {SolveBlackDefence, SolveBlackDefenceThorough, SolveShowMainVariant,
                             SolveWithHeuristics, SolveAllWithHeuristics})
            s.solving->dispatch(id);
        QCOMPARE(s.prompts.boxes, QStringList());
        QCOMPARE(s.window->runningSolves().count(), 0);
        // The start button's Ctrl+right click asks for the heuristics: refused as a greyed command.
        s.solving->startButtonClicked(true, true);
        QCOMPARE(s.prompts.boxes, QStringList{NOT_AVAILABLE});
        QCOMPARE(s.window->runningSolves().count(), 0);
    }

    void theStartRunsBlacksBestDefenceWithBlackToMoveOnTheBoard() {
        SolvingSession s;
        startOnSample(s);
        s.attach();
        s.window->DispatchCommand(CommandId::ProblemNext);
        s.window->DispatchCommand(CommandId::ProblemNext); // problem 3, the #3 with the rook
        auto* view = s.window->findChild<BoardView*>();
        QVERIFY(view);
        emit view->moveRequested(9, 17); // Rb2-b3: Black's best defence is next
        s.window->UpdateMenuState();
        QVERIFY(s.enabled(CommandId::SolveStart));
        QVERIFY(s.enabled(CommandId::SolveAllSolutions));
        QSignalSpy finished(s.solving.get(), &SolveController::solveFinished);
        QTest::keyClick(s.window.get(), Qt::Key_F5);
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 10000);
        for (const QString& box : s.prompts.boxes)
            QVERIFY2(!box.contains(QStringLiteral("not available")), qPrintable(box));
        // Ka1-a2 is Black's one move: it is played, and White is to move again, a #2 from there.
        QCOMPARE(s.window->statusText(), QStringLiteral("The only reply: Ka1-a2"));
        QCOMPARE(s.window->problems().Current()->playedPositions.size(), size_t{2});
        s.window->UpdateMenuState();
        QVERIFY(s.enabled(CommandId::SolveStart));
        QVERIFY(!s.enabled(CommandId::SolveBlackDefence));
    }

    void theStartIsGreyedForAPositionWithoutStipulation() {
        SolvingSession s;
        startOnSample(s);
        s.attach();
        s.window->commands().addBonusItem();
        s.window->UpdateMenuState();
        s.window->DispatchCommand(CommandId::Bonus); // a new position without stipulation
        QCOMPARE(s.window->problems().Current()->type, uint16_t{PROBLEM_POSITION});
        QVERIFY(!s.enabled(CommandId::SolveStart));
        QVERIFY(!s.enabled(CommandId::SolveAllSolutions));
        s.solving->StartSolving(false);
        QCOMPARE(s.prompts.boxes, QStringList());
        QCOMPARE(s.window->runningSolves().count(), 0);
    }

    // ---- The status forgets a run that ended.

    void theStatusOfARunIsClearedWhenItEnds() {
        SolvingSession s;
        startOnSample(s);
        s.attach();
        QCOMPARE(s.current(), 1); // the #1
        QSignalSpy finished(s.solving.get(), &SolveController::solveFinished);
        s.window->DispatchCommand(CommandId::SolveStart);
        QCOMPARE(s.window->statusText(), QStringLiteral("Initial position type check..."));
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 10000);
        QCOMPARE(s.window->statusText(), QString());
    }

    void theStatusOfAStopIsClearedWhenTheRunEnds() {
        SolvingSession s;
        startLong(s);
        s.window->DispatchCommand(CommandId::SolveStart);
        QTest::qWait(200);
        s.window->DispatchCommand(CommandId::SolveStop);
        QVERIFY(!s.window->runningSolves().contains(1));
        QCOMPARE(s.window->statusText(), QString());
    }

    void aStatusSetMeanwhileStays() {
        SolvingSession s;
        startOnSample(s);
        s.attach();
        QSignalSpy finished(s.solving.get(), &SolveController::solveFinished);
        s.window->DispatchCommand(CommandId::SolveStart);
        s.window->showStatus(QStringLiteral("something else"));
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 10000);
        QCOMPARE(s.window->statusText(), QStringLiteral("something else"));
    }

    // ---- A problem left and come back to shows its diagram.

    void comingBackShowsTheDiagramNotTheKeyPlayed() {
        SolvingSession s;
        startOnSample(s);
        s.attach();
        s.window->DispatchCommand(CommandId::ProblemNext); // problem 2, the #2
        QSignalSpy finished(s.solving.get(), &SolveController::solveFinished);
        s.window->DispatchCommand(CommandId::SolveStart);
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 10000);
        TChessProblem* problem = s.window->problems().Current();
        QCOMPARE(problem->playedPositions.size(), size_t{1});
        QCOMPARE(s.window->board().shownPosition(),
                 &problem->playedPositions.front()); // the key on the board
        s.window->DispatchCommand(CommandId::ProblemNext);
        s.window->DispatchCommand(CommandId::ProblemPrevious);
        QCOMPARE(s.current(), 2);
        QCOMPARE(s.window->board().shownPosition(), &problem->startPosition);
        // The key stays a step forward away, and F5 solves the diagram again.
        QCOMPARE(problem->playedPositions.size(), size_t{1});
        QVERIFY(s.enabled(CommandId::SolveStart));
        s.window->DispatchCommand(CommandId::MoveRedo);
        QCOMPARE(s.window->board().shownPosition(), &problem->playedPositions.front());
        s.window->DispatchCommand(
            CommandId::ProblemHistoryBack); // the history's way back shows the diagram too
        s.window->DispatchCommand(CommandId::ProblemHistoryForward);
        QCOMPARE(s.window->board().shownPosition(), &problem->startPosition);
    }

    void aProblemWithPlayedMovesKeepsItsStipulation() {
        // A "#3" whose file plays two moves from the diagram is still a #3.
        Session s;
        const QString file = s.path(QStringLiteral("played.cp"));
        QFile::copy(QStringLiteral(ZORVANE_SOURCE_DIR "/tests/data/played_moves.cp"), file);
        QFile(file).setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        start(s, file);
        auto* text = s.window->findChild<QLabel*>(QStringLiteral("problemText"));
        QVERIFY(text);
        QVERIFY2(text->text().startsWith(QStringLiteral("1. #3 ")), qPrintable(text->text()));
        QCOMPARE(s.window->problems().Current()->playedPositions.size(), size_t{2});
    }

    // ---- Quitting during a solve.

    void quittingDuringASolveShowsNoResult() {
        SolvingSession s;
        startLong(s);
        s.window->DispatchCommand(CommandId::SolveStart);
        QVERIFY(s.window->runningSolves().contains(1));
        s.prompts.answers.push_back(Answer::Yes);
        QVERIFY(s.window->close());
        QCOMPARE(s.prompts.boxes, QStringList{QUIT_QUESTION});
        QCOMPARE(s.window->runningSolves().count(), 0);
    }

    void aStopBeforeQuittingStillShowsItsResult() {
        SolvingSession s;
        startLong(s);
        s.window->DispatchCommand(CommandId::SolveStart);
        s.window->DispatchCommand(CommandId::SolveStop);
        // The result goes to the solution panel, without a box.
        QVERIFY2(s.prompts.boxes.isEmpty(), qPrintable(s.prompts.boxes.join('\n')));
        QVERIFY2(
            s.solving->solutionPanel()->resultText().startsWith(QStringLiteral("Analysis stopped by user")),
            qPrintable(s.solving->solutionPanel()->resultText()));
    }
};

QTEST_MAIN(WindowFixesTest)
#include "window_fixes_test.moc"
