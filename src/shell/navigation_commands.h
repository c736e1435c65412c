#pragma once
// NavigationCommands: moving between problems (next, previous, first, last,
// by number, from the list, through the history), a new problem, the tags of
// the current problem and its type.
#include "shell/command_id.h"

#include <QObject>

namespace zorvane {

class WindowServices;

class NavigationCommands : public QObject {
    Q_OBJECT
  public:
    explicit NavigationCommands(WindowServices& window, QObject* parent = nullptr);

    // Next, previous, first, last, by number, from the list, back and forth in
    // the history, a new problem, the bonus, adding and removing a tag, the
    // direct-mate type; false for other commands.
    bool dispatch(CommandId id);

  private:
    void selectByNumber();
    void selectFromList();
    // Leaves the current problem for a new one of `type` behind the last number.
    void appendNewProblem(uint16_t type);
    void addTag();
    void removeTag();
    void setDirectMate();

    WindowServices& m_window;
};

} // namespace zorvane
