// The board view on its own: what it reports for presses, drags, the palette
// and the stipulation arrows, and that it paints the figures with the glyph font.
#include "../test_squares.h"
#include "core/fen.h"
#include "shell/board_geometry.h"
#include "shell/board_view.h"
#include "shell/figure_glyphs.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <QImage>
#include <QSignalSpy>
#include <QTest>

using namespace zorvane;

namespace {

QPoint centreOf(int square, bool rotated = false) {
    const board_geometry::CellCorner c = board_geometry::CellOf(square, rotated);
    return QPoint(c.x + board_geometry::CELL / 2, c.y + board_geometry::CELL / 2);
}

TChessboard position(const char* fen) {
    TChessboard board = EmptyChessboard();
    board.m_shPliesLeft = board.m_shPliesTotal = 3;
    if (!ReadFen(fen, board)) qFatal("bad test position %s", fen);
    return board;
}

// Pixels of a cell (its inner part) that differ from the cell's own colour in the corner.
int marksInCell(const QImage& image, int square) {
    const board_geometry::CellCorner c = board_geometry::CellOf(square, false);
    const QRgb background = image.pixel(c.x + 2, c.y + board_geometry::CELL - 2);
    int marks = 0;
    for (int y = c.y + 5; y < c.y + board_geometry::CELL - 5; ++y)
        for (int x = c.x + 5; x < c.x + board_geometry::CELL - 5; ++x)
            marks += image.pixel(x, y) != background;
    return marks;
}

} // namespace

class BoardViewTest : public QObject {
    Q_OBJECT

  private slots:
    void init() {
        view = std::make_unique<BoardView>();
        view->setPosition(position("4k3/8/8/8/8/8/8/R3K3"));
        view->setMovableColour(WHITE);
        view->show();
        QVERIFY(QTest::qWaitForWindowExposed(view.get()));
    }
    void cleanup() { view.reset(); }

    void figuresUseTheDejaVuChessGlyphs() {
        const QFont font = FigureFont(40);
        QCOMPARE(QFontInfo(font).family(), QStringLiteral("DejaVu Sans"));
        const QFontMetrics metrics(font);
        for (char32_t glyph = 0x2654; glyph <= 0x265F; ++glyph) QVERIFY(metrics.inFontUcs4(glyph));
        QCOMPARE(FigureGlyph(WK), QString(QChar(0x2654)));
        QCOMPARE(FigureGlyph(WP), QString(QChar(0x2659)));
        QCOMPARE(FigureGlyph(BQ), QString(QChar(0x265B)));
        QCOMPARE(FigureGlyph(BN), QString(QChar(0x265E)));
        QVERIFY(FigureGlyph(0).isEmpty());
    }

    void paintsTheMenOnTheirSquares() {
        view->setPosition(position("4k3/8/8/8/3Q4/8/8/4K3"));
        const QImage image = view->grab().toImage();
        QVERIFY(marksInCell(image, sq("d4")) > 50);
        QCOMPARE(marksInCell(image, sq("e5")), 0);
        QCOMPARE(marksInCell(image, sq("f4")), 0);
        // a1 is a dark square, h1 a light one.
        const auto lightness = [&](const char* square) {
            const board_geometry::CellCorner c = board_geometry::CellOf(sq(square), false);
            return QColor(image.pixel(c.x + 30, c.y + 48)).lightness();
        };
        QVERIFY(lightness("a1") < lightness("h1"));
        QVERIFY(lightness("h8") < lightness("a8"));
    }

    void pressReportsSquareAndButton() {
        QSignalSpy pressed(view.get(), &BoardView::squarePressed);
        QTest::mousePress(view.get(), Qt::RightButton, {}, centreOf(sq("e4")));
        QCOMPARE(pressed.count(), 1);
        QCOMPARE(pressed.at(0).at(0).toInt(), int(sq("e4")));
        QCOMPARE(pressed.at(0).at(1).value<Qt::MouseButton>(), Qt::RightButton);
    }

    void dragOfAMovableManRequestsAMove() {
        QSignalSpy moves(view.get(), &BoardView::moveRequested);
        QTest::mousePress(view.get(), Qt::LeftButton, {}, centreOf(sq("a1")));
        QTest::mouseMove(view.get(), centreOf(sq("a3")));
        QTest::mouseRelease(view.get(), Qt::LeftButton, {}, centreOf(sq("a4")));
        QCOMPARE(moves.count(), 1);
        QCOMPARE(moves.at(0).at(0).toInt(), int(sq("a1")));
        QCOMPARE(moves.at(0).at(1).toInt(), int(sq("a4")));
    }

    void menOfTheOtherColourAndEmptySquaresStayPut() {
        QSignalSpy moves(view.get(), &BoardView::moveRequested);
        QTest::mousePress(view.get(), Qt::LeftButton, {}, centreOf(sq("e8")));
        QTest::mouseRelease(view.get(), Qt::LeftButton, {}, centreOf(sq("e7")));
        QTest::mousePress(view.get(), Qt::LeftButton, {}, centreOf(sq("c3")));
        QTest::mouseRelease(view.get(), Qt::LeftButton, {}, centreOf(sq("c4")));
        // Released where it was picked up: no move either.
        QTest::mousePress(view.get(), Qt::LeftButton, {}, centreOf(sq("a1")));
        QTest::mouseRelease(view.get(), Qt::LeftButton, {}, centreOf(sq("a1")));
        QCOMPARE(moves.count(), 0);
    }

    void releaseRightOfTheBoardLandsOnTheCappedFile() {
        QSignalSpy moves(view.get(), &BoardView::moveRequested);
        QTest::mousePress(view.get(), Qt::LeftButton, {}, centreOf(sq("a1")));
        QTest::mouseRelease(view.get(), Qt::LeftButton, {}, QPoint(405, 405));
        QCOMPARE(moves.count(), 1);
        QCOMPARE(moves.at(0).at(1).toInt(), int(sq("h1")));
    }

    void rotatedViewMapsLowerLeftToH8() {
        view->setRotated(true);
        QSignalSpy pressed(view.get(), &BoardView::squarePressed);
        QTest::mousePress(view.get(), Qt::LeftButton, {}, QPoint(25, 405));
        QCOMPARE(pressed.count(), 1);
        QCOMPARE(pressed.at(0).at(0).toInt(), int(sq("h8")));
    }

    void paletteComesFirstInSettingMode() {
        QSignalSpy pressed(view.get(), &BoardView::squarePressed);
        QSignalSpy palette(view.get(), &BoardView::paletteClicked);
        QTest::mousePress(view.get(), Qt::LeftButton, {}, QPoint(420, 40));
        QCOMPARE(pressed.count(), 1); // no palette yet: the capped h-file
        QCOMPARE(pressed.at(0).at(0).toInt(), int(sq("h8")));
        view->setSettingMode(true);
        QTest::mousePress(view.get(), Qt::LeftButton, {}, QPoint(420, 40));
        QTest::mousePress(view.get(), Qt::LeftButton, {}, QPoint(470, 240));
        QCOMPARE(pressed.count(), 1);
        QCOMPARE(palette.count(), 2);
        QCOMPARE(palette.at(0).at(0).toInt(), 0);
        QCOMPARE(palette.at(0).at(1).toBool(), true);
        QCOMPARE(palette.at(1).at(0).toInt(), 4);
        QCOMPARE(palette.at(1).at(1).toBool(), false);
    }

    void settingModeDragsNothing() {
        view->setSettingMode(true);
        QSignalSpy moves(view.get(), &BoardView::moveRequested);
        QSignalSpy pressed(view.get(), &BoardView::squarePressed);
        QTest::mousePress(view.get(), Qt::LeftButton, {}, centreOf(sq("a1")));
        QTest::mouseRelease(view.get(), Qt::LeftButton, {}, centreOf(sq("a4")));
        QCOMPARE(moves.count(), 0);
        QCOMPARE(pressed.count(), 1);
    }

    void stipulationArrowsByButton() {
        QSignalSpy arrows(view.get(), &BoardView::stipulationArrow);
        QTest::mousePress(view.get(), Qt::LeftButton, {}, QPoint(430, 390));
        QTest::mousePress(view.get(), Qt::RightButton, {}, QPoint(430, 390));
        QTest::mousePress(view.get(), Qt::LeftButton, {}, QPoint(430, 420));
        QTest::mousePress(view.get(), Qt::RightButton, {}, QPoint(430, 420));
        QCOMPARE(arrows.count(), 4);
        QCOMPARE(arrows.at(0).at(0).toInt(), 1);
        QCOMPARE(arrows.at(1).at(0).toInt(), 10);
        QCOMPARE(arrows.at(2).at(0).toInt(), -1);
        QCOMPARE(arrows.at(3).at(0).toInt(), -10);
    }

  private:
    std::unique_ptr<BoardView> view;
};

QTEST_MAIN(BoardViewTest)
#include "board_view_test.moc"
