#include "problems/problem_list.h"

#include "core/localized_text.h"
#include "problems/problem_file.h"

#include <algorithm>
#include <cstring>
#include <exception>

namespace zorvane {

namespace {

const wchar_t* const QUESTION = L"Question";
const wchar_t* const ERROR_TITLE = L"Error";
const wchar_t* const NEW_PROBLEM = L"New Problem";

bool sameIndications(const SortIndications& a, const SortIndications& b) {
    if (a.size() != b.size()) return false;
    for (auto i = a.begin(), j = b.begin(); i != a.end(); ++i, ++j) {
        if (i->first != j->first || i->second.size() != j->second.size()) return false;
        for (size_t k = 0; k < i->second.size(); ++k)
            if (std::memcmp(&i->second[k], &j->second[k], sizeof(SortIndication)) != 0) return false;
    }
    return true;
}

} // namespace

ProblemList::ProblemList(ProblemListHost& host, int languageId, ProblemDefaults defaults)
    : currentProblem(problems.end()), m_host(host), m_languageId(languageId), m_defaults(defaults) {}

std::wstring ProblemList::tr(const LocalizedText& text) const {
    return std::wstring(text.In(m_languageId));
}

void ProblemList::Replace(ProblemMap loaded, const std::filesystem::path& path, int notLoaded) {
    {
        std::lock_guard<std::mutex> lock(listLock);
        problems = std::move(loaded);
        currentProblem = problems.begin();
        filePath = path;
    }
    problemsNotLoaded = notLoaded > 0 ? notLoaded : 0;
    noteFileTime();
    history.clear();
    historyIndex = -1;
    if (currentProblem != problems.end()) PushHistory(currentProblem->first);
    TakeSnapshot(false);
}

void ProblemList::noteFileTime() {
    std::error_code error;
    const auto time = std::filesystem::last_write_time(filePath, error);
    fileTime = error ? std::filesystem::file_time_type{} : time;
}

void ProblemList::TakeSnapshot(bool asNew) {
    const TChessProblem* problem = Current();
    if (!problem) return;
    ProblemSnapshot s;
    s.savedType = problem->type;
    std::memcpy(s.savedBoard, problem->startPosition.m_aSquares, 64);
    if (problem->type == PROBLEM_POSITION)
        std::memcpy(s.savedCurrentBoard, problem->currentPosition().m_aSquares, 64);
    if (asNew) {
        s.savedId = -1;
        s.savedMoves = 0;
        s.savedDescription = NEW_PROBLEM;
        s.isNewProblem = true;
    } else {
        s.savedId = problem->id;
        s.savedMoves = (problem->plies + 1) / 2;
        s.savedDescription = problem->description;
        s.savedTags = problem->tags;
        s.savedVariants = problem->variants;
        s.savedSortIndications = problem->sortIndications;
    }
    snapshot = std::move(s);
}

bool ProblemList::IsCurrentProblemChanged() const {
    if (currentProblem == problems.end()) return false;
    const TChessProblem& p = *currentProblem->second;
    const ProblemSnapshot& s = snapshot;
    // 1.-5. Stipulation, type, description, the start and, for a position, the current board.
    if (s.savedMoves != (p.plies + 1) / 2) return true;
    if (s.savedType != (p.type & 0xFF)) return true;
    if (s.savedDescription != p.description) return true;
    if (std::memcmp(s.savedBoard, p.startPosition.m_aSquares, 64) != 0) return true;
    if (p.type == PROBLEM_POSITION &&
        std::memcmp(s.savedCurrentBoard, p.currentPosition().m_aSquares, 64) != 0)
        return true;
    // 6.-8. Variants by number, the sort indications, then the variants one by one.
    if (s.savedVariants.size() != p.variants.size()) return true;
    if (!sameIndications(s.savedSortIndications, p.sortIndications)) return true;
    for (auto i = s.savedVariants.begin(), j = p.variants.begin(); i != s.savedVariants.end(); ++i, ++j)
        if (i->first != j->first || !SameVariantMoves(i->second, j->second, true)) return true;
    // 9. Tags.
    return s.savedTags != p.tags;
}

void ProblemList::eraseNewProblem() {
    const int32_t id = currentProblem->first;
    for (size_t i = history.size(); i-- > 0;) {
        if (history[i] != id) continue;
        history.erase(history.begin() + static_cast<std::ptrdiff_t>(i));
        if (static_cast<int>(i) <= historyIndex) --historyIndex;
    }
    {
        std::lock_guard<std::mutex> lock(listLock);
        problems.erase(currentProblem);
        currentProblem = problems.empty() ? problems.end() : std::prev(problems.end());
    }
    if (historyIndex < 0 && !history.empty()) historyIndex = 0;
    TakeSnapshot(false);
}

bool ProblemList::RevertToSnapshot() {
    TChessProblem* problem = Current();
    if (!problem) return false;
    if (snapshot.isNewProblem) {
        eraseNewProblem();
        return true;
    }
    problem->type = snapshot.savedType;
    problem->plies = problem->stipulationPlies = snapshot.savedType == PROBLEM_POSITION
                                                     ? POSITION_PLIES
                                                     : static_cast<uint16_t>(2 * snapshot.savedMoves - 1);
    problem->description = snapshot.savedDescription;
    problem->tags = snapshot.savedTags;
    problem->variants = snapshot.savedVariants;
    problem->sortIndications = snapshot.savedSortIndications;
    // The men go back too, so that a thrown-away edit of the position cannot be saved later.
    std::memcpy(problem->startPosition.m_aSquares, snapshot.savedBoard, 64);
    TrySetupChessboard(problem->startPosition, false);
    problem->startPosition.m_shPliesLeft = problem->startPosition.m_shPliesTotal = problem->plies;
    m_host.ShowProblem(*problem, problem->startPosition);
    return false;
}

int ProblemList::AskSaveChanges(bool solveRuns) {
    if (!IsCurrentProblemChanged()) return 0;
    if (m_host.DescriptionEditorOpen()) return SaveCurrentFile() ? 0 : 1;
    const Answer answer =
        m_host.Ask(QUESTION,
                   tr({L"Dokonałeś zmian w bieżącym problemie.\nCzy chcesz je zachować?",
                       L"There are changes in the current problem.\nDo you want to save them?",
                       L"У поточній проблемі є зміни.\nЗберегти їх?"}),
                   solveRuns ? Buttons::OkCancel : Buttons::YesNoCancel);
    switch (answer) {
    case Answer::Yes:
    case Answer::Ok:
        switch (saveCurrentFile()) {
        case SaveOutcome::Written:
            return 0;
        // The file loaded in part was kept: the changes stay, to be saved elsewhere.
        case SaveOutcome::Declined:
            return 1;
        case SaveOutcome::Failed:
            break;
        }
        m_host.ShowError(ERROR_TITLE,
                         tr({L"Błąd zapisu do pliku", L"Error saving to file", L"Помилка збереження файлу"}));
        return 1;
    case Answer::Cancel:
        return 1;
    case Answer::No:
        break;
    }
    TChessProblem* problem = Current();
    m_host.ClearPendingRegisterRequests(*problem);
    return RevertToSnapshot() ? -1 : 0;
}

bool ProblemList::SaveCurrentFile() {
    return saveCurrentFile() == SaveOutcome::Written;
}

bool ProblemList::MayWriteOver(const std::filesystem::path& path) {
    if (!LoadedInPart() || filePath.empty()) return true;
    // The ".cpx" double of the comment mode is the same file for this question.
    std::error_code error;
    const auto same = [&error](const std::filesystem::path& a, const std::filesystem::path& b) {
        return std::filesystem::weakly_canonical(PlainFilePath(a), error) ==
               std::filesystem::weakly_canonical(PlainFilePath(b), error);
    };
    if (!same(path, filePath)) return true;
    const std::wstring count = std::to_wstring(problemsNotLoaded);
    const std::wstring text =
        tr({L"Ten plik został wczytany częściowo: zawiera jeszcze ",
            L"This file was loaded in part: it holds ", L"Цей файл завантажено частково: він містить ще "}) +
        count +
        tr({L" problem(ów) poza wyświetlonymi.\nZapis nadpisze plik i zostaną one utracone.\n\nCzy mimo to "
            L"chcesz nadpisać plik? (Nie zachowuje plik; Zapisz jako zapisuje do innego)",
            L" problem(s) beyond the ones shown.\nSaving writes over the file, and they will be lost.\n\nDo "
            L"you "
            L"want to write over the file anyway? (No keeps the file; Save as writes to another one)",
            L" задач(і) понад показані.\nЗбереження перезапише файл, і їх буде втрачено.\n\nВсе одно "
            L"перезаписати файл? (Ні зберігає файл; Зберегти як записує в інший)"});
    if (m_host.Ask(QUESTION, text, Buttons::YesNoDefaultNo) != Answer::Yes) return false;
    problemsNotLoaded = 0;
    return true;
}

ProblemList::SaveOutcome ProblemList::saveCurrentFile() {
    TChessProblem* problem = Current();
    if (!problem) return SaveOutcome::Failed;
    if (const TChessProblem* same = FindSamePosition(problem->id)) {
        const std::wstring hit = std::to_wstring(same->id) + L". #" + std::to_wstring((same->plies + 1) / 2) +
                                 L" " + same->description;
        const std::wstring text =
            tr({L"Identyczna pozycja już istnieje w tym pliku jako następujący problem:\n",
                L"The same position already exists in this file as the following problem:\n",
                L"Така сама позиція вже є в цьому файлі як така проблема:\n"}) +
            hit +
            tr({L"\n\nCzy mimo to chcesz zapisać zmiany?", L"\n\nDo you want to save changes anyway?",
                L"\n\nВсе одно зберегти зміни?"});
        if (m_host.Ask(QUESTION, text, Buttons::YesNo) != Answer::Yes) return SaveOutcome::Failed;
    }
    if (filePath.empty()) return m_host.SaveAs() ? SaveOutcome::Written : SaveOutcome::Failed;
    if (!MayWriteOver(filePath)) return SaveOutcome::Declined;
    try {
        m_host.WriteFile(filePath, problems);
    } catch (const std::exception&) {
        m_host.ShowError(ERROR_TITLE,
                         tr({L"Błąd zapisu pliku", L"Error writing to file", L"Помилка запису файлу"}));
        return SaveOutcome::Failed;
    }
    noteFileTime();
    TakeSnapshot(false);
    m_host.CloseDescriptionEditors();
    return SaveOutcome::Written;
}

bool ProblemList::addNewProblem() {
    const Answer answer = m_host.Ask(QUESTION,
                                     tr({L"To jest ostatni problem.\nCzy chcesz utworzyć nowy?",
                                         L"This is the last problem.\nDo you want to create a new one?",
                                         L"Це остання проблема.\nСтворити нову?"}),
                                     Buttons::YesNo);
    if (answer != Answer::Yes) return false;
    auto problem = std::make_unique<TChessProblem>(m_defaults);
    problem->id = problems.empty() ? 1 : problems.rbegin()->first + 1;
    problem->description = NEW_PROBLEM;
    problem->startPosition.m_aSquares[4] = WK;
    problem->startPosition.m_aSquares[60] = BK;
    SetupChessboard(problem->startPosition, true);
    problem->referencePosition = problem->startPosition;
    std::lock_guard<std::mutex> lock(listLock);
    currentProblem = problems.emplace(problem->id, std::move(problem)).first;
    return true;
}

bool ProblemList::NavigateToProblem(Navigation where, int32_t id) {
    // 1. A second call while one runs is dropped.
    std::unique_lock<std::mutex> guard(m_navigationLock, std::try_to_lock);
    if (!guard.owns_lock() || problems.empty()) return false;
    // 2.-3. A presentation stops; a running solve may be stopped or left running.
    m_host.StopPresentation();
    TChessProblem* leaving = Current();
    bool solveRuns = leaving && m_host.IsSolving(*leaving);
    if (solveRuns) {
        const Answer answer = m_host.Ask(
            tr({L"Nawigacja między problemami", L"Navigation between problems", L"Навігація між проблемами"}),
            tr({L"Trwa szukanie mata. Czy chcesz przerwać to zadanie?",
                L"Search for mate pending. Do you want to stop this task?",
                L"Триває пошук мату. Зупинити це завдання?"}),
            Buttons::YesNoCancel);
        if (answer == Answer::Cancel) return false;
        if (answer == Answer::Yes) {
            m_host.StopSolving(*leaving);
            solveRuns = false;
        }
    }
    // 4. The memory of the problem left behind.
    if (leaving && !solveRuns) {
        m_host.ShowStatus(
            tr({L"Usuwanie danych tymczasowych z pamięci...", L"Removing temporary data from memory...",
                L"Видалення тимчасових даних з пам'яті..."}));
        m_host.ReleaseTemporaryData(*leaving, false);
    }
    // 5. Unsaved changes.
    const bool wasNew = snapshot.isNewProblem;
    const int32_t leavingId = leaving ? leaving->id : 0;
    const int saved = AskSaveChanges(solveRuns);
    if (saved == 1) return false;
    const bool erased = saved == -1;
    // 6. The target.
    bool createdNew = false;
    auto from = erased ? problems.upper_bound(leavingId) : currentProblem;
    switch (where) {
    case Navigation::Next:
        if (erased || (wasNew && saved == -1)) {
            // The problem left was thrown away; the one behind its number follows.
            if (from == problems.end()) from = std::prev(problems.end());
            currentProblem = from;
        } else if (std::next(currentProblem) != problems.end()) {
            ++currentProblem;
        } else {
            if (!addNewProblem()) return false;
            createdNew = true;
        }
        break;
    case Navigation::Previous:
        if (erased)
            currentProblem = from == problems.begin() ? from : std::prev(from);
        else if (currentProblem != problems.begin())
            --currentProblem;
        break;
    case Navigation::First:
        currentProblem = problems.begin();
        break;
    case Navigation::Last:
        currentProblem = std::prev(problems.end());
        break;
    case Navigation::ById:
        currentProblem = problems.find(id);
        break;
    case Navigation::HistoryBack:
    case Navigation::HistoryForward: {
        const int step = where == Navigation::HistoryBack ? -1 : 1;
        const int target = historyIndex + step;
        if (target < 0 || target >= static_cast<int>(history.size())) return false;
        historyIndex = target;
        currentProblem = problems.find(history[static_cast<size_t>(target)]);
        break;
    }
    }
    if (currentProblem == problems.end()) return false;
    // 7.-9. History, snapshot, the board, the main variant.
    if (where != Navigation::HistoryBack && where != Navigation::HistoryForward)
        PushHistory(currentProblem->first);
    TakeSnapshot(createdNew);
    const TChessProblem& shown = *currentProblem->second;
    m_host.ShowProblem(shown, shown.type == PROBLEM_POSITION ? shown.currentPosition() : shown.startPosition);
    m_host.ShowMainVariant(shown);
    return true;
}

void ProblemList::PushHistory(int32_t id) {
    if (historyIndex + 1 < static_cast<int>(history.size()))
        history.resize(static_cast<size_t>(historyIndex + 1));
    history.push_back(id);
    historyIndex = static_cast<int>(history.size()) - 1;
}

bool ProblemList::HistoryBack() {
    return NavigateToProblem(Navigation::HistoryBack);
}
bool ProblemList::HistoryForward() {
    return NavigateToProblem(Navigation::HistoryForward);
}

const TChessProblem* ProblemList::FindSamePosition(int32_t id) const {
    const auto it = problems.find(id);
    if (it == problems.end()) return nullptr;
    for (const auto& [otherId, other] : problems)
        if (otherId != id &&
            std::memcmp(other->startPosition.m_aSquares, it->second->startPosition.m_aSquares, 64) == 0)
            return other.get();
    return nullptr;
}

} // namespace zorvane
