#include "data_directory.h"

#include <cstdlib>

namespace zorvane::platform {

namespace fs = std::filesystem;

fs::path ProgramDataDirectory() {
    // A relative XDG_DATA_HOME is invalid by the base-directory rules and is ignored.
    if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg != nullptr && fs::path(xdg).is_absolute())
        return fs::path(xdg) / "zorvane";
    if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0')
        return fs::path(home) / ".local" / "share" / "zorvane";
    return fs::current_path() / "zorvane-data";
}

} // namespace zorvane::platform
