// Board geometry: squares under the mouse, the cap of the file, the rotated
// view, the palette's precedence and the palette's columns.
#include "core/chess_exception.h"
#include "core/piece.h"
#include "shell/board_geometry.h"

#include <QTest>

#include <string>

using namespace zorvane;
using namespace zorvane::board_geometry;

namespace {

template <class F> std::string thrownText(F&& call) {
    try {
        call();
    } catch (const ChessException& e) {
        return e.what();
    }
    return "nothing thrown";
}

} // namespace

class BoardGeometryTest : public QObject {
    Q_OBJECT

  private slots:
    void cornersOfTheBoard() {
        QCOMPARE(SquareAt(0, 429, false), 0);   // a1, lowest pixel row of the board
        QCOMPARE(SquareAt(399, 30, false), 63); // h8, top right
        QCOMPARE(SquareAt(25, 405, false), 0);
        QCOMPARE(SquareAt(225, 255, false), squareOf(4, 3)); // e4
    }

    void rankEdgesFollowTheLowerEdgeAt430() {
        QCOMPARE(SquareAt(0, 380, false), 0); // 430 - 50 is still rank 1
        QCOMPARE(SquareAt(0, 379, false), 8); // one pixel up is rank 2
        QCOMPARE(SquareAt(0, 430, false), NO_HIT);
        QCOMPARE(SquareAt(0, 29, false), NO_HIT);
        QCOMPARE(SquareAt(-1, 400, false), NO_HIT);
    }

    void fileIsCappedAtSeven() {
        QCOMPARE(SquareAt(399, 405, false), 7);
        QCOMPARE(SquareAt(400, 405, false), 7);
        QCOMPARE(SquareAt(10000, 405, false), 7);
        QCOMPARE(SquareAt(10000, 405, true), 56); // the cap, then the mirror
    }

    void rotatedViewMirrorsFileAndRank() {
        QCOMPARE(SquareAt(25, 405, true), 63);              // lower left shows h8
        QCOMPARE(SquareAt(375, 55, true), 0);               // upper right shows a1
        QCOMPARE(SquareAt(225, 255, true), squareOf(3, 4)); // e4's cell shows d5
    }

    void cellsAreWhereTheClicksFindThem() {
        QCOMPARE(CellOf(0, false).x, 0);
        QCOMPARE(CellOf(0, false).y, 380);
        QCOMPARE(CellOf(63, false).x, 350);
        QCOMPARE(CellOf(63, false).y, 30);
        QCOMPARE(CellOf(0, true).x, 350);
        QCOMPARE(CellOf(0, true).y, 30);
        for (int square = 0; square < 64; ++square)
            for (const bool rotated : {false, true}) {
                const CellCorner c = CellOf(square, rotated);
                QCOMPARE(SquareAt(c.x + 1, c.y + 1, rotated), square);
                QCOMPARE(SquareAt(c.x + CELL - 1, c.y + CELL - 1, rotated), square);
            }
    }

    void paletteIsTestedBeforeTheCappedFile() {
        Hit hit = HitTest(420, 40, false, true);
        QCOMPARE(hit.kind, HitKind::Palette);
        QCOMPARE(hit.column, 0);
        QVERIFY(hit.white);
        hit = HitTest(470, 40, false, true);
        QCOMPARE(hit.kind, HitKind::Palette);
        QVERIFY(!hit.white);
        hit = HitTest(420, 329, false, true);
        QCOMPARE(hit.column, 5);
        // Without setting mode the same pixel is the capped h-file.
        hit = HitTest(420, 40, false, false);
        QCOMPARE(hit.kind, HitKind::Square);
        QCOMPARE(hit.square, 63);
        // Between palette and board, and below the palette, the cap applies in setting mode too.
        hit = HitTest(405, 40, false, true);
        QCOMPARE(hit.kind, HitKind::Square);
        QCOMPARE(hit.square, 63);
        hit = HitTest(420, 335, false, true);
        QCOMPARE(hit.kind, HitKind::Square);
        QCOMPARE(hit.square, 15);
    }

    void arrowsBesideTheLowestRank() {
        Hit hit = HitTest(420, 381, false, false);
        QCOMPARE(hit.kind, HitKind::Arrow);
        QVERIFY(hit.up);
        hit = HitTest(420, 429, false, true);
        QCOMPARE(hit.kind, HitKind::Arrow);
        QVERIFY(!hit.up);
        QCOMPARE(HitTest(420, 430, false, false).kind, HitKind::Nothing);
    }

    void paletteColumns() {
        const uint8_t pieces[] = {WK, WQ, WR, WB, WN, WP};
        for (int column = 0; column < 6; ++column) {
            QCOMPARE(PieceToColumn(pieces[column]), column);
            QCOMPARE(PieceToColumn(static_cast<uint8_t>(pieces[column] ^ (WHITE | BLACK))), column);
            QCOMPARE(ColumnToPiece(column), static_cast<uint8_t>(pieces[column] & KIND_MASK));
        }
        QCOMPARE(ColumnToPiece(6), uint8_t{KIND_PAWN});
    }

    void paletteColumnErrors() {
        QCOMPARE(thrownText([] { ColumnToPiece(7); }), std::string("Cannot convert column to piece."));
        QCOMPARE(thrownText([] { ColumnToPiece(-1); }), std::string("Cannot convert column to piece."));
        QCOMPARE(thrownText([] { PieceToColumn(0); }),
                 std::string("Unknown figure code passed to PieceToColumn."));
        QCOMPARE(thrownText([] { PieceToColumn(BP | PAWN_BLOCK_MARK); }),
                 std::string("Unknown figure code passed to PieceToColumn."));
    }
};

QTEST_APPLESS_MAIN(BoardGeometryTest)
#include "board_geometry_test.moc"
