#include "shell/menu_state.h"

#include "shell/command_registry.h"
#include "shell/process_control.h"
#include "shell/shell_text.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace zorvane {

namespace {

using enum CommandId;

// clang-format off
// Each group names, in the status tip of its greyed items, the part of the
// program it waits for.
constexpr CommandId WAIT_CLIPBOARD[] = {
    PositionCopyFullFen, PositionCopy, PositionPaste, PositionPasteMirrored, MovesCopyFull, MovesCopyShort,
    VariantsCopyFull, VariantsCopyShort, PositionCopyWithoutVariants, PositionCopyWithoutVariantsOrTags,
    PositionCopyFen, ProgressCopyPosition, ProgressCopyFen, ProgressShowInNewInstance,
};
constexpr CommandId WAIT_TRANSFORMATIONS[] = {
    PositionSwapColours, PositionRotate90, PositionShiftLeft, PositionShiftRight, PositionShiftUp,
    PositionShiftDown,
};
constexpr CommandId WAIT_VARIANTS[] = {
    CommentLastMove, VariantSaveAsMain, VariantSaveAs, VariantShowMain, VariantAnimateMain, VariantShow,
    VariantAnimate, VariantStopAnimation, VariantRename, VariantRemove, CommentThisMove,
};
constexpr CommandId WAIT_SORT_DIALOG[] = {EditSortIndications};
constexpr CommandId WAIT_SEARCH[] = {ProblemFind, ProblemFindPrevious, ProblemFindNext, FindSimilarPositions};
constexpr CommandId WAIT_REGISTER_FILES[] = {
    TempRegisterSave, TempRegisterReadDefault, TempRegisterSaveAs, TempRegisterReadFile,
};
constexpr CommandId WAIT_ENGINE_THREADS[] = {SkipCurrentMove, ProgressSkipToNext, ProgressSwapWithNext,
                                             ProgressMoveToLast};
constexpr CommandId WAIT_MAIN_VARIANT[] = {SolveShowMainVariant};
constexpr CommandId WAIT_HEURISTICS[] = {SolveWithHeuristics, SolveAllWithHeuristics};
constexpr CommandId WAIT_REGRESSION[] = {RegressionTest, QuickRegressionTest};
constexpr CommandId WAIT_GLOBAL_REGISTER[] = {
    PrecalculateData, ShowGlobalRegister, VerifyPrecalculatedData, VerifyPrecalculatedFiles,
    VerifyPrecalculatedFilesResume, VerifyPartlyPrecalculatedData, MaxMovesNextPosition,
    MaxMovesPreviousPosition, PositionInformation, NextPositionOfType, PreviousPositionOfType, ShowPositionId,
    PastePositionByIndex,
};
constexpr CommandId WAIT_OWN_COMMAND[] = {KeyCtrlP, KeyCtrlShiftD};

struct WaitGroup {
    std::span<const CommandId> ids;
    LocalizedText waitsFor;
};

const WaitGroup WAIT_GROUPS[] = {
    {WAIT_CLIPBOARD, {L"Niedostępne: czeka na obsługę schowka (pozycje, FEN, ruchy, obrazy szachownicy)",
                      L"Not available yet: waits for the clipboard (positions, FEN, moves, board images)",
                      L"Ще недоступно: чекає на роботу з буфером обміну (позиції, FEN, ходи, зображення дошки)"}},
    {WAIT_TRANSFORMATIONS, {L"Niedostępne: czeka na przekształcenia pozycji",
                            L"Not available yet: waits for the position transformations",
                            L"Ще недоступно: чекає на перетворення позиції"}},
    {WAIT_VARIANTS, {L"Niedostępne: czeka na warianty i komentarze",
                     L"Not available yet: waits for the variants and comments",
                     L"Ще недоступно: чекає на варіанти та коментарі"}},
    {WAIT_SORT_DIALOG, {L"Niedostępne: czeka na okno wskazówek sortowania",
                        L"Not available yet: waits for the sort indications dialog",
                        L"Ще недоступно: чекає на вікно вказівок сортування"}},
    {WAIT_SEARCH, {L"Niedostępne: czeka na wyszukiwanie problemów", L"Not available yet: waits for the problem search",
                   L"Ще недоступно: чекає на пошук задач"}},
    {WAIT_REGISTER_FILES, {L"Niedostępne: czeka na zapis i odczyt rejestru tymczasowego",
                           L"Not available yet: waits for the temporary register on disk",
                           L"Ще недоступно: чекає на тимчасовий реєстр на диску"}},
    {WAIT_ENGINE_THREADS, {L"Niedostępne: czeka na wątki silnika (ręczne sterowanie analizą)",
                           L"Not available yet: waits for the engine's threads (manual control of the analysis)",
                           L"Ще недоступно: чекає на потоки рушія (ручне керування аналізом)"}},
    {WAIT_MAIN_VARIANT, {L"Niedostępne: czeka na pokazywanie całego wariantu głównego",
                         L"Not available yet: waits for showing the whole main variant",
                         L"Ще недоступно: чекає на показ усього основного варіанту"}},
    {WAIT_HEURISTICS, {L"Niedostępne: czeka na okno heurystyk", L"Not available yet: waits for the heuristics dialog",
                       L"Ще недоступно: чекає на вікно евристик"}},
    {WAIT_REGRESSION, {L"Niedostępne: czeka na test regresyjny", L"Not available yet: waits for the regression test",
                       L"Ще недоступно: чекає на регресійний тест"}},
    {WAIT_GLOBAL_REGISTER, {L"Niedostępne: czeka na rejestr globalny i typy pozycji",
                            L"Not available yet: waits for the global register and its position types",
                            L"Ще недоступно: чекає на глобальний реєстр і типи позицій"}},
    {WAIT_OWN_COMMAND, {L"Niedostępne: klawisz czeka na polecenie, które obsłuży",
                        L"Not available yet: the key waits for a command of its own",
                        L"Ще недоступно: клавіша чекає на власну команду"}},
};

const WaitGroup* waitGroupOf(CommandId id) {
    for (const WaitGroup& group : WAIT_GROUPS)
        if (std::find(group.ids.begin(), group.ids.end(), id) != group.ids.end()) return &group;
    return nullptr;
}

constexpr CommandId SOLVE_COMMANDS[] = {
    SolveStart, SolveAllSolutions, SolveStop, SolvePause, SolveResume, SolveBlackDefence,
    SolveBlackDefenceThorough, SolveShowMainVariant, SolvePauseOneThread, SolveWithHeuristics,
    SolveAllWithHeuristics,
};

// Refused while the current problem is being solved (the start commands follow the running state).
constexpr CommandId REFUSED_DURING_SOLVE[] = {
    FileSave, Undo, Redo, PositionSettingMode, StipulationUp, StipulationDown, StipulationUpTen,
    StipulationDownTen, TempRegisterClear, TempRegisterSave, TempRegisterReadDefault, TempRegisterSaveAs,
    TempRegisterReadFile, RegressionTest, QuickRegressionTest, EditSortIndications, PrecalculateData,
    MaxMovesNextPosition, MaxMovesPreviousPosition, PositionInformation, NextPositionOfType,
    PreviousPositionOfType, VerifyPrecalculatedData, VerifyPrecalculatedFiles, VerifyPrecalculatedFilesResume,
    PastePositionByIndex, VerifyPartlyPrecalculatedData, VariantSaveAsMain, VariantSaveAs,
};
// clang-format on

bool contains(std::span<const CommandId> ids, CommandId id) {
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

std::optional<CommandId> priorityCommand(int priorityClass) {
    switch (priorityClass) {
    case PRIORITY_HIGH:
        return PriorityHigh;
    case PRIORITY_ABOVE_NORMAL:
        return PriorityAboveNormal;
    case PRIORITY_NORMAL:
        return PriorityNormal;
    case PRIORITY_BELOW_NORMAL:
        return PriorityBelowNormal;
    case PRIORITY_LOW:
        return PriorityLow;
    default:
        return std::nullopt;
    }
}

bool solveCommandEnabled(CommandId id, const MenuState& state) {
    if (!state.solvingConnected || !state.hasProblem) return false;
    switch (id) {
    case SolveStop:
    case SolvePause:
    case SolvePauseOneThread:
        return state.solveOnCurrent;
    case SolveResume:
        return state.solveOnCurrent && state.solvePaused;
    case SolveBlackDefence:
    case SolveBlackDefenceThorough:
        return !state.solveOnCurrent && state.defenceRoad;
    default:
        // The start commands, where the board shows a position that a built solve takes.
        return !state.solveOnCurrent && state.startRoadBuilt;
    }
}

} // namespace

std::vector<CommandId> CommandsNotBuiltYet() {
    std::vector<CommandId> ids;
    for (const WaitGroup& group : WAIT_GROUPS) ids.insert(ids.end(), group.ids.begin(), group.ids.end());
    return ids;
}
bool IsNotBuiltYet(CommandId id) {
    return waitGroupOf(id) != nullptr;
}
const LocalizedText* WaitsFor(CommandId id) {
    const WaitGroup* group = waitGroupOf(id);
    return group ? &group->waitsFor : nullptr;
}
std::span<const CommandId> SolveCommands() {
    return SOLVE_COMMANDS;
}
bool IsSolveCommand(CommandId id) {
    return contains(SOLVE_COMMANDS, id);
}
bool IsRefusedDuringSolve(CommandId id) {
    return contains(REFUSED_DURING_SOLVE, id);
}

bool IsCommandEnabled(CommandId id, const MenuState& state) {
    // The menu offers only direct mates; other types read from a file keep their type.
    if (id == TypeSelfmate || id == TypeHelpmate) return false;
    if (IsNotBuiltYet(id)) return false;
    if (IsSolveCommand(id)) return solveCommandEnabled(id, state);
    if (state.solveOnCurrent && IsRefusedDuringSolve(id)) return false;
    switch (id) {
    case ProblemHistoryBack:
        return state.historyBack;
    case ProblemHistoryForward:
        return state.historyForward;
    case Undo:
        return state.canUndo;
    case Redo:
        return state.canRedo;
    case FileSave:
    case FileSaveAs:
    case ProblemNext:
    case ProblemPrevious:
    case ProblemNew:
    case MoveBack:
    case MoveRedo:
    case ProblemSelectByNumber:
    case ProblemSelectFromList:
    case ProblemFirst:
    case ProblemLast:
    case TagAdd:
    case TagRemove:
    case TypeDirectMate:
    case DescriptionEdit:
    case CheckFenCodesFromFile:
        return state.hasProblem;
    case DescriptionOpenLink:
    case DescriptionCopyAddress:
        return state.hasProblem && state.descriptionLink;
    default:
        return true;
    }
}

bool IsCommandChecked(CommandId id, const MenuState& state) {
    if (id == TypeDirectMate) return state.hasProblem && state.problemType == 1;
    if (id == TypeSelfmate) return state.hasProblem && state.problemType == 2;
    if (id >= PriorityHigh && id <= PriorityLow) return id == priorityCommand(state.priorityClass);
    if (id >= LanguagePolish && id <= LanguageUkrainian) {
        const int language = state.languageId == 0 || state.languageId == 2 ? state.languageId : 1;
        return LanguageOf(id) == language;
    }
    if (IsProcessorCommand(id)) return (state.affinityMask >> ProcessorOf(id)) & 1;
    if (id == ViewRotateBoard) return state.rotatedView;
    return false;
}

void UpdateMenuState(CommandRegistry& registry, const MenuState& state) {
    for (CommandId id : registry.commandIds()) {
        registry.setEnabled(id, IsCommandEnabled(id, state));
        // A greyed item not built yet says in the status line what it waits for.
        if (const LocalizedText* waits = WaitsFor(id))
            registry.setStatusTip(id, Translate(state.languageId, *waits));
        if (IsCheckableCommand(id)) registry.setChecked(id, IsCommandChecked(id, state));
    }
}

} // namespace zorvane
