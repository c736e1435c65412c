#include "shell/main_window.h"

#include "problems/variant.h"
#include "shell/app_log.h"
#include "shell/board_controller.h"
#include "shell/board_rules.h"
#include "shell/board_view.h"
#include "shell/file_commands.h"
#include "shell/menu_state.h"
#include "shell/navigation_commands.h"
#include "shell/options_dialog.h"
#include "shell/system_commands.h"
#include "shell/tray_controller.h"
#include "shell/window_icons.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QThread>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>

namespace zorvane {

namespace fs = std::filesystem;

namespace {

constexpr int REFRESH_PERIOD_MS = 250;
constexpr int SPLASH_WIDTH = 200;
constexpr int SPLASH_HEIGHT = 80;
constexpr int SIDE_PANEL_WIDTH = 380;
constexpr int PROGRESS_HEIGHT_SMALL = 120;
constexpr int PROGRESS_HEIGHT_LARGE = 320;

QString stipulationText(const TChessProblem& problem) {
    switch (problem.type) {
    case PROBLEM_DIRECT_MATE:
        return QStringLiteral("#") + QString::number(problem.stipulationMoves());
    case PROBLEM_SELFMATE:
        return QStringLiteral("s#") + QString::number(problem.stipulationMoves());
    default:
        return QString();
    }
}

} // namespace

MainWindow::MainWindow(const StartupArguments& arguments, Prompts& prompts, QWidget* parent)
    : QMainWindow(parent), m_prompts(prompts), m_arguments(arguments),
      m_start(StartProgram(arguments, prompts)), m_host(*this, [this] { return m_files->saveAs(); }) {
    m_problems = std::make_unique<ProblemList>(m_host, m_start.options.LanguageId, fileSettings().defaults);
    m_running.onChanged = [this] {
        if (QThread::currentThread() == thread())
            onRunningSolvesChanged();
        else
            QMetaObject::invokeMethod(
                this, [this] { onRunningSolvesChanged(); }, Qt::QueuedConnection);
    };
    buildWindow();
    connect(&m_refreshTimer, &QTimer::timeout, this, &MainWindow::onRefreshTick);
    // A small splash until the file is loaded.
    resize(SPLASH_WIDTH, SPLASH_HEIGHT);
}

MainWindow::~MainWindow() {
    if (m_loader.joinable()) m_loader.join();
    m_running.onChanged = nullptr;
}

void MainWindow::buildWindow() {
    setWindowTitle(QStringLiteral("Zorvane"));
    setWindowIcon(ProgramIcon());
    m_commands = new CommandRegistry(this);
    m_commands->buildMainMenu(menuBar());
    m_commands->addAffinityItems(ProcessAffinityMask());
    addToolBar(m_commands->buildToolBar(this));
    connect(m_commands, &CommandRegistry::commandTriggered, this, &MainWindow::DispatchCommand);

    m_files = new FileCommands(*this, this);
    m_navigation = new NavigationCommands(*this, this);
    m_system = new SystemCommands(*this, this);
    m_tray = new TrayController(*this, this, m_commands->popup(MENU_TRAY));
    m_animation = new IconAnimation(
        [this](const QIcon& icon) {
            setWindowIcon(icon);
            m_tray->setIcon(icon);
        },
        this);

    auto* central = new QWidget(this);
    auto* layout = new QHBoxLayout(central);
    m_boardView = new BoardView(central);
    layout->addWidget(m_boardView, 0, Qt::AlignTop);
    auto* side = new QVBoxLayout;
    m_description = new QLabel(central);
    m_description->setObjectName(QStringLiteral("problemText"));
    m_description->setWordWrap(true);
    m_description->setTextFormat(Qt::PlainText);
    m_progress = new QLabel(central);
    m_progress->setFrameShape(QFrame::StyledPanel);
    m_progress->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_progress->setFixedHeight(PROGRESS_HEIGHT_SMALL);
    m_status = new QLabel(central);
    m_status->setWordWrap(true);
    m_status->setTextFormat(Qt::PlainText);
    m_status->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    for (QLabel* label : {m_description, m_progress, m_status}) label->setFixedWidth(SIDE_PANEL_WIDTH);
    side->addWidget(m_description);
    side->addWidget(m_progress);
    side->addWidget(m_status, 1);
    layout->addLayout(side);
    setCentralWidget(central);

    m_board = new BoardController(
        m_boardView, m_prompts,
        [this] {
            const TChessProblem* problem = m_problems->Current();
            return problem && m_running.contains(problem->id);
        },
        this);
    connect(m_board, &BoardController::statusText, this, &MainWindow::showStatus);
    connect(m_board, &BoardController::positionChanged, this, &MainWindow::refreshProblemText);
    retranslate();
    UpdateMenuState();
}

ProblemFileSettings MainWindow::fileSettings() const {
    ProblemFileSettings settings;
    const Options& options = m_start.options;
    settings.languageId = options.LanguageId;
    settings.commentCompatibilityMode = options.CommentCompatibilityMode;
    settings.defaults.useMainVariantAsSortIndications = options.UseMainVariantAsSortIndications;
    if (m_problems) settings.listLock = &m_problems->listLock;
    return settings;
}

// ---- Start-up

void MainWindow::startInitialisation() {
    fs::path path = m_start.dataDirectory / "myChessProblems.cp";
    ProblemFileSettings settings = fileSettings();
    settings.listLock = nullptr; // the thread fills a map of its own
    // The default file of the data directory is made silently; a file named
    // on the command line only when the user wants it made.
    bool create = true;
    if (!m_arguments.problemFile.isEmpty()) {
        path = fs::absolute(fs::path(m_arguments.problemFile.toStdWString()));
        setTitleFile(m_arguments.problemFile);
        std::error_code error;
        const fs::path actual = FileToRead(path, settings);
        if (!fs::exists(actual, error))
            create = m_prompts.ask(title(MessageTitle::Question),
                                   translate({L"Plik nie istnieje:\n", L"The file does not exist:\n",
                                              L"Файл не існує:\n"}) +
                                       QString::fromStdWString(actual.wstring()) +
                                       translate({L"\n\nCzy chcesz go utworzyć?",
                                                  L"\n\nDo you want to create it?", L"\n\nСтворити його?"}),
                                   Buttons::YesNo, PromptIcon::Question) == Answer::Yes;
    }
    m_loader = std::thread([this, path, settings, create] {
        auto loaded = std::make_shared<InitialProblems>(LoadInitialProblems(path, settings, create));
        QMetaObject::invokeMethod(
            this, [this, loaded] { finishInitialisation(*loaded); }, Qt::QueuedConnection);
    });
}

void MainWindow::finishInitialisation(InitialProblems& loaded) {
    m_loader.join();
    // 1. A reader's error is shown, and the window goes on with what it has.
    if (!loaded.error.isEmpty())
        m_prompts.message(title(MessageTitle::Error), loaded.error, PromptIcon::Error);
    // 2. The list, its history and snapshot, the first problem on the board.
    const auto count = static_cast<qulonglong>(loaded.problems.size());
    m_problems->allTags = std::move(loaded.allTags);
    m_problems->Replace(std::move(loaded.problems), loaded.path, loaded.problemsNotLoaded);
    if (loaded.path.empty()) setTitleFile(QString());
    refreshTitle();
    showCurrentProblem();
    // 3. The information text.
    QString info =
        translate({L"Liczba problemów szachowych w tym pliku: ", L"Number of chess problems in this file: ",
                   L"Кількість шахових задач у цьому файлі: "}) +
        QString::number(count);
    if (m_problems->LoadedInPart())
        info = translate({L"Plik wczytano częściowo: wczytano ", L"The file was loaded in part: ",
                          L"Файл завантажено частково: прочитано "}) +
               QString::number(loaded.problemsRead) +
               translate({L" problem(ów), kolejnych ", L" problem(s) read, ", L" задач(і), ще "}) +
               QString::number(m_problems->problemsNotLoaded) +
               translate({L" w pliku nie wczytano.\nZapis do tego pliku wymaga potwierdzenia.",
                          L" more in the file not read.\nSaving over this file asks first.",
                          L" у файлі не прочитано.\nЗбереження в цей файл потребує підтвердження."});
    else if (loaded.path.empty())
        info = translate(
            {L"Pliku nie utworzono: problem pozostaje w pamięci do zapisu (Plik, Zapisz jako).",
             L"The file was not created: the problem stays in memory until it is saved (File, Save as).",
             L"Файл не створено: задача залишається в пам'яті до збереження (Файл, Зберегти як)."});
    if (m_start.isSecondInstance && m_start.options.WarnAboutSecondInstanceOfProgram != 0)
        info = translate({L"UWAGA: To nie jest pierwsza uruchomiona instancja programu.\n",
                          L"WARNING: This is not the first instance of the program running.\n",
                          L"УВАГА: Це не перший запущений екземпляр програми.\n"}) +
               info;
    showStatus(info);
    // 4. Ctrl and Shift held at this moment open the bonus.
    const Qt::KeyboardModifiers held = QGuiApplication::queryKeyboardModifiers();
    if ((held & Qt::ControlModifier) && (held & Qt::ShiftModifier)) m_commands->addBonusItem();
    // 5. The timer, the working size, the watch of the file.
    m_refreshTimer.start(REFRESH_PERIOD_MS);
    adjustSize();
    watchFile();
    m_initialised = true;
    UpdateMenuState();
}

// ---- Commands

void MainWindow::DispatchCommand(CommandId id) {
    const CommandId command = CanonicalCommand(id);
    if (!m_initialised) return;
    // Commands may come by other roads than their items: the same rules decide.
    UpdateMenuState();
    if (!m_commands->isEnabled(command)) {
        explainRefusal(command);
        return;
    }
    if (IsSolveCommand(command))
        onSolveCommand(command);
    else if (!m_board->dispatch(command) && !m_files->dispatch(command) && !m_navigation->dispatch(command) &&
             !m_system->dispatch(command))
        runWindowCommand(command);
    // A save may have taken the mark of a file loaded in part away.
    refreshTitle();
    UpdateMenuState();
}

void MainWindow::runWindowCommand(CommandId id) {
    switch (id) {
    case CommandId::Options:
        showOptionsDialog();
        break;
    case CommandId::ViewResizeProgressArea:
        toggleProgressArea();
        break;
    case CommandId::LanguagePolish:
    case CommandId::LanguageEnglish:
    case CommandId::LanguageUkrainian:
        ApplyLanguage(LanguageOf(id));
        break;
    case CommandId::TrayShowProgram:
        m_tray->restore();
        break;
    case CommandId::TrayCloseProgram:
        close();
        break;
    default:
        break;
    }
}

void MainWindow::explainRefusal(CommandId id) {
    const TChessProblem* problem = m_problems->Current();
    const bool solving = problem && m_running.contains(problem->id);
    const bool notBuilt = std::find(CommandsNotBuiltYet().begin(), CommandsNotBuiltYet().end(), id) !=
                          CommandsNotBuiltYet().end();
    if (notBuilt || (IsSolveCommand(id) && !onSolveCommand)) {
        m_prompts.message(title(MessageTitle::Information),
                          translate({L"Ta funkcja nie jest jeszcze dostępna w tej wersji programu.",
                                     L"This function is not available yet in this version of the program.",
                                     L"Ця функція ще недоступна в цій версії програми."}),
                          PromptIcon::Information);
    } else if (solving && IsRefusedDuringSolve(id)) {
        m_prompts.message(title(MessageTitle::Information),
                          translate({L"Trwa analiza - pozycji nie można zmienić",
                                     L"Analysis pending - position cannot be modified",
                                     L"Триває аналіз - позицію не можна змінити"}),
                          PromptIcon::Information);
    }
}

void MainWindow::UpdateMenuState() {
    MenuState state;
    const TChessProblem* problem = m_problems->Current();
    state.hasProblem = problem != nullptr;
    if (problem) {
        state.problemType = problem->type;
        state.solveOnCurrent = m_running.contains(problem->id);
        state.solvePaused = m_running.isPaused(problem->id);
        int plies = 0;
        const TChessboard* from = nullptr;
        state.startRoadBuilt = IsSolveRoadBuilt(SolveRoadOf(*problem, m_board->shownPosition(), plies, from));
    }
    state.solvingConnected = static_cast<bool>(onSolveCommand);
    state.historyBack = m_problems->historyIndex > 0;
    state.historyForward = m_problems->historyIndex + 1 < static_cast<int>(m_problems->history.size());
    state.canUndo = m_board->canUndo();
    state.canRedo = m_board->canRedo();
    state.rotatedView = m_board->rotated();
    state.priorityClass = ProcessPriorityClass();
    state.affinityMask = ProcessAffinityMask();
    state.languageId = m_start.options.LanguageId;
    zorvane::UpdateMenuState(*m_commands, state);
}

void MainWindow::ApplyLanguage(int languageId) {
    m_start.options.LanguageId = languageId;
    // Saved at once: the language is no setting of the Options dialog.
    WriteOptionKey(m_start.dataDirectory / "options.ini", "LanguageId", languageId);
    retranslate();
    UpdateMenuState();
}

void MainWindow::retranslate() {
    const int language = m_start.options.LanguageId;
    m_commands->retranslate(language);
    m_problems->SetLanguage(language);
    refreshTitle();
    m_board->setLanguage(language);
    // The main variant carries the language's name, in the record and in its saved state alike.
    if (TChessProblem* problem = m_problems->Current()) {
        TranslateMainVariantName(problem->variants, language);
        TranslateMainVariantName(m_problems->snapshot.savedVariants, language);
    }
    refreshProblemText();
}

void MainWindow::showOptionsDialog() {
    OptionsDialog dialog(m_start.options.LanguageId, m_start.dataDirectory / "options.ini", this);
    dialog.setOptions(m_start.options);
    dialog.setThreads(m_start.threads.threads);
    dialog.setPhysicalMemory(PhysicalMemoryBytes());
    dialog.setMessageSink([this](MessageTitle kind, const QString& caption, const QString& text) {
        static constexpr PromptIcon ICONS[] = {PromptIcon::Question, PromptIcon::Warning, PromptIcon::Error,
                                               PromptIcon::Information};
        m_prompts.message(caption, text, ICONS[static_cast<int>(kind)]);
    });
    ++m_dialogsOpen;
    const int result = dialog.exec();
    --m_dialogsOpen;
    if (result != QDialog::Accepted) return;
    m_start.options = dialog.options();
    m_start.threads.threads = dialog.threads();
    m_start.threads.multithreadingLevels = m_start.options.MultithreadingLevels;
}

void MainWindow::toggleProgressArea() {
    m_progressEnlarged = !m_progressEnlarged;
    m_progress->setFixedHeight(m_progressEnlarged ? PROGRESS_HEIGHT_LARGE : PROGRESS_HEIGHT_SMALL);
}

// ---- What the controllers ask for

void MainWindow::showStatus(const QString& text) {
    m_status->setText(text);
}

QString MainWindow::statusText() const {
    return m_status->text();
}

void MainWindow::setTitleFile(const QString& file) {
    m_titleFile = file;
    refreshTitle();
}

void MainWindow::refreshTitle() {
    if (m_titleFile.isEmpty()) {
        setWindowTitle(QStringLiteral("Zorvane"));
        return;
    }
    QString text = QStringLiteral("Zorvane - ") + m_titleFile;
    if (m_problems->LoadedInPart())
        text += translate({L" (wczytany częściowo)", L" (loaded in part)", L" (завантажено частково)"});
    setWindowTitle(text);
}

void MainWindow::showCurrentProblem() {
    m_board->setProblem(m_problems->Current());
    refreshProblemText();
}

void MainWindow::showCurrentProblemAt(const TChessboard& position) {
    m_board->setProblem(m_problems->Current(), &position);
    refreshProblemText();
}

void MainWindow::refreshProblemText() {
    const TChessProblem* problem = m_problems->Current();
    if (!problem) {
        m_description->clear();
    } else {
        QString text = QString::number(problem->id) + ". " + stipulationText(*problem) + " " +
                       QString::fromStdWString(problem->description);
        QStringList tags;
        for (const std::wstring& tag : problem->tags) tags << QString::fromStdWString(tag);
        if (!tags.isEmpty())
            text += "\n" + translate({L"Tagi: ", L"Tags: ", L"Теги: "}) + tags.join(QStringLiteral(", "));
        m_description->setText(text);
    }
    UpdateMenuState();
}

void MainWindow::stopCurrentSolve() {
    if (onSolveCommand) onSolveCommand(CommandId::SolveStop);
}

void MainWindow::stopAllSolves() {
    if (onStopAllSolves) onStopAllSolves();
}

void MainWindow::watchFile() {
    m_files->watch().watch(m_problems->filePath);
}

// ---- Timers and outside events

void MainWindow::onRefreshTick() {
    // Outside changes wait while a box, a dialog or a load is open.
    if (!m_prompts.busy() && m_dialogsOpen == 0 && !m_files->loading() && m_files->watch().signalled())
        checkFileChange();
    emit refreshTick();
}

void MainWindow::checkFileChange() {
    m_files->checkExternalChange();
}

bool MainWindow::iconAnimationRunning() const {
    return m_animation->running();
}

void MainWindow::onRunningSolvesChanged() {
    m_animation->setRunning(m_running.count() > 0);
    UpdateMenuState();
}

void MainWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange || !isMinimized()) return;
    const bool ctrl = QGuiApplication::queryKeyboardModifiers() & Qt::ControlModifier;
    if (TrayController::wantsTray(m_start.options.MinimizeToTray, ctrl))
        QTimer::singleShot(0, this, [this] { m_tray->hideToTray(); });
}

void MainWindow::closeEvent(QCloseEvent* event) {
    // 1. Running solves are named and confirmed.
    const int running = m_running.count();
    if (running > 0) {
        const Answer answer = m_prompts.ask(
            title(MessageTitle::Question),
            translate({L"Poszukiwanie rozwiązania trwa dla ", L"Search for solution is pending for ",
                       L"Пошук розв'язку триває для "}) +
                QString::number(running) +
                translate({L" problemu(ów).\nCzy na pewno chcesz zakończyć?",
                           L" problem(s).\nAre you sure you want to quit?",
                           L" задач(і).\nВи впевнені, що хочете вийти?"}),
            Buttons::YesNo, PromptIcon::Question);
        if (answer != Answer::Yes) {
            event->ignore();
            return;
        }
    }
    // 2. Unsaved changes; Cancel stays in the program.
    if (m_problems->AskSaveChanges(false) == 1) {
        event->ignore();
        return;
    }
    // 3. The solves end, the tray icon goes, the log gets its last line.
    emit closing();
    stopAllSolves();
    m_refreshTimer.stop();
    m_animation->setRunning(false);
    m_tray->remove();
    WriteLog("Program close (%s)", ProgramVersion());
    event->accept();
}

} // namespace zorvane
