#pragma once
// Which commands are available, from the state of the window. One function
// decides for every command, so that the menus, the pop-ups and the keys agree.
#include "options/localized_text.h"
#include "shell/command_id.h"

#include <cstdint>
#include <span>
#include <vector>

namespace zorvane {

class CommandRegistry;

struct MenuState {
    bool hasProblem = false;
    uint16_t problemType = 1;
    bool solveOnCurrent = false;   // the current problem's number is in the running set
    bool solvePaused = false;      // that run is paused
    bool solvingConnected = false; // the solve driver is wired to the window
    // A start command on the board shown runs a solve that is built: not the
    // analysis of a position without stipulation.
    bool startRoadBuilt = true;
    // The board shows a position of the line with Black to move: the best defence's commands.
    bool defenceRoad = false;
    bool historyBack = false;
    bool historyForward = false;
    bool canUndo = false; // position setting has a change to undo
    bool canRedo = false;
    bool rotatedView = false;
    int priorityClass = 0;
    uint64_t affinityMask = 0;
    int languageId = 1;
    bool descriptionLink = false; // the current description holds a database code
};

// Commands whose part of the program is not built yet: they stay in the menus, greyed.
std::vector<CommandId> CommandsNotBuiltYet();
bool IsNotBuiltYet(CommandId id);
// What a command not built yet waits for, for the status tip of its greyed items; null for the others.
const LocalizedText* WaitsFor(CommandId id);
// Commands run by the solve driver through the window's solve hook.
std::span<const CommandId> SolveCommands();
bool IsSolveCommand(CommandId id);
// Commands that may not change the current problem while it is being solved.
bool IsRefusedDuringSolve(CommandId id);

bool IsCommandEnabled(CommandId id, const MenuState& state);
bool IsCommandChecked(CommandId id, const MenuState& state);

// Enables, greys and checks every command of the registry.
void UpdateMenuState(CommandRegistry& registry, const MenuState& state);

} // namespace zorvane
