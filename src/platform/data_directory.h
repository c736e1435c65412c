#pragma once
// Where the program keeps its own data: the endgame tables above all. Tables
// run to gigabytes and are made once per machine, so they live in the user's
// data folder and not beside the program, which may be read-only.
#include <filesystem>

namespace zorvane::platform {

// $XDG_DATA_HOME/zorvane when that variable holds an absolute path, else
// $HOME/.local/share/zorvane; the current folder's "zorvane-data" when
// neither is known. The folder need not exist.
std::filesystem::path ProgramDataDirectory();

} // namespace zorvane::platform
