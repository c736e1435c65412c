#include "shell/navigation_commands.h"

#include "core/piece.h"
#include "shell/window_services.h"

#include <QStringList>

namespace zorvane {

namespace {

// The titles and labels that two of the questions share.
constexpr LocalizedText SELECT_PROBLEM{L"Wybierz problem", L"Select problem", L"Вибрати задачу"};
constexpr LocalizedText TAG_LABEL{L"Tag:", L"Tag:", L"Тег:"};

} // namespace

NavigationCommands::NavigationCommands(WindowServices& window, QObject* parent)
    : QObject(parent), m_window(window) {}

bool NavigationCommands::dispatch(CommandId id) {
    ProblemList& list = m_window.problems();
    switch (id) {
    case CommandId::ProblemNext:
        list.NavigateToProblem(Navigation::Next);
        return true;
    case CommandId::ProblemPrevious:
        list.NavigateToProblem(Navigation::Previous);
        return true;
    case CommandId::ProblemFirst:
        list.NavigateToProblem(Navigation::First);
        return true;
    case CommandId::ProblemLast:
        list.NavigateToProblem(Navigation::Last);
        return true;
    case CommandId::ProblemHistoryBack:
        list.HistoryBack();
        return true;
    case CommandId::ProblemHistoryForward:
        list.HistoryForward();
        return true;
    case CommandId::ProblemSelectByNumber:
        selectByNumber();
        return true;
    case CommandId::ProblemSelectFromList:
        selectFromList();
        return true;
    case CommandId::ProblemNew:
        appendNewProblem(PROBLEM_DIRECT_MATE);
        return true;
    case CommandId::Bonus:
        appendNewProblem(PROBLEM_POSITION);
        return true;
    case CommandId::TagAdd:
        addTag();
        return true;
    case CommandId::TagRemove:
        removeTag();
        return true;
    case CommandId::TypeDirectMate:
        setDirectMate();
        return true;
    default:
        return false;
    }
}

void NavigationCommands::selectByNumber() {
    ProblemList& list = m_window.problems();
    const TChessProblem* current = list.Current();
    if (!current || list.problems.empty()) return;
    const auto number = m_window.prompts().askNumber(
        m_window.translate(SELECT_PROBLEM),
        m_window.translate({L"Numer problemu:", L"Problem number:", L"Номер задачі:"}), current->id,
        list.problems.begin()->first, list.problems.rbegin()->first);
    if (!number) return;
    // Navigation by number needs a number of the list.
    if (!list.problems.count(*number)) {
        m_window.prompts().message(m_window.title(MessageTitle::Information),
                                   m_window.translate({L"W tym pliku nie ma problemu o numerze ",
                                                       L"There is no problem with number ",
                                                       L"У цьому файлі немає задачі з номером "}) +
                                       QString::number(*number),
                                   PromptIcon::Information);
        return;
    }
    list.NavigateToProblem(Navigation::ById, *number);
}

void NavigationCommands::selectFromList() {
    ProblemList& list = m_window.problems();
    QStringList items;
    std::vector<int32_t> ids;
    for (const auto& [id, problem] : list.problems) {
        const QString stipulation =
            problem->type == PROBLEM_POSITION
                ? QString()
                : (problem->type == PROBLEM_SELFMATE ? QStringLiteral(" s#") : QStringLiteral(" #")) +
                      QString::number(problem->stipulationMoves());
        items << QString::number(id) + "." + stipulation + " " +
                     QString::fromStdWString(problem->description);
        ids.push_back(id);
    }
    if (items.isEmpty()) return;
    const auto chosen =
        m_window.prompts().askItem(m_window.translate(SELECT_PROBLEM),
                                   m_window.translate({L"Problem:", L"Problem:", L"Задача:"}), items, false);
    if (!chosen) return;
    const auto index = items.indexOf(*chosen);
    if (index >= 0) list.NavigateToProblem(Navigation::ById, ids[static_cast<size_t>(index)]);
}

void NavigationCommands::appendNewProblem(uint16_t type) {
    ProblemList& list = m_window.problems();
    TChessProblem* leaving = list.Current();
    const bool solveRuns = leaving && m_window.runningSolves().contains(leaving->id);
    if (list.AskSaveChanges(solveRuns) == 1) return;
    auto problem = std::make_unique<TChessProblem>(m_window.fileSettings().defaults);
    problem->id = list.problems.empty() ? 1 : list.problems.rbegin()->first + 1;
    if (type == PROBLEM_POSITION) {
        // An empty board with no stipulation.
        SetProblemType(*problem, PROBLEM_POSITION);
    } else {
        problem->description = L"New Problem";
        problem->startPosition.m_aSquares[4] = WK;
        problem->startPosition.m_aSquares[60] = BK;
        SetupChessboard(problem->startPosition, true);
    }
    problem->referencePosition = problem->startPosition;
    const int32_t id = problem->id;
    {
        std::lock_guard<std::mutex> lock(list.listLock);
        list.currentProblem = list.problems.emplace(id, std::move(problem)).first;
    }
    list.PushHistory(id);
    list.TakeSnapshot(true);
    m_window.showCurrentProblem();
}

void NavigationCommands::addTag() {
    ProblemList& list = m_window.problems();
    TChessProblem* problem = list.Current();
    if (!problem) return;
    QStringList known;
    for (const std::wstring& tag : list.allTags) known << QString::fromStdWString(tag);
    const auto tag = m_window.prompts().askItem(m_window.translate({L"Dodaj tag", L"Add tag", L"Додати тег"}),
                                                m_window.translate(TAG_LABEL), known, true);
    if (!tag || tag->trimmed().isEmpty()) return;
    const std::wstring text = tag->trimmed().toStdWString();
    problem->tags.insert(text);
    list.allTags.insert(text);
    m_window.refreshProblemText();
}

void NavigationCommands::removeTag() {
    TChessProblem* problem = m_window.problems().Current();
    if (!problem) return;
    if (problem->tags.empty()) {
        m_window.prompts().message(
            m_window.title(MessageTitle::Information),
            m_window.translate({L"Bieżący problem nie ma tagów.", L"The current problem has no tags.",
                                L"Поточна задача не має тегів."}),
            PromptIcon::Information);
        return;
    }
    QStringList tags;
    for (const std::wstring& tag : problem->tags) tags << QString::fromStdWString(tag);
    const auto tag =
        m_window.prompts().askItem(m_window.translate({L"Usuń tag", L"Remove tag", L"Вилучити тег"}),
                                   m_window.translate(TAG_LABEL), tags, false);
    if (!tag) return;
    problem->tags.erase(tag->toStdWString());
    m_window.refreshProblemText();
}

void NavigationCommands::setDirectMate() {
    TChessProblem* problem = m_window.problems().Current();
    if (!problem || problem->type == PROBLEM_DIRECT_MATE) return;
    const int moves = problem->stipulationMoves();
    SetProblemType(*problem, PROBLEM_DIRECT_MATE);
    // A position without stipulation becomes a two-mover.
    if (moves == 0) SetStipulation(*problem, 2);
    m_window.showCurrentProblem();
}

} // namespace zorvane
