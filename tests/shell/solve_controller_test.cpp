// Solving from the window: F5 on a problem, the result in the panel, the register's
// memory limit, stop, pause, starting twice, and closing with a solve running.
#include "options/memory_limit.h"
#include "registers/aggregated_register.h"
#include "shell/board_controller.h"
#include "shell/board_view.h"
#include "shell/process_control.h"
#include "shell/solution_panel.h"
#include "shell/solve_controller.h"
#include "solving_session.h"

#include <QLabel>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QToolButton>
#include <QTreeWidget>

#include <chrono>

using namespace zorvane;

namespace {} // namespace

class SolveControllerTest : public QObject {
    Q_OBJECT
  private slots:
    void f5SolvesATwoMoverAndShowsTheResult() {
        SolvingSession s;
        startOnSample(s);
        s.attach();
        s.window->DispatchCommand(CommandId::ProblemNext); // problem 2, the #2
        QCOMPARE(s.current(), 2);
        QVERIFY(s.enabled(CommandId::SolveStart));
        QSignalSpy finished(s.solving.get(), &SolveController::solveFinished);
        QTest::keyClick(s.window.get(), Qt::Key_F5);
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 10000);
        // The result goes to the panel beside the board, without a box.
        QVERIFY2(s.prompts.boxes.isEmpty(), qPrintable(s.prompts.boxes.join('\n')));
        QVERIFY2(s.solving->solutionPanel()->resultText().startsWith(QStringLiteral("Kf6-g6 (")),
                 qPrintable(s.solving->solutionPanel()->resultText()));
        QCOMPARE(s.window->runningSolves().count(), 0);
        // The key is played on the board.
        QCOMPARE(s.window->problems().Current()->playedPositions.size(), size_t{1});
    }

    void theClearOfTheRegisterAsksOnlyWhileAnotherProblemIsSolved() {
        SolvingSession s;
        startOnSample(s);
        s.attach();
        TChessProblem* problem = s.window->problems().Current();
        auto fill = [&] {
            problem->m_pRegister = std::make_shared<TProblemRegister>(REGISTER_SMALL_BUCKETS);
            problem->m_pRegister->Store(3, TChessboardRegisterItem::FromBoard(problem->startPosition), true);
            QCOMPARE(problem->m_pRegister->ElementCount(), 1u);
        };
        fill();
        QVERIFY(s.enabled(CommandId::TempRegisterClear));
        s.window->DispatchCommand(CommandId::TempRegisterClear);
        QCOMPARE(problem->m_pRegister->ElementCount(), 0u);
        QVERIFY(s.prompts.boxes.isEmpty());

        // Another problem's solve runs: the question first, No keeps the register.
        fill();
        s.window->runningSolves().add(4);
        s.prompts.answers = {Answer::No};
        s.window->DispatchCommand(CommandId::TempRegisterClear);
        QCOMPARE(
            s.prompts.boxes,
            QStringList{
                "Question|Analysis pending. Are you sure you want to delete temporary data from memory?"});
        QCOMPARE(problem->m_pRegister->ElementCount(), 1u);
        s.prompts.answers = {Answer::Yes};
        s.window->DispatchCommand(CommandId::TempRegisterClear);
        QCOMPARE(problem->m_pRegister->ElementCount(), 0u);
        s.window->runningSolves().remove(4);
    }

    void theRelaxationLogFollowsItsOption() {
        Options options;
        QVERIFY(SolveOptionsFor(options, false).relaxationLog.empty());
        options.TryRelaxSpecialHeuristicsLog = true;
        QCOMPARE(QString::fromStdString(SolveOptionsFor(options, false).relaxationLog.string()),
                 QString("TryRelaxSpecialHeuristics.log"));
    }

    void theRegisterTakesTheOptionsShareOfMemory() {
        SolvingSession s;
        startOnSample(s);
        s.attach();
        s.window->DispatchCommand(CommandId::ProblemNext); // problem 2, the #2
        s.window->options().MaxMemRatioForTempReg = 7;
        QSignalSpy finished(s.solving.get(), &SolveController::solveFinished);
        QTest::keyClick(s.window.get(), Qt::Key_F5);
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 10000);
        const uint64_t physical = PhysicalMemoryBytes();
        QVERIFY(physical > 0);
        const TChessProblem* problem = s.window->problems().Current();
        QVERIFY(problem->m_pRegister);
        QCOMPARE(problem->m_pRegister->MemoryLimit(), TempRegLimitMb(physical, 7) * 1024 * 1024);
    }

    void stopEndsALongSolveWithinASecond() {
        SolvingSession s;
        startLong(s);
        s.window->DispatchCommand(CommandId::SolveStart);
        QVERIFY(s.window->runningSolves().contains(1));
        QVERIFY(!s.enabled(CommandId::SolveStart));
        QVERIFY(s.enabled(CommandId::SolveStop));
        QTest::qWait(300);
        const auto stopAt = std::chrono::steady_clock::now();
        s.window->DispatchCommand(CommandId::SolveStop);
        QVERIFY(!s.window->runningSolves().contains(1));
        QVERIFY(std::chrono::steady_clock::now() - stopAt < std::chrono::seconds(1));
        QVERIFY2(s.solving->solutionPanel()->resultText().startsWith(
                     QStringLiteral("Analysis stopped by user\nPositions in temporary register: ")),
                 qPrintable(s.solving->solutionPanel()->resultText()));
    }

    void startingTwiceGivesTheBoxAndTheFirstRunGoesOn() {
        SolvingSession s;
        startLong(s);
        s.window->DispatchCommand(CommandId::SolveStart);
        s.solving->StartSolving(false);
        QCOMPARE(s.prompts.boxes.last(),
                 QStringLiteral("Information|Search for solution of the current problem is pending"));
        QVERIFY(s.window->runningSolves().contains(1));
        s.window->DispatchCommand(CommandId::SolveStop);
    }

    void pauseHoldsTheClockAndResumeGoesOn() {
        SolvingSession s;
        startLong(s);
        s.window->DispatchCommand(CommandId::SolveStart);
        s.window->DispatchCommand(CommandId::SolvePause);
        QVERIFY(s.window->runningSolves().isPaused(1));
        QVERIFY(s.enabled(CommandId::SolveResume));
        const uint64_t nodes = s.solving->ProgressOf(1).nodes;
        QTest::qWait(400);
        QVERIFY(s.solving->ProgressOf(1).nodes <= nodes + 1);
        s.window->DispatchCommand(CommandId::SolveResume);
        QVERIFY(!s.window->runningSolves().isPaused(1));
        QTRY_VERIFY_WITH_TIMEOUT(s.solving->ProgressOf(1).nodes > nodes + 1, 5000);
        s.window->DispatchCommand(CommandId::SolveStop);
    }

    void theStartButtonStartsPausesAndStops() {
        SolvingSession s;
        startLong(s);
        auto* button = s.window->findChild<QToolButton*>(QStringLiteral("startButton"));
        QVERIFY(button);
        QVERIFY(button->toolTip().startsWith(
            QStringLiteral("Start/stop (right click: find all solutions/pause")));
        QTest::mouseClick(button, Qt::LeftButton);
        QVERIFY(s.window->runningSolves().contains(1));
        s.solving->startButtonClicked(true, false); // the right click
        QVERIFY(s.window->runningSolves().isPaused(1));
        s.solving->startButtonClicked(true, false);
        QVERIFY(!s.window->runningSolves().isPaused(1));
        QTest::mouseClick(button, Qt::LeftButton);
        QVERIFY(!s.window->runningSolves().contains(1));
    }

    void f5AtALaterPositionSolvesFromThere() {
        SolvingSession s;
        startOnSample(s);
        s.attach();
        s.window->DispatchCommand(CommandId::ProblemNext);
        s.window->DispatchCommand(CommandId::ProblemNext); // problem 3, the #3 with the rook
        QCOMPARE(s.current(), 3);
        auto* view = s.window->findChild<BoardView*>();
        QVERIFY(view);
        emit view->moveRequested(9, 17); // Rb2-b3
        emit view->moveRequested(0, 8);  // Ka1-a2
        QCOMPARE(s.window->problems().Current()->playedPositions.size(), size_t{2});
        QSignalSpy finished(s.solving.get(), &SolveController::solveFinished);
        s.window->DispatchCommand(CommandId::SolveStart);
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 10000);
        QVERIFY2(s.prompts.boxes.isEmpty(), qPrintable(s.prompts.boxes.join('\n')));
        const QString result = s.solving->solutionPanel()->resultText();
        QVERIFY2(result.contains(QStringLiteral(" >> #2")), qPrintable(result));
        // Keys of a later position are no lines from the start: the panel lists none.
        QCOMPARE(s.solving->solutionPanel()->lines()->topLevelItemCount(), 0);
    }

    void aTaskErrorIsShownWithItsText() {
        SolvingSession s;
        s.copySample();
        const QString file = s.path(QStringLiteral("checked.cp"));
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write("UTF-8\n\n1 #2\n{\n\tFEN: k7/8/8/8/8/8/8/R6K\n}\n");
        out.close();
        start(s, file);
        s.attach();
        QSignalSpy finished(s.solving.get(), &SolveController::solveFinished);
        s.window->DispatchCommand(CommandId::SolveStart);
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 5000);
        QCOMPARE(s.prompts.boxes.last(),
                 QStringLiteral("An error has occurred|Black king cannot be checked in the "
                                "mate task starting postition."));
        QCOMPARE(s.window->runningSolves().count(), 0);
    }

    void theProgressPanelShowsThePass() {
        SolvingSession s;
        startLong(s);
        s.window->DispatchCommand(CommandId::SolveStart);
        QTRY_VERIFY_WITH_TIMEOUT(s.window->progressPanel()->text().startsWith(QStringLiteral("Pass ")), 3000);
        s.window->DispatchCommand(CommandId::SolveStop);
    }

    void theProgressPanelShowsTheRegisterAndTheMovesPerDepth() {
        SolvingSession s;
        startLong(s);
        s.window->DispatchCommand(CommandId::SolveStart);
        // The #9 from the opening position: the search's visits with nine
        // plies left show the eight moves above them.
        const QRegularExpression panel(QStringLiteral(
            R"(\nTemporary register: [0-9.]+[kMG]?, \d+MB\n1\.\S+ \(\d+/\d+\) 1\.\.\.\S+ \(\d+/\d+\) 2\.)"));
        QTRY_VERIFY_WITH_TIMEOUT(panel.match(s.window->progressPanel()->text()).hasMatch(), 10000);
        s.window->DispatchCommand(CommandId::SolveStop);
    }

    void closingWithARunningSolveAsksAndStopsIt() {
        SolvingSession s;
        startLong(s);
        s.window->DispatchCommand(CommandId::SolveStart);
        s.prompts.answers.push_back(Answer::Yes);
        QVERIFY(s.window->close());
        QVERIFY(s.prompts.boxes.contains(QStringLiteral(
            "Question|Search for solution is pending for 1 problem(s).\nAre you sure you want to quit?")));
        QCOMPARE(s.window->runningSolves().count(), 0);
    }

    void aSolveLeftBehindReportsWithItsNumber() {
        SolvingSession s;
        startOnSample(s);
        s.attach();
        s.window->DispatchCommand(CommandId::ProblemLast); // the last problem, the #5
        const int solved = s.current();
        QSignalSpy finished(s.solving.get(), &SolveController::solveFinished);
        s.window->DispatchCommand(CommandId::SolveAllSolutions);
        s.prompts.answers.push_back(Answer::No);            // do not stop it
        s.window->DispatchCommand(CommandId::ProblemFirst); // away to the first while it runs
        QCOMPARE(s.current(), 1);
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 20000);
        QVERIFY2(s.prompts.boxes.last().startsWith(
                     QStringLiteral("Mate search result|5 solution(s) found of the problem ") +
                     QString::number(solved)),
                 qPrintable(s.prompts.boxes.last()));
    }
};

QTEST_MAIN(SolveControllerTest)
#include "solve_controller_test.moc"
