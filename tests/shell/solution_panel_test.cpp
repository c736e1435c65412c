// The solution panel: a solve of the window fills it instead of a result box,
// with the keys, their threats, defences and continuations, the tries and the
// set play; a click on a line plays it on the board; a long problem lists its
// keys alone; the labels follow the language.
#include "core/piece.h"
#include "problems/notation.h"
#include "shell/board_controller.h"
#include "shell/solution_panel.h"
#include "solving_session.h"

#include <QDir>
#include <QSignalSpy>
#include <QTreeWidget>

using namespace zorvane;

namespace {

// Loyd's two-mover: 1.Re2-f2! threatens 2.Rf2-f5#.
constexpr char LOYD[] =
    "UTF-8\n\n1 #2\n{\n\tDescription: Loyd\n\tFEN: b1K1N3/1n6/5Q1b/1pk3P1/8/3P4/4R1r1/1R5B\n}\n";
constexpr int E2 = 12, F2 = 13, G2 = 14, F6 = 45;

QStringList childTexts(const QTreeWidgetItem* item) {
    QStringList texts;
    for (int i = 0; i < item->childCount(); ++i) texts << item->child(i)->text(0);
    return texts;
}

QStringList topTexts(const QTreeWidget* tree) {
    return childTexts(tree->invisibleRootItem());
}

QTreeWidgetItem* lineNamed(QTreeWidget* tree, const QString& text) {
    const QList<QTreeWidgetItem*> found = tree->findItems(text, Qt::MatchExactly | Qt::MatchRecursive);
    return found.size() == 1 ? found.front() : nullptr;
}

void clickLine(QTreeWidget* tree, QTreeWidgetItem* item) {
    tree->scrollToItem(item);
    const QRect rect = tree->visualItemRect(item);
    QVERIFY(tree->viewport()->rect().contains(rect.topLeft()));
    // Near the line's start: a long line runs past the panel's edge.
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, QPoint(rect.left() + 4, rect.center().y()));
}

void solveCurrent(SolvingSession& s) {
    QSignalSpy finished(s.solving.get(), &SolveController::solveFinished);
    QTest::keyClick(s.window.get(), Qt::Key_F5);
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 20000);
}

void startOnLoyd(SolvingSession& s) {
    const QString file = s.path(QStringLiteral("loyd.cp"));
    QFile out(file);
    QVERIFY(out.open(QIODevice::WriteOnly));
    out.write(LOYD);
    out.close();
    start(s, file);
    s.attach();
}

} // namespace

class SolutionPanelTest : public QObject {
    Q_OBJECT
  private slots:
    void aSolveFillsThePanelAndAClickPlaysTheLine() {
        SolvingSession s;
        startOnLoyd(s);
        SolutionPanel* panel = s.solving->solutionPanel();
        QVERIFY(panel);
        QVERIFY(panel->isVisible());
        QCOMPARE(panel->windowTitle(), QStringLiteral("Solution"));
        solveCurrent(s);
        // 1. No box: the outcome is in the panel.
        QVERIFY2(s.prompts.boxes.isEmpty(), qPrintable(s.prompts.boxes.join('\n')));
        QVERIFY2(panel->resultText().startsWith(QStringLiteral("Re2-f2 threat: Rf2-f5 (")),
                 qPrintable(panel->resultText()));
        QTreeWidget* tree = panel->lines();
        QCOMPARE(topTexts(tree), (QStringList{"1.Re2-f2! (2.Rf2-f5#)", "Tries", "Set play"}));
        QCOMPARE(childTexts(tree->topLevelItem(0)),
                 (QStringList{"1...Rg2:g5 2.Rf2-c2#", "1...Rg2:f2 2.Qf6:f2#", "1...Nb7-a5 2.Qf6-d6#",
                              "1...Nb7-d6+ 2.Qf6:d6#", "1...Nb7-d8 2.Qf6-d6#",
                              "1...Rg2-g3, Rg2-g4, Rg2-g1, Rg2-h2, b5-b4, Kc5-d5, Bh6-g7, Bh6-f8, Bh6:g5 "
                              "2.Rf2-f5#"}));
        const QStringList tries = childTexts(tree->topLevelItem(1));
        QCOMPARE(tries.size(), 14);
        QCOMPARE(tries.front(), QStringLiteral("1.Rb1:b5+? but 1...Kc5:b5!"));
        QCOMPARE(tries.back(), QStringLiteral("1.Ne8-c7? but 1...Nb7-d6+!"));
        QCOMPARE(childTexts(tree->topLevelItem(1)->child(0)), QStringList{"1...Kc5:b5!"});
        const QStringList setPlay = childTexts(tree->topLevelItem(2));
        QVERIFY(setPlay.contains(QStringLiteral("1...Rg2-f2 2.Qf6:f2#")));
        QVERIFY(setPlay.contains(QStringLiteral("1...Nb7-d6+ 2.Qf6:d6#")));
        // Two mates after one move: a dual, marked on each line.
        QVERIFY(setPlay.contains(QStringLiteral("1...Rg2:g5 2.Re2-c2# (dual)")));
        QVERIFY(setPlay.contains(QStringLiteral("1...Rg2:g5 2.Qf6-f2# (dual)")));

        // 2. The defence line puts the board after its three moves.
        QTreeWidgetItem* defence = lineNamed(tree, QStringLiteral("1...Rg2:f2 2.Qf6:f2#"));
        QVERIFY(defence);
        clickLine(tree, defence);
        const TChessProblem* problem = s.window->problems().Current();
        QCOMPARE(problem->playedPositions.size(), size_t{3});
        const TChessboard* shown = s.window->board().shownPosition();
        QCOMPARE(shown, &problem->playedPositions.back());
        QCOMPARE(shown->m_aSquares[F2], WQ);
        QCOMPARE(shown->m_aSquares[E2], uint8_t{0});
        QCOMPARE(shown->m_aSquares[G2], uint8_t{0});
        QCOMPARE(shown->m_aSquares[F6], uint8_t{0});
        QVERIFY(!shown->whiteToMove());
        QVERIFY(s.prompts.boxes.isEmpty());

        // The picture of the window with its panel, for the README.
        QVERIFY(QDir().mkpath(QStringLiteral(ZORVANE_SOURCE_DIR "/docs/images")));
        QVERIFY(s.window->grab().save(QStringLiteral(ZORVANE_SOURCE_DIR "/docs/images/solution_panel.png")));

        // 3. A refutation of a try: the try and Black's answer, nothing more.
        QTreeWidgetItem* refutation = tree->topLevelItem(1)->child(6)->child(0);
        QCOMPARE(refutation->text(0), QStringLiteral("1...Rg2:f2!"));
        clickLine(tree, refutation);
        QCOMPARE(problem->playedPositions.size(), size_t{2});
        QCOMPARE(s.window->board().shownPosition()->m_aSquares[F2], BR);
        QCOMPARE(s.window->board().shownPosition()->m_aSquares[F6], uint8_t{0});

        // 4. The key line: one move; headings and set play play nothing.
        clickLine(tree, tree->topLevelItem(0));
        QCOMPARE(problem->playedPositions.size(), size_t{1});
        QCOMPARE(s.window->board().shownPosition()->m_aSquares[F2], WR);
        clickLine(tree, tree->topLevelItem(1));
        clickLine(tree, tree->topLevelItem(2)->child(0));
        QCOMPARE(problem->playedPositions.size(), size_t{1});
    }

    void theLinesFollowTheLanguage() {
        SolvingSession s;
        startOnLoyd(s);
        solveCurrent(s);
        SolutionPanel* panel = s.solving->solutionPanel();
        s.window->ApplyLanguage(LANGUAGE_POLISH);
        panel->refresh();
        QCOMPARE(panel->windowTitle(), QStringLiteral("Rozwiązanie"));
        QCOMPARE(topTexts(panel->lines()), (QStringList{"1.We2-f2! (2.Wf2-f5#)", "Próby", "Gra pozorna"}));
        QCOMPARE(panel->lines()->topLevelItem(1)->child(0)->text(0),
                 QStringLiteral("1.Wb1:b5+? ale 1...Kc5:b5!"));
        s.window->ApplyLanguage(LANGUAGE_UKRAINIAN);
        panel->refresh();
        QCOMPARE(panel->windowTitle(), QStringLiteral("Розв'язок"));
        QCOMPARE(topTexts(panel->lines()), (QStringList{"1.Тe2-f2! (2.Тf2-f5#)", "Спроби", "Позірна гра"}));
    }

    void aLongProblemListsItsKeysAlone() {
        SolvingSession s;
        startOnSample(s);
        s.attach();
        s.window->DispatchCommand(CommandId::ProblemLast); // the #5
        QCOMPARE(s.window->problems().Current()->stipulationMoves(), 5);
        QVERIFY(5 > PANEL_TREE_MAX_MOVES);
        solveCurrent(s);
        QVERIFY2(s.prompts.boxes.isEmpty(), qPrintable(s.prompts.boxes.join('\n')));
        QTreeWidget* tree = s.solving->solutionPanel()->lines();
        QCOMPARE(tree->topLevelItemCount(), 1);
        QVERIFY2(tree->topLevelItem(0)->text(0).startsWith(QStringLiteral("1.Ke3-")),
                 qPrintable(tree->topLevelItem(0)->text(0)));
        QCOMPARE(tree->topLevelItem(0)->childCount(), 0);
    }

    void theOutcomeStaysWithItsProblem() {
        SolvingSession s;
        startOnSample(s);
        s.attach();
        s.window->DispatchCommand(CommandId::ProblemNext); // the #2
        solveCurrent(s);
        SolutionPanel* panel = s.solving->solutionPanel();
        QCOMPARE(topTexts(panel->lines()).front(), QStringLiteral("1.Kf6-g6! (zugzwang)"));
        s.window->DispatchCommand(CommandId::ProblemNext);
        panel->refresh();
        QCOMPARE(panel->lines()->topLevelItemCount(), 0);
        QVERIFY(panel->resultText().isEmpty());
        s.window->DispatchCommand(CommandId::ProblemPrevious);
        panel->refresh();
        QCOMPARE(topTexts(panel->lines()).front(), QStringLiteral("1.Kf6-g6! (zugzwang)"));
    }

    void aLineThatDoesNotFitPlaysNothing() {
        SolvingSession s;
        startOnLoyd(s);
        solveCurrent(s);
        SolutionPanel* panel = s.solving->solutionPanel();
        TChessProblem* problem = s.window->problems().Current();
        const TMove key = ParseMoveOnBoard(problem->startPosition, "Re2-f2");
        problem->playedPositions.clear();
        s.window->showCurrentProblem();
        // The rook has left e2: the second move does not fit, and the first is not played either.
        panel->playLine({key, key});
        QVERIFY(problem->playedPositions.empty());
        panel->playLine({key});
        QCOMPARE(problem->playedPositions.size(), size_t{1});
    }

    void aProblemSetUpAnewLosesItsLines() {
        SolvingSession s;
        startOnLoyd(s);
        solveCurrent(s);
        SolutionPanel* panel = s.solving->solutionPanel();
        QCOMPARE(panel->lines()->topLevelItemCount(), 3);
        // The pawn on g5 goes: the lines were found for another position.
        s.window->problems().Current()->startPosition.m_aSquares[38] = 0;
        panel->refresh();
        QCOMPARE(panel->lines()->topLevelItemCount(), 0);
        QVERIFY(panel->resultText().isEmpty());
    }

    void aStopDuringTheTreeKeepsTheKeysAndThePartBuilt() {
        SolvingSession s;
        startOnLoyd(s);
        const TChessProblem& problem = *s.window->problems().Current();
        const TChessboard& start = problem.startPosition;
        // The tree got as far as the key and one defence; a second key was proven but not reached.
        SolveResult result;
        result.moves = {ParseMoveOnBoard(start, "Re2-f2"), ParseMoveOnBoard(start, "Bh1:g2")};
        result.tree.moves = 2;
        result.tree.stopped = true;
        WhitePlay key;
        key.move = {result.moves[0], WR, false, false, false};
        BlackDefence defence;
        TChessboard afterKey;
        TMove keyMove = result.moves[0];
        QVERIFY(PlayMove(start, afterKey, keyMove));
        defence.move = {ParseMoveOnBoard(afterKey, "Nb7-a5"), BN, false, false, false};
        key.defences.push_back(defence);
        result.tree.keys.push_back(key);
        s.solving->solutionPanel()->setResult(problem, QStringLiteral("stopped"), result, true);
        QTreeWidget* tree = s.solving->solutionPanel()->lines();
        QCOMPARE(topTexts(tree), (QStringList{"1.Re2-f2!", "1.Bh1:g2!", "Analysis stopped by user"}));
        QCOMPARE(childTexts(tree->topLevelItem(0)), QStringList{"1...Nb7-a5"});
        clickLine(tree, tree->topLevelItem(0)->child(0));
        QCOMPARE(s.window->problems().Current()->playedPositions.size(), size_t{2});
        QCOMPARE(s.window->board().shownPosition()->m_aSquares[32], BN); // a5
    }

    void aStoppedSolveTellsItInThePanel() {
        SolvingSession s;
        startLong(s);
        s.window->DispatchCommand(CommandId::SolveStart);
        QTest::qWait(200);
        // The solve owns the position: a line does not play meanwhile.
        TChessProblem* problem = s.window->problems().Current();
        s.solving->solutionPanel()->playLine({ParseMoveOnBoard(problem->startPosition, "e2-e4")});
        QVERIFY(problem->playedPositions.empty());
        s.window->DispatchCommand(CommandId::SolveStop);
        QVERIFY(s.prompts.boxes.isEmpty());
        QVERIFY2(s.solving->solutionPanel()->resultText().startsWith(
                     QStringLiteral("Analysis stopped by user\nPositions in temporary register: ")),
                 qPrintable(s.solving->solutionPanel()->resultText()));
        QCOMPARE(topTexts(s.solving->solutionPanel()->lines()), QStringList{"Analysis stopped by user"});
    }
};

QTEST_MAIN(SolutionPanelTest)
#include "solution_panel_test.moc"
