#pragma once
// The program's icons, drawn at run time: the main icon, and eight frames
// that turn while a solve runs (in the window's title and in the tray).
#include <QIcon>
#include <QObject>
#include <QTimer>

#include <functional>

namespace zorvane {

QIcon ProgramIcon();
constexpr int ANIMATION_FRAMES = 8;
QIcon AnimationFrame(int frame);

// Puts the next frame every 100 ms while running, and the main icon when stopped.
class IconAnimation : public QObject {
    Q_OBJECT
  public:
    // `show` puts an icon wherever the program shows its icon.
    explicit IconAnimation(std::function<void(const QIcon&)> show, QObject* parent = nullptr);

    void setRunning(bool running);
    bool running() const { return m_timer.isActive(); }

  private:
    void nextFrame();

    std::function<void(const QIcon&)> m_show;
    QTimer m_timer;
    int m_frame = 0;
};

} // namespace zorvane
