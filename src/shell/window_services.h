#pragma once
// What the window offers to its command controllers: the list of problems,
// the questions, the options and the few effects on screen. The main window
// implements it; each controller sees only this.
#include "options/options.h"
#include "problems/problem_file.h"
#include "problems/problem_list.h"
#include "shell/process_control.h"
#include "shell/prompts.h"
#include "shell/running_solves.h"
#include "shell/shell_text.h"

#include <QString>

#include <filesystem>

namespace zorvane {

class WindowServices {
  public:
    virtual ~WindowServices() = default;

    virtual ProblemList& problems() = 0;
    virtual Prompts& prompts() = 0;
    virtual RunningSolves& runningSolves() = 0;
    virtual Options& options() = 0;
    virtual const std::filesystem::path& dataDirectory() const = 0;
    // Threads of the first level and multithreading levels for the next solve.
    virtual ThreadDefaults& threadSettings() = 0;
    // Reader and writer settings from the options in force.
    virtual ProblemFileSettings fileSettings() const = 0;

    virtual void showStatus(const QString& text) = 0;
    virtual QString statusText() const = 0;
    // The part of the window title behind "Zorvane - "; empty for the bare name.
    virtual void setTitleFile(const QString& file) = 0;
    // The current problem changed or was replaced: board, description, menus.
    // The board shows the problem's last position, or `position` of its chain.
    virtual void showCurrentProblem() = 0;
    virtual void showCurrentProblemAt(const TChessboard& position) = 0;
    // Only the current problem's description, tags or stipulation changed.
    virtual void refreshProblemText() = 0;
    // Stops the current problem's solve, or all solves, through the solve driver.
    virtual void stopCurrentSolve() = 0;
    virtual void stopAllSolves() = 0;
    // The open file changed its path or was written: the watch follows it.
    virtual void watchFile() = 0;
    virtual void closeWindow() = 0;

    int language() { return options().LanguageId; }
    QString translate(const LocalizedText& text) { return Translate(language(), text); }
    QString title(MessageTitle title) { return TitleText(language(), title); }
};

} // namespace zorvane
