#pragma once
// NavigationCommands: moving between problems (next, previous, first, last,
// by number, from the list, through the history), a new problem, the tags of
// the current problem and its type.
#include <QObject>

namespace zorvane {

class WindowServices;

class NavigationCommands : public QObject {
    Q_OBJECT
  public:
    explicit NavigationCommands(WindowServices& window, QObject* parent = nullptr);

    // 145, 146, 147, 154, 155, 159, 160, 161, 162, 166, 167, 168, 195; false for other ids.
    bool dispatch(int id);

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
