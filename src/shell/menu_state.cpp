#include "shell/menu_state.h"

#include "shell/command_registry.h"
#include "shell/process_control.h"

#include <algorithm>
#include <optional>

namespace zorvane {

namespace {

using enum CommandId;

// clang-format off
constexpr CommandId NOT_BUILT_YET[] = {
    // clipboard: positions, FEN, moves and variants as text, board images
    PositionCopyFullFen, PositionCopy, PositionPaste, PositionPasteMirrored, MovesCopyFull, MovesCopyShort,
    VariantsCopyFull, VariantsCopyShort, PositionCopyWithoutVariants, PositionCopyWithoutVariantsOrTags,
    PositionCopyFen, ProgressCopyPosition, ProgressCopyFen, ProgressShowInNewInstance,
    // position transformations
    PositionSwapColours, PositionRotate90, PositionShiftLeft, PositionShiftRight, PositionShiftUp,
    PositionShiftDown,
    // variants, comments and the description's links
    CommentLastMove, VariantSaveAsMain, VariantSaveAs, VariantShowMain, VariantAnimateMain, VariantShow,
    VariantAnimate, VariantStopAnimation, VariantRename, VariantRemove, CommentThisMove, DescriptionOpenLink,
    DescriptionCopyAddress, DescriptionEdit,
    // sort indications dialog
    EditSortIndications,
    // problem search
    ProblemFind, ProblemFindPrevious, ProblemFindNext, FindSimilarPositions, CheckFenCodesFromFile,
    // temporary registers on disk
    TempRegisterClear, TempRegisterSave, TempRegisterReadDefault, TempRegisterSaveAs, TempRegisterReadFile,
    // manual control of a running engine
    SkipCurrentMove, ProgressSkipToNext, ProgressSwapWithNext, ProgressMoveToLast,
    // solves not built: Black's best defence, the whole main variant, the heuristics dialog
    SolveBlackDefence, SolveBlackDefenceThorough, SolveShowMainVariant, SolveWithHeuristics,
    SolveAllWithHeuristics,
    // regression test
    RegressionTest, QuickRegressionTest,
    // global register and its tables
    PrecalculateData, ShowGlobalRegister, VerifyPrecalculatedData, VerifyPrecalculatedFiles,
    VerifyPrecalculatedFilesResume, VerifyPartlyPrecalculatedData,
    // position types and identifiers
    MaxMovesNextPosition, MaxMovesPreviousPosition, PositionInformation, NextPositionOfType,
    PreviousPositionOfType, ShowPositionId, PastePositionByIndex,
    // keys of the table with no command of their own
    KeyCtrlP, KeyCtrlShiftD,
};

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
    default:
        // The start commands, where the board shows a position that a built solve takes.
        return !state.solveOnCurrent && state.startRoadBuilt;
    }
}

} // namespace

std::span<const CommandId> CommandsNotBuiltYet() {
    return NOT_BUILT_YET;
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
    if (contains(NOT_BUILT_YET, id)) return false;
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
        return state.hasProblem;
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
        if (IsCheckableCommand(id)) registry.setChecked(id, IsCommandChecked(id, state));
    }
}

} // namespace zorvane
