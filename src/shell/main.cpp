// zorvane: the desktop window.
#include "shell/board_controller.h"
#include "shell/main_window.h"
#include "shell/solve_controller.h"

#include <QApplication>

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    zorvane::DialogPrompts prompts;
    zorvane::MainWindow window(zorvane::ParseArguments(QApplication::arguments()), prompts);
    prompts.setParent(&window);
    // Made after the window and so gone before it: its threads end while the problems still exist.
    zorvane::SolveController solving(window, window.board());
    solving.attachTo(window);
    window.show();
    window.startInitialisation();
    return QApplication::exec();
}
