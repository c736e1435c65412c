#include "shell/tray_controller.h"

#include "shell/window_icons.h"
#include "shell/window_services.h"

#include <QCursor>
#include <QMenu>
#include <QWidget>

namespace zorvane {

TrayController::TrayController(WindowServices& window, QWidget* mainWindow, QMenu* menu)
    : QObject(mainWindow), m_window(window), m_mainWindow(mainWindow), m_menu(menu) {
    m_icon.setIcon(ProgramIcon());
    m_icon.setToolTip(QStringLiteral("My Icon"));
    connect(&m_icon, &QSystemTrayIcon::activated, this, &TrayController::onActivated);
}

bool TrayController::wantsTray(int minimizeToTray, bool ctrlHeld) {
    return minimizeToTray == 1 || (minimizeToTray == 2 && ctrlHeld);
}

bool TrayController::hideToTray() {
    if (!m_menu) {
        m_window.prompts().message(m_window.title(MessageTitle::Error), QStringLiteral("Unable to Load menu"),
                                   PromptIcon::Error);
        return false;
    }
    if (!QSystemTrayIcon::isSystemTrayAvailable()) {
        m_window.prompts().message(m_window.title(MessageTitle::Error),
                                   QStringLiteral("Unable to Set Tray Icon"), PromptIcon::Error);
        return false;
    }
    m_icon.show();
    m_mainWindow->hide();
    return true;
}

void TrayController::restore() {
    m_icon.hide();
    m_mainWindow->showNormal();
    m_mainWindow->activateWindow();
}

void TrayController::setIcon(const QIcon& icon) {
    m_icon.setIcon(icon);
}

void TrayController::remove() {
    m_icon.hide();
}

void TrayController::onActivated(QSystemTrayIcon::ActivationReason reason) {
    if (reason == QSystemTrayIcon::Trigger)
        restore();
    else if (reason == QSystemTrayIcon::Context)
        m_menu->popup(QCursor::pos());
}

} // namespace zorvane
