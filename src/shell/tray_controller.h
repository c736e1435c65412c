#pragma once
// The icon in the notification area: the window hides there when minimized
// (always, or only with Ctrl held, by the option), comes back on a left
// click, and offers the tray pop-up on a right click.
#include <QObject>
#include <QSystemTrayIcon>

namespace zorvane {

class WindowServices;

class TrayController : public QObject {
    Q_OBJECT
  public:
    TrayController(WindowServices& window, QWidget* mainWindow, QMenu* menu);

    // Whether the option sends a minimized window to the tray.
    static bool wantsTray(int minimizeToTray, bool ctrlHeld);
    // Hides the window behind the tray icon; false (with a box) when there is no tray.
    bool hideToTray();
    void restore();
    void setIcon(const QIcon& icon);
    void remove();

  private:
    void onActivated(QSystemTrayIcon::ActivationReason reason);

    WindowServices& m_window;
    QWidget* m_mainWindow;
    QMenu* m_menu;
    QSystemTrayIcon m_icon;
};

} // namespace zorvane
