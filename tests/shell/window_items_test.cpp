// Commands and texts of the window: the check of a file's FEN codes (218),
// the status tips of commands still greyed, the texts of a solve's end, of a
// repeated position and of too many solves, and the tool buttons: move back
// and redo, the register count, the stipulation arrows and the engine's threads.
#include "../test_squares.h"
#include "engine/solver.h"
#include "shell/board_controller.h"
#include "shell/board_geometry.h"
#include "shell/board_view.h"
#include "shell/menu_state.h"
#include "shell/solve_controller.h"
#include "solving_session.h"

#include <QLabel>
#include <QSignalSpy>
#include <QToolBar>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "../files_on_disk.h"

using namespace zorvane;
namespace fs = std::filesystem;

namespace {

std::string readText(const QString& path) {
    return ReadBytes(path.toStdString());
}
void writeText(const QString& path, const std::string& text) {
    WriteBytes(path.toStdString(), text);
}

const QString ENGINE_THREADS_TIP =
    QStringLiteral("Not available yet: waits for the engine's threads (manual control of the analysis)");

BoardView* boardView(Session& s) {
    return s.window->findChild<BoardView*>();
}

QPoint centre(const char* square) {
    const board_geometry::CellCorner c = board_geometry::CellOf(sq(square), false);
    return QPoint(c.x + board_geometry::CELL / 2, c.y + board_geometry::CELL / 2);
}

void drag(Session& s, const char* from, const char* to) {
    BoardView* view = boardView(s);
    QTest::mousePress(view, Qt::LeftButton, {}, centre(from));
    QTest::mouseMove(view, centre(to));
    QTest::mouseRelease(view, Qt::LeftButton, {}, centre(to));
}

// The tool bar's action of the command, told by its tool tip.
QAction* toolAction(Session& s, CommandId id, const QString& toolTip) {
    for (QAction* action : s.window->commands().actionsOf(id))
        if (action->toolTip() == toolTip) return action;
    return nullptr;
}

void rightClick(QWidget* widget) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), widget->mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(widget, &event);
}

// Index of the shown position in the current problem's chain: 0 the start.
int shownIndex(Session& s) {
    const TChessProblem* problem = s.window->problems().Current();
    const TChessboard* shown = s.window->board().shownPosition();
    if (shown == &problem->startPosition) return 0;
    for (size_t i = 0; i < problem->playedPositions.size(); ++i)
        if (shown == &problem->playedPositions[i]) return static_cast<int>(i) + 1;
    return -1;
}

} // namespace

class WindowItemsTest : public QObject {
    Q_OBJECT
  private slots:
    // ---- 218: the FEN codes of a text file.

    void fenCodesNotFoundGoToAFileBesideTheText() {
        Session s;
        startOnSample(s);
        const QString list = s.path(QStringLiteral("codes.txt"));
        writeText(list, "Problem one: 6k1/5ppp/8/8/8/8/8/3R2K1 w - - 0 1, seen.\n"
                        "8/8/8/8/8/8/8/K6k b\n"
                        "not a code: 8/8/8/8/8/8/8/9\n"
                        "[FEN \"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR\"]\n");
        QVERIFY(s.enabled(CommandId::CheckFenCodesFromFile));
        QCOMPARE(
            s.text(CommandId::CheckFenCodesFromFile),
            QStringLiteral("Check if FEN codes from selected file (any text format) exist in the current "
                           "file..."));
        s.prompts.fileNames = {list};
        s.prompts.answers = {Answer::Yes};
        s.window->DispatchCommand(CommandId::CheckFenCodesFromFile);
        const QString report = list + QStringLiteral(".FENNotFound.txt");
        QCOMPARE(
            s.prompts.boxes,
            (QStringList{QStringLiteral("Question|All the file will be searched for FEN codes and it will "
                                        "be checked whether they exist in the current file.\nFEN codes not "
                                        "found will be written to the file:\n") +
                             report + QStringLiteral("\n\nDo you want to continue?"),
                         QStringLiteral("Information|FEN codes in the file: 3\nFound in the current file: "
                                        "1\nNot found: 2 (written to the file:\n") +
                             report + QStringLiteral(")")}));
        QCOMPARE(readText(report),
                 std::string("8/8/8/8/8/8/8/K6k b\nrnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR\n"));
    }

    void noToTheFenQuestionWritesNothing() {
        Session s;
        startOnSample(s);
        const QString list = s.path(QStringLiteral("codes.txt"));
        writeText(list, "8/8/8/8/8/8/8/K6k\n");
        s.prompts.fileNames = {list};
        s.prompts.answers = {Answer::No};
        s.window->DispatchCommand(CommandId::CheckFenCodesFromFile);
        QCOMPARE(s.prompts.boxes.size(), 1);
        QVERIFY(!QFile::exists(list + QStringLiteral(".FENNotFound.txt")));
    }

    // ---- Commands still greyed say what they wait for.

    void manualEngineControlStaysGreyedWithItsTip() {
        Session s;
        startOnSample(s);
        for (CommandId id : {CommandId::SkipCurrentMove, CommandId::ProgressSkipToNext,
                             CommandId::ProgressSwapWithNext, CommandId::ProgressMoveToLast}) {
            QVERIFY(!s.enabled(id));
            for (QAction* action : s.window->commands().actionsOf(id))
                QCOMPARE(action->statusTip(), ENGINE_THREADS_TIP);
        }
        s.window->ApplyLanguage(0);
        QCOMPARE(s.window->commands().action(CommandId::SkipCurrentMove)->statusTip(),
                 QStringLiteral("Niedostępne: czeka na wątki silnika (ręczne sterowanie analizą)"));
        s.window->ApplyLanguage(2);
        QCOMPARE(s.window->commands().action(CommandId::ProgressSkipToNext)->statusTip(),
                 QStringLiteral("Ще недоступно: чекає на потоки рушія (ручне керування аналізом)"));
        s.window->ApplyLanguage(1);
    }

    void everyCommandStillGreyedHasATip() {
        Session s;
        startOnSample(s);
        for (CommandId id : CommandsNotBuiltYet()) {
            QVERIFY2(!s.enabled(id), qPrintable(QString::number(static_cast<int>(id))));
            QVERIFY(WaitsFor(id));
            for (QAction* action : s.window->commands().actionsOf(id))
                QVERIFY2(action->statusTip().startsWith(QStringLiteral("Not available yet: ")),
                         qPrintable(QString::number(static_cast<int>(id))));
        }
        // Built now: the FEN check, the description's commands and Black's best defence.
        for (CommandId id : {CommandId::CheckFenCodesFromFile, CommandId::DescriptionEdit,
                             CommandId::DescriptionOpenLink, CommandId::DescriptionCopyAddress,
                             CommandId::SolveBlackDefence, CommandId::SolveBlackDefenceThorough})
            QVERIFY(!IsNotBuiltYet(id));
    }

    // ---- The texts of a solve's end and of too many solves.

    void theTextsOfAThreadsEnd() {
        QCOMPARE(ThreadErrorText(1, 7, L"", ""),
                 QStringLiteral("Thread solving problem 7 completed with error."));
        QCOMPARE(ThreadErrorText(0, 7, L"", ""),
                 QStringLiteral("Wątek rozwiązujący problem 7 zakończył się błędem."));
        QCOMPARE(ThreadErrorText(2, 7, L"", ""),
                 QStringLiteral("Потік, що розв'язує задачу 7 завершився з помилкою."));
        QCOMPARE(ThreadErrorText(1, 7, L"", "bad alloc"),
                 QStringLiteral("Thread solving problem 7 completed with error:\n\nbad alloc"));
        QCOMPARE(ThreadErrorText(1, 7, L"Back rank", "bad alloc"),
                 QStringLiteral("Thread solving problem 7 \"Back rank\" completed with error:\n\nbad alloc"));
        QCOMPARE(BackgroundRunHead(1, SolveRoad::FromPosition, 1, 4),
                 QStringLiteral("Thread solving problem 4 completed successfully."));
        QCOMPARE(BackgroundRunHead(0, SolveRoad::FromPosition, 1, 4),
                 QStringLiteral("Wątek rozwiązujący problem 4 zakończył się pomyślnie."));
        QCOMPARE(BackgroundRunHead(1, SolveRoad::Main, 0, 4),
                 QStringLiteral("No solution found of the problem 4"));
        QCOMPARE(BackgroundRunHead(1, SolveRoad::Main, 2, 4),
                 QStringLiteral("2 solution(s) found of the problem 4"));
        QCOMPARE(TooManySolvesText(1), QStringLiteral("Too many problems being solved at the same time."));
        QCOMPARE(TooManySolvesText(2), QStringLiteral("Забагато задач розв'язується одночасно."));
    }

    void aRunBeyondThePoolIsWarnedAndStillRuns() {
        QCOMPARE(SOLVE_POOL_SIZE, 64);
        SolvingSession s;
        const QString file = s.path(QStringLiteral("two.cp"));
        writeText(
            file,
            "UTF-8\n\n1 #9\n{\n\tDescription: first\n\tFEN: rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR\n}"
            "\n\n2 #9\n{\n\tDescription: second\n\tFEN: rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBN1\n}\n");
        start(s, file);
        s.attach();
        s.solving->setSolvePoolSize(1);
        s.window->DispatchCommand(CommandId::SolveStart);
        QVERIFY(s.prompts.boxes.isEmpty());
        s.prompts.answers = {Answer::No}; // leave it running
        s.window->DispatchCommand(CommandId::ProblemNext);
        QCOMPARE(s.current(), 2);
        s.prompts.boxes.clear();
        s.window->DispatchCommand(CommandId::SolveStart);
        QCOMPARE(s.prompts.boxes,
                 QStringList{QStringLiteral("Warning|Too many problems being solved at the same time.")});
        QCOMPARE(s.window->runningSolves().count(), 2);
        s.prompts.answers = {Answer::Yes};
        QVERIFY(s.window->close());
        QCOMPARE(s.window->runningSolves().count(), 0);
    }

    // ---- A position repeated in a line played by hand.

    void aRepeatedPositionIsToldInABox() {
        Session s;
        startOnSample(s);
        s.window->problems().NavigateToProblem(Navigation::ById, 4);
        s.window->showCurrentProblem();
        QCOMPARE(s.current(), 4);
        drag(s, "e3", "e2");
        drag(s, "a1", "b1");
        drag(s, "e2", "e3");
        QVERIFY(s.prompts.boxes.isEmpty());
        drag(s, "b1", "a1");
        QCOMPARE(s.window->problems().Current()->playedPositions.size(), size_t{4});
        QCOMPARE(s.prompts.boxes, QStringList{QStringLiteral(
                                      "Information|Program detected position repetition\nFor optimization "
                                      "reasons every postion repetition is treated as preventing mate and, "
                                      "thus, program terminates analysis in such case.")});
    }

    // ---- Tool buttons.

    void moveBackAndRedoButtonsStepAFewMovesOnARightClick() {
        Session s;
        startOnSample(s);
        s.window->problems().NavigateToProblem(Navigation::ById, 4);
        s.window->showCurrentProblem();
        drag(s, "e3", "e2");
        drag(s, "a1", "b1");
        drag(s, "c2", "c3");
        drag(s, "b1", "a2");
        drag(s, "e2", "d2");
        QCOMPARE(s.window->problems().Current()->playedPositions.size(), size_t{5});
        QCOMPARE(shownIndex(s), 5);
        QAction* back = toolAction(s, CommandId::MoveBack,
                                   QStringLiteral("Move back (right click: move back a few moves)"));
        QAction* redo =
            toolAction(s, CommandId::MoveRedo, QStringLiteral("Redo move (right click: redo a few moves)"));
        QVERIFY(back);
        QVERIFY(redo);
        auto* bar = s.window->findChild<QToolBar*>();
        back->trigger();
        QCOMPARE(shownIndex(s), 4);
        rightClick(bar->widgetForAction(back));
        QCOMPARE(shownIndex(s), 0);
        redo->trigger();
        QCOMPARE(shownIndex(s), 1);
        rightClick(bar->widgetForAction(redo));
        QCOMPARE(shownIndex(s), 5);
        s.window->ApplyLanguage(0);
        QCOMPARE(back->toolTip(), QStringLiteral("Ruch wstecz (prawy klik: kilka ruchów wstecz)"));
        s.window->ApplyLanguage(1);
    }

    void theRegisterCountShowsTheTemporaryRegister() {
        SolvingSession s;
        startLong(s);
        auto* count = s.window->findChild<QLabel*>(QStringLiteral("registerCount"));
        QVERIFY(count);
        QCOMPARE(count->toolTip(),
                 QStringLiteral("Number of positions in temporary register (either checkmate or "
                                "not, mate doubtful or not doubtful)"));
        QCOMPARE(count->text(), QStringLiteral("0"));
        // A long proof fills the register; it is counted once the run has ended.
        QSignalSpy finished(s.solving.get(), &SolveController::solveFinished);
        s.window->DispatchCommand(CommandId::SolveStart);
        QTest::qWait(1500);
        s.window->DispatchCommand(CommandId::SolveStop);
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 10000);
        const uint64_t positions = Solver::RegisterPositions(*s.window->problems().Current());
        QVERIFY(positions > 0);
        QCOMPARE(count->text(), QString::number(positions));
    }

    void theStipulationArrowsHaveTheirToolTip() {
        Session s;
        startOnSample(s);
        BoardView* view = boardView(s);
        const QString tip = QStringLiteral(
            "Click at the top/bottom to increase/decrease number of moves (stipulation) in pos.setting mode");
        QCOMPARE(view->toolTipAt(QPoint(430, 390)), tip);
        QCOMPARE(view->toolTipAt(QPoint(430, 420)), tip);
        QCOMPARE(view->toolTipAt(centre("e4")), QString());
        s.window->ApplyLanguage(0);
        QCOMPARE(
            view->toolTipAt(QPoint(430, 390)),
            QStringLiteral("Kliknij u góry/dołu, aby zwiększyć/zmniejszyć liczbę ruchów (warunek) w trybie "
                           "ustawiania pozycji"));
        s.window->ApplyLanguage(1);
    }

    void theEngineThreadsButtonWaitsGreyed() {
        Session s;
        startOnSample(s);
        QAction* threads = s.window->commands().engineThreadsButton();
        QVERIFY(threads);
        QVERIFY(!threads->isEnabled());
        QCOMPARE(threads->toolTip(),
                 QStringLiteral("Click at the bottom/top of icon to decrease/increase number of "
                                "engine threads (applies to 1st move)"));
        QCOMPARE(threads->statusTip(), QStringLiteral("Not available yet: waits for the engine's threads"));
        // The state of the menus leaves it greyed.
        s.window->UpdateMenuState();
        QVERIFY(!threads->isEnabled());
    }
};

QTEST_MAIN(WindowItemsTest)
#include "window_items_test.moc"
