#include "shell/board_view.h"

#include "shell/board_geometry.h"
#include "shell/figure_glyphs.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPolygonF>
#include <QToolTip>

namespace zorvane {

using namespace board_geometry;

namespace {

const QColor LIGHT_SQUARE(240, 217, 181);
const QColor DARK_SQUARE(181, 136, 99);
const QColor PALETTE_BACKGROUND(225, 225, 225);
const QColor SELECTION(200, 30, 30);
constexpr int COORDINATE_PIXELS = 12;
constexpr int STIPULATION_PIXELS = 16;

QRectF cellRect(int x, int y) {
    return QRectF(x, y, CELL, CELL);
}

QRectF squareRect(int square, bool rotated) {
    const CellCorner corner = CellOf(square, rotated);
    return cellRect(corner.x, corner.y);
}

QRectF paletteRect(int column, bool white) {
    return cellRect(PALETTE_LEFT + (white ? 0 : CELL), PALETTE_TOP + column * CELL);
}

} // namespace

BoardView::BoardView(QWidget* parent) : QWidget(parent), m_position(EmptyChessboard()) {
    setMouseTracking(false);
    setMinimumSize(sizeHint());
}

void BoardView::setPosition(const TChessboard& position) {
    m_position = position;
    m_dragFrom = -1;
    update();
}

QString BoardView::toolTipAt(const QPoint& point) const {
    const Hit hit = HitTest(point.x(), point.y(), m_rotated, m_settingMode);
    return hit.kind == HitKind::Arrow ? m_arrowToolTip : QString();
}

bool BoardView::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        const QString text = toolTipAt(help->pos());
        if (text.isEmpty())
            QToolTip::hideText();
        else
            QToolTip::showText(help->globalPos(), text, this);
        return true;
    }
    return QWidget::event(event);
}

void BoardView::setRotated(bool rotated) {
    m_rotated = rotated;
    update();
}

void BoardView::setSettingMode(bool on) {
    m_settingMode = on;
    m_dragFrom = -1;
    update();
}

void BoardView::setSelectedFigure(uint8_t piece) {
    m_selectedFigure = piece;
    update();
}

void BoardView::setStipulationText(const QString& text) {
    m_stipulation = text;
    update();
}

void BoardView::setMovableColour(uint8_t colour) {
    m_movableColour = colour;
}

QSize BoardView::sizeHint() const {
    return QSize(VIEW_WIDTH, VIEW_HEIGHT);
}

void BoardView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    paintBoard(painter);
    paintCoordinates(painter);
    if (m_settingMode) paintPalette(painter);
    paintArrows(painter);
    paintDragged(painter);
}

void BoardView::paintBoard(QPainter& painter) const {
    for (int square = 0; square < 64; ++square) {
        const QRectF cell = squareRect(square, m_rotated);
        painter.fillRect(cell, squareColour(square) == 0 ? DARK_SQUARE : LIGHT_SQUARE);
        if (square != m_dragFrom) DrawFigure(painter, cell, m_position.m_aSquares[square]);
    }
}

void BoardView::paintCoordinates(QPainter& painter) const {
    QFont font = painter.font();
    font.setPixelSize(COORDINATE_PIXELS);
    painter.setFont(font);
    painter.setPen(palette().color(QPalette::WindowText));
    for (int i = 0; i < 8; ++i) {
        // Letters under the board; digits in the corner of the left column.
        const int file = m_rotated ? 7 - i : i;
        painter.drawText(QRectF(BOARD_LEFT + i * CELL, BOARD_BOTTOM, CELL, VIEW_HEIGHT - BOARD_BOTTOM),
                         Qt::AlignCenter, QString(QChar('a' + file)));
        const int rank = m_rotated ? 7 - i : i;
        const QRectF corner(BOARD_LEFT + 2, BOARD_BOTTOM - CELL * (i + 1) + 1, CELL / 2, CELL / 2);
        painter.drawText(corner, Qt::AlignLeft | Qt::AlignTop, QString::number(rank + 1));
    }
}

void BoardView::paintPalette(QPainter& painter) const {
    painter.fillRect(
        QRectF(PALETTE_LEFT, PALETTE_TOP, PALETTE_RIGHT - PALETTE_LEFT, PALETTE_BOTTOM - PALETTE_TOP),
        PALETTE_BACKGROUND);
    for (int column = 0; column < PALETTE_ENTRIES; ++column) {
        for (const bool white : {true, false}) {
            const uint8_t piece = static_cast<uint8_t>(ColumnToPiece(column) | (white ? WHITE : BLACK));
            const QRectF cell = paletteRect(column, white);
            DrawFigure(painter, cell, piece);
            if (piece == m_selectedFigure) {
                painter.setPen(QPen(SELECTION, 2));
                painter.drawRect(cell.adjusted(1, 1, -1, -1));
            }
        }
    }
}

void BoardView::paintArrows(QPainter& painter) const {
    const double left = ARROWS_LEFT, top = ARROWS_TOP, half = CELL / 2.0;
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_settingMode ? palette().color(QPalette::WindowText) : palette().color(QPalette::Mid));
    painter.drawPolygon(QPolygonF({QPointF(left + half, top + 3), QPointF(left + CELL - 6, top + half - 3),
                                   QPointF(left + 6, top + half - 3)}));
    painter.drawPolygon(
        QPolygonF({QPointF(left + 6, top + half + 3), QPointF(left + CELL - 6, top + half + 3),
                   QPointF(left + half, top + CELL - 3)}));
    QFont font = painter.font();
    font.setPixelSize(STIPULATION_PIXELS);
    painter.setFont(font);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRectF(left + CELL, top, ARROWS_RIGHT - left - CELL, CELL), Qt::AlignCenter,
                     m_stipulation);
}

void BoardView::paintDragged(QPainter& painter) const {
    if (m_dragFrom < 0) return;
    const QRectF cell(m_dragPoint.x() - CELL / 2.0, m_dragPoint.y() - CELL / 2.0, CELL, CELL);
    DrawFigure(painter, cell, m_position.m_aSquares[m_dragFrom]);
}

void BoardView::mousePressEvent(QMouseEvent* event) {
    const Qt::MouseButton button = event->button();
    const QPoint point = event->position().toPoint();
    const Hit hit = HitTest(point.x(), point.y(), m_rotated, m_settingMode);
    switch (hit.kind) {
    case HitKind::Palette:
        emit paletteClicked(hit.column, hit.white);
        break;
    case HitKind::Arrow:
        if (button == Qt::LeftButton || button == Qt::RightButton)
            emit stipulationArrow((hit.up ? 1 : -1) * (button == Qt::RightButton ? 10 : 1));
        break;
    case HitKind::Square: {
        const uint8_t man = m_position.m_aSquares[hit.square];
        const bool pickUp = !m_settingMode && button == Qt::LeftButton && m_movableColour != 0 &&
                            (man & m_movableColour) != 0;
        emit squarePressed(hit.square, button);
        if (pickUp) {
            m_dragFrom = hit.square;
            m_dragPoint = point;
            update();
        }
        break;
    }
    case HitKind::Nothing:
        break;
    }
}

void BoardView::mouseMoveEvent(QMouseEvent* event) {
    if (m_dragFrom < 0) return;
    m_dragPoint = event->position().toPoint();
    update();
}

void BoardView::mouseReleaseEvent(QMouseEvent* event) {
    if (m_dragFrom < 0 || event->button() != Qt::LeftButton) return;
    const QPoint point = event->position().toPoint();
    const int from = m_dragFrom;
    const int to = SquareAt(point.x(), point.y(), m_rotated);
    m_dragFrom = -1;
    update();
    if (to != NO_HIT && to != from) emit moveRequested(from, to);
}

} // namespace zorvane
