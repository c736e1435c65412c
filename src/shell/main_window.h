#pragma once
// MainWindow: the one window of the program. It runs the start-up, owns the
// list of problems and the command controllers, routes every command through
// DispatchCommand, keeps the menus right through UpdateMenuState, and asks
// before it closes. Solving is done elsewhere and joins through the hooks.
#include "shell/command_registry.h"
#include "shell/running_solves.h"
#include "shell/shell_host.h"
#include "shell/startup.h"
#include "shell/window_services.h"

#include <QMainWindow>
#include <QTimer>

#include <functional>
#include <memory>
#include <thread>

class QLabel;
class QLineEdit;
class QUrl;

namespace zorvane {

class BoardController;
class BoardView;
class FileCommands;
class IconAnimation;
class NavigationCommands;
class RegisterCommands;
class SystemCommands;
class TrayController;

class MainWindow : public QMainWindow, public WindowServices {
    Q_OBJECT
  public:
    // Runs the start-up up to the window; `prompts` answers every question of the window.
    MainWindow(const StartupArguments& arguments, Prompts& prompts, QWidget* parent = nullptr);
    ~MainWindow() override;

    // The first load of the problem file, on a thread of its own; isInitialised() once it is shown.
    void startInitialisation();
    bool isInitialised() const { return m_initialised; }

    void DispatchCommand(CommandId id);
    void UpdateMenuState();
    // Sets the language, writes it to options.ini at once and replaces every text.
    void ApplyLanguage(int languageId);

    // The solve driver's entry: start, stop, pause and resume commands come here
    // (F5 and its twins as SolveStart, Shift+F5 as SolveAllSolutions). While it
    // is empty those commands are greyed. Black's best defence, the whole main
    // variant and the heuristics dialog belong to it too, but stay greyed while
    // their engines are not built.
    std::function<void(CommandId)> onSolveCommand;
    // Stops every running solve and waits for them (before an open and on closing).
    std::function<void()> onStopAllSolves;

    CommandRegistry& commands() { return *m_commands; }
    FileCommands& files() { return *m_files; }
    BoardController& board() { return *m_board; }
    bool isSecondInstance() const { return m_start.isSecondInstance; }
    QString statusText() const override;
    // The area the solve driver fills with its progress; ViewResizeProgressArea changes its size.
    QLabel* progressPanel() const { return m_progress; }
    // What the 250 ms timer does when the watch has seen a change, at once.
    void checkFileChange();
    bool iconAnimationRunning() const;
    int refreshPeriod() const { return m_refreshTimer.isActive() ? m_refreshTimer.interval() : 0; }

    // The description's editor in place: Enter starts it (and command 325),
    // Enter again puts the text into the problem, Esc gives the old text back.
    void startDescriptionEdit();
    void commitDescriptionEdit();
    void cancelDescriptionEdit();
    bool isEditingDescription() const;
    QLineEdit* descriptionEditor() const { return m_descriptionEditor; }
    // Opens a description's page; the system's browser unless a test puts its own.
    std::function<bool(const QUrl&)> openUrl;

    // WindowServices
    ProblemList& problems() override { return *m_problems; }
    Prompts& prompts() override { return m_prompts; }
    RunningSolves& runningSolves() override { return m_running; }
    Options& options() override { return m_start.options; }
    const std::filesystem::path& dataDirectory() const override { return m_start.dataDirectory; }
    ThreadDefaults& threadSettings() override { return m_start.threads; }
    ProblemFileSettings fileSettings() const override;
    void showStatus(const QString& text) override;
    void setTitleFile(const QString& file) override;
    void showCurrentProblem() override;
    void showCurrentProblemAt(const TChessboard& position) override;
    void refreshProblemText() override;
    void stopCurrentSolve() override;
    void stopAllSolves() override;
    void watchFile() override;
    void closeWindow() override { close(); }

  signals:
    // Every 250 ms after the start: the progress panel reads the engine's state here.
    void refreshTick();
    // The user chose to quit: the solves still running end now, without telling their results.
    void closing();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void buildWindow();
    void finishInitialisation(InitialProblems& loaded);
    void retranslate();
    // "Zorvane - " and the file, marked when the file was loaded in part.
    void refreshTitle();
    void onRefreshTick();
    // The tool bar's count of positions in the current problem's temporary register.
    void refreshRegisterCount();
    void onRunningSolvesChanged();
    // The commands of the window itself: options, progress area, languages, tray.
    void runWindowCommand(CommandId id);
    void toggleProgressArea();
    void showOptionsDialog();
    // Commands 320, 321 and 325 on the current description.
    bool runDescriptionCommand(CommandId id);
    // A command that is greyed came anyway (a key, a button): say why nothing happens.
    void explainRefusal(CommandId id);

    Prompts& m_prompts;
    StartupArguments m_arguments;
    QString m_titleFile; // the file as the title names it; empty for the bare name
    ProgramStart m_start;
    RunningSolves m_running;
    ShellHost m_host;
    std::unique_ptr<ProblemList> m_problems;
    CommandRegistry* m_commands = nullptr;
    FileCommands* m_files = nullptr;
    NavigationCommands* m_navigation = nullptr;
    SystemCommands* m_system = nullptr;
    RegisterCommands* m_registers = nullptr;
    TrayController* m_tray = nullptr;
    IconAnimation* m_animation = nullptr;
    BoardView* m_boardView = nullptr;
    BoardController* m_board = nullptr;
    QLabel* m_description = nullptr;
    QLabel* m_descriptionLink = nullptr; // the database code as a link, shown when the description has one
    QLineEdit* m_descriptionEditor = nullptr;
    const TChessProblem* m_editedProblem = nullptr; // the problem whose description the editor holds
    QLabel* m_progress = nullptr;
    QLabel* m_status = nullptr;
    QLabel* m_registerCount = nullptr;
    bool m_progressEnlarged = false;
    int m_dialogsOpen = 0; // dialogs of the window itself (Options), besides the prompts
    QTimer m_refreshTimer;
    std::thread m_loader;
    bool m_initialised = false;
};

} // namespace zorvane
