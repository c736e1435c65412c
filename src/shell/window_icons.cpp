#include "shell/window_icons.h"

#include <QColor>
#include <QPainter>
#include <QPixmap>

namespace zorvane {

namespace {

constexpr int ICON_SIZE = 32;
constexpr int ANIMATION_PERIOD_MS = 100;
const QColor LIGHT_SQUARE(0xF2, 0xDD, 0x43);
const QColor DARK_SQUARE(0x22, 0x22, 0xCC);
const QColor MARK(0xFF, 0x80, 0x80);

// A 4 x 4 board; `frame` >= 0 lights one of the eight border squares, turning clockwise.
QPixmap drawBoard(int frame) {
    QPixmap pixmap(ICON_SIZE, ICON_SIZE);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    constexpr int cell = ICON_SIZE / 4;
    for (int row = 0; row < 4; ++row)
        for (int col = 0; col < 4; ++col)
            painter.fillRect(col * cell, row * cell, cell, cell,
                             (row + col) % 2 ? DARK_SQUARE : LIGHT_SQUARE);
    if (frame >= 0) {
        // The eight squares of the rim taken at every second step: corners and edge middles.
        static constexpr int RIM[ANIMATION_FRAMES][2] = {{0, 0}, {2, 0}, {3, 0}, {3, 2},
                                                         {3, 3}, {1, 3}, {0, 3}, {0, 1}};
        const int col = RIM[frame][0];
        const int row = RIM[frame][1];
        painter.setBrush(MARK);
        painter.setPen(Qt::NoPen);
        painter.drawEllipse(col * cell + 1, row * cell + 1, cell - 2, cell - 2);
    }
    painter.setPen(QPen(Qt::black, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(0, 0, ICON_SIZE - 1, ICON_SIZE - 1);
    return pixmap;
}

} // namespace

QIcon ProgramIcon() {
    return QIcon(drawBoard(-1));
}

QIcon AnimationFrame(int frame) {
    return QIcon(drawBoard(frame % ANIMATION_FRAMES));
}

IconAnimation::IconAnimation(std::function<void(const QIcon&)> show, QObject* parent)
    : QObject(parent), m_show(std::move(show)) {
    m_timer.setInterval(ANIMATION_PERIOD_MS);
    connect(&m_timer, &QTimer::timeout, this, &IconAnimation::nextFrame);
}

void IconAnimation::setRunning(bool running) {
    if (running == m_timer.isActive()) return;
    if (running) {
        m_frame = 0;
        m_timer.start();
    } else {
        m_timer.stop();
        m_show(ProgramIcon());
    }
}

void IconAnimation::nextFrame() {
    m_show(AnimationFrame(m_frame));
    m_frame = (m_frame + 1) % ANIMATION_FRAMES;
}

} // namespace zorvane
