#pragma once
// RegisterCommands: what the Problem menu does with the current problem's
// temporary register.
#include "shell/command_id.h"

#include <QObject>

namespace zorvane {

class WindowServices;

class RegisterCommands : public QObject {
    Q_OBJECT
  public:
    explicit RegisterCommands(WindowServices& window, QObject* parent = nullptr);

    // The clear of the temporary register; false for other commands.
    bool dispatch(CommandId id);

  private:
    // Empties the current problem's register and frees its memory; with a
    // solve of another problem running, only after the question.
    void clearTemporaryRegister();

    WindowServices& m_window;
};

} // namespace zorvane
