#pragma once
// Every command of the window: its number, its text in the three languages,
// where it stands in the menus, and the keys that run it. Only data; the
// registry turns it into actions and menus.
#include "options/localized_text.h"
#include "shell/command_id.h"

#include <cstddef>
#include <span>

namespace zorvane {

struct CommandInfo {
    CommandId id;
    LocalizedText text;
};

// A line of a menu: a command, a separator, or the start or end of a sub-menu
// (whose title is `ownText`). A command with `ownText` shows that wording in
// this menu instead of its usual one (the pop-ups word some commands their own way).
constexpr int MENU_SEPARATOR = 0;
constexpr int SUBMENU_BEGIN = -1;
constexpr int SUBMENU_END = -2;
constexpr int AFFINITY_ITEMS = -3; // where the processor items go

struct MenuLine {
    constexpr MenuLine(CommandId item, LocalizedText text = {}) : id(CommandNumber(item)), ownText(text) {}
    constexpr MenuLine(int special, LocalizedText title = {}) : id(special), ownText(title) {}
    // The line's command; a special line names none of the table.
    constexpr CommandId command() const { return CommandOfNumber(id); }

    int id; // a command's number, or one of the special lines above
    LocalizedText ownText;
};

struct MenuDefinition {
    int menuId; // 100 for the top-level menus of the bar, else the pop-up's number
    LocalizedText title;
    std::span<const MenuLine> lines;
};

// A key of the accelerator table. `twin` is the menu item an alias stands
// for; `id` itself when the key is the command's own.
struct Accelerator {
    constexpr Accelerator(const char* sequence, CommandId command)
        : keys(sequence), id(command), twin(command) {}
    constexpr Accelerator(const char* sequence, CommandId alias, CommandId item)
        : keys(sequence), id(alias), twin(item) {}

    const char* keys;
    CommandId id;
    CommandId twin;
};

std::span<const CommandInfo> Commands();
const CommandInfo* FindCommand(CommandId id);
// The top-level menus of the menu bar, left to right.
std::span<const MenuDefinition> MainMenus();
// The pop-up menus 105, 110, 115, 117, 118 and 119.
std::span<const MenuDefinition> PopupMenus();
std::span<const Accelerator> Accelerators();

// The tool buttons of the window, left to right.
enum class ToolIcon { Previous, Next, Select, Tag, Save, Setting, Rotate, Progress, MoveBack, MoveRedo };
struct ToolButton {
    CommandId id;
    ToolIcon icon;
    LocalizedText toolTip;
};
std::span<const ToolButton> ToolButtons();
// The +/- button of the engine's threads, and the register-count indicator.
extern const LocalizedText EngineThreadsToolTip;
extern const LocalizedText EngineThreadsWaitTip;
extern const LocalizedText RegisterCountToolTip;

// The command an alias stands for (F5 and its twins all come to SolveStart); the id itself otherwise.
CommandId CanonicalCommand(CommandId id);

// Menu ids of the dynamic items.
constexpr int MENU_TRAY = 105;
constexpr int MENU_PROGRESS = 110;
constexpr int MENU_VARIANT = 115;
constexpr int MENU_MOVE = 117;
constexpr int MENU_DESCRIPTION = 118;
constexpr int MENU_PROBLEMS = 119;

// Texts shared by every language: the item added under Help, and the
// processor items ("Procesor " and the number).
extern const LocalizedText BonusCommandText;
extern const wchar_t* const ProcessorItemText;

} // namespace zorvane
