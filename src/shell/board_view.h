#pragma once
// BoardView: shows a position and reports what the mouse does on it. It
// decides nothing: whether a move is legal, what a click in setting mode puts
// down and what the stipulation arrows do is the controller's affair.
//
// A press on a square is always reported (squarePressed). Outside setting
// mode a left press on a man of the movable colour also picks him up: he
// follows the mouse, and a release on another square reports moveRequested.
#include "core/chessboard.h"

#include <QPoint>
#include <QString>
#include <QWidget>

#include <cstdint>

namespace zorvane {

class BoardView : public QWidget {
    Q_OBJECT

  public:
    explicit BoardView(QWidget* parent = nullptr);

    void setPosition(const TChessboard& position);
    // The board turned by 180 degrees.
    void setRotated(bool rotated);
    bool rotated() const { return m_rotated; }
    // Setting mode shows the palette and drags nothing.
    void setSettingMode(bool on);
    bool settingMode() const { return m_settingMode; }
    // The palette's highlighted figure (a piece byte, 0 for none).
    void setSelectedFigure(uint8_t piece);
    // The stipulation beside the arrows, such as "#3".
    void setStipulationText(const QString& text);
    // Men of this colour (WHITE or BLACK) can be dragged; 0 for none.
    void setMovableColour(uint8_t colour);

    // The tool tip over the stipulation arrows.
    void setArrowToolTip(const QString& text) { m_arrowToolTip = text; }
    // The tool tip at a point of the view: the arrows' text over them, none elsewhere.
    QString toolTipAt(const QPoint& point) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  signals:
    void squarePressed(int square, Qt::MouseButton button);
    void moveRequested(int from, int to);
    void paletteClicked(int column, bool white);
    // +1 or -1 with the left button, +10 or -10 with the right one.
    void stipulationArrow(int delta);

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    void paintBoard(QPainter& painter) const;
    void paintCoordinates(QPainter& painter) const;
    void paintPalette(QPainter& painter) const;
    void paintArrows(QPainter& painter) const;
    void paintDragged(QPainter& painter) const;

    TChessboard m_position;
    bool m_rotated = false;
    bool m_settingMode = false;
    uint8_t m_selectedFigure = 0;
    uint8_t m_movableColour = 0;
    QString m_stipulation;
    QString m_arrowToolTip;
    // The man being dragged: his square, or -1, and where the mouse is.
    int m_dragFrom = -1;
    QPoint m_dragPoint;
};

} // namespace zorvane
