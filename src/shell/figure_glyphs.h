#pragma once
// Figures drawn as the chess glyphs of the DejaVu Sans font, so that they stay
// sharp at any size and screen density.
#include <QFont>
#include <QRectF>
#include <QString>

#include <cstdint>

class QPainter;

namespace zorvane {

// The font of the figures, at a pixel size.
QFont FigureFont(int pixelSize);
// The glyph of a piece byte: the outlined set (U+2654..U+2659) for White, the
// solid set (U+265A..U+265F) for Black; empty for a byte that is no figure.
QString FigureGlyph(uint8_t piece);
// Draws a figure centred in `cell`: a white figure is the solid shape filled
// white under the outline, a black one the solid shape in black.
void DrawFigure(QPainter& painter, const QRectF& cell, uint8_t piece);

} // namespace zorvane
