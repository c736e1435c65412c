#include "shell/startup.h"

#include "options/profile_file.h"
#include "options/profile_int.h"
#include "core/localized_text.h"
#include "shell/app_log.h"
#include "shell/instance_state.h"
#include "shell/prompts.h"
#include "shell/shell_text.h"

#include <QDir>
#include <QLockFile>
#include <QStandardPaths>

#include <exception>

namespace zorvane {

namespace fs = std::filesystem;

namespace {

// The name of the instance, as a file name: the namespace's backslash cannot stay.
const QString INSTANCE_NAME = QStringLiteral("Local\\ProblemySzachoweByBrannoch");

int readIntKey(const ProfileText& text, std::string_view key, int defaultValue) {
    const auto value = text.Get(OPTIONS_SECTION, key);
    return value ? ReadProfileInt(*value, defaultValue) : defaultValue;
}

void warnSecondInstance(const fs::path& optionsPath, Prompts& prompts) {
    // Read at once: the options as a whole come later.
    const ProfileText text = ReadProfileFile(optionsPath).value_or(ProfileText());
    if (readIntKey(text, "WarnAboutSecondInstanceOfProgram", 2) <= 1) return;
    const int language = readIntKey(text, "LanguageId", LANGUAGE_ENGLISH);
    prompts.message(
        TitleText(language, MessageTitle::Information),
        Translate(
            language,
            {L"Uwaga:\nProgram zostanie otwarty w trybie tylko do odczytu dla plików .lichess.\n\nNależy też "
             L"zachować szczególną ostrożność przy zapisywaniu plików z problemami (.cp) - choć instancje "
             L"programu ostrzegają i proponują synchronizację/ponowne wczytanie",
             L"Note:\nProgram will be opened in read-only mode for .lichess files.\n\nAlso particular care "
             L"should "
             L"be taken while saving problem files (.cp) - although program instances warn and suggest "
             L"sychronization/reload",
             L"Примітка:\nПрограму буде відкрито в режимі лише для читання для файлів .lichess.\n\nТакож "
             L"слід "
             L"бути особливо обережним під час збереження файлів задач (.cp) - хоча екземпляри програми "
             L"попереджають і пропонують синхронізацію/перезавантаження"}),
        PromptIcon::Information);
}

} // namespace

const char* ProgramVersion() {
    return ZORVANE_VERSION;
}

StartupArguments ParseArguments(const QStringList& arguments) {
    StartupArguments result;
    QStringList rest;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        if (arguments[i] == QLatin1String("--data-dir") && i + 1 < arguments.size())
            result.dataDirectory = fs::path(arguments[++i].toStdWString());
        else if (arguments[i] == QLatin1String("--lock-dir") && i + 1 < arguments.size())
            result.lockDirectory = arguments[++i];
        else
            rest << arguments[i];
    }
    result.problemFile = rest.join(QLatin1Char(' '));
    return result;
}

QString InstanceLockPath(const QString& lockDirectory) {
    QString directory = lockDirectory;
    if (directory.isEmpty()) directory = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (directory.isEmpty()) directory = QDir::tempPath();
    QString name = INSTANCE_NAME;
    name.replace(QLatin1Char('\\'), QLatin1Char('_'));
    return QDir(directory).filePath(name + QStringLiteral(".lock"));
}

ProgramStart::ProgramStart() = default;
ProgramStart::ProgramStart(ProgramStart&&) noexcept = default;
ProgramStart::~ProgramStart() = default;

ProgramStart StartProgram(const StartupArguments& arguments, Prompts& prompts) {
    ProgramStart start;
    start.dataDirectory = arguments.dataDirectory.empty() ? fs::current_path() : arguments.dataDirectory;
    const fs::path optionsPath = start.dataDirectory / "options.ini";
    // 1. The instance lock, kept till the end; another copy holding it makes this one the second.
    auto lock = std::make_unique<QLockFile>(InstanceLockPath(arguments.lockDirectory));
    lock->setStaleLockTime(0); // only a dead owner frees the lock, however old it is
    start.isSecondInstance = !lock->tryLock(0);
    if (!start.isSecondInstance) start.instanceLock = std::move(lock);
    SetSecondInstance(start.isSecondInstance);
    if (start.isSecondInstance) warnSecondInstance(optionsPath, prompts);
    // 2. The engine should not take the desktop's place.
    SetProcessPriorityClass(PRIORITY_BELOW_NORMAL);
    // 3. The options, with their warnings.
    std::vector<LocalizedText> warnings;
    start.options = LoadOptions(optionsPath, warnings);
    for (const LocalizedText& warning : warnings)
        prompts.message(TitleText(start.options.LanguageId, MessageTitle::Warning),
                        Translate(start.options.LanguageId, warning), PromptIcon::Warning);
    // 4. Threads: big machines get fewer first-level threads and a second level.
    const int logical = LogicalProcessors();
    const int cores = PhysicalCores();
    start.threads =
        ComputeThreadDefaults(cores > 0 ? cores : logical, logical, start.options.MultithreadingLevels);
    start.options.MultithreadingLevels = start.threads.multithreadingLevels;
    // 5. The log.
    SetLogFilePath(start.dataDirectory / "Quorlan.log");
    WriteLog("Program opened (%s)", ProgramVersion());
    return start;
}

fs::path FileToRead(const fs::path& path, const ProblemFileSettings& settings) {
    return settings.commentCompatibilityMode ? CommentedFilePath(path) : path;
}

InitialProblems LoadInitialProblems(const fs::path& path, const ProblemFileSettings& settings,
                                    bool createIfMissing) {
    InitialProblems result;
    result.path = path;
    std::error_code missing;
    if (!createIfMissing && !fs::exists(FileToRead(path, settings), missing)) {
        // The problem of a new file, kept in memory until a save names a file.
        ReadProblemText(DefaultProblemFileText(settings.languageId), result.problems, settings,
                        result.allTags);
        result.path.clear();
        result.problemsRead = static_cast<int>(result.problems.size());
        return result;
    }
    ProblemLoadReport report;
    try {
        LoadProblemFile(path, result.problems, createIfMissing, settings, result.allTags, &report);
        if (result.problems.empty()) result.error = Translate(settings.languageId, FILE_CANNOT_BE_EMPTY);
    } catch (const std::exception& error) {
        result.error = QString::fromUtf8(error.what());
        result.problemsNotLoaded = report.problemsNotRead;
    }
    result.problemsRead = static_cast<int>(result.problems.size());
    if (result.problems.empty()) {
        // The window goes on with one empty problem.
        auto problem = std::make_unique<TChessProblem>(settings.defaults);
        problem->id = 1;
        result.problems.emplace(1, std::move(problem));
    }
    return result;
}

} // namespace zorvane
