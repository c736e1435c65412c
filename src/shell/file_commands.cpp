#include "shell/file_commands.h"

#include "problems/fen_check.h"
#include "shell/problem_merge.h"
#include "shell/window_services.h"

#include <exception>
#include <fstream>
#include <sstream>

namespace zorvane {

namespace fs = std::filesystem;

namespace {

const QString FILTER = QStringLiteral("cp Files (*.cp)");

fs::path toPath(const QString& name) {
    return fs::path(name.toStdWString());
}

fs::path withExtension(const QString& name) {
    fs::path path = toPath(name);
    if (path.extension().empty()) path += ".cp";
    return path;
}

} // namespace

FileCommands::FileCommands(WindowServices& window, QObject* parent)
    : QObject(parent), m_window(window), m_watch(this) {}

bool FileCommands::dispatch(CommandId id) {
    switch (id) {
    case CommandId::FileNew:
        newFile();
        return true;
    case CommandId::FileOpenDefault:
        openFile(m_window.dataDirectory() / "myChessProblems.cp", true);
        return true;
    case CommandId::FileOpenSamples:
        openFile(m_window.dataDirectory() / "sample_problems.cp");
        return true;
    case CommandId::FileOpen: {
        const QString name = askFileToOpen(
            m_window.translate({L"Otwórz plik z problemami szachowymi", L"Open file with chess problems",
                                L"Відкрити файл із шаховими задачами"}));
        if (!name.isEmpty()) openFile(toPath(name));
        return true;
    }
    case CommandId::FileSave:
        save();
        return true;
    case CommandId::FileSaveAs:
        saveAs();
        return true;
    case CommandId::FileAppendProblems:
        appendProblems();
        return true;
    case CommandId::FileRemoveProblems:
        removeProblems();
        return true;
    case CommandId::FileExit:
        m_window.closeWindow();
        return true;
    case CommandId::TagsAppendFromFile:
        appendTags();
        return true;
    case CommandId::CheckFenCodesFromFile:
        checkFenCodes();
        return true;
    default:
        return false;
    }
}

void FileCommands::checkFenCodes() {
    const QString directory = QString::fromStdWString(m_window.problems().FileDirectory());
    const QString name = m_window.prompts().openFileName(
        m_window.translate(
            {L"Wybierz plik z kodami FEN", L"Select file with FEN codes", L"Виберіть файл із кодами FEN"}),
        directory, QStringLiteral("All Files (*)"));
    if (name.isEmpty()) return;
    const fs::path source = toPath(name);
    fs::path report = source;
    report += ".FENNotFound.txt";
    const QString reportName = QString::fromStdWString(report.wstring());
    const Answer answer = m_window.prompts().ask(
        m_window.title(MessageTitle::Question),
        m_window.translate(
            {L"Cały plik zostanie przeszukany w poszukiwaniu kodów FEN i każdy z nich zostanie "
             L"sprawdzony w bieżącym pliku.\nKody FEN, których nie znaleziono, zostaną zapisane "
             L"do pliku:\n",
             L"All the file will be searched for FEN codes and it will be checked whether they "
             L"exist in the current file.\nFEN codes not found will be written to the file:\n",
             L"Увесь файл буде переглянуто в пошуках кодів FEN, і кожен з них буде перевірено в "
             L"поточному файлі.\nКоди FEN, яких не знайдено, буде записано до файлу:\n"}) +
            reportName +
            m_window.translate({L"\n\nCzy chcesz kontynuować?", L"\n\nDo you want to continue?",
                                L"\n\nБажаєте продовжити?"}),
        Buttons::YesNo, PromptIcon::Question);
    if (answer != Answer::Yes) return;
    std::ifstream in(source, std::ios::binary);
    if (!in) {
        m_window.prompts().message(m_window.title(MessageTitle::Error),
                                   m_window.translate({L"Błąd otwarcia pliku: ", L"Error opening file: ",
                                                       L"Помилка відкриття файлу: "}) +
                                       name,
                                   PromptIcon::Error);
        return;
    }
    std::ostringstream text;
    text << in.rdbuf();
    const FenCheckResult result = CheckFenCodes(text.str(), m_window.problems().problems);
    std::ofstream out(report, std::ios::binary | std::ios::trunc);
    for (const std::string& fen : result.notFound) out << fen << "\n";
    out.close();
    if (!out) {
        m_window.prompts().message(
            m_window.title(MessageTitle::Error),
            m_window.translate({L"Błąd zapisu pliku", L"Error writing to file", L"Помилка запису файлу"}),
            PromptIcon::Error);
        return;
    }
    const auto found = static_cast<qulonglong>(result.codes - static_cast<int>(result.notFound.size()));
    m_window.prompts().message(
        m_window.title(MessageTitle::Information),
        m_window.translate({L"Kodów FEN w pliku: ", L"FEN codes in the file: ", L"Кодів FEN у файлі: "}) +
            QString::number(result.codes) +
            m_window.translate({L"\nZnalezionych w bieżącym pliku: ", L"\nFound in the current file: ",
                                L"\nЗнайдено в поточному файлі: "}) +
            QString::number(found) +
            m_window.translate({L"\nNie znalezionych: ", L"\nNot found: ", L"\nНе знайдено: "}) +
            QString::number(result.notFound.size()) +
            m_window.translate(
                {L" (zapisane do pliku:\n", L" (written to the file:\n", L" (записано до файлу:\n"}) +
            reportName + QStringLiteral(")"),
        PromptIcon::Information);
}

QString FileCommands::askFileToOpen(const QString& caption) {
    const QString directory = QString::fromStdWString(m_window.problems().FileDirectory());
    return m_window.prompts().openFileName(caption, directory, FILTER);
}

QString FileCommands::errorText(const std::exception& error) const {
    return QString::fromUtf8(error.what());
}

bool FileCommands::openFile(const fs::path& path, bool createIfMissing) {
    // 1. Running solves end with the old list.
    if (m_window.runningSolves().count() > 0) {
        const Answer answer = m_window.prompts().ask(
            m_window.title(MessageTitle::Question),
            m_window.translate(
                {L"Wszystkie trwające wątki szukania mata zostaną zatrzymane.\nCzy chcesz kontynuować?",
                 L"All pending threads of mate search will be stopped.\nDo you want to continue?",
                 L"Усі незавершені потоки пошуку мату буде зупинено.\nПродовжити?"}),
            Buttons::YesNo, PromptIcon::Question);
        if (answer != Answer::Yes) return false;
        m_window.stopAllSolves();
    }
    // 2. Unsaved changes of the problem on screen.
    ProblemList& list = m_window.problems();
    const int saved = list.AskSaveChanges(false);
    if (saved == 1) return false;
    // A new problem thrown away leaves another one current.
    if (saved == -1) m_window.showCurrentProblem();
    // 3. The load; the old list stays when the new file cannot be read.
    m_window.showStatus(
        m_window.translate({L"Otwieranie pliku...", L"Opening file...", L"Відкриття файлу..."}));
    ProblemMap loaded;
    std::set<std::wstring> tags;
    m_loading = true;
    try {
        LoadProblemFile(path, loaded, createIfMissing, m_window.fileSettings(), tags);
    } catch (const std::exception& error) {
        m_loading = false;
        m_window.prompts().message(m_window.title(MessageTitle::Error), errorText(error), PromptIcon::Error);
        return false;
    }
    m_loading = false;
    if (loaded.empty()) {
        m_window.prompts().message(m_window.title(MessageTitle::Error),
                                   m_window.translate(FILE_CANNOT_BE_EMPTY), PromptIcon::Error);
        return false;
    }
    // 4. The new list, its file and what the status says of it.
    const auto count = static_cast<qulonglong>(loaded.size());
    list.allTags = std::move(tags);
    list.Replace(std::move(loaded), path);
    m_window.watchFile();
    m_window.setTitleFile(QString::fromStdWString(list.FileName()));
    m_window.showCurrentProblem();
    m_window.showStatus(
        m_window.translate(
            {L"Otwarty plik zawiera ", L"The opened file contains ", L"Відкритий файл містить "}) +
        QString::number(count) +
        m_window.translate({L" problem(ów) szachowych", L" chess problem(s)", L" шахових задач(і)"}) +
        m_window.translate(
            {L"\n\nPrzykładowe kompozycje: Plik, Otwórz przykładowe kompozycje.\nCtrl+F wyszukuje problemy.",
             L"\n\nSample compositions: File, Open sample compositions.\nCtrl+F finds problems.",
             L"\n\nЗразкові композиції: Файл, Відкрити зразкові композиції.\nCtrl+F шукає задачі."}));
    return true;
}

void FileCommands::newFile() {
    const QString name =
        m_window.prompts().saveFileName(m_window.translate({L"Nowy plik", L"New file", L"Новий файл"}),
                                        QString::fromStdWString(m_window.problems().FileDirectory()), FILTER);
    if (name.isEmpty()) return;
    const fs::path path = withExtension(name);
    if (!m_window.problems().MayWriteOver(path)) return;
    try {
        CreateDefaultProblemFile(path, m_window.fileSettings());
    } catch (const std::exception& error) {
        m_window.prompts().message(m_window.title(MessageTitle::Error), errorText(error), PromptIcon::Error);
        return;
    }
    openFile(path);
}

void FileCommands::save() {
    ProblemList& list = m_window.problems();
    if (!list.SaveCurrentFile()) return;
    m_window.watchFile();
    m_window.refreshProblemText();
}

bool FileCommands::writeAll(const fs::path& path) {
    ProblemList& list = m_window.problems();
    if (!list.MayWriteOver(path)) return false;
    try {
        SaveProblemFile(path, list.problems, m_window.fileSettings());
    } catch (const std::exception&) {
        m_window.prompts().message(
            m_window.title(MessageTitle::Error),
            m_window.translate({L"Błąd zapisu pliku", L"Error writing to file", L"Помилка запису файлу"}),
            PromptIcon::Error);
        return false;
    }
    // Another file written holds the whole list: it becomes the list's file.
    if (path != list.filePath) {
        list.filePath = path;
        list.problemsNotLoaded = 0;
    }
    std::error_code error;
    list.fileTime = fs::last_write_time(list.filePath, error);
    list.TakeSnapshot(false);
    m_window.watchFile();
    return true;
}

bool FileCommands::saveAs() {
    ProblemList& list = m_window.problems();
    const QString name =
        m_window.prompts().saveFileName(m_window.translate({L"Zapisz jako", L"Save as", L"Зберегти як"}),
                                        QString::fromStdWString(list.FileDirectory()), FILTER);
    if (name.isEmpty()) return false;
    if (!writeAll(withExtension(name))) return false;
    m_window.setTitleFile(QString::fromStdWString(list.FileName()));
    m_window.refreshProblemText();
    return true;
}

bool FileCommands::readOtherFile(const QString& caption, ProblemMap& other) {
    const QString name = askFileToOpen(caption);
    if (name.isEmpty()) return false;
    std::set<std::wstring> tags;
    try {
        LoadProblemFile(toPath(name), other, false, m_window.fileSettings(), tags);
    } catch (const std::exception& error) {
        m_window.prompts().message(m_window.title(MessageTitle::Error), errorText(error), PromptIcon::Error);
        return false;
    }
    m_window.problems().allTags.insert(tags.begin(), tags.end());
    return true;
}

bool FileCommands::askToSaveAll(const QString& resultText) {
    const QString question =
        m_window.translate({L"\n\nCzy chcesz zapisać zmiany? (wybierz 'Nie', aby je odrzucić)",
                            L"\n\nDo you want to save changes? (select 'No' to reject them)",
                            L"\n\nЗберегти зміни? (виберіть 'Ні', щоб їх відхилити)"});
    const Answer answer = m_window.prompts().ask(m_window.title(MessageTitle::Question),
                                                 resultText + question, Buttons::YesNo, PromptIcon::Question);
    return answer == Answer::Yes && writeAll(m_window.problems().filePath);
}

void FileCommands::appendProblems() {
    ProblemMap other;
    if (!readOtherFile(m_window.translate({L"Dołącz problemy z pliku", L"Append problems from file",
                                           L"Додати задачі з файлу"}),
                       other))
        return;
    ProblemList& list = m_window.problems();
    AppendResult result;
    {
        std::lock_guard<std::mutex> lock(list.listLock);
        result = AppendProblems(list.problems, std::move(other));
    }
    QString text = m_window.translate({L"Dołączone problemy: ", L"Appended problems: ", L"Додано задач: "}) +
                   QString::number(result.appended.size());
    if (!result.differingStipulations.empty()) {
        text += m_window.translate({L"\nPonadto niektóre problemy różnią się tylko warunkiem (#n): \n",
                                    L"\nMoreover some problems differ only by stipulation (#n): \n",
                                    L"\nКрім того, деякі задачі відрізняються лише умовою (#n): \n"});
        for (const std::wstring& line : result.differingStipulations)
            text += QString::fromStdWString(line) + "\n";
    }
    if (result.appended.empty()) {
        m_window.prompts().message(m_window.title(MessageTitle::Information), text, PromptIcon::Information);
        return;
    }
    if (!askToSaveAll(text)) {
        // Rejected: the appended problems leave the list again.
        std::lock_guard<std::mutex> lock(list.listLock);
        for (int32_t id : result.appended) list.problems.erase(id);
    }
    m_window.refreshProblemText();
}

void FileCommands::removeProblems() {
    ProblemMap other;
    if (!readOtherFile(
            m_window.translate({L"Usuń problemy obecne w pliku", L"Remove problems present in file",
                                L"Вилучити задачі, наявні у файлі"}),
            other))
        return;
    ProblemList& list = m_window.problems();
    const TChessProblem* current = list.Current();
    RemoveResult result;
    {
        std::lock_guard<std::mutex> lock(list.listLock);
        result = RemoveProblems(list.problems, other, current ? current->id : 0);
    }
    QString text = m_window.translate({L"Usunięte problemy: ", L"Removed problems: ", L"Вилучено задач: "}) +
                   QString::number(result.removed.size());
    if (result.currentKept)
        text += m_window.translate({L"\nUwaga: bieżącego problemu nie można usunąć.",
                                    L"\nWarning: the current problem cannot be removed.",
                                    L"\nУвага: поточну задачу не можна вилучити."});
    if (result.removed.empty()) {
        m_window.prompts().message(m_window.title(MessageTitle::Information), text, PromptIcon::Information);
        return;
    }
    if (askToSaveAll(text)) {
        // The history forgets the removed numbers.
        for (size_t i = list.history.size(); i-- > 0;) {
            if (!result.removed.count(list.history[i])) continue;
            list.history.erase(list.history.begin() + static_cast<std::ptrdiff_t>(i));
            if (static_cast<int>(i) <= list.historyIndex) --list.historyIndex;
        }
        if (list.historyIndex < 0 && !list.history.empty()) list.historyIndex = 0;
    } else {
        std::lock_guard<std::mutex> lock(list.listLock);
        for (auto& entry : result.removed) list.problems.insert(std::move(entry));
    }
    m_window.refreshProblemText();
}

void FileCommands::appendTags() {
    TChessProblem* problem = m_window.problems().Current();
    ProblemMap other;
    if (!problem || !readOtherFile(m_window.translate({L"Dołącz tagi z pliku", L"Append tags from file",
                                                       L"Додати теги з файлу"}),
                                   other))
        return;
    const int added = AppendMatchingTags(*problem, other);
    m_window.showStatus(m_window.translate({L"Dodane tagi: ", L"Tags added: ", L"Додано тегів: "}) +
                        QString::number(added));
    m_window.refreshProblemText();
}

void FileCommands::checkExternalChange() {
    ProblemList& list = m_window.problems();
    if (list.filePath.empty()) return;
    const auto changed = m_watch.takeChange(list.fileTime);
    if (!changed) return;
    list.fileTime = *changed;
    m_watch.watch(list.filePath);
    const QString start = m_window.translate(
        {L"Otwarty plik został zmieniony przez inną aplikację.\n\nZdecydowanie zaleca się ponowne "
         L"otwarcie go (zamknięcie i otwarcie)\n\n",
         L"The opened file has been changed by an external application.\n\nIt is strongly recommended "
         L"to reopen it (close and open it again)\n\n",
         L"Відкритий файл було змінено іншою програмою.\n\nНаполегливо рекомендується відкрити його "
         L"заново (закрити й відкрити знову)\n\n"});
    if (list.IsCurrentProblemChanged()) {
        m_window.prompts().message(
            m_window.title(MessageTitle::Information),
            start +
                m_window.translate(
                    {L"Wszelkie niezapisane zmiany zostaną utracone.\nJeśli chcesz je zachować, zaleca się "
                     L"zapisanie do innego pliku (Plik... Zapisz jako).",
                     L"Any unsaved changes will be lost.\nIf you want to save them, it is recommended to "
                     L"save to another file (File... Save As).",
                     L"Усі незбережені зміни буде втрачено.\nЯкщо ви хочете їх зберегти, рекомендується "
                     L"зберегти в інший файл (Файл... Зберегти як)."}),
            PromptIcon::Warning);
        return;
    }
    const Answer answer = m_window.prompts().ask(
        m_window.title(MessageTitle::Question),
        start + m_window.translate({L"Czy chcesz ponownie wczytać plik?", L"Do you want to reload the file?",
                                    L"Перезавантажити файл?"}),
        Buttons::YesNo, PromptIcon::Question);
    if (answer == Answer::Yes) {
        const fs::path path = list.filePath;
        openFile(path);
    }
}

} // namespace zorvane
