#include "shell/system_commands.h"

#include "shell/process_control.h"
#include "shell/startup.h"
#include "shell/window_services.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QUrl>

#include <filesystem>

namespace zorvane {

namespace {

// In the order of the Priority menu.
constexpr int PRIORITY_CLASSES[] = {PRIORITY_HIGH, PRIORITY_ABOVE_NORMAL, PRIORITY_NORMAL,
                                    PRIORITY_BELOW_NORMAL, PRIORITY_LOW};
constexpr int MAX_THREADS = 64;

} // namespace

SystemCommands::SystemCommands(WindowServices& window, QObject* parent)
    : QObject(parent), m_window(window), m_knownMask(ProcessAffinityMask()) {}

bool SystemCommands::dispatch(CommandId id) {
    if (id >= CommandId::PriorityHigh && id <= CommandId::PriorityLow) {
        setPriority(id);
        return true;
    }
    if (IsProcessorCommand(id)) {
        toggleProcessor(ProcessorOf(id));
        return true;
    }
    switch (id) {
    case CommandId::Threads:
        askThreads();
        return true;
    case CommandId::HelpAbout:
        about();
        return true;
    case CommandId::HelpReadme:
    case CommandId::HelpManual:
        openReadme();
        return true;
    default:
        return false;
    }
}

void SystemCommands::setPriority(CommandId id) {
    // Raising the priority may be refused without privileges; the menu then shows what holds.
    SetProcessPriorityClass(PRIORITY_CLASSES[CommandNumber(id) - CommandNumber(CommandId::PriorityHigh)]);
}

void SystemCommands::toggleProcessor(int cpu) {
    const uint64_t mask = ProcessAffinityMask();
    if (mask != m_knownMask) {
        m_knownMask = mask;
        m_window.prompts().message(
            m_window.title(MessageTitle::Information),
            m_window.translate(
                {L"Ustawienia zostały zmienione poza programem.\nObowiązują ustawienia bieżące.",
                 L"Settings were changed outside the program.\nThe current settings are taken over.",
                 L"Налаштування було змінено поза програмою.\nЗастосовано поточні налаштування."}),
            PromptIcon::Information);
        return;
    }
    // The last processor cannot be taken away.
    if (SetProcessAffinityMask(mask ^ (uint64_t{1} << cpu))) m_knownMask = ProcessAffinityMask();
}

void SystemCommands::askThreads() {
    ThreadDefaults& threads = m_window.threadSettings();
    const auto count =
        m_window.prompts().askNumber(m_window.translate({L"Wątki", L"Threads", L"Потоки"}),
                                     m_window.translate({L"Liczba wątków silnika (pierwszy ruch):",
                                                         L"Number of engine threads (1st move):",
                                                         L"Кількість потоків рушія (перший хід):"}),
                                     threads.threads, 1, MAX_THREADS);
    if (count) threads.threads = *count;
}

void SystemCommands::about() {
    m_window.prompts().message(
        m_window.translate({L"O programie", L"About", L"Про програму"}),
        QStringLiteral("Zorvane ") + QString::fromLatin1(ProgramVersion()) + "\n" +
            m_window.translate(
                {L"Program do rozwiązywania ortodoksyjnych problemów szachowych (maty w n ruchach).",
                 L"A solver of orthodox chess problems (mates in n moves).",
                 L"Програма для розв'язування ортодоксальних шахових задач (мати в n ходів)."}),
        PromptIcon::Information);
}

std::filesystem::path FindReadme(const std::filesystem::path& programDirectory) {
    const std::filesystem::path candidates[] = {
        programDirectory / "README.md",
        programDirectory.parent_path() / "share" / "zorvane" / "README.md",
        std::filesystem::path(ZORVANE_README),
    };
    for (const std::filesystem::path& candidate : candidates) {
        std::error_code error;
        if (std::filesystem::is_regular_file(candidate, error)) return candidate;
    }
    return candidates[0];
}

void SystemCommands::openReadme() {
    const std::filesystem::path path =
        FindReadme(std::filesystem::path(QCoreApplication::applicationDirPath().toStdWString()));
    const QString file = QString::fromStdWString(path.wstring());
    std::error_code error;
    if (!std::filesystem::exists(path, error)) {
        m_window.prompts().message(
            m_window.title(MessageTitle::Error),
            m_window.translate({L"Nie znaleziono pliku: ", L"File not found: ", L"Файл не знайдено: "}) +
                file,
            PromptIcon::Error);
        return;
    }
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(file)))
        m_window.prompts().message(m_window.title(MessageTitle::Error),
                                   m_window.translate({L"Nie można otworzyć pliku: ", L"Cannot open file: ",
                                                       L"Не вдається відкрити файл: "}) +
                                       file,
                                   PromptIcon::Error);
}

} // namespace zorvane
