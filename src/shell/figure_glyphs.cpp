#include "shell/figure_glyphs.h"

#include "core/piece.h"
#include "shell/board_geometry.h"

#include <QPainter>

namespace zorvane {

namespace {

constexpr char16_t WHITE_KING_GLYPH = 0x2654;
constexpr char16_t BLACK_KING_GLYPH = 0x265A;
// Share of the cell that the glyph's em takes.
constexpr double GLYPH_SCALE = 0.86;

QString glyphAt(char16_t first, uint8_t piece) {
    return QString(QChar(static_cast<char16_t>(first + board_geometry::PieceToColumn(piece))));
}

} // namespace

QFont FigureFont(int pixelSize) {
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(pixelSize);
    font.setStyleStrategy(QFont::PreferAntialias);
    return font;
}

QString FigureGlyph(uint8_t piece) {
    if (!isPieceByte(piece)) return QString();
    return glyphAt(isWhite(piece) ? WHITE_KING_GLYPH : BLACK_KING_GLYPH, piece);
}

void DrawFigure(QPainter& painter, const QRectF& cell, uint8_t piece) {
    if (!isPieceByte(piece)) return;
    painter.save();
    painter.setFont(FigureFont(static_cast<int>(cell.height() * GLYPH_SCALE)));
    const QString solid = glyphAt(BLACK_KING_GLYPH, piece);
    if (isWhite(piece)) {
        painter.setPen(Qt::white);
        painter.drawText(cell, Qt::AlignCenter, solid);
        painter.setPen(Qt::black);
        painter.drawText(cell, Qt::AlignCenter, FigureGlyph(piece));
    } else {
        painter.setPen(Qt::black);
        painter.drawText(cell, Qt::AlignCenter, solid);
    }
    painter.restore();
}

} // namespace zorvane
