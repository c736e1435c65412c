#include "shell/main_window.h"

#include "engine/solver.h"
#include "problems/variant.h"
#include "shell/app_log.h"
#include "shell/board_controller.h"
#include "shell/board_rules.h"
#include "shell/board_view.h"
#include "shell/description_links.h"
#include "shell/file_commands.h"
#include "shell/menu_state.h"
#include "shell/navigation_commands.h"
#include "shell/options_dialog.h"
#include "shell/register_commands.h"
#include "shell/system_commands.h"
#include "shell/tray_controller.h"
#include "shell/window_icons.h"

#include <QClipboard>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
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
constexpr int REGISTER_COUNT_WIDTH = 60;

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
    openUrl = [](const QUrl& url) { return QDesktopServices::openUrl(url); };
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
    QToolBar* tools = m_commands->buildToolBar(this);
    addToolBar(tools);
    m_registerCount = new QLabel(QStringLiteral("0"), tools);
    m_registerCount->setObjectName(QStringLiteral("registerCount"));
    m_registerCount->setMinimumWidth(REGISTER_COUNT_WIDTH);
    m_registerCount->setAlignment(Qt::AlignCenter);
    tools->addWidget(m_registerCount);
    connect(m_commands, &CommandRegistry::commandTriggered, this, &MainWindow::DispatchCommand);

    m_files = new FileCommands(*this, this);
    m_navigation = new NavigationCommands(*this, this);
    m_system = new SystemCommands(*this, this);
    m_registers = new RegisterCommands(*this, this);
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
    m_description->installEventFilter(this);
    m_descriptionLink = new QLabel(central);
    m_descriptionLink->setObjectName(QStringLiteral("descriptionLink"));
    m_descriptionLink->setTextFormat(Qt::RichText);
    m_descriptionLink->setTextInteractionFlags(Qt::LinksAccessibleByMouse);
    m_descriptionLink->hide();
    connect(m_descriptionLink, &QLabel::linkActivated, this,
            [this] { DispatchCommand(CommandId::DescriptionOpenLink); });
    m_descriptionEditor = new QLineEdit(central);
    m_descriptionEditor->setObjectName(QStringLiteral("descriptionEditor"));
    m_descriptionEditor->installEventFilter(this);
    m_descriptionEditor->hide();
    // A right click on the description or its link offers the description's menu.
    for (QLabel* label : {m_description, m_descriptionLink}) {
        label->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(label, &QWidget::customContextMenuRequested, this, [this, label](const QPoint& point) {
            UpdateMenuState();
            if (QMenu* menu = m_commands->popup(MENU_DESCRIPTION)) menu->popup(label->mapToGlobal(point));
        });
    }
    m_progress = new QLabel(central);
    m_progress->setFrameShape(QFrame::StyledPanel);
    m_progress->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    // The line analysed runs long: it wraps between its moves.
    m_progress->setWordWrap(true);
    m_progress->setFixedHeight(PROGRESS_HEIGHT_SMALL);
    m_status = new QLabel(central);
    m_status->setWordWrap(true);
    m_status->setTextFormat(Qt::PlainText);
    m_status->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    for (QWidget* widget : std::initializer_list<QWidget*>{m_description, m_descriptionLink,
                                                           m_descriptionEditor, m_progress, m_status})
        widget->setFixedWidth(SIDE_PANEL_WIDTH);
    side->addWidget(m_description);
    side->addWidget(m_descriptionEditor);
    side->addWidget(m_descriptionLink);
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
    // An open editor of the description closes with its text before anything else happens.
    if (isEditingDescription() && command != CommandId::DescriptionEdit) commitDescriptionEdit();
    // Commands may come by other roads than their items: the same rules decide.
    UpdateMenuState();
    if (!m_commands->isEnabled(command)) {
        explainRefusal(command);
        return;
    }
    if (IsSolveCommand(command))
        onSolveCommand(command);
    else if (!runDescriptionCommand(command) && !m_board->dispatch(command) && !m_files->dispatch(command) &&
             !m_navigation->dispatch(command) && !m_system->dispatch(command) &&
             !m_registers->dispatch(command))
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
    const bool notBuilt = IsNotBuiltYet(id);
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
        const SolveRoad road = SolveRoadOf(*problem, m_board->shownPosition(), plies, from);
        state.startRoadBuilt = IsSolveRoadBuilt(road);
        state.defenceRoad = road == SolveRoad::BestDefence;
    }
    state.solvingConnected = static_cast<bool>(onSolveCommand);
    state.descriptionLink =
        problem && FindDescriptionLink(QString::fromStdWString(problem->description)).has_value();
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
    m_description->setToolTip(translate(
        {L"Zmień opis. Możesz użyć odnośników do Pdb/Yacpdb/Meson/Albrecht/Gameknot/chessStar, np. Y123",
         L"Change description. You can use links to Pdb/Yacpdb/Meson/Albrecht/Gameknot/chessStar, e.g. "
         L"Y123",
         L"Змінити опис. Можна використовувати посилання на Pdb/Yacpdb/Meson/Albrecht/Gameknot/chessStar, "
         L"напр. Y123"}));
    m_descriptionLink->setToolTip(m_description->toolTip());
    m_registerCount->setToolTip(translate(RegisterCountToolTip));
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

// ---- The description

bool MainWindow::runDescriptionCommand(CommandId id) {
    const TChessProblem* problem = m_problems->Current();
    switch (id) {
    case CommandId::DescriptionEdit:
        startDescriptionEdit();
        return true;
    case CommandId::DescriptionOpenLink:
    case CommandId::DescriptionCopyAddress: {
        const auto link =
            problem ? FindDescriptionLink(QString::fromStdWString(problem->description)) : std::nullopt;
        if (!link) return true;
        if (id == CommandId::DescriptionCopyAddress)
            QGuiApplication::clipboard()->setText(link->url.toString());
        else if (openUrl)
            openUrl(link->url);
        return true;
    }
    default:
        return false;
    }
}

bool MainWindow::isEditingDescription() const {
    return !m_descriptionEditor->isHidden();
}

void MainWindow::startDescriptionEdit() {
    const TChessProblem* problem = m_problems->Current();
    if (!problem || isEditingDescription()) return;
    m_editedProblem = problem;
    m_descriptionEditor->setText(QString::fromStdWString(problem->description));
    m_description->hide();
    m_descriptionLink->hide();
    m_descriptionEditor->show();
    m_descriptionEditor->selectAll();
    m_descriptionEditor->setFocus();
}

void MainWindow::commitDescriptionEdit() {
    if (!isEditingDescription()) return;
    // The text belongs to the problem it was opened on, and to no other.
    if (TChessProblem* problem = m_problems->Current(); problem && problem == m_editedProblem)
        problem->description = m_descriptionEditor->text().toStdWString();
    cancelDescriptionEdit();
}

void MainWindow::cancelDescriptionEdit() {
    if (!isEditingDescription()) return;
    m_descriptionEditor->hide();
    m_editedProblem = nullptr;
    m_description->show();
    refreshProblemText();
    setFocus();
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
    // Enter on the window opens the description's editor.
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
        event->modifiers() == Qt::NoModifier && m_initialised && m_problems->Current()) {
        startDescriptionEdit();
        event->accept();
        return;
    }
    QMainWindow::keyPressEvent(event);
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_descriptionEditor) {
        // The window's keys wait while the editor is open: every key is the editor's.
        if (event->type() == QEvent::ShortcutOverride) {
            event->accept();
            return false;
        }
        if (event->type() == QEvent::KeyPress) {
            const int key = static_cast<QKeyEvent*>(event)->key();
            if (key == Qt::Key_Return || key == Qt::Key_Enter) {
                commitDescriptionEdit();
                return true;
            }
            if (key == Qt::Key_Escape) {
                cancelDescriptionEdit();
                return true;
            }
        }
    } else if (watched == m_description && event->type() == QEvent::MouseButtonDblClick && m_initialised) {
        DispatchCommand(CommandId::DescriptionEdit);
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
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
    // Another problem (a reload, a removal) takes the editor's text away with the old one.
    if (isEditingDescription() && m_problems->Current() != m_editedProblem) cancelDescriptionEdit();
    m_board->setProblem(m_problems->Current());
    refreshProblemText();
}

void MainWindow::showCurrentProblemAt(const TChessboard& position) {
    m_board->setProblem(m_problems->Current(), &position);
    refreshProblemText();
}

void MainWindow::refreshProblemText() {
    const TChessProblem* problem = m_problems->Current();
    m_descriptionLink->hide();
    if (!problem) {
        m_description->clear();
    } else {
        if (const auto link = FindDescriptionLink(QString::fromStdWString(problem->description))) {
            m_descriptionLink->setText(
                QStringLiteral("<a href=\"%1\">%2</a>")
                    .arg(link->url.toString().toHtmlEscaped(), link->code.toHtmlEscaped()));
            m_descriptionLink->setVisible(!isEditingDescription());
        }
        QString text = QString::number(problem->id) + ". " + stipulationText(*problem) + " " +
                       QString::fromStdWString(problem->description);
        QStringList tags;
        for (const std::wstring& tag : problem->tags) tags << QString::fromStdWString(tag);
        if (!tags.isEmpty())
            text += "\n" + translate({L"Tagi: ", L"Tags: ", L"Теги: "}) + tags.join(QStringLiteral(", "));
        m_description->setText(text);
    }
    refreshRegisterCount();
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
    refreshRegisterCount();
    emit refreshTick();
}

void MainWindow::refreshRegisterCount() {
    const TChessProblem* problem = m_problems->Current();
    // While a run works on the problem its register is the run's: the count
    // is read again when the run has ended.
    if (problem && m_running.contains(problem->id)) return;
    m_registerCount->setText(QString::number(problem ? Solver::RegisterPositions(*problem) : 0));
}

void MainWindow::checkFileChange() {
    m_files->checkExternalChange();
}

bool MainWindow::iconAnimationRunning() const {
    return m_animation->running();
}

void MainWindow::onRunningSolvesChanged() {
    m_animation->setRunning(m_running.count() > 0);
    refreshRegisterCount();
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
