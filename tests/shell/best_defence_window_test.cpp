// Black's best defence from the window: F5 and the thorough command at a
// position of the line with Black to move, the move played on the board, the
// text in the status line, and the box when Black has no move.
#include "shell/board_controller.h"
#include "shell/board_view.h"
#include "shell/solve_controller.h"
#include "solving_session.h"

#include <QSignalSpy>

using namespace zorvane;

namespace {

// Squares of the sample's boards, a1 = 0.
constexpr int E1 = 4, E2 = 12, C3 = 18, C2 = 10, F6 = 45, G6 = 46;

// The sample's problem `id` on the board, with White's first move played on it.
void playWhiteMove(SolvingSession& s, int id, int from, int to) {
    while (s.current() < id) s.window->DispatchCommand(CommandId::ProblemNext);
    QCOMPARE(s.current(), id);
    auto* view = s.window->findChild<BoardView*>();
    QVERIFY(view);
    emit view->moveRequested(from, to);
    QCOMPARE(s.window->problems().Current()->playedPositions.size(), size_t{1});
}

} // namespace

class BestDefenceWindowTest : public QObject {
    Q_OBJECT
  private slots:
    void theCommandsFollowTheSideToMove() {
        SolvingSession s;
        startOnSample(s);
        s.attach();
        s.window->DispatchCommand(CommandId::ProblemNext);
        QVERIFY(!s.enabled(CommandId::SolveBlackDefence));
        QVERIFY(!s.enabled(CommandId::SolveBlackDefenceThorough));
        playWhiteMove(s, 2, F6, G6);
        QVERIFY(s.enabled(CommandId::SolveBlackDefence));
        QVERIFY(s.enabled(CommandId::SolveBlackDefenceThorough));
        QVERIFY(s.enabled(CommandId::SolveStart));
        // Greyed while the problem is being solved.
        s.window->runningSolves().add(2);
        s.window->UpdateMenuState();
        QVERIFY(!s.enabled(CommandId::SolveBlackDefence));
        s.window->runningSolves().remove(2);
    }

    void f5PlaysTheOnlyReplyAndShowsItsText() {
        SolvingSession s;
        startOnSample(s);
        s.attach();
        playWhiteMove(s, 2, F6, G6); // the key of the #2
        const qsizetype boxes = s.prompts.boxes.size();
        QSignalSpy finished(s.solving.get(), &SolveController::solveFinished);
        QTest::keyClick(s.window.get(), Qt::Key_F5);
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 10000);
        QCOMPARE(s.window->statusText(), QStringLiteral("The only reply: Kf8-g8"));
        QCOMPARE(s.prompts.boxes.size(), boxes);
        const TChessProblem& problem = *s.window->problems().Current();
        QCOMPARE(problem.playedPositions.size(), size_t{2});
        QCOMPARE(s.window->board().shownPosition(), &problem.playedPositions.back());
        QCOMPARE(problem.playedPositions.back().blackKing(), 62); // g8
        QCOMPARE(s.window->runningSolves().count(), 0);
    }

    void theThoroughCommandNamesTheRefutationOfATry() {
        SolvingSession s;
        startOnSample(s);
        s.attach();
        playWhiteMove(s, 2, E1, E2); // a try: after Kg8 the king has h7
        QSignalSpy finished(s.solving.get(), &SolveController::solveFinished);
        s.window->DispatchCommand(CommandId::SolveBlackDefenceThorough);
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 10000);
        QCOMPARE(s.window->statusText(),
                 QStringLiteral("Mate in the requested stipulation was refuted with: Kf8-g8"));
        QCOMPARE(s.window->problems().Current()->playedPositions.size(), size_t{2});
    }

    void noMoveForBlackIsToldInABox() {
        SolvingSession s;
        startOnSample(s);
        s.attach();
        playWhiteMove(s, 3, C3, C2); // stalemate of the king in the corner
        QSignalSpy finished(s.solving.get(), &SolveController::solveFinished);
        s.window->DispatchCommand(CommandId::SolveBlackDefence);
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 10000);
        QCOMPARE(s.prompts.boxes.last(), QStringLiteral("Information|No valid move found"));
        QCOMPARE(s.window->statusText(), QStringLiteral("No valid move found"));
        QCOMPARE(s.window->problems().Current()->playedPositions.size(), size_t{1});
    }

    void stopEndsALongDefenceWithItsText() {
        SolvingSession s;
        startLong(s); // the opening position as a #9
        auto* view = s.window->findChild<BoardView*>();
        QVERIFY(view);
        emit view->moveRequested(12, 28); // e2-e4: Black to move, White mates in eight more
        QVERIFY(s.enabled(CommandId::SolveBlackDefence));
        s.window->DispatchCommand(CommandId::SolveBlackDefence);
        QVERIFY(s.window->runningSolves().contains(1));
        QTest::qWait(300);
        QVERIFY(s.window->runningSolves().contains(1));
        s.window->DispatchCommand(CommandId::SolveStop);
        QVERIFY(!s.window->runningSolves().contains(1));
        QCOMPARE(s.window->statusText(), QStringLiteral("Analysis stopped by user"));
        QCOMPARE(s.window->problems().Current()->playedPositions.size(), size_t{1});
    }
};

QTEST_MAIN(BestDefenceWindowTest)
#include "best_defence_window_test.moc"
