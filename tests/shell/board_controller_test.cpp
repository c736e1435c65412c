// The board controller driven through the real view with the mouse: moves and
// their messages, White's threats, promotion, the chain of positions,
// position-setting mode with its palette, stipulation arrows, undo and redo,
// and the checks on leaving it.
#include "../test_squares.h"
#include "core/fen.h"
#include "engine/solver.h"
#include "registers/aggregated_register.h"
#include "scripted_prompts.h"
#include "shell/board_controller.h"
#include "shell/board_geometry.h"
#include "shell/board_view.h"

#include <QSignalSpy>
#include <QTest>

#include <deque>

using namespace zorvane;

namespace {

const QString INFORMATION = QStringLiteral("Information|");
const QString ILLEGAL = INFORMATION + QStringLiteral("Illegal move");
const QString UNAVAILABLE =
    INFORMATION + QStringLiteral("The tool is unavailable when engine is analysing a position");
const QString START_EDITING =
    QStringLiteral("Question|Do you really want to start editting current position?\n"
                   "(all the moves made so far will be lost in such case)");
const QString REFUSED =
    INFORMATION +
    QStringLiteral("Engine refuses to make this move.\nIt makes mating black king impossible...");
const QString STIPULATION_TOOL =
    INFORMATION +
    QStringLiteral("Tool to change stipulation (length of analysis) is currently unavailable.\n\n"
                   "Switch to position setting mode (tool 'hand' in right bottom of chessboard ...");
const QString TOO_MANY = QStringLiteral(
    "Warning|Note: There are more than 9 queens and pawns of the same color. Program is able to properly "
    "handle "
    "only legal positions (in which no more than 218 moves are possible); otherwise its behaviour may be "
    "unpredictable.\nDo you want to continue anyway?");

// Palette cells: white column first, one row per figure.
QPoint paletteCell(int column, bool white) {
    using namespace board_geometry;
    return QPoint(PALETTE_LEFT + (white ? 10 : CELL + 10), PALETTE_TOP + column * CELL + 10);
}
const QPoint ARROW_UP(430, 390);
const QPoint ARROW_DOWN(430, 420);

} // namespace

class BoardControllerTest : public QObject {
    Q_OBJECT

  private slots:
    void init() {
        solving = false;
        prompts.boxes.clear();
        prompts.answers.clear();
        promotions.clear();
        chosenPromotion = KIND_QUEEN;
        view = std::make_unique<BoardView>();
        controller = std::make_unique<BoardController>(view.get(), prompts, [this] { return solving; });
        controller->setPromotionChooser([this](bool white) {
            promotions << white;
            return chosenPromotion;
        });
        status = std::make_unique<QSignalSpy>(controller.get(), &BoardController::statusText);
        changes = std::make_unique<QSignalSpy>(controller.get(), &BoardController::positionChanged);
        view->show();
        QVERIFY(QTest::qWaitForWindowExposed(view.get()));
    }
    void cleanup() {
        status.reset();
        changes.reset();
        controller.reset();
        view.reset();
        problem.reset();
    }

    // ---- Playing by mouse.

    void legalMovesJoinTheChainAndTheStatusJudgesThem() {
        load("5k2/8/5K2/8/8/8/8/4R3", 2);
        drag("f6", "g6");
        QCOMPARE(problem->playedPositions.size(), size_t{1});
        QCOMPARE(problem->playedPositions.back().m_aSquares[sq("g6")], WK);
        QCOMPARE(lastStatus(), QString());
        drag("f8", "g8");
        QCOMPARE(problem->playedPositions.size(), size_t{2});
        QCOMPARE(lastStatus(), QStringLiteral("#1 in current position"));
        QCOMPARE(controller->shownPosition(), &problem->playedPositions.back());
        QCOMPARE(changes->count(), 2);
        QVERIFY(prompts.boxes.isEmpty());
    }

    void illegalMoveIsRefusedWithABox() {
        load("5k2/8/5K2/8/8/8/8/4R3", 2);
        drag("e1", "f2");
        QCOMPARE(prompts.boxes, QStringList{ILLEGAL});
        QVERIFY(problem->playedPositions.empty());
        QCOMPARE(status->count(), 0);
        // A king's long step is no castling unless it is one.
        load("4k3/8/8/8/8/8/8/R2K3R", 2);
        drag("d1", "f1");
        QCOMPARE(prompts.boxes, QStringList{ILLEGAL});
        QVERIFY(problem->playedPositions.empty());
    }

    void castlingByDraggingTheKing() {
        load("4k3/8/8/8/8/8/8/R3K2R", 2);
        drag("e1", "g1");
        QVERIFY(prompts.boxes.isEmpty());
        QCOMPARE(problem->playedPositions.back().m_aSquares[sq("f1")], WR);
        QCOMPARE(problem->playedPositions.back().m_aSquares[sq("g1")], WK);
    }

    void messagesInPolish() {
        load("5k2/8/5K2/8/8/8/8/4R3", 2);
        controller->setLanguage(0);
        drag("e1", "f2");
        QCOMPARE(prompts.boxes, QStringList{QStringLiteral("Informacja|Niedozwolony ruch")});
    }

    void promotionAsksTheChooser() {
        load("8/P7/8/8/8/8/7p/k1K5", 3);
        chosenPromotion = KIND_KNIGHT;
        drag("a7", "a8");
        QCOMPARE(promotions, QList<bool>{true});
        QCOMPARE(problem->playedPositions.size(), size_t{1});
        QCOMPARE(problem->playedPositions.back().m_aSquares[sq("a8")], WN);
        QVERIFY(prompts.boxes.isEmpty());
    }

    void promotionGivenUpMakesNoMove() {
        load("8/P7/8/8/8/8/7p/k1K5", 3);
        chosenPromotion = 0;
        drag("a7", "a8");
        QCOMPARE(promotions.size(), qsizetype{1});
        QVERIFY(problem->playedPositions.empty());
        QVERIFY(prompts.boxes.isEmpty());
    }

    void rotatedViewPlaysOnTheTurnedBoard() {
        load("5k2/8/5K2/8/8/8/8/4R3", 2);
        QVERIFY(controller->dispatch(CommandId::ViewRotateBoard));
        QVERIFY(controller->rotated());
        QVERIFY(view->rotated());
        drag("f6", "g6");
        QCOMPARE(problem->playedPositions.back().m_aSquares[sq("g6")], WK);
    }

    void clicksAreDroppedWhileSolving() {
        load("5k2/8/5K2/8/8/8/8/4R3", 2);
        solving = true;
        drag("f6", "g6");
        QVERIFY(problem->playedPositions.empty());
        QVERIFY(prompts.boxes.isEmpty());
        QCOMPARE(status->count(), 0);
        controller->dispatch(CommandId::PositionSettingMode);
        QCOMPARE(prompts.boxes, QStringList{UNAVAILABLE});
        QVERIFY(!controller->isSettingMode());
    }

    void noMoreMovesOnceTheStipulationIsSpent() {
        load("5k2/8/5K2/8/8/8/8/4R3", 1);
        drag("e1", "e8");
        QCOMPARE(problem->playedPositions.size(), size_t{1});
        drag("f8", "g8");
        QCOMPARE(problem->playedPositions.size(), size_t{1});
        QCOMPARE(lastStatus(), QStringLiteral("No more moves can be made because of stipulation #1"));
    }

    void blackKingInCheckAtTheStart() {
        load("4k3/8/8/8/8/8/8/4RK2", 2);
        drag("f1", "f2");
        QCOMPARE(prompts.boxes,
                 QStringList{QStringLiteral(
                     "Error|Invalid position: Black king cannot be checked in starting position.")});
        QVERIFY(problem->playedPositions.empty());
    }

    void engineRefusesAMoveThatLeavesNoMate() {
        load("7k/8/8/8/8/8/1p6/2B2K2", 3);
        drag("c1", "b2");
        QCOMPARE(prompts.boxes, QStringList{REFUSED});
        QVERIFY(problem->playedPositions.empty());
        // Without a stipulation the move is made, and the status tells why it was refused above.
        load("7k/8/8/8/8/8/1p6/2B2K2", 3, PROBLEM_POSITION);
        drag("c1", "b2");
        QCOMPARE(problem->playedPositions.size(), size_t{1});
        QCOMPARE(lastStatus(), QStringLiteral("No mate in this position"));
    }

    void engineRefusesBlackTakingWhitesLastMan() {
        load("r6k/8/8/8/8/4K3/8/R7", 2);
        problem->plies = 4; // Black to move
        problem->startPosition.m_shPliesLeft = problem->startPosition.m_shPliesTotal = 4;
        controller->setProblem(problem.get());
        drag("a8", "a1");
        QCOMPARE(prompts.boxes, QStringList{REFUSED});
        QVERIFY(problem->playedPositions.empty());
        drag("a8", "a2");
        QCOMPARE(problem->playedPositions.size(), size_t{1});
    }

    void stalemateStatus() {
        load("k7/8/1K6/8/8/8/8/2Q5", 3);
        drag("c1", "c7");
        QCOMPARE(lastStatus(), QStringLiteral("Stalemate"));
    }

    void temporaryRegisterStatus() {
        load("k7/8/2K5/8/8/8/8/7R", 3);
        problem->m_pRegister = std::make_shared<TProblemRegister>(REGISTER_SMALL_BUCKETS);
        TChessboard after = EmptyChessboard();
        QVERIFY(ReadFen("8/k7/2K5/8/8/8/7R/8", after));
        problem->m_pRegister->Store(3, TChessboardRegisterItem::FromBoard(after), true);
        drag("h1", "h2");
        drag("a8", "a7");
        QCOMPARE(lastStatus(), QStringLiteral("Temp.reg.: #2 (or less) in current position"));
        // Another line reaches a position the register does not know.
        controller->dispatch(CommandId::MoveBack);
        drag("a8", "b8");
        QCOMPARE(lastStatus(), QString());
    }

    void whiteThreatAfterAMoveOfWhite() {
        load("7k/8/8/6K1/8/8/8/R7", 2);
        drag("g5", "g6");
        QCOMPARE(lastStatus(), QStringLiteral("threat: Ra1-a8"));
        controller->setLanguage(0);
        controller->dispatch(CommandId::MoveBack);
        drag("g5", "g6");
        QCOMPARE(lastStatus(), QStringLiteral("groźba: Ra1-a8"));
        // Black's answer leaves White to move: the mate itself is told.
        drag("h8", "g8");
        QCOMPARE(lastStatus(), QStringLiteral("#1 w bieżącej pozycji"));
        QVERIFY(prompts.boxes.isEmpty());
    }

    void threatOfMateInTwoAfterAStoppedSolve() {
        load("7k/8/5K2/8/8/8/R7/8", 3);
        // A solve stopped earlier does not cut the threat test short.
        Solver solver;
        solver.Start(*problem, SolveRequest{});
        solver.Stop();
        solver.Wait();
        drag("a2", "a1");
        QCOMPARE(lastStatus(), QStringLiteral("threat: Kf6-f7"));
    }

    void noThreatWhereItCannotBe() {
        // White's mate is no threat in a selfmate.
        load("7k/8/8/6K1/8/8/8/R7", 2, PROBLEM_SELFMATE);
        drag("g5", "g6");
        QCOMPARE(lastStatus(), QString());
        // With one move of the stipulation the key spends it.
        load("7k/8/8/6K1/8/8/8/R7", 1);
        drag("g5", "g6");
        QCOMPARE(lastStatus(), QString());
    }

    void backAndForwardAlongTheChain() {
        load("5k2/8/5K2/8/8/8/8/4R3", 2);
        drag("f6", "g6");
        drag("f8", "g8");
        const qsizetype before = changes->count();
        controller->dispatch(CommandId::MoveBack);
        QCOMPARE(controller->shownPosition(), &problem->playedPositions[0]);
        controller->dispatch(CommandId::MoveBack);
        QCOMPARE(controller->shownPosition(), &problem->startPosition);
        controller->dispatch(CommandId::MoveBack); // nothing before the start
        QCOMPARE(changes->count(), before + 2);
        controller->dispatch(CommandId::MoveRedo);
        QCOMPARE(controller->shownPosition(), &problem->playedPositions[0]);
        controller->dispatch(CommandId::MoveRedo);
        controller->dispatch(CommandId::MoveRedo); // already the last
        QCOMPARE(controller->shownPosition(), &problem->playedPositions[1]);
        // A move from an earlier position replaces the rest of the line.
        controller->dispatch(CommandId::MoveBack);
        controller->dispatch(CommandId::MoveBack);
        drag("f6", "e6");
        QCOMPARE(problem->playedPositions.size(), size_t{1});
        QCOMPARE(problem->playedPositions[0].m_aSquares[sq("e6")], WK);
        QCOMPARE(controller->shownPosition(), &problem->playedPositions[0]);
    }

    // ---- Position setting.

    void enteringWithMovesAsksFirst() {
        load("5k2/8/5K2/8/8/8/8/4R3", 2);
        drag("f6", "g6");
        prompts.answers = {Answer::No, Answer::Yes};
        controller->dispatch(CommandId::PositionSettingMode);
        QCOMPARE(prompts.boxes, QStringList{START_EDITING});
        QVERIFY(!controller->isSettingMode());
        QCOMPARE(problem->playedPositions.size(), size_t{1});
        controller->dispatch(CommandId::PositionSettingMode);
        QCOMPARE(prompts.boxes, (QStringList{START_EDITING, START_EDITING}));
        QVERIFY(controller->isSettingMode());
        QVERIFY(view->settingMode());
        QVERIFY(problem->playedPositions.empty());
        QCOMPARE(controller->shownPosition(), &problem->startPosition);
    }

    void putRemoveAndTheOtherColour() {
        load("5k2/8/5K2/8/8/8/8/4R3", 2);
        controller->dispatch(CommandId::PositionSettingMode);
        QVERIFY(prompts.boxes.isEmpty());
        QTest::mousePress(view.get(), Qt::LeftButton, {}, paletteCell(1, true)); // white queen
        click("d4", Qt::LeftButton);
        QCOMPARE(problem->startPosition.m_aSquares[sq("d4")], WQ);
        click("d4", Qt::LeftButton); // the same figure again: taken away
        QCOMPARE(problem->startPosition.m_aSquares[sq("d4")], uint8_t{0});
        click("d4", Qt::RightButton); // the other colour
        QCOMPARE(problem->startPosition.m_aSquares[sq("d4")], BQ);
        click("d4", Qt::LeftButton); // replaces the black queen
        QCOMPARE(problem->startPosition.m_aSquares[sq("d4")], WQ);
        QTest::mousePress(view.get(), Qt::LeftButton, {}, paletteCell(5, false)); // black pawn
        click("c5", Qt::LeftButton);
        QCOMPARE(problem->startPosition.m_aSquares[sq("c5")], BP);
        QCOMPARE(problem->startPosition.m_nBlackPawns, uint8_t{1});
        QVERIFY(prompts.boxes.isEmpty());
    }

    void rotatedViewPutsOnH8FromTheLowerLeft() {
        load("5k2/8/5K2/8/8/8/8/4R3", 2);
        controller->dispatch(CommandId::ViewRotateBoard);
        controller->dispatch(CommandId::PositionSettingMode);
        QTest::mousePress(view.get(), Qt::LeftButton, {}, paletteCell(2, true)); // white rook
        QTest::mousePress(view.get(), Qt::LeftButton, {}, QPoint(25, 405));
        QCOMPARE(problem->startPosition.m_aSquares[sq("h8")], WR);
    }

    void stipulationArrowsInTheMode() {
        load("5k2/8/5K2/8/8/8/8/4R3", 2);
        controller->dispatch(CommandId::PositionSettingMode);
        QTest::mousePress(view.get(), Qt::LeftButton, {}, ARROW_UP);
        QCOMPARE(problem->stipulationMoves(), 3);
        QCOMPARE(problem->plies, uint16_t{5});
        QCOMPARE(problem->startPosition.m_shPliesLeft, uint16_t{5});
        QTest::mousePress(view.get(), Qt::RightButton, {}, ARROW_UP);
        QCOMPARE(problem->stipulationMoves(), 13);
        QTest::mousePress(view.get(), Qt::LeftButton, {}, ARROW_DOWN);
        QCOMPARE(problem->stipulationMoves(), 12);
        QTest::mousePress(view.get(), Qt::RightButton, {}, ARROW_DOWN);
        QCOMPARE(problem->stipulationMoves(), 2);
        QTest::mousePress(view.get(), Qt::RightButton, {}, ARROW_DOWN); // not below one move
        QCOMPARE(problem->stipulationMoves(), 1);
        QCOMPARE(problem->stipulationPlies, uint16_t{1});
        controller->dispatch(CommandId::StipulationUpTen);
        QCOMPARE(problem->stipulationMoves(), 11);
        QVERIFY(prompts.boxes.isEmpty());
    }

    void stipulationArrowsOutsideTheMode() {
        load("5k2/8/5K2/8/8/8/8/4R3", 2);
        QTest::mousePress(view.get(), Qt::LeftButton, {}, ARROW_UP);
        QCOMPARE(prompts.boxes, QStringList{STIPULATION_TOOL});
        controller->dispatch(CommandId::StipulationDownTen);
        QCOMPARE(prompts.boxes, (QStringList{STIPULATION_TOOL, STIPULATION_TOOL}));
        QCOMPARE(problem->stipulationMoves(), 2);
    }

    void undoAndRedoRestoreTagsAndVariants() {
        load("5k2/8/5K2/8/8/8/8/4R3", 2);
        TVariant main{L"Main variant", {TVariantMove{mv("f6", "g6"), "Kf6-g6", L""}}};
        problem->variants[main.name] = main;
        problem->tags = {L"miniature"};
        controller->dispatch(CommandId::PositionSettingMode);
        QTest::mousePress(view.get(), Qt::LeftButton, {}, paletteCell(5, true)); // white pawn
        click("b2", Qt::LeftButton);                                             // the line still plays
        QCOMPARE(problem->variants.size(), size_t{1});
        problem->tags.insert(L"edited");
        QTest::mousePress(view.get(), Qt::LeftButton, {}, paletteCell(2, true)); // white rook
        click("g6", Qt::LeftButton); // the line's move is blocked now
        QVERIFY(problem->variants.empty());

        QVERIFY(controller->canUndo());
        controller->dispatch(CommandId::Undo);
        QCOMPARE(problem->startPosition.m_aSquares[sq("g6")], uint8_t{0});
        QCOMPARE(problem->variants.size(), size_t{1});
        QVERIFY(problem->tags.count(L"edited") == 1);
        controller->dispatch(CommandId::Undo);
        QCOMPARE(problem->startPosition.m_aSquares[sq("b2")], uint8_t{0});
        QCOMPARE(problem->tags, (std::set<std::wstring>{L"miniature"}));
        QVERIFY(!controller->canUndo());
        controller->dispatch(CommandId::Undo); // nothing left
        QCOMPARE(problem->startPosition.m_aSquares[sq("b2")], uint8_t{0});

        controller->dispatch(CommandId::Redo);
        QCOMPARE(problem->startPosition.m_aSquares[sq("b2")], WP);
        QVERIFY(problem->tags.count(L"edited") == 1);
        controller->dispatch(CommandId::Redo);
        QCOMPARE(problem->startPosition.m_aSquares[sq("g6")], WR);
        QVERIFY(problem->variants.empty());
        QVERIFY(!controller->canRedo());
    }

    void stipulationChangeIsUndone() {
        load("5k2/8/5K2/8/8/8/8/4R3", 2);
        controller->dispatch(CommandId::PositionSettingMode);
        controller->dispatch(CommandId::StipulationUp);
        controller->dispatch(CommandId::Undo);
        QCOMPARE(problem->stipulationMoves(), 2);
        QCOMPARE(problem->startPosition.m_shPliesLeft, uint16_t{3});
    }

    void leavingRefusesABadPosition() {
        load("5k2/8/5K2/8/8/8/8/4R3", 2);
        controller->dispatch(CommandId::PositionSettingMode);
        QTest::mousePress(view.get(), Qt::LeftButton, {}, paletteCell(0, false)); // black king
        click("f8", Qt::LeftButton);
        controller->dispatch(CommandId::PositionSettingMode);
        QCOMPARE(prompts.boxes, QStringList{QStringLiteral("Error|Illegal number of kings.")});
        QVERIFY(controller->isSettingMode());

        click("e8", Qt::LeftButton); // in check from the rook, White to move
        controller->dispatch(CommandId::PositionSettingMode);
        QCOMPARE(prompts.boxes.last(),
                 QStringLiteral("Error|Black king cannot be checked in the mate task starting postition."));
        QVERIFY(controller->isSettingMode());

        click("e8", Qt::LeftButton);
        click("a8", Qt::LeftButton);
        QTest::mousePress(view.get(), Qt::LeftButton, {}, paletteCell(5, true));
        click("c8", Qt::LeftButton);
        controller->dispatch(CommandId::PositionSettingMode);
        QCOMPARE(prompts.boxes.last(),
                 QStringLiteral("Error|Pawns cannot occupy 1st nor 8th line of the chessboard."));
        QVERIFY(controller->isSettingMode());

        click("c8", Qt::LeftButton);
        controller->dispatch(CommandId::PositionSettingMode);
        QCOMPARE(prompts.boxes.size(), 3);
        QVERIFY(!controller->isSettingMode());
        QCOMPARE(problem->startPosition.m_aSquares[sq("a8")], BK);
        QCOMPARE(problem->startPosition.blackKing(), int(sq("a8")));
    }

    void tooManyQueensAndPawnsAsks() {
        load("4k3/8/PPPPPPPP/8/8/8/QQ6/4K3", 2);
        controller->dispatch(CommandId::PositionSettingMode);
        prompts.answers = {Answer::No, Answer::Yes};
        controller->dispatch(CommandId::PositionSettingMode);
        QCOMPARE(prompts.boxes, QStringList{TOO_MANY});
        QVERIFY(controller->isSettingMode());
        controller->dispatch(CommandId::PositionSettingMode); // yes this time
        QCOMPARE(prompts.boxes, (QStringList{TOO_MANY, TOO_MANY}));
        QVERIFY(!controller->isSettingMode());

        // Nine are no question.
        load("4k3/8/PPPPPPPP/8/8/8/Q7/4K3", 2);
        controller->dispatch(CommandId::PositionSettingMode);
        controller->dispatch(CommandId::PositionSettingMode);
        QVERIFY(prompts.boxes.isEmpty());
        QVERIFY(!controller->isSettingMode());
    }

    void unknownCommandsAreNotTaken() { QVERIFY(!controller->dispatch(CommandId::SolveStart)); }

  private:
    void load(const char* fen, int moves, uint16_t type = PROBLEM_DIRECT_MATE) {
        problem = std::make_unique<TChessProblem>();
        problem->type = type;
        SetStipulation(*problem, moves);
        TChessboard& start = problem->startPosition;
        QVERIFY(ReadFen(fen, start));
        start.m_pProblem = problem.get();
        start.m_shPliesLeft = start.m_shPliesTotal = problem->plies;
        controller->setProblem(problem.get());
        prompts.boxes.clear();
    }

    QPoint centre(const char* square) const {
        const board_geometry::CellCorner c = board_geometry::CellOf(sq(square), controller->rotated());
        return QPoint(c.x + board_geometry::CELL / 2, c.y + board_geometry::CELL / 2);
    }
    void drag(const char* from, const char* to) {
        QTest::mousePress(view.get(), Qt::LeftButton, {}, centre(from));
        QTest::mouseMove(view.get(), centre(to));
        QTest::mouseRelease(view.get(), Qt::LeftButton, {}, centre(to));
    }
    void click(const char* square, Qt::MouseButton button) {
        QTest::mousePress(view.get(), button, {}, centre(square));
        QTest::mouseRelease(view.get(), button, {}, centre(square));
    }
    QString lastStatus() const {
        return status->isEmpty() ? QStringLiteral("<none>") : status->last().at(0).toString();
    }

    std::unique_ptr<BoardView> view;
    std::unique_ptr<BoardController> controller;
    std::unique_ptr<TChessProblem> problem;
    std::unique_ptr<QSignalSpy> status;
    std::unique_ptr<QSignalSpy> changes;
    bool solving = false;
    ScriptedPrompts prompts;
    QList<bool> promotions;
    uint8_t chosenPromotion = KIND_QUEEN;
};

QTEST_MAIN(BoardControllerTest)
#include "board_controller_test.moc"
