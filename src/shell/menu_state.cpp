#include "shell/menu_state.h"

#include "shell/command_registry.h"
#include "shell/process_control.h"

#include <algorithm>

namespace zorvane {

namespace {

// clang-format off
constexpr int NOT_BUILT_YET[] = {
    // clipboard: positions, FEN, moves and variants as text, board images
    131, 132, 133, 134, 135, 136, 214, 216, 298, 299, 612, 250, 251, 252,
    // position transformations
    138, 139, 295, 296, 297, 305,
    // variants, comments and the description's links
    176, 270, 271, 274, 275, 276, 277, 278, 279, 280, 290, 320, 321, 325,
    // sort indications dialog
    171,
    // problem search
    156, 157, 158, 207, 218,
    // temporary registers on disk
    177, 178, 179, 193, 194,
    // manual control of a running engine
    149, 255, 256, 257,
    // solves not built: Black's best defence, the whole main variant, the heuristics dialog
    152, 153, 164, 677, 679,
    // regression test
    184, 215,
    // global register and its tables
    172, 180, 188, 189, 199, 206,
    // position types and identifiers
    173, 174, 175, 181, 182, 183, 205,
    // keys of the table with no command of their own
    635, 695,
};
// clang-format on

constexpr int SOLVE_COMMANDS[] = {140, 141, 142, 143, 144, 152, 153, 164, 169, 677, 679};

// Refused while the current problem is being solved (the start commands follow the running state).
constexpr int REFUSED_DURING_SOLVE[] = {123, 208, 209, 137, 210, 211, 212, 213, 177, 178,
                                        179, 193, 194, 184, 215, 171, 172, 173, 174, 175,
                                        181, 182, 188, 189, 199, 205, 206, 270, 271};

bool contains(std::span<const int> ids, int id) {
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

int priorityCommand(int priorityClass) {
    switch (priorityClass) {
    case PRIORITY_HIGH:
        return 200;
    case PRIORITY_ABOVE_NORMAL:
        return 201;
    case PRIORITY_NORMAL:
        return 202;
    case PRIORITY_BELOW_NORMAL:
        return 203;
    case PRIORITY_LOW:
        return 204;
    default:
        return 0;
    }
}

bool solveCommandEnabled(int id, const MenuState& state) {
    if (!state.solvingConnected || !state.hasProblem) return false;
    switch (id) {
    case 142:
    case 143:
    case 169:
        return state.solveOnCurrent;
    case 144:
        return state.solveOnCurrent && state.solvePaused;
    default:
        // The start commands, where the board shows a position that a built solve takes.
        return !state.solveOnCurrent && state.startRoadBuilt;
    }
}

} // namespace

std::span<const int> CommandsNotBuiltYet() {
    return NOT_BUILT_YET;
}
std::span<const int> SolveCommands() {
    return SOLVE_COMMANDS;
}
bool IsSolveCommand(int id) {
    return contains(SOLVE_COMMANDS, id);
}
bool IsRefusedDuringSolve(int id) {
    return contains(REFUSED_DURING_SOLVE, id);
}

bool IsCommandEnabled(int id, const MenuState& state) {
    // The menu offers only direct mates; other types read from a file keep their type.
    if (id == 196 || id == 197) return false;
    if (contains(NOT_BUILT_YET, id)) return false;
    if (IsSolveCommand(id)) return solveCommandEnabled(id, state);
    if (state.solveOnCurrent && IsRefusedDuringSolve(id)) return false;
    switch (id) {
    case 167:
        return state.historyBack;
    case 168:
        return state.historyForward;
    case 208:
        return state.canUndo;
    case 209:
        return state.canRedo;
    case 123:
    case 124:
    case 145:
    case 146:
    case 147:
    case 150:
    case 151:
    case 154:
    case 155:
    case 159:
    case 160:
    case 161:
    case 162:
    case 195:
        return state.hasProblem;
    default:
        return true;
    }
}

bool IsCommandChecked(int id, const MenuState& state) {
    if (id == 195) return state.hasProblem && state.problemType == 1;
    if (id == 196) return state.hasProblem && state.problemType == 2;
    if (id >= 200 && id <= 204) return id == priorityCommand(state.priorityClass);
    if (id >= 285 && id <= 287) {
        const int language = state.languageId == 0 || state.languageId == 2 ? state.languageId : 1;
        return id - 285 == language;
    }
    if (id >= FIRST_AFFINITY_COMMAND && id <= LAST_AFFINITY_COMMAND)
        return (state.affinityMask >> (id - FIRST_AFFINITY_COMMAND)) & 1;
    if (id == 190) return state.rotatedView;
    return false;
}

void UpdateMenuState(CommandRegistry& registry, const MenuState& state) {
    for (int id : registry.commandIds()) {
        registry.setEnabled(id, IsCommandEnabled(id, state));
        if (IsCheckableCommand(id)) registry.setChecked(id, IsCommandChecked(id, state));
    }
}

} // namespace zorvane
